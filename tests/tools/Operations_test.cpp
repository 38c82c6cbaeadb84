// Every operation of every driver with its simulated instrument, pan empty, loaded and moving: what
// wbalance says is what has happened on the instrument.

#include <gmock/gmock.h>

#include <algorithm>
#include <thread>

#include "RunProgram.h"
#include "simulator/VirtualBench.h"

using simulator::Options;
using simulator::VirtualBench;
using testing::HasSubstr;

namespace {

constexpr double kLoad = 50.0;

enum class Pan { Empty, Light, Loaded, Moving };

/// What an operation comes to with a balance that can't answer in time.
constexpr char kNotAtRest[] = "the balance answers, but not this, as it does while its pan moves";
constexpr char kBegun[] = "the balance has begun it and finishes it when its pan comes to rest";
constexpr char kPanMoves[] = "afterwards the balance shows 50.00 g and the pan moves";

struct Case {
    std::string driver;
    std::string operation;  ///< with its argument
    Pan pan;
    int exitCode;
    std::string says;  ///< on standard output, or a part of the error
    double shows = 0;  ///< the instrument afterwards
    std::string with;  ///< a switch of the instrument
};

const std::vector<Case> kCases = {
    {"mettler-toledo", "tare", Pan::Empty, 0, "zeroed, as this driver does in place of taring\n", 0,
     ""},
    {"mettler-toledo", "tare", Pan::Light, 0, "zeroed, as this driver does in place of taring\n", 0,
     ""},
    {"mettler-toledo", "tare", Pan::Loaded, 6,
     "the load is above the range for zeroing, which this driver does in place of taring", 50, ""},
    {"mettler-toledo", "tare", Pan::Moving, 8, kNotAtRest, 50, ""},
    {"mettler-toledo", "zero", Pan::Empty, 0, "zeroed\n", 0, ""},
    {"mettler-toledo", "zero", Pan::Light, 0, "zeroed\n", 0, ""},
    {"mettler-toledo", "zero", Pan::Loaded, 6, "the load is above the range for it", 50, ""},
    {"mettler-toledo", "zero", Pan::Moving, 8, kNotAtRest, 50, ""},
    {"mettler-pm", "tare", Pan::Empty, 0, "tared\n", 0, ""},
    {"mettler-pm", "tare", Pan::Light, 0, "tared\n", 0, ""},
    {"mettler-pm", "tare", Pan::Loaded, 0, "tared\n", 0, ""},
    {"mettler-pm", "tare", Pan::Moving, 8, kNotAtRest, 50, ""},
    {"mettler-pm", "preset-tare 5", Pan::Empty, 0, "preset tare set to 5.00 g\n", -5, ""},
    {"mettler-pm", "preset-tare 5", Pan::Loaded, 0, "preset tare set to 5.00 g\n", 45, ""},
    {"mettler-pm", "preset-tare 5", Pan::Moving, 8, kNotAtRest, 50, ""},
    {"mettler-pm", "tare", Pan::Empty, 0, "tared\n", 0, "protocol=mt-sics"},
    {"mettler-pm", "tare", Pan::Light, 0, "tared\n", 0, "protocol=mt-sics"},
    {"mettler-pm", "tare", Pan::Loaded, 0, "tared\n", 0, "protocol=mt-sics"},
    {"mettler-pm", "tare", Pan::Moving, 8, kNotAtRest, 50, "protocol=mt-sics"},
    {"mettler-pm", "preset-tare 5", Pan::Empty, 0, "preset tare set to 5.00 g\n", -5,
     "protocol=mt-sics"},
    {"mettler-pm", "preset-tare 5", Pan::Loaded, 0, "preset tare set to 5.00 g\n", -5,
     "protocol=mt-sics"},
    {"mettler-pm", "preset-tare 5", Pan::Moving, 8, kNotAtRest, 50, "protocol=mt-sics"},
    {"mettler-pr2003", "tare", Pan::Empty, 0, "tared\n", 0, ""},
    {"mettler-pr2003", "tare", Pan::Light, 0, "tared\n", 0, ""},
    {"mettler-pr2003", "tare", Pan::Loaded, 0, "tared\n", 0, ""},
    {"mettler-pr2003", "tare", Pan::Moving, 8, kNotAtRest, 50, ""},
    {"mettler-pr2003", "preset-tare 5", Pan::Empty, 0, "preset tare set to 5.00 g\n", -5, ""},
    {"mettler-pr2003", "preset-tare 5", Pan::Loaded, 0, "preset tare set to 5.00 g\n", -5, ""},
    {"mettler-pr2003", "preset-tare 5", Pan::Moving, 8, kNotAtRest, 50, ""},
    {"mettler-pr2003", "display HI", Pan::Loaded, 0, "displayed\n", 50, ""},
    {"mettler-pr2003", "on", Pan::Loaded, 0, "switched on\n", 50, ""},
    {"mettler-pr2003", "off", Pan::Loaded, 0, "switched off\n", 50, ""},
    {"mettler-xs", "tare", Pan::Empty, 0, "tared\n", 0, ""},
    {"mettler-xs", "tare", Pan::Light, 0, "tared\n", 0, ""},
    {"mettler-xs", "tare", Pan::Loaded, 0, "tared\n", 0, ""},
    {"mettler-xs", "tare", Pan::Moving, 8, kNotAtRest, 50, ""},
    {"mettler-xs", "preset-tare 5", Pan::Empty, 0, "preset tare set to 5.00 g\n", -5, ""},
    {"mettler-xs", "preset-tare 5", Pan::Loaded, 0, "preset tare set to 5.00 g\n", -5, ""},
    {"mettler-xs", "preset-tare 5", Pan::Moving, 8, kNotAtRest, 50, ""},
    {"mettler-xs", "display HI", Pan::Loaded, 0, "displayed\n", 50, ""},
    {"mettler-xs", "on", Pan::Loaded, 0, "switched on\n", 50, ""},
    {"mettler-xs", "off", Pan::Loaded, 0, "switched off\n", 50, ""},
    {"mettler-sb32001", "tare", Pan::Empty, 0, "tared\n", 0, ""},
    {"mettler-sb32001", "tare", Pan::Light, 0, "tared\n", 0, ""},
    {"mettler-sb32001", "tare", Pan::Loaded, 0, "tared\n", 0, ""},
    {"mettler-sb32001", "tare", Pan::Moving, 8, kNotAtRest, 50, ""},
    {"mettler-sb32001", "preset-tare 5", Pan::Empty, 0, "preset tare set to 5.00 g\n", -5, ""},
    {"mettler-sb32001", "preset-tare 5", Pan::Loaded, 0, "preset tare set to 5.00 g\n", -5, ""},
    {"mettler-sb32001", "preset-tare 5", Pan::Moving, 8, kNotAtRest, 50, ""},
    {"mettler-sb32001", "display HI", Pan::Loaded, 0, "displayed\n", 50, ""},
    {"sartorius", "tare", Pan::Empty, 0, "tared\n", 0, ""},
    {"sartorius", "tare", Pan::Light, 0, "tared\n", 0, ""},
    {"sartorius", "tare", Pan::Loaded, 0, "tared\n", 0, ""},
    {"sartorius", "tare", Pan::Moving, 8, kNotAtRest, 50, ""},
    {"sartorius", "preset-tare 5", Pan::Empty, 0, "preset tare set to 5.00 g\n", -5, ""},
    {"sartorius", "preset-tare 5", Pan::Empty, 9,
     "afterwards the balance still shows 0.00 g, so it was not carried out", 0, "store-key=off"},
    {"sartorius", "preset-tare 5", Pan::Loaded, 0, "preset tare set to 5.00 g\n", -5, ""},
    {"sartorius", "preset-tare 5", Pan::Loaded, 9,
     "afterwards the balance still shows 0.00 g, so it was not carried out", 0, "store-key=off"},
    {"sartorius", "preset-tare 5", Pan::Moving, 8, kNotAtRest, 50, ""},
    {"ohaus", "tare", Pan::Empty, 0, "tared\n", 0, ""},
    {"ohaus", "tare", Pan::Light, 0, "tared\n", 0, ""},
    {"ohaus", "tare", Pan::Loaded, 0, "tared\n", 0, ""},
    {"ohaus", "tare", Pan::Moving, 8, kNotAtRest, 50, ""},
    {"ohaus", "factory-reset --yes", Pan::Loaded, 0,
     "factory reset sent; the balance does not confirm it\n", 50, ""},
    {"radwag", "tare", Pan::Empty, 0, "tared\n", 0, ""},
    {"radwag", "tare", Pan::Light, 0, "tared\n", 0, ""},
    {"radwag", "tare", Pan::Loaded, 0, "tared\n", 0, ""},
    {"radwag", "tare", Pan::Moving, 8, kBegun, 50, ""},
    {"radwag", "zero", Pan::Empty, 0, "zeroed\n", 0, ""},
    {"radwag", "zero", Pan::Light, 0, "zeroed\n", 0, ""},
    {"radwag", "zero", Pan::Loaded, 0, "zeroed\n", 0, ""},
    {"radwag", "zero", Pan::Moving, 8, kBegun, 50, ""},
    {"kern", "tare", Pan::Empty, 0, "tared\n", 0, ""},
    {"kern", "tare", Pan::Light, 0, "tared\n", 0, ""},
    {"kern", "tare", Pan::Loaded, 0, "tared\n", 0, ""},
    {"kern", "tare", Pan::Moving, 0, "tared\n", 0, ""},
    {"gibertini", "tare", Pan::Empty, 0, "tared\n", 0, ""},
    {"gibertini", "tare", Pan::Light, 0, "tared\n", 0, ""},
    {"gibertini", "tare", Pan::Loaded, 0, "tared\n", 0, ""},
    {"gibertini", "tare", Pan::Moving, 8, kBegun, 50, ""},
    {"denver-xl1800", "tare", Pan::Empty, 0, "tared\n", 0, ""},
    {"denver-xl1800", "tare", Pan::Light, 0, "tared\n", 0, ""},
    {"denver-xl1800", "tare", Pan::Loaded, 0, "tared\n", 0, ""},
    {"denver-xl1800", "tare", Pan::Moving, 8, kPanMoves, 50, ""},
    {"setra-el2000s", "tare", Pan::Empty, 0, "tared\n", 0, ""},
    {"setra-el2000s", "tare", Pan::Light, 0, "tared\n", 0, ""},
    {"setra-el2000s", "tare", Pan::Loaded, 0, "tared\n", 0, ""},
    {"setra-el2000s", "tare", Pan::Moving, 8, kPanMoves, 50, ""},
    {"scale-house", "tare", Pan::Empty, 0, "tared\n", 0, ""},
    {"scale-house", "tare", Pan::Light, 0, "tared\n", 0, ""},
    {"scale-house", "tare", Pan::Loaded, 0, "tared\n", 0, ""},
    {"scale-house", "tare", Pan::Moving, 0, "tared\n", 0, ""},
};

double LoadOf(Pan pan) {
    if (pan == Pan::Empty) return 0.0;
    return pan == Pan::Light ? 2.0 : kLoad;
}

struct Performed {
    Ran ran;
    double shows = 0;
};

std::string PortOf(std::size_t index) {
    return "/dev/ttyUSB" + std::to_string(index);
}

simulator::ConnectedInstrument& Place(VirtualBench& bench, std::size_t index) {
    const Case& one = kCases[index];
    Options options;
    options.On(PortOf(index)).WithLoad(LoadOf(one.pan));
    if (one.pan == Pan::Moving) options.WithFault("busy");
    if (!one.with.empty()) options.With(one.with);
    return bench.Place(one.driver, options);
}

Performed Perform(simulator::ConnectedInstrument& instrument, std::size_t index) {
    Performed performed;
    performed.ran =
        Wbalance(kCases[index].operation + " -d " + kCases[index].driver + " -p " + PortOf(index));
    instrument.WithBalance(
        [&performed](simulator::BalanceModel& balance) { performed.shows = balance.Read().value; });
    return performed;
}

TEST(Operations, Are_told_as_the_instruments_have_carried_them_out) {
    VirtualBench bench;
    std::vector<Performed> performed(kCases.size());
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kCases.size(); ++i) {
        auto& instrument = Place(bench, i);
        threads.emplace_back(
            [&performed, &instrument, i] { performed[i] = Perform(instrument, i); });
    }
    for (auto& thread : threads)
        thread.join();
    for (std::size_t i = 0; i < kCases.size(); ++i) {
        const Case& one = kCases[i];
        const Ran& ran = performed[i].ran;
        SCOPED_TRACE(one.operation + " of " + one.driver + " with " +
                     std::to_string(static_cast<int>(one.pan)) + " " + one.with);
        EXPECT_EQ(ran.exitCode, one.exitCode) << ran.errors;
        EXPECT_THAT(ran.output + ran.errors, HasSubstr(one.says));
        EXPECT_EQ(ran.output.empty(), one.exitCode != 0);
        EXPECT_NEAR(performed[i].shows, one.shows, 0.15);
    }
}

}  // namespace
