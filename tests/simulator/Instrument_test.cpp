// What an instrument keeps of a run that lasts for weeks.

#include "InstrumentTest.h"

using namespace std::chrono_literals;

namespace {

using Keeping = InstrumentTest;

}  // namespace

TEST_F(Keeping, Faults_that_are_over_are_forgotten_when_another_begins) {
    have("mettler-toledo", 5);
    for (int i = 0; i < 100; ++i) {
        const simulator::Time now(i * 1000);
        instrument_->advance(now);
        instrument_->addFault(simulator::Fault::parse("silent for 500ms").shiftedBy(now));
    }
    EXPECT_EQ(instrument_->faults().size(), 1u);
}

TEST_F(Keeping, Of_answers_that_are_very_late_ten_thousand_are_kept) {
    have("mettler-toledo", 5);
    addFault("late=1000s");
    for (int i = 0; i < 10'100; ++i)
        instrument_->receive("SI\r\n", simulator::Time(i));
    instrument_->advance(2000s);
    EXPECT_EQ(instrument_->takeAnswers().size(), 10'000u);
}

TEST_F(Keeping, A_balance_that_waits_keeps_a_hundred_commands) {
    have("mettler-toledo", 5);
    addFault("busy for 1s");
    for (int i = 0; i < 500; ++i)
        instrument_->receive("S\r\n", simulator::Time(0));
    instrument_->advance(2s);
    EXPECT_EQ(instrument_->takeAnswers().size(), 101u);
}
