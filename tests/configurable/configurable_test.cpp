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

// Every same-named child reads the element from its start, composites
// included; a hidden one skips it from its start too, so the sibling after
// the element is still read.
TEST(ConfigurableComposite, SameNamedChildrenEachReadTheElement) {
    ConfigurableComposite L{"L"}, d1{"d"}, d2{"d"};
    TestFloat v1{"v"}, v2{"v"}, x{"x"}, hidden{"x"}, y{"y"};
    d1.add_child(&v1);
    d2.add_child(&v2);
    for (Configurable* child : std::vector<Configurable*>{&d1, &d2, &x, &hidden, &y}) {
        L.add_child(child);
    }
    hidden.set_persistent(false);
    Ask(L, "<L><d><v>5</v></d><x>6</x><y>7</y></L>");
    EXPECT_EQ(Ask(L, "<L>&query_item;</L>"),
              "<d><v>5</v></d><d><v>5</v></d><x>6</x><y>7</y>");
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
    for (const Configurable* node : std::vector<const Configurable*>{&tree.L, &tree.a, &tree.d,
             &tree.e, &tree.f, &tree.GG, &tree.dog, tree.dog.attributes(), &tree.pitch}) {
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
