// The calls that list directories. Served ports stand in the lists of /dev, /sys/class/tty and the
// like, beside what the system has there.

#include <dirent.h>
#include <fcntl.h>
#include <glob.h>
#include <limits.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>

#include "simulator/line/HostPaths.h"
#include "simulator/line/KeptErrno.h"
#include "simulator/line/calls/Next.h"
#include "simulator/line/calls/PassedOn.h"

using simulator::HostPath;
using simulator::KeptErrno;
using namespace simulator::calls;
namespace hostpaths = simulator::hostpaths;

namespace {

/// What is listed beside the entries of a stream that the host has opened.
struct Listing {
    std::atomic<DIR*> stream;
    DIR* served;  ///< the entries of served ports, or null
    std::atomic<bool> taken;
    bool isServedRead;
    bool isOfDevices;  ///< /dev itself
    bool isOfSystem;   ///< the stream lists the system's entries, not those of served ports
};

constexpr size_t kListingCount = 64;
Listing listings[kListingCount];
std::atomic<int> listingsInUse{0};

Listing* ListingOf(DIR* stream) {
    if (listingsInUse == 0) return nullptr;
    for (Listing& listing : listings)
        if (listing.stream == stream) return &listing;
    return nullptr;
}

DIR* OpenEntries(const char* path) {
    char entries[PATH_MAX];
    hostpaths::EntriesBelow(path, entries);
    return Next<::opendir>("opendir")(entries);
}

/// Where no place is left, the stream lists what it lists by itself.
void Keep(DIR* stream, DIR* served, bool isOfDevices, bool isOfSystem) {
    for (Listing& listing : listings) {
        if (listing.taken.exchange(true)) continue;
        listing.served = served;
        listing.isServedRead = false;
        listing.isOfDevices = isOfDevices;
        listing.isOfSystem = isOfSystem;
        listing.stream = stream;
        ++listingsInUse;
        return;
    }
    if (served) Next<::closedir>("closedir")(served);
}

DIR* Listed(DIR* stream) {
    const KeptErrno kept;
    char path[PATH_MAX];
    if (!stream || !hostpaths::Directory() || !hostpaths::PathOf(dirfd(stream), path, sizeof path))
        return stream;
    const bool isOfSystem = !hostpaths::BecomesHostPath(path);
    const bool isOfDevices = strcmp(path, "/dev") == 0;
    if (!isOfDevices && !(isOfSystem && hostpaths::MayHaveEntries(path))) return stream;
    Keep(stream, isOfSystem ? OpenEntries(path) : nullptr, isOfDevices, isOfSystem);
    return stream;
}

void Release(DIR* stream) {
    Listing* listing = ListingOf(stream);
    if (!listing) return;
    if (listing->served) Next<::closedir>("closedir")(listing->served);
    --listingsInUse;
    listing->stream = nullptr;
    listing->taken = false;
}

bool IsDot(const char* name) {
    return strcmp(name, ".") == 0 || strcmp(name, "..") == 0;
}

/// Whether an entry of the system is not listed: that of a port which is served, plugged in or not,
/// and what is listed already.
bool IsHidden(const Listing& listing, const char* name) {
    const KeptErrno kept;
    if (!listing.isOfSystem || IsDot(name)) return false;
    if (hostpaths::IsTaken(name)) return true;
    return listing.served != nullptr &&
           Next<::faccessat>("faccessat")(dirfd(listing.served), name, F_OK, AT_SYMLINK_NOFOLLOW) ==
               0;
}

/// The entries of devices are plain files.
template <typename Entry>
Entry* AsDevice(const Listing& listing, Entry* entry) {
    if (listing.isOfDevices && hostpaths::IsTaken(entry->d_name)) entry->d_type = DT_CHR;
    return entry;
}

template <auto& function>
auto NextServed(Listing& listing, const char* name) -> decltype(function(nullptr)) {
    while (listing.served && !listing.isServedRead) {
        auto* entry = Next<function>(name)(listing.served);
        if (!entry) listing.isServedRead = true;
        if (entry && !IsDot(entry->d_name)) return entry;
    }
    return nullptr;
}

template <auto& function>
auto NextEntry(DIR* stream, const char* name) -> decltype(function(nullptr)) {
    Listing* listing = ListingOf(stream);
    if (!listing) return Next<function>(name)(stream);
    if (auto* entry = NextServed<function>(*listing, name)) return AsDevice(*listing, entry);
    auto* entry = Next<function>(name)(stream);
    while (entry && IsHidden(*listing, entry->d_name))
        entry = Next<function>(name)(stream);
    return entry ? AsDevice(*listing, entry) : nullptr;
}

/// readdir_r, which is readdir with the room of the caller.
template <auto& function, typename Entry>
int NextEntryInto(DIR* stream, Entry* room, Entry** result, const char* name) {
    const KeptErrno kept;
    errno = 0;
    const Entry* entry = NextEntry<function>(stream, name);
    *result = entry ? room : nullptr;
    if (entry) memcpy(room, entry, entry->d_reclen);
    return entry ? 0 : errno;
}

/// What scandir collects.
template <typename Entry>
class Entries {
 public:
    Entries() = default;
    Entries(const Entries&) = delete;
    Entries& operator=(const Entries&) = delete;
    ~Entries() {
        for (size_t i = 0; i < count_; ++i)
            free(all_[i]);
        free(all_);
    }

    bool Add(const Entry& entry) {
        auto** larger = static_cast<Entry**>(realloc(all_, (count_ + 1) * sizeof *all_));
        if (!larger) return false;
        all_ = larger;
        auto* copy = static_cast<Entry*>(malloc(entry.d_reclen));
        if (!copy) return false;
        all_[count_++] = static_cast<Entry*>(memcpy(copy, &entry, entry.d_reclen));
        return true;
    }

    /// The caller owns them from now on.
    int GiveTo(Entry*** list, int (*compare)(const Entry**, const Entry**)) {
        using Comparison = int (*)(const void*, const void*);
        if (compare && count_ > 1)
            qsort(all_, count_, sizeof *all_, reinterpret_cast<Comparison>(compare));
        *list = all_ ? all_ : static_cast<Entry**>(malloc(sizeof(Entry*)));
        const int count = static_cast<int>(count_);
        all_ = nullptr;
        count_ = 0;
        return count;
    }

 private:
    Entry** all_ = nullptr;
    size_t count_ = 0;
};

template <auto& function, typename Entry>
int Collect(const char* path, Entry*** list, int (*chosen)(const Entry*),
            int (*compare)(const Entry**, const Entry**), const char* name) {
    DIR* stream = opendir(path);
    if (!stream) return -1;
    Entries<Entry> entries;
    while (const Entry* entry = NextEntry<function>(stream, name)) {
        if ((chosen && !chosen(entry)) || entries.Add(*entry)) continue;
        closedir(stream);
        return Fail(ENOMEM);
    }
    closedir(stream);
    return entries.GiveTo(list, compare);
}

void CloseForGlob(void* stream) {
    closedir(static_cast<DIR*>(stream));
}

template <auto& function>
auto ReadForGlob(void* stream) {
    return function(static_cast<DIR*>(stream));
}

void* OpenForGlob(const char* path) {
    return opendir(path);
}

/// The C library matches patterns with functions of its own unless it is given others.
bool TakesOtherFunctions(int flags) {
    return (flags & GLOB_ALTDIRFUNC) == 0 && hostpaths::Directory() != nullptr;
}

template <auto& function, typename Found>
int Match(const char* pattern, int flags, int (*failed)(const char*, int), Found* found,
          const char* name) {
    found->gl_opendir = OpenForGlob;
    found->gl_closedir = CloseForGlob;
    const int result = Next<function>(name)(pattern, flags | GLOB_ALTDIRFUNC, failed, found);
    found->gl_flags &= ~GLOB_ALTDIRFUNC;
    return result;
}

}  // namespace

#pragma GCC visibility push(default)
extern "C" {

DIR* opendir(const char* path) {
    return Listed(Next<::opendir>("opendir")(PassedOn(HostPath(AT_FDCWD, path), path)));
}

DIR* fdopendir(int descriptor) {
    return Listed(Next<::fdopendir>("fdopendir")(descriptor));
}

int closedir(DIR* stream) {
    Release(stream);
    return Next<::closedir>("closedir")(stream);
}

void rewinddir(DIR* stream) noexcept {
    if (Listing* listing = ListingOf(stream)) {
        listing->isServedRead = false;
        if (listing->served) Next<::rewinddir>("rewinddir")(listing->served);
    }
    Next<::rewinddir>("rewinddir")(stream);
}

struct dirent* readdir(DIR* stream) {
    return NextEntry<::readdir>(stream, "readdir");
}

struct dirent64* readdir64(DIR* stream) {
    return NextEntry<::readdir64>(stream, "readdir64");
}

// Deprecated, and still called.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
int readdir_r(DIR* stream, struct dirent* room, struct dirent** result) {
    return NextEntryInto<::readdir>(stream, room, result, "readdir");
}

int readdir64_r(DIR* stream, struct dirent64* room, struct dirent64** result) {
    return NextEntryInto<::readdir64>(stream, room, result, "readdir64");
}
#pragma GCC diagnostic pop

int scandir(const char* path, struct dirent*** list, int (*chosen)(const struct dirent*),
            int (*compare)(const struct dirent**, const struct dirent**)) {
    return Collect<::readdir>(path, list, chosen, compare, "readdir");
}

int scandir64(const char* path, struct dirent64*** list, int (*chosen)(const struct dirent64*),
              int (*compare)(const struct dirent64**, const struct dirent64**)) {
    return Collect<::readdir64>(path, list, chosen, compare, "readdir64");
}

int glob(const char* pattern, int flags, int (*failed)(const char*, int), glob_t* found) {
    if (!TakesOtherFunctions(flags)) return Next<::glob>("glob")(pattern, flags, failed, found);
    found->gl_readdir = ReadForGlob<::readdir>;
    found->gl_stat = stat;
    found->gl_lstat = lstat;
    return Match<::glob>(pattern, flags, failed, found, "glob");
}

int glob64(const char* pattern, int flags, int (*failed)(const char*, int), glob64_t* found) {
    if (!TakesOtherFunctions(flags)) return Next<::glob64>("glob64")(pattern, flags, failed, found);
    found->gl_readdir = ReadForGlob<::readdir64>;
    found->gl_stat = stat64;
    found->gl_lstat = lstat64;
    return Match<::glob64>(pattern, flags, failed, found, "glob64");
}

}  // extern "C"
#pragma GCC visibility pop
