#include "Confirmation.h"

#include <algorithm>

#include "Fields.h"
#include "Measurement.h"
#include "OutsideText.h"

namespace tool {
namespace {

const Exchange* LastAnswered(const Dialogue& dialogue) {
    const auto last = std::find_if(dialogue.exchanges.rbegin(), dialogue.exchanges.rend(),
                                   [](const Exchange& one) { return !one.answer.empty(); });
    return last == dialogue.exchanges.rend() ? nullptr : &*last;
}

const Exchange* ExchangeOf(const Dialogue& dialogue, const std::string& command) {
    for (const auto& exchange : dialogue.exchanges) {
        if (exchange.command.rfind(command, 0) == 0) return &exchange;
    }
    return nullptr;
}

// The status behind the command's name, which MT-SICS and Radwag share: "T I", "Z +", "T v".
std::string StatusOf(const std::string& answer) {
    const auto lines = LinesOf(answer);
    const auto words = WordsOf(lines.empty() ? "" : lines.back());
    return words.size() == 2 ? words[1] : "";
}

Confirmation RefusedWith(const std::string& answer) {
    const std::string sent = "; it sent " + outside::Quoted(answer);
    const std::string status = StatusOf(answer);
    if (status == "I" || status == "E")
        return {ExitCode::NotStable, "the balance was busy or not stable in time" + sent};
    if (status == "+" || status == "^")
        return {ExitCode::Overload, "the load is above the range for it" + sent};
    if (status == "-" || status == "v")
        return {ExitCode::Underload, "the load is below the range for it" + sent};
    return {ExitCode::Refused, "the balance did not confirm it" + sent};
}

Confirmation NoAnswer() {
    return {ExitCode::Silent, SentenceFor(NoWeight(Meaning::Silence))};
}

Confirmation Failed(const DriverInfo& driver, const OperationInfo& info, const Dialogue& dialogue) {
    const Exchange* last = LastAnswered(dialogue);
    if (last == nullptr) return NoAnswer();
    if (!info.checkedByWeight) return RefusedWith(last->answer);
    const Reading reading = driver.dialect(last->answer);
    if (!reading.IsWeight()) return {CodeFor(reading.meaning), SentenceFor(reading)};
    return {ExitCode::Refused, "afterwards the balance shows " + reading.digits + " " +
                                   reading.unit + ", so it was not carried out"};
}

// A driver that reads a weight as its check takes some messages for 0.00.
Confirmation CheckedByWeight(const DriverInfo& driver, const Dialogue& dialogue) {
    const Exchange* last = LastAnswered(dialogue);
    if (last == nullptr) return NoAnswer();
    const Reading reading = driver.dialect(last->answer);
    if (reading.IsWeight()) return {};
    return {CodeFor(reading.meaning), "it could not be checked: " + SentenceFor(reading) +
                                          "; the balance sent " + outside::Quoted(last->answer)};
}

}  // namespace

Confirmation Confirm(const DriverInfo& driver, Operation operation, const Report& report) {
    const OperationInfo& info = driver.operations.at(operation);
    const Dialogue dialogue(report.trace);
    if (report.outcome.result == 0) return Failed(driver, info, dialogue);
    if (!info.command.empty()) {
        const Exchange* exchange = ExchangeOf(dialogue, info.command);
        if (exchange != nullptr && exchange->answer.empty())
            return {ExitCode::Silent, "the balance did not answer it"};
        if (exchange != nullptr && exchange->answer.find(info.confirmation) == std::string::npos)
            return RefusedWith(exchange->answer);
        if (exchange != nullptr) return {};
    }
    if (info.checkedByWeight) return CheckedByWeight(driver, dialogue);
    // Radwag's tare falls back on zeroing, whose success it reports as its own.
    const Exchange* last = LastAnswered(dialogue);
    if (operation == Operation::Tare && last != nullptr && last->command == "Z\r\n" &&
        dialogue.exchanges.size() > 1)
        return {ExitCode::Done, "zeroed, because the balance did not confirm the tare"};
    return {};
}

}  // namespace tool
