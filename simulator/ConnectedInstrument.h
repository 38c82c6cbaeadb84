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
    std::optional<LineSettings> line;   ///< the instrument's settings; empty: as delivered
    std::optional<Adapter> pace;        ///< characters take their time on the line, to this port

    Options& on(const std::string& path) { return device = path, *this; }
    /// The load in grams at the beginning, or from a time on.
    Options& withLoad(double grams, Time from = Time(0)) {
        return loads.push_back({grams, from}), *this;
    }
    Options& with(const std::string& setting) { return switches.push_back(setting), *this; }
    /// A fault as Fault::parse reads it; throws std::invalid_argument for other text.
    Options& withFault(const std::string& text) {
        return faults.push_back(Fault::parse(text)), *this;
    }
    /// The script in a file, beside what there is; throws as readScriptFile does.
    Options& withScript(const std::string& path);
    /// `settings` as LineSettings::parse reads them; throws std::invalid_argument for other text.
    Options& at(const std::string& settings);
    /// Characters take their time on the line, and the host gets them as its `port` hands them
    /// over, in the words of Adapter::parse; throws as that does.
    Options& withPacing(const std::string& port = "character") {
        return pace = Adapter::parse(port), *this;
    }
};

/// Something that happened on the line, for the log.
struct LineEvent {
    enum class Kind {
        fromHost,        ///< bytes as the host sent them
        fromInstrument,  ///< bytes as the instrument sent them
        lost,            ///< bytes of the instrument that nobody listened to
        overflow,        ///< bytes, of either side, for which the line had no more room
        unplugged,
        pluggedIn,
        otherSettings,  ///< the host speaks at settings that differ, which it has not done yet
        trouble,        ///< something could not be done, and is tried again
    };

    Time time;  ///< since the instrument was set up
    Kind kind;
    /// Of unplugged and pluggedIn the device, of otherSettings the instrument's settings, of
    /// trouble a sentence.
    std::string bytes;
    LineSettings settings;  ///< the host's at that time
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
    /// work given to withLine and withBalance. Throws std::invalid_argument for a switch that the
    /// instrument lacks, std::runtime_error when the system lets no adapter be plugged in; that is
    /// then tried again each second.
    void apply(const Change& change);

    /// The load in grams; the pan settles towards it from now on.
    void setLoad(double grams);
    /// A fault as Fault::parse reads it; its times count from the set-up of the instrument.
    void addFault(const std::string& fault);
    void clearFaults();
    std::vector<std::string> faultsInForce();  ///< their names, at this moment
    /// The line's adapter is pulled out; it is back under the same name or as `device`, or still
    /// under the same name when another instrument is at `device`.
    void unplug();
    void plugIn();
    void plugIn(const std::string& device);

    /// What has happened: the last 10,000 events, and of them not more than hold 1 MiB.
    std::vector<LineEvent> log();
    void clearLog();
    /// All bytes that the host has sent, and that the instrument has sent to it, in that log.
    std::string sentByHost();
    std::string sentByInstrument();
    /// Called for each event as it happens, on the thread on which it happens. It must not throw.
    using Listener = std::function<void(ConnectedInstrument& from, const LineEvent& event)>;
    void onEvent(Listener listener);

    /// The line settings in force when the host sent its last bytes; empty before the first.
    std::optional<LineSettings> settingsOfLastCommand();
    LineSettings hostSettings();  ///< the host's line settings now
    LineSettings ownSettings() const { return settings_; }
    bool isOpenedByHost();
    std::string device();                              ///< the device's present name
    const std::string& name() const { return name_; }  ///< of the catalog

    /// Works with the line or the model themselves, for what has no function here.
    void withLine(const std::function<void(HostLine&)>& work);
    void withBalance(const std::function<void(BalanceModel&)>& work);

    /// Does everything that is due; called by the bench when a descriptor is readable or the
    /// deadline has come.
    void serve();
    std::vector<int> descriptors();
    Clock::time_point deadline();
    /// How the bench learns that descriptors or deadline have changed on another thread.
    void onChange(std::function<void()> listener) { changed_ = std::move(listener); }

 private:
    using Lock = std::unique_lock<std::recursive_mutex>;
    using Moment = std::chrono::microseconds;  // since the set-up

    /// Characters that are on their way along the line.
    struct InTransit {
        Moment due;
        Character character;
    };

    Moment moment() const;
    Time now() const { return std::chrono::duration_cast<Time>(moment()); }
    template <typename Work>
    void change(const Work& work);

    void putOn(const LoadStep& load);
    void prepare(const Script& script);
    void applyAt(const Change& change, Time at);
    void serveScript();
    void serveOpening();
    void serveLocked();
    void catchUp();
    void servePlug();
    void pullOut();
    void putBack();
    void plugInAs(const std::string& device);
    bool isPlugDue() const { return plugged_ == (unplugFault() != nullptr); }
    const Fault* unplugFault() const;
    void takeArrival(const HostLine::Arrival& arrival);
    void takeBytes(const HostLine::Arrival& arrival);
    void compareSettings(const LineSettings& host);
    void passToInstrument();
    void takeAnswers();
    void passToHost();
    void passPiecesToHost();
    std::optional<Moment> nextPiece();
    void keepDistance(Moment late);
    Moment put(std::deque<InTransit>& way, const std::vector<Character>& characters, Moment free,
               const LineSettings& sender) const;
    void record(LineEvent::Kind kind, const std::string& bytes);
    void forgetOldEvents();
    std::string sent(LineEvent::Kind kind);

    std::recursive_mutex mutex_;
    Clock::time_point start_ = Clock::now();
    std::string name_;
    Instrument instrument_;
    LineSettings settings_;
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
    std::optional<LineSettings> settingsOfLastCommand_;
    std::set<std::string> otherSettings_;  ///< at which the host has spoken
    Listener listener_;
    std::function<void()> changed_;
};

}  // namespace simulator
