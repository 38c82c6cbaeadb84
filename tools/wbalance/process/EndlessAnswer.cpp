#include "EndlessAnswer.h"

namespace tool {
namespace {

constexpr std::chrono::minutes kLongest{1};
constexpr int kFewestPieces = 16;  // a long time-out makes a few pieces last longer than a minute
constexpr std::size_t kMostBytes = 256 * 1024;

}  // namespace

void EndlessAnswer::Take(const TraceText& traced) {
    if (IsCommand(traced.text) || IsPause(traced.text)) *this = {};
    bytes_ += traced.text.size();
    if (AnswerIn(traced.text).empty()) return;
    if (pieces_++ == 0) since_ = traced.time;
    last_ = traced.time;
}

bool EndlessAnswer::IsEndless() const {
    return bytes_ > kMostBytes || (pieces_ >= kFewestPieces && last_ - since_ >= kLongest);
}

}  // namespace tool
