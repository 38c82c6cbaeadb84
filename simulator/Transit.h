#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <vector>

#include "simulator/line/Uart.h"

namespace simulator {

/// One direction of a serial line: the characters that were sent and have not arrived.
class Transit {
 public:
    using Moment = std::chrono::microseconds;  ///< since the set-up of the instrument

    /// The line holds so many characters; a side that sends faster loses the rest.
    bool IsFull() const;
    /// Sends characters after those that are on their way. Each takes `perCharacter`.
    void Put(const std::vector<Character>& characters, Moment now, Moment perCharacter);
    /// When the first character arrives; empty when none is on its way.
    std::optional<Moment> Due() const;
    bool IsDue(Moment now) const { return Due() && *Due() <= now; }
    const Character& First() const { return way_.front().character; }
    void DropFirst() { way_.pop_front(); }
    /// Delays all characters by this time.
    void Delay(Moment late);

 private:
    struct Travelling {
        Moment due;
        Character character;
    };

    std::deque<Travelling> way_;
    Moment free_{0};  ///< when the next character can be put on the line
};

}  // namespace simulator
