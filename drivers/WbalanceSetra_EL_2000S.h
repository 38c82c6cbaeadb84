#pragma once

#include "Cwbalance.h"

/// Setra EL-2000S.
///
/// Line settings at construction: port 0 of kind 'S', 2400 baud, no parity, 8 data bits, one stop
/// bit, no flow control, a time-out of 1 s.
///
/// IsReady() opens the port, and Tare() begins with IsReady(). Weight() does not open the port. If
/// the port is not open, it can't send its command and returns 0.
///
/// RestoreFactorySettings() is inherited from Cwbalance: it sends nothing and returns 1.
///
/// Times below count full time-outs t (1 s unless changed), the fixed pauses, and the settle delay
/// d after each piece of an answer: 100 ms, or the environment variable WBALANCE_SLEEP, a decimal
/// number of milliseconds. Every Weight() reads it again. It has no limits: a text without digits
/// gives 0, and a negative number means no delay. It has to fit an int.
class WBALANCE_EXPORT WbalanceSetra_EL_2000S : public Cwbalance {
 public:
    WbalanceSetra_EL_2000S();
    ~WbalanceSetra_EL_2000S() override;

    /// Opens and clears the line and reads a stable weight: a virtual call of Weight() with mode 1
    /// and no decimals.
    ///
    /// @return what Weight() returned. 0 when the port can't be opened, configured or cleared (then
    ///   it is closed). The port stays open when only the weight failed.
    int IsReady() override;

    /// Begins with IsReady(), so that a balance without a stable weight is not tared. Then tares it
    /// with "T", which is not answered, and checks that it reads zero after 2 s: a virtual call of
    /// Weight() with mode 0.
    ///
    /// @return 1 when the stable weight is less than 0.1 g from zero, else 0, also when there is
    ///   none. Two Weight() and 2 s.
    int Tare() override;

    /// Reads the weight. Does not open the port.
    ///
    /// Sends "#" up to five times until an answer is accepted. It collects each answer until
    /// nothing comes for t. An answer in one piece takes at most d + 2 t, so five refused answers
    /// take 5 (d + 2 t). The piece that brings the 128th character ends an answer, so a balance
    /// that never stops sending can't block the call. The rest of that piece is dropped. What comes
    /// later begins the next answer. More than about 980 characters at once end the process
    /// (CSerialObject::ReceiveAnswer()).
    ///
    /// @param mode 2 accepts an unstable weight, too; any other value only a stable one
    /// @param weight receives grams. Null returns 0 at once. With the result 0 it holds 0.0, or the
    ///   value of an unstable weight that was refused, also if a later command could not be sent.
    ///   It is unchanged if there is no serial object (see Cwbalance::OpenAndSetDefCommConfig()).
    /// @param decimals is not used
    /// @return 1, also for an unstable weight in mode 2; 0 failure
    int Weight(long mode, double* weight, int* decimals) override;

    /// This driver has no preset tare. @return always 0; nothing is sent
    int TareSet(double preset) override;

    /// The weight in an answer: "1+" or "1-" anywhere in it marks a stable one, else "U+" or "U-"
    /// an unstable one.
    ///
    /// The number follows the first '+' of the whole answer, wherever it stands. Only if the answer
    /// has no '+', the number follows the first '-' and is negative. If there are no digits, the
    /// number is 0.0. The driver does not look at the unit.
    ///
    /// @param answer a zero-terminated text; must not be null
    /// @param weight receives the value, 0.0 without a mark; must not be null
    /// @param decimals is not used
    /// @return 1 stable, 2 unstable, 0 an answer without a mark
    int ParseWeight(char* answer, double* weight, int* decimals);
};
