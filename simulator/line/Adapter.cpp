#include "simulator/line/Adapter.h"

#include <stdexcept>

#include "simulator/Text.h"

namespace simulator {
namespace {

using namespace std::chrono_literals;

// How ports collect what they receive, as the Linux kernel 6.1 drives them.

// drivers/tty/serial/8250/8250_port.c: 16550A interrupts at a trigger of 8 of its 16 characters
// (rx_trig_bytes changes that), or when nothing came for four character times; below 2400 baud the
// driver sets the trigger to 1.
constexpr std::size_t kUsualTrigger = 8;
constexpr int kTriggers[] = {1, 4, 8, 14};
constexpr int kSilenceOf16550 = 4;
constexpr int kSlowestCollectedBy16550 = 2400;

// drivers/usb/serial/ftdi_sio.c: a packet holds 64 bytes, of which two are the state of the port.
// It leaves when it is full or when the latency timer (16 ms as delivered) has run out, which
// begins anew with each packet.
constexpr std::size_t kPacketOfFtdi = 62;
constexpr int kUsualLatency = 16;

// drivers/usb/serial/pl2303.c and ch341.c: no timer (the CH341 is told not to wait for a full
// packet). What is there leaves when the computer asks for it, at each frame of the bus or sooner.
constexpr std::size_t kPacketOfPl2303 = 64;
constexpr std::size_t kPacketOfCh341 = 32;
constexpr Adapter::Moment kFrame = 1ms;

[[noreturn]] void Refuse(const std::string& text) {
    throw std::invalid_argument("no port hands characters over as \"" + text +
                                "\"; there are character, 16550, 16550:TRIGGER (1, 4, 8 or 14 "
                                "characters), ftdi, ftdi:LATENCY (1 to 255 ms), pl2303, ch341");
}

int TriggerIn(const std::string& figure, const std::string& text) {
    const auto chosen = ParseWholeNumber(figure, 1, 14);
    for (const int trigger : kTriggers)
        if (chosen == trigger) return trigger;
    Refuse(text);
}

}  // namespace

Adapter Adapter::Parse(const std::string& text) {
    const auto [name, figure] = CutAt(text, ':');
    Adapter adapter;
    if (name == "16550") {
        adapter.trigger_ =
            figure ? static_cast<std::size_t>(TriggerIn(*figure, text)) : kUsualTrigger;
        adapter.slowestCollected_ = kSlowestCollectedBy16550;
        adapter.silence_ = kSilenceOf16550;
        return adapter;
    }
    if (name == "ftdi") {
        const auto latency = figure ? ParseWholeNumber(*figure, 1, 255) : kUsualLatency;
        if (!latency) Refuse(text);
        adapter.trigger_ = kPacketOfFtdi;
        adapter.interval_ = std::chrono::milliseconds(*latency);
        return adapter;
    }
    if (figure) Refuse(text);
    if (name == "character") return adapter;
    if (name != "pl2303" && name != "ch341") Refuse(text);
    adapter.trigger_ = name == "pl2303" ? kPacketOfPl2303 : kPacketOfCh341;
    adapter.interval_ = kFrame;
    adapter.usb_ = name == "pl2303" ? kPl2303Identity : kCh341Identity;
    return adapter;
}

void Adapter::Receive(const Character& character, Moment at, const UartSettings& line) {
    collected_.push_back(character);
    const bool isFull = collected_.size() >= trigger_ || line.baudRate < slowestCollected_;
    if (isFull)
        due_ = at;
    else if (interval_ == Moment(0))
        due_ = at + silence_ * line.CharacterTime();
    else if (!due_)
        due_ = handedOver_ + ((at - handedOver_) / interval_ + 1) * interval_;
}

std::vector<Character> Adapter::HandOver(Moment now) {
    handedOver_ = now;
    due_.reset();
    std::vector<Character> piece;
    piece.swap(collected_);
    return piece;
}

}  // namespace simulator
