#include <csignal>
#include <limits>

#include "../FailingCalls.h"
#include "../Host.h"

using scripted::ExpectWhenEachCallFails;
using scripted::Host;
using scripted::Open;
using scripted::PortFault;
using scripted::ScriptedTest;
using scripted::Shows;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr signed char kPending = 1;
constexpr signed char kDetected = 0;
constexpr int kStandardPM = 0;
constexpr int kSics = 1;

class WbalanceMettlerPMTest : public ScriptedTest {
 protected:
    /// A balance whose protocol an earlier readiness check found.
    void Detected(int protocol) {
        balance.modelFlagA = kDetected;
        balance.protocolCode = protocol;
        ASSERT_EQ(balance.OpenAndSetDefCommConfig(), 1);
        line.Forget();
    }

    /// The answer to the trial reading of the next readiness check.
    void AnswerReadiness() { line.Answer("SI\r\n", {{"S        0.00 g\r\n"}}); }

    /// One weighing of a balance in the standard protocol that answers readiness and `command`.
    int Weigh(long mode, const std::string& command, const std::string& answer) {
        Detected(kStandardPM);
        AnswerReadiness();
        line.Answer(command, {{answer}});
        return balance.Weight(mode, &weight, &decimals);
    }

    Open<WbalanceMettlerPM> balance;
    double weight = -1.0;
    int decimals = -1;
};

/// A host's readiness that opens the port and sends nothing.
void OpenWhenAsked(Host<WbalanceMettlerPM>& host) {
    host.readiness = [&host] { return host.OpenAndSetDefCommConfig(); };
}

// Construction

TEST_F(WbalanceMettlerPMTest, The_constructor_sets_600_baud_even_7_bits_and_a_pending_detection) {
    EXPECT_EQ(balance.portNumber, 0);
    EXPECT_EQ(balance.baudRate, 600);
    EXPECT_EQ(balance.parityCode, 2);
    EXPECT_EQ(balance.dataBits, 7);
    EXPECT_EQ(balance.stopBitsCode, 0);
    EXPECT_EQ(balance.flowControlCode, 0);
    EXPECT_EQ(balance.timeoutSeconds, 1);
    EXPECT_EQ(balance.protocolCode, kStandardPM);
    EXPECT_EQ(balance.modelFlagA, kPending);
    EXPECT_EQ(balance.portKind, 'S');
    EXPECT_NE(balance.serialObject, nullptr);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceMettlerPMTest, RestoreFactorySettings_returns_1_and_sends_nothing) {
    EXPECT_EQ(balance.RestoreFactorySettings(), 1);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// IsReady

TEST_F(WbalanceMettlerPMTest, The_first_IsReady_finds_MT_SICS_by_the_second_reset_answer) {
    line.AlwaysAnswer("@\r\n", {{"I4 A \"0123456\"\r\n"}});
    line.AlwaysAnswer("SI\r\n", {{"S S     100.00 g\r\n"}});

    EXPECT_EQ(balance.IsReady(), 1);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(
            "open /dev/ttyS0", R"(trace "/dev/ttyS0 OPENED SUCCESSFULLY!\n\n")", "setBaudRate 600",
            "setDataBits 7", "setParity even", "setStopBits 1", "setFlowControl none",
            R"(trace "Balance Comm Port settings:\nBaud rate = 600\nParity = 2\n)"
            R"(Data bits = 7\nStop bits = 0\nFlow control = 0\nTimeout = 1\n===> OK\n\n")",
            "clear input",
            // The first reset.
            R"(trace "Mettler PM - Reset\n")", R"(write "@\r\n")",
            R"(trace "<== @\r\n ... OK\n\n")", "Sleep 500", "wait 1000: data",
            R"(read "I4 A \"0123456\"\r\n")",
            R"(trace "Read from scale: I4 A \"0123456\"\r\n (time elapsed: 0 ms)\n")",
            // An immediate weight, read at once.
            R"(trace "Mettler PM - Unstable weight\n")", R"(write "SI\r\n")",
            R"(trace "<== SI\r\n ... OK\n\n")", "wait 1000: data", R"(read "S S     100.00 g\r\n")",
            R"(trace "Read from scale: S S     100.00 g\r\n (time elapsed: 0 ms)\n")",
            // The second reset, which tells.
            R"(trace "Mettler PM - Reset\n")", R"(write "@\r\n")",
            R"(trace "<== @\r\n ... OK\n\n")", "Sleep 500", "wait 1000: data",
            R"(read "I4 A \"0123456\"\r\n")",
            R"(trace "Read from scale: I4 A \"0123456\"\r\n (time elapsed: 0 ms)\n")",
            R"(trace "Mettler PM - PM MT-SICS protocol\n\n")",
            // The trial reading of every check.
            R"(trace "Mettler PM - Unstable weight\n")", R"(write "SI\r\n")",
            R"(trace "<== SI\r\n ... OK\n\n")", "Sleep 500", "wait 1000: data",
            R"(read "S S     100.00 g\r\n")",
            R"(trace "Read from scale: S S     100.00 g\r\n (time elapsed: 0 ms)\n")"));
    EXPECT_EQ(balance.protocolCode, kSics);
    EXPECT_EQ(balance.modelFlagA, kDetected);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPMTest, A_balance_that_does_not_know_the_reset_speaks_standard_PM) {
    line.AlwaysAnswer("@\r\n", {{"ES\r\n"}});
    line.AlwaysAnswer("SI\r\n", {{"S      100.00 g\r\n"}});
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_EQ(balance.protocolCode, kStandardPM);
    EXPECT_EQ(balance.modelFlagA, kDetected);
    EXPECT_THAT(line.Trace(), HasSubstr("Mettler PM - Standard PM protocol\n\n"));
}

TEST_F(WbalanceMettlerPMTest, The_first_reset_answer_does_not_tell_the_protocol) {
    line.Answer("@\r\n", {{"I4 A \"0123456\"\r\n"}});
    line.Answer("@\r\n", {{"ES\r\n"}});
    line.AlwaysAnswer("SI\r\n", {{"I4 A\r\n"}});
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_EQ(balance.protocolCode, kStandardPM);
}

TEST_F(WbalanceMettlerPMTest, The_second_reset_answer_alone_makes_it_MT_SICS) {
    line.Answer("@\r\n", {{"ES\r\n"}});
    line.Answer("@\r\n", {{"I4 A \"0123456\"\r\n"}});
    line.AlwaysAnswer("SI\r\n", {{"ES\r\n"}});
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_EQ(balance.protocolCode, kSics);
}

TEST_F(WbalanceMettlerPMTest, I4_counts_when_its_blank_is_the_32nd_character) {
    line.Answer("@\r\n", {{"ES\r\n"}});
    line.Answer("@\r\n", {{std::string(29, '.') + "I4 A\r\n"}});
    line.AlwaysAnswer("SI\r\n", {{"ES\r\n"}});
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_EQ(balance.protocolCode, kSics);
}

TEST_F(WbalanceMettlerPMTest, I4_does_not_count_when_its_blank_is_the_33rd_character) {
    line.Answer("@\r\n", {{"ES\r\n"}});
    line.Answer("@\r\n", {{std::string(30, '.') + "I4 A\r\n"}});
    line.AlwaysAnswer("SI\r\n", {{"ES\r\n"}});
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_EQ(balance.protocolCode, kStandardPM);
}

TEST_F(WbalanceMettlerPMTest, A_later_IsReady_sends_only_SI_and_keeps_the_protocol) {
    line.AlwaysAnswer("@\r\n", {{"I4 A \"0123456\"\r\n"}});
    line.AlwaysAnswer("SI\r\n", {{"S S     100.00 g\r\n"}});
    ASSERT_EQ(balance.IsReady(), 1);
    line.Forget();

    EXPECT_EQ(balance.IsReady(), 1);

    EXPECT_THAT(line.Sent(), ElementsAre("SI\r\n"));
    EXPECT_THAT(line.Sleeps(), ElementsAre(500));
    EXPECT_EQ(balance.protocolCode, kSics);
}

TEST_F(WbalanceMettlerPMTest, The_protocol_is_kept_when_the_port_and_its_settings_change) {
    Detected(kSics);
    line.AlwaysAnswer("@\r\n", {{"ES\r\n"}});
    line.AlwaysAnswer("SI\r\n", {{"S      100.00 g\r\n"}});
    balance.CloseCommPort();
    balance.SetCommPort(3);
    balance.SetCommConfig(2400, 0, 8, 0, 0, 2, 'U');
    line.Forget();
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_EQ(line.Transcript().front(), "open /dev/ttyUSB3");
    EXPECT_THAT(line.Sent(), ElementsAre("SI\r\n"));
    EXPECT_EQ(balance.protocolCode, kSics);
}

TEST_F(WbalanceMettlerPMTest, IsReady_does_not_look_at_the_answer_of_the_trial_reading) {
    Detected(kStandardPM);
    line.Answer("SI\r\n", {{"EL\r\n"}});
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPMTest, IsReady_without_an_answer_to_the_trial_reading_closes_the_port) {
    Detected(kStandardPM);
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_FALSE(line.IsOpen());
    EXPECT_EQ(line.PortObjects(), 0);
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale:  (time elapsed: 3000 ms)\n"
                                       "\nSCALE COM PORT HAS BEEN CLOSED.\n"));
    EXPECT_EQ(balance.modelFlagA, kDetected);
}

TEST_F(WbalanceMettlerPMTest, IsReady_reads_a_line_that_is_never_ended_until_its_time_is_over) {
    Detected(kStandardPM);
    line.Answer("SI\r\n", {{"S      100.00 g"}});
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_THAT(line.Trace(), HasSubstr("Timeout elapsed in scale read (attempt n. 3)\n"));
}

TEST_F(WbalanceMettlerPMTest, Detection_that_fails_at_any_exchange_closes_and_is_repeated) {
    const std::vector<std::string> exchanges = {"@\r\n", "SI\r\n", "@\r\n", "SI\r\n"};
    for (std::size_t silent = 0; silent < exchanges.size(); ++silent) {
        SCOPED_TRACE(silent);
        line.Reset();
        Open<WbalanceMettlerPM> fresh;
        for (std::size_t i = 0; i < silent; ++i)
            line.Answer(exchanges[i], {{"I4 A\r\n"}});
        line.Answer(exchanges[silent], {});

        EXPECT_EQ(fresh.IsReady(), 0);

        EXPECT_EQ(line.Sent(), std::vector<std::string>(
                                   exchanges.begin(),
                                   exchanges.begin() + static_cast<std::ptrdiff_t>(silent) + 1));
        EXPECT_EQ(line.PortObjects(), 0);
        EXPECT_EQ(fresh.modelFlagA, kPending);

        line.AlwaysAnswer("@\r\n", {{"ES\r\n"}});
        line.AlwaysAnswer("SI\r\n", {{"S      100.00 g\r\n"}});
        line.Forget();
        EXPECT_EQ(fresh.IsReady(), 1);
        EXPECT_THAT(line.Sent(), ElementsAre("@\r\n", "SI\r\n", "@\r\n", "SI\r\n"));
        EXPECT_EQ(fresh.protocolCode, kStandardPM);
        EXPECT_EQ(fresh.modelFlagA, kDetected);
    }
}

TEST_F(WbalanceMettlerPMTest, IsReady_with_a_pending_detection_when_each_call_on_the_port_fails) {
    ExpectWhenEachCallFails<WbalanceMettlerPM>(
        {{"open /dev/ttyS0", 0, "held"},
         {"setBaudRate 600", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "@\r\n")", 0, "closed"},
         {"wait 1000", 1, "open"},
         {R"(write "SI\r\n")", 0, "closed"},
         {"wait 1000", 1, "open"},
         {R"(write "@\r\n")", 0, "closed"},
         {"wait 1000", 1, "open"},
         {R"(write "SI\r\n")", 0, "closed"},
         {"wait 1000", 1, "open"}},
        [this](auto&) {
            line.AlwaysAnswer("@\r\n", {{"ES\r\n"}});
            line.AlwaysAnswer("SI\r\n", {{"S      100.00 g\r\n"}});
        },
        [](auto& driver) { return driver.IsReady(); });
}

TEST_F(WbalanceMettlerPMTest, IsReady_does_not_pause_after_a_command_that_was_not_sent) {
    line.Fail("write", 1);
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(line.Sleeps(), IsEmpty());
    EXPECT_THAT(line.Trace(), EndsWith("Mettler PM - Reset\n<== @\r\n ... FAIL\n\n"
                                       "\nSCALE COM PORT HAS BEEN CLOSED.\n"));
}

TEST_F(WbalanceMettlerPMTest, IsReady_refuses_a_negative_port_number_before_anything_else) {
    balance.portNumber = -1;
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// Tare

TEST_F(WbalanceMettlerPMTest, Tare_from_the_readiness_check_to_the_reading_of_the_check) {
    Detected(kStandardPM);
    AnswerReadiness();
    AnswerReadiness();
    line.Answer("S\r\n", {{"S        0.09 g\r\n"}});

    EXPECT_EQ(balance.Tare(), 1);

    std::vector<std::string> readiness = {
        R"(trace "COM0 alread open!")",
        "setBaudRate 600",
        "setDataBits 7",
        "setParity even",
        "setStopBits 1",
        "setFlowControl none",
        R"(trace "Balance Comm Port settings:\nBaud rate = 600\nParity = 2\n)"
        R"(Data bits = 7\nStop bits = 0\nFlow control = 0\nTimeout = 1\n===> OK\n\n")",
        "clear input",
        R"(trace "Mettler PM - Unstable weight\n")",
        R"(write "SI\r\n")",
        R"(trace "<== SI\r\n ... OK\n\n")",
        "Sleep 500",
        "wait 1000: data",
        R"(read "S        0.00 g\r\n")",
        R"(trace "Read from scale: S        0.00 g\r\n (time elapsed: 0 ms)\n")"};
    std::vector<std::string> expected = readiness;
    for (const char* event :
         {R"(trace "Mettler PM - Tare\n")", R"(write "T\r\n")", R"(trace "<== T\r\n ... OK\n\n")",
          "Sleep 500", "wait 1000: silence",
          R"(trace "Timeout elapsed in scale read (attempt n. 1)\n")", "wait 1000: silence",
          R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")", "wait 1000: silence",
          R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
          R"(trace "Read from scale:  (time elapsed: 3000 ms)\n")", "Sleep 2000"})
        expected.emplace_back(event);
    expected.insert(expected.end(), readiness.begin(), readiness.end());
    for (const char* event :
         {R"(trace "Mettler PM - Stable weight\n")", R"(write "S\r\n")",
          R"(trace "<== S\r\n ... OK\n\n")", "Sleep 1000", "wait 1000: data",
          R"(read "S        0.09 g\r\n")",
          R"(trace "Read from scale: S        0.09 g\r\n (time elapsed: 0 ms)\n")",
          R"(trace "Mettler PM - weight = 0.09\n\n")"})
        expected.emplace_back(event);
    EXPECT_EQ(line.Transcript(), expected);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPMTest, Tare_does_not_look_at_the_answer_to_T) {
    Detected(kStandardPM);
    line.AlwaysAnswer("SI\r\n", {{"S        0.00 g\r\n"}});
    line.Answer("T\r\n", {{"EL\r\n"}});
    line.Answer("S\r\n", {{"S        0.00 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_THAT(line.Sleeps(), ElementsAre(500, 500, 2000, 500, 1000));
    EXPECT_THAT(line.Trace(), HasSubstr("Read from scale: EL\r\n (time elapsed: 0 ms)\n"));
}

TEST_F(WbalanceMettlerPMTest, Tare_fails_at_exactly_a_tenth_on_either_side) {
    Detected(kStandardPM);
    line.AlwaysAnswer("SI\r\n", {{"S        0.00 g\r\n"}});
    line.Answer("S\r\n", {{"S        0.10 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
    line.Answer("S\r\n", {{"S       -0.10 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
    line.Answer("S\r\n", {{"S       -0.09 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
}

TEST_F(WbalanceMettlerPMTest, Tare_fails_when_the_check_gives_no_stable_weight) {
    Detected(kStandardPM);
    line.AlwaysAnswer("SI\r\n", {{"S        0.00 g\r\n"}});
    line.Answer("S\r\n", {{"SI\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale: SI\r\n (time elapsed: 0 ms)\n"));
}

TEST_F(WbalanceMettlerPMTest, Tare_in_MT_SICS_succeeds_on_an_overload_because_it_reads_0) {
    Detected(kSics);
    line.AlwaysAnswer("SI\r\n", {{"S +\r\n"}});
    line.Answer("T\r\n", {{"T +\r\n"}});
    line.Answer("S\r\n", {{"S +\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
}

TEST_F(WbalanceMettlerPMTest, Tare_uses_a_derived_class_for_readiness_and_the_check) {
    Host<WbalanceMettlerPM> host;
    OpenWhenAsked(host);
    host.weighing = Shows(0.0);
    EXPECT_EQ(host.Tare(), 1);
    EXPECT_THAT(host.calls, ElementsAre("IsReady", "Weight 0 without decimals"));
    EXPECT_THAT(line.Sent(), ElementsAre("T\r\n"));

    host.weighing = Shows(0.0, 0);
    EXPECT_EQ(host.Tare(), 0);
    host.weighing = Shows(0.0, 2);
    EXPECT_EQ(host.Tare(), 1);
    host.weighing = Shows(std::numeric_limits<double>::quiet_NaN(), 2);
    EXPECT_EQ(host.Tare(), 0);
    host.readiness = [] { return 0; };
    line.Forget();
    EXPECT_EQ(host.Tare(), 0);
    EXPECT_THAT(line.Sent(), IsEmpty());
}

TEST_F(WbalanceMettlerPMTest, Tare_when_each_call_on_the_port_fails) {
    ExpectWhenEachCallFails<WbalanceMettlerPM>(
        {{"setBaudRate 600", 0, "gone"},     {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},      {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"}, {"clear input", 0, "closed"},
         {R"(write "SI\r\n")", 0, "closed"}, {"wait 1000", 1, "open"},
         {R"(write "T\r\n")", 0, "open"},    {"wait 1000", 1, "open"},
         {"setBaudRate 600", 0, "gone"},     {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},      {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"}, {"clear input", 0, "closed"},
         {R"(write "SI\r\n")", 0, "closed"}, {"wait 1000", 1, "open"},
         {R"(write "S\r\n")", 0, "open"},    {"wait 1000", 1, "open"}},
        [this](auto& driver) {
            driver.modelFlagA = kDetected;
            ASSERT_EQ(driver.OpenAndSetDefCommConfig(), 1);
            line.AlwaysAnswer("SI\r\n", {{"S        0.00 g\r\n"}});
            line.AlwaysAnswer("T\r\n", {{"T S      0.00 g\r\n"}});
            line.AlwaysAnswer("S\r\n", {{"S        0.00 g\r\n"}});
        },
        [](auto& driver) { return driver.Tare(); });
}

// Weight, mode 0

TEST_F(WbalanceMettlerPMTest, Mode_0_waits_a_second_and_reads_a_stable_weight) {
    EXPECT_EQ(Weigh(0, "S\r\n", "S      -12.345 g\r\n"), 1);
    EXPECT_EQ(weight, -12.345);
    EXPECT_EQ(decimals, 3);
    EXPECT_THAT(line.Sleeps(), ElementsAre(500, 1000));
    EXPECT_THAT(line.Trace(), EndsWith("Mettler PM - Stable weight\n"
                                       "<== S\r\n ... OK\n\n"
                                       "Read from scale: S      -12.345 g\r\n"
                                       " (time elapsed: 0 ms)\n"
                                       "Mettler PM - weight = -12.35\n\n"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPMTest, Mode_0_of_a_dynamic_answer_fails_without_a_trace) {
    EXPECT_EQ(Weigh(0, "S\r\n", "SD      12.34 g\r\n"), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(line.Trace(),
                EndsWith("Read from scale: SD      12.34 g\r\n (time elapsed: 0 ms)\n"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPMTest, Mode_0_of_a_silent_balance_fails) {
    Detected(kStandardPM);
    AnswerReadiness();
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPMTest, Mode_0_leaves_decimals_alone_for_a_whole_number_and_allows_null) {
    EXPECT_EQ(Weigh(0, "S\r\n", "S         120 g\r\n"), 1);
    EXPECT_EQ(weight, 120.0);
    EXPECT_EQ(decimals, -1);
    AnswerReadiness();
    line.Answer("S\r\n", {{"S       12.34 g\r\n"}});
    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.34);
}

TEST_F(WbalanceMettlerPMTest, A_line_feed_alone_does_not_end_an_answer) {
    EXPECT_EQ(Weigh(0, "S\r\n", "S       12.34 g\n"), 1);
    EXPECT_EQ(weight, 12.34);
    EXPECT_THAT(line.Trace(), HasSubstr("Timeout elapsed in scale read (attempt n. 3)\n"));
}

TEST_F(WbalanceMettlerPMTest, Mode_0_finds_the_mark_up_to_the_33rd_character) {
    EXPECT_EQ(Weigh(0, "S\r\n", "1" + std::string(30, '.') + "S g\r\n"), 1);
    EXPECT_EQ(weight, 1.0);
}

TEST_F(WbalanceMettlerPMTest, Mode_0_does_not_find_a_mark_that_reaches_the_34th_character) {
    EXPECT_EQ(Weigh(0, "S\r\n", "1" + std::string(31, '.') + "S g\r\n"), 0);
    EXPECT_EQ(weight, 0.0);
}

TEST_F(WbalanceMettlerPMTest, Mode_0_reads_a_number_that_fills_the_answer_up_to_33_characters) {
    EXPECT_EQ(Weigh(0, "S\r\n", "S " + std::string(27, ' ') + "123456 g\r\n"), 1);
    EXPECT_EQ(weight, 1234.0);
}

TEST_F(WbalanceMettlerPMTest, Mode_0_reads_an_answer_up_to_a_zero_byte_only) {
    using namespace std::string_literals;
    EXPECT_EQ(Weigh(0, "S\r\n", "S      12\0.34 g\r\n"s), 1);
    EXPECT_EQ(weight, 12.0);
    EXPECT_EQ(decimals, -1);
}

TEST_F(WbalanceMettlerPMTest, Mode_0_fails_on_an_answer_that_begins_with_a_zero_byte) {
    using namespace std::string_literals;
    EXPECT_EQ(Weigh(0, "S\r\n", "\0S      12.34 g\r\n"s), 0);
}

TEST_F(WbalanceMettlerPMTest, Mode_0_reads_past_bytes_with_bit_7_set) {
    EXPECT_EQ(Weigh(0, "S\r\n", "\xd3S \xa0\xa0 12.34\xe7\r\n"), 1);
    EXPECT_EQ(weight, 12.34);
}

TEST_F(WbalanceMettlerPMTest, Mode_0_when_each_call_of_the_reading_fails) {
    ExpectWhenEachCallFails<WbalanceMettlerPM>(
        {{"setBaudRate 600", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "SI\r\n")", 0, "closed"},
         {"wait 1000", 1, "open"},
         {R"(write "S\r\n")", 0, "open"},
         {"wait 1000", 1, "open"}},
        [this](auto& driver) {
            driver.modelFlagA = kDetected;
            ASSERT_EQ(driver.OpenAndSetDefCommConfig(), 1);
            line.AlwaysAnswer("SI\r\n", {{"S        0.00 g\r\n"}});
            line.AlwaysAnswer("S\r\n", {{"S       12.34 g\r\n"}});
        },
        [](auto& driver) {
            double grams = -1.0;
            const int result = driver.Weight(0, &grams, nullptr);
            EXPECT_EQ(grams, result == 1 ? 12.34 : 0.0);
            return result;
        });
}

// MT-SICS answers begin with "S ", whatever they say.
class WbalanceMettlerPMSicsAnswer : public WbalanceMettlerPMTest,
                                    public testing::WithParamInterface<const char*> {};

TEST_P(WbalanceMettlerPMSicsAnswer, Reads_as_a_stable_weight_of_0) {
    Detected(kSics);
    AnswerReadiness();
    line.Answer("S\r\n", {{GetParam()}});
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 1);
    EXPECT_EQ(weight, 0.0);
}

INSTANTIATE_TEST_SUITE_P(Answer, WbalanceMettlerPMSicsAnswer,
                         testing::Values("S I\r\n", "S +\r\n", "S -\r\n"));

// The standard protocol's own do not.
class WbalanceMettlerPMStandardAnswer : public WbalanceMettlerPMTest,
                                        public testing::WithParamInterface<const char*> {};

TEST_P(WbalanceMettlerPMStandardAnswer, Is_no_weight_in_any_mode) {
    Detected(kStandardPM);
    for (const long mode : {0L, 1L, 2L}) {
        SCOPED_TRACE(mode);
        AnswerReadiness();
        line.Answer("S\r\n", {{GetParam()}});
        if (mode != 0) line.Answer("SI\r\n", {{GetParam()}});
        EXPECT_EQ(balance.Weight(mode, &weight, &decimals), 0);
        EXPECT_EQ(weight, 0.0);
        EXPECT_EQ(decimals, -1);
    }
    EXPECT_THAT(line.Trace(), Not(HasSubstr("fail")));
    EXPECT_THAT(line.Trace(), Not(HasSubstr("weight =")));
}

INSTANTIATE_TEST_SUITE_P(Answer, WbalanceMettlerPMStandardAnswer,
                         testing::Values("SI\r\n", "SI+\r\n", "SI-\r\n", "SD\r\n", "ES\r\n",
                                         "EL\r\n", "ET\r\n"));

// Weight, mode 2

TEST_F(WbalanceMettlerPMTest, Mode_2_of_a_dynamic_answer_is_2) {
    EXPECT_EQ(Weigh(2, "SI\r\n", "SD      12.30 g\r\n"), 2);
    EXPECT_EQ(weight, 12.30);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(line.Sleeps(), ElementsAre(500));
    EXPECT_THAT(line.Trace(), EndsWith("Mettler PM - Ustable weight\n"
                                       "<== SI\r\n ... OK\n\n"
                                       "Read from scale: SD      12.30 g\r\n"
                                       " (time elapsed: 0 ms)\n"
                                       "Mettler PM - Unstable weight = 12.30\n\n"));
}

TEST_F(WbalanceMettlerPMTest, Mode_2_of_a_stable_answer_is_1) {
    EXPECT_EQ(Weigh(2, "SI\r\n", "S       12.30 g\r\n"), 1);
    EXPECT_EQ(weight, 12.30);
    EXPECT_THAT(line.Trace(), EndsWith("Mettler PM - Stable weight = 12.30\n\n"));
}

TEST_F(WbalanceMettlerPMTest, Mode_2_of_a_dynamic_MT_SICS_answer_is_1) {
    EXPECT_EQ(Weigh(2, "SI\r\n", "S D      12.30 g\r\n"), 1);
    EXPECT_EQ(weight, 12.30);
    EXPECT_THAT(line.Trace(), EndsWith("Mettler PM - Stable weight = 12.30\n\n"));
}

TEST_F(WbalanceMettlerPMTest, Mode_2_of_a_silent_balance_fails) {
    Detected(kStandardPM);
    AnswerReadiness();
    EXPECT_EQ(balance.Weight(2, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale:  (time elapsed: 3000 ms)\n"));
}

TEST_F(WbalanceMettlerPMTest, Mode_2_fails_when_the_command_can_not_be_sent) {
    Detected(kStandardPM);
    AnswerReadiness();
    line.Fail("write", 2);
    EXPECT_EQ(balance.Weight(2, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_TRUE(line.IsOpen());
}

// Weight, mode 1

TEST_F(WbalanceMettlerPMTest, Mode_1_reads_a_stable_weight_at_once) {
    EXPECT_EQ(Weigh(1, "S\r\n", "S       12.34 g\r\n"), 1);
    EXPECT_EQ(weight, 12.34);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(line.Sleeps(), ElementsAre(500));
    EXPECT_THAT(line.Trace(), EndsWith("Mettler PM - Stable weight\n"
                                       "<== S\r\n ... OK\n\n"
                                       "Read from scale: S       12.34 g\r\n"
                                       " (time elapsed: 0 ms)\n"
                                       "Mettler PM - weight = 12.34\n\n"));
}

TEST_F(WbalanceMettlerPMTest, Mode_1_averages_five_dynamic_readings) {
    Detected(kStandardPM);
    AnswerReadiness();
    line.Answer("S\r\n", {{"SI\r\n"}});
    line.AlwaysAnswer("SI\r\n", {{"SD      10.00 g\r\n"}});

    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 2);

    EXPECT_EQ(weight, 10.0);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(line.Sleeps(), ElementsAre(500, 1000, 500, 500, 500, 500, 500));
    EXPECT_THAT(line.Sent(),
                ElementsAre("SI\r\n", "S\r\n", "SI\r\n", "SI\r\n", "SI\r\n", "SI\r\n", "SI\r\n"));
    EXPECT_THAT(line.Trace(), Not(HasSubstr("weight =")));
    EXPECT_THAT(line.Trace(), Not(HasSubstr("fail")));
}

TEST_F(WbalanceMettlerPMTest, Mode_1_traces_and_clears_in_every_pass) {
    Detected(kStandardPM);
    AnswerReadiness();
    line.Answer("S\r\n", {{"SI\r\n"}});
    line.Answer("SI\r\n", {{"SD      10.00 g\r\n"}});
    line.Answer("SI\r\n", {{"ES\r\n"}});

    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);

    const std::vector<std::string> all = line.Transcript();
    EXPECT_THAT(
        std::vector<std::string>(all.begin() + 15, all.end()),
        ElementsAre(
            R"(trace "Mettler PM - Stable weight\n")", R"(write "S\r\n")",
            R"(trace "<== S\r\n ... OK\n\n")", "wait 1000: data", R"(read "SI\r\n")",
            R"(trace "Read from scale: SI\r\n (time elapsed: 0 ms)\n")", "Sleep 1000",
            "clear input", R"(trace "Mettler PM - Ustable weight\n")", R"(write "SI\r\n")",
            R"(trace "<== SI\r\n ... OK\n\n")", "wait 1000: data", R"(read "SD      10.00 g\r\n")",
            R"(trace "Read from scale: SD      10.00 g\r\n (time elapsed: 0 ms)\n")", "Sleep 500",
            "clear input", R"(trace "Mettler PM - Ustable weight\n")", R"(write "SI\r\n")",
            R"(trace "<== SI\r\n ... OK\n\n")", "wait 1000: data", R"(read "ES\r\n")",
            R"(trace "Read from scale: ES\r\n (time elapsed: 0 ms)\n")"));
}

TEST_F(WbalanceMettlerPMTest, Mode_1_divides_by_five_when_two_passes_were_silent) {
    Detected(kStandardPM);
    AnswerReadiness();
    for (int i = 0; i < 3; ++i)
        line.Answer("SI\r\n", {{"SD      10.00 g\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 2);
    EXPECT_EQ(weight, 6.0);
}

TEST_F(WbalanceMettlerPMTest, Mode_1_gives_up_when_the_first_pass_is_silent) {
    Detected(kStandardPM);
    AnswerReadiness();
    line.Answer("SI\r\n", {});
    line.Answer("SI\r\n", {{"SD      10.00 g\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(line.Sent(), ElementsAre("SI\r\n", "S\r\n", "SI\r\n"));
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale:  (time elapsed: 3000 ms)\n"));
}

TEST_F(WbalanceMettlerPMTest, Mode_1_goes_on_after_a_silent_pass_once_a_dynamic_one_was_seen) {
    Detected(kStandardPM);
    AnswerReadiness();
    line.Answer("SI\r\n", {{"SD      10.00 g\r\n"}});
    line.Answer("SI\r\n", {});
    line.Answer("SI\r\n", {{"SD      20.00 g\r\n"}});
    line.Answer("SI\r\n", {{"S       42.00 g\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 1);
    EXPECT_EQ(weight, 42.0);
    EXPECT_THAT(line.Sleeps(), ElementsAre(500, 1000, 500, 500, 500));
}

TEST_F(WbalanceMettlerPMTest, Mode_1_stable_in_the_second_pass_is_traced_as_0_00_and_returned) {
    Detected(kStandardPM);
    AnswerReadiness();
    line.Answer("S\r\n", {{"SI\r\n"}});
    line.Answer("SI\r\n", {{"SD      10.00 g\r\n"}});
    line.Answer("SI\r\n", {{"S       12.345 g\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 1);
    EXPECT_EQ(weight, 12.345);
    EXPECT_EQ(decimals, 3);
    EXPECT_THAT(line.Trace(), EndsWith("Mettler PM - weight = 0.00\n\n"));
}

TEST_F(WbalanceMettlerPMTest, Mode_1_drops_the_sum_on_an_answer_that_is_no_weight) {
    Detected(kStandardPM);
    AnswerReadiness();
    line.Answer("SI\r\n", {{"SD      10.00 g\r\n"}});
    line.Answer("SI\r\n", {{"SI+\r\n"}});
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale: SI+\r\n (time elapsed: 0 ms)\n"));
}

TEST_F(WbalanceMettlerPMTest, Mode_1_fails_when_the_stable_command_can_not_be_sent) {
    Detected(kStandardPM);
    AnswerReadiness();
    line.Fail("write", 2);
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(line.Sleeps(), ElementsAre(500));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPMTest, Mode_1_whose_clearing_fails_in_the_first_pass_is_0) {
    Detected(kStandardPM);
    AnswerReadiness();
    line.Fail("clear", 2);
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(line.Sent(), ElementsAre("SI\r\n", "S\r\n"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPMTest, Mode_1_whose_clearing_fails_later_averages_what_was_read) {
    Detected(kStandardPM);
    AnswerReadiness();
    line.AlwaysAnswer("SI\r\n", {{"SD      10.00 g\r\n"}});
    line.Fail("clear", 4);
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 2);
    EXPECT_EQ(weight, 4.0);
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPMTest, Mode_1_whose_sending_fails_later_averages_what_was_read) {
    Detected(kStandardPM);
    AnswerReadiness();
    line.AlwaysAnswer("SI\r\n", {{"SD      10.00 g\r\n"}});
    line.Fail("write", 4);
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 2);
    EXPECT_EQ(weight, 2.0);
}

TEST_F(WbalanceMettlerPMTest, Mode_1_whose_sending_fails_in_the_first_pass_is_0) {
    Detected(kStandardPM);
    AnswerReadiness();
    line.Fail("write", 3);
    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(line.Sleeps(), ElementsAre(500, 1000));
}

TEST_F(WbalanceMettlerPMTest, Mode_1_stores_the_0_of_its_failure_after_a_hosts_own_readiness) {
    Host<WbalanceMettlerPM> own;
    own.readiness = [this, &own] {
        weight = 7.0;
        return own.OpenAndClear();
    };
    EXPECT_EQ(own.Weight(1, &weight, nullptr), 0);
    EXPECT_EQ(weight, 0.0);
}

// Weight, other modes and derived classes

TEST_F(WbalanceMettlerPMTest, Any_other_mode_is_0_after_the_readiness_check) {
    Detected(kStandardPM);
    for (const long mode : {-1L, 3L, 1L << 32}) {
        AnswerReadiness();
        line.Forget();
        EXPECT_EQ(balance.Weight(mode, &weight, &decimals), 0);
        EXPECT_EQ(weight, 0.0);
        EXPECT_THAT(line.Sent(), ElementsAre("SI\r\n"));
        EXPECT_TRUE(line.IsOpen());
    }
}

TEST_F(WbalanceMettlerPMTest, A_failing_readiness_check_is_a_weight_of_0_with_result_0) {
    for (const long mode : {0L, 1L, 2L}) {
        Open<WbalanceMettlerPM> fresh;
        weight = -1.0;
        EXPECT_EQ(fresh.Weight(mode, &weight, &decimals), 0);
        EXPECT_EQ(weight, 0.0);
        EXPECT_EQ(line.PortObjects(), 0);
    }
}

TEST_F(WbalanceMettlerPMTest, Weight_uses_the_readiness_check_of_a_derived_class) {
    Host<WbalanceMettlerPM> host;
    OpenWhenAsked(host);
    line.Answer("S\r\n", {{"S       12.34 g\r\n"}});
    EXPECT_EQ(host.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(weight, 12.34);
    EXPECT_EQ(host.ReadinessChecks(), 1);
    EXPECT_THAT(line.Sent(), ElementsAre("S\r\n"));
    host.readiness = [] { return 0; };
    EXPECT_EQ(host.Weight(0, &weight, nullptr), 0);
    EXPECT_EQ(weight, 0.0);
}

// TareSet, standard PM

TEST_F(WbalanceMettlerPMTest, TareSet_in_standard_PM_tares_presets_pauses_and_checks) {
    Detected(kStandardPM);
    line.AlwaysAnswer("SI\r\n", {{"S        0.00 g\r\n"}});
    line.Answer("S\r\n", {{"S        0.00 g\r\n"}});
    line.Answer("S\r\n", {{"S        5.08 g\r\n"}});

    EXPECT_EQ(balance.TareSet(5.0), 1);

    EXPECT_THAT(line.Sent(), ElementsAre("SI\r\n", "T\r\n", "SI\r\n", "S\r\n", "SI\r\n",
                                         "B 5.00\r\n", "SI\r\n", "S\r\n"));
    EXPECT_THAT(line.Sleeps(), ElementsAre(500, 500, 2000, 500, 1000, 500, 2000, 500, 1000));
    EXPECT_THAT(line.Trace(), HasSubstr("Mettler PM - Set tare at 5.00\n"
                                        "<== B 5.00\r\n ... OK\n\n"
                                        "COM0 alread open!"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPMTest, TareSet_in_standard_PM_compares_magnitudes_without_a_lower_limit) {
    struct Case {
        const char* reading;
        int result;
    };
    for (const Case& each : {Case{"S        5.09 g\r\n", 1}, Case{"S        5.11 g\r\n", 0},
                             Case{"S       -5.08 g\r\n", 1}, Case{"S       -5.20 g\r\n", 0},
                             Case{"S        0.00 g\r\n", 1}, Case{"S       -5.00 g\r\n", 1}}) {
        SCOPED_TRACE(each.reading);
        line.Reset();
        Open<WbalanceMettlerPM> fresh;
        fresh.modelFlagA = kDetected;
        line.AlwaysAnswer("SI\r\n", {{"S        0.00 g\r\n"}});
        line.Answer("S\r\n", {{"S        0.00 g\r\n"}});
        line.Answer("S\r\n", {{each.reading}});
        EXPECT_EQ(fresh.TareSet(5.0), each.result);
    }
}

TEST_F(WbalanceMettlerPMTest, TareSet_in_standard_PM_fails_at_a_difference_of_exactly_a_tenth) {
    Detected(kStandardPM);
    line.AlwaysAnswer("SI\r\n", {{"S        0.00 g\r\n"}});
    line.Answer("S\r\n", {{"S        0.00 g\r\n"}});
    line.Answer("S\r\n", {{"S        0.10 g\r\n"}});
    EXPECT_EQ(balance.TareSet(0.0), 0);
}

TEST_F(WbalanceMettlerPMTest, TareSet_in_standard_PM_takes_a_negative_preset_by_its_magnitude) {
    Detected(kStandardPM);
    line.AlwaysAnswer("SI\r\n", {{"S        0.00 g\r\n"}});
    line.Answer("S\r\n", {{"S        0.00 g\r\n"}});
    line.Answer("S\r\n", {{"S        5.00 g\r\n"}});
    EXPECT_EQ(balance.TareSet(-5.0), 1);
    EXPECT_THAT(line.Sent(), testing::Contains("B -5.00\r\n"));
}

TEST_F(WbalanceMettlerPMTest, TareSet_in_standard_PM_ends_when_the_tare_fails) {
    Detected(kStandardPM);
    line.AlwaysAnswer("SI\r\n", {{"S        0.00 g\r\n"}});
    line.Answer("S\r\n", {{"S        1.00 g\r\n"}});
    EXPECT_EQ(balance.TareSet(5.0), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("SI\r\n", "T\r\n", "SI\r\n", "S\r\n"));
}

TEST_F(WbalanceMettlerPMTest, TareSet_in_standard_PM_ends_when_readiness_fails_after_the_tare) {
    Detected(kStandardPM);
    AnswerReadiness();
    AnswerReadiness();
    line.Answer("S\r\n", {{"S        0.00 g\r\n"}});
    EXPECT_EQ(balance.TareSet(5.0), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("SI\r\n", "T\r\n", "SI\r\n", "S\r\n", "SI\r\n"));
    EXPECT_EQ(line.PortObjects(), 0);
}

TEST_F(WbalanceMettlerPMTest, TareSet_in_standard_PM_fails_when_the_preset_can_not_be_sent) {
    Detected(kStandardPM);
    line.AlwaysAnswer("SI\r\n", {{"S        0.00 g\r\n"}});
    line.AlwaysAnswer("S\r\n", {{"S        0.00 g\r\n"}});
    line.Fail("write", 6);
    EXPECT_EQ(balance.TareSet(5.0), 0);
    EXPECT_THAT(line.Trace(), EndsWith("Mettler PM - Set tare at 5.00\n"
                                       "<== B 5.00\r\n ... FAIL\n\n"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPMTest, TareSet_in_standard_PM_fails_when_the_check_gives_no_weight) {
    Detected(kStandardPM);
    line.AlwaysAnswer("SI\r\n", {{"S        0.00 g\r\n"}});
    line.Answer("S\r\n", {{"S        0.00 g\r\n"}});
    line.Answer("S\r\n", {{"EL\r\n"}});
    EXPECT_EQ(balance.TareSet(5.0), 0);
}

TEST_F(WbalanceMettlerPMTest, TareSet_before_any_IsReady_goes_the_standard_way_whatever_it_finds) {
    line.AlwaysAnswer("@\r\n", {{"I4 A \"0123456\"\r\n"}});
    line.AlwaysAnswer("SI\r\n", {{"S S       0.00 g\r\n"}});
    line.AlwaysAnswer("T\r\n", {{"T S       0.00 g\r\n"}});
    line.AlwaysAnswer("S\r\n", {{"S S       0.00 g\r\n"}});
    EXPECT_EQ(balance.TareSet(5.0), 1);
    EXPECT_EQ(balance.protocolCode, kSics);
    EXPECT_THAT(line.Sent(), ElementsAre("@\r\n", "SI\r\n", "@\r\n", "SI\r\n", "T\r\n", "SI\r\n",
                                         "S\r\n", "SI\r\n", "B 5.00\r\n", "SI\r\n", "S\r\n"));
}

TEST_F(WbalanceMettlerPMTest, TareSet_in_standard_PM_uses_a_derived_class_for_every_step) {
    Host<WbalanceMettlerPM> host;
    OpenWhenAsked(host);
    host.weighing = Shows(0.0);
    EXPECT_EQ(host.TareSet(5.0), 1);
    EXPECT_THAT(host.calls, ElementsAre("IsReady", "Weight 0 without decimals", "IsReady",
                                        "Weight 0 without decimals"));
    EXPECT_THAT(line.Sent(), ElementsAre("T\r\n", "B 5.00\r\n"));
}

class HostTare : public Host<WbalanceMettlerPM> {
 public:
    int Tare() override { return 0; }
};

TEST_F(WbalanceMettlerPMTest, TareSet_in_standard_PM_uses_the_tare_of_a_derived_class) {
    HostTare host;
    EXPECT_EQ(host.TareSet(5.0), 0);
    EXPECT_THAT(host.calls, IsEmpty());
    EXPECT_THAT(line.Sent(), IsEmpty());
}

// TareSet, MT-SICS

TEST_F(WbalanceMettlerPMTest, TareSet_in_MT_SICS_adds_the_tare_that_the_balance_holds) {
    Detected(kSics);
    AnswerReadiness();
    line.Answer("T\r\n", {{"T S       2.50 g\r\n"}});
    line.Answer("TA 7.50 g\r\n", {{"TA A      7.50 g\r\n"}});

    EXPECT_EQ(balance.TareSet(5.0), 1);

    const std::vector<std::string> all = line.Transcript();
    EXPECT_THAT(
        std::vector<std::string>(all.begin() + 15, all.end()),
        ElementsAre(R"(trace "Mettler PM - Tare\n")", R"(write "T\r\n")",
                    R"(trace "<== T\r\n ... OK\n\n")", "wait 1000: data",
                    R"(read "T S       2.50 g\r\n")",
                    R"(trace "Read from scale: T S       2.50 g\r\n (time elapsed: 0 ms)\n")",
                    R"(trace "Mettler PM - weight = 2.50\n\n")",
                    R"(trace "Mettler PM - Set tare at 7.50\n")", R"(write "TA 7.50 g\r\n")",
                    R"(trace "<== TA 7.50 g\r\n ... OK\n\n")", "wait 1000: data",
                    R"(read "TA A      7.50 g\r\n")",
                    R"(trace "Read from scale: TA A      7.50 g\r\n (time elapsed: 0 ms)\n")"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPMTest, TareSet_in_MT_SICS_takes_0_for_a_tare_that_was_not_confirmed) {
    Detected(kSics);
    AnswerReadiness();
    line.Answer("T\r\n", {{"T I\r\n"}});
    line.Answer("TA 5.00 g\r\n", {{"TA A      5.00 g\r\n"}});
    EXPECT_EQ(balance.TareSet(5.0), 1);
    EXPECT_THAT(line.Trace(), HasSubstr("Read from scale: T I\r\n (time elapsed: 0 ms)\n"
                                        "Mettler PM - Command fail!\n\n"
                                        "Mettler PM - Set tare at 5.00\n"));
}

TEST_F(WbalanceMettlerPMTest, TareSet_in_MT_SICS_counts_a_refused_preset_as_success) {
    Detected(kSics);
    AnswerReadiness();
    line.Answer("T\r\n", {{"T S       0.00 g\r\n"}});
    line.Answer("TA 5.00 g\r\n", {{"TA L\r\n"}});
    EXPECT_EQ(balance.TareSet(5.0), 1);
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale: TA L\r\n (time elapsed: 0 ms)\n"
                                       "Mettler PM - Command fail!\n"));
}

TEST_F(WbalanceMettlerPMTest, TareSet_in_MT_SICS_takes_0_for_a_tare_without_a_weight) {
    Detected(kSics);
    AnswerReadiness();
    line.Answer("T\r\n", {{"T S\r\n"}});
    EXPECT_EQ(balance.TareSet(5.0), 1);
    EXPECT_THAT(line.Sent(), ElementsAre("SI\r\n", "T\r\n", "TA 5.00 g\r\n"));
    EXPECT_THAT(line.Trace(), HasSubstr("Mettler PM - Command fail!\n\n"));
}

TEST_F(WbalanceMettlerPMTest, TareSet_in_MT_SICS_is_confirmed_by_a_blank_behind_TA_A) {
    Detected(kSics);
    AnswerReadiness();
    line.Answer("T\r\n", {{"T S       0.00 g\r\n"}});
    line.Answer("TA 5.00 g\r\n", {{"TA A\r\n"}});
    EXPECT_EQ(balance.TareSet(5.0), 1);
    EXPECT_THAT(line.Trace(), EndsWith("Mettler PM - Command fail!\n"));
}

TEST_F(WbalanceMettlerPMTest, TareSet_in_MT_SICS_counts_an_unanswered_preset_as_success) {
    Detected(kSics);
    AnswerReadiness();
    line.Answer("T\r\n", {{"T S       0.00 g\r\n"}});
    EXPECT_EQ(balance.TareSet(5.0), 1);
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale:  (time elapsed: 3000 ms)\n"));
}

TEST_F(WbalanceMettlerPMTest, TareSet_in_MT_SICS_fails_when_T_is_not_answered) {
    Detected(kSics);
    AnswerReadiness();
    EXPECT_EQ(balance.TareSet(5.0), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("SI\r\n", "T\r\n"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceMettlerPMTest, TareSet_in_MT_SICS_when_each_call_on_the_port_fails) {
    ExpectWhenEachCallFails<WbalanceMettlerPM>(
        {{"setBaudRate 600", 0, "gone"},
         {"setDataBits 7", 0, "gone"},
         {"setParity even", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {R"(write "SI\r\n")", 0, "closed"},
         {"wait 1000", 1, "open"},
         {R"(write "T\r\n")", 0, "open"},
         {"wait 1000", 1, "open"},
         {R"(write "TA 5.00 g\r\n")", 0, "open"},
         {"wait 1000", 1, "open"}},
        [this](auto& driver) {
            driver.modelFlagA = kDetected;
            driver.protocolCode = kSics;
            ASSERT_EQ(driver.OpenAndSetDefCommConfig(), 1);
            line.AlwaysAnswer("SI\r\n", {{"S S       0.00 g\r\n"}});
            line.AlwaysAnswer("T\r\n", {{"T S       0.00 g\r\n"}});
            line.AlwaysAnswer("TA 5.00 g\r\n", {{"TA A      5.00 g\r\n"}});
        },
        [](auto& driver) { return driver.TareSet(5.0); });
}

TEST_F(WbalanceMettlerPMTest, TareSet_in_MT_SICS_uses_the_readiness_check_of_a_derived_class) {
    Host<WbalanceMettlerPM> host;
    OpenWhenAsked(host);
    host.protocolCode = kSics;
    line.Answer("T\r\n", {{"T S       0.00 g\r\n"}});
    EXPECT_EQ(host.TareSet(5.0), 1);
    EXPECT_THAT(host.calls, ElementsAre("IsReady"));
    host.readiness = [] { return 0; };
    EXPECT_EQ(host.TareSet(5.0), 0);
}

using WbalanceMettlerPMDeathTest = WbalanceMettlerPMTest;

TEST_F(WbalanceMettlerPMDeathTest, A_preset_of_28_characters_ends_the_process_in_standard_PM) {
    Host<WbalanceMettlerPM> host;
    OpenWhenAsked(host);
    host.weighing = Shows(0.0);
    EXPECT_EQ(host.TareSet(1e24), 1);
    EXPECT_EXIT(host.TareSet(5e24), testing::KilledBySignal(SIGABRT),
                "libwbalance: a preset-tare command does not fit its buffer of 32 bytes");
}

TEST_F(WbalanceMettlerPMDeathTest, A_preset_of_25_characters_ends_the_process_in_MT_SICS) {
    Detected(kSics);
    line.AlwaysAnswer("SI\r\n", {{"S S       0.00 g\r\n"}});
    line.AlwaysAnswer("T\r\n", {{"T S       0.00 g\r\n"}});
    EXPECT_EQ(balance.TareSet(1e20), 1);
    EXPECT_EXIT(balance.TareSet(1e21), testing::KilledBySignal(SIGABRT),
                "libwbalance: a preset-tare command does not fit its buffer of 32 bytes");
}

// Without a serial object

TEST_F(WbalanceMettlerPMTest, Without_a_serial_object_every_operation_fails_without_a_trace) {
    balance.timeoutSeconds = 61;
    ASSERT_EQ(balance.IsReady(), 0);
    ASSERT_EQ(balance.serialObject, nullptr);
    line.Forget();
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_EQ(balance.TareSet(5.0), 0);
    balance.protocolCode = kSics;
    EXPECT_EQ(balance.TareSet(5.0), 0);
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(line.Transcript(), IsEmpty());
    EXPECT_EQ(balance.modelFlagA, kPending);
}

TEST_F(WbalanceMettlerPMTest, An_adapter_pulled_during_a_weighing_fails_it) {
    Detected(kStandardPM);
    AnswerReadiness();
    line.Fail("wait", 2, PortFault::HangUp);
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(weight, 0.0);
    // The settings are refused from then on, and that is for good.
    EXPECT_EQ(balance.Weight(0, &weight, &decimals), 0);
    EXPECT_EQ(balance.serialObject, nullptr);
}

}  // namespace
