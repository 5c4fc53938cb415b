#include "common/delim_parser.h"

#include <gtest/gtest.h>

#include <ctime>
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

TEST(DelimParser, FindsDelimitersInTextSearchedBefore) {
    // The longer delimiter straddles two appends by more than the shorter's
    // length.
    DelimParser parser("</endtag>");
    parser.AddDelimiter("</a>");
    std::string message;
    parser.Append("x</endta");
    EXPECT_FALSE(parser.GetMessage(message));
    parser.Append("g>y");
    ASSERT_TRUE(parser.GetMessage(message));
    EXPECT_EQ(message, "x</endtag>");

    // A delimiter added later is looked for from the start.
    DelimParser colon(":");
    colon.Append("a;b");
    EXPECT_FALSE(colon.GetMessage(message));
    colon.AddDelimiter(";");
    ASSERT_TRUE(colon.GetMessage(message));
    EXPECT_EQ(message, "a;");
}

TEST(DelimParser, LongLineWithoutDelimiterCostsLinearTime) {
    // 32 MB in reads of 4096 bytes takes some 0.05 s of processor time when
    // each byte is searched once, and seconds when the buffer is searched
    // again on every read.
    for (const char* second : {"", "</endtag>"}) {
        DelimParser parser("\n");
        if (*second) parser.AddDelimiter(second);
        const std::string read(4096, 'x');
        std::string message;
        const std::clock_t start = std::clock();
        for (int i = 0; i < 8192; ++i) {
            parser.Append(read);
            ASSERT_FALSE(parser.GetMessage(message));
        }
        EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC / 2) << second;
    }
}
