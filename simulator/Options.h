#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/Fault.h"
#include "simulator/LoadStep.h"
#include "simulator/Script.h"
#include "simulator/line/Adapter.h"
#include "simulator/line/UartSettings.h"

namespace simulator {

/// How an instrument is set up. Each function returns the options themselves, so calls can be
/// chained.
struct Options {
    std::string device = "/dev/ttyS0";  ///< name under which the host finds the line
    std::vector<LoadStep> loads;        ///< what lies on the pan, and from when
    std::vector<std::string> switches;  ///< "name=value"
    std::vector<Fault> faults;          ///< what goes wrong, and when
    Script script;                      ///< what else happens, and when
    std::optional<UartSettings> line;   ///< the instrument's settings; empty: as delivered
    std::optional<Adapter>
        pace;  ///< the port to which the line sends at its baud rate; empty: at once

    Options& On(const std::string& path) { return device = path, *this; }
    /// The load in grams at the beginning, or from a time on.
    Options& WithLoad(double grams, Time from = Time(0)) {
        return loads.push_back({grams, from}), *this;
    }
    Options& With(const std::string& setting) { return switches.push_back(setting), *this; }
    /// A fault as Fault::Parse reads it; throws std::invalid_argument for other text.
    Options& WithFault(const std::string& text) {
        return faults.push_back(Fault::Parse(text)), *this;
    }
    /// Adds the script in a file. Throws as ReadScriptFile does.
    Options& WithScript(const std::string& path);
    /// `settings` as UartSettings::Parse reads them; throws std::invalid_argument for other text.
    Options& At(const std::string& settings);
    /// Each character takes as long as at the line's baud rate, and the host gets the characters in
    /// the pieces of `port`. Adapter::Parse reads `port` and throws if it is wrong.
    Options& WithPacing(const std::string& port = "character") {
        return pace = Adapter::Parse(port), *this;
    }
};

}  // namespace simulator
