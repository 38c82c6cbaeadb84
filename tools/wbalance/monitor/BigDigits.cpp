#include "BigDigits.h"

#include <map>

namespace tool {
namespace {

using Shape = std::array<const char*, 3>;

const std::map<char, Shape> kShapes = {
    {'0', {" _ ", "| |", "|_|"}}, {'1', {"   ", "  |", "  |"}}, {'2', {" _ ", " _|", "|_ "}},
    {'3', {" _ ", " _|", " _|"}}, {'4', {"   ", "|_|", "  |"}}, {'5', {" _ ", "|_ ", " _|"}},
    {'6', {" _ ", "|_ ", "|_|"}}, {'7', {" _ ", "  |", "  |"}}, {'8', {" _ ", "|_|", "|_|"}},
    {'9', {" _ ", "|_|", " _|"}}, {'-', {"   ", " _ ", "   "}}, {'.', {" ", " ", "."}},
    {' ', {"   ", "   ", "   "}}};

}  // namespace

std::array<std::string, 3> BigDigits(const std::string& number) {
    std::array<std::string, 3> lines;
    for (const char character : number) {
        const auto shape = kShapes.find(character);
        if (shape == kShapes.end()) continue;
        for (std::size_t i = 0; i < lines.size(); ++i)
            lines[i] += shape->second[i];
    }
    return lines;
}

}  // namespace tool
