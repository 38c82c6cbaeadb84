#pragma once

/// The codes for failures of wbalance-sim itself. As with env and timeout, programs rarely use
/// them.
inline constexpr int kOwnFailure = 125;

/// The host has not done what a replayed record says.
inline constexpr int kDepartedFromRecord = 124;
