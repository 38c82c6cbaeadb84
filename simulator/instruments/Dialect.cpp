#include "simulator/instruments/Dialect.h"

#include <algorithm>
#include <memory>

namespace simulator {
namespace {

/// An instrument that never sees a line end gives up on the line at some length.
constexpr std::size_t kLongestCommand = 256;

/// While it waits it keeps so many commands; later ones find its buffer full.
constexpr std::size_t kMostKeptCommands = 100;

/// The end of a spoiled command may be spoiled itself: after this pause a new command begins.
constexpr Time kQuietAfterDamage = 100ms;

/// For so long a tare or zero key waits for the pan to come to rest.
constexpr Time kEyPatience = 10s;

}  // namespace

Dialect::Dialect(BalanceModel& balance, std::string lineEnd)
    : balance_(balance), lineEnd_(lineEnd), answerEnd_(std::move(lineEnd)) {}

Dialect::~Dialect() = default;

void Dialect::Receive(const Character& character) {
    if (character.IsDamaged()) {
        if (!IsSpoiled()) Spoiled();
        spoiledAt_ = Now();
        received_.clear();
        return;
    }
    received_ += character.byte;
    if (IsSpoiled()) {
        if (CutCommand(received_)) spoiledAt_.reset();
        return;
    }
    while (const auto command = CutCommand(received_)) {
        if (!HoldsCommands() || Interrupts(*command))
            Execute(*command);
        else if (kept_.size() < kMostKeptCommands)
            kept_.push_back(*command);
    }
    if (received_.size() > kLongestCommand) received_.clear();
}

bool Dialect::IsSpoiled() {
    if (spoiledAt_ && Now() - *spoiledAt_ > kQuietAfterDamage) {
        spoiledAt_.reset();
        received_.erase(0, received_.size() - 1);
    }
    return spoiledAt_.has_value();
}

void Dialect::Press(Key key) {
    if (keysBlocked_) return;
    NoteKey(key);
    if (key == Key::Print) return PrintKey();
    const auto done = [this, key] { key == Key::Tare ? balance_.Tare() : balance_.Zero(); };
    WhenStable(kEyPatience, done, [] {});
}

void Dialect::On(const std::string& command, Handler handler) {
    commands_[command] = std::move(handler);
}

void Dialect::OnPlain(const std::string& command, Action action) {
    On(command, [this, command, action = std::move(action)](const std::string& parameters) {
        if (parameters.empty())
            action();
        else
            Refuse(command + " " + parameters);
    });
}

std::vector<std::string> Dialect::CommandNames() const {
    std::vector<std::string> names;
    for (const auto& [name, handler] : commands_)
        names.push_back(name);
    return names;
}

std::optional<std::string> Dialect::CutCommand(std::string& received) {
    const std::size_t end = received.find(lineEnd_);
    if (end == std::string::npos) return std::nullopt;
    const std::string command = received.substr(0, end);
    received.erase(0, end + lineEnd_.size());
    return command;
}

std::optional<std::string> Dialect::CutKey(std::string& received) const {
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

void Dialect::Execute(const std::string& command) {
    const std::size_t blank = command.find(' ');
    const auto row = commands_.find(command.substr(0, blank));
    if (row == commands_.end()) {
        Unknown(command);
        return;
    }
    row->second(blank == std::string::npos ? "" : command.substr(blank + 1));
}

void Dialect::Send(const std::string& bytes) {
    answers_.push_back(bytes);
}

std::vector<std::string> Dialect::TakeAnswers() {
    std::vector<std::string> answers;
    answers.swap(answers_);
    return answers;
}

void Dialect::WhenStable(Time patience, Action then, Action timedOut) {
    const Time deadline = Now() + patience;
    const auto attempt = [this, deadline, then = std::move(then),
                          timedOut = std::move(timedOut)]() -> std::optional<Time> {
        if (!busy_ && balance_.Read().stable) {
            then();
            return std::nullopt;
        }
        if (Now() >= deadline) {
            timedOut();
            return std::nullopt;
        }
        return std::min(balance_.NextRefresh(), deadline);
    };
    if (const auto next = attempt()) tasks_.push_back({Kind::Wait, *next, attempt});
}

void Dialect::After(Time delay, Action action) {
    const auto once = [action = std::move(action)]() -> std::optional<Time> {
        action();
        return std::nullopt;
    };
    tasks_.push_back({Kind::Delay, Now() + delay, once});
}

void Dialect::Every(Time period, Action action) {
    action();
    const auto repeat = [this, period, action = std::move(action)]() -> std::optional<Time> {
        action();
        return Now() + period;
    };
    tasks_.push_back({Kind::Repetition, Now() + period, repeat});
}

void Dialect::AtEachRest(Action action) {
    const auto moved = std::make_shared<bool>(true);
    Every(balance_.Data().refresh, [this, moved, action = std::move(action)] {
        const Indication indication = balance_.Read();
        const bool rests =
            !busy_ && indication.stable && indication.range == Indication::Range::Inside;
        if (rests && *moved) action();
        *moved = !rests;
    });
}

void Dialect::StopRepeating() {
    tasks_.remove_if([](const Task& task) { return task.kind == Kind::Repetition; });
}

void Dialect::CancelAll() {
    tasks_.clear();
    kept_.clear();
}

void Dialect::ForgetEverything() {
    CancelAll();
    received_.clear();
    answers_.clear();
    spoiledAt_.reset();
}

bool Dialect::HoldsCommands() const {
    return std::any_of(tasks_.begin(), tasks_.end(),
                       [](const Task& task) { return task.kind == Kind::Wait; });
}

void Dialect::RunDueTasks() {
    for (;;) {
        const auto due = std::find_if(tasks_.begin(), tasks_.end(),
                                      [this](const Task& task) { return task.due <= Now(); });
        if (due == tasks_.end()) return;
        RunTask(due);
        ExecuteKept();
    }
}

/// A task is out of the list while it runs: it may cancel all tasks and add new ones.
void Dialect::RunTask(std::list<Task>::iterator due) {
    Task task = std::move(*due);
    tasks_.erase(due);
    if (const auto next = task.run()) {
        task.due = *next;
        tasks_.push_back(std::move(task));
    }
}

void Dialect::ExecuteKept() {
    while (!kept_.empty() && !HoldsCommands()) {
        const std::string command = kept_.front();
        kept_.pop_front();
        Execute(command);
    }
}

std::optional<Time> Dialect::NextTask() const {
    const auto first = std::min_element(tasks_.begin(), tasks_.end(),
                                        [](const Task& a, const Task& b) { return a.due < b.due; });
    if (first == tasks_.end()) return std::nullopt;
    return first->due;
}

std::string RightAligned(const std::string& text, std::size_t width) {
    return std::string(text.size() < width ? width - text.size() : 0, ' ') + text;
}

std::string LeftAligned(const std::string& text, std::size_t width) {
    return text + std::string(text.size() < width ? width - text.size() : 0, ' ');
}

}  // namespace simulator
