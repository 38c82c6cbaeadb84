#include "simulator/line/PortEntries.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "simulator/line/VirtualLineState.h"

namespace simulator {
namespace {

namespace fs = std::filesystem;

constexpr char kDevices[] = "sys/devices/platform/wbalance-sim";

[[noreturn]] void FailWith(const fs::path& file) {
    throw std::system_error(errno, std::generic_category(), "cannot create " + file.string());
}

/// The files below "system". Paths are relative to it, as the system's are to "/".
class Files {
 public:
    /// Notes in `own` what is made of the device `root` and beside it, in the order of making;
    /// other directories are those of other ports, too.
    Files(const fs::path& directory, fs::path root, std::vector<fs::path>& own)
        : system_(directory / kSystemEntries),
          common_(directory / "common"),
          root_(std::move(root)),
          own_(own) {
        fs::create_directories(system_);
        fs::create_directories(common_);
    }

    const fs::path& Root() const { return root_; }

    void MakeFolder(const fs::path& folder) const {
        if (fs::is_directory(system_ / folder)) return;
        MakeFolder(folder.parent_path());
        fs::create_directory(system_ / folder);
        const bool isShared = folder.lexically_relative(root_).string().rfind("..", 0) == 0;
        if (!isShared) own_.push_back(system_ / folder);
    }

    void Write(const fs::path& file, const std::string& text) const {
        MakeFolder(file.parent_path());
        own_.push_back(system_ / file);
        WriteWhole(system_ / file, text);
    }

    /// A file of which many ports have the same takes room once.
    void WriteCommon(const fs::path& file, const std::string& text) const {
        std::string name = file.filename().string() + " " + text;
        std::replace(name.begin(), name.end(), '\n', ' ');
        MakeFolder(file.parent_path());
        own_.push_back(system_ / file);
        std::error_code none;
        fs::create_hard_link(common_ / name, system_ / file, none);
        if (!none) return;
        WriteWhole(system_ / file, text + "\n");
        fs::create_hard_link(system_ / file, common_ / name, none);
    }

    /// As the system's links in /sys and /dev, relative.
    void Link(const fs::path& link, const fs::path& target) const {
        MakeFolder(link.parent_path());
        std::error_code none;
        fs::remove(system_ / link, none);
        own_.push_back(system_ / link);
        fs::create_symlink(target.lexically_relative(link.parent_path()), system_ / link);
    }

 private:
    static void WriteWhole(const fs::path& file, const std::string& text) {
        const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        if (descriptor < 0) FailWith(file);
        const auto written = ::write(descriptor, text.data(), text.size());
        if (written >= 0) errno = ENOSPC;  // where it is not all of it
        const int error = errno;
        ::close(descriptor);
        errno = error;
        if (written != static_cast<ssize_t>(text.size())) FailWith(file);
    }

    const fs::path system_;
    const fs::path common_;
    const fs::path root_;
    std::vector<fs::path>& own_;
};

/// A device in /sys belongs to a subsystem and is driven by a driver, or by none.
void Belong(const Files& files, const fs::path& device, const std::string& subsystem,
            const std::string& driver) {
    const fs::path bus = "sys/bus/" + subsystem;
    files.MakeFolder(bus);
    files.Link(device / "subsystem", bus);
    if (driver.empty()) return;
    files.MakeFolder(bus / "drivers" / driver);
    files.Link(device / "driver", bus / "drivers" / driver);
}

std::string DeviceNumber(const std::string& name, const char* separator) {
    const PortNumber port = PortNumberOf(name.c_str());
    return std::to_string(port.major) + separator + std::to_string(port.minor);
}

/// The device to which programs refer by the port's name, below that to which the port belongs.
void CreateTerminal(const Files& files, const std::string& name, const fs::path& port) {
    const fs::path terminal = port / "tty" / name;
    files.Write(terminal / "dev", DeviceNumber(name, ":") + "\n");
    files.Write(terminal / "uevent",
                "MAJOR=" + DeviceNumber(name, "\nMINOR=") + "\nDEVNAME=" + name + "\n");
    files.Link(terminal / "subsystem", "sys/class/tty");
    files.Link(terminal / "device", port);
    files.Link("sys/class/tty/" + name, terminal);
    files.Write("dev/" + name, "");
}

/// A port on the board, as the firmware of a computer describes it.
void CreateBoardPort(const Files& files, const std::string& name) {
    const fs::path& device = files.Root();
    files.WriteCommon(device / "id", "PNP0501");
    files.WriteCommon(device / "uevent", "DRIVER=serial");
    Belong(files, device, "pnp", "serial");
    CreateTerminal(files, name, device);
}

/// A USB adapter with one port.
class UsbAdapter {
 public:
    UsbAdapter(const Files& files, std::string name, const UsbIdentity& identity,
               const std::string& serialNumber)
        : files_(files),
          name_(std::move(name)),
          identity_(identity),
          serialNumber_(identity.hasSerialNumber ? serialNumber : "") {}

    void Create() const {
        CreateDevice();
        CreateInterface();
        files_.WriteCommon(Port() / "port_number", "0");
        files_.WriteCommon(Port() / "uevent", std::string("DRIVER=") + identity_.portDriver);
        Belong(files_, Port(), "usb-serial", identity_.portDriver);
        CreateTerminal(files_, name_, Port());
        CreateUdevRecord();
        files_.Link(NameById(), "dev/" + name_);
        files_.Link(NameByPath(), "dev/" + name_);
    }

    static fs::path RootOf(const std::string& name) {
        return fs::path(kDevices) / "usb9" / PlaceOf(name);
    }

 private:
    /// Bus and socket.
    static std::string PlaceOf(const std::string& name) {
        return "9-" + std::to_string(SocketOf(name));
    }
    static unsigned SocketOf(const std::string& name) {
        return PortNumberOf(name.c_str()).minor + 1;
    }
    std::string Place() const { return PlaceOf(name_); }
    const fs::path& Device() const { return files_.Root(); }
    fs::path UdevRecord() const { return "run/udev/data/c" + DeviceNumber(name_, ":"); }
    fs::path NameById() const { return "dev/serial/by-id/usb-" + Serial() + "-if00-port0"; }
    fs::path NameByPath() const {
        return "dev/serial/by-path/platform-wbalance-sim-usb-0:" + Place().substr(2) + ":1.0-port0";
    }

    fs::path Interface() const { return Device() / (Place() + ":1.0"); }
    fs::path Port() const { return Interface() / name_; }

    void CreateDevice() const {
        const auto device = Device();
        files_.WriteCommon(device / "idVendor", identity_.vendorId);
        files_.WriteCommon(device / "idProduct", identity_.productId);
        files_.WriteCommon(device / "bcdDevice", identity_.release);
        files_.WriteCommon(device / "product", identity_.product);
        files_.WriteCommon(device / "bNumInterfaces", " 1");
        files_.WriteCommon(device / "busnum", "9");
        files_.WriteCommon(device / "uevent", "DEVTYPE=usb_device\nDRIVER=usb");
        files_.Write(device / "devnum", std::to_string(SocketOf(name_) + 1) + "\n");
        if (*identity_.manufacturer)
            files_.WriteCommon(device / "manufacturer", identity_.manufacturer);
        if (!serialNumber_.empty()) files_.Write(device / "serial", serialNumber_ + "\n");
        Belong(files_, device, "usb", "usb");
    }

    void CreateInterface() const {
        const auto interface = Interface();
        files_.WriteCommon(interface / "bInterfaceNumber", "00");
        files_.WriteCommon(interface / "uevent",
                           std::string("DEVTYPE=usb_interface\nDRIVER=") + identity_.driver);
        if (*identity_.interface) files_.WriteCommon(interface / "interface", identity_.interface);
        Belong(files_, interface, "usb", identity_.driver);
    }

    /// Where udev names things, blanks are underscores; who has no name is called by its number.
    static std::string Underscored(std::string text) {
        std::replace(text.begin(), text.end(), ' ', '_');
        return text;
    }
    std::string Maker() const {
        return *identity_.manufacturer ? Underscored(identity_.manufacturer) : identity_.vendorId;
    }
    std::string Serial() const {
        const std::string model = Maker() + "_" + Underscored(identity_.product);
        return serialNumber_.empty() ? model : model + "_" + serialNumber_;
    }

    void CreateUdevRecord() const {
        std::string record = "S:" + NameById().lexically_relative("dev").string() +
                             "\nS:" + NameByPath().lexically_relative("dev").string() +
                             "\nI:1\nE:ID_BUS=usb\nE:ID_VENDOR=" + Maker() +
                             "\nE:ID_VENDOR_ID=" + identity_.vendorId +
                             "\nE:ID_MODEL=" + Underscored(identity_.product) +
                             "\nE:ID_MODEL_ID=" + identity_.productId +
                             "\nE:ID_REVISION=" + identity_.release + "\nE:ID_SERIAL=" + Serial() +
                             "\nE:ID_USB_INTERFACE_NUM=00\nE:ID_USB_DRIVER=" + identity_.driver;
        if (!serialNumber_.empty()) record += "\nE:ID_SERIAL_SHORT=" + serialNumber_;
        files_.Write(UdevRecord(), record + "\nG:systemd\n");
    }

    const Files& files_;
    const std::string name_;
    const UsbIdentity identity_;
    const std::string serialNumber_;
};

}  // namespace

PortEntries::PortEntries(const fs::path& directory, const std::string& name, const UsbIdentity& usb,
                         const std::string& serialNumber)
    : name_(name) {
    const bool isUsb = PortNumberOf(name.c_str()).isUsb;
    const fs::path root = isUsb ? UsbAdapter::RootOf(name) : fs::path(kDevices) / ("00:" + name);
    const Files files(directory, root, own_);
    try {
        if (isUsb)
            UsbAdapter(files, name, usb, serialNumber).Create();
        else
            CreateBoardPort(files, name);
    } catch (...) {
        RemoveAll();
        throw;
    }
}

PortEntries::~PortEntries() {
    RemoveAll();
}

/// Without a descriptor: there may be none left. Of adapters that have no serial number the last
/// one has the link by identity.
void PortEntries::RemoveAll() const {
    for (auto entry = own_.rbegin(); entry != own_.rend(); ++entry) {
        std::error_code none;
        const std::string target = fs::read_symlink(*entry, none).filename().string();
        const bool isOfOther = target.rfind("ttyUSB", 0) == 0 && target != name_;
        if (!isOfOther) fs::remove(*entry, none);
    }
}

}  // namespace simulator
