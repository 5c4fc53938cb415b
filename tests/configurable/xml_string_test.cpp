#include "configurable/xml_string.h"

#include <iterator>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace {

std::string Written(const XMLString& value) {
    std::ostringstream out;
    value.Write(out);
    return out.str();
}

// What is left in the stream after a read, whatever state the read left.
std::string Rest(std::istream& in) {
    in.clear();
    return std::string(std::istreambuf_iterator<char>(in), {});
}

struct ReadCase {
    const char* text;
    const char* value;
    const char* rest;
};

}  // namespace

TEST(XmlString, WritesEscapedTextThatReadsBack) {
    const struct {
        const char* value;
        const char* text;
    } cases[] = {
        {"hello with spaces", "hello with spaces"},
        {"&", "&amp;"},
        {"&begin", "&amp;begin"},
        {"goodbye & &query;", "goodbye &amp; &query;"},
        {"tricky&", "tricky&amp;"},
        {"'lots of stuff '\"<>& to do", "&apos;lots of stuff &apos;&quot;&lt;&gt;&amp; to do"},
        {"&junk;", "&junk;"},
        {"&;", "&amp;;"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.text, Written(XMLString(c.value))) << c.value;
        std::istringstream in(c.text);
        XMLString read;
        read.Read(in);
        EXPECT_EQ(c.value, read) << c.text;
    }
}

TEST(XmlString, ReadStopsAtMarkupQuotesAndTrailingWhitespace) {
    const ReadCase cases[] = {
        {"Read up to tag </end_tag>", "Read up to tag", "</end_tag>"},
        {"<tag> the tag prevents reading anything", "", "<tag> the tag prevents reading anything"},
        {"\"A quoted 'string'\"", "A quoted 'string'", ""},
        {"'A quoted \"string\"'", "A quoted \"string\"", ""},
        {"A quoted \"string\"", "A quoted", "\"string\""},
        {"A quoted 'string'", "A quoted", "'string'"},
        {"'A quoted' string", "A quoted", " string"},
        {"\"A quoted\" string", "A quoted", " string"},
        {"AttrName='AttrValue'", "AttrName=", "'AttrValue'"},
        {"a & b", "a &b", ""},
        {" \t\n inner \t runs  kept \r\n<x>", "inner \t runs  kept", "<x>"},
        {"\"  keeps blanks  \"", "  keeps blanks  ", ""},
        {"\"a &amp; b<\" c", "a & b", "<\" c"},
        {"&unended<", "&unended", "<"},
        {"", "", ""},
    };
    for (const ReadCase& c : cases) {
        std::istringstream in(c.text);
        XMLString read("old value");
        read.Read(in);
        EXPECT_EQ(c.value, read) << c.text;
        EXPECT_EQ(c.rest, Rest(in)) << c.text;
    }
}

// A name is read from the very next character, and a name is written as the
// longest prefix of its value that a read would take.
TEST(XmlName, ReadsAndWritesOnlyTheNameAtTheStart) {
    const ReadCase cases[] = {
        {"name", "name", ""},
        {"&entity_name;", "&entity_name;", ""},
        {"&entity_name;with junk", "&entity_name;", "with junk"},
        {"name with spaces", "name", " with spaces"},
        {"attr=\"value\"", "attr", "=\"value\""},
        {"_na:me/>", "_na:me", "/>"},
        {":name<tag>", ":name", "<tag>"},
        {":name-with_dash<>", ":name-with_dash", "<>"},
        {"NORVANCE::tag31", "NORVANCE::tag31", ""},
        {"a1.b&c", "a1.b", "&c"},
        {".no-name", "", ".no-name"},
        {"<tag>not a name", "", "<tag>not a name"},
        {" name", "", " name"},
        {"9lives", "", "9lives"},
        {"", "", ""},
    };
    for (const ReadCase& c : cases) {
        std::istringstream in(c.text);
        XMLName read("old");
        read.Read(in);
        EXPECT_EQ(c.value, read) << c.text;
        EXPECT_EQ(c.rest, Rest(in)) << c.text;
        EXPECT_EQ(c.value, Written(XMLName(c.text))) << c.text;
    }
}
