#pragma once

#include <chrono>
#include <string>

namespace tool {

/// A line on the terminal about something that takes longer than two seconds: "weighing ... 3 s".
/// The destructor removes it. It is not shown if standard error is not a terminal, or if it is
/// switched off.
class Progress {
 public:
    Progress(std::string what, bool silent);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Shows the time that has passed.
    void Tick();

 private:
    const std::string what_;
    const bool silent_;
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    bool shown_ = false;
};

}  // namespace tool
