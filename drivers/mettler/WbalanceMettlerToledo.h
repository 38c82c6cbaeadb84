#pragma once

#include "Cwbalance.h"

/// Any Mettler Toledo balance that speaks the basic commands of MT-SICS: reset, zero, stable
/// weight, immediate weight (source: the maker's MT-SICS reference manual, levels 0 and 1).
///
/// Line settings at construction: port 0 of kind 'S', 2400 baud, even parity, 7 data bits, one stop
/// bit, no flow control, a time-out of 1 s.
///
/// TareSet() and RestoreFactorySettings() are inherited from Cwbalance: they send nothing and
/// return 1.
///
/// The times below consist of full time-outs t (1 s unless changed) and fixed pauses.
class WBALANCE_EXPORT WbalanceMettlerToledo : public Cwbalance {
 public:
    WbalanceMettlerToledo();
    ~WbalanceMettlerToledo() override;

    /// Opens and clears the line and sends the reset "@". The driver does not read the answer. Most
    /// balances do answer; the driver then takes this answer for the beginning of the next one, and
    /// the weight is its first digit (the 4 of I4). WithLineReadiness has a readiness that sends no
    /// reset.
    ///
    /// @return 1 when the reset was handed to the port. 0 when the port can't be opened, configured
    ///   or cleared (then it is closed) or the reset can't be sent (then it is closed too). Never
    ///   waits.
    int IsReady() override;

    /// Zeroes the balance with "Z" after IsReady().
    /// @return 1 when the answer holds "Z A" in its first 33 characters, else 0. Waits 3 t.
    int Tare() override;

    /// Reads the weight after IsReady().
    ///
    /// @param mode 0 a stable weight only ("S"; 1 s + 3 t); 1 a stable weight, and without one the
    ///   sum of up to five immediate ones divided by 5, so that a pass without an answer counts as
    ///   zero (3 t, and 3.5 s + 15 t more); 2 one immediate weight ("SI"; 3 t). Any
    ///   other value returns 0 after IsReady().
    /// @param weight receives grams, 0.0 on failure; must not be null
    /// @param decimals receives the count of decimals of each answer that is parsed and has a
    ///   point; may be null
    /// @return 1 a stable weight, 2 a dynamic one, 0 failure (no answer or one that is not a
    ///   weight, such as an overload)
    ///
    /// The driver does not look at the unit of the answer: it returns the number as it stands.
    int Weight(long mode, double* weight, int* decimals) override;

 private:
    WBALANCE_LOCAL int StableWeight(double* weight, int* decimals);
    WBALANCE_LOCAL int ImmediateWeight(double* weight, int* decimals);
    WBALANCE_LOCAL int StableOrAveragedWeight(double* weight, int* decimals);
    WBALANCE_LOCAL int AveragedWeight(double* weight, int* decimals);
    WBALANCE_LOCAL int Conclude(double value, double* weight, int status);
};
