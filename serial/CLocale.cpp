#include "CLocale.h"

#include <cstdlib>

namespace c_locale {

// Without a locale to set, uselocale() only tells the one in force.
InForce::InForce() : own_(newlocale(LC_ALL_MASK, "C", nullptr)), hosts_(uselocale(own_)) {}

InForce::~InForce() {
    uselocale(hosts_);
    if (own_ != nullptr) freelocale(own_);
}

double NumberIn(const char* text) {
    const InForce inForce;
    return std::strtod(text, nullptr);
}

}  // namespace c_locale
