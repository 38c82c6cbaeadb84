#pragma once

#include "Cwbalance.h"

/// Mettler PM balances, with the older standard PM protocol or with MT-SICS (sources: the maker's
/// "Bidirectional Data Interface" for AM, PM and SM balances; MT-SICS reference manual).
///
/// Each object finds out once which of the two protocols the balance speaks: in the first IsReady()
/// that succeeds. It keeps the result in `protocolCode` (0 standard PM, 1 MT-SICS) for its whole
/// life, even if the port changes. The protocol decides how TareSet() presets a tare; everything
/// else is the same in both. `modelFlagA` is 1 until the protocol is known.
///
/// Line settings at construction: port 0 of kind 'S', 600 baud, even parity, 7 data bits, one stop
/// bit, no flow control, a time-out of 1 s.
///
/// RestoreFactorySettings() is inherited from Cwbalance: it sends nothing and returns 1.
///
/// Times below count time-outs t (1 s unless changed) and the fixed pauses. A reading ends as soon
/// as its answer ends in CR LF. A is the longest time of one reading: 3 t if the balance is silent,
/// and 6 t if it keeps sending without a line end. R is the time of one IsReady(): 0.5 s + A, and 1
/// s + 3 A more while the protocol is not known.
class WBALANCE_EXPORT WbalanceMettlerPM : public Cwbalance {
 public:
    WbalanceMettlerPM();
    ~WbalanceMettlerPM() override;

    /// Opens and clears the line, finds out the protocol if it is not known yet ("@", "SI", "@";
    /// the last answer tells), and asks for a trial reading ("SI"). Any answer to it is accepted.
    ///
    /// @return 1 when all was answered; the port stays open. 0 when the port can't be opened or
    ///   configured; 0 and the port closed when it can't be cleared, a command can't be sent or
    ///   nothing comes. After a failure the next call finds out the protocol again.
    ///
    /// Takes at most R.
    int IsReady() override;

    /// Tares with "T" after IsReady(), waits 2.5 s and checks the reading with a virtual call of
    /// Weight(0, ..., null). The answer to "T" does not matter.
    ///
    /// @return 1 when the balance then reads less than 0.1 in magnitude, else 0. Takes at most 2 R
    ///   + 3.5 s + 2 A.
    int Tare() override;

    /// Reads the weight after IsReady().
    ///
    /// @param mode 0 a stable weight only ("S"; 1 s + A); 1 a stable weight, and without one the
    ///   sum of up to five immediate ones divided by 5, so that a pass without an answer counts as
    ///   zero (A, and 3.5 s + 5 A more); 2 one immediate weight ("SI"; A). Any other
    ///   value returns 0 after IsReady(). The time of IsReady(), R, is added.
    /// @param weight receives grams, 0.0 on failure; must not be null
    /// @param decimals receives the count of decimals of each answer that is parsed and has a
    ///   point; may be null
    /// @return 1 a stable weight, 2 a dynamic one, 0 failure
    ///
    /// A stable weight is any answer with an S and a blank in its first 33 characters. In MT-SICS
    /// that is every answer: a dynamic one ("S D") counts as stable, and busy, overload and
    /// underload ("S I", "S +", "S -") read as a stable 0.0. The driver does not look at the unit.
    int Weight(long mode, double* weight, int* decimals) override;

    /// Sets a preset tare. It uses the protocol that was found; before the first successful
    /// IsReady() this is the standard one.
    ///
    /// Standard PM: Tare(), IsReady(), "B" with the preset, 2 s, and a check with Weight(0, ...,
    /// null), all as virtual calls. The result is 1 if the reading is less than 0.1 larger in
    /// magnitude than the preset (0.1 itself may go either way). So it is also 1 if the reading is
    /// smaller or has the other sign. Takes at most 4 R + 6.5 s + 3 A.
    ///
    /// MT-SICS: IsReady(), "T", and "TA" with the preset and the tare that the balance answered
    /// together. 0 when a command can't be sent or "T" is not answered; otherwise 1, also when the
    /// balance refuses the preset or does not answer. Takes at most R + 2 A.
    ///
    /// @param preset grams. Two decimals are sent. What does not fit the command ends the process:
    ///   in standard PM a preset above 1e24 or below -1e23, in MT-SICS a sum of 1e21 and more or
    ///   -1e20 and less, after the "T" was sent. A value that is not finite is sent as the word nan
    ///   or inf.
    int TareSet(double preset) override;

 private:
    WBALANCE_LOCAL int DetectProtocol();
    WBALANCE_LOCAL int StableWeight(double* weight, int* decimals);
    WBALANCE_LOCAL int ImmediateWeight(double* weight, int* decimals);
    WBALANCE_LOCAL int StableOrAveragedWeight(double* weight, int* decimals);
    WBALANCE_LOCAL int AveragedWeight(double* weight, int* decimals);
    WBALANCE_LOCAL int PresetInStandardPM(double preset);
    WBALANCE_LOCAL int PresetInSics(double preset);
    WBALANCE_LOCAL int SendPreset(const char* commandFormat, double preset);
};
