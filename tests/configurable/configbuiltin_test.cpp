#include <gtest/gtest.h>

#include "configurable/config_time.h"
#include "configurable/configbuiltin.h"
#include "tests/configurable/test_tree.h"

namespace {

// A root "L" holding one leaf of each value class.
struct Leaves {
    ConfigurableComposite L{"L"};
    ConfigurableFloat free{"free", 0.1234f};
    ConfigurableFloat bounded{"bounded", 0, -5.5f, 5.5f, false};
    ConfigurableInteger count{"count", 3, -10, 10};
    ConfigurableInteger wide{"wide", 7};
    ConfigurableBool flag{"flag", false};
    ConfigurableString text{"text", "hello"};
    ConfigurableStringProxyReadOnly shown{"shown", text};
    ConfigurableMultipleChoice lunch{"lunch", &LunchOptions(), 0};
    ConfigurableTimestamp when{"when", Timestamp(0.0)};
    ConfigurableTime_HourMinutes at{"at", Timestamp(3600.0)};

    Leaves() {
        for (Configurable* leaf : std::vector<Configurable*>{&free, &bounded, &count, &wide, &flag,
                                                             &text, &shown, &lunch, &when, &at}) {
            L.add_child(leaf);
        }
        L.set_changed(false);
    }
};

struct Exchange {
    const char* request;
    const char* answer;
};

TEST(ConfigurableValues, ReadAndWriteTheirTextForms) {
    Leaves leaves;
    const Exchange exchanges[] = {
        {"<L><free>1.0&query_item;43.21 trailing&query_item;1234.5678&query_item;</free></L>",
         "1 43.21 1234.57"},
        {"<L><free>inf&query_item;-inf&query_item;nan&query_item;</free></L>", "inf -inf nan"},
        {"<L><free>junk&query_item;</free></L>",
         "<Error Param=\"free\">unable to read float</Error>nan"},
        {"<L><free>2&query_item; &query_item;</free><count>&query_item;</count></L>",
         "2<Error Param=\"free\">unable to read float</Error>3"},
        {"<L><bounded>inf&query_item;-inf&query_item;-1e30&query_item;2&query_item;</bounded></L>",
         "5.5 -5.5 -5.5 2"},
        {"<L><count>99&query_item;-99&query_item;</count><wide>-2147483648&query_item;</wide></L>",
         "10 -10 -2147483648"},
        {"<L><wide>2147483648</wide><wide>x</wide><wide>&query_item;</wide></L>",
         "<Error Param=\"wide\">unable to read integer</Error>"
         "<Error Param=\"wide\">unable to read integer</Error>-2147483648"},
        {"<L><flag>true&query_item;maybe&query_item;false&query_item;</flag></L>",
         "true<Error Param=\"flag\">invalid bool</Error>true false"},
        {"<L><text>two  words &amp; more</text><text>&query_item;</text></L>",
         "two  words &amp; more"},
        {"<L><text></text><text>   </text><text>&query_item;</text></L>", "two  words &amp; more"},
        {"<L><shown>bye</shown><shown>&query_item;</shown></L>", "two  words &amp; more"},
        {"<L><lunch>&query_item;banana&query_item;</lunch></L>", "apple banana"},
        {"<L><lunch>abc tire</lunch><lunch>&query_item;</lunch></L>",
         "<Error Param=\"lunch\">invalid option: abc tire\n</Error>banana"},
        {"<L><lunch>translate&lt;&gt;&amp;&apos;&quot;&query_item;</lunch></L>",
         "translate&lt;&gt;&amp;&apos;&quot;"},
        {"<L><when>2012-06-01 13:45&query_item;</when></L>", "2012-06-01 13:45:00"},
        {"<L><when>junk</when><when>&query_item;</when></L>",
         "<Error Param=\"when\">unable to read Timestamp\n</Error>2012-06-01 13:45:00"},
        {"<L><at>13:45&query_item;13-45&query_item;</at></L>",
         "13:45<Error Param=\"at\">unable to read time (should be HH:MM)\n</Error>13:45"},
        {"<L><at>:45</at><at>8:5&query_item;</at></L>",
         "<Error Param=\"at\">unable to read time (should be HH:MM)\n</Error>08:05"},
        {"<L><at> 25 : 00&query_item;</at></L>", "01:00"},
        // Beyond 32 bits the analyzer's long cannot hold the hours.
        {"<L><at>2147483648:00&query_item;</at></L>",
         "<Error Param=\"at\">unable to read time (should be HH:MM)\n</Error>"},
    };
    for (const Exchange& x : exchanges) EXPECT_EQ(Ask(leaves.L, x.request), x.answer) << x.request;
    EXPECT_EQ(leaves.lunch.value(), 5);
    EXPECT_EQ(leaves.at.value().get(), 90000.0);  // 25:00, not wrapped to a time of day
}

// Assigning the value a leaf holds (after clamping) marks nothing; another
// value marks it, and so does restoring a different default.
TEST(ConfigurableValues, MarkChangedOnlyOnARealChange) {
    Leaves leaves;
    const auto changes_after = [&leaves](const char* request) {
        leaves.L.set_changed(false);
        Ask(leaves.L, request);
        return Ask(leaves.L, "&query_changes_item;");
    };
    Ask(leaves.L, "<L><bounded>9</bounded><count>99</count></L>");  // clamped to 5.5 and 10
    EXPECT_EQ(changes_after("<L><free>0.1234</free><bounded>7</bounded><count>11</count>"
                            "<wide>7</wide><flag>false</flag><text>hello</text><lunch>apple</lunch>"
                            "<when>1989-01-01 00:00</when><at>01:00</at></L>"),
              "");
    EXPECT_EQ(changes_after("<L><free>1</free><wide>8</wide><flag>true</flag><text>bye</text>"
                            "<lunch>tire</lunch><when>2012-06-01 13:45</when><at>13:45</at></L>"),
              "<L><free>1</free><wide>8</wide><flag>true</flag><text>bye</text><lunch>tire</lunch>"
              "<when>2012-06-01 13:45:00</when><at>13:45</at></L>");
    for (const char* restored : {"<L><free>0.1234</free><bounded>0</bounded><count>3</count>"
                                 "<wide>7</wide><flag>false</flag><text>hello</text>"
                                 "<lunch>apple</lunch><when>1989-01-01 00:00:00</when>"
                                 "<at>01:00</at></L>",
                                 ""}) {
        leaves.L.set_changed(false);
        leaves.L.set_default();
        EXPECT_EQ(Ask(leaves.L, "&query_changes_item;"), restored);
    }
}

// The attribute set of dog, one request after the other.
TEST(ConfigurableAttributes, AnswerInStartTagsAndValues) {
    TestTree tree;
    const Exchange exchanges[] = {
        {"<L><dog &query_item;></dog></L>", "pitch=\"11.22\""},
        {"<L><dog pitch=\"&query_item;\"/></L>", "11.22"},
        {"<L><dog sticky/></L>", ""},
        {"<L><dog> &query; </dog></L>", "<L><dog sticky>88.11</dog></L>"},
        {"<L><dog &query; /></L>", "<L><dog sticky>88.11</dog></L>"},
        {"<L><dog pitch=\"&query_item;\"/></L>", "&disabled;"},
        {"<L><dog></dog><dog pitch=\"&query_item;\" sticky=\"&query_item;\" /></L>",
         "&disabled; &enabled;"},
        {"<L><dog sticky pitch=\"&query_item;21&query_item;\">1234.5</dog><dog &query_item;/></L>",
         "&disabled; 21 pitch=\"21\" sticky"},
        {"<L><dog>&query;</dog></L>", "<L><dog pitch=\"21\" sticky>1234.5</dog></L>"},
        {"<L><dog>2</dog><dog>&query;</dog></L>", "<L><dog>2</dog></L>"},
        {"<L><dog bark=\"&query_item;\"/></L>", ""},
        {"<L><dog bark=\"15\" pitch=\"1\"/></L>", ""},
        {"<L><dog pitch=\"&query_item;\"/></L>", "1"},
        {"<L><dog pitch=\"&query;\"/></L>", "<L><dog pitch=\"1\">2</dog></L>"},
        {"<L><dog pitch=\"&query_doctype_item;\"/></L>", "{float}"},
        {"<L><dog>&query_doctype;</dog></L>", "<L><dog pitch=\"{float}\" sticky>{float}</dog></L>"},
    };
    for (const Exchange& x : exchanges) EXPECT_EQ(Ask(tree.L, x.request), x.answer) << x.request;
}

}  // namespace
