#ifndef CONFIGURABLE_CONFIG_DYNAMIC_H
#define CONFIGURABLE_CONFIG_DYNAMIC_H

#include <cstddef>
#include <string>

#include "configurable/configurable.h"

// A list of like children that it owns and that XML replaces wholesale: the
// first child element of a reading empties the list, and each child element
// then becomes a new child of that element's name. The list counts as one
// value: a change answer gives all its children.
class ConfigurableCompositeDynamicBase : public ConfigurableComposite {
public:
    explicit ConfigurableCompositeDynamicBase(const std::string& name)
        : ConfigurableComposite(name) {}
    ~ConfigurableCompositeDynamicBase() override;

    void set_default() override;
    bool read_element(XMLParser& parser, XMLWriter& writer) override;
    bool read_child(const std::string& name, XMLParser& parser, XMLWriter& writer) override;
    void query_changes_item(XMLWriter& writer) override;
    // Takes ownership of the child and marks the list changed.
    void add_child(Configurable* child) override;

    // A new child with that element name (owned by the caller until added).
    virtual Configurable* create_child(const std::string& name) = 0;
    // Copies value and flags of one child into another.
    virtual void copy_child(Configurable& to, const Configurable& from) = 0;
    // Whether two children hold the same key.
    virtual bool equal_children(const Configurable& a, const Configurable& b) const = 0;

    // Deletes every child and marks the list changed; an empty list is left alone.
    void clear();
    std::size_t size() const { return theChildren.size(); }

protected:
    // Copies the flags; replaces the children unless they are pairwise equal.
    void assign_from(const ConfigurableCompositeDynamicBase& other);

private:
    void remove_last_child();

    bool theClearPending = false;
};

// T needs a constructor from the element name, an assignment that copies
// value and flags, and an equality.
template <class T>
class ConfigurableCompositeDynamic : public ConfigurableCompositeDynamicBase {
public:
    explicit ConfigurableCompositeDynamic(const std::string& name)
        : ConfigurableCompositeDynamicBase(name) {}

    ConfigurableCompositeDynamic& operator=(const ConfigurableCompositeDynamic& other) {
        if (this != &other) assign_from(other);
        return *this;
    }

    Configurable* create_child(const std::string& name) override { return new T(name); }
    void copy_child(Configurable& to, const Configurable& from) override {
        static_cast<T&>(to) = static_cast<const T&>(from);
    }
    bool equal_children(const Configurable& a, const Configurable& b) const override {
        return static_cast<const T&>(a) == static_cast<const T&>(b);
    }

    T& at(std::size_t index) const { return static_cast<T&>(*theChildren.at(index)); }
};

#endif
