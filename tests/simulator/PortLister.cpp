// Lists serial ports as other programs do. The tests run it beside simulated instruments.
//
//   PortLister qt                what QSerialPortInfo knows of each
//   PortLister libserialport     the same of libserialport, which is loaded by its name
//   PortLister configure DEVICE  opens the port by libserialport and sets 7 data bits, even parity
//   PortLister readdir FOLDER    the names, by readdir; scandir: by that
//   PortLister glob PATTERN      the paths that match

#include <dirent.h>
#include <dlfcn.h>
#include <glob.h>

#include <QtSerialPort/QSerialPortInfo>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

int ListByQt() {
    for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts())
        std::printf("%s|%s|%s|%s|%04x:%04x\n", qPrintable(port.systemLocation()),
                    qPrintable(port.manufacturer()), qPrintable(port.description()),
                    qPrintable(port.serialNumber()), port.vendorIdentifier(),
                    port.productIdentifier());
    return 0;
}

/// The functions of libserialport; 77 ends the program where it is not installed.
class LibSerialPort {
 public:
    using Port = void*;

    template <typename Result, typename... Arguments>
    Result Call(const char* name, Arguments... arguments) const {
        const auto function = reinterpret_cast<Result (*)(Arguments...)>(::dlsym(library_, name));
        return function(arguments...);
    }
    std::string Text(const char* name, Port port) const {
        const char* text = Call<const char*>(name, port);
        return text ? text : "";
    }
    std::string Numbers(const char* name, const char* form, Port port) const {
        int first = 0;
        int second = 0;
        char text[32] = "";
        if (Call<int>(name, port, &first, &second) == 0)
            std::snprintf(text, sizeof text, form, first, second);
        return text;
    }

 private:
    static void* Load() {
        void* library = ::dlopen("libserialport.so.0", RTLD_NOW);
        if (!library) std::exit(77);
        return library;
    }

    void* library_ = Load();
};

int ListByLibSerialPort() {
    const LibSerialPort library;
    LibSerialPort::Port* ports = nullptr;
    if (library.Call<int>("sp_list_ports", &ports) != 0) return 1;
    for (auto* port = ports; *port; ++port)
        std::printf("%s|%s|%d|%s|%s|%s|%s|%s\n", library.Text("sp_get_port_name", *port).c_str(),
                    library.Text("sp_get_port_description", *port).c_str(),
                    library.Call<int>("sp_get_port_transport", *port),
                    library.Text("sp_get_port_usb_manufacturer", *port).c_str(),
                    library.Text("sp_get_port_usb_product", *port).c_str(),
                    library.Text("sp_get_port_usb_serial", *port).c_str(),
                    library.Numbers("sp_get_port_usb_vid_pid", "%04x:%04x", *port).c_str(),
                    library.Numbers("sp_get_port_usb_bus_address", "%d-%d", *port).c_str());
    return 0;
}

int ConfigureByLibSerialPort(const char* device) {
    constexpr int readAndWrite = 3;
    constexpr int even = 2;
    const LibSerialPort library;
    LibSerialPort::Port port = nullptr;
    const bool done = library.Call<int>("sp_get_port_by_name", device, &port) == 0 &&
                      library.Call<int>("sp_open", port, readAndWrite) == 0 &&
                      library.Call<int>("sp_set_bits", port, 7) == 0 &&
                      library.Call<int>("sp_set_parity", port, even) == 0;
    std::printf("%s\n", done ? "done" : "refused");
    return 0;
}

int ListByReaddir(const char* folder) {
    DIR* stream = ::opendir(folder);
    if (!stream) return 1;
    while (const dirent* entry = ::readdir(stream))
        std::printf("%s%s\n", entry->d_name, entry->d_type == DT_CHR ? " (device)" : "");
    ::closedir(stream);
    return 0;
}

int ListByScandir(const char* folder) {
    dirent** entries = nullptr;
    const int count = ::scandir(folder, &entries, nullptr, alphasort);
    for (int i = 0; i < count; ++i) {
        std::printf("%s\n", entries[i]->d_name);
        std::free(entries[i]);
    }
    std::free(entries);
    return 0;
}

int ListByGlob(const char* pattern) {
    glob_t found = {};
    if (::glob(pattern, 0, nullptr, &found) == 0)
        for (std::size_t i = 0; i < found.gl_pathc; ++i)
            std::printf("%s\n", found.gl_pathv[i]);
    ::globfree(&found);
    return 0;
}

}  // namespace

int main(int count, char** words) {
    const std::string how = count > 1 ? words[1] : "";
    if (how == "qt") return ListByQt();
    if (how == "libserialport") return ListByLibSerialPort();
    if (count < 3) return 2;
    if (how == "configure") return ConfigureByLibSerialPort(words[2]);
    if (how == "readdir") return ListByReaddir(words[2]);
    if (how == "scandir") return ListByScandir(words[2]);
    return how == "glob" ? ListByGlob(words[2]) : 2;
}
