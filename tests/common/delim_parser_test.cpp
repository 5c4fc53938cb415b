#include "common/delim_parser.h"

#include <gtest/gtest.h>

#include <ctime>
#include <string>
#include <vector>

namespace {

// The processor time `work` takes.
template <typename Work>
std::clock_t ProcessorTime(Work work) {
    const std::clock_t start = std::clock();
    work();
    return std::clock() - start;
}

}  // namespace

TEST(DelimParser, CutsAppendedTextAtTheEarliestDelimiter) {
    struct Case {
        std::vector<std::string> delimiters, chunks, messages;
        std::string rest;
    } cases[] = {
        {{"\n"}, {"abc\ndef", "\n"}, {"abc\n", "def\n"}, ""},
        {{"</endtag>", "</another>", "</last>"},
         {"This is the first line</endtag>", "This is the second", "And the </endtag> third",
          "The fourth line here\n",
          "</endtag>This is the sixth</endtag>And the seventh\nline is two",
          "line together</endtag>The eighth uses another delim</another>The ninth ",
          "yet another</last>The tenth</another>The eleventh</endtag>"
          "This should never show up without an end tag!"},
         {"This is the first line</endtag>", "This is the secondAnd the </endtag>",
          " thirdThe fourth line here\n</endtag>", "This is the sixth</endtag>",
          "And the seventh\nline is twoline together</endtag>",
          "The eighth uses another delim</another>", "The ninth yet another</last>",
          "The tenth</another>", "The eleventh</endtag>"},
         "This should never show up without an end tag!"},
    };
    for (const Case& c : cases) {
        DelimParser parser(c.delimiters[0]);
        for (std::size_t i = 1; i < c.delimiters.size(); ++i) parser.AddDelimiter(c.delimiters[i]);
        std::vector<std::string> messages;
        std::string message, found;
        for (const std::string& chunk : c.chunks) {
            parser.Append(chunk);
            while (parser.GetMessage(message, found)) {
                messages.push_back(message);
                EXPECT_EQ(message.substr(message.size() - found.size()), found);
            }
        }
        EXPECT_EQ(messages, c.messages) << c.delimiters[0];
        EXPECT_EQ(parser.GetBuffer(), c.rest) << c.delimiters[0];
    }
}

TEST(DelimParser, LongLineWithoutDelimiterCostsLinearTime) {
    // 32 MB without a delimiter, arriving in reads of 4096 bytes. Searched
    // once, each byte costs about what collecting it costs; searched again
    // on every read, the whole costs a hundred times that and more. Timed
    // against the collecting on the same machine, emulated ones included.
    const std::string read(4096, 'x');
    const int reads = 8192;
    const std::clock_t collect = ProcessorTime([&] {
        std::string buffer;
        for (int i = 0; i < reads; ++i) {
            buffer += read;
            ASSERT_EQ(buffer.find('\n', buffer.size() - read.size()), std::string::npos);
        }
    });
    DelimParser parser("\n");
    std::string message;
    const std::clock_t parse = ProcessorTime([&] {
        for (int i = 0; i < reads; ++i) {
            parser.Append(read);
            ASSERT_FALSE(parser.GetMessage(message));
        }
    });
    EXPECT_LT(parse, 10 * collect + CLOCKS_PER_SEC / 20);
}
