#pragma once

#include "Cwbalance.h"

/// Radwag balances: tare, zero, stable weight, immediate weight (source: the chapter "Communication
/// protocol" of the maker's manuals for the AS, PS, R, WTC, WTB and PUE C/31 series).
///
/// Line settings at construction: port 0 of kind 'S', 9600 baud, even parity, 7 data bits, one stop
/// bit, no flow control, a time-out of 1 s.
///
/// TareSet() and RestoreFactorySettings() are inherited from Cwbalance: they send nothing and
/// return 1. TareSet() does so on purpose: this driver can't set a preset tare, and hosts take the
/// 1 for "nothing to do".
///
/// Every operation opens the port through IsReady() and leaves it open, whatever the result. A read
/// always uses its three attempts, even if the answer came at once. The times below are upper
/// limits, in time-outs t (1 s unless changed) and fixed pauses. More than about 980 characters
/// within one read end the process (CSerialObject::ReceiveAnswer()).
///
/// The result does not tell a balance that refuses a command ("T v", "Z ^", "S I", "ES") from one
/// that answers nonsense: it is 0 in both cases. Only the trace shows the answer.
class WBALANCE_EXPORT WbalanceRadwag : public Cwbalance {
 public:
    WbalanceRadwag();
    ~WbalanceRadwag() override;

    /// Opens, configures and clears the line. Sends nothing and never waits. The result 1 does not
    /// mean that a balance answers.
    ///
    /// @return 1 when the line can be used. 0 for a negative port number, when the port can't be
    ///   opened or configured, or when it can't be cleared (then it is closed).
    int IsReady() override;

    /// Tares: _Tare(); when that fails Zero(), whose success counts as a tare; when that fails too
    /// _Tare() once more.
    ///
    /// So if the load is outside the tare range but within the zero range, the balance is zeroed.
    /// @return 1 or 0. Waits 18 t + 1.8 s when the balance is silent.
    int Tare() override;

    /// Reads the weight after IsReady().
    ///
    /// @param mode 0 a stable weight ("S"; 9 t + 0.9 s); 2 an immediate weight ("SI"; 9 t + 0.9 s);
    ///   1 calls Weight() with mode 0 and, when that fails, with mode 2 (18 t + 1.8 s), both as
    ///   virtual calls. Any other value returns 0 after IsReady().
    /// @param weight receives grams, 0.0 on failure; must not be null
    /// @param decimals receives the number of decimals of an answer that has a point; may be null
    /// @return 1 a weight, 0 failure. An immediate weight is reported as 1 too, stable or not.
    ///
    /// The driver does not look at the stability mark and the unit of the answer. With a mark "^"
    /// or "v" (load outside the weighing range) it therefore returns the mass that follows, 0.000
    /// on most models, with result 1. It returns kilograms as if they were grams.
    int Weight(long mode, double* weight, int* decimals) override;

    /// Sends the tare command once and waits for "T D" in up to two reads. Anything else within the
    /// first 65 characters of a read counts as a failure of that read.
    /// @return 1 or 0. Waits 6 t + 0.6 s.
    ///
    /// The name is part of the interface.
    int _Tare();

    /// Sends the zero command once and waits for "Z D" in the same way.
    /// @return 1 or 0. Waits 6 t + 0.6 s.
    int Zero();

    /// The number in an answer to "S" or "SI". The driver looks at no more than 17 characters,
    /// beginning with the second one after the "S". Digits, points and '-' among them make the
    /// number. A '-' that is not in front ends the number, on purpose.
    ///
    /// @param answer fewer than 100 characters; a longer text ends the process. Must not be null.
    /// @param weight receives the number, 0.0 when there is none; may be null
    /// @param decimals receives how many characters of the number follow its first point; stays as
    ///   it is without one. May be null.
    /// @return 1, or 0 when the answer holds neither "S  " nor "SI "; then nothing is written.
    int ParseWeight(char* answer, double* weight, int* decimals);

 private:
    WBALANCE_LOCAL int AwaitDone(const char* done);
    WBALANCE_LOCAL int StableWeight(double* weight, int* decimals);
    WBALANCE_LOCAL int ImmediateWeight(double* weight, int* decimals);
    WBALANCE_LOCAL int Conclude(char* answer, double* weight, int* decimals);
};
