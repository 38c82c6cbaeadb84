// A host with a user interface has its user's locale in force. A test program that is told one with
// a decimal comma in WBALANCE_TEST_LOCALE runs in it.

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
