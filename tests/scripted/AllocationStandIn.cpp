#include <new>

#include "Line.h"

// The library allocates only its port objects so that a failure gives null.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    if (scripted::Line::Here().TakeAllocationFailure()) return nullptr;
    try {
        return ::operator new(size);
    } catch (...) {
        return nullptr;
    }
}
