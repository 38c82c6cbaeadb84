#pragma once

#include "Cwbalance.h"

/// Scale House ALD balances. They answer the print command with a ticket of several lines.
///
/// The driver searches the ticket for the net weight, a number before " g N", or else for an empty
/// tare (" g T") and the first number in grams. It does not read the answers to its other commands:
/// they become part of the next ticket.
///
/// Line settings at construction: port 0 of kind 'S', 2400 baud, no parity, 7 data bits, one stop
/// bit, no flow control, a time-out of 1 s.
///
/// IsReady() and Tare() open the port. Weight() uses the open port. If no port is open, it can't
/// send its command and fails.
///
/// RestoreFactorySettings() is inherited from Cwbalance: it sends nothing and returns 1.
///
/// The times below consist of full time-outs t (1 s unless changed) and fixed pauses. An answer of
/// more than about 980 characters to one print command ends the process
/// (CSerialObject::ReceiveAnswer()).
class WBALANCE_EXPORT WbalanceScaleHouseALD : public Cwbalance {
 public:
    WbalanceScaleHouseALD();
    ~WbalanceScaleHouseALD() override;

    /// Opens and clears the line and makes a trial reading with a virtual call of Weight(1, ...,
    /// null). Leaves the port open, except when it can't be cleared.
    /// @return the result of the reading, 1 or 0; 0 also when the port can't be opened, configured
    ///   or cleared. Waits 0.5 s + 3 t.
    int IsReady() override;

    /// Zeroes ("Z", 2 s) and tares ("T", 2 s) after IsReady() and checks the reading with a virtual
    /// call of Weight(0, ..., null).
    /// @return 1 when the balance then reads less than 0.1 in magnitude, else 0. Waits 5 s + 6 t.
    int Tare() override;

    /// Reads the weight ("P").
    ///
    /// @param mode ignored; the weight is what the ticket says, stable or not
    /// @param weight receives grams, 0.0 on failure; must not be null
    /// @param decimals receives 3, whatever the ticket shows, also when it holds no weight; stays
    ///   as it is when nothing came or the command could not be sent. May be null.
    /// @return 1 when the ticket holds a weight, else 0. Waits 0.5 s + 3 t.
    ///
    /// The driver looks at no more than the first 257 characters of the ticket.
    int Weight(long mode, double* weight, int* decimals) override;

    /// Presetting a tare is refused: sends nothing and returns 0.
    int TareSet(double preset) override;

    /// Finds the weight in a ticket. The driver drops everything before the first "PROJ", if there
    /// is one. The weight is the number directly before the first " g N". Without that mark, and if
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
