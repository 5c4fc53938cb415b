#include "configurable/xml_writer.h"

#include <sstream>

#include <gtest/gtest.h>

// The indented layout, one element or text a line with tabs, is pinned by
// the instrument document's golden files; this is the compact one line.
TEST(XmlWriter, EscapesTextAndSelfClosesEmptyElements) {
    std::ostringstream out;
    XMLWriter writer(out, false);
    writer.StartElement("a");
    writer.Text("x<y");
    writer.Text("");
    writer.Text("<raw/>", false);
    writer.StartElement("empty");
    writer.EndElement("other");
    writer.EndElement("a");
    writer.StartElement("b");
    writer.EndDocument();
    EXPECT_EQ("<a>x&lt;y <raw/><empty/></a><b/>\n", out.str());
}
