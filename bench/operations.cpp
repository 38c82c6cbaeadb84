// What each operation costs a host over a virtual line with an instrument that answers at once, and
// beside it the floor: what an operation is made of (an exchange, the settings with the clearing, a
// pause, a wait in silence), each by hand on a QSerialPort that is held open on the same line. One
// JSON object a line on standard error; the library's trace goes where standard output goes.
//
//     bench_operations [REPETITIONS [DRIVER OPERATION]]

#include <unistd.h>

#include <QtSerialPort/QSerialPort>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "ByHand.h"
#include "CannedInstrument.h"
#include "Meter.h"
#include "marlet-small.h"
#include "simulator/VirtualBench.h"

namespace {

using bench::Cost;
using bench::Meter;
using bench::Operation;

constexpr int kExchanges = 3000;
constexpr int kConfigurations = 300;
constexpr int kWaits = 100;
constexpr int kWaitMs = 10;

bool Exchange(QSerialPort& port) {
    port.write("S\r\n");
    port.waitForReadyRead(1000);
    return port.readAll().endsWith("\n");
}

/// The medians of `times` runs; a run that fails ends the measurement.
Cost MedianOf(int times, const std::function<bool()>& run) {
    std::vector<Cost> costs;
    for (int i = 0; i < times; ++i) {
        const Meter meter;
        if (!run()) std::abort();
        costs.push_back(meter.Read());
    }
    return Median(costs);
}

void PrintFloor(const char* part, const Cost& cost, double scheduleMs) {
    std::fprintf(stderr,
                 "{\"floor\":\"%s\",\"wall_ms\":%.4f,\"processor_ms\":%.4f,\"allocations\":%.0f}\n",
                 part, cost.wallMs - scheduleMs, cost.processorMs, cost.allocations);
}

void PrintFloors() {
    simulator::VirtualBench bench;
    bench.place(bench::CannedInstrument(bench::Operations().front()));
    QSerialPort port("/dev/ttyS0");
    if (!port.open(QIODevice::ReadWrite) || !bench::Configure(port)) std::abort();
    PrintFloor("exchange", MedianOf(kExchanges, [&port] { return Exchange(port); }), 0);
    PrintFloor("settings", MedianOf(kConfigurations, [&port] { return bench::Configure(port); }),
               0);
    const auto pause = [] {
        Sleep(kWaitMs);
        return true;
    };
    PrintFloor("pause", MedianOf(kWaits, pause), kWaitMs);
    const auto silence = [&port] { return !port.waitForReadyRead(kWaitMs); };
    PrintFloor("silence", MedianOf(kWaits, silence), kWaitMs);
}

/// A system call that does nothing, to be found in a list of this thread's system calls.
void Mark(const char* text) {
    [[maybe_unused]] const auto refused = write(-1, text, std::strlen(text));
}

void Print(const Operation& operation, int repetitions) {
    simulator::VirtualBench bench;
    bench.place(bench::CannedInstrument(operation));
    const auto balance = operation.make();
    operation.prepare(*balance);
    std::vector<Cost> costs;
    int result = 0;
    for (int i = 0; i < repetitions; ++i) {
        Mark("begin");
        const Meter meter;
        result = operation.run(*balance);
        costs.push_back(meter.Read());
        Mark("end");
    }
    const Cost cost = Median(costs);
    std::fprintf(stderr,
                 "{\"driver\":\"%s\",\"operation\":\"%s\",\"result\":%d,\"wall_ms\":%.3f,"
                 "\"processor_ms\":%.4f,\"allocations\":%.0f}\n",
                 operation.driver.c_str(), operation.name.c_str(), result, cost.wallMs,
                 cost.processorMs, cost.allocations);
}

}  // namespace

int main(int count, char** arguments) {
    const int repetitions = count > 1 ? std::atoi(arguments[1]) : 5;
    if (count <= 2) PrintFloors();
    for (const Operation& operation : bench::Operations()) {
        if (count > 3 && (operation.driver != arguments[2] || operation.name != arguments[3]))
            continue;
        Print(operation, repetitions);
    }
    return 0;
}
