#include "drivers/DriverTable.h"

#include <gmock/gmock.h>
#include <wbalance/wbalance.h>

#include <type_traits>

#include "ToolError.h"

using tool::FindDriver;
using tool::LineSettings;
using tool::Operation;

namespace {

/// A driver whose settings can be seen.
template <class Driver>
struct Seen : Driver {
    LineSettings Line() const {
        return {this->baudRate, this->dataBits, this->parityCode, this->stopBitsCode,
                this->flowControlCode};
    }
};

template <class Driver>
void ExpectOwnLine(const char* name) {
    EXPECT_EQ(FindDriver(name).line.Text(), Seen<Driver>().Line().Text()) << name;
    EXPECT_NE(dynamic_cast<Driver*>(FindDriver(name).construct().get()), nullptr) << name;
}

TEST(DriverTable, Every_row_has_its_drivers_class_and_line_settings) {
    ExpectOwnLine<WbalanceMettlerToledo>("mettler-toledo");
    ExpectOwnLine<WbalanceMettlerPM>("mettler-pm");
    ExpectOwnLine<WbalanceMettlerPR2003>("mettler-pr2003");
    ExpectOwnLine<WbalanceMettlerXS>("mettler-xs");
    ExpectOwnLine<WbalanceMettlerSB32001>("mettler-sb32001");
    ExpectOwnLine<WbalanceSartorius>("sartorius");
    ExpectOwnLine<WbalanceOHAUS_SPU602>("ohaus");
    ExpectOwnLine<WbalanceRadwag>("radwag");
    ExpectOwnLine<WbalanceKern_EW_EGN_EWB>("kern");
    ExpectOwnLine<WbalanceGibertini>("gibertini");
    ExpectOwnLine<WbalanceDIC_XL1800>("denver-xl1800");
    ExpectOwnLine<WbalanceSetra_EL_2000S>("setra-el2000s");
    ExpectOwnLine<WbalanceScaleHouseALD>("scale-house");
    EXPECT_EQ(tool::Drivers().size(), 13u);
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
