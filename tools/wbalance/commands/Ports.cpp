#include "Ports.h"

#include <CLI/CLI.hpp>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <cstdio>
#include <memory>

#include "line/PortList.h"

namespace tool {
namespace {

constexpr char kExamples[] =
    "Examples:\n"
    "  wbalance ports\n"
    "  wbalance ports --json\n"
    "\n"
    "A stable name leads to the adapter wherever it is plugged in; use it as --port.\n";

void PrintLine(const char* label, const std::string& text) {
    if (!text.empty()) std::printf("  %-8s %s\n", label, text.c_str());
}

std::string UseText(const PortInfo& port) {
    if (!port.holder.empty()) return "held by " + port.holder;
    if (port.mayOpen) return "free";
    return "not yours to open: its group is " + port.group;
}

void Print(const PortInfo& port) {
    std::printf("%s\n", port.device.c_str());
    PrintLine("maker", port.maker);
    PrintLine("product", port.product);
    PrintLine("serial", port.serialNumber);
    for (const auto& name : port.stableNames)
        PrintLine("stable", name);
    PrintLine("group", port.group);
    PrintLine("use", UseText(port));
}

std::string Json(const PortInfo& port) {
    QJsonObject object;
    object["device"] = QString::fromStdString(port.device);
    object["maker"] = QString::fromStdString(port.maker);
    object["product"] = QString::fromStdString(port.product);
    object["serial"] = QString::fromStdString(port.serialNumber);
    QJsonArray names;
    for (const auto& name : port.stableNames)
        names.append(QString::fromStdString(name));
    object["stable"] = names;
    object["group"] = QString::fromStdString(port.group);
    object["may_open"] = port.mayOpen;
    object["holder"] = QString::fromStdString(port.holder);
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

ExitCode Run(bool json) {
    const auto ports = ListPorts();
    if (ports.empty() && !json) {
        std::fprintf(stderr,
                     "wbalance: no serial port is there; plug the adapter in and see dmesg\n");
        return ExitCode::PortFailed;
    }
    for (const auto& port : ports)
        json ? static_cast<void>(std::puts(Json(port).c_str())) : Print(port);
    return ExitCode::Done;
}

}  // namespace

void AddPorts(CLI::App& application, ExitCode& exitCode) {
    auto* command = application.add_subcommand(
        "ports", "List the serial ports, who may use and who holds them");
    command->footer(kExamples);
    const auto json = std::make_shared<bool>(false);
    command->add_flag("--json", *json, "one JSON object a line");
    command->callback([json, &exitCode] { exitCode = Run(*json); });
}

}  // namespace tool
