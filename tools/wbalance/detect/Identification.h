#pragma once

#include "drivers/DriverTable.h"
#include "process/BalanceProcess.h"

namespace tool {

/// Asks an instrument for its identity, with the questions of its driver's row. After a question
/// without an answer it asks no further ones, to save the time of further waits.
///
/// @param line drives RawLine()
Identity Identify(BalanceProcess& line, const DriverInfo& driver);

/// What the answer to one of those questions says; empty for an error, and for a weight that
/// nobody has asked for. Pure, for bytes as they were received.
std::string TextIn(const std::string& answer, const IdentityQuestion& question,
                   const DriverInfo& driver);

/// "model XS204, serial number 1126493049, software 1.10", as much of it as is known.
std::string TextOf(const Identity& identity);

}  // namespace tool
