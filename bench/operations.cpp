// What each operation costs a host over a virtual line with an instrument that answers at once, and
// beside it what the same calls cost that are made by hand, in turns with the operation, on a
// QSerialPort that is held open on a line of its own. The floors: a bare exchange, the settings
// with the clearing, a pause and a wait in silence, each by hand and over and over. One JSON object
// a line on standard error; the library's trace goes where standard output goes.
//
//     bench_operations SCHEDULES [REPETITIONS [DRIVER OPERATION]]
//
// SCHEDULES: a file with what bench_schedule prints.

#include <unistd.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtSerialPort/QSerialPort>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>

#include "ByHand.h"
#include "Calls.h"
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
constexpr int kWaits = 30;
constexpr int kWaitMs = 100;

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
    bench.Place(bench::CannedInstrument(bench::Operations().front()));
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

/// What a host by hand does in the place of an operation.
struct ByHand {
    bench::Calls preparation;
    bench::Calls calls;
};

using Schedules = std::map<std::string, ByHand>;

Schedules ReadSchedules(const char* path) {
    Schedules schedules;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        const auto schedule = QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
        const QString name = schedule["driver"].toString() + ' ' + schedule["operation"].toString();
        schedules.emplace(name.toStdString(),
                          ByHand{bench::Calls(schedule["preparation"].toArray()),
                                 bench::Calls(schedule["calls"].toArray())});
    }
    return schedules;
}

void Print(const Operation& operation, const ByHand& byHand, int repetitions) {
    simulator::VirtualBench bench;
    bench.Place(bench::CannedInstrument(operation));
    bench.Place(bench::CannedInstrument(operation), simulator::Options().On("/dev/ttyS1"));
    const auto balance = operation.make();
    operation.prepare(*balance);
    QSerialPort port("/dev/ttyS1");
    if (!port.open(QIODevice::ReadWrite) || !byHand.preparation.MakeOn(port)) std::abort();
    std::vector<Cost> costs;
    std::vector<Cost> costsByHand;
    int result = 0;
    int differing = 0;
    for (int i = 0; i < repetitions; ++i) {
        Mark("begin");
        const Meter meter;
        result = operation.run(*balance);
        costs.push_back(meter.Read());
        Mark("end");
        const Meter meterByHand;
        differing += byHand.calls.MakeOn(port) ? 0 : 1;
        costsByHand.push_back(meterByHand.Read());
    }
    const Cost cost = Median(costs);
    const Cost bare = Median(costsByHand);
    std::fprintf(stderr,
                 "{\"driver\":\"%s\",\"operation\":\"%s\",\"result\":%d,\"wall_ms\":%.3f,"
                 "\"processor_ms\":%.4f,\"allocations\":%.0f,\"by_hand_wall_ms\":%.3f,"
                 "\"by_hand_processor_ms\":%.4f,\"by_hand_allocations\":%.0f,\"differing\":%d}\n",
                 operation.driver.c_str(), operation.name.c_str(), result, cost.wallMs,
                 cost.processorMs, cost.allocations, bare.wallMs, bare.processorMs,
                 bare.allocations, differing);
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 2) {
        std::fprintf(stderr,
                     "usage: bench_operations SCHEDULES [REPETITIONS [DRIVER OPERATION]]\n");
        return 2;
    }
    const Schedules schedules = ReadSchedules(arguments[1]);
    const int repetitions = count > 2 ? std::atoi(arguments[2]) : 5;
    if (count <= 3) PrintFloors();
    for (const Operation& operation : bench::Operations()) {
        if (count > 4 && (operation.driver != arguments[3] || operation.name != arguments[4]))
            continue;
        Print(operation, schedules.at(operation.driver + ' ' + operation.name), repetitions);
    }
    return 0;
}
