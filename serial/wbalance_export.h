#pragma once

/// Marks the public classes: only these are visible outside `libwbalance.so`.
#define WBALANCE_EXPORT __attribute__((visibility("default")))

/// Marks the private steps of a public class: they are not exported.
#define WBALANCE_LOCAL __attribute__((visibility("hidden")))
