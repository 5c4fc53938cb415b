#ifndef TESTS_CONFIGURABLE_TEST_TREE_H
#define TESTS_CONFIGURABLE_TEST_TREE_H

#include <string>
#include <vector>

#include "configurable/config_dynamic.h"
#include "configurable/configbuiltin.h"
#include "configurable/configurable.h"
#include "tests/support/ask.h"

// The smallest float leaf: reads with >>, writes with <<, type "float".
class TestFloat : public Configurable {
public:
    explicit TestFloat(const std::string& name, float value = 0)
        : Configurable(name), theValue(value) {}
    TestFloat& operator=(const TestFloat& other) = default;
    bool operator==(const TestFloat& other) const { return theValue == other.theValue; }

    float value() const { return theValue; }
    void set(float value) {
        if (value == theValue) return;
        theValue = value;
        set_changed(true);
    }

    std::istream& read_value(std::istream& in, std::ostream& err) override {
        float value = 0;
        if (in >> value)
            set(value);
        else
            err << "unable to read float";
        return in;
    }
    std::ostream& write_value(std::ostream& out) const override { return out << theValue; }
    std::ostream& write_doctype(std::ostream& out) const override { return out << "float"; }

private:
    float theValue;
};

inline const std::vector<std::string>& LunchOptions() {
    static const std::vector<std::string> options = {"apple",  "banana", "orange",
                                                     "grapes", "tire",   "translate<>&'\""};
    return options;
}

// The tree L used by the framework tests.
struct TestTree {
    ConfigurableComposite L{"L"};
    TestFloat a{"a", 1234};
    TestFloat b{"b", 0.1234f};
    ConfigurableComposite d{"d"};
    ConfigurableComposite e{"e"};
    TestFloat g1{"g", 0.11f};
    TestFloat g2{"g", 0.22f};
    TestFloat g3{"g", 0.33f};
    TestFloat f{"f", 6.5f};
    TestFloat GG{"GG", 7};
    TestFloat c{"c", 43.21f};
    ConfigurableMultipleChoice lunch{"lunch", &LunchOptions(), 0};
    TestFloat dog{"dog", 88.11f};
    TestFloat pitch{"pitch", 11.22f};
    Configurable sticky{"sticky"};
    ConfigurableCompositeDynamic<TestFloat> dyn{"dyn"};

    TestTree() {
        e.add_child(&g1);
        e.add_child(&g2);
        e.add_child(&g3);
        d.add_child(&e);
        d.add_child(&f);
        d.add_child(&GG);
        GG.set_persistent(false);
        dog.add_attribute(&pitch);
        dog.add_attribute(&sticky);
        sticky.set_persistent(false);
        for (Configurable* child : std::vector<Configurable*>{&a, &b, &d, &c, &lunch, &dog, &dyn}) {
            L.add_child(child);
        }
        L.set_changed(false);
    }
};

#endif
