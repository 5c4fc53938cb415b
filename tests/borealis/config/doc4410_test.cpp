#include "borealis/config/doc4410.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "tests/support/ask.h"
#include "tests/support/error_text.h"

namespace {

// A golden file holds exactly what the writer writes; the file ends with a
// line end for editors, the written document does not.
std::string Golden(const std::string& name) {
    std::ifstream in(std::string(BOREALIS_TEST_DATA_DIR) + "/borealis/config/golden/" + name);
    EXPECT_TRUE(in.is_open()) << name;
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (!text.empty() && text.back() == '\n') text.pop_back();
    return text;
}

TEST(Doc4410, FreshDocumentIsWrittenWithItsDefaults) {
    Doc4410 doc;
    std::ostringstream out;
    out << doc;
    EXPECT_EQ(out.str(), Golden("doc4410_defaults.xml"));
}

TEST(Doc4410, TypeDescriptionListsEveryElement) {
    Doc4410 doc;
    std::istringstream in("&query_doctype;");
    std::ostringstream out;  // indented, like the golden file
    doc.process(in, out);
    EXPECT_EQ(out.str(), Golden("doc4410_doctype.xml"));
}

TEST(Doc4410, AckAndErrorStayOutOfReadsAnswersAndDefaults) {
    Doc4410 doc;
    doc.vela.ack.set(false);
    doc.vela.error.set("last failure");
    doc.vela.output.status.set(true);

    doc.vela.set_default();
    EXPECT_FALSE(doc.vela.ack.value());
    EXPECT_EQ(doc.vela.error.value(), "last failure");
    EXPECT_FALSE(doc.vela.output.status.value());

    EXPECT_EQ(Ask(doc, "<norvance><vela><ack>true</ack><error>x</error></vela></norvance>"), "");
    EXPECT_FALSE(doc.vela.ack.value());
    EXPECT_EQ(doc.vela.error.value(), "last failure");

    std::string answer = Ask(doc, "<norvance><vela>&query_item;</vela></norvance>");
    EXPECT_EQ(answer.find("<ack"), std::string::npos);
    EXPECT_EQ(answer.find("<error"), std::string::npos);
    EXPECT_EQ(answer.rfind("<ver/><name/>", 0), 0u) << answer;
}

TEST(ConfigCfg, LooksUpAuxiliariesAndDacsByNumber) {
    ConfigCfg cfg;
    EXPECT_EQ(cfg.aux(1).name(), "aux1");
    EXPECT_EQ(cfg.aux(8).name(), "aux8");
    EXPECT_EQ(cfg.dac(1).name(), "dac1");
    EXPECT_EQ(cfg.dac(6).src.value_text(), "ch4");

    for (int number : {0, 9, -1})
        EXPECT_EQ(ErrorText([&] { cfg.aux(number); }),
                  "Invalid Auxilliary: " + std::to_string(number));
    for (int number : {0, 7})
        EXPECT_EQ(ErrorText([&] { cfg.dac(number); }), "Invalid Dac: " + std::to_string(number));
}

}  // namespace
