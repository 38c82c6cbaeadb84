#pragma once

#include "Cwbalance.h"

/// Ohaus Scout Pro and Explorer balances. They print lines that end with the unit and mark an
/// unstable reading with a "?" (sources: the maker's RS232 interface kit and Explorer manuals).
///
/// Line settings at construction: port 0 of kind 'S', 2400 baud, no parity, 7 data bits, one stop
/// bit, no flow control, a time-out of 1 s.
///
/// IsReady() and Tare() open the port. Weight() and RestoreFactorySettings() use the open port. If
/// no port is open, they can't send their command and fail.
///
/// The times below consist of full time-outs t (1 s unless changed) and fixed pauses. An answer of
/// more than about 980 characters to one print command ends the process
/// (CSerialObject::ReceiveAnswer()).
class WBALANCE_EXPORT WbalanceOHAUS_SPU602 : public Cwbalance {
 public:
    WbalanceOHAUS_SPU602();
    ~WbalanceOHAUS_SPU602() override;

    /// Opens and clears the line and makes a trial reading with a virtual call of Weight(1, ...,
    /// null). Leaves the port open, except when it can't be cleared.
    /// @return the result of the reading, 1 or 0; 0 also when the port can't be opened, configured
    ///   or cleared. Waits 0.5 s + 3 t.
    int IsReady() override;

    /// Tares ("T") after IsReady(), waits 2 s and checks the reading with a virtual call of
    /// Weight(0, ..., null), which accepts a stable weight only.
    /// @return 1 when the balance then reads less than 0.1 in magnitude, else 0; always 0 for a
    ///   balance that does not know the stable print "SP". Waits 3 s + 6 t.
    int Tare() override;

    /// Reads the weight.
    ///
    /// @param mode 0 asks for a stable weight ("SP") and refuses an unstable one; any other value
    ///   asks for an immediate one ("P") and accepts an unstable one as well
    /// @param weight receives grams. 0.0 on failure, except that an unstable weight that was
    ///   refused stays. Must not be null.
    /// @param decimals receives 7 for a weight with a decimal point and 2 for one without or for an
    ///   answer that is no weight; stays as it is when nothing came or the command could not be
    ///   sent. May be null.
    /// @return 1 a weight, 0 failure. Waits 0.5 s + 3 t, also when the command could not be sent.
    ///
    /// Any line with a "g" is a weight: the driver returns the number of a line in kg or mg as it
    /// stands. It looks at no more than the first 65 characters of the answer.
    int Weight(long mode, double* weight, int* decimals) override;

    /// A preset tare is not supported: sends nothing and returns 0.
    int TareSet(double preset) override;

    /// Puts the balance back to its factory settings (ESC R) and turns automatic printing off
    /// ("0A"). The driver reads no answer and makes no pause, because the balance may have other
    /// line settings by then. So the commands are transmitted later: while the next operation waits
    /// for its answer (see CSerialObject::SendCommand()).
    /// @return 1 when the first command was handed to the port, whatever happens to the second;
    ///   else 0
    int RestoreFactorySettings() override;

    /// Reads a printed line. The weight is its first text between blanks and "g"s.
    ///
    /// @param answer the line, which is cut after that text; null or empty returns 0, and nothing
    ///   is written
    /// @param weight receives the number, 0.0 when there is none; must not be null
    /// @param decimals receives 7 for a text with a point, else 2, also when there is no weight;
    ///   may be null
    /// @param unstable receives whether a "?" stands anywhere in the line; may be null
    /// @return 1 when a "g" stands in the line and a text before or after it, else 0
    int ParseWeight(char* answer, double* weight, int* decimals, bool* unstable);

 private:
    WBALANCE_LOCAL int ReadLine(const char* command, double* weight, int* decimals, bool* unstable);
};
