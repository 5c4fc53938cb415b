#include "borealis/config/config_ip_address.h"

#include <gtest/gtest.h>

#include "tests/support/ask.h"

namespace {

// A minimal document <L><gateway/></L>.
struct IPAddressDocument : ConfigurableComposite {
    IPAddressDocument() : ConfigurableComposite("L") { add_child(&gateway); }
    ConfigIPAddress gateway{"gateway", "192.168.1.1"};
};

// Text that is no IPv4 address, and the address held, change nothing; the
// type's text is pinned by the document's type golden file.
TEST(ConfigIPAddress, TakesDottedIPv4AddressesOnly) {
    IPAddressDocument doc;
    doc.set_changed(false);
    for (const char* text : {"192.168.1.", "gateway", "/tmp/x", "fe80::1"}) {
        EXPECT_EQ(Ask(doc, std::string("<L><gateway>") + text + "</gateway></L>"),
                  "<Error Param=\"gateway\">unable to read IP address\n</Error>")
            << text;
    }
    EXPECT_EQ(Ask(doc, "<L><gateway>192.168.1.1</gateway></L>"), "");
    EXPECT_FALSE(doc.has_changed());

    EXPECT_EQ(Ask(doc, "<L><gateway>10.0.0.254</gateway><gateway>&query_item;</gateway></L>"),
              "10.0.0.254");
    EXPECT_TRUE(doc.has_changed());
    doc.gateway.set_default();
    EXPECT_EQ(doc.gateway.value().ToString(), "192.168.1.1");
}

}  // namespace
