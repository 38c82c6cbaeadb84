#include <gtest/gtest.h>
#include <strings.h>

#include "Matrix.h"
#include "Steps.h"

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

const Description kSartorius = {
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

Exchange Print(const char* lines) {
    return {"\x1bP\r\n", {{lines, 40}}};
}
const Exchange kPrint = Print("+   123.56 g  \r\n");
const Act kReady = {{"IsReady"}, {kPrint}};
constexpr double kNoWeight = kUntouchedWeight;
constexpr int kNoDecimals = kUntouchedDecimals;

const std::vector<Dialogue> kDialogues = {
    {"Readiness", kReady, 1, kNoWeight, kNoDecimals, 3500},
    {"Weight without a readiness before", {{"Weight", 1}, {kPrint}}, 0, 0.0, kNoDecimals, 3500},
    {"Tare without a readiness before", {{"Tare"}, {kPrint}}, 0, kNoWeight, kNoDecimals, 4500},
    {"Weight of 16 characters", {{"Weight", 1}, {Print("-    12.34 g  \r\n")}}, 1, -12.34, kNoDecimals, 3500, {kReady}},
    {"Weight of 22 characters", {{"Weight", 0}, {Print("N     +   123.56 g  \r\n")}}, 1, 123.56, kNoDecimals, 3500, {kReady}},
    {"Net behind the tare", {{"Weight", 2}, {Print("TP1   +     2.50 g  \r\nn1    -     7.25 g  \r\n")}}, 1, -7.25,
     kNoDecimals, 3500, {kReady}},
    {"Overload reads as zero", {{"Weight", 1}, {Print("      H       \r\n")}}, 1, 0.0, kNoDecimals, 3500, {kReady}},
    {"Tare", {{"Tare"}, {Print("+     0.10 g  \r\n")}}, 1, kNoWeight, kNoDecimals, 4500, {kReady}},
    {"Tare that leaves too much", {{"Tare"}, {Print("+     0.11 g  \r\n")}}, 0, kNoWeight, kNoDecimals, 4500, {kReady}},
    {"Preset tare", {{"TareSet", 0, 5.0}, {Print("-     4.99 g  \r\n")}}, 1, kNoWeight, kNoDecimals, 6500, {kReady}},
    {"Preset tare not taken", {{"TareSet", 0, 5.0}, {Print("-     4.98 g  \r\n")}}, 0, kNoWeight, kNoDecimals, 6500, {kReady}},
};

// clang-format on

TEST(WbalanceSartoriusFaults, Every_single_fault_ends_as_the_instruments_table_says) {
    ExpectEveryFaultMet({kSartorius, kDialogues, Make<WbalanceSartorius>()});
}

}  // namespace
}  // namespace faults
