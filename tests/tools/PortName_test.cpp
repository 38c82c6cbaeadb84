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

TEST(PortName, A_link_is_followed_anew_at_each_use) {
    char folder[] = "/tmp/wbalance-port-XXXXXX";
    ASSERT_NE(mkdtemp(folder), nullptr);
    const std::string link = std::string(folder) + "/balance";
    ASSERT_EQ(symlink("/dev/null", link.c_str()), 0);
    const PortName name(link, false);
    try {
        name.Resolve();
        FAIL() << "resolved to a device that is no serial port";
    } catch (const ToolError& error) {
        EXPECT_EQ(error.code, tool::ExitCode::PortFailed);
        EXPECT_THAT(error.what(), HasSubstr(link + " is /dev/null"));
    }
    unlink(link.c_str());
    EXPECT_THROW(name.Resolve(), ToolError);
    rmdir(folder);
}

TEST(PortName, Texts_that_can_never_be_a_port_are_refused) {
    EXPECT_THROW(PortName("", false), ToolError);
    EXPECT_THROW(PortName("-1", false), ToolError);
    EXPECT_THROW(PortName("123456789", false), ToolError);
    EXPECT_THROW(PortName("/dev/ttyS0", true), ToolError);
}

}  // namespace
