#include <climits>
#include <csignal>
#include <functional>

#include "Dialogue.h"
#include "Host.h"

using scripted::Dialogue;
using scripted::Host;
using scripted::Open;
using scripted::PortFault;
using scripted::ScriptedTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::KilledBySignal;

namespace {

const Dialogue kDialogue({"setBaudRate 9600", "setDataBits 7", "setParity even", "setStopBits 1",
                          "setFlowControl none",
                          R"(trace "Balance Comm Port settings:\nBaud rate = 9600\nParity = 2\n)"
                          R"(Data bits = 7\nStop bits = 0\nFlow control = 0\nTimeout = 1\n)"
                          R"(===> OK\n\n")"});

// As the instrument sends it: command, stability mark, blank, sign, mass, blank, unit.
constexpr char kStableFrame[] = "S        12.345 g  \r\n";
constexpr char kImmediateFrame[] = "SI ? -    0.012 g  \r\n";

class WbalanceRadwagTest : public ScriptedTest {
 protected:
    std::vector<std::string> Steps() const { return kDialogue.Of(line); }

    Open<WbalanceRadwag> balance;
    double weight = -1.0;
    int decimals = -1;
};

struct Operation {
    const char* name;
    std::function<int(WbalanceRadwag&)> call;
};

int WeightOf(WbalanceRadwag& balance, long mode) {
    double weight = -1.0;
    int decimals = -1;
    const int status = balance.Weight(mode, &weight, &decimals);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, -1);
    return status;
}

const std::vector<Operation> kOperations = {
    {"_Tare", [](WbalanceRadwag& balance) { return balance._Tare(); }},
    {"Zero", [](WbalanceRadwag& balance) { return balance.Zero(); }},
    {"Weight 0", [](WbalanceRadwag& balance) { return WeightOf(balance, 0); }},
    {"Weight 2", [](WbalanceRadwag& balance) { return WeightOf(balance, 2); }}};

// Settings

TEST_F(WbalanceRadwagTest, Begins_with_9600_baud_even_parity_7_data_bits_on_port_S0_and_1_s) {
    EXPECT_EQ(balance.portNumber, 0);
    EXPECT_EQ(balance.baudRate, 9600);
    EXPECT_EQ(balance.parityCode, 2);
    EXPECT_EQ(balance.dataBits, 7);
    EXPECT_EQ(balance.stopBitsCode, 0);
    EXPECT_EQ(balance.flowControlCode, 0);
    EXPECT_EQ(balance.timeoutSeconds, 1);
    EXPECT_EQ(balance.portKind, 'S');
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceRadwagTest, Preset_tare_and_factory_settings_send_nothing_and_return_1) {
    EXPECT_EQ(balance.TareSet(12.5), 1);
    EXPECT_EQ(balance.RestoreFactorySettings(), 1);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// Readiness

TEST_F(WbalanceRadwagTest, Ready_opens_configures_and_clears_the_line_and_sends_nothing) {
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_THAT(Steps(), ElementsAre("opening"));
    EXPECT_TRUE(line.IsOpen());
    EXPECT_EQ(line.Now(), 0);
}

TEST_F(WbalanceRadwagTest, Ready_finds_the_port_held_and_configures_and_clears_it_again) {
    balance.IsReady();
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_THAT(Steps(), ElementsAre("opening", "opening again"));
}

TEST_F(WbalanceRadwagTest, Ready_refuses_a_negative_port_number_without_a_trace) {
    balance.portNumber = -1;
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceRadwagTest, Ready_holds_a_port_that_did_not_open_and_tries_it_again_the_time_after) {
    line.Fail("open");
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_EQ(line.Trace(), "INVALID COMM PORT ... UNABLE OPENING /dev/ttyS0!\n\n");
    EXPECT_EQ(line.PortObjects(), 1);
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_EQ(line.PortObjects(), 0);
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceRadwagTest, Ready_closes_a_port_that_does_not_clear) {
    line.Fail("clear");
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_EQ(line.PortObjects(), 0);
    EXPECT_THAT(line.Transcript().back(), R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")");
    EXPECT_EQ(balance.IsReady(), 1);
}

TEST_F(WbalanceRadwagTest, Every_operation_fails_and_sends_nothing_when_the_line_is_not_ready) {
    for (const Operation& operation : kOperations) {
        // Open, the five settings, clear.
        for (int call = 1; call <= 7; ++call) {
            SCOPED_TRACE(operation.name + (" with call " + std::to_string(call) + " refused"));
            line.Reset();
            Open<WbalanceRadwag> fresh;
            line.FailCall(call);
            EXPECT_EQ(operation.call(fresh), 0);
            EXPECT_THAT(line.Sent(), IsEmpty());
            EXPECT_THAT(line.Sleeps(), IsEmpty());
            EXPECT_FALSE(line.IsOpen());
            EXPECT_EQ(line.PortObjects(), call == 1 ? 1 : 0);
            EXPECT_EQ(fresh.serialObject == nullptr, call >= 2 && call <= 6);
        }
    }
}

TEST_F(WbalanceRadwagTest, Every_operation_fails_silently_once_the_settings_were_refused) {
    balance.SetCommConfig(9600, 2, 7, 0, 0, 61, 'S');
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_EQ(balance.serialObject, nullptr);
    line.Forget();
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.name);
        EXPECT_EQ(operation.call(balance), 0);
    }
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_EQ(WeightOf(balance, 1), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceRadwagTest, Every_operation_ends_at_a_command_that_is_not_taken_and_leaves_it_open) {
    for (const Operation& operation : kOperations) {
        for (const PortFault fault : {PortFault::Refuse, PortFault::ShortWrite}) {
            SCOPED_TRACE(operation.name);
            line.Reset();
            Open<WbalanceRadwag> fresh;
            line.Fail("write", 1, fault);
            EXPECT_EQ(operation.call(fresh), 0);
            EXPECT_THAT(line.Sleeps(), IsEmpty());
            EXPECT_EQ(line.Now(), 0);
            EXPECT_TRUE(line.IsOpen());
        }
    }
}

TEST_F(WbalanceRadwagTest,
       Every_operation_ends_without_a_hang_when_the_line_is_unplugged_under_it) {
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.name);
        line.Reset();
        Open<WbalanceRadwag> fresh;
        line.Fail("wait", 1, PortFault::HangUp);
        EXPECT_EQ(operation.call(fresh), 0);
        EXPECT_LE(line.Now(), 1000);
        EXPECT_TRUE(line.IsOpen());
        // The settings are refused now, and that is for good.
        EXPECT_EQ(operation.call(fresh), 0);
        EXPECT_EQ(fresh.serialObject, nullptr);
    }
}

TEST_F(WbalanceRadwagTest,
       Every_operation_asks_a_hosts_own_readiness_and_sends_nothing_after_its_0) {
    Host<WbalanceRadwag> own;
    own.readiness = [] { return 0; };
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.name);
        own.calls.clear();
        EXPECT_EQ(operation.call(own), 0);
        EXPECT_EQ(own.ReadinessChecks(), 1);
    }
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceRadwagTest, Tare_and_mode_1_ask_a_hosts_own_readiness_for_each_of_their_steps) {
    Host<WbalanceRadwag> own;
    EXPECT_EQ(own.Tare(), 0);
    EXPECT_EQ(own.ReadinessChecks(), 3);
    own.calls.clear();
    EXPECT_EQ(WeightOf(own, 1), 0);
    EXPECT_EQ(own.ReadinessChecks(), 3);
}

// Tare and zero, once

TEST_F(WbalanceRadwagTest, Zero_fails_in_a_driver_without_memory_for_its_serial_object) {
    line.FailNextAllocation();
    Open<WbalanceRadwag> driver;
    EXPECT_EQ(driver.serialObject, nullptr);
    EXPECT_EQ(driver.Zero(), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceRadwagTest,
       One_tare_that_is_done_at_once_from_the_open_to_the_trace_of_its_success) {
    line.Answer("T\r\n", {{"T A\r\nT D\r\n"}});
    EXPECT_EQ(balance._Tare(), 1);
    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(
            "open /dev/ttyS0", R"(trace "/dev/ttyS0 OPENED SUCCESSFULLY!\n\n")", "setBaudRate 9600",
            "setDataBits 7", "setParity even", "setStopBits 1", "setFlowControl none",
            R"(trace "Balance Comm Port settings:\nBaud rate = 9600\nParity = 2\n)"
            R"(Data bits = 7\nStop bits = 0\nFlow control = 0\nTimeout = 1\n===> OK\n\n")",
            "clear input", R"(trace "Sending tare command...")", R"(trace "Radwag - Tare\n")",
            R"(write "T\r\n")", R"(trace "<== T\r\n ... OK\n\n")", "wait 1000: data",
            R"(read "T A\r\nT D\r\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")", "wait 1000: silence",
            R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
            R"(trace "Read from scale: T A\r\nT D\r\n (time elapsed: 2000 ms)\n")",
            R"(trace "Radwag - Success.\n\n")"));
    EXPECT_TRUE(line.IsOpen());
    EXPECT_EQ(line.Now(), 2000);
}

TEST_F(WbalanceRadwagTest, One_zero_that_is_done_at_once) {
    line.Answer("Z\r\n", {{"Z A\r\n"}, {"Z D\r\n", 1500}});
    EXPECT_EQ(balance.Zero(), 1);
    EXPECT_THAT(Steps(),
                ElementsAre("opening", R"(trace "Sending zero command...")",
                            R"(trace "Radwag - Zero\n")", R"(write "Z\r\n")", R"(read "Z A\r\n")",
                            R"(read "Z D\r\n")", R"(trace "Radwag - Success.\n\n")"));
}

TEST_F(WbalanceRadwagTest, One_tare_that_is_done_late_is_read_a_second_time_and_sent_once) {
    line.Answer("T\r\n", {{"T A\r\n"}, {"T D\r\n", 4000}});
    EXPECT_EQ(balance._Tare(), 1);
    EXPECT_THAT(Steps(),
                ElementsAre("opening", R"(trace "Sending tare command...")",
                            R"(trace "Radwag - Tare\n")", R"(write "T\r\n")", R"(read "T A\r\n")",
                            R"(trace "Radwag - Command fail!\n\n")", "Sleep 300",
                            R"(read "T D\r\n")", R"(trace "Radwag - Success.\n\n")"));
    EXPECT_EQ(line.Now(), 5000);
}

TEST_F(WbalanceRadwagTest, One_zero_that_is_done_after_a_silent_first_read_succeeds) {
    line.Answer("Z\r\n", {{"Z D\r\n", 3100}});
    EXPECT_EQ(balance.Zero(), 1);
    EXPECT_THAT(Steps(),
                ElementsAre("opening", R"(trace "Sending zero command...")",
                            R"(trace "Radwag - Zero\n")", R"(write "Z\r\n")", "silent read",
                            "Sleep 300", R"(read "Z D\r\n")", R"(trace "Radwag - Success.\n\n")"));
}

TEST_F(WbalanceRadwagTest, One_tare_fails_after_two_silent_reads_with_a_pause_after_each) {
    EXPECT_EQ(balance._Tare(), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening", R"(trace "Sending tare command...")",
                                     R"(trace "Radwag - Tare\n")", R"(write "T\r\n")",
                                     "silent read", "Sleep 300", "silent read", "Sleep 300"));
    EXPECT_EQ(line.Now(), 6600);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceRadwagTest, One_zero_fails_after_two_silent_reads_with_a_pause_after_each) {
    EXPECT_EQ(balance.Zero(), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening", R"(trace "Sending zero command...")",
                                     R"(trace "Radwag - Zero\n")", R"(write "Z\r\n")",
                                     "silent read", "Sleep 300", "silent read", "Sleep 300"));
    EXPECT_EQ(line.Now(), 6600);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceRadwagTest, One_tare_traces_each_read_without_T_D_as_a_failure) {
    line.Answer("T\r\n", {{"T v\r\n"}, {"ES\r\n", 3000}});
    EXPECT_EQ(balance._Tare(), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening", R"(trace "Sending tare command...")",
                                     R"(trace "Radwag - Tare\n")", R"(write "T\r\n")",
                                     R"(read "T v\r\n")", R"(trace "Radwag - Command fail!\n\n")",
                                     "Sleep 300", R"(read "ES\r\n")",
                                     R"(trace "Radwag - Command fail!\n\n")", "Sleep 300"));
}

TEST_F(WbalanceRadwagTest, One_tare_is_not_done_by_Z_D_and_one_zero_not_by_T_D) {
    line.AlwaysAnswer("T\r\n", {{"Z D\r\n"}});
    line.AlwaysAnswer("Z\r\n", {{"T D\r\n"}});
    EXPECT_EQ(balance._Tare(), 0);
    EXPECT_EQ(balance.Zero(), 0);
}

TEST_F(WbalanceRadwagTest, One_tare_ignores_what_came_before_it_was_sent) {
    line.Arrive(0, "T D\r\n");
    EXPECT_EQ(balance._Tare(), 0);
    EXPECT_THAT(line.Left(), ElementsAre("T\r\n"));
}

TEST_F(WbalanceRadwagTest, One_tare_finds_T_D_that_ends_with_the_65th_character) {
    line.Answer("T\r\n", {{std::string(62, '.') + "T D\r\n"}});
    EXPECT_EQ(balance._Tare(), 1);
}

TEST_F(WbalanceRadwagTest, One_tare_does_not_see_T_D_that_reaches_behind_the_65th_character) {
    line.Answer("T\r\n", {{std::string(63, '.') + "T D\r\n"}});
    EXPECT_EQ(balance._Tare(), 0);
}

TEST_F(WbalanceRadwagTest, One_tare_does_not_see_T_D_behind_an_embedded_zero) {
    line.Answer("T\r\n", {{std::string("\0T D\r\n", 6)}});
    EXPECT_EQ(balance._Tare(), 0);
    EXPECT_THAT(Steps(),
                ElementsAre("opening", R"(trace "Sending tare command...")",
                            R"(trace "Radwag - Tare\n")", R"(write "T\r\n")",
                            R"(read "\x00T D\r\n")", R"(trace "Radwag - Command fail!\n\n")",
                            "Sleep 300", "silent read", "Sleep 300"));
}

TEST_F(WbalanceRadwagTest, One_tare_finds_T_D_among_characters_with_the_8th_bit_set) {
    line.Answer("T\r\n", {{"\xff\xfe T D\x8d\n"}});
    EXPECT_EQ(balance._Tare(), 1);
}

// Tare

TEST_F(WbalanceRadwagTest, Tare_that_is_done_sends_one_T) {
    line.Answer("T\r\n", {{"T A\r\nT D\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_THAT(line.Sent(), ElementsAre("T\r\n"));
}

TEST_F(WbalanceRadwagTest, Tare_that_gets_Z_D_after_no_T_D_sends_one_T_and_one_Z) {
    line.Answer("T\r\n", {{"T A\r\nT v\r\n"}});
    line.Answer("Z\r\n", {{"Z A\r\nZ D\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_THAT(
        Steps(),
        ElementsAre("opening", R"(trace "Sending tare command...")", R"(trace "Radwag - Tare\n")",
                    R"(write "T\r\n")", R"(read "T A\r\nT v\r\n")",
                    R"(trace "Radwag - Command fail!\n\n")", "Sleep 300", "silent read",
                    "Sleep 300", "opening again", R"(trace "Sending zero command...")",
                    R"(trace "Radwag - Zero\n")", R"(write "Z\r\n")", R"(read "Z A\r\nZ D\r\n")",
                    R"(trace "Radwag - Success.\n\n")"));
}

TEST_F(WbalanceRadwagTest, Tare_that_gets_neither_T_D_nor_Z_D_sends_a_second_T_that_decides) {
    line.Answer("T\r\n", {{"T E\r\n"}});
    line.Answer("Z\r\n", {{"Z ^\r\n"}});
    line.Answer("T\r\n", {{"T D\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_THAT(line.Sent(), ElementsAre("T\r\n", "Z\r\n", "T\r\n"));
}

TEST_F(WbalanceRadwagTest, Tare_of_a_silent_balance_fails_after_six_silent_reads) {
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(
        Steps(),
        ElementsAre("opening", R"(trace "Sending tare command...")", R"(trace "Radwag - Tare\n")",
                    R"(write "T\r\n")", "silent read", "Sleep 300", "silent read", "Sleep 300",
                    "opening again", R"(trace "Sending zero command...")",
                    R"(trace "Radwag - Zero\n")", R"(write "Z\r\n")", "silent read", "Sleep 300",
                    "silent read", "Sleep 300", "opening again",
                    R"(trace "Sending tare command...")", R"(trace "Radwag - Tare\n")",
                    R"(write "T\r\n")", "silent read", "Sleep 300", "silent read", "Sleep 300"));
    EXPECT_EQ(line.Now(), 19800);
}

TEST_F(WbalanceRadwagTest, Tare_goes_on_to_zero_when_its_first_command_is_not_taken) {
    line.Fail("write");
    line.Answer("Z\r\n", {{"Z D\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_THAT(line.Sent(), ElementsAre("Z\r\n"));
}

TEST_F(WbalanceRadwagTest, Tare_opens_for_the_zero_what_a_failing_clear_closed) {
    line.Fail("clear");
    line.Answer("Z\r\n", {{"Z D\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_THAT(line.Sent(), ElementsAre("Z\r\n"));
    EXPECT_TRUE(line.IsOpen());
}

// Weight, mode 0

TEST_F(WbalanceRadwagTest, A_stable_weight_in_mode_0_that_comes_with_its_S_A) {
    line.Answer("S\r\n", {{"S A\r\n"}, {kStableFrame, 800}});
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 12.345);
    EXPECT_EQ(decimals, 3);
    EXPECT_THAT(Steps(),
                ElementsAre("opening", R"(trace "Radwag - Stable weight\n")", R"(write "S\r\n")",
                            R"(read "S A\r\n")", R"(read "S        12.345 g  \r\n")",
                            R"(trace "Radwag - weight = 12.35 cc.\n\n")"));
    EXPECT_EQ(line.Now(), 1800);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceRadwagTest, Mode_0_reads_again_while_the_command_is_in_progress) {
    line.Answer("S\r\n", {{"S A\r\n"}, {kStableFrame, 4000}});
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 12.345);
    EXPECT_EQ(decimals, 3);
    EXPECT_THAT(Steps(),
                ElementsAre("opening", R"(trace "Radwag - Stable weight\n")", R"(write "S\r\n")",
                            R"(read "S A\r\n")", R"(trace "Radwag - Command in progress..\n")",
                            "Sleep 300", R"(read "S        12.345 g  \r\n")",
                            R"(trace "Radwag - weight = 12.35 cc.\n\n")"));
}

TEST_F(WbalanceRadwagTest, Mode_0_takes_S_I_for_a_command_in_progress_too) {
    line.Answer("S\r\n", {{"S I\r\n"}, {kStableFrame, 4000}});
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 12.345);
    EXPECT_THAT(line.Trace(), testing::HasSubstr("Radwag - Command in progress..\n"));
}

TEST_F(WbalanceRadwagTest, Mode_0_gives_up_after_three_reads_that_say_in_progress) {
    line.Answer("S\r\n", {{"S A\r\n"}, {"S A\r\n", 3000}, {"S I\r\n", 6000}});
    EXPECT_EQ(WeightOf(balance, 0), 0);
    EXPECT_THAT(
        Steps(),
        ElementsAre("opening", R"(trace "Radwag - Stable weight\n")", R"(write "S\r\n")",
                    R"(read "S A\r\n")", R"(trace "Radwag - Command in progress..\n")", "Sleep 300",
                    R"(read "S A\r\n")", R"(trace "Radwag - Command in progress..\n")", "Sleep 300",
                    R"(read "S I\r\n")", R"(trace "Radwag - Command in progress..\n")",
                    "Sleep 300"));
}

TEST_F(WbalanceRadwagTest, Mode_0_gives_up_after_three_silent_reads_without_a_trace) {
    EXPECT_EQ(WeightOf(balance, 0), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening", R"(trace "Radwag - Stable weight\n")",
                                     R"(write "S\r\n")", "silent read", "Sleep 300", "silent read",
                                     "Sleep 300", "silent read", "Sleep 300"));
    EXPECT_EQ(line.Now(), 9900);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceRadwagTest, Mode_0_takes_a_frame_that_comes_with_the_third_read) {
    line.Answer("S\r\n", {{kStableFrame, 7000}});
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 12.345);
    EXPECT_THAT(line.Sleeps(), ElementsAre(300, 300));
    EXPECT_THAT(line.Sent(), ElementsAre("S\r\n"));
}

TEST_F(WbalanceRadwagTest, Mode_0_ends_at_S_E_without_another_read) {
    line.Answer("S\r\n", {{"S E\r\n"}, {kStableFrame, 4000}});
    EXPECT_EQ(WeightOf(balance, 0), 0);
    EXPECT_THAT(Steps(),
                ElementsAre("opening", R"(trace "Radwag - Stable weight\n")", R"(write "S\r\n")",
                            R"(read "S E\r\n")", R"(trace "Radwag - Command timeout!\n")"));
    EXPECT_EQ(line.Now(), 2000);
}

TEST_F(WbalanceRadwagTest, Mode_0_ends_at_S_E_even_between_S_A_and_a_frame) {
    line.Answer("S\r\n", {{"S A\r\nS E\r\n"}, {kStableFrame, 500}});
    EXPECT_EQ(WeightOf(balance, 0), 0);
    EXPECT_THAT(line.Trace(), testing::HasSubstr("Radwag - Command timeout!\n"));
}

TEST_F(WbalanceRadwagTest, Mode_0_ends_at_an_answer_that_is_neither_a_frame_nor_a_status) {
    for (const char* answer : {"ES\r\n", "\r\n", "SI I\r\n", "SI       12.345 g  \r\n", "T D\r\n",
                               "^      0.000 kg \r\n", "S ^       0.000 g  \r\n"}) {
        SCOPED_TRACE(answer);
        line.Reset();
        Open<WbalanceRadwag> fresh;
        line.Answer("S\r\n", {{answer}, {kStableFrame, 4000}});
        EXPECT_EQ(WeightOf(fresh, 0), 0);
        EXPECT_THAT(Steps(), ElementsAre("opening", R"(trace "Radwag - Stable weight\n")",
                                         R"(write "S\r\n")", "read " + scripted::Quoted(answer),
                                         R"(trace "Radwag - Command fail!\n")"));
    }
}

TEST_F(WbalanceRadwagTest, Mode_0_reads_a_load_out_of_range_as_the_mass_behind_its_mark) {
    line.Answer("S\r\n", {{"S  ^      0.000 g  \r\n"}});
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, 3);
}

TEST_F(WbalanceRadwagTest, Mode_0_takes_no_decimals_pointer_for_not_wanted) {
    line.Answer("S\r\n", {{kStableFrame}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.345);
}

TEST_F(WbalanceRadwagTest, A_weight_without_a_point_leaves_the_decimals_as_they_were) {
    line.Answer("S\r\n", {{"S            12 g  \r\n"}});
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 12.0);
    EXPECT_EQ(decimals, -1);
}

TEST_F(WbalanceRadwagTest, A_frame_that_begins_with_the_63rd_character_is_cut_and_reads_as_0) {
    line.Answer("S\r\n", {{std::string(62, '.') + kStableFrame}});
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, -1);
}

TEST_F(WbalanceRadwagTest, A_frame_that_begins_with_the_64th_character_is_not_seen) {
    line.Answer("S\r\n", {{std::string(63, '.') + kStableFrame}});
    EXPECT_EQ(WeightOf(balance, 0), 0);
}

// Weight, mode 2

TEST_F(WbalanceRadwagTest, An_immediate_weight_in_mode_2_is_reported_as_1_though_it_is_not_stable) {
    line.Answer("SI\r\n", {{kImmediateFrame}});
    EXPECT_EQ(balance.Weight(2, &weight, &decimals), 1);
    EXPECT_EQ(weight, -0.012);
    EXPECT_EQ(decimals, 3);
    EXPECT_THAT(Steps(), ElementsAre("opening", R"(trace "Radwag - Unstable weight\n")",
                                     R"(write "SI\r\n")", R"(read "SI ? -    0.012 g  \r\n")",
                                     R"(trace "Radwag - weight = -0.01 cc.\n\n")"));
    EXPECT_EQ(line.Now(), 2000);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceRadwagTest, Mode_2_gives_up_after_SI_I_in_three_reads_and_900_ms_of_pauses) {
    line.Answer("SI\r\n", {{"SI I\r\n"}, {"SI I\r\n", 3000}, {"SI I\r\n", 6000}});
    EXPECT_EQ(WeightOf(balance, 2), 0);
    EXPECT_THAT(Steps(),
                ElementsAre("opening", R"(trace "Radwag - Unstable weight\n")", R"(write "SI\r\n")",
                            R"(read "SI I\r\n")", R"(trace "Radwag - Command in progress..\n")",
                            "Sleep 300", R"(read "SI I\r\n")",
                            R"(trace "Radwag - Command in progress..\n")", "Sleep 300",
                            R"(read "SI I\r\n")", R"(trace "Radwag - Command in progress..\n")",
                            "Sleep 300"));
}

TEST_F(WbalanceRadwagTest, Mode_2_takes_a_frame_that_comes_in_the_read_after_SI_I) {
    line.Answer("SI\r\n", {{"SI I\r\n"}, {kImmediateFrame, 4000}});
    EXPECT_EQ(balance.Weight(2, &weight, &decimals), 1);
    EXPECT_EQ(weight, -0.012);
}

TEST_F(WbalanceRadwagTest, Mode_2_takes_SI_I_for_in_progress_even_with_a_frame_behind_it) {
    line.Answer("SI\r\n", {{std::string("SI I\r\n") + kImmediateFrame}});
    EXPECT_EQ(WeightOf(balance, 2), 0);
    EXPECT_THAT(line.Sleeps(), ElementsAre(300, 300, 300));
}

TEST_F(WbalanceRadwagTest, Mode_2_gives_up_after_three_silent_reads_without_a_trace) {
    EXPECT_EQ(WeightOf(balance, 2), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening", R"(trace "Radwag - Unstable weight\n")",
                                     R"(write "SI\r\n")", "silent read", "Sleep 300", "silent read",
                                     "Sleep 300", "silent read", "Sleep 300"));
    EXPECT_EQ(line.Now(), 9900);
}

TEST_F(WbalanceRadwagTest, Mode_2_ends_at_an_answer_that_is_neither_a_frame_nor_SI_I) {
    for (const char* answer : {"ES\r\n", "S A\r\n", kStableFrame, "SI\r\n"}) {
        SCOPED_TRACE(answer);
        line.Reset();
        Open<WbalanceRadwag> fresh;
        line.Answer("SI\r\n", {{answer}, {kImmediateFrame, 4000}});
        EXPECT_EQ(WeightOf(fresh, 2), 0);
        EXPECT_THAT(Steps(), ElementsAre("opening", R"(trace "Radwag - Unstable weight\n")",
                                         R"(write "SI\r\n")", "read " + scripted::Quoted(answer),
                                         R"(trace "Radwag - Command fail!\n")"));
    }
}

TEST_F(WbalanceRadwagTest, Mode_2_reads_a_late_stable_frame_in_preference_to_its_own) {
    line.Answer("SI\r\n", {{std::string(kImmediateFrame) + kStableFrame}});
    EXPECT_EQ(balance.Weight(2, &weight, &decimals), 1);
    EXPECT_EQ(weight, 12.345);
}

// Weight, mode 1 and others

TEST_F(WbalanceRadwagTest, Mode_1_is_a_reading_in_mode_0_after_a_readiness_of_its_own) {
    line.Answer("S\r\n", {{kStableFrame}});
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 1);
    EXPECT_EQ(weight, 12.345);
    EXPECT_EQ(decimals, 3);
    EXPECT_THAT(Steps(),
                ElementsAre("opening", "opening again", R"(trace "Radwag - Stable weight\n")",
                            R"(write "S\r\n")", R"(read "S        12.345 g  \r\n")",
                            R"(trace "Radwag - weight = 12.35 cc.\n\n")"));
}

TEST_F(WbalanceRadwagTest, Mode_1_reads_in_mode_2_after_mode_0_failed) {
    line.Answer("S\r\n", {{"S E\r\n"}});
    line.Answer("SI\r\n", {{kImmediateFrame}});
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 1);
    EXPECT_EQ(weight, -0.012);
    EXPECT_THAT(Steps(), ElementsAre("opening", "opening again",
                                     R"(trace "Radwag - Stable weight\n")", R"(write "S\r\n")",
                                     R"(read "S E\r\n")", R"(trace "Radwag - Command timeout!\n")",
                                     "opening again", R"(trace "Radwag - Unstable weight\n")",
                                     R"(write "SI\r\n")", R"(read "SI ? -    0.012 g  \r\n")",
                                     R"(trace "Radwag - weight = -0.01 cc.\n\n")"));
}

TEST_F(WbalanceRadwagTest, Mode_1_of_a_silent_balance_fails_after_six_silent_reads) {
    EXPECT_EQ(WeightOf(balance, 1), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("S\r\n", "SI\r\n"));
    EXPECT_EQ(line.Now(), 19800);
}

TEST_F(WbalanceRadwagTest, Mode_1_asks_a_hosts_own_weight_for_modes_0_and_2_and_passes_its_result) {
    Host<WbalanceRadwag> own;
    std::vector<long> asked;
    long succeeding = 0;
    own.weighing = [&](long mode, double* grams, int* count) {
        asked.push_back(mode);
        if (mode == 1) return own.WbalanceRadwag::Weight(mode, grams, count);
        EXPECT_EQ(grams, &weight);
        EXPECT_EQ(count, &decimals);
        *grams = static_cast<double>(mode);
        return mode == succeeding ? 7 : 0;
    };
    EXPECT_EQ(own.Weight(1, &weight, &decimals), 7);
    EXPECT_THAT(asked, ElementsAre(1, 0));

    asked.clear();
    succeeding = 2;
    EXPECT_EQ(own.Weight(1, &weight, &decimals), 7);
    EXPECT_THAT(asked, ElementsAre(1, 0, 2));

    asked.clear();
    succeeding = -1;
    EXPECT_EQ(own.Weight(1, &weight, &decimals), 0);
    EXPECT_THAT(asked, ElementsAre(1, 0, 2));
    EXPECT_THAT(line.Sent(), IsEmpty());
}

TEST_F(WbalanceRadwagTest, Any_other_mode_opens_the_line_and_fails) {
    for (const long mode : {-1L, 3L, 5L, LONG_MAX, LONG_MIN, 1L << 32}) {
        SCOPED_TRACE(mode);
        line.Reset();
        Open<WbalanceRadwag> fresh;
        EXPECT_EQ(WeightOf(fresh, mode), 0);
        EXPECT_THAT(Steps(), ElementsAre("opening"));
        EXPECT_TRUE(line.IsOpen());
    }
}

// A short noise on the line

TEST_F(WbalanceRadwagTest, Waits_that_signal_data_and_find_none_only_cost_their_attempts) {
    line.Answer("SI\r\n", {{kImmediateFrame}});
    line.Fail("wait", 1, PortFault::EmptyRead);
    line.Fail("wait", 2, PortFault::EmptyRead);
    EXPECT_EQ(balance.Weight(2, &weight, &decimals), 1);
    EXPECT_EQ(weight, -0.012);
}

TEST_F(WbalanceRadwagTest, A_weight_survives_any_one_wait_that_ends_early) {
    for (int wait = 1; wait <= 3; ++wait) {
        SCOPED_TRACE(wait);
        line.Reset();
        Open<WbalanceRadwag> fresh;
        line.Answer("S\r\n", {{kStableFrame, 10}});
        line.Fail("wait", wait);
        EXPECT_EQ(fresh.Weight(0, &weight, &decimals), 1);
        EXPECT_EQ(weight, 12.345);
    }
}

// The parser

struct Frame {
    const char* name;
    std::string answer;
    double weight;
    int decimals;  // -1: left as they were
};

void PrintTo(const Frame& frame, std::ostream* stream) {
    *stream << scripted::Quoted(frame.answer);
}

class WbalanceRadwagFrame : public testing::TestWithParam<Frame> {};

TEST_P(WbalanceRadwagFrame, Is_read_as) {
    WbalanceRadwag balance;
    std::string answer = GetParam().answer;
    double weight = -99.0;
    int decimals = -1;
    EXPECT_EQ(balance.ParseWeight(answer.data(), &weight, &decimals), 1);
    EXPECT_EQ(weight, GetParam().weight);
    EXPECT_EQ(decimals, GetParam().decimals);
}

INSTANTIATE_TEST_SUITE_P(
    WbalanceRadwag, WbalanceRadwagFrame,
    testing::Values(
        Frame{"stable", "S        100.00 g  \r\n", 100.0, 2},
        Frame{"stable_negative", "S    -      8.5 g  \r\n", -8.5, 1},
        Frame{"immediate_unstable", "SI ?       18.5 kg \r\n", 18.5, 1},
        Frame{"immediate_stable", "SI         0.05 g  \r\n", 0.05, 2},
        Frame{"immediate_sign_touching", "SI ?    -0.012 g\r\n", -0.012, 3},
        Frame{"22_bytes_with_a_blank_ahead", "S     -      8.5 g  \r\n", -8.5, 1},
        Frame{"out_of_range", "SI ^      0.000 g  \r\n", 0.0, 3},
        Frame{"behind_its_S_A", "S A\r\nS          8.5 g  \r\n", 8.5, 1},
        Frame{"without_line_end", "S   1.5", 1.5, 1},
        Frame{"without_point", "S          12 g  \r\n", 12.0, -1},
        Frame{"without_digits", "S                g  \r\n", 0.0, -1},
        Frame{"nothing_behind_the_mark", "S  ", 0.0, -1},
        Frame{"point_alone", "S     .  g  \r\n", 0.0, 0},
        Frame{"minus_alone", "S     -  g  \r\n", 0.0, -1},
        Frame{"point_at_the_end", "S    12.  g  \r\n", 12.0, 0},
        Frame{"point_in_front", "S    .5 g  \r\n", 0.5, 1},
        Frame{"two_points", "S    1.2.3 g  \r\n", 1.2, 3},
        Frame{"two_minuses", "S  - -5.0 g  \r\n", 0.0, 1},
        Frame{"minus_within", "S    1-2.5 g  \r\n", 1.0, 1},
        Frame{"minus_behind", "S    12.5- g  \r\n", 12.5, 2},
        Frame{"plus_dropped", "S  +   2.5 g  \r\n", 2.5, 1},
        Frame{"comma_dropped", "S    12,345 g  \r\n", 12345.0, -1},
        Frame{"letters_dropped", "S    1e2x3 g  \r\n", 123.0, -1},
        Frame{"digits_behind_the_unit_join", "S    5.0 g 7\r\n", 5.07, 2},
        Frame{"the_17_characters_end_the_number", "S  123456789.12345678 g", 123456789.123456, 6},
        Frame{"number_behind_17_blanks", "S" + std::string(18, ' ') + "5.0 g", 0.0, -1},
        Frame{"number_behind_more_blanks", "S" + std::string(25, ' ') + "5.0 g", 0.0, -1},
        Frame{"number_from_the_17th_character", "S" + std::string(17, ' ') + "5.0 g", 5.0, -1},
        Frame{"line_end_within_the_17_characters", "S  1.5\r\n2.5 g\r\n", 1.52, 4},
        Frame{"S_goes_before_an_earlier_SI", "SI 1.5 g\r\nS   2.5 g", 2.5, 1},
        Frame{"first_of_two_frames", "S      1.50000000000 g\r\nS   2.5 g", 1.5, 10},
        Frame{"99_characters", std::string(90, '.') + "S   1.5 g", 1.5, 1},
        Frame{"8th_bit_characters_dropped",
              "S   \xb1"
              "1.5\xb0g",
              1.5, 1}),
    [](const testing::TestParamInfo<Frame>& row) { return row.param.name; });

TEST_F(WbalanceRadwagTest, Parser_writes_nothing_for_an_answer_without_S_and_two_blanks_or_SI) {
    for (std::string answer : {"", "S", "S ", "S 1.5 g", "SI", "SI1.5", "s  1.5 g", "T D"}) {
        SCOPED_TRACE(answer);
        EXPECT_EQ(balance.ParseWeight(answer.data(), &weight, &decimals), 0);
        EXPECT_EQ(weight, -1.0);
        EXPECT_EQ(decimals, -1);
    }
}

TEST_F(WbalanceRadwagTest, Parser_takes_either_pointer_null) {
    std::string answer = kStableFrame;
    EXPECT_EQ(balance.ParseWeight(answer.data(), nullptr, &decimals), 1);
    EXPECT_EQ(decimals, 3);
    EXPECT_EQ(balance.ParseWeight(answer.data(), &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.345);
    EXPECT_EQ(balance.ParseWeight(answer.data(), nullptr, nullptr), 1);
    EXPECT_EQ(answer, kStableFrame);
}

using WbalanceRadwagDeathTest = WbalanceRadwagTest;

TEST_F(WbalanceRadwagDeathTest, An_answer_too_long_for_its_trace_ends_the_process) {
    line.AlwaysAnswer("T\r\n", {{std::string(1000, '.')}});
    EXPECT_EXIT(balance._Tare(), KilledBySignal(SIGABRT),
                "libwbalance: a trace line does not fit its buffer of 1024 bytes");
}

TEST_F(WbalanceRadwagTest, An_answer_of_900_characters_is_looked_at_in_its_beginning) {
    line.Answer("T\r\n", {{"T D\r\n" + std::string(895, '.')}});
    EXPECT_EQ(balance._Tare(), 1);
}

TEST_F(WbalanceRadwagDeathTest, Parser_ends_the_process_at_an_answer_of_100_characters) {
    std::string answer = std::string(91, '.') + "S   1.5 g";
    EXPECT_EXIT(balance.ParseWeight(answer.data(), &weight, &decimals), KilledBySignal(SIGABRT),
                "^libwbalance: a weight answer does not fit its buffer of 100 bytes\n$");
}

}  // namespace
