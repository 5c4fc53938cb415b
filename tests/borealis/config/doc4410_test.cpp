#include "borealis/config/doc4410.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

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

// <norvance><vela><a><b>content</b></a></vela></norvance> for the path a/b.
std::string InVela(const std::vector<std::string>& path, const std::string& content) {
    std::string request = "<norvance><vela>";
    for (const std::string& name : path) request += "<" + name + ">";
    request += content;
    for (auto name = path.rbegin(); name != path.rend(); ++name) request += "</" + *name + ">";
    return request + "</vela></norvance>";
}

std::string Value(Doc4410& doc, const std::vector<std::string>& path) {
    return Ask(doc, InVela(path, "&query_item;"));
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

TEST(Doc4410, ReadOnlyElementsIgnoreAndBoundedNumbersClampWrites) {
    const struct { std::vector<std::string> path; std::string written, stored; } cases[] = {
        {{"box", "usb", "data", "seconds"}, "false", "true"},
        {{"box", "output", "data", "nanoseconds"}, "false", "true"},
        {{"box", "usb", "data", "chk"}, "false", "true"},
        {{"box", "usb", "data", "msec"}, "true", "true"},
        {{"cfg", "linelock", "laserblock", "temp"}, "60", "50"},
        {{"cfg", "dac3", "set"}, "-10", "-5"},
        {{"cfg", "heater", "top", "deltat"}, "7.5", "5"},
        {{"cfg", "sdmaddress"}, "16", "15"},
        {{"cfg", "spinmirror", "duration"}, "301", "300"},
        {{"factory", "sampleacoffset"}, "-40000", "-32768"},
        {{"factory", "samplegain"}, "-1", "0"},
        {{"factory", "rssidropthresh"}, "101", "100"},
        {{"factory", "pzero"}, "-1e6", "-1e+06"},
    };
    for (const auto& c : cases) {
        Doc4410 doc;
        EXPECT_EQ(Ask(doc, InVela(c.path, c.written)), "") << c.path.back();
        EXPECT_EQ(Value(doc, c.path), c.stored) << c.path.back();
    }
}

TEST(Doc4410, RateAcceptsExactlyItsOptions) {
    Doc4410 doc;
    const std::pair<const char*, int> rates[] = {{"0", 0}, {"1", 1}, {"2", 2}, {"5", 5}, {"10", 10}, {"20", 20}, {"40", 40}};
    for (const auto& rate : rates) {
        EXPECT_EQ(Ask(doc, InVela({"output", "rate"}, rate.first)), "");
        EXPECT_EQ(Value(doc, {"output", "rate"}), rate.first);
        EXPECT_EQ(doc.vela.output.rate.number(), rate.second);
    }
    for (const char* text : {"3", "4O", "fast", "400"}) {
        EXPECT_EQ(Ask(doc, InVela({"output", "rate"}, text)),
                  std::string("<Error Param=\"rate\">invalid option: ") + text + "\n</Error>");
        EXPECT_EQ(doc.vela.output.rate.number(), 40);
    }
}

TEST(Doc4410, SplitNumberIsTheIntervalInSeconds) {
    Doc4410 doc;
    EXPECT_EQ(doc.vela.box.usb.split.number(), 0);
    EXPECT_EQ(Ask(doc, InVela({"box", "usb", "split"}, "1440")), "");
    EXPECT_EQ(doc.vela.box.usb.split.number(), 86400);
}

TEST(Doc4410, SerialNumberShowsTheFactorySerialNumber) {
    Doc4410 doc;
    EXPECT_EQ(Ask(doc, InVela({"factory", "serialnumber"}, "ch4-0042")), "");
    EXPECT_EQ(Value(doc, {"serialnumber"}), "ch4-0042");

    EXPECT_EQ(Ask(doc, InVela({"serialnumber"}, "ch4-9999")), "");
    EXPECT_EQ(Value(doc, {"serialnumber"}), "ch4-0042");
    EXPECT_EQ(doc.vela.factory.serialnumber.value(), "ch4-0042");
}

TEST(ConfigCfg, LooksUpAuxiliariesAndDacsByNumber) {
    ConfigCfg cfg;
    EXPECT_EQ(cfg.aux(1).name(), "aux1");
    EXPECT_EQ(cfg.aux(8).name(), "aux8");
    EXPECT_EQ(cfg.dac(1).name(), "dac1");
    EXPECT_EQ(cfg.dac(6).src.value_text(), "ch4");

    for (int number : {0, 9, -1})
        EXPECT_EQ(ErrorText([&] { cfg.aux(number); }), "Invalid Auxilliary: " + std::to_string(number));
    for (int number : {0, 7})
        EXPECT_EQ(ErrorText([&] { cfg.dac(number); }), "Invalid Dac: " + std::to_string(number));
}

TEST(ConfigCalRecord, AssignmentCopiesValuesAndFlags) {
    ConfigCalRecord source(Timestamp(1000.0), "CH4 Zero", 0.25f, 1.5f);
    source.set_changed(false);
    ConfigCalRecord target("entry");
    ASSERT_TRUE(target.has_changed());

    target = source;
    EXPECT_EQ(target.name(), "entry");
    EXPECT_EQ(target.time.value().get(), 1000.0);
    EXPECT_EQ(target.type.value(), "CH4 Zero");
    EXPECT_EQ(target.ch4zero.value(), 0.25f);
    EXPECT_EQ(target.ch4span.value(), 1.5f);
    EXPECT_FALSE(target.has_changed());
    EXPECT_FALSE(target.type.has_changed());
}

TEST(ConfigCalHistory, ReadsRecordsAndAppends) {
    Doc4410 doc;
    EXPECT_EQ(Ask(doc, InVela({"cal", "history"},
                              "<record><time>2012-06-01 13:45:07</time><type>CH4 Zero</type></record>")),
              "");
    ConfigCalHistory& history = doc.vela.cal.history;
    ASSERT_EQ(history.size(), 1u);
    EXPECT_EQ(history.at(0).type.value(), "CH4 Zero");
    EXPECT_EQ(history.at(0).ch4span.value(), 1.0f);

    history.append(Timestamp(5.0), "CH4 Span: 2.5 ppm", 0.25f, 1.25f);
    EXPECT_EQ(Value(doc, {"cal", "history"}),
              "<record><time>2012-06-01 13:45:07</time><type>CH4 Zero</type><ch4zero>0</ch4zero>"
              "<ch4span>1</ch4span></record><record><time>1989-01-01 00:00:05</time>"
              "<type>CH4 Span: 2.5 ppm</type><ch4zero>0.25</ch4zero><ch4span>1.25</ch4span></record>");
}

}  // namespace
