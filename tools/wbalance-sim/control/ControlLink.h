#pragma once

#include <filesystem>

/// A symbolic link to a bench's socket, at a path of the user's choice, for as long as the object
/// lives.
class ControlLink {
 public:
    /// Replaces a link that a killed wbalance-sim of this user has left, and nothing else. Throws
    /// std::runtime_error when something else is at `path`, and when no link can be made there.
    ControlLink(std::filesystem::path path, const std::filesystem::path& socket);
    ~ControlLink();  ///< removes it, unless it leads elsewhere by now
    ControlLink(const ControlLink&) = delete;
    ControlLink& operator=(const ControlLink&) = delete;

 private:
    const std::filesystem::path path_;
    const std::filesystem::path target_;
};
