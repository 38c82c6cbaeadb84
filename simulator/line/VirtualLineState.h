#pragma once

#include <stdlib.h>
#include <string.h>
#include <termios.h>
#include <time.h>

#include <atomic>
#include <cstdint>

namespace simulator {

/// The environment variable that names the directory of served lines. The object preloaded into the
/// host looks there for a file named after the device ("ttyS0", "ttyUSB1"), which holds one
/// VirtualLineState; beside it lie "ttyS0.bell", a FIFO through which the host's side wakes the
/// serving side, "pts<N>", a link from the number of the pseudo-terminal to the state file, and the
/// lock files that the host believes to be in /var/lock. What programs that list ports find of the
/// served ones lies below "system".
inline constexpr char kVirtualLinesVariable[] = "WBALANCE_VIRTUAL_LINES";
inline constexpr char kSystemEntries[] = "system";

/// The device number that a port of this name has on a real system.
struct PortNumber {
    bool isUsb;
    unsigned major;
    unsigned minor;
};

/// Of "ttyS<N>" or "ttyUSB<N>".
inline PortNumber PortNumberOf(const char* name) {
    const bool isUsb = strncmp(name, "ttyUSB", 6) == 0;
    const auto number = static_cast<unsigned>(atoi(name + (isUsb ? 6 : 4)));
    return isUsb ? PortNumber{true, 188, number} : PortNumber{false, 4, 64 + number};
}

/// The data that host and serving side of one virtual line exchange, in a mapped file. Every field
/// is atomic by itself, so a host that is killed leaves no field half written.
struct VirtualLineState {
    static constexpr std::uint32_t kCurrentLayout = 0x57424C35;  // "WBL5"
    static constexpr std::uint32_t kEverySpeed = UINT32_MAX;     // of refusedSpeed

    std::atomic<std::uint32_t> layout;     ///< currentLayout once the file is complete
    char name[28];                         ///< device name without directory
    std::atomic<std::uint32_t> present;    ///< 0: unplugged, the node does not exist
    std::atomic<std::uint32_t> ptsNumber;  ///< "/dev/pts/<number>" carries the bytes
    /// When that terminal was created. This distinguishes it from earlier and later terminals with
    /// the same number. It is 0 in the first moments; then only the number counts.
    std::atomic<std::uint64_t> ptsCreated;
    std::atomic<std::int32_t> openError;      ///< errno that open reports, 0: opens
    std::atomic<std::int32_t> nextOpenError;  ///< the same, for the next open alone
    std::atomic<std::uint32_t> bare;          ///< the node opens, but no serial port is behind it
    std::atomic<std::uint32_t>
        refusedSpeed;  ///< the CBAUD bits that the adapter cannot do, 0: none, or everySpeed
    std::atomic<std::uint32_t> mode;   ///< permission bits that stat reports
    std::atomic<std::uint32_t> owner;  ///< user that stat reports
    std::atomic<std::uint32_t> group;  ///< group that stat reports

    std::atomic<std::uint64_t> settings;      ///< the host's line settings, packed by PackSettings
    std::atomic<std::uint32_t> controlLines;  ///< TIOCM_ bits of both directions
    std::atomic<std::uint32_t> lowLatency;  ///< ASYNC_LOW_LATENCY, where the host has asked for it
    std::atomic<std::uint32_t> exclusive;   ///< TIOCEXCL in force
    std::atomic<std::uint32_t> hostOpen;    ///< at least one descriptor is open
    std::atomic<std::uint32_t> breaks;      ///< break conditions sent by the host so far

    /// How the host waits for the serving side: it increments `requests` and writes to the FIFO.
    /// The serving side receives every byte that was sent before, stores the count that it has seen
    /// in `acknowledged`, and wakes the waiting hosts. So each byte is read with the settings at
    /// which it was sent.
    std::atomic<std::uint32_t> requests;
    std::atomic<std::uint32_t> acknowledged;
};

static_assert(std::atomic<std::uint64_t>::is_always_lock_free, "shared between processes");

/// A time stamp of a file as one word.
constexpr std::uint64_t Nanoseconds(const timespec& time) {
    return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000U +
           static_cast<std::uint64_t>(time.tv_nsec);
}

/// The flags of c_cflag that describe the line and that a pseudo-terminal does not keep.
inline constexpr tcflag_t kLineFlags = CSIZE | CSTOPB | PARENB | PARODD | CMSPAR | CRTSCTS;

/// One word for everything that decides how characters look on the wire: baud rate in bits 0-23,
/// the input flags IXON, IXOFF, INPCK and IGNPAR in bits 24-27, the line flags in bits 32-63.
constexpr std::uint64_t PackSettings(tcflag_t control, tcflag_t input, std::uint32_t baudRate) {
    return (std::uint64_t{control & kLineFlags} << 32) | (input & IXON ? 1U << 24 : 0U) |
           (input & IXOFF ? 1U << 25 : 0U) | (input & INPCK ? 1U << 26 : 0U) |
           (input & IGNPAR ? 1U << 27 : 0U) | (baudRate & 0xFFFFFFU);
}

constexpr tcflag_t PackedLineFlags(std::uint64_t settings) {
    return static_cast<tcflag_t>(settings >> 32);
}

constexpr std::uint32_t PackedBaudRate(std::uint64_t settings) {
    return static_cast<std::uint32_t>(settings & 0xFFFFFFU);
}

constexpr bool PackedXonXoff(std::uint64_t settings) {
    return ((settings >> 24) & 1U) != 0;
}
constexpr bool PackedParityCheck(std::uint64_t settings) {
    return ((settings >> 26) & 1U) != 0;
}
constexpr bool PackedIgnoreDamaged(std::uint64_t settings) {
    return ((settings >> 27) & 1U) != 0;
}

}  // namespace simulator
