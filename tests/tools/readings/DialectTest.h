#pragma once

#include <gmock/gmock.h>

#include <string>

#include "readings/Dialect.h"

/// One row of a dialect's table: what the instrument sent and what it meant by it.
struct DialectCase {
    const char* name;  ///< of the test
    std::string answer;
    tool::Meaning meaning;
    std::string digits;
    std::string unit;
    tool::Stability stability = tool::Stability::Unknown;
};

inline void PrintTo(const DialectCase& one, std::ostream* stream) {
    *stream << one.name;
}

inline std::string NameOf(const testing::TestParamInfo<DialectCase>& info) {
    return info.param.name;
}

inline void ExpectReading(tool::Dialect dialect, const DialectCase& one) {
    const tool::Reading reading = dialect(one.answer);
    EXPECT_EQ(tool::WordFor(reading.meaning), tool::WordFor(one.meaning));
    EXPECT_EQ(reading.digits, one.digits);
    EXPECT_EQ(reading.unit, one.unit);
    EXPECT_EQ(tool::WordFor(reading.stability), tool::WordFor(one.stability));
}
