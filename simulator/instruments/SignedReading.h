#pragma once

#include "simulator/Switches.h"
#include "simulator/instruments/Dialect.h"

namespace simulator {

/// The dialect that the Denver Instrument XL-1800 and the Setra EL-2000S share. Commands have no
/// line end. The request is answered at once with a line of status, sign and number. The tare is
/// not answered. Characters that are not a command are ignored.
class SignedReading : public Dialect {
 public:
    /// `request` and `tare` are the command texts; `switches` are those of SignedReadingSwitches().
    SignedReading(BalanceModel& model, const Switches& switches, const std::string& request,
                  const std::string& tare);

 protected:
    std::optional<std::string> CutCommand(std::string& received) override;
    void Execute(const std::string& command) override;
    void Unknown(const std::string& /*command*/) override {}
    void PrintKey() override { SayReading(); }
    bool Interrupts(const std::string& /*command*/) const override { return true; }

    /// The line of a reading, without its end.
    virtual std::string Line(const Indication& indication) const;

    /// "-": the sign of a reading, also of a positive one.
    static std::string Sign(const Indication& indication) {
        return indication.value < 0 ? "-" : "+";
    }
    /// The number without its sign; letters if the load is out of range.
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
