#include "simulator/line/Uart.h"

#include <cstdint>

namespace simulator {
namespace {

bool parityBit(Parity parity, unsigned data) {
    const bool oddNumberOfOnes = __builtin_parity(data);
    switch (parity) {
        case Parity::odd:
            return !oddNumberOfOnes;
        case Parity::even:
            return oddNumberOfOnes;
        case Parity::mark:
            return true;
        case Parity::space:
        case Parity::none:
            break;
    }
    return false;
}

unsigned dataOf(char byte, const LineSettings& settings) {
    return static_cast<unsigned char>(byte) & ((1u << settings.dataBits) - 1u);
}

std::vector<bool> wire(const std::string& bytes, const LineSettings& sender) {
    std::vector<bool> bits;
    for (const char byte : bytes) {
        const unsigned data = dataOf(byte, sender);
        bits.push_back(false);
        for (int bit = 0; bit < sender.dataBits; ++bit)
            bits.push_back((data >> bit) & 1u);
        if (sender.parity != Parity::none) bits.push_back(parityBit(sender.parity, data));
        bits.insert(bits.end(), static_cast<std::size_t>(sender.stopBits), true);
    }
    return bits;
}

/// The receiving end. Time counts in ticks of 1 / (2 * sender's rate * receiver's rate) seconds, so
/// that bit times and their middles are whole numbers on both sides.
class Receiver {
 public:
    Receiver(std::vector<bool> bits, const LineSettings& sender, const LineSettings& receiver)
        : bits_(std::move(bits)),
          settings_(receiver),
          sentBit_(2 * std::int64_t{receiver.baudRate}),
          readBit_(2 * std::int64_t{sender.baudRate}) {}

    std::vector<Character> readAll() {
        std::vector<Character> characters;
        while (findStart()) {
            if (level(now_ + readBit_ / 2)) {  // too short for a start bit
                now_ += readBit_ / 2;
                continue;
            }
            characters.push_back(readCharacter());
        }
        return characters;
    }

 private:
    bool level(std::int64_t time) const {
        const auto bit = static_cast<std::size_t>(time / sentBit_);
        return bit >= bits_.size() || bits_[bit];
    }

    std::int64_t end() const { return static_cast<std::int64_t>(bits_.size()) * sentBit_; }

    void goToNextSentBit() { now_ = (now_ / sentBit_ + 1) * sentBit_; }

    bool findStart() {
        while (now_ < end() && level(now_))
            goToNextSentBit();
        return now_ < end();
    }

    bool sample(int bit) const { return level(now_ + readBit_ / 2 + bit * readBit_); }

    Character readCharacter() {
        unsigned data = 0;
        int bit = 1;
        for (int i = 0; i < settings_.dataBits; ++i)
            data |= (sample(bit++) ? 1u : 0u) << i;
        Character character;
        character.byte = static_cast<char>(data);
        if (settings_.parity != Parity::none)
            character.parityError = sample(bit++) != parityBit(settings_.parity, data);
        character.framingError = !sample(bit);
        now_ += readBit_ / 2 + bit * readBit_;
        if (character.framingError) waitUntilIdle();
        return character;
    }

    void waitUntilIdle() {
        while (!level(now_))
            goToNextSentBit();
    }

    std::vector<bool> bits_;
    LineSettings settings_;
    std::int64_t sentBit_;
    std::int64_t readBit_;
    std::int64_t now_ = 0;
};

}  // namespace

std::vector<Character> transmit(const std::string& bytes, const LineSettings& sender,
                                const LineSettings& receiver) {
    if (!sender.agreesWith(receiver))
        return Receiver(wire(bytes, sender), sender, receiver).readAll();
    std::vector<Character> characters;
    for (const char byte : bytes)
        characters.push_back({static_cast<char>(dataOf(byte, sender)), false, false});
    return characters;
}

}  // namespace simulator
