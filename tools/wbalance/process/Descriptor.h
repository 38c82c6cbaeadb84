#pragma once

#include <unistd.h>

#include <utility>

namespace tool {

/// An owned file descriptor.
class Descriptor {
 public:
    Descriptor() = default;
    explicit Descriptor(int value) : value_(value) {}
    Descriptor(Descriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    ~Descriptor() { Close(); }

    void Close() {
        if (value_ >= 0) close(std::exchange(value_, -1));
    }
    int Get() const { return value_; }

 private:
    int value_ = -1;
};

}  // namespace tool
