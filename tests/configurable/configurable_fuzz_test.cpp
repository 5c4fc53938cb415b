#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/configurable/session.h"
#include "tests/configurable/test_tree.h"
#include "tests/support/error_text.h"

namespace {

// Bits of XML that edits insert, so that inputs stay close to requests.
const char* const FRAGMENTS[] = {"<",
                                 ">",
                                 "/",
                                 "=",
                                 "\"",
                                 "&",
                                 ";",
                                 "{",
                                 " ",
                                 "a",
                                 "<L>",
                                 "</L>",
                                 "<d><e><g>",
                                 "</g></e></d>",
                                 "<dog ",
                                 "sticky",
                                 "/>",
                                 "&query;",
                                 "&query_item;",
                                 "&query_changes;",
                                 "&query_doctype;",
                                 "&query_junk;",
                                 "<!--",
                                 "<?",
                                 "inf"};

// One to four edits of a request: insert a fragment, erase, overwrite a byte
// or cut the text short.
std::string Mutate(std::string text, std::mt19937& random) {
    auto below = [&random](std::size_t limit) { return random() % (limit + 1); };
    for (auto edits = 1 + below(3); edits > 0; --edits) {
        const std::size_t at = below(text.size());
        switch (below(3)) {
        case 0: text.insert(at, FRAGMENTS[below(std::size(FRAGMENTS) - 1)]); break;
        case 1: text.erase(at, below(4)); break;
        case 2:
            if (at < text.size()) text[at] = static_cast<char>(below(255));
            break;
        default: text.resize(at); break;
        }
    }
    return text;
}

// Mutated session requests neither hang nor crash the tree; only a tree that
// throws errors throws, and only Configurable::Error.
TEST(ConfigurableSmoke, SurvivesMutatedRequests) {
    TestTree answering, throwing;
    throwing.L.set_throw_errors(true);
    std::mt19937 random(20121123);
    for (std::size_t i = 0; i < 1000; ++i) {
        const std::string text = Mutate(SESSION[i % std::size(SESSION)].request, random);
        EXPECT_EQ(ErrorText([&] { Ask(answering.L, text); }), "") << text;
        const std::string error = ErrorText([&] { Ask(throwing.L, text); });
        EXPECT_TRUE(error.empty() || error.rfind("XML error in item \"", 0) == 0)
            << error << " on: " << text;
    }
}

}  // namespace
