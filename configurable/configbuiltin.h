#ifndef CONFIGURABLE_CONFIGBUILTIN_H
#define CONFIGURABLE_CONFIGBUILTIN_H

#include <string>
#include <vector>

#include "configurable/configurable.h"

// The value leaves. Each set() stores a value and marks the node changed only
// when the value really differs; set_default() is set(default).

// A 32-bit float, unbounded, clamped to [min, max], or strict.
class ConfigurableFloat : public Configurable {
public:
    enum RangeMode { UNBOUNDED, CLAMP, STRICT };

    ConfigurableFloat(const std::string& name, float defaultValue);
    ConfigurableFloat(const std::string& name, float defaultValue, float min, float max,
                      bool strict);
    ConfigurableFloat& operator=(const ConfigurableFloat& other) = default;
    bool operator==(const ConfigurableFloat& other) const { return theValue == other.theValue; }

    float value() const { return theValue; }
    // Strict mode throws std::range_error for a value that is neither above
    // min nor below max (NaN); otherwise out-of-range values are clamped.
    void set(float value);

    void set_default() override;
    std::istream& read_value(std::istream& in, std::ostream& err) override;
    std::ostream& write_value(std::ostream& out) const override;
    std::ostream& write_doctype(std::ostream& out) const override;

private:
    float theValue;
    float theMin;
    float theMax;
    float theDefault;
    RangeMode theRangeMode;
};

// A signed 32-bit integer, always clamped to [min, max].
class ConfigurableInteger : public Configurable {
public:
    ConfigurableInteger(const std::string& name, int defaultValue);
    ConfigurableInteger(const std::string& name, int defaultValue, int min);
    ConfigurableInteger(const std::string& name, int defaultValue, int min, int max);
    ConfigurableInteger& operator=(const ConfigurableInteger& other) = default;
    bool operator==(const ConfigurableInteger& other) const { return theValue == other.theValue; }

    int value() const { return theValue; }
    void set(int value);

    void set_default() override;
    std::istream& read_value(std::istream& in, std::ostream& err) override;
    std::ostream& write_value(std::ostream& out) const override;
    std::ostream& write_doctype(std::ostream& out) const override;

private:
    int theValue;
    int theMin;
    int theMax;
    int theDefault;
};

// "true" or "false".
class ConfigurableBool : public Configurable {
public:
    ConfigurableBool(const std::string& name, bool defaultValue);
    ConfigurableBool& operator=(const ConfigurableBool& other) = default;
    bool operator==(const ConfigurableBool& other) const { return theValue == other.theValue; }

    bool value() const { return theValue; }
    void set(bool value);

    void set_default() override;
    std::istream& read_value(std::istream& in, std::ostream& err) override;
    std::ostream& write_value(std::ostream& out) const override;
    std::ostream& write_doctype(std::ostream& out) const override;

private:
    bool theValue;
    bool theDefault;
};

// Free text; the whole element text, inner blanks included.
class ConfigurableString : public Configurable {
public:
    ConfigurableString(const std::string& name, const std::string& defaultValue);
    ConfigurableString& operator=(const ConfigurableString& other) = default;
    bool operator==(const ConfigurableString& other) const { return theValue == other.theValue; }

    const std::string& value() const { return theValue; }
    // Reading and set_default go through this, so subclasses can check values.
    virtual void set(const std::string& value);

    void set_default() override;
    std::istream& read_value(std::istream& in, std::ostream& err) override;
    std::ostream& write_value(std::ostream& out) const override;
    std::ostream& write_doctype(std::ostream& out) const override;

private:
    std::string theValue;
    std::string theDefault;
};

// Shows another string's value under its own name; writes to it are ignored.
class ConfigurableStringProxyReadOnly : public Configurable {
public:
    ConfigurableStringProxyReadOnly(const std::string& name, const ConfigurableString& shown);

    const std::string& value() const { return theShown.value(); }

    std::istream& read_value(std::istream& in, std::ostream& err) override;
    std::ostream& write_value(std::ostream& out) const override;
    std::ostream& write_doctype(std::ostream& out) const override;

private:
    const ConfigurableString& theShown;
};

// One of a fixed list of option texts (not owned), held as its index.
class ConfigurableMultipleChoice : public Configurable {
public:
    ConfigurableMultipleChoice(const std::string& name, const std::vector<std::string>* options,
                               int defaultIndex);
    ConfigurableMultipleChoice(const std::string& name, const std::vector<std::string>& options,
                               int defaultIndex);
    // The options are kept by address, so a temporary list is refused.
    ConfigurableMultipleChoice(const std::string& name, std::vector<std::string>&& options,
                               int defaultIndex) = delete;
    ConfigurableMultipleChoice& operator=(const ConfigurableMultipleChoice& other) = default;
    bool operator==(const ConfigurableMultipleChoice& other) const {
        return theIndex == other.theIndex;
    }

    int value() const { return theIndex; }
    // The option text at the current index (empty if the index is invalid).
    std::string value_text() const;
    // An index outside the option list is ignored.
    void set(int index);
    const std::vector<std::string>& options() const { return *theOptions; }

    void set_default() override;
    std::istream& read_value(std::istream& in, std::ostream& err) override;
    std::ostream& write_value(std::ostream& out) const override;
    std::ostream& write_doctype(std::ostream& out) const override;

private:
    const std::vector<std::string>* theOptions;
    int theIndex;
    int theDefault;
};

// The attribute set of one node (its owner, which is its parent). An
// attribute is any leaf (or a bare Configurable for a flag without a value)
// and is present while its persistent flag is set; only present attributes
// are written. Any element that assigns a value or names an attribute
// replaces the whole set.
class ConfigurableAttributes : public Configurable {
public:
    explicit ConfigurableAttributes(Configurable* owner);

    // Appends an attribute (not owned) and passes it the throw errors flag.
    void add_attribute(Configurable* attribute);
    const std::vector<Configurable*>& attribute_list() const { return theAttributeList; }
    Configurable* find(const std::string& name) const;
    Configurable* owner() const { return parent(); }

    void set_changed(bool changed) override;
    void set_throw_errors(bool throwErrors) override;
    bool read_attribute(const std::string& name, XMLWriter& writer) override;
    bool read_attribute_value(const std::string& name, const std::string& value,
                              XMLWriter& writer) override;
    void mark_assigned() override;
    bool read_text(const std::string& text, XMLWriter& writer) override;
    void query_item(XMLWriter& writer) override;
    bool read_doctype_text(const std::string& text, XMLWriter& writer) override;
    void query_doctype_item(XMLWriter& writer) override;
    void query_context(XMLWriter& writer) override;
    void query_changes_context(XMLWriter& writer) override;
    void query_doctype_context(XMLWriter& writer) override;

private:
    std::vector<Configurable*> theAttributeList;
    bool theInValue = false;
    std::string theCurrentName;
};

#endif
