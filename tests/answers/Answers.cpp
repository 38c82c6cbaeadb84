#include "Answers.h"

#include <cstdio>

namespace answers {

std::vector<InPieces> WholeOnEveryPort(double weight, int baudRateOfFtdi) {
    return {{"characters", "character", 0, 1, weight},
            {"16550", "16550", 0, 1, weight},
            {"ftdi", "ftdi", baudRateOfFtdi, 1, weight},
            {"pl2303", "pl2303", 0, 1, weight}};
}

std::string BytesOf(const Answer& answer, double grams) {
    char bytes[64];
    std::snprintf(bytes, sizeof bytes, answer.format.c_str(), grams);
    return bytes;
}

}  // namespace answers
