#include "configurable/config_dynamic.h"

#include "configurable/xml_parser.h"

ConfigurableCompositeDynamicBase::~ConfigurableCompositeDynamicBase() {
    while (!theChildren.empty()) remove_last_child();
}

void ConfigurableCompositeDynamicBase::set_default() { clear(); }

bool ConfigurableCompositeDynamicBase::read_element(XMLParser& parser, XMLWriter& writer) {
    theClearPending = true;
    return ConfigurableComposite::read_element(parser, writer);
}

// Any element name is accepted and becomes the new child's name. A child
// that fails to read is dropped again; the ones after it are still read.
bool ConfigurableCompositeDynamicBase::read_child(const std::string& name, XMLParser& parser,
                                                  XMLWriter& writer) {
    if (theClearPending) {
        clear();
        theClearPending = false;
    }
    add_child(create_child(name));
    bool ok = false;
    try {
        ok = theChildren.back()->read_element(parser, writer);
    } catch (...) {
        remove_last_child();
        throw;
    }
    if (!ok) {
        remove_last_child();
        parser.SkipElement();
    }
    return true;
}

void ConfigurableCompositeDynamicBase::query_changes_item(XMLWriter& writer) {
    query_item(writer);  // the list counts as one value
}

void ConfigurableCompositeDynamicBase::add_child(Configurable* child) {
    ConfigurableComposite::add_child(child);
    set_changed(true);
}

void ConfigurableCompositeDynamicBase::clear() {
    if (theChildren.empty()) return;
    while (!theChildren.empty()) remove_last_child();
    set_changed(true);
}

void ConfigurableCompositeDynamicBase::assign_from(const ConfigurableCompositeDynamicBase& other) {
    ConfigurableComposite::operator=(other);
    if (theChildren.size() == other.theChildren.size()) {
        bool equal = true;
        for (std::size_t i = 0; equal && i < theChildren.size(); ++i) {
            equal = equal_children(*theChildren[i], *other.theChildren[i]);
        }
        if (equal) return;
    }
    clear();
    set_changed(true);
    for (const Configurable* source : other.theChildren) {
        Configurable* child = create_child(source->name());
        copy_child(*child, *source);
        add_child(child);
    }
}

void ConfigurableCompositeDynamicBase::remove_last_child() {
    delete theChildren.back();
    theChildren.pop_back();
}
