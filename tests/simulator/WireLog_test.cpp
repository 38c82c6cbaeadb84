#include "WireLog.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>

#include <stdexcept>

#include "TemporaryFile.h"

using simulator::LineEvent;
using testing::ThrowsMessage;
using namespace std::chrono_literals;

namespace {

LineEvent said(const char* bytes, LineEvent::Kind kind = LineEvent::Kind::fromInstrument) {
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

}  // namespace

TEST(WireLog, Goes_on_when_a_full_disk_has_room_again_and_says_what_is_missing) {
    const TemporaryFile file;
    WireLog log(file.Path(), false);
    log.write("", said("1"));
    {
        const FullDisk disk(20);
        log.write("", said("2"));
        log.write("", said("3"));
    }
    log.write("", said("4"));
    EXPECT_EQ(file.Text(),
              "    0.012 < \"1\"\n    \n! 2 events could not be written here\n    0.012 < \"4\"\n");
    EXPECT_THAT([&] { log.requireWhole(); },
                ThrowsMessage<std::runtime_error>("the log " + file.Path() +
                                                  " is not whole: 2 events could not be written"));
}

TEST(WireLog, Goes_on_at_the_beginning_of_a_file_that_somebody_has_emptied) {
    const TemporaryFile file;
    WireLog log(file.Path(), false);
    log.write("", said("1"));
    file.Write("");
    log.write("", said("2"));
    EXPECT_EQ(file.Text(), "    0.012 < \"2\"\n");
    EXPECT_NO_THROW(log.requireWhole());
}

TEST(WireLog, Tells_bytes_that_were_lost_on_a_full_line_and_what_could_not_be_done) {
    const TemporaryFile file;
    WireLog log(file.Path(), true);
    log.write("/dev/ttyS0", said("5 g\r\n", LineEvent::Kind::overflow));
    log.write("/dev/ttyS0", said("no adapter", LineEvent::Kind::trouble));
    EXPECT_EQ(file.Text(),
              "    0.012 /dev/ttyS0 x \"5 g\\r\\n\" lost, the line is full\n"
              "    0.012 /dev/ttyS0 ! no adapter\n");
}
