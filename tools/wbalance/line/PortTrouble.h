#pragma once

#include <optional>
#include <string>

#include "Trouble.h"

namespace tool {

/// Who has a port open, as far as this user may know: "minicom (process 4321)", or "a program that
/// may be minicom (process 4321)" where only the lock file tells. Empty when nobody is seen.
std::string HolderOf(const std::string& device);

/// "/dev/ttyUSB0: the port is in use; it is held by minicom (process 4321): end that program
/// first". Empty when nobody is seen.
std::optional<Diagnosis> WhyHeld(const std::string& device);

/// That a lock file which nobody holds is in the way, and how to take it away.
Diagnosis WhyLocked(const std::string& device);

/// Why a device can't be opened and what to do about it, found out by looking at it again:
/// "/dev/ttyUSB0: permission denied; its group is dialout and you are not in it: ...". Says that
/// the device opens when it does.
Diagnosis WhyNotOpened(const std::string& device);

}  // namespace tool
