#include "simulator/ConnectedInstrument.h"

#include <algorithm>
#include <stdexcept>
#include <system_error>

namespace simulator {
namespace {

constexpr std::size_t kMostOtherSettings = 100;

/// After such a time without anything due the balance's time is brought up to date, so that nobody
/// waits for the weeks that a host was silent.
constexpr auto kLongestRest = std::chrono::minutes(1);

constexpr auto kPlugRetry = std::chrono::seconds(1);

}  // namespace

ConnectedInstrument::ConnectedInstrument(const CatalogEntry& entry, const Options& options,
                                         std::unique_ptr<HostLine> line)
    : name_(entry.name),
      instrument_(entry, options.switches),
      settings_(options.line.value_or(entry.line)),
      pace_(options.pace),
      line_(std::move(line)),
      returnsAs_(line_->Device()) {
    for (const Fault& fault : options.faults)
        instrument_.AddFault(fault);
    for (const LoadStep& load : options.loads)
        PutOn(load);
    Prepare(options.script);
    Serve();
}

/// What the instrument can't do shows now, not in the middle of a run.
void ConnectedInstrument::Prepare(const Script& script) {
    for (const ScriptStep& step : script) {
        try {
            if (step.change.kind == Change::Kind::Setting)
                instrument_.CheckSwitch(step.change.text);
        } catch (const std::invalid_argument& error) {
            throw std::invalid_argument(step.place + ": " + error.what());
        }
        script_.push_back(step);
    }
    std::stable_sort(script_.begin(), script_.end(),
                     [](const ScriptStep& a, const ScriptStep& b) { return a.at < b.at; });
}

void ConnectedInstrument::PutOn(const LoadStep& load) {
    if (load.at == Time(0))
        instrument_.Balance().StartWithLoad(load.grams);
    else
        instrument_.Balance().ScheduleLoad(load.at, load.grams);
}

/// Changes come into force at the present time: what was due before is done first.
template <typename Work>
void ConnectedInstrument::DoNow(const Work& work) {
    const Lock lock(mutex_);
    ServeLocked();
    work();
    CatchUp();
}

/// What is taken over on another thread than the bench's may be due later: the bench has to know.
void ConnectedInstrument::CatchUp() {
    ServeLocked();
    if (changed_) changed_();
}

void ConnectedInstrument::Apply(const Change& words) {
    DoNow([&] { ApplyAt(words, Now()); });
    Lock lock(mutex_);
    while (IsPlugDue() && plugTrouble_.empty())  // which may also pass by itself
        plugServed_.wait_for(lock, 20ms);
    if (IsPlugDue()) throw std::runtime_error(plugTrouble_);
}

void ConnectedInstrument::ApplyAt(const Change& change, Time at) {
    switch (change.kind) {
        case Change::Kind::Load:
            return PutOn({change.grams, at});
        case Change::Kind::Setting:
            return instrument_.Choose(change.text);
        case Change::Kind::Fault:
            return instrument_.AddFault(change.fault.ShiftedBy(at));
        case Change::Kind::EndFaults:
            return instrument_.EndFaults(change.text);
        case Change::Kind::PlugIn:
            if (!change.text.empty()) returnsAs_ = change.text;
            return instrument_.EndFaults(kUnplug);
        case Change::Kind::Press:
            return instrument_.Press(change.key);
    }
}

void ConnectedInstrument::ServeScript() {
    while (!script_.empty() && script_.front().at <= Now()) {
        const ScriptStep step = script_.front();
        script_.pop_front();
        instrument_.Advance(step.at);
        try {
            ApplyAt(step.change, step.at);
        } catch (const std::invalid_argument& error) {  // what was possible when the run began
            Record(LineEvent::Kind::Trouble, step.place + ": " + error.what());
        }
    }
}

void ConnectedInstrument::SetLoad(double grams) {
    DoNow([&] { instrument_.Balance().SetLoad(grams); });
}

void ConnectedInstrument::AddFault(const std::string& fault) {
    const Fault parsed = Fault::Parse(fault);
    DoNow([&] { instrument_.AddFault(parsed); });
}

void ConnectedInstrument::ClearFaults() {
    DoNow([&] { instrument_.ClearFaults(); });
}

std::vector<std::string> ConnectedInstrument::FaultsInForce() {
    const Lock lock(mutex_);
    CatchUp();
    std::vector<std::string> names;
    for (const Fault& fault : instrument_.Faults())
        if (fault.IsActive(Now())) names.push_back(fault.name);
    return names;
}

void ConnectedInstrument::Unplug() {
    Apply(Change::Parse(kUnplug));
}

void ConnectedInstrument::PlugIn() {
    Apply(Change::Parse("plug-in"));
}

void ConnectedInstrument::PlugIn(const std::string& device) {
    Apply(Change::Parse("plug-in as " + device));
}

std::string ConnectedInstrument::SentByHost() {
    return Sent(LineEvent::Kind::FromHost);
}

std::string ConnectedInstrument::SentByInstrument() {
    return Sent(LineEvent::Kind::FromInstrument);
}

std::string ConnectedInstrument::Sent(LineEvent::Kind kind) {
    std::string bytes;
    for (const LineEvent& event : Log())
        if (event.kind == kind) bytes += event.bytes;
    return bytes;
}

std::vector<LineEvent> ConnectedInstrument::Log() {
    const Lock lock(mutex_);
    CatchUp();
    return log_.Events();
}

void ConnectedInstrument::ClearLog() {
    const Lock lock(mutex_);
    CatchUp();
    log_.Clear();
    settingsOfLastCommand_.reset();
}

void ConnectedInstrument::OnEvent(Listener listener) {
    const Lock lock(mutex_);
    listener_ = std::move(listener);
}

std::optional<UartSettings> ConnectedInstrument::SettingsOfLastCommand() {
    const Lock lock(mutex_);
    CatchUp();
    return settingsOfLastCommand_;
}

UartSettings ConnectedInstrument::HostSettings() {
    const Lock lock(mutex_);
    return line_->HostSettings();
}

bool ConnectedInstrument::IsOpenedByHost() {
    const Lock lock(mutex_);
    CatchUp();
    return line_->IsOpen();
}

std::string ConnectedInstrument::Device() {
    const Lock lock(mutex_);
    return line_->Device();
}

void ConnectedInstrument::WithLine(const std::function<void(HostLine&)>& work) {
    DoNow([&] { work(*line_); });
}

void ConnectedInstrument::WithBalance(const std::function<void(BalanceModel&)>& work) {
    DoNow([&] { work(instrument_.Balance()); });
}

void ConnectedInstrument::Serve() {
    const Lock lock(mutex_);
    ServePlug();
    ServeLocked();
}

std::vector<int> ConnectedInstrument::Descriptors() {
    const Lock lock(mutex_);
    return line_->Descriptors();
}

ConnectedInstrument::Clock::time_point ConnectedInstrument::Deadline() {
    const Lock lock(mutex_);
    Moment first = SinceSetUp() + kLongestRest;
    const auto consider = [&](Moment due) { first = std::min(first, due); };
    if (const auto event = instrument_.NextEvent()) consider(*event);
    if (IsPlugDue()) consider(std::max(SinceSetUp(), plugAgainAt_));
    if (!script_.empty()) consider(script_.front().at);
    if (const auto due = toInstrument_.Due()) consider(*due);
    if (const auto due = toHost_.Due()) consider(*due);
    if (pace_ && pace_->Due()) consider(*pace_->Due());
    if (const auto interval = line_->LookEvery()) consider(SinceSetUp() + *interval);
    return start_ + first;
}

ConnectedInstrument::Moment ConnectedInstrument::SinceSetUp() const {
    return std::chrono::duration_cast<Moment>(Clock::now() - start_);
}

void ConnectedInstrument::ServeLocked() {
    ServeScript();
    line_->Serve([this](const HostLine::Arrival& arrival) { TakeArrival(arrival); });
    ServeOpening();
    PassToInstrument();
    instrument_.Advance(Now());
    TakeAnswers();
    PassToHost();
}

bool ConnectedInstrument::IsPlugDue() const {
    return plugged_ == instrument_.EffectsAt(Now()).isUnplugged;
}

/// Only the serving thread pulls a terminal out: while it polled one that another thread closes,
/// the host would not be hung up until that poll had ended.
void ConnectedInstrument::ServePlug() {
    const std::string device = instrument_.EffectsAt(Now()).returnsAs;
    if (!device.empty()) returnsAs_ = device;
    if (!IsPlugDue()) return plugTrouble_.clear();
    if (SinceSetUp() < plugAgainAt_) return;
    plugged_ ? PullOut() : PutBack();
    plugServed_.notify_all();
}

void ConnectedInstrument::PullOut() {
    plugged_ = false;
    Record(LineEvent::Kind::Unplugged, line_->Device());
    line_->Unplug();
}

/// The system may be short of descriptors, terminals or space; what is wrong is said once.
void ConnectedInstrument::PutBack() {
    try {
        PlugInAs(returnsAs_);
    } catch (const std::system_error& error) {
        const std::string trouble = returnsAs_ + " can't be plugged in: " + error.what() +
                                    "; it is tried again each second";
        plugAgainAt_ = SinceSetUp() + kPlugRetry;
        if (trouble == plugTrouble_) return;
        plugTrouble_ = trouble;
        return Record(LineEvent::Kind::Trouble, trouble);
    }
    plugged_ = true;
    plugTrouble_.clear();
    plugAgainAt_ = Moment(0);
    Record(LineEvent::Kind::PluggedIn, line_->Device());
}

void ConnectedInstrument::PlugInAs(const std::string& device) {
    try {
        line_->PlugIn(device);
    } catch (const std::invalid_argument&) {  // another instrument is there
        returnsAs_ = line_->Device();
        line_->PlugIn(returnsAs_);
    }
}

void ConnectedInstrument::TakeArrival(const HostLine::Arrival& arrival) {
    ServeOpening();
    TakeBytes(arrival);
    PassToInstrument();
    for (unsigned i = 0; i < arrival.breaks; ++i)
        instrument_.ReceiveBreak(Now());
}

void ConnectedInstrument::TakeBytes(const HostLine::Arrival& arrival) {
    if (arrival.bytes.empty()) return;
    if (toInstrument_.IsFull()) return Record(LineEvent::Kind::Overflow, arrival.bytes);
    settingsOfLastCommand_ = arrival.settings;
    CompareSettings(arrival.settings);
    Record(LineEvent::Kind::FromHost, arrival.bytes);
    const auto characters = Transmit(arrival.bytes, arrival.settings, settings_);
    toInstrument_.Put(characters, SinceSetUp(), CharacterTime(arrival.settings));
}

/// Only who speaks has made all settings: many hosts open the port first and set it in steps.
void ConnectedInstrument::CompareSettings(const UartSettings& host) {
    if (host.AgreesWith(settings_) || otherSettings_.size() >= kMostOtherSettings) return;
    if (!otherSettings_.insert(host.Text()).second) return;
    Record(LineEvent::Kind::OtherSettings, settings_.Text());
}

void ConnectedInstrument::ServeOpening() {
    const bool isOpen = line_->IsOpen();
    if (isOpen && !wasOpen_) instrument_.PortOpened(Now());
    wasOpen_ = isOpen;
}

void ConnectedInstrument::PassToInstrument() {
    for (; toInstrument_.IsDue(SinceSetUp()); toInstrument_.DropFirst())
        instrument_.Receive(toInstrument_.First(), Now());
}

void ConnectedInstrument::TakeAnswers() {
    for (const std::string& bytes : instrument_.TakeAnswers()) {
        if (!line_->IsOpen()) {
            Record(LineEvent::Kind::Lost, bytes);
            continue;
        }
        if (toHost_.IsFull()) {
            Record(LineEvent::Kind::Overflow, bytes);
            continue;
        }
        Record(LineEvent::Kind::FromInstrument, bytes);
        const auto characters = Transmit(bytes, settings_, line_->HostSettings());
        toHost_.Put(characters, SinceSetUp(), CharacterTime(settings_));
    }
}

void ConnectedInstrument::PassToHost() {
    if (pace_) return PassPiecesToHost();
    std::vector<Character> arrived;
    for (; toHost_.IsDue(SinceSetUp()); toHost_.DropFirst())
        arrived.push_back(toHost_.First());
    if (!arrived.empty()) line_->Deliver(arrived);
}

void ConnectedInstrument::PassPiecesToHost() {
    for (auto due = NextPiece(); due; due = NextPiece()) {
        const Moment handedOver = SinceSetUp();
        line_->Deliver(pace_->HandOver(handedOver));
        KeepDistance(handedOver - *due);
    }
}

/// Lets the adapter receive what is on the wire; returns when it hands over what it has by then,
/// empty when it goes on collecting.
std::optional<ConnectedInstrument::Moment> ConnectedInstrument::NextPiece() {
    for (; toHost_.IsDue(SinceSetUp()); toHost_.DropFirst()) {
        if (pace_->Due() && *pace_->Due() < *toHost_.Due()) break;
        pace_->Receive(toHost_.First(), *toHost_.Due(), line_->HostSettings());
    }
    if (!pace_->Due() || *pace_->Due() > SinceSetUp()) return std::nullopt;
    return pace_->Due();
}

/// On a busy computer a piece may be handed over so late that the next one is due, too: the whole
/// line is late then, so that pieces never come together for want of processor time.
void ConnectedInstrument::KeepDistance(Moment late) {
    if (toHost_.IsDue(SinceSetUp())) toHost_.Delay(late);
}

/// How long a character takes that is sent at these settings.
ConnectedInstrument::Moment ConnectedInstrument::CharacterTime(const UartSettings& sender) const {
    return pace_ ? sender.CharacterTime() : Moment(0);
}

void ConnectedInstrument::Record(LineEvent::Kind kind, const std::string& bytes) {
    const LineEvent& event = log_.Add({Now(), kind, bytes, line_->HostSettings()});
    if (listener_) listener_(*this, event);
}

}  // namespace simulator
