#include "LogFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "ToolError.h"
#include "output/Stream.h"

namespace tool {
namespace {

/// 0 also where there is none, as in a pipe.
off_t SizeOf(int file) {
    return std::max<off_t>(lseek(file, 0, SEEK_END), 0);
}

bool EndsWithinALine(int file) {
    const off_t size = SizeOf(file);
    char last = '\n';
    return size > 0 && pread(file, &last, 1, size - 1) == 1 && last != '\n';
}

/// Whether the file begins as a log with this header does; without a header it holds JSON.
bool BeginsAs(int file, const std::string& header) {
    const std::string line = header.empty() ? "{" : header + "\n";
    std::string first(line.size(), '\0');
    return pread(file, first.data(), first.size(), 0) > 0 && first == line;
}

}  // namespace

LogFile::LogFile(const std::string& path, const std::string& header)
    : path_(path), file_(open(path.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, 0666)) {
    if (file_.Get() < 0) throw ToolError(ExitCode::Usage, path_ + ": " + std::strerror(errno));
    if (SizeOf(file_.Get()) > 0 && !BeginsAs(file_.Get(), header)) {
        throw ToolError(ExitCode::Usage,
                        path_ +
                            ": holds lines of another kind than those that would be added; choose "
                            "another file, or the output format that it was begun with");
    }
    if (EndsWithinALine(file_.Get())) Put("\n");
    if (!header.empty() && SizeOf(file_.Get()) == 0) Write(header);
}

void LogFile::Write(const std::string& line) {
    Put(line + "\n");
    // Not every file can be brought to a disk; a pipe or /dev/null can't, and that is no failure.
    if (fdatasync(file_.Get()) != 0 && errno != EINVAL && errno != EROFS)
        throw ToolError(ExitCode::Internal, path_ + ": " + std::strerror(errno));
}

void LogFile::Put(const std::string& bytes) {
    const std::error_code failure = WriteAll(file_.Get(), bytes);
    if (!failure) return;
    const bool interrupted = failure == std::errc::interrupted;
    throw ToolError(interrupted ? ExitCode::Interrupted : ExitCode::Internal,
                    path_ + ": the log can't be written: " + failure.message());
}

}  // namespace tool
