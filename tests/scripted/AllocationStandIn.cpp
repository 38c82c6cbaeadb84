#include <cstdint>
#include <new>

#include "Line.h"

// The library's own allocations, which return null on failure: serial objects, port objects, and
// the buffer for a collected answer.

namespace {

/// Whether there is no memory: because the script says so, or for a size that no machine has and
/// for which a sanitizer would end the program.
bool Fails(std::size_t size) {
    return scripted::Line::Here().TakeAllocationFailure() || size > PTRDIFF_MAX / 2;
}

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return Fails(size) ? nullptr : ::operator new(size);
}

void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return Fails(size) ? nullptr : ::operator new[](size);
}
