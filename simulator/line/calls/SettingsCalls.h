#pragma once

#include "simulator/line/ServedLine.h"

namespace simulator::calls {

/// Whether this request of ioctl reads or makes settings of the line, as tcgetattr and tcsetattr
/// do.
bool IsAboutSettings(unsigned long request);

/// Carries out such a request for a served device.
int RequestSettings(const ServedLine& line, int descriptor, unsigned long request, void* argument);

}  // namespace simulator::calls
