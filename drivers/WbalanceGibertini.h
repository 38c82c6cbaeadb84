#pragma once

#include "Cwbalance.h"

/// Gibertini balances set to the CRYSTAL protocol (source: the maker's CRYSTAL and EU-C LCD
/// operating manuals, chapters on the interface).
///
/// Line settings at construction: port 0 of kind 'S', 9600 baud, parity as the port has it (code
/// 1024 is none of the codes, so that no parity is set), 7 data bits, one stop bit, no flow
/// control, a time-out of 1 s.
///
/// Read this first: IsReady() asks Weight() for a trial weight, and Weight() and Tare() begin with
/// IsReady(). On a port that works they call each other until the stack is exhausted, which ends
/// the process, and no byte reaches the balance; only a line that fails to open, configure or clear
/// ends it with 0. Hosts give the driver a readiness of the line's alone:
///
///     WithLineReadiness<WbalanceGibertini> balance;
///
/// (or override IsReady() in a class of their own). Everything said below about what is sent and
/// how long it takes is about such a driver.
///
/// RestoreFactorySettings() is that of Cwbalance: it sends nothing and returns 1.
///
/// Times below count full time-outs t (1 s unless changed) and the fixed pauses. A reading takes
/// 3 t at most: 2 t after an answer that came at once, 3 t without one. Of what comes in that time
/// the first 64 characters count. Without a line feed at their end it is read on, 100 ms later, for
/// another 3 t, and so on for as long as the balance sends; what passes the 1005 characters that a
/// line of the trace can show is dropped and ends the reading. More than some 980 characters within
/// 3 t end the process (CSerialObject::ReceiveAnswer()).
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

    /// Reads the weight after IsReady(): asks once ("B") and reads on, 200 ms apart, until all that
    /// has come is made of valid records or 20 s have passed.
    ///
    /// Records that come with gaps are joined. What has once made the text invalid (an error
    /// record, a fragment that is never completed, a fourth record within 3 t, which is cut off)
    /// keeps it so until the 20 s are over.
    ///
    /// @param mode is ignored
    /// @param weight receives grams, the value of the first record; must not be null. A record that
    ///   is refused overwrites it, too: use it only with the result 1. Stays as it is when none
    ///   came or the command could not be sent.
    /// @param decimals receives 2 as soon as 19 characters have come, whatever the record's
    ///   decimals are; may be null
    /// @return 1, also for a weight that is marked as unstable; 0 failure, after 20 s + one reading
    ///   + 200 ms at most when the request could be sent
    ///
    /// The unit is not looked at: the number is passed on as it stands.
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
