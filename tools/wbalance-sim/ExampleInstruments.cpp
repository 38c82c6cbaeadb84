#include "ExampleInstruments.h"

#include <utility>

std::string WithExamples(std::string text) {
    const std::pair<std::string, std::string> examples[] = {
        {"{balance}", "kern"}, {"{other}", "radwag"}, {"{switch}", "fill=zero"}};
    for (const auto& [placeholder, name] : examples)
        for (std::size_t at = 0; (at = text.find(placeholder, at)) != std::string::npos;)
            text.replace(at, placeholder.size(), name);
    return text;
}
