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

    void powerUp() override;
    void receiveBreak() override { say("ET"); }

 protected:
    void unknown(const std::string& command) override;
    void refuse(const std::string&) override { say("EL"); }
    void spoiled() override { say("ET"); }
    bool interrupts(const std::string& command) const override { return command == "@"; }
    void printKey() override;

 private:
    struct Command {
        int level;
        const char* name;
        Does<MtSics> does;
        bool isAnswered;
    };
    /// Every command there is, in the order of I0, and whether this model answers it.
    std::vector<Command> commands() const;

    // What it is (mt-sics-identity.cpp).
    void sayCommands();
    void sayLevels();
    void sayType();
    void saySoftware();
    void sendSerialNumber();
    void saySerialNumber();
    void saySoftwareNumber();
    void sayModel();
    void reset();
    void answer(const std::string& id, const std::string& texts);

    // Weighing (mt-sics.cpp).
    void sendStable();
    void sendImmediately();
    void sendRepeatedly();
    void sendChanges(const std::string& step);
    void sendStableChanges(const std::string& step);
    void sendInTime(const std::string& milliseconds);
    void zero();
    void zeroImmediately();
    void zeroInTime(const std::string& milliseconds);
    void tare();
    void tareImmediately();
    void tareInTime(const std::string& milliseconds);
    void tareValue(const std::string& parameters);
    void clearTare(const std::string& parameters);
    void sayStatus();
    void sayWeightNow();

    // Settings and service (mt-sics-settings.cpp).
    void showText(const std::string& parameters);
    void showWeight();
    void power(const std::string& parameters);
    void identify(const std::string& parameters);
    void chooseUnit(const std::string& parameters);
    void setDate(const std::string& parameters);
    void setTime(const std::string& parameters);
    void setRate(const std::string& parameters);
    void adjustAsSet();
    void adjustInternally();
    void adjust(const std::string& id);

    bool isOutOfRange(const std::string& id);
    /// Switched off or occupied: it weighs nothing now.
    bool isUnable() const { return isBusy() || adjusting_ || !balance().isOn(); }
    void atRest(const std::string& id, Action then);
    void inTime(const std::string& id, const std::string& milliseconds, Action then);
    void watch(const std::string& id, const std::string& step);
    void followChange(std::optional<double> step, bool saysMoving);
    bool hasChanged(const Reading& reading, std::optional<double> step) const;
    void tareNow(const std::string& id);
    static std::optional<std::string> quotedText(const std::string& parameters);
    std::optional<double> grams(const std::string& weight) const;
    void sayOutcome(const std::string& id, Outcome outcome, const std::string& done);
    std::string weightLine(const std::string& id, const std::string& digits) const;

    Switches switches_;
    const MtSicsModel& model_;
    Calendar calendar_;
    Time interval_;           ///< between two weights of SIR
    std::string name_;        ///< that a host gave it
    double enteredTare_ = 0;  ///< grams, as a host entered it
    double lastSent_ = 0;     ///< the last stable weight of SR, as shown
    bool moved_ = false;      ///< whether the load has changed since
    bool adjusting_ = false;
};

}  // namespace simulator
