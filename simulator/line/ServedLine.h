#pragma once

#include <sys/types.h>

#include <cstdint>

#include "simulator/line/VirtualLineState.h"

namespace simulator {

/// The host's side of one served device. Each call finds it again, and the host's process keeps
/// nothing about a descriptor. So descriptors may be duplicated, inherited and passed on, and fork,
/// exec and threads need no special treatment. Only mappings of lines are kept. They are found by
/// terminal and file, never by descriptor. Uses the C library only, because it is loaded into any
/// program.
class ServedLine {
 public:
    /// The line with a node at this path, such as "/dev/ttyS0"; empty when the path is not served.
    static ServedLine AtNode(const char* path);

    /// The same; the path may also be a link to the node, such as those in /dev/serial.
    static ServedLine AtPath(const char* path);

    /// The line with the pseudo-terminal that is open at `descriptor`; empty for other descriptors.
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

    /// Waits until the serving side has received everything that was sent, for half a second at
    /// most.
    void Rendezvous() const;

    /// Waits until the TIOCEXCL of a host that has ended is removed, for half a second at most.
    /// Returns whether it is still in force.
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
