#pragma once

#include <sys/types.h>

#include <cstdint>

#include "simulator/line/VirtualLineState.h"

namespace simulator {

/// The host's side of one served device, found anew for every call: of a descriptor nothing is kept
/// in the host's process, so duplicated, inherited and passed-on descriptors, fork, exec and
/// threads need no care. What is kept are mappings of lines, which are found by what their terminal
/// and their file are, never by a descriptor. Uses nothing but the C library, because it is loaded
/// into programs that are not ours.
class ServedLine {
 public:
    /// The line whose node is at a path such as "/dev/ttyS0"; empty when that is not served.
    static ServedLine AtNode(const char* path);

    /// The same, also where the path is a link to the node, as those in /dev/serial are.
    static ServedLine AtPath(const char* path);

    /// The line whose pseudo-terminal `descriptor` is; empty for every other descriptor.
    static ServedLine OfDescriptor(int descriptor);

    /// The line whose pseudo-terminal is at this path; empty for every other path.
    static ServedLine AtTerminal(const char* path);

    ServedLine(ServedLine&& other) noexcept;
    ServedLine(const ServedLine&) = delete;
    ServedLine& operator=(const ServedLine&) = delete;
    ServedLine& operator=(ServedLine&&) = delete;
    ~ServedLine();

    explicit operator bool() const { return state_ != nullptr; }
    VirtualLineState* operator->() const { return state_; }

    /// The device number that a node of this name has on a real system.
    dev_t DeviceNumber() const;

    /// Waits, for half a second at most, until the serving side has taken over all that was sent.
    void Rendezvous() const;

    /// Waits, for half a second at most, until a TIOCEXCL of a host that has gone is lifted.
    /// Returns whether the line is still claimed.
    bool StaysExclusive() const;

 private:
    static ServedLine Called(const char* name);
    explicit ServedLine(const char* fileName);
    ServedLine(VirtualLineState* state, bool isKept) : state_(state), isKept_(isKept) {}

    bool Ring() const;

    VirtualLineState* state_ = nullptr;
    bool isKept_ = false;  ///< mapped for longer than this object lives
};

}  // namespace simulator
