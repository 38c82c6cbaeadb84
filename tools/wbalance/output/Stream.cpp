#include "Stream.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>

#include "OutsideText.h"
#include "ToolError.h"
#include "process/Interrupt.h"

namespace tool {
namespace {

constexpr int kPatienceMs = 200;  // after which a full pipe is no place for an interrupted program

// A pipe that has room takes so much without making the writer wait.
constexpr std::size_t kLargestPiece = PIPE_BUF;

// False when there is none and the user wants an end.
bool AwaitRoom(int descriptor) {
    pollfd output{descriptor, POLLOUT, 0};
    for (;;) {
        const int ready = poll(&output, 1, kPatienceMs);
        if (ready > 0) return true;
        // A signal ends the wait before it has seen whether there is room.
        if (ready == 0 && Interrupted()) return false;
    }
}

// A closed pipe, or a terminal whose window was closed.
bool ReaderHasGone(int descriptor, std::error_code failure) {
    if (failure == std::errc::broken_pipe) return true;
    pollfd output{descriptor, POLLOUT, 0};
    return failure == std::errc::io_error && poll(&output, 1, 0) > 0 &&
           (output.revents & (POLLERR | POLLHUP)) != 0;
}

}  // namespace

std::error_code WriteAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        if (!AwaitRoom(descriptor)) return std::make_error_code(std::errc::interrupted);
        const ssize_t count =
            write(descriptor, bytes.data(), std::min(bytes.size(), kLargestPiece));
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR && errno != EAGAIN) {
            return {errno, std::generic_category()};
        }
    }
    return {};
}

void Print(std::string_view text) {
    const std::error_code failure = WriteAll(STDOUT_FILENO, text);
    if (!failure) return;
    // Ctrl-C ends the programs at the other end of a pipe, too.
    const bool readerEnded = failure == std::errc::broken_pipe && Interrupted();
    if (failure == std::errc::interrupted || readerEnded) {
        throw ToolError(ExitCode::Interrupted,
                        "interrupted; the reader of standard output did not take all of it");
    }
    if (ReaderHasGone(STDOUT_FILENO, failure)) throw ReaderGone();
    throw ToolError(ExitCode::Internal, "standard output can't be written: " + failure.message());
}

void PrintLine(const std::string& line) {
    Print(outside::Printable(line) + "\n");
}

void Say(std::string_view text) {
    static_cast<void>(WriteAll(STDERR_FILENO, text));
}

void SayLine(const std::string& line) {
    Say(outside::Printable(line) + "\n");
}

}  // namespace tool
