#ifndef CONFIGURABLE_XML_PARSER_H
#define CONFIGURABLE_XML_PARSER_H

#include <istream>
#include <list>
#include <string>

#include <boost/shared_ptr.hpp>

// Turns XML text into tokens that a reader pulls one at a time. Every token
// is kept for the parser's life, so the reader can step back, mark a
// position and return to it, and skip the rest of an element. Errors are
// tokens and stay current until ClearError().
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

    explicit XMLParser(std::istream& in);

    TokenKind GetNextToken();
    TokenKind GetCurrToken() const;
    const std::string& GetTokenString() const;
    const std::string& GetTokenValue() const;

    void UngetToken();
    void SetMark();
    Position GetMark() const;
    void SetMark(Position mark);
    void GotoMark();
    void ClearError();
    // Skips the rest of the element whose start tag was read last.
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

    explicit XMLQueryStringParser(const std::string& text);

    TokenKind GetNextToken();
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
