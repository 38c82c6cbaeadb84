#pragma once

#include "Cwbalance.h"

/// The Mettler SB32001 through MT-SICS, with its display (source: the maker's MT-SICS reference
/// manual, levels 0 to 2).
///
/// Line settings at construction: port 0 of kind 'S', 2400 baud, even parity, 7 data bits, one stop
/// bit, no flow control, a time-out of 1 s.
///
/// RestoreFactorySettings() is inherited from Cwbalance: it sends nothing and returns 1.
///
/// The object remembers two things between calls, in the model flags of Cwbalance: whether it must
/// still reset the balance (modelFlagC, set at construction), and whether the display shows a text
/// (modelFlagB).
///
/// Every operation begins with IsReady(), through a virtual call, and leaves the line open. A read
/// ends with the line end of an answer. Times below count such reads: r is 3 time-outs (1 s each
/// unless changed) if the balance is silent, and at most 6 if it sends something without a line
/// end. The time of IsReady() is added to them: 1 s + 2 r as long as a reset is due, else none.
/// While the display shows a text, Tare(), TareSet() and Weight() first send "DW", which takes 0.5
/// s + r more. If "DW" is not answered, they close the port and return 0.
///
/// The result does not tell a balance that refuses ("S I" busy or not stable in time, "S +"
/// overload, "S -" underload, "ES", "EL") from one that answers nonsense. Only the trace shows the
/// answer. The driver does not look at the unit of an answer: it returns the number as it stands.
class WBALANCE_EXPORT WbalanceMettlerSB32001 : public Cwbalance {
 public:
    WbalanceMettlerSB32001();
    ~WbalanceMettlerSB32001() override;

    /// Opens and clears the line; if a reset is still due, also resets the balance with "@",
    /// expects its serial number line ("I4 ") and asks for an immediate weight, to which any answer
    /// will do.
    ///
    /// @return 1 when the line can be used and the balance is reset. 0 for a negative port number,
    ///   when the port can't be opened or configured, or, with the port closed, when it can't be
    ///   cleared or a step of the reset fails; the reset then stays due. After the reset is done,
    ///   the result 1 does not mean that a balance answers.
    int IsReady() override;

    /// Tares with "T". The balance waits for stability first, on some models longer than the read.
    /// @return 1 when the answer holds "T S " in its first 32 characters, else 0. Waits r.
    int Tare() override;

    /// Reads the weight.
    ///
    /// @param mode 0 a stable weight only ("S"; 1 s + r); 1 a stable weight, and without one the
    ///   sum of up to five immediate ones divided by 5, so that a pass without an answer counts as
    ///   zero (r, and 3.5 s + 5 r more); 2 one immediate weight ("SI"; r). Any other
    ///   value returns 0 after IsReady() and, where it is due, "DW".
    /// @param weight receives grams, 0.0 on failure; must not be null
    /// @param decimals receives the count of decimals of each answer that is parsed and has a
    ///   point; may be null
    /// @return 1 a stable weight, 2 a dynamic one, 0 failure
    int Weight(long mode, double* weight, int* decimals) override;

    /// Tares with "T" and then sends "TA", with `tare` grams plus what the "T" just took.
    ///
    /// @param tare grams; two decimals are sent. A sum of 1e21 and more or -1e20 and less does not
    ///   fit the command and ends the process, after the "T" was sent; a value that is not finite
    ///   is sent as the word nan or inf.
    /// @return 1 if "TA" was handed to the port, else 0. The answer to "TA" does not matter: a tare
    ///   that the balance refuses ("TA L") counts as set. Waits 2 r.
    int TareSet(double tare) override;

    /// Shows `text` on the balance until the next Tare(), TareSet() or Weight() brings back the
    /// weight.
    ///
    /// @param text at most 57 characters. After IsReady(), null and a longer text are refused with
    ///   0. The text is sent as it stands: a '"' ends the text for the balance, and with 7 data
    ///   bits a character with the 8th bit set arrives as another character.
    /// @return 1 when the balance answered, whatever it said, else 0. Waits r.
    int DisplayMessage(char* text);

 private:
    WBALANCE_LOCAL int Reset();
    WBALANCE_LOCAL int ShowWeight();
    WBALANCE_LOCAL double TakenTare();
    WBALANCE_LOCAL int StableWeight(double* weight, int* decimals);
    WBALANCE_LOCAL int ImmediateWeight(double* weight, int* decimals);
    WBALANCE_LOCAL int StableOrAveragedWeight(double* weight, int* decimals);
    WBALANCE_LOCAL int AveragedWeight(double* weight, int* decimals);
    WBALANCE_LOCAL int Conclude(double value, double* weight, int status);
};
