#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

/// What the fuzz targets have in common.
namespace fuzz {

/// The fuzzer's bytes, taken one decision at a time; zeros when they are used up.
class Input {
 public:
    Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    bool Empty() const { return position_ == size_; }
    int Byte() { return Empty() ? 0 : data_[position_++]; }
    int Below(int limit) { return Byte() % limit; }
    bool Coin() { return (Byte() & 1) != 0; }
    int Number();
    std::string Text(std::size_t length);
    std::string Rest() { return Text(size_ - position_); }

 private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t position_ = 0;
};

/// Stops the fuzzer with `what` unless it holds.
void Require(bool holds, const std::string& what);

/// Runs `act`. When the library ends the process in it, as it does for a text that does not fit its
/// buffer, the act is left there and the line on standard error is returned. Every other way to end
/// the process still ends it.
std::optional<std::string> LineOfProcessEnd(const std::function<void()>& act);

}  // namespace fuzz
