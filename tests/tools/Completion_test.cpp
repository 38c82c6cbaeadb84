// The completion as bash uses it: sourced, and asked what may stand behind a beginning.

#include <gmock/gmock.h>

#include <sstream>

#include "Examples.h"
#include "Facts.h"
#include "RunProgram.h"

using examples::kBalance;
using examples::kBalanceWithPanel;
using examples::kOtherBalance;
using examples::kThirdBalance;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;
using testing::StartsWith;

namespace {

// What is offered for the last of the words.
std::vector<std::string> Completions(const std::string& words) {
    const Ran ran = RunShell("PATH=$(dirname " WBALANCE "):$PATH bash -c '. " WBALANCE_COMPLETION
                             "; COMP_WORDS=(" +
                             words +
                             "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); "
                             "$(complete -p wbalance | sed \"s/.*-F \\([^ ]*\\).*/\\1/\"); "
                             "printf \"%s\\n\" \"${COMPREPLY[@]}\"'");
    EXPECT_EQ(ran.errors, "");
    std::vector<std::string> offered;
    std::istringstream lines(ran.output);
    for (std::string line; std::getline(lines, line);)
        offered.push_back(line);
    return offered;
}

// As much of a driver's name as somebody types.
std::string Beginning(const std::string& name) {
    return name.substr(0, 3);
}

TEST(Completion, Offers_the_commands) {
    EXPECT_THAT(Completions("wbalance de"), ElementsAre("detect"));
    EXPECT_THAT(
        Completions("wbalance \"\""),
        IsSupersetOf({"weigh", "monitor", "tare", "zero", "preset-tare", "display", "on", "off",
                      "factory-reset", "replay", "detect", "doctor", "drivers", "ports", "help"}));
    EXPECT_THAT(Completions("wbalance help mo"), ElementsAre("monitor"));
}

TEST(Completion, Offers_a_balance_to_monitor_whether_or_not_bash_divides_words_there) {
    EXPECT_THAT(Completions("wbalance monitor " + Beginning(kOtherBalance)),
                Contains(kOtherBalance + "@"));
    EXPECT_THAT(Completions("wbalance monitor " + kThirdBalance + "@0 " + Beginning(kOtherBalance)),
                Contains(kOtherBalance + "@"));
    for (const std::string flag : {"--json", "--csv", "--trace", "--dynamic"})
        EXPECT_THAT(Completions("wbalance monitor " + flag + " " + Beginning(kOtherBalance)),
                    Contains(kOtherBalance + "@"));
    EXPECT_THAT(Completions("wbalance monitor --count " + Beginning(kOtherBalance)),
                Not(Contains(kOtherBalance + "@")));
    EXPECT_THAT(Completions("wbalance monitor " + kOtherBalance + "@0@600"),
                ElementsAre(kOtherBalance + "@0@600,7E1"));
    EXPECT_THAT(Completions("wbalance monitor " + kOtherBalance + " @ 0 @ 600"),
                ElementsAre("600,7E1"));
    EXPECT_THAT(Completions("wbalance monitor " + kOtherBalance + " @ 0 @"), Contains("9600,8N1"));
    EXPECT_THAT(Completions("wbalance monitor --mode s"), ElementsAre("stable"));
}

TEST(Completion, Offers_the_drivers_that_there_are) {
    for (const std::string command : {"wbalance weigh --driver ", "wbalance drivers "}) {
        EXPECT_THAT(Completions(command + "\"\""), IsSupersetOf(facts::Names()));
        for (const auto& name : facts::Names()) {
            const auto offered = Completions(command + Beginning(name));
            EXPECT_THAT(offered, Contains(name));
            EXPECT_THAT(offered, Each(StartsWith(Beginning(name))));
        }
    }
}

TEST(Completion, Offers_the_modes) {
    EXPECT_THAT(Completions("wbalance weigh --mode \"\""), ElementsAre("stable", "auto", "now"));
}

TEST(Completion, Offers_each_command_its_own_options) {
    EXPECT_THAT(Completions("wbalance factory-reset --y"), ElementsAre("--yes"));
    EXPECT_THAT(Completions("wbalance weigh --y"), ElementsAre(""));
    EXPECT_THAT(Completions("wbalance detect --t"), ElementsAre("--thorough", "--trace"));
}

TEST(Completion, Offers_every_output_format_to_the_commands_that_give_weights) {
    for (const char* command : {"weigh", "monitor", "replay"}) {
        EXPECT_THAT(Completions(std::string("wbalance ") + command + " --"),
                    IsSupersetOf({"--json", "--csv"}));
    }
    EXPECT_THAT(Completions("wbalance ports --"), Not(Contains("--csv")));
}

TEST(Completion, Offers_every_option_that_the_help_of_a_command_names) {
    for (const char* command :
         {"weigh", "tare", "zero", "preset-tare", "display", "on", "off", "factory-reset",
          "monitor", "detect", "doctor", "drivers", "ports", "replay", "help"}) {
        const auto offered = Completions(std::string("wbalance ") + command + " --");
        const Ran help =
            RunShell(std::string(WBALANCE) + " " + command +
                     " --help | grep -oE '^  [-a-z,]*--[a-z]+' | grep -oE -- '--[a-z]+'");
        std::istringstream options(help.output);
        for (std::string option; std::getline(options, option);)
            EXPECT_THAT(offered, Contains(option)) << command;
    }
}

}  // namespace
