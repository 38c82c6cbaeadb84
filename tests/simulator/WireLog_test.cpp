#include "WireLog.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <future>
#include <stdexcept>

#include "TemporaryFile.h"

using simulator::LineEvent;
using testing::ThrowsMessage;
using namespace std::chrono_literals;

namespace {

LineEvent Said(const char* bytes, LineEvent::Kind kind = LineEvent::Kind::FromInstrument) {
    return {12ms, kind, bytes, {}};
}

/// A disk without room for more than so many bytes in a file.
class FullDisk {
 public:
    explicit FullDisk(rlim_t bytes) {
        ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit small = {bytes, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &before_); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

 private:
    rlimit before_ = {};
};

/// A pipe with a name. Nobody has read from it yet.
class NamedPipe {
 public:
    NamedPipe() {
        file_ = path_ + "/pipe";
        ::mkfifo(file_.c_str(), 0600);
        end_ = ::open(file_.c_str(), O_RDWR);
    }
    ~NamedPipe() {
        ::close(end_);
        std::filesystem::remove_all(path_);
    }
    NamedPipe(const NamedPipe&) = delete;
    NamedPipe& operator=(const NamedPipe&) = delete;

    const std::string& Path() const { return file_; }

    /// What is written up to and with a line that ends so.
    std::string ReadTo(const std::string& end) const {
        std::string text;
        std::array<char, 4096> buffer;
        while (text.size() < end.size() ||
               text.compare(text.size() - end.size(), end.size(), end) != 0) {
            const ssize_t count = ::read(end_, buffer.data(), buffer.size());
            if (count <= 0) return text;
            text.append(buffer.data(), static_cast<std::size_t>(count));
        }
        return text;
    }

 private:
    static std::string MakeDirectory() {
        char name[] = "/tmp/wbalance-pipe-XXXXXX";
        return ::mkdtemp(name);
    }

    const std::string path_ = MakeDirectory();
    std::string file_;
    int end_ = -1;
};

}  // namespace

TEST(WireLog, Goes_on_when_a_full_disk_has_room_again_and_says_what_is_missing) {
    const TemporaryFile file;
    WireLog log(file.Path());
    log.Write("", Said("1"));
    log.WaitUntilWritten();
    {
        const FullDisk disk(11);
        log.Write("", Said("2"));
        log.Write("", Said("3"));
        log.WaitUntilWritten();
    }
    log.Write("", Said("4"));
    log.WaitUntilWritten();
    EXPECT_EQ(file.Text(), "12 < 1\n12 <\\\n12 ! 2 events could not be written here\n12 < 4\n");
    EXPECT_THAT([&] { log.RequireWhole(); },
                ThrowsMessage<std::runtime_error>("the log " + file.Path() +
                                                  " is not whole: 2 events could not be written"));
}

TEST(WireLog, Goes_on_at_the_beginning_of_a_file_that_somebody_has_emptied) {
    const TemporaryFile file;
    WireLog log(file.Path());
    log.Write("", Said("1"));
    log.WaitUntilWritten();
    file.Write("");
    log.Write("", Said("2"));
    log.WaitUntilWritten();
    EXPECT_EQ(file.Text(), "12 < 2\n");
    EXPECT_NO_THROW(log.RequireWhole());
}

TEST(WireLog, Tells_what_else_happens_on_the_line) {
    const std::pair<LineEvent, std::string> cases[] = {
        {Said("5 g\r\n", LineEvent::Kind::Lost), "lost, the port is closed: 5 g\\r\\n"},
        {Said("5 g\r\n", LineEvent::Kind::Overflow), "lost, the line is full: 5 g\\r\\n"},
        {Said("/dev/ttyUSB0", LineEvent::Kind::Unplugged), "/dev/ttyUSB0 unplugged"},
        {Said("/dev/ttyUSB1", LineEvent::Kind::PluggedIn), "/dev/ttyUSB1 plugged in"},
        {Said("2400,7E1", LineEvent::Kind::OtherSettings),
         "the host speaks at 9600,8N1, the instrument listens at 2400,7E1"},
        {Said("no adapter", LineEvent::Kind::Trouble), "no adapter"},
    };
    for (const auto& [event, sentence] : cases) {
        const TemporaryFile file;
        WireLog log(file.Path());
        log.Write("/dev/ttyUSB0", event);
        log.WaitUntilWritten();
        EXPECT_EQ(file.Text(), "12 ! " + sentence + "\n");
    }
}

TEST(WireLog, Tells_the_hosts_settings_when_they_are_others_than_before) {
    const TemporaryFile file;
    WireLog log(file.Path());
    LineEvent event = Said("S", LineEvent::Kind::FromHost);
    log.Write("/dev/ttyS0", event);
    log.Write("/dev/ttyS0", event);
    event.settings.baudRate = 2400;
    log.Write("/dev/ttyS0", event);
    log.WaitUntilWritten();
    EXPECT_EQ(file.Text(), "# host: 9600,8N1\n12 > S\n12 > S\n# host: 2400,8N1\n12 > S\n");
}

TEST(WireLog, Nobody_waits_for_a_reader_who_sleeps_and_what_has_no_room_is_counted_in_its_place) {
    const NamedPipe pipe;
    WireLog log(pipe.Path());
    const std::string line = "12 < " + std::string(1000, '5') + "\n";
    const std::size_t held = 1024 * 1024 / line.size();
    for (int count = 0; count < 2000; ++count)
        log.Write("", Said(std::string(1000, '5').c_str()));
    auto reading = std::async(std::launch::async, [&] { return pipe.ReadTo("written here\n"); });
    log.WaitUntilWritten();
    const std::string text = reading.get();
    const std::size_t written = text.find("12 !") / line.size();
    EXPECT_GE(written, held);
    EXPECT_EQ(text.substr(0, line.size()), line);
    EXPECT_EQ(text.substr(text.find("12 !")),
              "12 ! " + std::to_string(2000 - written) + " events could not be written here\n");
    log.Write("", Said("6"));
    EXPECT_EQ(pipe.ReadTo("6\n"), "12 < 6\n");
    EXPECT_THROW(log.RequireWhole(), std::runtime_error);
}
