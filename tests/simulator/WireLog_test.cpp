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
    WireLog log(file.Path(), false);
    log.Write("", Said("1"));
    log.WaitUntilWritten();
    {
        const FullDisk disk(20);
        log.Write("", Said("2"));
        log.Write("", Said("3"));
        log.WaitUntilWritten();
    }
    log.Write("", Said("4"));
    log.WaitUntilWritten();
    EXPECT_EQ(file.Text(),
              "    0.012 < \"1\"\n    \n! 2 events could not be written here\n    0.012 < \"4\"\n");
    EXPECT_THAT([&] { log.RequireWhole(); },
                ThrowsMessage<std::runtime_error>("the log " + file.Path() +
                                                  " is not whole: 2 events could not be written"));
}

TEST(WireLog, Goes_on_at_the_beginning_of_a_file_that_somebody_has_emptied) {
    const TemporaryFile file;
    WireLog log(file.Path(), false);
    log.Write("", Said("1"));
    log.WaitUntilWritten();
    file.Write("");
    log.Write("", Said("2"));
    log.WaitUntilWritten();
    EXPECT_EQ(file.Text(), "    0.012 < \"2\"\n");
    EXPECT_NO_THROW(log.RequireWhole());
}

TEST(WireLog, Tells_bytes_that_were_lost_on_a_full_line_and_what_could_not_be_done) {
    const TemporaryFile file;
    WireLog log(file.Path(), true);
    log.Write("/dev/ttyS0", Said("5 g\r\n", LineEvent::Kind::Overflow));
    log.Write("/dev/ttyS0", Said("no adapter", LineEvent::Kind::Trouble));
    log.WaitUntilWritten();
    EXPECT_EQ(file.Text(),
              "    0.012 /dev/ttyS0 x \"5 g\\r\\n\" lost, the line is full\n"
              "    0.012 /dev/ttyS0 ! no adapter\n");
}

TEST(WireLog, Nobody_waits_for_a_reader_who_sleeps_and_what_has_no_room_is_counted_in_its_place) {
    const NamedPipe pipe;
    WireLog log(pipe.Path(), false);
    const std::string line = "    0.012 < \"" + std::string(1000, '5') + "\"\n";
    const std::size_t held = 1024 * 1024 / line.size();
    for (int count = 0; count < 2000; ++count)
        log.Write("", Said(std::string(1000, '5').c_str()));
    auto reading = std::async(std::launch::async, [&] { return pipe.ReadTo("written here\n"); });
    log.WaitUntilWritten();
    const std::string text = reading.get();
    const std::size_t written = text.find('!') / line.size();
    EXPECT_GE(written, held);
    EXPECT_EQ(text.substr(0, line.size()), line);
    EXPECT_EQ(text.substr(text.find('!')),
              "! " + std::to_string(2000 - written) + " events could not be written here\n");
    log.Write("", Said("6"));
    EXPECT_EQ(pipe.ReadTo("\"6\"\n"), "    0.012 < \"6\"\n");
    EXPECT_THROW(log.RequireWhole(), std::runtime_error);
}
