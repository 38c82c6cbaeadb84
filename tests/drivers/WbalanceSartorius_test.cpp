#include <cmath>
#include <csignal>
#include <limits>

#include "FailingCalls.h"
#include "Host.h"

using scripted::ExpectWhenEachCallFails;
using scripted::Host;
using scripted::Open;
using scripted::ScriptedTest;
using scripted::Shows;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::IsSupersetOf;

namespace {

const std::string kCancel = "\x1bs3_\r\n";
const std::string kTare = "\x1bT\r\n";
const std::string kPreset500 = "\x1bt5.00_\r\n";
const std::string kStore = "\x1bkF4_\r\n";
const std::string kPrint = "\x1bP\r\n";

class WbalanceSartoriusTest : public ScriptedTest {
 protected:
    /// The port as an earlier readiness check leaves it.
    void OpenThePort() {
        ASSERT_EQ(balance.OpenAndSetDefCommConfig(), 1);
        line.Forget();
    }

    /// What the balance shows on an answer read by the open balance.
    double Reading(const std::string& answer) {
        OpenThePort();
        line.Answer(kPrint, {{answer}});
        EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);
        return weight;
    }

    double Parsed(std::string answer) { return balance.ParseWeight(answer.data(), &decimals); }

    Open<WbalanceSartorius> balance;
    double weight = -1.0;
    int decimals = -1;
};

// Construction

TEST_F(WbalanceSartoriusTest, The_constructor_sets_1200_baud_odd_7_bits_one_stop_bit_on_port_0) {
    EXPECT_EQ(balance.portNumber, 0);
    EXPECT_EQ(balance.baudRate, 1200);
    EXPECT_EQ(balance.parityCode, 1);
    EXPECT_EQ(balance.dataBits, 7);
    EXPECT_EQ(balance.stopBitsCode, 0);
    EXPECT_EQ(balance.flowControlCode, 0);
    EXPECT_EQ(balance.timeoutSeconds, 1);
    EXPECT_EQ(balance.portKind, 'S');
    EXPECT_NE(balance.serialObject, nullptr);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceSartoriusTest, RestoreFactorySettings_returns_1_and_sends_nothing) {
    EXPECT_EQ(balance.RestoreFactorySettings(), 1);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// IsReady

TEST_F(WbalanceSartoriusTest, IsReady_opens_clears_and_makes_a_trial_reading) {
    line.Answer(kPrint, {{"+   123.56 g  \r\n"}});

    EXPECT_EQ(balance.IsReady(), 1);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(
            "open /dev/ttyS0", R"(trace "/dev/ttyS0 OPENED SUCCESSFULLY!\n\n")", "setBaudRate 1200",
            "setDataBits 7", "setParity odd", "setStopBits 1", "setFlowControl none",
            R"(trace "Balance Comm Port settings:\nBaud rate = 1200\nParity = 1\n)"
            R"(Data bits = 7\nStop bits = 0\nFlow control = 0\nTimeout = 1\n===> OK\n\n")",
            "clear input", "clear input", R"(trace "Generic Sartorius - Weight\n")",
            R"(write "\x1bP\r\n")", R"(trace "<== \x1bP\r\n ... OK\n\n")", "Sleep 500",
            "wait 1000: data", R"(read "+   123.56 g  \r\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
            R"(trace "Read from scale: +   123.56 g  \r\n (time elapsed: 2000 ms)\n")",
            R"(trace "Generic Sartorius - weight = 123.56 cc.\n\n")"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceSartoriusTest, IsReady_is_0_when_nothing_answers_and_leaves_the_port_open) {
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(line.Sent(), ElementsAre(kPrint));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceSartoriusTest, IsReady_refuses_a_negative_port_number_before_anything_else) {
    balance.portNumber = -1;
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceSartoriusTest, IsReady_takes_mode_1_of_a_derived_class_with_null_decimals) {
    Host<WbalanceSartorius> host;
    host.weighing = [](long, double*, int*) { return 7; };
    EXPECT_EQ(host.IsReady(), 7);
    EXPECT_THAT(host.calls, ElementsAre("IsReady", "Weight 1 without decimals"));
    EXPECT_THAT(line.Sent(), IsEmpty());
}

TEST_F(WbalanceSartoriusTest, IsReady_when_each_call_on_the_port_fails) {
    ExpectWhenEachCallFails<WbalanceSartorius>(
        {{"open /dev/ttyS0", 0, "held"},
         {"setBaudRate 1200", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity odd", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {"clear input", 1, "open"},
         {R"(write "\x1bP\r\n")", 0, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"}},
        [this](auto&) { line.Answer(kPrint, {{"+     1.00 g  \r\n"}}); },
        [](auto& driver) { return driver.IsReady(); });
}

// Tare

TEST_F(WbalanceSartoriusTest, Tare_cancels_tares_pauses_and_checks_the_reading) {
    OpenThePort();
    line.Answer(kPrint, {{"+     0.00 g  \r\n"}});

    EXPECT_EQ(balance.Tare(), 1);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(
            R"(trace "Generic Sartorius - Tare\n")", R"(write "\x1bs3_\r\n")",
            R"(trace "<== \x1bs3_\r\n ... OK\n\n")", R"(trace "Generic Sartorius - Tare\n")",
            R"(write "\x1bT\r\n")", R"(trace "<== \x1bT\r\n ... OK\n\n")", "Sleep 1000",
            "clear input", R"(trace "Generic Sartorius - Weight\n")", R"(write "\x1bP\r\n")",
            R"(trace "<== \x1bP\r\n ... OK\n\n")", "Sleep 500", "wait 1000: data",
            R"(read "+     0.00 g  \r\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
            R"(trace "Read from scale: +     0.00 g  \r\n (time elapsed: 2000 ms)\n")",
            R"(trace "Generic Sartorius - weight = 0.00 cc.\n\n")"));
    EXPECT_THAT(line.Left(), ElementsAre(kCancel, kTare, kPrint));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceSartoriusTest, Tare_succeeds_at_exactly_a_tenth_on_either_side) {
    OpenThePort();
    line.Answer(kPrint, {{"+     0.10 g  \r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
    line.Answer(kPrint, {{"-     0.10 g  \r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
}

TEST_F(WbalanceSartoriusTest, Tare_fails_at_eleven_hundredths_on_either_side) {
    OpenThePort();
    line.Answer(kPrint, {{"+     0.11 g  \r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
    line.Answer(kPrint, {{"-     0.11 g  \r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
}

TEST_F(WbalanceSartoriusTest, Tare_fails_when_the_check_is_not_answered) {
    OpenThePort();
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceSartoriusTest, Tare_of_an_overloaded_balance_succeeds_because_its_line_reads_0) {
    OpenThePort();
    line.Answer(kPrint, {{"      H       \r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
}

TEST_F(WbalanceSartoriusTest, Tare_checks_with_mode_0_of_a_derived_class_and_null_decimals) {
    Host<WbalanceSartorius> host;
    ASSERT_EQ(host.OpenAndSetDefCommConfig(), 1);
    line.Forget();
    host.weighing = Shows(0.0);
    EXPECT_EQ(host.Tare(), 1);
    EXPECT_THAT(host.calls, ElementsAre("Weight 0 without decimals"));
    EXPECT_THAT(line.Sent(), ElementsAre(kCancel, kTare));
    host.weighing = Shows(0.0, 0);
    EXPECT_EQ(host.Tare(), 0);
    host.weighing = Shows(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(host.Tare(), 0);
}

TEST_F(WbalanceSartoriusTest, Tare_when_each_call_on_the_port_fails) {
    ExpectWhenEachCallFails<WbalanceSartorius>(
        {{R"(write "\x1bs3_\r\n")", 0, "open"},
         {R"(write "\x1bT\r\n")", 0, "open"},
         {"clear input", 1, "open"},
         {R"(write "\x1bP\r\n")", 0, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"}},
        [this](auto& driver) {
            ASSERT_EQ(driver.OpenAndSetDefCommConfig(), 1);
            line.Answer(kPrint, {{"+     0.00 g  \r\n"}});
        },
        [](auto& driver) { return driver.Tare(); });
}

TEST_F(WbalanceSartoriusTest, Tare_stops_without_a_pause_at_the_first_command_not_sent) {
    OpenThePort();
    line.Fail("write", 1);
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Transcript(), ElementsAre(R"(trace "Generic Sartorius - Tare\n")",
                                               R"(write "\x1bs3_\r\n": refused)",
                                               R"(trace "<== \x1bs3_\r\n ... FAIL\n\n")"));
}

TEST_F(WbalanceSartoriusTest, Tare_stops_at_a_tare_command_of_which_a_byte_was_not_taken) {
    OpenThePort();
    line.Fail("write", 2, scripted::PortFault::ShortWrite);
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Sleeps(), IsEmpty());
    EXPECT_THAT(line.Trace(), EndsWith("<== \x1bT\r\n ... FAIL\n\n"));
}

// TareSet

TEST_F(WbalanceSartoriusTest, TareSet_cancels_tares_types_the_preset_stores_it_and_checks) {
    OpenThePort();
    line.Answer(kPrint, {{"-     5.00 g  \r\n"}});

    EXPECT_EQ(balance.TareSet(5.0), 1);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(
            R"(trace "Generic Sartorius - Tare\n")", R"(write "\x1bs3_\r\n")",
            R"(trace "<== \x1bs3_\r\n ... OK\n\n")", R"(trace "Generic Sartorius - Tare\n")",
            R"(write "\x1bT\r\n")", R"(trace "<== \x1bT\r\n ... OK\n\n")",
            R"(trace "Generic Sartorius - Set tare to 5.00\n")", R"(write "\x1bt5.00_\r\n")",
            R"(trace "<== \x1bt5.00_\r\n ... OK\n\n")", "Sleep 1000",
            R"(trace "Generic Sartorius - Tare\n")", R"(write "\x1bkF4_\r\n")",
            R"(trace "<== \x1bkF4_\r\n ... OK\n\n")", "Sleep 2000", "clear input",
            R"(trace "Generic Sartorius - Weight\n")", R"(write "\x1bP\r\n")",
            R"(trace "<== \x1bP\r\n ... OK\n\n")", "Sleep 500", "wait 1000: data",
            R"(read "-     5.00 g  \r\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
            R"(trace "Read from scale: -     5.00 g  \r\n (time elapsed: 2000 ms)\n")",
            R"(trace "Generic Sartorius - weight = -5.00 cc.\n\n")"));
    EXPECT_THAT(line.Left(), ElementsAre(kCancel, kTare, kPreset500, kStore, kPrint));
}

TEST_F(WbalanceSartoriusTest, TareSet_succeeds_one_hundredth_off_on_either_side) {
    OpenThePort();
    line.Answer(kPrint, {{"-     4.99 g  \r\n"}});
    EXPECT_EQ(balance.TareSet(5.0), 1);
    line.Answer(kPrint, {{"-     5.01 g  \r\n"}});
    EXPECT_EQ(balance.TareSet(5.0), 1);
}

TEST_F(WbalanceSartoriusTest, TareSet_succeeds_at_exactly_a_hundredth) {
    // The sum with another preset is only nearly a hundredth.
    OpenThePort();
    line.Answer(kPrint, {{"+     0.01 g  \r\n"}});
    EXPECT_EQ(balance.TareSet(0.0), 1);
    line.Answer(kPrint, {{"-     0.01 g  \r\n"}});
    EXPECT_EQ(balance.TareSet(0.0), 1);
}

TEST_F(WbalanceSartoriusTest, TareSet_fails_two_hundredths_off_on_either_side) {
    OpenThePort();
    line.Answer(kPrint, {{"-     4.98 g  \r\n"}});
    EXPECT_EQ(balance.TareSet(5.0), 0);
    line.Answer(kPrint, {{"-     5.02 g  \r\n"}});
    EXPECT_EQ(balance.TareSet(5.0), 0);
}

TEST_F(WbalanceSartoriusTest, TareSet_fails_when_the_reading_has_the_sign_of_the_preset) {
    OpenThePort();
    line.Answer(kPrint, {{"+     5.00 g  \r\n"}});
    EXPECT_EQ(balance.TareSet(5.0), 0);
}

TEST_F(WbalanceSartoriusTest, TareSet_reads_the_net_line_behind_the_line_of_the_preset_tare) {
    OpenThePort();
    line.Answer(kPrint, {{"TP1   +     5.00 g  \r\nN1    -     5.00 g  \r\n"}});
    EXPECT_EQ(balance.TareSet(5.0), 1);
}

TEST_F(WbalanceSartoriusTest, TareSet_fails_when_the_check_is_not_answered) {
    OpenThePort();
    EXPECT_EQ(balance.TareSet(0.0), 0);
}

TEST_F(WbalanceSartoriusTest, TareSet_sends_presets_from_0_00_to_9_99) {
    OpenThePort();
    balance.TareSet(0.0);
    balance.TareSet(9.99);
    EXPECT_THAT(line.Sent(), ElementsAre(kCancel, kTare, "\x1bt0.00_\r\n", kStore, kPrint, kCancel,
                                         kTare, "\x1bt9.99_\r\n", kStore, kPrint));
}

TEST_F(WbalanceSartoriusTest, TareSet_sends_the_words_of_what_is_not_finite_and_fails) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
    OpenThePort();
    for (const double preset :
         {kInfinity, -kInfinity, kNotANumber, std::copysign(kNotANumber, -1)}) {
        line.Answer(kPrint, {{"+     0.00 g  \r\n"}});
        EXPECT_EQ(balance.TareSet(preset), 0);
    }
    EXPECT_THAT(line.Sent(), IsSupersetOf({"\x1btinf_\r\n", "\x1bt-inf_\r\n", "\x1btnan_\r\n",
                                           "\x1bt-nan_\r\n"}));
}

TEST_F(WbalanceSartoriusTest, TareSet_may_fail_a_hundredth_off) {
    // In binary numbers 1.00 - 0.99 is a little more than 0.01.
    OpenThePort();
    line.Answer(kPrint, {{"-     0.99 g  \r\n"}});
    EXPECT_EQ(balance.TareSet(1.0), 0);
}

TEST_F(WbalanceSartoriusTest, TareSet_checks_with_mode_0_of_a_derived_class_and_null_decimals) {
    Host<WbalanceSartorius> host;
    ASSERT_EQ(host.OpenAndSetDefCommConfig(), 1);
    line.Forget();
    host.weighing = Shows(-5.0);
    EXPECT_EQ(host.TareSet(5.0), 1);
    EXPECT_THAT(host.calls, ElementsAre("Weight 0 without decimals"));
    EXPECT_THAT(line.Sent(), ElementsAre(kCancel, kTare, kPreset500, kStore));
    host.weighing = Shows(-5.0, 0);
    EXPECT_EQ(host.TareSet(5.0), 0);
}

TEST_F(WbalanceSartoriusTest, TareSet_when_each_call_on_the_port_fails) {
    ExpectWhenEachCallFails<WbalanceSartorius>(
        {{R"(write "\x1bs3_\r\n")", 0, "open"},
         {R"(write "\x1bT\r\n")", 0, "open"},
         {R"(write "\x1bt5.00_\r\n")", 0, "open"},
         {R"(write "\x1bkF4_\r\n")", 0, "open"},
         {"clear input", 1, "open"},
         {R"(write "\x1bP\r\n")", 0, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"}},
        [this](auto& driver) {
            ASSERT_EQ(driver.OpenAndSetDefCommConfig(), 1);
            line.Answer(kPrint, {{"-     5.00 g  \r\n"}});
        },
        [](auto& driver) { return driver.TareSet(5.0); });
}

TEST_F(WbalanceSartoriusTest, TareSet_stops_without_a_pause_when_the_preset_can_not_be_sent) {
    OpenThePort();
    line.Fail("write", 3);
    EXPECT_EQ(balance.TareSet(5.0), 0);
    EXPECT_THAT(line.Sleeps(), IsEmpty());
    EXPECT_THAT(line.Trace(), EndsWith("<== \x1bt5.00_\r\n ... FAIL\n\n"));
}

TEST_F(WbalanceSartoriusTest, TareSet_stops_after_one_pause_when_the_preset_can_not_be_stored) {
    OpenThePort();
    line.Fail("write", 4);
    EXPECT_EQ(balance.TareSet(5.0), 0);
    EXPECT_THAT(line.Sleeps(), ElementsAre(1000));
}

using WbalanceSartoriusDeathTest = WbalanceSartoriusTest;

constexpr char kDoesNotFit[] =
    "libwbalance: a preset-tare command does not fit its buffer of 10 bytes";

TEST_F(WbalanceSartoriusDeathTest, A_preset_tare_of_10_00_ends_the_process) {
    OpenThePort();
    EXPECT_EXIT(balance.TareSet(10.0), testing::KilledBySignal(SIGABRT), kDoesNotFit);
}

TEST_F(WbalanceSartoriusDeathTest, A_preset_tare_that_rounds_to_10_00_ends_the_process) {
    OpenThePort();
    EXPECT_EXIT(balance.TareSet(9.996), testing::KilledBySignal(SIGABRT), kDoesNotFit);
}

TEST_F(WbalanceSartoriusDeathTest, A_negative_preset_tare_ends_the_process) {
    OpenThePort();
    EXPECT_EXIT(balance.TareSet(-1.0), testing::KilledBySignal(SIGABRT), kDoesNotFit);
}

TEST_F(WbalanceSartoriusDeathTest,
       A_preset_tare_just_below_zero_keeps_its_sign_and_ends_the_process) {
    OpenThePort();
    EXPECT_EXIT(balance.TareSet(-0.001), testing::KilledBySignal(SIGABRT), kDoesNotFit);
}

TEST_F(WbalanceSartoriusDeathTest, A_preset_tare_of_thirty_digits_ends_the_process_when_formatted) {
    OpenThePort();
    EXPECT_EXIT(balance.TareSet(1e29), testing::KilledBySignal(SIGABRT),
                "libwbalance: a preset tare does not fit its buffer of 32 bytes");
}

TEST_F(WbalanceSartoriusDeathTest, The_process_ends_after_cancel_and_tare_and_before_the_trace) {
    OpenThePort();
    // What was done until then, as the process ends.
    const auto run = [this] {
        std::signal(SIGABRT, [](int) {
            for (const std::string& event : scripted::Line::Here().Transcript())
                std::fprintf(stderr, "%s;", event.c_str());
        });
        balance.TareSet(10.0);
    };
    EXPECT_EXIT(run(), testing::KilledBySignal(SIGABRT),
                R"(write "\\x1bs3_\\r\\n";[^;]*;trace "Generic Sartorius - Tare\\n";)"
                R"(write "\\x1bT\\r\\n";trace "<== \\x1bT\\r\\n ... OK\\n\\n";$)");
}

TEST_F(WbalanceSartoriusDeathTest, A_preset_that_does_not_fit_is_not_noticed_when_the_tare_fails) {
    OpenThePort();
    line.Fail("write", 2);
    EXPECT_EQ(balance.TareSet(10.0), 0);
}

// Weight

TEST_F(WbalanceSartoriusTest, Weight_reads_the_same_way_in_every_mode) {
    OpenThePort();
    line.AlwaysAnswer(kPrint, {{"+   123.56 g  \r\n"}});
    for (const long mode : {-1L, 0L, 1L, 2L, 3L}) {
        EXPECT_EQ(balance.Weight(mode, &weight, &decimals), 1);
        EXPECT_EQ(weight, 123.56);
    }
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(line.Sent(), ElementsAre(kPrint, kPrint, kPrint, kPrint, kPrint));
}

TEST_F(WbalanceSartoriusTest, Weight_of_a_silent_balance_is_0_0_with_result_0_and_no_decimals) {
    OpenThePort();
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale:  (time elapsed: 3000 ms)\n"));
}

TEST_F(WbalanceSartoriusTest, Weight_discards_what_was_printed_before) {
    OpenThePort();
    line.Arrive(0, "+   999.99 g  \r\n");
    line.Answer(kPrint, {{"+     1.00 g  \r\n"}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, 1.0);
}

TEST_F(WbalanceSartoriusTest, Weight_takes_an_unstable_reading_as_it_is) {
    EXPECT_EQ(Reading("+   123.56    \r\n"), 123.56);
}

TEST_F(WbalanceSartoriusTest, Weight_joins_an_answer_that_comes_in_pieces) {
    OpenThePort();
    line.Answer(kPrint, {{"+   12"}, {"3.56 g", 900}, {"  \r\n", 1500}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, 123.56);
}

TEST_F(WbalanceSartoriusTest, Weight_of_a_balance_that_waits_longer_than_the_driver_is_a_failure) {
    OpenThePort();
    line.Answer(kPrint, {{"+   123.56 g  \r\n", 3001}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 0);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceSartoriusTest, Weight_of_an_unknown_layout_is_0_0_with_result_1) {
    EXPECT_EQ(Reading("ES\r\n"), 0.0);
    EXPECT_THAT(line.Trace(), EndsWith("Generic Sartorius - weight = 0.00 cc.\n\n"));
}

TEST_F(WbalanceSartoriusTest, Weight_of_an_answer_of_89_characters_reads_its_first_line) {
    EXPECT_EQ(Reading("-    12.34 g  \r\n" + std::string(73, '7')), -12.34);
}

TEST_F(WbalanceSartoriusTest, Weight_of_an_answer_of_200_characters_reads_its_first_line) {
    EXPECT_EQ(Reading("-    12.34 g  \r\n" + std::string(184, '7')), -12.34);
}

TEST_F(WbalanceSartoriusTest, Weight_of_an_answer_of_900_characters_reads_its_first_line) {
    EXPECT_EQ(Reading("-    12.34 g  \r\n" + std::string(884, '7')), -12.34);
}

TEST_F(WbalanceSartoriusDeathTest, An_answer_too_long_for_its_trace_ends_the_process) {
    OpenThePort();
    line.Answer(kPrint, {{std::string(1000, '7')}});
    EXPECT_EXIT(balance.Weight(0, &weight, nullptr), testing::KilledBySignal(SIGABRT),
                "libwbalance: a trace line does not fit its buffer of 1024 bytes");
}

TEST_F(WbalanceSartoriusTest, Weight_reads_a_line_up_to_a_zero_byte_only) {
    using namespace std::string_literals;
    EXPECT_EQ(Reading("+   12\0.56 g  \r\n"s), 0.0);
}

TEST_F(WbalanceSartoriusTest,
       Weight_of_an_answer_that_begins_with_a_zero_byte_is_0_0_with_result_1) {
    using namespace std::string_literals;
    EXPECT_EQ(Reading("\0+   12.56 g  \r\n"s), 0.0);
}

TEST_F(WbalanceSartoriusTest, Weight_reads_past_bytes_with_bit_7_set) {
    EXPECT_EQ(Reading("\xab   123.56\xe7g  \r\n"), 123.56);
}

// A line that holds no weight reads as 0.0 with result 1.
class WbalanceSartoriusSpecialLine : public WbalanceSartoriusTest,
                                     public testing::WithParamInterface<const char*> {};

TEST_P(WbalanceSartoriusSpecialLine, Reads_as_0_0_with_result_1) {
    EXPECT_EQ(Reading(GetParam()), 0.0);
}

INSTANTIATE_TEST_SUITE_P(Line, WbalanceSartoriusSpecialLine,
                         testing::Values("      H       \r\n", "      L       \r\n",
                                         "      C       \r\n", "      --      \r\n",
                                         "              \r\n", "   Err  54    \r\n",
                                         "   Err 054    \r\n", "Stat        H       \r\n",
                                         "Stat       OFF      \r\n", "Stat     Err  54    \r\n",
                                         "Stat      High      \r\n"));

// ParseWeight

TEST_F(WbalanceSartoriusTest, ParseWeight_reads_a_line_of_16_characters_with_its_sign) {
    EXPECT_EQ(Parsed("-    12.34 g  \r\n"), -12.34);
    EXPECT_EQ(Parsed("+    12.34 g  \r\n"), 12.34);
    EXPECT_EQ(Parsed("     12.34 g  \r\n"), 12.34);
    EXPECT_EQ(Parsed("x    12.34 g  \r\n"), 12.34);
    EXPECT_EQ(decimals, -1);
}

TEST_F(WbalanceSartoriusTest, ParseWeight_reads_positions_2_to_9_of_a_line_of_16_and_no_more) {
    EXPECT_EQ(Parsed("+ 1234567890g \r\n"), 12345678.0);
    EXPECT_EQ(Parsed("+91234567.890 \r\n"), 1234567.0);
}

TEST_F(WbalanceSartoriusTest, ParseWeight_reads_a_line_of_22_behind_its_identifier) {
    EXPECT_EQ(Parsed("N     +   123.56 g  \r\n"), 123.56);
    EXPECT_EQ(Parsed("N     -   123.56 g  \r\n"), -123.56);
    EXPECT_EQ(Parsed("-           7.50 g  \r\n"), 7.5);
    EXPECT_EQ(Parsed("Qnt   - 1234567890  \r\n"), -12345678.0);
}

TEST_F(WbalanceSartoriusTest, ParseWeight_reads_the_net_line_behind_a_preset_tare) {
    EXPECT_EQ(Parsed("TP1   +     5.00 g  \r\nN1    -     5.25 g  \r\n"), -5.25);
    EXPECT_EQ(Parsed("TP1   -     5.00 g  \r\nN1    +     5.25 g  \r\n"), 5.25);
}

TEST_F(WbalanceSartoriusTest, ParseWeight_compares_both_identifiers_without_regard_to_case) {
    EXPECT_EQ(Parsed("TP1   +     5.00 g  \r\nn1    -     5.25 g  \r\n"), -5.25);
    EXPECT_EQ(Parsed("tp1   +     5.00 g  \r\nN1    -     5.25 g  \r\n"), -5.25);
}

TEST_F(WbalanceSartoriusTest, ParseWeight_reads_the_first_line_when_either_identifier_differs) {
    EXPECT_EQ(Parsed("T1    +     5.00 g  \r\nN1    -     5.25 g  \r\n"), 5.0);
    EXPECT_EQ(Parsed("TP1   +     5.00 g  \r\nN     -     5.25 g  \r\n"), 5.0);
    EXPECT_EQ(Parsed("TP1  .+     5.00 g  \r\nN1    -     5.25 g  \r\n"), 5.0);
    EXPECT_EQ(Parsed("TP1   +     5.00 g  \r\nN1   .-     5.25 g  \r\n"), 5.0);
    EXPECT_EQ(Parsed("TP1   +     5.00 g  \r\n"), 5.0);
    EXPECT_EQ(Parsed("TP1   +     5.00 g  \r\n\r\nN1    -     5.25 g  \r\n"), 5.0);
}

TEST_F(WbalanceSartoriusTest, ParseWeight_of_a_net_line_that_breaks_off_reads_what_is_there) {
    EXPECT_EQ(Parsed("TP1   +     5.00 g  \r\nN1    "), 0.0);
    EXPECT_EQ(Parsed("TP1   +     5.00 g  \r\nN1    - 12"), -12.0);
}

TEST_F(WbalanceSartoriusTest, ParseWeight_reads_positions_30_to_37_of_the_net_line_and_no_more) {
    EXPECT_EQ(Parsed("TP1   +     5.00 g  \r\nN1    - 1234567890  \r\n"), -12345678.0);
    EXPECT_EQ(Parsed("TP1   +     5.00 g  \r\nN1    -91234567.890 \r\n"), -1234567.0);
}

TEST_F(WbalanceSartoriusTest, ParseWeight_counts_only_the_first_line) {
    EXPECT_EQ(Parsed("+     1.00 g  \r\n+     2.00 g  \r\n"), 1.0);
}

TEST_F(WbalanceSartoriusTest, ParseWeight_of_a_line_of_any_other_length_is_0_0) {
    for (int before = 0; before <= 60; ++before) {
        const std::string digits(static_cast<std::size_t>(before), '1');
        const double expected = before == 15 ? 11111111.0 : before == 21 ? 11111111.0 : 0.0;
        EXPECT_EQ(Parsed(digits + "\n1111"), expected) << before;
    }
}

TEST_F(WbalanceSartoriusTest, ParseWeight_of_a_text_without_a_line_end_is_0_0) {
    EXPECT_EQ(Parsed("+   123.56 g  "), 0.0);
    EXPECT_EQ(Parsed("+   123.56 g  \r"), 0.0);
    EXPECT_EQ(Parsed("1"), 0.0);
    EXPECT_EQ(Parsed(""), 0.0);
}

TEST_F(WbalanceSartoriusTest, ParseWeight_of_a_text_that_begins_with_a_line_feed_is_0_0) {
    EXPECT_EQ(Parsed("\n   123.56 g   \n"), 0.0);
    EXPECT_EQ(Parsed("\n    12.34 g  \r\n"), 0.0);
}

TEST_F(WbalanceSartoriusTest, ParseWeight_stops_at_the_first_character_that_ends_a_number) {
    EXPECT_EQ(Parsed("+  123.5[6] g \r\n"), 123.5);
    EXPECT_EQ(Parsed("+ 12 34.5  g  \r\n"), 12.0);
    EXPECT_EQ(Parsed("+   12,34  g  \r\n"), 12.0);
    EXPECT_EQ(Parsed("+   1.2.3  g  \r\n"), 1.2);
}

TEST_F(WbalanceSartoriusTest, ParseWeight_loses_a_digit_in_position_1) {
    EXPECT_EQ(Parsed("+111.25507 mg \r\n"), 11.25507);
}

TEST_F(WbalanceSartoriusTest, ParseWeight_applies_the_sign_to_the_number_of_the_field) {
    EXPECT_EQ(Parsed("-   -12.34 g  \r\n"), 12.34);
    EXPECT_TRUE(std::signbit(Parsed("-     0.00 g  \r\n")));
}

TEST_F(WbalanceSartoriusTest, ParseWeight_takes_99_characters_and_allows_null_decimals) {
    std::string answer = "-    12.34 g  \r\n" + std::string(83, '7');
    EXPECT_EQ(balance.ParseWeight(answer.data(), nullptr), -12.34);
}

TEST_F(WbalanceSartoriusDeathTest, ParseWeight_of_100_characters_ends_the_process) {
    EXPECT_EXIT(Parsed("-    12.34 g  \r\n" + std::string(84, '7')),
                testing::KilledBySignal(SIGABRT),
                "libwbalance: a weight answer does not fit its buffer of 100 bytes");
}

// Without a line

TEST_F(WbalanceSartoriusTest, Without_an_open_port_every_operation_but_IsReady_fails_unsent) {
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_EQ(balance.TareSet(5.0), 0);
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(line.Sent(), IsEmpty());
    EXPECT_EQ(line.Trace(),
              "Generic Sartorius - Tare\n<== \x1bs3_\r\n ... FAIL\n\n"
              "Generic Sartorius - Tare\n<== \x1bs3_\r\n ... FAIL\n\n"
              "Generic Sartorius - Weight\n<== \x1bP\r\n ... FAIL\n\n");
}

TEST_F(WbalanceSartoriusTest, Without_a_serial_object_every_operation_fails_without_a_trace) {
    balance.timeoutSeconds = 61;
    ASSERT_EQ(balance.IsReady(), 0);
    ASSERT_EQ(balance.serialObject, nullptr);
    line.Forget();
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_EQ(balance.TareSet(5.0), 0);
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceSartoriusTest, A_second_IsReady_finds_the_port_open) {
    line.AlwaysAnswer(kPrint, {{"+     1.00 g  \r\n"}});
    EXPECT_EQ(balance.IsReady(), 1);
    line.Forget();
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_EQ(line.Transcript().front(), R"(trace "COM0 alread open!")");
    EXPECT_EQ(line.PortObjects(), 1);
}

}  // namespace
