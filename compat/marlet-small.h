#pragma once

/// @file The two platform functions that the balance library uses. They are a separate shared
/// library, `libmarlet-small.so`, and the balance library calls them through its dynamic symbols.
/// So a host with its own `libmarlet-small.so`, or a test with a virtual clock, can replace them.
/// The library is looked up by this name, without a version. Both functions may be called from any
/// thread.

#define MARLET_SMALL_API __attribute__((visibility("default")))

extern "C" {

/// Blocks the calling thread for `ms` milliseconds, and never for less: a sleep that a signal
/// interrupts is resumed. Zero or a negative time returns at once.
MARLET_SMALL_API void Sleep(int ms);

/// Milliseconds on a monotonic clock with an unspecified start. The count wraps to 0 after
/// 2^32 - 1 (about 49.7 days); differences taken in `unsigned int` stay right across the wrap.
MARLET_SMALL_API unsigned int GetTickCount(void);
}
