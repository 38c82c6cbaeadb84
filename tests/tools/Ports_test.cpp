// `wbalance ports` on a computer with one USB adapter, which StandInUdev.cpp describes.

#include <gmock/gmock.h>

#include "Examples.h"
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
              "  group    dialout\n"
              "  use      free\n");
    EXPECT_EQ(ran.exitCode, 0);
}

TEST(Ports, Json_has_the_same) {
    EXPECT_EQ(
        Ports(" --json").output,
        "{\"device\":\"/dev/ttyUSB0\",\"group\":\"dialout\",\"holder\":\"\",\"maker\":\"FTDI\","
        "\"may_open\":true,\"product\":\"FT232R USB UART\",\"serial\":\"A1B2\",\"stable\":[]}\n");
}

}  // namespace
