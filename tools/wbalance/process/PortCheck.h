#pragma once

#include "BalanceProcess.h"

namespace tool {

/// Throws ToolError when an operation did not get as far as the balance: the port did not open or
/// refused its settings, or the library ended its process.
void RequirePort(const Connection& connection, const Report& report);

}  // namespace tool
