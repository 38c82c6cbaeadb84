#include "SignedReading_dialogues.h"

namespace faults {

// clang-format off

std::vector<FaultDialogue> SignedReadingDialogues(const char* command) {
    const auto answer = [=](const std::string& text) { return Exchange{command, {{text, 60}}}; };
    const Exchange stable = answer("1+   12.34 g\r\n");
    const Exchange unstable = answer("U-    0.50 g\r\n");
    const Exchange zero = answer("1+    0.05 g\r\n");
    const Exchange inPieces = {command, {{"1-", 60}, {"   7.25", 300}, {" g\r\n", 900}}};
    const Act ready = {{"IsReady"}, {stable}};
    const double noWeight = kUntouchedWeight;
    const int noDecimals = kUntouchedDecimals;
    // Five requests: at most three pieces, each with its wait and its pause, and a wait for nothing.
    const long weightBound = 5 * (3 * 1100 + 1000);

    return {
        {"Readiness", ready, 1, noWeight, noDecimals, weightBound},
        {"Weight without a readiness before", {{"Weight", 0}, {stable}}, 0, 0.0, noDecimals, 0},
        {"Stable weight", {{"Weight", 0}, {stable}}, 1, 12.34, noDecimals, weightBound, {ready}},
        {"Stable weight in pieces", {{"Weight", 1}, {inPieces}}, 1, -7.25, noDecimals, weightBound, {ready}},
        {"A plus behind the mark", {{"Weight", 0}, {answer("1-  3.00 g +2\r\n")}}, 1, 2.0, noDecimals, weightBound, {ready}},
        {"Unstable weight asked for", {{"Weight", 2}, {unstable}}, 1, -0.5, noDecimals, weightBound, {ready}},
        {"Unstable twice, then stable", {{"Weight", 0}, {unstable, unstable, stable}}, 1, 12.34, noDecimals, weightBound, {ready}},
        {"Unstable five times", {{"Weight", 0}, {unstable, unstable, unstable, unstable, unstable}}, 0, -0.5, noDecimals,
         weightBound, {ready}},
        {"Longer than an answer may be", {{"Weight", 0}, {answer("1+   12.34 g" + std::string(110, ' ') + "0123456\r\n")}}, 1, 12.34,
         noDecimals, weightBound, {ready}},
        {"Silence", {{"Weight", 0}, {}}, 0, 0.0, noDecimals, weightBound, {ready}},
        {"Tare", {{"Tare"}, {zero, zero}}, 1, noWeight, noDecimals, 2 * weightBound + 2000, {ready}},
        {"Tare that leaves too much", {{"Tare"}, {answer("1-    0.1 g\r\n"), answer("1-    0.1 g\r\n")}}, 0, noWeight, noDecimals,
         2 * weightBound + 2000, {ready}},
        {"Preset tare", {{"TareSet", 0, 5.0}, {}}, 0, noWeight, noDecimals, 0},
    };
}

// clang-format on

}  // namespace faults
