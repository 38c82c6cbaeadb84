#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "simulator/Instrument.h"

/// An instrument in virtual time: what it is asked, what it answers, to the byte.
class InstrumentTest : public testing::Test {
 protected:
    /// The instrument of this catalog name with a load that has always been on the pan.
    void have(const std::string& name, double load, const std::vector<std::string>& switches = {}) {
        instrument_ =
            std::make_unique<simulator::Instrument>(simulator::findInstrument(name), switches);
        instrument_->balance().startWithLoad(load);
    }
    std::string ask(const std::string& bytes, simulator::Time at = simulator::Time(0)) {
        instrument_->receive(bytes, at);
        return instrument_->takeOutput();
    }
    std::string answersUntil(simulator::Time time) {
        instrument_->advance(time);
        return instrument_->takeOutput();
    }
    /// Puts a load on the pan, which takes its time to come to rest.
    void putOn(double load) { instrument_->balance().setLoad(load); }
    void addFault(const std::string& fault) {
        instrument_->addFault(simulator::Fault::parse(fault));
    }

    std::unique_ptr<simulator::Instrument> instrument_;
};
