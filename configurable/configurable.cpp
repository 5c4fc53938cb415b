#include "configurable/configurable.h"

#include <sstream>

#include "configurable/configbuiltin.h"
#include "configurable/xml_parser.h"
#include "configurable/xml_writer.h"

namespace {

// The iword slot that holds the compact-output bit of every stream.
int CompactWordIndex() {
    static const int index = std::ios_base::xalloc();
    return index;
}

const long COMPACT_BIT = 1;

}  // namespace

void ConfigurableObserver::on_changed(const ConfigurableEvent&) {}
void ConfigurableObserver::on_read_begin(const ConfigurableEvent&) {}
void ConfigurableObserver::on_read_end(const ConfigurableEvent&) {}
void ConfigurableObserver::on_reserved(const ConfigurableEvent&) {}
void ConfigurableObserver::on_read_text(const ConfigurableEvent&, const std::string&,
                                        std::ostream&) {}
void ConfigurableObserver::on_write_begin(const ConfigurableEvent&) {}
void ConfigurableObserver::on_write_end(const ConfigurableEvent&) {}

Configurable::Error::Error(const std::string& name, const std::string& message)
    : std::runtime_error("XML error in item \"" + name + "\": " + message) {}

Configurable::Configurable(const std::string& name) : theName(name) {}

Configurable::~Configurable() { delete theAttributes; }

Configurable& Configurable::operator=(const Configurable& other) {
    theFlags = other.theFlags;
    return *this;
}

std::istream& Configurable::process(std::istream& in, std::ostream& out) {
    XMLParser parser(in);
    XMLWriter writer(out, !is_compact(out));

    // The prolog: everything before the root's start tag. Text there may
    // hold top-level queries.
    for (;;) {
        const XMLParser::TokenKind kind = parser.GetNextToken();
        if (kind == XMLParser::ERROR) {
            in.setstate(std::ios_base::failbit);
            return in;
        }
        if (kind == XMLParser::START_ELEMENT || kind == XMLParser::END_DOC) break;
        if (kind == XMLParser::STRING) {
            const std::string text = parser.GetTokenString();
            if (!process_text(text, writer, true)) {
                in.setstate(std::ios_base::failbit);
                return in;
            }
        }
    }
    if (parser.GetCurrToken() != XMLParser::START_ELEMENT) return in;

    const std::string tag = parser.GetTokenString();
    if (tag == theName) {
        if (!read_element(parser, writer)) in.setstate(std::ios_base::failbit);
    } else {
        in.setstate(std::ios_base::failbit);
        report_error("Invalid start element: " + tag, writer);
    }
    return in;
}

void Configurable::set_default() {}

std::istream& Configurable::read_value(std::istream& in, std::ostream&) { return in; }

std::ostream& Configurable::write_value(std::ostream& out) const { return out; }

std::istream& Configurable::read_doctype(std::istream& in, std::ostream&) { return in; }

std::ostream& Configurable::write_doctype(std::ostream& out) const { return out; }

void Configurable::on_changed() {}
void Configurable::on_read_begin() {}
void Configurable::on_read_end() {}
void Configurable::on_read_text(const std::string&, std::ostream&) {}
void Configurable::on_write_begin() {}
void Configurable::on_write_end() {}

void Configurable::set_changed(bool changed) {
    if (changed) {
        notify_changed();
        if (theParent) theParent->set_changed(true);
    } else {
        theFlags.changed = false;
        if (theAttributes) theAttributes->set_changed(false);
    }
}

void Configurable::notify_changed() {
    theFlags.changed = true;
    on_changed();
    if (theObserver) theObserver->on_changed(ConfigurableEvent(this));
}

void Configurable::set_throw_errors(bool throwErrors) {
    theFlags.throw_errors = throwErrors;
    if (theAttributes) theAttributes->set_throw_errors(throwErrors);
}

bool Configurable::read_element(XMLParser& parser, XMLWriter& writer) {
    theFlags.assigned = false;
    on_read_begin();
    if (theObserver) theObserver->on_read_begin(ConfigurableEvent(this));

    for (;;) {
        const XMLParser::TokenKind kind = parser.GetNextToken();
        switch (kind) {
        case XMLParser::ERROR: return false;
        case XMLParser::END_DOC: return true;
        case XMLParser::END_ELEMENT:
            if (parser.GetTokenString() == theName) {
                on_read_end();
                if (theObserver) theObserver->on_read_end(ConfigurableEvent(this));
                return true;
            }
            report_error("Invalid End Element: " + parser.GetTokenString(), writer);
            return false;
        default:
            if (!dispatch_token(kind, parser, writer)) return false;
            break;
        }
    }
}

// Hands one token of the element's content to the operation that reads it.
bool Configurable::dispatch_token(int kind, XMLParser& parser, XMLWriter& writer) {
    const std::string name = parser.GetTokenString();
    switch (kind) {
    case XMLParser::START_ELEMENT: return read_child(name, parser, writer);
    case XMLParser::ATTRIBUTE: return read_attribute(name, writer);
    case XMLParser::ATTRIBUTE_VALUE_PAIR:
        return read_attribute_value(name, parser.GetTokenValue(), writer);
    case XMLParser::STRING:
        on_read_text(name, writer.stream());
        if (theObserver) theObserver->on_read_text(ConfigurableEvent(this), name, writer.stream());
        return process_text(name, writer, false);
    default: return true;
    }
}

bool Configurable::read_child(const std::string& name, XMLParser&, XMLWriter& writer) {
    report_error("Invalid configuration tag: " + name, writer);
    return false;
}

bool Configurable::read_attribute(const std::string& name, XMLWriter& writer) {
    if (!theAttributes) {
        report_error("This item has no attributes", writer);
        return false;
    }
    return theAttributes->read_attribute(name, writer);
}

bool Configurable::read_attribute_value(const std::string& name, const std::string& value,
                                        XMLWriter& writer) {
    if (!theAttributes) {
        report_error("This item has no attributes", writer);
        return false;
    }
    return theAttributes->read_attribute_value(name, value, writer);
}

void Configurable::mark_assigned() {
    theFlags.assigned = true;
    if (theAttributes) theAttributes->mark_assigned();
}

bool Configurable::read_text(const std::string& text, XMLWriter& writer) {
    if (theFlags.read_only) return true;
    if (!theFlags.assigned) mark_assigned();
    std::istringstream in(text);
    std::ostringstream err;
    read_value(in, err);
    if (!err.str().empty()) report_error(err.str(), writer);
    return !(in.fail() || in.bad());
}

void Configurable::query_item(XMLWriter& writer) {
    std::ostringstream value;
    write_value(value);
    writer.Text(value.str(), !theFlags.raw);
}

bool Configurable::read_doctype_text(const std::string& text, XMLWriter& writer) {
    if (theFlags.read_only) return true;
    std::istringstream in(text);
    std::ostringstream err;
    read_doctype(in, err);
    if (!err.str().empty()) report_error(err.str(), writer);
    return !(in.fail() || in.bad());
}

void Configurable::query_doctype_item(XMLWriter& writer) {
    std::ostringstream type;
    write_doctype(type);
    writer.Text("{" + type.str() + "}", !theFlags.raw);
}

void Configurable::query_changes_item(XMLWriter& writer) {
    if (theFlags.changed) query_item(writer);
}

void Configurable::query_context(XMLWriter& writer) {
    write_path_start(writer);
    if (theAttributes) theAttributes->query_item(writer);
    query_item(writer);
    write_path_end(writer);
}

void Configurable::query_changes_context(XMLWriter& writer) {
    if (!theFlags.changed) return;
    write_path_start(writer);
    if (theAttributes) theAttributes->query_item(writer);
    query_changes_item(writer);
    write_path_end(writer);
}

void Configurable::query_doctype_context(XMLWriter& writer) {
    write_path_start(writer);
    if (theAttributes) theAttributes->query_doctype_item(writer);
    query_doctype_item(writer);
    write_path_end(writer);
}

void Configurable::add_attribute(Configurable* attribute) {
    if (!theAttributes) {
        theAttributes = new ConfigurableAttributes(this);
        theAttributes->set_throw_errors(theFlags.throw_errors);
    }
    theAttributes->add_attribute(attribute);
}

void Configurable::write_start(XMLWriter& writer) {
    writer.StartElement(theName);
    on_write_begin();
    if (theObserver) theObserver->on_write_begin(ConfigurableEvent(this));
}

void Configurable::write_end(XMLWriter& writer) {
    writer.EndElement(theName);
    on_write_end();
    if (theObserver) theObserver->on_write_end(ConfigurableEvent(this));
}

void Configurable::write_path_start(XMLWriter& writer) {
    if (theParent) theParent->write_path_start(writer);
    write_start(writer);
}

void Configurable::write_path_end(XMLWriter& writer) {
    write_end(writer);
    if (theParent) theParent->write_path_end(writer);
}

void Configurable::write_element(XMLWriter& writer) {
    write_start(writer);
    if (theAttributes) theAttributes->query_item(writer);
    query_item(writer);
    write_end(writer);
}

void Configurable::write_changed_element(XMLWriter& writer) {
    if (!theFlags.changed) return;
    write_start(writer);
    if (theAttributes) theAttributes->query_item(writer);
    query_changes_item(writer);
    write_end(writer);
}

void Configurable::write_type_element(XMLWriter& writer) {
    writer.StartElement(theName);
    if (theAttributes) theAttributes->query_doctype_item(writer);
    query_doctype_item(writer);
    writer.EndElement(theName);
}

bool Configurable::process_text(const std::string& text, XMLWriter& writer, bool topLevel) {
    XMLQueryStringParser pieces(text);
    for (;;) {
        switch (pieces.GetNextToken()) {
        case XMLQueryStringParser::END_STRING: return true;
        case XMLQueryStringParser::STRING:
            if (!topLevel && !read_text(pieces.GetTokenString(), writer)) return false;
            break;
        case XMLQueryStringParser::DOCTYPE:
            if (!topLevel && !read_doctype_text(pieces.GetTokenString(), writer)) return false;
            break;
        case XMLQueryStringParser::QUERY:
            if (topLevel)
                write_element(writer);
            else
                query_item(writer);
            break;
        case XMLQueryStringParser::QUERY_CONTEXT: query_context(writer); break;
        case XMLQueryStringParser::QUERY_CHANGES:
            if (topLevel)
                write_changed_element(writer);
            else
                query_changes_item(writer);
            break;
        case XMLQueryStringParser::QUERY_CHANGES_CONTEXT: query_changes_context(writer); break;
        case XMLQueryStringParser::QUERY_DOCTYPE:
            if (topLevel)
                write_type_element(writer);
            else
                query_doctype_item(writer);
            break;
        case XMLQueryStringParser::QUERY_DOCTYPE_CONTEXT: query_doctype_context(writer); break;
        case XMLQueryStringParser::ERROR:
            report_error("Invalid query: " + pieces.GetTokenString(), writer);
            break;
        case XMLQueryStringParser::START_STRING: break;
        }
    }
}

void Configurable::report_error(const std::string& message, XMLWriter& writer) {
    if (theFlags.throw_errors) throw Error(theName, message);
    writer.StartElement("Error");
    writer.Attribute("Param", theName);
    writer.Text(message, true);
    writer.EndElement("Error");
}

void Configurable::set_compact(std::ostream& out) { out.iword(CompactWordIndex()) |= COMPACT_BIT; }

bool Configurable::is_compact(std::ostream& out) {
    return (out.iword(CompactWordIndex()) & COMPACT_BIT) != 0;
}

std::ostream& operator<<(std::ostream& out, const Configurable& node) {
    XMLWriter writer(out, !Configurable::is_compact(out));
    // Writing runs the write hooks, which are not const operations.
    const_cast<Configurable&>(node).query_context(writer);
    return out;
}

std::ostream& write_changes(std::ostream& out, const Configurable& node) {
    if (!node.has_changed()) return out;
    XMLWriter writer(out, !Configurable::is_compact(out));
    const_cast<Configurable&>(node).query_changes_context(writer);
    return out;
}

std::ostream& write_type_description(std::ostream& out, const Configurable& node) {
    XMLWriter writer(out, !Configurable::is_compact(out));
    const_cast<Configurable&>(node).query_doctype_context(writer);
    return out;
}
