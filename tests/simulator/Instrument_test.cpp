// What an instrument keeps of a run that lasts for weeks.

#include "Examples.h"
#include "InstrumentTest.h"

using examples::kBalance;
using namespace std::chrono_literals;

namespace {

using Keeping = InstrumentTest;

}  // namespace

TEST_F(Keeping, Faults_that_are_over_are_forgotten_when_another_begins) {
    Have(kBalance, 5);
    for (int i = 0; i < 100; ++i) {
        const simulator::Time now(i * 1000);
        instrument_->Advance(now);
        instrument_->AddFault(simulator::Fault::Parse("silent for 500ms").ShiftedBy(now));
    }
    EXPECT_EQ(instrument_->Faults().size(), 1u);
}

TEST_F(Keeping, Of_answers_that_are_very_late_ten_thousand_are_kept) {
    Have(kBalance, 5);
    AddFault("late=1000s");
    for (int i = 0; i < 10'100; ++i)
        instrument_->Receive("SI\r\n", simulator::Time(i));
    instrument_->Advance(2000s);
    EXPECT_EQ(instrument_->TakeAnswers().size(), 10'000u);
}

TEST_F(Keeping, A_balance_that_waits_keeps_a_hundred_commands) {
    Have(kBalance, 5);
    AddFault("busy for 1s");
    for (int i = 0; i < 500; ++i)
        instrument_->Receive("S\r\n", simulator::Time(0));
    instrument_->Advance(2s);
    EXPECT_EQ(instrument_->TakeAnswers().size(), 101u);
}
