#pragma once

#include <climits>
#include <cmath>
#include <csignal>
#include <functional>

#include "../Dialogue.h"
#include "../FailingCalls.h"
#include "../Host.h"

/// What the drivers of MT-SICS balances with a display have in common, tested for each of them. Its
/// own test has what differs, down to the texts of the trace, and instantiates this suite with
///
///     struct Instrument {
///         using Driver = ...;
///         static constexpr char kName[] = ...;  // as the trace says it
///         static void AnswerReset(Line& line, const std::string& serialNumber = kSerialNumber);
///         static std::vector<std::string> ResetCommands();
///         // Beside those that all of them have.
///         static std::vector<MtSicsOperation<Driver>> OwnOperations();
///     };
namespace scripted {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::KilledBySignal;
using testing::Not;

constexpr char kSerialNumber[] = "I4 A \"1126493049\"\r\n";
constexpr char kStable[] = "S S     100.00 g\r\n";
constexpr char kDynamic[] = "S D      10.00 g\r\n";

/// An opening that finds the port open.
inline const std::vector<FailingCall> kReopening = {
    {"setBaudRate 2400", 0, "gone"},    {"setDataBits 7", 0, "gone"},
    {"setParity even", 0, "gone"},      {"setStopBits 1", 0, "gone"},
    {"setFlowControl none", 0, "gone"}, {"clear input", 0, "closed"}};

template <class Driver>
struct MtSicsOperation {
    const char* name;
    std::function<int(Driver&)> call;
};

inline int FailedWeight(Cwbalance& balance, long mode) {
    double weight = -1.0;
    const int status = balance.Weight(mode, &weight, nullptr);
    EXPECT_EQ(weight, 0.0);
    return status;
}

template <class Driver>
int Display(Driver& balance, std::string text) {
    return balance.DisplayMessage(text.data());
}

template <class Instrument>
class MtSicsDriver : public ScriptedTest {
 protected:
    using Driver = typename Instrument::Driver;
    using Operations = std::vector<MtSicsOperation<Driver>>;

    /// As after a first operation: the port is open and no reset is due.
    static void GetReady(Open<Driver>& driver) {
        Line& line = Line::Here();
        Instrument::AnswerReset(line);
        ASSERT_EQ(driver.IsReady(), 1);
        line.Forget();
    }

    /// As after a text was shown.
    static void GetReadyWithText(Open<Driver>& driver) {
        GetReady(driver);
        driver.modelFlagB = 1;
    }

    /// Makes the balance ready and begins to count the time.
    void Begin(bool withText = false) {
        withText ? GetReadyWithText(balance) : GetReady(balance);
        start = line.Now();
    }

    long Elapsed() const { return line.Now() - start; }

    std::vector<std::string> Steps() const { return dialogue.Of(line); }

    static std::string Traced(const std::string& text) {
        return "trace \"" + std::string(Instrument::kName) + " - " + text + "\"";
    }

    /// Those that bring back the weight to the display.
    static Operations WeightOperations() {
        return {{"Tare", [](Driver& driver) { return driver.Tare(); }},
                {"TareSet", [](Driver& driver) { return driver.TareSet(10.0); }},
                {"Weight 0", [](Driver& driver) { return FailedWeight(driver, 0); }},
                {"Weight 1", [](Driver& driver) { return FailedWeight(driver, 1); }},
                {"Weight 2", [](Driver& driver) { return FailedWeight(driver, 2); }}};
    }

    static Operations EveryOperation() {
        Operations operations = WeightOperations();
        operations.push_back(
            {"DisplayMessage", [](Driver& driver) { return Display(driver, "READY"); }});
        for (const auto& own : Instrument::OwnOperations())
            operations.push_back(own);
        return operations;
    }

    const Dialogue dialogue{{"setBaudRate 2400", "setDataBits 7", "setParity even", "setStopBits 1",
                             "setFlowControl none",
                             R"(trace "Balance Comm Port settings:\nBaud rate = 2400\nParity = 2\n)"
                             R"(Data bits = 7\nStop bits = 0\nFlow control = 0\nTimeout = 1\n)"
                             R"(===> OK\n\n")"}};
    long start = 0;
    Open<Driver> balance;
    double weight = -1.0;
    int decimals = -1;
};

TYPED_TEST_SUITE_P(MtSicsDriver);

// Settings

TYPED_TEST_P(MtSicsDriver,
             Begins_with_2400_baud_even_parity_7_data_bits_1_s_and_a_reset_that_is_due) {
    EXPECT_EQ(this->balance.portNumber, 0);
    EXPECT_EQ(this->balance.baudRate, 2400);
    EXPECT_EQ(this->balance.parityCode, 2);
    EXPECT_EQ(this->balance.dataBits, 7);
    EXPECT_EQ(this->balance.stopBitsCode, 0);
    EXPECT_EQ(this->balance.flowControlCode, 0);
    EXPECT_EQ(this->balance.timeoutSeconds, 1);
    EXPECT_EQ(this->balance.portKind, 'S');
    EXPECT_EQ(this->balance.modelFlagB, 0);
    EXPECT_EQ(this->balance.modelFlagC, 1);
    EXPECT_THAT(this->line.Transcript(), IsEmpty());
}

TYPED_TEST_P(MtSicsDriver, Factory_settings_send_nothing_and_return_1) {
    EXPECT_EQ(this->balance.RestoreFactorySettings(), 1);
    EXPECT_THAT(this->line.Transcript(), IsEmpty());
}

// Readiness

TYPED_TEST_P(MtSicsDriver, A_later_readiness_only_opens_and_clears) {
    this->Begin();
    EXPECT_EQ(this->balance.IsReady(), 1);
    EXPECT_THAT(this->Steps(), ElementsAre("opening again"));
    EXPECT_EQ(this->Elapsed(), 0);
}

TYPED_TEST_P(MtSicsDriver, Readiness_leaves_a_text_on_the_display) {
    this->Begin(true);
    EXPECT_EQ(this->balance.IsReady(), 1);
    EXPECT_THAT(this->Steps(), ElementsAre("opening again"));
    EXPECT_EQ(this->balance.modelFlagB, 1);
}

TYPED_TEST_P(MtSicsDriver, Reset_with_another_answer_closes_the_port_and_stays_due) {
    this->line.Answer("@\r\n", {{"ES\r\n"}});
    EXPECT_EQ(this->balance.IsReady(), 0);
    EXPECT_THAT(this->Steps(),
                ElementsAre("opening", this->Traced(R"(Reset\n)"), R"(write "@\r\n")", "Sleep 500",
                            R"(read "ES\r\n")", "close", "delete port",
                            R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"));
    EXPECT_EQ(this->balance.modelFlagC, 1);

    TypeParam::AnswerReset(this->line);
    EXPECT_EQ(this->balance.IsReady(), 1);
    EXPECT_EQ(this->balance.modelFlagC, 0);
}

TYPED_TEST_P(MtSicsDriver, Reset_without_an_answer_closes_the_port_and_stays_due) {
    EXPECT_EQ(this->balance.IsReady(), 0);
    EXPECT_THAT(this->Steps(),
                ElementsAre("opening", this->Traced(R"(Reset\n)"), R"(write "@\r\n")", "Sleep 500",
                            "silent read", "close", "delete port",
                            R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"));
    EXPECT_EQ(this->line.Now(), 3500);
    EXPECT_EQ(this->balance.modelFlagC, 1);
}

TYPED_TEST_P(MtSicsDriver, Reset_that_is_not_taken_closes_the_port_without_a_pause) {
    this->line.Fail("write");
    EXPECT_EQ(this->balance.IsReady(), 0);
    EXPECT_THAT(this->line.Sleeps(), IsEmpty());
    EXPECT_EQ(this->line.PortObjects(), 0);
    EXPECT_EQ(this->balance.modelFlagC, 1);
}

TYPED_TEST_P(MtSicsDriver, Reset_takes_a_serial_number_behind_other_text) {
    TypeParam::AnswerReset(this->line, std::string(29, '.') + "I4 A\r\n");
    EXPECT_EQ(this->balance.IsReady(), 1);
}

TYPED_TEST_P(MtSicsDriver, Reset_does_not_see_I4_that_reaches_behind_the_32nd_character) {
    TypeParam::AnswerReset(this->line, std::string(30, '.') + "I4 A\r\n");
    EXPECT_EQ(this->balance.IsReady(), 0);
    EXPECT_THAT(this->line.Sent(), ElementsAre("@\r\n"));
}

TYPED_TEST_P(MtSicsDriver, Readiness_refuses_a_negative_port_number_without_a_trace) {
    this->balance.portNumber = -1;
    EXPECT_EQ(this->balance.IsReady(), 0);
    EXPECT_THAT(this->line.Transcript(), IsEmpty());
}

TYPED_TEST_P(MtSicsDriver, Every_operation_resets_a_new_balance_first_and_ends_when_it_fails) {
    for (const auto& operation : this->EveryOperation()) {
        SCOPED_TRACE(operation.name);
        this->line.Reset();
        Open<typename TypeParam::Driver> fresh;
        fresh.modelFlagB = 1;
        EXPECT_EQ(operation.call(fresh), 0);
        EXPECT_THAT(this->line.Sent(), ElementsAre("@\r\n"));
        EXPECT_EQ(this->line.PortObjects(), 0);
        EXPECT_EQ(fresh.modelFlagB, 1);
        EXPECT_EQ(fresh.modelFlagC, 1);
    }
}

TYPED_TEST_P(MtSicsDriver, Every_operation_fails_silently_once_the_settings_were_refused) {
    this->balance.SetCommConfig(2400, 2, 7, 0, 0, 61, 'S');
    EXPECT_EQ(this->balance.IsReady(), 0);
    this->line.Forget();
    for (const auto& operation : this->EveryOperation()) {
        SCOPED_TRACE(operation.name);
        EXPECT_EQ(operation.call(this->balance), 0);
    }
    EXPECT_EQ(this->balance.IsReady(), 0);
    EXPECT_THAT(this->line.Transcript(), IsEmpty());
}

TYPED_TEST_P(MtSicsDriver, Every_operation_asks_a_hosts_own_readiness_and_ends_with_its_0) {
    Host<typename TypeParam::Driver> own;
    own.readiness = [] { return 0; };
    for (const auto& operation : this->EveryOperation()) {
        SCOPED_TRACE(operation.name);
        own.calls.clear();
        EXPECT_EQ(operation.call(own), 0);
        EXPECT_EQ(own.ReadinessChecks(), 1);
    }
    EXPECT_THAT(this->line.Transcript(), IsEmpty());
}

TYPED_TEST_P(MtSicsDriver, Every_operation_ends_without_a_hang_when_the_line_is_unplugged) {
    for (const auto& operation : this->EveryOperation()) {
        SCOPED_TRACE(operation.name);
        this->line.Reset();
        Open<typename TypeParam::Driver> fresh;
        this->GetReady(fresh);
        this->line.Fail("wait", 1, PortFault::HangUp);
        const int result = operation.call(fresh);
        // A preset tare counts once it was handed over: a port without a far end still takes it.
        EXPECT_EQ(result, operation.name == std::string("TareSet") ? 1 : 0);
        EXPECT_TRUE(this->line.IsOpen());
        // The settings are refused now, and that is for good.
        EXPECT_EQ(operation.call(fresh), 0);
        EXPECT_EQ(fresh.serialObject, nullptr);
    }
}

// The weight display

TYPED_TEST_P(MtSicsDriver, Tare_TareSet_and_Weight_bring_back_the_weight_once_after_a_text) {
    for (const auto& operation : this->WeightOperations()) {
        SCOPED_TRACE(operation.name);
        this->line.Reset();
        Open<typename TypeParam::Driver> fresh;
        this->GetReadyWithText(fresh);
        this->line.Answer("DW\r\n", {{"DW A\r\n"}});
        operation.call(fresh);
        ASSERT_GE(this->Steps().size(), 5U);
        const std::vector<std::string> steps = this->Steps();
        EXPECT_THAT(std::vector<std::string>(steps.begin(), steps.begin() + 5),
                    ElementsAre("opening again", this->Traced(R"(Set weight mode\n)"),
                                R"(write "DW\r\n")", "Sleep 500", R"(read "DW A\r\n")"));
        EXPECT_EQ(fresh.modelFlagB, 0);
        this->line.Forget();
        operation.call(fresh);
        EXPECT_THAT(this->line.Sent(), Not(Contains("DW\r\n")));
    }
}

TYPED_TEST_P(MtSicsDriver, Tare_TareSet_and_Weight_close_the_port_when_DW_is_not_answered) {
    for (const auto& operation : this->WeightOperations()) {
        SCOPED_TRACE(operation.name);
        this->line.Reset();
        Open<typename TypeParam::Driver> fresh;
        this->GetReadyWithText(fresh);
        EXPECT_EQ(operation.call(fresh), 0);
        EXPECT_THAT(this->Steps(),
                    ElementsAre("opening again", this->Traced(R"(Set weight mode\n)"),
                                R"(write "DW\r\n")", "Sleep 500", "silent read", "close",
                                "delete port", R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"));
        EXPECT_EQ(fresh.modelFlagB, 1);
        EXPECT_EQ(fresh.modelFlagC, 0);
    }
}

TYPED_TEST_P(MtSicsDriver, Tare_TareSet_and_Weight_leave_the_port_open_when_DW_is_not_taken) {
    for (const auto& operation : this->WeightOperations()) {
        SCOPED_TRACE(operation.name);
        this->line.Reset();
        Open<typename TypeParam::Driver> fresh;
        this->GetReadyWithText(fresh);
        this->line.Fail("write");
        EXPECT_EQ(operation.call(fresh), 0);
        EXPECT_THAT(this->line.Sleeps(), IsEmpty());
        EXPECT_TRUE(this->line.IsOpen());
        EXPECT_EQ(fresh.modelFlagB, 1);
    }
}

TYPED_TEST_P(MtSicsDriver, Any_answer_brings_back_the_weight) {
    this->Begin(true);
    this->line.Answer("DW\r\n", {{"ES\r\n"}});
    this->line.Answer("T\r\n", {{"T S      10.00 g\r\n"}});
    EXPECT_EQ(this->balance.Tare(), 1);
    EXPECT_EQ(this->balance.modelFlagB, 0);
}

// Tare

TYPED_TEST_P(MtSicsDriver, First_tare_resets_and_the_second_does_not) {
    TypeParam::AnswerReset(this->line);
    this->line.AlwaysAnswer("T\r\n", {{"T S      10.00 g\r\n"}});
    EXPECT_EQ(this->balance.Tare(), 1);
    EXPECT_EQ(this->balance.Tare(), 1);
    std::vector<std::string> commands = TypeParam::ResetCommands();
    commands.insert(commands.end(), {"T\r\n", "T\r\n"});
    EXPECT_EQ(this->line.Sent(), commands);
}

TYPED_TEST_P(MtSicsDriver, Tare_does_not_see_T_S_behind_an_embedded_zero) {
    this->Begin();
    this->line.Answer("T\r\n", {{std::string("T\0 S T S 1.00 g\r\n", 17)}});
    EXPECT_EQ(this->balance.Tare(), 0);
    EXPECT_THAT(this->line.Trace(),
                HasSubstr(std::string(TypeParam::kName) + " - Command fail!\n\n"));
}

TYPED_TEST_P(MtSicsDriver, Tare_reads_on_when_an_answer_has_no_line_end) {
    this->Begin();
    this->line.Answer("T\r\n", {{"T S      10.00 g"}});
    EXPECT_EQ(this->balance.Tare(), 1);
    EXPECT_EQ(this->Elapsed(), 3000);
}

TYPED_TEST_P(MtSicsDriver, A_line_feed_alone_does_not_end_an_answer) {
    this->Begin();
    this->line.Answer("T\r\n", {{"T S      10.00 g\n"}});
    EXPECT_EQ(this->balance.Tare(), 1);
    EXPECT_EQ(this->Elapsed(), 3000);
}

TYPED_TEST_P(MtSicsDriver, Tare_when_each_call_fails_in_turn) {
    ExpectWhenEachCallFails<typename TypeParam::Driver>(
        kReopening + std::vector<FailingCall>{{R"(write "DW\r\n")", 0, "open"},
                                              {"wait 1000", 1, "open"},
                                              {R"(write "T\r\n")", 0, "open"},
                                              {"wait 1000", 1, "open"}},
        [this](auto& driver) {
            this->GetReadyWithText(driver);
            this->line.Answer("DW\r\n", {{"DW A\r\n"}});
            this->line.Answer("T\r\n", {{"T S      10.00 g\r\n"}});
        },
        [](auto& driver) { return driver.Tare(); });
}

// Preset tare

TYPED_TEST_P(MtSicsDriver, Preset_tare_adds_a_negative_tare_and_rounds_to_two_decimals) {
    this->Begin();
    this->line.Answer("T\r\n", {{"T S      -0.125 g\r\n"}});
    EXPECT_EQ(this->balance.TareSet(0.0), 1);
    EXPECT_THAT(this->line.Sent(), ElementsAre("T\r\n", "TA -0.12 g\r\n"));
}

TYPED_TEST_P(MtSicsDriver, Preset_tare_that_is_not_finite_is_sent_as_its_word) {
    this->Begin();
    this->line.AlwaysAnswer("T\r\n", {{"T S       2.50 g\r\n"}});
    EXPECT_EQ(this->balance.TareSet(NAN), 1);
    EXPECT_EQ(this->balance.TareSet(-INFINITY), 1);
    EXPECT_THAT(this->line.Sent(), ElementsAre("T\r\n", "TA nan g\r\n", "T\r\n", "TA -inf g\r\n"));
}

TYPED_TEST_P(MtSicsDriver, Longest_preset_tare_has_24_characters) {
    this->Begin();
    this->line.AlwaysAnswer("T\r\n", {{"T S       0.00 g\r\n"}});
    EXPECT_EQ(this->balance.TareSet(1e20), 1);
    EXPECT_EQ(this->balance.TareSet(-1e19), 1);
    EXPECT_THAT(this->line.Sent(), ElementsAre("T\r\n", "TA 100000000000000000000.00 g\r\n",
                                               "T\r\n", "TA -10000000000000000000.00 g\r\n"));
}

TYPED_TEST_P(MtSicsDriver, Preset_tare_when_each_call_fails_in_turn) {
    ExpectWhenEachCallFails<typename TypeParam::Driver>(
        kReopening + std::vector<FailingCall>{{R"(write "T\r\n")", 0, "open"},
                                              {"wait 1000", 1, "open"},
                                              {R"(write "TA 12.50 g\r\n")", 0, "open"},
                                              {"wait 1000", 1, "open"}},
        [this](auto& driver) {
            this->GetReady(driver);
            this->line.Answer("T\r\n", {{"T S       2.50 g\r\n"}});
            this->line.Answer("TA 12.50 g\r\n", {{"TA A      12.50 g\r\n"}});
        },
        [](auto& driver) { return driver.TareSet(10.0); });
}

// Weight, mode 0

TYPED_TEST_P(MtSicsDriver, Mode_0_fails_without_an_answer_and_without_a_trace_of_its_own) {
    this->Begin();
    EXPECT_EQ(FailedWeight(this->balance, 0), 0);
    EXPECT_THAT(this->Steps(), ElementsAre("opening again", this->Traced(R"(Stable weight\n)"),
                                           R"(write "S\r\n")", "Sleep 1000", "silent read"));
    EXPECT_EQ(this->Elapsed(), 4000);
    EXPECT_TRUE(this->line.IsOpen());
}

TYPED_TEST_P(MtSicsDriver, Mode_0_finds_S_S_behind_other_text_and_takes_its_first_number) {
    this->Begin();
    this->line.Answer("S\r\n", {{std::string(kSerialNumber, 8) + "\r\n" + kStable}});
    EXPECT_EQ(this->balance.Weight(0, &this->weight, nullptr), 1);
    EXPECT_EQ(this->weight, 4.0);
}

TYPED_TEST_P(MtSicsDriver, Mode_0_does_not_see_S_S_that_reaches_behind_the_33rd_character) {
    this->Begin();
    this->line.Answer("S\r\n", {{std::string(30, '.') + kStable}});
    EXPECT_EQ(FailedWeight(this->balance, 0), 0);
}

TYPED_TEST_P(MtSicsDriver, Mode_0_reads_a_weight_among_characters_with_the_8th_bit_set) {
    this->Begin();
    this->line.Answer("S\r\n", {{"\xd3S S \xa0 -12.50\xa0g\r\n"}});
    EXPECT_EQ(this->balance.Weight(0, &this->weight, nullptr), 1);
    EXPECT_EQ(this->weight, -12.5);
}

TYPED_TEST_P(MtSicsDriver, Mode_0_joins_an_answer_that_comes_in_two_pieces) {
    this->Begin();
    this->line.Answer("S\r\n", {{"S S     10", 1100}, {"0.00 g\r\n", 1150}});
    EXPECT_EQ(this->balance.Weight(0, &this->weight, nullptr), 1);
    EXPECT_EQ(this->weight, 100.0);
}

TYPED_TEST_P(MtSicsDriver, Mode_0_when_each_call_fails_in_turn) {
    ExpectWhenEachCallFails<typename TypeParam::Driver>(
        kReopening +
            std::vector<FailingCall>{{R"(write "S\r\n")", 0, "open"}, {"wait 1000", 1, "open"}},
        [this](auto& driver) {
            this->GetReady(driver);
            this->line.Answer("S\r\n", {{kStable}});
        },
        [](auto& driver) {
            double grams = -1.0;
            const int status = driver.Weight(0, &grams, nullptr);
            EXPECT_EQ(grams, status == 1 ? 100.0 : 0.0);
            return status;
        });
}

// Weight, mode 2

TYPED_TEST_P(MtSicsDriver, Mode_2_fails_at_a_status_without_a_weight) {
    for (const char* answer : {"S S\r\n", "S D\r\n"}) {
        Open<typename TypeParam::Driver> fresh;
        this->GetReady(fresh);
        this->line.Answer("SI\r\n", {{answer}});
        EXPECT_EQ(FailedWeight(fresh, 2), 0);
    }
}

TYPED_TEST_P(MtSicsDriver, Mode_2_fails_when_the_command_is_not_taken) {
    this->Begin();
    this->line.Fail("write", 1, PortFault::ShortWrite);
    EXPECT_EQ(FailedWeight(this->balance, 2), 0);
    EXPECT_EQ(this->Elapsed(), 0);
    EXPECT_TRUE(this->line.IsOpen());
}

// Weight, mode 1

TYPED_TEST_P(MtSicsDriver, Mode_1_fails_when_its_first_command_is_not_taken) {
    this->Begin();
    this->line.Fail("write");
    EXPECT_EQ(FailedWeight(this->balance, 1), 0);
    EXPECT_THAT(this->line.Sleeps(), IsEmpty());
    EXPECT_TRUE(this->line.IsOpen());
}

TYPED_TEST_P(MtSicsDriver, Mode_1_counts_a_pass_without_an_answer_between_others) {
    this->Begin();
    this->line.Answer("SI\r\n", {{kDynamic}});
    this->line.Answer("SI\r\n", {});
    this->line.Answer("SI\r\n", {{kDynamic}});
    EXPECT_EQ(this->balance.Weight(1, &this->weight, nullptr), 2);
    EXPECT_DOUBLE_EQ(this->weight, 4.0);
}

TYPED_TEST_P(MtSicsDriver, Mode_1_forgets_an_answer_that_comes_too_late_for_its_pass) {
    this->Begin();
    this->line.Answer("S\r\n", {{kStable, 3500}});
    this->line.Answer("SI\r\n", {{"S S      20.00 g\r\n"}});
    EXPECT_EQ(this->balance.Weight(1, &this->weight, nullptr), 1);
    EXPECT_EQ(this->weight, 20.0);
}

// Other modes

TYPED_TEST_P(MtSicsDriver, Any_other_mode_is_ready_shows_the_weight_and_fails) {
    for (const long mode : {3L, 7L, -1L, LONG_MAX, LONG_MIN, 1L << 32}) {
        SCOPED_TRACE(mode);
        this->line.Reset();
        Open<typename TypeParam::Driver> fresh;
        this->GetReadyWithText(fresh);
        this->line.Answer("DW\r\n", {{"DW A\r\n"}});
        EXPECT_EQ(FailedWeight(fresh, mode), 0);
        EXPECT_THAT(this->Steps(),
                    ElementsAre("opening again", this->Traced(R"(Set weight mode\n)"),
                                R"(write "DW\r\n")", "Sleep 500", R"(read "DW A\r\n")"));
        EXPECT_EQ(fresh.modelFlagB, 0);
    }
}

// The display

TYPED_TEST_P(MtSicsDriver, Showing_a_text_sends_it_in_quotes_and_reads_at_once) {
    this->Begin();
    this->line.Answer("D \"READY\"\r\n", {{"D A\r\n"}});
    EXPECT_EQ(Display(this->balance, "READY"), 1);
    EXPECT_THAT(this->Steps(), ElementsAre("opening again", this->Traced(R"(Display \"READY\"\n)"),
                                           R"(write "D \"READY\"\r\n")", R"(read "D A\r\n")"));
    EXPECT_EQ(this->Elapsed(), 0);
    EXPECT_EQ(this->balance.modelFlagB, 1);
    EXPECT_TRUE(this->line.IsOpen());
}

TYPED_TEST_P(MtSicsDriver, After_a_text_one_weight_sends_DW_and_the_next_does_not) {
    this->Begin();
    this->line.Answer("D \"READY\"\r\n", {{"D A\r\n"}});
    this->line.Answer("DW\r\n", {{"DW A\r\n"}});
    this->line.AlwaysAnswer("S\r\n", {{kStable}});
    EXPECT_EQ(Display(this->balance, "READY"), 1);
    EXPECT_EQ(this->balance.Weight(0, &this->weight, nullptr), 1);
    EXPECT_EQ(this->balance.Weight(0, &this->weight, nullptr), 1);
    EXPECT_THAT(this->line.Sent(), ElementsAre("D \"READY\"\r\n", "DW\r\n", "S\r\n", "S\r\n"));
}

TYPED_TEST_P(MtSicsDriver, A_second_text_follows_the_first_without_DW) {
    this->Begin();
    this->line.Answer("D \"ONE\"\r\n", {{"D A\r\n"}});
    this->line.Answer("D \"TWO\"\r\n", {{"D A\r\n"}});
    EXPECT_EQ(Display(this->balance, "ONE"), 1);
    EXPECT_EQ(Display(this->balance, "TWO"), 1);
    EXPECT_THAT(this->line.Sent(), ElementsAre("D \"ONE\"\r\n", "D \"TWO\"\r\n"));
}

TYPED_TEST_P(MtSicsDriver, Any_answer_counts_as_a_text_shown) {
    this->Begin();
    this->line.Answer("D \"READY\"\r\n", {{"EL\r\n"}});
    EXPECT_EQ(Display(this->balance, "READY"), 1);
    EXPECT_EQ(this->balance.modelFlagB, 1);
}

TYPED_TEST_P(MtSicsDriver, A_text_that_is_not_answered_is_not_shown) {
    this->Begin();
    EXPECT_EQ(Display(this->balance, "READY"), 0);
    EXPECT_EQ(this->balance.modelFlagB, 0);
    EXPECT_EQ(this->Elapsed(), 3000);
    this->balance.modelFlagB = 1;
    EXPECT_EQ(Display(this->balance, "READY"), 0);
    EXPECT_EQ(this->balance.modelFlagB, 1);
}

TYPED_TEST_P(MtSicsDriver, An_empty_text_is_sent_as_two_quotes) {
    this->Begin();
    this->line.Answer("D \"\"\r\n", {{"D A\r\n"}});
    EXPECT_EQ(Display(this->balance, ""), 1);
}

TYPED_TEST_P(MtSicsDriver, A_text_with_quotes_and_percent_signs_is_sent_as_it_stands) {
    this->Begin();
    this->line.Answer("D \"5% \"x\"\"\r\n", {{"D A\r\n"}});
    EXPECT_EQ(Display(this->balance, "5% \"x\""), 1);
}

TYPED_TEST_P(MtSicsDriver, A_text_of_57_characters_is_sent_whole) {
    this->Begin();
    const std::string command = "D \"" + std::string(57, 'x') + "\"\r\n";
    this->line.Answer(command, {{"D A\r\n"}});
    EXPECT_EQ(Display(this->balance, std::string(57, 'x')), 1);
    EXPECT_THAT(this->line.Sent(), ElementsAre(command));
}

TYPED_TEST_P(MtSicsDriver, A_null_text_is_refused_when_the_balance_is_ready) {
    TypeParam::AnswerReset(this->line);
    EXPECT_EQ(this->balance.DisplayMessage(nullptr), 0);
    EXPECT_EQ(this->line.Sent(), TypeParam::ResetCommands());
    EXPECT_EQ(this->balance.modelFlagC, 0);
}

TYPED_TEST_P(MtSicsDriver, A_text_that_is_refused_leaves_the_port_open) {
    this->Begin();
    EXPECT_EQ(Display(this->balance, std::string(58, 'x')), 0);
    EXPECT_TRUE(this->line.IsOpen());
    EXPECT_THAT(this->line.Sent(), IsEmpty());
}

TYPED_TEST_P(MtSicsDriver, Showing_a_text_when_each_call_fails_in_turn) {
    ExpectWhenEachCallFails<typename TypeParam::Driver>(
        kReopening + std::vector<FailingCall>{{R"(write "D \"READY\"\r\n")", 0, "open"},
                                              {"wait 1000", 1, "open"}},
        [this](auto& driver) {
            this->GetReady(driver);
            this->line.Answer("D \"READY\"\r\n", {{"D A\r\n"}});
        },
        [](auto& driver) { return Display(driver, "READY"); });
}

TYPED_TEST_P(MtSicsDriver, A_preset_tare_of_25_characters_ends_the_process) {
    this->Begin();
    this->line.AlwaysAnswer("T\r\n", {{"T S       0.00 g\r\n"}});
    EXPECT_EXIT(this->balance.TareSet(1e21), KilledBySignal(SIGABRT),
                "^libwbalance: a preset tare does not fit its buffer of 32 bytes\n$");
    EXPECT_EXIT(this->balance.TareSet(-1e20), KilledBySignal(SIGABRT),
                "^libwbalance: a preset tare does not fit its buffer of 32 bytes\n$");
}

REGISTER_TYPED_TEST_SUITE_P(
    MtSicsDriver, Begins_with_2400_baud_even_parity_7_data_bits_1_s_and_a_reset_that_is_due,
    Factory_settings_send_nothing_and_return_1, A_later_readiness_only_opens_and_clears,
    Readiness_leaves_a_text_on_the_display, Reset_with_another_answer_closes_the_port_and_stays_due,
    Reset_without_an_answer_closes_the_port_and_stays_due,
    Reset_that_is_not_taken_closes_the_port_without_a_pause,
    Reset_takes_a_serial_number_behind_other_text,
    Reset_does_not_see_I4_that_reaches_behind_the_32nd_character,
    Readiness_refuses_a_negative_port_number_without_a_trace,
    Every_operation_resets_a_new_balance_first_and_ends_when_it_fails,
    Every_operation_fails_silently_once_the_settings_were_refused,
    Every_operation_asks_a_hosts_own_readiness_and_ends_with_its_0,
    Every_operation_ends_without_a_hang_when_the_line_is_unplugged,
    Tare_TareSet_and_Weight_bring_back_the_weight_once_after_a_text,
    Tare_TareSet_and_Weight_close_the_port_when_DW_is_not_answered,
    Tare_TareSet_and_Weight_leave_the_port_open_when_DW_is_not_taken,
    Any_answer_brings_back_the_weight, First_tare_resets_and_the_second_does_not,
    Tare_does_not_see_T_S_behind_an_embedded_zero, Tare_reads_on_when_an_answer_has_no_line_end,
    A_line_feed_alone_does_not_end_an_answer, Tare_when_each_call_fails_in_turn,
    Preset_tare_adds_a_negative_tare_and_rounds_to_two_decimals,
    Preset_tare_that_is_not_finite_is_sent_as_its_word, Longest_preset_tare_has_24_characters,
    Preset_tare_when_each_call_fails_in_turn,
    Mode_0_fails_without_an_answer_and_without_a_trace_of_its_own,
    Mode_0_finds_S_S_behind_other_text_and_takes_its_first_number,
    Mode_0_does_not_see_S_S_that_reaches_behind_the_33rd_character,
    Mode_0_reads_a_weight_among_characters_with_the_8th_bit_set,
    Mode_0_joins_an_answer_that_comes_in_two_pieces, Mode_0_when_each_call_fails_in_turn,
    Mode_2_fails_at_a_status_without_a_weight, Mode_2_fails_when_the_command_is_not_taken,
    Mode_1_fails_when_its_first_command_is_not_taken,
    Mode_1_counts_a_pass_without_an_answer_between_others,
    Mode_1_forgets_an_answer_that_comes_too_late_for_its_pass,
    Any_other_mode_is_ready_shows_the_weight_and_fails,
    Showing_a_text_sends_it_in_quotes_and_reads_at_once,
    After_a_text_one_weight_sends_DW_and_the_next_does_not,
    A_second_text_follows_the_first_without_DW, Any_answer_counts_as_a_text_shown,
    A_text_that_is_not_answered_is_not_shown, An_empty_text_is_sent_as_two_quotes,
    A_text_with_quotes_and_percent_signs_is_sent_as_it_stands,
    A_text_of_57_characters_is_sent_whole, A_null_text_is_refused_when_the_balance_is_ready,
    A_text_that_is_refused_leaves_the_port_open, Showing_a_text_when_each_call_fails_in_turn,
    A_preset_tare_of_25_characters_ends_the_process);

}  // namespace scripted
