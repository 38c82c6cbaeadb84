#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/Switches.h"
#include "simulator/instruments/Calendar.h"
#include "simulator/instruments/Dialect.h"
#include "simulator/instruments/MtSicsModel.h"

namespace simulator {

/// MT-SICS, the command set of Mettler Toledo's balances, as the manuals of the Excellence, PR, XS
/// and SB lines describe it. Commands are upper case, end in CR LF, parameters follow after one
/// blank. Quirks that hosts meet:
///   - SI is answered with the identification of S:        > "SI"  < "S D      12.34 g"
///   - the answer to the reset is the serial number:       > "@"   < I4 A "1126493049"
///   - S, T and Z wait until the pan is at rest, for as long as the stability time-out, and then
///     answer "S I", "T I", "Z I"
///   - ES: no such command on this model. EL: it takes no parameters. "XX L": not with these.
class MtSics : public Dialect {
 public:
    MtSics(BalanceModel& model, const Switches& switches);

    void PowerUp() override;
    void ReceiveBreak() override { Say("ET"); }

 protected:
    void Unknown(const std::string& command) override;
    void Refuse(const std::string& /*command*/) override { Say("EL"); }
    void Spoiled() override { Say("ET"); }
    bool Interrupts(const std::string& command) const override {
        return command == "@" || (command == "C" && switches_.IsOn("timed-commands"));
    }
    void PrintKey() override;

 private:
    struct Command {
        int level;
        const char* name;
        Does<MtSics> does;
        bool isAnswered;
    };
    /// Every command, in the order of I0, and whether this model answers it.
    std::vector<Command> Commands() const;
    std::vector<Command> BasicCommands() const;    ///< of the levels 0 and 1
    std::vector<Command> FurtherCommands() const;  ///< of level 2

    /// The unit in which a weight is sent: that of the host, or that of the display.
    enum class In { HostUnit, ShownUnit };

    // What it is (MtSicsIdentity.cpp).
    void SayCommands();
    void SayLevels();
    void SayType();
    void SaySoftware();
    void SendSerialNumber();
    void SaySerialNumber();
    void SaySoftwareNumber();
    void SayModel();
    void SayMinutes();
    void Reset();
    void EndAll();
    void EndCommands();
    void Answer(const std::string& id, const std::string& texts);

    // Weighing (MtSics.cpp).
    void SendStable() { SayStable(In::HostUnit); }
    void SendStableAsShown() { SayStable(In::ShownUnit); }
    void SendImmediately() { SayImmediately(In::HostUnit); }
    void SendImmediatelyAsShown() { SayImmediately(In::ShownUnit); }
    void SendRepeatedly() { Repeat(In::HostUnit); }
    void SendRepeatedlyAsShown() { Repeat(In::ShownUnit); }
    void SendChanges(const std::string& step);
    void SendChangesAsShown(const std::string& step);
    void SendStableChanges(const std::string& step);
    void SendStableChangesAsShown(const std::string& step);
    void SendInTime(const std::string& milliseconds);
    void Zero();
    void ZeroImmediately();
    void ZeroInTime(const std::string& milliseconds);
    void Tare();
    void TareImmediately();
    void TareInTime(const std::string& milliseconds);
    void TareValue(const std::string& parameters);
    void ClearTare(const std::string& parameters);
    void SayStatus();
    void SayStable(In in);
    void SayImmediately(In in);
    void Repeat(In in);
    void SayWeightNow(In in);

    // Settings and service (MtSicsSettings.cpp).
    void ShowText(const std::string& parameters);
    void ShowWeight();
    void Power(const std::string& parameters);
    void Identify(const std::string& parameters);
    void ChooseUnit(const std::string& parameters);
    void SetDate(const std::string& parameters);
    void SetTime(const std::string& parameters);
    void SetRate(const std::string& parameters);
    void SayTemperature();
    void MoveDoors(const std::string& parameters);
    void SayAdjustment(const std::string& parameters);
    void AdjustAsSet();
    void AdjustInternally();
    void Adjust(const std::string& id);

    bool IsOutOfRange(const std::string& id);
    /// Switched off or busy: it gives no weight now.
    bool IsUnable() const { return IsBusy() || adjusting_ || !Balance().IsOn(); }
    void AtRest(const std::string& id, Action then);
    void InTime(const std::string& id, const std::string& milliseconds, Action then);
    /// What SR and similar commands do: which answer refuses a step, and what they send.
    struct Watching {
        std::string id;
        In in;
        bool saysMoving;
    };
    void Watch(const Watching& watching, const std::string& step);
    void FollowChange(const Watching& watching, std::optional<double> step);
    bool HasChanged(double grams, std::optional<double> step) const;
    void TareNow(const std::string& id);
    static std::optional<std::string> QuotedText(const std::string& parameters);
    Unit UnitOf(In in) const {
        return in == In::HostUnit ? Balance().HostUnit() : Balance().ShownUnit();
    }
    Indication Weight() const { return Balance().ReadIn(Balance().HostUnit()); }
    static std::optional<double> Grams(const std::string& weight, const Unit& unit);
    void SayOutcome(const std::string& id, Outcome outcome, const std::string& done);
    static std::string WeightLine(const std::string& id, const std::string& digits,
                                  const Unit& unit);
    std::string TareLine(const std::string& id) const;

    Switches switches_;
    const MtSicsModel& model_;
    Calendar calendar_;
    Time interval_;           ///< between two weights of SIR
    std::string name_;        ///< that a host gave it
    double enteredTare_ = 0;  ///< grams, as a host entered it
    double lastSent_ = 0;     ///< grams, the last stable weight of SR
    bool moved_ = false;      ///< whether the load has changed since
    bool adjusting_ = false;
    bool wantsAdjustment_;
    Time startedAt_{0};
};

}  // namespace simulator
