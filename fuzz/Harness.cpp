#include "Harness.h"

#include <csignal>
#include <cstdio>
#include <regex>

namespace fuzz {
namespace {

struct ProcessEnds {};

bool armed = false;
std::string errorText;

ssize_t KeepErrorText(void* /*cookie*/, const char* text, size_t size) {
    errorText.append(text, size);
    return static_cast<ssize_t>(size);
}

/// While it lives, what goes to standard error through the C library is kept.
class ErrorCapture {
 public:
    ErrorCapture() : saved_(stderr) {
        cookie_io_functions_t functions{};
        functions.write = KeepErrorText;
        stream_ = fopencookie(nullptr, "w", functions);
        std::setvbuf(stream_, nullptr, _IONBF, 0);
        stderr = stream_;
        errorText.clear();
        armed = true;
    }
    ~ErrorCapture() {
        armed = false;
        stderr = saved_;
        std::fclose(stream_);
    }
    ErrorCapture(const ErrorCapture&) = delete;
    ErrorCapture& operator=(const ErrorCapture&) = delete;

 private:
    std::FILE* saved_;
    std::FILE* stream_;
};

}  // namespace

int Input::Number() {
    const int kind = Below(4);
    if (kind == 0) return Byte() - 128;
    unsigned number = 0;
    for (int i = 0; i < kind + 1; ++i)
        number = number << 8U | static_cast<unsigned>(Byte());
    return static_cast<int>(number);
}

std::string Input::Text(std::size_t length) {
    std::string text;
    for (; length != 0 && !Empty(); --length)
        text += static_cast<char>(Byte());
    return text;
}

void Require(bool holds, const std::string& what) {
    if (holds) return;
    std::fprintf(stderr, "violated: %s\n", what.c_str());
    __builtin_trap();
}

std::optional<std::string> LineOfProcessEnd(const std::function<void()>& act) {
    bool ended = false;
    {
        const ErrorCapture capture;
        try {
            act();
        } catch (const ProcessEnds&) {
            ended = true;
        }
    }
    if (!ended) {
        Require(errorText.empty(), "standard error is silent: " + errorText);
        return std::nullopt;
    }
    static const std::regex line("libwbalance: .* does not fit its buffer of [0-9]+ bytes\n");
    Require(std::regex_match(errorText, line), "the process ends with its line: " + errorText);
    return errorText;
}

}  // namespace fuzz

/// The program's own abort() is found before the C library's.
[[noreturn]] __attribute__((visibility("default"))) void AbortOfTheProgram() __asm__("abort");

void AbortOfTheProgram() {
    if (fuzz::armed && !fuzz::errorText.empty()) throw fuzz::ProcessEnds{};
    std::signal(SIGABRT, SIG_DFL);
    std::raise(SIGABRT);
    __builtin_trap();
}
