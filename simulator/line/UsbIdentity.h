#pragma once

namespace simulator {

/// What a USB adapter and its drivers tell the system about themselves. A text is empty if an
/// adapter of this kind does not have it.
struct UsbIdentity {
    const char* vendorId;
    const char* productId;
    const char* release;
    const char* manufacturer;
    const char* product;
    const char* interface;
    const char* driver;      ///< of the USB interface
    const char* portDriver;  ///< of the serial port on it
    bool hasSerialNumber;
};

/// The adapters' own descriptions, with the names of the drivers in Linux 6.1.
inline constexpr UsbIdentity kFtdiIdentity = {
    "0403",     "6001",     "0600", "FTDI", "FT232R USB UART", "FT232R USB UART",
    "ftdi_sio", "ftdi_sio", true};
inline constexpr UsbIdentity kPl2303Identity = {
    "067b",   "2303",   "0300", "Prolific Technology Inc.", "USB-Serial Controller", "",
    "pl2303", "pl2303", false};
inline constexpr UsbIdentity kCh341Identity = {"1a86", "7523",  "0264",       "",   "USB Serial",
                                               "",     "ch341", "ch341-uart", false};

}  // namespace simulator
