#include "RecordedInstrument.h"

#include <algorithm>

using simulator::BalanceModel;
using simulator::CatalogEntry;
using simulator::Dialect;
using simulator::LineSettings;
using simulator::Time;

namespace {

class RecordedInstrument final : public Dialect {
 public:
    RecordedInstrument(BalanceModel& model, std::shared_ptr<Playback> playback, bool fast)
        : Dialect(model, "\n"), playback_(std::move(playback)), fast_(fast) {}

    void portOpened() override { playback_->open(answers()); }

 protected:
    /// The record says where commands end: every character is looked at by itself.
    std::optional<std::string> cutCommand(std::string& received) override {
        if (received.empty()) return std::nullopt;
        const std::string byte = received.substr(0, 1);
        received.erase(0, 1);
        return byte;
    }
    void execute(const std::string& byte) override { playback_->take(byte.front(), answers()); }
    void spoiled() override { playback_->takeDamaged(); }
    bool interrupts(const std::string&) const override { return true; }
    void unknown(const std::string&) override {}
    void printKey() override {}

 private:
    Playback::Answer answers() {
        return [this](Time delay, const std::string& bytes) {
            after(fast_ ? Time(0) : delay, [this, bytes] { send(bytes); });
        };
    }

    const std::shared_ptr<Playback> playback_;
    const bool fast_;
};

/// The record's settings, or where they leave something to the port, those of its instrument.
LineSettings lineOf(const record::Header& header) {
    const auto& all = simulator::catalog();
    const auto known = std::find_if(all.begin(), all.end(), [&](const CatalogEntry& each) {
        return each.name == header.driver;
    });
    const LineSettings usual = known == all.end() ? LineSettings() : known->line;
    return LineSettings::parse(header.line).value_or(usual);
}

}  // namespace

CatalogEntry recordedInstrument(const std::shared_ptr<Playback>& playback, bool fast) {
    CatalogEntry entry;
    entry.name = "replay";
    entry.line = lineOf(playback->record().header);
    entry.createDialect = [playback, fast](BalanceModel& model, const simulator::Switches&) {
        return std::make_unique<RecordedInstrument>(model, playback, fast);
    };
    return entry;
}
