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
using testing::SizeIs;

namespace {

using Gibertini = Open<WbalanceGibertini>;
using Steps = std::vector<std::string>;

constexpr char kSettings[] =
    R"(trace "Balance Comm Port settings:\nBaud rate = 9600\nParity = 1024\nData bits = 7\n)"
    R"(Stop bits = 0\nFlow control = 0\nTimeout = 1\n===> OK\n\n")";

// No parity is set.
const Steps kOpened = {"open /dev/ttyS0",  R"(trace "/dev/ttyS0 OPENED SUCCESSFULLY!\n\n")",
                       "setBaudRate 9600", "setDataBits 7",
                       "setStopBits 1",    "setFlowControl none",
                       kSettings,          "clear input"};
const Steps kFoundOpen = {
    R"(trace "COM0 alread open!")", "setBaudRate 9600", "setDataBits 7", "setStopBits 1",
    "setFlowControl none",          kSettings,          "clear input"};
const Steps kNothingMore = {
    "wait 1000: silence", R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")",
    "wait 1000: silence", R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")"};
const Steps kSilentRound =
    Steps{"wait 1000: silence", R"(trace "Timeout elapsed in scale read (attempt n. 1)\n")"} +
    kNothingMore + Steps{R"(trace "Read from scale:  (time elapsed: 3000 ms)\n")"};

// The driver with a readiness of the line's alone, so that the operations reach the instrument.
class WbalanceGibertiniTest : public ScriptedTest {
 protected:
    WithLineReadiness<Gibertini> balance;
    double weight = -1.0;
    int decimals = -1;
};

TEST_F(WbalanceGibertiniTest, The_constructor_sets_the_line_to_9600_baud_and_a_parity_of_no_code) {
    const Gibertini gibertini;
    EXPECT_EQ(gibertini.portNumber, 0);
    EXPECT_EQ(gibertini.baudRate, 9600);
    EXPECT_EQ(gibertini.parityCode, 1024);
    EXPECT_EQ(gibertini.dataBits, 7);
    EXPECT_EQ(gibertini.stopBitsCode, 0);
    EXPECT_EQ(gibertini.flowControlCode, 0);
    EXPECT_EQ(gibertini.timeoutSeconds, 1);
    EXPECT_EQ(gibertini.portKind, 'S');
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// Weight

TEST_F(WbalanceGibertiniTest, A_stable_record_from_the_open_to_the_trace_of_the_weight) {
    line.Answer("B\r", {{"    123.45 g   DS\r\n"}});

    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 1);

    EXPECT_EQ(weight, 123.45);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(
        line.Transcript(),
        ElementsAreArray(
            kOpened +
            Steps{R"(trace "Gibertini - Weight\n")", R"(write "B\r")",
                  R"(trace "<== B\r ... OK\n\n")", "wait 1000: data",
                  R"(read "    123.45 g   DS\r\n")"} +
            kNothingMore +
            Steps{R"(trace "Read from scale:     123.45 g   DS\r\n (time elapsed: 2000 ms)\n")",
                  R"(trace "Read from scale:     123.45 g   DS\r\n\n")",
                  R"(trace "Gibertini - weight = 123.45 gr.\n\n")"}));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceGibertiniTest, An_unstable_record_is_a_success_with_result_1_too) {
    line.Answer("B\r", {{"     -0.07 g   TI\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, -0.07);
    EXPECT_THAT(line.Trace(), EndsWith("Gibertini - weight = -0.07 gr.\n\n"));
}

TEST_F(WbalanceGibertiniTest, Every_mode_asks_the_same) {
    line.AlwaysAnswer("B\r", {{"    123.45 g   DS\r\n"}});
    for (const long mode : {0L, 1L, 2L, 3L, -1L})
        EXPECT_EQ(balance.Weight(mode, &weight, nullptr), 1);
    EXPECT_THAT(line.Sent(), ElementsAre("B\r", "B\r", "B\r", "B\r", "B\r"));
}

TEST_F(WbalanceGibertiniTest, A_record_that_comes_after_silence_is_read_without_asking_again) {
    line.Answer("B\r", {{"    123.45 g   DS\r\n", 4000}});

    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 1);

    EXPECT_EQ(weight, 123.45);
    EXPECT_THAT(line.Sent(), ElementsAre("B\r"));
    EXPECT_THAT(
        line.Transcript(),
        ElementsAreArray(
            kOpened +
            Steps{R"(trace "Gibertini - Weight\n")", R"(write "B\r")",
                  R"(trace "<== B\r ... OK\n\n")"} +
            kSilentRound +
            Steps{R"(trace "Null answer received from scale\n")", "Sleep 200", "wait 1000: data",
                  R"(read "    123.45 g   DS\r\n")"} +
            kNothingMore +
            Steps{R"(trace "Read from scale:     123.45 g   DS\r\n (time elapsed: 2800 ms)\n")",
                  R"(trace "Read from scale:     123.45 g   DS\r\n\n")",
                  R"(trace "Gibertini - weight = 123.45 gr.\n\n")"}));
}

TEST_F(WbalanceGibertiniTest, A_silent_balance_fails_after_the_reading_that_passes_20_s) {
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);

    // Readings of 3 s, 200 ms apart: they end at 3000, 6200, ... 19000 and 22200.
    EXPECT_EQ(line.Now(), 22400);
    EXPECT_THAT(line.Sleeps(), ElementsAre(200, 200, 200, 200, 200, 200, 200));
    EXPECT_THAT(line.Sent(), ElementsAre("B\r"));
    EXPECT_THAT(line.Trace(),
                EndsWith("Null answer received from scale\nWeight procedure failed!"));
    EXPECT_EQ(weight, -1.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceGibertiniTest, The_reading_is_over_with_a_round_that_ends_at_20000_ms) {
    // Time-outs of 100 ms. The first reading takes no time at all, so that the others, of 300 ms
    // and 200 ms apart, end at 500, 1000, ... 20000.
    balance.SetCommConfig(9600, 1024, 7, 0, 0, 0, 'S');
    line.OnCommand([this](const std::string& /*command*/) {
        for (int wait = 0; wait < 3; ++wait)
            line.SignalWithoutData(line.Now());
    });
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 0);
    EXPECT_EQ(line.Now(), 20200);
    EXPECT_THAT(line.Sleeps(), SizeIs(41));
}

TEST_F(WbalanceGibertiniTest, The_reading_goes_on_after_a_round_that_ends_at_19800_ms) {
    // Time-outs of 100 ms: rounds of 300 ms, 200 ms apart, that end at 300, 800, ... 19800. The
    // pause does not count.
    balance.SetCommConfig(9600, 1024, 7, 0, 0, 0, 'S');
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 0);
    EXPECT_EQ(line.Now(), 20500);
    EXPECT_THAT(line.Sleeps(), SizeIs(41));
}

TEST_F(WbalanceGibertiniTest, Two_records_in_one_answer_give_the_value_of_the_first) {
    line.Answer("B\r", {{"    123.45 g   DI\r\n    999.99 g   DS\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, 123.45);
}

TEST_F(WbalanceGibertiniTest, A_record_in_two_pieces_is_joined_within_the_round) {
    line.Answer("B\r", {{"    123.4"}, {"5 g   DS\r\n", 500}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, 123.45);
    EXPECT_THAT(line.Sleeps(), IsEmpty());
}

TEST_F(WbalanceGibertiniTest, A_fragment_behind_a_record_is_read_on_until_it_is_complete) {
    line.Answer("B\r", {{"    123.45 g   DS\r\n    999"}, {".99 g   DS\r\n", 3500}});

    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 1);

    EXPECT_EQ(weight, 123.45);
    // The round ends without a line feed, so that the answer itself goes on.
    EXPECT_THAT(line.Sleeps(), ElementsAre(100));
}

TEST_F(WbalanceGibertiniTest, A_short_line_ahead_of_a_record_spoils_the_reading) {
    line.Answer("B\r", {{"?\r\n"}, {"    123.45 g   DS\r\n", 2500}});

    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);

    // The rounds are joined, and 22 characters are no whole number of records.
    EXPECT_THAT(line.Trace(), HasSubstr("Read from scale: ?\r\n    123.45 g   DS\r\n\n"));
    EXPECT_THAT(line.Trace(), EndsWith("Weight procedure failed!"));
    EXPECT_EQ(weight, -1.0);
    EXPECT_EQ(decimals, 2);
}

TEST_F(WbalanceGibertiniTest, An_over_range_record_is_refused_for_20_s_and_overwrites_the_weight) {
    line.Answer("B\r", {{"    210.00 g   OE\r\n"}});

    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);

    EXPECT_EQ(weight, 210.0);
    EXPECT_EQ(decimals, 2);
    EXPECT_GE(line.Now(), 20'000);
    EXPECT_THAT(line.Trace(), Not(HasSubstr("weight =")));
}

TEST_F(WbalanceGibertiniTest, A_good_record_behind_a_refused_one_does_not_help) {
    line.Answer("B\r", {{"    210.00 g   OE\r\n"}, {"    123.45 g   DS\r\n", 5000}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 0);
    EXPECT_EQ(weight, 210.0);
}

TEST_F(WbalanceGibertiniTest, Three_records_in_one_read_give_the_first) {
    const std::string more = "    999.99 g   DS\r\n";
    line.Answer("B\r", {{"    123.45 g   DS\r\n" + more + more}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, 123.45);
}

TEST_F(WbalanceGibertiniTest, A_fourth_record_in_one_read_is_cut_off_and_makes_the_answer_invalid) {
    const std::string more = "    999.99 g   DS\r\n";
    line.Answer("B\r", {{"    123.45 g   DS\r\n" + more + more + more}});

    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);

    EXPECT_EQ(weight, -1.0);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(line.Trace(), HasSubstr("\nRead from scale:     123.45 g   DS\r\n"
                                        "    999.99 g   DS\r\n    999.99 g   DS\r\n    999\n"));
}

TEST_F(WbalanceGibertiniTest, Four_records_in_pieces_give_the_first) {
    line.Answer("B\r", {{"    123.45 g   DS\r\n    999.99 g"},
                        {"   DI\r\n    999.99 g   D", 3000},
                        {"S\r\n    999.99 g   DS\r\n", 6100}});

    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 1);

    EXPECT_EQ(weight, 123.45);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(line.Trace(), HasSubstr("\nRead from scale:     123.45 g   DS\r\n"
                                        "    999.99 g   DI\r\n    999.99 g   DS\r\n"
                                        "    999.99 g   DS\r\n\nGibertini - weight"));
}

TEST_F(WbalanceGibertiniTest, An_invalid_record_behind_63_characters_is_refused) {
    line.Answer("B\r", {{"    123.45 g   DS\r\n    999.99 g"},
                        {"   DI\r\n    999.99 g   D", 3000},
                        {"S\r\n    999.99 g   OE\r\n", 6100}});
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);
    EXPECT_EQ(weight, -1.0);
    EXPECT_EQ(decimals, 2);
}

TEST_F(WbalanceGibertiniTest, After_63_characters_it_reads_on_as_after_fewer) {
    // Three records and the beginning of a fourth.
    line.Answer("B\r", {{"    123.45 g   DS\r\n    999.99 g   DS\r\n    999.99 g   DS\r\n    99"},
                        {"9.99 g   DS\r\n", 2500}});

    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 1);

    EXPECT_EQ(weight, 123.45);
    EXPECT_THAT(line.Sleeps(), ElementsAre(100));
    EXPECT_EQ(line.Now(), 2500 + 2000);
}

TEST_F(WbalanceGibertiniTest, Of_what_a_balance_sends_all_the_time_1005_characters_are_kept) {
    for (long at = 250; at < 200'000; at += 250)
        line.Arrive(at, "    123.45 g   DI");  // two characters short: no line end

    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 0);

    // 59 times 17 characters and 2 of the next.
    std::string kept;
    for (int i = 0; i < 59; ++i)
        kept += "    123.45 g   DI";
    EXPECT_THAT(line.Trace(), HasSubstr("\nRead from scale: " + kept + "  \n"));
    EXPECT_THAT(line.Trace(), EndsWith("\nWeight procedure failed!"));
    EXPECT_LT(line.Now(), 25'000);
}

TEST_F(WbalanceGibertiniTest, A_first_byte_of_zero_is_no_answer) {
    line.Answer("B\r", {{std::string("\0   123.45 g   DS\r\n", 19)}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 0);
    EXPECT_EQ(decimals, -1);
}

TEST_F(WbalanceGibertiniTest, A_percent_in_the_answer_is_interpreted_in_the_trace_alone) {
    line.Answer("B\r", {{"    123.45 %d  DS\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, 123.45);
    EXPECT_THAT(line.Trace(), HasSubstr("Read from scale:     123.45 0  DS\r\n\n"));
}

using WbalanceGibertiniDeathTest = WbalanceGibertiniTest;

TEST_F(WbalanceGibertiniDeathTest, An_answer_too_long_for_its_trace_ends_the_process) {
    line.Answer("B\r", {{std::string(1000, 'x')}});
    EXPECT_EXIT(balance.Weight(1, &weight, nullptr), testing::KilledBySignal(SIGABRT),
                "libwbalance: a trace line does not fit its buffer of 1024 bytes");
}

TEST_F(WbalanceGibertiniDeathTest, An_answer_of_900_characters_does_not) {
    line.Answer("B\r", {{std::string(900, 'x')}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 0);
}

// Tare and TareSet

TEST_F(WbalanceGibertiniTest, Tare_succeeds_on_a_valid_record_whatever_it_weighs) {
    line.Answer("T\r", {{"    123.45 g   TI\r\n"}});

    EXPECT_EQ(balance.Tare(), 1);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAreArray(
            kOpened +
            Steps{R"(trace "Gibertini - Tare\n")", R"(write "T\r")",
                  R"(trace "<== T\r ... OK\n\n")", "wait 1000: data",
                  R"(read "    123.45 g   TI\r\n")"} +
            kNothingMore +
            Steps{R"(trace "Read from scale:     123.45 g   TI\r\n (time elapsed: 2000 ms)\n")",
                  R"(trace "Read from scale:     123.45 g   TI\r\n\n")"}));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceGibertiniTest, Tare_reads_once_and_fails_on_a_refused_record_and_on_silence) {
    line.Answer("T\r", {{"      0.00 g   CE\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_EQ(line.Now(), 2000);
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_EQ(line.Now(), 5000);
    EXPECT_THAT(line.Sent(), ElementsAre("T\r", "T\r"));
    EXPECT_THAT(line.Trace(), EndsWith("Null answer received from scale\n"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceGibertiniTest, Tare_takes_two_valid_records_and_refuses_a_fragment) {
    line.Answer("T\r", {{"      0.00 g   TI\r\n      0.00 g   DS\r\n"}});
    line.Answer("T\r", {{"      0.00 g   TI\r\n      0.00\n"}});
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_EQ(balance.Tare(), 0);
}

TEST_F(WbalanceGibertiniTest, TareSet_returns_0_and_sends_nothing) {
    for (const double preset : {0.0, 12.5, -1.0, 1e300})
        EXPECT_EQ(balance.TareSet(preset), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceGibertiniTest, RestoreFactorySettings_is_the_base_class_one) {
    EXPECT_EQ(balance.RestoreFactorySettings(), 1);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceGibertiniTest, The_next_operation_finds_the_port_open_and_sets_it_again) {
    line.AlwaysAnswer("T\r", {{"      0.00 g   TI\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
    line.Forget();
    EXPECT_EQ(balance.Tare(), 1);
    Steps steps = line.Transcript();
    ASSERT_GT(steps.size(), kFoundOpen.size());
    steps.resize(kFoundOpen.size());
    EXPECT_THAT(steps, ElementsAreArray(kFoundOpen));
}

TEST_F(WbalanceGibertiniTest, An_unread_record_of_before_is_discarded) {
    line.Arrive(0, "    999.99 g   DS\r\n");
    line.Answer("B\r", {{"    123.45 g   DS\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, 123.45);
}

// Readiness as the driver has it

TEST_F(WbalanceGibertiniTest, IsReady_and_Weight_ask_each_other_until_a_clear_fails) {
    Gibertini gibertini;
    line.Fail("clear", 3);

    EXPECT_EQ(gibertini.IsReady(), 0);

    Steps refused = kFoundOpen;
    refused.back() = "clear input: refused";
    EXPECT_THAT(line.Transcript(),
                ElementsAreArray(kOpened + kFoundOpen + refused +
                                 Steps{"close", "delete port",
                                       R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"}));
    EXPECT_NE(gibertini.serialObject, nullptr);
}

TEST_F(WbalanceGibertiniTest, Tare_and_Weight_enter_the_same_chain) {
    Gibertini gibertini;
    line.Fail("clear", 2);
    EXPECT_EQ(gibertini.Tare(), 0);
    EXPECT_FALSE(line.IsOpen());
    line.Fail("clear", 2);
    EXPECT_EQ(gibertini.Weight(2, &weight, &decimals), 0);
    EXPECT_FALSE(line.IsOpen());
    EXPECT_THAT(line.Sent(), IsEmpty());
    EXPECT_EQ(weight, -1.0);
    EXPECT_EQ(decimals, -1);
}

TEST_F(WbalanceGibertiniTest, The_chain_ends_with_an_open_that_fails) {
    Gibertini gibertini;
    line.Fail("open");
    EXPECT_EQ(gibertini.IsReady(), 0);
    EXPECT_THAT(line.Transcript(),
                ElementsAre("open /dev/ttyS0: refused",
                            R"(trace "INVALID COMM PORT ... UNABLE OPENING /dev/ttyS0!\n\n")"));
    EXPECT_EQ(line.PortObjects(), 1);
}

TEST_F(WbalanceGibertiniTest, The_chain_ends_for_good_with_a_setting_that_is_refused) {
    Gibertini gibertini;
    line.Fail("setBaudRate", 4);
    EXPECT_EQ(gibertini.IsReady(), 0);
    EXPECT_EQ(gibertini.serialObject, nullptr);
    EXPECT_EQ(line.PortObjects(), 0);
    line.Forget();
    EXPECT_EQ(gibertini.IsReady(), 0);
    EXPECT_EQ(gibertini.Tare(), 0);
    EXPECT_EQ(gibertini.Weight(1, &weight, &decimals), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
    EXPECT_EQ(weight, -1.0);
}

TEST_F(WbalanceGibertiniTest, A_negative_port_number_is_not_ready) {
    Gibertini gibertini;
    gibertini.portNumber = -1;
    EXPECT_EQ(gibertini.IsReady(), 0);
    EXPECT_EQ(gibertini.Tare(), 0);
    EXPECT_EQ(gibertini.Weight(1, &weight, nullptr), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

/// A host whose readiness ends the chain after two levels, so that each level gets to send.
void EndAfterTwoLevels(Host<WbalanceGibertini>& gibertini) {
    gibertini.readiness = [&gibertini, left = 2]() mutable {
        return left-- > 0 ? gibertini.WbalanceGibertini::IsReady() : gibertini.OpenAndClear();
    };
}

TEST_F(WbalanceGibertiniTest, Each_level_of_the_chain_takes_its_own_weight_once_it_is_ended) {
    Host<WbalanceGibertini> gibertini;
    EndAfterTwoLevels(gibertini);
    line.Answer("B\r", {{"      1.00 g   DS\r\n"}});
    line.Answer("B\r", {{"      2.00 g   DS\r\n"}});
    line.Answer("B\r", {{"      3.00 g   DS\r\n"}});

    EXPECT_EQ(gibertini.Weight(1, &weight, nullptr), 1);

    EXPECT_THAT(line.Sent(), ElementsAre("B\r", "B\r", "B\r"));
    EXPECT_EQ(weight, 3.0);
}

TEST_F(WbalanceGibertiniTest, A_send_that_fails_in_the_chain_ends_it_without_another_one) {
    Host<WbalanceGibertini> gibertini;
    EndAfterTwoLevels(gibertini);
    line.Fail("write");
    EXPECT_EQ(gibertini.Weight(1, &weight, nullptr), 0);
    EXPECT_THAT(line.Trace(), EndsWith("Gibertini - Weight\n<== B\r ... FAIL\n\n"));
    EXPECT_THAT(line.Sent(), IsEmpty());
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceGibertiniTest, A_reading_that_fails_in_the_chain_ends_it_without_another_send) {
    Host<WbalanceGibertini> gibertini;
    EndAfterTwoLevels(gibertini);
    line.Answer("B\r", {{"      1.00 g   DS\r\n"}});
    EXPECT_EQ(gibertini.Tare(), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("B\r", "B\r"));
}

// What a host overrides

TEST_F(WbalanceGibertiniTest, IsReady_returns_what_the_hosts_Weight_returns_in_mode_1) {
    Host<WbalanceGibertini> host;
    host.weighing = [](long /*mode*/, double* grams, int* /*count*/) {
        EXPECT_EQ(*grams, 0.0);
        return 7;
    };
    EXPECT_EQ(host.IsReady(), 7);
    EXPECT_THAT(host.calls, ElementsAre("IsReady", "Weight 1 without decimals"));
    EXPECT_THAT(line.Transcript(), ElementsAreArray(kOpened));
}

TEST_F(WbalanceGibertiniTest, A_host_that_is_not_ready_sends_nothing) {
    Host<WbalanceGibertini> host;
    host.readiness = [] { return 0; };
    EXPECT_EQ(host.Tare(), 0);
    EXPECT_EQ(host.Weight(1, &weight, nullptr), 0);
    EXPECT_EQ(host.ReadinessChecks(), 2);
    EXPECT_THAT(line.Transcript(), IsEmpty());
    EXPECT_EQ(weight, -1.0);
}

TEST_F(WbalanceGibertiniTest, A_host_that_is_ready_without_a_port_gets_0) {
    Host<WbalanceGibertini> host;
    host.readiness = [] { return 1; };
    EXPECT_EQ(host.Tare(), 0);
    EXPECT_EQ(host.Weight(1, &weight, nullptr), 0);
    EXPECT_THAT(line.Transcript(),
                ElementsAre(R"(trace "Gibertini - Tare\n")", R"(trace "<== T\r ... FAIL\n\n")",
                            R"(trace "Gibertini - Weight\n")", R"(trace "<== B\r ... FAIL\n\n")"));
}

// The transport failing at each single call of a weighing

TEST_F(WbalanceGibertiniTest, Weight_when_each_call_on_the_port_fails) {
    ExpectWhenEachCallFails<WbalanceGibertini, WithLineReadiness<Gibertini>>(
        {{"open /dev/ttyS0", 0, "held"},
         {"setBaudRate 9600", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "B\r")", 0, "open"},
         {R"(write "B\r")", 0, "open", PortFault::ShortWrite},
         {R"(write "B\r")", 0, "open", PortFault::HangUp},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open", PortFault::EmptyRead},
         {"wait 1000", 0, "open", PortFault::HangUp},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"}},
        [this](auto&) { line.Answer("B\r", {{"    123.45 g   DS\r\n"}}); },
        [this](auto& driver) {
            weight = -1.0;
            const int status = driver.Weight(1, &weight, &decimals);
            EXPECT_EQ(weight, status == 1 ? 123.45 : -1.0);
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

class WbalanceGibertiniParserTest : public WbalanceGibertiniTest,
                                    public testing::WithParamInterface<Parsed> {};

TEST_P(WbalanceGibertiniParserTest, Reads) {
    std::string answer = GetParam().answer;
    EXPECT_EQ(balance.ParseWeight(answer.data(), &weight, &decimals), GetParam().result);
    EXPECT_EQ(weight, GetParam().weight);
    EXPECT_EQ(decimals, GetParam().decimals);
}

constexpr char kValid[] = "    999.99 g   DS\r\n";

INSTANTIATE_TEST_SUITE_P(
    Answers, WbalanceGibertiniParserTest,
    testing::Values(
        Parsed{"empty", "", 0, -1.0, -1},
        Parsed{"eighteen_characters", "    123.45 g   DS\r", 0, -1.0, -1},
        Parsed{"stable", "    123.45 g   DS\r\n", 1, 123.45, 2},
        Parsed{"unstable", "    123.45 g   DI\r\n", 2, 123.45, 2},
        Parsed{"stable_while_taring", "    123.45 g   TS\r\n", 1, 123.45, 2},
        Parsed{"unstable_while_taring", "    123.45 g   TI\r\n", 2, 123.45, 2},
        Parsed{"two_blanks_and_a_negative_value", "  -123.456 g   DS\r\n", 1, -123.456, 2},
        Parsed{"flags_one_column_early", "  -123.456g   DS\r\n ", 0, -123.456, 2},
        Parsed{"any_line_end", "    123.45 g   DSxy", 1, 123.45, 2},
        Parsed{"any_unit", "    123.45?????DS\r\n", 1, 123.45, 2},
        Parsed{"no_point", "       123 g   DS\r\n", 1, 123.0, 2},
        Parsed{"four_decimals", "  123.4567 g   DS\r\n", 1, 123.4567, 2},
        Parsed{"ten_characters_of_value", "-123456.78 g   DS\r\n", 1, -123456.78, 2},
        Parsed{"eleventh_character_is_not_of_the_value", "123456.7895g   DS\r\n", 1, 123456.789, 2},
        Parsed{"no_digits", "           g   DS\r\n", 1, 0.0, 2},
        Parsed{"bytes_above_127", "    123.45\xb5\xb5   DS\xff\xff", 1, 123.45, 2},
        Parsed{"X_in_place_of_D", "    123.45 g   XS\r\n", 0, 123.45, 2},
        Parsed{"over_range", "    123.45 g   OS\r\n", 0, 123.45, 2},
        Parsed{"under_range", "    123.45 g   US\r\n", 0, 123.45, 2},
        Parsed{"lower_case_d", "    123.45 g   dS\r\n", 0, 123.45, 2},
        Parsed{"in_error", "    123.45 g   DE\r\n", 0, 123.45, 2},
        Parsed{"lower_case_s", "    123.45 g   Ds\r\n", 0, 123.45, 2},
        Parsed{"two_records", std::string("    123.45 g   DI\r\n") + kValid, 2, 123.45, 2},
        Parsed{"three_records", std::string("    123.45 g   DI\r\n") + kValid + kValid, 2, 123.45,
               2},
        Parsed{"first_of_two_refused", std::string("    123.45 g   OS\r\n") + kValid, 0, 123.45, 2},
        Parsed{"second_of_two_refused", "    123.45 g   DS\r\n    999.99 g   OS\r\n", 0, -1.0, 2},
        Parsed{"third_of_three_refused",
               std::string("    123.45 g   DS\r\n") + kValid + "    999.99 g   DE\r\n", 0, -1.0, 2},
        Parsed{"second_of_three_refused",
               std::string("    123.45 g   DS\r\n    999.99 g   OS\r\n") + kValid, 0, -1.0, 2},
        Parsed{"one_character_behind_the_record", "    123.45 g   DS\r\n ", 0, -1.0, 2},
        Parsed{"fragment_of_eleven_characters", "    123.45 g   DS\r\n    999.99 ", 0, -1.0, 2},
        Parsed{"fragment_of_eighteen_characters", "    123.45 g   DS\r\n    999.99 g   DS\r", 0,
               -1.0, 2}),
    [](const auto& row) { return row.param.name; });

TEST_F(WbalanceGibertiniTest, The_parser_reads_a_thousand_records) {
    std::string answer = "    123.45 g   DI\r\n";
    for (int i = 0; i < 999; ++i)
        answer += kValid;
    EXPECT_EQ(balance.ParseWeight(answer.data(), &weight, &decimals), 2);
    EXPECT_EQ(weight, 123.45);
    answer.back() = '\0';
    EXPECT_EQ(balance.ParseWeight(answer.data(), &weight, &decimals), 0);
}

TEST_F(WbalanceGibertiniTest, The_parser_takes_null_for_every_argument) {
    char answer[] = "    123.45 g   DI\r\n";
    EXPECT_EQ(balance.ParseWeight(nullptr, &weight, &decimals), 0);
    EXPECT_EQ(weight, -1.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_EQ(balance.ParseWeight(answer, nullptr, &decimals), 2);
    EXPECT_EQ(decimals, 2);
    EXPECT_EQ(balance.ParseWeight(answer, &weight, nullptr), 2);
    EXPECT_EQ(weight, 123.45);
    EXPECT_EQ(balance.ParseWeight(answer, nullptr, nullptr), 2);
}

}  // namespace
