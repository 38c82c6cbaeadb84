#include "line/PortName.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "ToolError.h"

using testing::HasSubstr;
using tool::PortName;
using tool::ToolError;

namespace {

std::string DeviceOf(const std::string& text, bool usb = false) {
    return PortName(text, usb).Resolve().Device();
}

TEST(PortName, A_number_is_a_built_in_port) {
    EXPECT_EQ(DeviceOf("3"), "/dev/ttyS3");
}

TEST(PortName, A_number_with_usb_is_an_adapter) {
    EXPECT_EQ(DeviceOf("3", true), "/dev/ttyUSB3");
}

TEST(PortName, A_device_name_is_itself_with_or_without_its_folder) {
    EXPECT_EQ(DeviceOf("/dev/ttyUSB12"), "/dev/ttyUSB12");
    EXPECT_EQ(DeviceOf("ttyS1"), "/dev/ttyS1");
}

/// A link that goes when the test ends.
class Link {
 public:
    Link() { EXPECT_NE(mkdtemp(folder_), nullptr); }
    ~Link() {
        unlink(Path().c_str());
        rmdir(folder_);
    }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    std::string Path() const { return std::string(folder_) + "/balance"; }
    void LeadTo(const std::string& target) const {
        unlink(Path().c_str());
        EXPECT_EQ(symlink(target.c_str(), Path().c_str()), 0);
    }

 private:
    char folder_[32] = "/tmp/wbalance-port-XXXXXX";
};

TEST(PortName, A_link_is_followed_anew_at_each_use) {
    const Link link;
    const PortName name(link.Path(), false);
    link.LeadTo("/dev/ttyUSB0");
    EXPECT_EQ(name.Resolve().Device(), "/dev/ttyUSB0");
    link.LeadTo("../../dev/ttyUSB7");
    EXPECT_EQ(name.Resolve().Device(), "/dev/ttyUSB7");
    EXPECT_EQ(name.Text(), link.Path());
}

TEST(PortName, Links_in_a_circle_are_an_error) {
    const Link link;
    link.LeadTo(link.Path());
    EXPECT_THROW(PortName(link.Path(), false).Resolve(), ToolError);
}

TEST(PortName, A_link_to_something_else_is_an_error_that_names_it) {
    const Link link;
    link.LeadTo("/dev/null");
    const PortName name(link.Path(), false);
    try {
        name.Resolve();
        FAIL() << "resolved to a device that is no serial port";
    } catch (const ToolError& error) {
        EXPECT_EQ(error.code, tool::ExitCode::PortFailed);
        EXPECT_THAT(error.what(), HasSubstr(link.Path() + " is /dev/null"));
    }
}

TEST(PortName, Texts_that_can_never_be_a_port_are_refused) {
    EXPECT_THROW(PortName("", false), ToolError);
    EXPECT_THROW(PortName("-1", false), ToolError);
    EXPECT_THROW(PortName("123456789", false), ToolError);
    EXPECT_THROW(PortName("/dev/ttyS0", true), ToolError);
}

}  // namespace
