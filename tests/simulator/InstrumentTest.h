#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "simulator/Instrument.h"

/// An instrument in virtual time: what it is asked, what it answers, to the byte.
class InstrumentTest : public testing::Test {
 protected:
    /// `name` is the instrument of which Have() makes one where it is told no other.
    explicit InstrumentTest(std::string name = "") : name_(std::move(name)) {}

    void Have(double load, const std::vector<std::string>& switches = {}) {
        Have(name_, load, switches);
    }
    /// The instrument of this catalog name with a load that has always been on the pan.
    void Have(const std::string& name, double load, const std::vector<std::string>& switches = {}) {
        instrument_ =
            std::make_unique<simulator::Instrument>(simulator::FindInstrument(name), switches);
        instrument_->Balance().StartWithLoad(load);
    }
    std::string Ask(const std::string& bytes, simulator::Time at = simulator::Time(0)) {
        instrument_->Receive(bytes, at);
        return instrument_->TakeOutput();
    }
    std::string AnswersUntil(simulator::Time time) {
        instrument_->Advance(time);
        return instrument_->TakeOutput();
    }
    /// Puts a load on the pan, which takes its time to come to rest.
    void PutOn(double load) { instrument_->Balance().SetLoad(load); }
    std::string Press(simulator::Key key) {
        instrument_->Press(key);
        return instrument_->TakeOutput();
    }
    void AddFault(const std::string& fault) {
        instrument_->AddFault(simulator::Fault::Parse(fault));
    }

    std::unique_ptr<simulator::Instrument> instrument_;

 private:
    const std::string name_;
};
