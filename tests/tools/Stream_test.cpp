#include "output/Stream.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/time.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <thread>

namespace {

// Signals that interrupt every wait and every write again and again while it lives.
class Interruptions {
 public:
    Interruptions() {
        struct sigaction action {};
        action.sa_handler = [](int) {};
        sigaction(SIGALRM, &action, &before_);
        const itimerval often{{0, 1000}, {0, 1000}};
        setitimer(ITIMER_REAL, &often, nullptr);
    }
    ~Interruptions() {
        const itimerval never{};
        setitimer(ITIMER_REAL, &never, nullptr);
        sigaction(SIGALRM, &before_, nullptr);
    }
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;

 private:
    struct sigaction before_ {};
};

// Reads a pipe to its end, a little at a time.
std::string ReadSlowly(int descriptor) {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
    std::string text;
    char bytes[1000];
    for (;;) {
        std::this_thread::sleep_for(std::chrono::milliseconds(3));
        const ssize_t count = read(descriptor, bytes, sizeof bytes);
        if (count <= 0) return text;
        text.append(bytes, static_cast<std::size_t>(count));
    }
}

TEST(Stream, Every_byte_reaches_a_slow_reader_though_signals_interrupt_the_writer) {
    std::string numbers;
    for (int i = 0; i < 20000; ++i)
        numbers += std::to_string(i) + "\n";
    for (const int flags : {0, O_NONBLOCK}) {
        int ends[2];
        ASSERT_EQ(pipe2(ends, flags), 0);
        fcntl(ends[0], F_SETFL, 0);
        fcntl(ends[1], F_SETPIPE_SZ, 4096);
        std::string received;
        std::thread reader([&] { received = ReadSlowly(ends[0]); });
        {
            const Interruptions interruptions;
            EXPECT_EQ(tool::WriteAll(ends[1], numbers), std::error_code());
        }
        close(ends[1]);
        reader.join();
        close(ends[0]);
        EXPECT_EQ(received, numbers);
    }
}

TEST(Stream, What_was_not_written_has_its_reason) {
    constexpr int kNeverOpened = 1000;
    EXPECT_EQ(tool::WriteAll(kNeverOpened, "text"), std::errc::bad_file_descriptor);
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    EXPECT_EQ(tool::WriteAll(full, "text"), std::errc::no_space_on_device);
    close(full);
}

}  // namespace
