#include "WeighOptions.h"

#include <CLI/CLI.hpp>
#include <map>

namespace tool {

void WeighOptions::AddTo(CLI::App& command) {
    const std::map<std::string, long> modes = {{"stable", 0}, {"auto", 1}, {"now", 2}};
    command
        .add_option("-m,--mode", mode,
                    "stable (0): only a stable weight; auto (1): a stable one, else the driver's "
                    "fall-back; now (2): what the balance shows. `wbalance drivers` says what a "
                    "driver makes of them")
        ->type_name("MODE")
        ->transform(CLI::CheckedTransformer(modes).description(""))
        ->default_str("auto");
    auto* asJson = command.add_flag("--json", json, "one JSON object a line, failures included");
    command.add_flag("--csv", csv, "comma-separated values with a header line")->excludes(asJson);
}

Format WeighOptions::OutputFormat() const {
    if (json) return Format::Json;
    return csv ? Format::Csv : Format::Text;
}

}  // namespace tool
