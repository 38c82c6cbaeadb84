#include "Detector.h"

#include <algorithm>

#include "Identification.h"
#include "RawLine.h"
#include "Record.h"
#include "process/PortCheck.h"
#include "readings/Fields.h"

namespace tool {
namespace {

// What instruments are set to beside the settings that they are delivered with.
constexpr char const* kUsual[] = {"9600,8N1", "9600,7E1", "2400,7E1", "1200,7E1",  "4800,7E1",
                                  "4800,8N1", "1200,8N1", "9600,7O1", "2400,7O1",  "19200,8N1",
                                  "600,7E1",  "9600,8E1", "4800,8N2", "19200,7E1", "38400,8N1"};

void AddOnce(std::vector<LineSettings>& settings, const LineSettings& line) {
    if (std::find(settings.begin(), settings.end(), line) == settings.end())
        settings.push_back(line);
}

bool IsDeliveredWith(const Probe& probe, const LineSettings& line) {
    return std::any_of(probe.drivers.begin(), probe.drivers.end(),
                       [&](const DriverInfo* driver) { return driver->line == line; });
}

}  // namespace

Detector::Detector(PortNumber port, BalanceProcess::TraceSink sink, Note note, bool thorough)
    : port_(port), sink_(std::move(sink)), note_(std::move(note)), thorough_(thorough) {}

std::vector<LineSettings> Detector::Settings(bool thorough) {
    std::vector<LineSettings> settings;
    for (const auto& driver : Drivers())
        AddOnce(settings, driver.line);
    if (!thorough) return settings;
    for (const char* text : kUsual)
        AddOnce(settings, LineSettings::Parse(text, {}));
    return settings;
}

Detection Detector::Run() {
    for (const auto& line : Settings(thorough_)) {
        note_("trying " + line.Text());
        if (TryAt(line)) break;
    }
    found_.refused = refused_;
    return found_;
}

bool Detector::TryAt(const LineSettings& line) {
    const Connection connection{&RawLine(), port_, line, 1};
    BalanceProcess balance(connection, sink_);
    for (const auto& probe : Probes()) {
        if (!thorough_ && !IsDeliveredWith(probe, line)) continue;
        if (TryProbe(balance, connection, probe)) return true;
        if (IsRefused(line)) return false;
        // Whoever answers, understood or not, is not asked the other instruments' questions.
        if (heard_) return false;
    }
    return false;
}

bool Detector::TryProbe(BalanceProcess& balance, const Connection& connection, const Probe& probe) {
    std::string answer = Ask(balance, connection, probe.command);
    if (!heard_) return false;
    // Before the first question the instrument may hold half a command, from what was sent at other
    // settings; it complains about that.
    if (probe.DriverFor(answer) == nullptr)
        answer = AskAgain(balance, connection, probe.command, answer);
    const DriverInfo* driver = probe.DriverFor(answer);
    if (driver == nullptr) {
        NoteStranger(answer, connection.line);
        return false;
    }
    // One answer may be chance: noise, or the end of a line that someone else asked for.
    if (probe.DriverFor(AskAgain(balance, connection, probe.command, "")) != driver) return false;
    found_ = {driver->name, connection.line, answer, false, false, connection.line, {}, {}};
    const std::string& forModel = driver->recognition.modelQuestion;
    if (!forModel.empty())
        found_.driver = DriverForModel(*driver, AskAgain(balance, connection, forModel, "")).name;
    found_.identity = Identify(balance, *driver);
    return true;
}

bool Detector::IsRefused(const LineSettings& line) const {
    return !refused_.empty() && refused_.back() == line;
}

// Text says more than garbled bytes, wherever each was heard.
void Detector::NoteStranger(const std::string& answer, const LineSettings& line) {
    const bool text = LooksLikeText(answer) && !answer.empty();
    if (found_.foreignText && !text) return;
    (text ? found_.foreignText : found_.garbled) = true;
    found_.answer = answer;
    found_.heardAt = line;
}

std::string Detector::AskAgain(BalanceProcess& balance, const Connection& connection,
                               const std::string& command, const std::string& before) {
    const std::string answer = Ask(balance, connection, command);
    heard_ = true;
    return answer.empty() ? before : answer;
}

std::string Detector::Ask(BalanceProcess& balance, const Connection& connection,
                          const std::string& command) {
    Request request;
    request.operation = Operation::Display;
    request.text = command;
    const Report report = balance.Perform(request, [] {});
    if (WireExchanges(report.trace).settingsRefused) {
        // An adapter that can't do these may do the next.
        refused_.push_back(connection.line);
        heard_ = false;
        return "";
    }
    RequirePort(connection, report);
    heard_ = report.outcome.result != 0;
    return WireExchanges(report.trace).Received();
}

}  // namespace tool
