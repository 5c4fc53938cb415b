#include <gtest/gtest.h>

#include "configurable/config_dynamic.h"
#include "tests/configurable/test_tree.h"
#include "tests/support/error_text.h"

namespace {

TEST(ConfigurableDynamic, ReplacesItsChildrenFromXml) {
    TestTree tree;
    const struct {
        const char* request;
        const char* answer;
        const char* list;  // the list afterwards
    } cases[] = {
        {"<L><dyn><val>1.2</val></dyn></L>", "", "<val>1.2</val>"},
        {"<L><dyn><val1>1</val1><val2>2</val2><val3>3</val3></dyn></L>", "",
         "<val1>1</val1><val2>2</val2><val3>3</val3>"},
        {"<L><dyn><val>1</val><val>2</val><val>3</val></dyn></L>", "",
         "<val>1</val><val>2</val><val>3</val>"},
        {"<L><dyn><val>1</val><val>2</val><val>error</val><val>4</val><val>another error</val>"
         "</dyn></L>",
         "<Error Param=\"val\">unable to read float</Error>"
         "<Error Param=\"val\">unable to read float</Error>",
         "<val>1</val><val>2</val><val>4</val>"},
        // Without child elements the list stays as it was.
        {"<L><dyn/><dyn>&query_item;</dyn></L>", "<val>1</val><val>2</val><val>4</val>",
         "<val>1</val><val>2</val><val>4</val>"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Ask(tree.L, c.request), c.answer) << c.request;
        EXPECT_EQ(Ask(tree.L, "<L><dyn>&query_item;</dyn></L>"), c.list) << c.request;
    }
}

TEST(ConfigurableDynamic, AddAndClearMarkTheList) {
    TestTree tree;
    tree.dyn.add_child(new TestFloat("v", 1));
    tree.dyn.add_child(new TestFloat("v", 2));
    EXPECT_TRUE(tree.L.has_changed());
    tree.L.set_changed(false);
    EXPECT_EQ(tree.dyn.children().size(), 2u);
    tree.dyn.clear();
    EXPECT_EQ(tree.dyn.children().size(), 0u);
    EXPECT_TRUE(tree.L.has_changed());
    tree.L.set_changed(false);
    tree.dyn.clear();  // an empty list is not marked
    EXPECT_FALSE(tree.L.has_changed());
}

TEST(ConfigurableDynamic, DropsAChildThatThrows) {
    TestTree tree;
    tree.L.set_throw_errors(true);
    Ask(tree.L, "<L><dyn><v>1</v></dyn></L>");
    EXPECT_EQ(ErrorText([&] { Ask(tree.L, "<L><dyn><v>2</v><v>x</v></dyn></L>"); }),
              "XML error in item \"v\": unable to read float");
    ASSERT_EQ(tree.dyn.children().size(), 1u);
    EXPECT_EQ(tree.dyn.at(0).value(), 2);
}

}  // namespace
