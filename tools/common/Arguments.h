#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

/// The options of a command. CLI11 parses them. Its headers take seconds to compile, so the
/// commands declare their options through these handles.
namespace arguments {

/// An option, flag or positional argument that a command has.
class Option {
 public:
    explicit Option(CLI::Option* option) : option_(option) {}

    /// What help shows in the place of the value.
    Option TypeName(const std::string& name) const;
    Option Required() const;
    /// Help shows the value that the variable has now, or this text.
    Option ShowDefault() const;
    Option ShowDefault(const std::string& text) const;
    Option Range(int least, int greatest) const;
    Option Range(double least, double greatest) const;
    Option Excludes(Option other) const;
    /// Several values are given by writing the option several times.
    Option OneValueEach() const;

 private:
    CLI::Option* option_;
};

/// A command, to which options, arguments and commands below it are added. Variables are filled
/// when the command line is parsed and have to last until then.
class Command {
 public:
    Command(CLI::App& application) : application_(&application) {}

    Command AddSubcommand(const std::string& name, const std::string& description) const;
    void Footer(const std::string& text) const;
    void Callback(const std::function<void()>& carryOut) const;

    Option AddFlag(const std::string& names, bool& given, const std::string& description) const;
    /// A flag that takes a value after "=" only. Without a value it has `usual`.
    Option AddFlag(const std::string& names, std::string& value, const std::string& usual,
                   const std::string& description) const;
    Option AddOption(const std::string& names, std::string& value,
                     const std::string& description) const;
    Option AddOption(const std::string& names, int& value, const std::string& description) const;
    Option AddOption(const std::string& names, double& value, const std::string& description) const;
    Option AddOption(const std::string& names, std::optional<int>& value,
                     const std::string& description) const;
    Option AddOption(const std::string& names, std::vector<std::string>& values,
                     const std::string& description) const;
    Option AddOption(const std::string& names, const std::function<void(const std::string&)>& take,
                     const std::string& description) const;

 private:
    CLI::App* application_;
};

/// Help was asked for and is on standard output.
struct HelpShown {};

/// A command line with a single command.
struct Grammar {
    std::string name;
    std::string description;
    std::string footer;
    /// Whether the first word that is not an option, and all words after it, are left over.
    bool prefixCommand = false;
};

/// Parses `words` as `declare` adds options to the command; returns the words that are left over.
/// Throws HelpShown, or std::exception with a sentence for words that are wrong.
std::vector<std::string> Parse(const Grammar& grammar, std::vector<std::string> words,
                               const std::function<void(Command)>& declare);

}  // namespace arguments
