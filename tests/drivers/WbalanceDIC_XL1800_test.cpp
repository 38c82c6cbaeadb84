// What is the XL-1800's own; the reading that it shares is tested in SignedReading_test.cpp.

#include <cmath>
#include <cstdlib>

#include "ScriptedTest.h"

using scripted::Fault;
using scripted::Open;
using scripted::ScriptedTest;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::EndsWith;
using testing::IsEmpty;

namespace {

using XL1800 = Open<WbalanceDIC_XL1800>;
using Steps = std::vector<std::string>;

Steps operator+(Steps first, const Steps& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

constexpr char kSettings[] =
    R"(trace "Balance Comm Port settings:\nBaud rate = 2400\nParity = 0\nData bits = 8\n)"
    R"(Stop bits = 0\nFlow control = 0\nTimeout = 1\n===> OK\n\n")";
const Steps kOpened = {"open /dev/ttyS0",     R"(trace "/dev/ttyS0 OPENED SUCCESSFULLY!\n\n")",
                       "setBaudRate 2400",    "setDataBits 8",
                       "setParity none",      "setStopBits 1",
                       "setFlowControl none", kSettings,
                       "clear input"};
const Steps kFoundOpen = {R"(trace "COM0 alread open!")",
                          "setBaudRate 2400",
                          "setDataBits 8",
                          "setParity none",
                          "setStopBits 1",
                          "setFlowControl none",
                          kSettings,
                          "clear input"};
const Steps kRequest = {R"(trace "Sending weight command...")", R"(write "?1")",
                        R"(trace "<== ?1 ... OK\n\n")", R"(trace "success!\n")"};
const Steps kSilence = {"wait 1000: silence",
                        R"(trace "Timeout elapsed in scale read (attempt n. 1)\n")",
                        R"(trace "Read from scale:  (time elapsed: 1000 ms)\n")"};

class WbalanceDIC_XL1800Test : public ScriptedTest {
 protected:
    WbalanceDIC_XL1800Test() { unsetenv("WBALANCE_SLEEP"); }

    XL1800 balance;
    double weight = -1.0;
    int decimals = -1;
};

TEST_F(WbalanceDIC_XL1800Test, The_constructor_sets_the_line_to_2400_8N1) {
    EXPECT_EQ(balance.portNumber, 0);
    EXPECT_EQ(balance.baudRate, 2400);
    EXPECT_EQ(balance.parityCode, 0);
    EXPECT_EQ(balance.dataBits, 8);
    EXPECT_EQ(balance.stopBitsCode, 0);
    EXPECT_EQ(balance.flowControlCode, 0);
    EXPECT_EQ(balance.timeoutSeconds, 1);
    EXPECT_EQ(balance.portKind, 'S');
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceDIC_XL1800Test, IsReady_opens_and_takes_a_stable_weight) {
    line.Answer("?1", {{"1+    12.34 g\r\n"}});

    EXPECT_EQ(balance.IsReady(), 1);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAreArray(
            kOpened +
            Steps{R"(trace "Denver Instrument Company XL-1800 - Weight\n")",
                  R"(trace "Sleep timeout 100 ms\n")"} +
            kRequest +
            Steps{"wait 1000: data", R"(read "1+    12.34 g\r\n")",
                  R"(trace "Read from scale: 1+    12.34 g\r\n (time elapsed: 0 ms)\n")",
                  "Sleep 100",
                  R"(trace "Read from scale this attempt: 1+    12.34 g\r\n. )"
                  R"(Complete answer from scale so far: 1+    12.34 g\r\n\n\n")"} +
            kSilence +
            Steps{R"(trace "Denver Instrument Company XL-1800 - weight = 12.34 gr.\n\n")"}));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceDIC_XL1800Test, IsReady_fails_on_a_balance_that_never_settles_and_stays_open) {
    line.AlwaysAnswer("?1", {{"U+    12.34 g\r\n"}});
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("?1", "?1", "?1", "?1", "?1"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceDIC_XL1800Test, A_silent_balance_is_traced_to_the_last_character) {
    EXPECT_EQ(balance.IsReady(), 0);

    const Steps refused =
        kRequest + kSilence + Steps{R"(trace "Bad scale answer. Retring read...\n")"};
    EXPECT_THAT(line.Transcript(),
                ElementsAreArray(kOpened +
                                 Steps{R"(trace "Denver Instrument Company XL-1800 - Weight\n")",
                                       R"(trace "Sleep timeout 100 ms\n")"} +
                                 refused + refused + refused + refused + refused +
                                 Steps{R"(trace "Weight procedure failed!")"}));
}

TEST_F(WbalanceDIC_XL1800Test, A_second_readiness_finds_the_port_open_and_sets_it_again) {
    line.AlwaysAnswer("?1", {{"1+    12.34 g\r\n"}});
    EXPECT_EQ(balance.IsReady(), 1);
    line.Forget();
    EXPECT_EQ(balance.IsReady(), 1);
    Steps steps = line.Transcript();
    ASSERT_GT(steps.size(), kFoundOpen.size());
    steps.resize(kFoundOpen.size());
    EXPECT_THAT(steps, ElementsAreArray(kFoundOpen));
}

TEST_F(WbalanceDIC_XL1800Test, A_negative_port_number_is_not_ready) {
    balance.portNumber = -1;
    EXPECT_EQ(balance.IsReady(), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// Tare

TEST_F(WbalanceDIC_XL1800Test, Tare_sends_T_waits_2_s_and_reads_zero_without_opening) {
    line.Answer("?1", {{"1+    12.34 g\r\n"}});
    line.Answer("?1", {{"1-     0.05 g\r\n"}});
    ASSERT_EQ(balance.IsReady(), 1);
    line.Forget();

    EXPECT_EQ(balance.Tare(), 1);

    EXPECT_THAT(
        line.Transcript(),
        ElementsAreArray(
            Steps{R"(trace "Denver Instrument Company XL-1800 - Tare\n")", R"(write "T")",
                  R"(trace "<== T ... OK\n\n")", "Sleep 2000",
                  R"(trace "Denver Instrument Company XL-1800 - Weight\n")",
                  R"(trace "Sleep timeout 100 ms\n")"} +
            kRequest +
            Steps{"wait 1000: data", R"(read "1-     0.05 g\r\n")",
                  R"(trace "Read from scale: 1-     0.05 g\r\n (time elapsed: 0 ms)\n")",
                  "Sleep 100",
                  R"(trace "Read from scale this attempt: 1-     0.05 g\r\n. )"
                  R"(Complete answer from scale so far: 1-     0.05 g\r\n\n\n")"} +
            kSilence +
            Steps{R"(trace "Denver Instrument Company XL-1800 - weight = -0.05 gr.\n\n")"}));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceDIC_XL1800Test, Tare_fails_on_a_closed_port_at_its_send) {
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Transcript(),
                ElementsAre(R"(trace "Denver Instrument Company XL-1800 - Tare\n")",
                            R"(trace "<== T ... FAIL\n\n")"));
}

TEST_F(WbalanceDIC_XL1800Test, Tare_fails_on_a_port_that_did_not_open) {
    line.Fail("open");
    EXPECT_EQ(balance.IsReady(), 0);
    line.Forget();
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_EQ(balance.Weight(1, &weight, nullptr), 0);
    EXPECT_THAT(line.Sent(), IsEmpty());
    EXPECT_THAT(line.Sleeps(), IsEmpty());
}

TEST_F(WbalanceDIC_XL1800Test, Tare_fails_when_the_check_is_not_stable) {
    ASSERT_EQ(balance.OpenAndSetDefCommConfig(), 1);
    line.AlwaysAnswer("?1", {{"U+     0.00 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Sent(), ElementsAre("T", "?1", "?1", "?1", "?1", "?1"));
    EXPECT_THAT(line.Trace(), EndsWith("Weight procedure failed!"));
}

TEST_F(WbalanceDIC_XL1800Test, Tare_that_can_not_be_sent_does_not_wait) {
    ASSERT_EQ(balance.OpenAndSetDefCommConfig(), 1);
    line.Fail("write");
    EXPECT_EQ(balance.Tare(), 0);
    EXPECT_THAT(line.Sleeps(), IsEmpty());
    EXPECT_THAT(line.Trace(), EndsWith("XL-1800 - Tare\n<== T ... FAIL\n\n"));
    EXPECT_TRUE(line.IsOpen());
}

TEST_F(WbalanceDIC_XL1800Test, The_T_leaves_together_with_the_request_that_follows_it) {
    ASSERT_EQ(balance.OpenAndSetDefCommConfig(), 1);
    std::vector<long> left;
    line.OnCommand([&](const std::string& /*command*/) { left.push_back(line.Now()); });
    line.Answer("?1", {{"1+     0.00 g\r\n"}});
    EXPECT_EQ(balance.Tare(), 1);
    EXPECT_THAT(line.Left(), ElementsAre("T", "?1"));
    EXPECT_THAT(left, ElementsAre(2000, 2000));
}

TEST_F(WbalanceDIC_XL1800Test, TareSet_returns_0_and_sends_nothing) {
    for (const double preset : {0.0, 12.5, -1.0, 1e300})
        EXPECT_EQ(balance.TareSet(preset), 0);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceDIC_XL1800Test, RestoreFactorySettings_is_the_base_class_one) {
    EXPECT_EQ(balance.RestoreFactorySettings(), 1);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

// What a host overrides

class Host : public XL1800 {
 public:
    int IsReady() override {
        calls.push_back("IsReady");
        return ready;
    }
    int Weight(long mode, double* grams, int* count) override {
        calls.push_back("Weight " + std::to_string(mode) +
                        (count == nullptr ? " without decimals" : " with decimals"));
        *grams = rest;
        return result;
    }
    int ready = 1;
    double rest = 0.0;
    int result = 1;
    std::vector<std::string> calls;
};

TEST_F(WbalanceDIC_XL1800Test, IsReady_returns_what_the_hosts_Weight_returns_in_mode_1) {
    Host host;
    host.result = 7;
    EXPECT_EQ(host.XL1800::IsReady(), 7);
    EXPECT_THAT(host.calls, ElementsAre("Weight 1 without decimals"));
    EXPECT_THAT(line.Transcript(), ElementsAreArray(kOpened));
}

TEST_F(WbalanceDIC_XL1800Test, Tare_asks_the_hosts_Weight_in_mode_0_and_not_its_readiness) {
    Host host;
    ASSERT_EQ(host.OpenAndSetDefCommConfig(), 1);
    host.ready = 0;
    EXPECT_EQ(host.Tare(), 1);
    EXPECT_THAT(host.calls, ElementsAre("Weight 0 without decimals"));
}

TEST_F(WbalanceDIC_XL1800Test, Tare_succeeds_below_a_tenth_of_a_gram_strictly) {
    Host host;
    ASSERT_EQ(host.OpenAndSetDefCommConfig(), 1);
    const auto tareAt = [&host](double rest) {
        host.rest = rest;
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

TEST_F(WbalanceDIC_XL1800Test, Tare_fails_with_the_hosts_Weight_and_takes_any_other_result) {
    Host host;
    ASSERT_EQ(host.OpenAndSetDefCommConfig(), 1);
    host.result = 0;
    EXPECT_EQ(host.Tare(), 0);
    host.result = 2;
    EXPECT_EQ(host.Tare(), 1);
}

TEST_F(WbalanceDIC_XL1800Test, A_readiness_of_the_lines_alone_is_enough_for_every_operation) {
    WithLineReadiness<XL1800> ready;
    line.AlwaysAnswer("?1", {{"1+     0.00 g\r\n"}});
    EXPECT_EQ(ready.IsReady(), 1);
    EXPECT_THAT(line.Transcript(), ElementsAreArray(kOpened));
    EXPECT_EQ(ready.Weight(0, &weight, nullptr), 1);
    EXPECT_EQ(ready.Tare(), 1);
}

// The transport failing at each single call

struct FailingCall {
    std::string name;
    int call;
    Fault fault;
    int result;
    int portObjects;
    bool open;
    bool serialObject;
};

class WbalanceDIC_XL1800FailingCallTest : public WbalanceDIC_XL1800Test,
                                          public testing::WithParamInterface<FailingCall> {};

// A readiness is an open, five settings, a clear and a weight of one write and two waits.
TEST_P(WbalanceDIC_XL1800FailingCallTest, Leaves_the_result_and_the_port_as_they_have_to_be) {
    line.Answer("?1", {{"1+    12.34 g\r\n"}});
    line.FailCall(GetParam().call, GetParam().fault);

    EXPECT_EQ(balance.IsReady(), GetParam().result);

    EXPECT_EQ(line.PortObjects(), GetParam().portObjects);
    EXPECT_EQ(line.IsOpen(), GetParam().open);
    EXPECT_EQ(balance.serialObject != nullptr, GetParam().serialObject);
    line.Forget();
    EXPECT_EQ(balance.TareSet(1.0), 0);
    if (!GetParam().serialObject) {
        EXPECT_EQ(balance.IsReady(), 0);
        EXPECT_EQ(balance.Tare(), 0);
        EXPECT_EQ(balance.Weight(1, &weight, nullptr), 0);
        EXPECT_THAT(line.Transcript(), IsEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Calls, WbalanceDIC_XL1800FailingCallTest,
    testing::Values(FailingCall{"open", 1, Fault::Refuse, 0, 1, false, true},
                    FailingCall{"baud_rate", 2, Fault::Refuse, 0, 0, false, false},
                    FailingCall{"data_bits", 3, Fault::Refuse, 0, 0, false, false},
                    FailingCall{"parity", 4, Fault::Refuse, 0, 0, false, false},
                    FailingCall{"stop_bits", 5, Fault::Refuse, 0, 0, false, false},
                    FailingCall{"flow_control", 6, Fault::Refuse, 0, 0, false, false},
                    FailingCall{"clear", 7, Fault::Refuse, 0, 0, false, true},
                    FailingCall{"write", 8, Fault::Refuse, 0, 1, true, true},
                    FailingCall{"short_write", 8, Fault::ShortWrite, 0, 1, true, true},
                    FailingCall{"hang_up_at_the_write", 8, Fault::HangUp, 0, 1, true, true},
                    FailingCall{"first_wait", 9, Fault::Refuse, 1, 1, true, true},
                    FailingCall{"first_wait_without_data", 9, Fault::EmptyRead, 1, 1, true, true},
                    FailingCall{"hang_up_at_the_wait", 9, Fault::HangUp, 0, 1, true, true},
                    FailingCall{"second_wait", 10, Fault::Refuse, 1, 1, true, true}),
    [](const auto& row) { return row.param.name; });

TEST_F(WbalanceDIC_XL1800Test, A_clear_that_fails_closes_the_port_with_its_trace) {
    line.Fail("clear");
    EXPECT_EQ(balance.IsReady(), 0);
    Steps refused = kOpened;
    refused.back() = "clear input: refused";
    EXPECT_THAT(
        line.Transcript(),
        ElementsAreArray(refused + Steps{"close", "delete port",
                                         R"(trace "\nSCALE COM PORT HAS BEEN CLOSED.\n")"}));
}

}  // namespace
