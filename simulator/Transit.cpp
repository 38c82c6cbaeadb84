#include "simulator/Transit.h"

#include <algorithm>

namespace simulator {
namespace {

constexpr std::size_t kMostInTransit = 65'536;

}  // namespace

bool Transit::IsFull() const {
    return way_.size() >= kMostInTransit;
}

void Transit::Put(const std::vector<Character>& characters, Moment now, Moment perCharacter) {
    free_ = std::max(free_, now);
    for (const Character& character : characters) {
        free_ += perCharacter;
        way_.push_back({free_, character});
    }
}

std::optional<Transit::Moment> Transit::Due() const {
    if (way_.empty()) return std::nullopt;
    return way_.front().due;
}

void Transit::Delay(Moment late) {
    for (Travelling& each : way_)
        each.due += late;
    free_ += late;
}

}  // namespace simulator
