#include <algorithm>

#include "Steps.h"
#include "Tables.h"

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

}  // namespace

template <>
Description TableOf<WbalanceRadwag>() {
    return {
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
}

// clang-format on

}  // namespace faults
