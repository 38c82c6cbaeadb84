#include "simulator/line/VirtualLine.h"

#include <fcntl.h>
#include <linux/futex.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <stdexcept>
#include <system_error>

#include "simulator/line/DeviceName.h"

namespace simulator {
namespace {

constexpr std::uint64_t newPortSettings = packSettings(CS8, 0, 9600);
constexpr unsigned hostControlLines = TIOCM_DTR | TIOCM_RTS;
constexpr unsigned readyInstrument = TIOCM_CTS | TIOCM_DSR | TIOCM_CD;

[[noreturn]] void failWith(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

std::string nameOf(const std::string& device) {
    return device.substr(sizeof("/dev/") - 1);
}

/// On a full file system it fails here, not when a host writes to the mapping.
void createState(const std::filesystem::path& file) {
    VirtualLineState state = {};
    file.filename().string().copy(state.name, sizeof state.name - 1);
    state.mode = 0660;
    state.group = 20;
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0) failWith("cannot serve " + file.string());
    const ssize_t written = ::write(descriptor, &state, sizeof state);
    if (written >= 0) errno = ENOSPC;  // where it is not all of it
    const int error = errno;
    ::close(descriptor);
    errno = error;
    if (written != sizeof state) failWith("cannot serve " + file.string());
}

VirtualLineState* mapState(const std::filesystem::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
    if (descriptor < 0) failWith("cannot open " + file.string());
    void* memory = ::mmap(nullptr, sizeof(VirtualLineState), PROT_READ | PROT_WRITE, MAP_SHARED,
                          descriptor, 0);
    ::close(descriptor);
    if (memory == MAP_FAILED) failWith("cannot map " + file.string());
    return static_cast<VirtualLineState*>(memory);
}

void createBell(const std::filesystem::path& file) {
    if (::mkfifo(file.c_str(), 0666) != 0) failWith("cannot create " + file.string());
}

int openBell(const std::filesystem::path& file) {
    const int bell = ::open(file.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (bell < 0) failWith("cannot open " + file.string());
    return bell;
}

void wakeWaiters(std::atomic<std::uint32_t>& word) {
    ::syscall(SYS_futex, reinterpret_cast<std::uint32_t*>(&word), FUTEX_WAKE, INT_MAX);
}

Parity parityOf(tcflag_t control) {
    if (!(control & PARENB)) return Parity::none;
    const bool odd = control & PARODD;
    if (control & CMSPAR) return odd ? Parity::mark : Parity::space;
    return odd ? Parity::odd : Parity::even;
}

int dataBitsOf(tcflag_t control) {
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

LineSettings unpacked(std::uint64_t settings) {
    const tcflag_t control = packedLineFlags(settings);
    LineSettings line;
    line.baudRate = static_cast<int>(packedBaudRate(settings));
    line.dataBits = dataBitsOf(control);
    line.parity = parityOf(control);
    line.stopBits = control & CSTOPB ? 2 : 1;
    if (packedXonXoff(settings)) line.flowControl = FlowControl::software;
    if (control & CRTSCTS) line.flowControl = FlowControl::hardware;
    return line;
}

}  // namespace

class VirtualLine::Files {
 public:
    explicit Files(const std::filesystem::path& file)
        : state_(mapState(file)), bell_(openBell(file.string() + ".bell")) {}
    ~Files() { ::close(bell_); }
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;

    VirtualLineState* state() const { return state_.get(); }
    int bell() const { return bell_; }

 private:
    struct Unmap {
        void operator()(VirtualLineState* state) const { ::munmap(state, sizeof *state); }
    };

    const std::unique_ptr<VirtualLineState, Unmap> state_;
    const int bell_;
};

VirtualLine::VirtualLine(std::filesystem::path directory, const std::string& device)
    : directory_(std::move(directory)) {
    try {
        plugIn(device);
    } catch (...) {
        for (const auto& name : names_)
            removeFiles(name);
        throw;
    }
}

VirtualLine::~VirtualLine() {
    unplug();
    for (const auto& name : names_)
        removeFiles(name);
}

void VirtualLine::plugIn(const std::string& device) {
    if (servedDevice(device) != device)
        throw std::invalid_argument("cannot serve the device " + device);
    unplug();
    auto terminal = std::make_unique<PseudoTerminal>();
    if (device != device_) {
        files_ = filesOf(nameOf(device));
        device_ = device;
        state_ = files_->state();
    }
    linkTerminal(*terminal);
    terminal_ = std::move(terminal);
    state_->ptsNumber = terminal_->number();
    state_->ptsCreated = 0;
    state_->settings = newPortSettings;
    state_->controlLines = readyInstrument;
    state_->lowLatency = 0;
    breaksSeen_ = state_->breaks;
    state_->layout = VirtualLineState::currentLayout;
    state_->present = 1;
}

std::unique_ptr<VirtualLine::Files> VirtualLine::filesOf(const std::string& name) {
    if (names_.count(name) == 0) createFiles(name);
    return std::make_unique<Files>(file(name));
}

/// All of them, or none where something is in the way.
void VirtualLine::createFiles(const std::string& name) {
    if (std::filesystem::exists(file(name)))
        throw std::invalid_argument("an instrument is at /dev/" + name +
                                    " already; give each its own port");
    try {
        createState(file(name));
        createBell(file(name + ".bell"));
        names_.insert(name);
    } catch (...) {
        removeFiles(name);
        throw;
    }
}

void VirtualLine::removeFiles(const std::string& name) const {
    std::error_code ignored;
    for (const auto& each : {name, name + ".bell", "LCK.." + name, "LCK.." + name + ".rmlock"})
        std::filesystem::remove(file(each), ignored);
}

void VirtualLine::linkTerminal(const PseudoTerminal& terminal) const {
    const auto link = file("pts" + std::to_string(terminal.number()));
    std::error_code ignored;
    std::filesystem::remove(link, ignored);
    std::filesystem::create_symlink(nameOf(device_), link);
}

void VirtualLine::unplug() {
    if (!terminal_) return;
    state_->present = 0;
    std::error_code ignored;
    std::filesystem::remove(file("pts" + std::to_string(terminal_->number())), ignored);
    hungUp();
    terminal_.reset();
}

/// The bell always; the terminal only while open, since a closed one would always be ready.
std::vector<int> VirtualLine::descriptors() const {
    if (!isOpen()) return {files_->bell()};
    return {files_->bell(), terminal_->descriptor()};
}

std::optional<std::chrono::milliseconds> VirtualLine::lookEvery() const {
    if (!terminal_ || state_->ptsCreated != 0) return std::nullopt;
    return std::chrono::milliseconds(10);
}

void VirtualLine::serve(const std::function<void(const Arrival&)>& arrived) {
    const std::uint32_t requests = state_->requests;
    emptyBell();
    if (terminal_) {
        tellAge();
        if (requests != state_->acknowledged) opened();
        const Arrival arrival = takeBytes();
        if (!arrival.bytes.empty() || arrival.breaks > 0) arrived(arrival);
    }
    if (requests == state_->acknowledged) return;
    state_->acknowledged = requests;
    wakeWaiters(state_->acknowledged);
}

/// Time stamps go by ticks of some milliseconds: told within the same tick, the age might be that
/// of a later terminal of the same number, too.
void VirtualLine::tellAge() {
    if (state_->ptsCreated != 0) return;
    timespec now = {};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    const std::uint64_t created = nanoseconds(terminal_->created());
    if (nanoseconds(now) > created) state_->ptsCreated = created;
}

void VirtualLine::emptyBell() const {
    std::array<char, 64> rings;
    while (::read(files_->bell(), rings.data(), rings.size()) > 0) {
    }
}

HostLine::Arrival VirtualLine::takeBytes() {
    Arrival arrival;
    bool gone = false;
    arrival.bytes = terminal_->read(&gone);
    arrival.settings = hostSettings();
    const unsigned breaks = state_->breaks;
    arrival.breaks = breaks - breaksSeen_;
    breaksSeen_ = breaks;
    if (gone) hungUp();
    return arrival;
}

/// A program that writes to the bell has the port open, at least for the moment. Opening raises DTR
/// and RTS.
void VirtualLine::opened() {
    if (state_->hostOpen) return;
    state_->controlLines |= hostControlLines;
    state_->hostOpen = 1;
}

/// The last descriptor is closed: a claim of the port and the host's control lines go with it.
void VirtualLine::hungUp() {
    state_->hostOpen = 0;
    state_->exclusive = 0;
    state_->controlLines &= ~hostControlLines;
}

void VirtualLine::deliver(const std::vector<Character>& characters) {
    if (!isOpen()) return;
    const std::uint64_t settings = state_->settings;
    std::string bytes;
    for (const Character& character : characters) {
        const bool checked = packedParityCheck(settings) && character.isDamaged();
        if (checked && packedIgnoreDamaged(settings)) continue;
        bytes += checked ? '\0' : character.byte;
    }
    terminal_->write(bytes);
}

LineSettings VirtualLine::hostSettings() const {
    return unpacked(state_->settings);
}

void VirtualLine::setInstrumentControlLines(unsigned bits) {
    state_->controlLines = (state_->controlLines & hostControlLines) | (bits & ~hostControlLines);
}

void VirtualLine::setNode(const Node& node) {
    state_->mode = node.mode;
    state_->owner = node.owner;
    state_->group = node.group;
}

}  // namespace simulator
