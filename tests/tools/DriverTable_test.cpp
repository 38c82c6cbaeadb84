#include "drivers/DriverTable.h"

#include <gmock/gmock.h>
#include <wbalance/wbalance.h>

#include <type_traits>

#include "ToolError.h"

using tool::FindDriver;
using tool::Operation;

namespace {

template <class Driver>
void ExpectRow(const std::string& name, const std::string& driverClass) {
    const tool::DriverInfo& row = FindDriver(name);
    EXPECT_EQ(row.driverClass, driverClass) << name;
    EXPECT_NE(dynamic_cast<Driver*>(row.construct().get()), nullptr) << name;
    EXPECT_NE(row.dialect, nullptr) << name;
    EXPECT_NE(row.maker, "") << name;
    EXPECT_NE(row.models, "") << name;
    EXPECT_NE(row.modes, "") << name;
    EXPECT_TRUE(row.Has(Operation::Tare)) << name;
}

TEST(DriverTable, Every_instrument_of_the_list_has_a_row_that_makes_its_driver) {
    std::size_t count = 0;
#define WBALANCE_EXPECT_ROW(name, Class) \
    ExpectRow<Class>(name, #Class);      \
    ++count;
    WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_EXPECT_ROW)
#undef WBALANCE_EXPECT_ROW
    EXPECT_EQ(tool::Drivers().size(), count);
}

TEST(DriverTable, The_line_settings_are_those_of_the_driver_itself) {
    EXPECT_EQ(FindDriver("mettler-pm").line.Text(), "600,7E1");
    EXPECT_EQ(FindDriver("gibertini").line.Text(), "9600,7-1");
    EXPECT_EQ(FindDriver("kern").line.Text(), "1200,8N2");
    EXPECT_EQ(FindDriver("sartorius").line.Text(), "1200,7O1");
}

TEST(DriverTable, Drivers_that_reset_or_detect_in_their_own_check_keep_it) {
    for (const char* name : {"mettler-pm", "mettler-pr2003", "mettler-xs", "mettler-sb32001"}) {
        const auto balance = FindDriver(name).construct();
        EXPECT_EQ(dynamic_cast<WithLineReadiness<WbalanceMettlerPM>*>(balance.get()), nullptr);
        EXPECT_EQ(dynamic_cast<WithLineReadiness<WbalanceMettlerXS>*>(balance.get()), nullptr);
        EXPECT_FALSE(FindDriver(name).readyFirst) << name;
    }
}

TEST(DriverTable, Drivers_that_do_not_open_the_port_in_Weight_are_made_ready_first) {
    for (const char* name : {"sartorius", "ohaus", "scale-house", "denver-xl1800", "setra-el2000s"})
        EXPECT_TRUE(FindDriver(name).readyFirst) << name;
}

TEST(DriverTable, Only_drivers_that_send_a_preset_tare_offer_it) {
    std::string names;
    for (const auto& driver : tool::Drivers()) {
        if (driver.Has(Operation::PresetTare)) names += driver.name + " ";
    }
    EXPECT_EQ(names, "mettler-pm mettler-pr2003 mettler-xs mettler-sb32001 sartorius ");
}

TEST(DriverTable, An_unknown_name_is_a_usage_error) {
    try {
        FindDriver("mettler");
        FAIL() << "found";
    } catch (const tool::ToolError& error) {
        EXPECT_EQ(error.code, tool::ExitCode::Usage);
    }
}

}  // namespace
