#include "simulator/line/MappedLines.h"

#include <stddef.h>
#include <sys/mman.h>
#include <sys/stat.h>

namespace simulator::mappedLines {
namespace {

/// Written once, by whoever takes it; in use once `state` is set.
struct Place {
    std::atomic<bool> taken;
    std::atomic<VirtualLineState*> state;
    dev_t device;
    ino_t inode;
};

constexpr size_t placeCount = 2048;
Place places[placeCount];
std::atomic<VirtualLineState*> noted[placeCount];

VirtualLineState* map(int descriptor) {
    void* memory =
        mmap(nullptr, sizeof(VirtualLineState), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<VirtualLineState*>(memory);
}

Place& placeAt(ino_t inode, size_t step) {
    return places[(inode + step) % placeCount];
}

VirtualLineState* find(const struct stat& file) {
    for (size_t step = 0; step < placeCount; ++step) {
        const Place& place = placeAt(file.st_ino, step);
        if (!place.taken) return nullptr;
        VirtualLineState* state = place.state;
        if (state && place.inode == file.st_ino && place.device == file.st_dev) return state;
    }
    return nullptr;
}

/// Two threads may keep the same file at the same time: it is then mapped twice, which does no
/// harm.
bool keep(const struct stat& file, VirtualLineState* state) {
    for (size_t step = 0; step < placeCount; ++step) {
        Place& place = placeAt(file.st_ino, step);
        if (place.taken.exchange(true)) continue;
        place.device = file.st_dev;
        place.inode = file.st_ino;
        place.state = state;
        return true;
    }
    return false;
}

}  // namespace

Mapping ofFile(int descriptor) {
    struct stat file = {};
    if (fstat(descriptor, &file) != 0) return {};
    if (VirtualLineState* state = find(file)) return {state, true};
    // A file that is only being created has nothing behind its pages.
    if (file.st_size < static_cast<off_t>(sizeof(VirtualLineState))) return {};
    VirtualLineState* state = map(descriptor);
    if (!state) return {};
    if (state->layout == VirtualLineState::currentLayout) return {state, keep(file, state)};
    munmap(state, sizeof *state);
    return {};
}

VirtualLineState* notedFor(unsigned ptsNumber) {
    return noted[ptsNumber % placeCount];
}

void note(unsigned ptsNumber, VirtualLineState* state) {
    noted[ptsNumber % placeCount] = state;
}

}  // namespace simulator::mappedLines
