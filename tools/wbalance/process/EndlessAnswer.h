#pragma once

#include "WireExchange.h"

namespace tool {

/// Recognises an endless answer. Without it, an instrument with continuous output would be read for
/// as long as it sends. It is endless when data has come for a minute in 16 pieces or more, or when
/// 256 KiB were traced, and no command and no pause was in between.
class EndlessAnswer {
 public:
    void Take(const TraceText& traced);
    bool IsEndless() const;

 private:
    WallTime since_;
    WallTime last_;
    int pieces_ = 0;
    std::size_t bytes_ = 0;
};

}  // namespace tool
