// Every driver on a line with real pace: what it reads when an answer comes in the pieces in which
// serial ports hand it over.

#include <gmock/gmock.h>
#include <wbalance/WithLineReadiness.h>
#include <wbalance/wbalance.h>

#include <memory>

#include "simulator/VirtualBench.h"

using simulator::Options;
using simulator::Parity;
using simulator::UartSettings;
using simulator::VirtualBench;

namespace {

template <typename Driver>
std::unique_ptr<Cwbalance> Make() {
    return std::make_unique<Driver>();
}

/// The driver with the line's readiness, for those whose own is another reading or spoils it.
template <typename Driver>
std::unique_ptr<Cwbalance> MakeWithLine() {
    return std::make_unique<WithLineReadiness<Driver>>();
}

using Maker = std::unique_ptr<Cwbalance> (*)();

int CodeOf(Parity parity) {
    return static_cast<int>(parity);
}

int StopBitsCodeOf(const UartSettings& line) {
    return line.stopBits == 2 ? 2 : 0;
}

/// A driver, its instrument with 12.34 g on the pan, and the port between them.
class Pieces : public testing::Test {
 protected:
    /// At the instrument's own baud rate where none is given.
    void Have(Maker driver, const char* instrument, const char* port, int baudRate = 0) {
        UartSettings line = simulator::FindInstrument(instrument).line;
        if (baudRate != 0) line.baudRate = baudRate;
        balance_ =
            &bench_.Place(instrument, Options().WithLoad(12.34).At(line.Text()).WithPacing(port));
        driver_ = driver();
        driver_->SetCommConfig(line.baudRate, CodeOf(line.parity), line.dataBits,
                               StopBitsCodeOf(line), 0, 1, 'S');
    }

    /// Result and weight of a reading in mode 2.
    std::pair<int, double> Read() {
        double weight = -1;
        int decimals = -1;
        if (driver_->IsReady() == 0) return {-1, -1};
        const int result = driver_->Weight(2, &weight, &decimals);
        return {result, weight};
    }

    VirtualBench bench_;
    simulator::ConnectedInstrument* balance_ = nullptr;
    std::unique_ptr<Cwbalance> driver_;
};

struct Case {
    const char* name;
    Maker driver;
    const char* instrument;
    const char* port;
    int baudRate;  ///< 0: the instrument's own
    std::pair<int, double> read;
};

std::string NameOf(const testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

class EveryDriver : public Pieces, public testing::WithParamInterface<Case> {};

constexpr std::pair<int, double> kWhole = {1, 12.34};

// Drivers that read up to an end mark, or go on until nothing comes.
const Case kJoining[] = {
    {"PM_characters", Make<WbalanceMettlerPM>, "mettler-pm", "character", 0, kWhole},
    {"PM_16550", Make<WbalanceMettlerPM>, "mettler-pm", "16550", 0, kWhole},
    {"PM_ftdi", Make<WbalanceMettlerPM>, "mettler-pm", "ftdi", 0, kWhole},
    {"PM_pl2303", Make<WbalanceMettlerPM>, "mettler-pm", "pl2303", 0, kWhole},
    {"PR2003_characters", Make<WbalanceMettlerPR2003>, "mettler-pr2003", "character", 0, kWhole},
    {"PR2003_16550", Make<WbalanceMettlerPR2003>, "mettler-pr2003", "16550", 0, kWhole},
    {"PR2003_ftdi", Make<WbalanceMettlerPR2003>, "mettler-pr2003", "ftdi", 0, kWhole},
    {"PR2003_pl2303", Make<WbalanceMettlerPR2003>, "mettler-pr2003", "pl2303", 0, kWhole},
    {"XS_characters", Make<WbalanceMettlerXS>, "mettler-xs", "character", 0, kWhole},
    {"XS_16550", Make<WbalanceMettlerXS>, "mettler-xs", "16550", 0, kWhole},
    {"XS_ftdi", Make<WbalanceMettlerXS>, "mettler-xs", "ftdi", 0, kWhole},
    {"XS_pl2303", Make<WbalanceMettlerXS>, "mettler-xs", "pl2303", 0, kWhole},
    {"SB32001_characters",
     Make<WbalanceMettlerSB32001>,
     "mettler-sb32001",
     "character",
     0,
     {1, 12.3}},
    {"SB32001_16550", Make<WbalanceMettlerSB32001>, "mettler-sb32001", "16550", 0, {1, 12.3}},
    {"SB32001_ftdi", Make<WbalanceMettlerSB32001>, "mettler-sb32001", "ftdi", 0, {1, 12.3}},
    {"SB32001_pl2303", Make<WbalanceMettlerSB32001>, "mettler-sb32001", "pl2303", 0, {1, 12.3}},
    {"Kern_characters", MakeWithLine<WbalanceKern_EW_EGN_EWB>, "kern", "character", 0, kWhole},
    {"Kern_16550", MakeWithLine<WbalanceKern_EW_EGN_EWB>, "kern", "16550", 0, kWhole},
    {"Kern_ftdi", MakeWithLine<WbalanceKern_EW_EGN_EWB>, "kern", "ftdi", 2400, kWhole},
    {"Kern_pl2303", MakeWithLine<WbalanceKern_EW_EGN_EWB>, "kern", "pl2303", 0, kWhole},
    {"Gibertini_characters", MakeWithLine<WbalanceGibertini>, "gibertini", "character", 0, kWhole},
    {"Gibertini_16550", MakeWithLine<WbalanceGibertini>, "gibertini", "16550", 0, kWhole},
    {"Gibertini_ftdi", MakeWithLine<WbalanceGibertini>, "gibertini", "ftdi", 0, kWhole},
    {"Gibertini_pl2303", MakeWithLine<WbalanceGibertini>, "gibertini", "pl2303", 0, kWhole},
    {"XL1800_characters", MakeWithLine<WbalanceDIC_XL1800>, "denver-xl1800", "character", 0,
     kWhole},
    {"XL1800_16550", MakeWithLine<WbalanceDIC_XL1800>, "denver-xl1800", "16550", 0, kWhole},
    {"XL1800_ftdi", MakeWithLine<WbalanceDIC_XL1800>, "denver-xl1800", "ftdi", 0, kWhole},
    {"XL1800_pl2303", MakeWithLine<WbalanceDIC_XL1800>, "denver-xl1800", "pl2303", 0, kWhole},
    {"EL2000S_characters", MakeWithLine<WbalanceSetra_EL_2000S>, "setra-el2000s", "character", 0,
     kWhole},
    {"EL2000S_16550", MakeWithLine<WbalanceSetra_EL_2000S>, "setra-el2000s", "16550", 0, kWhole},
    {"EL2000S_ftdi", MakeWithLine<WbalanceSetra_EL_2000S>, "setra-el2000s", "ftdi", 0, kWhole},
    {"EL2000S_pl2303", MakeWithLine<WbalanceSetra_EL_2000S>, "setra-el2000s", "pl2303", 0, kWhole},
};

// Drivers that take three pieces. Where single characters come the line is slow, so that a busy
// computer does not join them.
const Case kOfThreePieces[] = {
    {"MettlerToledo_characters",
     MakeWithLine<WbalanceMettlerToledo>,
     "mettler-toledo",
     "character",
     300,
     {0, 0.0}},
    {"MettlerToledo_pl2303",
     MakeWithLine<WbalanceMettlerToledo>,
     "mettler-toledo",
     "pl2303",
     300,
     {0, 0.0}},
    {"MettlerToledo_16550_below_2400",
     MakeWithLine<WbalanceMettlerToledo>,
     "mettler-toledo",
     "16550",
     300,
     {0, 0.0}},
    {"MettlerToledo_16550", MakeWithLine<WbalanceMettlerToledo>, "mettler-toledo", "16550", 0,
     kWhole},
    {"MettlerToledo_16550_of_4_reads_half_a_number",
     MakeWithLine<WbalanceMettlerToledo>,
     "mettler-toledo",
     "16550:4",
     0,
     {1, 12.0}},
    {"MettlerToledo_ftdi", MakeWithLine<WbalanceMettlerToledo>, "mettler-toledo", "ftdi", 9600,
     kWhole},
    {"MettlerToledo_ftdi_of_255_ms", MakeWithLine<WbalanceMettlerToledo>, "mettler-toledo",
     "ftdi:255", 0, kWhole},
    {"Sartorius_characters",
     MakeWithLine<WbalanceSartorius>,
     "sartorius",
     "character",
     300,
     {1, 0.0}},
    {"Sartorius_pl2303", MakeWithLine<WbalanceSartorius>, "sartorius", "pl2303", 300, {1, 0.0}},
    {"Sartorius_16550_below_2400",
     MakeWithLine<WbalanceSartorius>,
     "sartorius",
     "16550",
     300,
     {1, 0.0}},
    {"Sartorius_16550", MakeWithLine<WbalanceSartorius>, "sartorius", "16550", 2400, kWhole},
    {"Sartorius_ftdi", MakeWithLine<WbalanceSartorius>, "sartorius", "ftdi", 9600, kWhole},
    {"Sartorius_ftdi_of_255_ms", MakeWithLine<WbalanceSartorius>, "sartorius", "ftdi:255", 0,
     kWhole},
    {"Ohaus_characters", MakeWithLine<WbalanceOHAUS_SPU602>, "ohaus", "character", 300, {0, 0.0}},
    {"Ohaus_pl2303", MakeWithLine<WbalanceOHAUS_SPU602>, "ohaus", "pl2303", 300, {0, 0.0}},
    {"Ohaus_16550_below_2400", MakeWithLine<WbalanceOHAUS_SPU602>, "ohaus", "16550", 300, {0, 0.0}},
    {"Ohaus_16550", MakeWithLine<WbalanceOHAUS_SPU602>, "ohaus", "16550", 0, kWhole},
    {"Ohaus_ftdi", MakeWithLine<WbalanceOHAUS_SPU602>, "ohaus", "ftdi", 9600, kWhole},
    {"Ohaus_ftdi_of_255_ms", MakeWithLine<WbalanceOHAUS_SPU602>, "ohaus", "ftdi:255", 0, kWhole},
    {"Radwag_characters", Make<WbalanceRadwag>, "radwag", "character", 300, {1, 0.0}},
    {"Radwag_pl2303", Make<WbalanceRadwag>, "radwag", "pl2303", 300, {1, 0.0}},
    {"Radwag_16550_below_2400", Make<WbalanceRadwag>, "radwag", "16550", 300, {1, 0.0}},
    {"Radwag_16550", Make<WbalanceRadwag>, "radwag", "16550", 0, kWhole},
    {"Radwag_ftdi", Make<WbalanceRadwag>, "radwag", "ftdi", 0, kWhole},
    {"Radwag_ftdi_of_255_ms", Make<WbalanceRadwag>, "radwag", "ftdi:255", 0, kWhole},
    {"ScaleHouse_characters",
     MakeWithLine<WbalanceScaleHouseALD>,
     "scale-house",
     "character",
     300,
     {0, 0.0}},
    {"ScaleHouse_pl2303",
     MakeWithLine<WbalanceScaleHouseALD>,
     "scale-house",
     "pl2303",
     300,
     {0, 0.0}},
    {"ScaleHouse_16550",
     MakeWithLine<WbalanceScaleHouseALD>,
     "scale-house",
     "16550",
     300,
     {0, 0.0}},
    {"ScaleHouse_16550_of_14", MakeWithLine<WbalanceScaleHouseALD>, "scale-house", "16550:14", 0,
     kWhole},
    {"ScaleHouse_ftdi", MakeWithLine<WbalanceScaleHouseALD>, "scale-house", "ftdi", 19200, kWhole},
    {"ScaleHouse_ftdi_of_255_ms", MakeWithLine<WbalanceScaleHouseALD>, "scale-house", "ftdi:255", 0,
     kWhole},
};

}  // namespace

TEST_P(EveryDriver, Reads) {
    const Case& each = GetParam();
    Have(each.driver, each.instrument, each.port, each.baudRate);
    EXPECT_EQ(Read(), each.read);
}

INSTANTIATE_TEST_SUITE_P(Joining, EveryDriver, testing::ValuesIn(kJoining), NameOf);
INSTANTIATE_TEST_SUITE_P(OfThreePieces, EveryDriver, testing::ValuesIn(kOfThreePieces), NameOf);

TEST_F(Pieces, The_rest_of_an_answer_is_read_as_the_next_weight) {
    Have(MakeWithLine<WbalanceOHAUS_SPU602>, "ohaus", "character", 300);
    EXPECT_EQ(Read(), std::make_pair(0, 0.0));
    balance_->SetLoad(50);
    EXPECT_EQ(Read(), std::make_pair(1, 12.34)) << "50 g lie on the pan";
}
