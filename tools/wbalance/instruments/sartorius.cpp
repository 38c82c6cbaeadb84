#include <wbalance/WbalanceSartorius.h>

#include <algorithm>
#include <cctype>

#include "Answers.h"
#include "Operations.h"
#include "drivers/Factory.h"
#include "readings/Fields.h"
#include "readings/Sbi.h"

namespace tool {
namespace {

// A name filled up to the length of a print line's text.
bool IsModel(const std::string& line) {
    const bool filledUp = line.size() == 14 || line.size() == 20;
    return filledUp && std::isalpha(static_cast<unsigned char>(line.front())) != 0 &&
           std::any_of(line.begin(), line.end(),
                       [](unsigned char one) { return std::isdigit(one) != 0; });
}

// > ESC "x1_"  < "LA620S        "
bool IsModelAnswer(const std::string& answer) {
    const auto lines = LinesOf(answer);
    return lines.size() == 1 && LooksLikeText(answer) && IsModel(lines.front());
}

// "Model  BCE124I-1CEU": some series have a word for it in front.
std::string NameIn(const std::string& text) {
    return WordsOf(text).back();
}

}  // namespace

template <>
DriverInfo InfoOf<WbalanceSartorius>() {
    DriverInfo driver{"Sartorius", "balances with SBI print lines", ReadSbi,
                      LineReady<WbalanceSartorius>};
    driver.readyFirst = true;
    driver.modes =
        "all alike: what the balance prints (ESC P), by its own setting after stability; with "
        "stable no weight when it prints one that is not";
    // The model: the queries are answered also while a print waits for stability.
    driver.question = {"\x1bx1_"};
    // Not every series knows x3_.
    driver.identity = {{"\x1bx1_", &Identity::model, "", NameIn},
                       {"\x1bx2_", &Identity::serialNumber, "", NameIn},
                       {"\x1bx3_", &Identity::softwareVersion, "", NameIn}};
    driver.menu = {"automatic print to off (print: manual, without stability)",
                   "print to manual, without stability", "the handshake to none"};
    driver.recognition.asked = {{"\x1bP\r\n", Means<ReadSbi>}, {"\x1bx1_\r\n", IsModelAnswer}};
    auto preset = Weighed(PresetTare, "tares first; works where soft key 4 stores the tare");
    preset.setter = "\x1bt";
    driver.operations = {{Operation::Tare, Weighed(Tare)}, {Operation::PresetTare, preset}};
    // The command's buffer holds a number of four characters; a longer one ends the process.
    driver.greatestPresetTare = 9.99;
    return driver;
}

}  // namespace tool
