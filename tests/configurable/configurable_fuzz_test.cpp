#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "configurable/xml_parser.h"
#include "tests/configurable/session.h"
#include "tests/configurable/test_tree.h"

namespace {

const int INPUT_COUNT = 100000;
const std::size_t MAX_INPUT_LENGTH = 160;

// Bits of XML that mutations insert, so that inputs stay close to requests.
const char* const FRAGMENTS[] = {
    "<", ">", "/", "=", "\"", "'", "&", ";", "{", "}", " ", "\t", "\n", "L", "a", "g", "x",
    "0", "1", ".", "-", "!", "?", "<L>", "</L>", "<a>", "</a>", "<d><e><g>", "</g></e></d>",
    "<dyn><v>", "</v></dyn>", "<dog ", "pitch=\"", "sticky", "/>", "&query;", "&query_item;",
    "&query_changes;", "&query_changes_item;", "&query_doctype;", "&query_doctype_item;",
    "&query_junk;", "&amp;", "&lt;", "<!--", "-->", "<?", "?>", "<!X>", "inf", "nan", "1e99",
    "<lunch>", "tire", "</lunch>", "<attic>", "</attic>",
};

std::vector<std::string> SeedRequests() {
    std::vector<std::string> seeds;
    for (const SessionStep& step : SESSION) seeds.push_back(step.request);
    seeds.push_back("<L><dog sticky pitch=\"&query_item;21&query_item;\">1234.5</dog><dog &query_item;/></L>");
    seeds.push_back("<L><dyn><val>1</val><val>2</val><val>error</val><val>4</val></dyn></L>");
    seeds.push_back("<?xml version stuff?><!--c--><L><a>1</a></L>");
    return seeds;
}

// One to four random edits: insert a fragment, erase, overwrite a byte,
// repeat a piece, or cut the text short.
std::string Mutate(std::string text, std::mt19937& random) {
    auto below = [&random](std::size_t limit) { return random() % (limit == 0 ? 1 : limit); };
    for (auto n = 1 + below(4); n > 0; --n) {
        const std::size_t at = below(text.size() + 1);
        const bool inside = at < text.size();
        switch (below(5)) {
        case 0: text.insert(at, FRAGMENTS[below(sizeof FRAGMENTS / sizeof FRAGMENTS[0])]); break;
        case 1: if (inside) text.erase(at, 1 + below(4)); break;
        case 2: if (inside) text[at] = static_cast<char>(below(256)); break;
        case 3: if (inside) text.insert(at, text.substr(below(text.size()), 1 + below(12))); break;
        default: text.resize(at); break;
        }
    }
    if (text.size() > MAX_INPUT_LENGTH) text.resize(MAX_INPUT_LENGTH);
    return text;
}

// Pulls every token, recovering from errors the way the tree does.
bool Tokenize(const std::string& text) {
    std::istringstream in(text);
    XMLParser parser(in);
    for (int i = 0; i < 10000; ++i) {
        switch (parser.GetNextToken()) {
        case XMLParser::END_DOC:
            return true;
        case XMLParser::ERROR:
            if (i % 2) parser.SkipElement();
            else parser.ClearError();
            break;
        case XMLParser::START_ELEMENT:
            parser.SetMark();
            break;
        case XMLParser::END_ELEMENT:
            if (i % 3 == 0) parser.UngetToken();
            break;
        default:
            break;
        }
    }
    return false;
}

class FuzzRun {
public:
    FuzzRun() { theThrowing.L.set_throw_errors(true); }

    void Feed(const std::string& text) {
        ++theCount;
        if (!Tokenize(text)) ADD_FAILURE() << "tokenizer does not end on: " << text;
        XMLQueryStringParser pieces(text);
        while (pieces.GetNextToken() != XMLQueryStringParser::END_STRING) {
        }
        ProcessExpectingOnly(theAnswering.L, text, false);
        ProcessExpectingOnly(theThrowing.L, text, true);
    }

    int count() const { return theCount; }

private:
    // Only a throwing tree may throw, and only Configurable::Error.
    static void ProcessExpectingOnly(Configurable& root, const std::string& text, bool errors) {
        try {
            Process(root, text);
        } catch (const Configurable::Error& e) {
            if (!errors) ADD_FAILURE() << e.what() << " thrown on: " << text;
        } catch (const std::exception& e) {
            ADD_FAILURE() << e.what() << " thrown on: " << text;
        } catch (...) {
            ADD_FAILURE() << "unknown exception thrown on: " << text;
        }
    }

    TestTree theAnswering;
    TestTree theThrowing;
    int theCount = 0;
};

TEST(ConfigurableFuzz, SurvivesMutatedAndTruncatedRequests) {
    const std::vector<std::string> seeds = SeedRequests();
    FuzzRun run;
    for (const std::string& seed : seeds) {
        for (std::size_t length = 0; length <= seed.size(); ++length) {
            run.Feed(seed.substr(0, length));
        }
    }
    std::mt19937 random(20121123);
    for (std::size_t i = 0; run.count() < INPUT_COUNT; ++i) {
        run.Feed(Mutate(seeds[i % seeds.size()], random));
    }
    EXPECT_EQ(run.count(), INPUT_COUNT);
}

}  // namespace
