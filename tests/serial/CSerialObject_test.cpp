// Opening, configuring, clearing and closing the port, and the trace.

#include <climits>

#include "OpenSerialObject.h"

using scripted::PortFault;
using scripted::ScriptedTest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class CSerialObjectTest : public ScriptedTest {
 protected:
    OpenSerialObject serial;
};

TEST_F(CSerialObjectTest, A_new_object_has_status_0_half_a_second_no_port_and_kind_S) {
    EXPECT_EQ(serial.status, 0);
    EXPECT_EQ(serial.timeoutMs, 500);
    EXPECT_EQ(serial.port, nullptr);
    EXPECT_EQ(serial.portKind, 'S');
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// Opening.

TEST_F(CSerialObjectTest, An_open_of_kind_S_opens_the_built_in_port_with_that_number) {
    EXPECT_EQ(serial.OpenCommPort(12, 'S'), 1);

    EXPECT_EQ(serial.status, 1);
    EXPECT_NE(serial.port, nullptr);
    EXPECT_THAT(line.Transcript(),
                ElementsAre("open /dev/ttyS12", R"(trace "/dev/ttyS12 OPENED SUCCESSFULLY!\n\n")"));
}

TEST_F(CSerialObjectTest, An_open_of_kind_U_opens_the_USB_adapter_with_that_number) {
    EXPECT_EQ(serial.OpenCommPort(3, 'U'), 1);

    EXPECT_EQ(serial.portKind, 'U');
    EXPECT_THAT(line.Transcript(), ElementsAre("open /dev/ttyUSB3",
                                               R"(trace "/dev/ttyUSB3 OPENED SUCCESSFULLY!\n\n")"));
}

TEST_F(CSerialObjectTest, An_unknown_kind_after_a_close_keeps_the_kind_of_the_last_open) {
    serial.OpenCommPort(3, 'U');
    serial.CloseCommPort();
    line.Forget();

    EXPECT_EQ(serial.OpenCommPort(3, 'X'), 1);

    EXPECT_EQ(serial.portKind, 'U');
    EXPECT_EQ(line.Transcript().front(), "open /dev/ttyUSB3");
}

TEST_F(CSerialObjectTest, An_unknown_kind_at_the_first_open_means_S) {
    EXPECT_EQ(serial.OpenCommPort(0, 'u'), 1);

    EXPECT_EQ(serial.portKind, 'S');
    EXPECT_EQ(line.Transcript().front(), "open /dev/ttyS0");
}

TEST_F(CSerialObjectTest, A_second_open_reports_the_held_port_with_result_2_and_status_1) {
    serial.OpenCommPort(3, 'S');
    line.Forget();

    EXPECT_EQ(serial.OpenCommPort(3, 'S'), 2);

    EXPECT_EQ(serial.status, 1);
    EXPECT_EQ(line.PortObjects(), 1);
    EXPECT_THAT(line.Transcript(), ElementsAre(R"(trace "COM3 alread open!")"));
}

TEST_F(CSerialObjectTest, An_open_that_finds_the_port_held_looks_at_neither_kind_nor_number) {
    serial.OpenCommPort(3, 'S');
    line.Forget();

    EXPECT_EQ(serial.OpenCommPort(-7, 'U'), 2);

    EXPECT_EQ(serial.status, 1);
    EXPECT_EQ(serial.portKind, 'S');
    EXPECT_THAT(line.Transcript(), ElementsAre(R"(trace "COM-7 alread open!")"));
}

TEST_F(CSerialObjectTest, A_device_that_cannot_be_opened_gives_0_and_the_next_open_2) {
    line.Fail("open");

    EXPECT_EQ(serial.OpenCommPort(5, 'S'), 0);

    EXPECT_EQ(serial.status, 0);
    EXPECT_NE(serial.port, nullptr);
    EXPECT_THAT(line.Transcript(),
                ElementsAre("open /dev/ttyS5: refused",
                            R"(trace "INVALID COMM PORT ... UNABLE OPENING /dev/ttyS5!\n\n")"));

    line.Forget();
    EXPECT_EQ(serial.OpenCommPort(5, 'S'), 2);

    EXPECT_EQ(serial.status, 1);
    EXPECT_FALSE(line.IsOpen());
    EXPECT_THAT(line.Transcript(), ElementsAre(R"(trace "COM5 alread open!")"));
}

TEST_F(CSerialObjectTest, A_negative_number_is_refused_without_a_trace_but_its_kind_is_kept) {
    EXPECT_EQ(serial.OpenCommPort(-1, 'U'), 0);

    EXPECT_EQ(serial.status, 0);
    EXPECT_EQ(serial.port, nullptr);
    EXPECT_EQ(serial.portKind, 'U');
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(CSerialObjectTest, A_port_object_that_cannot_be_made_is_traced_and_gives_0) {
    line.FailNextAllocation();

    EXPECT_EQ(serial.OpenCommPort(0, 'S'), 0);

    EXPECT_EQ(serial.status, 0);
    EXPECT_EQ(serial.port, nullptr);
    EXPECT_THAT(line.Transcript(),
                ElementsAre(R"(trace "NULL POINTER ... UNABLE OPENING COMM PORT!\n\n")"));
}

TEST_F(CSerialObjectTest, An_open_after_a_port_object_could_not_be_made_tries_the_device_again) {
    line.FailNextAllocation();
    serial.OpenCommPort(0, 'S');
    line.Forget();

    EXPECT_EQ(serial.OpenCommPort(0, 'S'), 1);

    EXPECT_EQ(line.Transcript().front(), "open /dev/ttyS0");
}

TEST_F(CSerialObjectTest, A_device_name_of_19_characters_fits) {
    EXPECT_EQ(serial.OpenCommPort(99999999, 'U'), 1);

    EXPECT_EQ(line.Transcript().front(), "open /dev/ttyUSB99999999");
}

TEST_F(CSerialObjectTest, The_largest_number_of_a_built_in_port_fits) {
    EXPECT_EQ(serial.OpenCommPort(INT_MAX, 'S'), 1);

    EXPECT_EQ(line.Transcript().front(), "open /dev/ttyS2147483647");
}

using CSerialObjectDeathTest = CSerialObjectTest;

TEST_F(CSerialObjectDeathTest, A_device_name_of_20_characters_ends_the_process) {
    EXPECT_EXIT(serial.OpenCommPort(100000000, 'U'), testing::KilledBySignal(SIGABRT),
                "^libwbalance: a device name does not fit its buffer of 20 bytes\n$");
}

TEST_F(CSerialObjectDeathTest, A_device_name_of_21_characters_ends_the_process) {
    EXPECT_EXIT(serial.OpenCommPort(INT_MAX, 'U'), testing::KilledBySignal(SIGABRT),
                "^libwbalance: a device name does not fit its buffer of 20 bytes\n$");
}

// Settings.

TEST_F(CSerialObjectTest, The_settings_are_applied_in_order_and_traced_as_they_were_given) {
    serial.OpenCommPort(0, 'S');
    line.Forget();

    EXPECT_EQ(serial.SetCommConfig(1200, 1, 7, 2, 3, 5), 1);

    EXPECT_EQ(serial.status, 1);
    EXPECT_EQ(serial.timeoutMs, 5000);
    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(
            "setBaudRate 1200", "setDataBits 7", "setParity odd", "setStopBits 2",
            "setFlowControl hardware",
            R"(trace "Balance Comm Port settings:\nBaud rate = 1200\nParity = 1\n)"
            R"(Data bits = 7\nStop bits = 2\nFlow control = 3\nTimeout = 5\n===> OK\n\n")"));
}

struct SettingCodes {
    const char* name;
    int parity;
    int dataBits;
    int stopBits;
    int flowControl;
    std::vector<std::string> applied;
};

class CSerialObjectSettings : public CSerialObjectTest,
                              public testing::WithParamInterface<SettingCodes> {};

TEST_P(CSerialObjectSettings, Become_the_settings_of_the_port) {
    const SettingCodes& codes = GetParam();
    serial.OpenCommPort(0, 'S');
    line.Forget();

    EXPECT_EQ(serial.SetCommConfig(9600, codes.parity, codes.dataBits, codes.stopBits,
                                   codes.flowControl, 1),
              1);

    std::vector<std::string> calls = line.Transcript();
    calls.pop_back();  // the trace
    EXPECT_EQ(calls, codes.applied);
    EXPECT_EQ(serial.status, 1);
}

constexpr int kUnknown = 1024;

INSTANTIATE_TEST_SUITE_P(
    Codes, CSerialObjectSettings,
    testing::Values(
        SettingCodes{
            "No_parity", 0, kUnknown, kUnknown, kUnknown, {"setBaudRate 9600", "setParity none"}},
        SettingCodes{
            "Odd_parity", 1, kUnknown, kUnknown, kUnknown, {"setBaudRate 9600", "setParity odd"}},
        SettingCodes{
            "Even_parity", 2, kUnknown, kUnknown, kUnknown, {"setBaudRate 9600", "setParity even"}},
        SettingCodes{
            "Mark_parity", 3, kUnknown, kUnknown, kUnknown, {"setBaudRate 9600", "setParity mark"}},
        SettingCodes{"Space_parity",
                     4,
                     kUnknown,
                     kUnknown,
                     kUnknown,
                     {"setBaudRate 9600", "setParity space"}},
        SettingCodes{"Parity_5", 5, kUnknown, kUnknown, kUnknown, {"setBaudRate 9600"}},
        SettingCodes{"Parity_minus_1", -1, kUnknown, kUnknown, kUnknown, {"setBaudRate 9600"}},
        SettingCodes{"Seven_data_bits",
                     kUnknown,
                     7,
                     kUnknown,
                     kUnknown,
                     {"setBaudRate 9600", "setDataBits 7"}},
        SettingCodes{"Eight_data_bits",
                     kUnknown,
                     8,
                     kUnknown,
                     kUnknown,
                     {"setBaudRate 9600", "setDataBits 8"}},
        SettingCodes{"Five_data_bits", kUnknown, 5, kUnknown, kUnknown, {"setBaudRate 9600"}},
        SettingCodes{"Six_data_bits", kUnknown, 6, kUnknown, kUnknown, {"setBaudRate 9600"}},
        SettingCodes{"Nine_data_bits", kUnknown, 9, kUnknown, kUnknown, {"setBaudRate 9600"}},
        SettingCodes{"No_data_bits", kUnknown, 0, kUnknown, kUnknown, {"setBaudRate 9600"}},
        SettingCodes{
            "One_stop_bit", kUnknown, kUnknown, 0, kUnknown, {"setBaudRate 9600", "setStopBits 1"}},
        SettingCodes{"One_and_a_half_stop_bits",
                     kUnknown,
                     kUnknown,
                     1,
                     kUnknown,
                     {"setBaudRate 9600", "setStopBits 1.5"}},
        SettingCodes{"Two_stop_bits",
                     kUnknown,
                     kUnknown,
                     2,
                     kUnknown,
                     {"setBaudRate 9600", "setStopBits 2"}},
        SettingCodes{"Stop_bits_code_3", kUnknown, kUnknown, 3, kUnknown, {"setBaudRate 9600"}},
        SettingCodes{"No_flow_control",
                     kUnknown,
                     kUnknown,
                     kUnknown,
                     0,
                     {"setBaudRate 9600", "setFlowControl none"}},
        SettingCodes{"Hardware_flow_control",
                     kUnknown,
                     kUnknown,
                     kUnknown,
                     3,
                     {"setBaudRate 9600", "setFlowControl hardware"}},
        SettingCodes{"Software_flow_control",
                     kUnknown,
                     kUnknown,
                     kUnknown,
                     16,
                     {"setBaudRate 9600", "setFlowControl software"}},
        SettingCodes{"Flow_control_1", kUnknown, kUnknown, kUnknown, 1, {"setBaudRate 9600"}},
        SettingCodes{"Flow_control_2", kUnknown, kUnknown, kUnknown, 2, {"setBaudRate 9600"}},
        SettingCodes{"Flow_control_19", kUnknown, kUnknown, kUnknown, 19, {"setBaudRate 9600"}},
        SettingCodes{
            "Only_unknown_codes", kUnknown, kUnknown, kUnknown, kUnknown, {"setBaudRate 9600"}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(CSerialObjectTest, Parity_code_1024_is_traced_and_does_not_make_the_settings_fail) {
    serial.OpenCommPort(0, 'S');
    line.Forget();

    EXPECT_EQ(serial.SetCommConfig(9600, 1024, 7, 0, 0, 1), 1);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(
            "setBaudRate 9600", "setDataBits 7", "setStopBits 1", "setFlowControl none",
            R"(trace "Balance Comm Port settings:\nBaud rate = 9600\nParity = 1024\n)"
            R"(Data bits = 7\nStop bits = 0\nFlow control = 0\nTimeout = 1\n===> OK\n\n")"));
}

class CSerialObjectSetter : public CSerialObjectTest,
                            public testing::WithParamInterface<const char*> {};

TEST_P(CSerialObjectSetter, That_fails_lets_the_others_be_tried_and_removes_the_port) {
    serial.OpenCommPort(0, 'S');
    line.Forget();
    line.Fail(GetParam());

    EXPECT_EQ(serial.SetCommConfig(2400, 2, 7, 0, 0, 1), 0);

    std::vector<std::string> expected = {"setBaudRate 2400", "setDataBits 7", "setParity even",
                                         "setStopBits 1", "setFlowControl none"};
    for (std::string& call : expected) {
        if (call.rfind(GetParam(), 0) == 0) call += ": refused";
    }
    expected.emplace_back(
        R"(trace "Balance Comm Port settings:\nBaud rate = 2400\nParity = 2\n)"
        R"(Data bits = 7\nStop bits = 0\nFlow control = 0\nTimeout = 1\n===> FAIL\n\n")");
    expected.emplace_back("delete port");
    EXPECT_EQ(line.Transcript(), expected);
    EXPECT_EQ(serial.status, 0);
    EXPECT_EQ(serial.timeoutMs, 500);
    EXPECT_EQ(serial.port, nullptr);
    EXPECT_EQ(line.PortObjects(), 0);
}

INSTANTIATE_TEST_SUITE_P(Setters, CSerialObjectSetter,
                         testing::Values("setBaudRate", "setDataBits", "setParity", "setStopBits",
                                         "setFlowControl"),
                         [](const auto& row) { return std::string(row.param); });

TEST_F(CSerialObjectTest, A_setter_that_fails_is_not_made_good_by_the_ones_behind_it) {
    serial.OpenCommPort(0, 'S');
    line.Fail("setBaudRate");
    line.Fail("setFlowControl");

    EXPECT_EQ(serial.SetCommConfig(2400, 2, 7, 0, 0, 1), 0);

    EXPECT_EQ(serial.port, nullptr);
}

TEST_F(CSerialObjectTest, Settings_after_an_open_that_failed_are_applied_and_fail) {
    line.Fail("open");
    serial.OpenCommPort(0, 'S');
    line.Forget();

    EXPECT_EQ(serial.SetCommConfig(2400, 2, 7, 0, 0, 1), 0);

    EXPECT_THAT(line.Transcript(),
                ElementsAre("setBaudRate 2400", "setDataBits 7", "setParity even", "setStopBits 1",
                            "setFlowControl none",
                            R"(trace "Balance Comm Port settings:\nBaud rate = 2400\nParity = 2\n)"
                            R"(Data bits = 7\nStop bits = 0\nFlow control = 0\nTimeout = 1\n)"
                            R"(===> FAIL\n\n")",
                            "delete port"));
    EXPECT_EQ(serial.port, nullptr);
}

TEST_F(CSerialObjectTest, An_open_after_settings_that_failed_tries_the_device_again) {
    serial.OpenCommPort(0, 'S');
    serial.SetCommConfig(2400, 2, 7, 0, 0, 61);
    line.Forget();

    EXPECT_EQ(serial.OpenCommPort(0, 'S'), 1);

    EXPECT_EQ(line.Transcript().front(), "open /dev/ttyS0");
}

TEST_F(CSerialObjectTest, Settings_without_a_port_fail_without_a_trace) {
    EXPECT_EQ(serial.SetCommConfig(2400, 2, 7, 0, 0, 1), 0);

    EXPECT_EQ(serial.timeoutMs, 500);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// Time-outs.

struct Timeout {
    const char* name;
    int seconds;
    int result;
    std::int64_t milliseconds;
};

class CSerialObjectTimeout : public CSerialObjectTest,
                             public testing::WithParamInterface<Timeout> {};

TEST_P(CSerialObjectTimeout, Is_checked_and_set_with_the_settings) {
    serial.OpenCommPort(0, 'S');

    EXPECT_EQ(serial.SetCommConfig(2400, 2, 7, 0, 0, GetParam().seconds), GetParam().result);

    EXPECT_EQ(serial.timeoutMs, GetParam().milliseconds);
    EXPECT_EQ(serial.status, GetParam().result);
    EXPECT_EQ(line.PortObjects(), GetParam().result);
    EXPECT_THAT(line.Trace(),
                testing::EndsWith(GetParam().result == 1 ? "\n===> OK\n\n" : "\n===> FAIL\n\n"));
}

TEST_P(CSerialObjectTimeout, Is_checked_and_set_alone_and_leaves_the_status) {
    serial.OpenCommPort(0, 'S');

    EXPECT_EQ(serial.PrivateSetTimeout(GetParam().seconds), GetParam().result);

    EXPECT_EQ(serial.timeoutMs, GetParam().milliseconds);
    EXPECT_EQ(serial.status, 1);
}

TEST_P(CSerialObjectTimeout, Is_refused_unlooked_at_while_the_status_is_0) {
    EXPECT_EQ(serial.PrivateSetTimeout(GetParam().seconds), 0);

    EXPECT_EQ(serial.timeoutMs, 500);
}

INSTANTIATE_TEST_SUITE_P(Seconds, CSerialObjectTimeout,
                         testing::Values(Timeout{"Zero_gives_100_ms", 0, 1, 100},
                                         Timeout{"One", 1, 1, 1000},
                                         Timeout{"Fifty_nine", 59, 1, 59000},
                                         Timeout{"Sixty", 60, 1, 60000},
                                         Timeout{"Sixty_one_is_refused", 61, 0, 500},
                                         Timeout{"Minus_one_is_refused", -1, 0, 500},
                                         Timeout{"The_largest_is_refused", INT_MAX, 0, 500},
                                         Timeout{"The_smallest_is_refused", INT_MIN, 0, 500}),
                         [](const auto& row) { return std::string(row.param.name); });

// Closing and clearing.

TEST_F(CSerialObjectTest, A_close_closes_and_deletes_the_port_and_traces_it) {
    serial.OpenCommPort(0, 'S');
    line.Forget();

    EXPECT_EQ(serial.CloseCommPort(), 1);

    EXPECT_EQ(serial.status, 0);
    EXPECT_EQ(serial.port, nullptr);
    EXPECT_THAT(line.Transcript(), ElementsAre("close", "delete port",
                                               R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"));
}

TEST_F(CSerialObjectTest, A_close_without_a_port_traces_the_closing_all_the_same) {
    EXPECT_EQ(serial.CloseCommPort(), 1);

    EXPECT_THAT(line.Transcript(), ElementsAre(R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"));
}

TEST_F(CSerialObjectTest, A_close_keeps_time_out_and_kind) {
    serial.OpenCommPort(0, 'U');
    serial.SetCommConfig(2400, 2, 7, 0, 0, 7);

    serial.CloseCommPort();

    EXPECT_EQ(serial.timeoutMs, 7000);
    EXPECT_EQ(serial.portKind, 'U');
}

TEST_F(CSerialObjectTest, A_close_removes_a_port_that_did_not_open) {
    line.Fail("open");
    serial.OpenCommPort(0, 'S');
    serial.CloseCommPort();
    line.Forget();

    EXPECT_EQ(serial.OpenCommPort(0, 'S'), 1);

    EXPECT_EQ(line.Transcript().front(), "open /dev/ttyS0");
}

TEST_F(CSerialObjectTest, The_destructor_deletes_a_held_port_without_closing_it_first) {
    {
        OpenSerialObject shortLived;
        shortLived.OpenCommPort(0, 'S');
        line.Forget();
    }

    EXPECT_THAT(line.Transcript(), ElementsAre("delete port"));
    EXPECT_EQ(line.PortObjects(), 0);
}

TEST_F(CSerialObjectTest, Clearing_discards_what_has_arrived_and_traces_nothing) {
    serial.OpenCommPort(0, 'S');
    serial.SetCommConfig(2400, 2, 7, 0, 0, 1);
    line.Arrive(0, "stale\r\n");
    line.Arrive(10, "fresh\r\n");
    line.Forget();

    EXPECT_EQ(serial.ClearErrorsAndBuffers(), 1);

    EXPECT_THAT(line.Transcript(), ElementsAre("clear input"));
    char buffer[33];
    EXPECT_EQ(serial.ReceiveAnswer(buffer, 33, 1, "\r\n"), 1);
    EXPECT_STREQ(buffer, "fresh\r\n");
}

TEST_F(CSerialObjectTest, Clearing_that_the_port_refuses_gives_0_and_leaves_the_port_held) {
    serial.OpenCommPort(0, 'S');
    line.Forget();
    line.Fail("clear");

    EXPECT_EQ(serial.ClearErrorsAndBuffers(), 0);

    EXPECT_EQ(serial.status, 1);
    EXPECT_THAT(line.Transcript(), ElementsAre("clear input: refused"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(CSerialObjectTest, Clearing_a_port_that_did_not_open_gives_0) {
    line.Fail("open");
    serial.OpenCommPort(0, 'S');

    EXPECT_EQ(serial.ClearErrorsAndBuffers(), 0);
}

// The trace.

TEST_F(CSerialObjectTest, A_trace_is_printed_as_it_stands_whatever_the_level) {
    serial.TavinTrace(1015, "Tare\n");
    serial.TavinTrace(-1, "\n");
    serial.TavinTrace(0, "no line end");

    EXPECT_EQ(line.Trace(), "Tare\n\nno line end");
}

TEST_F(CSerialObjectTest,
       A_trace_with_directives_is_interpreted_and_reaches_the_stream_in_one_piece) {
    serial.TavinTrace(1015, "100%% of %d%s g\n");

    EXPECT_THAT(line.Transcript(), ElementsAre(R"(trace "100% of 0 g\n")"));
}

TEST_F(CSerialObjectTest, A_trace_may_be_longer_than_any_line_of_the_library) {
    const std::string text(100'000, 'x');

    serial.TavinTrace(1015, text.c_str());

    EXPECT_EQ(line.Trace(), text);
}

}  // namespace
