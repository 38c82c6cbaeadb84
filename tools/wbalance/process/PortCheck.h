#pragma once

#include "BalanceProcess.h"

namespace tool {

/// Throws ToolError when an operation did not get as far as the balance: the port did not open or
/// refused its settings, the library ended its process, or the instrument sends without end.
void RequirePort(const Connection& connection, const Report& report);

}  // namespace tool
