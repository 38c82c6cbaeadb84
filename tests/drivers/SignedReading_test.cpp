// The reading that the XL-1800 and the EL-2000S share, through both drivers.

#include <cmath>
#include <csignal>
#include <cstdlib>

#include "ScriptedTest.h"

using scripted::Fault;
using scripted::Open;
using scripted::ScriptedTest;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

struct Xl1800 {
    using Driver = WbalanceDIC_XL1800;
    static constexpr char kRequest[] = "?1";
    static constexpr char kName[] = "Denver Instrument Company XL-1800";
};

struct El2000S {
    using Driver = WbalanceSetra_EL_2000S;
    static constexpr char kRequest[] = "#";
    static constexpr char kName[] = "Setra EL-2000S";
};

template <class Instrument>
class SignedReading : public ScriptedTest {
 protected:
    SignedReading() {
        unsetenv("WBALANCE_SLEEP");
        balance.OpenAndSetDefCommConfig();
        line.Forget();
    }
    ~SignedReading() override { unsetenv("WBALANCE_SLEEP"); }

    void Answer(std::vector<scripted::Reply> replies) {
        line.Answer(Instrument::kRequest, std::move(replies));
    }
    void AlwaysAnswer(std::vector<scripted::Reply> replies) {
        line.AlwaysAnswer(Instrument::kRequest, std::move(replies));
    }
    std::vector<std::string> Requests(std::size_t count) {
        return std::vector<std::string>(count, Instrument::kRequest);
    }
    int Weight(long mode) { return balance.Weight(mode, &weight, &decimals); }

    Open<typename Instrument::Driver> balance;
    double weight = -1.0;
    int decimals = -1;
};

using Instruments = testing::Types<Xl1800, El2000S>;

class InstrumentNames {
 public:
    template <class Instrument>
    static std::string GetName(int /*index*/) {
        return std::is_same_v<Instrument, Xl1800> ? "XL1800" : "EL2000S";
    }
};

TYPED_TEST_SUITE(SignedReading, Instruments, InstrumentNames);

TYPED_TEST(SignedReading, A_stable_weight_is_taken_in_every_mode) {
    this->AlwaysAnswer({{"1+    12.34 g\r\n"}});
    for (const long mode : {0L, 1L, 2L, 3L, -1L}) {
        this->weight = -1.0;
        EXPECT_EQ(this->Weight(mode), 1);
        EXPECT_EQ(this->weight, 12.34);
    }
    EXPECT_EQ(this->line.Sent(), this->Requests(5));
}

TYPED_TEST(SignedReading, An_unstable_weight_is_taken_in_mode_2) {
    this->Answer({{"U-     0.50 g\r\n"}});
    EXPECT_EQ(this->Weight(2), 1);
    EXPECT_EQ(this->weight, -0.5);
    EXPECT_EQ(this->line.Sent(), this->Requests(1));
    EXPECT_THAT(this->line.Trace(),
                EndsWith(std::string(TypeParam::kName) + " - weight = -0.50 gr.\n\n"));
}

TYPED_TEST(SignedReading, An_unstable_weight_is_refused_five_times_in_the_other_modes) {
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

TYPED_TEST(SignedReading, The_weight_is_requested_again_until_it_is_stable) {
    this->Answer({{"U+    12.31 g\r\n"}});
    this->Answer({{"U+    12.33 g\r\n"}});
    this->Answer({{"U+    12.33 g\r\n"}});
    this->Answer({{"U+    12.34 g\r\n"}});
    this->Answer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->weight, 12.34);
    EXPECT_EQ(this->line.Sent(), this->Requests(5));
}

TYPED_TEST(SignedReading, The_decimals_are_never_written_and_may_be_null) {
    this->AlwaysAnswer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(1), 1);
    EXPECT_EQ(this->decimals, -1);
    EXPECT_EQ(this->balance.Weight(1, &this->weight, nullptr), 1);
}

TYPED_TEST(SignedReading, Silence_is_requested_five_times) {
    EXPECT_EQ(this->Weight(1), 0);
    EXPECT_EQ(this->weight, 0.0);
    EXPECT_EQ(this->line.Sent(), this->Requests(5));
    EXPECT_EQ(this->line.Now(), 5000);
    EXPECT_THAT(this->line.Sleeps(), IsEmpty());
}

TYPED_TEST(SignedReading, Silence_after_a_refused_weight_leaves_that_weight) {
    this->Answer({{"U+     0.50 g\r\n"}});
    EXPECT_EQ(this->Weight(0), 0);
    EXPECT_EQ(this->weight, 0.5);
}

TYPED_TEST(SignedReading, An_answer_without_a_mark_after_a_refused_weight_leaves_zero) {
    for (int i = 0; i < 4; ++i)
        this->Answer({{"U+     0.50 g\r\n"}});
    this->Answer({{"ERR 54\r\n"}});
    EXPECT_EQ(this->Weight(0), 0);
    EXPECT_EQ(this->weight, 0.0);
}

TYPED_TEST(SignedReading, An_answer_in_pieces_is_joined_with_the_settle_delay_behind_each) {
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

TYPED_TEST(SignedReading, A_piece_that_comes_after_a_whole_time_out_belongs_to_the_next_request) {
    this->Answer({{"U+    12"}, {"1+    12.34 g\r\n", 1150}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->weight, 12.34);
    EXPECT_EQ(this->line.Sent(), this->Requests(2));
    EXPECT_THAT(this->line.Trace(),
                HasSubstr("Read from scale this attempt: 1+    12.34 g\r\n. "
                          "Complete answer from scale so far: 1+    12.34 g\r\n\n\n"));
}

TYPED_TEST(SignedReading, The_port_is_neither_opened_nor_set_nor_cleared) {
    this->AlwaysAnswer({{"1+    12.34 g\r\n"}});
    const int calls = this->line.CallCount();
    EXPECT_EQ(this->Weight(1), 1);
    // The write, the wait that brings the answer, the wait that ends it.
    EXPECT_EQ(this->line.CallCount(), calls + 3);
}

TYPED_TEST(SignedReading, What_came_before_the_request_is_taken_for_its_answer) {
    this->line.Arrive(0, "1+    99.99 g\r\n");
    this->Answer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(1), 1);
    EXPECT_EQ(this->weight, 99.99);
}

// The settle delay

TYPED_TEST(SignedReading, WBALANCE_SLEEP_is_read_as_a_decimal_number) {
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

TYPED_TEST(SignedReading, WBALANCE_SLEEP_is_read_anew_by_every_weighing) {
    this->AlwaysAnswer({{"1+    12.34 g\r\n"}});
    setenv("WBALANCE_SLEEP", "250", 1);
    EXPECT_EQ(this->Weight(1), 1);
    setenv("WBALANCE_SLEEP", "30", 1);
    EXPECT_EQ(this->Weight(1), 1);
    unsetenv("WBALANCE_SLEEP");
    EXPECT_EQ(this->Weight(1), 1);
    EXPECT_THAT(this->line.Sleeps(), ElementsAre(250, 30, 100));
}

TYPED_TEST(SignedReading, A_negative_delay_takes_no_time) {
    setenv("WBALANCE_SLEEP", "-100000", 1);
    this->Answer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(1), 1);
    EXPECT_EQ(this->line.Now(), 1000);
}

TYPED_TEST(SignedReading, The_delay_is_paid_for_each_piece_of_each_request) {
    setenv("WBALANCE_SLEEP", "250", 1);
    this->Answer({{"U+"}, {"1.00 g\r\n", 500}});
    this->Answer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(1), 1);
    EXPECT_THAT(this->line.Sleeps(), ElementsAre(250, 250, 250));
}

// Long and strange answers

TYPED_TEST(SignedReading, An_answer_of_exactly_128_characters_is_kept_whole) {
    // The mark ends with the last character that fits.
    const std::string answer = std::string(126, 'x') + "1+";
    this->Answer({{answer}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->weight, 0.0);
    EXPECT_THAT(this->line.Trace(), HasSubstr("so far: " + answer + "\n\n"));
}

TYPED_TEST(SignedReading, Characters_past_128_are_dropped) {
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

TYPED_TEST(SignedReading, The_collecting_ends_with_the_piece_that_fills_the_answer) {
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

TYPED_TEST(SignedReading, The_collecting_goes_on_with_127_characters_and_ends_with_128) {
    this->Answer({{"1+    12.34 g" + std::string(114, ' ')}, {"x", 500}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->line.Now(), 600);
    EXPECT_THAT(this->line.Sleeps(), ElementsAre(100, 100));
}

TYPED_TEST(SignedReading, A_balance_that_never_stops_sending_is_asked_five_times_and_fails) {
    for (long at = 100; at < 400'000; at += 100)
        this->line.Arrive(at, "0123456789");

    EXPECT_EQ(this->Weight(0), 0);

    EXPECT_EQ(this->line.Sent(), this->Requests(5));
    EXPECT_LT(this->line.Now(), 15'000);
}

TYPED_TEST(SignedReading, A_piece_that_begins_with_a_zero_byte_ends_the_collecting) {
    this->Answer({{std::string("\0001+    99.99 g\r\n", 16)}});
    this->Answer({{"1+"}, {std::string("\0001", 2), 500}, {"12.34 g\r\n", 900}});
    EXPECT_EQ(this->Weight(0), 1);
    // The second request's number has not come yet when its piece with the zero byte does.
    EXPECT_EQ(this->weight, 0.0);
    EXPECT_THAT(this->line.Sleeps(), ElementsAre(100));
    EXPECT_EQ(this->line.Sent(), this->Requests(2));
}

TYPED_TEST(SignedReading, What_follows_a_zero_byte_within_a_piece_is_lost) {
    this->Answer({{std::string("1+ 5\0006 g\r\n", 9)}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->weight, 5.0);
}

TYPED_TEST(SignedReading, Bytes_above_127_pass) {
    this->Answer({{"\xff\x80 1+    12.34 \xb5g\r\n"}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->weight, 12.34);
}

TYPED_TEST(SignedReading, A_percent_in_the_answer_is_interpreted_in_the_trace_alone) {
    this->Answer({{"1+    12.34 %d\r\n"}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->weight, 12.34);
    EXPECT_THAT(this->line.Trace(),
                HasSubstr("Read from scale this attempt: 1+    12.34 0\r\n. "
                          "Complete answer from scale so far: 1+    12.34 0\r\n\n\n"));
}

TYPED_TEST(SignedReading, An_echoed_request_does_not_hide_the_mark) {
    this->Answer({{std::string(TypeParam::kRequest) + "1-    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(0), 1);
    EXPECT_EQ(this->weight, -12.34);
}

TYPED_TEST(SignedReading, A_piece_too_long_for_its_trace_ends_the_process) {
    this->Answer({{std::string(1000, 'x')}});
    EXPECT_EXIT(this->Weight(1), testing::KilledBySignal(SIGABRT),
                "libwbalance: a trace line does not fit its buffer of 1024 bytes");
}

TYPED_TEST(SignedReading, A_piece_of_900_characters_does_not) {
    this->Answer({{std::string(900, 'x')}});
    this->Answer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(1), 1);
    EXPECT_EQ(this->weight, 12.34);
}

// Failures

TYPED_TEST(SignedReading, A_request_that_can_not_be_sent_is_not_repeated) {
    this->line.Fail("write");
    EXPECT_EQ(this->Weight(1), 0);
    EXPECT_EQ(this->weight, 0.0);
    EXPECT_THAT(this->line.Trace(),
                EndsWith("Sending weight command...<== " + std::string(TypeParam::kRequest) +
                         " ... FAIL\n\n...failed!\n"));
    EXPECT_THAT(this->line.Sent(), IsEmpty());
    EXPECT_TRUE(this->line.IsOpen());
}

TYPED_TEST(SignedReading, A_third_request_that_can_not_be_sent_ends_the_weighing) {
    this->AlwaysAnswer({{"U+     0.50 g\r\n"}});
    this->line.Fail("write", 3);
    EXPECT_EQ(this->Weight(1), 0);
    EXPECT_EQ(this->weight, 0.5);
    EXPECT_EQ(this->line.Sent(), this->Requests(2));
    EXPECT_THAT(this->line.Trace(), EndsWith("FAIL\n\n...failed!\n"));
    EXPECT_THAT(this->line.Trace(), Not(HasSubstr("Weight procedure failed!")));
}

TYPED_TEST(SignedReading, A_wait_that_fails_costs_one_request) {
    this->line.Fail("wait");
    this->AlwaysAnswer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(1), 1);
    EXPECT_EQ(this->line.Sent(), this->Requests(2));
}

TYPED_TEST(SignedReading, A_wait_without_data_costs_one_request) {
    this->line.Fail("wait", 1, Fault::EmptyRead);
    this->AlwaysAnswer({{"1+    12.34 g\r\n"}});
    EXPECT_EQ(this->Weight(1), 1);
    EXPECT_EQ(this->line.Sent(), this->Requests(2));
}

TYPED_TEST(SignedReading, A_far_end_that_goes_away_fails_after_five_requests) {
    this->line.Fail("wait", 1, Fault::HangUp);
    EXPECT_EQ(this->Weight(1), 0);
    EXPECT_EQ(this->line.Sent(), this->Requests(5));
    EXPECT_TRUE(this->line.IsOpen());
}

TYPED_TEST(SignedReading, A_null_weight_returns_0_without_a_trace) {
    EXPECT_EQ(this->balance.Weight(1, nullptr, &this->decimals), 0);
    EXPECT_THAT(this->line.Transcript(), IsEmpty());
}

TYPED_TEST(SignedReading, Without_a_serial_object_the_weight_is_not_touched) {
    this->balance.SetCommConfig(2400, 0, 8, 0, 0, 61, 'S');
    EXPECT_EQ(this->balance.OpenAndSetDefCommConfig(), 0);
    this->line.Forget();
    EXPECT_EQ(this->Weight(1), 0);
    EXPECT_EQ(this->weight, -1.0);
    EXPECT_THAT(this->line.Transcript(), IsEmpty());
}

TYPED_TEST(SignedReading, On_a_closed_port_the_request_can_not_be_sent) {
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

TYPED_TEST(SignedReading, The_parser_reads) {
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

TYPED_TEST(SignedReading, The_parser_keeps_the_sign_of_a_negative_zero) {
    char answer[] = "1- 0.00 g";
    EXPECT_EQ(this->balance.ParseWeight(answer, &this->weight, nullptr), 1);
    EXPECT_EQ(this->weight, 0.0);
    EXPECT_TRUE(std::signbit(this->weight));
}

}  // namespace
