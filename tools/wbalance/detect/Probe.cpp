#include "Probe.h"

#include <algorithm>

namespace tool {
namespace {

bool Answers(const std::vector<KnownAnswer>& known, const std::string& question) {
    return std::any_of(known.begin(), known.end(),
                       [&](const KnownAnswer& one) { return one.question == question; });
}

bool Recognises(const std::vector<KnownAnswer>& known, const std::string& question,
                const std::string& answer) {
    return std::any_of(known.begin(), known.end(), [&](const KnownAnswer& one) {
        return one.question == question && one.recognises(answer);
    });
}

// Drivers of models that the answer to a question for the model shows.
std::vector<const DriverInfo*> ModelsOf(const std::string& protocol) {
    std::vector<const DriverInfo*> models;
    for (const auto& driver : Drivers()) {
        if (driver.recognition.protocol == protocol && !driver.recognition.modelMark.empty())
            models.push_back(&driver);
    }
    return models;
}

std::vector<const DriverInfo*> DriversFoundBy(const std::string& question) {
    std::vector<const DriverInfo*> found;
    const auto add = [&found](const DriverInfo* driver) {
        if (std::find(found.begin(), found.end(), driver) == found.end()) found.push_back(driver);
    };
    for (const auto& driver : Drivers()) {
        if (!Answers(driver.recognition.asked, question)) continue;
        add(&driver);
        if (driver.recognition.modelQuestion.empty()) continue;
        for (const DriverInfo* model : ModelsOf(driver.recognition.protocol))
            add(model);
    }
    return found;
}

bool Asks(const std::vector<Probe>& probes, const std::string& question) {
    return std::any_of(probes.begin(), probes.end(),
                       [&](const Probe& probe) { return probe.command == question; });
}

// The questions of the drivers that are asked last, or of the others; each question once.
void AddProbes(std::vector<Probe>& probes, bool askedLast) {
    for (const auto& driver : Drivers()) {
        if (driver.recognition.askedLast != askedLast) continue;
        for (const auto& known : driver.recognition.asked) {
            if (!Asks(probes, known.question))
                probes.push_back({known.question, DriversFoundBy(known.question)});
        }
    }
}

std::vector<Probe> AllProbes() {
    std::vector<Probe> probes;
    AddProbes(probes, false);
    AddProbes(probes, true);
    return probes;
}

}  // namespace

const DriverInfo* Probe::DriverFor(const std::string& answer) const {
    for (const auto& driver : Drivers()) {
        if (Recognises(driver.recognition.asked, command, answer) ||
            Recognises(driver.recognition.overheard, command, answer))
            return &driver;
    }
    return nullptr;
}

const std::vector<Probe>& Probes() {
    static const std::vector<Probe> probes = AllProbes();
    return probes;
}

std::vector<const DriverInfo*> ModelsLike(const DriverInfo& found) {
    std::vector<const DriverInfo*> models;
    if (found.recognition.modelQuestion.empty()) return models;
    for (const DriverInfo* model : ModelsOf(found.recognition.protocol)) {
        if (model->recognition.asked.empty()) models.push_back(model);
    }
    return models;
}

const DriverInfo& DriverForModel(const DriverInfo& found, const std::string& answer) {
    for (const DriverInfo* model : ModelsOf(found.recognition.protocol)) {
        if (answer.find(model->recognition.modelMark) != std::string::npos) return *model;
    }
    return found;
}

}  // namespace tool
