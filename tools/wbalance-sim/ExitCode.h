#pragma once

/// As with env and timeout: what goes wrong here is not mistaken for the program's own exit code.
inline constexpr int ownFailure = 125;
