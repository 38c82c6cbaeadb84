// A host may put a transport of its own in the place of the library's, and that may write into the
// command that it is given.

#include <algorithm>
#include <cstring>

#include "Answers.h"
#include "Call.h"
#include "ScriptedTest.h"

namespace {

std::vector<std::string> commands;
std::string answer;  // to every command

}  // namespace

int CSerialObject::SendCommand(char* command) {
    commands.emplace_back(command);
    // The smallest buffer in which a driver makes a command.
    std::memset(command, '#', 10);
    scripted::Line& line = scripted::Line::Here();
    line.Arrive(line.Now(), answer);
    return 1;
}

namespace {

template <class Tested>
void Operate(const std::vector<std::string>& operations) {
    Tested balance;
    double weight = 0.0;
    for (const std::string& operation : operations)
        answers::Call(balance, operation, &weight, nullptr);
}

struct Driver {
    std::string name;
    answers::Instrument instrument;
    void (*operate)(const std::vector<std::string>& operations);
};

template <class Class>
Driver DriverOf(const char* name) {
    const answers::Instrument instrument = answers::InstrumentOf<Class>();
    const bool endless = instrument.readiness == answers::Readiness::Endless;
    return {name, instrument, endless ? Operate<WithLineReadiness<Class>> : Operate<Class>};
}

const Driver kDrivers[] = {
#define WBALANCE_DRIVER(name, Class) DriverOf<Class>(name),
    WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_DRIVER)
#undef WBALANCE_DRIVER
};

class WritableCommandsTest : public scripted::ScriptedTest,
                             public testing::WithParamInterface<Driver> {};

TEST_P(WritableCommandsTest, Arrive_whole_each_time) {
    EXPECT_THAT(GetParam().instrument.sent, testing::Not(testing::IsEmpty()));
    for (const answers::Sent& sent : GetParam().instrument.sent) {
        line.Reset();
        commands.clear();
        answer = sent.answer;
        GetParam().operate(sent.operations);
        EXPECT_EQ(commands, sent.commands);
    }
}

INSTANTIATE_TEST_SUITE_P(Drivers, WritableCommandsTest, testing::ValuesIn(kDrivers),
                         [](const auto& driver) {
                             std::string name = driver.param.name;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

}  // namespace
