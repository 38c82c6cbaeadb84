#include <gtest/gtest.h>

#include <algorithm>

#include "Matrix.h"
#include "Steps.h"

namespace faults {
namespace {

int ParseRadwag(const std::string& answer, double* weight, int* decimals) {
    std::size_t match = answer.find("S  ");
    if (match == std::string::npos) match = answer.find("SI ");
    if (match == std::string::npos) return 0;
    std::string number = answer.substr(match + 2, 17);
    const auto isOther = [](char character) {
        return std::string("0123456789-.").find(character) == std::string::npos;
    };
    number.erase(std::remove_if(number.begin(), number.end(), isOther), number.end());
    *weight = std::strtod(number.c_str(), nullptr);
    const std::size_t point = number.find('.');
    if (decimals != nullptr && point != std::string::npos)
        *decimals = static_cast<int>(number.size() - point - 1);
    return 1;
}

// clang-format off

const Steps kParse = {ParseWith(ParseRadwag), Trace("%s - weight = %.2lf cc.\n\n", Stored()), ReturnStatus()};
const Step kInProgress = Trace("%s - Command in progress..\n");
const Steps kCommandFails = {Trace("%s - Command fail!\n"), Return(0)};
const Steps kAgain = {Pause(300), NextPass()};
const Step kReceive = Receive(65, 3, nullptr, kAgain);

Steps OneWay(const char* announcement, const char* trace, const char* command, const char* done) {
    return {
        Ready(),
        TraceAsIs(announcement), Trace(trace), Send(command),
        Passes(2, {
            kReceive,
            If(Holds(done), {Trace("%s - Success.\n\n"), Return(1)}),
            Trace("%s - Command fail!\n\n"),
            Pause(300)}),
        Return(0)};
}

/// A call of one of the object's operations that ends this one when it succeeds.
Step TryOperation(const char* operation) {
    return [=](Run& run) {
        run.status = run.balance.Perform({operation}, nullptr, nullptr);
        return run.status != 0 ? Flow{Flow::Done, run.status} : Flow{};
    };
}
Step TryWeight(long mode) {
    return [=](Run& run) {
        run.status = run.balance.Perform({"Weight", mode}, run.weight, run.decimals);
        return run.status != 0 ? Flow{Flow::Done, run.status} : Flow{};
    };
}

const Description kRadwag = {
    "Radwag",
    {0, 9600, 2, 7, 0, 0, 1, 'S'},
    {
        {"IsReady", {OpenAndClear(), Return(1)}},
        {"_Tare", OneWay("Sending tare command...", "%s - Tare\n", "T\r\n", "T D")},
        {"Zero", OneWay("Sending zero command...", "%s - Zero\n", "Z\r\n", "Z D")},
        {"Tare", {TryOperation("_Tare"), TryOperation("Zero"), TryOperation("_Tare"), Return(0)}},
        {"TareSet", {Return(1)}},
        {"RestoreFactorySettings", {Return(1)}},
        {"Weight", {
            Store(Constant(0.0)),
            Ready(),
            If(Mode(1), {TryWeight(0), TryWeight(2), Return(0)}),
            If(Mode(0), {
                Trace("%s - Stable weight\n"), Send("S\r\n"),
                Passes(3, {
                    kReceive,
                    If(Holds("S E"), {Trace("%s - Command timeout!\n"), Return(0)}),
                    If(Holds("S  "), kParse),
                    If(Either(Holds("S A"), Holds("S I")), Then({kInProgress}, kAgain), kCommandFails)})}),
            If(Mode(2), {
                Trace("%s - Unstable weight\n"), Send("SI\r\n"),
                Passes(3, {
                    kReceive,
                    If(Holds("SI I"), Then({kInProgress}, kAgain)),
                    If(Holds("SI "), kParse, kCommandFails)})}),
            Return(0)}},
    }};

const Exchange kFrame = {"S\r\n", {{"S    -    12.345 g  \r\n", 40}}};
const Exchange kImmediate = {"SI\r\n", {{"SI ?      -0.012 g  \r\n", 40}}};
constexpr double kNoWeight = kUntouchedWeight;
constexpr int kNoDecimals = kUntouchedDecimals;

// Two readings of at most 3 s and pauses of 300 ms; a weight has up to three.
constexpr long kOneWayBound = 2 * 3300;
constexpr long kWeightBound = 3 * 3300;

const std::vector<Dialogue> kDialogues = {
    {"Readiness", {{"IsReady"}, {}}, 1, kNoWeight, kNoDecimals, 0},
    {"Tare", {{"Tare"}, {{"T\r\n", {{"T A\r\n", 20}, {"T D\r\n", 400}}}}}, 1, kNoWeight, kNoDecimals, 3 * kOneWayBound},
    {"Tare done in the second reading", {{"_Tare"}, {{"T\r\n", {{"T A\r\n", 20}, {"T D\r\n", 3200}}}}}, 1, kNoWeight,
     kNoDecimals, kOneWayBound},
    {"Zero in place of the tare", {{"Tare"}, {{"T\r\n", {{"T v\r\n", 20}}}, {"Z\r\n", {{"Z A\r\nZ D\r\n", 20}}}}}, 1, kNoWeight,
     kNoDecimals, 3 * kOneWayBound},
    {"Tare at the second attempt",
     {{"Tare"}, {{"T\r\n", {{"T E\r\n", 20}}}, {"Z\r\n", {{"Z ^\r\n", 20}}}, {"T\r\n", {{"T D\r\n", 20}}}}}, 1, kNoWeight,
     kNoDecimals, 3 * kOneWayBound},
    {"Zero", {{"Zero"}, {{"Z\r\n", {{"Z A\r\n", 20}, {"Z D\r\n", 100}}}}}, 1, kNoWeight, kNoDecimals, kOneWayBound},
    {"Preset tare", {{"TareSet", 0, 5.0}, {}}, 1, kNoWeight, kNoDecimals, 0},
    {"Stable weight", {{"Weight", 0}, {kFrame}}, 1, -12.345, 3, kWeightBound},
    {"Stable weight with its acknowledgement ahead", {{"Weight", 0}, {{"S\r\n", {{"S A\r\n", 20}, {"S         100 g  \r\n", 900}}}}}, 1,
     100.0, kNoDecimals, kWeightBound},
    {"Stable weight long after its acknowledgement",
     {{"Weight", 0}, {{"S\r\n", {{"S A\r\n", 20}, {"S       1.5 g  \r\n", 4000}}}}}, 1, 1.5, 1, kWeightBound},
    {"Stable weight that times out", {{"Weight", 0}, {{"S\r\n", {{"S E\r\n", 20}}}}}, 0, 0.0, kNoDecimals, kWeightBound},
    {"Immediate weight", {{"Weight", 2}, {kImmediate}}, 1, -0.012, 3, kWeightBound},
    {"Immediate weight not accessible", {{"Weight", 2}, {{"SI\r\n", {{"SI I\r\n", 20}}}}}, 0, 0.0, kNoDecimals, kWeightBound},
    {"Stable weight in mode 1", {{"Weight", 1}, {kFrame}}, 1, -12.345, 3, 2 * kWeightBound},
    {"Immediate weight in mode 1", {{"Weight", 1}, {{"S\r\n", {{"S E\r\n", 20}}}, kImmediate}}, 1, -0.012, 3, 2 * kWeightBound},
    {"Unknown mode", {{"Weight", 5}, {}}, 0, 0.0, kNoDecimals, 0},
};

// clang-format on

TEST(WbalanceRadwagFaults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet({kRadwag, kDialogues, Make<WbalanceRadwag>()});
}

}  // namespace
}  // namespace faults
