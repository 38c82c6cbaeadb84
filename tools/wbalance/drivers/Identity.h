#pragma once

#include <string>

namespace tool {

/// What an instrument says about itself. What it does not say is empty.
struct Identity {
    std::string model = {};
    std::string serialNumber = {};
    std::string softwareVersion = {};
};

/// A question that changes nothing, to an instrument that is known, about one part of its identity.
struct IdentityQuestion {
    std::string command;
    std::string Identity::*part = nullptr;
    /// What the answer begins with: "I2 A ". Behind it comes the text, in quotation marks or not.
    /// Empty where the line is the text alone.
    std::string start = {};
    /// The part of the text that is meant; null where all of it is.
    std::string (*partOf)(const std::string& text) = nullptr;
};

}  // namespace tool
