#include "simulator/ConnectedInstrument.h"

#include <algorithm>
#include <stdexcept>
#include <system_error>

namespace simulator {
namespace {

// What is kept of a run that lasts for weeks.
constexpr std::size_t mostEvents = 10'000;
constexpr std::size_t mostLoggedBytes = 1024 * 1024;

constexpr std::size_t mostOtherSettings = 100;

/// What fits on one direction of the line: a side that sends faster than the line carries loses
/// what comes on top.
constexpr std::size_t mostInTransit = 65'536;

/// After such a time without anything due the balance's time is brought up to date, so that nobody
/// waits for the weeks that a host was silent.
constexpr auto longestRest = std::chrono::minutes(1);

constexpr auto plugRetry = std::chrono::seconds(1);

}  // namespace

Options& Options::at(const std::string& settings) {
    line = LineSettings::parse(settings);
    if (!line)
        throw std::invalid_argument("\"" + settings + "\" are no line settings such as 2400,7E1");
    return *this;
}

Options& Options::withScript(const std::string& path) {
    const Script read = readScriptFile(path);
    script.insert(script.end(), read.begin(), read.end());
    return *this;
}

ConnectedInstrument::ConnectedInstrument(const CatalogEntry& entry, const Options& options,
                                         std::unique_ptr<HostLine> line)
    : name_(entry.name),
      instrument_(entry, options.switches),
      settings_(options.line.value_or(entry.line)),
      pace_(options.pace),
      line_(std::move(line)),
      returnsAs_(line_->device()) {
    for (const Fault& fault : options.faults)
        instrument_.addFault(fault);
    for (const LoadStep& load : options.loads)
        putOn(load);
    prepare(options.script);
    serve();
}

/// What the instrument can't do shows now, not in the middle of a run.
void ConnectedInstrument::prepare(const Script& script) {
    for (const ScriptStep& step : script) {
        try {
            if (step.change.kind == Change::Kind::setting)
                instrument_.checkSwitch(step.change.text);
        } catch (const std::invalid_argument& error) {
            throw std::invalid_argument(step.place + ": " + error.what());
        }
        script_.push_back(step);
    }
    std::stable_sort(script_.begin(), script_.end(),
                     [](const ScriptStep& a, const ScriptStep& b) { return a.at < b.at; });
}

void ConnectedInstrument::putOn(const LoadStep& load) {
    if (load.at == Time(0))
        instrument_.balance().startWithLoad(load.grams);
    else
        instrument_.balance().scheduleLoad(load.at, load.grams);
}

/// Changes come into force at the present time: what was due before is done first.
template <typename Work>
void ConnectedInstrument::change(const Work& work) {
    const Lock lock(mutex_);
    serveLocked();
    work();
    catchUp();
}

/// What is taken over on another thread than the bench's may be due later: the bench has to know.
void ConnectedInstrument::catchUp() {
    serveLocked();
    if (changed_) changed_();
}

void ConnectedInstrument::apply(const Change& words) {
    change([&] { applyAt(words, now()); });
    Lock lock(mutex_);
    while (isPlugDue() && plugTrouble_.empty())  // which may also pass by itself
        plugServed_.wait_for(lock, 20ms);
    if (isPlugDue()) throw std::runtime_error(plugTrouble_);
}

void ConnectedInstrument::applyAt(const Change& change, Time at) {
    switch (change.kind) {
        case Change::Kind::load:
            return putOn({change.grams, at});
        case Change::Kind::setting:
            return instrument_.choose(change.text);
        case Change::Kind::fault:
            return instrument_.addFault(change.fault.shiftedBy(at));
        case Change::Kind::endFaults:
            return instrument_.endFaults(change.text);
        case Change::Kind::plugIn:
            if (!change.text.empty()) returnsAs_ = change.text;
            return instrument_.endFaults("unplug");
        case Change::Kind::press:
            return instrument_.press(change.key);
    }
}

void ConnectedInstrument::serveScript() {
    while (!script_.empty() && script_.front().at <= now()) {
        const ScriptStep step = script_.front();
        script_.pop_front();
        instrument_.advance(step.at);
        try {
            applyAt(step.change, step.at);
        } catch (const std::invalid_argument& error) {  // what was possible when the run began
            record(LineEvent::Kind::trouble, step.place + ": " + error.what());
        }
    }
}

void ConnectedInstrument::setLoad(double grams) {
    change([&] { instrument_.balance().setLoad(grams); });
}

void ConnectedInstrument::addFault(const std::string& fault) {
    const Fault parsed = Fault::parse(fault);
    change([&] { instrument_.addFault(parsed); });
}

void ConnectedInstrument::clearFaults() {
    change([&] { instrument_.clearFaults(); });
}

std::vector<std::string> ConnectedInstrument::faultsInForce() {
    const Lock lock(mutex_);
    catchUp();
    std::vector<std::string> names;
    for (const Fault& fault : instrument_.faults())
        if (fault.isActive(now())) names.push_back(fault.name);
    return names;
}

void ConnectedInstrument::unplug() {
    apply(Change::parse("unplug"));
}

void ConnectedInstrument::plugIn() {
    apply(Change::parse("plug-in"));
}

void ConnectedInstrument::plugIn(const std::string& device) {
    apply(Change::parse("plug-in as " + device));
}

std::string ConnectedInstrument::sentByHost() {
    return sent(LineEvent::Kind::fromHost);
}

std::string ConnectedInstrument::sentByInstrument() {
    return sent(LineEvent::Kind::fromInstrument);
}

std::string ConnectedInstrument::sent(LineEvent::Kind kind) {
    std::string bytes;
    for (const LineEvent& event : log())
        if (event.kind == kind) bytes += event.bytes;
    return bytes;
}

std::vector<LineEvent> ConnectedInstrument::log() {
    const Lock lock(mutex_);
    catchUp();
    return {log_.begin(), log_.end()};
}

void ConnectedInstrument::clearLog() {
    const Lock lock(mutex_);
    catchUp();
    log_.clear();
    loggedBytes_ = 0;
    settingsOfLastCommand_.reset();
}

void ConnectedInstrument::onEvent(Listener listener) {
    const Lock lock(mutex_);
    listener_ = std::move(listener);
}

std::optional<LineSettings> ConnectedInstrument::settingsOfLastCommand() {
    const Lock lock(mutex_);
    catchUp();
    return settingsOfLastCommand_;
}

LineSettings ConnectedInstrument::hostSettings() {
    const Lock lock(mutex_);
    return line_->hostSettings();
}

bool ConnectedInstrument::isOpenedByHost() {
    const Lock lock(mutex_);
    catchUp();
    return line_->isOpen();
}

std::string ConnectedInstrument::device() {
    const Lock lock(mutex_);
    return line_->device();
}

void ConnectedInstrument::withLine(const std::function<void(HostLine&)>& work) {
    change([&] { work(*line_); });
}

void ConnectedInstrument::withBalance(const std::function<void(BalanceModel&)>& work) {
    change([&] { work(instrument_.balance()); });
}

void ConnectedInstrument::serve() {
    const Lock lock(mutex_);
    servePlug();
    serveLocked();
}

std::vector<int> ConnectedInstrument::descriptors() {
    const Lock lock(mutex_);
    return line_->descriptors();
}

ConnectedInstrument::Clock::time_point ConnectedInstrument::deadline() {
    const Lock lock(mutex_);
    Moment first = moment() + longestRest;
    const auto consider = [&](Moment due) { first = std::min(first, due); };
    if (const auto event = instrument_.nextEvent()) consider(*event);
    if (isPlugDue()) consider(std::max(moment(), plugAgainAt_));
    if (!script_.empty()) consider(script_.front().at);
    if (!toInstrument_.empty()) consider(toInstrument_.front().due);
    if (!toHost_.empty()) consider(toHost_.front().due);
    if (pace_ && pace_->due()) consider(*pace_->due());
    if (const auto interval = line_->lookEvery()) consider(moment() + *interval);
    return start_ + first;
}

ConnectedInstrument::Moment ConnectedInstrument::moment() const {
    return std::chrono::duration_cast<Moment>(Clock::now() - start_);
}

void ConnectedInstrument::serveLocked() {
    serveScript();
    line_->serve([this](const HostLine::Arrival& arrival) { takeArrival(arrival); });
    serveOpening();
    passToInstrument();
    instrument_.advance(now());
    takeAnswers();
    passToHost();
}

const Fault* ConnectedInstrument::unplugFault() const {
    for (const Fault& fault : instrument_.faults())
        if (fault.name == "unplug" && fault.isActive(now())) return &fault;
    return nullptr;
}

/// Only the serving thread pulls a terminal out: while it polled one that another thread closes,
/// the host would not be hung up until that poll had ended.
void ConnectedInstrument::servePlug() {
    const Fault* fault = unplugFault();
    if (fault && !fault->value.empty()) returnsAs_ = fault->value;
    if (!isPlugDue()) return plugTrouble_.clear();
    if (moment() < plugAgainAt_) return;
    plugged_ ? pullOut() : putBack();
    plugServed_.notify_all();
}

void ConnectedInstrument::pullOut() {
    plugged_ = false;
    record(LineEvent::Kind::unplugged, line_->device());
    line_->unplug();
}

/// The system may be short of descriptors, terminals or space; what is wrong is said once.
void ConnectedInstrument::putBack() {
    try {
        plugInAs(returnsAs_);
    } catch (const std::system_error& error) {
        const std::string trouble = returnsAs_ + " can't be plugged in: " + error.what() +
                                    "; it is tried again each second";
        plugAgainAt_ = moment() + plugRetry;
        if (trouble == plugTrouble_) return;
        plugTrouble_ = trouble;
        return record(LineEvent::Kind::trouble, trouble);
    }
    plugged_ = true;
    plugTrouble_.clear();
    plugAgainAt_ = Moment(0);
    record(LineEvent::Kind::pluggedIn, line_->device());
}

void ConnectedInstrument::plugInAs(const std::string& device) {
    try {
        line_->plugIn(device);
    } catch (const std::invalid_argument&) {  // another instrument is there
        returnsAs_ = line_->device();
        line_->plugIn(returnsAs_);
    }
}

void ConnectedInstrument::takeArrival(const HostLine::Arrival& arrival) {
    serveOpening();
    takeBytes(arrival);
    passToInstrument();
    for (unsigned i = 0; i < arrival.breaks; ++i)
        instrument_.receiveBreak(now());
}

void ConnectedInstrument::takeBytes(const HostLine::Arrival& arrival) {
    if (arrival.bytes.empty()) return;
    if (toInstrument_.size() >= mostInTransit)
        return record(LineEvent::Kind::overflow, arrival.bytes);
    settingsOfLastCommand_ = arrival.settings;
    compareSettings(arrival.settings);
    record(LineEvent::Kind::fromHost, arrival.bytes);
    const auto characters = transmit(arrival.bytes, arrival.settings, settings_);
    hostFree_ = put(toInstrument_, characters, hostFree_, arrival.settings);
}

/// Only who speaks has made all settings: many hosts open the port first and set it in steps.
void ConnectedInstrument::compareSettings(const LineSettings& host) {
    if (host.agreesWith(settings_) || otherSettings_.size() >= mostOtherSettings) return;
    if (!otherSettings_.insert(host.text()).second) return;
    record(LineEvent::Kind::otherSettings, settings_.text());
}

void ConnectedInstrument::serveOpening() {
    const bool isOpen = line_->isOpen();
    if (isOpen && !wasOpen_) instrument_.portOpened(now());
    wasOpen_ = isOpen;
}

void ConnectedInstrument::passToInstrument() {
    for (; !toInstrument_.empty() && toInstrument_.front().due <= moment();
         toInstrument_.pop_front())
        instrument_.receive(toInstrument_.front().character, now());
}

void ConnectedInstrument::takeAnswers() {
    for (const std::string& bytes : instrument_.takeAnswers()) {
        if (!line_->isOpen()) {
            record(LineEvent::Kind::lost, bytes);
            continue;
        }
        if (toHost_.size() >= mostInTransit) {
            record(LineEvent::Kind::overflow, bytes);
            continue;
        }
        record(LineEvent::Kind::fromInstrument, bytes);
        const auto characters = transmit(bytes, settings_, line_->hostSettings());
        instrumentFree_ = put(toHost_, characters, instrumentFree_, settings_);
    }
}

void ConnectedInstrument::passToHost() {
    if (pace_) return passPiecesToHost();
    std::vector<Character> arrived;
    for (; !toHost_.empty() && toHost_.front().due <= moment(); toHost_.pop_front())
        arrived.push_back(toHost_.front().character);
    if (!arrived.empty()) line_->deliver(arrived);
}

void ConnectedInstrument::passPiecesToHost() {
    for (auto due = nextPiece(); due; due = nextPiece()) {
        const Moment handedOver = moment();
        line_->deliver(pace_->handOver(handedOver));
        keepDistance(handedOver - *due);
    }
}

/// Lets the adapter receive what is on the wire; returns when it hands over what it has by then,
/// empty when it goes on collecting.
std::optional<ConnectedInstrument::Moment> ConnectedInstrument::nextPiece() {
    for (; !toHost_.empty() && toHost_.front().due <= moment(); toHost_.pop_front()) {
        if (pace_->due() && *pace_->due() < toHost_.front().due) break;
        pace_->receive(toHost_.front().character, toHost_.front().due, line_->hostSettings());
    }
    if (!pace_->due() || *pace_->due() > moment()) return std::nullopt;
    return pace_->due();
}

/// On a busy computer a piece may be handed over so late that the next one is due, too: the whole
/// line is late then, so that pieces never come together for want of processor time.
void ConnectedInstrument::keepDistance(Moment late) {
    if (toHost_.empty() || toHost_.front().due > moment()) return;
    for (InTransit& each : toHost_)
        each.due += late;
    instrumentFree_ += late;
}

/// Puts characters on the line behind those that are on it already; returns when it is free again.
ConnectedInstrument::Moment ConnectedInstrument::put(std::deque<InTransit>& way,
                                                     const std::vector<Character>& characters,
                                                     Moment free,
                                                     const LineSettings& sender) const {
    const Moment perCharacter = pace_ ? sender.characterTime() : Moment(0);
    free = std::max(free, moment());
    for (const Character& character : characters) {
        free += perCharacter;
        way.push_back({free, character});
    }
    return free;
}

void ConnectedInstrument::record(LineEvent::Kind kind, const std::string& bytes) {
    log_.push_back({now(), kind, bytes, line_->hostSettings()});
    loggedBytes_ += bytes.size();
    forgetOldEvents();
    if (listener_) listener_(*this, log_.back());
}

void ConnectedInstrument::forgetOldEvents() {
    while (log_.size() > mostEvents || (log_.size() > 1 && loggedBytes_ > mostLoggedBytes)) {
        loggedBytes_ -= log_.front().bytes.size();
        log_.pop_front();
    }
}

}  // namespace simulator
