#pragma once

#include <string>

#include "readings/Interpreter.h"

/// What an instrument's row says of the answers by which it is recognised.
namespace tool {

inline bool StartsWith(const std::string& text, const std::string& start) {
    return text.rfind(start, 0) == 0;
}

/// Whether an answer means anything to an interpreter: a weight, or a message such as overload.
template <Interpreter Read>
bool Means(const std::string& answer) {
    const Meaning meaning = Read(answer).meaning;
    return meaning != Meaning::NotUnderstood && meaning != Meaning::Truncated;
}

/// Whether an answer is a weight to an interpreter, in grams or not.
template <Interpreter Read>
bool IsWeight(const std::string& answer) {
    const Meaning meaning = Read(answer).meaning;
    return meaning == Meaning::Weight || meaning == Meaning::OtherUnit;
}

}  // namespace tool
