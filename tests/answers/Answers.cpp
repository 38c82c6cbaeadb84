#include "Answers.h"

#include <cstdio>

namespace answers {

std::string BytesOf(const Answer& answer, double grams) {
    char bytes[64];
    std::snprintf(bytes, sizeof bytes, answer.format.c_str(), grams);
    return bytes;
}

}  // namespace answers
