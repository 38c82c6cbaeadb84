#include "Confirmation.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "Fields.h"
#include "Measurement.h"
#include "OutsideText.h"

namespace tool {
namespace {

// Grams by which a weight differs noticeably; the drivers' own checks allow as much.
constexpr double kNoticed = 0.1;

const std::string kBegun = "the balance has begun it and finishes it when its pan comes to rest";

const WireExchange* LastAnswered(const WireExchanges& wire) {
    const auto last = std::find_if(wire.exchanges.rbegin(), wire.exchanges.rend(),
                                   [](const WireExchange& one) { return !one.answer.empty(); });
    return last == wire.exchanges.rend() ? nullptr : &*last;
}

const WireExchange* ExchangeOf(const WireExchanges& wire, const std::string& command) {
    for (const auto& exchange : wire.exchanges) {
        if (exchange.command.rfind(command, 0) == 0) return &exchange;
    }
    return nullptr;
}

// The status behind the command's name: "T I", "Z +", "T v".
std::string StatusOf(const std::string& answer) {
    const auto lines = LinesOf(answer);
    const auto words = WordsOf(lines.empty() ? "" : lines.back());
    return words.size() == 2 ? words[1] : "";
}

Confirmation NoAnswer() {
    return {ExitCode::Silent, SentenceFor(NoWeight(Meaning::Silence))};
}

Confirmation RefusedWith(const std::string& answer, const OperationInfo& info) {
    const std::string sent = "; it sent " + outside::Quoted(answer);
    const std::string which = info.zeroes
                                  ? "zeroing, which this driver does in place of taring; the "
                                    "drivers of the models tare (`wbalance drivers`)"
                                  : "it";
    const std::string status = StatusOf(answer);
    if (status == "A") return {ExitCode::NotStable, kBegun + sent};
    if (status == "I" || status == "E")
        return {ExitCode::NotStable, "the balance was busy or not stable in time" + sent};
    if (status == "+" || status == "^")
        return {ExitCode::Overload, "the load is above the range for " + which + sent};
    if (status == "-" || status == "v")
        return {ExitCode::Underload, "the load is below the range for " + which + sent};
    return {ExitCode::Refused, "the balance did not confirm it" + sent};
}

Confirmation NotAtRest() {
    return {ExitCode::NotStable,
            "the balance answers, but not this, as it does while its pan moves; it may still carry "
            "it out when the pan comes to rest"};
}

// Nothing came for it.
Confirmation Unanswered(Operation operation, const WireExchanges& wire) {
    if (LastAnswered(wire) == nullptr) return NoAnswer();
    if (WaitsForThePan(operation)) return NotAtRest();
    return {ExitCode::Silent, "the balance did not answer it"};
}

Confirmation Unchecked(const Reading& reading, const WireExchange& last) {
    return {CodeFor(reading.meaning), "it could not be checked: " + SentenceFor(reading) +
                                          "; the balance sent " + outside::Quoted(last.answer)};
}

std::string WeightOf(const Reading& reading) {
    return reading.digits + " " + outside::Printable(reading.unit);
}

// A driver that reads a weight as its check takes some messages for 0.00.
Confirmation CheckedByWeight(const DriverInfo& driver, const WireExchanges& wire) {
    const WireExchange* last = LastAnswered(wire);
    if (last == nullptr) return NoAnswer();
    const Reading reading = driver.interpret(last->answer);
    return reading.IsWeight() ? Confirmation{} : Unchecked(reading, *last);
}

Confirmation Failed(const DriverInfo& driver, Operation operation, const WireExchanges& wire) {
    const OperationInfo& info = driver.operations.at(operation);
    const WireExchange* last = LastAnswered(wire);
    if (last == nullptr || last != &wire.exchanges.back()) return Unanswered(operation, wire);
    if (!info.checkedByWeight) return RefusedWith(last->answer, info);
    const Reading reading = driver.interpret(last->answer);
    if (!reading.IsWeight()) return {CodeFor(reading.meaning), SentenceFor(reading)};
    if (reading.stability == Stability::Dynamic) {
        return {ExitCode::NotStable, "afterwards the balance shows " + WeightOf(reading) +
                                         " and the pan moves, so it may have been carried out or "
                                         "not; wait until it is at rest"};
    }
    return {ExitCode::Refused,
            "afterwards the balance shows " + WeightOf(reading) + ", so it was not carried out"};
}

/// The weights that a balance showed around the command that set its preset tare.
struct AroundPreset {
    std::optional<Reading> first;   ///< of all
    std::optional<Reading> before;  ///< the last one ahead of the command
    const WireExchange* last = nullptr;
};

AroundPreset LookAround(const DriverInfo& driver, const WireExchanges& wire,
                        const WireExchange& setter) {
    AroundPreset around;
    for (const WireExchange& exchange : wire.exchanges) {
        if (&exchange == &setter) break;
        const Reading reading = driver.interpret(exchange.answer);
        if (!reading.IsWeight()) continue;
        if (!around.first) around.first = reading;
        around.before = reading;
    }
    around.last = &wire.exchanges.back();
    return around;
}

// Tared, a balance shows about zero; with the preset that follows it shows what is on the pan less
// the preset, whatever its driver makes of that.
Confirmation CheckedByChange(const DriverInfo& driver, const WireExchanges& wire,
                             const WireExchange& setter, double preset) {
    const AroundPreset around = LookAround(driver, wire, setter);
    if (around.last->answer.empty()) return NotAtRest();
    const Reading after = driver.interpret(around.last->answer);
    if (!after.IsWeight()) return Unchecked(after, *around.last);
    const double seen = std::min(kNoticed, preset / 2);
    const double before = around.before ? around.before->Value() : 0.0;
    if (std::fabs(after.Value() - before) >= seen) return {};
    if (around.first && std::fabs(around.first->Value() - preset) < kNoticed) {
        return {ExitCode::NotUnderstood,
                "the pan holds as much as the preset, so that the balance shows " +
                    WeightOf(after) + " with it and without; take the load off and set it again"};
    }
    return {ExitCode::Refused, "afterwards the balance still shows " + WeightOf(after) +
                                   ", so it was not carried out"};
}

// Whether the answer to the operation's own command confirms it, where there was such a command.
std::optional<Confirmation> ConfirmedByAnswer(const DriverInfo& driver, Operation operation,
                                              const WireExchanges& wire) {
    const OperationInfo& info = driver.operations.at(operation);
    const WireExchange* exchange = info.command.empty() ? nullptr : ExchangeOf(wire, info.command);
    if (exchange == nullptr) return std::nullopt;
    if (exchange->answer.empty()) return Unanswered(operation, wire);
    if (exchange->answer.find(info.confirmation) != std::string::npos) return Confirmation{};
    if (driver.interpret(exchange->answer).meaning == Meaning::Calibrating)
        return Confirmation{ExitCode::NotStable,
                            kBegun + ("; it sent " + outside::Quoted(exchange->answer))};
    return RefusedWith(exchange->answer, info);
}

bool FellBack(const OperationInfo& info, const WireExchanges& wire) {
    const WireExchange* last = LastAnswered(wire);
    return !info.fallback.empty() && last != nullptr && last->command == info.fallback &&
           wire.exchanges.size() > 1;
}

}  // namespace

Confirmation Confirm(const DriverInfo& driver, Operation operation, const Report& report) {
    if (!report.question.empty()) {
        const Reading reading = SignOfLife(driver, report).reading;
        if (reading.meaning == Meaning::NotStable) return NotAtRest();
        return {CodeFor(reading.meaning), SentenceFor(reading)};
    }
    const OperationInfo& info = driver.operations.at(operation);
    const WireExchanges wire(report.trace);
    const WireExchange* setter = info.setter.empty() ? nullptr : ExchangeOf(wire, info.setter);
    if (setter != nullptr) return CheckedByChange(driver, wire, *setter, report.request.grams);
    if (report.outcome.result == 0) return Failed(driver, operation, wire);
    if (const auto confirmation = ConfirmedByAnswer(driver, operation, wire)) return *confirmation;
    if (info.checkedByWeight) return CheckedByWeight(driver, wire);
    if (info.zeroes) return {ExitCode::Done, "zeroed, as this driver does in place of taring"};
    if (FellBack(info, wire)) return {ExitCode::Done, info.fellBack};
    return {};
}

}  // namespace tool
