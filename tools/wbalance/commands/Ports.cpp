#include "Ports.h"

#include <QtCore/QJsonArray>
#include <memory>

#include "FormatOptions.h"
#include "line/PortList.h"
#include "output/Columns.h"
#include "output/Json.h"
#include "output/Stream.h"

namespace tool {
namespace {

constexpr char kExamples[] = R"(Examples:
  wbalance ports
  wbalance ports --json

A stable name leads to its adapter, whichever socket it is plugged into. Use it as --port.
)";

void PrintField(const char* label, const std::string& text) {
    if (!text.empty()) PrintLine("  " + Padded(label, 8) + " " + text);
}

std::string UseText(const PortInfo& port) {
    if (!port.holder.empty()) return "held by " + port.holder;
    if (port.mayOpen) return "free";
    return "not yours to open: its group is " + port.group;
}

void Describe(const PortInfo& port) {
    PrintLine(port.device);
    PrintField("maker", port.maker);
    PrintField("product", port.product);
    PrintField("serial", port.serialNumber);
    for (const auto& name : port.stableNames)
        PrintField("stable", name);
    PrintField("group", port.group);
    PrintField("use", UseText(port));
}

std::string Json(const PortInfo& port) {
    QJsonObject object;
    object["device"] = JsonText(port.device);
    object["maker"] = JsonText(port.maker);
    object["product"] = JsonText(port.product);
    object["serial"] = JsonText(port.serialNumber);
    QJsonArray names;
    for (const auto& name : port.stableNames)
        names.append(JsonText(name));
    object["stable"] = names;
    object["group"] = JsonText(port.group);
    object["may_open"] = port.mayOpen;
    object["holder"] = JsonText(port.holder);
    return JsonLine(object);
}

ExitCode Run(bool json) {
    const auto ports = ListPorts();
    if (ports.empty() && !json) {
        SayLine("wbalance: no serial port is there; plug the adapter in and see dmesg");
        return ExitCode::PortFailed;
    }
    for (const auto& port : ports)
        json ? PrintLine(Json(port)) : Describe(port);
    return ExitCode::Done;
}

}  // namespace

void AddPorts(arguments::Command application, ExitCode& exitCode) {
    const auto command = application.AddSubcommand(
        "ports", "List the serial ports, who may open them, and who has them open");
    command.Footer(kExamples);
    const auto json = std::make_shared<bool>(false);
    AddJsonFlag(command, *json, "one JSON object per line");
    command.Callback([json, &exitCode] { exitCode = Run(*json); });
}

}  // namespace tool
