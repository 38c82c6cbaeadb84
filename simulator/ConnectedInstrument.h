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

#include "simulator/EventLog.h"
#include "simulator/Instrument.h"
#include "simulator/Options.h"
#include "simulator/Transit.h"
#include "simulator/line/HostLine.h"

namespace simulator {

/// An instrument in real time at the end of a serial line. Every function may be called from any
/// thread. None waits for anything but the work that is due.
class ConnectedInstrument {
 public:
    using Clock = std::chrono::steady_clock;

    /// Throws std::invalid_argument for unknown names in `options`.
    ConnectedInstrument(const CatalogEntry& entry, const Options& options,
                        std::unique_ptr<HostLine> line);

    /// Makes the change now, and returns when it is made. Do not call it from a listener, nor from
    /// the functions given to WithLine and WithBalance. Throws std::invalid_argument for a switch
    /// that the instrument does not have. Throws std::runtime_error if the system has no resources
    /// for plugging an adapter in; this is then tried again each second.
    void Apply(const Change& change);

    /// The load in grams; the pan settles towards it from now on.
    void SetLoad(double grams);
    /// A fault as Fault::Parse reads it; its times count from the set-up of the instrument.
    void AddFault(const std::string& fault);
    void ClearFaults();
    std::vector<std::string> FaultsInForce();  ///< their names, at this moment
    /// The line's adapter is pulled out. PlugIn brings it back, under its old name or as `device`.
    /// If another instrument is at `device`, it comes back under its old name.
    void Unplug();
    void PlugIn();
    void PlugIn(const std::string& device);

    /// What has happened: the last 10,000 events, or fewer if these have more than 1 MiB of bytes.
    std::vector<LineEvent> Log();
    void ClearLog();
    /// The bytes of the log that the host has sent, and those that the instrument has sent.
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

    /// Gives access to the line or the model, for what has no function here.
    void WithLine(const std::function<void(HostLine&)>& work);
    void WithBalance(const std::function<void(BalanceModel&)>& work);

    /// Does everything that is due; called by the bench when a descriptor is readable or the
    /// deadline has come.
    void Serve();
    std::vector<int> Descriptors();
    Clock::time_point Deadline();
    /// Sets a function that is called when another thread has changed descriptors or deadline.
    void OnChange(std::function<void()> listener) { changed_ = std::move(listener); }

 private:
    using Lock = std::unique_lock<std::recursive_mutex>;
    using Moment = Transit::Moment;

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
    Moment CharacterTime(const UartSettings& sender) const;
    void Record(LineEvent::Kind kind, const std::string& bytes);
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
    Transit toInstrument_;
    Transit toHost_;
    EventLog log_;
    std::optional<UartSettings> settingsOfLastCommand_;
    std::set<std::string> otherSettings_;  ///< wrong settings that the host has used so far
    Listener listener_;
    std::function<void()> changed_;
};

}  // namespace simulator
