// Many balances in one process, each in its own thread and on its own scripted line, with random
// faults; and very many operations one after the other. Nothing may be mixed up between them,
// nothing may wait too long, nothing may grow.
//
//   load balances SECONDS     64 balances for so much virtual time each
//   load operations COUNT     so many operations in all, by one thread

#include <wbalance/wbalance.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "Answers.h"
#include "Line.h"
#include "Usage.h"

using scripted::Line;
using scripted::PortFault;

namespace {

constexpr int kBalances = 64;

// No operation may take longer: the longest, a Kern average, is nine gathered answers and five
// seconds.
constexpr long kLongestOperationMs = 120'000;

struct Model {
    const char* name;
    std::function<std::unique_ptr<Cwbalance>()> make;
    std::vector<answers::Answer> answers;
};

/// The driver with its own readiness, unless that has no end.
template <class Driver>
Model ModelOf(const char* name) {
    const answers::Instrument instrument = answers::InstrumentOf<Driver>();
    const auto make = [readiness = instrument.readiness]() -> std::unique_ptr<Cwbalance> {
        if (readiness == answers::Readiness::Endless)
            return std::make_unique<WithLineReadiness<Driver>>();
        return std::make_unique<Driver>();
    };
    return {name, make, instrument.answers};
}

const std::vector<Model>& Models() {
#define WBALANCE_MODEL(name, Class) ModelOf<Class>(name),
    static const std::vector<Model> models = {WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_MODEL)};
#undef WBALANCE_MODEL
    return models;
}

std::atomic<long> operations{0};
std::atomic<long> weights{0};
std::atomic<int> violations{0};

void Require(bool holds, const Model& model, const std::string& what) {
    if (holds) return;
    std::fprintf(stderr, "%s: %s\n", model.name, what.c_str());
    ++violations;
}

/// One balance, with a weight that no other balance has on its pan.
class Bench {
 public:
    Bench(int number, unsigned seed)
        : model_(Models()[static_cast<std::size_t>(number) % Models().size()]),
          load_(number + 0.25),
          random_(seed) {
        line_.Reset();
        for (const auto& answer : model_.answers)
            line_.AlwaysAnswer(answer.command, {{answers::BytesOf(answer, load_), 30}});
        balance_ = model_.make();
    }

    void Operate() {
        ArmFault();
        const long start = line_.Now();
        double weight = -1.0;
        int decimals = 0;
        const int kind = Below(8);
        int result = 0;
        if (kind == 0) {
            result = balance_->IsReady();
        } else if (kind == 1) {
            result = balance_->Tare();
        } else if (kind == 2) {
            result = balance_->TareSet(5.0);
        } else {
            result = balance_->Weight(kind % 2 * 2, &weight, &decimals);
            if (result != 0) {
                ++weights;
                Require(
                    weight == load_, model_,
                    "reads " + std::to_string(weight) + " in place of " + std::to_string(load_));
            }
        }
        Require(0 <= result && result <= 2, model_, "result " + std::to_string(result));
        Require(line_.Now() - start <= kLongestOperationMs, model_, "an operation lasted too long");
        Require(line_.PortObjects() <= 1, model_, "more than one port object");
        ++operations;
        Recover(result);
    }

    long Now() const { return line_.Now(); }

 private:
    int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

    void ArmFault() {
        if (Below(4) != 0) return;
        line_.FailCall(line_.CallCount() + 1 + Below(30), static_cast<PortFault>(Below(5)));
    }

    /// The cable is in again, and a driver object that gives up for good is replaced.
    void Recover(int result) {
        line_.Forget();
        line_.PlugInAgain();
        failures_ = result == 0 ? failures_ + 1 : 0;
        if (failures_ < 5) return;
        failures_ = 0;
        balance_.reset();
        balance_ = model_.make();
        balance_->IsReady();
    }

    const Model& model_;
    const double load_;
    std::minstd_rand random_;
    Line& line_ = Line::Here();
    std::unique_ptr<Cwbalance> balance_;
    int failures_ = 0;
};

void Balances(long seconds) {
    std::vector<std::thread> threads;
    for (int number = 0; number < kBalances; ++number) {
        threads.emplace_back([=] {
            Bench bench(number, static_cast<unsigned>(number + 1));
            while (bench.Now() < seconds * 1000)
                bench.Operate();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

void Operations(long count) {
    constexpr long kEach = 1000;
    for (long done = 0; done < count; done += kEach) {
        Bench bench(static_cast<int>(done / kEach % kBalances), static_cast<unsigned>(done + 1));
        for (long i = 0; i < kEach && done + i < count; ++i)
            bench.Operate();
    }
}

}  // namespace

/// Freed memory that the address sanitizer keeps looks like growth: let it keep 8 MB, not 256.
extern "C" const char* __asan_default_options() {
    return "quarantine_size_mb=8:thread_local_quarantine_size_kb=64";
}

int main(int count, char** arguments) {
    if (count != 3) {
        std::fprintf(stderr, "usage: load balances SECONDS | load operations COUNT\n");
        return 2;
    }
    const std::string kind = arguments[1];
    const long amount = std::strtol(arguments[2], nullptr, 10);
    const auto work = [&](long much) { kind == "balances" ? Balances(much) : Operations(much); };
    std::optional<load::Usage> before;
    std::optional<load::Usage> after;
    {
        const scripted::TraceCapture capture;
        // What is allocated once is allocated now.
        work(amount / 10 + 1);
        before.emplace();
        work(amount);
        after.emplace();
    }
    std::fprintf(stderr, "%ld operations, %ld weights\n", operations.load(), weights.load());
    const bool steady = load::Steady(*before, *after);
    return violations == 0 && weights > 0 && steady ? 0 : 1;
}
