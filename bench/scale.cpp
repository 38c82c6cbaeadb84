// Many balances in one process, one thread each: readings per second, how long a reading takes,
// memory and descriptors. The instruments are in a process of their own. One JSON object on
// standard error.
//
// With "bare" each thread does by hand, on a QSerialPort, what the reading does on the line.
//
//     bench_scale BALANCES [SECONDS [bare]]

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QtSerialPort/QSerialPort>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "ByHand.h"
#include "CannedInstrument.h"
#include "Examples.h"
#include "Meter.h"
#include "simulator/VirtualBench.h"

namespace {

const bench::Operation& ImmediateWeight() {
    for (const bench::Operation& operation : bench::Operations()) {
        if (operation.driver == examples::kBalance && operation.name == "weight 2")
            return operation;
    }
    std::abort();
}

double ResidentKilobytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmRSS:", 0) == 0) return std::atof(line.c_str() + 6);
    }
    return 0.0;
}

/// What of the threads' stacks is resident: they are the mappings of the default stack's size.
double StackKilobytes() {
    rlimit stack{};
    getrlimit(RLIMIT_STACK, &stack);
    const double size = static_cast<double>(stack.rlim_cur) / 1024.0;
    double total = 0.0;
    double mapping = 0.0;
    std::ifstream map("/proc/self/smaps");
    for (std::string line; std::getline(map, line);) {
        if (line.rfind("Size:", 0) == 0) mapping = std::atof(line.c_str() + 5);
        if (line.rfind("Rss:", 0) == 0 && mapping == size) total += std::atof(line.c_str() + 4);
    }
    return total;
}

long Descriptors() {
    long count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}

double ProcessorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Takes one reading; whether it is right.
using ReadOnce = std::function<bool()>;

ReadOnce WithLibrary(int port) {
    const bench::Operation& operation = ImmediateWeight();
    const std::shared_ptr<Cwbalance> balance = operation.make();
    balance->SetCommPort(port);
    return [balance, &operation] { return operation.run(*balance) == 2; };
}

ReadOnce Bare(int number) {
    const auto port = std::make_shared<QSerialPort>("/dev/ttyS" + QString::number(number));
    if (!port->open(QIODevice::ReadWrite)) std::abort();
    return [port] {
        bench::Configure(*port);
        port->write("SI\r\n");
        QByteArray answer;
        for (int wait = 0; wait < 3; ++wait) {
            port->waitForReadyRead(100);
            answer += port->readAll();
        }
        return answer.startsWith("S D");
    };
}

/// Balances that are read without a pause, each by a thread of its own.
class Readers {
 public:
    Readers(int balances, bool bare) {
        for (int port = 0; port < balances; ++port)
            threads_.emplace_back([=] { ReadOn(bare ? Bare(port) : WithLibrary(port)); });
    }

    void Measure(bool on) { measuring_ = on; }

    void Stop() {
        stopping_ = true;
        for (std::thread& thread : threads_)
            thread.join();
    }

    /// After Stop(): of the readings that were measured.
    const std::vector<double>& Durations() const { return durations_; }
    int Wrong() const { return wrong_; }

 private:
    void ReadOn(const ReadOnce& readOnce) {
        std::vector<double> own;
        while (!stopping_) {
            const bench::Meter meter;
            if (!readOnce()) ++wrong_;
            if (measuring_) own.push_back(meter.Read().wallMs);
        }
        const std::lock_guard<std::mutex> lock(mutex_);
        durations_.insert(durations_.end(), own.begin(), own.end());
    }

    std::mutex mutex_;
    std::vector<double> durations_;
    std::atomic<int> wrong_{0};
    std::atomic<bool> measuring_{false};
    std::atomic<bool> stopping_{false};
    std::vector<std::thread> threads_;
};

/// What the process uses while the balances are read.
struct Used {
    double processor;
    double resident;
    double stacks;
    long descriptors;
};

Used Measure(Readers& readers, int seconds) {
    std::this_thread::sleep_for(std::chrono::seconds(3));
    const double processorBefore = ProcessorSeconds();
    readers.Measure(true);
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    readers.Measure(false);
    const double processor = ProcessorSeconds() - processorBefore;
    return {processor, ResidentKilobytes(), StackKilobytes(), Descriptors()};
}

int Host(int balances, int seconds, bool bare) {
    Readers readers(balances, bare);
    const Used used = Measure(readers, seconds);
    readers.Stop();
    const std::vector<double>& durations = readers.Durations();
    std::fprintf(stderr,
                 "{\"balances\":%d,\"seconds\":%d,\"readings\":%zu,\"wrong\":%d,\"median_ms\":%.3f,"
                 "\"p99_ms\":%.3f,\"processor_s\":%.3f,\"resident_kb\":%.0f,\"stacks_kb\":%.0f,"
                 "\"descriptors\":%ld}\n",
                 balances, seconds, durations.size(), readers.Wrong(), bench::Median(durations),
                 bench::Quantile(durations, 0.99), used.processor, used.resident, used.stacks,
                 used.descriptors);
    return 0;
}

int Bench(int balances, char** arguments) {
    simulator::VirtualBench bench;
    const simulator::CatalogEntry entry = bench::CannedInstrument(ImmediateWeight());
    for (int i = 0; i < balances; ++i) {
        bench.Place(entry, simulator::Options().On("/dev/ttyS" + std::to_string(i)));
    }
    const pid_t host = fork();
    if (host == 0) {
        setenv("WBALANCE_BENCH_HOST", "1", 1);
        execv("/proc/self/exe", arguments);
        _exit(127);
    }
    int status = 0;
    waitpid(host, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

}  // namespace

int main(int count, char** arguments) {
    const int balances = count > 1 ? std::atoi(arguments[1]) : 1;
    const int seconds = count > 2 ? std::atoi(arguments[2]) : 10;
    rlimit files{};
    getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = files.rlim_max;
    setrlimit(RLIMIT_NOFILE, &files);
    return std::getenv("WBALANCE_BENCH_HOST") != nullptr ? Host(balances, seconds, count > 3)
                                                         : Bench(balances, arguments);
}
