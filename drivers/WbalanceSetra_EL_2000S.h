#pragma once

#include "Cwbalance.h"

/// Setra EL-2000S.
///
/// Line settings at construction: port 0 of kind 'S', 2400 baud, no parity, 8 data bits, one stop
/// bit, no flow control, a time-out of 1 s.
///
/// IsReady() opens the port, and Tare() begins with it; Weight() does not, and returns 0 on a
/// driver whose port is not open, because its command can't be sent.
///
/// RestoreFactorySettings() is that of Cwbalance: it sends nothing and returns 1.
///
/// Times below count full time-outs t (1 s unless changed), the fixed pauses, and the settle delay
/// d after each piece of an answer: 100 ms, or the environment variable WBALANCE_SLEEP, a decimal
/// number of milliseconds that every Weight() reads anew. It has no bounds: a text without digits
/// gives 0, and a negative number waits no time. It has to fit an int.
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
    /// Sends "#" up to five times until an answer is accepted. Each answer is collected until
    /// nothing comes for t: with one piece d + 2 t at most, so that five that are refused take
    /// 5 (d + 2 t). At the latest the piece that brings its 128th character ends an answer, so that
    /// a balance that never stops sending can't hold up the call. What that piece holds beyond the
    /// 128th character is dropped, and what comes later begins the next answer.
    /// More than some 980 characters at once end the process (CSerialObject::ReceiveAnswer()).
    ///
    /// @param mode 2 accepts an unstable weight, too; any other value only a stable one
    /// @param weight receives grams. Null returns 0 at once. With the result 0 it holds 0.0,
    ///   or the value of an unstable weight that was refused, also when a later command could not
    ///   be sent. Stays as it is without a serial object (see
    ///   Cwbalance::OpenAndSetDefCommConfig()).
    /// @param decimals is not used
    /// @return 1, also for an unstable weight in mode 2; 0 failure
    int Weight(long mode, double* weight, int* decimals) override;

    /// This driver has no preset tare. @return always 0; nothing is sent
    int TareSet(double preset) override;

    /// The weight in an answer: "1+" or "1-" anywhere in it marks a stable one, else "U+" or "U-"
    /// an unstable one.
    ///
    /// The number is what follows the first '+' of the whole answer, wherever it stands, and only
    /// in an answer without any, negated, what follows the first '-'. No digits there read as 0.0.
    /// The unit is not looked at.
    ///
    /// @param answer a zero-terminated text; must not be null
    /// @param weight receives the value, 0.0 without a mark; must not be null
    /// @param decimals is not used
    /// @return 1 stable, 2 unstable, 0 an answer without a mark
    int ParseWeight(char* answer, double* weight, int* decimals);
};
