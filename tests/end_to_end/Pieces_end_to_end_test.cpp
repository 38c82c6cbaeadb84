// Every driver on a line with real pace: what it reads when an answer comes in the pieces in which
// serial ports hand it over. The rows stand in the drivers' answers.

#include <gmock/gmock.h>
#include <wbalance/WithLineReadiness.h>
#include <wbalance/wbalance.h>

#include <algorithm>
#include <memory>

#include "Answers.h"
#include "simulator/VirtualBench.h"

using simulator::Options;
using simulator::UartSettings;
using simulator::VirtualBench;

namespace {

/// The driver with the line's readiness where its own is another reading or spoils one.
template <class Driver>
std::unique_ptr<Cwbalance> Make() {
    if (answers::InstrumentOf<Driver>().readiness == answers::Readiness::Cheap)
        return std::make_unique<Driver>();
    return std::make_unique<WithLineReadiness<Driver>>();
}

struct Case {
    std::string instrument;
    std::unique_ptr<Cwbalance> (*driver)();
    answers::InPieces pieces;
};

std::vector<Case> Cases() {
    std::vector<Case> cases;
    const auto add = [&cases](const char* name, const answers::Instrument& instrument,
                              auto driver) {
        EXPECT_THAT(instrument.inPieces, testing::Not(testing::IsEmpty())) << name;
        for (const answers::InPieces& pieces : instrument.inPieces)
            cases.push_back({name, driver, pieces});
    };
#define WBALANCE_CASES(name, Class) add(name, answers::InstrumentOf<Class>(), Make<Class>);
    WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_CASES)
#undef WBALANCE_CASES
    return cases;
}

std::string NameOf(const testing::TestParamInfo<Case>& info) {
    std::string name = info.param.instrument + "_" + info.param.pieces.name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

class EveryDriver : public testing::TestWithParam<Case> {};

TEST_P(EveryDriver, Reads_an_answer_that_comes_in_pieces) {
    const auto& [instrument, make, pieces] = GetParam();
    UartSettings line = simulator::FindInstrument(instrument).line;
    if (pieces.baudRate != 0) line.baudRate = pieces.baudRate;
    VirtualBench bench;
    bench.Place(instrument, Options().WithLoad(12.34).At(line.Text()).WithPacing(pieces.port));
    const std::unique_ptr<Cwbalance> driver = make();
    driver->SetCommConfig(line.baudRate, static_cast<int>(line.parity), line.dataBits,
                          line.stopBits == 2 ? 2 : 0, 0, 1, 'S');

    ASSERT_EQ(driver->IsReady(), 1);
    double weight = -1;
    int decimals = -1;
    EXPECT_EQ(driver->Weight(2, &weight, &decimals), pieces.result);
    EXPECT_EQ(weight, pieces.weight);
}

INSTANTIATE_TEST_SUITE_P(Pieces, EveryDriver, testing::ValuesIn(Cases()), NameOf);

}  // namespace
