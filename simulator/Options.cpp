#include "simulator/Options.h"

#include <stdexcept>

namespace simulator {

Options& Options::At(const std::string& settings) {
    line = UartSettings::Parse(settings);
    if (!line)
        throw std::invalid_argument("\"" + settings + "\" are no line settings such as 2400,7E1");
    return *this;
}

Options& Options::WithScript(const std::string& path) {
    const Script read = ReadScriptFile(path);
    script.insert(script.end(), read.begin(), read.end());
    return *this;
}

}  // namespace simulator
