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
/// settings `sender`, with the line idle before and after. The bits are sent least significant
/// first and sampled in the middle of each of the receiver's bit times; only the first stop bit is
/// looked at; after a framing error the receiver waits until the line is idle. Equal settings give
/// the bytes themselves, cut to the data bits.
std::vector<Character> Transmit(const std::string& bytes, const UartSettings& sender,
                                const UartSettings& receiver);

}  // namespace simulator
