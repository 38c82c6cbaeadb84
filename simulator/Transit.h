#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <vector>

#include "simulator/line/Uart.h"

namespace simulator {

/// One direction of a serial line: the characters that are on their way along it.
class Transit {
 public:
    using Moment = std::chrono::microseconds;  ///< since the set-up of the instrument

    /// A side that sends faster than the line carries loses what comes on top.
    bool IsFull() const;
    /// Puts characters behind those that are on their way already; each takes `perCharacter`.
    void Put(const std::vector<Character>& characters, Moment now, Moment perCharacter);
    /// When the first is there; empty when none is on its way.
    std::optional<Moment> Due() const;
    bool IsDue(Moment now) const { return Due() && *Due() <= now; }
    const Character& First() const { return way_.front().character; }
    void DropFirst() { way_.pop_front(); }
    /// All come so much later.
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
