#include "Examples.h"
#include "PlainBalance.h"

using scripted::Open;
using scripted::ScriptedTest;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

class WithLineReadinessTest : public ScriptedTest {
 protected:
    Open<WithLineReadiness<examples::Balance>> balance;
};

TEST_F(WithLineReadinessTest, Readiness_opens_configures_and_clears_and_sends_nothing) {
    EXPECT_EQ(balance.IsReady(), 1);

    EXPECT_THAT(line.Transcript(),
                ElementsAre("open /dev/ttyS0", R"(trace "/dev/ttyS0 OPENED SUCCESSFULLY!\n\n")",
                            "setBaudRate 2400", "setDataBits 7", "setParity even", "setStopBits 1",
                            "setFlowControl none",
                            R"(trace "Balance Comm Port settings:\nBaud rate = 2400\n)"
                            R"(Parity = 2\nData bits = 7\nStop bits = 0\nFlow control = 0\n)"
                            R"(Timeout = 1\n===> OK\n\n")",
                            "clear input"));
    EXPECT_EQ(line.Now(), 0);
}

TEST_F(WithLineReadinessTest, The_operations_use_it_and_read_what_the_balance_shows) {
    line.AlwaysAnswer("@\r\n", {{"I4 A \"1126493049\"\r\n"}});
    line.Answer("S\r\n", {{"S S     100.00 g\r\n"}});
    double weight = -1.0;
    int decimals = -1;

    EXPECT_EQ(balance.Weight(1, &weight, &decimals), 1);

    EXPECT_EQ(weight, 100.0);
    EXPECT_EQ(decimals, 2);
    EXPECT_THAT(line.Sent(), ElementsAre("S\r\n"));
}

TEST_F(WithLineReadinessTest, The_operations_of_the_base_class_pointer_use_it_too) {
    line.Answer("Z\r\n", {{"Z A\r\n"}});
    Cwbalance& anyBalance = balance;

    EXPECT_EQ(anyBalance.Tare(), 1);

    EXPECT_THAT(line.Sent(), ElementsAre("Z\r\n"));
}

TEST_F(WithLineReadinessTest, Readiness_says_that_the_line_is_open_not_that_a_balance_answers) {
    EXPECT_EQ(balance.IsReady(), 1);
    EXPECT_THAT(line.Transcript(), Not(Contains(testing::StartsWith("wait"))));
}

TEST_F(WithLineReadinessTest, Readiness_fails_when_the_device_cannot_be_opened) {
    line.Fail("open");

    EXPECT_EQ(balance.IsReady(), 0);

    EXPECT_NE(balance.serialObject, nullptr);
}

TEST_F(WithLineReadinessTest, Readiness_fails_and_closes_the_port_when_it_cannot_be_cleared) {
    line.Fail("clear");

    EXPECT_EQ(balance.IsReady(), 0);

    EXPECT_EQ(line.PortObjects(), 0);
}

TEST_F(WithLineReadinessTest, Readiness_fails_for_good_when_a_setting_is_refused) {
    line.Fail("setDataBits");

    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_EQ(balance.IsReady(), 0);

    EXPECT_EQ(balance.serialObject, nullptr);
}

TEST_F(WithLineReadinessTest, Readiness_refuses_a_negative_port_number) {
    balance.portNumber = -1;

    EXPECT_EQ(balance.IsReady(), 0);

    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WithLineReadinessTest, It_adds_nothing_to_the_size_of_the_driver) {
    EXPECT_EQ(sizeof(WithLineReadiness<examples::Balance>), sizeof(examples::Balance));
}

}  // namespace
