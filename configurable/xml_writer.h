#ifndef CONFIGURABLE_XML_WRITER_H
#define CONFIGURABLE_XML_WRITER_H

#include <ostream>
#include <string>

// Lays out elements, attributes and text on a caller-owned stream, either
// indented by tabs on separate lines or as one continuous line. It keeps no
// buffer and no stack: every call writes at once, and the caller names the
// element again when it ends it.
class XMLWriter {
public:
    XMLWriter(std::ostream& out, bool indent);

    void StartDocument();
    void StartElement(const std::string& name);
    // A bare attribute name without a value.
    void AttributeName(const std::string& name);
    void Attribute(const std::string& name, const std::string& value);
    void Text(const std::string& text, bool escape = true);
    void EndElement(const std::string& name);
    void EndDocument();

    std::ostream& stream() { return theStream; }

private:
    void StartLine();
    void CloseStartTag();

    std::ostream& theStream;
    bool theIndent;
    bool theStartTagOpen = false;
    int theLevel = 0;
    bool theNeedSpace = false;
};

#endif
