// The scenario corpus: every tests/e2e/scenarios/<name>.scn is played against
// vela-sim and the daemon, and its transcript must equal <name>.out.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/e2e/scenario_runner.h"

namespace {

const std::string kScenarioDir = std::string(BOREALIS_TEST_DATA_DIR) + "/e2e/scenarios";
const std::string kScenarioExtension = ".scn";
const std::string kDisabled = "# disabled:";

std::vector<std::string> ScenarioNames() {
    std::vector<std::string> names;
    std::error_code missing;  // no scenarios then
    for (const auto& entry : std::filesystem::directory_iterator(kScenarioDir, missing))
        if (entry.path().extension() == kScenarioExtension) names.push_back(entry.path().stem());
    std::sort(names.begin(), names.end());
    return names;
}

bool ReadText(const std::string& path, std::string& text) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    text = content.str();
    return static_cast<bool>(in);
}

// BOREALIS_REGENERATE=1 writes the transcripts instead of comparing them.
bool Regenerating() {
    const char* value = std::getenv("BOREALIS_REGENERATE");
    return value && std::string(value) == "1";
}

// The line of `text` that holds position `at`.
std::string LineAt(const std::string& text, std::size_t at) {
    const std::size_t begin = at == 0 ? 0 : text.rfind('\n', at - 1) + 1;
    return text.substr(begin, text.find('\n', begin) - begin);
}

class Scenario : public testing::TestWithParam<std::string> {};

TEST_P(Scenario, GivesItsTranscript) {
    const std::string base = kScenarioDir + "/" + GetParam();
    std::string scenario, expected;
    ASSERT_TRUE(ReadText(base + kScenarioExtension, scenario)) << base + kScenarioExtension;
    // A scenario whose golden output the daemon does not give yet says why
    // in its first line; its .out is kept as reviewed, not regenerated.
    if (scenario.compare(0, kDisabled.size(), kDisabled) == 0)
        GTEST_SKIP() << scenario.substr(kDisabled.size(), scenario.find('\n') - kDisabled.size());
    ScenarioRunner runner;
    const std::string transcript = runner.Run(scenario);
    for (const std::string& problem : runner.Problems()) ADD_FAILURE() << problem;

    if (Regenerating()) {
        if (runner.Problems().empty()) std::ofstream(base + ".out", std::ios::binary) << transcript;
        return;
    }
    ASSERT_TRUE(ReadText(base + ".out", expected))
        << base << ".out is missing; BOREALIS_REGENERATE=1 writes it (tests/e2e/README.md)";
    // The first line that differs; regenerating and `git diff` show them all.
    const std::size_t at =
        std::mismatch(expected.begin(), expected.end(), transcript.begin(), transcript.end())
            .first -
        expected.begin();
    EXPECT_TRUE(transcript == expected)
        << base << ".out differs at line "
        << 1 + std::count(expected.begin(), expected.begin() + at, '\n') << ":\n-"
        << LineAt(expected, at) << "\n+" << LineAt(transcript, at);
}

// Test names are scenario names, so that a filter picks one scenario.
std::string TestName(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param;
    for (char& c : name)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return name;
}

INSTANTIATE_TEST_SUITE_P(Corpus, Scenario, testing::ValuesIn(ScenarioNames()), TestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Scenario);

}  // namespace
