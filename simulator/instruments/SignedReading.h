#pragma once

#include "simulator/Switches.h"
#include "simulator/instruments/Dialect.h"

namespace simulator {

/// What the Denver Instrument XL-1800 and the Setra EL-2000S have in common: commands without a
/// line end, a request that is answered at once with a line of status, sign and number, and a tare
/// that is not answered. What is in no row of the command table is ignored.
class SignedReading : public Dialect {
 public:
    /// `request` and `tare` are the command texts; `switches` are those of SignedReadingSwitches().
    SignedReading(BalanceModel& model, const Switches& switches, const std::string& request,
                  const std::string& tare);

 protected:
    std::optional<std::string> CutCommand(std::string& received) override;
    void Execute(const std::string& command) override;
    void Unknown(const std::string&) override {}
    void PrintKey() override { SayReading(); }
    bool Interrupts(const std::string&) const override { return true; }

    /// The line of a reading, without its end.
    virtual std::string Line(const Indication& indication) const;

    /// "-": the sign of a reading, also of a positive one.
    static std::string Sign(const Indication& indication) {
        return indication.value < 0 ? "-" : "+";
    }
    /// The number without its sign; letters in its place out of range.
    static std::string Number(const Indication& indication);
    const Switches& ChosenSwitches() const { return switches_; }

 private:
    void SayReading();
    void Tare();

    Switches switches_;
};

/// The switches that both instruments have.
std::vector<SwitchDescription> SignedReadingSwitches();

}  // namespace simulator
