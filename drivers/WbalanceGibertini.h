#pragma once

#include "Cwbalance.h"

/// Gibertini balances set to the CRYSTAL protocol (source: the maker's CRYSTAL and EU-C LCD
/// operating manuals, chapters on the interface).
///
/// Line settings at construction: port 0 of kind 'S', 9600 baud, parity as the port has it (1024 is
/// not one of the codes, so the driver sets no parity), 7 data bits, one stop bit, no flow control,
/// a time-out of 1 s.
///
/// Read this first: IsReady() asks Weight() for a trial weight, and Weight() and Tare() begin with
/// IsReady(). If the port works, they call each other until the stack is used up, which ends the
/// process. No byte reaches the balance. Only if the port can't be opened, configured or cleared,
/// they return 0. Hosts therefore use the driver with a readiness that only checks the line:
///
///     WithLineReadiness<WbalanceGibertini> balance;
///
/// (or override IsReady() in their own class). What is said below about commands and times is about
/// such a driver.
///
/// RestoreFactorySettings() is inherited from Cwbalance: it sends nothing and returns 1.
///
/// The times below consist of full time-outs t (1 s unless changed) and fixed pauses. A reading
/// takes 2 t after an answer that came at once, and 3 t without an answer. The first 64 characters
/// that come in this time count. If they do not end with a line feed, the driver reads again after
/// 100 ms, for another 3 t, and so on for as long as the balance sends. A line of the trace can
/// show 1005 characters: what comes after them is dropped and ends the reading. More than about 980
/// characters within 3 t end the process (CSerialObject::ReceiveAnswer()).
class WBALANCE_EXPORT WbalanceGibertini : public Cwbalance {
 public:
    WbalanceGibertini();
    ~WbalanceGibertini() override;

    /// Opens and clears the line and then reads a weight: a virtual call of Weight() with mode 1
    /// and no decimals. See above for what that leads to.
    ///
    /// @return what Weight() returned. 0 when the port can't be opened, configured or cleared (then
    ///   it is closed).
    int IsReady() override;

    /// Tares the balance with "T" after IsReady().
    /// @return 1 when the answer is made of valid records, whatever they weigh, else 0. One
    /// reading.
    int Tare() override;

    /// Reads the weight after IsReady(): asks once ("B") and reads again every 200 ms, until
    /// everything that came consists of valid records or 20 s have passed.
    ///
    /// Records that come with gaps are joined. A text stays invalid until the 20 s are over if it
    /// contains an error record, a fragment that is never completed, or a fourth record within 3 t,
    /// which is cut off.
    ///
    /// @param mode is ignored
    /// @param weight receives grams, the value of the first record; must not be null. A refused
    ///   record overwrites it, too, so use it only with the result 1. Stays as it is when none came
    ///   or the command could not be sent.
    /// @param decimals receives 2 as soon as 19 characters have come, whatever decimals the record
    ///   has; may be null
    /// @return 1, also for a weight that is marked as unstable; 0 failure, after 20 s + one reading
    ///   + 200 ms at most when the request could be sent
    ///
    /// The driver does not look at the unit: it returns the number as it stands.
    int Weight(long mode, double* weight, int* decimals) override;

    /// This driver has no preset tare. @return always 0; nothing is sent
    int TareSet(double preset) override;

    /// The weight in an answer of records of 19 characters, one after the other.
    ///
    /// In a record, counted from 0: the value from 0 to 9, 'D' (valid) or 'T' (taring) at 15, 'S'
    /// (stable) or 'I' (unstable) at 16. Every record has to be valid and complete; the first one
    /// counts.
    ///
    /// @param answer a zero-terminated text; null returns 0
    /// @param weight receives the value of the first record when the ones after it are valid, also
    ///   when the first is not; may be null
    /// @param decimals receives 2 when the answer has 19 characters or more; may be null
    /// @return 1 stable, 2 unstable, 0 anything else
    int ParseWeight(char* answer, double* weight, int* decimals);
};
