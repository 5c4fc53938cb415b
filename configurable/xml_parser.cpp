#include "configurable/xml_parser.h"

#include <iterator>

#include "configurable/xml_string.h"

namespace {

typedef std::istream::traits_type Traits;

bool IsEnd(int c) { return Traits::eq_int_type(c, Traits::eof()); }

// Reads until `last` directly follows at least `count` copies of `repeated`.
// Returns false when the input ends first.
bool SkipUntilAfterRun(std::istream& in, char repeated, int count, char last) {
    int run = 0;
    for (;;) {
        const int c = in.get();
        if (IsEnd(c)) {
            return false;
        }
        if (c == last && run >= count) {
            return true;
        }
        run = (c == repeated) ? run + 1 : 0;
    }
}

// Skips the rest of "<!...>" after the exclamation mark: a comment, an
// empty declaration or any other declaration.
bool SkipDeclaration(std::istream& in) {
    const int c = in.get();
    if (IsEnd(c)) {
        return false;
    }
    if (c == '-') {
        // Hyphens count from after the opening one, so "<!-->" stays open.
        return SkipUntilAfterRun(in, '-', 2, '>');
    }
    if (c == '>') {
        return true;
    }
    return SkipUntilAfterRun(in, '>', 0, '>');
}

const XMLParser::TokenInfo& NoToken() {
    static const XMLParser::TokenInfo none;
    return none;
}

}  // namespace

XMLParser::XMLParser(std::istream& in) : theStream(in) {
    // The start token is listed twice so that the first read returns it
    // and can still be stepped back over.
    TokenPtr start(new TokenInfo);
    start->theToken = START_DOC;
    theTokens.push_back(start);
    theTokens.push_back(start);
    theCurrent = theTokens.begin();
    theMark = theCurrent;
}

XMLParser::TokenKind XMLParser::GetNextToken() {
    if (theCurrent != theTokens.end()) {
        if ((*theCurrent)->theToken == ERROR) {
            return ERROR;
        }
        ++theCurrent;
        if (theCurrent != theTokens.end()) {
            return (*theCurrent)->theToken;
        }
    }
    theTokens.push_back(ReadToken());
    theCurrent = std::prev(theTokens.end());
    return (*theCurrent)->theToken;
}

XMLParser::TokenKind XMLParser::GetCurrToken() const { return CurrentToken().theToken; }

const std::string& XMLParser::GetTokenString() const { return CurrentToken().theTokenString; }

const std::string& XMLParser::GetTokenValue() const { return CurrentToken().theTokenValue; }

void XMLParser::UngetToken() {
    if (theCurrent != theTokens.begin()) {
        --theCurrent;
    }
}

void XMLParser::SetMark() { theMark = theCurrent; }

XMLParser::Position XMLParser::GetMark() const { return theMark; }

void XMLParser::SetMark(Position mark) { theMark = mark; }

void XMLParser::GotoMark() { theCurrent = theMark; }

void XMLParser::ClearError() {
    theStream.clear();
    if (theCurrent != theTokens.end() && (*theCurrent)->theToken == ERROR) {
        ++theCurrent;
    }
}

void XMLParser::SkipElement() {
    ClearError();
    int depth = 1;
    while (depth >= 1) {
        switch (GetNextToken()) {
        case START_ELEMENT: ++depth; break;
        case END_ELEMENT: --depth; break;
        case END_DOC: return;
        case ERROR: ClearError(); break;
        default: break;
        }
    }
}

const XMLParser::TokenInfo& XMLParser::CurrentToken() const {
    // Past the last token (after clearing an error) there is no token yet.
    if (theCurrent == theTokens.end()) {
        return NoToken();
    }
    return **theCurrent;
}

XMLParser::TokenPtr XMLParser::ReadToken() {
    TokenPtr token(new TokenInfo);
    if (EndOfInput(*token)) {
        return token;
    }
    SkipXMLWhitespace(theStream);
    if (theInStartTag) {
        ReadInsideTag(*token);
    } else {
        ReadOutsideTag(*token);
    }
    return token;
}

void XMLParser::ReadOutsideTag(TokenInfo& token) {
    char candidate = 0;
    if (!SkipMarkup(candidate)) {
        EndOfInput(token);
        return;
    }
    if (candidate == '>') {
        SetError(token, "Invalid '>' character outside XML tags");
        return;
    }
    if (candidate != '<') {
        theStream.unget();
        XMLString text;
        text.Read(theStream);
        token.theToken = STRING;
        token.theTokenString = text;
        return;
    }
    const int next = theStream.get();
    if (IsEnd(next)) {
        EndOfInput(token);
        return;
    }
    if (next == '/') {
        ReadEndTag(token);
        return;
    }
    theStream.unget();
    XMLName name;
    name.Read(theStream);
    // A name that runs to the end of input may be cut short: no start tag.
    if (EndOfInput(token)) {
        return;
    }
    if (name.empty()) {
        SetError(token, "Empty XML tag name");
        return;
    }
    token.theToken = START_ELEMENT;
    token.theTokenString = name;
    theOpenElement = name;
    theInStartTag = true;
}

void XMLParser::ReadEndTag(TokenInfo& token) {
    XMLName name;
    name.Read(theStream);
    const int close = theStream.get();
    if (IsEnd(close)) {
        EndOfInput(token);
    } else if (name.empty()) {
        SetError(token, "Empty XML tag name");
    } else if (close != '>') {
        SetError(token, "Invalid XML tag end sequence");
    } else {
        token.theToken = END_ELEMENT;
        token.theTokenString = name;
    }
}

void XMLParser::ReadInsideTag(TokenInfo& token) {
    const int c = theStream.get();
    if (IsEnd(c)) {
        EndOfInput(token);
    } else if (c == '<') {
        SetError(token, "Cannot start new element inside start tag");
    } else if (c == '>') {
        theInStartTag = false;
        ReadOutsideTag(token);
    } else if (c == '/') {
        const int close = theStream.get();
        if (IsEnd(close)) {
            EndOfInput(token);
        } else if (close != '>') {
            SetError(token, "Invalid XML tag end sequence");
        } else {
            token.theToken = END_ELEMENT;
            token.theTokenString = theOpenElement;
            theInStartTag = false;
        }
    } else {
        theStream.unget();
        ReadAttribute(token);
    }
}

void XMLParser::ReadAttribute(TokenInfo& token) {
    XMLName name;
    name.Read(theStream);
    // The character after the name is consumed even when the name is empty,
    // so that a stray character cannot stop the reader for good.
    const int c = theStream.get();
    if (IsEnd(c)) {
        EndOfInput(token);
        return;
    }
    if (name.empty()) {
        SetError(token, "Empty XML tag name");
        return;
    }
    token.theTokenString = name;
    if (c != '=') {
        theStream.unget();
        token.theToken = ATTRIBUTE;
        return;
    }
    XMLString value;
    value.Read(theStream);
    // A value that runs to the end of input (unquoted, or its closing quote
    // missing) may be cut short: it assigns nothing.
    if (EndOfInput(token)) {
        return;
    }
    token.theToken = ATTRIBUTE_VALUE_PAIR;
    token.theTokenValue = value;
}

bool XMLParser::SkipMarkup(char& candidate) {
    int c = theStream.get();
    while (c == '<') {
        const int next = theStream.get();
        if (IsEnd(next)) {
            return false;
        }
        bool skipped = false;
        if (next == '?') {
            // The opening question mark does not count, so "<?>" stays open.
            skipped = SkipUntilAfterRun(theStream, '?', 1, '>');
        } else if (next == '!') {
            skipped = SkipDeclaration(theStream);
        } else {
            theStream.unget();
            break;
        }
        if (!skipped) {
            return false;
        }
        c = theStream.get();
    }
    if (IsEnd(c)) {
        return false;
    }
    candidate = static_cast<char>(c);
    return true;
}

void XMLParser::SetError(TokenInfo& token, const char* message) {
    token.theToken = ERROR;
    token.theTokenString = message;
    token.theTokenValue.clear();
    // Nothing more is read until the reader clears the error.
    theStream.setstate(std::ios::failbit);
}

bool XMLParser::EndOfInput(TokenInfo& token) {
    if (!theStream.fail()) {
        return false;
    }
    token.theToken = theStream.eof() ? END_DOC : ERROR;
    token.theTokenString.clear();
    token.theTokenValue.clear();
    return true;
}

namespace {

struct QueryEntity {
    const char* text;
    XMLQueryStringParser::TokenKind kind;
};

const QueryEntity theQueryEntities[] = {
    {"&query_item;", XMLQueryStringParser::QUERY},
    {"&query;", XMLQueryStringParser::QUERY_CONTEXT},
    {"&query_context;", XMLQueryStringParser::QUERY_CONTEXT},
    {"&query_changes_item;", XMLQueryStringParser::QUERY_CHANGES},
    {"&query_changes;", XMLQueryStringParser::QUERY_CHANGES_CONTEXT},
    {"&query_changes_context;", XMLQueryStringParser::QUERY_CHANGES_CONTEXT},
    {"&query_doctype_item;", XMLQueryStringParser::QUERY_DOCTYPE},
    {"&query_doctype;", XMLQueryStringParser::QUERY_DOCTYPE_CONTEXT},
    {"&query_doctype_context;", XMLQueryStringParser::QUERY_DOCTYPE_CONTEXT},
};

XMLQueryStringParser::TokenKind QueryKind(const std::string& entity) {
    for (const QueryEntity& known : theQueryEntities) {
        if (entity == known.text) {
            return known.kind;
        }
    }
    return XMLQueryStringParser::ERROR;
}

}  // namespace

XMLQueryStringParser::XMLQueryStringParser(const std::string& text) : theString(text) {}

XMLQueryStringParser::TokenKind XMLQueryStringParser::GetNextToken() {
    if (theAtStart) {
        theAtStart = false;
        return theToken;
    }
    if (thePos >= theString.size()) {
        theToken = END_STRING;
        theTokenString.clear();
        return theToken;
    }
    const std::string::size_type query = theString.find("&query", thePos);
    const std::string::size_type semicolon =
        query == std::string::npos ? std::string::npos : theString.find(';', query);
    if (semicolon == std::string::npos) {
        // No complete entity ahead: the rest is one piece.
        TakePiece(theString.size());
    } else if (query == thePos) {
        theTokenString = theString.substr(query, semicolon - query + 1);
        thePos = semicolon + 1;
        theToken = QueryKind(theTokenString);
    } else {
        TakePiece(query);
    }
    return theToken;
}

void XMLQueryStringParser::TakePiece(std::string::size_type end) {
    const std::string piece = theString.substr(thePos, end - thePos);
    thePos = end;
    // A piece wholly in braces describes a type rather than a value.
    if (piece.size() >= 2 && piece.front() == '{' && piece.back() == '}') {
        theToken = DOCTYPE;
        theTokenString = piece.substr(1, piece.size() - 2);
    } else {
        theToken = STRING;
        theTokenString = piece;
    }
}
