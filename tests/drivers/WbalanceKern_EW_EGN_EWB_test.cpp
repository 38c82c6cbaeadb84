#include <algorithm>
#include <cmath>
#include <csignal>

#include "FailingCalls.h"
#include "Host.h"

using scripted::ExpectWhenEachCallFails;
using scripted::Host;
using scripted::Open;
using scripted::PortFault;
using scripted::operator+;
using scripted::ScriptedTest;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

using Kern = Open<WbalanceKern_EW_EGN_EWB>;

constexpr char kSettings[] =
    R"(trace "Balance Comm Port settings:\nBaud rate = 1200\nParity = 0\nData bits = 8\n)"
    R"(Stop bits = 2\nFlow control = 0\nTimeout = 1\n===> OK\n\n")";

using Steps = std::vector<std::string>;

const Steps kOpened = {"open /dev/ttyS0",     R"(trace "/dev/ttyS0 OPENED SUCCESSFULLY!\n\n")",
                       "setBaudRate 1200",    "setDataBits 8",
                       "setParity none",      "setStopBits 2",
                       "setFlowControl none", kSettings,
                       "clear input"};
const Steps kFoundOpen = {R"(trace "COM0 alread open!")",
                          "setBaudRate 1200",
                          "setDataBits 8",
                          "setParity none",
                          "setStopBits 2",
                          "setFlowControl none",
                          kSettings,
                          "clear input"};
const Steps kNothingMore = {
    "wait 1000: silence", R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")",
    "wait 1000: silence", R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")"};
const Steps kSilentRound =
    Steps{"wait 1000: silence", R"(trace "Timeout elapsed in scale read (attempt n. 1)\n")"} +
    kNothingMore + Steps{R"(trace "Read from scale:  (time elapsed: 3000 ms)\n")"};
const Steps kNoAnswer = kSilentRound + Steps{R"(trace "Null answer received from scale\n")"};

// The driver with a readiness of the line's alone, so that the operations reach the instrument.
class WbalanceKernTest : public ScriptedTest {
 protected:
    WithLineReadiness<Kern> balance;
    double weight = -1.0;
    int decimals = -1;
};

TEST_F(WbalanceKernTest, The_constructor_sets_the_line_to_1200_8N2) {
    const Kern kern;
    EXPECT_EQ(kern.portNumber, 0);
    EXPECT_EQ(kern.baudRate, 1200);
    EXPECT_EQ(kern.parityCode, 0);
    EXPECT_EQ(kern.dataBits, 8);
    EXPECT_EQ(kern.stopBitsCode, 2);
    EXPECT_EQ(kern.flowControlCode, 0);
    EXPECT_EQ(kern.timeoutSeconds, 1);
    EXPECT_EQ(kern.portKind, 'S');
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// Weight

TEST_F(WbalanceKernTest,
       A_record_behind_the_acknowledgement_from_the_open_to_the_trace_of_the_weight) {
    line.Answer("O9\r\n", {{"A00\r\n+  12.50 G S\r\n"}});

    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);

    EXPECT_EQ(weight, 12.5);
    EXPECT_EQ(decimals, 7);
    EXPECT_THAT(line.Transcript(),
                ElementsAreArray(kOpened +
                                 Steps{R"(trace "Kern EW/EG-N/EWB - Weight\n")",
                                       R"(write "O9\r\n")", R"(trace "<== O9\r\n ... OK\n\n")",
                                       "wait 1000: data", R"(read "A00\r\n+  12.50 G S\r\n")"} +
                                 kNothingMore +
                                 Steps{R"(trace "Read from scale: A00\r\n+  12.50 G S\r\n)"
                                       R"( (time elapsed: 2000 ms)\n")",
                                       R"(trace "Read from scale: A00\r\n+  12.50 G S\r\n\n")",
                                       R"(trace "Kern EW/EG-N/EWB - weight = 12.50 gr.\n\n")"}));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceKernTest, Mode_2_asks_with_O8_and_every_other_mode_with_O9) {
    line.AlwaysAnswer("O8\r\n", {{"A00\r\n+   8.00 G S\r\n"}});
    line.AlwaysAnswer("O9\r\n", {{"A00\r\n+   9.00 G S\r\n"}});

    for (const long mode : {2L, 0L, 1L, 3L, -1L})
        EXPECT_EQ(balance.Weight(mode, &weight, nullptr), 1);

    EXPECT_THAT(line.Sent(), ElementsAre("O8\r\n", "O9\r\n", "O9\r\n", "O9\r\n", "O9\r\n"));
}

TEST_F(WbalanceKernTest, A_record_that_is_not_stable_is_a_success_too) {
    line.Answer("O8\r\n", {{"A00\r\n-   0.07 G U\r\n"}});

    EXPECT_EQ(balance.Weight(2, &weight, &decimals), 1);

    EXPECT_EQ(weight, -0.07);
    EXPECT_THAT(line.Trace(), EndsWith("Kern EW/EG-N/EWB - weight = -0.07 gr.\n\n"));
}

TEST_F(WbalanceKernTest, A_record_in_error_is_taken_for_a_weight) {
    line.Answer("O8\r\n", {{"A00\r\n+ 999.99 G E\r\n"}});
    EXPECT_EQ(balance.Weight(2, &weight, nullptr), 1);
    EXPECT_EQ(weight, 999.99);
}

TEST_F(WbalanceKernTest, An_acknowledgement_behind_the_record_counts_as_well) {
    line.Answer("O8\r\n", {{"+  12.50 G S\r\nA00\r\n"}});
    EXPECT_EQ(balance.Weight(2, &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.5);
}

TEST_F(WbalanceKernTest, An_answer_without_A00_fails_before_it_is_parsed) {
    line.Answer("O9\r\n", {{"+  12.50 G S\r\n"}});

    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);

    EXPECT_EQ(weight, -1.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(line.Sent(), ElementsAre("O9\r\n"));
    EXPECT_THAT(line.Trace(), EndsWith("\nRead from scale: +  12.50 G S\r\n\n"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceKernTest, The_error_answer_E01_fails) {
    line.Answer("O9\r\n", {{"E01\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("O9\r\n"));
}

TEST_F(WbalanceKernTest, A_silent_balance_fails_after_three_time_outs) {
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);

    EXPECT_EQ(line.Now(), 3000);
    EXPECT_EQ(weight, -1.0);
    EXPECT_THAT(line.Transcript(),
                ElementsAreArray(kOpened +
                                 Steps{R"(trace "Kern EW/EG-N/EWB - Weight\n")",
                                       R"(write "O9\r\n")", R"(trace "<== O9\r\n ... OK\n\n")"} +
                                 kNoAnswer));
}

TEST_F(WbalanceKernTest, A_first_byte_of_zero_is_no_answer) {
    line.Answer("O8\r\n", {{std::string("\0A00\r\n+  12.50 G S\r\n", 20)}});
    EXPECT_EQ(balance.Weight(2, &weight, nullptr), 0);
    EXPECT_THAT(line.Trace(), EndsWith("Null answer received from scale\n"));
}

TEST_F(WbalanceKernTest, An_answer_in_two_pieces_is_joined_up_to_its_line_feed) {
    // The first piece ends without a line feed, so that a second round is read.
    line.Answer("O8\r\n", {{"A00\r\n+  1"}, {"2.50 G S\r\n", 3050}});

    EXPECT_EQ(balance.Weight(2, &weight, nullptr), 1);

    EXPECT_EQ(weight, 12.5);
    EXPECT_THAT(line.Sleeps(), ElementsAre(100));
}

TEST_F(WbalanceKernTest, Mode_2_fails_at_once_on_the_acknowledgement_alone) {
    line.Answer("O8\r\n", {{"A00\r\n"}});

    EXPECT_EQ(balance.Weight(2, &weight, &decimals), 0);

    EXPECT_THAT(line.Sent(), ElementsAre("O8\r\n"));
    EXPECT_THAT(line.Sleeps(), IsEmpty());
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale: A00\r\n\nWeight procedure failed!"));
    EXPECT_EQ(weight, -1.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_TRUE(line.IsOpen());
}

// The wait for the stable line

TEST_F(WbalanceKernTest, Mode_0_takes_the_record_that_comes_after_the_acknowledgement) {
    line.Answer("O9\r\n", {{"A00\r\n"}, {"+  12.50 G S\r\n", 4000}});

    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);

    EXPECT_EQ(weight, 12.5);
    EXPECT_EQ(decimals, 7);
    EXPECT_THAT(
        line.Transcript(),
        ElementsAreArray(
            kOpened +
            Steps{R"(trace "Kern EW/EG-N/EWB - Weight\n")", R"(write "O9\r\n")",
                  R"(trace "<== O9\r\n ... OK\n\n")", "wait 1000: data", R"(read "A00\r\n")"} +
            kNothingMore +
            Steps{R"(trace "Read from scale: A00\r\n (time elapsed: 2000 ms)\n")",
                  R"(trace "Read from scale: A00\r\n\n")", "wait 1000: silence",
                  R"(trace "Timeout elapsed in scale read (attempt n. 1)\n")", "wait 1000: data",
                  R"(read "+  12.50 G S\r\n")", "wait 1000: silence",
                  R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
                  R"(trace "Read from scale: +  12.50 G S\r\n (time elapsed: 3000 ms)\n")",
                  R"(trace "Read from scale: +  12.50 G S\r\n\n")",
                  R"(trace "Kern EW/EG-N/EWB - weight = 12.50 gr.\n\n")"}));
}

TEST_F(WbalanceKernTest, Mode_0_without_a_record_for_5_s_fails_after_the_round_that_passes_them) {
    line.Answer("O9\r\n", {{"A00\r\n"}});

    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);

    // The acknowledgement 2 s, two silent rounds of 3 s, each followed by 200 ms.
    EXPECT_EQ(line.Now(), 8400);
    EXPECT_THAT(line.Sleeps(), ElementsAre(200, 200));
    EXPECT_THAT(line.Sent(), ElementsAre("O9\r\n"));
    EXPECT_THAT(line.Trace(),
                EndsWith("Null answer received from scale\nWeight procedure failed!"));
    EXPECT_EQ(weight, -1.0);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceKernTest, The_wait_ends_when_exactly_5000_ms_have_passed_before_the_pause) {
    // Time-outs of 100 ms: rounds of 300 ms, 500 ms apart. The one that ends at 4800 ms is followed
    // by another; with 10 rounds begun at 0, 500, ... 4500, that one ends at 4800, the next at
    // 5300.
    balance.SetCommConfig(1200, 0, 8, 2, 0, 0, 'S');
    line.Answer("O9\r\n", {{"A00\r\n"}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 0);
    EXPECT_THAT(line.Sleeps(), testing::SizeIs(11));
    EXPECT_EQ(line.Now(), 200 + 5500);
}

TEST_F(WbalanceKernTest, The_wait_is_over_with_a_reading_that_ends_at_5000_ms) {
    // The wait begins at 2000. "x" and the line feed cut the first reading to 1800 ms, 200 ms
    // pause, 3000 ms of silence.
    line.Answer("O9\r\n", {{"A00\r\n"}, {"x", 2400}, {"\n", 2800}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 0);
    EXPECT_THAT(line.Sleeps(), ElementsAre(200, 200));
}

TEST_F(WbalanceKernTest, The_wait_goes_on_after_a_reading_that_ends_at_4999_ms) {
    line.Answer("O9\r\n", {{"A00\r\n"}, {"x", 2400}, {"\n", 2799}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 0);
    EXPECT_THAT(line.Sleeps(), ElementsAre(200, 200, 200));
}

TEST_F(WbalanceKernTest, The_rounds_of_the_wait_join_a_record_that_comes_in_two_lines) {
    line.Answer("O9\r\n", {{"A00\r\n"}, {"+  12\n", 2500}, {"50 G S\n", 5800}});

    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);

    // The line feed within the value ends it.
    EXPECT_EQ(weight, 12.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(line.Trace(), HasSubstr("Read from scale: +  12\n50 G S\n\n"));
}

TEST_F(WbalanceKernTest, A_second_acknowledgement_in_the_wait_is_skipped_before_the_record) {
    line.Answer("O9\r\n", {{"A00\r\n"}, {"A00\r\n", 2500}, {"-   1.25 G S\r\n", 5800}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, -1.25);
}

TEST_F(WbalanceKernTest, The_wait_begins_with_an_empty_text) {
    // "A00" and "\r\n+  12.50 G S" would be a record together.
    line.Answer("O9\r\n", {{"A00\n"}, {"+  12.50 G\n", 2500}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 0);
    EXPECT_EQ(weight, -1.0);
}

TEST_F(WbalanceKernTest, However_much_the_wait_brings_its_first_record_is_parsed) {
    const std::string more = "+  99.99 G S\r\n";
    line.Answer("O9\r\n", {{"A00\r\n"},
                           {"+  1", 2500},
                           {"2.50 G S\r" + more + more + "+  99", 5800},
                           {".99 G S\r\n" + more, 9000}});

    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);

    EXPECT_EQ(weight, 12.5);
    EXPECT_THAT(line.Trace(), HasSubstr("\nRead from scale: +  12.50 G S\r" + more + more + more +
                                        more + "\nKern EW/EG-N/EWB - weight = 12.50 gr."));
}

TEST_F(WbalanceKernTest, An_acknowledgement_behind_63_characters_counts) {
    line.Answer("O8\r\n", {{"+  12.50 G S" + std::string(40, 'x')},
                           {std::string(20, 'x') + "A00\r\n", 2500}});
    EXPECT_EQ(balance.Weight(2, &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.5);
}

TEST_F(WbalanceKernTest, One_read_takes_64_characters_and_the_rest_of_it_is_lost) {
    line.Answer("O8\r\n", {{"A00\r\n+  12.50 G S" + std::string(60, 'x') + "\n"}});

    EXPECT_EQ(balance.Weight(2, &weight, nullptr), 1);

    EXPECT_EQ(weight, 12.5);
    EXPECT_THAT(line.Trace(), HasSubstr("\nRead from scale: A00\r\n+  12.50 G S" +
                                        std::string(47, 'x') + "\nKern"));
    // Without its line feed the answer is read on.
    EXPECT_THAT(line.Sleeps(), ElementsAre(100));
}

TEST_F(WbalanceKernTest, After_63_characters_it_reads_on_as_after_fewer) {
    line.Answer("O8\r\n", {{"A00\r\n+  12.50 G S" + std::string(46, 'x')}});

    EXPECT_EQ(balance.Weight(2, &weight, nullptr), 1);

    EXPECT_EQ(weight, 12.5);
    EXPECT_THAT(line.Sleeps(), ElementsAre(100));
    EXPECT_EQ(line.Now(), 2000 + 100 + 3000);
    EXPECT_THAT(line.Trace(), HasSubstr("Read from scale:  (time elapsed: 3000 ms)\n"
                                        "Read from scale: A00\r\n+  12.50 G S" +
                                        std::string(46, 'x') + "\nKern"));
}

TEST_F(WbalanceKernTest, Of_what_a_balance_sends_all_the_time_1005_characters_are_kept) {
    line.Answer("O8\r\n", {{"A00\r\n+  12.50 G S"}});
    for (long at = 500; at < 4'000'000; at += 500)
        line.Arrive(at, "x");

    EXPECT_EQ(balance.Weight(2, &weight, nullptr), 1);

    EXPECT_EQ(weight, 12.5);
    EXPECT_THAT(line.Trace(), HasSubstr("\nRead from scale: A00\r\n+  12.50 G S" +
                                        std::string(988, 'x') + "\nKern"));
    EXPECT_LT(line.Now(), 600'000);
}

// The average

class WbalanceKernAverageTest : public WbalanceKernTest {
 protected:
    WbalanceKernAverageTest() { line.AlwaysAnswer("O9\r\n", {{"A00\r\n"}}); }

    void AnswerImmediately(const std::vector<std::string>& values) {
        for (const std::string& value : values)
            line.Answer("O8\r\n", {{"A00\r\n" + value + " G U\r\n"}});
    }
};

TEST_F(WbalanceKernAverageTest, Mode_1_stops_the_balance_and_averages_five_immediate_weights) {
    line.Answer("O0\r\n", {{"A00\r\n"}});
    AnswerImmediately({"+  10.00", "+  11.00", "+  12.00", "+  13.00", "-   6.00"});

    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 1);

    EXPECT_EQ(weight, 8.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(line.Sent(),
                ElementsAre("O9\r\n", "O0\r\n", "O8\r\n", "O8\r\n", "O8\r\n", "O8\r\n", "O8\r\n"));
    // The average itself is not traced.
    EXPECT_THAT(line.Trace(), EndsWith("Kern EW/EG-N/EWB - weight = -6.00 gr.\n\n"));
    EXPECT_THAT(line.Trace(), Not(HasSubstr("8.00")));
}

TEST_F(WbalanceKernAverageTest, The_stop_is_traced_and_each_of_the_five_begins_with_a_readiness) {
    line.Answer("O0\r\n", {{"A00\r\n"}});
    AnswerImmediately({"+  10.00"});

    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);

    const std::vector<std::string> steps = line.Transcript();
    const auto stop =
        std::find(steps.begin(), steps.end(), R"(trace "Kern EW/EG-N/EWB - Stable Weight STOP\n")");
    ASSERT_NE(stop, steps.end());
    EXPECT_EQ(*(stop - 1), "Sleep 200");
    EXPECT_THAT(
        Steps(stop, steps.end()),
        ElementsAreArray(Steps{R"(trace "Kern EW/EG-N/EWB - Stable Weight STOP\n")",
                               R"(write "O0\r\n")", R"(trace "<== O0\r\n ... OK\n\n")",
                               "wait 1000: data", R"(read "A00\r\n")"} +
                         kNothingMore +
                         Steps{R"(trace "Read from scale: A00\r\n (time elapsed: 2000 ms)\n")",
                               R"(trace "Read from scale: A00\r\n\n")"} +
                         kFoundOpen +
                         Steps{R"(trace "Kern EW/EG-N/EWB - Weight\n")", R"(write "O8\r\n")",
                               R"(trace "<== O8\r\n ... OK\n\n")", "wait 1000: data",
                               R"(read "A00\r\n+  10.00 G U\r\n")"} +
                         kNothingMore +
                         Steps{R"(trace "Read from scale: A00\r\n+  10.00 G U\r\n)"
                               R"( (time elapsed: 2000 ms)\n")",
                               R"(trace "Read from scale: A00\r\n+  10.00 G U\r\n\n")",
                               R"(trace "Kern EW/EG-N/EWB - weight = 10.00 gr.\n\n")"} +
                         kFoundOpen +
                         Steps{R"(trace "Kern EW/EG-N/EWB - Weight\n")", R"(write "O8\r\n")",
                               R"(trace "<== O8\r\n ... OK\n\n")"} +
                         kNoAnswer));
    EXPECT_EQ(weight, -1.0);
}

TEST_F(WbalanceKernAverageTest, Modes_other_than_0_and_2_average_too) {
    line.AlwaysAnswer("O0\r\n", {{"A00\r\n"}});
    line.AlwaysAnswer("O8\r\n", {{"A00\r\n+   3.00 G S\r\n"}});
    for (const long mode : {3L, -1L}) {
        weight = -1.0;
        EXPECT_EQ(balance.Weight(mode, &weight, nullptr), 1);
        EXPECT_EQ(weight, 3.0);
    }
}

TEST_F(WbalanceKernAverageTest, The_average_of_a_null_weight_is_taken_and_not_stored) {
    line.AlwaysAnswer("O0\r\n", {{"A00\r\n"}});
    line.AlwaysAnswer("O8\r\n", {{"A00\r\n+   3.00 G S\r\n"}});
    EXPECT_EQ(balance.Weight(1, nullptr, nullptr), 1);
}

TEST_F(WbalanceKernAverageTest, A_stop_that_can_not_be_sent_fails) {
    line.Fail("write", 2);
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 0);
    EXPECT_THAT(line.Trace(), EndsWith("Stable Weight STOP\n<== O0\r\n ... FAIL\n\n"));
    EXPECT_EQ(weight, -1.0);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceKernAverageTest, A_stop_that_is_not_answered_fails) {
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("O9\r\n", "O0\r\n"));
    EXPECT_THAT(line.Trace(), EndsWith("Null answer received from scale\n"));
}

TEST_F(WbalanceKernAverageTest, A_stop_that_is_not_acknowledged_fails) {
    line.Answer("O0\r\n", {{"E01\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("O9\r\n", "O0\r\n"));
}

TEST_F(WbalanceKernAverageTest, The_first_of_the_five_that_fails_ends_the_reading) {
    line.Answer("O0\r\n", {{"A00\r\n"}});
    AnswerImmediately({"+  10.00", "+  11.00"});
    line.Answer("O8\r\n", {{"A00\r\n"}});

    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 0);

    EXPECT_EQ(weight, -1.0);
    EXPECT_THAT(line.Sent(), ElementsAre("O9\r\n", "O0\r\n", "O8\r\n", "O8\r\n", "O8\r\n"));
    EXPECT_THAT(line.Trace(), EndsWith("Weight procedure failed!"));
}

using WbalanceKernDeathTest = WbalanceKernTest;

TEST_F(WbalanceKernDeathTest, An_answer_too_long_for_its_trace_ends_the_process) {
    line.Answer("O8\r\n", {{std::string(1000, 'x')}});
    EXPECT_EXIT(balance.Weight(2, &weight, nullptr), testing::KilledBySignal(SIGABRT),
                "libwbalance: a trace line does not fit its buffer of 1024 bytes");
}

TEST_F(WbalanceKernDeathTest, An_answer_of_900_characters_does_not) {
    line.Answer("O8\r\n", {{std::string(900, 'x')}});
    EXPECT_EQ(balance.Weight(2, &weight, nullptr), 0);
}

// Tare and TareSet

TEST_F(WbalanceKernTest, Tare_succeeds_on_the_acknowledgement) {
    line.Answer("T \r\n", {{"A00\r\n"}});

    EXPECT_EQ(balance.Tare(), 1);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAreArray(kOpened +
                         Steps{R"(trace "Kern EW/EG-N/EWB - Tare\n")", R"(write "T \r\n")",
                               R"(trace "<== T \r\n ... OK\n\n")", "wait 1000: data",
                               R"(read "A00\r\n")"} +
                         kNothingMore +
                         Steps{R"(trace "Read from scale: A00\r\n (time elapsed: 2000 ms)\n")",
                               R"(trace "Read from scale: A00\r\n\n")"}));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceKernTest, Tare_fails_on_E01_and_on_silence) {
    line.Answer("T \r\n", {{"E01\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("T \r\n", "T \r\n"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceKernTest, Tare_finds_the_acknowledgement_anywhere_in_the_answer) {
    line.Answer("T \r\n", {{"+  12.50 G S\r\nA00\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
}

TEST_F(WbalanceKernTest, TareSet_returns_0_and_sends_nothing) {
    for (const double preset : {0.0, 12.5, -1.0, 1e300})
        EXPECT_EQ(balance.TareSet(preset), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceKernTest, RestoreFactorySettings_is_the_base_class_one) {
    EXPECT_EQ(balance.RestoreFactorySettings(), 1);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceKernTest, The_next_operation_finds_the_port_open_and_sets_it_again) {
    line.AlwaysAnswer("T \r\n", {{"A00\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
    line.Forget();
    EXPECT_EQ(balance.Tare(), 1);
    const Steps steps = line.Transcript();
    ASSERT_GT(steps.size(), kFoundOpen.size());
    EXPECT_THAT(Steps(steps.begin(), steps.begin() + static_cast<long>(kFoundOpen.size())),
                ElementsAreArray(kFoundOpen));
}

TEST_F(WbalanceKernTest, An_unread_line_of_before_is_discarded) {
    line.Arrive(0, "+  99.99 G S\r\n");
    line.Answer("O8\r\n", {{"A00\r\n+  12.50 G S\r\n"}});
    EXPECT_EQ(balance.Weight(2, &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.5);
}

// Readiness as the driver has it

TEST_F(WbalanceKernTest, IsReady_and_Weight_ask_each_other_until_a_clear_fails) {
    Kern kern;
    line.Fail("clear", 3);

    EXPECT_EQ(kern.IsReady(), 0);

    Steps refused = kFoundOpen;
    refused.back() = "clear input: refused";
    EXPECT_THAT(line.Transcript(),
                ElementsAreArray(kOpened + kFoundOpen + refused +
                                 Steps{"close", "delete port",
                                       R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"}));
    EXPECT_THAT(line.Sent(), IsEmpty());
    EXPECT_NE(kern.serialObject, nullptr);
}

TEST_F(WbalanceKernTest, Tare_and_Weight_enter_the_same_chain) {
    for (const bool tare : {true, false}) {
        Kern kern;
        line.Reset();
        line.Fail("clear", 2);
        EXPECT_EQ(tare ? kern.Tare() : kern.Weight(2, &weight, &decimals), 0);
        EXPECT_THAT(line.Sent(), IsEmpty());
        EXPECT_FALSE(line.IsOpen());
        EXPECT_EQ(weight, -1.0);
        EXPECT_EQ(decimals, -1);
        line.OnClose();
    }
}

TEST_F(WbalanceKernTest, The_chain_ends_with_an_open_that_fails) {
    Kern kern;
    line.Fail("open");
    EXPECT_EQ(kern.IsReady(), 0);
    EXPECT_THAT(line.Transcript(),
                ElementsAre("open /dev/ttyS0: refused",
                            R"(trace "INVALID COMM PORT ... UNABLE OPENING /dev/ttyS0!\n\n")"));
    EXPECT_EQ(line.PortObjects(), 1);
}

TEST_F(WbalanceKernTest, The_chain_ends_for_good_with_a_setting_that_is_refused) {
    Kern kern;
    line.Fail("setBaudRate", 4);
    EXPECT_EQ(kern.IsReady(), 0);
    EXPECT_EQ(kern.serialObject, nullptr);
    EXPECT_EQ(line.PortObjects(), 0);
    line.Forget();
    EXPECT_EQ(kern.IsReady(), 0);
    EXPECT_EQ(kern.Tare(), 0);
    EXPECT_EQ(kern.Weight(1, &weight, &decimals), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
    EXPECT_EQ(weight, -1.0);
}

TEST_F(WbalanceKernTest, A_negative_port_number_is_not_ready) {
    Kern kern;
    kern.portNumber = -1;
    EXPECT_EQ(kern.IsReady(), 0);
    EXPECT_EQ(kern.Tare(), 0);
    EXPECT_EQ(kern.Weight(1, &weight, nullptr), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

/// A host whose readiness ends the chain after two levels, so that each level gets to send.
void EndAfterTwoLevels(Host<WbalanceKern_EW_EGN_EWB>& kern) {
    kern.readiness = [&kern, left = 2]() mutable {
        return left-- > 0 ? kern.WbalanceKern_EW_EGN_EWB::IsReady() : kern.OpenAndClear();
    };
}

TEST_F(WbalanceKernTest, Each_level_of_the_chain_takes_its_own_weight_once_the_readiness_ends_it) {
    Host<WbalanceKern_EW_EGN_EWB> kern;
    EndAfterTwoLevels(kern);
    line.AlwaysAnswer("O9\r\n", {{"A00\r\n+   9.00 G S\r\n"}});
    line.AlwaysAnswer("O8\r\n", {{"A00\r\n+   8.00 G S\r\n"}});

    EXPECT_EQ(kern.Weight(2, &weight, nullptr), 1);

    // Two trial weights of mode 1, then the one that was asked for.
    EXPECT_THAT(line.Sent(), ElementsAre("O9\r\n", "O9\r\n", "O8\r\n"));
    EXPECT_EQ(weight, 8.0);
}

TEST_F(WbalanceKernTest, A_send_that_fails_in_the_chain_ends_it_without_another_one) {
    Host<WbalanceKern_EW_EGN_EWB> kern;
    EndAfterTwoLevels(kern);
    line.Fail("write");
    EXPECT_EQ(kern.Weight(2, &weight, nullptr), 0);
    EXPECT_THAT(line.Trace(), EndsWith("Kern EW/EG-N/EWB - Weight\n<== O9\r\n ... FAIL\n\n"));
    EXPECT_THAT(line.Sent(), IsEmpty());
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceKernTest, A_read_that_fails_in_the_chain_ends_it_without_another_send) {
    Host<WbalanceKern_EW_EGN_EWB> kern;
    EndAfterTwoLevels(kern);
    line.Answer("O9\r\n", {{"A00\r\n+   9.00 G S\r\n"}});
    EXPECT_EQ(kern.Tare(), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("O9\r\n", "O9\r\n"));
}

// What a host overrides

TEST_F(WbalanceKernTest, IsReady_returns_what_the_hosts_Weight_returns_in_mode_1) {
    Host<WbalanceKern_EW_EGN_EWB> host;
    host.weighing = [](long /*mode*/, double* grams, int* /*count*/) {
        EXPECT_EQ(*grams, 0.0);
        return 7;
    };
    EXPECT_EQ(host.IsReady(), 7);
    EXPECT_THAT(host.calls, ElementsAre("IsReady", "Weight 1 without decimals"));
    EXPECT_THAT(line.Transcript(), ElementsAreArray(kOpened));
}

/// A host that is ready, whose immediate weights are these, one after the other; a negative one
/// fails.
void ShowOneByOne(Host<WbalanceKern_EW_EGN_EWB>& host, std::vector<double>& results) {
    host.readiness = [] { return 1; };
    host.weighing = [&host, &results](long mode, double* weight, int* decimals) {
        if (mode != 2) return host.WbalanceKern_EW_EGN_EWB::Weight(mode, weight, decimals);
        EXPECT_EQ(*weight, 0.0);
        *weight = results.front();
        results.erase(results.begin());
        return *weight < 0.0 ? 0 : 1;
    };
}

TEST_F(WbalanceKernTest, The_average_is_taken_from_the_hosts_Weight) {
    Host<WbalanceKern_EW_EGN_EWB> host;
    ASSERT_EQ(host.OpenAndSetDefCommConfig(), 1);
    line.Answer("O9\r\n", {{"A00\r\n"}});
    line.Answer("O0\r\n", {{"A00\r\n"}});
    std::vector<double> results = {1.0, 2.0, 3.0, 4.0, 5.5};
    ShowOneByOne(host, results);
    weight = 0.25;

    EXPECT_EQ(host.Weight(1, &weight, &decimals), 1);

    EXPECT_EQ(weight, 3.1);
    const std::string immediate = "Weight 2 without decimals";
    EXPECT_THAT(host.calls, ElementsAre("Weight 1 with decimals", "IsReady", immediate, immediate,
                                        immediate, immediate, immediate));
}

TEST_F(WbalanceKernTest, The_average_ends_with_the_hosts_first_failure) {
    Host<WbalanceKern_EW_EGN_EWB> host;
    ASSERT_EQ(host.OpenAndSetDefCommConfig(), 1);
    line.Answer("O9\r\n", {{"A00\r\n"}});
    line.Answer("O0\r\n", {{"A00\r\n"}});
    std::vector<double> results = {1.0, -1.0, 3.0};
    ShowOneByOne(host, results);
    EXPECT_EQ(host.Weight(1, &weight, nullptr), 0);
    EXPECT_EQ(weight, -1.0);
    EXPECT_THAT(results, ElementsAre(3.0));
}

TEST_F(WbalanceKernTest, A_host_that_is_not_ready_sends_nothing) {
    Host<WbalanceKern_EW_EGN_EWB> host;
    host.readiness = [] { return 0; };
    EXPECT_EQ(host.Tare(), 0);
    EXPECT_EQ(host.Weight(1, &weight, nullptr), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
    EXPECT_EQ(weight, -1.0);
}

TEST_F(WbalanceKernTest, A_host_that_is_ready_without_a_port_gets_0) {
    Host<WbalanceKern_EW_EGN_EWB> host;
    host.readiness = [] { return 1; };
    EXPECT_EQ(host.Tare(), 0);
    EXPECT_THAT(line.Transcript(), ElementsAre(R"(trace "Kern EW/EG-N/EWB - Tare\n")",
                                               R"(trace "<== T \r\n ... FAIL\n\n")"));
}

// The transport failing at each single call of a weighing

TEST_F(WbalanceKernTest, Weight_when_each_call_on_the_port_fails) {
    ExpectWhenEachCallFails<WbalanceKern_EW_EGN_EWB, WithLineReadiness<Kern>>(
        {{"open /dev/ttyS0", 0, "held"},
         {"setBaudRate 1200", 0, "gone"},
         {"setDataBits 8", 0, "gone"},
         {"setParity none", 0, "gone"},
         {"setStopBits 2", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "O8\r\n")", 0, "open"},
         {R"(write "O8\r\n")", 0, "open", PortFault::ShortWrite},
         {R"(write "O8\r\n")", 0, "open", PortFault::HangUp},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open", PortFault::EmptyRead},
         {"wait 1000", 0, "open", PortFault::HangUp},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"}},
        [this](auto&) { line.Answer("O8\r\n", {{"A00\r\n+  12.50 G S\r\n"}}); },
        [this](auto& driver) {
            weight = -1.0;
            const int status = driver.Weight(2, &weight, &decimals);
            EXPECT_EQ(weight, status == 1 ? 12.5 : -1.0);
            return status;
        });
}

// The parser alone

struct Parsed {
    std::string name;
    std::string answer;
    int result;
    double weight;
    int decimals;
};

class WbalanceKernParserTest : public WbalanceKernTest,
                               public testing::WithParamInterface<Parsed> {};

TEST_P(WbalanceKernParserTest, Reads) {
    std::string answer = GetParam().answer;
    EXPECT_EQ(balance.ParseWeight(answer.data(), &weight, &decimals), GetParam().result);
    EXPECT_EQ(weight, GetParam().weight);
    EXPECT_EQ(decimals, GetParam().decimals);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, WbalanceKernParserTest,
    testing::Values(
        Parsed{"empty", "", 0, -1.0, -1}, Parsed{"acknowledgement_alone", "A00\r\n", 0, -1.0, -1},
        Parsed{"eleven_characters", "+  12.50 G ", 0, -1.0, -1},
        Parsed{"twelve_characters", "+  12.50 G S", 1, 12.5, 7},
        Parsed{"with_its_line_end", "+  12.50 G S\r\n", 1, 12.5, 7},
        Parsed{"negative", "-  12.50 G S\r\n", 1, -12.5, 7},
        Parsed{"blank_sign", "   12.50 G S\r\n", 1, 12.5, 7},
        Parsed{"any_other_sign", "?  12.50 G S\r\n", 1, 12.5, 7},
        Parsed{"unstable", "+  12.50 G U\r\n", 2, 12.5, 7},
        Parsed{"in_error", "+  12.50 G E\r\n", 2, 12.5, 7},
        Parsed{"blank_status", "+  12.50 G  \r\n", 2, 12.5, 7},
        Parsed{"lower_case_status", "+  12.50 G s\r\n", 2, 12.5, 7},
        Parsed{"no_point_leaves_the_decimals", "+   1250 G S\r\n", 1, 1250.0, -1},
        Parsed{"point_at_the_end_of_the_value", "+   125. G S\r\n", 1, 125.0, 7},
        Parsed{"point_behind_the_value_does_not_count", "+   1250.G S\r\n", 1, 1250.0, -1},
        Parsed{"seven_characters_of_value", "+123.456 G S\r\n", 1, 123.456, 7},
        Parsed{"eighth_character_of_the_value_is_lost", "+  12.345 G S\r\n", 2, 12.34, 7},
        Parsed{"minus_within_the_value", "+ -12.50 G S\r\n", 1, -12.5, 7},
        Parsed{"two_minus_signs", "- -12.50 G S\r\n", 1, 12.5, 7},
        Parsed{"pieces", "+      5PC S\r\n", 1, 5.0, -1},
        Parsed{"kilograms_are_not_scaled", "+  1.250KG S\r\n", 1, 1.25, 7},
        Parsed{"no_digits", "+        G S\r\n", 1, 0.0, -1},
        Parsed{"bytes_above_127", "\xab  12.50\xb5G S\r\n", 1, 12.5, 7},
        Parsed{"behind_the_acknowledgement", "A00\r\n-  12.50 G S\r\n", 1, -12.5, 7},
        Parsed{"any_text_that_begins_with_A", "Axyz-+  12.50 G S\r\n", 1, 12.5, 7},
        Parsed{"acknowledgement_behind_the_record", "+  12.50 G S\r\nA00\r\n", 1, 12.5, 7},
        Parsed{"first_of_two_records", "+  12.50 G S\r\n+  99.99 G U\r\n", 1, 12.5, 7},
        Parsed{"record_cut_off_behind_its_value", "A00\r\n-  12.5", 2, -12.5, 7},
        Parsed{"record_cut_off_before_its_status", "A00\r\n+  12.50 G ", 2, 12.5, 7},
        Parsed{"record_complete_at_the_end_of_the_text", "A00\r\n+  12.50 G S", 1, 12.5, 7},
        Parsed{"longer_than_any_buffer", "+  12.50 G S" + std::string(5000, 'x'), 1, 12.5, 7}),
    [](const auto& row) { return row.param.name; });

TEST_F(WbalanceKernTest, The_parser_takes_null_for_every_argument) {
    char answer[] = "-  12.50 G S\r\n";
    EXPECT_EQ(balance.ParseWeight(nullptr, &weight, &decimals), 0);
    EXPECT_EQ(weight, -1.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_EQ(balance.ParseWeight(answer, nullptr, &decimals), 1);
    EXPECT_EQ(decimals, 7);
    EXPECT_EQ(balance.ParseWeight(answer, &weight, nullptr), 1);
    EXPECT_EQ(weight, -12.5);
    EXPECT_EQ(balance.ParseWeight(answer, nullptr, nullptr), 1);
}

TEST_F(WbalanceKernTest, The_parser_reads_nothing_behind_the_end_of_a_short_record) {
    // Twelve characters from an A on: the record would end five characters behind the text.
    char answer[] = "A00\r\n+  12.50 G S";
    // The status of this whole one may still stand in memory.
    EXPECT_EQ(balance.ParseWeight(answer + 5, &weight, &decimals), 1);
    answer[12] = '\0';
    EXPECT_EQ(balance.ParseWeight(answer, &weight, &decimals), 2);
    EXPECT_EQ(weight, 12.5);
}

}  // namespace
