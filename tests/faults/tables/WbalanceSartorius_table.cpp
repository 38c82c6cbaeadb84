#include <strings.h>

#include "Steps.h"
#include "Tables.h"

namespace faults {
namespace {

/// The text from `position` on, at most `length` characters of it, and none when there are none.
std::string Part(const std::string& text, std::size_t position, std::size_t length) {
    return position < text.size() ? text.substr(position, length) : "";
}

bool IsSame(const std::string& text, const char* other) {
    return strcasecmp(text.c_str(), other) == 0;
}

double SignedNumber(const std::string& answer, std::size_t sign, std::size_t field) {
    const double number = std::strtod(Part(answer, field, 8).c_str(), nullptr);
    return Part(answer, sign, 1) == "-" ? -1 * number : number;
}

double SartoriusNumber(const std::string& answer) {
    const std::size_t lineFeed = answer.find('\n');
    if (lineFeed == 15) return SignedNumber(answer, 0, 2);
    if (lineFeed != 21) return 0.0;
    if (IsSame(Part(answer, 0, 6), "TP1   ") && IsSame(Part(answer, 22, 6), "N1    "))
        return SignedNumber(answer, 28, 30);
    return SignedNumber(answer, 6, 8);
}

// clang-format off

const Step kSendTare = [](Run& run) {
    return Carry({Trace("%s - Tare\n"), Send("\x1bs3_\r\n"), Trace("%s - Tare\n"), Send("\x1bT\r\n")}, run);
};

}  // namespace

template <>
Description TableOf<WbalanceSartorius>() {
    return {
    "Generic Sartorius",
    {0, 1200, 1, 7, 0, 0, 1, 'S'},
    {
        {"IsReady", {OpenAndClear(), Read(1), ReturnStatus()}},
        {"Tare", {
            NeedSerialObject(),
            kSendTare,
            Pause(1000),
            Read(0),
            If([](const Run& run) { return std::fabs(run.reading) <= 0.1; }, {Return(1)}, Fail())}},
        {"TareSet", {
            NeedSerialObject(),
            kSendTare,
            SendNumber("\x1bt%.2lf_\r\n", Preset(), "%s - Set tare to %.2lf\n", 10, "a preset tare"),
            Pause(1000),
            Trace("%s - Tare\n"), Send("\x1bkF4_\r\n"),
            Pause(2000),
            Read(0),
            If([](const Run& run) { return std::fabs(run.call.preset + run.reading) <= 0.01; }, {Return(1)}, Fail())}},
        {"RestoreFactorySettings", {Return(1)}},
        {"Weight", {
            Store(Constant(0.0)),
            NeedSerialObject(),
            Clear(GoOn()),
            Trace("%s - Weight\n"), Send("\x1bP\r\n"),
            Pause(500),
            Receive(89, 3, nullptr, Fail()),
            Do([](Run& run) { *run.weight = SartoriusNumber(run.answer); }),
            Trace("%s - weight = %.2lf cc.\n\n", Stored()),
            Return(1)}},
    }};
}

// clang-format on

}  // namespace faults
