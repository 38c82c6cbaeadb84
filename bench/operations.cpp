// What each operation costs a host over a virtual line with an instrument that answers at once, and
// beside it the floor: the bare exchange on a QSerialPort that is held open on the same line. One
// JSON object a line on standard error; the library's trace goes where standard output goes.
//
//     bench_operations [REPETITIONS [DRIVER OPERATION]]

#include <unistd.h>

#include <QtSerialPort/QSerialPort>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "CannedInstrument.h"
#include "Meter.h"
#include "marlet-small.h"
#include "simulator/VirtualBench.h"

namespace {

using bench::Cost;
using bench::Meter;
using bench::Operation;

constexpr int kFloorExchanges = 3000;

void Configure(QSerialPort& port) {
    port.open(QIODevice::ReadWrite);
    port.setBaudRate(2400);
    port.setDataBits(QSerialPort::Data7);
    port.setParity(QSerialPort::EvenParity);
}

void PrintFloor() {
    simulator::VirtualBench bench;
    const Operation& operation = bench::Operations().front();
    bench.place(bench::CannedInstrument(operation));
    QSerialPort port("/dev/ttyS0");
    Configure(port);
    std::vector<Cost> costs;
    for (int i = 0; i < kFloorExchanges; ++i) {
        const Meter meter;
        port.write("S\r\n");
        port.waitForReadyRead(1000);
        const QByteArray answer = port.readAll();
        if (answer.endsWith("\n")) costs.push_back(meter.Read());
    }
    std::vector<Cost> pauses;
    std::vector<Cost> silences;
    for (int i = 0; i < 100; ++i) {
        const Meter pause;
        Sleep(10);
        pauses.push_back(pause.Read());
        const Meter silence;
        port.waitForReadyRead(10);
        silences.push_back(silence.Read());
    }
    const Cost floor = Median(costs);
    std::fprintf(stderr,
                 "{\"floor\":true,\"exchanges\":%zu,\"wall_ms\":%.4f,\"processor_ms\":%.4f,"
                 "\"allocations\":%.0f,\"pause_slack_ms\":%.4f,\"pause_processor_ms\":%.4f,"
                 "\"wait_slack_ms\":%.4f,\"wait_processor_ms\":%.4f}\n",
                 costs.size(), floor.wallMs, floor.processorMs, floor.allocations,
                 Median(pauses).wallMs - 10.0, Median(pauses).processorMs,
                 Median(silences).wallMs - 10.0, Median(silences).processorMs);
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
    if (count <= 2) PrintFloor();
    for (const Operation& operation : bench::Operations()) {
        if (count > 3 && (operation.driver != arguments[2] || operation.name != arguments[3]))
            continue;
        Print(operation, repetitions);
    }
    return 0;
}
