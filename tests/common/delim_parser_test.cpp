#include "common/delim_parser.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> Drain(DelimParser& parser) {
    std::vector<std::string> messages;
    std::string message;
    while (parser.GetMessage(message)) messages.push_back(message);
    return messages;
}

}  // namespace

TEST(DelimParser, NewlineModeKeepsTheUnfinishedLine) {
    DelimParser parser("\n");
    parser.Append("abc\ndef");
    EXPECT_EQ(Drain(parser), std::vector<std::string>{"abc\n"});
    EXPECT_EQ(parser.GetBuffer(), "def");
    parser.Append("\n");
    std::string message, found;
    ASSERT_TRUE(parser.GetMessage(message, found));
    EXPECT_EQ(message, "def\n");
    EXPECT_EQ(found, "\n");
    EXPECT_FALSE(parser.GetMessage(message));
}

TEST(DelimParser, GeneralModeCutsAtTheEarliestOfSeveralDelimiters) {
    DelimParser parser("</endtag>");
    parser.AddDelimiter("</another>");
    parser.AddDelimiter("</last>");
    const char* chunks[] = {
        "This is the first line</endtag>",
        "This is the second",
        "And the </endtag> third",
        "The fourth line here\n",
        "</endtag>This is the sixth</endtag>And the seventh\nline is two",
        "line together</endtag>The eighth uses another delim</another>The ninth ",
        "yet another</last>The tenth</another>The eleventh</endtag>"
        "This should never show up without an end tag!",
    };
    std::vector<std::string> messages;
    for (const char* chunk : chunks) {
        parser.Append(chunk);
        for (const std::string& message : Drain(parser)) messages.push_back(message);
    }
    const std::vector<std::string> expected = {
        "This is the first line</endtag>",
        "This is the secondAnd the </endtag>",
        " thirdThe fourth line here\n</endtag>",
        "This is the sixth</endtag>",
        "And the seventh\nline is twoline together</endtag>",
        "The eighth uses another delim</another>",
        "The ninth yet another</last>",
        "The tenth</another>",
        "The eleventh</endtag>",
    };
    EXPECT_EQ(messages, expected);
    EXPECT_EQ(parser.GetBuffer(), "This should never show up without an end tag!");
}

TEST(DelimParser, DelimiterAddedFirstWinsATie) {
    struct Case {
        std::vector<std::string> delimiters;
        std::string message, found;
    } cases[] = {
        {{"ab", "a"}, "xab", "ab"},
        {{"a", "ab"}, "xa", "a"},
        {{"\n", "b"}, "xab", "b"},  // "\n" with a second delimiter is general
        {{"", "b"}, "xab", "b"},    // an empty delimiter never matches
    };
    for (const Case& c : cases) {
        DelimParser parser(c.delimiters[0]);
        parser.AddDelimiter(c.delimiters[1]);
        parser.Append("xab\n");
        std::string message, found;
        ASSERT_TRUE(parser.GetMessage(message, found));
        EXPECT_EQ(message, c.message);
        EXPECT_EQ(found, c.found);
    }
}
