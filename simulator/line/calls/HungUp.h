#pragma once

#include <sys/ioctl.h>

#include "simulator/line/calls/Next.h"

namespace simulator::calls {

/// Whether the port of the descriptor was unplugged. Every request then fails as on a real port.
inline bool IsHungUp(int descriptor) {
    int waiting = 0;
    return Next<::ioctl>("ioctl")(descriptor, FIONREAD, &waiting) != 0;
}

}  // namespace simulator::calls
