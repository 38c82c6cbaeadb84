// The parsers against bare strtod on the same number, and a trace line against fputs of the same
// text. Each reports its allocations beside its time.

#include <benchmark/benchmark.h>
#include <wbalance/wbalance.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

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

/// With the copy of the answer that the common, Sartorius and Radwag parsers work on.
void CopyAndStrtod(benchmark::State& state, const char* answer) {
    Measure(state, [answer] {
        char text[100];
        std::strcpy(text, answer);
        benchmark::DoNotOptimize(text);
        benchmark::DoNotOptimize(std::strtod(std::strpbrk(text, "0123456789"), nullptr));
    });
}

/// With the copies that the Scale House parser works on, and the line that it traces.
void StringsAndStrtod(benchmark::State& state, const char* answer) {
    Measure(state, [answer] {
        std::fputs("\nTrovato PROJ\n", stdout);
        const std::string text = answer;
        const std::string number = text.substr(text.find_first_of("0123456789"), 6);
        benchmark::DoNotOptimize(std::strtod(number.c_str(), nullptr));
    });
}

/// `double ParseWeight(char*, int*)`, the common parser's and the Sartorius form.
template <class Driver>
void Returned(benchmark::State& state, const char* answer) {
    Driver driver;
    std::string text = answer;
    int decimals = 0;
    Measure(state, [&] { benchmark::DoNotOptimize(driver.ParseWeight(text.data(), &decimals)); });
}

/// `int ParseWeight(char*, double*, int*)`.
template <class Driver>
void Stored(benchmark::State& state, const char* answer) {
    Driver driver;
    std::string text = answer;
    double weight = 0.0;
    int decimals = 0;
    Measure(state,
            [&] { benchmark::DoNotOptimize(driver.ParseWeight(text.data(), &weight, &decimals)); });
}

/// The Ohaus parser changes the text that it is given, so each turn has a copy.
void Ohaus(benchmark::State& state, const char* answer) {
    WbalanceOHAUS_SPU602 driver;
    char text[65];
    double weight = 0.0;
    int decimals = 0;
    bool unstable = false;
    Measure(state, [&] {
        std::strcpy(text, answer);
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

const std::string kLongBlanks = "S S " + std::string(85, ' ') + "1 g\r\n";

struct Row {
    const char* name;
    void (*measure)(benchmark::State&, const char*);
    const char* text;
};

const Row kRows[] = {
    {"strtod/number_100_00", Strtod, "100.00"},
    {"strtod/with_the_copy_of_an_answer", CopyAndStrtod, "S S     100.00 g\r\n"},
    {"strtod/with_the_strings_and_trace_of_a_ticket", StringsAndStrtod, kTicket},
    {"parse/mettler_typical", Returned<WbalanceMettlerToledo>, "S S     100.00 g\r\n"},
    {"parse/mettler_worst", Returned<WbalanceMettlerToledo>, kLongBlanks.c_str()},
    {"parse/sartorius_typical", Returned<WbalanceSartorius>, "+   100.00 g  \r\n"},
    {"parse/sartorius_worst", Returned<WbalanceSartorius>,
     "TP1   +   123.56 g  \r\nN1    +   100.00 g  \r\n"},
    {"parse/ohaus_typical", Ohaus, "      100.00 g     \r\n"},
    {"parse/radwag_typical", Stored<WbalanceRadwag>, "S         100.00 g  \r\n"},
    {"parse/radwag_worst", Stored<WbalanceRadwag>,
     "S A\r\nS A\r\nS A\r\nS A\r\nS A\r\nS         100.00 g  \r\n"},
    {"parse/kern_typical", Stored<WbalanceKern_EW_EGN_EWB>, "A00\r\n+ 100.00 G S\r\n"},
    {"parse/gibertini_typical", Stored<WbalanceGibertini>, "    100.00 g   DS\r\n"},
    {"parse/gibertini_worst", Stored<WbalanceGibertini>,
     "    100.00 g   DS\r\n    100.00 g   DS\r\n    100.00 g   DS\r\n"},
    {"parse/xl1800_typical", Stored<WbalanceDIC_XL1800>, "1+  100.00 g\r\n"},
    {"parse/scale_house_typical", Stored<WbalanceScaleHouseALD>, kTicket},
    {"fputs/line", Fputs, kTraceLine},
    {"trace/line", Trace, kTraceLine},
    {"trace/line_with_directives", Trace, kDirectives},
};

}  // namespace

// The figures go to standard error: standard output holds the trace.
int main(int count, char** arguments) {
    benchmark::Initialize(&count, arguments);
    for (const Row& row : kRows)
        benchmark::RegisterBenchmark(row.name, row.measure, row.text);
    benchmark::ConsoleReporter reporter;
    reporter.SetOutputStream(&std::cerr);
    reporter.SetErrorStream(&std::cerr);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
