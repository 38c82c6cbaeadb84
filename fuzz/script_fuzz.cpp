// Any text as the script of a simulated instrument: its steps come in the order of their times, or
// a line is refused.

#include <sstream>
#include <stdexcept>

#include "Harness.h"
#include "simulator/Script.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream text(std::string(reinterpret_cast<const char*>(data), size));
    try {
        simulator::Time last(0);
        for (const auto& step : simulator::ReadScript(text, "bench.script")) {
            fuzz::Require(step.at >= last, "the order of the times");
            fuzz::Require(step.place.rfind("bench.script:", 0) == 0, "the place: " + step.place);
            last = step.at;
        }
    } catch (const std::invalid_argument& error) {
        fuzz::Require(std::string(error.what()).find("bench.script:") != std::string::npos,
                      std::string("the place in ") + error.what());
    }
    return 0;
}
