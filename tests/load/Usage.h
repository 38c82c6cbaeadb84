#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

/// What a process holds, and whether it holds ever more.
namespace load {

inline long ResidentKilobytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmRSS:", 0) == 0) return std::strtol(line.c_str() + 6, nullptr, 10);
    return 0;
}

inline long Entries(const char* folder) {
    const std::filesystem::directory_iterator entries(folder);
    return std::distance(begin(entries), end(entries));
}

/// Of this process, when it is constructed.
struct Usage {
    long kilobytes = ResidentKilobytes();
    long descriptors = Entries("/proc/self/fd");
    long threads = Entries("/proc/self/task");
};

/// Prints both and tells whether nothing has grown.
inline bool Steady(const Usage& before, const Usage& after) {
    std::fprintf(
        stderr,
        "resident memory %ld kB, then %ld kB; descriptors %ld, then %ld; threads %ld, then %ld\n",
        before.kilobytes, after.kilobytes, before.descriptors, after.descriptors, before.threads,
        after.threads);
    const bool steady = after.kilobytes - before.kilobytes < MOST_GROWTH_KILOBYTES &&
                        after.descriptors == before.descriptors && after.threads == before.threads;
    if (!steady) std::fprintf(stderr, "something grows\n");
    return steady;
}

}  // namespace load
