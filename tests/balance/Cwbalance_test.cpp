#include <climits>
#include <memory>

#include "Examples.h"
#include "PlainBalance.h"

using scripted::Open;
using scripted::ScriptedTest;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr char kOpened[] = R"(trace "/dev/ttyS4 OPENED SUCCESSFULLY!\n\n")";
constexpr char kHeld[] = R"(trace "COM4 alread open!")";
constexpr char kSettingsTaken[] =
    R"(trace "Balance Comm Port settings:\nBaud rate = 2400\nParity = 2\nData bits = 7\n)"
    R"(Stop bits = 0\nFlow control = 0\nTimeout = 1\n===> OK\n\n")";

/// The transport's own fields, which a driver does not see.
class SerialFields : public CSerialObject {
 public:
    static constexpr auto Status = &SerialFields::status;
    static constexpr auto TimeoutMs = &SerialFields::timeoutMs;
    static constexpr auto Port = &SerialFields::port;
    static constexpr auto PortKind = &SerialFields::portKind;
};

class CwbalanceTest : public ScriptedTest {
 protected:
    /// The settings record in the order of SetCommConfig().
    std::vector<int> Settings() const {
        return {balance.baudRate,     balance.parityCode,      balance.dataBits,
                balance.stopBitsCode, balance.flowControlCode, balance.timeoutSeconds,
                balance.portKind};
    }

    Open<PlainBalance> balance;
};

// Construction and destruction.

TEST_F(CwbalanceTest, The_base_constructor_makes_a_serial_object_that_holds_no_port) {
    ASSERT_NE(balance.serialObject, nullptr);
    EXPECT_EQ(balance.serialObject->*SerialFields::Status, 0);
    EXPECT_EQ(balance.serialObject->*SerialFields::TimeoutMs, 500);
    EXPECT_EQ(balance.serialObject->*SerialFields::Port, nullptr);
    EXPECT_EQ(balance.serialObject->*SerialFields::PortKind, 'S');
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(CwbalanceTest, The_destructor_deletes_an_open_port_without_closing_it_first) {
    auto shortLived = std::make_unique<PlainBalance>();
    shortLived->IsReady();
    line.Forget();

    shortLived.reset();

    EXPECT_THAT(line.Transcript(), ElementsAre("delete port"));
    EXPECT_EQ(line.PortObjects(), 0);
}

TEST_F(CwbalanceTest, The_destructor_works_through_the_base_class) {
    std::unique_ptr<Cwbalance> shortLived = std::make_unique<PlainBalance>();
    shortLived->IsReady();

    shortLived.reset();

    EXPECT_EQ(line.PortObjects(), 0);
}

TEST_F(CwbalanceTest, The_destructor_has_nothing_to_do_after_a_configuration_that_failed) {
    auto shortLived = std::make_unique<Open<PlainBalance>>();
    shortLived->timeoutSeconds = 61;
    shortLived->IsReady();
    line.Forget();

    shortLived.reset();

    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// What the base class does for an operation that a driver does not have.

TEST_F(CwbalanceTest, Weight_writes_0_and_returns_0) {
    double weight = -1.0;
    int decimals = 7;

    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 0);

    EXPECT_EQ(weight, 0.0);
    EXPECT_EQ(decimals, 7);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(CwbalanceTest, Weight_takes_no_decimals) {
    double weight = -1.0;

    EXPECT_EQ(balance.Weight(0, &weight, nullptr), 0);

    EXPECT_EQ(weight, 0.0);
}

TEST_F(CwbalanceTest, TareSet_returns_1_and_sends_nothing) {
    EXPECT_EQ(balance.TareSet(12.5), 1);
    EXPECT_EQ(balance.TareSet(-1.0), 1);

    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(CwbalanceTest, RestoreFactorySettings_returns_1_and_sends_nothing) {
    EXPECT_EQ(balance.RestoreFactorySettings(), 1);

    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// The settings record.

TEST_F(CwbalanceTest, SetCommPort_stores_a_number_from_0_on) {
    EXPECT_EQ(balance.SetCommPort(0), 1);
    EXPECT_EQ(balance.portNumber, 0);
    EXPECT_EQ(balance.SetCommPort(INT_MAX), 1);
    EXPECT_EQ(balance.portNumber, 2147483647);
}

TEST_F(CwbalanceTest, SetCommPort_refuses_a_negative_number_and_keeps_the_stored_one) {
    EXPECT_EQ(balance.SetCommPort(-1), 0);
    EXPECT_EQ(balance.SetCommPort(INT_MIN), 0);

    EXPECT_EQ(balance.portNumber, 4);
}

TEST_F(CwbalanceTest, SetCommConfig_stores_all_seven_values) {
    EXPECT_EQ(balance.SetCommConfig(9600, 1, 8, 2, 16, 5, 'U'), 1);

    EXPECT_THAT(Settings(), ElementsAre(9600, 1, 8, 2, 16, 5, 'U'));
    EXPECT_EQ(balance.portNumber, 4);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(CwbalanceTest, SetCommConfig_takes_the_smallest_values) {
    EXPECT_EQ(balance.SetCommConfig(1, 0, 0, 0, 0, 0, 'S'), 1);

    EXPECT_THAT(Settings(), ElementsAre(1, 0, 0, 0, 0, 0, 'S'));
}

TEST_F(CwbalanceTest, SetCommConfig_takes_codes_that_no_setting_has) {
    EXPECT_EQ(balance.SetCommConfig(INT_MAX, 1024, 99, 3, 1, 61, 'U'), 1);

    EXPECT_THAT(Settings(), ElementsAre(2147483647, 1024, 99, 3, 1, 61, 'U'));
}

struct RefusedConfig {
    const char* name;
    std::vector<int> given;
    std::vector<int> stored;
};

class CwbalanceRefusedConfig : public CwbalanceTest,
                               public testing::WithParamInterface<RefusedConfig> {};

TEST_P(CwbalanceRefusedConfig, Keeps_the_values_before_the_refused_one_and_no_other) {
    const std::vector<int>& given = GetParam().given;

    EXPECT_EQ(balance.SetCommConfig(given[0], given[1], given[2], given[3], given[4], given[5],
                                    static_cast<char>(given[6])),
              0);

    EXPECT_EQ(Settings(), GetParam().stored);
}

INSTANTIATE_TEST_SUITE_P(
    Values, CwbalanceRefusedConfig,
    testing::Values(
        RefusedConfig{"Baud_0", {0, 1, 8, 2, 16, 5, 'U'}, {2400, 2, 7, 0, 0, 1, 'S'}},
        RefusedConfig{"Baud_negative", {-1, 1, 8, 2, 16, 5, 'U'}, {2400, 2, 7, 0, 0, 1, 'S'}},
        RefusedConfig{"Parity", {9600, -1, 8, 2, 16, 5, 'U'}, {9600, 2, 7, 0, 0, 1, 'S'}},
        RefusedConfig{"Data_bits", {9600, 1, -1, 2, 16, 5, 'U'}, {9600, 1, 7, 0, 0, 1, 'S'}},
        RefusedConfig{"Stop_bits", {9600, 1, 8, -1, 16, 5, 'U'}, {9600, 1, 8, 0, 0, 1, 'S'}},
        RefusedConfig{"Flow_control", {9600, 1, 8, 2, -1, 5, 'U'}, {9600, 1, 8, 2, 0, 1, 'S'}},
        RefusedConfig{"Time_out", {9600, 1, 8, 2, 16, -1, 'U'}, {9600, 1, 8, 2, 16, 1, 'S'}},
        RefusedConfig{"Port_kind_X", {9600, 0, 8, 0, 0, 1, 'X'}, {9600, 0, 8, 0, 0, 1, 'S'}},
        RefusedConfig{
            "Port_kind_lower_case", {9600, 0, 8, 0, 0, 1, 'u'}, {9600, 0, 8, 0, 0, 1, 'S'}},
        RefusedConfig{"Port_kind_zero", {9600, 0, 8, 0, 0, 1, 0}, {9600, 0, 8, 0, 0, 1, 'S'}}),
    [](const auto& row) { return std::string(row.param.name); });

// Opening.

TEST_F(CwbalanceTest, The_first_open_opens_the_device_and_applies_the_settings) {
    EXPECT_EQ(balance.OpenAndSetDefCommConfig(), 1);

    EXPECT_THAT(line.Transcript(), ElementsAre("open /dev/ttyS4", kOpened, "setBaudRate 2400",
                                               "setDataBits 7", "setParity even", "setStopBits 1",
                                               "setFlowControl none", kSettingsTaken));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(CwbalanceTest, Every_further_open_finds_the_port_held_and_applies_the_settings_again) {
    balance.OpenAndSetDefCommConfig();
    line.Forget();

    EXPECT_EQ(balance.OpenAndSetDefCommConfig(), 1);

    EXPECT_THAT(line.Transcript(),
                ElementsAre(kHeld, "setBaudRate 2400", "setDataBits 7", "setParity even",
                            "setStopBits 1", "setFlowControl none", kSettingsTaken));
}

TEST_F(CwbalanceTest, Settings_changed_while_the_port_is_open_count_from_the_next_open_on) {
    balance.OpenAndSetDefCommConfig();
    balance.SetCommConfig(9600, 0, 8, 2, 3, 2, 'S');
    line.Forget();

    EXPECT_EQ(balance.OpenAndSetDefCommConfig(), 1);

    EXPECT_THAT(line.Transcript(),
                ElementsAre(kHeld, "setBaudRate 9600", "setDataBits 8", "setParity none",
                            "setStopBits 2", "setFlowControl hardware",
                            R"(trace "Balance Comm Port settings:\nBaud rate = 9600\n)"
                            R"(Parity = 0\nData bits = 8\nStop bits = 2\nFlow control = 3\n)"
                            R"(Timeout = 2\n===> OK\n\n")"));
}

TEST_F(CwbalanceTest, A_port_kind_of_U_set_before_the_first_open_opens_a_USB_adapter) {
    balance.SetCommConfig(2400, 2, 7, 0, 0, 1, 'U');

    EXPECT_EQ(balance.IsReady(), 1);

    EXPECT_EQ(line.Transcript().front(), "open /dev/ttyUSB4");
}

TEST_F(CwbalanceTest, A_changed_number_or_kind_counts_only_after_the_port_was_closed) {
    balance.IsReady();
    balance.SetCommPort(7);
    balance.SetCommConfig(2400, 2, 7, 0, 0, 1, 'U');
    line.Forget();

    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_EQ(line.Transcript().front(), R"(trace "COM7 alread open!")");

    balance.CloseCommPort();
    line.Forget();
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_EQ(line.Transcript().front(), "open /dev/ttyUSB7");
}

TEST_F(CwbalanceTest, An_open_that_fails_gives_0_and_keeps_the_serial_object) {
    line.Fail("open");

    EXPECT_EQ(balance.OpenAndSetDefCommConfig(), 0);

    EXPECT_NE(balance.serialObject, nullptr);
    EXPECT_THAT(line.Transcript(),
                ElementsAre("open /dev/ttyS4: refused",
                            R"(trace "INVALID COMM PORT ... UNABLE OPENING /dev/ttyS4!\n\n")"));
}

// The port object of the failed open is found held, takes the settings, and has nothing to clear.
TEST_F(CwbalanceTest, After_an_open_that_failed_the_next_operation_fails_too_and_the_third_opens) {
    line.Fail("open");
    EXPECT_EQ(balance.IsReady(), 0);
    line.Forget();

    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(
        line.Transcript(),
        ElementsAre(kHeld, "setBaudRate 2400", "setDataBits 7", "setParity even", "setStopBits 1",
                    "setFlowControl none", kSettingsTaken, "clear input: refused", "close",
                    "delete port", R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"));
    line.Forget();

    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_EQ(line.Transcript().front(), "open /dev/ttyS4");
}

TEST_F(CwbalanceTest, A_port_object_that_cannot_be_made_gives_0_and_the_next_operation_opens) {
    line.FailNextAllocation();
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_NE(balance.serialObject, nullptr);
    EXPECT_EQ(line.Trace(), "NULL POINTER ... UNABLE OPENING COMM PORT!\n\n");

    EXPECT_EQ(balance.IsReady(), 1);
}

TEST_F(CwbalanceTest, A_driver_without_memory_for_its_serial_object_fails_in_every_operation) {
    line.FailNextAllocation();
    scripted::Open<examples::Balance> driver;
    double weight = -1.0;

    EXPECT_EQ(driver.serialObject, nullptr);
    EXPECT_EQ(driver.IsReady(), 0);
    EXPECT_EQ(driver.Tare(), 0);
    EXPECT_EQ(driver.Weight(1, &weight, nullptr), 0);
    EXPECT_EQ(driver.OpenAndSetDefCommConfig(), 0);
    EXPECT_EQ(driver.CloseCommPort(), 0);
    EXPECT_EQ(weight, 0.0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(CwbalanceTest, A_negative_number_that_a_driver_stored_itself_is_not_opened) {
    balance.portNumber = -1;

    EXPECT_EQ(balance.OpenAndSetDefCommConfig(), 0);
    EXPECT_EQ(balance.OpenAndClear(), 0);

    EXPECT_NE(balance.serialObject, nullptr);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(CwbalanceTest, A_negative_number_that_a_driver_stored_itself_is_refused_on_a_held_port_too) {
    ASSERT_EQ(balance.OpenAndClear(), 1);
    balance.portNumber = -1;
    line.Forget();

    EXPECT_EQ(balance.OpenAndClear(), 0);

    EXPECT_THAT(line.Transcript(), IsEmpty());
    EXPECT_TRUE(line.IsOpen());
}

// A configuration that fails.

class CwbalanceFailingSetter : public CwbalanceTest,
                               public testing::WithParamInterface<const char*> {};

TEST_P(CwbalanceFailingSetter, Ends_the_serial_object_for_good) {
    line.Fail(GetParam());

    EXPECT_EQ(balance.OpenAndSetDefCommConfig(), 0);

    EXPECT_EQ(balance.serialObject, nullptr);
    EXPECT_EQ(line.PortObjects(), 0);
    EXPECT_THAT(line.Trace(), HasSubstr("\n===> FAIL\n\n"));

    line.Forget();
    EXPECT_EQ(balance.OpenAndSetDefCommConfig(), 0);
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_EQ(balance.CloseCommPort(), 0);
    EXPECT_EQ(balance.serialObject, nullptr);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Setters, CwbalanceFailingSetter,
                         testing::Values("setBaudRate", "setDataBits", "setParity", "setStopBits",
                                         "setFlowControl"),
                         [](const auto& row) { return std::string(row.param); });

TEST_F(CwbalanceTest, A_stored_time_out_of_61_seconds_ends_the_serial_object_for_good) {
    EXPECT_EQ(balance.SetCommConfig(2400, 2, 7, 0, 0, 61, 'S'), 1);

    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_EQ(balance.serialObject, nullptr);

    line.Forget();
    EXPECT_EQ(balance.SetCommConfig(2400, 2, 7, 0, 0, 1, 'S'), 1);
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(CwbalanceTest, A_setting_refused_by_an_open_port_ends_the_serial_object_too) {
    balance.IsReady();
    line.Fail("setParity");

    EXPECT_EQ(balance.IsReady(), 0);

    EXPECT_EQ(balance.serialObject, nullptr);
    EXPECT_FALSE(line.IsOpen());
}

TEST_F(CwbalanceTest, A_parity_code_outside_the_list_leaves_the_port_its_own_parity) {
    balance.SetCommConfig(9600, 1024, 7, 0, 0, 1, 'S');

    EXPECT_EQ(balance.IsReady(), 1);

    EXPECT_THAT(line.Transcript(), testing::Not(testing::Contains(HasSubstr("setParity"))));
}

// Opening and clearing, the start that the operations share.

TEST_F(CwbalanceTest, Open_and_clear_opens_configures_and_clears) {
    EXPECT_EQ(balance.OpenAndClear(), 1);

    EXPECT_THAT(line.Transcript(),
                ElementsAre("open /dev/ttyS4", kOpened, "setBaudRate 2400", "setDataBits 7",
                            "setParity even", "setStopBits 1", "setFlowControl none",
                            kSettingsTaken, "clear input"));
}

TEST_F(CwbalanceTest, Open_and_clear_that_cannot_clear_closes_the_port) {
    line.Fail("clear");

    EXPECT_EQ(balance.OpenAndClear(), 0);

    EXPECT_FALSE(line.IsOpen());
    EXPECT_EQ(line.PortObjects(), 0);
    EXPECT_NE(balance.serialObject, nullptr);
    const std::vector<std::string> calls = line.Transcript();
    EXPECT_THAT(std::vector(calls.end() - 4, calls.end()),
                ElementsAre("clear input: refused", "close", "delete port",
                            R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"));
}

TEST_F(CwbalanceTest, Open_and_clear_that_cannot_open_closes_nothing) {
    line.Fail("open");

    EXPECT_EQ(balance.OpenAndClear(), 0);

    EXPECT_EQ(line.PortObjects(), 1);
}

TEST_F(CwbalanceTest, Unplugged_while_open_the_next_operation_ends_the_serial_object) {
    balance.IsReady();
    line.HangUp();

    EXPECT_EQ(balance.IsReady(), 0);

    // The port refuses its settings then, and a configuration that fails is final.
    EXPECT_EQ(balance.serialObject, nullptr);
}

// Closing.

TEST_F(CwbalanceTest, Closing_closes_the_port_and_the_next_operation_opens_it_again) {
    balance.IsReady();
    line.Forget();

    EXPECT_EQ(balance.CloseCommPort(), 1);

    EXPECT_THAT(line.Transcript(), ElementsAre("close", "delete port",
                                               R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"));
    line.Forget();
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_EQ(line.Transcript().front(), "open /dev/ttyS4");
}

TEST_F(CwbalanceTest, Closing_without_a_serial_object_returns_0_without_a_trace) {
    balance.timeoutSeconds = 61;
    balance.IsReady();
    line.Forget();

    EXPECT_EQ(balance.CloseCommPort(), 0);

    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(CwbalanceTest, Closing_without_an_open_port_returns_1_and_traces_it) {
    EXPECT_EQ(balance.CloseCommPort(), 1);

    EXPECT_THAT(line.Transcript(), ElementsAre(R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"));
}

}  // namespace
