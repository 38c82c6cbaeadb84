// Answers of any length are read in the stack that a thread has, and in a time that grows as they
// do: one whose time grows with the square takes hours here.

#include <gmock/gmock.h>
#include <pthread.h>

#include <functional>

#include "Examples.h"
#include "Facts.h"
#include "doctor/Explanation.h"
#include "readings/Measurement.h"

using examples::kBalance;
using testing::HasSubstr;
using tool::Meaning;

namespace {

constexpr std::size_t kSmallStack = 256 * 1024;

void* Call(void* work) {
    (*static_cast<std::function<void()>*>(work))();
    return nullptr;
}

void InSmallStack(std::function<void()> work) {
    pthread_attr_t attributes;
    pthread_t thread;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, kSmallStack);
    ASSERT_EQ(pthread_create(&thread, &attributes, Call, &work), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

std::string Repeated(const std::string& piece, std::size_t size) {
    std::string text;
    while (text.size() < size)
        text += piece;
    return text;
}

const char* const kBeginnings[] = {"", "S S ", "+", "1+ "};
const char* const kPieces[] = {"7",    "7.",   " ",  "\t",    "\n",  "7 ",       "1+ ", "U-",
                               " g N", "S S ", "I4", "7 g N", "?\r", "\xff\xfe", "PROJ"};

std::vector<std::string> Shapes(std::size_t size) {
    std::vector<std::string> shapes;
    for (const char* beginning : kBeginnings) {
        for (const char* piece : kPieces)
            shapes.push_back(beginning + Repeated(piece, size) + " g N\r\n");
    }
    return shapes;
}

tool::Report Answered(const std::string& answer, double weight) {
    tool::Report report;
    report.trace = {{{}, "<== S\r\n ... OK\n\n"},
                    {{}, "Read from scale: " + answer + " (time elapsed: 0 ms)\n"}};
    report.outcome = {1, weight};
    return report;
}

class LongAnswers : public testing::TestWithParam<std::string> {
 protected:
    const tool::DriverInfo& driver_ = tool::FindDriver(GetParam());
};

TEST_P(LongAnswers, Of_100000_characters_are_measured_and_explained) {
    InSmallStack([this] {
        for (const auto& answer : Shapes(100'000)) {
            const auto measurement = Measure(driver_, Answered(answer, 4711.0));
            EXPECT_FALSE(measurement.reading.IsWeight()) << answer.substr(0, 40);
            EXPECT_LT(SentenceFor(measurement.reading).size(), 1000u);
        }
        for (const char* piece : kPieces) {
            const auto measurement = Measure(driver_, Answered(Repeated(piece, 100'000), 4711.0));
            EXPECT_LT(
                SentenceFor(ExplainAnswer(driver_, driver_.line, "S\r\n", measurement)).size(),
                1000u);
        }
    });
}

TEST_P(LongAnswers, Of_1000000_characters_are_read) {
    InSmallStack([this] {
        for (const char* piece : kPieces) {
            const tool::Reading reading = driver_.interpret("1+ " + Repeated(piece, 1'000'000));
            EXPECT_FALSE(SentenceFor(reading).empty());
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Driver, LongAnswers, testing::ValuesIn(facts::Names()),
                         [](const auto& one) { return facts::TestNameOf(one.param); });

TEST(LongAnswer, That_one_number_fills_is_that_number) {
    InSmallStack([] {
        const std::string digits(100'000, '7');
        for (const auto& one : facts::All()) {
            if (one.numberOfAnyLength.empty()) continue;
            const tool::Reading reading = tool::FindDriver(one.name).interpret(
                one.numberOfAnyLength.front() + digits + one.numberOfAnyLength.back());
            EXPECT_EQ(reading.meaning, Meaning::Weight) << one.name;
            EXPECT_EQ(reading.digits, digits) << one.name;
            EXPECT_EQ(reading.unit, "g") << one.name;
        }
    });
}

TEST(LongAnswer, Is_quoted_by_its_beginning) {
    const tool::Reading reading =
        tool::FindDriver(examples::kBalance).interpret("I4 A " + std::string(100'000, 'x'));
    EXPECT_THAT(SentenceFor(reading), HasSubstr("(the balance announced itself: I4 A xxx"));
    EXPECT_THAT(SentenceFor(reading), testing::EndsWith("xxx ...)"));
}

TEST(LongAnswer, Has_a_mean_with_all_its_digits) {
    const std::string zeros(200, '0');
    tool::Report report;
    for (int i = 0; i < 5; ++i) {
        report.trace.push_back({{}, "<== SI\r\n ... OK\n\n"});
        report.trace.push_back({{},
                                "Read from scale: S D " + std::to_string(10 + i) + zeros +
                                    ".5 g\r\n (time elapsed: 0 ms)\n"});
    }
    report.outcome = {2, 12e200};
    const tool::Reading mean = Measure(tool::FindDriver(examples::kBalance), report).reading;
    ASSERT_TRUE(mean.IsWeight());
    EXPECT_DOUBLE_EQ(mean.Value(), 12e200);
}

}  // namespace
