#include "configurable/xml_writer.h"

#include "configurable/xml_string.h"

XMLWriter::XMLWriter(std::ostream& out, bool indent) : theStream(out), theIndent(indent) {}

void XMLWriter::StartDocument() {
    theLevel = 0;
    // No line end here: the first element starts its own line.
    theStream << "<?xml version=\"1.0\"?>";
}

void XMLWriter::StartElement(const std::string& name) {
    CloseStartTag();
    if (name.empty()) {
        return;
    }
    StartLine();
    theStream << '<';
    XMLName(name).Write(theStream);
    ++theLevel;
    theNeedSpace = true;
    theStartTagOpen = true;
}

void XMLWriter::AttributeName(const std::string& name) {
    if (name.empty()) {
        return;
    }
    // The separating blank goes before the line break, so an indented line
    // followed by an attribute line ends in a blank.
    if (theNeedSpace) {
        theStream << ' ';
    }
    StartLine();
    XMLName(name).Write(theStream);
    theNeedSpace = true;
}

void XMLWriter::Attribute(const std::string& name, const std::string& value) {
    if (name.empty()) {
        return;
    }
    AttributeName(name);
    theStream << "=\"";
    XMLString(value).Write(theStream);
    theStream << '"';
}

void XMLWriter::Text(const std::string& text, bool escape) {
    if (text.empty()) {
        return;
    }
    if (theStartTagOpen) {
        CloseStartTag();
    } else if (theNeedSpace) {
        theStream << ' ';
    }
    StartLine();
    if (escape) {
        XMLString(text).Write(theStream);
    } else {
        theStream << text;
    }
    theNeedSpace = true;
}

void XMLWriter::EndElement(const std::string& name) {
    if (theLevel > 0) {
        --theLevel;
    }
    if (theStartTagOpen) {
        // Nothing was written inside: the element closes itself, whatever
        // name the caller gave.
        theStream << "/>";
        theStartTagOpen = false;
        theNeedSpace = false;
        return;
    }
    if (name.empty()) {
        return;
    }
    StartLine();
    theStream << "</";
    XMLName(name).Write(theStream);
    theStream << '>';
    theNeedSpace = false;
}

void XMLWriter::EndDocument() {
    if (theStartTagOpen) {
        theStream << "/>";
        if (theLevel > 0) {
            --theLevel;
        }
        theStartTagOpen = false;
        theNeedSpace = false;
    }
    theStream << std::endl;
}

void XMLWriter::StartLine() {
    if (!theIndent) {
        return;
    }
    theStream << std::endl;
    for (int i = 0; i < theLevel; ++i) {
        theStream << '\t';
    }
}

void XMLWriter::CloseStartTag() {
    if (!theStartTagOpen) {
        return;
    }
    theStream << '>';
    theStartTagOpen = false;
    theNeedSpace = false;
}
