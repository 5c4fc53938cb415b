#include "configurable/xml_parser.h"

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

typedef std::vector<std::string> Tokens;

std::string Describe(const XMLParser& parser) {
    static const char* const names[] = {"START",  "END",       "ATTR",    "PAIR",
                                        "STRING", "START_DOC", "END_DOC", "ERROR"};
    std::string text =
        std::string(names[parser.GetCurrToken()]) + "(" + parser.GetTokenString() + ")";
    if (!parser.GetTokenValue().empty()) {
        text += "(" + parser.GetTokenValue() + ")";
    }
    return text;
}

struct Document {
    const char* xml;
    // Tokens after START_DOC; "skip" and "clear" call SkipElement and
    // ClearError at that point.
    Tokens tokens;
};

const Document theDocuments[] = {
    {"<tagname attr1 attr2=\"attr value string\">string</tagname>",
     {"START(tagname)", "ATTR(attr1)", "PAIR(attr2)(attr value string)", "STRING(string)",
      "END(tagname)", "END_DOC()"}},
    {"<tagname attr1=\"val1\" attr2='val2' attr3/><tag2></tag2><tag3/>",
     {"START(tagname)", "PAIR(attr1)(val1)", "PAIR(attr2)(val2)", "ATTR(attr3)", "END(tagname)",
      "START(tag2)", "END(tag2)", "START(tag3)", "END(tag3)", "END_DOC()"}},
    {"< badtagname>just some junk</badtagname><goodstuff/>",
     {"ERROR(Empty XML tag name)", "skip", "START(goodstuff)", "END(goodstuff)", "END_DOC()"}},
    {"<badtag/ >just some junk", {"START(badtag)", "ERROR(Invalid XML tag end sequence)"}},
    {"<badendtag>just some junk</badendtag >",
     {"START(badendtag)", "STRING(just some junk)", "ERROR(Invalid XML tag end sequence)"}},
    {"some string stuff to start with <tag> some tag stuff </tag> end string stuff",
     {"STRING(some string stuff to start with)", "START(tag)", "STRING(some tag stuff)", "END(tag)",
      "STRING(end string stuff)", "END_DOC()"}},
    {"<?xml version stuff?><realtag1/><!--<faketag>some stuff in the comment</faketag>-->"
     "<realtag2/><!ENTITY name><realtag3/>",
     {"START(realtag1)", "END(realtag1)", "START(realtag2)", "END(realtag2)", "START(realtag3)",
      "END(realtag3)", "END_DOC()"}},
    {"<realtag1>{document type information}</realtag1>   {some more doctype stuff}   ",
     {"START(realtag1)", "STRING({document type information})", "END(realtag1)",
      "STRING({some more doctype stuff})", "END_DOC()"}},
    {"<!--> <a/> --><!><b/>", {"START(b)", "END(b)", "END_DOC()"}},
    {"<a b =\"x\">", {"START(a)", "ATTR(b)", "ERROR(Empty XML tag name)"}},
    {"<a <b>", {"START(a)", "ERROR(Cannot start new element inside start tag)"}},
    {"<a>>b</a>",
     {"START(a)", "ERROR(Invalid '>' character outside XML tags)", "clear", "STRING(b)", "END(a)",
      "END_DOC()"}},
    {"<a><b>x</b><c/></a><d/>", {"START(a)", "skip", "START(d)", "END(d)", "END_DOC()"}},
    // Input that ends inside a construct: the tokens before it, then END_DOC.
    {"<a", {"END_DOC()"}},
    {"<r><", {"START(r)", "END_DOC()"}},
    {"<r></a", {"START(r)", "END_DOC()"}},
    {"<a/", {"START(a)", "END_DOC()"}},
    {"<r><!", {"START(r)", "END_DOC()"}},
    {"<r><!-- never closed", {"START(r)", "END_DOC()"}},
    {"<r><?", {"START(r)", "END_DOC()"}},
    {"<a b", {"START(a)", "END_DOC()"}},
    {"<a b=", {"START(a)", "END_DOC()"}},
    {"<a b=x", {"START(a)", "END_DOC()"}},
    {"<a b=\"x", {"START(a)", "END_DOC()"}},
    {"<a b='x", {"START(a)", "END_DOC()"}},
    {"<a b=\"x\"", {"START(a)", "PAIR(b)(x)", "END_DOC()"}},
    {"<r>text", {"START(r)", "STRING(text)", "END_DOC()"}},
};

// Reads the document's tokens after START_DOC, checks that each can be
// stepped back over and read again, and that the last one repeats.
void ExpectTokens(const Document& doc) {
    std::istringstream in(doc.xml);
    XMLParser parser(in);
    ASSERT_EQ(XMLParser::START_DOC, parser.GetCurrToken());
    ASSERT_EQ(XMLParser::START_DOC, parser.GetNextToken());
    // Once an error was cleared, stepping back would stop at it again.
    bool recovered = false;
    Tokens read;
    for (const std::string& expected : doc.tokens) {
        if (expected == "skip" || expected == "clear") {
            if (expected == "skip") parser.SkipElement();
            if (expected == "clear") parser.ClearError();
            recovered = true;
            read.push_back(expected);
            continue;
        }
        const XMLParser::TokenKind kind = parser.GetNextToken();
        EXPECT_EQ(kind, parser.GetCurrToken()) << doc.xml;
        read.push_back(Describe(parser));
        if (recovered) continue;
        parser.UngetToken();
        EXPECT_EQ(kind, parser.GetNextToken()) << doc.xml;
        EXPECT_EQ(read.back(), Describe(parser)) << doc.xml;
    }
    EXPECT_EQ(doc.tokens, read) << doc.xml;
    // END_DOC repeats and an error sticks until it is cleared.
    parser.GetNextToken();
    EXPECT_EQ(read.back(), Describe(parser)) << doc.xml;
}

}  // namespace

TEST(XmlParser, TokenizesDocuments) {
    for (const Document& doc : theDocuments) {
        ExpectTokens(doc);
    }
}

TEST(XmlQueryString, SplitsTextIntoQueriesAndPieces) {
    const struct {
        const char* text;
        Tokens tokens;
    } cases[] = {
        {"&query_item;", {"QUERY(&query_item;)"}},
        {"This is a &query_item; string",
         {"STRING(This is a )", "QUERY(&query_item;)", "STRING( string)"}},
        {"&query; at the beginning", {"QUERY_CONTEXT(&query;)", "STRING( at the beginning)"}},
        {"at the end &query_changes_context;",
         {"STRING(at the end )", "QUERY_CHANGES_CONTEXT(&query_changes_context;)"}},
        {"an illegal &query string", {"STRING(an illegal &query string)"}},
        {"&query_changes_item; and then an error &query_junk; query",
         {"QUERY_CHANGES(&query_changes_item;)", "STRING( and then an error )",
          "ERROR(&query_junk;)", "STRING( query)"}},
        {"{doctype information}", {"DOCTYPE(doctype information)"}},
        {"begin {doctype information}", {"STRING(begin {doctype information})"}},
        {"{doctype information} end", {"STRING({doctype information} end)"}},
        {"&query_context;&query_changes;&query_doctype;&query_doctype_context;"
         "&QUERY;&query_doctype_item;{}",
         {"QUERY_CONTEXT(&query_context;)", "QUERY_CHANGES_CONTEXT(&query_changes;)",
          "QUERY_DOCTYPE_CONTEXT(&query_doctype;)",
          "QUERY_DOCTYPE_CONTEXT(&query_doctype_context;)", "STRING(&QUERY;)",
          "QUERY_DOCTYPE(&query_doctype_item;)", "DOCTYPE()"}},
        {"", {}},
    };
    static const char* const names[] = {"QUERY",         "QUERY_CONTEXT",
                                        "QUERY_CHANGES", "QUERY_CHANGES_CONTEXT",
                                        "QUERY_DOCTYPE", "QUERY_DOCTYPE_CONTEXT",
                                        "STRING",        "DOCTYPE",
                                        "START_STRING",  "END_STRING",
                                        "ERROR"};
    for (const auto& c : cases) {
        XMLQueryStringParser parser(c.text);
        EXPECT_EQ(XMLQueryStringParser::START_STRING, parser.GetCurrToken());
        EXPECT_EQ(XMLQueryStringParser::START_STRING, parser.GetNextToken());
        Tokens read;
        while (parser.GetNextToken() != XMLQueryStringParser::END_STRING && read.size() < 20) {
            read.push_back(std::string(names[parser.GetCurrToken()]) + "(" +
                           parser.GetTokenString() + ")");
        }
        EXPECT_EQ(c.tokens, read) << c.text;
        EXPECT_EQ("", parser.GetTokenString());
        EXPECT_EQ(XMLQueryStringParser::END_STRING, parser.GetNextToken());
    }
}
