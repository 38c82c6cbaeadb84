#include "Placement.h"

#include <stdexcept>

void Placement::AddTo(arguments::Command command) {
    command.AddOption("--port", port_, "Number of the port").TypeName("N").Range(0, 99999);
    command.AddFlag("--usb", usb_, "/dev/ttyUSB<N> instead of /dev/ttyS<N>");
    command.AddOption("--line", line_, "The instrument's line settings, such as 2400,7E1")
        .TypeName("SETTINGS");
    command
        .AddOption("--fault", faults_, "A fault, such as late=2s@5s+10s or \"silent at 5s for 2s\"")
        .TypeName("NAME[=VALUE][@START[+DURATION]]")
        .OneValueEach();
    command.AddOption("--script", scripts_, "Do what the lines of a file say, at their times")
        .TypeName("FILE")
        .OneValueEach();
    command
        .AddFlag("--pace", pace_, "character",
                 "Each character takes as long as on a real line; the host gets them one at a "
                 "time, or in "
                 "the pieces of a port: 16550, 16550:TRIGGER, ftdi, ftdi:LATENCY, pl2303, ch341")
        .TypeName("[=PORT]");
}

simulator::Options Placement::SetUp() const {
    simulator::Options options;
    const bool isNamed = port_ || usb_;
    options.On(isNamed ? (usb_ ? "/dev/ttyUSB" : "/dev/ttyS") + std::to_string(port_.value_or(0))
                       : UsualDevice());
    for (const auto& fault : faults_)
        options.WithFault(fault);
    for (const auto& script : scripts_)
        options.WithScript(script);
    if (!line_.empty()) options.At(line_);
    if (!pace_.empty()) options.WithPacing(pace_);
    return options;
}

void CatalogPlacement::AddTo(arguments::Command command) {
    command.AddOption("INSTRUMENT", name_, "Name of the instrument, see --list");
    command.AddOption("--load", loads_, "Load in grams; again with @TIME for later loads")
        .TypeName("GRAMS[@TIME]")
        .OneValueEach();
    command.AddOption("--with", switches_, "Set a switch of the instrument")
        .TypeName("NAME[=VALUE]")
        .OneValueEach();
    Placement::AddTo(command);
}

simulator::CatalogEntry CatalogPlacement::Entry() const {
    if (name_.empty()) throw std::invalid_argument("which instrument? See wbalance-sim --list");
    return simulator::FindInstrument(name_);
}

simulator::Options CatalogPlacement::SetUp() const {
    simulator::Options options = Placement::SetUp();
    for (const auto& load : loads_)
        options.loads.push_back(simulator::LoadStep::Parse(load));
    options.switches = switches_;
    return options;
}
