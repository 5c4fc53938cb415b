#ifndef CONFIGURABLE_CONFIGURABLE_H
#define CONFIGURABLE_CONFIGURABLE_H

#include <istream>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

class XMLParser;
class XMLWriter;
class Configurable;
class ConfigurableAttributes;

// What an observer is told about: the node a notification concerns.
class ConfigurableEvent {
public:
    explicit ConfigurableEvent(Configurable* configurable) : theConfigurable(configurable) {}
    virtual ~ConfigurableEvent() = default;

    Configurable* configurable() const { return theConfigurable; }

private:
    Configurable* theConfigurable;
};

// Optional watcher of one node: told when the node changes, when its element
// is read and when it is written. Every notification does nothing by default.
class ConfigurableObserver {
public:
    virtual ~ConfigurableObserver() = default;

    virtual void on_changed(const ConfigurableEvent& event);
    virtual void on_read_begin(const ConfigurableEvent& event);
    virtual void on_read_end(const ConfigurableEvent& event);
    // Reserved: the framework never sends this one.
    virtual void on_reserved(const ConfigurableEvent& event);
    virtual void on_read_text(const ConfigurableEvent& event, const std::string& text,
                              std::ostream& out);
    virtual void on_write_begin(const ConfigurableEvent& event);
    virtual void on_write_end(const ConfigurableEvent& event);
};

// One named node of the configuration tree. The same tree is read from XML
// (values are assigned), answers the query entities found in that XML, and
// is written out as XML. Leaves hold values; ConfigurableComposite holds
// named children.
class Configurable {
public:
    // An error in XML read into the tree, thrown instead of being answered
    // as an <Error> element when throw errors is set.
    class Error : public std::runtime_error {
    public:
        Error(const std::string& name, const std::string& message);
    };

    // The node's boolean flags; copied as a whole when a node is assigned.
    struct Flags {
        bool changed = true;
        bool persistent = true;
        bool assigned = false;
        bool raw = false;
        bool throw_errors = false;
        bool read_only = false;
    };

    explicit Configurable(const std::string& name);
    Configurable(const Configurable&) = delete;
    virtual ~Configurable();

    // Reads one document from `in`, answering queries and errors to `out`;
    // sets the fail flag of `in` when the document could not be read.
    virtual std::istream& process(std::istream& in, std::ostream& out);
    // Restores the default value (value classes) or every child's default.
    virtual void set_default();
    // Parses the node's value text; writes a message to `err` on failure.
    virtual std::istream& read_value(std::istream& in, std::ostream& err);
    // Writes the node's value text.
    virtual std::ostream& write_value(std::ostream& out) const;
    // Parses a type placeholder text.
    virtual std::istream& read_doctype(std::istream& in, std::ostream& err);
    // Writes the node's type description.
    virtual std::ostream& write_doctype(std::ostream& out) const;

    // Hooks for subclasses; empty here.
    virtual void on_changed();
    virtual void on_read_begin();
    virtual void on_read_end();
    virtual void on_read_text(const std::string& text, std::ostream& out);
    virtual void on_write_begin();
    virtual void on_write_end();

    // true marks the node and every ancestor; false clears the node, its
    // attributes and (composites) everything below it.
    virtual void set_changed(bool changed);
    // Errors are thrown as Configurable::Error instead of answered as elements.
    virtual void set_throw_errors(bool throwErrors);

    // Reads the node's element after its start tag was consumed.
    virtual bool read_element(XMLParser& parser, XMLWriter& writer);
    // Reads a child element whose start tag was consumed.
    virtual bool read_child(const std::string& name, XMLParser& parser, XMLWriter& writer);
    // A bare attribute name (or query entity) in the start tag.
    virtual bool read_attribute(const std::string& name, XMLWriter& writer);
    // name="value" in the start tag.
    virtual bool read_attribute_value(const std::string& name, const std::string& value,
                                      XMLWriter& writer);
    // Called at the first assignment during one reading of the element.
    virtual void mark_assigned();
    // Assigns one piece of value text.
    virtual bool read_text(const std::string& text, XMLWriter& writer);
    // Answers the node's content: value text, or children's elements.
    virtual void query_item(XMLWriter& writer);
    // Reads one type placeholder text (the text between braces).
    virtual bool read_doctype_text(const std::string& text, XMLWriter& writer);
    // Answers the node's type content.
    virtual void query_doctype_item(XMLWriter& writer);
    // Answers the node's changed content.
    virtual void query_changes_item(XMLWriter& writer);
    // The node's element wrapped in its ancestors' elements.
    virtual void query_context(XMLWriter& writer);
    virtual void query_changes_context(XMLWriter& writer);
    virtual void query_doctype_context(XMLWriter& writer);

    const std::string& name() const { return theName; }
    Configurable* parent() const { return theParent; }
    bool has_changed() const { return theFlags.changed; }
    bool is_persistent() const { return theFlags.persistent; }
    void set_persistent(bool persistent) { theFlags.persistent = persistent; }
    bool is_read_only() const { return theFlags.read_only; }
    void set_read_only(bool readOnly) { theFlags.read_only = readOnly; }
    bool is_raw() const { return theFlags.raw; }
    void set_raw(bool raw) { theFlags.raw = raw; }
    bool throws_errors() const { return theFlags.throw_errors; }
    bool is_assigned() const { return theFlags.assigned; }
    const Flags& flags() const { return theFlags; }

    // Adds an attribute (not owned); the attribute set is created on first use.
    void add_attribute(Configurable* attribute);
    ConfigurableAttributes* attributes() const { return theAttributes; }
    void set_observer(ConfigurableObserver* observer) { theObserver = observer; }
    ConfigurableObserver* observer() const { return theObserver; }

    // Element writing.
    void write_start(XMLWriter& writer);
    void write_end(XMLWriter& writer);
    void write_path_start(XMLWriter& writer);
    void write_path_end(XMLWriter& writer);
    void write_element(XMLWriter& writer);
    void write_changed_element(XMLWriter& writer);
    void write_type_element(XMLWriter& writer);

    // Splits `text` into values, type placeholders and query entities and
    // acts on each in order; topLevel is text outside the root element.
    bool process_text(const std::string& text, XMLWriter& writer, bool topLevel);
    // Throws Configurable::Error or writes <Error Param="name">message</Error>.
    void report_error(const std::string& message, XMLWriter& writer);

    // Makes every answer written to `out` one continuous line.
    static void set_compact(std::ostream& out);
    static bool is_compact(std::ostream& out);

protected:
    // Copies the flags set only: name, parent, attributes and observer stay.
    Configurable& operator=(const Configurable& other);

    void set_parent(Configurable* parent) { theParent = parent; }
    void set_flag_changed(bool changed) { theFlags.changed = changed; }
    void set_flag_throw_errors(bool throwErrors) { theFlags.throw_errors = throwErrors; }
    void set_flag_assigned(bool assigned) { theFlags.assigned = assigned; }
    void notify_changed();

    friend class ConfigurableComposite;
    friend class ConfigurableAttributes;

private:
    bool dispatch_token(int kind, XMLParser& parser, XMLWriter& writer);

    std::string theName;
    Configurable* theParent = nullptr;
    Flags theFlags;
    ConfigurableAttributes* theAttributes = nullptr;
    ConfigurableObserver* theObserver = nullptr;
};

// A node with named children (not owned), answered and written in the order
// they were added. Several children may share a name: each then reads the
// same element.
class ConfigurableComposite : public Configurable {
public:
    explicit ConfigurableComposite(const std::string& name) : Configurable(name) {}

    void set_default() override;
    void set_changed(bool changed) override;
    void set_throw_errors(bool throwErrors) override;
    bool read_child(const std::string& name, XMLParser& parser, XMLWriter& writer) override;
    void query_item(XMLWriter& writer) override;
    void query_doctype_item(XMLWriter& writer) override;
    void query_changes_item(XMLWriter& writer) override;
    // Appends a child and passes it this node's throw errors flag.
    virtual void add_child(Configurable* child);

    const std::vector<Configurable*>& children() const { return theChildren; }

protected:
    // Copies the flags set only; the children stay.
    ConfigurableComposite& operator=(const ConfigurableComposite& other);

    std::vector<Configurable*> theChildren;
};

// The node's element with its ancestors' tags around it (indented unless
// the stream is compact); no XML declaration.
std::ostream& operator<<(std::ostream& out, const Configurable& node);
// The node's changed content as a document; nothing when it is unchanged.
std::ostream& write_changes(std::ostream& out, const Configurable& node);
// The node's type description as a document.
std::ostream& write_type_description(std::ostream& out, const Configurable& node);

#endif
