// The trace as a process sees it: on its standard output, from several threads.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wbalance/CSerialObject.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

/// What is printed on standard output while it lives.
class StandardOutput {
 public:
    StandardOutput() : saved_(stdout), stream_(open_memstream(&text_, &size_)) { stdout = stream_; }
    ~StandardOutput() {
        stdout = saved_;
        std::fclose(stream_);
        std::free(text_);
    }
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;

    std::string Text() {
        std::fflush(stream_);
        return {text_, size_};
    }

    /// How much has left the stream's buffer.
    std::size_t Flushed() const { return size_; }

 private:
    std::FILE* saved_;
    char* text_ = nullptr;
    std::size_t size_ = 0;
    std::FILE* stream_;
};

TEST(TavinTrace, Prints_on_standard_output) {
    StandardOutput output;
    CSerialObject serial;

    serial.TavinTrace(1015, "Radwag - Tare\n");
    serial.TavinTrace(1015, "%s - %n%d%%");

    EXPECT_EQ(output.Text(), "Radwag - Tare\n - 0%");
}

TEST(TavinTrace, Leaves_the_flushing_to_the_process) {
    StandardOutput output;
    CSerialObject serial;

    serial.TavinTrace(1015, "Radwag - Tare\n");
    serial.TavinTrace(1015, "50%%\n");

    EXPECT_EQ(output.Flushed(), 0U);
    EXPECT_EQ(output.Text(), "Radwag - Tare\n50%\n");
}

TEST(TavinTrace, Threads_with_an_object_each_keep_their_lines_whole) {
    constexpr int kThreads = 4;
    constexpr int kLines = 2000;
    StandardOutput output;

    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number) {
        threads.emplace_back([] {
            CSerialObject serial;
            for (int i = 0; i < kLines; ++i)
                serial.TavinTrace(1015, "<%3d> %s%n%p 50%% of the line\n");
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    std::istringstream lines(output.Text());
    int count = 0;
    for (std::string text; std::getline(lines, text); ++count)
        ASSERT_EQ(text, "<  0> (nil) 50% of the line");
    EXPECT_EQ(count, kThreads * kLines);
}

}  // namespace
