#include "RecordedInstrument.h"

#include <algorithm>

using simulator::BalanceModel;
using simulator::CatalogEntry;
using simulator::Dialect;
using simulator::Time;
using simulator::UartSettings;

namespace {

class RecordedInstrument final : public Dialect {
 public:
    RecordedInstrument(BalanceModel& model, std::shared_ptr<Playback> playback, bool fast)
        : Dialect(model, "\n"), playback_(std::move(playback)), fast_(fast) {}

    void PortOpened() override { playback_->Open(Answers()); }

 protected:
    /// The record says where commands end: every character is looked at by itself.
    std::optional<std::string> CutCommand(std::string& received) override {
        if (received.empty()) return std::nullopt;
        const std::string byte = received.substr(0, 1);
        received.erase(0, 1);
        return byte;
    }
    void Execute(const std::string& byte) override { playback_->Take(byte.front(), Answers()); }
    void Spoiled() override { playback_->TakeDamaged(); }
    bool Interrupts(const std::string& /*command*/) const override { return true; }
    void Unknown(const std::string& /*command*/) override {}
    void PrintKey() override {}

 private:
    Playback::Answer Answers() {
        return [this](Time delay, const std::string& bytes) {
            After(fast_ ? Time(0) : delay, [this, bytes] { Send(bytes); });
        };
    }

    const std::shared_ptr<Playback> playback_;
    const bool fast_;
};

/// The record's settings, or where they leave something to the port, those of its instrument.
UartSettings LineOf(const record::Header& header) {
    const auto& all = simulator::Catalog();
    const auto known = std::find_if(all.begin(), all.end(), [&](const CatalogEntry& each) {
        return each.name == header.driver;
    });
    const UartSettings usual = known == all.end() ? UartSettings() : known->line;
    return UartSettings::Parse(header.line).value_or(usual);
}

}  // namespace

CatalogEntry RecordedInstrumentEntry(const std::shared_ptr<Playback>& playback, bool fast) {
    CatalogEntry entry;
    entry.name = "replay";
    entry.line = LineOf(playback->Record().header);
    entry.createDialect = [playback, fast](BalanceModel& model, const simulator::Switches&) {
        return std::make_unique<RecordedInstrument>(model, playback, fast);
    };
    return entry;
}
