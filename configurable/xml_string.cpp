#include "configurable/xml_string.h"

namespace {

typedef std::istream::traits_type Traits;

// The character classes are ASCII only and do not depend on the locale:
// bytes from 0x80 up are neither letters, digits nor whitespace.
bool IsSpace(int c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

bool IsLetter(int c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool IsDigit(int c) { return c >= '0' && c <= '9'; }

bool CanBeginName(int c) { return IsLetter(c) || c == '_' || c == ':' || c == '&'; }

bool CanContinueName(int c) {
    return IsLetter(c) || IsDigit(c) || c == '.' || c == '-' || c == '_' || c == ':' || c == ';';
}

// Characters that end an entity reference (or a value) before its semicolon.
bool IsEntityTerminator(int c) { return c == '<' || c == '>' || c == '"' || c == '\'' || c == '&'; }

bool IsEnd(int c) { return Traits::eq_int_type(c, Traits::eof()); }

// Appends the entity reference whose ampersand was just consumed. The five
// character entities become their character; anything else, complete or not,
// is kept as it was written so that query entities travel through values.
void ReadEntity(std::istream& in, std::string& value) {
    std::string entity("&");
    for (;;) {
        const int c = in.get();
        if (IsEnd(c) || IsSpace(c)) {
            break;  // whitespace ending an entity is swallowed on purpose
        }
        if (IsEntityTerminator(c)) {
            in.unget();
            break;
        }
        entity += static_cast<char>(c);
        if (c == ';') {
            if (entity == "&lt;") {
                entity = "<";
            } else if (entity == "&gt;") {
                entity = ">";
            } else if (entity == "&quot;") {
                entity = "\"";
            } else if (entity == "&apos;") {
                entity = "'";
            } else if (entity == "&amp;") {
                entity = "&";
            }
            break;
        }
    }
    value += entity;
}

// Reads up to the closing quote, which is consumed. A tag bracket ends the
// value early and stays in the stream.
void ReadQuoted(std::istream& in, char quote, std::string& value) {
    for (;;) {
        const int c = in.get();
        if (IsEnd(c) || c == quote) {
            return;
        }
        if (c == '<' || c == '>') {
            in.unget();
            return;
        }
        if (c == '&') {
            ReadEntity(in, value);
        } else {
            value += static_cast<char>(c);
        }
    }
}

// Reads a bare value starting with `first`. Whitespace is held back until a
// later character shows it is inside the value, so trailing whitespace is
// dropped while inner runs are kept as read.
void ReadUnquoted(std::istream& in, int first, std::string& value) {
    std::string pendingSpace;
    for (int c = first; !IsEnd(c); c = in.get()) {
        if (c == '<' || c == '>' || c == '\'' || c == '"') {
            in.unget();
            return;
        }
        if (IsSpace(c)) {
            pendingSpace += static_cast<char>(c);
            continue;
        }
        value += pendingSpace;
        pendingSpace.clear();
        if (c == '&') {
            ReadEntity(in, value);
        } else {
            value += static_cast<char>(c);
        }
    }
}

// True when the ampersand at `pos` starts a complete entity reference:
// at least one character, none of them a terminator or whitespace, then a
// semicolon.
bool StartsEntityReference(const std::string& value, std::string::size_type pos) {
    std::string::size_type i = pos + 1;
    while (i < value.size() && value[i] != ';') {
        const int c = static_cast<unsigned char>(value[i]);
        if (IsSpace(c) || IsEntityTerminator(c)) {
            return false;
        }
        ++i;
    }
    return i < value.size() && i > pos + 1;
}

}  // namespace

void SkipXMLWhitespace(std::istream& in) {
    for (;;) {
        const int c = in.get();
        if (IsEnd(c)) {
            return;
        }
        if (!IsSpace(c)) {
            in.unget();
            return;
        }
    }
}

void XMLString::Read(std::istream& in) {
    clear();
    SkipXMLWhitespace(in);
    const int first = in.get();
    if (IsEnd(first)) {
        return;
    }
    if (first == '"' || first == '\'') {
        ReadQuoted(in, static_cast<char>(first), *this);
    } else if (first == '<' || first == '>') {
        in.unget();
    } else {
        ReadUnquoted(in, first, *this);
    }
}

void XMLString::Write(std::ostream& out) const {
    for (size_type i = 0; i < size(); ++i) {
        const char c = (*this)[i];
        switch (c) {
        case '"': out << "&quot;"; break;
        case '\'': out << "&apos;"; break;
        case '<': out << "&lt;"; break;
        case '>': out << "&gt;"; break;
        case '&': out << (StartsEntityReference(*this, i) ? "&" : "&amp;"); break;
        default: out << c;
        }
    }
}

void XMLName::Read(std::istream& in) {
    clear();
    int c = in.get();
    if (IsEnd(c)) {
        return;
    }
    if (!CanBeginName(c)) {
        in.unget();
        return;
    }
    push_back(static_cast<char>(c));
    for (;;) {
        c = in.get();
        if (IsEnd(c)) {
            return;
        }
        if (!CanContinueName(c)) {
            in.unget();
            return;
        }
        push_back(static_cast<char>(c));
        if (c == ';') {
            return;
        }
    }
}

void XMLName::Write(std::ostream& out) const {
    if (empty() || !CanBeginName(static_cast<unsigned char>((*this)[0]))) {
        return;
    }
    out << (*this)[0];
    for (size_type i = 1; i < size(); ++i) {
        const int c = static_cast<unsigned char>((*this)[i]);
        if (!CanContinueName(c)) {
            return;
        }
        out << static_cast<char>(c);
        if (c == ';') {
            return;
        }
    }
}
