#include "simulator/line/MappedLines.h"

#include <stddef.h>
#include <sys/mman.h>
#include <sys/stat.h>

namespace simulator::mappedlines {
namespace {

/// Written once, by whoever takes it; in use once `state` is set.
struct Place {
    std::atomic<bool> taken;
    std::atomic<VirtualLineState*> state;
    dev_t device;
    ino_t inode;
};

constexpr size_t kPlaceCount = 2048;
Place places[kPlaceCount];
std::atomic<VirtualLineState*> noted[kPlaceCount];

VirtualLineState* Map(int descriptor) {
    void* memory =
        mmap(nullptr, sizeof(VirtualLineState), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<VirtualLineState*>(memory);
}

Place& PlaceAt(ino_t inode, size_t step) {
    return places[(inode + step) % kPlaceCount];
}

VirtualLineState* Find(const struct stat& file) {
    for (size_t step = 0; step < kPlaceCount; ++step) {
        const Place& place = PlaceAt(file.st_ino, step);
        if (!place.taken) return nullptr;
        VirtualLineState* state = place.state;
        if (state && place.inode == file.st_ino && place.device == file.st_dev) return state;
    }
    return nullptr;
}

/// Two threads may keep the same file at the same time: it is then mapped twice, which does no
/// harm.
bool Keep(const struct stat& file, VirtualLineState* state) {
    for (size_t step = 0; step < kPlaceCount; ++step) {
        Place& place = PlaceAt(file.st_ino, step);
        if (place.taken.exchange(true)) continue;
        place.device = file.st_dev;
        place.inode = file.st_ino;
        place.state = state;
        return true;
    }
    return false;
}

}  // namespace

Mapping OfFile(int descriptor) {
    struct stat file = {};
    if (fstat(descriptor, &file) != 0) return {};
    if (VirtualLineState* state = Find(file)) return {state, true};
    // A file that is only being created has nothing behind its pages.
    if (file.st_size < static_cast<off_t>(sizeof(VirtualLineState))) return {};
    VirtualLineState* state = Map(descriptor);
    if (!state) return {};
    if (state->layout == VirtualLineState::kCurrentLayout) return {state, Keep(file, state)};
    munmap(state, sizeof *state);
    return {};
}

VirtualLineState* NotedFor(unsigned ptsNumber) {
    return noted[ptsNumber % kPlaceCount];
}

void Note(unsigned ptsNumber, VirtualLineState* state) {
    noted[ptsNumber % kPlaceCount] = state;
}

}  // namespace simulator::mappedlines
