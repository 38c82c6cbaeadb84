#include <wbalance/WbalanceSartorius.h>

#include "Operations.h"
#include "drivers/Factory.h"

namespace tool {

template <>
DriverInfo InfoOf<WbalanceSartorius>() {
    DriverInfo driver{"Sartorius", "balances with SBI print lines", ReadSbi,
                      Quiet<WbalanceSartorius>};
    driver.readyFirst = true;
    driver.modes =
        "all alike: what the balance prints (ESC P), by its own setting after stability; with "
        "stable no weight when it prints one that is not";
    // The model: the queries are answered also while a print waits for stability.
    driver.question = {"\x1bx1_"};
    auto preset = Weighed(PresetTare, "tares first; works where soft key 4 stores the tare");
    preset.setter = "\x1bt";
    driver.operations = {{Operation::Tare, Weighed(Tare)}, {Operation::PresetTare, preset}};
    // The command's buffer holds a number of four characters; a longer one ends the process.
    driver.greatestPresetTare = 9.99;
    return driver;
}

}  // namespace tool
