#include "Recorder.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

#include "output/MeasurementFormat.h"
#include "readings/Fields.h"

namespace tool {
namespace {

using record::Entry;

const std::string kWeigh = "weigh";
const std::string kAsk = "ask";
// The words for the modes, in their order.
const std::array<std::string, 3> kModes = {"stable", "auto", "now"};

record::Header HeaderOf(const Connection& connection, WallTime start) {
    return {connection.driver->name, connection.port.Device(), connection.line.Text(),
            TimeText(start)};
}

// "weigh 1 100 auto": the operation, the library's result, the weight, and of a weighing its mode.
std::string ResultText(const Request& request, const Outcome& outcome) {
    char text[96];
    std::snprintf(text, sizeof text, "%s %d %.17g", WordFor(request.operation).c_str(),
                  outcome.result, outcome.weight);
    const bool weighs = request.operation == Operation::Weigh;
    return weighs ? text + (" " + kModes.at(static_cast<std::size_t>(request.mode))) : text;
}

template <class Number>
bool TakeNumber(const std::string& word, Number& number) {
    const char* end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, number);
    return error == std::errc() && stop == end;
}

bool TakeMode(const std::string& word, long& mode) {
    const auto known = std::find(kModes.begin(), kModes.end(), word);
    mode = known - kModes.begin();
    return known != kModes.end();
}

// The words of ResultText().
bool TakeResult(const std::vector<std::string>& words, Report& report) {
    if (words.size() != 3 && words.size() != 4) return false;
    return TakeNumber(words[1], report.outcome.result) &&
           TakeNumber(words[2], report.outcome.weight) &&
           (words.size() == 3 || TakeMode(words[3], report.request.mode));
}

[[noreturn]] void ThrowNoResult(const Entry& entry) {
    throw record::Error("line " + std::to_string(entry.line) +
                        " of the record: expected what a weighing returned, such as \"" + kWeigh +
                        " 1 12.34 auto\"");
}

// The trace that the library would have written of an entry.
TraceText TraceOf(const Entry& entry) {
    const WallTime time{entry.time};
    if (entry.kind == Entry::Kind::FromHost) return {time, "<== " + entry.bytes + " ... OK\n\n"};
    return {time, "Read from scale: " + entry.bytes + " (time elapsed: 0 ms)\n"};
}

}  // namespace

Recorder::Recorder(const std::string& path, const Connection& connection)
    : start_(std::chrono::system_clock::now()), writer_(path, HeaderOf(connection, start_)) {}

void Recorder::Add(const Request& request, const Report& report) {
    WriteExchanges(report.trace);
    Write(report.finished, Entry::Kind::Result, ResultText(request, report.outcome));
    if (report.question.empty()) return;
    Request question;
    question.operation = Operation::Ask;
    WriteExchanges(report.question);
    Write(report.finished, Entry::Kind::Result, ResultText(question, {}));
}

void Recorder::WriteExchanges(const std::vector<TraceText>& trace) {
    for (const auto& exchange : WireExchanges(trace).exchanges) {
        if (!exchange.command.empty())
            Write(exchange.sent, Entry::Kind::FromHost, exchange.command);
        if (!exchange.answer.empty())
            Write(exchange.answered, Entry::Kind::FromInstrument, exchange.answer);
    }
}

void Recorder::Write(WallTime time, Entry::Kind kind, const std::string& bytes) {
    const auto since = std::chrono::duration_cast<std::chrono::milliseconds>(time - start_);
    writer_.Write({std::max(since, std::chrono::milliseconds(0)), kind, bytes});
}

std::vector<Report> WeighingsIn(const record::Record& record) {
    std::vector<Report> weighings;
    Report report;
    for (const auto& entry : record.entries) {
        if (entry.kind == Entry::Kind::Event) continue;
        if (entry.kind != Entry::Kind::Result) {
            report.trace.push_back(TraceOf(entry));
            continue;
        }
        const auto words = WordsOf(entry.bytes);
        report.finished = WallTime{entry.time};
        if (!words.empty() && words[0] == kWeigh) {
            if (!TakeResult(words, report)) ThrowNoResult(entry);
            weighings.push_back(std::move(report));
        } else if (!words.empty() && words[0] == kAsk && !weighings.empty()) {
            weighings.back().question = report.trace;
        }
        report = {};
    }
    return weighings;
}

}  // namespace tool
