#pragma once

#include "Answers.h"

namespace answers {

/// What every MT-SICS instrument answers.
inline std::vector<Answer> MtSicsAnswers() {
    return {{"@\r\n", "I4 A \"1126493049\"\r\n"},
            {"S\r\n", "S S   %8.2f g\r\n"},
            {"SI\r\n", "S D   %8.2f g\r\n"},
            {"T\r\n", "T S   %8.2f g\r\n"},
            {"TA 5.00 g\r\n", "TA A      5.00 g\r\n"},
            {"DW\r\n", "DW A\r\n"},
            {"D \"READY\"\r\n", "D A\r\n"}};
}

// The number comes first, or the 4 of I4 would be taken for it.
constexpr char kMtSicsAnswer[] = "S S 0.00 g T S TA A I4 A\r\n";

}  // namespace answers
