#pragma once

#include <map>
#include <string>
#include <vector>

#include "simulator/Time.h"

namespace simulator {

/// One point in which instruments of a kind differ, or in which their behaviour is not known.
struct SwitchDescription {
    std::string name;                  ///< "reset-answer"
    std::string initial;               ///< value when nothing is chosen
    std::vector<std::string> allowed;  ///< values; empty: any text that `isTime` allows
    std::string sentence;              ///< what it changes, for the list of instruments
    bool isTime = false;               ///< a time such as "10s" or "500ms"
};

/// The switches of one instrument as they are set.
class Switches {
 public:
    explicit Switches(std::vector<SwitchDescription> descriptions);

    /// Sets one switch from "name=value"; "name" alone means "name=on". Throws
    /// std::invalid_argument, saying what is allowed, for an unknown name or value.
    void Choose(const std::string& setting);

    /// The value of a switch; the name must be one of the descriptions.
    const std::string& Text(const std::string& name) const { return values_.at(name); }
    bool IsOn(const std::string& name) const { return Text(name) == "on"; }
    Time TimeOf(const std::string& name) const { return *ParseTime(Text(name)); }

 private:
    const SwitchDescription& Describe(const std::string& name) const;

    std::vector<SwitchDescription> descriptions_;
    std::map<std::string, std::string> values_;
};

/// A switch that is on or off.
SwitchDescription OnOff(const std::string& name, bool initiallyOn, const std::string& sentence);

}  // namespace simulator
