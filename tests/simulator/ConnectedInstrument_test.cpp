// What does not need a line: how much is kept of a run that lasts for weeks.

#include "simulator/ConnectedInstrument.h"

#include <gtest/gtest.h>

#include <numeric>

#include "Examples.h"

using examples::kBalance;
using simulator::Character;
using simulator::ConnectedInstrument;
using simulator::HostLine;
using simulator::LineEvent;
using simulator::Options;
using simulator::UartSettings;
using namespace std::chrono_literals;

namespace {

/// A host that says the same whenever it is listened to, and takes everything.
class TalkativeHost final : public HostLine {
 public:
    explicit TalkativeHost(std::string words) : words_(std::move(words)) {}

    const std::string& Device() const override { return device_; }
    std::vector<int> Descriptors() const override { return {}; }
    void Serve(const std::function<void(const Arrival&)>& arrived) override {
        if (!words_.empty()) arrived({words_, *UartSettings::Parse("2400,7E1"), 0});
    }
    void Deliver(const std::vector<Character>&) override {}
    bool IsOpen() const override { return true; }
    UartSettings HostSettings() const override { return *UartSettings::Parse("2400,7E1"); }
    void Unplug() override {}
    void PlugIn(const std::string&) override {}

 private:
    const std::string device_ = "/dev/ttyS0";
    const std::string words_;
};

std::unique_ptr<ConnectedInstrument> BalanceFor(const std::string& words,
                                                const Options& options = {}) {
    return std::make_unique<ConnectedInstrument>(simulator::FindInstrument(kBalance), options,
                                                 std::make_unique<TalkativeHost>(words));
}

std::size_t BytesIn(const std::vector<LineEvent>& log) {
    return std::accumulate(
        log.begin(), log.end(), std::size_t{0},
        [](std::size_t sum, const LineEvent& event) { return sum + event.bytes.size(); });
}

}  // namespace

namespace {

/// A host that tries every speed from 1 baud on.
class SeekingHost final : public HostLine {
 public:
    const std::string& Device() const override { return device_; }
    std::vector<int> Descriptors() const override { return {}; }
    void Serve(const std::function<void(const Arrival&)>& arrived) override {
        ++settings_.baudRate;
        arrived({"S", settings_, 0});
    }
    void Deliver(const std::vector<Character>&) override {}
    bool IsOpen() const override { return true; }
    UartSettings HostSettings() const override { return settings_; }
    void Unplug() override {}
    void PlugIn(const std::string&) override {}

 private:
    const std::string device_ = "/dev/ttyS0";
    UartSettings settings_ = *UartSettings::Parse("1,8N1");
};

}  // namespace

TEST(ConnectedInstrument, Says_of_a_hundred_settings_at_most_that_they_are_not_its_own) {
    ConnectedInstrument balance(simulator::FindInstrument(kBalance), {},
                                std::make_unique<SeekingHost>());
    for (int i = 0; i < 1000; ++i)
        balance.Serve();
    const auto log = balance.Log();
    std::vector<std::string> said;
    for (const LineEvent& event : log)
        if (event.kind == LineEvent::Kind::OtherSettings) said.push_back(event.settings.Text());
    ASSERT_EQ(said.size(), 100u);
    EXPECT_EQ(said.front(), "2,8N1");
    EXPECT_EQ(said.back(), "101,8N1");
}

TEST(ConnectedInstrument, Keeps_the_last_ten_thousand_events) {
    const auto balance = BalanceFor("x");
    for (int i = 0; i < 12'000; ++i)
        balance->Serve();
    EXPECT_EQ(balance->Log().size(), 10'000u);
    EXPECT_EQ(balance->SettingsOfLastCommand(), UartSettings::Parse("2400,7E1"));
}

TEST(ConnectedInstrument, Keeps_a_mebibyte_of_what_was_said) {
    const auto balance = BalanceFor(std::string(1000, 'x'));
    for (int i = 0; i < 2000; ++i)
        balance->Serve();
    EXPECT_LE(BytesIn(balance->Log()), 1024u * 1024u);
    EXPECT_GT(BytesIn(balance->Log()), 1000u * 1000u);
}

TEST(ConnectedInstrument, Keeps_one_event_whatever_its_size) {
    const auto balance = BalanceFor(std::string(3'000'000, 'x'));
    balance->Serve();
    EXPECT_EQ(balance->Log().size(), 1u);
}

TEST(ConnectedInstrument, Loses_what_a_host_sends_faster_than_its_line_carries) {
    const auto balance = BalanceFor(std::string(10'000, 'x'), Options().WithPacing());
    for (int i = 0; i < 100; ++i)
        balance->Serve();
    const auto log = balance->Log();
    EXPECT_EQ(log.front().kind, LineEvent::Kind::FromHost);
    EXPECT_EQ(log.back().kind, LineEvent::Kind::Overflow);
}

TEST(ConnectedInstrument, Looks_after_its_time_once_a_minute_though_nobody_says_anything) {
    const auto balance = BalanceFor("");
    const auto deadline = balance->Deadline();
    EXPECT_LE(deadline, ConnectedInstrument::Clock::now() + 1min);
}
