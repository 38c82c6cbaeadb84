#pragma once

/// As with env and timeout: what goes wrong here is not mistaken for the program's own exit code.
inline constexpr int kOwnFailure = 125;

/// The host has not done what a replayed record says.
inline constexpr int kDepartedFromRecord = 124;
