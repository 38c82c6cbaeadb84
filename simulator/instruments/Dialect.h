#pragma once

#include <deque>
#include <functional>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "simulator/Time.h"
#include "simulator/line/Uart.h"
#include "simulator/model/BalanceModel.h"

namespace simulator {

/// A key on the balance that somebody presses.
enum class Key { Print, Tare, Zero };

/// What a balance says: it cuts arriving bytes into commands, carries them out on a BalanceModel
/// and queues its answers. A derived class
///   - fills the command table in its constructor with on(), and says what an unknown command gets
///     in unknown();
///   - chooses how commands are cut off: complete lines by default, override CutCommand() for
///     commands without a line end;
///   - answers with Say(), at once or from WhenStable(), After() and Every();
///   - says in PrintKey() what goes over the line when somebody presses the print key.
class Dialect {
 public:
    /// `lineEnd` ends commands and answers alike; see SetAnswerEnd for instruments that differ.
    Dialect(BalanceModel& balance, std::string lineEnd);
    virtual ~Dialect();
    Dialect(const Dialect&) = delete;
    Dialect& operator=(const Dialect&) = delete;

    /// The mains are back after a power cut; some instruments speak up unasked.
    virtual void PowerUp() {}

    /// One character has arrived from the host.
    void Receive(const Character& character);
    /// The host has sent a break condition.
    virtual void ReceiveBreak() {}

    /// Somebody presses a key. Tare and zero are carried out at rest and send nothing.
    void Press(Key key);
    /// The host has opened its port: data terminal ready is raised.
    virtual void PortOpened() {}

    /// Does everything that is due at the model's time. Call after each advance of the model.
    void RunDueTasks();
    /// When something is due next; empty while the instrument waits for commands only.
    std::optional<Time> NextTask() const;

    /// The answers since the last call, in order; one entry per Say() or send().
    std::vector<std::string> TakeAnswers();

    /// The mains are cut: half a command, waits and repetitions are gone.
    void ForgetEverything();

    /// The commands of the table, in alphabetical order.
    std::vector<std::string> CommandNames() const;

    /// A fault: while busy, the balance does nothing that needs a pan at rest.
    void SetBusy(bool busy) { busy_ = busy; }

 protected:
    using Action = std::function<void()>;
    /// What a command does with what stood behind it (without the separating blank).
    using Handler = std::function<void(const std::string& parameters)>;

    /// Adds a command to the table. A command is known by its first word.
    void On(const std::string& command, Handler handler);
    /// Adds a command that takes no parameters; with parameters it gets refuse().
    void OnPlain(const std::string& command, Action action);

    /// What a command does, as a list of commands names it: a member of the dialect without
    /// parameters, or one that gets what stood behind the command.
    template <typename Balance>
    using Does = std::variant<void (Balance::*)(), void (Balance::*)(const std::string&)>;
    template <typename Balance>
    void On(const std::string& command, Balance* self, Does<Balance> does) {
        if (const auto plain = std::get_if<0>(&does))
            OnPlain(command, [self, run = *plain] { (self->*run)(); });
        else
            On(command, [self, run = std::get<1>(does)](const std::string& parameters) {
                (self->*run)(parameters);
            });
    }

    /// Something that is in no row of the table.
    virtual void Unknown(const std::string& command) = 0;
    /// A known command whose parameters make no sense; as unknown unless overridden.
    virtual void Refuse(const std::string& command) { Unknown(command); }
    /// A key was pressed that is not blocked.
    virtual void NoteKey(Key) {}
    /// What the print key sends, where the instrument has one.
    virtual void PrintKey() = 0;

    /// A command with a character of wrong parity or without stop bit has arrived: once per
    /// command, what was received of it is dropped and what follows is ignored up to its end.
    virtual void Spoiled() {}
    /// Whether a command is carried out at once although another one still waits for the pan to
    /// come to rest. Others are kept until the wait is over.
    virtual bool Interrupts(const std::string&) const { return false; }

    /// Cuts the first complete command off `received`; empty when none is complete yet. By default
    /// a command is what stands before the line end. For commands without a line end see CutKey.
    virtual std::optional<std::string> CutCommand(std::string& received);
    /// For commands without a line end: cuts off the first row of the table that `received` begins
    /// with (the longest that fits), or a single character that begins no row.
    std::optional<std::string> CutKey(std::string& received) const;
    /// Carries one command out: looks its first word up in the table.
    virtual void Execute(const std::string& command);

    void Say(const std::string& line) { Send(line + answerEnd_); }  ///< answers one line
    void Send(const std::string& bytes);                            ///< answers bytes as they are
    void SetAnswerEnd(std::string end) { answerEnd_ = std::move(end); }

    /// A host has blocked the keys of the balance, or freed them again.
    void BlockKeys() { keysBlocked_ = true; }
    void FreeKeys() { keysBlocked_ = false; }

    /// Runs `then` as soon as the pan is at rest, at once if it is; `timedOut` instead when that
    /// takes longer than `patience`. While busy the pan never counts as being at rest.
    void WhenStable(Time patience, Action then, Action timedOut);
    void After(Time delay, Action action);   ///< runs `action` once
    void Every(Time period, Action action);  ///< runs `action` now and then at each period
    /// Runs `action` when the pan has come to rest in range, now and after each unstable time.
    void AtEachRest(Action action);
    void StopRepeating();  ///< ends what Every() and AtEachRest() began
    void CancelAll();      ///< forgets what is waited for, delayed, repeated and kept

    BalanceModel& Balance() { return balance_; }
    const BalanceModel& Balance() const { return balance_; }
    Time Now() const { return balance_.Now(); }
    bool IsBusy() const { return busy_; }

 private:
    /// A wait holds later commands back; a repetition can be stopped by itself.
    enum class Kind { Wait, Delay, Repetition };
    struct Task {
        Kind kind;
        Time due;
        std::function<std::optional<Time>()> run;  ///< returns when it is due again
    };

    void RunTask(std::list<Task>::iterator due);
    void ExecuteKept();
    bool HoldsCommands() const;
    bool IsSpoiled();

    BalanceModel& balance_;
    std::string lineEnd_;
    std::string answerEnd_;
    std::map<std::string, Handler> commands_;
    std::string received_;
    std::deque<std::string> kept_;
    std::vector<std::string> answers_;
    std::list<Task> tasks_;
    std::optional<Time> spoiledAt_;
    bool busy_ = false;
    bool keysBlocked_ = false;
};

/// Text padded with blanks in front to `width` characters; longer text stays as it is.
std::string RightAligned(const std::string& text, std::size_t width);
/// Text padded with blanks behind to `width` characters; longer text stays as it is.
std::string LeftAligned(const std::string& text, std::size_t width);

}  // namespace simulator
