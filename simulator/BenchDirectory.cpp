#include "simulator/BenchDirectory.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "simulator/line/VirtualLineState.h"

namespace simulator {
namespace {

namespace fs = std::filesystem;

/// Opening a port makes and removes a lock file, which takes milliseconds on some disks.
constexpr char inMemory[] = "/dev/shm";

/// A line takes a page; some hundreds of instruments have room.
constexpr unsigned long long roomOfABench = 1024 * 1024;

constexpr char prefix[] = "wbalance-lines-";
constexpr char claimName[] = "claim";

[[noreturn]] void failWith(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

bool hasRoom(const fs::path& place) {
    struct statvfs about = {};
    if (::statvfs(place.c_str(), &about) != 0) return false;
    return static_cast<unsigned long long>(about.f_bavail) * about.f_frsize >= roomOfABench;
}

fs::path placeWithRoom() {
    const auto places = BenchDirectory::places();
    for (const auto& place : places)
        if (hasRoom(place)) return place;
    return places.back();
}

fs::path create() {
    std::string name = (placeWithRoom() / (std::string(prefix) + "XXXXXX")).string();
    if (!::mkdtemp(name.data())) failWith("cannot create " + name);
    return name;
}

/// The file gets its name when it is locked: who finds it unlocked knows that the bench is dead.
int claim(const fs::path& directory) {
    const fs::path unlocked = directory / (std::string(claimName) + ".new");
    const int descriptor = ::open(unlocked.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor >= 0 && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 &&
        ::rename(unlocked.c_str(), (directory / claimName).c_str()) == 0)
        return descriptor;
    const int error = errno;
    if (descriptor >= 0) ::close(descriptor);
    std::error_code ignored;
    fs::remove_all(directory, ignored);
    errno = error;
    failWith("cannot claim " + directory.string());
}

bool isOfThisUser(const fs::path& directory) {
    struct stat found = {};
    return ::lstat(directory.c_str(), &found) == 0 && S_ISDIR(found.st_mode) &&
           found.st_uid == ::geteuid();
}

void removeIfDead(const fs::path& directory) {
    const int descriptor = ::open((directory / claimName).c_str(), O_RDWR | O_CLOEXEC);
    if (descriptor < 0) return;
    std::error_code ignored;
    if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) fs::remove_all(directory, ignored);
    ::close(descriptor);
}

}  // namespace

BenchDirectory::BenchDirectory() {
    for (const auto& directory : all())
        removeIfDead(directory);
    path_ = create();
    claim_ = claim(path_);
    ::setenv(virtualLinesVariable, path_.c_str(), 1);
}

BenchDirectory::~BenchDirectory() {
    ::unsetenv(virtualLinesVariable);
    ::close(claim_);  // first: removing takes a descriptor, which may be the last
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::vector<fs::path> BenchDirectory::places() {
    const char* chosen = ::getenv("TMPDIR");
    if (chosen && *chosen) return {fs::absolute(chosen)};
    if (::access(inMemory, R_OK | W_OK | X_OK) != 0) return {fs::temp_directory_path()};
    return {inMemory, fs::temp_directory_path()};
}

std::vector<fs::path> BenchDirectory::all() {
    std::vector<fs::path> found;
    std::error_code ignored;
    for (const auto& place : places())
        for (const auto& entry : fs::directory_iterator(place, ignored))
            if (isName(entry.path()) && isOfThisUser(entry.path())) found.push_back(entry.path());
    return found;
}

bool BenchDirectory::isName(const fs::path& directory) {
    return directory.filename().string().rfind(prefix, 0) == 0;
}

}  // namespace simulator
