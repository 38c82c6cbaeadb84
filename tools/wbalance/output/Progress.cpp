#include "Progress.h"

#include <unistd.h>

#include <cstdio>

namespace tool {
namespace {

constexpr std::chrono::seconds kPatience{2};

}  // namespace

Progress::Progress(std::string what, bool silent)
    : what_(std::move(what)), silent_(silent || isatty(STDERR_FILENO) == 0) {}

Progress::~Progress() {
    if (shown_) std::fputs("\r\x1b[K", stderr);
}

void Progress::Tick() {
    const auto passed = std::chrono::steady_clock::now() - start_;
    if (silent_ || passed < kPatience) return;
    shown_ = true;
    std::fprintf(
        stderr, "\r\x1b[K%s ... %d s", what_.c_str(),
        static_cast<int>(std::chrono::duration_cast<std::chrono::seconds>(passed).count()));
}

}  // namespace tool
