#include <csignal>
#include <limits>

#include "FailingCalls.h"
#include "Host.h"

using scripted::ExpectWhenEachCallFails;
using scripted::Host;
using scripted::Open;
using scripted::PortFault;
using scripted::ScriptedTest;
using scripted::Shows;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

namespace {

const std::string kFactorySettings = "\x1bR\r\n";

class WbalanceOHAUS_SPU602Test : public ScriptedTest {
 protected:
    /// The port as an earlier readiness check leaves it.
    void OpenThePort() {
        ASSERT_EQ(balance.OpenAndSetDefCommConfig(), 1);
        line.Forget();
    }

    int Parse(std::string text) {
        const int result = balance.ParseWeight(text.data(), &weight, &decimals, &unstable);
        left = text.c_str();
        return result;
    }

    Open<WbalanceOHAUS_SPU602> balance;
    double weight = -1.0;
    int decimals = -1;
    bool unstable = true;
    std::string left;
};

// Construction

TEST_F(WbalanceOHAUS_SPU602Test, The_constructor_sets_2400_baud_no_parity_7_bits_on_port_0) {
    EXPECT_EQ(balance.portNumber, 0);
    EXPECT_EQ(balance.baudRate, 2400);
    EXPECT_EQ(balance.parityCode, 0);
    EXPECT_EQ(balance.dataBits, 7);
    EXPECT_EQ(balance.stopBitsCode, 0);
    EXPECT_EQ(balance.flowControlCode, 0);
    EXPECT_EQ(balance.timeoutSeconds, 1);
    EXPECT_EQ(balance.portKind, 'S');
    EXPECT_NE(balance.serialObject, nullptr);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceOHAUS_SPU602Test, TareSet_refuses_every_preset_and_sends_nothing) {
    OpenThePort();
    EXPECT_EQ(balance.TareSet(5.0), 0);
    EXPECT_EQ(balance.TareSet(0.0), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// IsReady

TEST_F(WbalanceOHAUS_SPU602Test, IsReady_opens_clears_and_makes_an_immediate_reading) {
    line.Answer("P\r\n", {{"       12.34 g     \r\n"}});

    EXPECT_EQ(balance.IsReady(), 1);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(
            "open /dev/ttyS0", R"(trace "/dev/ttyS0 OPENED SUCCESSFULLY!\n\n")", "setBaudRate 2400",
            "setDataBits 7", "setParity none", "setStopBits 1", "setFlowControl none",
            R"(trace "Balance Comm Port settings:\nBaud rate = 2400\nParity = 0\n)"
            R"(Data bits = 7\nStop bits = 0\nFlow control = 0\nTimeout = 1\n===> OK\n\n")",
            "clear input", "clear input", R"(trace "Ohaus Scout Pro - Explorer - Weight\n")",
            R"(write "P\r\n")", R"(trace "<== P\r\n ... OK\n\n")", "Sleep 500", "wait 1000: data",
            R"(read "       12.34 g     \r\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
            R"(trace "Read from scale:        12.34 g     \r\n (time elapsed: 2000 ms)\n")",
            R"(trace "Ohaus Scout Pro - Explorer - weight = 12.34 gr.\n\n")"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceOHAUS_SPU602Test, IsReady_takes_an_unsteady_reading) {
    line.Answer("P\r\n", {{"       12.30 g    ?\r\n"}});
    EXPECT_EQ(balance.IsReady(), 1);
}

TEST_F(WbalanceOHAUS_SPU602Test, IsReady_of_a_silent_balance_is_0_and_leaves_the_port_open) {
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceOHAUS_SPU602Test, IsReady_refuses_a_negative_port_number_before_anything_else) {
    balance.portNumber = -1;
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceOHAUS_SPU602Test, IsReady_takes_mode_1_of_a_derived_class_with_null_decimals) {
    Host<WbalanceOHAUS_SPU602> host;
    host.weighing = [](long, double*, int*) { return 7; };
    EXPECT_EQ(host.IsReady(), 7);
    EXPECT_THAT(host.calls, ElementsAre("IsReady", "Weight 1 without decimals"));
    EXPECT_THAT(line.Sent(), IsEmpty());
}

TEST_F(WbalanceOHAUS_SPU602Test, IsReady_when_each_call_on_the_port_fails) {
    ExpectWhenEachCallFails<WbalanceOHAUS_SPU602>(
        {{"open /dev/ttyS0", 0, "held"},
         {"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity none", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {"clear input", 1, "open"},
         {R"(write "P\r\n")", 0, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"}},
        [this](auto&) { line.Answer("P\r\n", {{"       12.34 g     \r\n"}}); },
        [](auto& driver) { return driver.IsReady(); });
}

// Tare

TEST_F(WbalanceOHAUS_SPU602Test, Tare_reads_tares_pauses_and_checks_a_stable_weight) {
    OpenThePort();
    line.Answer("P\r\n", {{"       55.00 g    ?\r\n"}});
    line.Answer("SP\r\n", {{"        0.00 g     \r\n"}});

    EXPECT_EQ(balance.Tare(), 1);

    const std::vector<std::string> all = line.Transcript();
    EXPECT_THAT(
        std::vector<std::string>(all.begin() + 8, all.end()),
        ElementsAre(
            "clear input", R"(trace "Ohaus Scout Pro - Explorer - Weight\n")", R"(write "P\r\n")",
            R"(trace "<== P\r\n ... OK\n\n")", "Sleep 500", "wait 1000: data",
            R"(read "       55.00 g    ?\r\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
            R"(trace "Read from scale:        55.00 g    ?\r\n (time elapsed: 2000 ms)\n")",
            R"(trace "Ohaus Scout Pro - Explorer - weight = 55.00 gr.\n\n")",
            R"(trace "Unstable weight!")", "clear input",
            R"(trace "Ohaus Scout Pro - Explorer - Tare\n")", R"(write "T\r\n")",
            R"(trace "<== T\r\n ... OK\n\n")", "Sleep 2000", "clear input", "clear input",
            R"(trace "Ohaus Scout Pro - Explorer - Weight\n")", R"(write "SP\r\n")",
            R"(trace "<== SP\r\n ... OK\n\n")", "Sleep 500", "wait 1000: data",
            R"(read "        0.00 g     \r\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
            R"(trace "Read from scale:         0.00 g     \r\n (time elapsed: 2000 ms)\n")",
            R"(trace "Ohaus Scout Pro - Explorer - weight = 0.00 gr.\n\n")"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceOHAUS_SPU602Test, Tare_fails_at_exactly_a_tenth_on_either_side) {
    struct Case {
        const char* answer;
        int result;
    };
    for (const Case& each : {Case{"        0.09 g\r\n", 1}, Case{"       -0.09 g\r\n", 1},
                             Case{"        0.10 g\r\n", 0}, Case{"       -0.10 g\r\n", 0}}) {
        SCOPED_TRACE(each.answer);
        line.Reset();
        Open<WbalanceOHAUS_SPU602> fresh;
        line.AlwaysAnswer("P\r\n", {{"       12.34 g\r\n"}});
        line.AlwaysAnswer("SP\r\n", {{each.answer}});
        EXPECT_EQ(fresh.Tare(), each.result);
    }
}

TEST_F(WbalanceOHAUS_SPU602Test, Tare_fails_on_an_unsteady_check_even_of_zero) {
    line.AlwaysAnswer("P\r\n", {{"       12.34 g\r\n"}});
    line.AlwaysAnswer("SP\r\n", {{"        0.00 g    ?\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
}

TEST_F(WbalanceOHAUS_SPU602Test, Tare_fails_on_a_balance_that_does_not_know_the_stable_print) {
    line.AlwaysAnswer("P\r\n", {{"        0.00 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("P\r\n", "T\r\n", "SP\r\n"));
}

TEST_F(WbalanceOHAUS_SPU602Test, Tare_of_a_silent_balance_ends_after_the_trial_reading) {
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("P\r\n"));
}

TEST_F(WbalanceOHAUS_SPU602Test, Tare_discards_what_is_printed_unasked_during_its_pause) {
    OpenThePort();
    line.Answer("P\r\n", {{"       55.00 g\r\n"}});
    line.Arrive(3000, "       55.00 g\r\n");
    line.Answer("SP\r\n", {{"        0.00 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
}

TEST_F(WbalanceOHAUS_SPU602Test, Tare_uses_a_derived_class_for_readiness_and_the_check) {
    Host<WbalanceOHAUS_SPU602> host;
    host.readiness = [&host] { return host.OpenAndSetDefCommConfig(); };
    host.weighing = Shows(0.0);
    EXPECT_EQ(host.Tare(), 1);
    EXPECT_THAT(host.calls, ElementsAre("IsReady", "Weight 0 without decimals"));
    EXPECT_THAT(line.Sent(), ElementsAre("T\r\n"));
    host.weighing = Shows(0.0, 0);
    EXPECT_EQ(host.Tare(), 0);
    host.weighing = Shows(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(host.Tare(), 0);
    host.readiness = [] { return 0; };
    line.Forget();
    EXPECT_EQ(host.Tare(), 0);
    EXPECT_THAT(line.Sent(), IsEmpty());
}

TEST_F(WbalanceOHAUS_SPU602Test, Tare_when_each_call_on_the_port_fails) {
    ExpectWhenEachCallFails<WbalanceOHAUS_SPU602>(
        {{"open /dev/ttyS0", 0, "held"},   {"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},     {"setParity none", 0, "gone"},
         {"setStopBits 1", 0, "gone"},     {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},     {"clear input", 1, "open"},
         {R"(write "P\r\n")", 0, "open"},  {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"},         {"wait 1000", 1, "open"},
         {"clear input", 1, "open"},       {R"(write "T\r\n")", 0, "open"},
         {"clear input", 1, "open"},       {"clear input", 1, "open"},
         {R"(write "SP\r\n")", 0, "open"}, {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"},         {"wait 1000", 1, "open"}},
        [this](auto&) {
            line.AlwaysAnswer("P\r\n", {{"       12.34 g\r\n"}});
            line.AlwaysAnswer("SP\r\n", {{"        0.00 g\r\n"}});
        },
        [](auto& driver) { return driver.Tare(); });
}

TEST_F(WbalanceOHAUS_SPU602Test, Tare_does_not_pause_after_a_command_that_was_not_sent) {
    OpenThePort();
    line.Answer("P\r\n", {{"       12.34 g\r\n"}});
    line.Fail("write", 2, PortFault::ShortWrite);
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Sleeps(), ElementsAre(500));
    EXPECT_THAT(line.Trace(), EndsWith("Ohaus Scout Pro - Explorer - Tare\n"
                                       "<== T\r\n ... FAIL\n\n"));
}

// Weight

TEST_F(WbalanceOHAUS_SPU602Test, Weight_in_mode_0_asks_for_a_stable_print) {
    OpenThePort();
    line.Answer("SP\r\n", {{"       12.34 g\r\n"}});
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 12.34);
    EXPECT_EQ(decimals, 7);
    EXPECT_THAT(line.Sent(), ElementsAre("SP\r\n"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceOHAUS_SPU602Test, Weight_in_every_other_mode_asks_for_an_immediate_print) {
    OpenThePort();
    line.AlwaysAnswer("P\r\n", {{"       12.34 g\r\n"}});
    for (const long mode : {-1L, 1L, 2L, 1L << 32}) {
        EXPECT_EQ(balance.Weight(mode, &weight, &decimals), 1);
        EXPECT_EQ(weight, 12.34);
    }
    EXPECT_THAT(line.Sent(), ElementsAre("P\r\n", "P\r\n", "P\r\n", "P\r\n"));
}

TEST_F(WbalanceOHAUS_SPU602Test, Weight_in_mode_1_takes_an_unsteady_reading_and_says_so) {
    OpenThePort();
    line.Answer("P\r\n", {{"          -5 g ?\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 1);
    EXPECT_EQ(weight, -5.0);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(line.Trace(), EndsWith("(time elapsed: 2000 ms)\n"
                                       "Ohaus Scout Pro - Explorer - weight = -5.00 gr.\n\n"
                                       "Unstable weight!"));
}

TEST_F(WbalanceOHAUS_SPU602Test, Weight_in_mode_0_refuses_an_unsteady_reading_but_keeps_it) {
    OpenThePort();
    line.Answer("SP\r\n", {{"          -5 g ?\r\n"}});
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(weight, -5.0);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(line.Trace(), EndsWith("(time elapsed: 2000 ms)\n"
                                       "Ohaus Scout Pro - Explorer - weight = -5.00 gr.\n\n"
                                       "Unstable weight!Weight procedure failed!"));
}

TEST_F(WbalanceOHAUS_SPU602Test, Weight_of_an_answer_without_a_g_fails_with_0_0) {
    OpenThePort();
    line.Answer("P\r\n", {{"ES\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale: ES\r\n (time elapsed: 2000 ms)\n"
                                       "Weight procedure failed!"));
}

TEST_F(WbalanceOHAUS_SPU602Test, Weight_of_a_silent_balance_fails_and_leaves_decimals_alone) {
    OpenThePort();
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(line.Trace(),
                EndsWith("Read from scale:  (time elapsed: 3000 ms)\nWeight procedure failed!"));
}

TEST_F(WbalanceOHAUS_SPU602Test, Weight_of_an_answer_that_begins_with_a_zero_byte_fails_unparsed) {
    using namespace std::string_literals;
    OpenThePort();
    line.Answer("P\r\n", {{"\0      12.34 g\r\n"s}});
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, -1);
}

TEST_F(WbalanceOHAUS_SPU602Test, Weight_reads_an_answer_up_to_a_zero_byte_only) {
    using namespace std::string_literals;
    OpenThePort();
    line.Answer("P\r\n", {{"       12\0.34 g\r\n"s}});
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);
}

TEST_F(WbalanceOHAUS_SPU602Test, Weight_finds_a_unit_that_is_the_65th_character) {
    OpenThePort();
    line.Answer("P\r\n", {{"12.34" + std::string(59, ' ') + "g\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.34);
}

TEST_F(WbalanceOHAUS_SPU602Test, Weight_does_not_find_a_unit_that_is_the_66th_character) {
    OpenThePort();
    line.Answer("P\r\n", {{"12.34" + std::string(60, ' ') + "g\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 0);
}

TEST_F(WbalanceOHAUS_SPU602Test, Weight_reads_the_beginning_of_an_answer_of_900_characters) {
    OpenThePort();
    line.Answer("P\r\n", {{"       12.34 g" + std::string(886, 'x')}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.34);
}

using WbalanceOHAUS_SPU602DeathTest = WbalanceOHAUS_SPU602Test;

TEST_F(WbalanceOHAUS_SPU602DeathTest, An_answer_too_long_for_its_trace_ends_the_process) {
    OpenThePort();
    line.Answer("P\r\n", {{std::string(1000, 'x')}});
    EXPECT_EXIT(balance.Weight(1, &weight, nullptr), testing::KilledBySignal(SIGABRT),
                "libwbalance: a trace line does not fit its buffer of 1024 bytes");
}

TEST_F(WbalanceOHAUS_SPU602Test, Weight_reads_past_bytes_with_bit_7_set) {
    OpenThePort();
    line.Answer("P\r\n", {{"       12.34 g\xe7\xbf\r\n"}});
    EXPECT_EQ(balance.Weight(0x100, &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.34);
}

TEST_F(WbalanceOHAUS_SPU602Test, Weight_joins_an_answer_that_comes_in_pieces) {
    OpenThePort();
    line.Answer("P\r\n", {{"       12"}, {".34", 900}, {" g\r\n", 1500}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.34);
}

TEST_F(WbalanceOHAUS_SPU602Test, Weight_discards_what_was_printed_before) {
    OpenThePort();
    line.Arrive(0, "       99.99 g\r\n");
    line.Answer("P\r\n", {{"       12.34 g\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.34);
}

TEST_F(WbalanceOHAUS_SPU602Test, Weight_pauses_and_reads_also_after_a_command_not_sent) {
    OpenThePort();
    line.Fail("write", 1);
    line.Arrive(100, "       12.34 g\r\n");
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(
        line.Transcript(),
        ElementsAre("clear input", R"(trace "Ohaus Scout Pro - Explorer - Weight\n")",
                    R"(write "P\r\n": refused)", R"(trace "<== P\r\n ... FAIL\n\n")", "Sleep 500",
                    "wait 1000: data", R"(read "       12.34 g\r\n")", "wait 1000: silence",
                    R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")",
                    "wait 1000: silence",
                    R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
                    R"(trace "Read from scale:        12.34 g\r\n (time elapsed: 2000 ms)\n")",
                    R"(trace "Weight procedure failed!")"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceOHAUS_SPU602Test, Weight_on_a_port_that_nobody_opened_fails) {
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(line.Sent(), IsEmpty());
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale:  (time elapsed: 0 ms)\n"
                                       "Weight procedure failed!"));
}

// ParseWeight

TEST_F(WbalanceOHAUS_SPU602Test, ParseWeight_of_a_number_with_a_point_reports_7_decimals) {
    EXPECT_EQ(Parse("       12.34 g\r\n"), 1);
    EXPECT_EQ(weight, 12.34);
    EXPECT_EQ(decimals, 7);
    EXPECT_FALSE(unstable);
}

TEST_F(WbalanceOHAUS_SPU602Test, ParseWeight_of_a_whole_number_reports_2_decimals) {
    EXPECT_EQ(Parse("        311 g\r\n"), 1);
    EXPECT_EQ(weight, 311.0);
    EXPECT_EQ(decimals, 2);
}

TEST_F(WbalanceOHAUS_SPU602Test, ParseWeight_looks_for_the_point_in_the_number_only) {
    EXPECT_EQ(Parse("        311 g .\r\n"), 1);
    EXPECT_EQ(decimals, 2);
}

TEST_F(WbalanceOHAUS_SPU602Test, ParseWeight_finds_a_question_mark_anywhere) {
    EXPECT_EQ(Parse("       -5 g ?\r\n"), 1);
    EXPECT_EQ(weight, -5.0);
    EXPECT_TRUE(unstable);
    EXPECT_EQ(Parse("       12.73 g    ?\r\n"), 1);
    EXPECT_TRUE(unstable);
    EXPECT_EQ(Parse("? 12.73 g\r\n"), 1);
    EXPECT_EQ(weight, 0.0);
    EXPECT_TRUE(unstable);
}

TEST_F(WbalanceOHAUS_SPU602Test, ParseWeight_without_a_g_fails_and_says_2_decimals_and_steadiness) {
    EXPECT_EQ(Parse("       12.34\r\n"), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, 2);
    EXPECT_FALSE(unstable);
    EXPECT_EQ(Parse("       12.34 oz ?\r\n"), 0);
    EXPECT_TRUE(unstable);
    EXPECT_EQ(Parse("       12 PCS\r\n"), 0);
}

TEST_F(WbalanceOHAUS_SPU602Test, ParseWeight_of_nothing_but_blanks_and_gs_fails) {
    EXPECT_EQ(Parse(" g g"), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, 2);
    EXPECT_EQ(Parse("g"), 0);
}

TEST_F(WbalanceOHAUS_SPU602Test, ParseWeight_takes_the_first_text_between_blanks_and_gs) {
    EXPECT_EQ(Parse("g12.5g 13 g"), 1);
    EXPECT_EQ(weight, 12.5);
    EXPECT_EQ(Parse("- 12.5 g"), 1);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, 2);
    EXPECT_EQ(Parse("N 12.5 g"), 1);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(Parse("\r\n12.5 g"), 1);
    EXPECT_EQ(weight, 12.5);
    EXPECT_EQ(Parse(" \r\n 12.5 g"), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceOHAUS_SPU602Test, ParseWeight_passes_kilograms_and_milligrams_on_unscaled) {
    EXPECT_EQ(Parse("      1.234 kg\r\n"), 1);
    EXPECT_EQ(weight, 1.234);
    EXPECT_EQ(Parse("       1234 mg\r\n"), 1);
    EXPECT_EQ(weight, 1234.0);
}

TEST_F(WbalanceOHAUS_SPU602Test, ParseWeight_cuts_the_answer_behind_the_number) {
    EXPECT_EQ(Parse("  12.5 g\r\n"), 1);
    EXPECT_EQ(left, "  12.5");
}

TEST_F(WbalanceOHAUS_SPU602Test, ParseWeight_of_nothing_writes_nothing) {
    EXPECT_EQ(balance.ParseWeight(nullptr, &weight, &decimals, &unstable), 0);
    EXPECT_EQ(Parse(""), 0);
    EXPECT_EQ(weight, -1.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_TRUE(unstable);
}

TEST_F(WbalanceOHAUS_SPU602Test, ParseWeight_allows_null_decimals_and_a_null_unstable_flag) {
    std::string text = "  12.5 g ?\r\n";
    EXPECT_EQ(balance.ParseWeight(text.data(), &weight, nullptr, nullptr), 1);
    EXPECT_EQ(weight, 12.5);
}

// RestoreFactorySettings

TEST_F(WbalanceOHAUS_SPU602Test, RestoreFactorySettings_sends_both_commands_and_reads_nothing) {
    OpenThePort();
    EXPECT_EQ(balance.RestoreFactorySettings(), 1);
    EXPECT_THAT(line.Transcript(),
                ElementsAre(R"(trace "Ohaus Scout Pro - Explorer - Restore factory settings\n")",
                            R"(write "\x1bR\r\n")", R"(trace "<== \x1bR\r\n ... OK\n\n")",
                            R"(write "0A\r\n")", R"(trace "<== 0A\r\n ... OK\n\n")"));
    EXPECT_THAT(line.Left(), IsEmpty());
}

TEST_F(WbalanceOHAUS_SPU602Test, RestoreFactorySettings_commands_leave_with_the_next_reading) {
    OpenThePort();
    line.Answer("P\r\n", {{"       12.34 g\r\n"}});
    EXPECT_EQ(balance.RestoreFactorySettings(), 1);
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 1);
    EXPECT_THAT(line.Left(), ElementsAre(kFactorySettings, "0A\r\n", "P\r\n"));
}

TEST_F(WbalanceOHAUS_SPU602Test, RestoreFactorySettings_sends_0A_even_when_ESC_R_was_not_sent) {
    OpenThePort();
    line.Fail("write", 1);
    EXPECT_EQ(balance.RestoreFactorySettings(), 0);
    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(R"(trace "Ohaus Scout Pro - Explorer - Restore factory settings\n")",
                    R"(write "\x1bR\r\n": refused)", R"(trace "<== \x1bR\r\n ... FAIL\n\n")",
                    R"(write "0A\r\n")", R"(trace "<== 0A\r\n ... OK\n\n")",
                    R"(trace "Restore factory settings command failed!")"));
}

TEST_F(WbalanceOHAUS_SPU602Test, RestoreFactorySettings_does_not_mind_that_0A_was_not_sent) {
    OpenThePort();
    line.Fail("write", 2);
    EXPECT_EQ(balance.RestoreFactorySettings(), 1);
    EXPECT_THAT(line.Trace(), EndsWith("<== 0A\r\n ... FAIL\n\n"));
}

TEST_F(WbalanceOHAUS_SPU602Test, RestoreFactorySettings_on_a_port_that_nobody_opened_fails) {
    EXPECT_EQ(balance.RestoreFactorySettings(), 0);
    EXPECT_EQ(line.Trace(),
              "Ohaus Scout Pro - Explorer - Restore factory settings\n"
              "<== \x1bR\r\n ... FAIL\n\n<== 0A\r\n ... FAIL\n\n"
              "Restore factory settings command failed!");
}

// Without a serial object

TEST_F(WbalanceOHAUS_SPU602Test, Without_a_serial_object_Weight_and_Restore_trace_their_failure) {
    balance.timeoutSeconds = 61;
    ASSERT_EQ(balance.IsReady(), 0);
    ASSERT_EQ(balance.serialObject, nullptr);
    line.Forget();
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_EQ(balance.RestoreFactorySettings(), 0);
    EXPECT_THAT(line.Transcript(),
                ElementsAre(R"(trace "Weight procedure failed!")",
                            R"(trace "Restore factory settings command failed!")"));
    line.Forget();
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_EQ(balance.TareSet(5.0), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

}  // namespace
