#include "MettlerPR2003_dialogues.h"

namespace faults {

// clang-format off

std::vector<FaultDialogue> MettlerPR2003Dialogues() {
    const Exchange reset = {"@\r\n", {{"I4 A \"1126493049\"\r\n", 20}}};
    const Exchange display = {"D \"READY\"\r\n", {{"D A\r\n", 20}}};
    const Exchange back = {"DW\r\n", {{"DW A\r\n", 20}}};
    const Exchange tare = {"T\r\n", {{"T S       2.50 g\r\n", 20}}};
    const Exchange stable = {"S\r\n", {{"S S     100.00 g\r\n", 20}}};
    const Exchange busy = {"S\r\n", {{"S I\r\n", 20}}};
    const Exchange ten = {"SI\r\n", {{"S D      10.00 g\r\n", 20}}};
    const Exchange seven = {"SI\r\n", {{"S S      -7.5 g\r\n", 20}}};
    const Exchange error = {"SI\r\n", {{"ES\r\n", 20}}};
    const Act ready = {{"IsReady"}, {reset}};
    const Act show = {{"DisplayMessage", 0, 0, "READY"}, {reset, display}};
    const double noWeight = kUntouchedWeight;
    const int noDecimals = kUntouchedDecimals;
    const long receive = 6100;
    const long average = receive + 1000 + 5 * (receive + 1000);

    return {
        {"Reset at the first readiness", ready, 1, noWeight, noDecimals, 500 + receive},
        {"Readiness without a reset", {{"IsReady"}, {}}, 1, noWeight, noDecimals, 0, {ready}},
        {"Reset with another answer", {{"IsReady"}, {{"@\r\n", {{"ES\r\n", 20}}}}}, 0, noWeight, noDecimals, 500 + receive},
        {"Tare with the reset", {{"Tare"}, {reset, tare}}, 1, noWeight, noDecimals, 500 + 2 * receive},
        {"Tare", {{"Tare"}, {tare}}, 1, noWeight, noDecimals, receive, {ready}},
        {"Tare refused", {{"Tare"}, {{"T\r\n", {{"T I\r\n", 20}}}}}, 0, noWeight, noDecimals, receive, {ready}},
        {"Tare behind a text", {{"Tare"}, {back, tare}}, 1, noWeight, noDecimals, 500 + 2 * receive, {show}},
        {"Preset tare", {{"TareSet", 0, 10.0}, {tare, {"TA 12.50 g\r\n", {{"TA A      12.50 g\r\n", 20}}}}}, 1, noWeight,
         noDecimals, 2 * receive, {ready}},
        {"Preset tare behind a text, refused",
         {{"TareSet", 0, 10.0}, {back, {"T\r\n", {{"T I\r\n", 20}}}, {"TA 10.00 g\r\n", {{"TA L\r\n", 20}}}}}, 1, noWeight,
         noDecimals, 500 + 3 * receive, {show}},
        {"Stable weight", {{"Weight", 0}, {stable}}, 1, 100.0, noDecimals, 1000 + receive, {ready}},
        {"Stable weight behind a text", {{"Weight", 0}, {back, stable}}, 1, 100.0, noDecimals, 1500 + 2 * receive, {show}},
        {"Stable weight while the pan moves", {{"Weight", 0}, {busy}}, 0, 0.0, noDecimals, 1000 + receive, {ready}},
        {"Immediate weight, dynamic", {{"Weight", 2}, {ten}}, 2, 10.0, noDecimals, receive, {ready}},
        {"Immediate weight, stable", {{"Weight", 2}, {seven}}, 1, -7.5, noDecimals, receive, {ready}},
        {"Stable weight in mode 1", {{"Weight", 1}, {stable}}, 1, 100.0, noDecimals, average, {ready}},
        {"Average of five", {{"Weight", 1}, {busy, ten, ten, ten, ten, ten}}, 2, 10.0, noDecimals, average, {ready}},
        {"Average of three and two silent passes", {{"Weight", 1}, {ten, ten, ten}}, 2, 6.0, noDecimals, average, {ready}},
        {"Stable in the second pass", {{"Weight", 1}, {ten, seven}}, 1, -7.5, noDecimals, average, {ready}},
        {"Refused in the second pass", {{"Weight", 1}, {ten, error}}, 0, 0.0, noDecimals, average, {ready}},
        {"Unknown mode behind a text", {{"Weight", 3}, {back}}, 0, 0.0, noDecimals, 500 + receive, {show}},
        {"Switch on", {{"TurnItOn"}, {{"PWR 1\r\n", {{"PWR A\r\n", 20}}}, back}}, 1, noWeight, noDecimals,
         1500 + 2 * receive, {show}},
        {"Switch off", {{"TurnItOff"}, {back, {"PWR 0\r\n", {{"PWR A\r\n", 20}}}}}, 1, noWeight, noDecimals,
         1500 + 2 * receive, {ready}},
        {"Text too long, with the reset", {{"DisplayMessage", 0, 0, std::string(58, 'x')}, {reset}}, 0, noWeight, noDecimals,
         500 + receive},
        {"Text too long", {{"DisplayMessage", 0, 0, std::string(63, 'x')}, {}}, 0, noWeight, noDecimals, 0, {ready}},
        {"Text", {{"DisplayMessage", 0, 0, "READY"}, {display}}, 1, noWeight, noDecimals, receive, {ready}},
    };
}

// clang-format on

}  // namespace faults
