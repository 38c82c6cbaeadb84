#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "simulator/Instrument.h"
#include "simulator/LoadStep.h"
#include "simulator/Script.h"
#include "simulator/line/Adapter.h"
#include "simulator/line/HostLine.h"

namespace simulator {

/// How an instrument is set up; each function returns the options themselves, so that they chain.
struct Options {
    std::string device = "/dev/ttyS0";  ///< name under which the host finds the line
    std::vector<LoadStep> loads;        ///< what lies on the pan, and from when
    std::vector<std::string> switches;  ///< "name=value"
    std::vector<Fault> faults;          ///< what goes wrong, and when
    Script script;                      ///< what else happens, and when
    std::optional<UartSettings> line;   ///< the instrument's settings; empty: as delivered
    std::optional<Adapter> pace;        ///< characters take their time on the line, to this port

    Options& On(const std::string& path) { return device = path, *this; }
    /// The load in grams at the beginning, or from a time on.
    Options& WithLoad(double grams, Time from = Time(0)) {
        return loads.push_back({grams, from}), *this;
    }
    Options& With(const std::string& setting) { return switches.push_back(setting), *this; }
    /// A fault as Fault::parse reads it; throws std::invalid_argument for other text.
    Options& WithFault(const std::string& text) {
        return faults.push_back(Fault::Parse(text)), *this;
    }
    /// The script in a file, beside what there is; throws as ReadScriptFile does.
    Options& WithScript(const std::string& path);
    /// `settings` as UartSettings::parse reads them; throws std::invalid_argument for other text.
    Options& At(const std::string& settings);
    /// Characters take their time on the line, and the host gets them as its `port` hands them
    /// over, in the words of Adapter::parse; throws as that does.
    Options& WithPacing(const std::string& port = "character") {
        return pace = Adapter::Parse(port), *this;
    }
};

/// Something that happened on the line, for the log.
struct LineEvent {
    enum class Kind {
        FromHost,        ///< bytes as the host sent them
        FromInstrument,  ///< bytes as the instrument sent them
        Lost,            ///< bytes of the instrument that nobody listened to
        Overflow,        ///< bytes, of either side, for which the line had no more room
        Unplugged,
        PluggedIn,
        OtherSettings,  ///< the host speaks at settings that differ, which it has not done yet
        Trouble,        ///< something could not be done, and is tried again
    };

    Time time;  ///< since the instrument was set up
    Kind kind;
    /// Of Unplugged and PluggedIn the device, of OtherSettings the instrument's settings, of
    /// Trouble a sentence.
    std::string bytes;
    UartSettings settings;  ///< the host's at that time
};

/// An instrument in real time at the end of a serial line. Every function may be called from any
/// thread; none blocks for longer than it takes to do what is due.
class ConnectedInstrument {
 public:
    using Clock = std::chrono::steady_clock;

    /// Throws std::invalid_argument for unknown names in `options`.
    ConnectedInstrument(const CatalogEntry& entry, const Options& options,
                        std::unique_ptr<HostLine> line);

    /// Does one thing now, and returns when it is done; not to be called by a listener or by the
    /// work given to WithLine and WithBalance. Throws std::invalid_argument for a switch that the
    /// instrument lacks, std::runtime_error when the system lets no adapter be plugged in; that is
    /// then tried again each second.
    void Apply(const Change& change);

    /// The load in grams; the pan settles towards it from now on.
    void SetLoad(double grams);
    /// A fault as Fault::parse reads it; its times count from the set-up of the instrument.
    void AddFault(const std::string& fault);
    void ClearFaults();
    std::vector<std::string> FaultsInForce();  ///< their names, at this moment
    /// The line's adapter is pulled out; it is back under the same name or as `device`, or still
    /// under the same name when another instrument is at `device`.
    void Unplug();
    void PlugIn();
    void PlugIn(const std::string& device);

    /// What has happened: the last 10,000 events, and of them not more than hold 1 MiB.
    std::vector<LineEvent> Log();
    void ClearLog();
    /// All bytes that the host has sent, and that the instrument has sent to it, in that log.
    std::string SentByHost();
    std::string SentByInstrument();
    /// Called for each event as it happens, on the thread on which it happens. It must not throw.
    using Listener = std::function<void(ConnectedInstrument& from, const LineEvent& event)>;
    void OnEvent(Listener listener);

    /// The line settings in force when the host sent its last bytes; empty before the first.
    std::optional<UartSettings> SettingsOfLastCommand();
    UartSettings HostSettings();  ///< the host's line settings now
    UartSettings OwnSettings() const { return settings_; }
    bool IsOpenedByHost();
    std::string Device();                              ///< the device's present name
    const std::string& Name() const { return name_; }  ///< of the catalog

    /// Works with the line or the model themselves, for what has no function here.
    void WithLine(const std::function<void(HostLine&)>& work);
    void WithBalance(const std::function<void(BalanceModel&)>& work);

    /// Does everything that is due; called by the bench when a descriptor is readable or the
    /// deadline has come.
    void Serve();
    std::vector<int> Descriptors();
    Clock::time_point Deadline();
    /// How the bench learns that descriptors or deadline have changed on another thread.
    void OnChange(std::function<void()> listener) { changed_ = std::move(listener); }

 private:
    using Lock = std::unique_lock<std::recursive_mutex>;
    using Moment = std::chrono::microseconds;  // since the set-up

    /// Characters that are on their way along the line.
    struct InTransit {
        Moment due;
        Character character;
    };

    Moment SinceSetUp() const;
    Time Now() const { return std::chrono::duration_cast<Time>(SinceSetUp()); }
    template <typename Work>
    void DoNow(const Work& work);

    void PutOn(const LoadStep& load);
    void Prepare(const Script& script);
    void ApplyAt(const Change& change, Time at);
    void ServeScript();
    void ServeOpening();
    void ServeLocked();
    void CatchUp();
    void ServePlug();
    void PullOut();
    void PutBack();
    void PlugInAs(const std::string& device);
    bool IsPlugDue() const;
    void TakeArrival(const HostLine::Arrival& arrival);
    void TakeBytes(const HostLine::Arrival& arrival);
    void CompareSettings(const UartSettings& host);
    void PassToInstrument();
    void TakeAnswers();
    void PassToHost();
    void PassPiecesToHost();
    std::optional<Moment> NextPiece();
    void KeepDistance(Moment late);
    Moment Put(std::deque<InTransit>& way, const std::vector<Character>& characters, Moment free,
               const UartSettings& sender) const;
    void Record(LineEvent::Kind kind, const std::string& bytes);
    void ForgetOldEvents();
    std::string Sent(LineEvent::Kind kind);

    std::recursive_mutex mutex_;
    Clock::time_point start_ = Clock::now();
    std::string name_;
    Instrument instrument_;
    UartSettings settings_;
    std::optional<Adapter> pace_;
    std::unique_ptr<HostLine> line_;
    std::string returnsAs_;
    bool plugged_ = true;
    std::string plugTrouble_;  ///< why the adapter could not be plugged in; empty: nothing wrong
    Moment plugAgainAt_{0};
    std::condition_variable_any plugServed_;
    bool wasOpen_ = false;
    std::deque<ScriptStep> script_;
    std::deque<InTransit> toInstrument_;
    std::deque<InTransit> toHost_;
    Moment hostFree_{0};
    Moment instrumentFree_{0};
    std::deque<LineEvent> log_;
    std::size_t loggedBytes_ = 0;
    std::optional<UartSettings> settingsOfLastCommand_;
    std::set<std::string> otherSettings_;  ///< at which the host has spoken
    Listener listener_;
    std::function<void()> changed_;
};

}  // namespace simulator
