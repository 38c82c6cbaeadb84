#include "ExampleDrivers.h"

#include "FilledText.h"

namespace tool {

std::string WithExampleDrivers(const std::string& text) {
    static const FillIns kDrivers = {{"driver", "mettler-toledo"},
                                     {"other", "radwag"},
                                     {"third", "kern"},
                                     {"panel", "mettler-xs"},
                                     {"reset", "ohaus"}};
    return Filled(text, kDrivers);
}

}  // namespace tool
