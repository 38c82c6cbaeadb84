#pragma once

#include <clocale>

/// Numbers as instruments write and expect them: with a point, whatever locale the host has.
namespace c_locale {

/// While it lives, the calling thread formats and reads numbers in the "C" locale. The locale of
/// the process and of its other threads stays as it is.
///
/// The GNU C library always has this locale and allocates nothing for it. If another C library has
/// no memory for it, the host's locale stays in force.
class InForce {
 public:
    InForce();
    ~InForce();
    InForce(const InForce&) = delete;
    InForce& operator=(const InForce&) = delete;

 private:
    locale_t own_;
    locale_t hosts_;
};

/// The number at the start of `text`, as strtod reads it in the "C" locale: 0.0 without one.
double NumberIn(const char* text);

}  // namespace c_locale
