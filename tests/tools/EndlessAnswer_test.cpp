#include "process/EndlessAnswer.h"

#include <gmock/gmock.h>
#include <wbalance/Cwbalance.h>

#include <cstdio>

#include "Examples.h"
#include "ToolError.h"
#include "process/PortCheck.h"
#include "readings/Measurement.h"

using examples::kThirdBalance;
using testing::StartsWith;
using tool::EndlessAnswer;
using tool::WallTime;

namespace {

const WallTime kStart{std::chrono::hours(1)};

tool::TraceText Piece(int second, const std::string& bytes) {
    return {kStart + std::chrono::seconds(second),
            "Read from scale: " + bytes + " (time elapsed: 5 ms)\n"};
}

/// Pieces that come every four seconds: the sixteenth at 60 s.
EndlessAnswer AfterPieces(int count, const std::string& bytes = "+  1.00 g\r\n") {
    EndlessAnswer answer;
    for (int i = 0; i < count; ++i)
        answer.Take(Piece(4 * i, bytes));
    return answer;
}

TEST(EndlessAnswer, Has_come_for_a_minute_in_sixteen_pieces) {
    EXPECT_FALSE(AfterPieces(15).IsEndless());
    EXPECT_TRUE(AfterPieces(16).IsEndless());
}

TEST(EndlessAnswer, Is_none_when_few_pieces_took_long) {
    EndlessAnswer answer;
    answer.Take(Piece(0, "+  1"));
    answer.Take(Piece(120, ".00 g\r\n"));
    EXPECT_FALSE(answer.IsEndless());
}

TEST(EndlessAnswer, Is_none_when_there_was_a_pause_or_another_command) {
    EndlessAnswer answer = AfterPieces(15);
    answer.Take(Piece(58, ""));
    answer.Take(Piece(62, "+  1.00 g\r\n"));
    EXPECT_FALSE(answer.IsEndless());

    answer = AfterPieces(15);
    answer.Take({kStart, "<== SI\r\n ... OK\n\n"});
    answer.Take(Piece(62, "+  1.00 g\r\n"));
    EXPECT_FALSE(answer.IsEndless());
}

TEST(EndlessAnswer, Has_more_than_256_KiB) {
    EndlessAnswer answer;
    answer.Take(Piece(0, std::string(256 * 1024 - 100, '7')));
    EXPECT_FALSE(answer.IsEndless());
    answer.Take(Piece(1, std::string(100, '7')));
    EXPECT_TRUE(answer.IsEndless());
}

/// Reads for as long as something comes, as some drivers do, and that is always.
class EndlessBalance : public Cwbalance {
 public:
    int IsReady() override { return 1; }
    int Tare() override { return 1; }
    int Weight(long /*mode*/, double* /*weight*/, int* /*decimals*/) override {
        for (;;)
            std::fputs("Read from scale: +    10.00 g\r\n (time elapsed: 5 ms)\n", stdout);
    }
};

/// Traces what the test says, and fails.
class SayingBalance : public EndlessBalance {
 public:
    int Weight(long /*mode*/, double* /*weight*/, int* /*decimals*/) override {
        std::fputs("<== S\r\n ... OK\n\n", stdout);
        const std::string wide(300000, '7');
        std::fputs(
            ("Read from scale: " + wide.substr(0, 200000) + " (time elapsed: 5 ms)\n").c_str(),
            stdout);
        return 0;
    }
};

template <class Balance>
tool::Report WeighWith(tool::DriverInfo& driver) {
    driver = tool::FindDriver(kThirdBalance);
    driver.construct = [] { return std::make_unique<Balance>(); };
    const tool::Connection connection{&driver, {0, 'S'}, driver.line, 1};
    tool::BalanceProcess balance(connection, [](const tool::TraceText&) {});
    return balance.Perform({}, [] {});
}

TEST(EndlessAnswer, Ends_the_operation_with_a_sentence_of_its_own_and_what_is_kept_is_bounded) {
    tool::DriverInfo driver;
    const tool::Report report = WeighWith<EndlessBalance>(driver);
    std::size_t kept = 0;
    for (const auto& traced : report.trace)
        kept += traced.text.size();
    EXPECT_LT(kept, 300000U);
    try {
        RequirePort({&driver, {0, 'S'}, driver.line, 1}, report);
        ADD_FAILURE() << "no complaint";
    } catch (const tool::ToolError& error) {
        EXPECT_STREQ(error.what(),
                     "/dev/ttyS0: the balance sends without end, so that no answer can be told "
                     "from the next; switch its continuous output (auto print) off");
        EXPECT_EQ(error.code, tool::ExitCode::NotUnderstood);
    }
}

TEST(EndlessAnswer, A_text_that_is_longer_than_a_packet_arrives_whole) {
    tool::DriverInfo driver;
    const tool::Report report = WeighWith<SayingBalance>(driver);
    ASSERT_EQ(report.trace.size(), 2U);
    EXPECT_EQ(report.trace[1].text.size(), 17U + 200000U + 22U);
    EXPECT_EQ(Measure(driver, report).answer.size(), 200000U);
}

}  // namespace
