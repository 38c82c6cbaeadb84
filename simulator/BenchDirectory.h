#pragma once

#include <filesystem>
#include <vector>

namespace simulator {

/// The directory of a bench, "wbalance-lines-...". Hosts find its path in WBALANCE_VIRTUAL_LINES.
/// Only this user can use it. It exists as long as the object. The constructor also removes the
/// directories that killed benches of this user have left.
class BenchDirectory {
 public:
    BenchDirectory();  ///< throws std::system_error when it cannot be created
    ~BenchDirectory();
    BenchDirectory(const BenchDirectory&) = delete;
    BenchDirectory& operator=(const BenchDirectory&) = delete;

    const std::filesystem::path& Path() const { return path_; }

    /// Where benches create their directories: in TMPDIR if it is set, else in memory (/dev/shm) if
    /// there is room, else in /tmp.
    static std::vector<std::filesystem::path> Places();

    /// The directories of this user's benches, also of killed ones.
    static std::vector<std::filesystem::path> All();

    /// Whether a directory has a name that a bench would give it.
    static bool IsName(const std::filesystem::path& directory);

 private:
    std::filesystem::path path_;
    int claim_ = -1;  ///< a locked file, which shows that this bench runs
};

}  // namespace simulator
