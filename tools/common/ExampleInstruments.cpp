#include "ExampleInstruments.h"

#include "FilledText.h"

namespace texts {

std::string WithExamples(const std::string& text) {
    static const FillIns kInstruments = {{"balance", "setra-el2000s"}, {"other", "radwag"},
                                         {"third", "scale-house"},     {"panel", "mettler-xs"},
                                         {"reset", "ohaus"},           {"switch", "echo=on"}};
    return Filled(text, kInstruments);
}

}  // namespace texts
