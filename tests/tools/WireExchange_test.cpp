#include "process/WireExchange.h"

#include <gmock/gmock.h>

using tool::TraceText;
using tool::WireExchanges;

namespace {

std::vector<TraceText> Trace(const std::vector<std::string>& texts) {
    std::vector<TraceText> trace;
    for (const auto& text : texts)
        trace.push_back({std::chrono::system_clock::now(), text});
    return trace;
}

TEST(WireExchanges, Holds_each_command_with_its_answer) {
    const WireExchanges wire(
        Trace({"/dev/ttyS0 OPENED SUCCESSFULLY!\n\n", "<== S\r\n ... OK\n\n",
               "Timeout elapsed in scale read (attempt n. 2)\n",
               "Read from scale: S I\r\n (time elapsed: 2000 ms)\n", "<== SI\r\n ... OK\n\n",
               "Read from scale: S D      12.3 g\r\n (time elapsed: 2000 ms)\n"}));

    ASSERT_EQ(wire.exchanges.size(), 2u);
    EXPECT_EQ(wire.exchanges[0].command, "S\r\n");
    EXPECT_TRUE(wire.exchanges[0].taken);
    EXPECT_EQ(wire.exchanges[0].answer, "S I\r\n");
    EXPECT_EQ(wire.exchanges[1].answer, "S D      12.3 g\r\n");
    EXPECT_EQ(wire.Received(), "S I\r\nS D      12.3 g\r\n");
}

TEST(WireExchanges, Joins_an_answer_that_came_in_rounds_and_leaves_out_its_repetition) {
    const WireExchanges wire(Trace(
        {"<== O9\r\n ... OK\n\n", "Read from scale: A00\r\n (time elapsed: 2000 ms)\n",
         "Read from scale: A00\r\n\n", "Read from scale: +  12.50 G S\r\n (time elapsed: 10 ms)\n",
         "Read from scale: A00\r\n+  12.50 G S\r\n\n"}));

    ASSERT_EQ(wire.exchanges.size(), 1u);
    EXPECT_EQ(wire.exchanges[0].answer, "A00\r\n+  12.50 G S\r\n");
}

TEST(WireExchanges, An_answer_of_silence_is_empty) {
    const WireExchanges wire(
        Trace({"<== S\r\n ... OK\n\n", "Read from scale:  (time elapsed: 3000 ms)\n"}));

    ASSERT_EQ(wire.exchanges.size(), 1u);
    EXPECT_EQ(wire.exchanges[0].answer, "");
    EXPECT_FALSE(wire.AnythingReceived());
}

TEST(WireExchanges, Knows_a_command_that_the_port_did_not_take) {
    const WireExchanges wire(Trace({"<== T\r\n ... FAIL\n\n"}));

    ASSERT_EQ(wire.exchanges.size(), 1u);
    EXPECT_EQ(wire.exchanges[0].command, "T\r\n");
    EXPECT_FALSE(wire.exchanges[0].taken);
}

TEST(WireExchanges, Knows_a_port_that_did_not_open) {
    EXPECT_TRUE(
        WireExchanges(Trace({"INVALID COMM PORT ... UNABLE OPENING /dev/ttyS0!\n\n"})).openFailed);
    EXPECT_FALSE(WireExchanges(Trace({"/dev/ttyS0 OPENED SUCCESSFULLY!\n\n"})).openFailed);
}

TEST(WireExchanges, Knows_settings_that_the_port_refused) {
    EXPECT_TRUE(
        WireExchanges(Trace({"Balance Comm Port settings:\nBaud rate = 2400\n===> FAIL\n\n"}))
            .settingsRefused);
    EXPECT_FALSE(
        WireExchanges(Trace({"Balance Comm Port settings:\nBaud rate = 2400\n===> OK\n\n"}))
            .settingsRefused);
}

}  // namespace
