#pragma once

#include <atomic>
#include <filesystem>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "simulator/BenchDirectory.h"
#include "simulator/ConnectedInstrument.h"
#include "simulator/ReadySet.h"

namespace simulator {

/// A bench with simulated instruments on serial lines, served in real time by one thread. Programs
/// started while the bench exists, with the virtual-line object preloaded, find the instruments at
/// their devices; so does this very process when it is linked to that object:
///
///     VirtualBench bench;
///     auto& balance = bench.Place(NAME, Options().On("/dev/ttyS0").WithLoad(12.34));
///     ... any serial port code, such as a driver that opens /dev/ttyS0 ...
///     EXPECT_EQ(balance.SentByHost(), "S\r\n");
/// The bench owns its directory of lines. As long as it exists, WBALANCE_VIRTUAL_LINES names this
/// directory. So a process has one bench at a time.
class VirtualBench {
 public:
    VirtualBench();  ///< throws std::system_error when the system gives no directory or descriptors
    ~VirtualBench();  ///< receives what hosts have sent, then hangs up every line
    VirtualBench(const VirtualBench&) = delete;
    VirtualBench& operator=(const VirtualBench&) = delete;

    /// Sets up the instrument of this catalog name on a virtual line. The instrument belongs to the
    /// bench. Throws std::invalid_argument for unknown names, switches, faults and devices.
    ConnectedInstrument& Place(const std::string& instrument, const Options& options = {});

    /// The same for an instrument that is in no catalog.
    ConnectedInstrument& Place(const CatalogEntry& entry, const Options& options = {});

    /// The same on a bare pseudo-terminal, whose path is the instrument's device().
    ConnectedInstrument& PlaceOnTerminal(const std::string& instrument,
                                         const Options& options = {});
    ConnectedInstrument& PlaceOnTerminal(const CatalogEntry& entry, const Options& options = {});

    /// The instruments of the bench, in the order in which they were placed.
    std::vector<ConnectedInstrument*> Instruments();

    /// Where the lines' files are: the value of WBALANCE_VIRTUAL_LINES.
    const std::filesystem::path& Directory() const { return directory_.Path(); }

 private:
    ConnectedInstrument& Add(std::unique_ptr<ConnectedInstrument> instrument);
    void NoteChange(ConnectedInstrument& instrument);
    std::set<ConnectedInstrument*> TakeChanged();
    void ServeUntilStopped();

    BenchDirectory directory_;
    std::mutex mutex_;  ///< an instrument's own mutex is locked before this one, never after it
    std::vector<std::unique_ptr<ConnectedInstrument>> instruments_;
    std::set<ConnectedInstrument*> changed_;  ///< by threads other than the serving one
    ReadySet ready_;
    std::atomic<bool> stopping_{false};
    std::thread thread_;
};

}  // namespace simulator
