// The two drivers whose own readiness asks for a weight, which asks for readiness, and so on.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <wbalance/wbalance.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Answers.h"
#include "simulator/VirtualBench.h"

using simulator::VirtualBench;

namespace {

struct Readiness {
    const char* instrument;
    int (*ask)();
};

template <class Driver>
int Ask() {
    return Driver().IsReady();
}

std::vector<Readiness> EndlessOnes() {
    std::vector<Readiness> endless;
    const auto add = [&endless](const char* name, answers::Readiness readiness, auto ask) {
        if (readiness == answers::Readiness::Endless) endless.push_back({name, ask});
    };
#define WBALANCE_ADD(name, Class) add(name, answers::InstrumentOf<Class>().readiness, Ask<Class>);
    WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_ADD)
#undef WBALANCE_ADD
    return endless;
}

class OwnReadiness : public testing::TestWithParam<Readiness> {
 protected:
    /// The wait status of a process of its own, with little stack, that asks for readiness.
    int EndOfHost() const {
        constexpr int returned = 42;
        const pid_t host = ::fork();
        if (host == 0) {
            const rlimit stack{1024 * 1024, 1024 * 1024};
            ::setrlimit(RLIMIT_STACK, &stack);
            const rlimit noCore{0, 0};
            ::setrlimit(RLIMIT_CORE, &noCore);
            ::signal(SIGSEGV, SIG_DFL);  // a sanitizer would report it instead
            ::dup2(::open(trace_.c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
            GetParam().ask();
            ::_exit(returned);
        }
        int status = 0;
        ::waitpid(host, &status, 0);
        return status;
    }
    std::string Trace() const {
        std::ifstream file(trace_);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    VirtualBench bench_;
    const std::filesystem::path trace_ = bench_.Directory() / "trace";
};

}  // namespace

TEST_P(OwnReadiness, Uses_up_the_stack_and_sends_nothing) {
    auto& balance = bench_.Place(GetParam().instrument);
    const int status = EndOfHost();
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGSEGV) << "wait status " << status;
    EXPECT_THAT(Trace(), testing::HasSubstr("COM0 alread open!"));
    EXPECT_EQ(balance.SentByHost(), "");
}

INSTANTIATE_TEST_SUITE_P(Of, OwnReadiness, testing::ValuesIn(EndlessOnes()),
                         [](const auto& row) { return std::string(row.param.instrument); });
