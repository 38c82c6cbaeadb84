#include "../Dialogue.h"
#include "../FailingCalls.h"
#include "../Host.h"

using scripted::Dialogue;
using scripted::ExpectWhenEachCallFails;
using scripted::FailingCall;
using scripted::Host;
using scripted::Open;
using scripted::PortFault;
using scripted::Reply;
using scripted::ScriptedTest;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr char kSettings[] =
    R"(trace "Balance Comm Port settings:\nBaud rate = 2400\nParity = 2\nData bits = 7\n)"
    R"(Stop bits = 0\nFlow control = 0\nTimeout = 1\n===> OK\n\n")";

constexpr char kReset[] = R"(trace "Generic Mettler Toledo - Reset\n")";
constexpr char kZero[] = R"(trace "Generic Mettler Toledo - Set tare to 0\n")";
constexpr char kSuccess[] = R"(trace "Generic Mettler Toledo - Success.\n\n")";
constexpr char kFail[] = R"(trace "Generic Mettler Toledo - Command fail!\n\n")";
constexpr char kStable[] = R"(trace "Generic Mettler Toledo - Stable weight\n")";
constexpr char kUnstable[] = R"(trace "Generic Mettler Toledo - Unstable weight\n")";

std::string Concluded(const std::string& weight) {
    return R"(trace "Generic Mettler Toledo - weight = )" + weight + R"( cc.\n\n")";
}

class WbalanceMettlerToledoTest : public ScriptedTest {
 protected:
    std::vector<std::string> Conversation() const {
        return Dialogue({"setBaudRate 2400", "setDataBits 7", "setParity even", "setStopBits 1",
                         "setFlowControl none", kSettings})
            .Of(line);
    }

    /// What stands in the conversation behind the readiness of a port that was closed.
    std::vector<std::string> AfterReset() const {
        const std::vector<std::string> all = Conversation();
        EXPECT_THAT(std::vector(all.begin(), all.begin() + 3),
                    ElementsAre("opening", kReset, R"(write "@\r\n")"));
        return {all.begin() + 3, all.end()};
    }

    int Weigh(long mode) { return balance.Weight(mode, &weight, &decimals); }

    Open<WbalanceMettlerToledo> balance;
    double weight = -1.0;
    int decimals = -1;
};

// Construction and what the driver does not have.

TEST_F(WbalanceMettlerToledoTest, The_constructor_sets_2400_baud_even_7_bits_one_stop_bit) {
    EXPECT_EQ(balance.portNumber, 0);
    EXPECT_EQ(balance.baudRate, 2400);
    EXPECT_EQ(balance.parityCode, 2);
    EXPECT_EQ(balance.dataBits, 7);
    EXPECT_EQ(balance.stopBitsCode, 0);
    EXPECT_EQ(balance.flowControlCode, 0);
    EXPECT_EQ(balance.timeoutSeconds, 1);
    EXPECT_EQ(balance.portKind, 'S');
    EXPECT_NE(balance.serialObject, nullptr);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceMettlerToledoTest, TareSet_returns_1_and_sends_nothing) {
    EXPECT_EQ(balance.TareSet(12.5), 1);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceMettlerToledoTest, RestoreFactorySettings_returns_1_and_sends_nothing) {
    EXPECT_EQ(balance.RestoreFactorySettings(), 1);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// Readiness.

TEST_F(WbalanceMettlerToledoTest, IsReady_opens_and_clears_and_sends_the_reset) {
    EXPECT_EQ(balance.IsReady(), 1);

    EXPECT_THAT(Conversation(), ElementsAre("opening", kReset, R"(write "@\r\n")"));
    EXPECT_THAT(line.Trace(), EndsWith("<== @\r\n ... OK\n\n"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerToledoTest, IsReady_does_not_wait_for_the_answer_to_the_reset) {
    balance.IsReady();

    EXPECT_EQ(line.Now(), 0);
    EXPECT_THAT(line.Left(), IsEmpty());
}

TEST_F(WbalanceMettlerToledoTest, A_second_IsReady_finds_the_port_open_and_resets_again) {
    balance.IsReady();
    line.Forget();

    EXPECT_EQ(balance.IsReady(), 1);

    EXPECT_THAT(Conversation(), ElementsAre("opening again", kReset, R"(write "@\r\n")"));
}

TEST_F(WbalanceMettlerToledoTest, IsReady_with_a_negative_port_number_does_nothing) {
    balance.portNumber = -1;

    EXPECT_EQ(balance.IsReady(), 0);

    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceMettlerToledoTest, IsReady_that_cannot_send_the_reset_traces_it_and_closes) {
    line.Fail("write");

    EXPECT_EQ(balance.IsReady(), 0);

    EXPECT_THAT(Conversation(),
                ElementsAre("opening", kReset, R"(write "@\r\n": refused)", "close", "delete port",
                            R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"));
    EXPECT_THAT(line.Trace(), HasSubstr("<== @\r\n ... FAIL\n\n"));
}

TEST_F(WbalanceMettlerToledoTest, IsReady_with_a_reset_that_is_sent_in_part_closes_too) {
    line.Fail("write", 1, PortFault::ShortWrite);

    EXPECT_EQ(balance.IsReady(), 0);

    EXPECT_EQ(line.PortObjects(), 0);
}

TEST_F(WbalanceMettlerToledoTest, IsReady_when_each_call_fails) {
    ExpectWhenEachCallFails<WbalanceMettlerToledo>(
        {{"open /dev/ttyS0", 0, "held"},
         {"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "@\r\n")", 0, "closed"}},
        [](auto&) {}, [](auto& driver) { return driver.IsReady(); });
}

// After a configuration that failed no operation does anything any more.
TEST_F(WbalanceMettlerToledoTest, Without_a_serial_object_every_operation_fails_without_a_trace) {
    line.Fail("setParity");
    balance.IsReady();
    line.Forget();

    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_EQ(balance.Tare(), 0);
    for (const long mode : {0, 1, 2, 3}) {
        weight = -1.0;
        EXPECT_EQ(Weigh(mode), 0);
        EXPECT_EQ(weight, 0.0);
    }

    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceMettlerToledoTest, Tare_and_Weight_use_the_readiness_of_a_derived_class) {
    Host<WbalanceMettlerToledo> host;
    host.readiness = [&host] { return host.OpenAndClear(); };
    line.Answer("Z\r\n", {{"Z A\r\n"}});
    line.Answer("S\r\n", {{"S S      1.50 g\r\n"}});
    line.Answer("SI\r\n", {{"S S      2.50 g\r\n"}});

    EXPECT_EQ(host.Tare(), 1);
    EXPECT_EQ(host.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, 1.5);
    EXPECT_EQ(host.Weight(2, &weight, nullptr), 1);
    EXPECT_EQ(weight, 2.5);

    EXPECT_EQ(host.ReadinessChecks(), 3);
    EXPECT_THAT(line.Sent(), ElementsAre("Z\r\n", "S\r\n", "SI\r\n"));
}

TEST_F(WbalanceMettlerToledoTest, Nothing_is_sent_when_the_readiness_of_a_derived_class_fails) {
    Host<WbalanceMettlerToledo> host;
    host.readiness = [] { return 0; };

    EXPECT_EQ(host.Tare(), 0);
    for (const long mode : {0, 1, 2}) {
        weight = -1.0;
        EXPECT_EQ(host.Weight(mode, &weight, nullptr), 0);
        EXPECT_EQ(weight, 0.0);
    }

    EXPECT_EQ(host.ReadinessChecks(), 4);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceMettlerToledoTest, A_derived_class_without_a_serial_object_is_not_asked) {
    Host<WbalanceMettlerToledo> host;
    host.readiness = [&host] { return host.OpenAndClear(); };
    host.timeoutSeconds = 61;
    host.IsReady();
    host.calls.clear();

    EXPECT_EQ(host.Tare(), 0);
    EXPECT_EQ(host.Weight(1, &weight, nullptr), 0);

    EXPECT_EQ(host.ReadinessChecks(), 0);
}

// Tare, which is a zeroing.

TEST_F(WbalanceMettlerToledoTest, Tare_sends_the_zero_command_and_succeeds_with_Z_A) {
    line.Answer("Z\r\n", {{"Z A\r\n"}});

    EXPECT_EQ(balance.Tare(), 1);

    EXPECT_THAT(AfterReset(),
                ElementsAre(kZero, R"(write "Z\r\n")", R"(read "Z A\r\n")", kSuccess));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerToledoTest, Tare_uses_all_its_attempts_and_no_pause) {
    line.Answer("Z\r\n", {{"Z A\r\n"}});

    balance.Tare();

    EXPECT_EQ(line.Now(), 2000);
    EXPECT_THAT(line.Sleeps(), IsEmpty());
    EXPECT_THAT(line.Trace(), HasSubstr("Read from scale: Z A\r\n (time elapsed: 2000 ms)\n"));
}

TEST_F(WbalanceMettlerToledoTest, Tare_succeeds_when_the_reset_answer_stands_ahead_of_Z_A) {
    line.Answer("@\r\n", {{"I4 A \"1126493049\"\r\n"}});
    line.Answer("Z\r\n", {{"Z A\r\n"}});

    EXPECT_EQ(balance.Tare(), 1);

    EXPECT_THAT(AfterReset(), ElementsAre(kZero, R"(write "Z\r\n")",
                                          R"(read "I4 A \"1126493049\"\r\nZ A\r\n")", kSuccess));
}

TEST_F(WbalanceMettlerToledoTest, Tare_succeeds_with_Z_A_as_the_last_of_33_characters) {
    line.Answer("Z\r\n", {{std::string(30, 'x') + "Z A\r\n"}});

    EXPECT_EQ(balance.Tare(), 1);
}

TEST_F(WbalanceMettlerToledoTest,
       Tare_fails_with_Z_A_that_begins_within_33_characters_and_ends_behind) {
    line.Answer("Z\r\n", {{std::string(31, 'x') + "Z A\r\n"}});

    EXPECT_EQ(balance.Tare(), 0);

    EXPECT_THAT(line.Trace(), EndsWith("Generic Mettler Toledo - Command fail!\n\n"));
}

TEST_F(WbalanceMettlerToledoTest, Tare_without_an_answer_fails_without_a_trace) {
    EXPECT_EQ(balance.Tare(), 0);

    EXPECT_THAT(AfterReset(), ElementsAre(kZero, R"(write "Z\r\n")", "silent read"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerToledoTest, Tare_that_cannot_be_sent_fails_and_leaves_the_port_open) {
    line.Fail("write", 2);

    EXPECT_EQ(balance.Tare(), 0);

    EXPECT_THAT(AfterReset(), ElementsAre(kZero, R"(write "Z\r\n": refused)"));
    EXPECT_TRUE(line.IsOpen());
}

class WbalanceMettlerToledoTareAnswer : public WbalanceMettlerToledoTest,
                                        public testing::WithParamInterface<const char*> {};

TEST_P(WbalanceMettlerToledoTareAnswer, That_does_not_hold_Z_A_fails) {
    line.Answer("Z\r\n", {{GetParam()}});

    EXPECT_EQ(balance.Tare(), 0);

    EXPECT_EQ(AfterReset().back(), kFail);
    EXPECT_TRUE(line.IsOpen());
}

INSTANTIATE_TEST_SUITE_P(Answers, WbalanceMettlerToledoTareAnswer,
                         testing::Values("Z I\r\n", "Z +\r\n", "Z -\r\n", "ES\r\n", "ET\r\n",
                                         "EL\r\n", "ZA\r\n", "z a\r\n", "Z  A\r\n",
                                         "I4 A \"1126493049\"\r\n"));

TEST_F(WbalanceMettlerToledoTest, Tare_when_each_call_fails) {
    ExpectWhenEachCallFails<WbalanceMettlerToledo>(
        {{"open /dev/ttyS0", 0, "held"},
         {"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "@\r\n")", 0, "closed"},
         {R"(write "Z\r\n")", 0, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"}},
        [](auto&) { scripted::Line::Here().Answer("Z\r\n", {{"Z A\r\n"}}); },
        [](auto& driver) { return driver.Tare(); });
}

// Weight, whatever the mode.

TEST_F(WbalanceMettlerToledoTest, An_unknown_mode_returns_0_after_the_reset) {
    for (const long mode : {3L, -1L, 1L << 32}) {
        balance.CloseCommPort();
        line.Forget();
        weight = -1.0;

        EXPECT_EQ(Weigh(mode), 0);

        EXPECT_EQ(weight, 0.0);
        EXPECT_THAT(AfterReset(), IsEmpty());
        EXPECT_TRUE(line.IsOpen());
    }
}

TEST_F(WbalanceMettlerToledoTest, The_weight_is_0_before_anything_else) {
    balance.portNumber = -1;

    EXPECT_EQ(Weigh(0), 0);

    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceMettlerToledoTest, A_second_weighing_finds_the_port_open) {
    line.AlwaysAnswer("S\r\n", {{"S S     100.00 g\r\n"}});
    Weigh(0);
    line.Forget();

    EXPECT_EQ(Weigh(0), 1);

    EXPECT_EQ(Conversation().front(), "opening again");
}

// A real balance answers the reset, and the first digit of the two answers is the 4 of I4.
TEST_F(WbalanceMettlerToledoTest, The_answer_to_the_reset_makes_a_weight_of_4) {
    line.Answer("@\r\n", {{"I4 A \"1126493049\"\r\n"}});
    line.Answer("S\r\n", {{"S S     100.00 g\r\n"}});

    EXPECT_EQ(Weigh(1), 1);

    EXPECT_EQ(weight, 4.0);
    EXPECT_EQ(decimals, -1);
}

TEST_F(WbalanceMettlerToledoTest, The_readiness_of_the_line_alone_gives_the_true_weight) {
    WithLineReadiness<WbalanceMettlerToledo> withoutReset;
    line.AlwaysAnswer("@\r\n", {{"I4 A \"1126493049\"\r\n"}});
    line.Answer("S\r\n", {{"S S     100.00 g\r\n"}});

    EXPECT_EQ(withoutReset.Weight(1, &weight, &decimals), 1);

    EXPECT_EQ(weight, 100.0);
    EXPECT_EQ(decimals, 2);
}

TEST_F(WbalanceMettlerToledoTest, The_unit_is_not_looked_at) {
    line.Answer("S\r\n", {{"S S     1.2345 kg\r\n"}});

    EXPECT_EQ(Weigh(0), 1);

    EXPECT_EQ(weight, 1.2345);
    EXPECT_EQ(decimals, 4);
}

TEST_F(WbalanceMettlerToledoTest, The_place_for_the_decimals_may_be_null) {
    line.Answer("S\r\n", {{"S S     100.00 g\r\n"}});

    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);

    EXPECT_EQ(weight, 100.0);
}

TEST_F(WbalanceMettlerToledoTest, A_weight_without_a_point_leaves_the_decimals) {
    line.Answer("S\r\n", {{"S S       100 g\r\n"}});

    EXPECT_EQ(Weigh(0), 1);

    EXPECT_EQ(weight, 100.0);
    EXPECT_EQ(decimals, -1);
}

// Weight in mode 0: a stable one only.

TEST_F(WbalanceMettlerToledoTest,
       A_stable_weight_in_mode_0_from_the_open_to_the_trace_of_the_weight) {
    line.Answer("S\r\n", {{"S S     100.00 g\r\n"}});

    EXPECT_EQ(Weigh(0), 1);

    EXPECT_EQ(weight, 100.0);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(
            "open /dev/ttyS0", R"(trace "/dev/ttyS0 OPENED SUCCESSFULLY!\n\n")", "setBaudRate 2400",
            "setDataBits 7", "setParity even", "setStopBits 1", "setFlowControl none", kSettings,
            "clear input", kReset, R"(write "@\r\n")", R"(trace "<== @\r\n ... OK\n\n")", kStable,
            R"(write "S\r\n")", R"(trace "<== S\r\n ... OK\n\n")", "Sleep 1000", "wait 1000: data",
            R"(read "S S     100.00 g\r\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
            R"(trace "Read from scale: S S     100.00 g\r\n (time elapsed: 2000 ms)\n")",
            Concluded("100.00")));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerToledoTest, The_trace_of_the_weight_has_two_decimals_and_the_result_all) {
    line.Answer("S\r\n", {{"S S    -12.3456 g\r\n"}});

    EXPECT_EQ(Weigh(0), 1);

    EXPECT_EQ(weight, -12.3456);
    EXPECT_EQ(decimals, 4);
    EXPECT_THAT(line.Trace(), EndsWith("Generic Mettler Toledo - weight = -12.35 cc.\n\n"));
}

TEST_F(WbalanceMettlerToledoTest, Mode_0_without_an_answer_fails_without_a_trace) {
    EXPECT_EQ(Weigh(0), 0);

    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(AfterReset(),
                ElementsAre(kStable, R"(write "S\r\n")", "Sleep 1000", "silent read"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerToledoTest, Mode_0_that_cannot_be_sent_fails_without_the_pause) {
    line.Fail("write", 2);

    EXPECT_EQ(Weigh(0), 0);

    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(AfterReset(), ElementsAre(kStable, R"(write "S\r\n": refused)"));
    EXPECT_TRUE(line.IsOpen());
}

class WbalanceMettlerToledoWeightAnswer : public WbalanceMettlerToledoTest,
                                          public testing::WithParamInterface<const char*> {};

TEST_P(WbalanceMettlerToledoWeightAnswer, That_is_not_stable_fails_in_mode_0) {
    line.Answer("S\r\n", {{GetParam()}});

    EXPECT_EQ(Weigh(0), 0);

    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_EQ(AfterReset().back(), kFail);
    EXPECT_TRUE(line.IsOpen());
}

INSTANTIATE_TEST_SUITE_P(Answers, WbalanceMettlerToledoWeightAnswer,
                         testing::Values("S D     100.00 g\r\n", "S I\r\n", "S +\r\n", "S -\r\n",
                                         "ES\r\n", "ET\r\n", "EL\r\n", "s s     100.00 g\r\n",
                                         "SS     100.00 g\r\n", "S S\r\n",
                                         "I4 A \"1126493049\"\r\n"));

TEST_F(WbalanceMettlerToledoTest, A_stable_mark_that_ends_with_character_33_is_recognised) {
    line.Answer("S\r\n", {{"0.5 " + std::string(25, 'x') + "S S 100.00 g\r\n"}});

    EXPECT_EQ(Weigh(0), 1);

    EXPECT_EQ(weight, 0.5);
}

TEST_F(WbalanceMettlerToledoTest, A_stable_mark_that_ends_behind_character_33_is_not_recognised) {
    line.Answer("S\r\n", {{std::string(30, 'x') + "S S 100.00 g\r\n"}});

    EXPECT_EQ(Weigh(0), 0);

    EXPECT_EQ(AfterReset().back(), kFail);
}

TEST_F(WbalanceMettlerToledoTest, A_stable_mark_behind_character_33_is_not_recognised) {
    line.Answer("S\r\n", {{std::string(34, 'x') + "S S 1\n"}});

    EXPECT_EQ(Weigh(0), 0);

    EXPECT_EQ(AfterReset().back(), kFail);
}

// The buffer holds 33 characters, and the number is read from it.
TEST_F(WbalanceMettlerToledoTest, A_number_that_begins_within_33_characters_is_cut_there) {
    line.Answer("S\r\n", {{"S S " + std::string(25, ' ') + "12.345 g\r\n"}});

    EXPECT_EQ(Weigh(0), 1);

    EXPECT_EQ(weight, 12.3);
    EXPECT_EQ(decimals, 1);
}

TEST_F(WbalanceMettlerToledoTest, Bytes_with_the_eighth_bit_are_no_weight) {
    line.Answer("S\r\n", {{"\x53\xa0\x53\xa0 100.00 g\r\n"}});

    EXPECT_EQ(Weigh(0), 0);

    EXPECT_EQ(AfterReset().back(), kFail);
}

TEST_F(WbalanceMettlerToledoTest, An_answer_cut_by_a_zero_byte_is_read_up_to_it) {
    using namespace std::string_literals;
    line.Answer("S\r\n", {{"S S 12.\0"
                           "5 g\r\n"s}});

    EXPECT_EQ(Weigh(0), 1);

    EXPECT_EQ(weight, 12.0);
    EXPECT_EQ(decimals, 0);
}

TEST_F(WbalanceMettlerToledoTest, Mode_0_when_each_call_fails) {
    ExpectWhenEachCallFails<WbalanceMettlerToledo>(
        {{"open /dev/ttyS0", 0, "held"},
         {"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "@\r\n")", 0, "closed"},
         {R"(write "S\r\n")", 0, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"}},
        [](auto&) { scripted::Line::Here().Answer("S\r\n", {{"S S  1.00 g\r\n"}}); },
        [](auto& driver) {
            double grams = -1.0;
            return driver.Weight(0, &grams, nullptr);
        });
}

// Weight in mode 2: one immediate reading.

TEST_F(WbalanceMettlerToledoTest, Mode_2_reads_a_dynamic_weight_at_once) {
    line.Answer("SI\r\n", {{"S D      12.34 g\r\n"}});

    EXPECT_EQ(Weigh(2), 2);

    EXPECT_EQ(weight, 12.34);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(AfterReset(), ElementsAre(kUnstable, R"(write "SI\r\n")",
                                          R"(read "S D      12.34 g\r\n")", Concluded("12.34")));
    EXPECT_EQ(line.Now(), 2000);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerToledoTest, Mode_2_returns_1_for_a_stable_weight) {
    line.Answer("SI\r\n", {{"S S      12.34 g\r\n"}});

    EXPECT_EQ(Weigh(2), 1);

    EXPECT_EQ(weight, 12.34);
}

TEST_F(WbalanceMettlerToledoTest, Mode_2_returns_1_where_both_marks_stand_in_the_answer) {
    line.Answer("SI\r\n", {{"S D 1.50 g\r\nS S 2.50 g\r\n"}});

    EXPECT_EQ(Weigh(2), 1);

    EXPECT_EQ(weight, 1.5);
}

TEST_F(WbalanceMettlerToledoTest, Mode_2_fails_with_any_other_answer) {
    line.Answer("SI\r\n", {{"S I\r\n"}});

    EXPECT_EQ(Weigh(2), 0);

    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_EQ(AfterReset().back(), kFail);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerToledoTest, Mode_2_fails_at_a_status_without_a_weight) {
    for (const char* answer : {"S S\r\n", "S D\r\n"}) {
        line.Answer("SI\r\n", {{answer}});
        EXPECT_EQ(Weigh(2), 0);
    }
}

TEST_F(WbalanceMettlerToledoTest, Mode_2_does_not_recognise_a_mark_behind_character_33) {
    line.Answer("SI\r\n", {{std::string(30, 'x') + "S D 1.00 g\r\n"}});

    EXPECT_EQ(Weigh(2), 0);

    EXPECT_EQ(AfterReset().back(), kFail);
}

TEST_F(WbalanceMettlerToledoTest, Mode_2_without_an_answer_fails_without_a_trace) {
    EXPECT_EQ(Weigh(2), 0);

    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(AfterReset(), ElementsAre(kUnstable, R"(write "SI\r\n")", "silent read"));
}

TEST_F(WbalanceMettlerToledoTest, Mode_2_when_each_call_fails) {
    ExpectWhenEachCallFails<WbalanceMettlerToledo>(
        {{"open /dev/ttyS0", 0, "held"},
         {"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "@\r\n")", 0, "closed"},
         {R"(write "SI\r\n")", 0, "open"},
         {"wait 1000", 2, "open"},
         {"wait 1000", 2, "open"},
         {"wait 1000", 2, "open"}},
        [](auto&) { scripted::Line::Here().Answer("SI\r\n", {{"S D  1.00 g\r\n"}}); },
        [](auto& driver) {
            double grams = -1.0;
            return driver.Weight(2, &grams, nullptr);
        });
}

// Weight in mode 1: a stable one, or the average of dynamic ones.

TEST_F(WbalanceMettlerToledoTest, Mode_1_reads_a_stable_weight_without_a_pause_before) {
    line.Answer("S\r\n", {{"S S     100.00 g\r\n"}});

    EXPECT_EQ(Weigh(1), 1);

    EXPECT_EQ(weight, 100.0);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(AfterReset(), ElementsAre(kStable, R"(write "S\r\n")",
                                          R"(read "S S     100.00 g\r\n")", Concluded("100.00")));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerToledoTest, Mode_1_that_cannot_be_sent_fails_without_a_trace_of_a_weight) {
    line.Fail("write", 2);

    EXPECT_EQ(Weigh(1), 0);

    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(AfterReset(), ElementsAre(kStable, R"(write "S\r\n": refused)"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerToledoTest, Mode_1_averages_five_dynamic_weights_when_S_gets_no_answer) {
    for (const char* answer : {"S D 10.0 g\r\n", "S D 11.0 g\r\n", "S D 12.0 g\r\n",
                               "S D 13.0 g\r\n", "S D 14.25 g\r\n"})
        line.Answer("SI\r\n", {{answer}});

    EXPECT_EQ(Weigh(1), 2);

    EXPECT_EQ(weight, 12.05);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(AfterReset(),
                ElementsAre(kStable, R"(write "S\r\n")", "silent read", "Sleep 1000",  //
                            "clear input", kUnstable, R"(write "SI\r\n")",             //
                            R"(read "S D 10.0 g\r\n")", "Sleep 500",                   //
                            "clear input", kUnstable, R"(write "SI\r\n")",             //
                            R"(read "S D 11.0 g\r\n")", "Sleep 500",                   //
                            "clear input", kUnstable, R"(write "SI\r\n")",             //
                            R"(read "S D 12.0 g\r\n")", "Sleep 500",                   //
                            "clear input", kUnstable, R"(write "SI\r\n")",             //
                            R"(read "S D 13.0 g\r\n")", "Sleep 500",                   //
                            "clear input", kUnstable, R"(write "SI\r\n")",             //
                            R"(read "S D 14.25 g\r\n")", "Sleep 500", Concluded("12.05")));
    EXPECT_TRUE(line.IsOpen());
}

// Always divided by five: a pass without an answer counts as zero.
TEST_F(WbalanceMettlerToledoTest, Mode_1_with_10_10_10_and_two_silences_returns_6) {
    for (int i = 0; i < 3; ++i)
        line.Answer("SI\r\n", {{"S D 10 g\r\n"}});

    EXPECT_EQ(Weigh(1), 2);

    EXPECT_EQ(weight, 6.0);
    EXPECT_THAT(line.Sleeps(), ElementsAre(1000, 500, 500, 500, 500, 500));
    EXPECT_EQ(AfterReset().back(), Concluded("6.00"));
}

TEST_F(WbalanceMettlerToledoTest, Mode_1_with_one_dynamic_weight_returns_a_fifth_of_it) {
    line.Answer("SI\r\n", {{"S D -10.0 g\r\n"}});

    EXPECT_EQ(Weigh(1), 2);

    EXPECT_EQ(weight, -2.0);
}

TEST_F(WbalanceMettlerToledoTest, Mode_1_with_a_silence_between_dynamic_weights_goes_on) {
    line.Answer("SI\r\n", {{"S D 10 g\r\n"}});
    line.Answer("SI\r\n", {});
    line.Answer("SI\r\n", {{"S D 10 g\r\n"}});
    line.Answer("SI\r\n", {});
    line.Answer("SI\r\n", {{"S D 10 g\r\n"}});

    EXPECT_EQ(Weigh(1), 2);

    EXPECT_EQ(weight, 6.0);
}

TEST_F(WbalanceMettlerToledoTest, Mode_1_returns_a_stable_third_answer_alone) {
    line.Answer("SI\r\n", {{"S D 10.0 g\r\n"}});
    line.Answer("SI\r\n", {{"S D 20.0 g\r\n"}});
    line.Answer("SI\r\n", {{"S S 30.5 g\r\n"}});

    EXPECT_EQ(Weigh(1), 1);

    EXPECT_EQ(weight, 30.5);
    EXPECT_THAT(line.Sent(), ElementsAre("@\r\n", "S\r\n", "SI\r\n", "SI\r\n", "SI\r\n"));
    EXPECT_THAT(line.Sleeps(), ElementsAre(1000, 500, 500));
    EXPECT_EQ(AfterReset().back(), Concluded("30.50"));
}

TEST_F(WbalanceMettlerToledoTest, Mode_1_goes_on_to_SI_after_an_answer_that_is_not_stable) {
    line.Answer("S\r\n", {{"S I\r\n"}});
    line.Answer("SI\r\n", {{"S S 30.5 g\r\n"}});

    EXPECT_EQ(Weigh(1), 1);

    EXPECT_EQ(weight, 30.5);
    EXPECT_THAT(AfterReset(),
                ElementsAre(kStable, R"(write "S\r\n")", R"(read "S I\r\n")", kFail, "Sleep 1000",
                            "clear input", kUnstable, R"(write "SI\r\n")",
                            R"(read "S S 30.5 g\r\n")", Concluded("30.50")));
}

TEST_F(WbalanceMettlerToledoTest, Mode_1_does_not_take_a_dynamic_answer_to_S) {
    line.Answer("S\r\n", {{"S D 99.0 g\r\n"}});
    line.Answer("SI\r\n", {{"S D 10 g\r\n"}});

    EXPECT_EQ(Weigh(1), 2);

    EXPECT_EQ(weight, 2.0);
}

TEST_F(WbalanceMettlerToledoTest, Mode_1_with_silence_only_gives_up_after_one_SI) {
    EXPECT_EQ(Weigh(1), 0);

    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(AfterReset(),
                ElementsAre(kStable, R"(write "S\r\n")", "silent read", "Sleep 1000", "clear input",
                            kUnstable, R"(write "SI\r\n")", "silent read", Concluded("0.00")));
    EXPECT_EQ(line.Now(), 3000 + 1000 + 3000);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerToledoTest, Mode_1_with_an_error_after_dynamic_weights_returns_0) {
    line.Answer("SI\r\n", {{"S D 10.0 g\r\n"}});
    line.Answer("SI\r\n", {{"S D 20.0 g\r\n"}});
    line.Answer("SI\r\n", {{"S +\r\n"}});

    EXPECT_EQ(Weigh(1), 0);

    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, 1);  // as the answers before had it
    const std::vector<std::string> steps = AfterReset();
    EXPECT_THAT(std::vector(steps.end() - 3, steps.end()),
                ElementsAre(R"(read "S +\r\n")", kFail, Concluded("0.00")));
}

TEST_F(WbalanceMettlerToledoTest, Mode_1_that_cannot_clear_before_the_first_SI_returns_0) {
    line.Fail("clear", 2);

    EXPECT_EQ(Weigh(1), 0);

    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(AfterReset(), ElementsAre(kStable, R"(write "S\r\n")", "silent read", "Sleep 1000",
                                          "clear input: refused", Concluded("0.00")));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerToledoTest, Mode_1_that_cannot_send_the_first_SI_returns_0) {
    line.Fail("write", 3);

    EXPECT_EQ(Weigh(1), 0);

    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(AfterReset(),
                ElementsAre(kStable, R"(write "S\r\n")", "silent read", "Sleep 1000", "clear input",
                            kUnstable, R"(write "SI\r\n": refused)", Concluded("0.00")));
}

TEST_F(WbalanceMettlerToledoTest, Mode_1_that_cannot_clear_later_averages_what_it_has) {
    line.Answer("SI\r\n", {{"S D 10 g\r\n"}});
    line.Answer("SI\r\n", {{"S D 15 g\r\n"}});
    line.Fail("clear", 4);

    EXPECT_EQ(Weigh(1), 2);

    EXPECT_EQ(weight, 5.0);
    const std::vector<std::string> steps = AfterReset();
    EXPECT_THAT(std::vector(steps.end() - 3, steps.end()),
                ElementsAre("Sleep 500", "clear input: refused", Concluded("5.00")));
}

TEST_F(WbalanceMettlerToledoTest, Mode_1_that_cannot_send_later_averages_what_it_has) {
    line.Answer("SI\r\n", {{"S D 10 g\r\n"}});
    line.Fail("write", 4);

    EXPECT_EQ(Weigh(1), 2);

    EXPECT_EQ(weight, 2.0);
    EXPECT_TRUE(line.IsOpen());
}

// Every pass discards what came late: an answer to the S before is not taken for one to SI.
TEST_F(WbalanceMettlerToledoTest, Mode_1_throws_away_an_answer_to_S_that_comes_in_the_pause) {
    line.Answer("S\r\n", {{"S S 99.0 g\r\n", 3500}});
    line.Answer("SI\r\n", {{"S S 30.5 g\r\n"}});

    EXPECT_EQ(Weigh(1), 1);

    EXPECT_EQ(weight, 30.5);
}

TEST_F(WbalanceMettlerToledoTest, Mode_1_when_each_call_fails) {
    ExpectWhenEachCallFails<WbalanceMettlerToledo>(
        {{"open /dev/ttyS0", 0, "held"},
         {"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "@\r\n")", 0, "closed"},
         {R"(write "S\r\n")", 0, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"},
         {"clear input", 0, "open"},
         {R"(write "SI\r\n")", 0, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open"}},
        [](auto&) { scripted::Line::Here().Answer("SI\r\n", {{"S S  1.00 g\r\n"}}); },
        [](auto& driver) {
            double grams = -1.0;
            return driver.Weight(1, &grams, nullptr);
        });
}

TEST_F(WbalanceMettlerToledoTest, Unplugged_in_the_middle_of_a_weighing_it_fails_and_ends) {
    line.Fail("wait", 2, PortFault::HangUp);

    EXPECT_EQ(Weigh(1), 0);

    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(AfterReset().back(), Concluded("0.00"));
}

}  // namespace
