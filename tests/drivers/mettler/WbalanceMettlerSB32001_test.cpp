#include "MtSicsDriverTests.h"

namespace scripted {
namespace {

struct Sb32001 {
    using Driver = WbalanceMettlerSB32001;
    static constexpr char kName[] = "Mettler SB";
    static void AnswerReset(Line& line, const std::string& serialNumber = kSerialNumber) {
        line.Answer("@\r\n", {{serialNumber}});
        line.Answer("SI\r\n", {{kDynamic}});
    }
    static std::vector<std::string> ResetCommands() { return {"@\r\n", "SI\r\n"}; }
    static std::vector<MtSicsOperation<Driver>> OwnOperations() { return {}; }
};

INSTANTIATE_TYPED_TEST_SUITE_P(WbalanceMettlerSB32001, MtSicsDriver, Sb32001);

using WbalanceMettlerSB32001Test = MtSicsDriver<Sb32001>;
using Balance = Open<WbalanceMettlerSB32001>;

// Readiness

TEST_F(WbalanceMettlerSB32001Test, First_readiness_resets_from_the_open_to_the_immediate_weight) {
    line.Answer("@\r\n", {{kSerialNumber}});
    line.Answer("SI\r\n", {{kDynamic}});
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_THAT(
        line.Transcript(),
        ElementsAre("open /dev/ttyS0", R"(trace "/dev/ttyS0 OPENED SUCCESSFULLY!\n\n")",
                    "setBaudRate 2400", "setDataBits 7", "setParity even", "setStopBits 1",
                    "setFlowControl none",
                    R"(trace "Balance Comm Port settings:\nBaud rate = 2400\nParity = 2\n)"
                    R"(Data bits = 7\nStop bits = 0\nFlow control = 0\nTimeout = 1\n===> OK\n\n")",
                    "clear input", R"(trace "Mettler SB - Reset\n")", R"(write "@\r\n")",
                    R"(trace "<== @\r\n ... OK\n\n")", "Sleep 500", "wait 1000: data",
                    R"(read "I4 A \"1126493049\"\r\n")",
                    R"(trace "Read from scale: I4 A \"1126493049\"\r\n (time elapsed: 0 ms)\n")",
                    R"(trace "Mettler SB - Ustable weight\n")", R"(write "SI\r\n")",
                    R"(trace "<== SI\r\n ... OK\n\n")", "Sleep 500", "wait 1000: data",
                    R"(read "S D      10.00 g\r\n")",
                    R"(trace "Read from scale: S D      10.00 g\r\n (time elapsed: 0 ms)\n")"));
    EXPECT_EQ(balance.modelFlagC, 0);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerSB32001Test, Reset_takes_any_answer_to_its_immediate_weight) {
    line.Answer("@\r\n", {{kSerialNumber}});
    line.Answer("SI\r\n", {{"S I\r\n"}});
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_EQ(balance.modelFlagC, 0);
}

TEST_F(WbalanceMettlerSB32001Test,
       Reset_without_an_immediate_weight_closes_the_port_and_stays_due) {
    line.Answer("@\r\n", {{kSerialNumber}});
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(
        Steps(),
        ElementsAre("opening", R"(trace "Mettler SB - Reset\n")", R"(write "@\r\n")", "Sleep 500",
                    R"(read "I4 A \"1126493049\"\r\n")", R"(trace "Mettler SB - Ustable weight\n")",
                    R"(write "SI\r\n")", "Sleep 500", "silent read", "close", "delete port",
                    R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"));
    EXPECT_EQ(line.Now(), 4000);
    EXPECT_EQ(balance.modelFlagC, 1);
}

TEST_F(WbalanceMettlerSB32001Test, Reset_whose_immediate_weight_is_not_taken_closes_at_once) {
    line.Answer("@\r\n", {{kSerialNumber}});
    line.Fail("write", 2);
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(line.Sleeps(), ElementsAre(500));
    EXPECT_EQ(line.Now(), 500);
    EXPECT_EQ(line.PortObjects(), 0);
    EXPECT_EQ(balance.modelFlagC, 1);
}

TEST_F(WbalanceMettlerSB32001Test, First_readiness_when_each_call_fails_in_turn) {
    ExpectWhenEachCallFails<WbalanceMettlerSB32001>(
        {{"open /dev/ttyS0", 0, "held"},
         {"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "@\r\n")", 0, "closed"},
         // The command leaves with the wait of the next attempt.
         {"wait 1000", 1, "open"},
         {R"(write "SI\r\n")", 0, "closed"},
         {"wait 1000", 1, "open"}},
        [this](Balance&) {
            line.Answer("@\r\n", {{kSerialNumber}});
            line.Answer("SI\r\n", {{kDynamic}});
        },
        [](Balance& driver) { return driver.IsReady(); });
}

// Tare

TEST_F(WbalanceMettlerSB32001Test, Tare_succeeds_at_T_S) {
    Begin();
    line.Answer("T\r\n", {{"T S      10.00 g\r\n", 900}});
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler SB - Tare\n")",
                                     R"(write "T\r\n")", R"(read "T S      10.00 g\r\n")",
                                     R"(trace "Mettler SB - Success.\n\n")"));
    EXPECT_EQ(Elapsed(), 900);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerSB32001Test, Tare_fails_at_any_other_answer) {
    Begin();
    line.Answer("T\r\n", {{"T I\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(Steps(),
                ElementsAre("opening again", R"(trace "Mettler SB - Tare\n")", R"(write "T\r\n")",
                            R"(read "T I\r\n")", R"(trace "Mettler SB - Command fail!\n\n")"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerSB32001Test, Tare_fails_without_an_answer_and_without_a_trace_of_its_own) {
    Begin();
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler SB - Tare\n")",
                                     R"(write "T\r\n")", "silent read"));
    EXPECT_EQ(Elapsed(), 3000);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerSB32001Test, Tare_finds_T_S_that_ends_with_the_32nd_character) {
    Begin();
    line.Answer("T\r\n", {{std::string(28, '.') + "T S 1.00 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
}

TEST_F(WbalanceMettlerSB32001Test, Tare_does_not_see_T_S_that_reaches_behind_the_32nd_character) {
    Begin();
    line.Answer("T\r\n", {{std::string(29, '.') + "T S 1.00 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
}

// Preset tare

TEST_F(WbalanceMettlerSB32001Test, Preset_tare_of_10_sends_12_50_when_the_tare_took_2_5) {
    Begin();
    line.Answer("T\r\n", {{"T S       2.50 g\r\n", 100}});
    line.Answer("TA 12.50 g\r\n", {{"TA A      12.50 g\r\n", 100}});
    EXPECT_EQ(balance.TareSet(10.0), 1);
    EXPECT_THAT(Steps(),
                ElementsAre("opening again", R"(trace "Mettler SB - Tare\n")", R"(write "T\r\n")",
                            R"(read "T S       2.50 g\r\n")",
                            R"(trace "Mettler SB - weight = 2.50 cc.\n\n")",
                            R"(trace "Mettler SB - Set tare to 12.50\n")",
                            R"(write "TA 12.50 g\r\n")", R"(read "TA A      12.50 g\r\n")"));
    EXPECT_EQ(Elapsed(), 200);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerSB32001Test, Preset_tare_that_is_refused_counts_as_set) {
    Begin();
    line.Answer("T\r\n", {{"T S       2.50 g\r\n"}});
    line.Answer("TA 12.50 g\r\n", {{"TA L\r\n"}});
    EXPECT_EQ(balance.TareSet(10.0), 1);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler SB - Tare\n")",
                                     R"(write "T\r\n")", R"(read "T S       2.50 g\r\n")",
                                     R"(trace "Mettler SB - weight = 2.50 cc.\n\n")",
                                     R"(trace "Mettler SB - Set tare to 12.50\n")",
                                     R"(write "TA 12.50 g\r\n")", R"(read "TA L\r\n")",
                                     R"(trace "Mettler SB - Command fail!\n\n")"));
}

TEST_F(WbalanceMettlerSB32001Test, Preset_tare_is_confirmed_by_a_blank_behind_TA_A) {
    Begin();
    line.Answer("T\r\n", {{"T S       2.50 g\r\n"}});
    line.Answer("TA 12.50 g\r\n", {{"TA A\r\n"}});
    EXPECT_EQ(balance.TareSet(10.0), 1);
    EXPECT_THAT(line.Trace(), HasSubstr("TA A\r\n (time elapsed: 0 ms)\n"
                                        "Mettler SB - Command fail!\n\n"));
}

TEST_F(WbalanceMettlerSB32001Test, Preset_tare_that_is_not_answered_counts_as_set) {
    Begin();
    line.Answer("T\r\n", {{"T S       2.50 g\r\n"}});
    EXPECT_EQ(balance.TareSet(10.0), 1);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler SB - Tare\n")",
                                     R"(write "T\r\n")", R"(read "T S       2.50 g\r\n")",
                                     R"(trace "Mettler SB - weight = 2.50 cc.\n\n")",
                                     R"(trace "Mettler SB - Set tare to 12.50\n")",
                                     R"(write "TA 12.50 g\r\n")", "silent read"));
}

TEST_F(WbalanceMettlerSB32001Test, Preset_tare_is_sent_alone_when_the_tare_failed) {
    Begin();
    line.Answer("T\r\n", {{"T I\r\n"}});
    line.Answer("TA 10.00 g\r\n", {{"TA A      10.00 g\r\n"}});
    EXPECT_EQ(balance.TareSet(10.0), 1);
    EXPECT_THAT(Steps(),
                ElementsAre("opening again", R"(trace "Mettler SB - Tare\n")", R"(write "T\r\n")",
                            R"(read "T I\r\n")", R"(trace "Mettler SB - Command fail!\n\n")",
                            R"(trace "Mettler SB - Set tare to 10.00\n")",
                            R"(write "TA 10.00 g\r\n")", R"(read "TA A      10.00 g\r\n")"));
}

TEST_F(WbalanceMettlerSB32001Test, Preset_tare_is_sent_alone_when_the_tare_is_not_answered) {
    Begin();
    line.Answer("TA 10.00 g\r\n", {{"TA A      10.00 g\r\n"}});
    EXPECT_EQ(balance.TareSet(10.0), 1);
    EXPECT_THAT(Steps(),
                ElementsAre("opening again", R"(trace "Mettler SB - Tare\n")", R"(write "T\r\n")",
                            "silent read", R"(trace "Mettler SB - Set tare to 10.00\n")",
                            R"(write "TA 10.00 g\r\n")", R"(read "TA A      10.00 g\r\n")"));
}

TEST_F(WbalanceMettlerSB32001Test, Preset_tare_finds_T_S_that_ends_with_the_33rd_character) {
    Begin();
    line.Answer("T\r\n", {{std::string(29, '.') + "T S 1.00 g\r\n"}});
    EXPECT_EQ(balance.TareSet(10.0), 1);
    EXPECT_THAT(line.Trace(), HasSubstr("Mettler SB - weight = 0.00 cc.\n\n"));
    EXPECT_THAT(line.Sent(), ElementsAre("T\r\n", "TA 10.00 g\r\n"));
}

TEST_F(WbalanceMettlerSB32001Test, Preset_tare_does_not_see_T_S_behind_the_33rd_character) {
    Begin();
    line.Answer("T\r\n", {{std::string(30, '.') + "T S 1.00 g\r\n"}});
    EXPECT_EQ(balance.TareSet(10.0), 1);
    EXPECT_THAT(line.Trace(), HasSubstr("Mettler SB - Command fail!\n\n"));
}

TEST_F(WbalanceMettlerSB32001Test, Preset_tare_of_10_sends_12_25_for_a_held_tare_of_2_25) {
    Begin();
    line.Answer("T\r\n", {{"T S       2.25 g\r\n"}});
    EXPECT_EQ(balance.TareSet(10.0), 1);
    EXPECT_THAT(line.Sent(), ElementsAre("T\r\n", "TA 12.25 g\r\n"));
}

// Weight, mode 0

TEST_F(WbalanceMettlerSB32001Test, Mode_0_reads_a_stable_weight_1_s_after_the_command) {
    Begin();
    line.Answer("S\r\n", {{kStable}});
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 100.0);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(Steps(),
                ElementsAre("opening again", R"(trace "Mettler SB - Stable weight\n")",
                            R"(write "S\r\n")", "Sleep 1000", R"(read "S S     100.00 g\r\n")",
                            R"(trace "Mettler SB - weight = 100.00 cc.\n\n")"));
    EXPECT_EQ(Elapsed(), 1000);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerSB32001Test, Mode_0_fails_at_any_other_answer) {
    for (const char* answer :
         {"S I\r\n", "S +\r\n", "S -\r\n", "S S\r\n", "ES\r\n", "EL\r\n", kDynamic}) {
        SCOPED_TRACE(answer);
        line.Reset();
        Balance fresh;
        GetReady(fresh);
        line.Answer("S\r\n", {{answer}});
        EXPECT_EQ(FailedWeight(fresh, 0), 0);
        EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler SB - Stable weight\n")",
                                         R"(write "S\r\n")", "Sleep 1000", "read " + Quoted(answer),
                                         R"(trace "Mettler SB - Command fail!\n\n")"));
        EXPECT_TRUE(line.IsOpen());
    }
}

TEST_F(WbalanceMettlerSB32001Test, Mode_0_cuts_an_answer_behind_its_33rd_character) {
    Begin();
    line.Answer("S\r\n", {{"S S " + std::string(27, ' ') + "12.5 g\r\n"}});
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 12.0);
    EXPECT_EQ(decimals, -1);
}

// Weight, mode 2

TEST_F(WbalanceMettlerSB32001Test, Mode_2_reads_a_dynamic_weight_at_once) {
    Begin();
    line.Answer("SI\r\n", {{kDynamic}});
    EXPECT_EQ(balance.Weight(2, &weight, &decimals), 2);
    EXPECT_EQ(weight, 10.0);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler SB - Ustable weight\n")",
                                     R"(write "SI\r\n")", R"(read "S D      10.00 g\r\n")",
                                     R"(trace "Mettler SB - weight = 10.00 cc.\n\n")"));
    EXPECT_EQ(Elapsed(), 0);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerSB32001Test, Mode_2_reads_a_stable_weight_as_1) {
    Begin();
    line.Answer("SI\r\n", {{"S S     -12.345 g\r\n"}});
    EXPECT_EQ(balance.Weight(2, &weight, nullptr), 1);
    EXPECT_EQ(weight, -12.345);
    EXPECT_THAT(line.Trace(), testing::EndsWith("Mettler SB - weight = -12.35 cc.\n\n"));
}

TEST_F(WbalanceMettlerSB32001Test, Mode_2_fails_at_any_other_answer) {
    Begin();
    line.Answer("SI\r\n", {{"S +\r\n"}});
    EXPECT_EQ(FailedWeight(balance, 2), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler SB - Ustable weight\n")",
                                     R"(write "SI\r\n")", R"(read "S +\r\n")",
                                     R"(trace "Mettler SB - Command fail!\n\n")"));
}

TEST_F(WbalanceMettlerSB32001Test, Mode_2_fails_without_an_answer) {
    Begin();
    EXPECT_EQ(FailedWeight(balance, 2), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler SB - Ustable weight\n")",
                                     R"(write "SI\r\n")", "silent read"));
    EXPECT_EQ(Elapsed(), 3000);
}

// Weight, mode 1

TEST_F(WbalanceMettlerSB32001Test, Mode_1_reads_a_stable_weight_at_once) {
    Begin();
    line.Answer("S\r\n", {{kStable}});
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 1);
    EXPECT_EQ(weight, 100.0);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler SB - Stable weight\n")",
                                     R"(write "S\r\n")", R"(read "S S     100.00 g\r\n")",
                                     R"(trace "Mettler SB - weight = 100.00 cc.\n\n")"));
    EXPECT_EQ(Elapsed(), 0);
}

TEST_F(WbalanceMettlerSB32001Test, Mode_1_averages_five_dynamic_readings) {
    Begin();
    line.Answer("S\r\n", {{"S I\r\n"}});
    line.Answer("SI\r\n", {{"S D      10.00 g\r\n"}});
    line.Answer("SI\r\n", {{"S D      11.00 g\r\n"}});
    line.Answer("SI\r\n", {{"S D      12.00 g\r\n"}});
    line.Answer("SI\r\n", {{"S D      13.00 g\r\n"}});
    line.Answer("SI\r\n", {{"S D      14.50 g\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 2);
    EXPECT_DOUBLE_EQ(weight, 12.1);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(
        Steps(),
        ElementsAre("opening again", R"(trace "Mettler SB - Stable weight\n")", R"(write "S\r\n")",
                    R"(read "S I\r\n")", R"(trace "Mettler SB - Command fail!\n\n")", "Sleep 1000",
                    "clear input", R"(trace "Mettler SB - Ustable weight\n")", R"(write "SI\r\n")",
                    R"(read "S D      10.00 g\r\n")", "Sleep 500", "clear input",
                    R"(trace "Mettler SB - Ustable weight\n")", R"(write "SI\r\n")",
                    R"(read "S D      11.00 g\r\n")", "Sleep 500", "clear input",
                    R"(trace "Mettler SB - Ustable weight\n")", R"(write "SI\r\n")",
                    R"(read "S D      12.00 g\r\n")", "Sleep 500", "clear input",
                    R"(trace "Mettler SB - Ustable weight\n")", R"(write "SI\r\n")",
                    R"(read "S D      13.00 g\r\n")", "Sleep 500", "clear input",
                    R"(trace "Mettler SB - Ustable weight\n")", R"(write "SI\r\n")",
                    R"(read "S D      14.50 g\r\n")", "Sleep 500",
                    R"(trace "Mettler SB - weight = 12.10 cc.\n\n")"));
    EXPECT_EQ(Elapsed(), 3500);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerSB32001Test, Mode_1_counts_passes_without_an_answer_as_zeros) {
    Begin();
    for (int pass = 0; pass < 3; ++pass)
        line.Answer("SI\r\n", {{kDynamic}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 2);
    EXPECT_DOUBLE_EQ(weight, 6.0);
    EXPECT_THAT(line.Sent(),
                ElementsAre("S\r\n", "SI\r\n", "SI\r\n", "SI\r\n", "SI\r\n", "SI\r\n"));
    EXPECT_THAT(line.Trace(), Not(HasSubstr("Command fail")));
    EXPECT_THAT(line.Trace(), testing::EndsWith("Mettler SB - weight = 6.00 cc.\n\n"));
    EXPECT_EQ(Elapsed(), 3000 + 1000 + 5 * 500 + 2 * 3000);
}

TEST_F(WbalanceMettlerSB32001Test, Mode_1_makes_4_of_two_readings_of_10_and_three_silent_passes) {
    Begin();
    line.Answer("SI\r\n", {{kDynamic}});
    line.Answer("SI\r\n", {{kDynamic}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 2);
    EXPECT_DOUBLE_EQ(weight, 4.0);
}

TEST_F(WbalanceMettlerSB32001Test, Mode_1_ends_with_the_first_pass_when_nothing_comes) {
    Begin();
    EXPECT_EQ(FailedWeight(balance, 1), 0);
    EXPECT_THAT(Steps(),
                ElementsAre("opening again", R"(trace "Mettler SB - Stable weight\n")",
                            R"(write "S\r\n")", "silent read", "Sleep 1000", "clear input",
                            R"(trace "Mettler SB - Ustable weight\n")", R"(write "SI\r\n")",
                            "silent read", R"(trace "Mettler SB - weight = 0.00 cc.\n\n")"));
    EXPECT_EQ(Elapsed(), 7000);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerSB32001Test, Mode_1_takes_a_stable_reading_alone) {
    Begin();
    line.Answer("SI\r\n", {{kDynamic}});
    line.Answer("SI\r\n", {{kStable}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, 100.0);
    EXPECT_THAT(Steps(),
                ElementsAre("opening again", R"(trace "Mettler SB - Stable weight\n")",
                            R"(write "S\r\n")", "silent read", "Sleep 1000", "clear input",
                            R"(trace "Mettler SB - Ustable weight\n")", R"(write "SI\r\n")",
                            R"(read "S D      10.00 g\r\n")", "Sleep 500", "clear input",
                            R"(trace "Mettler SB - Ustable weight\n")", R"(write "SI\r\n")",
                            R"(read "S S     100.00 g\r\n")",
                            R"(trace "Mettler SB - weight = 100.00 cc.\n\n")"));
}

TEST_F(WbalanceMettlerSB32001Test, Mode_1_fails_at_another_answer_even_after_dynamic_readings) {
    Begin();
    line.Answer("S\r\n", {{kDynamic}});
    line.Answer("SI\r\n", {{kDynamic}});
    line.Answer("SI\r\n", {{"S -\r\n"}});
    EXPECT_EQ(FailedWeight(balance, 1), 0);
    EXPECT_THAT(
        Steps(),
        ElementsAre("opening again", R"(trace "Mettler SB - Stable weight\n")", R"(write "S\r\n")",
                    R"(read "S D      10.00 g\r\n")", R"(trace "Mettler SB - Command fail!\n\n")",
                    "Sleep 1000", "clear input", R"(trace "Mettler SB - Ustable weight\n")",
                    R"(write "SI\r\n")", R"(read "S D      10.00 g\r\n")", "Sleep 500",
                    "clear input", R"(trace "Mettler SB - Ustable weight\n")", R"(write "SI\r\n")",
                    R"(read "S -\r\n")", R"(trace "Mettler SB - Command fail!\n\n")",
                    R"(trace "Mettler SB - weight = 0.00 cc.\n\n")"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerSB32001Test,
       Mode_1_averages_by_5_what_it_has_when_a_clear_or_a_command_fails) {
    for (const char* call : {"clear", "write"}) {
        SCOPED_TRACE(call);
        line.Reset();
        Balance fresh;
        GetReady(fresh);
        line.AlwaysAnswer("SI\r\n", {{kDynamic}});
        // The clear of the readiness or the "S" comes first, then two passes.
        line.Fail(call, 4);
        EXPECT_EQ(fresh.Weight(1, &weight, nullptr), 2);
        EXPECT_DOUBLE_EQ(weight, 4.0);
        EXPECT_THAT(line.Trace(), testing::EndsWith("Mettler SB - weight = 4.00 cc.\n\n"));
        EXPECT_TRUE(line.IsOpen());
    }
}

TEST_F(WbalanceMettlerSB32001Test, Mode_1_fails_when_a_clear_or_a_command_of_its_first_pass_fails) {
    for (const char* call : {"clear", "write"}) {
        SCOPED_TRACE(call);
        line.Reset();
        Balance fresh;
        GetReady(fresh);
        line.AlwaysAnswer("SI\r\n", {{kDynamic}});
        line.Fail(call, 2);
        EXPECT_EQ(FailedWeight(fresh, 1), 0);
        EXPECT_THAT(line.Sleeps(), ElementsAre(1000));
        EXPECT_THAT(line.Trace(), testing::EndsWith("Mettler SB - weight = 0.00 cc.\n\n"));
        EXPECT_TRUE(line.IsOpen());
    }
}

// The display

TEST_F(WbalanceMettlerSB32001Test,
       A_text_of_58_characters_or_more_is_refused_when_the_balance_is_ready) {
    for (const std::size_t length : {58U, 63U, 64U, 1000U}) {
        SCOPED_TRACE(length);
        line.Forget();
        line.Answer("@\r\n", {{"I4 A \"1126493049\"\r\n"}});
        line.Answer("SI\r\n", {{"S S     100.00 g\r\n"}});
        Balance driver;
        EXPECT_EQ(Display(driver, std::string(length, 'x')), 0);
        EXPECT_EQ(driver.modelFlagC, 0);
        EXPECT_EQ(driver.modelFlagB, 0);
        EXPECT_THAT(line.Sent(), ElementsAre("@\r\n", "SI\r\n"));
    }
}

TEST_F(WbalanceMettlerSB32001Test, A_text_of_58_characters_fails_when_the_balance_is_not_ready) {
    EXPECT_EQ(Display(balance, std::string(58, 'x')), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("@\r\n"));
    EXPECT_FALSE(line.IsOpen());
}

}  // namespace
}  // namespace scripted
