#pragma once

#include <cmath>
#include <csignal>
#include <cstdlib>

#include "FailingCalls.h"
#include "Host.h"

/// What the drivers whose weight is a signed reading have in common: the reading, and what they do
/// around it. A driver's own test has what differs, and instantiates both suites with
///
///     struct Instrument {
///         using Driver = ...;
///         static constexpr char kRequest[] = ...;
///         static constexpr char kName[] = ...;  // as the trace says it
///     };
namespace scripted {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using Steps = std::vector<std::string>;

constexpr char kSettings[] =
    R"(trace "Balance Comm Port settings:\nBaud rate = 2400\nParity = 0\nData bits = 8\n)"
    R"(Stop bits = 0\nFlow control = 0\nTimeout = 1\n===> OK\n\n")";
inline const Steps kSet = {"setBaudRate 2400", "setDataBits 8",       "setParity none",
                           "setStopBits 1",    "setFlowControl none", kSettings,
                           "clear input"};
inline const Steps kOpened =
    Steps{"open /dev/ttyS0", R"(trace "/dev/ttyS0 OPENED SUCCESSFULLY!\n\n")"} + kSet;
inline const Steps kFoundOpen = Steps{R"(trace "COM0 alread open!")"} + kSet;
inline const Steps kSilence = {"wait 1000: silence",
                               R"(trace "Timeout elapsed in scale read (attempt n. 1)\n")",
                               R"(trace "Read from scale:  (time elapsed: 1000 ms)\n")"};

/// A driver as it is constructed.
template <class Instrument>
class SignedReadingDriver : public ScriptedTest {
 protected:
    SignedReadingDriver() { unsetenv("WBALANCE_SLEEP"); }
    ~SignedReadingDriver() override { unsetenv("WBALANCE_SLEEP"); }

    void Answer(std::vector<Reply> replies) {
        line.Answer(Instrument::kRequest, std::move(replies));
    }
    void AlwaysAnswer(std::vector<Reply> replies) {
        line.AlwaysAnswer(Instrument::kRequest, std::move(replies));
    }
    static Steps Requests(std::size_t count) { return Steps(count, Instrument::kRequest); }
    int Weight(long mode) { return balance.Weight(mode, &weight, &decimals); }

    static std::string Traced(const std::string& text) {
        return "trace \"" + std::string(Instrument::kName) + " - " + text + "\"";
    }
    static Steps RequestSteps() {
        const std::string request = Instrument::kRequest;
        return {R"(trace "Sending weight command...")", "write \"" + request + "\"",
                "trace \"<== " + request + R"( ... OK\n\n")", R"(trace "success!\n")"};
    }

    Open<typename Instrument::Driver> balance;
    double weight = -1.0;
    int decimals = -1;
};

/// A driver whose port is open.
template <class Instrument>
class SignedReading : public SignedReadingDriver<Instrument> {
 protected:
    SignedReading() {
        this->balance.OpenAndSetDefCommConfig();
        this->line.Forget();
    }
};

TYPED_TEST_SUITE_P(SignedReadingDriver);
TYPED_TEST_SUITE_P(SignedReading);

// The driver

TYPED_TEST_P(SignedReadingDriver, The_constructor_sets_the_line_to_2400_8N1) {
    EXPECT_EQ(this->balance.portNumber, 0);
    EXPECT_EQ(this->balance.baudRate, 2400);
    EXPECT_EQ(this->balance.parityCode, 0);
    EXPECT_EQ(this->balance.dataBits, 8);
    EXPECT_EQ(this->balance.stopBitsCode, 0);
    EXPECT_EQ(this->balance.flowControlCode, 0);
    EXPECT_EQ(this->balance.timeoutSeconds, 1);
    EXPECT_EQ(this->balance.portKind, 'S');
    EXPECT_THAT(this->line.Transcript(), IsEmpty());
}

TYPED_TEST_P(SignedReadingDriver, IsReady_opens_and_takes_a_stable_weight) {
    this->Answer({{"1+    12.34 g\r\n"}});

    EXPECT_EQ(this->balance.IsReady(), 1);

    EXPECT_THAT(
        this->line.Transcript(),
        ElementsAreArray(
            kOpened + Steps{this->Traced(R"(Weight\n)"), R"(trace "Sleep timeout 100 ms\n")"} +
            this->RequestSteps() +
            Steps{"wait 1000: data", R"(read "1+    12.34 g\r\n")",
                  R"(trace "Read from scale: 1+    12.34 g\r\n (time elapsed: 0 ms)\n")",
                  "Sleep 100",
                  R"(trace "Read from scale this attempt: 1+    12.34 g\r\n. )"
                  R"(Complete answer from scale so far: 1+    12.34 g\r\n\n\n")"} +
            kSilence + Steps{this->Traced(R"(weight = 12.34 gr.\n\n)")}));
    EXPECT_TRUE(this->line.IsOpen());
}

TYPED_TEST_P(SignedReadingDriver, IsReady_fails_on_a_balance_that_never_settles_and_stays_open) {
    this->AlwaysAnswer({{"U+    12.34 g\r\n"}});
    EXPECT_EQ(this->balance.IsReady(), 0);
    EXPECT_EQ(this->line.Sent(), this->Requests(5));
    EXPECT_TRUE(this->line.IsOpen());
}

TYPED_TEST_P(SignedReadingDriver, A_silent_balance_is_traced_to_the_last_character) {
    EXPECT_EQ(this->balance.IsReady(), 0);

    const Steps refused =
        this->RequestSteps() + kSilence + Steps{R"(trace "Bad scale answer. Retring read...\n")"};
    EXPECT_THAT(
        this->line.Transcript(),
        ElementsAreArray(kOpened +
                         Steps{this->Traced(R"(Weight\n)"), R"(trace "Sleep timeout 100 ms\n")"} +
                         refused + refused + refused + refused + refused +
                         Steps{R"(trace "Weight procedure failed!")"}));
}

TYPED_TEST_P(SignedReadingDriver, A_second_readiness_finds_the_port_open_and_sets_it_again) {
    this->AlwaysAnswer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->balance.IsReady(), 1);
    this->line.Forget();
    EXPECT_EQ(this->balance.IsReady(), 1);
    Steps steps = this->line.Transcript();
    ASSERT_GT(steps.size(), kFoundOpen.size());
    steps.resize(kFoundOpen.size());
    EXPECT_THAT(steps, ElementsAreArray(kFoundOpen));
}

TYPED_TEST_P(SignedReadingDriver, A_negative_port_number_is_not_ready) {
    this->balance.portNumber = -1;
    EXPECT_EQ(this->balance.IsReady(), 0);
    EXPECT_THAT(this->line.Transcript(), IsEmpty());
}

TYPED_TEST_P(SignedReadingDriver, TareSet_returns_0_and_sends_nothing) {
    for (const double preset : {0.0, 12.5, -1.0, 1e300})
        EXPECT_EQ(this->balance.TareSet(preset), 0);
    EXPECT_THAT(this->line.Transcript(), IsEmpty());
}

TYPED_TEST_P(SignedReadingDriver, RestoreFactorySettings_is_the_base_class_one) {
    EXPECT_EQ(this->balance.RestoreFactorySettings(), 1);
    EXPECT_THAT(this->line.Transcript(), IsEmpty());
}

TYPED_TEST_P(SignedReadingDriver, IsReady_returns_what_the_hosts_Weight_returns_in_mode_1) {
    Host<typename TypeParam::Driver> host;
    host.weighing = Shows(0.0, 7);
    EXPECT_EQ(host.IsReady(), 7);
    EXPECT_THAT(host.calls, ElementsAre("IsReady", "Weight 1 without decimals"));
    EXPECT_THAT(this->line.Transcript(), ElementsAreArray(kOpened));
}

TYPED_TEST_P(SignedReadingDriver, Tare_succeeds_below_a_tenth_of_a_gram_strictly) {
    Host<typename TypeParam::Driver> host;
    host.readiness = [] { return 1; };
    ASSERT_EQ(host.OpenAndSetDefCommConfig(), 1);
    const auto tareAt = [&host](double rest) {
        host.weighing = Shows(rest);
        return host.Tare();
    };
    EXPECT_EQ(tareAt(0.0), 1);
    EXPECT_EQ(tareAt(0.05), 1);
    EXPECT_EQ(tareAt(std::nextafter(0.1, 0.0)), 1);
    EXPECT_EQ(tareAt(0.1), 0);
    EXPECT_EQ(tareAt(-std::nextafter(0.1, 0.0)), 1);
    EXPECT_EQ(tareAt(-0.1), 0);
    EXPECT_EQ(tareAt(12.34), 0);
    EXPECT_EQ(tareAt(std::nan("")), 0);
}

TYPED_TEST_P(SignedReadingDriver, Tare_fails_with_the_hosts_Weight_and_takes_any_other_result) {
    Host<typename TypeParam::Driver> host;
    host.readiness = [] { return 1; };
    ASSERT_EQ(host.OpenAndSetDefCommConfig(), 1);
    host.weighing = Shows(0.0, 0);
    EXPECT_EQ(host.Tare(), 0);
    host.weighing = Shows(0.0, 2);
    EXPECT_EQ(host.Tare(), 1);
}

TYPED_TEST_P(SignedReadingDriver, A_readiness_of_the_lines_alone_is_enough_for_every_operation) {
    WithLineReadiness<typename TypeParam::Driver> ready;
    this->AlwaysAnswer({{"1+     0.00 g\r\n"}});
    EXPECT_EQ(ready.IsReady(), 1);
    EXPECT_THAT(this->line.Transcript(), ElementsAreArray(kOpened));
    EXPECT_EQ(ready.Weight(0, &this->weight, nullptr), 1);
    EXPECT_EQ(ready.Tare(), 1);
}

TYPED_TEST_P(SignedReadingDriver, A_clear_that_fails_closes_the_port_with_its_trace) {
    this->line.Fail("clear");
    EXPECT_EQ(this->balance.IsReady(), 0);
    Steps refused = kOpened;
    refused.back() = "clear input: refused";
    EXPECT_THAT(
        this->line.Transcript(),
        ElementsAreArray(refused + Steps{"close", "delete port",
                                         R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"}));
}

TYPED_TEST_P(SignedReadingDriver, Readiness_when_each_call_on_the_port_fails) {
    using Driver = typename TypeParam::Driver;
    const std::string request = "write " + Quoted(TypeParam::kRequest);
    ExpectWhenEachCallFails<Driver>(
        {{"open /dev/ttyS0", 0, "held"},
         {"setBaudRate 2400", 0, "gone"},
         {"setDataBits 8", 0, "gone"},
         {"setParity none", 0, "gone"},
         {"setStopBits 1", 0, "gone"},
         {"setFlowControl none", 0, "gone"},
         {"clear input", 0, "closed"},
         {request, 0, "open"},
         {request, 0, "open", PortFault::ShortWrite},
         {request, 0, "open", PortFault::HangUp},
         {"wait 1000", 1, "open"},
         {"wait 1000", 1, "open", PortFault::EmptyRead},
         {"wait 1000", 0, "open", PortFault::HangUp},
         {"wait 1000", 1, "open"}},
        [this](auto&) { this->Answer({{"1+    12.34 g\r\n"}}); },
        [](auto& driver) { return driver.IsReady(); },
        [this](auto& driver) {
            this->line.Forget();
            EXPECT_EQ(driver.TareSet(1.0), 0);
            if (driver.serialObject != nullptr) return;
            EXPECT_EQ(driver.IsReady(), 0);
            EXPECT_EQ(driver.Tare(), 0);
            EXPECT_EQ(driver.Weight(1, &this->weight, nullptr), 0);
            EXPECT_THAT(this->line.Transcript(), IsEmpty());
        });
}

REGISTER_TYPED_TEST_SUITE_P(SignedReadingDriver, The_constructor_sets_the_line_to_2400_8N1,
                            IsReady_opens_and_takes_a_stable_weight,
                            IsReady_fails_on_a_balance_that_never_settles_and_stays_open,
                            A_silent_balance_is_traced_to_the_last_character,
                            A_second_readiness_finds_the_port_open_and_sets_it_again,
                            A_negative_port_number_is_not_ready,
                            TareSet_returns_0_and_sends_nothing,
                            RestoreFactorySettings_is_the_base_class_one,
                            IsReady_returns_what_the_hosts_Weight_returns_in_mode_1,
                            Tare_succeeds_below_a_tenth_of_a_gram_strictly,
                            Tare_fails_with_the_hosts_Weight_and_takes_any_other_result,
                            A_readiness_of_the_lines_alone_is_enough_for_every_operation,
                            A_clear_that_fails_closes_the_port_with_its_trace,
                            Readiness_when_each_call_on_the_port_fails);

// The reading

TYPED_TEST_P(SignedReading, A_stable_weight_is_taken_in_every_mode) {
    this->AlwaysAnswer({{"1+    12.34 g\r\n"}});
    for (const long mode : {0L, 1L, 2L, 3L, -1L}) {
        this->weight = -1.0;
        EXPECT_EQ(this->Weight(mode), 1);
        EXPECT_EQ(this->weight, 12.34);
    }
    EXPECT_EQ(this->line.Sent(), this->Requests(5));
}

TYPED_TEST_P(SignedReading, An_unstable_weight_is_taken_in_mode_2) {
    this->Answer({{"U-     0.50 g\r\n"}});
    EXPECT_EQ(this->Weight(2), 1);
    EXPECT_EQ(this->weight, -0.5);
    EXPECT_EQ(this->line.Sent(), this->Requests(1));
    EXPECT_THAT(this->line.Trace(),
                EndsWith(std::string(TypeParam::kName) + " - weight = -0.50 gr.\n\n"));
}

TYPED_TEST_P(SignedReading, An_unstable_weight_is_refused_five_times_in_the_other_modes) {
    this->AlwaysAnswer({{"U-     0.50 g\r\n"}});
    for (const long mode : {0L, 1L, 3L}) {
        this->line.Forget();
        this->weight = -1.0;
        EXPECT_EQ(this->Weight(mode), 0);
        EXPECT_EQ(this->weight, -0.5);
        EXPECT_EQ(this->line.Sent(), this->Requests(5));
        EXPECT_THAT(this->line.Trace(),
                    EndsWith("Bad scale answer. Retring read...\nWeight procedure failed!"));
        EXPECT_THAT(this->line.Trace(), Not(HasSubstr("weight =")));
    }
    EXPECT_TRUE(this->line.IsOpen());
}

TYPED_TEST_P(SignedReading, The_weight_is_requested_again_until_it_is_stable) {
    this->Answer({{"U+    12.31 g\r\n"}});
    this->Answer({{"U+    12.33 g\r\n"}});
    this->Answer({{"U+    12.33 g\r\n"}});
    this->Answer({{"U+    12.34 g\r\n"}});
    this->Answer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->weight, 12.34);
    EXPECT_EQ(this->line.Sent(), this->Requests(5));
}

TYPED_TEST_P(SignedReading, The_decimals_are_never_written_and_may_be_null) {
    this->AlwaysAnswer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(1), 1);
    EXPECT_EQ(this->decimals, -1);
    EXPECT_EQ(this->balance.Weight(1, &this->weight, nullptr), 1);
}

TYPED_TEST_P(SignedReading, Silence_is_requested_five_times) {
    EXPECT_EQ(this->Weight(1), 0);
    EXPECT_EQ(this->weight, 0.0);
    EXPECT_EQ(this->line.Sent(), this->Requests(5));
    EXPECT_EQ(this->line.Now(), 5000);
    EXPECT_THAT(this->line.Sleeps(), IsEmpty());
}

TYPED_TEST_P(SignedReading, Silence_after_a_refused_weight_leaves_that_weight) {
    this->Answer({{"U+     0.50 g\r\n"}});
    EXPECT_EQ(this->Weight(0), 0);
    EXPECT_EQ(this->weight, 0.5);
}

TYPED_TEST_P(SignedReading, An_answer_without_a_mark_after_a_refused_weight_leaves_zero) {
    for (int i = 0; i < 4; ++i)
        this->Answer({{"U+     0.50 g\r\n"}});
    this->Answer({{"ERR 54\r\n"}});
    EXPECT_EQ(this->Weight(0), 0);
    EXPECT_EQ(this->weight, 0.0);
}

TYPED_TEST_P(SignedReading, An_answer_in_pieces_is_joined_with_the_settle_delay_behind_each) {
    this->Answer({{"1"}, {"+    12", 400}, {".34 g\r\n", 1200}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->weight, 12.34);
    EXPECT_EQ(this->line.Sent(), this->Requests(1));
    EXPECT_THAT(this->line.Sleeps(), ElementsAre(100, 100, 100));
    EXPECT_THAT(this->line.Trace(), HasSubstr("Read from scale this attempt: +    12. "
                                              "Complete answer from scale so far: 1+    12\n\n"));
    EXPECT_THAT(this->line.Trace(),
                HasSubstr("Read from scale this attempt: .34 g\r\n. "
                          "Complete answer from scale so far: 1+    12.34 g\r\n\n\n"));
}

TYPED_TEST_P(SignedReading, A_piece_that_comes_after_a_whole_time_out_belongs_to_the_next_request) {
    this->Answer({{"U+    12"}, {"1+    12.34 g\r\n", 1150}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->weight, 12.34);
    EXPECT_EQ(this->line.Sent(), this->Requests(2));
    EXPECT_THAT(this->line.Trace(),
                HasSubstr("Read from scale this attempt: 1+    12.34 g\r\n. "
                          "Complete answer from scale so far: 1+    12.34 g\r\n\n\n"));
}

TYPED_TEST_P(SignedReading, The_port_is_neither_opened_nor_set_nor_cleared) {
    this->AlwaysAnswer({{"1+    12.34 g\r\n"}});
    const int calls = this->line.CallCount();
    EXPECT_EQ(this->Weight(1), 1);
    // The write, the wait that brings the answer, the wait that ends it.
    EXPECT_EQ(this->line.CallCount(), calls + 3);
}

TYPED_TEST_P(SignedReading, What_came_before_the_request_is_taken_for_its_answer) {
    this->line.Arrive(0, "1+    99.99 g\r\n");
    this->Answer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(1), 1);
    EXPECT_EQ(this->weight, 99.99);
}

// The settle delay

TYPED_TEST_P(SignedReading, WBALANCE_SLEEP_is_read_as_a_decimal_number) {
    struct Row {
        const char* value;
        int delay;
        const char* trace;
    };
    const Row rows[] = {{"250", 250, "Sleep timeout 250 ms\n"},
                        {"0", 0, "Sleep timeout 0 ms\n"},
                        {"", 0, "Sleep timeout 0 ms\n"},
                        {"fast", 0, "Sleep timeout 0 ms\n"},
                        {" \t42", 42, "Sleep timeout 42 ms\n"},
                        {"+7", 7, "Sleep timeout 7 ms\n"},
                        {"-5", -5, "Sleep timeout -5 ms\n"},
                        {"12ms", 12, "Sleep timeout 12 ms\n"},
                        {"1.5", 1, "Sleep timeout 1 ms\n"},
                        {"0x10", 0, "Sleep timeout 0 ms\n"},
                        {"010", 10, "Sleep timeout 10 ms\n"},
                        {"2147483647", 2147483647, "Sleep timeout 2147483647 ms\n"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.value);
        this->line.Forget();
        this->Answer({{"1+    12.34 g\r\n"}});
        setenv("WBALANCE_SLEEP", row.value, 1);
        EXPECT_EQ(this->Weight(1), 1);
        EXPECT_THAT(this->line.Sleeps(), ElementsAre(row.delay));
        EXPECT_THAT(this->line.Trace(), HasSubstr(row.trace));
    }
}

TYPED_TEST_P(SignedReading, WBALANCE_SLEEP_is_read_anew_by_every_weighing) {
    this->AlwaysAnswer({{"1+    12.34 g\r\n"}});
    setenv("WBALANCE_SLEEP", "250", 1);
    EXPECT_EQ(this->Weight(1), 1);
    setenv("WBALANCE_SLEEP", "30", 1);
    EXPECT_EQ(this->Weight(1), 1);
    unsetenv("WBALANCE_SLEEP");
    EXPECT_EQ(this->Weight(1), 1);
    EXPECT_THAT(this->line.Sleeps(), ElementsAre(250, 30, 100));
}

TYPED_TEST_P(SignedReading, A_negative_delay_takes_no_time) {
    setenv("WBALANCE_SLEEP", "-100000", 1);
    this->Answer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(1), 1);
    EXPECT_EQ(this->line.Now(), 1000);
}

TYPED_TEST_P(SignedReading, The_delay_is_paid_for_each_piece_of_each_request) {
    setenv("WBALANCE_SLEEP", "250", 1);
    this->Answer({{"U+"}, {"1.00 g\r\n", 500}});
    this->Answer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(1), 1);
    EXPECT_THAT(this->line.Sleeps(), ElementsAre(250, 250, 250));
}

// Long and strange answers

TYPED_TEST_P(SignedReading, An_answer_of_exactly_128_characters_is_kept_whole) {
    // The mark ends with the last character that fits.
    const std::string answer = std::string(126, 'x') + "1+";
    this->Answer({{answer}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->weight, 0.0);
    EXPECT_THAT(this->line.Trace(), HasSubstr("so far: " + answer + "\n\n"));
}

TYPED_TEST_P(SignedReading, Characters_past_128_are_dropped) {
    this->Answer({{std::string(127, 'x') + "1+    12.34"}});
    this->Answer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->line.Sent(), this->Requests(2));
    // One read gives 129 characters, and 128 of them are kept.
    EXPECT_THAT(this->line.Trace(), HasSubstr("this attempt: " + std::string(127, 'x') +
                                              "1+. Complete answer from "
                                              "scale so far: " +
                                              std::string(127, 'x') + "1\n\n"));
}

TYPED_TEST_P(SignedReading, The_collecting_ends_with_the_piece_that_fills_the_answer) {
    this->Answer({{"1+    12.34 g" + std::string(110, ' ')},
                  {"0123456789", 500},
                  {"beyond", 1500},
                  {"1- late", 2400}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->weight, 12.34);
    EXPECT_EQ(this->line.Now(), 600);
    EXPECT_THAT(this->line.Sleeps(), ElementsAre(100, 100));
    EXPECT_THAT(
        this->line.Trace(),
        HasSubstr("this attempt: 0123456789. Complete answer from scale so far: 1+    12.34 g" +
                  std::string(110, ' ') + "01234\n\n"));
}

TYPED_TEST_P(SignedReading, The_collecting_goes_on_with_127_characters_and_ends_with_128) {
    this->Answer({{"1+    12.34 g" + std::string(114, ' ')}, {"x", 500}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->line.Now(), 600);
    EXPECT_THAT(this->line.Sleeps(), ElementsAre(100, 100));
}

TYPED_TEST_P(SignedReading, A_balance_that_never_stops_sending_is_asked_five_times_and_fails) {
    for (long at = 100; at < 400'000; at += 100)
        this->line.Arrive(at, "0123456789");

    EXPECT_EQ(this->Weight(0), 0);

    EXPECT_EQ(this->line.Sent(), this->Requests(5));
    EXPECT_LT(this->line.Now(), 15'000);
}

TYPED_TEST_P(SignedReading, A_piece_that_begins_with_a_zero_byte_ends_the_collecting) {
    this->Answer({{std::string("\0001+    99.99 g\r\n", 16)}});
    this->Answer({{"1+"}, {std::string("\0001", 2), 500}, {"12.34 g\r\n", 900}});
    EXPECT_EQ(this->Weight(0), 1);
    // The second request's number has not come yet when its piece with the zero byte does.
    EXPECT_EQ(this->weight, 0.0);
    EXPECT_THAT(this->line.Sleeps(), ElementsAre(100));
    EXPECT_EQ(this->line.Sent(), this->Requests(2));
}

TYPED_TEST_P(SignedReading, What_follows_a_zero_byte_within_a_piece_is_lost) {
    this->Answer({{std::string("1+ 5\0006 g\r\n", 9)}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->weight, 5.0);
}

TYPED_TEST_P(SignedReading, Bytes_above_127_pass) {
    this->Answer({{"\xff\x80 1+    12.34 \xb5g\r\n"}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->weight, 12.34);
}

TYPED_TEST_P(SignedReading, A_percent_in_the_answer_is_interpreted_in_the_trace_alone) {
    this->Answer({{"1+    12.34 %d\r\n"}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->weight, 12.34);
    EXPECT_THAT(this->line.Trace(),
                HasSubstr("Read from scale this attempt: 1+    12.34 0\r\n. "
                          "Complete answer from scale so far: 1+    12.34 0\r\n\n\n"));
}

TYPED_TEST_P(SignedReading, An_echoed_request_does_not_hide_the_mark) {
    this->Answer({{std::string(TypeParam::kRequest) + "1-    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->weight, -12.34);
}

TYPED_TEST_P(SignedReading, A_piece_too_long_for_its_trace_ends_the_process) {
    this->Answer({{std::string(1000, 'x')}});
    EXPECT_EXIT(this->Weight(1), testing::KilledBySignal(SIGABRT),
                "libwbalance: a trace line does not fit its buffer of 1024 bytes");
}

TYPED_TEST_P(SignedReading, A_piece_of_900_characters_does_not) {
    this->Answer({{std::string(900, 'x')}});
    this->Answer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(1), 1);
    EXPECT_EQ(this->weight, 12.34);
}

// Failures

TYPED_TEST_P(SignedReading, A_request_that_can_not_be_sent_is_not_repeated) {
    this->line.Fail("write");
    EXPECT_EQ(this->Weight(1), 0);
    EXPECT_EQ(this->weight, 0.0);
    EXPECT_THAT(this->line.Trace(),
                EndsWith("Sending weight command...<== " + std::string(TypeParam::kRequest) +
                         " ... FAIL\n\n...failed!\n"));
    EXPECT_THAT(this->line.Sent(), IsEmpty());
    EXPECT_TRUE(this->line.IsOpen());
}

TYPED_TEST_P(SignedReading, A_third_request_that_can_not_be_sent_ends_the_weighing) {
    this->AlwaysAnswer({{"U+     0.50 g\r\n"}});
    this->line.Fail("write", 3);
    EXPECT_EQ(this->Weight(1), 0);
    EXPECT_EQ(this->weight, 0.5);
    EXPECT_EQ(this->line.Sent(), this->Requests(2));
    EXPECT_THAT(this->line.Trace(), EndsWith("FAIL\n\n...failed!\n"));
    EXPECT_THAT(this->line.Trace(), Not(HasSubstr("Weight procedure failed!")));
}

TYPED_TEST_P(SignedReading, A_wait_that_fails_costs_one_request) {
    this->line.Fail("wait");
    this->AlwaysAnswer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(1), 1);
    EXPECT_EQ(this->line.Sent(), this->Requests(2));
}

TYPED_TEST_P(SignedReading, A_wait_without_data_costs_one_request) {
    this->line.Fail("wait", 1, PortFault::EmptyRead);
    this->AlwaysAnswer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(1), 1);
    EXPECT_EQ(this->line.Sent(), this->Requests(2));
}

TYPED_TEST_P(SignedReading, A_far_end_that_goes_away_fails_after_five_requests) {
    this->line.Fail("wait", 1, PortFault::HangUp);
    EXPECT_EQ(this->Weight(1), 0);
    EXPECT_EQ(this->line.Sent(), this->Requests(5));
    EXPECT_TRUE(this->line.IsOpen());
}

TYPED_TEST_P(SignedReading, A_null_weight_returns_0_without_a_trace) {
    EXPECT_EQ(this->balance.Weight(1, nullptr, &this->decimals), 0);
    EXPECT_THAT(this->line.Transcript(), IsEmpty());
}

TYPED_TEST_P(SignedReading, Without_a_serial_object_the_weight_is_not_touched) {
    this->balance.SetCommConfig(2400, 0, 8, 0, 0, 61, 'S');
    EXPECT_EQ(this->balance.OpenAndSetDefCommConfig(), 0);
    this->line.Forget();
    EXPECT_EQ(this->Weight(1), 0);
    EXPECT_EQ(this->weight, -1.0);
    EXPECT_THAT(this->line.Transcript(), IsEmpty());
}

TYPED_TEST_P(SignedReading, On_a_closed_port_the_request_can_not_be_sent) {
    this->balance.CloseCommPort();
    this->line.Forget();
    EXPECT_EQ(this->Weight(1), 0);
    EXPECT_EQ(this->weight, 0.0);
    EXPECT_EQ(this->line.Trace(), std::string(TypeParam::kName) +
                                      " - Weight\nSleep timeout 100 ms\nSending weight command..."
                                      "<== " +
                                      TypeParam::kRequest + " ... FAIL\n\n...failed!\n");
}

// The parser alone

TYPED_TEST_P(SignedReading, The_parser_reads) {
    struct Row {
        const char* answer;
        int result;
        double weight;
    };
    const Row rows[] = {
        {"1+    12.34 g\r\n", 1, 12.34},
        {"1-    12.34 g\r\n", 1, -12.34},
        {"U+     0.50 g\r\n", 2, 0.5},
        {"U-     0.50 g\r\n", 2, -0.5},
        {"1+12", 1, 12.0},
        {"1+", 1, 0.0},
        {"1+ HHH g\r\n", 1, 0.0},
        {"09:10:37 1+ 12.34 g\r\n", 1, 12.34},
        // Stable wins over unstable, wherever they stand.
        {"U- 3.00 1- 4.00", 1, -3.0},
        {"U+ 3.00 1- 4.00", 1, 3.0},
        // The first '+' wins over every '-'.
        {"1-    12.34 g + 7.00", 1, 7.0},
        {"1- 12.34 g +", 1, 0.0},
        {"- 5 U- 3 +2 +1", 2, 2.0},
        // Without one the first '-' of the whole answer counts.
        {"-5 1-12.34", 1, -5.0},
        // What follows the sign is a number of its own.
        {"1+-5", 1, -5.0},
        {"1--5", 1, 5.0},
        {"1++5", 1, 5.0},
        {"1+ 1.5e2 g", 1, 150.0},
        {"1+ 1.2.3", 1, 1.2},
        {"11+ 2.00", 1, 2.0},
        {"?1+ 12.34 g\r\n", 1, 12.34},
        // No mark.
        {"", 0, 0.0},
        {"+ 12.34 g\r\n", 0, 0.0},
        {"1 +    12.34 g\r\n", 0, 0.0},
        {"u+ 12.34", 0, 0.0},
        {"2+ 12.34", 0, 0.0},
        {"ERR\r\n", 0, 0.0},
        {"1", 0, 0.0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.answer);
        std::string answer = row.answer;
        this->weight = -1.0;
        EXPECT_EQ(this->balance.ParseWeight(answer.data(), &this->weight, &this->decimals),
                  row.result);
        EXPECT_EQ(this->weight, row.weight);
        EXPECT_EQ(this->decimals, -1);
        EXPECT_EQ(answer, row.answer);
    }
    EXPECT_THAT(this->line.Transcript(), IsEmpty());
}

TYPED_TEST_P(SignedReading, The_parser_keeps_the_sign_of_a_negative_zero) {
    char answer[] = "1- 0.00 g";
    EXPECT_EQ(this->balance.ParseWeight(answer, &this->weight, nullptr), 1);
    EXPECT_EQ(this->weight, 0.0);
    EXPECT_TRUE(std::signbit(this->weight));
}

REGISTER_TYPED_TEST_SUITE_P(
    SignedReading, A_stable_weight_is_taken_in_every_mode, An_unstable_weight_is_taken_in_mode_2,
    An_unstable_weight_is_refused_five_times_in_the_other_modes,
    The_weight_is_requested_again_until_it_is_stable,
    The_decimals_are_never_written_and_may_be_null, Silence_is_requested_five_times,
    Silence_after_a_refused_weight_leaves_that_weight,
    An_answer_without_a_mark_after_a_refused_weight_leaves_zero,
    An_answer_in_pieces_is_joined_with_the_settle_delay_behind_each,
    A_piece_that_comes_after_a_whole_time_out_belongs_to_the_next_request,
    The_port_is_neither_opened_nor_set_nor_cleared,
    What_came_before_the_request_is_taken_for_its_answer,
    WBALANCE_SLEEP_is_read_as_a_decimal_number, WBALANCE_SLEEP_is_read_anew_by_every_weighing,
    A_negative_delay_takes_no_time, The_delay_is_paid_for_each_piece_of_each_request,
    An_answer_of_exactly_128_characters_is_kept_whole, Characters_past_128_are_dropped,
    The_collecting_ends_with_the_piece_that_fills_the_answer,
    The_collecting_goes_on_with_127_characters_and_ends_with_128,
    A_balance_that_never_stops_sending_is_asked_five_times_and_fails,
    A_piece_that_begins_with_a_zero_byte_ends_the_collecting,
    What_follows_a_zero_byte_within_a_piece_is_lost, Bytes_above_127_pass,
    A_percent_in_the_answer_is_interpreted_in_the_trace_alone,
    An_echoed_request_does_not_hide_the_mark, A_piece_too_long_for_its_trace_ends_the_process,
    A_piece_of_900_characters_does_not, A_request_that_can_not_be_sent_is_not_repeated,
    A_third_request_that_can_not_be_sent_ends_the_weighing, A_wait_that_fails_costs_one_request,
    A_wait_without_data_costs_one_request, A_far_end_that_goes_away_fails_after_five_requests,
    A_null_weight_returns_0_without_a_trace, Without_a_serial_object_the_weight_is_not_touched,
    On_a_closed_port_the_request_can_not_be_sent, The_parser_reads,
    The_parser_keeps_the_sign_of_a_negative_zero);

}  // namespace scripted
