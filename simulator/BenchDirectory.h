#pragma once

#include <filesystem>
#include <vector>

namespace simulator {

/// The directory of a bench, which hosts find in WBALANCE_VIRTUAL_LINES: "wbalance-lines-...", of
/// this user alone, for as long as the object lives. What killed benches of this user have left is
/// removed when the next one begins.
class BenchDirectory {
 public:
    BenchDirectory();  ///< throws std::system_error when it cannot be created
    ~BenchDirectory();
    BenchDirectory(const BenchDirectory&) = delete;
    BenchDirectory& operator=(const BenchDirectory&) = delete;

    const std::filesystem::path& Path() const { return path_; }

    /// Where benches make their directories: in TMPDIR, or else in memory, or else, also when there
    /// is no room in memory, in /tmp.
    static std::vector<std::filesystem::path> Places();

    /// The directories of this user's benches, also of killed ones.
    static std::vector<std::filesystem::path> All();

    /// Whether a directory is named as those of benches are.
    static bool IsName(const std::filesystem::path& directory);

 private:
    std::filesystem::path path_;
    int claim_ = -1;  ///< a locked file: this bench lives
};

}  // namespace simulator
