#include "Matrix.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <optional>

#include "Mishaps.h"

namespace faults {
namespace {

using scripted::Line;

/// What can be seen of a run from outside.
struct Sighting {
    std::vector<Line::Event> events;
    std::vector<int> results;
    std::vector<double> weights;
    std::vector<int> decimals;
    bool openAfter = false;
    int portsAfter = 0;
    long took = 0;
    std::string end;  ///< the text of a process end
};

using Perform = std::function<int(const Call&, double*, int*)>;

void Prepare(const Script& script) {
    for (const Exchange& exchange : script)
        Line::Here().Answer(exchange.command, exchange.replies);
}

void PerformAct(const Act& act, const Perform& perform, Sighting& sighting) {
    double weight = kUntouchedWeight;
    int decimals = kUntouchedDecimals;
    sighting.results.push_back(perform(act.call, &weight, &decimals));
    sighting.weights.push_back(weight);
    sighting.decimals.push_back(decimals);
}

/// The earlier calls, the call under test with its mishap, and the call once more.
void Play(const FaultDialogue& dialogue, const Mishap& mishap, const Perform& perform,
          Sighting& sighting) {
    Line& line = Line::Here();
    for (const Act& act : dialogue.before) {
        Prepare(act.script);
        PerformAct(act, perform, sighting);
    }
    Act act = dialogue.act;
    mishap.strike(act.script, line);
    Prepare(act.script);
    const long start = line.Now();
    PerformAct(act, perform, sighting);
    sighting.took = line.Now() - start;
    sighting.openAfter = line.IsOpen();
    sighting.portsAfter = line.PortObjects();

    // An endless operation must also end when it is called again.
    if (dialogue.endless) {
        line.HangUp();
    } else {
        line.PlugInAgain();
    }
    Prepare(dialogue.act.script);
    PerformAct(dialogue.act, perform, sighting);
}

Sighting PlayTable(const Matrix& matrix, const FaultDialogue& dialogue, const Mishap& mishap) {
    Line::Here().Reset();
    Sighting sighting;
    {
        Balance balance(matrix.description, Line::Here());
        const Perform perform = [&](const Call& call, double* weight, int* decimals) {
            return balance.Perform(call, weight, decimals);
        };
        Play(dialogue, mishap, perform, sighting);
    }
    sighting.events = Line::Here().Events();
    return sighting;
}

Sighting PlayLibrary(const Matrix& matrix, const FaultDialogue& dialogue, const Mishap& mishap) {
    Line::Here().Reset();
    Sighting sighting;
    {
        const std::unique_ptr<Subject> subject = matrix.make();
        const Perform perform = [&](const Call& call, double* weight, int* decimals) {
            return subject->Perform(call, weight, decimals);
        };
        Play(dialogue, mishap, perform, sighting);
    }
    sighting.events = Line::Here().Events();
    return sighting;
}

std::string Shown(const Line::Event& event) {
    return std::to_string(event.at) + " ms " + event.text;
}

std::optional<std::string> FirstDifference(const std::vector<Line::Event>& table,
                                           const std::vector<Line::Event>& library) {
    const std::size_t count = std::max(table.size(), library.size());
    for (std::size_t i = 0; i < count; ++i) {
        const std::string wanted = i < table.size() ? Shown(table[i]) : "the end";
        const std::string got = i < library.size() ? Shown(library[i]) : "the end";
        if (wanted != got)
            return "  event " + std::to_string(i) + "\n    wanted: " + wanted +
                   "\n    got:    " + got;
    }
    return std::nullopt;
}

template <class Value>
std::string Listed(const std::vector<Value>& values) {
    std::string text;
    for (const Value& value : values)
        text += " " + std::to_string(value);
    return text;
}

template <class Value>
void Compare(const char* what, const std::vector<Value>& table, const std::vector<Value>& library,
             std::string& report) {
    if (table == library) return;
    report += std::string("  ") + what + "\n    wanted:" + Listed(table) +
              "\n    got:   " + Listed(library) + "\n";
}

std::string Differences(const Sighting& table, const Sighting& library, long boundMs) {
    std::string report;
    Compare("results", table.results, library.results, report);
    Compare("weights", table.weights, library.weights, report);
    Compare("decimals", table.decimals, library.decimals, report);
    if (table.openAfter != library.openAfter || table.portsAfter != library.portsAfter)
        report += "  the port is not left as it should be\n";
    if (const auto difference = FirstDifference(table.events, library.events))
        report += *difference + "\n";
    if (library.took > boundMs)
        report += "  took " + std::to_string(library.took) + " ms, more than " +
                  std::to_string(boundMs) + "\n";
    return report;
}

std::string AgainstLiterals(const FaultDialogue& dialogue, const Sighting& table) {
    const std::size_t at = dialogue.before.size();
    if (table.results[at] == dialogue.result && table.weights[at] == dialogue.weight &&
        table.decimals[at] == dialogue.decimals)
        return "";
    return "  the dialogue itself gives " + std::to_string(table.results[at]) + ", " +
           std::to_string(table.weights[at]) + ", " + std::to_string(table.decimals[at]) + "\n";
}

/// How many calls on the port of an endless operation are tested.
constexpr int kEnoughCalls = 60;

/// The calls on the port that the call under test makes when nothing fails, by number.
std::map<int, std::string> CallsOf(const Matrix& matrix, const FaultDialogue& dialogue) {
    int first = 0;
    int last = 0;
    const Mishap mark{"", [&](Script&, Line& line) {
                          first = line.CallCount();
                          if (dialogue.endless)
                              line.FailCall(first + kEnoughCalls, scripted::PortFault::HangUp);
                      }};
    Line::Here().Reset();
    Balance balance(matrix.description, Line::Here());
    Sighting sighting;
    int performed = 0;
    const Perform perform = [&](const Call& call, double* weight, int* decimals) {
        const int result = balance.Perform(call, weight, decimals);
        if (++performed == static_cast<int>(dialogue.before.size()) + 1)
            last = Line::Here().CallCount();
        return result;
    };
    Play(dialogue, mark, perform, sighting);
    std::map<int, std::string> calls;
    int number = 0;
    for (const Line::Event& event : Line::Here().Events()) {
        const std::string name = event.text.substr(0, event.text.find(' '));
        const bool isCall = name == "open" || name == "clear" || name == "write" ||
                            name == "wait" || name.rfind("set", 0) == 0;
        if (!isCall) continue;
        ++number;
        if (number > first && number <= last) calls[number] = name;
    }
    return calls;
}

/// Returns the reports instead of printing them: what GoogleTest prints during the capture would
/// become part of the trace.
std::vector<std::string> Discrepancies(const Matrix& matrix, int& cells) {
    constexpr std::size_t kMostReports = 5;
    std::vector<std::string> reports;
    const scripted::TraceCapture capture;
    for (const FaultDialogue& dialogue : matrix.dialogues) {
        std::vector<Mishap> mishaps;
        if (!dialogue.endless) mishaps.push_back({"nothing fails", [](Script&, Line&) {}});
        for (const auto& [number, name] : CallsOf(matrix, dialogue))
            AddCallMishaps(number, name, mishaps);
        AddAnswerMishaps(dialogue.act.script, mishaps);
        for (const Mishap& mishap : mishaps) {
            ++cells;
            const Sighting table = PlayTable(matrix, dialogue, mishap);
            const Sighting library = PlayLibrary(matrix, dialogue, mishap);
            std::string report = Differences(table, library, dialogue.boundMs);
            if (&mishap == &mishaps.front()) report += AgainstLiterals(dialogue, table);
            if (report.empty()) continue;
            reports.push_back(dialogue.name + "; " + mishap.name + "\n" + report);
            if (reports.size() == kMostReports) return reports;
        }
    }
    return reports;
}

}  // namespace

void ExpectEveryFaultMet(const Matrix& matrix) {
    int cells = 0;
    const std::vector<std::string> reports = Discrepancies(matrix, cells);
    for (const std::string& report : reports)
        ADD_FAILURE() << report;
    std::printf("%d cells\n", cells);
}

}  // namespace faults
