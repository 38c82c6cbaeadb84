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

const std::string kTicket =
    "PROJ 12\r\n"
    " 130.4 g\r\n"
    " 7.0 g T\r\n"
    " 123.4 g N\r\n";

class WbalanceScaleHouseALDTest : public ScriptedTest {
 protected:
    /// The port as an earlier readiness check leaves it.
    void OpenThePort() {
        ASSERT_EQ(balance.OpenAndSetDefCommConfig(), 1);
        line.Forget();
    }

    int Parse(std::string ticket) { return balance.ParseWeight(ticket.data(), &weight, &decimals); }

    Open<WbalanceScaleHouseALD> balance;
    double weight = -1.0;
    int decimals = -1;
};

// Construction

TEST_F(WbalanceScaleHouseALDTest, The_constructor_sets_2400_baud_no_parity_7_bits_on_port_0) {
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

TEST_F(WbalanceScaleHouseALDTest, TareSet_refuses_every_preset_and_sends_nothing) {
    EXPECT_EQ(balance.TareSet(5.0), 0);
    EXPECT_EQ(balance.TareSet(0.0), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceScaleHouseALDTest, RestoreFactorySettings_returns_1_and_sends_nothing) {
    EXPECT_EQ(balance.RestoreFactorySettings(), 1);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// IsReady

TEST_F(WbalanceScaleHouseALDTest, IsReady_opens_clears_and_reads_one_ticket) {
    line.Answer("P\r\n", {{kTicket}});

    EXPECT_EQ(balance.IsReady(), 1);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(
            "open /dev/ttyS0", R"(trace "/dev/ttyS0 OPENED SUCCESSFULLY!\n\n")", "setBaudRate 2400",
            "setDataBits 7", "setParity none", "setStopBits 1", "setFlowControl none",
            R"(trace "Balance Comm Port settings:\nBaud rate = 2400\nParity = 0\n)"
            R"(Data bits = 7\nStop bits = 0\nFlow control = 0\nTimeout = 1\n===> OK\n\n")",
            "clear input", R"(trace "Scale House ALD - Weight\n")", R"(write "P\r\n")",
            R"(trace "<== P\r\n ... OK\n\n")", "Sleep 500", "wait 1000: data",
            R"(read "PROJ 12\r\n 130.4 g\r\n 7.0 g T\r\n 123.4 g N\r\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
            R"(trace "Read from scale: PROJ 12\r\n 130.4 g\r\n 7.0 g T\r\n 123.4 g N\r\n)"
            R"( (time elapsed: 2000 ms)\n")",
            R"(trace "\nTrovato PROJ\n")", R"(trace "Scale House ALD - weight = 123.40 gr.\n\n")"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceScaleHouseALDTest, IsReady_of_a_silent_balance_is_0_and_leaves_the_port_open) {
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_TRUE(line.IsOpen());
    EXPECT_THAT(line.Trace(),
                EndsWith("Read from scale:  (time elapsed: 3000 ms)\nWeight procedure failed!"));
}

TEST_F(WbalanceScaleHouseALDTest, IsReady_refuses_a_negative_port_number_before_anything_else) {
    balance.portNumber = -1;
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceScaleHouseALDTest, IsReady_takes_mode_1_of_a_derived_class_with_null_decimals) {
    Host<WbalanceScaleHouseALD> host;
    host.weighing = [](long, double*, int*) { return 7; };
    EXPECT_EQ(host.IsReady(), 7);
    EXPECT_THAT(host.calls, ElementsAre("IsReady", "Weight 1 without decimals"));
    EXPECT_THAT(line.Sent(), IsEmpty());
}

TEST_F(WbalanceScaleHouseALDTest, IsReady_when_each_call_on_the_port_fails) {
    ExpectWhenEachCallFails<WbalanceScaleHouseALD>(
        {{"open /dev/ttyS0", 0, "held"},
         {"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity none", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "P\r\n")", 0, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"}},
        [this](auto&) { line.Answer("P\r\n", {{kTicket}}); },
        [](auto& driver) { return driver.IsReady(); });
}

// Tare

TEST_F(WbalanceScaleHouseALDTest, Tare_reads_zeroes_tares_and_checks_with_its_pauses) {
    OpenThePort();
    line.Answer("P\r\n", {{" 55.0 g N\r\n"}});
    line.Answer("P\r\n", {{" 0.0 g N\r\n"}});

    EXPECT_EQ(balance.Tare(), 1);

    const std::vector<std::string> all = line.Transcript();
    EXPECT_THAT(
        std::vector<std::string>(all.begin() + 8, all.end()),
        ElementsAre(
            R"(trace "Scale House ALD - Weight\n")", R"(write "P\r\n")",
            R"(trace "<== P\r\n ... OK\n\n")", "Sleep 500", "wait 1000: data",
            R"(read " 55.0 g N\r\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
            R"(trace "Read from scale:  55.0 g N\r\n (time elapsed: 2000 ms)\n")",
            R"(trace "Scale House ALD - weight = 55.00 gr.\n\n")",
            R"(trace "Scale House ALD - Zero\n")", R"(write "Z\r\n")",
            R"(trace "<== Z\r\n ... OK\n\n")", "Sleep 2000", R"(trace "Scale House ALD - Tare\n")",
            R"(write "T\r\n")", R"(trace "<== T\r\n ... OK\n\n")", "Sleep 2000",
            R"(trace "Scale House ALD - Weight\n")", R"(write "P\r\n")",
            R"(trace "<== P\r\n ... OK\n\n")", "Sleep 500", "wait 1000: data",
            R"(read " 0.0 g N\r\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
            R"(trace "Read from scale:  0.0 g N\r\n (time elapsed: 2000 ms)\n")",
            R"(trace "Scale House ALD - weight = 0.00 gr.\n\n")"));
    EXPECT_EQ(line.Now(), 9000);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceScaleHouseALDTest, Tare_fails_at_exactly_a_tenth_on_either_side) {
    struct Case {
        const char* ticket;
        int result;
    };
    for (const Case& each : {Case{" 0.09 g N\r\n", 1}, Case{" -0.09 g N\r\n", 1},
                             Case{" 0.1 g N\r\n", 0}, Case{" -0.1 g N\r\n", 0}}) {
        SCOPED_TRACE(each.ticket);
        line.Reset();
        Open<WbalanceScaleHouseALD> fresh;
        line.AlwaysAnswer("P\r\n", {{each.ticket}});
        EXPECT_EQ(fresh.Tare(), each.result);
    }
}

TEST_F(WbalanceScaleHouseALDTest, Tare_reads_what_its_commands_left_as_part_of_the_check) {
    line.AlwaysAnswer("P\r\n", {{" 0.0 g N\r\n"}});
    line.Answer("Z\r\n", {{" 55.0 g N\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
}

TEST_F(WbalanceScaleHouseALDTest, Tare_fails_when_the_check_gives_no_weight) {
    line.Answer("P\r\n", {{" 0.0 g N\r\n"}});
    line.Answer("P\r\n", {{"Err\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
}

TEST_F(WbalanceScaleHouseALDTest, Tare_of_a_silent_balance_ends_after_the_trial_reading) {
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("P\r\n"));
}

TEST_F(WbalanceScaleHouseALDTest, Tare_uses_a_derived_class_for_readiness_and_the_check) {
    Host<WbalanceScaleHouseALD> host;
    host.readiness = [&host] { return host.OpenAndSetDefCommConfig(); };
    host.weighing = Shows(0.0);
    EXPECT_EQ(host.Tare(), 1);
    EXPECT_THAT(host.calls, ElementsAre("IsReady", "Weight 0 without decimals"));
    EXPECT_THAT(line.Sent(), ElementsAre("Z\r\n", "T\r\n"));
    host.weighing = Shows(0.0, 0);
    EXPECT_EQ(host.Tare(), 0);
    host.weighing = Shows(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(host.Tare(), 0);
    host.readiness = [] { return 0; };
    line.Forget();
    EXPECT_EQ(host.Tare(), 0);
    EXPECT_THAT(line.Sent(), IsEmpty());
}

TEST_F(WbalanceScaleHouseALDTest, Tare_when_each_call_on_the_port_fails) {
    ExpectWhenEachCallFails<WbalanceScaleHouseALD>(
        {{"open /dev/ttyS0", 0, "held"},
         {"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity none", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "P\r\n")", 0, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"},
         {R"(write "Z\r\n")", 0, "open"},
         {R"(write "T\r\n")", 0, "open"},
         {R"(write "P\r\n")", 0, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"}},
        [this](auto&) { line.AlwaysAnswer("P\r\n", {{" 0.0 g N\r\n"}}); },
        [](auto& driver) { return driver.Tare(); });
}

TEST_F(WbalanceScaleHouseALDTest, Tare_does_not_pause_after_a_zero_that_was_not_sent) {
    OpenThePort();
    line.Answer("P\r\n", {{" 0.0 g N\r\n"}});
    line.Fail("write", 2);
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Sleeps(), ElementsAre(500));
    EXPECT_THAT(line.Trace(), EndsWith("Scale House ALD - Zero\n<== Z\r\n ... FAIL\n\n"));
}

TEST_F(WbalanceScaleHouseALDTest, Tare_does_not_pause_after_a_tare_that_was_not_sent) {
    OpenThePort();
    line.Answer("P\r\n", {{" 0.0 g N\r\n"}});
    line.Fail("write", 3, PortFault::ShortWrite);
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Sleeps(), ElementsAre(500, 2000));
}

// Weight

TEST_F(WbalanceScaleHouseALDTest, Weight_reads_the_same_way_in_every_mode_and_does_not_clear) {
    OpenThePort();
    line.AlwaysAnswer("P\r\n", {{" 123.4 g N\r\n"}});
    for (const long mode : {-1L, 0L, 1L, 2L}) {
        weight = -1.0;
        decimals = -1;
        EXPECT_EQ(balance.Weight(mode, &weight, &decimals), 1);
        EXPECT_EQ(weight, 123.4);
        EXPECT_EQ(decimals, 3);
    }
    EXPECT_THAT(line.Sent(), ElementsAre("P\r\n", "P\r\n", "P\r\n", "P\r\n"));
    EXPECT_THAT(line.Transcript(), testing::Not(testing::Contains("clear input")));
}

TEST_F(WbalanceScaleHouseALDTest, Weight_takes_what_was_left_in_the_line_as_part_of_the_ticket) {
    OpenThePort();
    line.Arrive(0, " 7.0 g N\r\n");
    line.Answer("P\r\n", {{" 123.4 g N\r\n"}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, 7.0);
}

TEST_F(WbalanceScaleHouseALDTest, Weight_joins_a_ticket_that_comes_in_pieces) {
    OpenThePort();
    line.Answer("P\r\n", {{" 12"}, {"3.4 g", 900}, {" N\r\n", 1500}});
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 123.4);
}

TEST_F(WbalanceScaleHouseALDTest, Weight_of_a_ticket_without_a_weight_fails_but_reports_decimals) {
    OpenThePort();
    line.Answer("P\r\n", {{"Err\r\n"}});
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, 3);
    EXPECT_THAT(line.Trace(), EndsWith("\nERRORE NEL PARSING\nWeight procedure failed!"));
}

TEST_F(WbalanceScaleHouseALDTest, Weight_of_a_silent_balance_fails_without_the_parser) {
    OpenThePort();
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(line.Trace(),
                EndsWith("Read from scale:  (time elapsed: 3000 ms)\nWeight procedure failed!"));
}

TEST_F(WbalanceScaleHouseALDTest, Weight_of_an_answer_that_begins_with_a_zero_byte_fails_unparsed) {
    using namespace std::string_literals;
    OpenThePort();
    line.Answer("P\r\n", {{"\0 123.4 g N\r\n"s}});
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(line.Trace(),
                EndsWith("Read from scale:  (time elapsed: 2000 ms)\nWeight procedure failed!"));
}

TEST_F(WbalanceScaleHouseALDTest, Weight_looks_at_a_ticket_up_to_a_zero_byte_only) {
    using namespace std::string_literals;
    OpenThePort();
    line.Answer("P\r\n", {{" 123.4 g\0 N\r\n"s}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 0);
}

TEST_F(WbalanceScaleHouseALDTest, Weight_finds_a_mark_that_ends_with_the_257th_character) {
    OpenThePort();
    line.Answer("P\r\n", {{std::string(248, '.') + " 12.3 g N\r\n"}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.3);
}

TEST_F(WbalanceScaleHouseALDTest, Weight_does_not_find_a_mark_that_ends_with_the_258th_character) {
    OpenThePort();
    line.Answer("P\r\n", {{std::string(249, '.') + " 12.3 g N\r\n"}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 0);
}

TEST_F(WbalanceScaleHouseALDTest, Weight_reads_the_beginning_of_a_ticket_of_900_characters) {
    OpenThePort();
    line.Answer("P\r\n", {{" 12.3 g N\r\n" + std::string(888, '.')}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.3);
}

using WbalanceScaleHouseALDDeathTest = WbalanceScaleHouseALDTest;

TEST_F(WbalanceScaleHouseALDDeathTest, A_ticket_too_long_for_its_trace_ends_the_process) {
    OpenThePort();
    line.Answer("P\r\n", {{std::string(1000, '.')}});
    EXPECT_EXIT(balance.Weight(0, &weight, nullptr), testing::KilledBySignal(SIGABRT),
                "libwbalance: a trace line does not fit its buffer of 1024 bytes");
}

TEST_F(WbalanceScaleHouseALDTest, Weight_fails_when_the_command_can_not_be_sent) {
    OpenThePort();
    line.Fail("write", 1);
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(R"(trace "Scale House ALD - Weight\n")", R"(write "P\r\n": refused)",
                    R"(trace "<== P\r\n ... FAIL\n\n")", R"(trace "Weight procedure failed!")"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceScaleHouseALDTest, Weight_on_a_port_that_nobody_opened_fails_at_the_send) {
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(line.Trace(),
              "Scale House ALD - Weight\n<== P\r\n ... FAIL\n\nWeight procedure failed!");
}

TEST_F(WbalanceScaleHouseALDTest, Weight_on_a_port_that_was_closed_fails_at_the_send) {
    OpenThePort();
    balance.CloseCommPort();
    line.Forget();
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(line.Trace(),
              "Scale House ALD - Weight\n<== P\r\n ... FAIL\n\nWeight procedure failed!");
}

TEST_F(WbalanceScaleHouseALDTest, Without_a_serial_object_Weight_still_traces_its_failure) {
    balance.timeoutSeconds = 61;
    ASSERT_EQ(balance.IsReady(), 0);
    ASSERT_EQ(balance.serialObject, nullptr);
    line.Forget();
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(line.Transcript(), ElementsAre(R"(trace "Weight procedure failed!")"));
    line.Forget();
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// ParseWeight

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_takes_the_net_line_whatever_else_the_ticket_holds) {
    EXPECT_EQ(Parse("12 g T\r\nG 130.4 g\r\n 123.4 g N\r\n 7 g N\r\n"), 1);
    EXPECT_EQ(weight, 123.4);
    EXPECT_EQ(decimals, 3);
    EXPECT_EQ(line.Trace(), "");
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_cuts_a_ticket_at_its_first_PROJ) {
    EXPECT_EQ(Parse(" 1.0 g N\r\nPROJ 1\r\n 2.0 g N\r\nPROJ 2\r\n 3.0 g N\r\n"), 1);
    EXPECT_EQ(weight, 2.0);
    EXPECT_EQ(line.Trace(), "\nTrovato PROJ\n");
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_passes_the_tare_test_on_a_ticket_with_PROJ) {
    EXPECT_EQ(Parse("55 PROJ 12\r\n 130.4 g\r\n 7.0 g T\r\n"), 1);
    EXPECT_EQ(weight, 130.4);
    EXPECT_EQ(line.Trace(), "\nTrovato PROJ\n\nCerco g\n");
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_takes_the_first_line_in_grams_which_may_be_the_tare) {
    EXPECT_EQ(Parse("PROJ\r\n 7.0 g T\r\n 130.4 g\r\n"), 1);
    EXPECT_EQ(weight, 7.0);
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_fails_on_a_tare_line_that_starts_with_a_number) {
    EXPECT_EQ(Parse("7.0 g T\r\n 130.4 g\r\n"), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, 3);
    EXPECT_EQ(line.Trace(), "\nERRORE NEL PARSING\n");
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_tests_the_start_of_the_ticket_as_the_tare) {
    EXPECT_EQ(Parse("5\r\n 0.0 g T\r\n 130.4 g\r\n"), 0);
    EXPECT_EQ(Parse("0\r\n 7.0 g T\r\n 130.4 g\r\n"), 1);
    EXPECT_EQ(weight, 7.0);
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_cuts_the_tare_text_at_the_last_blank_before_it) {
    // "  7.0": the text up to the blank in position 1 is a blank and counts as 0.
    EXPECT_EQ(Parse("  7.0 g T\r\n"), 1);
    EXPECT_EQ(weight, 7.0);
    // " 7.0": the blank in position 0 is not looked at, so that all of it is the tare.
    EXPECT_EQ(Parse(" 7.0 g T\r\n"), 0);
    EXPECT_EQ(weight, 0.0);
    // The blank directly before the mark cuts too.
    EXPECT_EQ(Parse("5  g T\r\n"), 0);
    EXPECT_EQ(Parse("0  g T\r\n"), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_takes_a_tare_mark_at_the_start_as_an_empty_tare) {
    EXPECT_EQ(Parse(" g T\r\n"), 1);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(Parse("0 g T\r\n"), 1);
    EXPECT_EQ(Parse("5 g T\r\n"), 0);
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_takes_a_net_mark_at_the_start_as_0) {
    EXPECT_EQ(Parse(" g N 5\r\n"), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_counts_no_number_as_another_tare_than_zero) {
    EXPECT_EQ(Parse("nan g T\r\n 130.4 g\r\n"), 0);
    EXPECT_EQ(Parse("inf g T\r\n 130.4 g\r\n"), 0);
    EXPECT_EQ(Parse("-0.00 g T\r\n 130.4 g\r\n"), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_fails_on_a_ticket_without_either_mark) {
    EXPECT_EQ(Parse(" 130.4 g\r\n"), 0);
    EXPECT_EQ(Parse(" 130.4 gN\r\n"), 0);
    EXPECT_EQ(Parse(" 130.4 g n\r\n"), 0);
    EXPECT_EQ(Parse("PROJ"), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(line.Trace(),
              "\nERRORE NEL PARSING\n\nERRORE NEL PARSING\n\nERRORE NEL PARSING\n"
              "\nTrovato PROJ\n\nERRORE NEL PARSING\n");
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_reads_two_blanks_before_the_unit_as_0) {
    EXPECT_EQ(Parse(" 123.4  g N\r\n"), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_reads_from_the_last_blank_to_the_mark) {
    EXPECT_EQ(Parse("Net: -123.4 g N"), 1);
    EXPECT_EQ(weight, -123.4);
    EXPECT_EQ(Parse("1 2 3 g N"), 1);
    EXPECT_EQ(weight, 3.0);
    EXPECT_EQ(Parse("- 123.4 g N"), 1);
    EXPECT_EQ(weight, 123.4);
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_reads_from_the_start_when_no_blank_is_ahead) {
    EXPECT_EQ(Parse("123.4 g N"), 1);
    EXPECT_EQ(weight, 123.4);
    EXPECT_EQ(Parse(" 123.4 g N"), 1);
    EXPECT_EQ(weight, 123.4);
    EXPECT_EQ(Parse("5 g N"), 1);
    EXPECT_EQ(weight, 5.0);
    EXPECT_EQ(Parse("51 g N"), 1);
    EXPECT_EQ(weight, 51.0);
    EXPECT_EQ(Parse(" 5 g N"), 1);
    EXPECT_EQ(weight, 5.0);
    EXPECT_EQ(Parse(" g N"), 1);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(Parse("  g N"), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_reads_a_number_behind_a_line_end_alone_as_0) {
    EXPECT_EQ(Parse("NET\r\n123.4 g N"), 1);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_stops_at_what_can_not_continue_a_number) {
    EXPECT_EQ(Parse(" 12,34 g N"), 1);
    EXPECT_EQ(weight, 12.0);
    EXPECT_EQ(Parse(" 1.2.3 g N"), 1);
    EXPECT_EQ(weight, 1.2);
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_matches_NET_and_TOTAL_legends_by_their_letters) {
    EXPECT_EQ(Parse("     12.34 g NET\r\n"), 1);
    EXPECT_EQ(weight, 12.34);
    EXPECT_EQ(Parse("    207.80 g TOTAL\r\n"), 1);
    EXPECT_EQ(weight, 207.8);
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_of_nothing_writes_nothing) {
    EXPECT_EQ(balance.ParseWeight(nullptr, &weight, &decimals), 0);
    EXPECT_EQ(Parse(""), 0);
    EXPECT_EQ(weight, -1.0);
    EXPECT_EQ(decimals, -1);
    std::string ticket = kTicket;
    EXPECT_EQ(balance.ParseWeight(ticket.data(), nullptr, &decimals), 0);
    EXPECT_EQ(decimals, -1);
    EXPECT_EQ(line.Trace(), "");
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_allows_null_decimals_and_leaves_the_ticket_whole) {
    std::string ticket = kTicket;
    EXPECT_EQ(balance.ParseWeight(ticket.data(), &weight, nullptr), 1);
    EXPECT_EQ(weight, 123.4);
    EXPECT_EQ(ticket, kTicket);
}

TEST_F(WbalanceScaleHouseALDTest, ParseWeight_takes_a_ticket_of_any_length) {
    EXPECT_EQ(Parse(std::string(5000, '.') + " 123.4 g N"), 1);
    EXPECT_EQ(weight, 123.4);
}

}  // namespace
