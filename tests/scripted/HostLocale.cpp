// A host with a user interface runs in its user's locale. If WBALANCE_TEST_LOCALE names a locale,
// for example one with a decimal comma, a test program runs in it.

#include <clocale>
#include <cstdio>
#include <cstdlib>

namespace {

bool EnterLocale() {
    const char* name = std::getenv("WBALANCE_TEST_LOCALE");
    if (name == nullptr) return false;
    if (std::setlocale(LC_ALL, name) == nullptr || *std::localeconv()->decimal_point != ',') {
        std::fprintf(stderr, "there is no locale %s with a decimal comma\n", name);
        std::_Exit(1);
    }
    return true;
}

[[maybe_unused]] const bool kEntered = EnterLocale();

}  // namespace
