#include "Identification.h"

#include "OutsideText.h"
#include "readings/Fields.h"

namespace tool {
namespace {

std::string WithoutQuotationMarks(const std::string& text) {
    const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    return quoted ? Trimmed(text.substr(1, text.size() - 2)) : text;
}

// What means something to the driver is an error, or a weight that is printed unasked. A number
// that is too short for a weight may be a version.
bool IsOfAnotherKind(const std::string& line, const DriverInfo& driver) {
    const Meaning meaning = driver.interpret(line + "\r\n").meaning;
    return meaning != Meaning::NotUnderstood && meaning != Meaning::Truncated;
}

bool IsAnswer(const std::string& line, const IdentityQuestion& question, const DriverInfo& driver) {
    if (line.rfind(question.start, 0) != 0) return false;
    if (!question.start.empty()) return true;
    return line != LinesOf(question.command).front() && !IsOfAnotherKind(line, driver);
}

// Without what has not come to its end.
std::string WholeLines(const std::string& answer) {
    return answer.substr(0, answer.rfind('\n') + 1);
}

}  // namespace

Identity Identify(BalanceProcess& line, const DriverInfo& driver) {
    Identity identity;
    for (const auto& question : driver.identity) {
        Request request;
        request.operation = Operation::Display;
        request.text = question.command;
        const Report report = line.Perform(request, [] {});
        if (report.died || report.endless || report.outcome.result == 0) break;
        identity.*question.part = TextIn(WireExchanges(report.trace).Received(), question, driver);
    }
    return identity;
}

std::string TextIn(const std::string& answer, const IdentityQuestion& question,
                   const DriverInfo& driver) {
    if (!LooksLikeText(answer)) return "";
    for (const auto& line : LinesOf(WholeLines(answer))) {
        if (!IsAnswer(line, question, driver)) continue;
        const std::string text = WithoutQuotationMarks(Trimmed(line.substr(question.start.size())));
        if (!text.empty()) return question.partOf == nullptr ? text : question.partOf(text);
    }
    return "";
}

std::string TextOf(const Identity& identity) {
    std::string all;
    const auto add = [&all](const char* label, const std::string& text) {
        if (!text.empty())
            all += (all.empty() ? "" : ", ") + std::string(label) + outside::Shortened(text);
    };
    add("model ", identity.model);
    add("serial number ", identity.serialNumber);
    add("software ", identity.softwareVersion);
    return all;
}

}  // namespace tool
