#pragma once

#include <string>

namespace tool {

/// What is to be set in the menu of an instrument, in the words of its page: "automatic print to
/// off". Each reads on from "in its menu, set ".
struct MenuSettings {
    /// So that it sends nothing that it was not asked for.
    std::string onRequest = "automatic print (continuous output) to off";
    /// So that it also answers while its pan moves. Empty: not known, or it does so anyway.
    std::string whileMoving = {};
    /// What else can keep it silent. Empty: not known.
    std::string whenSilent = {};
};

}  // namespace tool
