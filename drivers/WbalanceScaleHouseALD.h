#pragma once

#include "Cwbalance.h"

/// Scale House ALD balances, which answer the print command with a ticket of several lines.
///
/// The driver takes whatever comes and searches it for the net weight, a number followed by " g N",
/// or else for an empty tare (" g T") and the first number in grams. What its other commands are
/// answered with is not read: it becomes part of the next ticket.
///
/// Line settings at construction: port 0 of kind 'S', 2400 baud, no parity, 7 data bits, one stop
/// bit, no flow control, a time-out of 1 s.
///
/// IsReady() and Tare() open the port. Weight() reads on the port that they left open; without one
/// the command can't be sent, and it fails.
///
/// RestoreFactorySettings() is that of Cwbalance: it sends nothing and returns 1.
///
/// Times below count full time-outs t (1 s unless changed) and the fixed pauses. More than some 980
/// characters in answer to one print command end the process (CSerialObject::ReceiveAnswer()).
class WBALANCE_EXPORT WbalanceScaleHouseALD : public Cwbalance {
 public:
    WbalanceScaleHouseALD();
    ~WbalanceScaleHouseALD() override;

    /// Opens and clears the line and makes a trial reading, Weight(1, ..., null) of the object's
    /// own class. Leaves the port open, except when it can't be cleared.
    /// @return the result of the reading, 1 or 0; 0 also when the port can't be opened, configured
    ///   or cleared. Waits 0.5 s + 3 t.
    int IsReady() override;

    /// Zeroes ("Z", 2 s) and tares ("T", 2 s) after IsReady() and checks the reading with Weight(0,
    /// ..., null) of the object's own class.
    /// @return 1 when the balance then reads less than 0.1 in magnitude, else 0. Waits 5 s + 6 t.
    int Tare() override;

    /// Reads the weight ("P").
    ///
    /// @param mode not looked at: stable or not, what the ticket says is the weight
    /// @param weight receives grams, 0.0 on failure; must not be null
    /// @param decimals receives 3, whatever the ticket shows, also when it holds no weight; stays
    ///   as it is when nothing came or the command could not be sent. May be null.
    /// @return 1 when the ticket holds a weight, else 0. Waits 0.5 s + 3 t.
    ///
    /// At most the first 257 characters of the ticket are looked at.
    int Weight(long mode, double* weight, int* decimals) override;

    /// Presetting a tare is refused: sends nothing and returns 0.
    int TareSet(double preset) override;

    /// Finds the weight in a ticket. Everything before the first "PROJ", if there is one, is left
    /// out. The weight is the number directly before the first " g N". Without that mark, and if
    /// there is a " g T", it is the number directly before the first " g", unless the text from the
    /// start of the ticket to the last blank before the " g T" begins with a number other than
    /// zero. A blank that is the ticket's first character does not end that text; without another
    /// blank it goes on to the mark.
    ///
    /// @param answer the ticket; null or empty returns 0, and nothing is written
    /// @param weight receives the number, 0.0 when none is found and also when a second blank or
    ///   another text stands before the mark; null returns 0, and nothing is written
    /// @param decimals receives 3, also when no weight is found; may be null
    /// @return 1 when a mark was found, else 0
    int ParseWeight(char* answer, double* weight, int* decimals);

 private:
    WBALANCE_LOCAL int ReadTicket(double* weight, int* decimals);
};
