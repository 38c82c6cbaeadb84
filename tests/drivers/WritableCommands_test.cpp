// A host may put a transport of its own in the place of the library's, and that may write into the
// command that it is given.

#include <cstring>
#include <functional>

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

using scripted::Open;
using scripted::ScriptedTest;
using testing::ElementsAreArray;

namespace {

using Commands = std::vector<std::string>;

struct Row {
    std::string driver;
    std::string answer;
    std::function<void()> operate;
    Commands commands;
};

class WritableCommandsTest : public ScriptedTest, public testing::WithParamInterface<Row> {};

TEST_P(WritableCommandsTest, Arrive_whole_each_time) {
    commands.clear();
    answer = GetParam().answer;
    GetParam().operate();
    EXPECT_THAT(commands, ElementsAreArray(GetParam().commands));
}

double weight = 0.0;
char display[] = "READY";

void OperateMettlerToledo() {
    WbalanceMettlerToledo balance;
    balance.Tare();
    balance.Weight(0, &weight, nullptr);
    balance.Weight(2, &weight, nullptr);
}

void OperatePM() {
    Open<WbalanceMettlerPM> balance;
    balance.Weight(0, &weight, nullptr);
    balance.TareSet(5.0);
    balance.protocolCode = 0;
    balance.TareSet(5.0);
}

void OperatePR2003() {
    WbalanceMettlerPR2003 balance;
    balance.DisplayMessage(display);
    balance.Tare();
    balance.TareSet(5.0);
    balance.Weight(0, &weight, nullptr);
    balance.Weight(2, &weight, nullptr);
    balance.TurnItOn();
    balance.TurnItOff();
}

void OperateSB32001() {
    WbalanceMettlerSB32001 balance;
    balance.DisplayMessage(display);
    balance.TareSet(5.0);
    balance.Weight(0, &weight, nullptr);
    balance.Weight(2, &weight, nullptr);
}

void OperateSartorius() {
    WbalanceSartorius balance;
    balance.IsReady();
    balance.TareSet(5.0);
}

void OperateOhaus() {
    WbalanceOHAUS_SPU602 balance;
    balance.Tare();
    balance.RestoreFactorySettings();
}

void OperateRadwag() {
    WbalanceRadwag balance;
    balance.Tare();
    balance.Zero();
    balance.Weight(0, &weight, nullptr);
    balance.Weight(2, &weight, nullptr);
}

void OperateKern() {
    WithLineReadiness<WbalanceKern_EW_EGN_EWB> balance;
    balance.Tare();
    balance.Weight(0, &weight, nullptr);
    balance.Weight(2, &weight, nullptr);
    answer = "A00\r\n";
    balance.Weight(1, &weight, nullptr);
}

void OperateGibertini() {
    WithLineReadiness<WbalanceGibertini> balance;
    balance.Tare();
    balance.Weight(0, &weight, nullptr);
}

void OperateXL1800() {
    WbalanceDIC_XL1800 balance;
    balance.IsReady();
    balance.Tare();
}

void OperateEL2000S() {
    WbalanceSetra_EL_2000S balance;
    balance.Tare();
}

void OperateScaleHouse() {
    WbalanceScaleHouseALD balance;
    balance.Tare();
}

// The number comes first, or the 4 of I4 would be taken for it.
constexpr char kSics[] = "S S 0.00 g T S TA A I4 A\r\n";

INSTANTIATE_TEST_SUITE_P(
    Drivers, WritableCommandsTest,
    testing::Values(Row{"MettlerToledo",
                        kSics,
                        OperateMettlerToledo,
                        {"@\r\n", "Z\r\n", "@\r\n", "S\r\n", "@\r\n", "SI\r\n"}},
                    Row{"PM",
                        kSics,
                        OperatePM,
                        {"@\r\n", "SI\r\n", "@\r\n", "SI\r\n", "S\r\n",  // a weight
                         "SI\r\n", "T\r\n", "TA 5.00 g\r\n",             // a preset in MT-SICS
                         "SI\r\n", "T\r\n", "SI\r\n", "S\r\n", "SI\r\n", "B 5.00\r\n", "SI\r\n",
                         "S\r\n"}},
                    Row{"PR2003",
                        kSics,
                        OperatePR2003,
                        {"@\r\n", "D \"READY\"\r\n", "DW\r\n", "T\r\n", "T\r\n", "TA 5.00 g\r\n",
                         "S\r\n", "SI\r\n", "PWR 1\r\n", "DW\r\n", "DW\r\n", "PWR 0\r\n"}},
                    Row{"SB32001",
                        kSics,
                        OperateSB32001,
                        {"@\r\n", "SI\r\n", "D \"READY\"\r\n", "DW\r\n", "T\r\n", "TA 5.00 g\r\n",
                         "S\r\n", "SI\r\n"}},
                    Row{"Sartorius",
                        "+     0.00 g  \r\n",
                        OperateSartorius,
                        {"\x1bP\r\n", "\x1bs3_\r\n", "\x1bT\r\n", "\x1bt5.00_\r\n", "\x1bkF4_\r\n",
                         "\x1bP\r\n"}},
                    Row{"Ohaus",
                        "  0.00 g\r\n",
                        OperateOhaus,
                        {"P\r\n", "T\r\n", "SP\r\n", "\x1bR\r\n", "0A\r\n"}},
                    Row{"Radwag",
                        "T D Z D S    0.00 g SI 0.00 g\r\n",
                        OperateRadwag,
                        {"T\r\n", "Z\r\n", "S\r\n", "SI\r\n"}},
                    Row{"Kern",
                        "A00\r\n+   0.00 G S\r\n",
                        OperateKern,
                        {"T \r\n", "O9\r\n", "O8\r\n", "O9\r\n", "O0\r\n", "O8\r\n"}},
                    Row{"Gibertini", "      0.00 g   DS\r\n", OperateGibertini, {"T\r", "B\r"}},
                    Row{"XL1800", "1+ 0.00 g\r\n", OperateXL1800, {"?1", "T", "?1"}},
                    Row{"EL2000S", "1+ 0.00 g\r\n", OperateEL2000S, {"#", "T", "#"}},
                    Row{"ScaleHouse",
                        " 0.00 g N\r\n",
                        OperateScaleHouse,
                        {"P\r\n", "Z\r\n", "T\r\n", "P\r\n"}}),
    [](const auto& row) { return row.param.driver; });

}  // namespace
