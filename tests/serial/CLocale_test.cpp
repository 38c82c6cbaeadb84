#include "CLocale.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <thread>

namespace {

bool memoryIsShort = false;

std::string Formatted(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", number);
    return text;
}

/// How the process's own locale writes 12.50, a comma included where it has one.
std::string AsTheHostWrites() {
    return std::string("12") + std::localeconv()->decimal_point + "50";
}

}  // namespace

// Stands in for the C library's own, which never fails to give the "C" locale.
extern "C" locale_t newlocale(int categories, const char* name, locale_t base) noexcept {
    if (memoryIsShort) return nullptr;
    using NewLocale = locale_t (*)(int, const char*, locale_t);
    static const auto real = reinterpret_cast<NewLocale>(dlsym(RTLD_NEXT, "newlocale"));
    return real(categories, name, base);
}

namespace {

TEST(CLocale, A_number_has_a_point_whatever_the_host_writes) {
    EXPECT_EQ(c_locale::NumberIn("12.345"), 12.345);
    EXPECT_EQ(c_locale::NumberIn("  -0.07 g"), -0.07);
    EXPECT_EQ(c_locale::NumberIn("12,345"), 12.0);
    EXPECT_EQ(c_locale::NumberIn("g"), 0.0);
}

TEST(CLocale, In_force_a_number_is_formatted_with_a_point_and_then_as_the_host_does_again) {
    {
        const c_locale::InForce inForce;
        EXPECT_EQ(Formatted(12.5), "12.50");
    }
    EXPECT_EQ(Formatted(12.5), AsTheHostWrites());
}

TEST(CLocale, The_locale_that_a_thread_has_for_itself_is_in_force_again) {
    const locale_t own = duplocale(LC_GLOBAL_LOCALE);
    ASSERT_NE(own, nullptr);
    const locale_t before = uselocale(own);

    c_locale::NumberIn("12.5");

    EXPECT_EQ(uselocale(before), own);
    freelocale(own);
}

TEST(CLocale, Another_thread_formats_as_the_host_does) {
    const c_locale::InForce inForce;
    std::string formatted;
    std::thread([&formatted] { formatted = Formatted(12.5); }).join();
    const locale_t own = uselocale(LC_GLOBAL_LOCALE);
    EXPECT_EQ(formatted, AsTheHostWrites());
    uselocale(own);
}

TEST(CLocale, Without_memory_for_it_the_hosts_locale_stays_in_force) {
    memoryIsShort = true;
    {
        const c_locale::InForce inForce;
        EXPECT_EQ(Formatted(12.5), AsTheHostWrites());
        EXPECT_EQ(uselocale(nullptr), LC_GLOBAL_LOCALE);
    }
    memoryIsShort = false;
    EXPECT_EQ(Formatted(12.5), AsTheHostWrites());
}

}  // namespace
