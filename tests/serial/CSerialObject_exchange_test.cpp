// Commands, answers, and answers gathered from several rounds.

#include <array>
#include <climits>

#include "OpenSerialObject.h"

using scripted::PortFault;
using scripted::ScriptedTest;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

/// An open line with a time-out of one second and a buffer that shows which bytes were written.
class CSerialObjectExchangeTest : public ScriptedTest {
 protected:
    CSerialObjectExchangeTest() {
        serial.OpenCommPort(0, 'S');
        serial.SetCommConfig(2400, 2, 7, 0, 0, 1);
        line.Forget();
        buffer.fill('#');
    }

    int Send(const std::string& command) {
        std::string writable = command;
        return serial.SendCommand(writable.data());
    }

    int Receive(long size, int attempts, const char* terminator) {
        return serial.ReceiveAnswer(buffer.data(), size, attempts, terminator);
    }

    /// The first `size` bytes of the buffer, zeros included.
    std::string Buffer(std::size_t size) const { return {buffer.data(), size}; }

    /// The beginning of the buffer, one byte more than `size`: the byte behind is still a '#'.
    void ExpectBuffer(const std::string& text, std::size_t size) const {
        std::string expected = text;
        expected.resize(size, '\0');
        EXPECT_EQ(Buffer(size + 1), expected + '#');
    }

    OpenSerialObject serial;
    std::array<char, 2048> buffer{};
};

using CSerialObjectExchangeDeathTest = CSerialObjectExchangeTest;

// SendCommand.

TEST_F(CSerialObjectExchangeTest, A_command_is_written_as_it_stands_and_traced_with_OK) {
    EXPECT_EQ(Send("S\r\n"), 1);

    EXPECT_THAT(line.Transcript(),
                ElementsAre(R"(write "S\r\n")", R"(trace "<== S\r\n ... OK\n\n")"));
}

TEST_F(CSerialObjectExchangeTest, A_command_is_neither_flushed_nor_waited_for) {
    Send("S\r\n");

    EXPECT_EQ(line.Now(), 0);
    EXPECT_THAT(line.Left(), IsEmpty());
}

TEST_F(CSerialObjectExchangeTest, A_command_leaves_with_the_wait_for_the_next_answer) {
    line.Answer("S\r\n", {{"S S      1.00 g\r\n"}});
    Send("S\r\n");

    EXPECT_EQ(Receive(33, 1, "\r\n"), 1);

    EXPECT_THAT(line.Left(), ElementsAre("S\r\n"));
    ExpectBuffer("S S      1.00 g\r\n", 33);
}

TEST_F(CSerialObjectExchangeTest, A_command_of_which_the_port_takes_less_is_traced_with_FAIL) {
    line.Fail("write", 1, PortFault::ShortWrite);

    EXPECT_EQ(Send("S\r\n"), 0);

    EXPECT_EQ(line.Trace(), "<== S\r\n ... FAIL\n\n");
}

TEST_F(CSerialObjectExchangeTest, A_command_that_the_port_refuses_is_traced_with_FAIL) {
    line.Fail("write");

    EXPECT_EQ(Send("S\r\n"), 0);

    EXPECT_EQ(line.Trace(), "<== S\r\n ... FAIL\n\n");
    EXPECT_EQ(serial.status, 1);
}

TEST_F(CSerialObjectExchangeTest, A_command_to_a_port_that_did_not_open_is_traced_with_FAIL) {
    serial.CloseCommPort();
    line.Fail("open");
    serial.OpenCommPort(0, 'S');
    line.Forget();

    EXPECT_EQ(Send("S\r\n"), 0);

    EXPECT_EQ(line.Trace(), "<== S\r\n ... FAIL\n\n");
}

TEST_F(CSerialObjectExchangeTest, An_empty_command_counts_as_sent) {
    EXPECT_EQ(Send(""), 1);

    EXPECT_EQ(line.Trace(), "<==  ... OK\n\n");
}

TEST_F(CSerialObjectExchangeTest, A_percent_sign_in_a_command_is_sent_and_its_trace_interpreted) {
    EXPECT_EQ(Send("D 5%d\r\n"), 1);

    EXPECT_THAT(line.Sent(), ElementsAre("D 5%d\r\n"));
    EXPECT_EQ(line.Trace(), "<== D 50\r\n ... OK\n\n");
}

TEST_F(CSerialObjectExchangeTest, A_command_of_1010_characters_is_sent_and_traced) {
    const std::string command(1010, 'c');

    EXPECT_EQ(Send(command), 1);

    EXPECT_EQ(line.Trace(), "<== " + command + " ... OK\n\n");
}

TEST_F(CSerialObjectExchangeDeathTest, A_command_of_1011_characters_ends_the_process) {
    EXPECT_EXIT(Send(std::string(1011, 'c')), testing::KilledBySignal(SIGABRT),
                "^libwbalance: a trace line does not fit its buffer of 1024 bytes\n$");
}

TEST_F(CSerialObjectExchangeDeathTest, A_failing_command_of_1009_characters_ends_the_process) {
    line.Fail("write");

    EXPECT_EXIT(Send(std::string(1009, 'c')), testing::KilledBySignal(SIGABRT),
                "^libwbalance: a trace line does not fit its buffer of 1024 bytes\n$");
}

// ReceiveAnswer without a terminator.

TEST_F(CSerialObjectExchangeTest, A_null_buffer_gives_0_without_a_call_or_a_trace) {
    line.Arrive(0, "S S      1.00 g\r\n");

    EXPECT_EQ(serial.ReceiveAnswer(nullptr, 33, 3, nullptr), 0);

    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(CSerialObjectExchangeTest, Without_a_terminator_an_answer_at_once_costs_two_more_time_outs) {
    line.Arrive(0, "S S      1.00 g\r\n");

    EXPECT_EQ(Receive(33, 3, nullptr), 1);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAre("wait 1000: data", R"(read "S S      1.00 g\r\n")", "wait 1000: silence",
                    R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")",
                    "wait 1000: silence",
                    R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
                    R"(trace "Read from scale: S S      1.00 g\r\n (time elapsed: 2000 ms)\n")"));
    ExpectBuffer("S S      1.00 g\r\n", 33);
}

TEST_F(CSerialObjectExchangeTest, A_silent_instrument_gives_three_time_outs_and_a_zeroed_buffer) {
    EXPECT_EQ(Receive(33, 3, nullptr), 0);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(
            "wait 1000: silence", R"(trace "Timeout elapsed in scale read (attempt n. 1)\n")",
            "wait 1000: silence", R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")",
            "wait 1000: silence", R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
            R"(trace "Read from scale:  (time elapsed: 3000 ms)\n")"));
    ExpectBuffer("", 33);
}

TEST_F(CSerialObjectExchangeTest, Pieces_of_all_attempts_are_joined_in_order) {
    line.Arrive(500, "S S ");
    line.Arrive(1400, "     1.00");
    line.Arrive(2399, " g\r\n");

    EXPECT_EQ(Receive(33, 3, nullptr), 1);

    EXPECT_EQ(line.Trace(), "Read from scale: S S      1.00 g\r\n (time elapsed: 2399 ms)\n");
    ExpectBuffer("S S      1.00 g\r\n", 33);
}

TEST_F(CSerialObjectExchangeTest, Data_that_comes_at_the_end_of_a_wait_is_still_its_data) {
    line.Arrive(1000, "A");

    EXPECT_EQ(Receive(33, 1, nullptr), 1);

    EXPECT_EQ(line.Trace(), "Read from scale: A (time elapsed: 1000 ms)\n");
}

TEST_F(CSerialObjectExchangeTest, An_answer_in_a_later_attempt_is_taken) {
    line.Arrive(2500, "Z A\r\n");

    EXPECT_EQ(Receive(33, 3, nullptr), 1);

    EXPECT_EQ(line.Trace(),
              "Timeout elapsed in scale read (attempt n. 1)\n"
              "Timeout elapsed in scale read (attempt n. 2)\n"
              "Read from scale: Z A\r\n (time elapsed: 2500 ms)\n");
}

TEST_F(CSerialObjectExchangeTest, What_comes_after_the_last_attempt_is_left_in_the_line) {
    line.Arrive(1500, "late\r\n");

    EXPECT_EQ(Receive(33, 1, nullptr), 0);

    EXPECT_EQ(Receive(33, 1, "\r\n"), 1);
    ExpectBuffer("late\r\n", 33);
}

TEST_F(CSerialObjectExchangeTest, An_empty_read_after_data_ends_the_reading) {
    line.Arrive(0, "AB");
    line.SignalWithoutData(100);

    EXPECT_EQ(Receive(33, 3, nullptr), 1);

    EXPECT_THAT(line.Transcript(),
                ElementsAre("wait 1000: data", R"(read "AB")", "wait 1000: data", R"(read "")",
                            R"(trace "Read from scale: AB (time elapsed: 100 ms)\n")"));
}

TEST_F(CSerialObjectExchangeTest, An_empty_read_before_any_data_uses_an_attempt_without_a_trace) {
    line.SignalWithoutData(100);
    line.Arrive(200, "AB");

    EXPECT_EQ(Receive(33, 2, nullptr), 1);

    EXPECT_THAT(line.Transcript(),
                ElementsAre("wait 1000: data", R"(read "")", "wait 1000: data", R"(read "AB")",
                            R"(trace "Read from scale: AB (time elapsed: 200 ms)\n")"));
}

TEST_F(CSerialObjectExchangeTest, Nothing_but_empty_reads_gives_0) {
    line.SignalWithoutData(100);
    line.SignalWithoutData(200);

    EXPECT_EQ(Receive(33, 2, nullptr), 0);

    EXPECT_EQ(line.Trace(), "Read from scale:  (time elapsed: 200 ms)\n");
}

TEST_F(CSerialObjectExchangeTest, No_attempts_still_make_one) {
    line.Arrive(0, "AB");

    EXPECT_EQ(Receive(33, 0, nullptr), 1);

    EXPECT_THAT(line.Transcript(),
                ElementsAre("wait 1000: data", R"(read "AB")",
                            R"(trace "Read from scale: AB (time elapsed: 0 ms)\n")"));
}

TEST_F(CSerialObjectExchangeTest, A_negative_count_of_attempts_still_makes_one) {
    EXPECT_EQ(Receive(33, -5, nullptr), 0);

    EXPECT_THAT(line.Transcript(),
                ElementsAre("wait 1000: silence",
                            R"(trace "Timeout elapsed in scale read (attempt n. 1)\n")",
                            R"(trace "Read from scale:  (time elapsed: 1000 ms)\n")"));
}

TEST_F(CSerialObjectExchangeTest, A_time_out_of_0_seconds_waits_100_ms_at_a_time) {
    serial.PrivateSetTimeout(0);

    EXPECT_EQ(Receive(33, 2, nullptr), 0);

    EXPECT_EQ(line.Events()[0].text, "wait 100: silence");
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale:  (time elapsed: 200 ms)\n"));
}

TEST_F(CSerialObjectExchangeTest, The_longest_time_out_waits_a_minute_at_a_time) {
    serial.PrivateSetTimeout(60);

    EXPECT_EQ(Receive(33, 3, nullptr), 0);

    EXPECT_THAT(line.Trace(), EndsWith("Read from scale:  (time elapsed: 180000 ms)\n"));
}

TEST_F(CSerialObjectExchangeTest, A_line_that_is_gone_gives_0_after_the_traces_of_all_attempts) {
    line.HangUp();

    EXPECT_EQ(Receive(33, 3, nullptr), 0);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(
            "wait 1000: refused", R"(trace "Timeout elapsed in scale read (attempt n. 1)\n")",
            "wait 1000: refused", R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")",
            "wait 1000: refused", R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
            R"(trace "Read from scale:  (time elapsed: 3 ms)\n")"));
}

TEST_F(CSerialObjectExchangeTest, The_elapsed_time_is_right_across_the_wrap_of_the_tick_counter) {
    line.OnSleep(2147483647);
    line.OnSleep(2147483647);  // the counter stands at 2^32 - 2
    line.Forget();

    EXPECT_EQ(Receive(33, 3, nullptr), 0);

    EXPECT_THAT(line.Trace(), EndsWith("Read from scale:  (time elapsed: 3000 ms)\n"));
}

// What reaches the caller's buffer.

TEST_F(CSerialObjectExchangeTest, An_answer_one_short_of_the_buffer_keeps_a_zero_behind_it) {
    line.Arrive(0, "123456789");

    EXPECT_EQ(Receive(10, 1, nullptr), 1);

    ExpectBuffer("123456789", 10);
}

TEST_F(CSerialObjectExchangeTest, An_answer_that_fills_the_buffer_has_no_terminating_zero) {
    line.Arrive(0, "1234567890");

    EXPECT_EQ(Receive(10, 1, nullptr), 1);

    ExpectBuffer("1234567890", 10);
}

TEST_F(CSerialObjectExchangeTest, An_answer_beyond_the_buffer_is_cut_and_traced_whole) {
    line.Arrive(0, "1234567890abc");

    EXPECT_EQ(Receive(10, 1, nullptr), 1);

    ExpectBuffer("1234567890", 10);
    EXPECT_EQ(line.Trace(), "Read from scale: 1234567890abc (time elapsed: 0 ms)\n");
}

TEST_F(CSerialObjectExchangeTest, A_buffer_of_no_bytes_stays_untouched_and_an_answer_still_counts) {
    line.Arrive(0, "AB");

    EXPECT_EQ(Receive(0, 1, nullptr), 1);

    ExpectBuffer("", 0);
}

TEST_F(CSerialObjectExchangeTest, A_buffer_of_a_negative_size_stays_untouched) {
    line.Arrive(0, "AB");

    EXPECT_EQ(Receive(-1, 1, nullptr), 1);

    ExpectBuffer("", 0);
}

TEST_F(CSerialObjectExchangeTest, Bytes_behind_an_embedded_zero_are_not_copied) {
    using namespace std::string_literals;
    line.Arrive(0, "AB\0CD\r\n"s);

    EXPECT_EQ(Receive(10, 1, nullptr), 1);

    ExpectBuffer("AB", 10);
    EXPECT_EQ(line.Trace(), "Read from scale: AB (time elapsed: 0 ms)\n");
}

TEST_F(CSerialObjectExchangeTest, An_answer_that_begins_with_a_zero_counts_and_leaves_no_text) {
    using namespace std::string_literals;
    line.Arrive(0, "\0AB"s);

    EXPECT_EQ(Receive(10, 1, nullptr), 1);

    ExpectBuffer("", 10);
}

TEST_F(CSerialObjectExchangeTest, Bytes_with_the_eighth_bit_come_through_unchanged) {
    line.Arrive(0, "\xd3\xa0\xb1\x8d\x8a\xff");

    EXPECT_EQ(Receive(10, 1, nullptr), 1);

    ExpectBuffer("\xd3\xa0\xb1\x8d\x8a\xff", 10);
}

TEST_F(CSerialObjectExchangeTest, A_percent_sign_in_an_answer_is_kept_and_its_trace_interpreted) {
    line.Arrive(0, "5%n%s%d");

    EXPECT_EQ(Receive(10, 1, nullptr), 1);

    ExpectBuffer("5%n%s%d", 10);
    EXPECT_EQ(line.Trace(), "Read from scale: 50 (time elapsed: 0 ms)\n");
}

TEST_F(CSerialObjectExchangeTest, An_answer_whose_trace_fills_its_line_is_traced) {
    line.Arrive(0, std::string(981, 'a'));

    EXPECT_EQ(Receive(10, 3, nullptr), 1);

    EXPECT_THAT(line.Trace(), EndsWith("a (time elapsed: 2000 ms)\n"));
}

TEST_F(CSerialObjectExchangeDeathTest, An_answer_whose_trace_does_not_fit_ends_the_process) {
    line.Arrive(0, std::string(982, 'a'));

    EXPECT_EXIT(Receive(10, 3, nullptr), testing::KilledBySignal(SIGABRT),
                "^libwbalance: a trace line does not fit its buffer of 1024 bytes\n$");
}

// ReceiveAnswer with a terminator.

TEST_F(CSerialObjectExchangeTest,
       An_answer_in_one_piece_with_its_terminator_ends_the_read_at_once) {
    line.Arrive(300, "S S      1.00 g\r\n");

    EXPECT_EQ(Receive(33, 3, "\r\n"), 1);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAre("wait 1000: data", R"(read "S S      1.00 g\r\n")",
                    R"(trace "Read from scale: S S      1.00 g\r\n (time elapsed: 300 ms)\n")"));
    ExpectBuffer("S S      1.00 g\r\n", 33);
}

TEST_F(CSerialObjectExchangeTest, Two_pieces_50_ms_apart_are_joined_without_a_time_out) {
    line.Arrive(0, "S S      1.0");
    line.Arrive(50, "0 g\r\n");

    EXPECT_EQ(Receive(33, 3, "\r\n"), 1);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAre("wait 1000: data", R"(read "S S      1.0")", "wait 10: silence",
                    "wait 10: silence", "wait 10: silence", "wait 10: silence", "wait 10: data",
                    R"(read "0 g\r\n")",
                    R"(trace "Read from scale: S S      1.00 g\r\n (time elapsed: 50 ms)\n")"));
}

TEST_F(CSerialObjectExchangeTest, A_terminator_split_between_two_pieces_ends_the_read) {
    line.Arrive(0, "Z A\r");
    line.Arrive(5, "\n");

    EXPECT_EQ(Receive(33, 1, "\r\n"), 1);

    EXPECT_EQ(line.Trace(), "Read from scale: Z A\r\n (time elapsed: 5 ms)\n");
}

TEST_F(CSerialObjectExchangeTest, An_answer_without_its_terminator_is_polled_for_the_time_out) {
    line.Arrive(0, "Z A");

    EXPECT_EQ(Receive(33, 1, "\r\n"), 1);

    const std::vector<std::string> calls = line.Transcript();
    ASSERT_EQ(calls.size(), 104U);
    EXPECT_EQ(calls[0], "wait 1000: data");
    EXPECT_EQ(calls[1], R"(read "Z A")");
    EXPECT_THAT(std::vector(calls.begin() + 2, calls.begin() + 102), Each("wait 10: silence"));
    EXPECT_EQ(calls[102], R"(trace "Timeout elapsed in scale read (attempt n. 1)\n")");
    EXPECT_EQ(calls[103], R"(trace "Read from scale: Z A (time elapsed: 1000 ms)\n")");
    ExpectBuffer("Z A", 33);
}

TEST_F(CSerialObjectExchangeTest, A_terminator_in_a_later_attempt_ends_the_read_with_everything) {
    line.Arrive(0, "S S ");
    line.Arrive(2500, "1.00 g\r\n");

    EXPECT_EQ(Receive(33, 3, "\r\n"), 1);

    EXPECT_EQ(line.Trace(),
              "Timeout elapsed in scale read (attempt n. 1)\n"
              "Timeout elapsed in scale read (attempt n. 2)\n"
              "Read from scale: S S 1.00 g\r\n (time elapsed: 2500 ms)\n");
}

TEST_F(CSerialObjectExchangeTest, The_first_piece_of_an_attempt_is_tested_alone) {
    // "\n" completes the terminator but does not end with it: the polling notices, one wait later.
    line.Arrive(0, "Z A\r");
    line.Arrive(1500, "\n");

    EXPECT_EQ(Receive(33, 3, "\r\n"), 1);

    EXPECT_EQ(line.Trace(),
              "Timeout elapsed in scale read (attempt n. 1)\n"
              "Read from scale: Z A\r\n (time elapsed: 1510 ms)\n");
}

TEST_F(CSerialObjectExchangeTest, A_terminator_within_the_answer_does_not_end_the_read) {
    line.Arrive(0, "A\r\nB");

    EXPECT_EQ(Receive(33, 1, "\r\n"), 1);

    EXPECT_EQ(line.Trace(),
              "Timeout elapsed in scale read (attempt n. 1)\n"
              "Read from scale: A\r\nB (time elapsed: 1000 ms)\n");
}

TEST_F(CSerialObjectExchangeTest, A_terminator_behind_an_embedded_zero_ends_the_read) {
    using namespace std::string_literals;
    line.Arrive(0, "AB\0\r\n"s);

    EXPECT_EQ(Receive(33, 3, "\r\n"), 1);

    EXPECT_EQ(line.Now(), 0);
    ExpectBuffer("AB", 33);
}

TEST_F(CSerialObjectExchangeTest, A_terminator_in_the_last_millisecond_of_the_time_out_counts) {
    line.Arrive(0, "Z A");
    line.Arrive(1000, "\r\n");

    EXPECT_EQ(Receive(33, 3, "\r\n"), 1);

    EXPECT_EQ(line.Trace(), "Read from scale: Z A\r\n (time elapsed: 1000 ms)\n");
}

TEST_F(CSerialObjectExchangeTest, The_polling_ends_at_the_time_out_also_while_data_keeps_coming) {
    for (long at = 0; at <= 1500; at += 5)
        line.Arrive(at, "x");

    EXPECT_EQ(Receive(33, 1, "\r\n"), 1);

    EXPECT_EQ(line.Now(), 1000);
    EXPECT_THAT(line.Trace(), StartsWith("Timeout elapsed in scale read (attempt n. 1)\n"));
}

TEST_F(CSerialObjectExchangeTest, An_empty_read_while_polling_pauses_20_ms) {
    line.Arrive(0, "Z A");
    line.SignalWithoutData(5);
    line.Arrive(20, "\r\n");

    EXPECT_EQ(Receive(33, 1, "\r\n"), 1);

    EXPECT_THAT(line.Transcript(),
                ElementsAre("wait 1000: data", R"(read "Z A")", "wait 10: data", R"(read "")",
                            "Sleep 20", "wait 10: data", R"(read "\r\n")",
                            R"(trace "Read from scale: Z A\r\n (time elapsed: 25 ms)\n")"));
}

TEST_F(CSerialObjectExchangeTest, An_empty_first_read_goes_on_to_the_polling) {
    line.SignalWithoutData(0);
    line.Arrive(10, "Z A\r\n");

    EXPECT_EQ(Receive(33, 1, "\r\n"), 1);

    EXPECT_THAT(line.Transcript(),
                ElementsAre("wait 1000: data", R"(read "")", "wait 10: data", R"(read "Z A\r\n")",
                            R"(trace "Read from scale: Z A\r\n (time elapsed: 10 ms)\n")"));
}

TEST_F(CSerialObjectExchangeTest, Silence_with_a_terminator_costs_one_time_out_for_each_attempt) {
    EXPECT_EQ(Receive(33, 3, "\r\n"), 0);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(
            "wait 1000: silence", R"(trace "Timeout elapsed in scale read (attempt n. 1)\n")",
            "wait 1000: silence", R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")",
            "wait 1000: silence", R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
            R"(trace "Read from scale:  (time elapsed: 3000 ms)\n")"));
    ExpectBuffer("", 33);
}

TEST_F(CSerialObjectExchangeTest, A_line_that_goes_while_polling_ends_with_the_clock) {
    line.Arrive(0, "Z A");
    line.Fail("wait", 2, PortFault::HangUp);

    EXPECT_EQ(Receive(33, 1, "\r\n"), 1);

    EXPECT_EQ(line.Now(), 1000);
    EXPECT_THAT(line.Trace(), StartsWith("Timeout elapsed in scale read (attempt n. 1)\n"));
    ExpectBuffer("Z A", 33);
}

// Without a port object.

TEST_F(CSerialObjectExchangeTest, Without_a_port_clearing_fails_without_a_trace) {
    serial.CloseCommPort();
    line.Forget();

    EXPECT_EQ(serial.ClearErrorsAndBuffers(), 0);

    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(CSerialObjectExchangeTest, Without_a_port_a_command_is_traced_with_FAIL) {
    serial.CloseCommPort();
    line.Forget();

    EXPECT_EQ(Send("S\r\n"), 0);

    EXPECT_THAT(line.Transcript(), ElementsAre(R"(trace "<== S\r\n ... FAIL\n\n")"));
}

TEST_F(CSerialObjectExchangeTest, Without_a_port_a_read_traces_its_attempts_and_does_not_wait) {
    serial.CloseCommPort();
    line.Forget();

    EXPECT_EQ(Receive(33, 2, "\r\n"), 0);

    EXPECT_THAT(line.Transcript(),
                ElementsAre(R"(trace "Timeout elapsed in scale read (attempt n. 1)\n")",
                            R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")",
                            R"(trace "Read from scale:  (time elapsed: 0 ms)\n")"));
    ExpectBuffer("", 33);
}

// ReceiveAllAnswer.

TEST_F(CSerialObjectExchangeTest, Gathering_without_a_buffer_gives_0_without_a_call_or_a_trace) {
    EXPECT_EQ(serial.ReceiveAllAnswer(nullptr, 64, '\n'), 0);
    EXPECT_EQ(serial.ReceiveAllAnswer(nullptr, 0, '\0'), 0);

    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(CSerialObjectExchangeTest, Gathering_into_no_bytes_gives_0_without_a_call_or_a_trace) {
    EXPECT_EQ(serial.ReceiveAllAnswer(buffer.data(), 0, '\n'), 0);
    EXPECT_EQ(serial.ReceiveAllAnswer(buffer.data(), -1, '\n'), 0);

    EXPECT_THAT(line.Transcript(), IsEmpty());
    ExpectBuffer("", 0);
}

/// Gathering into a zeroed buffer, as all callers do.
class GatheringTest : public CSerialObjectExchangeTest {
 protected:
    GatheringTest() { buffer.fill('\0'); }

    int Gather(long size, char endChar) {
        return serial.ReceiveAllAnswer(buffer.data(), size, endChar);
    }

    /// In rounds of at most 64 characters.
    int GatherWithin(long room, char endChar) {
        return serial.ReceiveAllAnswerWithin(buffer.data(), room, 64, endChar);
    }
};

using GatheringDeathTest = GatheringTest;

TEST_F(GatheringTest, An_answer_with_its_end_character_takes_one_round) {
    line.Arrive(0, "AB\n");

    EXPECT_EQ(Gather(64, '\n'), 1);

    EXPECT_STREQ(buffer.data(), "AB\n");
    EXPECT_THAT(line.Transcript(),
                ElementsAre("wait 1000: data", R"(read "AB\n")", "wait 1000: silence",
                            R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")",
                            "wait 1000: silence",
                            R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
                            R"(trace "Read from scale: AB\n (time elapsed: 2000 ms)\n")",
                            R"(trace "Read from scale: AB\n\n")"));
}

TEST_F(GatheringTest, Two_pieces_in_separate_rounds_are_joined_100_ms_apart) {
    line.Arrive(0, "AB");
    line.Arrive(2600, "CD\n");

    EXPECT_EQ(Gather(64, '\n'), 1);

    EXPECT_STREQ(buffer.data(), "ABCD\n");
    EXPECT_THAT(line.Sleeps(), ElementsAre(100));
    EXPECT_EQ(line.Now(), 2600 + 2000);
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale: CD\n (time elapsed: 2500 ms)\n"
                                       "Read from scale: ABCD\n\n"));
}

TEST_F(GatheringTest, A_partial_answer_without_the_end_character_counts) {
    line.Arrive(0, "AB");

    EXPECT_EQ(Gather(64, '\n'), 1);

    EXPECT_STREQ(buffer.data(), "AB");
    EXPECT_THAT(line.Sleeps(), ElementsAre(100));
    EXPECT_EQ(line.Now(), 2000 + 100 + 3000);
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale:  (time elapsed: 3000 ms)\n"
                                       "Read from scale: AB\n"));
}

TEST_F(GatheringTest, Nothing_received_is_traced_as_a_null_answer_and_gives_0) {
    EXPECT_EQ(Gather(64, '\n'), 0);

    EXPECT_STREQ(buffer.data(), "");
    EXPECT_EQ(line.Trace(),
              "Timeout elapsed in scale read (attempt n. 1)\n"
              "Timeout elapsed in scale read (attempt n. 2)\n"
              "Timeout elapsed in scale read (attempt n. 3)\n"
              "Read from scale:  (time elapsed: 3000 ms)\n"
              "Null answer received from scale\n");
}

TEST_F(GatheringTest, Without_an_end_character_nothing_received_gives_0_too) {
    EXPECT_EQ(Gather(64, '\0'), 0);

    EXPECT_THAT(line.Trace(), EndsWith("Null answer received from scale\n"));
    EXPECT_EQ(line.Now(), 3000);
}

TEST_F(GatheringTest, Without_an_end_character_it_goes_on_until_a_round_brings_nothing) {
    line.Arrive(0, "AB\n");
    line.Arrive(2600, "CD\n");

    EXPECT_EQ(Gather(64, '\0'), 1);

    EXPECT_STREQ(buffer.data(), "AB\nCD\n");
    EXPECT_THAT(line.Sleeps(), ElementsAre(100, 100));
    EXPECT_EQ(line.Now(), 2000 + 100 + 2500 + 100 + 3000);
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale: AB\nCD\n\n"));
}

TEST_F(GatheringTest, An_end_character_within_a_round_does_not_end_it) {
    line.Arrive(0, "AB\nC");

    EXPECT_EQ(Gather(64, '\n'), 1);

    EXPECT_STREQ(buffer.data(), "AB\nC");
    EXPECT_THAT(line.Sleeps(), ElementsAre(100));
}

TEST_F(GatheringTest, The_answer_is_appended_to_the_text_in_the_buffer) {
    buffer = {'X', 'Y'};
    line.Arrive(0, "AB\n");

    EXPECT_EQ(Gather(64, '\n'), 1);

    EXPECT_STREQ(buffer.data(), "XYAB\n");
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale: XYAB\n\n"));
}

TEST_F(GatheringTest, Text_that_was_in_the_buffer_counts_when_nothing_is_received) {
    buffer = {'X', 'Y'};

    EXPECT_EQ(Gather(64, '\n'), 1);

    EXPECT_STREQ(buffer.data(), "XY");
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale: XY\n"));
}

TEST_F(GatheringTest, A_round_takes_no_more_than_the_size_and_the_rest_is_lost) {
    line.Arrive(0, "123456\n");
    line.Arrive(2600, "ABCDEF\n");

    EXPECT_EQ(Gather(4, '\0'), 1);

    EXPECT_STREQ(buffer.data(), "1234ABCD");
}

TEST_F(GatheringTest, Text_behind_an_embedded_zero_is_lost) {
    using namespace std::string_literals;
    line.Arrive(0, "AB\0CD\n"s);

    EXPECT_EQ(Gather(64, '\n'), 1);

    EXPECT_STREQ(buffer.data(), "AB");
}

TEST_F(GatheringTest, A_round_that_begins_with_a_zero_ends_the_gathering) {
    using namespace std::string_literals;
    line.Arrive(0, "AB"s);
    line.Arrive(2600, "\0CD\n"s);

    EXPECT_EQ(Gather(64, '\n'), 1);

    EXPECT_STREQ(buffer.data(), "AB");
    EXPECT_THAT(line.Sleeps(), ElementsAre(100));
}

TEST_F(GatheringTest, A_round_of_a_zero_alone_is_a_null_answer) {
    using namespace std::string_literals;
    line.Arrive(0, "\0"s);

    EXPECT_EQ(Gather(64, '\n'), 0);

    EXPECT_THAT(line.Trace(), EndsWith("Null answer received from scale\n"));
}

TEST_F(GatheringTest, A_text_of_1005_characters_is_traced) {
    line.Arrive(0, std::string(503, 'a'));
    line.Arrive(2600, std::string(501, 'b') + '\n');

    EXPECT_EQ(Gather(600, '\n'), 1);

    EXPECT_THAT(line.Trace(), EndsWith("bbb\n\n"));
}

TEST_F(GatheringDeathTest, A_text_of_1006_characters_ends_the_process) {
    line.Arrive(0, std::string(503, 'a'));
    line.Arrive(2600, std::string(502, 'b') + '\n');

    EXPECT_EXIT(Gather(600, '\n'), testing::KilledBySignal(SIGABRT),
                "^libwbalance: a trace line does not fit its buffer of 1024 bytes\n$");
}

TEST_F(GatheringTest, Without_a_port_it_is_a_null_answer_and_does_not_wait) {
    serial.CloseCommPort();

    EXPECT_EQ(Gather(64, '\n'), 0);

    EXPECT_THAT(line.Trace(), EndsWith("Null answer received from scale\n"));
    EXPECT_EQ(line.Now(), 0);
}

// ReceiveAllAnswerWithin.

TEST_F(GatheringTest, Within_a_buffer_it_does_what_gathering_does) {
    line.Arrive(0, "AB");
    line.Arrive(2600, "CD\n");

    EXPECT_EQ(GatherWithin(64, '\n'), 1);

    EXPECT_STREQ(buffer.data(), "ABCD\n");
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale: ABCD\n\n"));
}

TEST_F(GatheringTest, Within_a_buffer_nothing_received_is_a_null_answer) {
    EXPECT_EQ(GatherWithin(64, '\0'), 0);

    EXPECT_THAT(line.Trace(), EndsWith("Null answer received from scale\n"));
}

TEST_F(GatheringTest, Within_no_bytes_or_no_buffer_it_gives_0_without_a_call) {
    EXPECT_EQ(GatherWithin(0, '\n'), 0);
    EXPECT_EQ(GatherWithin(-1, '\n'), 0);
    EXPECT_EQ(serial.ReceiveAllAnswerWithin(nullptr, 64, 64, '\n'), 0);
    EXPECT_EQ(serial.ReceiveAllAnswerWithin(buffer.data(), 64, 0, '\n'), 0);

    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(GatheringTest, Within_a_buffer_a_round_takes_no_more_than_its_size) {
    line.Arrive(0, "123456\n");
    line.Arrive(2600, "ABCDEF\n");

    EXPECT_EQ(serial.ReceiveAllAnswerWithin(buffer.data(), 64, 4, '\0'), 1);

    EXPECT_STREQ(buffer.data(), "1234ABCD");
}

TEST_F(GatheringTest, Within_a_buffer_that_is_just_full_the_gathering_goes_on) {
    buffer[8] = '#';
    line.Arrive(0, "1234567");

    EXPECT_EQ(GatherWithin(8, '\n'), 1);

    EXPECT_EQ(Buffer(9), std::string("1234567\0#", 9));
    EXPECT_THAT(line.Sleeps(), ElementsAre(100));
    EXPECT_EQ(line.Now(), 2000 + 100 + 3000);
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale:  (time elapsed: 3000 ms)\n"
                                       "Read from scale: 1234567\n"));
}

TEST_F(GatheringTest, Within_a_buffer_that_the_end_character_fills_the_gathering_ends) {
    line.Arrive(0, "123456\n");

    EXPECT_EQ(GatherWithin(8, '\n'), 1);

    EXPECT_STREQ(buffer.data(), "123456\n");
    EXPECT_THAT(line.Sleeps(), IsEmpty());
}

TEST_F(GatheringTest, Within_a_buffer_what_does_not_fit_is_dropped_and_ends_the_gathering) {
    buffer[8] = '#';
    line.Arrive(0, "12345");
    line.Arrive(2600, "ABCDE\n");
    line.Arrive(9000, "never read\n");

    EXPECT_EQ(GatherWithin(8, '\n'), 1);

    EXPECT_EQ(Buffer(9), std::string("12345AB\0#", 9));
    EXPECT_THAT(line.Sleeps(), ElementsAre(100));
    EXPECT_EQ(line.Now(), 4600);
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale: 12345AB\n"));
}

TEST_F(GatheringTest, Within_a_buffer_that_is_already_full_nothing_is_added) {
    buffer = {'X', 'Y', 'Z', '\0', '#'};
    line.Arrive(0, "AB\n");

    EXPECT_EQ(GatherWithin(4, '\n'), 1);

    EXPECT_EQ(Buffer(5), std::string("XYZ\0#", 5));
    EXPECT_THAT(line.Trace(), EndsWith("Read from scale: XYZ\n"));
}

TEST_F(GatheringTest, Within_a_buffer_of_one_byte_there_is_room_for_nothing) {
    buffer[1] = '#';
    line.Arrive(0, "AB\n");

    EXPECT_EQ(GatherWithin(1, '\n'), 0);

    EXPECT_EQ(Buffer(2), std::string("\0#", 2));
    EXPECT_THAT(line.Trace(), EndsWith("Null answer received from scale\n"));
}

// Memory that is short.

TEST_F(GatheringTest, Without_memory_for_a_round_nothing_is_read) {
    buffer = {'X', 'Y'};
    line.Arrive(0, "AB\n");
    line.FailNextAllocation();

    EXPECT_EQ(Gather(64, '\n'), 0);

    EXPECT_STREQ(buffer.data(), "XY");
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(GatheringTest, A_round_of_a_size_that_no_machine_has_gives_0) {
    EXPECT_EQ(Gather(LONG_MAX, '\n'), 0);
    EXPECT_EQ(serial.ReceiveAllAnswerWithin(buffer.data(), 64, LONG_MAX, '\n'), 0);

    EXPECT_THAT(line.Transcript(), IsEmpty());
}

}  // namespace
