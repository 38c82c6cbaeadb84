#include "simulator/instruments/MtSicsModel.h"

#include <algorithm>

namespace simulator {
namespace {

// Texts of the XS204 (I2) and of the WXS205SDU (I2, I3, I5, I11) are those of such balances. The
// others have their form.
const std::vector<MtSicsModel>& Models() {
    static const std::vector<MtSicsModel> all = {
        {"level-1", "MT-SICS", "MT-SICS", R"("01" "2.30" "2.22")", "1.20 34.28.3.4485.1729",
         "11671158C", 610, 0.01, true, false, false, false, false},
        {"xs204", "XS204 Excellence", "XS204", R"("0123" "2.30" "2.22" "2.33" "2.20")",
         "4.10 10.28.0.493.142", "11671158C", 220.009, 0.0001, true, true, true, true, false},
        {"wxs205", "WXS205SDU WXA-Bridge", "WXS205SDU", R"("01" "2.30" "2.22")",
         "1.10 18.6.4.1361.772", "11671158C", 220.009, 0.00001, false, true, true, false, true},
        {"pr2003", "PR2003", "PR2003", R"("0123" "2.30" "2.22" "2.33" "2.20")",
         "3.10 4.23.0.241.117", "11671158C", 2100, 0.001, true, true, false, false, false},
        {"sb32001", "SB32001", "SB32001", R"("0123" "2.30" "2.22" "2.33" "2.20")",
         "3.10 4.23.0.241.118", "11671158C", 32100, 0.1, true, true, false, false, false},
    };
    return all;
}

std::vector<std::string> ModelNames() {
    std::vector<std::string> names;
    for (const MtSicsModel& each : Models())
        names.push_back(each.name);
    return names;
}

}  // namespace

const MtSicsModel& ChosenMtSicsModel(const Switches& switches) {
    const std::string& name = switches.Text("model");
    return *std::find_if(Models().begin(), Models().end(),
                         [&](const MtSicsModel& each) { return each.name == name; });
}

BalanceData MtSicsBalance(const Switches& switches) {
    const MtSicsModel& model = ChosenMtSicsModel(switches);
    BalanceData data;
    data.capacity = model.capacity;
    data.readability = model.readability;
    data.lowestLoad = -model.capacity / 10;
    data.zeroRange = model.capacity * 0.02;
    return data;
}

std::vector<SwitchDescription> MtSicsSwitches(const std::string& model) {
    return {
        {"model", model, ModelNames(), "texts, capacity, readability and commands"},
        OnOff("reset-answer", true, "answers @ with its serial number"),
        OnOff("power-on-line", true, "sends its serial number unasked when the mains come on"),
        {"serial-number", "1126493049", {}, "serial number, 7 to 10 characters"},
        {"stability-time-out", "10s", {}, "how long S, T and Z wait for the pan to rest", true},
        {"repeat-interval", "200ms", {}, "time between two weights of SIR, until UPD", true},
        {"adjustment-time", "60s", {}, "how long the adjustments C1 and C3 take", true},
        {"display-width", "14", {"7", "14", "20", "60"}, "characters that the display holds"},
        {"cut-text", "R", {"A", "R", "L"}, "status answered for a text that was cut to fit"},
        {"tare-query", "A", {"A", "S"}, "status in the answer to TA without a weight"},
        OnOff("timed-commands", false, "knows SC, TC, ZC and C, as some weigh modules do"),
        OnOff("adjustment-wanted", false, "C0 says that an adjustment is due, until one is done"),
        OnOff("faulty-cell", false, "sends an error number in place of each weight"),
    };
}

}  // namespace simulator
