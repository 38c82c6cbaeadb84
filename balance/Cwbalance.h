#pragma once

#include "wbalance_export.h"

class CSerialObject;

/// A balance on a serial line: the abstract base of every driver.
///
/// A host constructs the driver of the instrument that is fitted, may change the port number and
/// the line settings, and then calls the operations. No explicit open or close is needed:
/// IsReady() opens the port and leaves it open, and so do the other operations, except those of
/// which the driver says that they need an IsReady() before them. Settings that change take effect
/// at the next operation that opens; a changed port number or port kind does only after
/// CloseCommPort().
///
/// Results are 1 for success and 0 for failure unless a member says otherwise; weights are in
/// grams. Nothing is thrown, except what Qt and the C++ library throw when they find no memory.
/// Every command, answer and failure is traced on standard output (CSerialObject::TavinTrace()). A
/// text that does not fit the fixed buffer it is meant for ends the process with SIGABRT, standard
/// output flushed and one line printed on standard error before; the members name the cases.
///
/// Numbers are read, sent and traced as the "C" locale has them, with a point, whatever the locale
/// of the process or the thread, which stays as it is. (The GNU C library has that
/// locale ready. Where another C library finds no memory for it, the host's stays in force.)
///
/// Pointers must not be null unless a member says what null does.
///
/// A driver object is used by one thread at a time and keeps no state outside itself, so that each
/// thread may have its own. All waiting blocks the caller; the pages in docs/instruments/ say for
/// how long. The object owns its serial object, and that owns its port.
///
/// A driver of a host's own derives from this class, sets every settings field in its constructor
/// (SetCommPort() and SetCommConfig() do) and overrides what its instrument can do.
///
/// The fields, their order and the order of the virtual functions are part of the binary interface.
class WBALANCE_EXPORT Cwbalance {
 public:
    /// Parity codes of SetCommConfig(). A code outside the list leaves the port's own parity.
    enum Parity { ParityNone = 0, ParityOdd = 1, ParityEven = 2, ParityMark = 3, ParitySpace = 4 };
    /// Stop-bits codes of SetCommConfig(). A code outside the list leaves the port's own.
    enum StopBits { OneStopBit = 0, OneAndHalfStopBits = 1, TwoStopBits = 2 };
    /// Flow-control codes of SetCommConfig(). A code outside the list leaves the port's own.
    enum FlowControl { NoFlowControl = 0, HardwareFlowControl = 3, SoftwareFlowControl = 16 };

    /// Deletes the serial object and the port that it may hold, so that the device is closed.
    virtual ~Cwbalance();
    Cwbalance(const Cwbalance&) = delete;
    Cwbalance& operator=(const Cwbalance&) = delete;

    /// Opens the port and finds out whether the balance can be used, as the driver describes.
    virtual int IsReady() = 0;

    /// Tares, or where the driver says so zeroes, the balance.
    virtual int Tare() = 0;

    /// Reads the weight.
    ///
    /// @param mode how to read; the values are the driver's (0 usually asks for a stable weight
    ///   only, 1 for a stable one with a fallback and 2 for an immediate one)
    /// @param weight receives grams; must not be null unless the driver allows it
    /// @param decimals receives the number of decimals where the driver reports one; may be null
    /// @return 0 failure, 1 a (stable) weight, and in the drivers that tell them apart 2 a dynamic
    ///   one. Use `*weight` only with a result other than 0.
    ///
    /// Here: writes 0.0 and returns 0.
    virtual int Weight(long mode, double* weight, int* decimals);

    /// Sets a preset tare of `preset` grams. Here: sends nothing and returns 1.
    virtual int TareSet(double preset);

    /// Puts the instrument back to its factory settings. Here: sends nothing and returns 1.
    virtual int RestoreFactorySettings();

    /// Chooses the port by the number in its device name.
    /// @return 0, and nothing is stored, for a negative number.
    int SetCommPort(int port);

    /// Chooses the line settings and the kind of port.
    ///
    /// The arguments are checked and stored one at a time in their order; the first one out of
    /// range ends the call with 0, the ones before it stay stored and the ones after it stay as
    /// they were. An unknown code is stored and leaves that setting of the port alone.
    ///
    /// @param baud bits per second, 1 or more
    /// @param parity a Parity code, 0 or more
    /// @param dataBits 7 or 8 (0 or more; others leave the port's own)
    /// @param stopBits a StopBits code, 0 or more
    /// @param flowControl a FlowControl code, 0 or more
    /// @param timeout seconds that one wait for data may last: 1 to 60, or 0 for 100 ms. More than
    ///   60 is stored, and makes the configuration fail at the next open.
    /// @param portKind 'S' for "/dev/ttyS<port>" or 'U' for "/dev/ttyUSB<port>"
    int SetCommConfig(int baud, int parity, int dataBits, int stopBits, int flowControl,
                      int timeout, char portKind);

    /// Opens the port, or finds it open, and applies the stored settings.
    ///
    /// A port that can't be opened gives 0; its unopened port object stays, the next operation
    /// finds it held and fails too, and the one after that tries the device again. A setting that
    /// the port refuses gives 0 for good: the serial object is destroyed, and every operation of
    /// this driver object fails from then on. Construct a new one.
    int OpenAndSetDefCommConfig();

    /// Closes the port. @return 0 when there is no serial object any more.
    int CloseCommPort();

    /// The first number in the text of an answer; the answer's form is not checked.
    ///
    /// A '-' directly before the first digit makes it negative. A '+' does not count, nor does a
    /// '-' with blanks between it and the digits. The number goes on for as long as digits, '.' and
    /// '-' follow; the value is the longest valid number at its start.
    ///
    /// @param answer fewer than 100 characters; a longer text ends the process. Must not be null.
    /// @param decimals receives how many characters of the number follow its first point; stays as
    ///   it is without one. May be null.
    /// @return the number, 0.0 when there is no digit
    double ParseWeight(char* answer, int* decimals);

 protected:
    /// Creates the serial object and leaves every other field unset: the driver's constructor sets
    /// them.
    Cwbalance();

    /// The start that the drivers' operations share: refuses a negative port number or a missing
    /// serial object, opens the port with the stored settings and discards what was received
    /// before. When the port refuses to discard it, the port is closed.
    /// @return 1 when the line can be used, else 0
    int OpenAndClear();

    CSerialObject* serialObject;  ///< the transport, owned; null after a configuration that failed
                                  ///< and when there was no memory for it
    int portNumber;               ///< the number in the device name
    int baudRate;                 ///< bits per second
    int parityCode;               ///< a Parity code
    int dataBits;                 ///< 7 or 8
    int stopBitsCode;             ///< a StopBits code
    int flowControlCode;          ///< a FlowControl code
    int timeoutSeconds;           ///< how long one wait for data may last
    int protocolCode;             ///< of a driver that speaks two protocols: the one in use
    signed char modelFlagA;       ///< the driver's own
    char portKind;                ///< 'S' or 'U'
    signed char modelFlagB;       ///< the driver's own
    signed char modelFlagC;       ///< the driver's own
};
