// Every operation of every driver with its simulated instrument, pan empty, loaded and moving: what
// wbalance says is what has happened on the instrument.

#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>
#include <thread>

#include "Facts.h"
#include "RunProgram.h"
#include "simulator/VirtualBench.h"

using facts::Pan;
using simulator::Options;
using simulator::VirtualBench;
using testing::HasSubstr;

namespace {

struct Case {
    std::string driver;
    facts::Performed expected;
};

std::vector<Case> AllCases() {
    std::vector<Case> cases;
    for (const auto& one : facts::All()) {
        for (const auto& expected : one.performed)
            cases.push_back({one.name, expected});
    }
    return cases;
}

const std::vector<Case>& Cases() {
    static const std::vector<Case> cases = AllCases();
    return cases;
}

double LoadOf(Pan pan) {
    if (pan == Pan::Empty) return 0.0;
    return pan == Pan::Light ? 2.0 : 50.0;
}

struct Performed {
    Ran ran;
    double shows = 0;
};

std::string PortOf(std::size_t index) {
    return "/dev/ttyUSB" + std::to_string(index);
}

simulator::ConnectedInstrument& Place(VirtualBench& bench, std::size_t index) {
    const Case& one = Cases()[index];
    Options options;
    options.On(PortOf(index)).WithLoad(LoadOf(one.expected.pan));
    if (one.expected.pan == Pan::Moving) options.WithFault("busy");
    if (!one.expected.with.empty()) options.With(one.expected.with);
    return bench.Place(one.driver, options);
}

Performed Perform(simulator::ConnectedInstrument& instrument, std::size_t index) {
    Performed performed;
    performed.ran = Wbalance(Cases()[index].expected.operation + " -d " + Cases()[index].driver +
                             " -p " + PortOf(index));
    instrument.WithBalance(
        [&performed](simulator::BalanceModel& balance) { performed.shows = balance.Read().value; });
    return performed;
}

TEST(Operations, Of_every_driver_are_performed_here) {
    for (const auto& one : facts::All()) {
        std::istringstream operations(one.operations);
        for (std::string operation; operations >> operation;) {
            EXPECT_TRUE(std::any_of(
                one.performed.begin(), one.performed.end(),
                [&](const auto& each) { return each.operation.rfind(operation, 0) == 0; }))
                << one.name << " " << operation;
        }
    }
}

TEST(Operations, Are_told_as_the_instruments_have_carried_them_out) {
    VirtualBench bench;
    std::vector<Performed> performed(Cases().size());
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < Cases().size(); ++i) {
        auto& instrument = Place(bench, i);
        threads.emplace_back(
            [&performed, &instrument, i] { performed[i] = Perform(instrument, i); });
    }
    for (auto& thread : threads)
        thread.join();
    for (std::size_t i = 0; i < Cases().size(); ++i) {
        const Case& one = Cases()[i];
        const Ran& ran = performed[i].ran;
        SCOPED_TRACE(one.expected.operation + " of " + one.driver + " with " +
                     std::to_string(static_cast<int>(one.expected.pan)) + " " + one.expected.with);
        EXPECT_EQ(ran.exitCode, one.expected.exitCode) << ran.errors;
        EXPECT_THAT(ran.output + ran.errors, HasSubstr(one.expected.says));
        EXPECT_EQ(ran.output.empty(), one.expected.exitCode != 0);
        EXPECT_NEAR(performed[i].shows, one.expected.shows, 0.15);
    }
}

}  // namespace
