// `wbalance ports` on a computer with one USB adapter, which StandInUdev.cpp describes.

#include <gmock/gmock.h>

#include <QtCore/QJsonArray>

#include "Examples.h"
#include "JsonOf.h"
#include "RunProgram.h"

using examples::kOtherBalance;

namespace {

Ran Ports(const std::string& arguments) {
    return RunShell(std::string(WBALANCE_SIM) + " " + kOtherBalance +
                    " --usb -- sh -c 'LD_PRELOAD=" STAND_IN_UDEV ":$LD_PRELOAD exec " WBALANCE
                    " ports" +
                    arguments + "'");
}

TEST(Ports, An_adapter_has_maker_product_and_serial_number_and_says_who_may_open_it) {
    const Ran ran = Ports("");
    EXPECT_EQ(ran.output,
              "/dev/ttyUSB0\n"
              "  maker    FTDI\n"
              "  product  FT232R USB UART\n"
              "  serial   A1B2\n"
              "  stable   /dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A6000000-if00-port0\n"
              "  stable   /dev/serial/by-path/platform-wbalance-sim-usb-0:1:1.0-port0\n"
              "  group    dialout\n"
              "  use      free\n");
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(Ports, Json_has_the_same) {
    const QJsonObject port = JsonOf(Ports(" --json").output);
    EXPECT_EQ(port.size(), 8);
    EXPECT_EQ(port["device"], "/dev/ttyUSB0");
    EXPECT_EQ(port["group"], "dialout");
    EXPECT_EQ(port["holder"], "");
    EXPECT_EQ(port["maker"], "FTDI");
    EXPECT_EQ(port["may_open"], true);
    EXPECT_EQ(port["product"], "FT232R USB UART");
    EXPECT_EQ(port["serial"], "A1B2");
    EXPECT_EQ(port["stable"],
              (QJsonArray{"/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A6000000-if00-port0",
                          "/dev/serial/by-path/platform-wbalance-sim-usb-0:1:1.0-port0"}));
}

}  // namespace
