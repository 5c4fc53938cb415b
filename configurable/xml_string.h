#ifndef CONFIGURABLE_XML_STRING_H
#define CONFIGURABLE_XML_STRING_H

#include <istream>
#include <ostream>
#include <string>

// A text value read from and written to XML character data. Only the five
// character entities are translated; any other well-formed entity reference
// (such as "&query_item;") passes through untouched in both directions.
class XMLString : public std::string {
public:
    XMLString() = default;
    XMLString(const std::string& value) : std::string(value) {}
    XMLString(const char* value) : std::string(value) {}
    virtual ~XMLString() = default;

    // Replaces the value with the next text item of `in`; never fails.
    virtual void Read(std::istream& in);
    // Writes the value with XML escaping.
    virtual void Write(std::ostream& out) const;
};

// A tag or attribute name. A name may begin with an ampersand and ends after
// a semicolon, so that an entity reference is a complete name.
class XMLName : public XMLString {
public:
    XMLName() = default;
    XMLName(const std::string& value) : XMLString(value) {}
    XMLName(const char* value) : XMLString(value) {}

    // Reads the name that begins at the very next character of `in`.
    void Read(std::istream& in) override;
    // Writes the longest prefix of the value that forms a name.
    void Write(std::ostream& out) const override;
};

// Reads characters while they are whitespace and puts the first other one back.
void SkipXMLWhitespace(std::istream& in);

#endif
