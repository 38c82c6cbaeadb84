// The parsers against bare strtod on the same number, and a trace line against fputs of the same
// text. Each reports its allocations beside its time.

#include <benchmark/benchmark.h>
#include <wbalance/wbalance.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include "Answers.h"
#include "Meter.h"

namespace {

template <class Work>
void Measure(benchmark::State& state, Work work) {
    const bench::Meter meter;
    for ([[maybe_unused]] auto turn : state)
        work();
    state.counters["allocations"] =
        benchmark::Counter(meter.Read().allocations, benchmark::Counter::kAvgIterations);
}

void Strtod(benchmark::State& state, const char* number) {
    Measure(state, [number] {
        const char* text = number;
        benchmark::DoNotOptimize(text);
        benchmark::DoNotOptimize(std::strtod(text, nullptr));
    });
}

/// With the copy of the answer on which most parsers work.
void CopyAndStrtod(benchmark::State& state, const char* answer) {
    Measure(state, [answer] {
        char text[100];
        std::strcpy(text, answer);
        benchmark::DoNotOptimize(text);
        benchmark::DoNotOptimize(std::strtod(std::strpbrk(text, "0123456789"), nullptr));
    });
}

/// With the copies on which the parser of a ticket works, and the line that it traces.
void StringsAndStrtod(benchmark::State& state, const char* answer) {
    Measure(state, [answer] {
        std::fputs("\nTrovato PROJ\n", stdout);
        const std::string text = answer;
        const std::string number = text.substr(text.find_first_of("0123456789"), 6);
        benchmark::DoNotOptimize(std::strtod(number.c_str(), nullptr));
    });
}

/// `double ParseWeight(char*, int*)`, of the class itself or of all drivers.
template <class Driver, class Class>
void Parse(benchmark::State& state, double (Class::*)(char*, int*), const std::string& answer) {
    Driver driver;
    std::string text = answer;
    int decimals = 0;
    Measure(state, [&] { benchmark::DoNotOptimize(driver.ParseWeight(text.data(), &decimals)); });
}

/// `int ParseWeight(char*, double*, int*)`.
template <class Driver>
void Parse(benchmark::State& state, int (Driver::*)(char*, double*, int*),
           const std::string& answer) {
    Driver driver;
    std::string text = answer;
    double weight = 0.0;
    int decimals = 0;
    Measure(state,
            [&] { benchmark::DoNotOptimize(driver.ParseWeight(text.data(), &weight, &decimals)); });
}

/// `int ParseWeight(char*, double*, int*, bool*)` changes the text that it is given, so each turn
/// has a copy.
template <class Driver>
void Parse(benchmark::State& state, int (Driver::*)(char*, double*, int*, bool*),
           const std::string& answer) {
    Driver driver;
    char text[65];
    double weight = 0.0;
    int decimals = 0;
    bool unstable = false;
    Measure(state, [&] {
        std::strcpy(text, answer.c_str());
        benchmark::DoNotOptimize(driver.ParseWeight(text, &weight, &decimals, &unstable));
    });
}

void Trace(benchmark::State& state, const char* text) {
    CSerialObject serial;
    Measure(state, [&] { serial.TavinTrace(1015, text); });
}

void Fputs(benchmark::State& state, const char* text) {
    Measure(state, [text] { std::fputs(text, stdout); });
}

constexpr char kTraceLine[] = "Read from scale: S S     100.00 g\r\n (time elapsed: 2000 ms)\n";
constexpr char kTicket[] = "PROJ 17\r\nG     120.0 g\r\nT      20.0 g T\r\nN     100.0 g N\r\n";
constexpr char kDirectives[] = "Read from scale: 100%d 12%s (time elapsed: 2000 ms)\n";

struct Row {
    const char* name;
    void (*measure)(benchmark::State&, const char*);
    const char* text;
    const char* comparedWith;
};

const Row kRows[] = {
    {answers::kStrtod, Strtod, "100.00", answers::kStrtod},
    {answers::kStrtodOnACopy, CopyAndStrtod, "S S     100.00 g\r\n", answers::kStrtod},
    {answers::kStrtodOnATicket, StringsAndStrtod, kTicket, answers::kStrtod},
    {"fputs/line", Fputs, kTraceLine, "fputs/line"},
    {"trace/line", Trace, kTraceLine, "fputs/line"},
    {"trace/line_with_directives", Trace, kDirectives, "fputs/line"},
};

/// scripts/bench reads off the label what a time is compared with.
template <class Driver>
void AddParser(const std::string& name) {
    for (const answers::Parsed& parsed : answers::InstrumentOf<Driver>().parsed) {
        benchmark::RegisterBenchmark(("parse/" + name + "_" + parsed.name).c_str(),
                                     [parsed](benchmark::State& state) {
                                         state.SetLabel(parsed.comparedWith);
                                         Parse<Driver>(state, &Driver::ParseWeight, parsed.text);
                                     });
    }
}

}  // namespace

// The figures go to standard error: standard output holds the trace.
int main(int count, char** arguments) {
    benchmark::Initialize(&count, arguments);
    for (const Row& row : kRows) {
        benchmark::RegisterBenchmark(row.name, [row](benchmark::State& state) {
            state.SetLabel(row.comparedWith);
            row.measure(state, row.text);
        });
    }
#define WBALANCE_ADD_PARSER(name, Class) AddParser<Class>(name);
    WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_ADD_PARSER)
#undef WBALANCE_ADD_PARSER
    benchmark::ConsoleReporter reporter;
    reporter.SetOutputStream(&std::cerr);
    reporter.SetErrorStream(&std::cerr);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
