#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <type_traits>

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

    Leaves() {
        for (Configurable* leaf : std::vector<Configurable*>{&free, &bounded, &count, &wide, &flag,
                                                             &text, &shown}) {
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
        {"<L><free>1.0</free><free>&query_item;</free></L>", "1"},
        {"<L><free>43.21 trailing</free><free>&query_item;</free></L>", "43.21"},
        {"<L><free>1234.5678&query_item;</free></L>", "1234.57"},
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
    };
    for (const Exchange& x : exchanges) EXPECT_EQ(Process(leaves.L, x.request), x.answer) << x.request;
}

TEST(ConfigurableValues, DescribeTheirTypes) {
    Leaves leaves;
    ConfigurableInteger floor{"floor", 1, 0};
    leaves.L.add_child(&floor);
    EXPECT_EQ(Process(leaves.L, "&query_doctype_item;"),
              "<L><free>{float:0.1234}</free><bounded>{float:0;-5.5...5.5}</bounded>"
              "<count>{integer:3;-10...10}</count><wide>{integer:7}</wide>"
              "<flag>{true|false}</flag><text>{string}</text><shown>{string}</shown>"
              "<floor>{integer:1;0...2147483647}</floor></L>");
}

TEST(ConfigurableValues, MarkChangedOnlyWhenTheValueChanges) {
    Leaves leaves;
    leaves.count.set(3);
    leaves.text.set("hello");
    leaves.bounded.set(-0.0f);
    leaves.count.set(50);  // clamped to 10: a change
    EXPECT_FALSE(leaves.text.has_changed());
    EXPECT_TRUE(leaves.count.has_changed());
    EXPECT_TRUE(leaves.L.has_changed());
    leaves.L.set_changed(false);
    leaves.count.set(11);  // clamped to 10 again: no change
    Process(leaves.L, "<L><free>0.1234</free><flag>false</flag></L>");
    EXPECT_FALSE(leaves.L.has_changed());
    leaves.L.set_default();
    EXPECT_EQ(leaves.count.value(), 3);
    EXPECT_TRUE(leaves.count.has_changed());
    EXPECT_FALSE(leaves.free.has_changed());
}

TEST(ConfigurableValues, StrictFloatRejectsOnlyNaN) {
    ConfigurableFloat strict{"strict", 0, -1, 1, true};
    strict.set(7);
    EXPECT_EQ(strict.value(), 1);
    EXPECT_THROW(strict.set(std::nanf("")), std::range_error);
}

// The options are kept by address: a choice cannot be built on a temporary list.
static_assert(!std::is_constructible_v<ConfigurableMultipleChoice, std::string,
                                       std::vector<std::string>, int>);
static_assert(std::is_constructible_v<ConfigurableMultipleChoice, std::string,
                                      const std::vector<std::string>&, int>);

TEST(ConfigurableChoice, ReadsWholeOptionTexts) {
    TestTree tree;
    EXPECT_EQ(Process(tree.L, "<L><lunch>&query_item;banana&query_item;</lunch></L>"), "apple banana");
    EXPECT_EQ(Process(tree.L, "<L><lunch>abc tire</lunch><lunch>&query_item;</lunch></L>"),
              "<Error Param=\"lunch\">invalid option: abc tire\n</Error>banana");
    EXPECT_EQ(Process(tree.L, "<L><lunch>translate&lt;&gt;&amp;&apos;&quot;</lunch>"
                              "<lunch>&query_item;</lunch></L>"),
              "translate&lt;&gt;&amp;&apos;&quot;");
    EXPECT_EQ(tree.lunch.value(), 5);
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
    for (const Exchange& x : exchanges) EXPECT_EQ(Process(tree.L, x.request), x.answer) << x.request;
}

TEST(ConfigurableAttributes, PresenceChangesMarkTheOwner) {
    TestTree tree;
    tree.pitch.set_changed(true);
    EXPECT_TRUE(tree.dog.has_changed());
    EXPECT_TRUE(tree.L.has_changed());
    EXPECT_FALSE(tree.a.has_changed());
    tree.pitch.set_changed(false);
    EXPECT_TRUE(tree.dog.has_changed());

    // Both present, only pitch marked: the change answer carries all present attributes.
    tree.sticky.set_persistent(true);
    tree.L.set_changed(false);
    tree.pitch.set_changed(true);
    std::ostringstream out;
    Configurable::set_compact(out);
    write_changes(out, tree.L);
    EXPECT_EQ(out.str(), "<L><dog pitch=\"11.22\" sticky>88.11</dog></L>");

    tree.pitch.set_persistent(false);
    tree.L.set_changed(false);
    tree.sticky.set_changed(true);
    out.str("");
    write_changes(out, tree.L);
    EXPECT_EQ(out.str(), "<L><dog sticky>88.11</dog></L>");
}

}  // namespace
