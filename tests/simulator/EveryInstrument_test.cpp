// Each instrument of drivers/instruments.txt is simulated, and weighed by the driver of its name at
// that driver's own line settings.

#include <Instruments.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <future>
#include <map>
#include <vector>

#include "Facts.h"
#include "RunProgram.h"

using testing::ContainsRegex;
using testing::HasSubstr;

namespace {

struct Row {
    std::string name;
    std::string driverClass;
};

#define ROW(name, Class) {name, #Class},
const std::vector<Row> kInstruments = {WBALANCE_FOR_EACH_INSTRUMENT(ROW)};
#undef ROW

/// A weight of 12.5 g in JSON, whatever stands behind it.
const char* const kValue = "\"value\":12\\.5[,}]";

/// Runs the same for every instrument at once: they mostly wait.
std::map<std::string, Ran> RunEach(const std::function<Ran(const std::string& name)>& run) {
    std::map<std::string, std::future<Ran>> running;
    for (const auto& row : kInstruments)
        running[row.name] = std::async(std::launch::async, run, row.name);
    std::map<std::string, Ran> all;
    for (auto& [name, ran] : running)
        all[name] = ran.get();
    return all;
}

}  // namespace

TEST(EveryInstrument, Is_listed_with_the_class_and_the_line_settings_of_its_driver) {
    const std::string list = RunShell(std::string(WBALANCE_SIM) + " --list").output;
    for (const auto& [name, driverClass] : kInstruments) {
        std::string line =
            Wbalance("drivers " + name + " | sed -n 's/^  line  *//p' | tr -d '\\n'").output;
        std::replace(line.begin(), line.end(), '-', '.');  // what a driver leaves as it is
        EXPECT_THAT(
            list, ContainsRegex("(^|\n)" + name + ": [^\n]*; " + line + "; " + driverClass + "\n"));
    }
    std::size_t listed = 0;
    for (std::size_t at = 0; (at = list.find("; Wbalance", at + 1)) != std::string::npos;)
        ++listed;
    EXPECT_EQ(listed, kInstruments.size());
}

TEST(EveryInstrument, Is_weighed_by_the_driver_of_its_name_as_both_are_delivered) {
    const auto all = RunEach([](const std::string& name) {
        return WbalanceWith(name + " --load 12.5", "weigh --json --driver " + name);
    });
    ASSERT_FALSE(all.empty());
    for (const auto& [name, ran] : all) {
        EXPECT_THAT(ran.output, ContainsRegex(kValue)) << name << ": " << ran.errors;
        EXPECT_EQ(ran.exitCode, 0) << name;
    }
}

TEST(EveryInstrument, Is_weighed_again_from_the_record_of_its_weighing) {
    const auto all = RunEach([](const std::string& name) {
        const TemporaryFile record;
        const std::string weigh = "weigh --json --driver " + name;
        WbalanceWith(name + " --load 12.5", weigh + " --record " + record.Path());
        return WbalanceWith("replay " + record.Path(), weigh);
    });
    ASSERT_FALSE(all.empty());
    for (const auto& [name, ran] : all) {
        EXPECT_THAT(ran.output, ContainsRegex(kValue)) << name << ": " << ran.errors;
        EXPECT_EQ(ran.errors, "") << name;
        EXPECT_EQ(ran.exitCode, 0) << name;
    }
}

TEST(EveryInstrument, Is_weighed_again_from_the_log_of_its_weighing) {
    const auto all = RunEach([](const std::string& name) {
        const TemporaryFile log;
        const std::string weigh = "weigh --json --driver " + name;
        WbalanceWith(name + " --load 12.5 --log " + log.Path(), weigh);
        return WbalanceWith("replay " + log.Path(), weigh);
    });
    ASSERT_FALSE(all.empty());
    for (const auto& [name, ran] : all) {
        EXPECT_THAT(ran.output, ContainsRegex(kValue)) << name << ": " << ran.errors;
        EXPECT_EQ(ran.errors, "") << name;
        EXPECT_EQ(ran.exitCode, 0) << name;
    }
}

namespace {

Ran WeighAfter(const std::string& name, const facts::SetByHost& set) {
    return RunShell(std::string(WBALANCE_SIM) + " " + name + " " + set.with +
                    " --load 12.5 -- sh -c 'stty -F /dev/ttyS0 raw -echo " + set.line +
                    " && printf \"" + set.sent + "\" >/dev/ttyS0 && sleep 0.5 && " + WBALANCE +
                    " weigh --driver " + name + "'");
}

}  // namespace

TEST(EveryInstrument, Weighs_in_the_unit_that_a_host_has_set_and_the_program_says_so) {
    int tried = 0;
    for (const auto& instrument : facts::All())
        for (const auto& set : instrument.setByHost) {
            const Ran ran = WeighAfter(instrument.name, set);
            EXPECT_THAT(ran.errors, HasSubstr("the weight is not in grams")) << set.sent;
            EXPECT_THAT(ran.errors, HasSubstr(set.weight)) << instrument.name;
            EXPECT_EQ(ran.exitCode, 10) << instrument.name;
            ++tried;
        }
    EXPECT_GE(tried, 3);
}
