#include "TraceText.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "CLocale.h"

namespace trace_text {
namespace {

// The largest width or precision; a larger one is reduced to it. No trace text is longer, and
// "%999999999d" in a line of noise must not print a gigabyte of blanks.
constexpr int kMostDigits = 1023;

constexpr int kNotGiven = -1;

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

/// A directive's parts, read from the text behind its '%'.
class Directive {
 public:
    explicit Directive(const char* text) : position_(text) {
        SkipArgumentNumber();
        ReadFlags();
        width_ = ReadNumber();
        if (*position_ == '.') {
            ++position_;
            precision_ = std::max(0, ReadNumber());
        }
        position_ += std::strspn(position_, "hlqLjzZt");
        conversion_ = *position_;
    }

    bool CutOff() const { return conversion_ == '\0'; }
    /// The first character behind the directive.
    const char* End() const { return position_ + 1; }

    /// What it prints. False when the conversion is unknown.
    bool Print(std::string& output) const {
        switch (conversion_) {
            case '%':
                output += '%';
                return true;
            case 'n':
                return true;
            case 'd':
            case 'i':
            case 'u':
            case 'o':
            case 'x':
            case 'X':
                return Append(output, flags_, precision_, 0U);
            case 'e':
            case 'E':
            case 'f':
            case 'F':
            case 'g':
            case 'G':
            case 'a':
            case 'A':
                return Append(output, flags_, precision_, 0.0);
            case 'c':
            case 'C':
            case 's':
            case 'S':
            case 'm':
                return AppendText(output, "");
            case 'p':
                return AppendText(output, "(nil)");
            default:
                return false;
        }
    }

 private:
    // "1$" in "%1$s"; digits without a '$' are a flag or the width.
    void SkipArgumentNumber() {
        const char* end = position_;
        while (IsDigit(*end))
            ++end;
        if (end != position_ && *end == '$') position_ = end + 1;
    }

    void ReadFlags() {
        for (; *position_ != '\0' && std::strchr("-+ #0'I", *position_) != nullptr; ++position_) {
            // Grouping and other digits change nothing about a zero.
            if (*position_ != '\'' && *position_ != 'I') flags_ += *position_;
        }
    }

    int ReadNumber() {
        if (*position_ == '*') {
            ++position_;
            SkipArgumentNumber();
            return 0;
        }
        if (!IsDigit(*position_)) return kNotGiven;
        int number = 0;
        for (; IsDigit(*position_); ++position_) {
            number = std::min(kMostDigits, number * 10 + (*position_ - '0'));
        }
        return number;
    }

    template <class Value>
    bool Append(std::string& output, const std::string& flags, int precision, Value value) const {
        std::string format = "%" + flags;
        if (width_ > 0) format += std::to_string(width_);
        // GCOVR_EXCL_BR_START: counted for each kind of value, and a text never has a precision
        if (precision != kNotGiven) format += "." + std::to_string(precision);
        // GCOVR_EXCL_BR_STOP
        format += Conversion(value);
        std::array<char, 4 * kMostDigits> text{};
        std::snprintf(text.data(), text.size(), format.c_str(), value);
        output += text.data();
        return true;
    }

    bool AppendText(std::string& output, const char* text) const {
        const bool left = flags_.find('-') != std::string::npos;
        return Append(output, left ? "-" : "", kNotGiven, text);
    }

    // Signed zero prints as unsigned zero does but for its sign flags, so the conversion is kept.
    char Conversion(unsigned /*zero*/) const { return conversion_; }
    char Conversion(double /*zero*/) const { return conversion_; }
    static char Conversion(const char* /*text*/) { return 's'; }

    const char* position_;
    std::string flags_;
    int width_ = kNotGiven;
    int precision_ = kNotGiven;
    char conversion_ = '\0';
};

}  // namespace

std::string Interpret(const char* format) {
    const c_locale::InForce inForce;
    std::string output;
    while (const char* percent = std::strchr(format, '%')) {
        output.append(format, percent);
        const Directive directive(percent + 1);
        if (directive.CutOff()) return output;
        if (!directive.Print(output)) output.append(percent, directive.End());
        format = directive.End();
    }
    return output + format;
}

}  // namespace trace_text
