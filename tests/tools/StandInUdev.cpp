// Loaded ahead of libudev: the computer has one serial port, an FTDI adapter at /dev/ttyUSB0.
// Nothing here is ever dereferenced; the addresses only have to be told apart from null.

#include <cstring>

extern "C" {

using Object = const char*;

Object udev_new() {
    return "udev";
}
Object udev_unref(Object) {
    return nullptr;
}
Object udev_enumerate_new(Object) {
    return "enumerate";
}
Object udev_enumerate_unref(Object) {
    return nullptr;
}
int udev_enumerate_add_match_subsystem(Object, const char*) {
    return 0;
}
int udev_enumerate_scan_devices(Object) {
    return 0;
}
Object udev_enumerate_get_list_entry(Object) {
    return "entry";
}
Object udev_list_entry_get_next(Object) {
    return nullptr;
}
const char* udev_list_entry_get_name(Object) {
    return "/sys/class/tty/ttyUSB0";
}
Object udev_device_new_from_syspath(Object, const char*) {
    return "device";
}
Object udev_device_get_parent(Object) {
    return "parent";
}
Object udev_device_unref(Object) {
    return nullptr;
}
const char* udev_device_get_devnode(Object) {
    return "/dev/ttyUSB0";
}
const char* udev_device_get_sysname(Object) {
    return "ttyUSB0";
}
const char* udev_device_get_driver(Object) {
    return "ftdi_sio";
}
const char* udev_device_get_property_value(Object, const char* name) {
    if (std::strcmp(name, "ID_VENDOR") == 0) return "FTDI";
    if (std::strcmp(name, "ID_MODEL") == 0) return "FT232R_USB_UART";
    if (std::strcmp(name, "ID_SERIAL_SHORT") == 0) return "A1B2";
    if (std::strcmp(name, "ID_VENDOR_ID") == 0) return "0403";
    if (std::strcmp(name, "ID_MODEL_ID") == 0) return "6001";
    return nullptr;
}
}
