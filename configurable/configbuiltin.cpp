#include "configurable/configbuiltin.h"

namespace {

// Everything up to the end of the text, blanks included (a NUL ends it).
bool ReadWholeText(std::istream& in, std::string& text) {
    return static_cast<bool>(std::getline(in, text, '\0'));
}

}  // namespace

ConfigurableBool::ConfigurableBool(const std::string& name, bool defaultValue)
    : Configurable(name), theValue(defaultValue), theDefault(defaultValue) {}

void ConfigurableBool::set(bool value) {
    if (value == theValue) return;
    theValue = value;
    set_changed(true);
}

void ConfigurableBool::set_default() { set(theDefault); }

std::istream& ConfigurableBool::read_value(std::istream& in, std::ostream& err) {
    std::string word;
    if (!(in >> word))
        err << "unable to read bool";
    else if (word == "true")
        set(true);
    else if (word == "false")
        set(false);
    else
        err << "invalid bool";
    return in;
}

std::ostream& ConfigurableBool::write_value(std::ostream& out) const {
    return out << (theValue ? "true" : "false");
}

std::ostream& ConfigurableBool::write_doctype(std::ostream& out) const {
    return out << "true|false";
}

ConfigurableString::ConfigurableString(const std::string& name, const std::string& defaultValue)
    : Configurable(name), theValue(defaultValue), theDefault(defaultValue) {}

void ConfigurableString::set(const std::string& value) {
    if (value == theValue) return;
    theValue = value;
    set_changed(true);
}

void ConfigurableString::set_default() { set(theDefault); }

std::istream& ConfigurableString::read_value(std::istream& in, std::ostream& err) {
    std::string text;
    if (ReadWholeText(in, text))
        set(text);
    else
        err << "unable to read string" << std::endl;
    return in;
}

std::ostream& ConfigurableString::write_value(std::ostream& out) const { return out << theValue; }

std::ostream& ConfigurableString::write_doctype(std::ostream& out) const { return out << "string"; }

ConfigurableStringProxyReadOnly::ConfigurableStringProxyReadOnly(const std::string& name,
                                                                 const ConfigurableString& shown)
    : Configurable(name), theShown(shown) {}

std::istream& ConfigurableStringProxyReadOnly::read_value(std::istream& in, std::ostream&) {
    return in;  // the shown string is changed only through its own element
}

std::ostream& ConfigurableStringProxyReadOnly::write_value(std::ostream& out) const {
    return out << theShown.value();
}

std::ostream& ConfigurableStringProxyReadOnly::write_doctype(std::ostream& out) const {
    return out << "string";
}

ConfigurableMultipleChoice::ConfigurableMultipleChoice(const std::string& name,
                                                       const std::vector<std::string>* options,
                                                       int defaultIndex)
    : Configurable(name), theOptions(options), theIndex(defaultIndex), theDefault(defaultIndex) {}

ConfigurableMultipleChoice::ConfigurableMultipleChoice(const std::string& name,
                                                       const std::vector<std::string>& options,
                                                       int defaultIndex)
    : ConfigurableMultipleChoice(name, &options, defaultIndex) {}

std::string ConfigurableMultipleChoice::value_text() const {
    if (theIndex < 0 || static_cast<std::size_t>(theIndex) >= theOptions->size()) return "";
    return (*theOptions)[theIndex];
}

void ConfigurableMultipleChoice::set(int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= theOptions->size()) return;
    if (index == theIndex) return;
    theIndex = index;
    set_changed(true);
}

void ConfigurableMultipleChoice::set_default() { set(theDefault); }

std::istream& ConfigurableMultipleChoice::read_value(std::istream& in, std::ostream& err) {
    std::string text;
    if (!ReadWholeText(in, text)) {
        err << "unable to read choice" << std::endl;
        return in;
    }
    for (std::size_t i = 0; i < theOptions->size(); ++i) {
        if ((*theOptions)[i] == text) {
            set(static_cast<int>(i));
            return in;
        }
    }
    err << "invalid option: " << text << std::endl;
    return in;
}

std::ostream& ConfigurableMultipleChoice::write_value(std::ostream& out) const {
    return out << value_text();
}

std::ostream& ConfigurableMultipleChoice::write_doctype(std::ostream& out) const {
    for (std::size_t i = 0; i < theOptions->size(); ++i) {
        if (i > 0) out << '|';
        out << (*theOptions)[i];
    }
    return out;
}
