#include "Progress.h"

#include <unistd.h>

#include "Stream.h"

namespace tool {
namespace {

constexpr std::chrono::seconds kPatience{2};

}  // namespace

Progress::Progress(std::string what, bool silent)
    : what_(std::move(what)), silent_(silent || isatty(STDERR_FILENO) == 0) {}

Progress::~Progress() {
    if (shown_) Say("\r\x1b[K");
}

void Progress::Tick() {
    const auto passed = std::chrono::steady_clock::now() - start_;
    if (silent_ || passed < kPatience) return;
    shown_ = true;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(passed).count();
    Say("\r\x1b[K" + what_ + " ... " + std::to_string(seconds) + " s");
}

}  // namespace tool
