#include "PortCheck.h"

#include "ToolError.h"
#include "line/PortTrouble.h"

namespace tool {

void RequirePort(const Connection& connection, const Report& report) {
    const std::string device = connection.port.Device();
    if (report.died) {
        throw ToolError(ExitCode::Internal,
                        device +
                            ": more came than an answer can hold, and the library gave "
                            "up; switch the balance's continuous output off. It said: " +
                            report.lastWords);
    }
    const Dialogue dialogue(report.trace);
    if (dialogue.openFailed) throw ToolError(ExitCode::PortFailed, WhyNotOpened(device));
    if (dialogue.settingsRefused) {
        throw ToolError(ExitCode::PortFailed,
                        device + ": the port refuses the line settings " + connection.line.Text() +
                            "; choose others with --line, or use another adapter");
    }
}

}  // namespace tool
