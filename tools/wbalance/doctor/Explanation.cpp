#include "Explanation.h"

#include <algorithm>

#include "OutsideText.h"
#include "readings/Fields.h"

namespace tool {
namespace {

std::string SevenBits(std::string bytes) {
    for (char& byte : bytes)
        byte = static_cast<char>(byte & 0x7f);
    return bytes;
}

bool HasEighthBit(const std::string& bytes) {
    return std::any_of(bytes.begin(), bytes.end(), [](char byte) { return (byte & 0x80) != 0; });
}

const DriverInfo* SpeakerOf(const DriverInfo& asked, const std::string& answer) {
    for (const auto& driver : Drivers()) {
        if (driver.interpret != asked.interpret && driver.interpret(answer).IsWeight())
            return &driver;
    }
    return nullptr;
}

// A whole line of text.
Finding ExplainLine(const DriverInfo& driver, const Measurement& measurement) {
    const Meaning own = driver.interpret(measurement.answer).meaning;
    const DriverInfo* speaker =
        own == Meaning::Weight ? nullptr : SpeakerOf(driver, measurement.answer);
    if (speaker != nullptr)
        return {Trouble::OtherInstrument, {{"DRIVER", driver.name}, {"OTHER", speaker->name}}};
    const std::string remark = outside::Printable(outside::Shortened(measurement.reading.remark));
    if (own == Meaning::Weight || own == Meaning::Truncated)
        return {Trouble::OtherFormat, {}, remark};
    return {Trouble::UnknownText, {{"DRIVER", driver.name}}, remark};
}

}  // namespace

Finding ExplainAnswer(const DriverInfo& driver, const LineSettings& line,
                      const std::string& command, const Measurement& measurement) {
    const std::string& answer = measurement.answer;
    if (HasEighthBit(answer) && LooksLikeText(SevenBits(answer)))
        return {Trouble::SevenBits, {{"BAUD", std::to_string(line.baudRate)}}};
    if (!LooksLikeText(answer)) return {Trouble::Garbled};
    if (!command.empty() && answer.rfind(command, 0) == 0) return {Trouble::Echo};
    // What is cut off may look like another instrument's line.
    if (answer.back() != '\n') return {Trouble::NoLineEnd};
    return ExplainLine(driver, measurement);
}

bool EndsInMidAnswer(const std::vector<TraceText>& trace, const std::string& answer) {
    const auto begins = [](const TraceText& text, const char* words) {
        return text.text.rfind(words, 0) == 0;
    };
    bool waitedInVain = true;
    for (const auto& text : trace) {
        if (begins(text, "<== ")) waitedInVain = false;
        if (begins(text, "Timeout elapsed")) waitedInVain = true;
    }
    return !waitedInVain && LooksLikeText(answer) && answer.back() != '\n';
}

}  // namespace tool
