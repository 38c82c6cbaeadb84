#pragma once

#include "Answers.h"
#include "Operations.h"
#include "drivers/Factory.h"
#include "readings/Fields.h"
#include "readings/MtSics.h"

/// What the instruments of the MT-SICS family have in common.
namespace tool {

inline constexpr char kMtModes[] = "stable: S; auto: S, else the mean of five SI; now: SI";

// @ ends the waiting of a command that has not been answered; it keeps zero and tare.
inline const std::vector<std::string> kMtQuestion = {"@\r\n", "SI\r\n"};

/// Not that of a printer, and no continuous mode.
inline constexpr char kMtInterface[] = "the interface mode to Host";

inline constexpr char kMtSics[] = "MT-SICS";
inline constexpr char kMtRequest[] = "SI\r\n";

/// "XS204 Excellence 220.0090 g": the type, behind it the capacity and its unit.
inline std::string TypeIn(const std::string& text) {
    const auto words = WordsOf(text);
    if (words.size() < 3 || !IsNumber(words[words.size() - 2])) return text;
    return Trimmed(text.substr(0, text.rfind(words[words.size() - 2])));
}

/// "1.10 18.6.4.1361.772": the version, behind it the number of the type.
inline std::string VersionIn(const std::string& text) {
    return WordsOf(text).front();
}

inline const std::vector<IdentityQuestion> kMtIdentity = {
    {"I2\r\n", &Identity::model, "I2 A ", TypeIn},
    {"I4\r\n", &Identity::serialNumber, "I4 A "},
    {"I3\r\n", &Identity::softwareVersion, "I3 A ", VersionIn}};

/// A model that answers a request for a weight as every MT-SICS balance does; `mark` is in its
/// answer to the question for the model.
template <class Driver>
DriverInfo MettlerWithPanel(const char* models, const char* mark) {
    DriverInfo driver{"Mettler Toledo", models, ReadMtSics, Plain<Driver>};
    driver.modes = kMtModes;
    driver.question = kMtQuestion;
    driver.identity = kMtIdentity;
    driver.menu.onRequest = kMtInterface;
    driver.recognition.protocol = kMtSics;
    driver.recognition.modelMark = mark;
    driver.operations = {
        {Operation::Tare, Trusted(Tare)},
        {Operation::PresetTare,
         Answered(PresetTare, "TA ", "TA A",
                  "tares first, and the tare that this gives is added to the preset")},
        {Operation::Display,
         Answered(Display<Driver>, "D \"", "D A", "until the next operation on the balance")}};
    return driver;
}

template <class Driver>
DriverInfo MettlerWithSwitch(const char* models, const char* mark) {
    DriverInfo driver = MettlerWithPanel<Driver>(models, mark);
    driver.operations[Operation::SwitchOn] = Answered(SwitchOn<Driver>, "PWR 1", "PWR A");
    driver.operations[Operation::SwitchOff] = Answered(SwitchOff<Driver>, "PWR 0", "PWR A");
    return driver;
}

}  // namespace tool
