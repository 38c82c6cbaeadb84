#include "simulator/instruments/Dialect.h"

#include <algorithm>
#include <memory>

namespace simulator {
namespace {

/// An instrument that never sees a line end gives up on the line at some length.
constexpr std::size_t longestCommand = 256;

/// While it waits it keeps so many commands; later ones find its buffer full.
constexpr std::size_t mostKeptCommands = 100;

/// The end of a spoiled command may be spoiled itself: after this pause a new command begins.
constexpr Time quietAfterDamage = 100ms;

/// For so long a tare or zero key waits for the pan to come to rest.
constexpr Time keyPatience = 10s;

}  // namespace

Dialect::Dialect(BalanceModel& balance, std::string lineEnd)
    : balance_(balance), lineEnd_(lineEnd), answerEnd_(std::move(lineEnd)) {}

Dialect::~Dialect() = default;

void Dialect::receive(const Character& character) {
    if (character.isDamaged()) {
        if (!isSpoiled()) spoiled();
        spoiledAt_ = now();
        received_.clear();
        return;
    }
    received_ += character.byte;
    if (isSpoiled()) {
        if (cutCommand(received_)) spoiledAt_.reset();
        return;
    }
    while (const auto command = cutCommand(received_)) {
        if (!holdsCommands() || interrupts(*command))
            execute(*command);
        else if (kept_.size() < mostKeptCommands)
            kept_.push_back(*command);
    }
    if (received_.size() > longestCommand) received_.clear();
}

bool Dialect::isSpoiled() {
    if (spoiledAt_ && now() - *spoiledAt_ > quietAfterDamage) {
        spoiledAt_.reset();
        received_.erase(0, received_.size() - 1);
    }
    return spoiledAt_.has_value();
}

void Dialect::press(Key key) {
    if (keysBlocked_) return;
    if (key == Key::print) return printKey();
    const auto done = [this, key] { key == Key::tare ? balance_.tare() : balance_.zero(); };
    whenStable(keyPatience, done, [] {});
}

void Dialect::on(const std::string& command, Handler handler) {
    commands_[command] = std::move(handler);
}

void Dialect::onPlain(const std::string& command, Action action) {
    on(command, [this, command, action = std::move(action)](const std::string& parameters) {
        if (parameters.empty())
            action();
        else
            refuse(command + " " + parameters);
    });
}

std::optional<std::string> Dialect::cutCommand(std::string& received) {
    const std::size_t end = received.find(lineEnd_);
    if (end == std::string::npos) return std::nullopt;
    const std::string command = received.substr(0, end);
    received.erase(0, end + lineEnd_.size());
    return command;
}

std::optional<std::string> Dialect::cutKey(std::string& received) const {
    if (received.empty()) return std::nullopt;
    std::size_t length = 0;
    for (const auto& [key, handler] : commands_) {
        if (received.compare(0, key.size(), key) == 0) length = std::max(length, key.size());
        const bool incomplete =
            key.size() > received.size() && key.compare(0, received.size(), received) == 0;
        if (incomplete) return std::nullopt;
    }
    const std::string command = received.substr(0, std::max<std::size_t>(length, 1));
    received.erase(0, command.size());
    return command;
}

void Dialect::execute(const std::string& command) {
    const std::size_t blank = command.find(' ');
    const auto row = commands_.find(command.substr(0, blank));
    if (row == commands_.end()) {
        unknown(command);
        return;
    }
    row->second(blank == std::string::npos ? "" : command.substr(blank + 1));
}

void Dialect::send(const std::string& bytes) {
    answers_.push_back(bytes);
}

std::vector<std::string> Dialect::takeAnswers() {
    std::vector<std::string> answers;
    answers.swap(answers_);
    return answers;
}

void Dialect::whenStable(Time patience, Action then, Action timedOut) {
    const Time deadline = now() + patience;
    const auto attempt = [this, deadline, then = std::move(then),
                          timedOut = std::move(timedOut)]() -> std::optional<Time> {
        if (!busy_ && balance_.read().stable) {
            then();
            return std::nullopt;
        }
        if (now() >= deadline) {
            timedOut();
            return std::nullopt;
        }
        return std::min(balance_.nextRefresh(), deadline);
    };
    if (const auto next = attempt()) tasks_.push_back({Kind::wait, *next, attempt});
}

void Dialect::after(Time delay, Action action) {
    const auto once = [action = std::move(action)]() -> std::optional<Time> {
        action();
        return std::nullopt;
    };
    tasks_.push_back({Kind::delay, now() + delay, once});
}

void Dialect::every(Time period, Action action) {
    action();
    const auto repeat = [this, period, action = std::move(action)]() -> std::optional<Time> {
        action();
        return now() + period;
    };
    tasks_.push_back({Kind::repetition, now() + period, repeat});
}

void Dialect::atEachRest(Action action) {
    const auto moved = std::make_shared<bool>(true);
    every(balance_.data().refresh, [this, moved, action = std::move(action)] {
        const Reading reading = balance_.read();
        const bool rests = !busy_ && reading.stable && reading.range == Reading::Range::inside;
        if (rests && *moved) action();
        *moved = !rests;
    });
}

void Dialect::stopRepeating() {
    tasks_.remove_if([](const Task& task) { return task.kind == Kind::repetition; });
}

void Dialect::cancelAll() {
    tasks_.clear();
    kept_.clear();
}

void Dialect::forgetEverything() {
    cancelAll();
    received_.clear();
    answers_.clear();
    spoiledAt_.reset();
}

bool Dialect::holdsCommands() const {
    return std::any_of(tasks_.begin(), tasks_.end(),
                       [](const Task& task) { return task.kind == Kind::wait; });
}

void Dialect::runDueTasks() {
    for (;;) {
        const auto due = std::find_if(tasks_.begin(), tasks_.end(),
                                      [this](const Task& task) { return task.due <= now(); });
        if (due == tasks_.end()) return;
        runTask(due);
        executeKept();
    }
}

/// A task is out of the list while it runs: it may cancel all tasks and add new ones.
void Dialect::runTask(std::list<Task>::iterator due) {
    Task task = std::move(*due);
    tasks_.erase(due);
    if (const auto next = task.run()) {
        task.due = *next;
        tasks_.push_back(std::move(task));
    }
}

void Dialect::executeKept() {
    while (!kept_.empty() && !holdsCommands()) {
        const std::string command = kept_.front();
        kept_.pop_front();
        execute(command);
    }
}

std::optional<Time> Dialect::nextTask() const {
    const auto first = std::min_element(tasks_.begin(), tasks_.end(),
                                        [](const Task& a, const Task& b) { return a.due < b.due; });
    if (first == tasks_.end()) return std::nullopt;
    return first->due;
}

std::string rightAligned(const std::string& text, std::size_t width) {
    return std::string(text.size() < width ? width - text.size() : 0, ' ') + text;
}

std::string leftAligned(const std::string& text, std::size_t width) {
    return text + std::string(text.size() < width ? width - text.size() : 0, ' ');
}

}  // namespace simulator
