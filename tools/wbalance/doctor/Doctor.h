#pragma once

#include <functional>
#include <string>

#include "Trouble.h"
#include "line/PortName.h"
#include "process/Session.h"
#include "readings/Measurement.h"

namespace tool {

/// Looks at everything between this program and a weight, from the device node to the pan, and
/// stops at the first thing that is wrong.
class Doctor {
 public:
    /// @param tell is told each thing that was looked at, and what was seen
    using Tell = std::function<void(const std::string& what, const std::string& seen)>;
    struct Patient {
        const DriverInfo* driver = nullptr;
        PortName port;
        LineSettings line;
        int timeoutSeconds = 1;
        bool showTrace = false;
        std::string recordPath;
    };

    Doctor(Patient patient, Tell tell);

    Diagnosis Examine();

 private:
    Diagnosis ExamineLine(PortNumber port);
    Diagnosis ExamineBalance(const Connection& connection);
    bool IsHeardUnasked(const Connection& connection) const;
    Report AskForTheWeight(const Connection& connection) const;
    void TellIdentity(const Connection& connection) const;
    Diagnosis Judge(const Connection& connection, const Reading& reading) const;

    const Patient patient_;
    const Tell tell_;
};

}  // namespace tool
