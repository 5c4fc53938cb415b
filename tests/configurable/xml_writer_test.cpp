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

    EXPECT_EQ("<?xml version=\"1.0\"?>\n"
              "<greeting>\n"
              "\tHello, world!\n"
              "</greeting>\n"
              "<tag1 \n"
              "\ttag1_attr=\"tag1_val\" \n"
              "\ttag1_attr2/>\n"
              "<tag2>\n"
              "\t<tag3 \n"
              "\t\tattr>\n"
              "\t\tHowdy from tag3\n"
              "\t\t<NORVANCE::tag31>\n"
              "\t\t\tthis is tag31\n"
              "\t\t</NORVANCE::tag31>\n"
              "\t</tag3>\n"
              "</tag2>\n"
              "<tag4/>\n",
              out.str());
}

// Without indentation everything is one line (the configurable tests check
// the compact layout of attributes and text).
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
    writer.StartElement("b");
    writer.EndDocument();
    EXPECT_EQ("<a v=\"&lt;&quot;&query;&quot;&gt;\">x&lt;y <raw/><empty/></a><b/>\n", out.str());
}
