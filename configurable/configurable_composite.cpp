#include <algorithm>

#include "configurable/configurable.h"
#include "configurable/xml_parser.h"

ConfigurableComposite& ConfigurableComposite::operator=(const ConfigurableComposite& other) {
    Configurable::operator=(other);
    return *this;
}

void ConfigurableComposite::set_default() {
    for (Configurable* child : theChildren) {
        if (child->is_persistent()) child->set_default();
    }
}

void ConfigurableComposite::set_changed(bool changed) {
    Configurable::set_changed(changed);
    if (changed) return;
    // Clearing reaches the whole subtree, hidden children included.
    for (Configurable* child : theChildren) child->set_changed(false);
}

void ConfigurableComposite::set_throw_errors(bool throwErrors) {
    Configurable::set_throw_errors(throwErrors);
    for (Configurable* child : theChildren) child->set_throw_errors(throwErrors);
}

bool ConfigurableComposite::read_child(const std::string& name, XMLParser& parser,
                                       XMLWriter& writer) {
    auto sameName = [&name](const Configurable* child) { return child->name() == name; };
    auto it = std::find_if(theChildren.begin(), theChildren.end(), sameName);
    parser.SetMark();
    // A composite child's own reading moves the parser's one mark, so the
    // start of this element is kept here for each child to return to.
    const XMLParser::Position start = parser.GetMark();
    if (it == theChildren.end()) {
        parser.SkipElement();  // unknown elements are ignored
        return true;
    }
    // Every child of that name reads the same element from its start; a
    // child that fails has reported its error, and the rest of its element
    // is skipped so that the siblings after it are still read. A hidden
    // child skips from the start too: after a sibling read the element, a
    // skip from there would run past the parent's next element.
    for (; it != theChildren.end(); it = std::find_if(it + 1, theChildren.end(), sameName)) {
        parser.SetMark(start);
        parser.GotoMark();
        Configurable* child = *it;
        if (!child->is_persistent() || !child->read_element(parser, writer)) {
            parser.SkipElement();
        }
    }
    return true;
}

void ConfigurableComposite::query_item(XMLWriter& writer) {
    for (Configurable* child : theChildren) {
        if (child->is_persistent()) child->write_element(writer);
    }
}

void ConfigurableComposite::query_doctype_item(XMLWriter& writer) {
    for (Configurable* child : theChildren) {
        if (child->is_persistent()) child->write_type_element(writer);
    }
}

void ConfigurableComposite::query_changes_item(XMLWriter& writer) {
    for (Configurable* child : theChildren) {
        if (child->is_persistent()) child->write_changed_element(writer);
    }
}

void ConfigurableComposite::add_child(Configurable* child) {
    theChildren.push_back(child);
    child->set_parent(this);
    child->set_throw_errors(throws_errors());
}
