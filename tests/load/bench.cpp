// 64 simulated balances in one process for minutes of real time, with random faults: the real
// library on virtual lines. No balance may read another one's weight, every operation ends, nothing
// grows.
//
//   load_bench MINUTES

#include <wbalance/wbalance.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "Answers.h"
#include "Usage.h"
#include "simulator/VirtualBench.h"

using Clock = std::chrono::steady_clock;

namespace {

constexpr int kBalances = 64;
// The longest, an average of the SB32001, waits a minute when nothing is answered.
constexpr std::chrono::minutes kLongestOperation{2};

struct Model {
    const char* instrument;
    std::function<std::unique_ptr<Cwbalance>()> make;
};

/// The driver with its own readiness, unless that spoils a reading or has no end.
template <class Driver>
std::unique_ptr<Cwbalance> New() {
    if (answers::InstrumentOf<Driver>().readiness < answers::Readiness::Spoiling)
        return std::make_unique<Driver>();
    return std::make_unique<WithLineReadiness<Driver>>();
}

const Model kModels[] = {
#define WBALANCE_MODEL(name, Class) {name, New<Class>},
    WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_MODEL)
#undef WBALANCE_MODEL
};

const char* const kFaults[] = {"silent",    "late=1500ms", "truncated=5", "noise=5",
                               "power-cut", "busy",        "overload"};

std::atomic<long> operations{0};
std::atomic<long> weights{0};
std::atomic<long> violations{0};
std::atomic<long> longestMs{0};

/// One balance with a weight that no other one has, and a host that goes on in spite of everything.
class Place {
 public:
    Place(int number, simulator::VirtualBench& bench)
        : number_(number),
          model_(kModels[static_cast<std::size_t>(number) % std::size(kModels)]),
          load_(60.0 + 2.0 * number),
          random_(static_cast<unsigned>(number + 1)),
          instrument_(bench.Place(
              model_.instrument,
              simulator::Options().On("/dev/ttyS" + std::to_string(number)).WithLoad(load_))) {
        Replace();
    }

    void OperateUntil(Clock::time_point end) {
        while (Clock::now() < end) {
            const bool disturbed = Below(4) == 0;
            if (disturbed) Disturb();
            Operate(disturbed);
            if (disturbed) Recover();
        }
    }

 private:
    int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

    void Replace() {
        balance_.reset();
        balance_ = model_.make();
        balance_->SetCommPort(number_);
        balance_->IsReady();
    }

    void Disturb() {
        const int fault = Below(1 + static_cast<int>(std::size(kFaults)));
        if (fault == 0) return instrument_.Unplug();
        instrument_.AddFault(kFaults[fault - 1]);
    }

    void Recover() {
        instrument_.ClearFaults();
        instrument_.PlugIn();
        Replace();
    }

    void Operate(bool disturbed) {
        const auto start = Clock::now();
        double weight = 0.0;
        int decimals = 0;
        const int kind = Below(8);
        int result = 0;
        if (kind == 0) {
            result = balance_->IsReady();
        } else if (kind == 1) {
            result = balance_->Tare();
        } else {
            result = balance_->Weight(kind % 3, &weight, &decimals);
            if (result != 0) ++weights;
            if (result != 0 && !disturbed) RequireOwn(weight);
        }
        Require(0 <= result && result <= 2, "result " + std::to_string(result));
        const auto lasted = Clock::now() - start;
        Require(lasted <= kLongestOperation, "an operation lasted too long");
        const long ms = std::chrono::duration_cast<std::chrono::milliseconds>(lasted).count();
        long longest = longestMs;
        while (ms > longest && !longestMs.compare_exchange_weak(longest, ms)) {
        }
        ++operations;
    }

    /// The gross weight, or zero after a tare or a power cut; the coarsest balance shows grams.
    void RequireOwn(double weight) {
        Require(std::min(std::fabs(weight), std::fabs(weight - load_)) < 0.75,
                "reads " + std::to_string(weight) + " in place of " + std::to_string(load_));
    }

    void Require(bool holds, const std::string& what) {
        if (holds) return;
        std::fprintf(stderr, "%s at %d: %s\n", model_.instrument, number_, what.c_str());
        ++violations;
    }

    const int number_;
    const Model& model_;
    const double load_;
    std::minstd_rand random_;
    simulator::ConnectedInstrument& instrument_;
    std::unique_ptr<Cwbalance> balance_;
};

void Work(std::chrono::seconds time) {
    const auto end = Clock::now() + time;
    simulator::VirtualBench bench;
    std::vector<std::thread> threads;
    for (int number = 0; number < kBalances; ++number)
        threads.emplace_back([&, number] { Place(number, bench).OperateUntil(end); });
    for (std::thread& thread : threads)
        thread.join();
}

}  // namespace

int main(int count, char** arguments) {
    const long minutes = count == 2 ? std::strtol(arguments[1], nullptr, 10) : 0;
    if (minutes < 1) {
        std::fprintf(stderr, "usage: load_bench MINUTES\n");
        return 2;
    }
    // Qt says for every port that the thread is none of its own.
    setenv("QT_LOGGING_RULES", "default.warning=false", 1);
    // The library's trace; the figures go to standard error.
    if (std::freopen("/dev/null", "w", stdout) == nullptr) return 2;
    // What is allocated once is allocated now.
    Work(std::chrono::seconds(20));
    const load::Usage before;
    Work(std::chrono::minutes(minutes));
    const load::Usage after;
    std::fprintf(stderr, "%ld operations, %ld weights; the longest operation took %ld ms\n",
                 operations.load(), weights.load(), longestMs.load());
    const bool steady = load::Steady(before, after);
    return violations == 0 && weights > 0 && steady ? 0 : 1;
}
