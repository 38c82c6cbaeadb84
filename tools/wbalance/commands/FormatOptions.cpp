#include "FormatOptions.h"

#include <vector>

namespace tool {

void FormatOptions::AddTo(arguments::Command command, const std::string& ofErrors) {
    std::vector<arguments::Option> options;
    for (const auto& format : Formats()) {
        if (format.IsForPeople()) continue;
        const std::string help = format.help + (format.tellsErrors ? ofErrors : "");
        const auto option = command.AddFlag("--" + format.name, given_[format.name], help);
        for (const auto& other : options)
            static_cast<void>(option.Excludes(other));
        options.push_back(option);
    }
}

const Format& FormatOptions::Chosen() const {
    for (const auto& [name, given] : given_)
        if (given) return FormatNamed(name);
    return Formats().front();
}

void AddJsonFlag(arguments::Command command, bool& given, const std::string& help) {
    command.AddFlag("--" + FormatNamed("json").name, given, help);
}

}  // namespace tool
