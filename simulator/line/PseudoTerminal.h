#pragma once

#include <time.h>

#include <string>

namespace simulator {

/// The serving end of a pseudo-terminal. The other end is left in raw mode at 9600 baud.
class PseudoTerminal {
 public:
    /// Throws std::system_error when the system gives no pseudo-terminal.
    PseudoTerminal();
    ~PseudoTerminal() = default;  ///< hangs the other end up
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    int Descriptor() const { return master_.descriptor; }  ///< for poll; do not close
    unsigned Number() const;                               ///< N of "/dev/pts/N"
    const std::string& Path() const { return path_; }      ///< "/dev/pts/N"
    const timespec& Created() const {
        return created_;
    }  ///< change time of its node, which never changes

    /// Sets a speed that no host sets, 134.5 baud; the other settings stay. The reason: a
    /// pseudo-terminal keeps neither data bits nor parity, and the C library refuses settings that
    /// change nothing. With this speed, settings that include a speed always change something.
    void ForgetSpeed();

    /// Returns all bytes that have arrived. Sets `hungUp` when nobody has the other end open any
    /// more.
    std::string Read(bool* hungUp);

    /// Writes without waiting. Returns how many bytes fitted into the buffer of the other end.
    std::size_t Write(const std::string& bytes);

 private:
    /// Owns a descriptor, so that it is also closed when the constructor throws.
    struct Master {
        explicit Master(int opened) : descriptor(opened) {}
        ~Master();
        Master(const Master&) = delete;
        Master& operator=(const Master&) = delete;

        const int descriptor;
    };

    const Master master_;
    std::string path_;
    timespec created_ = {};
};

}  // namespace simulator
