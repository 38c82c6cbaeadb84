#pragma once

#include "Cwbalance.h"

/// Sartorius balances that print lines of 16 characters, or of 22 with an identifier of six
/// characters in front (source: the maker's interface descriptions, "Data Output Format" and "Data
/// Input Format").
///
/// The driver never waits for a stable reading: whatever the balance prints in answer to the print
/// command is the weight. A balance set to print "after stability" answers late or not at all.
///
/// Line settings at construction: port 0 of kind 'S', 1200 baud, odd parity, 7 data bits, one stop
/// bit, no flow control, a time-out of 1 s.
///
/// IsReady() alone opens the port. The other operations send on the port that it left open; without
/// one the first command can't be sent, and they return 0.
///
/// RestoreFactorySettings() is that of Cwbalance: it sends nothing and returns 1.
///
/// Times below count full time-outs t (1 s unless changed) and the fixed pauses. More than some 980
/// characters in answer to one print command end the process (CSerialObject::ReceiveAnswer()).
class WBALANCE_EXPORT WbalanceSartorius : public Cwbalance {
 public:
    WbalanceSartorius();
    ~WbalanceSartorius() override;

    /// Opens and clears the line and makes a trial reading, Weight(1, ..., null) of the object's
    /// own class. Leaves the port open, except when it can't be cleared.
    /// @return the result of the reading, 1 or 0; 0 also when the port can't be opened, configured
    ///   or cleared. Waits 0.5 s + 3 t.
    int IsReady() override;

    /// Cancels what the balance is doing (ESC s3_), tares and zeroes it (ESC T), waits 1 s and
    /// checks the reading with Weight(0, ..., null) of the object's own class.
    ///
    /// @return 1 when the balance then reads at most 0.1 in magnitude, else 0. Waits 1.5 s + 3 t.
    ///
    /// A line that holds no weight reads as 0.0, so a tare that ends with an overloaded balance
    /// succeeds.
    int Tare() override;

    /// Reads the weight (ESC P): whatever comes is taken, stable or not.
    ///
    /// @param mode not looked at
    /// @param weight receives grams, 0.0 on failure and for an answer whose layout is not known or
    ///   that is not a weight (overload, underload, calibration, error); must not be null
    /// @param decimals neither read nor written; may be null
    /// @return 1 when anything came, else 0. Waits 0.5 s + 3 t.
    ///
    /// The unit is not looked at: the number of a line in kg or mg is passed on as it stands.
    int Weight(long mode, double* weight, int* decimals) override;

    /// Cancels and tares as Tare() does, types `preset` into the display (ESC t), waits 1 s,
    /// presses soft key 4 (ESC kF4_), which must be the key that stores a tare, waits 2 s and
    /// checks the reading with Weight(0, ..., null) of the object's own class.
    ///
    /// @param preset grams. Its text with two decimals may have four characters: 0.00 to 9.99, and
    ///   the words inf, nan, -inf and -nan of what is not finite, which are sent, too. A longer
    ///   one, from 10.00 on or below zero (-0.00 included), does not fit the command and ends the
    ///   process, after the cancel and tare commands were handed to the port.
    /// @return 1 when the empty balance then reads minus `preset` within 0.01, else 0, as always
    ///   with what is not finite. A difference of 0.01 itself may go either way: it is one of
    ///   binary numbers. A failure may leave the balance tared. Waits 3.5 s + 3 t.
    int TareSet(double preset) override;

    /// The signed number in a printed line of 16 or 22 characters, line end included.
    ///
    /// Of a line that begins with "TP1   ", followed by one that begins with "N1    ", the second
    /// one, the net weight, is read.
    ///
    /// @param answer fewer than 100 characters; a longer text ends the process. Must not be null.
    /// @param decimals neither read nor written
    /// @return the number, 0.0 when the line has another length or no number stands in its place
    double ParseWeight(char* answer, int* decimals);

 private:
    WBALANCE_LOCAL int CancelAndTare();
};
