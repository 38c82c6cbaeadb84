#pragma once

#include <string>
#include <vector>

#include "simulator/line/UartSettings.h"

namespace simulator {

/// One character as a receiver reads it.
struct Character {
    char byte = 0;
    bool parityError = false;   ///< the parity bit does not fit the data bits
    bool framingError = false;  ///< no stop bit where one belongs

    bool IsDamaged() const { return parityError || framingError; }
};

/// What a receiver at the settings `receiver` reads when `bytes` are sent back to back at the
/// settings `sender`, with the line idle before and after. The least significant bit is sent first.
/// The receiver samples each bit in the middle of its own bit time. It checks the first stop bit
/// only. After a framing error it waits until the line is idle. With equal settings the result is
/// the bytes themselves, with only the data bits.
std::vector<Character> Transmit(const std::string& bytes, const UartSettings& sender,
                                const UartSettings& receiver);

}  // namespace simulator
