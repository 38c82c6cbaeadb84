#pragma once

#include <functional>
#include <string>

#include "ExitCode.h"
#include "line/PortName.h"
#include "process/Session.h"
#include "readings/Measurement.h"

namespace tool {

/// What the doctor has found out: one sentence with the next step, and the exit code for it.
struct Diagnosis {
    ExitCode code = ExitCode::Done;
    std::string sentence;
};

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

    const Patient patient_;
    const Tell tell_;
};

/// What an answer that is no weight of this driver shows: another parity, another instrument, an
/// echo. Pure, for bytes as they were received; there is at least one.
std::string ExplainAnswer(const DriverInfo& driver, const LineSettings& line,
                          const std::string& command, const Measurement& measurement);

}  // namespace tool
