#pragma once

#include "Cwbalance.h"

/// Sartorius balances that print lines of 16 characters, or of 22 characters that begin with an
/// identifier of six (source: the maker's interface descriptions, "Data Output Format" and "Data
/// Input Format").
///
/// The driver never waits for a stable reading: the weight is what the balance prints after the
/// print command. A balance that is set to print "after stability" answers late or not at all.
///
/// Line settings at construction: port 0 of kind 'S', 1200 baud, odd parity, 7 data bits, one stop
/// bit, no flow control, a time-out of 1 s.
///
/// Only IsReady() opens the port. The other operations use the open port. If no port is open, they
/// can't send their first command and return 0.
///
/// RestoreFactorySettings() is inherited from Cwbalance: it sends nothing and returns 1.
///
/// The times below consist of full time-outs t (1 s unless changed) and fixed pauses. An answer of
/// more than about 980 characters to one print command ends the process
/// (CSerialObject::ReceiveAnswer()).
class WBALANCE_EXPORT WbalanceSartorius : public Cwbalance {
 public:
    WbalanceSartorius();
    ~WbalanceSartorius() override;

    /// Opens and clears the line and makes a trial reading with a virtual call of Weight(1, ...,
    /// null). Leaves the port open, except when it can't be cleared.
    /// @return the result of the reading, 1 or 0; 0 also when the port can't be opened, configured
    ///   or cleared. Waits 0.5 s + 3 t.
    int IsReady() override;

    /// Cancels what the balance is doing (ESC s3_), tares and zeroes it (ESC T), waits 1 s and
    /// checks the reading with a virtual call of Weight(0, ..., null).
    ///
    /// @return 1 when the balance then reads at most 0.1 in magnitude, else 0. Waits 1.5 s + 3 t.
    ///
    /// A line without a weight reads as 0.0, so a tare succeeds if the balance is overloaded in the
    /// end.
    int Tare() override;

    /// Reads the weight (ESC P), stable or not.
    ///
    /// @param mode ignored
    /// @param weight receives grams, 0.0 on failure and for an answer whose layout is not known or
    ///   that is not a weight (overload, underload, calibration, error); must not be null
    /// @param decimals neither read nor written; may be null
    /// @return 1 when anything came, else 0. Waits 0.5 s + 3 t.
    ///
    /// The driver does not look at the unit: it returns the number of a line in kg or mg as it
    /// stands.
    int Weight(long mode, double* weight, int* decimals) override;

    /// Cancels and tares as Tare() does, types `preset` into the display (ESC t), waits 1 s,
    /// presses soft key 4 (ESC kF4_), which must be the key that stores a tare, waits 2 s and
    /// checks the reading with a virtual call of Weight(0, ..., null).
    ///
    /// @param preset grams. Its text with two decimals may have four characters: 0.00 to 9.99, and
    ///   the words inf, nan, -inf and -nan of what is not finite, which are sent, too. A longer
    ///   text (10.00 or more, or below zero, -0.00 included) does not fit the command and ends the
    ///   process, after the cancel and tare commands were handed to the port.
    /// @return 1 when the empty balance then reads minus `preset` within 0.01, else 0. A value that
    ///   is not finite always gives 0. A difference of exactly 0.01 may go either way, because the
    ///   numbers are binary. A failure may leave the balance tared. Waits 3.5 s + 3 t.
    int TareSet(double preset) override;

    /// The signed number in a printed line of 16 or 22 characters, line end included.
    ///
    /// If a line that begins with "TP1   " is followed by one that begins with "N1    ", the second
    /// one, the net weight, is read.
    ///
    /// @param answer fewer than 100 characters; a longer text ends the process. Must not be null.
    /// @param decimals neither read nor written
    /// @return the number, 0.0 when the line has another length or no number stands in its place
    double ParseWeight(char* answer, int* decimals);

 private:
    WBALANCE_LOCAL int CancelAndTare();
};
