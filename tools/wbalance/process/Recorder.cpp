#include "Recorder.h"

#include <algorithm>
#include <cstdio>

#include "output/MeasurementFormat.h"

namespace tool {
namespace {

using record::Entry;

constexpr char kWeigh[] = "weigh";

record::Header HeaderOf(const Connection& connection, WallTime start) {
    return {connection.driver->name, connection.port.Device(), connection.line.Text(),
            TimeText(start)};
}

// "weigh 1 100": the operation, the library's result, and the weight.
std::string ResultText(const Request& request, const Outcome& outcome) {
    char text[96];
    std::snprintf(text, sizeof text, "%s %d %.17g", WordFor(request.operation).c_str(),
                  outcome.result, outcome.weight);
    return text;
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
    for (const auto& exchange : Dialogue(report.trace).exchanges) {
        if (!exchange.command.empty())
            Write(exchange.sent, Entry::Kind::FromHost, exchange.command);
        if (!exchange.answer.empty())
            Write(exchange.answered, Entry::Kind::FromInstrument, exchange.answer);
    }
    Write(report.finished, Entry::Kind::Result, ResultText(request, report.outcome));
}

void Recorder::Write(WallTime time, Entry::Kind kind, const std::string& bytes) {
    const auto since = std::chrono::duration_cast<std::chrono::milliseconds>(time - start_);
    writer_.Write({std::max(since, std::chrono::milliseconds(0)), kind, bytes});
}

std::vector<Report> WeighingsIn(const record::Record& record) {
    std::vector<Report> weighings;
    Report report;
    for (const auto& entry : record.entries) {
        if (entry.kind != Entry::Kind::Result) {
            report.trace.push_back(TraceOf(entry));
            continue;
        }
        char operation[32] = "";
        const int fields = std::sscanf(entry.bytes.c_str(), "%31s %d %lf", operation,
                                       &report.outcome.result, &report.outcome.weight);
        report.finished = WallTime{entry.time};
        if (fields == 3 && operation == std::string(kWeigh)) weighings.push_back(report);
        report = {};
    }
    return weighings;
}

}  // namespace tool
