#include "configurable/configbuiltin.h"

#include <sstream>

#include "configurable/xml_writer.h"

namespace {

// Sets a flag for one scope and restores it, also when an error is thrown.
class ScopedFlag {
public:
    ScopedFlag(bool& flag, bool value) : theFlag(flag), theSaved(flag) { theFlag = value; }
    ~ScopedFlag() { theFlag = theSaved; }
    ScopedFlag(const ScopedFlag&) = delete;
    ScopedFlag& operator=(const ScopedFlag&) = delete;

private:
    bool& theFlag;
    bool theSaved;
};

// The attribute's value text; empty for a flag-like attribute.
bool ValueText(const Configurable& attribute, std::string& text) {
    std::ostringstream out;
    attribute.write_value(out);
    text = out.str();
    return !out.fail() && !text.empty();
}

}  // namespace

ConfigurableAttributes::ConfigurableAttributes(Configurable* owner) : Configurable("attr") {
    set_parent(owner);
}

void ConfigurableAttributes::add_attribute(Configurable* attribute) {
    theAttributeList.push_back(attribute);
    attribute->set_parent(this);
    attribute->set_throw_errors(throws_errors());
}

Configurable* ConfigurableAttributes::find(const std::string& name) const {
    for (Configurable* attribute : theAttributeList) {
        if (attribute->name() == name) return attribute;
    }
    return nullptr;
}

void ConfigurableAttributes::set_changed(bool changed) {
    Configurable::set_changed(changed);
    if (changed) return;
    for (Configurable* attribute : theAttributeList) attribute->set_changed(false);
}

void ConfigurableAttributes::set_throw_errors(bool throwErrors) {
    Configurable::set_throw_errors(throwErrors);
    for (Configurable* attribute : theAttributeList) attribute->set_throw_errors(throwErrors);
}

bool ConfigurableAttributes::read_attribute(const std::string& name, XMLWriter& writer) {
    theInValue = false;
    return process_text(name, writer, false);
}

bool ConfigurableAttributes::read_attribute_value(const std::string& name, const std::string& value,
                                                  XMLWriter& writer) {
    theCurrentName = name;
    ScopedFlag inValue(theInValue, true);
    return process_text(value, writer, false);
}

// The owner's first assignment in an element replaces the whole set: what
// that element names is made present again as it is read.
void ConfigurableAttributes::mark_assigned() {
    for (Configurable* attribute : theAttributeList) {
        if (!attribute->is_persistent()) continue;
        attribute->set_persistent(false);
        attribute->set_changed(true);
    }
}

bool ConfigurableAttributes::read_text(const std::string& text, XMLWriter& writer) {
    Configurable* attribute = find(theInValue ? theCurrentName : text);
    if (!attribute) return true;  // unknown attributes are ignored
    Configurable* owner = parent();
    if (!owner->is_assigned()) owner->mark_assigned();
    if (!attribute->is_persistent()) {
        attribute->set_persistent(true);
        attribute->set_changed(true);
    }
    return theInValue ? attribute->read_text(text, writer) : true;
}

void ConfigurableAttributes::query_item(XMLWriter& writer) {
    std::string text;
    if (theInValue) {
        const Configurable* attribute = find(theCurrentName);
        if (!attribute) return;
        if (!attribute->is_persistent()) {
            writer.Text("&disabled;", false);
        } else if (!ValueText(*attribute, text)) {
            writer.Text("&enabled;", false);
        } else {
            writer.Text(text, !attribute->is_raw());
        }
        return;
    }
    for (const Configurable* attribute : theAttributeList) {
        if (!attribute->is_persistent()) continue;
        if (ValueText(*attribute, text))
            writer.Attribute(attribute->name(), text);
        else
            writer.AttributeName(attribute->name());
    }
}

bool ConfigurableAttributes::read_doctype_text(const std::string& text, XMLWriter& writer) {
    Configurable* attribute = theInValue ? find(theCurrentName) : nullptr;
    return attribute ? attribute->read_doctype_text(text, writer) : true;
}

void ConfigurableAttributes::query_doctype_item(XMLWriter& writer) {
    if (theInValue) {
        const Configurable* attribute = find(theCurrentName);
        if (!attribute) return;
        std::ostringstream type;
        attribute->write_doctype(type);
        if (!type.str().empty()) writer.Text("{" + type.str() + "}", !attribute->is_raw());
        return;
    }
    for (const Configurable* attribute : theAttributeList) {
        std::ostringstream type;
        attribute->write_doctype(type);
        if (type.str().empty())
            writer.AttributeName(attribute->name());
        else
            writer.Attribute(attribute->name(), "{" + type.str() + "}");
    }
}

// A context query inside a start tag or an attribute value answers for the
// owner, with the owner's whole attribute list.
void ConfigurableAttributes::query_context(XMLWriter& writer) {
    ScopedFlag listMode(theInValue, false);
    parent()->query_context(writer);
}

void ConfigurableAttributes::query_changes_context(XMLWriter& writer) {
    ScopedFlag listMode(theInValue, false);
    parent()->query_changes_context(writer);
}

void ConfigurableAttributes::query_doctype_context(XMLWriter& writer) {
    ScopedFlag listMode(theInValue, false);
    parent()->query_doctype_context(writer);
}
