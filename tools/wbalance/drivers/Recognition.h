#pragma once

#include <string>
#include <vector>

namespace tool {

/// A question that changes nothing on any instrument, and which answers to it are those of one
/// instrument and of no other.
struct KnownAnswer {
    std::string question;
    bool (*recognises)(const std::string& answer) = nullptr;
};

/// How an instrument is found on a port that any instrument may be connected to.
struct Recognition {
    std::vector<KnownAnswer> asked = {};      ///< in the order in which it is asked
    std::vector<KnownAnswer> overheard = {};  ///< answers to what is asked for other instruments
    /// Whether its questions are only asked where nobody has answered the others' questions,
    /// because they could change something on another instrument.
    bool askedLast = false;

    /// The protocol that it shares with other instruments, which answer alike; empty: with none.
    std::string protocol = {};
    /// What tells the instruments of that protocol apart, where this driver is the one that is
    /// found first. Its answer shows the model.
    std::string modelQuestion = {};
    /// What the answer to that question holds where the instrument is of this model.
    std::string modelMark = {};

    /// Why the instrument can't be found; empty where it can.
    std::string whyNot = {};
};

}  // namespace tool
