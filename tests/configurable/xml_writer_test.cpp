#include "configurable/xml_writer.h"

#include <sstream>
#include <string>

#include <gtest/gtest.h>

TEST(XmlWriter, IndentsWithTabsAndKeepsBlankBeforeAttributeLines)
{
    std::ostringstream out;
    XMLWriter writer(out, true);
    writer.StartDocument();
    writer.StartElement("greeting");
    writer.Text("Hello, world!");
    writer.EndElement("greeting");
    writer.StartElement("tag1");
    writer.Attribute("tag1_attr", "tag1_val");
    writer.AttributeName("tag1_attr2");
    writer.EndElement("tag1");
    writer.StartElement("tag2");
    writer.StartElement("tag3");
    writer.AttributeName("attr");
    writer.Text("Howdy from tag3");
    writer.StartElement("NORVANCE::tag31");
    writer.Text("this is tag31");
    writer.EndElement("NORVANCE::tag31");
    writer.EndElement("tag3");
    writer.EndElement("tag2");
    writer.StartElement("tag4");
    writer.EndDocument();

    const struct {
        int tabs;
        const char* text;
    } lines[] = {
        {0, "<?xml version=\"1.0\"?>"},
        {0, "<greeting>"},
        {1, "Hello, world!"},
        {0, "</greeting>"},
        {0, "<tag1 "},
        {1, "tag1_attr=\"tag1_val\" "},
        {1, "tag1_attr2/>"},
        {0, "<tag2>"},
        {1, "<tag3 "},
        {2, "attr>"},
        {2, "Howdy from tag3"},
        {2, "<NORVANCE::tag31>"},
        {3, "this is tag31"},
        {2, "</NORVANCE::tag31>"},
        {1, "</tag3>"},
        {0, "</tag2>"},
        {0, "<tag4/>"},
    };
    std::string expected;
    for (const auto& line : lines) {
        expected += std::string(line.tabs, '\t') + line.text + "\n";
    }
    EXPECT_EQ(expected, out.str());
}

TEST(XmlWriter, CompactLayoutIsOneLine)
{
    std::ostringstream out;
    XMLWriter writer(out, false);
    writer.StartElement("L");
    writer.StartElement("dog");
    writer.Attribute("pitch", "11.22");
    writer.AttributeName("sticky");
    writer.Text("88.11");
    writer.EndElement("dog");
    writer.EndElement("L");
    EXPECT_EQ("<L><dog pitch=\"11.22\" sticky>88.11</dog></L>", out.str());
}

TEST(XmlWriter, EscapesValuesAndSelfClosesEmptyElements)
{
    std::ostringstream out;
    XMLWriter writer(out, false);
    writer.StartElement("a");
    writer.Attribute("v", "<\"&query;\">");
    writer.Attribute("", "ignored");
    writer.Text("x<y");
    writer.Text("");
    writer.Text("<raw/>", false);
    writer.StartElement("empty");
    writer.EndElement("other");
    writer.EndElement("a");
    writer.EndElement("a");  // the level never goes below zero
    writer.StartElement("b");
    writer.EndDocument();
    EXPECT_EQ(
        "<a v=\"&lt;&quot;&query;&quot;&gt;\">x&lt;y <raw/><empty/></a></a><b/>\n", out.str());
}
