#include "borealis/config/config_ip_address.h"

#include <gtest/gtest.h>

#include "tests/support/ask.h"

namespace {

// A minimal document <L><gateway/></L>.
struct IPAddressDocument : ConfigurableComposite {
    IPAddressDocument() : ConfigurableComposite("L") { add_child(&gateway); }
    ConfigIPAddress gateway{"gateway", "192.168.1.1"};
};

TEST(ConfigIPAddress, ReadsAndWritesDottedAddresses) {
    IPAddressDocument doc;
    EXPECT_EQ(Ask(doc, "<L><gateway>&query_item;&query_doctype_item;</gateway></L>"),
              "192.168.1.1 {int.int.int.int}");
    doc.set_changed(false);
    EXPECT_EQ(Ask(doc, "<L><gateway>10.0.0.254</gateway></L>"), "");
    EXPECT_EQ(doc.gateway.value().ToString(), "10.0.0.254");
    EXPECT_TRUE(doc.has_changed());

    doc.set_changed(false);
    doc.gateway.set(doc.gateway.value());
    EXPECT_FALSE(doc.has_changed()) << "the same address is no change";
    doc.gateway.set_default();
    EXPECT_EQ(doc.gateway.value().ToString(), "192.168.1.1");
}

TEST(ConfigIPAddress, RejectsTextThatIsNoIPv4Address) {
    IPAddressDocument doc;
    doc.set_changed(false);
    for (const char* text : {"192.168.1.", "gateway", "/tmp/x", "fe80::1"}) {
        EXPECT_EQ(Ask(doc, std::string("<L><gateway>") + text + "</gateway></L>"),
                  "<Error Param=\"gateway\">unable to read IP address\n</Error>")
            << text;
    }
    EXPECT_EQ(doc.gateway.value().ToString(), "192.168.1.1");
    EXPECT_FALSE(doc.has_changed());
}

}  // namespace
