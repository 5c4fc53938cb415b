#ifndef CONFIGURABLE_XML_PARSER_H
#define CONFIGURABLE_XML_PARSER_H

#include <istream>
#include <list>
#include <string>

#include <boost/shared_ptr.hpp>

// Turns XML text into tokens that a reader pulls one at a time. Every token
// is kept for the parser's life, so the reader can step back, mark a
// position and return to it, and skip the rest of an element. Nothing here
// throws: malformed XML gives an ERROR token, which stays current (and the
// stream failed) until ClearError(); input that ends inside a construct gives
// END_DOC, and every read after END_DOC gives END_DOC again.
class XMLParser {
public:
    enum TokenKind {
        START_ELEMENT = 0,
        END_ELEMENT = 1,
        ATTRIBUTE = 2,
        ATTRIBUTE_VALUE_PAIR = 3,
        STRING = 4,
        START_DOC = 5,
        END_DOC = 6,
        ERROR = 7,
    };

    struct TokenInfo {
        TokenKind theToken = ERROR;
        std::string theTokenString;
        std::string theTokenValue;
    };
    typedef boost::shared_ptr<TokenInfo> TokenPtr;
    // A place in the list of tokens read so far, as the mark keeps it.
    typedef std::list<TokenPtr>::iterator Position;

    // Reads from `in` (not owned); the current token is START_DOC.
    explicit XMLParser(std::istream& in);

    // Moves to the next token, reading one when none is stored, and returns
    // its kind; returns ERROR again while the current token is an error.
    TokenKind GetNextToken();
    // The current token's kind, name or text, and attribute value; reads
    // nothing (a cleared error leaves an empty ERROR token current).
    TokenKind GetCurrToken() const;
    const std::string& GetTokenString() const;
    const std::string& GetTokenValue() const;

    // Steps back one token so that the next read returns it again; does
    // nothing at the first token.
    void UngetToken();
    // Marks the current token for GotoMark().
    void SetMark();
    // The marked position, for saving the mark around a nested reading.
    Position GetMark() const;
    // Marks a position that GetMark() gave.
    void SetMark(Position mark);
    // Makes the marked token current again; the next read replays from there.
    void GotoMark();
    // Clears the stream's error and end flags and moves past a current ERROR
    // token, so that reading goes on after it.
    void ClearError();
    // Skips the rest of the element whose start tag was read last, through
    // its end tag, clearing errors on the way; stops early at END_DOC.
    void SkipElement();

private:
    typedef std::list<TokenPtr> TokenList;

    const TokenInfo& CurrentToken() const;
    TokenPtr ReadToken();
    void ReadOutsideTag(TokenInfo& token);
    void ReadEndTag(TokenInfo& token);
    void ReadInsideTag(TokenInfo& token);
    void ReadAttribute(TokenInfo& token);
    bool SkipMarkup(char& candidate);
    void SetError(TokenInfo& token, const char* message);
    bool EndOfInput(TokenInfo& token);

    std::istream& theStream;
    TokenList theTokens;
    Position theCurrent;
    Position theMark;
    std::string theOpenElement;
    bool theInStartTag = false;
};

// Splits one piece of character data into plain text, query entities
// ("&query;", "&query_item;", ...) and type placeholders written in braces.
// Nothing here fails: an unknown "&query...;" entity is an ERROR token.
class XMLQueryStringParser {
public:
    enum TokenKind {
        QUERY = 0,
        QUERY_CONTEXT = 1,
        QUERY_CHANGES = 2,
        QUERY_CHANGES_CONTEXT = 3,
        QUERY_DOCTYPE = 4,
        QUERY_DOCTYPE_CONTEXT = 5,
        STRING = 6,
        DOCTYPE = 7,
        START_STRING = 8,
        END_STRING = 9,
        ERROR = 10,
    };

    // Splits a copy of `text`; the current token is START_STRING.
    explicit XMLQueryStringParser(const std::string& text);

    // Moves to the next piece and returns its kind: START_STRING first,
    // END_STRING (again and again) after the last piece.
    TokenKind GetNextToken();
    // The current piece's kind and text (the text between braces for DOCTYPE).
    TokenKind GetCurrToken() const { return theToken; }
    const std::string& GetTokenString() const { return theTokenString; }

private:
    void TakePiece(std::string::size_type end);

    std::string theString;
    std::string::size_type thePos = 0;
    TokenKind theToken = START_STRING;
    std::string theTokenString;
    bool theAtStart = true;
};

#endif
