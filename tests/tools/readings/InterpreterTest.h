#pragma once

#include <gmock/gmock.h>

#include <string>

#include "readings/Interpreter.h"

/// One row of the table of what an interpreter reads: what the instrument sent and what it meant by
/// it.
struct AnswerCase {
    const char* name;  ///< of the test
    std::string answer;
    tool::Meaning meaning;
    std::string digits;
    std::string unit;
    tool::Stability stability = tool::Stability::Unknown;
};

inline void PrintTo(const AnswerCase& one, std::ostream* stream) {
    *stream << one.name;
}

inline std::string NameOf(const testing::TestParamInfo<AnswerCase>& info) {
    return info.param.name;
}

inline void ExpectReading(tool::Interpreter interpret, const AnswerCase& one) {
    const tool::Reading reading = interpret(one.answer);
    EXPECT_EQ(tool::WordFor(reading.meaning), tool::WordFor(one.meaning));
    EXPECT_EQ(reading.digits, one.digits);
    EXPECT_EQ(reading.unit, one.unit);
    EXPECT_EQ(tool::WordFor(reading.stability), tool::WordFor(one.stability));
}
