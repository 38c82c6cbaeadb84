#include "../Dialogue.h"
#include "ScriptedTest.h"

using scripted::Dialogue;
using scripted::Open;
using scripted::ScriptedTest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const Dialogue kDialogue({"setBaudRate 9600", "setDataBits 8", "setParity none", "setStopBits 1",
                          "setFlowControl none",
                          R"(trace "Balance Comm Port settings:\nBaud rate = 9600\nParity = 0\n)"
                          R"(Data bits = 8\nStop bits = 0\nFlow control = 0\nTimeout = 1\n)"
                          R"(===> OK\n\n")"});

class WbalanceMettlerXSTest : public ScriptedTest {
 protected:
    Open<WbalanceMettlerXS> balance;
};

TEST_F(WbalanceMettlerXSTest,
       Begins_with_9600_baud_no_parity_8_data_bits_1_s_and_a_reset_that_is_due) {
    EXPECT_EQ(balance.portNumber, 0);
    EXPECT_EQ(balance.baudRate, 9600);
    EXPECT_EQ(balance.parityCode, 0);
    EXPECT_EQ(balance.dataBits, 8);
    EXPECT_EQ(balance.stopBitsCode, 0);
    EXPECT_EQ(balance.flowControlCode, 0);
    EXPECT_EQ(balance.timeoutSeconds, 1);
    EXPECT_EQ(balance.portKind, 'S');
    EXPECT_EQ(balance.protocolCode, 0);
    EXPECT_EQ(balance.modelFlagB, 0);
    EXPECT_EQ(balance.modelFlagC, 1);
    EXPECT_THAT(line.Transcript(), IsEmpty());
}

TEST_F(WbalanceMettlerXSTest, Is_a_PR_in_everything_else_down_to_the_name_in_the_trace) {
    WbalanceMettlerPR2003& pr = balance;
    line.Answer("@\r\n", {{"I4 A \"1126493049\"\r\n"}});
    line.Answer("D \"READY\"\r\n", {{"D A\r\n"}});
    line.Answer("DW\r\n", {{"DW A\r\n"}});
    line.Answer("SI\r\n", {{"S D     10.0001 g\r\n"}});
    std::string text = "READY";
    EXPECT_EQ(pr.DisplayMessage(text.data()), 1);
    double weight = -1.0;
    int decimals = -1;
    EXPECT_EQ(pr.Weight(2, &weight, &decimals), 2);
    EXPECT_EQ(weight, 10.0001);
    EXPECT_EQ(decimals, -1);
    EXPECT_THAT(
        kDialogue.Of(line),
        ElementsAre(
            "opening", R"(trace "Mettler PR - Reset\n")", R"(write "@\r\n")", "Sleep 500",
            R"(read "I4 A \"1126493049\"\r\n")", R"(trace "Mettler PR - Display \"READY\"\n")",
            R"(write "D \"READY\"\r\n")", R"(read "D A\r\n")", "opening again",
            R"(trace "Mettler PR - Set weight mode\n")", R"(write "DW\r\n")", "Sleep 500",
            R"(read "DW A\r\n")", R"(trace "Mettler PR - Unstable weight\n")", R"(write "SI\r\n")",
            R"(read "S D     10.0001 g\r\n")", R"(trace "Mettler PR - weight = 10.00 cc.\n")"));
}

}  // namespace
