#pragma once

#include <string>

#include "Reading.h"

namespace tool {

/// Scale House ALD tickets.
Reading ReadTicket(const std::string& answer);

/// Whether the answer is a ticket with a weight, and no other instrument's print line.
bool IsTicket(const std::string& answer);

}  // namespace tool
