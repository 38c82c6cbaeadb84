// Each instrument of drivers/instruments.txt is simulated, and weighed by the driver of its name at
// that driver's own line settings.

#include <Instruments.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <future>
#include <map>
#include <vector>

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

/// What another program sends to an instrument to set its unit or mode, and what is weighed then.
struct HostUnit {
    std::string instrument;
    std::string line;    ///< as stty takes it
    std::string sent;    ///< as printf takes it
    std::string weight;  ///< the line that comes
};

Ran WeighAfter(const HostUnit& unit) {
    const std::string name = unit.instrument.substr(0, unit.instrument.find(' '));
    return RunShell(std::string(WBALANCE_SIM) + " " + unit.instrument +
                    " --load 12.5 -- sh -c 'stty -F /dev/ttyS0 raw -echo " + unit.line +
                    " && printf \"" + unit.sent + "\" >/dev/ttyS0 && sleep 0.5 && " + WBALANCE +
                    " weigh --driver " + name + "'");
}

}  // namespace

TEST(EveryInstrument, Weighs_in_the_unit_that_a_host_has_set_and_the_program_says_so) {
    const HostUnit units[] = {
        {"mettler-xs", "9600 cs8 -parenb", "M21 0 3\\r\\n", "S S    12500.0 mg\\r\\n"},
        {"ohaus --with series=explorer", "2400 cs7 -parenb", "2U\\r\\n", "   0.01250 kg\\r\\n"},
        {"ohaus --with series=explorer", "2400 cs7 -parenb", "1M\\r\\n", "        13 PCS\\r\\n"},
    };
    for (const HostUnit& unit : units) {
        const Ran ran = WeighAfter(unit);
        EXPECT_THAT(ran.errors, HasSubstr("the weight is not in grams")) << unit.instrument;
        EXPECT_THAT(ran.errors, HasSubstr(unit.weight)) << unit.instrument;
        EXPECT_EQ(ran.exitCode, 10) << unit.instrument;
    }
}
