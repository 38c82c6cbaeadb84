#pragma once

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <string>
#include <thread>

#include "TemporaryFile.h"

/// A shell command that runs while the test goes on: in a session of its own, without a terminal,
/// its standard output a pipe of 4 KiB that is read only when the test says so.
class StartedProgram {
 public:
    explicit StartedProgram(const std::string& command) {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) return;
        fcntl(ends[1], F_SETPIPE_SZ, 4096);
        child_ = fork();
        if (child_ == 0) {
            setsid();
            dup2(ends[1], STDOUT_FILENO);
            dup2(open(errors_.Path().c_str(), O_WRONLY | O_APPEND), STDERR_FILENO);
            execl("/bin/sh", "sh", "-c", ("exec " + command).c_str(), nullptr);
            _exit(127);
        }
        close(ends[1]);
        output_ = ends[0];
    }
    ~StartedProgram() {
        if (child_ > 0) kill(-child_, SIGKILL);
        if (child_ > 0) waitpid(child_, nullptr, 0);
        close(output_);
    }
    StartedProgram(const StartedProgram&) = delete;
    StartedProgram& operator=(const StartedProgram&) = delete;

    /// Reads until the text has come; false when it does not.
    bool Reads(const std::string& text) {
        while (read_.find(text) == std::string::npos) {
            if (!Read()) return false;
        }
        return true;
    }

    /// Reads until so many bytes have come; false when they do not.
    bool ReadsMore(std::size_t bytes) {
        while (read_.size() < bytes) {
            if (!Read()) return false;
        }
        return true;
    }

    /// Waits until the pipe takes no more, so that the program waits for its reader.
    void LetThePipeFill() const {
        constexpr std::chrono::milliseconds kLook{300};
        for (int before = -1, now = 0; now != before || now <= 0;) {
            before = now;
            std::this_thread::sleep_for(kLook);
            ioctl(output_, FIONREAD, &now);
        }
    }

    /// As Ctrl-C and others do: to the command and whatever it has started.
    void Signal(int signal) const { kill(-child_, signal); }

    /// Waits for the end without reading; the exit code, 128 and its number for a signal.
    int Wait() {
        int status = 0;
        waitpid(child_, &status, 0);
        child_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

    /// Reads to the end; the exit code.
    int End() {
        while (Read()) {
        }
        return Wait();
    }

    /// What has been read so far.
    const std::string& Output() const { return read_; }
    std::string Errors() const { return errors_.Text(); }

    bool Read() {
        pollfd watched{output_, POLLIN, 0};
        if (poll(&watched, 1, 60000) <= 0) return false;
        char bytes[4096];
        const ssize_t count = read(output_, bytes, sizeof bytes);
        if (count <= 0) return false;
        read_.append(bytes, static_cast<std::size_t>(count));
        return true;
    }

 private:
    pid_t child_ = -1;
    int output_ = -1;
    std::string read_;
    const TemporaryFile errors_;
};
