#include "Steps.h"
#include "Tables.h"

namespace faults {
namespace {

constexpr std::size_t kNone = std::string::npos;

/// The last blank in the positions from 1 to `last`.
std::size_t BlankBefore(const std::string& text, std::size_t last) {
    for (std::size_t k = last; k >= 1; --k)
        if (text[k] == ' ') return k;
    return kNone;
}

double NumberIn(const std::string& text) {
    return std::strtod(text.c_str(), nullptr);
}

double NumberBefore(const std::string& text, std::size_t p) {
    if (p < 2) return NumberIn(text.substr(0, p));
    if (text[p - 1] == ' ') return 0.0;
    const std::size_t blank = BlankBefore(text, p - 2);
    return NumberIn(blank == kNone ? text.substr(0, p) : text.substr(blank + 1, p - blank - 1));
}

/// Whether what the text begins with, up to the blank before the tare line's mark, is zero.
bool TareTextIsZero(const std::string& text, std::size_t p) {
    const std::size_t blank = p < 2 ? kNone : BlankBefore(text, p - 1);
    return NumberIn(text.substr(0, blank == kNone ? p : blank)) == 0.0;
}

// clang-format off

const Step kParseFails = TraceAsIs("\nERRORE NEL PARSING\n");

/// The weight in a ticket; it traces as it goes.
const Step kParseTicket = [](Run& run) {
    *run.weight = 0.0;
    if (run.decimals != nullptr) *run.decimals = 3;
    run.status = 0;
    std::string text = run.answer;
    if (const std::size_t project = text.find("PROJ"); project != kNone) {
        run.balance.Trace("\nTrovato PROJ\n");
        text = text.substr(project);
    }
    std::size_t p = text.find(" g N");
    if (p == kNone) {
        p = text.find(" g T");
        if (p == kNone || !TareTextIsZero(text, p)) return kParseFails(run);
        run.balance.Trace("\nCerco g\n");
        p = text.find(" g");
    }
    *run.weight = NumberBefore(text, p);
    run.status = 1;
    return Flow{};
};

const Steps kFailed = {TraceAsIs("Weight procedure failed!"), Return(0)};

}  // namespace

template <>
Description TableOf<WbalanceScaleHouseALD>() {
    return {
    "Scale House ALD",
    {0, 2400, 0, 7, 0, 0, 1, 'S'},
    {
        {"IsReady", {OpenAndClear(), Read(1), ReturnStatus()}},
        {"Tare", {
            Ready(),
            Trace("%s - Zero\n"), Send("Z\r\n"), Pause(2000),
            Trace("%s - Tare\n"), Send("T\r\n"), Pause(2000),
            Read(0),
            If(ReadingBelow(0.1), {Return(1)}, Fail())}},
        {"TareSet", {Return(0)}},
        {"RestoreFactorySettings", {Return(1)}},
        {"Weight", {
            Store(Constant(0.0)),
            NeedSerialObject(kFailed),
            Trace("%s - Weight\n"), Send("P\r\n", kFailed),
            Pause(500),
            Receive(257, 3, nullptr, kFailed),
            If([](const Run& run) { return run.answer.empty(); }, kFailed),
            kParseTicket,
            If(StatusIs(0), kFailed),
            Trace("%s - weight = %.2lf gr.\n\n", Stored()),
            Return(1)}},
    }};
}

// clang-format on

}  // namespace faults
