#include "PortList.h"

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QtSerialPort/QSerialPortInfo>
#include <algorithm>
#include <filesystem>

#include "PortName.h"
#include "PortTrouble.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

void AddLinks(const fs::path& folder, const fs::path& device, std::vector<std::string>& names) {
    std::vector<std::string> found;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code broken;
        if (entry->is_symlink(broken) && fs::canonical(entry->path(), broken) == device && !broken)
            found.push_back(entry->path());
    }
    std::sort(found.begin(), found.end());
    names.insert(names.end(), found.begin(), found.end());
}

std::string GroupOf(const std::string& device) {
    struct stat node {};
    if (stat(device.c_str(), &node) != 0) return "";
    const auto* group = getgrgid(node.st_gid);
    return group != nullptr ? group->gr_name : std::to_string(node.st_gid);
}

PortInfo Describe(const QSerialPortInfo& found) {
    PortInfo port;
    port.device = found.systemLocation().toStdString();
    port.maker = found.manufacturer().toStdString();
    port.product = found.description().toStdString();
    port.serialNumber = found.serialNumber().toStdString();
    port.stableNames = StableNamesOf(port.device);
    port.group = GroupOf(port.device);
    port.mayOpen = access(port.device.c_str(), R_OK | W_OK) == 0;
    port.holder = HolderOf(port.device);
    return port;
}

bool ComesBefore(const PortInfo& a, const PortInfo& b) {
    const auto first = PortNumber::OfDevice(a.device);
    const auto second = PortNumber::OfDevice(b.device);
    return std::make_pair(first->kind, first->number) <
           std::make_pair(second->kind, second->number);
}

}  // namespace

std::vector<PortInfo> ListPorts() {
    std::vector<PortInfo> ports;
    for (const auto& found : QSerialPortInfo::availablePorts()) {
        if (PortNumber::OfDevice(found.systemLocation().toStdString()))
            ports.push_back(Describe(found));
    }
    std::sort(ports.begin(), ports.end(), ComesBefore);
    return ports;
}

std::vector<std::string> StableNamesOf(const std::string& device, const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    const fs::path target = fs::canonical(device, error);
    if (error) return names;
    AddLinks(fs::path(folder) / "serial/by-id", target, names);
    AddLinks(fs::path(folder) / "serial/by-path", target, names);
    AddLinks(folder, target, names);
    return names;
}

}  // namespace tool
