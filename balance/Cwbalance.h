#pragma once

#include "wbalance_export.h"

class CSerialObject;

/// A balance on a serial line: the abstract base of every driver.
///
/// A host constructs the driver of its instrument, may change the port number and the line
/// settings, and then calls the operations. No explicit open or close is needed. IsReady() opens
/// the port and leaves it open. The other operations do so, too, unless the driver says that they
/// need an IsReady() before them. Changed settings take effect at the next operation that opens the
/// port. A changed port number or port kind takes effect only after CloseCommPort().
///
/// Results are 1 for success and 0 for failure unless a member says otherwise; weights are in
/// grams. The library throws nothing. Qt and the C++ library throw when memory runs out. Every
/// command, answer and failure is traced on standard output (CSerialObject::TavinTrace()). If a
/// text does not fit its fixed buffer, the library flushes standard output, prints one line on
/// standard error and ends the process with SIGABRT. The members name these cases.
///
/// Numbers are read, sent and traced with a decimal point, as in the "C" locale. The locale of the
/// process and of the thread does not matter and does not change. (The GNU C library always has the
/// "C" locale. If another C library has no memory for it, the host's locale stays in force.)
///
/// Pointers must not be null unless a member says what null does.
///
/// Use a driver object in one thread at a time. It keeps no state outside itself, so each thread
/// may have its own. All waiting blocks the caller; the pages in docs/instruments/ say for how
/// long. The object owns its serial object, and the serial object owns the port.
///
/// A host can have its own driver. It derives from this class, sets every settings field in its
/// constructor (with SetCommPort() and SetCommConfig()) and overrides what its instrument can do.
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

    /// Tares the balance, or zeroes it if the driver says so.
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
    /// This base class writes 0.0 and returns 0.
    virtual int Weight(long mode, double* weight, int* decimals);

    /// Sets a preset tare of `preset` grams. This base class sends nothing and returns 1.
    virtual int TareSet(double preset);

    /// Restores the factory settings of the instrument. This base class sends nothing and returns
    /// 1.
    virtual int RestoreFactorySettings();

    /// Chooses the port by the number in its device name.
    /// @return 0, and nothing is stored, for a negative number.
    int SetCommPort(int port);

    /// Chooses the line settings and the kind of port.
    ///
    /// The arguments are checked and stored one after the other. The first one that is out of range
    /// ends the call with 0: the ones before it are stored, the ones after it are not. An unknown
    /// code is stored and does not change that setting of the port.
    ///
    /// @param baud bits per second, 1 or more
    /// @param parity a Parity code, 0 or more
    /// @param dataBits 7 or 8 (0 or more; others leave the port's own)
    /// @param stopBits a StopBits code, 0 or more
    /// @param flowControl a FlowControl code, 0 or more
    /// @param timeout seconds that one wait for data may last: 1 to 60, or 0 for 100 ms. A larger
    ///   value is stored, and the configuration then fails at the next open.
    /// @param portKind 'S' for "/dev/ttyS<port>" or 'U' for "/dev/ttyUSB<port>"
    int SetCommConfig(int baud, int parity, int dataBits, int stopBits, int flowControl,
                      int timeout, char portKind);

    /// Opens the port, or finds it open, and applies the stored settings.
    ///
    /// If the port can't be opened, the result is 0, and the unopened port object stays. The next
    /// operation finds this object and fails, too. The operation after that tries the device again.
    /// If the port refuses a setting, the result is 0 and the serial object is destroyed: every
    /// later operation of this driver object fails. Construct a new one.
    int OpenAndSetDefCommConfig();

    /// Closes the port. @return 0 when there is no serial object any more.
    int CloseCommPort();

    /// Returns the first number in the text of an answer. The form of the answer is not checked.
    ///
    /// A '-' directly before the first digit makes it negative. A '+' has no effect, and neither
    /// has a '-' with blanks between it and the digits. The number continues as long as digits, '.'
    /// and '-' follow. The value is the longest valid number at its start.
    ///
    /// @param answer fewer than 100 characters; a longer text ends the process. Must not be null.
    /// @param decimals receives how many characters of the number follow its first point; stays as
    ///   it is without one. May be null.
    /// @return the number, 0.0 when there is no digit
    double ParseWeight(char* answer, int* decimals);

 protected:
    /// Creates the serial object. It does not set the other fields: the driver's constructor must
    /// do so.
    Cwbalance();

    /// The common start of the drivers' operations. It refuses a negative port number or a missing
    /// serial object, opens the port with the stored settings and discards what was received
    /// before. If the port refuses to discard it, the port is closed.
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
