#pragma once

#include <string>
#include <vector>

#include "Picture.h"

namespace tool {

/// A block of lines at the bottom of the terminal on standard output. Each drawing replaces the one
/// before. It changes no setting of the terminal, so nothing has to be restored when the program
/// ends.
class LiveDisplay {
 public:
    LiveDisplay();

    /// Shows the balances, anew where the picture, the terminal's size or what stands on it has
    /// changed. Draws nothing in the background.
    void Draw(const std::vector<DisplayedBalance>& balances);

 private:
    std::string WayToTheTop(ScreenSize size, std::size_t typedLines) const;

    std::vector<std::string> drawn_;
    ScreenSize size_;
};

}  // namespace tool
