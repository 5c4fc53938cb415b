#include <gtest/gtest.h>

#include "configurable/configurable.h"
#include "tests/configurable/session.h"
#include "tests/configurable/test_tree.h"
#include "tests/support/error_text.h"

namespace {

TEST(Configurable, AnswersASessionOfRequests) {
    TestTree tree;
    int step = 0;
    for (const SessionStep& s : SESSION) {
        if (s.clearFirst) tree.L.set_changed(false);
        EXPECT_EQ(Ask(tree.L, s.request), s.answer) << "step " << step << ": " << s.request;
        ++step;
    }
}

// A hidden child skips its element from its start, so that what follows the
// element is still read. (No composite of the instrument document has two
// children of one name; the session shows leaves of one name.)
TEST(ConfigurableComposite, HiddenChildSkipsItsElement) {
    TestTree tree;
    EXPECT_EQ(Ask(tree.L, "<L><d><GG>5</GG><f>8</f></d><c>&query_item;</c></L>"), "43.21");
    EXPECT_FLOAT_EQ(tree.GG.value(), 7);
    EXPECT_FLOAT_EQ(tree.f.value(), 8);
}

TEST(Configurable, ThrowsErrorsWhenAsked) {
    TestTree tree;
    tree.L.set_throw_errors(true);
    EXPECT_EQ(ErrorText([&] { Ask(tree.L, "<L><a>qwerty</a><b>2.1</b></L>"); }),
              "XML error in item \"a\": unable to read float");
    EXPECT_FLOAT_EQ(tree.b.value(), 0.1234f);
}

// The names of the tree's nodes that are marked changed.
std::string Changed(const TestTree& tree) {
    std::string names;
    for (const Configurable* node :
         std::vector<const Configurable*>{&tree.L, &tree.a, &tree.d, &tree.e, &tree.f, &tree.GG,
                                          &tree.dog, tree.dog.attributes(), &tree.pitch}) {
        if (node->has_changed()) names += (names.empty() ? "" : " ") + node->name();
    }
    return names;
}

// A mark reaches every ancestor (through the attribute set for an attribute)
// and stays there when the node itself is cleared; clearing the root clears
// everything below it, hidden nodes and attributes included.
TEST(Configurable, ChangeMarksSpreadUpAndClearDown) {
    TestTree tree;
    tree.f.set_changed(true);
    EXPECT_EQ(Changed(tree), "L d f");
    tree.f.set_changed(false);
    tree.pitch.set_changed(true);
    EXPECT_EQ(Changed(tree), "L d dog attr pitch");
    tree.GG.set_changed(true);
    tree.L.set_changed(false);
    EXPECT_EQ(Changed(tree), "");
}

}  // namespace
