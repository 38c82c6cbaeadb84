#include "simulator/line/Uart.h"

#include <cstdint>

namespace simulator {
namespace {

bool ParityBit(Parity parity, unsigned data) {
    const bool oddNumberOfOnes = __builtin_parity(data);
    switch (parity) {
        case Parity::Odd:
            return !oddNumberOfOnes;
        case Parity::Even:
            return oddNumberOfOnes;
        case Parity::Mark:
            return true;
        case Parity::Space:
        case Parity::None:
            break;
    }
    return false;
}

unsigned DataOf(char byte, const UartSettings& settings) {
    return static_cast<unsigned char>(byte) & ((1U << settings.dataBits) - 1U);
}

std::vector<bool> Wire(const std::string& bytes, const UartSettings& sender) {
    std::vector<bool> bits;
    for (const char byte : bytes) {
        const unsigned data = DataOf(byte, sender);
        bits.push_back(false);
        for (int bit = 0; bit < sender.dataBits; ++bit)
            bits.push_back((data >> bit) & 1U);
        if (sender.parity != Parity::None) bits.push_back(ParityBit(sender.parity, data));
        bits.insert(bits.end(), static_cast<std::size_t>(sender.stopBits), true);
    }
    return bits;
}

/// The receiving end. Time counts in ticks of 1 / (2 * sender's rate * receiver's rate) seconds, so
/// that bit times and their middles are whole numbers on both sides.
class Receiver {
 public:
    Receiver(std::vector<bool> bits, const UartSettings& sender, const UartSettings& receiver)
        : bits_(std::move(bits)),
          settings_(receiver),
          sentBit_(2 * std::int64_t{receiver.baudRate}),
          readBit_(2 * std::int64_t{sender.baudRate}) {}

    std::vector<Character> ReadAll() {
        std::vector<Character> characters;
        while (FindStart()) {
            if (Level(now_ + readBit_ / 2)) {  // too short for a start bit
                now_ += readBit_ / 2;
                continue;
            }
            characters.push_back(ReadCharacter());
        }
        return characters;
    }

 private:
    bool Level(std::int64_t time) const {
        const auto bit = static_cast<std::size_t>(time / sentBit_);
        return bit >= bits_.size() || bits_[bit];
    }

    std::int64_t End() const { return static_cast<std::int64_t>(bits_.size()) * sentBit_; }

    void GoToNextSentBit() { now_ = (now_ / sentBit_ + 1) * sentBit_; }

    bool FindStart() {
        while (now_ < End() && Level(now_))
            GoToNextSentBit();
        return now_ < End();
    }

    bool Sample(int bit) const { return Level(now_ + readBit_ / 2 + bit * readBit_); }

    Character ReadCharacter() {
        unsigned data = 0;
        int bit = 1;
        for (int i = 0; i < settings_.dataBits; ++i)
            data |= (Sample(bit++) ? 1U : 0U) << i;
        Character character;
        character.byte = static_cast<char>(data);
        if (settings_.parity != Parity::None)
            character.parityError = Sample(bit++) != ParityBit(settings_.parity, data);
        character.framingError = !Sample(bit);
        now_ += readBit_ / 2 + bit * readBit_;
        if (character.framingError) WaitUntilIdle();
        return character;
    }

    void WaitUntilIdle() {
        while (!Level(now_))
            GoToNextSentBit();
    }

    std::vector<bool> bits_;
    UartSettings settings_;
    std::int64_t sentBit_;
    std::int64_t readBit_;
    std::int64_t now_ = 0;
};

}  // namespace

std::vector<Character> Transmit(const std::string& bytes, const UartSettings& sender,
                                const UartSettings& receiver) {
    if (!sender.AgreesWith(receiver))
        return Receiver(Wire(bytes, sender), sender, receiver).ReadAll();
    std::vector<Character> characters;
    for (const char byte : bytes)
        characters.push_back({static_cast<char>(DataOf(byte, sender)), false, false});
    return characters;
}

}  // namespace simulator
