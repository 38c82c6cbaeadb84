#pragma once

#include "Cwbalance.h"

/// Mettler PM balances, with the older standard PM protocol or with MT-SICS (sources: the maker's
/// "Bidirectional Data Interface" for AM, PM and SM balances; MT-SICS reference manual).
///
/// Which of the two protocols the balance speaks is found out once for each object, in the first
/// IsReady() that gets to its end, and kept in `protocolCode` (0 standard PM, 1 MT-SICS) for the
/// object's life, also when the port changes. It decides how TareSet() presets a tare; everything
/// else is the same in both. `modelFlagA` is 1 until then.
///
/// Line settings at construction: port 0 of kind 'S', 600 baud, even parity, 7 data bits, one stop
/// bit, no flow control, a time-out of 1 s.
///
/// RestoreFactorySettings() is that of Cwbalance: it sends nothing and returns 1.
///
/// Times below count time-outs t (1 s unless changed) and the fixed pauses. An answer that ends in
/// CR LF ends its reading at once; A stands for the longest that one reading may take, 3 t with a
/// silent balance and 6 t with one that keeps sending lines without end. R stands for the time of
/// one IsReady(): 0.5 s + A, and 1 s + 3 A more while the protocol is still to be found out.
class WBALANCE_EXPORT WbalanceMettlerPM : public Cwbalance {
 public:
    WbalanceMettlerPM();
    ~WbalanceMettlerPM() override;

    /// Opens and clears the line, finds out the protocol if that is still to be done ("@", "SI",
    /// "@"; the last answer tells), and asks for a trial reading ("SI"), of which only the arrival
    /// counts.
    ///
    /// @return 1 when all was answered; the port stays open. 0 when the port can't be opened or
    ///   configured; 0 and the port closed when it can't be cleared, a command can't be sent or
    ///   nothing comes. After a failure the protocol is found out anew the next time.
    ///
    /// Takes at most R.
    int IsReady() override;

    /// Tares with "T" after IsReady(), waits 2.5 s and checks the reading with Weight(0, ..., null)
    /// of the object's own class. What the balance answers to "T" is not looked at.
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
    /// underload ("S I", "S +", "S -") read as a stable 0.0. The unit is not looked at.
    int Weight(long mode, double* weight, int* decimals) override;

    /// Sets a preset tare. Which protocol was found by then decides; on an object that no IsReady()
    /// has succeeded on, that is the standard one.
    ///
    /// Standard PM: Tare(), IsReady(), "B" with the preset, 2 s, and a check with Weight(0, ...,
    /// null), all of the object's own class. 1 when the reading is less than 0.1 larger in
    /// magnitude than the preset (0.1 itself may go either way), so also when it is smaller, or
    /// when its sign is the other one. Takes at most 4 R + 6.5 s + 3 A.
    ///
    /// MT-SICS: IsReady(), "T", and "TA" with the preset and the tare that the balance answered
    /// together. 0 when a command can't be sent or "T" is not answered; otherwise 1, also when the
    /// balance refuses the preset or does not answer. Takes at most R + 2 A.
    ///
    /// @param preset grams. Two decimals are sent. What does not fit the command ends the process:
    ///   in standard PM a preset above 1e24 or below -1e23, in MT-SICS a sum of 1e21 and
    ///   more or -1e20 and less, after the "T" was sent. What is not finite is sent as the word nan
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
