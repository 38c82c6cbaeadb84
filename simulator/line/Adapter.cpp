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
constexpr std::size_t usualTrigger = 8;
constexpr int triggers[] = {1, 4, 8, 14};
constexpr int silenceOf16550 = 4;
constexpr int slowestCollectedBy16550 = 2400;

// drivers/usb/serial/ftdi_sio.c: a packet holds 64 bytes, of which two are the state of the port.
// It leaves when it is full or when the latency timer (16 ms as delivered) has run out, which
// begins anew with each packet.
constexpr std::size_t packetOfFtdi = 62;
constexpr int usualLatency = 16;

// drivers/usb/serial/pl2303.c and ch341.c: no timer (the CH341 is told not to wait for a full
// packet). What is there leaves when the computer asks for it, at each frame of the bus or sooner.
constexpr std::size_t packetOfPl2303 = 64;
constexpr std::size_t packetOfCh341 = 32;
constexpr Adapter::Moment frame = 1ms;

[[noreturn]] void refuse(const std::string& text) {
    throw std::invalid_argument("no port hands characters over as \"" + text +
                                "\"; there are character, 16550, 16550:TRIGGER (1, 4, 8 or 14 "
                                "characters), ftdi, ftdi:LATENCY (1 to 255 ms), pl2303, ch341");
}

int triggerIn(const std::string& figure, const std::string& text) {
    const auto chosen = parseWholeNumber(figure, 1, 14);
    for (const int trigger : triggers)
        if (chosen == trigger) return trigger;
    refuse(text);
}

}  // namespace

Adapter Adapter::parse(const std::string& text) {
    const auto [name, figure] = cutAt(text, ':');
    Adapter adapter;
    if (name == "16550") {
        adapter.trigger_ =
            figure ? static_cast<std::size_t>(triggerIn(*figure, text)) : usualTrigger;
        adapter.slowestCollected_ = slowestCollectedBy16550;
        adapter.silence_ = silenceOf16550;
        return adapter;
    }
    if (name == "ftdi") {
        const auto latency = figure ? parseWholeNumber(*figure, 1, 255) : usualLatency;
        if (!latency) refuse(text);
        adapter.trigger_ = packetOfFtdi;
        adapter.interval_ = std::chrono::milliseconds(*latency);
        return adapter;
    }
    if (figure) refuse(text);
    if (name == "character") return adapter;
    if (name != "pl2303" && name != "ch341") refuse(text);
    adapter.trigger_ = name == "pl2303" ? packetOfPl2303 : packetOfCh341;
    adapter.interval_ = frame;
    return adapter;
}

void Adapter::receive(const Character& character, Moment at, const LineSettings& line) {
    collected_.push_back(character);
    const bool isFull = collected_.size() >= trigger_ || line.baudRate < slowestCollected_;
    if (isFull)
        due_ = at;
    else if (interval_ == Moment(0))
        due_ = at + silence_ * line.characterTime();
    else if (!due_)
        due_ = handedOver_ + ((at - handedOver_) / interval_ + 1) * interval_;
}

std::vector<Character> Adapter::handOver(Moment now) {
    handedOver_ = now;
    due_.reset();
    std::vector<Character> piece;
    piece.swap(collected_);
    return piece;
}

}  // namespace simulator
