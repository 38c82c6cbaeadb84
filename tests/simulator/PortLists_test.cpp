// What programs that list ports find: each kind of adapter once, and a port on the board. Each list
// is also made where nothing is under /sys.

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "Examples.h"
#include "simulator/VirtualBench.h"

using examples::kBalanceAt8N1;
using simulator::ConnectedInstrument;
using simulator::Options;
using simulator::VirtualBench;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Output {
    int exitCode;
    std::vector<std::string> lines;
};

/// The system as it is, and a mount namespace of its own without /sys.
class PortLists : public testing::TestWithParam<bool> {
 protected:
    PortLists() {
        bench_.Place(kBalanceAt8N1, Options().On("/dev/ttyS840"));
        ftdi_ = &bench_.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB840"));
        bench_.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB841").WithPacing("ch341"));
        bench_.Place(kBalanceAt8N1, Options().On("/dev/ttyUSB842").WithPacing("pl2303"));
    }
    void SetUp() override {
        if (GetParam() && std::system("unshare --mount umount --recursive /sys 2>/dev/null") != 0)
            GTEST_SKIP() << "only root can take /sys away";
    }

    /// What `command` prints of the ports of this test, sorted.
    Output OutputOf(const std::string& command) const {
        const std::string bare = "umount --recursive /sys && { " + command + "; }";
        ::setenv("WBALANCE_TEST_COMMAND", GetParam() ? bare.c_str() : command.c_str(), 1);
        FILE* pipe =
            ::popen((std::string(GetParam() ? "unshare --mount " : "") +
                     "env LD_PRELOAD=" VIRTUAL_LINE " sh -c \"$WBALANCE_TEST_COMMAND\" 2>&1")
                        .c_str(),
                    "r");
        std::stringstream all;
        std::array<char, 4096> buffer;
        while (const auto count = std::fread(buffer.data(), 1, buffer.size(), pipe))
            all.write(buffer.data(), static_cast<std::streamsize>(count));
        Output output = {WEXITSTATUS(::pclose(pipe)), {}};
        for (std::string line; std::getline(all, line);)
            if (line.find("84") != std::string::npos) output.lines.push_back(line);
        std::sort(output.lines.begin(), output.lines.end());
        return output;
    }
    Output Listed(const std::string& how) const { return OutputOf(PORT_LISTER " " + how); }
    /// Debian's Python, which has Debian's modules.
    Output Python(const std::string& program) const {
        return OutputOf("/usr/bin/python3 -c '" + program + "'");
    }

    ConnectedInstrument& Ftdi() { return *ftdi_; }

 private:
    VirtualBench bench_;
    ConnectedInstrument* ftdi_ = nullptr;
};

INSTANTIATE_TEST_SUITE_P(Of, PortLists, testing::Bool(), [](const auto& each) {
    return each.param ? "A_system_without_sys" : "This_system";
});

}  // namespace

TEST_P(PortLists, Ls_shows_devices_with_their_numbers) {
    EXPECT_THAT(OutputOf("ls /dev").lines,
                ElementsAre("ttyS840", "ttyUSB840", "ttyUSB841", "ttyUSB842"));
    const auto long_ = OutputOf("ls -l /dev/ttyUSB841").lines;
    ASSERT_EQ(long_.size(), 1u);
    EXPECT_THAT(long_[0], testing::MatchesRegex("crw-rw---- 1 .* 188, 841 .* /dev/ttyUSB841"));
}

TEST_P(PortLists, The_functions_of_the_C_library_list_them) {
    EXPECT_THAT(Listed("readdir /dev").lines,
                ElementsAre("ttyS840 (device)", "ttyUSB840 (device)", "ttyUSB841 (device)",
                            "ttyUSB842 (device)"));
    EXPECT_THAT(Listed("readdir /sys/class/tty").lines,
                ElementsAre("ttyS840", "ttyUSB840", "ttyUSB841", "ttyUSB842"));
    EXPECT_THAT(Listed("scandir /dev").lines,
                ElementsAre("ttyS840", "ttyUSB840", "ttyUSB841", "ttyUSB842"));
    EXPECT_THAT(Listed("glob \"/dev/ttyUSB84?\"").lines,
                ElementsAre("/dev/ttyUSB840", "/dev/ttyUSB841", "/dev/ttyUSB842"));
    EXPECT_THAT(Listed("glob \"/sys/class/tty/ttyS84*/device/id\"").lines,
                ElementsAre("/sys/class/tty/ttyS840/device/id"));
}

TEST_P(PortLists, Python_lists_them) {
    EXPECT_THAT(Python(R"(import os; print("\n".join(os.listdir("/dev"))))").lines,
                ElementsAre("ttyS840", "ttyUSB840", "ttyUSB841", "ttyUSB842"));
    EXPECT_THAT(Python(R"(import glob; print("\n".join(glob.glob("/dev/ttyUSB84*"))))").lines,
                ElementsAre("/dev/ttyUSB840", "/dev/ttyUSB841", "/dev/ttyUSB842"));
    EXPECT_THAT(
        Python(R"(import os; print(os.path.realpath("/sys/class/tty/ttyUSB840/device")))").lines,
        ElementsAre("/sys/devices/platform/wbalance-sim/usb9/9-841/9-841:1.0/ttyUSB840"));
}

TEST_P(PortLists, Pyserial_knows_the_adapters) {
    const auto listed = Python(
        "import serial.tools.list_ports as ports\n"
        "for p in ports.comports():\n"
        "    print(p.device, p.manufacturer, p.product, p.serial_number, p.interface, p.vid, "
        "p.pid, p.location, p.hwid, sep=\"|\")");
    if (listed.exitCode != 0) GTEST_SKIP() << "python3-serial is not installed";
    EXPECT_THAT(
        listed.lines,
        ElementsAre("/dev/ttyS840|None|None|None|None|None|None|None|PNP0501",
                    "/dev/ttyUSB840|FTDI|FT232R USB UART|A6000840|FT232R USB UART|1027|24577|"
                    "9-841|USB VID:PID=0403:6001 SER=A6000840 LOCATION=9-841",
                    "/dev/ttyUSB841|None|USB Serial|None|None|6790|29987|9-842|"
                    "USB VID:PID=1A86:7523 LOCATION=9-842",
                    "/dev/ttyUSB842|Prolific Technology Inc.|USB-Serial Controller|None|None|1659|"
                    "8963|9-843|USB VID:PID=067B:2303 LOCATION=9-843"));
}

TEST_P(PortLists, QSerialPortInfo_knows_the_adapters) {
    EXPECT_THAT(Listed("qt").lines,
                ElementsAre("/dev/ttyS840||||0000:0000",
                            "/dev/ttyUSB840|FTDI|FT232R USB UART|A6000840|0403:6001",
                            "/dev/ttyUSB841|1a86|USB Serial||1a86:7523",
                            "/dev/ttyUSB842|Prolific Technology Inc.|USB-Serial Controller||"
                            "067b:2303"));
}

TEST_P(PortLists, Libserialport_knows_the_adapters_and_opens_them) {
    const auto listed = Listed("libserialport");
    if (listed.exitCode == 77) GTEST_SKIP() << "libserialport0 is not installed";
    EXPECT_THAT(
        listed.lines,
        ElementsAre("/dev/ttyS840|ttyS840|0|||||",
                    "/dev/ttyUSB840|FT232R USB UART - A6000840|1|FTDI|FT232R USB UART|A6000840|"
                    "0403:6001|9-842",
                    "/dev/ttyUSB841|USB Serial|1||USB Serial||1a86:7523|9-843",
                    "/dev/ttyUSB842|USB-Serial Controller|1|Prolific Technology Inc.|"
                    "USB-Serial Controller||067b:2303|9-844"));
    EXPECT_THAT(OutputOf(PORT_LISTER " configure /dev/ttyUSB840 | sed s,^,840:,").lines,
                ElementsAre("840:done"));
    EXPECT_EQ(Ftdi().HostSettings().Text(), "9600,7E1");
    EXPECT_THAT(OutputOf(PORT_LISTER " configure /dev/ttyS840 | sed s,^,840:,").lines,
                ElementsAre("840:done"));
}

TEST_P(PortLists, A_stable_name_leads_to_its_port) {
    const std::string byId = "/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A6000840-if00-port0";
    EXPECT_THAT(OutputOf("ls /dev/serial/by-id /dev/serial/by-path").lines,
                ElementsAre("platform-wbalance-sim-usb-0:841:1.0-port0",
                            "platform-wbalance-sim-usb-0:842:1.0-port0",
                            "platform-wbalance-sim-usb-0:843:1.0-port0",
                            "usb-FTDI_FT232R_USB_UART_A6000840-if00-port0"));
    EXPECT_THAT(OutputOf("readlink " + byId).lines, ElementsAre("../../ttyUSB840"));
    EXPECT_THAT(OutputOf("realpath " + byId).lines, ElementsAre("/dev/ttyUSB840"));
    EXPECT_THAT(OutputOf("stty -F " + byId + " 1200 cs7 parenb && echo 840").lines,
                ElementsAre("840"));
    EXPECT_EQ(Ftdi().HostSettings().Text(), "1200,7E1");
}

TEST_P(PortLists, An_unplugged_adapter_is_in_no_list_and_keeps_its_serial_number) {
    Ftdi().Unplug();
    EXPECT_THAT(OutputOf("ls /dev").lines, ElementsAre("ttyS840", "ttyUSB841", "ttyUSB842"));
    EXPECT_THAT(OutputOf("ls /sys/class/tty").lines,
                ElementsAre("ttyS840", "ttyUSB841", "ttyUSB842"));
    EXPECT_THAT(OutputOf("cat /sys/class/tty/ttyUSB840/device/../../serial 2>/dev/null").lines,
                IsEmpty());
    Ftdi().PlugIn("/dev/ttyUSB843");
    EXPECT_THAT(OutputOf("ls /dev").lines,
                ElementsAre("ttyS840", "ttyUSB841", "ttyUSB842", "ttyUSB843"));
    EXPECT_THAT(OutputOf("cat /sys/class/tty/ttyUSB843/device/../../serial").lines,
                ElementsAre("A6000840"));
}
