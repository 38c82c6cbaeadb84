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

/// The commands and answers of a kind of balance. It divides the bytes that arrive into commands,
/// carries these out on a BalanceModel, and queues the answers. A derived class
///   - fills the command table in its constructor with on(), and says what an unknown command gets
///     in unknown();
///   - chooses how commands are cut off: complete lines by default, override CutCommand() for
///     commands without a line end;
///   - answers with Say(), at once or from WhenStable(), After() and Every();
///   - says in PrintKey() what goes over the line when somebody presses the print key.
class Dialect {
 public:
    /// `lineEnd` ends both commands and answers. SetAnswerEnd sets another end for the answers.
    Dialect(BalanceModel& balance, std::string lineEnd);
    virtual ~Dialect();
    Dialect(const Dialect&) = delete;
    Dialect& operator=(const Dialect&) = delete;

    /// The power comes back after a power cut. Some instruments then send a line without a request.
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

    /// The power is cut. A command that is not complete, waits and repetitions are lost.
    void ForgetEverything();

    /// The commands of the table, in alphabetical order.
    std::vector<std::string> CommandNames() const;

    /// A fault: while busy, the balance does nothing that needs a pan at rest.
    void SetBusy(bool busy) { busy_ = busy; }

 protected:
    using Action = std::function<void()>;
    /// What a command does. It gets the text after the command, without the blank between them.
    using Handler = std::function<void(const std::string& parameters)>;

    /// Adds a command to the table. A command is known by its first word.
    void On(const std::string& command, Handler handler);
    /// Adds a command that takes no parameters; with parameters it gets refuse().
    void OnPlain(const std::string& command, Action action);

    /// What a command does, in a list of commands: a member of the dialect that takes nothing, or
    /// one that takes the text after the command.
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

    /// A command that is not in the table.
    virtual void Unknown(const std::string& command) = 0;
    /// A known command with wrong parameters. By default it is treated as an unknown command.
    virtual void Refuse(const std::string& command) { Unknown(command); }
    /// A key was pressed, and the keys are not blocked.
    virtual void NoteKey(Key /*key*/) {}
    /// What the print key sends, where the instrument has one.
    virtual void PrintKey() = 0;

    /// A character with wrong parity or without a stop bit has arrived. This is called once for
    /// each command: the beginning of the command is dropped, and the rest is ignored up to its
    /// end.
    virtual void Spoiled() {}
    /// Whether a command is carried out at once while another one waits for the pan to come to
    /// rest. Other commands are kept until the wait is over.
    virtual bool Interrupts(const std::string& /*command*/) const { return false; }

    /// Removes the first complete command from `received` and returns it; empty when none is
    /// complete yet. By default a command ends at the line end. CutKey is for commands without a
    /// line end.
    virtual std::optional<std::string> CutCommand(std::string& received);
    /// For commands without a line end: removes the longest command of the table with which
    /// `received` begins, or one character if no command begins with it.
    std::optional<std::string> CutKey(std::string& received) const;
    /// Carries one command out: looks its first word up in the table.
    virtual void Execute(const std::string& command);

    void Say(const std::string& line) { Send(line + answerEnd_); }  ///< answers one line
    void Send(const std::string& bytes);                            ///< answers bytes as they are
    void SetAnswerEnd(std::string end) { answerEnd_ = std::move(end); }

    /// A host blocks the keys of the balance, or frees them.
    void BlockKeys() { keysBlocked_ = true; }
    void FreeKeys() { keysBlocked_ = false; }

    /// Runs `then` when the pan is at rest, which may be at once. Runs `timedOut` instead if this
    /// takes longer than `patience`. While the balance is busy, the pan does not count as at rest.
    void WhenStable(Time patience, Action then, Action timedOut);
    void After(Time delay, Action action);   ///< runs `action` once
    void Every(Time period, Action action);  ///< runs `action` now, and again after each period
    /// Runs `action` each time the pan has come to rest in range, also now if it is at rest.
    void AtEachRest(Action action);
    void StopRepeating();  ///< ends what Every() and AtEachRest() began
    void CancelAll();      ///< drops waits, delays, repetitions and kept commands

    BalanceModel& Balance() { return balance_; }
    const BalanceModel& Balance() const { return balance_; }
    Time Now() const { return balance_.Now(); }
    bool IsBusy() const { return busy_; }

 private:
    /// A wait delays later commands. A repetition can be stopped separately.
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
