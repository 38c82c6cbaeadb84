// Every driver on a line with real pace: what it reads when an answer comes in the pieces in which
// serial ports hand it over.

#include <gmock/gmock.h>
#include <wbalance/WithLineReadiness.h>
#include <wbalance/wbalance.h>

#include <memory>

#include "simulator/VirtualBench.h"

using simulator::LineSettings;
using simulator::Options;
using simulator::Parity;
using simulator::VirtualBench;

namespace {

template <typename Driver>
std::unique_ptr<Cwbalance> make() {
    return std::make_unique<Driver>();
}

/// The driver with the line's readiness, for those whose own is another reading or spoils it.
template <typename Driver>
std::unique_ptr<Cwbalance> makeWithLine() {
    return std::make_unique<WithLineReadiness<Driver>>();
}

using Maker = std::unique_ptr<Cwbalance> (*)();

int codeOf(Parity parity) {
    return static_cast<int>(parity);
}

int stopBitsCodeOf(const LineSettings& line) {
    return line.stopBits == 2 ? 2 : 0;
}

/// A driver, its instrument with 12.34 g on the pan, and the port between them.
class Pieces : public testing::Test {
 protected:
    /// At the instrument's own baud rate where none is given.
    void have(Maker driver, const char* instrument, const char* port, int baudRate = 0) {
        LineSettings line = simulator::findInstrument(instrument).line;
        if (baudRate != 0) line.baudRate = baudRate;
        balance_ =
            &bench_.place(instrument, Options().withLoad(12.34).at(line.text()).withPacing(port));
        driver_ = driver();
        driver_->SetCommConfig(line.baudRate, codeOf(line.parity), line.dataBits,
                               stopBitsCodeOf(line), 0, 1, 'S');
    }

    /// Result and weight of a reading in mode 2.
    std::pair<int, double> read() {
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

std::string nameOf(const testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

class EveryDriver : public Pieces, public testing::WithParamInterface<Case> {};

constexpr std::pair<int, double> whole = {1, 12.34};

// Drivers that read up to an end mark, or go on until nothing comes.
const Case joining[] = {
    {"PM_characters", make<WbalanceMettlerPM>, "mettler-pm", "character", 0, whole},
    {"PM_16550", make<WbalanceMettlerPM>, "mettler-pm", "16550", 0, whole},
    {"PM_ftdi", make<WbalanceMettlerPM>, "mettler-pm", "ftdi", 0, whole},
    {"PM_pl2303", make<WbalanceMettlerPM>, "mettler-pm", "pl2303", 0, whole},
    {"PR2003_characters", make<WbalanceMettlerPR2003>, "mettler-pr2003", "character", 0, whole},
    {"PR2003_16550", make<WbalanceMettlerPR2003>, "mettler-pr2003", "16550", 0, whole},
    {"PR2003_ftdi", make<WbalanceMettlerPR2003>, "mettler-pr2003", "ftdi", 0, whole},
    {"PR2003_pl2303", make<WbalanceMettlerPR2003>, "mettler-pr2003", "pl2303", 0, whole},
    {"XS_characters", make<WbalanceMettlerXS>, "mettler-xs", "character", 0, whole},
    {"XS_16550", make<WbalanceMettlerXS>, "mettler-xs", "16550", 0, whole},
    {"XS_ftdi", make<WbalanceMettlerXS>, "mettler-xs", "ftdi", 0, whole},
    {"XS_pl2303", make<WbalanceMettlerXS>, "mettler-xs", "pl2303", 0, whole},
    {"SB32001_characters",
     make<WbalanceMettlerSB32001>,
     "mettler-sb32001",
     "character",
     0,
     {1, 12.3}},
    {"SB32001_16550", make<WbalanceMettlerSB32001>, "mettler-sb32001", "16550", 0, {1, 12.3}},
    {"SB32001_ftdi", make<WbalanceMettlerSB32001>, "mettler-sb32001", "ftdi", 0, {1, 12.3}},
    {"SB32001_pl2303", make<WbalanceMettlerSB32001>, "mettler-sb32001", "pl2303", 0, {1, 12.3}},
    {"Kern_characters", makeWithLine<WbalanceKern_EW_EGN_EWB>, "kern", "character", 0, whole},
    {"Kern_16550", makeWithLine<WbalanceKern_EW_EGN_EWB>, "kern", "16550", 0, whole},
    {"Kern_ftdi", makeWithLine<WbalanceKern_EW_EGN_EWB>, "kern", "ftdi", 2400, whole},
    {"Kern_pl2303", makeWithLine<WbalanceKern_EW_EGN_EWB>, "kern", "pl2303", 0, whole},
    {"Gibertini_characters", makeWithLine<WbalanceGibertini>, "gibertini", "character", 0, whole},
    {"Gibertini_16550", makeWithLine<WbalanceGibertini>, "gibertini", "16550", 0, whole},
    {"Gibertini_ftdi", makeWithLine<WbalanceGibertini>, "gibertini", "ftdi", 0, whole},
    {"Gibertini_pl2303", makeWithLine<WbalanceGibertini>, "gibertini", "pl2303", 0, whole},
    {"XL1800_characters", makeWithLine<WbalanceDIC_XL1800>, "denver-xl1800", "character", 0, whole},
    {"XL1800_16550", makeWithLine<WbalanceDIC_XL1800>, "denver-xl1800", "16550", 0, whole},
    {"XL1800_ftdi", makeWithLine<WbalanceDIC_XL1800>, "denver-xl1800", "ftdi", 0, whole},
    {"XL1800_pl2303", makeWithLine<WbalanceDIC_XL1800>, "denver-xl1800", "pl2303", 0, whole},
    {"EL2000S_characters", makeWithLine<WbalanceSetra_EL_2000S>, "setra-el2000s", "character", 0,
     whole},
    {"EL2000S_16550", makeWithLine<WbalanceSetra_EL_2000S>, "setra-el2000s", "16550", 0, whole},
    {"EL2000S_ftdi", makeWithLine<WbalanceSetra_EL_2000S>, "setra-el2000s", "ftdi", 0, whole},
    {"EL2000S_pl2303", makeWithLine<WbalanceSetra_EL_2000S>, "setra-el2000s", "pl2303", 0, whole},
};

// Drivers that take three pieces. Where single characters come the line is slow, so that a busy
// computer does not join them.
const Case ofThreePieces[] = {
    {"MettlerToledo_characters",
     makeWithLine<WbalanceMettlerToledo>,
     "mettler-toledo",
     "character",
     300,
     {0, 0.0}},
    {"MettlerToledo_pl2303",
     makeWithLine<WbalanceMettlerToledo>,
     "mettler-toledo",
     "pl2303",
     300,
     {0, 0.0}},
    {"MettlerToledo_16550_below_2400",
     makeWithLine<WbalanceMettlerToledo>,
     "mettler-toledo",
     "16550",
     300,
     {0, 0.0}},
    {"MettlerToledo_16550", makeWithLine<WbalanceMettlerToledo>, "mettler-toledo", "16550", 0,
     whole},
    {"MettlerToledo_16550_of_4_reads_half_a_number",
     makeWithLine<WbalanceMettlerToledo>,
     "mettler-toledo",
     "16550:4",
     0,
     {1, 12.0}},
    {"MettlerToledo_ftdi", makeWithLine<WbalanceMettlerToledo>, "mettler-toledo", "ftdi", 9600,
     whole},
    {"MettlerToledo_ftdi_of_255_ms", makeWithLine<WbalanceMettlerToledo>, "mettler-toledo",
     "ftdi:255", 0, whole},
    {"Sartorius_characters",
     makeWithLine<WbalanceSartorius>,
     "sartorius",
     "character",
     300,
     {1, 0.0}},
    {"Sartorius_pl2303", makeWithLine<WbalanceSartorius>, "sartorius", "pl2303", 300, {1, 0.0}},
    {"Sartorius_16550_below_2400",
     makeWithLine<WbalanceSartorius>,
     "sartorius",
     "16550",
     300,
     {1, 0.0}},
    {"Sartorius_16550", makeWithLine<WbalanceSartorius>, "sartorius", "16550", 2400, whole},
    {"Sartorius_ftdi", makeWithLine<WbalanceSartorius>, "sartorius", "ftdi", 9600, whole},
    {"Sartorius_ftdi_of_255_ms", makeWithLine<WbalanceSartorius>, "sartorius", "ftdi:255", 0,
     whole},
    {"Ohaus_characters", makeWithLine<WbalanceOHAUS_SPU602>, "ohaus", "character", 300, {0, 0.0}},
    {"Ohaus_pl2303", makeWithLine<WbalanceOHAUS_SPU602>, "ohaus", "pl2303", 300, {0, 0.0}},
    {"Ohaus_16550_below_2400", makeWithLine<WbalanceOHAUS_SPU602>, "ohaus", "16550", 300, {0, 0.0}},
    {"Ohaus_16550", makeWithLine<WbalanceOHAUS_SPU602>, "ohaus", "16550", 0, whole},
    {"Ohaus_ftdi", makeWithLine<WbalanceOHAUS_SPU602>, "ohaus", "ftdi", 9600, whole},
    {"Ohaus_ftdi_of_255_ms", makeWithLine<WbalanceOHAUS_SPU602>, "ohaus", "ftdi:255", 0, whole},
    {"Radwag_characters", make<WbalanceRadwag>, "radwag", "character", 300, {1, 0.0}},
    {"Radwag_pl2303", make<WbalanceRadwag>, "radwag", "pl2303", 300, {1, 0.0}},
    {"Radwag_16550_below_2400", make<WbalanceRadwag>, "radwag", "16550", 300, {1, 0.0}},
    {"Radwag_16550", make<WbalanceRadwag>, "radwag", "16550", 0, whole},
    {"Radwag_ftdi", make<WbalanceRadwag>, "radwag", "ftdi", 0, whole},
    {"Radwag_ftdi_of_255_ms", make<WbalanceRadwag>, "radwag", "ftdi:255", 0, whole},
    {"ScaleHouse_characters",
     makeWithLine<WbalanceScaleHouseALD>,
     "scale-house",
     "character",
     300,
     {0, 0.0}},
    {"ScaleHouse_pl2303",
     makeWithLine<WbalanceScaleHouseALD>,
     "scale-house",
     "pl2303",
     300,
     {0, 0.0}},
    {"ScaleHouse_16550",
     makeWithLine<WbalanceScaleHouseALD>,
     "scale-house",
     "16550",
     300,
     {0, 0.0}},
    {"ScaleHouse_16550_of_14", makeWithLine<WbalanceScaleHouseALD>, "scale-house", "16550:14", 0,
     whole},
    {"ScaleHouse_ftdi", makeWithLine<WbalanceScaleHouseALD>, "scale-house", "ftdi", 19200, whole},
    {"ScaleHouse_ftdi_of_255_ms", makeWithLine<WbalanceScaleHouseALD>, "scale-house", "ftdi:255", 0,
     whole},
};

}  // namespace

TEST_P(EveryDriver, Reads) {
    const Case& each = GetParam();
    have(each.driver, each.instrument, each.port, each.baudRate);
    EXPECT_EQ(read(), each.read);
}

INSTANTIATE_TEST_SUITE_P(Joining, EveryDriver, testing::ValuesIn(joining), nameOf);
INSTANTIATE_TEST_SUITE_P(OfThreePieces, EveryDriver, testing::ValuesIn(ofThreePieces), nameOf);

TEST_F(Pieces, The_rest_of_an_answer_is_read_as_the_next_weight) {
    have(makeWithLine<WbalanceOHAUS_SPU602>, "ohaus", "character", 300);
    EXPECT_EQ(read(), std::make_pair(0, 0.0));
    balance_->setLoad(50);
    EXPECT_EQ(read(), std::make_pair(1, 12.34)) << "50 g lie on the pan";
}
