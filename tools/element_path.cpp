#include "tools/element_path.h"

#include <sstream>

#include "configurable/xml_parser.h"
#include "configurable/xml_string.h"
#include "tools/vela_error.h"

namespace {

bool IsName(const std::string& name) {
    const auto letter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    };
    if (name.empty() || !letter(name[0])) return false;
    for (char c : name)
        if (!letter(c) && !(c >= '0' && c <= '9') && c != '-' && c != '.') return false;
    return true;
}

// One element of an answer: its attributes as written in its tag, its text
// and its child elements.
struct Node {
    std::string name;
    std::string attributes;
    std::string text;
    std::vector<Node> children;
};

std::string Escaped(const std::string& text) {
    std::ostringstream out;
    XMLString(text).Write(out);
    return out.str();
}

// Reads the content of the element `node` names, whose start tag was read,
// through its end tag.
void ReadContent(XMLParser& parser, Node& node) {
    for (;;) {
        switch (parser.GetNextToken()) {
        case XMLParser::START_ELEMENT:
            node.children.push_back(Node{parser.GetTokenString(), "", "", {}});
            ReadContent(parser, node.children.back());
            break;
        case XMLParser::END_ELEMENT: return;
        case XMLParser::ATTRIBUTE: node.attributes += " " + parser.GetTokenString(); break;
        case XMLParser::ATTRIBUTE_VALUE_PAIR:
            node.attributes +=
                " " + parser.GetTokenString() + "=\"" + Escaped(parser.GetTokenValue()) + "\"";
            break;
        case XMLParser::STRING:
            node.text += (node.text.empty() ? "" : " ") + parser.GetTokenString();
            break;
        case XMLParser::ERROR:
        case XMLParser::END_DOC: throw VelaError("the analyzer's answer is no XML vela can read");
        default: break;
        }
    }
}

// The element as XML, one element a line, indented by two blanks a level.
std::string Indented(const Node& node, const std::string& indent = "") {
    const std::string tag = node.name + node.attributes;
    if (node.children.empty())
        return indent +
               (node.text.empty() ? "<" + tag + "/>"
                                  : "<" + tag + ">" + Escaped(node.text) + "</" + node.name + ">") +
               "\n";
    std::string text =
        indent + "<" + tag + ">" + (node.text.empty() ? "" : Escaped(node.text)) + "\n";
    for (const auto& child : node.children) text += Indented(child, indent + "  ");
    return text + indent + "</" + node.name + ">\n";
}

}  // namespace

ElementPath::ElementPath(const std::string& text) {
    std::string rest = text.compare(0, 5, "vela/") == 0 ? text.substr(5) : text;
    std::istringstream names(rest);
    for (std::string name; std::getline(names, name, '/');) {
        if (!IsName(name)) throw UsageError("not a path of elements below vela: " + text);
        names_.push_back(name);
    }
    if (names_.empty()) throw UsageError("not a path of elements below vela: " + text);
}

std::string ElementPath::Text() const {
    std::string text;
    for (const auto& name : names_) text += (text.empty() ? "" : "/") + name;
    return text;
}

std::string ElementPath::Wrapped(const std::string& content) const {
    std::string request = "<norvance><vela>";
    for (const auto& name : names_) request += "<" + name + ">";
    request += content;
    for (auto name = names_.rbegin(); name != names_.rend(); ++name) request += "</" + *name + ">";
    return request + "</vela></norvance>";
}

std::string ElementPath::QueryRequest() const { return Wrapped("&query;"); }

std::string ElementPath::WriteRequest(const std::string& value) const {
    return Wrapped(Escaped(value));
}

std::optional<std::string> ElementPath::Find(const std::string& answer) const {
    std::istringstream in(answer);
    XMLParser parser(in);
    if (parser.GetNextToken() != XMLParser::START_DOC) return std::nullopt;
    std::vector<std::string> path = {"norvance", "vela"};
    path.insert(path.end(), names_.begin(), names_.end());
    for (const auto& name : path)
        if (parser.GetNextToken() != XMLParser::START_ELEMENT || parser.GetTokenString() != name)
            return std::nullopt;
    Node element{names_.back(), "", "", {}};
    ReadContent(parser, element);
    if (element.children.empty() && element.attributes.empty()) return element.text;
    std::string xml = Indented(element);
    xml.pop_back();
    return xml;
}
