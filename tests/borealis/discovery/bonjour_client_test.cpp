#include "borealis/discovery/bonjour_client.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/error_text.h"

namespace {

// Writes down every failure it is told about, and asks for it to be thrown
// when made `loud`.
class ErrorLog : public BonjourClientListener {
public:
    explicit ErrorLog(bool loud = false) : loud_(loud) {}
    bool HandleError(const std::string& message) override {
        messages.push_back(message);
        return loud_;
    }
    std::vector<std::string> messages;

private:
    bool loud_;
};

using Messages = std::vector<std::string>;

TEST(BonjourClient, ReportCodeNamesTheLibrarysErrors) {
    const struct {
        std::int32_t code;
        const char* message;  // nullptr: nothing reported
    } cases[] = {
        // The first, either side of the library's gap, the last, and beyond.
        {0, nullptr},
        {-65537, "Error registering: Unknown Error"},
        {-65545, "Error registering: Not Initialized"},
        {-65546, "Error registering"},  // a gap in the library's codes
        {-65547, "Error registering: Already Registered"},
        {-65559, "Error registering: Bad Time"},
        {-65560, "Error registering"},
        {1, "Error registering"},
    };
    for (const auto& c : cases) {
        ErrorLog log;
        BonjourClient client(&log);
        client.ReportCode("Error registering", c.code, false);
        EXPECT_EQ(log.messages, c.message ? Messages{c.message} : Messages{}) << c.code;
    }
}

TEST(BonjourClient, ThrowsOnlyWhenTheListenerAsksAndTheOperationAllows) {
    const char message[] = "Unable to register service: vela: Out of resources";
    const struct {
        bool has_listener, loud, throw_allowed;
        const char* thrown;
    } cases[] = {
        {false, false, true, ""},  // nobody is told
        {true, false, true, ""},   // the daemon's listener keeps it silent
        {true, true, true, message},
        {true, true, false, ""},  // found in a reply
    };
    for (const auto& c : cases) {
        ErrorLog log(c.loud);
        BonjourClient client(c.has_listener ? &log : nullptr);
        EXPECT_EQ(ErrorText([&] { client.Report(message, c.throw_allowed); }), c.thrown);
        EXPECT_EQ(log.messages, c.has_listener ? Messages{message} : Messages{});
    }
}

// Refused before the responder is asked.
TEST(BonjourClient, ReconfirmRefusesAnAddressThatIsNotDottedDecimal) {
    for (const char* text : {"", "10.0.0", "10.0.0.256", "10.0.0.1.5", "ten.0.0.1", "10.0.0.1 "}) {
        ErrorLog log(true);
        BonjourClient client(&log);
        EXPECT_EQ(ErrorText([&] { client.Reconfirm("vela-0042.local", text); }),
                  std::string("Unable to confirm: vela-0042.local: Invalid IP address: ") + text);
    }
}

TEST(TxtRecord, EncodesEntriesInKeyOrderEachAfterItsLength) {
    const std::string long_value(298, 'x');
    const struct {
        TxtMap txt;
        std::string record;
    } cases[] = {
        {{{"b", "2"}, {"a", "1"}}, std::string("\3a=1\3b=2")},
        {{{"", ""}, {"k", ""}}, std::string("\2k=")},  // "=" alone is left out
        {{{"k", long_value}},
         "\x2c"
         "k=" +
             long_value},  // 300 bytes: the length wraps
        {{}, ""},
    };
    for (const auto& c : cases) EXPECT_EQ(EncodeTxtRecord(c.txt), c.record);
}

}  // namespace
