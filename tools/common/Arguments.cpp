#include "Arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <iostream>

namespace arguments {
namespace {

// A range lets "nan" through, which is neither below nor above it.
std::string RefuseNoNumber(const std::string& text) {
    double number = 0.0;
    const bool converted = CLI::detail::lexical_cast(text, number);
    return converted && !std::isnan(number) ? "" : "Value " + text + " is no number";
}

}  // namespace

Option Option::TypeName(const std::string& name) const {
    option_->type_name(name);
    return *this;
}

Option Option::Required() const {
    option_->required();
    return *this;
}

Option Option::ShowDefault() const {
    option_->capture_default_str();
    return *this;
}

Option Option::ShowDefault(const std::string& text) const {
    option_->default_str(text);
    return *this;
}

Option Option::Range(int least, int greatest) const {
    option_->check(CLI::Range(least, greatest));
    return *this;
}

Option Option::Range(double least, double greatest) const {
    option_->check(CLI::Range(least, greatest));
    option_->check(RefuseNoNumber);
    return *this;
}

Option Option::Excludes(Option other) const {
    option_->excludes(other.option_);
    return *this;
}

Option Option::OneValueEach() const {
    option_->allow_extra_args(false);
    return *this;
}

Command Command::AddSubcommand(const std::string& name, const std::string& description) const {
    return *application_->add_subcommand(name, description);
}

void Command::Footer(const std::string& text) const {
    application_->footer(text);
}

void Command::Callback(const std::function<void()>& carryOut) const {
    application_->callback(carryOut);
}

Option Command::AddFlag(const std::string& names, bool& given,
                        const std::string& description) const {
    return Option(application_->add_flag(names, given, description));
}

Option Command::AddFlag(const std::string& names, std::string& value, const std::string& usual,
                        const std::string& description) const {
    return Option(application_->add_flag(names + "{" + usual + "}", value, description));
}

Option Command::AddOption(const std::string& names, std::string& value,
                          const std::string& description) const {
    return Option(application_->add_option(names, value, description));
}

Option Command::AddOption(const std::string& names, int& value,
                          const std::string& description) const {
    return Option(application_->add_option(names, value, description));
}

Option Command::AddOption(const std::string& names, double& value,
                          const std::string& description) const {
    return Option(application_->add_option(names, value, description));
}

Option Command::AddOption(const std::string& names, std::optional<int>& value,
                          const std::string& description) const {
    return Option(application_->add_option(names, value, description));
}

Option Command::AddOption(const std::string& names, std::vector<std::string>& values,
                          const std::string& description) const {
    return Option(application_->add_option(names, values, description));
}

Option Command::AddOption(const std::string& names,
                          const std::function<void(const std::string&)>& take,
                          const std::string& description) const {
    return Option(application_->add_option_function<std::string>(names, take, description));
}

std::vector<std::string> Parse(const Grammar& grammar, std::vector<std::string> words,
                               const std::function<void(Command)>& declare) {
    CLI::App application(grammar.description, grammar.name);
    application.footer(grammar.footer);
    application.prefix_command(grammar.prefixCommand);
    declare(application);
    std::reverse(words.begin(), words.end());  // as CLI11 takes them
    try {
        application.parse(words);
    } catch (const CLI::CallForHelp&) {
        std::cout << application.help();
        throw HelpShown{};
    }
    return application.remaining();
}

}  // namespace arguments
