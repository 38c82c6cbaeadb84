#include <climits>
#include <cmath>
#include <csignal>
#include <functional>

#include "../Dialogue.h"
#include "../FailingCalls.h"

using scripted::Dialogue;
using scripted::ExpectWhenEachCallFails;
using scripted::FailingCall;
using scripted::Fault;
using scripted::Open;
using scripted::ScriptedTest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::KilledBySignal;
using testing::Not;

namespace {

const Dialogue kDialogue({"setBaudRate 2400", "setDataBits 7", "setParity even", "setStopBits 1",
                          "setFlowControl none",
                          R"(trace "Balance Comm Port settings:\nBaud rate = 2400\nParity = 2\n)"
                          R"(Data bits = 7\nStop bits = 0\nFlow control = 0\nTimeout = 1\n)"
                          R"(===> OK\n\n")"});

constexpr char kSerialNumber[] = "I4 A \"1126493049\"\r\n";
constexpr char kStable[] = "S S     100.00 g\r\n";
constexpr char kDynamic[] = "S D      10.00 g\r\n";

using Balance = Open<WbalanceMettlerPR2003>;

/// As after a first operation: the port is open and no reset is due.
void GetReady(Balance& balance) {
    scripted::Line& line = scripted::Line::Here();
    line.Answer("@\r\n", {{kSerialNumber}});
    ASSERT_EQ(balance.IsReady(), 1);
    line.Forget();
}

/// As after a text was shown.
void GetReadyWithText(Balance& balance) {
    GetReady(balance);
    balance.modelFlagB = 1;
}

class WbalanceMettlerPR2003Test : public ScriptedTest {
 protected:
    std::vector<std::string> Steps() const { return kDialogue.Of(line); }

    /// Makes the balance ready and begins to count the time.
    void Begin(bool withText = false) {
        withText ? GetReadyWithText(balance) : GetReady(balance);
        start = line.Now();
    }

    long Elapsed() const { return line.Now() - start; }

    long start = 0;
    Balance balance;
    double weight = -1.0;
    int decimals = -1;
};

struct Operation {
    const char* name;
    std::function<int(WbalanceMettlerPR2003&)> call;
};

int FailedWeight(WbalanceMettlerPR2003& balance, long mode) {
    double weight = -1.0;
    const int status = balance.Weight(mode, &weight, nullptr);
    EXPECT_EQ(weight, 0.0);
    return status;
}

int Display(WbalanceMettlerPR2003& balance, std::string text) {
    return balance.DisplayMessage(text.data());
}

const std::vector<Operation> kOperations = {
    {"Tare", [](WbalanceMettlerPR2003& balance) { return balance.Tare(); }},
    {"TareSet", [](WbalanceMettlerPR2003& balance) { return balance.TareSet(10.0); }},
    {"Weight 0", [](WbalanceMettlerPR2003& balance) { return FailedWeight(balance, 0); }},
    {"Weight 1", [](WbalanceMettlerPR2003& balance) { return FailedWeight(balance, 1); }},
    {"Weight 2", [](WbalanceMettlerPR2003& balance) { return FailedWeight(balance, 2); }},
    {"TurnItOn", [](WbalanceMettlerPR2003& balance) { return balance.TurnItOn(); }},
    {"TurnItOff", [](WbalanceMettlerPR2003& balance) { return balance.TurnItOff(); }},
    {"DisplayMessage", [](WbalanceMettlerPR2003& balance) { return Display(balance, "READY"); }}};

// Settings

TEST_F(WbalanceMettlerPR2003Test,
       Begins_with_2400_baud_even_parity_7_data_bits_1_s_and_a_reset_that_is_due) {
    EXPECT_EQ(balance.portNumber, 0);
    EXPECT_EQ(balance.baudRate, 2400);
    EXPECT_EQ(balance.parityCode, 2);
    EXPECT_EQ(balance.dataBits, 7);
    EXPECT_EQ(balance.stopBitsCode, 0);
    EXPECT_EQ(balance.flowControlCode, 0);
    EXPECT_EQ(balance.timeoutSeconds, 1);
    EXPECT_EQ(balance.portKind, 'S');
    EXPECT_EQ(balance.modelFlagB, 0);
    EXPECT_EQ(balance.modelFlagC, 1);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceMettlerPR2003Test, Factory_settings_send_nothing_and_return_1) {
    EXPECT_EQ(balance.RestoreFactorySettings(), 1);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// Readiness

TEST_F(WbalanceMettlerPR2003Test, First_readiness_resets_from_the_open_to_the_serial_number) {
    line.Answer("@\r\n", {{kSerialNumber}});
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_THAT(
        line.Transcript(),
        ElementsAre("open /dev/ttyS0", R"(trace "/dev/ttyS0 OPENED SUCCESSFULLY!\n\n")",
                    "setBaudRate 2400", "setDataBits 7", "setParity even", "setStopBits 1",
                    "setFlowControl none",
                    R"(trace "Balance Comm Port settings:\nBaud rate = 2400\nParity = 2\n)"
                    R"(Data bits = 7\nStop bits = 0\nFlow control = 0\nTimeout = 1\n===> OK\n\n")",
                    "clear input", R"(trace "Mettler PR - Reset\n")", R"(write "@\r\n")",
                    R"(trace "<== @\r\n ... OK\n\n")", "Sleep 500", "wait 1000: data",
                    R"(read "I4 A \"1126493049\"\r\n")",
                    R"(trace "Read from scale: I4 A \"1126493049\"\r\n (time elapsed: 0 ms)\n")"));
    EXPECT_EQ(balance.modelFlagC, 0);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test, A_later_readiness_only_opens_and_clears) {
    Begin();
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_THAT(Steps(), ElementsAre("opening again"));
    EXPECT_EQ(Elapsed(), 0);
}

TEST_F(WbalanceMettlerPR2003Test, Readiness_leaves_a_text_on_the_display) {
    Begin(true);
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_THAT(Steps(), ElementsAre("opening again"));
    EXPECT_EQ(balance.modelFlagB, 1);
}

TEST_F(WbalanceMettlerPR2003Test, Reset_with_another_answer_closes_the_port_and_stays_due) {
    line.Answer("@\r\n", {{"ES\r\n"}});
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(Steps(),
                ElementsAre("opening", R"(trace "Mettler PR - Reset\n")", R"(write "@\r\n")",
                            "Sleep 500", R"(read "ES\r\n")", "close", "delete port",
                            R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"));
    EXPECT_EQ(balance.modelFlagC, 1);

    line.Answer("@\r\n", {{kSerialNumber}});
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_EQ(balance.modelFlagC, 0);
}

TEST_F(WbalanceMettlerPR2003Test, Reset_without_an_answer_closes_the_port_and_stays_due) {
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(Steps(),
                ElementsAre("opening", R"(trace "Mettler PR - Reset\n")", R"(write "@\r\n")",
                            "Sleep 500", "silent read", "close", "delete port",
                            R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"));
    EXPECT_EQ(line.Now(), 3500);
    EXPECT_EQ(balance.modelFlagC, 1);
}

TEST_F(WbalanceMettlerPR2003Test, Reset_that_is_not_taken_closes_the_port_without_a_pause) {
    line.Fail("write");
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(line.Sleeps(), IsEmpty());
    EXPECT_EQ(line.PortObjects(), 0);
    EXPECT_EQ(balance.modelFlagC, 1);
}

TEST_F(WbalanceMettlerPR2003Test, Reset_takes_a_serial_number_behind_other_text) {
    line.Answer("@\r\n", {{std::string(29, '.') + "I4 A\r\n"}});
    EXPECT_EQ(balance.IsReady(), 1);
}

TEST_F(WbalanceMettlerPR2003Test, Reset_does_not_see_I4_that_reaches_behind_the_32nd_character) {
    line.Answer("@\r\n", {{std::string(30, '.') + "I4 A\r\n"}});
    EXPECT_EQ(balance.IsReady(), 0);
}

TEST_F(WbalanceMettlerPR2003Test, Readiness_refuses_a_negative_port_number_without_a_trace) {
    balance.portNumber = -1;
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceMettlerPR2003Test, First_readiness_when_each_call_fails_in_turn) {
    ExpectWhenEachCallFails<WbalanceMettlerPR2003>(
        {{"open /dev/ttyS0", 0, "held"},
         {"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "@\r\n")", 0, "closed"},
         // The command leaves with the wait of the next attempt.
         {"wait 1000", 1, "open"}},
        [this](Balance&) { line.Answer("@\r\n", {{kSerialNumber}}); },
        [](Balance& driver) { return driver.IsReady(); });
}

TEST_F(WbalanceMettlerPR2003Test,
       Every_operation_resets_a_new_balance_first_and_ends_when_it_fails) {
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.name);
        line.Reset();
        Balance fresh;
        fresh.modelFlagB = 1;
        EXPECT_EQ(operation.call(fresh), 0);
        EXPECT_THAT(line.Sent(), ElementsAre("@\r\n"));
        EXPECT_EQ(line.PortObjects(), 0);
        EXPECT_EQ(fresh.modelFlagB, 1);
        EXPECT_EQ(fresh.modelFlagC, 1);
    }
}

TEST_F(WbalanceMettlerPR2003Test, Every_operation_fails_silently_once_the_settings_were_refused) {
    balance.SetCommConfig(2400, 2, 7, 0, 0, 61, 'S');
    EXPECT_EQ(balance.IsReady(), 0);
    line.Forget();
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.name);
        EXPECT_EQ(operation.call(balance), 0);
    }
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

class OwnReadiness : public Balance {
 public:
    int IsReady() override {
        ++asked;
        return 0;
    }
    int asked = 0;
};

TEST_F(WbalanceMettlerPR2003Test, Every_operation_asks_a_hosts_own_readiness_and_ends_with_its_0) {
    OwnReadiness own;
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.name);
        own.asked = 0;
        EXPECT_EQ(operation.call(own), 0);
        EXPECT_EQ(own.asked, 1);
    }
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceMettlerPR2003Test, Every_operation_ends_without_a_hang_when_the_line_is_unplugged) {
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.name);
        line.Reset();
        Balance fresh;
        GetReady(fresh);
        line.Fail("wait", 1, Fault::HangUp);
        const int result = operation.call(fresh);
        // A preset tare counts once it was handed over, and a port without a far end still takes
        // it.
        EXPECT_EQ(result, operation.name == std::string("TareSet") ? 1 : 0);
        EXPECT_TRUE(line.IsOpen());
        // The settings are refused now, and that is for good.
        EXPECT_EQ(operation.call(fresh), 0);
        EXPECT_EQ(fresh.serialObject, nullptr);
    }
}

// The weight display

TEST_F(WbalanceMettlerPR2003Test, Tare_TareSet_and_Weight_bring_back_the_weight_once_after_a_text) {
    const std::vector<Operation> operations(kOperations.begin(), kOperations.begin() + 5);
    for (const Operation& operation : operations) {
        SCOPED_TRACE(operation.name);
        line.Reset();
        Balance fresh;
        GetReadyWithText(fresh);
        line.Answer("DW\r\n", {{"DW A\r\n"}});
        operation.call(fresh);
        ASSERT_GE(Steps().size(), 5U);
        const std::vector<std::string> steps = Steps();
        EXPECT_THAT(std::vector<std::string>(steps.begin(), steps.begin() + 5),
                    ElementsAre("opening again", R"(trace "Mettler PR - Set weight mode\n")",
                                R"(write "DW\r\n")", "Sleep 500", R"(read "DW A\r\n")"));
        EXPECT_EQ(fresh.modelFlagB, 0);
        line.Forget();
        operation.call(fresh);
        EXPECT_THAT(line.Sent(), testing::Not(testing::Contains("DW\r\n")));
    }
}

TEST_F(WbalanceMettlerPR2003Test, Tare_TareSet_and_Weight_close_the_port_when_DW_is_not_answered) {
    const std::vector<Operation> operations(kOperations.begin(), kOperations.begin() + 5);
    for (const Operation& operation : operations) {
        SCOPED_TRACE(operation.name);
        line.Reset();
        Balance fresh;
        GetReadyWithText(fresh);
        EXPECT_EQ(operation.call(fresh), 0);
        EXPECT_THAT(Steps(),
                    ElementsAre("opening again", R"(trace "Mettler PR - Set weight mode\n")",
                                R"(write "DW\r\n")", "Sleep 500", "silent read", "close",
                                "delete port", R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"));
        EXPECT_EQ(fresh.modelFlagB, 1);
        EXPECT_EQ(fresh.modelFlagC, 0);
    }
}

TEST_F(WbalanceMettlerPR2003Test,
       Tare_TareSet_and_Weight_leave_the_port_open_when_DW_is_not_taken) {
    const std::vector<Operation> operations(kOperations.begin(), kOperations.begin() + 5);
    for (const Operation& operation : operations) {
        SCOPED_TRACE(operation.name);
        line.Reset();
        Balance fresh;
        GetReadyWithText(fresh);
        line.Fail("write");
        EXPECT_EQ(operation.call(fresh), 0);
        EXPECT_THAT(line.Sleeps(), IsEmpty());
        EXPECT_TRUE(line.IsOpen());
        EXPECT_EQ(fresh.modelFlagB, 1);
    }
}

TEST_F(WbalanceMettlerPR2003Test, Any_answer_brings_back_the_weight) {
    Begin(true);
    line.Answer("DW\r\n", {{"ES\r\n"}});
    line.Answer("T\r\n", {{"T S      10.00 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_EQ(balance.modelFlagB, 0);
}

// Tare

TEST_F(WbalanceMettlerPR2003Test, First_tare_resets_and_the_second_does_not) {
    line.Answer("@\r\n", {{kSerialNumber}});
    line.AlwaysAnswer("T\r\n", {{"T S      10.00 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_THAT(line.Sent(), ElementsAre("@\r\n", "T\r\n", "T\r\n"));
}

TEST_F(WbalanceMettlerPR2003Test, Tare_traces_without_a_line_end_before_the_command) {
    Begin();
    line.Answer("T\r\n", {{"T S      10.00 g\r\n", 900}});
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_THAT(Steps(),
                ElementsAre("opening again", R"(trace "Mettler PR - Tare")", R"(write "T\r\n")",
                            R"(read "T S      10.00 g\r\n")", R"(trace "Mettler PR - Success\n")"));
    EXPECT_EQ(Elapsed(), 900);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test, Tare_fails_at_any_other_answer) {
    Begin();
    line.Answer("T\r\n", {{"T I\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(Steps(),
                ElementsAre("opening again", R"(trace "Mettler PR - Tare")", R"(write "T\r\n")",
                            R"(read "T I\r\n")", R"(trace "Mettler PR - Command fail!\n\n")"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test, Tare_fails_without_an_answer_and_without_a_trace_of_its_own) {
    Begin();
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler PR - Tare")",
                                     R"(write "T\r\n")", "silent read"));
    EXPECT_EQ(Elapsed(), 3000);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test, Tare_finds_T_S_that_ends_with_the_33rd_character) {
    Begin();
    line.Answer("T\r\n", {{std::string(29, '.') + "T S 1.00 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
}

TEST_F(WbalanceMettlerPR2003Test, Tare_does_not_see_T_S_that_reaches_behind_the_33rd_character) {
    Begin();
    line.Answer("T\r\n", {{std::string(30, '.') + "T S 1.00 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
}

TEST_F(WbalanceMettlerPR2003Test, Tare_does_not_see_T_S_behind_an_embedded_zero) {
    Begin();
    line.Answer("T\r\n", {{std::string("T\0 S T S 1.00 g\r\n", 17)}});
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Trace(), HasSubstr("Mettler PR - Command fail!\n\n"));
}

TEST_F(WbalanceMettlerPR2003Test, Tare_reads_on_when_an_answer_has_no_line_end) {
    Begin();
    line.Answer("T\r\n", {{"T S      10.00 g"}});
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_EQ(Elapsed(), 3000);
}

TEST_F(WbalanceMettlerPR2003Test, A_line_feed_alone_does_not_end_an_answer) {
    Begin();
    line.Answer("T\r\n", {{"T S      10.00 g\n"}});
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_EQ(Elapsed(), 3000);
}

TEST_F(WbalanceMettlerPR2003Test, Tare_when_each_call_fails_in_turn) {
    ExpectWhenEachCallFails<WbalanceMettlerPR2003>(
        {{"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "DW\r\n")", 0, "open"},
         {"wait 1000", 1, "open"},
         {R"(write "T\r\n")", 0, "open"},
         {"wait 1000", 1, "open"}},
        [this](Balance& driver) {
            GetReadyWithText(driver);
            line.Answer("DW\r\n", {{"DW A\r\n"}});
            line.Answer("T\r\n", {{"T S      10.00 g\r\n"}});
        },
        [](Balance& driver) { return driver.Tare(); });
}

// Preset tare

TEST_F(WbalanceMettlerPR2003Test, Preset_tare_of_10_sends_12_50_when_the_tare_took_2_5) {
    Begin();
    line.Answer("T\r\n", {{"T S       2.50 g\r\n", 100}});
    line.Answer("TA 12.50 g\r\n", {{"TA A      12.50 g\r\n", 100}});
    EXPECT_EQ(balance.TareSet(10.0), 1);
    EXPECT_THAT(
        Steps(),
        ElementsAre("opening again", R"(trace "Mettler PR - Tare\n")", R"(write "T\r\n")",
                    R"(read "T S       2.50 g\r\n")", R"(trace "Mettler PR - weight = 2.50 cc.\n")",
                    R"(trace "Mettler PR - Set tare to 12.50\n")", R"(write "TA 12.50 g\r\n")",
                    R"(read "TA A      12.50 g\r\n")", R"(trace "Mettler PR - Success.\n")"));
    EXPECT_EQ(Elapsed(), 200);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test, Preset_tare_that_is_refused_counts_as_set) {
    Begin();
    line.Answer("T\r\n", {{"T S       2.50 g\r\n"}});
    line.Answer("TA 12.50 g\r\n", {{"TA L\r\n"}});
    EXPECT_EQ(balance.TareSet(10.0), 1);
    EXPECT_THAT(
        Steps(),
        ElementsAre("opening again", R"(trace "Mettler PR - Tare\n")", R"(write "T\r\n")",
                    R"(read "T S       2.50 g\r\n")", R"(trace "Mettler PR - weight = 2.50 cc.\n")",
                    R"(trace "Mettler PR - Set tare to 12.50\n")", R"(write "TA 12.50 g\r\n")",
                    R"(read "TA L\r\n")", R"(trace "Mettler PR - Command fail!\n")",
                    R"(trace "Mettler PR - Success.\n")"));
}

TEST_F(WbalanceMettlerPR2003Test, Preset_tare_is_confirmed_by_a_blank_behind_TA_A) {
    Begin();
    line.Answer("T\r\n", {{"T S       2.50 g\r\n"}});
    line.Answer("TA 12.50 g\r\n", {{"TA A\r\n"}});
    EXPECT_EQ(balance.TareSet(10.0), 1);
    EXPECT_THAT(line.Trace(), HasSubstr("TA A\r\n (time elapsed: 0 ms)\n"
                                        "Mettler PR - Command fail!\n"));
}

TEST_F(WbalanceMettlerPR2003Test, Preset_tare_that_is_not_answered_counts_as_set) {
    Begin();
    line.Answer("T\r\n", {{"T S       2.50 g\r\n"}});
    EXPECT_EQ(balance.TareSet(10.0), 1);
    EXPECT_THAT(
        Steps(),
        ElementsAre("opening again", R"(trace "Mettler PR - Tare\n")", R"(write "T\r\n")",
                    R"(read "T S       2.50 g\r\n")", R"(trace "Mettler PR - weight = 2.50 cc.\n")",
                    R"(trace "Mettler PR - Set tare to 12.50\n")", R"(write "TA 12.50 g\r\n")",
                    "silent read", R"(trace "Mettler PR - Success.\n")"));
}

TEST_F(WbalanceMettlerPR2003Test, Preset_tare_is_sent_alone_when_the_tare_failed) {
    Begin();
    line.Answer("T\r\n", {{"T I\r\n"}});
    line.Answer("TA 10.00 g\r\n", {{"TA A      10.00 g\r\n"}});
    EXPECT_EQ(balance.TareSet(10.0), 1);
    EXPECT_THAT(
        Steps(),
        ElementsAre("opening again", R"(trace "Mettler PR - Tare\n")", R"(write "T\r\n")",
                    R"(read "T I\r\n")", R"(trace "Mettler PR - Command fail!\n")",
                    R"(trace "Mettler PR - Set tare to 10.00\n")", R"(write "TA 10.00 g\r\n")",
                    R"(read "TA A      10.00 g\r\n")", R"(trace "Mettler PR - Success.\n")"));
}

TEST_F(WbalanceMettlerPR2003Test, Preset_tare_is_sent_alone_when_the_tare_is_not_answered) {
    Begin();
    line.Answer("TA 10.00 g\r\n", {{"TA A      10.00 g\r\n"}});
    EXPECT_EQ(balance.TareSet(10.0), 1);
    EXPECT_THAT(Steps(),
                ElementsAre("opening again", R"(trace "Mettler PR - Tare\n")", R"(write "T\r\n")",
                            "silent read", R"(trace "Mettler PR - Set tare to 10.00\n")",
                            R"(write "TA 10.00 g\r\n")", R"(read "TA A      10.00 g\r\n")",
                            R"(trace "Mettler PR - Success.\n")"));
}

TEST_F(WbalanceMettlerPR2003Test, Preset_tare_adds_a_negative_tare_and_rounds_to_two_decimals) {
    Begin();
    line.Answer("T\r\n", {{"T S      -0.125 g\r\n"}});
    EXPECT_EQ(balance.TareSet(0.0), 1);
    EXPECT_THAT(line.Sent(), ElementsAre("T\r\n", "TA -0.12 g\r\n"));
}

TEST_F(WbalanceMettlerPR2003Test, Preset_tare_that_is_not_finite_is_sent_as_its_word) {
    Begin();
    line.AlwaysAnswer("T\r\n", {{"T S       2.50 g\r\n"}});
    EXPECT_EQ(balance.TareSet(NAN), 1);
    EXPECT_EQ(balance.TareSet(-INFINITY), 1);
    EXPECT_THAT(line.Sent(), ElementsAre("T\r\n", "TA nan g\r\n", "T\r\n", "TA -inf g\r\n"));
}

TEST_F(WbalanceMettlerPR2003Test, Longest_preset_tare_has_24_characters) {
    Begin();
    line.AlwaysAnswer("T\r\n", {{"T S       0.00 g\r\n"}});
    EXPECT_EQ(balance.TareSet(1e20), 1);
    EXPECT_EQ(balance.TareSet(-1e19), 1);
    EXPECT_THAT(line.Sent(), ElementsAre("T\r\n", "TA 100000000000000000000.00 g\r\n", "T\r\n",
                                         "TA -10000000000000000000.00 g\r\n"));
}

TEST_F(WbalanceMettlerPR2003Test, Preset_tare_when_each_call_fails_in_turn) {
    ExpectWhenEachCallFails<WbalanceMettlerPR2003>(
        {{"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "T\r\n")", 0, "open"},
         {"wait 1000", 1, "open"},
         {R"(write "TA 12.50 g\r\n")", 0, "open"},
         {"wait 1000", 1, "open"}},
        [this](Balance& driver) {
            GetReady(driver);
            line.Answer("T\r\n", {{"T S       2.50 g\r\n"}});
            line.Answer("TA 12.50 g\r\n", {{"TA A      12.50 g\r\n"}});
        },
        [](Balance& driver) { return driver.TareSet(10.0); });
}

// Weight, mode 0

TEST_F(WbalanceMettlerPR2003Test, Mode_0_reads_a_stable_weight_1_s_after_the_command) {
    Begin();
    line.Answer("S\r\n", {{kStable}});
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 100.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(Steps(),
                ElementsAre("opening again", R"(trace "Mettler PR - Stable weight\n")",
                            R"(write "S\r\n")", "Sleep 1000", R"(read "S S     100.00 g\r\n")",
                            R"(trace "Mettler PR - weight = 100.00 cc.\n")"));
    EXPECT_EQ(Elapsed(), 1000);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test, Mode_0_fails_at_any_other_answer) {
    for (const char* answer :
         {"S I\r\n", "S +\r\n", "S -\r\n", "S S\r\n", "ES\r\n", "EL\r\n", kDynamic}) {
        SCOPED_TRACE(answer);
        line.Reset();
        Balance fresh;
        GetReady(fresh);
        line.Answer("S\r\n", {{answer}});
        EXPECT_EQ(FailedWeight(fresh, 0), 0);
        EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler PR - Stable weight\n")",
                                         R"(write "S\r\n")", "Sleep 1000",
                                         "read " + scripted::Quoted(answer),
                                         R"(trace "Mettler PR - Command fail!\n")"));
        EXPECT_TRUE(line.IsOpen());
    }
}

TEST_F(WbalanceMettlerPR2003Test, Mode_0_fails_without_an_answer_and_without_a_trace_of_its_own) {
    Begin();
    EXPECT_EQ(FailedWeight(balance, 0), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler PR - Stable weight\n")",
                                     R"(write "S\r\n")", "Sleep 1000", "silent read"));
    EXPECT_EQ(Elapsed(), 4000);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test, Mode_0_finds_S_S_behind_other_text_and_takes_its_first_number) {
    Begin();
    line.Answer("S\r\n", {{std::string(kSerialNumber, 8) + "\r\n" + kStable}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, 4.0);
}

TEST_F(WbalanceMettlerPR2003Test, Mode_0_cuts_an_answer_behind_its_33rd_character) {
    Begin();
    line.Answer("S\r\n", {{"S S " + std::string(27, ' ') + "12.5 g\r\n"}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.0);
}

TEST_F(WbalanceMettlerPR2003Test, Mode_0_does_not_see_S_S_that_reaches_behind_the_33rd_character) {
    Begin();
    line.Answer("S\r\n", {{std::string(30, '.') + kStable}});
    EXPECT_EQ(FailedWeight(balance, 0), 0);
}

TEST_F(WbalanceMettlerPR2003Test, Mode_0_reads_a_weight_among_characters_with_the_8th_bit_set) {
    Begin();
    line.Answer("S\r\n", {{"\xd3S S \xa0 -12.50\xa0g\r\n"}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, -12.5);
}

TEST_F(WbalanceMettlerPR2003Test, Mode_0_joins_an_answer_that_comes_in_two_pieces) {
    Begin();
    line.Answer("S\r\n", {{"S S     10", 1100}, {"0.00 g\r\n", 1150}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, 100.0);
}

TEST_F(WbalanceMettlerPR2003Test, Mode_0_when_each_call_fails_in_turn) {
    ExpectWhenEachCallFails<WbalanceMettlerPR2003>(
        {{"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "S\r\n")", 0, "open"},
         {"wait 1000", 1, "open"}},
        [this](Balance& driver) {
            GetReady(driver);
            line.Answer("S\r\n", {{kStable}});
        },
        [](Balance& driver) {
            double grams = -1.0;
            const int status = driver.Weight(0, &grams, nullptr);
            EXPECT_EQ(grams, status == 1 ? 100.0 : 0.0);
            return status;
        });
}

// Weight, mode 2

TEST_F(WbalanceMettlerPR2003Test, Mode_2_reads_a_dynamic_weight_at_once) {
    Begin();
    line.Answer("SI\r\n", {{kDynamic}});
    EXPECT_EQ(balance.Weight(2, &weight, &decimals), 2);
    EXPECT_EQ(weight, 10.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler PR - Unstable weight\n")",
                                     R"(write "SI\r\n")", R"(read "S D      10.00 g\r\n")",
                                     R"(trace "Mettler PR - weight = 10.00 cc.\n")"));
    EXPECT_EQ(Elapsed(), 0);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test, Mode_2_reads_a_stable_weight_as_1) {
    Begin();
    line.Answer("SI\r\n", {{"S S     -12.345 g\r\n"}});
    EXPECT_EQ(balance.Weight(2, &weight, nullptr), 1);
    EXPECT_EQ(weight, -12.345);
    EXPECT_THAT(line.Trace(), HasSubstr("Mettler PR - weight = -12.35 cc.\n"));
}

TEST_F(WbalanceMettlerPR2003Test, Mode_2_fails_at_any_other_answer) {
    Begin();
    line.Answer("SI\r\n", {{"S +\r\n"}});
    EXPECT_EQ(FailedWeight(balance, 2), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler PR - Unstable weight\n")",
                                     R"(write "SI\r\n")", R"(read "S +\r\n")",
                                     R"(trace "Mettler PR - Command fail!\n")"));
}

TEST_F(WbalanceMettlerPR2003Test, Mode_2_fails_at_a_status_without_a_weight) {
    for (const char* answer : {"S S\r\n", "S D\r\n"}) {
        Balance fresh;
        GetReady(fresh);
        line.Answer("SI\r\n", {{answer}});
        EXPECT_EQ(FailedWeight(fresh, 2), 0);
    }
}

TEST_F(WbalanceMettlerPR2003Test, Mode_2_fails_without_an_answer) {
    Begin();
    EXPECT_EQ(FailedWeight(balance, 2), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler PR - Unstable weight\n")",
                                     R"(write "SI\r\n")", "silent read"));
    EXPECT_EQ(Elapsed(), 3000);
}

TEST_F(WbalanceMettlerPR2003Test, Mode_2_fails_when_the_command_is_not_taken) {
    Begin();
    line.Fail("write", 1, Fault::ShortWrite);
    EXPECT_EQ(FailedWeight(balance, 2), 0);
    EXPECT_EQ(Elapsed(), 0);
    EXPECT_TRUE(line.IsOpen());
}

// Weight, mode 1

TEST_F(WbalanceMettlerPR2003Test, Mode_1_reads_a_stable_weight_at_once) {
    Begin();
    line.Answer("S\r\n", {{kStable}});
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 1);
    EXPECT_EQ(weight, 100.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler PR - Stable weight\n")",
                                     R"(write "S\r\n")", R"(read "S S     100.00 g\r\n")",
                                     R"(trace "Mettler PR - weight = 100.00 cc.\n")"));
    EXPECT_EQ(Elapsed(), 0);
}

TEST_F(WbalanceMettlerPR2003Test, Mode_1_fails_when_its_first_command_is_not_taken) {
    Begin();
    line.Fail("write");
    EXPECT_EQ(FailedWeight(balance, 1), 0);
    EXPECT_THAT(line.Sleeps(), IsEmpty());
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test,
       Mode_1_averages_five_dynamic_readings_without_tracing_the_average) {
    Begin();
    line.Answer("S\r\n", {{"S I\r\n"}});
    line.Answer("SI\r\n", {{"S D      10.00 g\r\n"}});
    line.Answer("SI\r\n", {{"S D      11.00 g\r\n"}});
    line.Answer("SI\r\n", {{"S D      12.00 g\r\n"}});
    line.Answer("SI\r\n", {{"S D      13.00 g\r\n"}});
    line.Answer("SI\r\n", {{"S D      14.50 g\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 2);
    EXPECT_DOUBLE_EQ(weight, 12.1);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(
        Steps(),
        ElementsAre("opening again", R"(trace "Mettler PR - Stable weight\n")", R"(write "S\r\n")",
                    R"(read "S I\r\n")", R"(trace "Mettler PR - Command fail!\n")", "Sleep 1000",
                    "clear input", R"(trace "Mettler PR - Unstable weight\n")", R"(write "SI\r\n")",
                    "Sleep 500", R"(read "S D      10.00 g\r\n")", "Sleep 500", "clear input",
                    R"(trace "Mettler PR - Unstable weight\n")", R"(write "SI\r\n")", "Sleep 500",
                    R"(read "S D      11.00 g\r\n")", "Sleep 500", "clear input",
                    R"(trace "Mettler PR - Unstable weight\n")", R"(write "SI\r\n")", "Sleep 500",
                    R"(read "S D      12.00 g\r\n")", "Sleep 500", "clear input",
                    R"(trace "Mettler PR - Unstable weight\n")", R"(write "SI\r\n")", "Sleep 500",
                    R"(read "S D      13.00 g\r\n")", "Sleep 500", "clear input",
                    R"(trace "Mettler PR - Unstable weight\n")", R"(write "SI\r\n")", "Sleep 500",
                    R"(read "S D      14.50 g\r\n")", "Sleep 500"));
    EXPECT_EQ(Elapsed(), 6000);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test, Mode_1_counts_passes_without_an_answer_as_zeros) {
    Begin();
    for (int pass = 0; pass < 3; ++pass)
        line.Answer("SI\r\n", {{kDynamic}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 2);
    EXPECT_DOUBLE_EQ(weight, 6.0);
    EXPECT_THAT(line.Sent(),
                ElementsAre("S\r\n", "SI\r\n", "SI\r\n", "SI\r\n", "SI\r\n", "SI\r\n"));
    EXPECT_THAT(line.Trace(), testing::Not(HasSubstr("Command fail")));
    EXPECT_THAT(line.Trace(), testing::Not(HasSubstr("Mettler PR - weight")));
    EXPECT_EQ(Elapsed(), 3000 + 1000 + 5 * 1000 + 2 * 3000);
}

TEST_F(WbalanceMettlerPR2003Test, Mode_1_counts_a_pass_without_an_answer_between_others) {
    Begin();
    line.Answer("SI\r\n", {{kDynamic}});
    line.Answer("SI\r\n", {});
    line.Answer("SI\r\n", {{kDynamic}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 2);
    EXPECT_DOUBLE_EQ(weight, 4.0);
}

TEST_F(WbalanceMettlerPR2003Test, Mode_1_ends_with_the_first_pass_when_nothing_comes) {
    Begin();
    EXPECT_EQ(FailedWeight(balance, 1), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler PR - Stable weight\n")",
                                     R"(write "S\r\n")", "silent read", "Sleep 1000", "clear input",
                                     R"(trace "Mettler PR - Unstable weight\n")",
                                     R"(write "SI\r\n")", "Sleep 500", "silent read"));
    EXPECT_EQ(Elapsed(), 7500);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test, Mode_1_takes_a_stable_reading_alone_and_traces_0_00_before_it) {
    Begin();
    line.Answer("SI\r\n", {{kDynamic}});
    line.Answer("SI\r\n", {{kStable}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, 100.0);
    EXPECT_THAT(Steps(),
                ElementsAre("opening again", R"(trace "Mettler PR - Stable weight\n")",
                            R"(write "S\r\n")", "silent read", "Sleep 1000", "clear input",
                            R"(trace "Mettler PR - Unstable weight\n")", R"(write "SI\r\n")",
                            "Sleep 500", R"(read "S D      10.00 g\r\n")", "Sleep 500",
                            "clear input", R"(trace "Mettler PR - Unstable weight\n")",
                            R"(write "SI\r\n")", "Sleep 500", R"(read "S S     100.00 g\r\n")",
                            R"(trace "Mettler PR - weight = 0.00 cc.\n")"));
}

TEST_F(WbalanceMettlerPR2003Test, Mode_1_fails_at_another_answer_even_after_dynamic_readings) {
    Begin();
    line.Answer("S\r\n", {{kDynamic}});
    line.Answer("SI\r\n", {{kDynamic}});
    line.Answer("SI\r\n", {{"S -\r\n"}});
    EXPECT_EQ(FailedWeight(balance, 1), 0);
    EXPECT_THAT(
        Steps(),
        ElementsAre("opening again", R"(trace "Mettler PR - Stable weight\n")", R"(write "S\r\n")",
                    R"(read "S D      10.00 g\r\n")", R"(trace "Mettler PR - Command fail!\n")",
                    "Sleep 1000", "clear input", R"(trace "Mettler PR - Unstable weight\n")",
                    R"(write "SI\r\n")", "Sleep 500", R"(read "S D      10.00 g\r\n")", "Sleep 500",
                    "clear input", R"(trace "Mettler PR - Unstable weight\n")", R"(write "SI\r\n")",
                    "Sleep 500", R"(read "S -\r\n")", R"(trace "Mettler PR - Command fail!\n")"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test,
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
        EXPECT_TRUE(line.IsOpen());
    }
}

TEST_F(WbalanceMettlerPR2003Test, Mode_1_fails_when_a_clear_or_a_command_of_its_first_pass_fails) {
    for (const char* call : {"clear", "write"}) {
        SCOPED_TRACE(call);
        line.Reset();
        Balance fresh;
        GetReady(fresh);
        line.AlwaysAnswer("SI\r\n", {{kDynamic}});
        line.Fail(call, 2);
        EXPECT_EQ(FailedWeight(fresh, 1), 0);
        EXPECT_THAT(line.Sleeps(), ElementsAre(1000));
        EXPECT_TRUE(line.IsOpen());
    }
}

TEST_F(WbalanceMettlerPR2003Test, Mode_1_forgets_an_answer_that_comes_too_late_for_its_pass) {
    Begin();
    line.Answer("S\r\n", {{kStable, 3500}});
    line.Answer("SI\r\n", {{"S S      20.00 g\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 1);
    EXPECT_EQ(weight, 20.0);
}

class ReadinessThatWeighs : public Balance {
 public:
    int IsReady() override {
        *weight = 7.0;
        return Balance::IsReady();
    }
    double* weight = nullptr;
};

TEST_F(WbalanceMettlerPR2003Test, Mode_1_stores_the_0_of_its_failure_after_a_hosts_own_readiness) {
    ReadinessThatWeighs own;
    own.weight = &weight;
    GetReady(own);
    EXPECT_EQ(own.Weight(1, &weight, nullptr), 0);
    EXPECT_EQ(weight, 0.0);
}

// Other modes

TEST_F(WbalanceMettlerPR2003Test, Any_other_mode_is_ready_shows_the_weight_and_fails) {
    for (const long mode : {3L, -1L, LONG_MAX, LONG_MIN, 1L << 32}) {
        SCOPED_TRACE(mode);
        line.Reset();
        Balance fresh;
        GetReadyWithText(fresh);
        line.Answer("DW\r\n", {{"DW A\r\n"}});
        EXPECT_EQ(FailedWeight(fresh, mode), 0);
        EXPECT_THAT(Steps(),
                    ElementsAre("opening again", R"(trace "Mettler PR - Set weight mode\n")",
                                R"(write "DW\r\n")", "Sleep 500", R"(read "DW A\r\n")"));
        EXPECT_EQ(fresh.modelFlagB, 0);
    }
}

// Power

TEST_F(WbalanceMettlerPR2003Test, Turning_on_sends_PWR_1_and_brings_back_the_weight) {
    Begin(true);
    line.Answer("PWR 1\r\n", {{"PWR A\r\n"}});
    line.Answer("DW\r\n", {{"DW A\r\n"}});
    EXPECT_EQ(balance.TurnItOn(), 1);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler PR - Switch on\n")",
                                     R"(write "PWR 1\r\n")", "Sleep 1000", R"(read "PWR A\r\n")",
                                     R"(trace "Mettler PR - Set weight mode\n")",
                                     R"(write "DW\r\n")", "Sleep 500", R"(read "DW A\r\n")"));
    EXPECT_EQ(Elapsed(), 1500);
    EXPECT_EQ(balance.modelFlagB, 0);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test, Turning_on_takes_the_serial_number_for_the_answer_to_DW) {
    Begin();
    line.Answer("PWR 1\r\n", {{"PWR A\r\n"}, {kSerialNumber, 300}});
    EXPECT_EQ(balance.TurnItOn(), 1);
}

TEST_F(WbalanceMettlerPR2003Test, Turning_on_fails_when_PWR_1_is_not_answered) {
    Begin(true);
    EXPECT_EQ(balance.TurnItOn(), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler PR - Switch on\n")",
                                     R"(write "PWR 1\r\n")", "Sleep 1000", "silent read"));
    EXPECT_EQ(balance.modelFlagB, 1);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test,
       Turning_on_fails_and_leaves_the_port_open_when_DW_is_not_answered) {
    Begin(true);
    line.Answer("PWR 1\r\n", {{"ES\r\n"}});
    EXPECT_EQ(balance.TurnItOn(), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler PR - Switch on\n")",
                                     R"(write "PWR 1\r\n")", "Sleep 1000", R"(read "ES\r\n")",
                                     R"(trace "Mettler PR - Set weight mode\n")",
                                     R"(write "DW\r\n")", "Sleep 500", "silent read"));
    EXPECT_EQ(balance.modelFlagB, 1);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test, Turning_on_when_each_call_fails_in_turn) {
    ExpectWhenEachCallFails<WbalanceMettlerPR2003>(
        {{"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "PWR 1\r\n")", 0, "open"},
         {"wait 1000", 1, "open"},
         {R"(write "DW\r\n")", 0, "open"},
         {"wait 1000", 1, "open"}},
        [this](Balance& driver) {
            GetReady(driver);
            line.Answer("PWR 1\r\n", {{"PWR A\r\n"}});
            line.Answer("DW\r\n", {{"DW A\r\n"}});
        },
        [](Balance& driver) { return driver.TurnItOn(); });
}

TEST_F(WbalanceMettlerPR2003Test, Turning_off_shows_the_weight_in_any_case_and_traces_Switch_on) {
    for (const bool text : {false, true}) {
        SCOPED_TRACE(text);
        line.Reset();
        Balance fresh;
        GetReady(fresh);
        fresh.modelFlagB = text ? 1 : 0;
        line.Answer("DW\r\n", {{"DW A\r\n"}});
        line.Answer("PWR 0\r\n", {{"PWR A\r\n"}});
        EXPECT_EQ(fresh.TurnItOff(), 1);
        EXPECT_THAT(Steps(),
                    ElementsAre("opening again", R"(trace "Mettler PR - Set weight mode\n")",
                                R"(write "DW\r\n")", "Sleep 500", R"(read "DW A\r\n")",
                                R"(trace "Mettler PR - Switch on\n")", R"(write "PWR 0\r\n")",
                                "Sleep 1000", R"(read "PWR A\r\n")"));
        EXPECT_EQ(fresh.modelFlagB, 0);
        EXPECT_TRUE(line.IsOpen());
    }
}

TEST_F(WbalanceMettlerPR2003Test,
       Turning_off_fails_and_leaves_the_port_open_when_DW_is_not_answered) {
    Begin(true);
    EXPECT_EQ(balance.TurnItOff(), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler PR - Set weight mode\n")",
                                     R"(write "DW\r\n")", "Sleep 500", "silent read"));
    EXPECT_EQ(balance.modelFlagB, 1);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test,
       Turning_off_fails_when_PWR_0_is_not_answered_but_the_text_is_gone) {
    Begin(true);
    line.Answer("DW\r\n", {{"DW A\r\n"}});
    EXPECT_EQ(balance.TurnItOff(), 0);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler PR - Set weight mode\n")",
                                     R"(write "DW\r\n")", "Sleep 500", R"(read "DW A\r\n")",
                                     R"(trace "Mettler PR - Switch on\n")", R"(write "PWR 0\r\n")",
                                     "Sleep 1000", "silent read"));
    EXPECT_EQ(balance.modelFlagB, 0);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test, Turning_off_when_each_call_fails_in_turn) {
    ExpectWhenEachCallFails<WbalanceMettlerPR2003>(
        {{"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "DW\r\n")", 0, "open"},
         {"wait 1000", 1, "open"},
         {R"(write "PWR 0\r\n")", 0, "open"},
         {"wait 1000", 1, "open"}},
        [this](Balance& driver) {
            GetReady(driver);
            line.Answer("DW\r\n", {{"DW A\r\n"}});
            line.Answer("PWR 0\r\n", {{"PWR A\r\n"}});
        },
        [](Balance& driver) { return driver.TurnItOff(); });
}

TEST_F(WbalanceMettlerPR2003Test, After_turning_off_no_reset_is_due) {
    Begin();
    line.Answer("DW\r\n", {{"DW A\r\n"}});
    line.Answer("PWR 0\r\n", {{"PWR A\r\n"}});
    EXPECT_EQ(balance.TurnItOff(), 1);
    EXPECT_EQ(balance.modelFlagC, 0);
}

// The display

TEST_F(WbalanceMettlerPR2003Test, Showing_a_text_sends_it_in_quotes_and_reads_at_once) {
    Begin();
    line.Answer("D \"READY\"\r\n", {{"D A\r\n"}});
    EXPECT_EQ(Display(balance, "READY"), 1);
    EXPECT_THAT(Steps(), ElementsAre("opening again", R"(trace "Mettler PR - Display \"READY\"\n")",
                                     R"(write "D \"READY\"\r\n")", R"(read "D A\r\n")"));
    EXPECT_EQ(Elapsed(), 0);
    EXPECT_EQ(balance.modelFlagB, 1);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPR2003Test, After_a_text_one_weight_sends_DW_and_the_next_does_not) {
    Begin();
    line.Answer("D \"READY\"\r\n", {{"D A\r\n"}});
    line.Answer("DW\r\n", {{"DW A\r\n"}});
    line.AlwaysAnswer("S\r\n", {{kStable}});
    EXPECT_EQ(Display(balance, "READY"), 1);
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);
    EXPECT_THAT(line.Sent(), ElementsAre("D \"READY\"\r\n", "DW\r\n", "S\r\n", "S\r\n"));
}

TEST_F(WbalanceMettlerPR2003Test, A_second_text_follows_the_first_without_DW) {
    Begin();
    line.Answer("D \"ONE\"\r\n", {{"D A\r\n"}});
    line.Answer("D \"TWO\"\r\n", {{"D A\r\n"}});
    EXPECT_EQ(Display(balance, "ONE"), 1);
    EXPECT_EQ(Display(balance, "TWO"), 1);
    EXPECT_THAT(line.Sent(), ElementsAre("D \"ONE\"\r\n", "D \"TWO\"\r\n"));
}

TEST_F(WbalanceMettlerPR2003Test, Any_answer_counts_as_a_text_shown) {
    Begin();
    line.Answer("D \"READY\"\r\n", {{"EL\r\n"}});
    EXPECT_EQ(Display(balance, "READY"), 1);
    EXPECT_EQ(balance.modelFlagB, 1);
}

TEST_F(WbalanceMettlerPR2003Test, A_text_that_is_not_answered_is_not_shown) {
    Begin();
    EXPECT_EQ(Display(balance, "READY"), 0);
    EXPECT_EQ(balance.modelFlagB, 0);
    EXPECT_EQ(Elapsed(), 3000);
    balance.modelFlagB = 1;
    EXPECT_EQ(Display(balance, "READY"), 0);
    EXPECT_EQ(balance.modelFlagB, 1);
}

TEST_F(WbalanceMettlerPR2003Test, An_empty_text_is_sent_as_two_quotes) {
    Begin();
    line.Answer("D \"\"\r\n", {{"D A\r\n"}});
    EXPECT_EQ(Display(balance, ""), 1);
}

TEST_F(WbalanceMettlerPR2003Test, A_text_with_quotes_and_percent_signs_is_sent_as_it_stands) {
    Begin();
    line.Answer("D \"5% \"x\"\"\r\n", {{"D A\r\n"}});
    EXPECT_EQ(Display(balance, "5% \"x\""), 1);
}

TEST_F(WbalanceMettlerPR2003Test, A_text_of_57_characters_is_sent_whole) {
    Begin();
    const std::string command = "D \"" + std::string(57, 'x') + "\"\r\n";
    line.Answer(command, {{"D A\r\n"}});
    EXPECT_EQ(Display(balance, std::string(57, 'x')), 1);
    EXPECT_THAT(line.Sent(), ElementsAre(command));
}

TEST_F(WbalanceMettlerPR2003Test,
       A_text_of_58_to_63_characters_is_refused_when_the_balance_is_ready) {
    for (const std::size_t length : {58U, 60U, 63U}) {
        SCOPED_TRACE(length);
        line.Answer("@\r\n", {{"I4 A \"1126493049\"\r\n"}});
        Balance driver;
        EXPECT_EQ(Display(driver, std::string(length, 'x')), 0);
        EXPECT_EQ(driver.modelFlagC, 0);
        EXPECT_EQ(driver.modelFlagB, 0);
    }
    EXPECT_THAT(line.Sent(), ElementsAre("@\r\n", "@\r\n", "@\r\n"));
    EXPECT_THAT(line.Trace(), Not(HasSubstr("Display")));
}

TEST_F(WbalanceMettlerPR2003Test, A_null_text_is_refused_when_the_balance_is_ready) {
    line.Answer("@\r\n", {{"I4 A \"1126493049\"\r\n"}});
    EXPECT_EQ(balance.DisplayMessage(nullptr), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("@\r\n"));
    EXPECT_EQ(balance.modelFlagC, 0);
}

TEST_F(WbalanceMettlerPR2003Test, A_text_that_is_refused_leaves_the_port_open) {
    Begin();
    EXPECT_EQ(Display(balance, std::string(58, 'x')), 0);
    EXPECT_TRUE(line.IsOpen());
    EXPECT_THAT(line.Sent(), IsEmpty());
}

TEST_F(WbalanceMettlerPR2003Test,
       A_text_of_64_characters_only_fails_when_the_balance_is_not_ready) {
    EXPECT_EQ(Display(balance, std::string(64, 'x')), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("@\r\n"));
}

TEST_F(WbalanceMettlerPR2003Test, Showing_a_text_when_each_call_fails_in_turn) {
    ExpectWhenEachCallFails<WbalanceMettlerPR2003>(
        {{"setBaudRate 2400", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "D \"READY\"\r\n")", 0, "open"},
         {"wait 1000", 1, "open"}},
        [this](Balance& driver) {
            GetReady(driver);
            line.Answer("D \"READY\"\r\n", {{"D A\r\n"}});
        },
        [](Balance& driver) { return Display(driver, "READY"); });
}

// The ends of the process

using WbalanceMettlerPR2003DeathTest = WbalanceMettlerPR2003Test;

TEST_F(WbalanceMettlerPR2003DeathTest,
       A_text_of_64_characters_ends_the_process_of_a_ready_balance) {
    Begin();
    EXPECT_EXIT(Display(balance, std::string(64, 'x')), KilledBySignal(SIGABRT),
                "^libwbalance: a display text does not fit its buffer of 64 bytes\n$");
}

TEST_F(WbalanceMettlerPR2003DeathTest, A_preset_tare_of_25_characters_ends_the_process) {
    Begin();
    line.AlwaysAnswer("T\r\n", {{"T S       0.00 g\r\n"}});
    EXPECT_EXIT(balance.TareSet(1e21), KilledBySignal(SIGABRT),
                "^libwbalance: a preset tare does not fit its buffer of 32 bytes\n$");
    EXPECT_EXIT(balance.TareSet(-1e20), KilledBySignal(SIGABRT),
                "^libwbalance: a preset tare does not fit its buffer of 32 bytes\n$");
}

}  // namespace
