#pragma once

#include "Cwbalance.h"

/// Kern EW, EG-N and EWB balances (source: the maker's operating manual, chapter on the interface,
/// and the EW-A01 interface description).
///
/// Line settings at construction: port 0 of kind 'S', 1200 baud, no parity, 8 data bits, two stop
/// bits, no flow control, a time-out of 1 s.
///
/// Read this first: IsReady() asks Weight() for a trial weight, and Weight() and Tare() begin with
/// IsReady(). If the port works, they call each other until the stack is used up, which ends the
/// process. No byte reaches the balance. Only if the port can't be opened, configured or cleared,
/// they return 0. Hosts therefore use the driver with a readiness that only checks the line:
///
///     WithLineReadiness<WbalanceKern_EW_EGN_EWB> balance;
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
class WBALANCE_EXPORT WbalanceKern_EW_EGN_EWB : public Cwbalance {
 public:
    WbalanceKern_EW_EGN_EWB();
    ~WbalanceKern_EW_EGN_EWB() override;

    /// Opens and clears the line and then reads a weight: a virtual call of Weight() with mode 1
    /// and no decimals. See above for what that leads to.
    ///
    /// @return what Weight() returned. 0 when the port can't be opened, configured or cleared (then
    ///   it is closed).
    int IsReady() override;

    /// Tares the balance with "T " after IsReady().
    /// @return 1 when the answer holds the acknowledgement "A00", else 0. One reading.
    int Tare() override;

    /// Reads the weight after IsReady().
    ///
    /// @param mode
    ///   - 2 one immediate weight ("O8"; one reading).
    ///   - 0 a weight after stabilization ("O9"). If the balance acknowledges but sends no record
    ///     yet, the driver reads again every 200 ms until 5 s have passed: one reading, and at most
    ///     5 s + one reading + 200 ms.
    ///   - 1 and any other value: the same. If no record comes in this time, it sends stop ("O0")
    ///     and returns the average of five virtual calls of Weight() with mode 2 (six readings
    ///     more).
    /// @param weight receives grams; must not be null. Stays as it is with the result 0.
    /// @param decimals receives 7 when the record's value has a point, whatever its decimals; stays
    ///   as it is without one, and when the weight is an average. May be null.
    /// @return 1, also for a weight that is marked as not stable; 0 failure
    ///
    /// The driver can't tell a weight from an error record (status E: overload, underload): it
    /// returns the digits. It loses the last digit of a record in the 7-digit format (15
    /// characters). The driver does not look at the unit.
    int Weight(long mode, double* weight, int* decimals) override;

    /// The balance has no preset tare. @return always 0; nothing is sent
    int TareSet(double preset) override;

    /// The weight in an answer: a record of 12 characters at its start, or after the five
    /// characters "A00\r\n" when the answer begins with an A.
    ///
    /// In the record, counted from 0: the sign at 0 ('-' or anything else), the value from 1 to 7,
    /// the status at 11. If the answer ends within the record, the driver reads what is there and
    /// takes it as not stable.
    ///
    /// @param answer a zero-terminated text; null returns 0
    /// @param weight receives the value; may be null
    /// @param decimals receives 7 when the value has a point; may be null
    /// @return 1 stable (status S), 2 anything else, 0 for an answer of fewer than 12
    ///   characters, and then nothing is written
    int ParseWeight(char* answer, double* weight, int* decimals);

 private:
    WBALANCE_LOCAL bool AwaitRecord(double* weight, int* decimals);
    WBALANCE_LOCAL int AveragedWeight(double* weight);
};
