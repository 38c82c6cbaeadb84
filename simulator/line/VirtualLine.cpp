#include "simulator/line/VirtualLine.h"

#include <fcntl.h>
#include <linux/futex.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <stdexcept>
#include <system_error>

#include "simulator/line/DeviceName.h"

namespace simulator {
namespace {

constexpr std::uint64_t kNewPortSettings = PackSettings(CS8, 0, 9600);
constexpr unsigned kHostControlLines = TIOCM_DTR | TIOCM_RTS;
constexpr unsigned kReadyInstrument = TIOCM_CTS | TIOCM_DSR | TIOCM_CD;

[[noreturn]] void FailWith(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

std::string NameOf(const std::string& device) {
    return device.substr(sizeof("/dev/") - 1);
}

/// In the form of FTDI's; adapters that are plugged in first under different names differ.
std::string SerialNumberOf(const std::string& device) {
    const std::string number = device.substr(device.find_last_not_of("0123456789") + 1);
    return "A6" + std::string(6 - std::min<std::size_t>(6, number.size()), '0') + number;
}

/// On a full file system it fails here, not when a host writes to the mapping.
void CreateState(const std::filesystem::path& file) {
    VirtualLineState state = {};
    file.filename().string().copy(state.name, sizeof state.name - 1);
    state.mode = 0660;
    state.group = 20;
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0) FailWith("cannot serve " + file.string());
    const ssize_t written = ::write(descriptor, &state, sizeof state);
    if (written >= 0) errno = ENOSPC;  // where it is not all of it
    const int error = errno;
    ::close(descriptor);
    errno = error;
    if (written != sizeof state) FailWith("cannot serve " + file.string());
}

VirtualLineState* MapState(const std::filesystem::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
    if (descriptor < 0) FailWith("cannot open " + file.string());
    void* memory = ::mmap(nullptr, sizeof(VirtualLineState), PROT_READ | PROT_WRITE, MAP_SHARED,
                          descriptor, 0);
    ::close(descriptor);
    if (memory == MAP_FAILED) FailWith("cannot map " + file.string());
    return static_cast<VirtualLineState*>(memory);
}

void CreateBell(const std::filesystem::path& file) {
    if (::mkfifo(file.c_str(), 0666) != 0) FailWith("cannot create " + file.string());
}

int OpenBell(const std::filesystem::path& file) {
    const int bell = ::open(file.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (bell < 0) FailWith("cannot open " + file.string());
    return bell;
}

void WakeWaiters(std::atomic<std::uint32_t>& word) {
    ::syscall(SYS_futex, reinterpret_cast<std::uint32_t*>(&word), FUTEX_WAKE, INT_MAX);
}

Parity ParityOf(tcflag_t control) {
    if (!(control & PARENB)) return Parity::None;
    const bool odd = (control & PARODD) != 0;
    if (control & CMSPAR) return odd ? Parity::Mark : Parity::Space;
    return odd ? Parity::Odd : Parity::Even;
}

int DataBitsOf(tcflag_t control) {
    switch (control & CSIZE) {
        case CS5:
            return 5;
        case CS6:
            return 6;
        case CS7:
            return 7;
        default:
            return 8;
    }
}

UartSettings Unpacked(std::uint64_t settings) {
    const tcflag_t control = PackedLineFlags(settings);
    UartSettings line;
    line.baudRate = static_cast<int>(PackedBaudRate(settings));
    line.dataBits = DataBitsOf(control);
    line.parity = ParityOf(control);
    line.stopBits = control & CSTOPB ? 2 : 1;
    if (PackedXonXoff(settings)) line.flowControl = FlowControl::Software;
    if (control & CRTSCTS) line.flowControl = FlowControl::Hardware;
    return line;
}

}  // namespace

class VirtualLine::Files {
 public:
    explicit Files(const std::filesystem::path& file)
        : state_(MapState(file)), bell_(OpenBell(file.string() + ".bell")) {}
    ~Files() { ::close(bell_); }
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;

    VirtualLineState* State() const { return state_.get(); }
    int Bell() const { return bell_; }

 private:
    struct Unmap {
        void operator()(VirtualLineState* state) const { ::munmap(state, sizeof *state); }
    };

    const std::unique_ptr<VirtualLineState, Unmap> state_;
    const int bell_;
};

VirtualLine::VirtualLine(std::filesystem::path directory, const std::string& device,
                         const UsbIdentity& usb)
    : directory_(std::move(directory)), usb_(usb), serialNumber_(SerialNumberOf(device)) {
    try {
        PlugIn(device);
    } catch (...) {
        for (const auto& name : names_)
            RemoveFiles(name);
        throw;
    }
}

VirtualLine::~VirtualLine() {
    Unplug();
    for (const auto& name : names_)
        RemoveFiles(name);
}

void VirtualLine::PlugIn(const std::string& device) {
    if (ServedDevice(device) != device)
        throw std::invalid_argument("cannot serve the device " + device);
    Unplug();
    auto terminal = std::make_unique<PseudoTerminal>();
    if (device != device_) {
        files_ = FilesOf(NameOf(device));
        device_ = device;
        state_ = files_->State();
    }
    auto entries = std::make_unique<PortEntries>(directory_, NameOf(device_), usb_, serialNumber_);
    LinkTerminal(*terminal);
    entries_ = std::move(entries);
    terminal_ = std::move(terminal);
    state_->ptsNumber = terminal_->Number();
    state_->ptsCreated = 0;
    state_->settings = kNewPortSettings;
    state_->controlLines = kReadyInstrument;
    state_->lowLatency = 0;
    breaksSeen_ = state_->breaks;
    state_->layout = VirtualLineState::kCurrentLayout;
    state_->present = 1;
}

std::unique_ptr<VirtualLine::Files> VirtualLine::FilesOf(const std::string& name) {
    if (names_.count(name) == 0) CreateFiles(name);
    return std::make_unique<Files>(File(name));
}

/// All of them, or none where something is in the way.
void VirtualLine::CreateFiles(const std::string& name) {
    if (std::filesystem::exists(File(name)))
        throw std::invalid_argument("an instrument is at /dev/" + name +
                                    " already; give each its own port");
    try {
        CreateState(File(name));
        CreateBell(File(name + ".bell"));
        names_.insert(name);
    } catch (...) {
        RemoveFiles(name);
        throw;
    }
}

void VirtualLine::RemoveFiles(const std::string& name) const {
    std::error_code ignored;
    for (const auto& each : {name, name + ".bell", "LCK.." + name, "LCK.." + name + ".rmlock"})
        std::filesystem::remove(File(each), ignored);
}

void VirtualLine::LinkTerminal(const PseudoTerminal& terminal) const {
    const auto link = File("pts" + std::to_string(terminal.Number()));
    std::error_code ignored;
    std::filesystem::remove(link, ignored);
    std::filesystem::create_symlink(NameOf(device_), link);
}

void VirtualLine::Unplug() {
    if (!terminal_) return;
    state_->present = 0;
    entries_.reset();
    std::error_code ignored;
    std::filesystem::remove(File("pts" + std::to_string(terminal_->Number())), ignored);
    HungUp();
    terminal_.reset();
}

/// The bell always; the terminal only while open, since a closed one would always be ready.
std::vector<int> VirtualLine::Descriptors() const {
    if (!IsOpen()) return {files_->Bell()};
    return {files_->Bell(), terminal_->Descriptor()};
}

std::optional<std::chrono::milliseconds> VirtualLine::LookEvery() const {
    if (!terminal_ || state_->ptsCreated != 0) return std::nullopt;
    return std::chrono::milliseconds(10);
}

void VirtualLine::Serve(const std::function<void(const Arrival&)>& arrived) {
    const std::uint32_t requests = state_->requests;
    EmptyBell();
    if (terminal_) {
        TellAge();
        if (requests != state_->acknowledged) Opened();
        const Arrival arrival = TakeBytes();
        if (!arrival.bytes.empty() || arrival.breaks > 0) arrived(arrival);
    }
    if (requests == state_->acknowledged) return;
    state_->acknowledged = requests;
    WakeWaiters(state_->acknowledged);
}

/// Time stamps go by ticks of some milliseconds: told within the same tick, the age might be that
/// of a later terminal of the same number, too.
void VirtualLine::TellAge() {
    if (state_->ptsCreated != 0) return;
    timespec now = {};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    const std::uint64_t created = Nanoseconds(terminal_->Created());
    if (Nanoseconds(now) > created) state_->ptsCreated = created;
}

void VirtualLine::EmptyBell() const {
    std::array<char, 64> rings;
    while (::read(files_->Bell(), rings.data(), rings.size()) > 0) {
    }
}

HostLine::Arrival VirtualLine::TakeBytes() {
    Arrival arrival;
    bool gone = false;
    arrival.bytes = terminal_->Read(&gone);
    arrival.settings = HostSettings();
    const unsigned breaks = state_->breaks;
    arrival.breaks = breaks - breaksSeen_;
    breaksSeen_ = breaks;
    if (gone) HungUp();
    return arrival;
}

/// A program that writes to the bell has the port open, at least for the moment. Opening raises DTR
/// and RTS.
void VirtualLine::Opened() {
    if (state_->hostOpen) return;
    state_->controlLines |= kHostControlLines;
    state_->hostOpen = 1;
}

/// The last descriptor is closed: a claim of the port and the host's control lines go with it.
void VirtualLine::HungUp() {
    state_->hostOpen = 0;
    state_->exclusive = 0;
    state_->controlLines &= ~kHostControlLines;
}

void VirtualLine::Deliver(const std::vector<Character>& characters) {
    if (!IsOpen()) return;
    const std::uint64_t settings = state_->settings;
    std::string bytes;
    for (const Character& character : characters) {
        const bool checked = PackedParityCheck(settings) && character.IsDamaged();
        if (checked && PackedIgnoreDamaged(settings)) continue;
        bytes += checked ? '\0' : character.byte;
    }
    terminal_->Write(bytes);
}

UartSettings VirtualLine::HostSettings() const {
    return Unpacked(state_->settings);
}

void VirtualLine::SetInstrumentControlLines(unsigned bits) {
    state_->controlLines = (state_->controlLines & kHostControlLines) | (bits & ~kHostControlLines);
}

void VirtualLine::SetNode(const Node& node) {
    state_->mode = node.mode;
    state_->owner = node.owner;
    state_->group = node.group;
}

}  // namespace simulator
