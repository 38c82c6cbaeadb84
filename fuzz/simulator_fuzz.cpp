// Any texts as the settings of a simulated instrument, and any characters, at any times, sent to
// it.

#include <stdexcept>

#include "Harness.h"
#include "simulator/Instrument.h"
#include "simulator/LoadStep.h"

using simulator::Time;

namespace {

/// Runs `parse`; a text that it does not understand is refused with a sentence.
template <class Parse>
void Try(const Parse& parse) {
    try {
        parse();
    } catch (const std::invalid_argument& error) {
        fuzz::Require(*error.what() != '\0', "a sentence");
    }
}

void SetUp(simulator::Instrument& instrument, const std::string& text) {
    Try([&] { instrument.Balance().SetLoad(simulator::LoadStep::Parse(text).grams); });
    Try([&] {
        const auto fault = simulator::Fault::Parse(text);
        fuzz::Require(fault.from >= Time(0), "no fault before the start");
        fuzz::Require(!fault.until || *fault.until >= fault.from, "no fault ends before it begins");
        instrument.AddFault(fault);
    });
    if (const auto line = simulator::UartSettings::Parse(text))
        fuzz::Require(simulator::UartSettings::Parse(line->Text()) == line,
                      "the line settings as they are written");
}

std::string Line(fuzz::Input& input) {
    std::string line;
    for (char next = 0; !input.Empty() && (next = static_cast<char>(input.Byte())) != '\n';)
        line += next;
    return line;
}

std::unique_ptr<simulator::Instrument> Make(fuzz::Input& input) {
    const auto& catalog = simulator::Catalog();
    const auto& entry =
        catalog[static_cast<std::size_t>(input.Below(static_cast<int>(catalog.size())))];
    try {
        return std::make_unique<simulator::Instrument>(entry,
                                                       std::vector<std::string>{Line(input)});
    } catch (const std::invalid_argument&) {
        return std::make_unique<simulator::Instrument>(entry);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto instrument = Make(input);
    for (int settings = input.Below(3); settings != 0; --settings)
        SetUp(*instrument, Line(input));
    Time now(0);
    std::size_t sent = 0;
    while (!input.Empty()) {
        now += Time(input.Below(4) == 0 ? 10 * input.Byte() : 0);
        const auto event = instrument->NextEvent();
        fuzz::Require(!event || *event >= instrument->Balance().Now(),
                      "nothing is due in the past");
        if (input.Below(16) == 0) instrument->ReceiveBreak(now);
        const bool damaged = input.Below(8) == 0;
        const auto byte = static_cast<char>(input.Byte());
        instrument->Receive(simulator::Character{byte, damaged, false}, now);
        sent += instrument->TakeOutput().size();
    }
    // Rubbish of up to 9,999 characters may come ahead of each of a few hundred answers.
    fuzz::Require(sent <= 10'000 * (size + 1) * 8, "no endless answers");
    return 0;
}
