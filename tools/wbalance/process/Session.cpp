#include "Session.h"

#include "OutsideText.h"
#include "PortCheck.h"
#include "output/Progress.h"
#include "output/Stream.h"

namespace tool {

BalanceProcess::TraceSink SinkFor(bool showTrace) {
    if (!showTrace) return [](const TraceText&) {};
    return [](const TraceText& traced) { Say(outside::PrintableLines(traced.text)); };
}

Session::Session(const Connection& connection, bool showTrace, const std::string& recordPath)
    : connection_(connection),
      showTrace_(showTrace),
      recorder_(recordPath.empty() ? nullptr : std::make_unique<Recorder>(recordPath, connection_)),
      balance_(connection_, SinkFor(showTrace)) {}

Report Session::Perform(const Request& request, const std::string& what) {
    Progress progress(what, showTrace_);
    Report report = balance_.Perform(request, [&progress] { progress.Tick(); });
    if (recorder_) recorder_->Add(request, report);
    RequirePort(connection_, report);
    return report;
}

}  // namespace tool
