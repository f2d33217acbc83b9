#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace workbench::cli {

/// Exit codes of our programs.
enum ExitCode : int {
    kDone = 0,
    kFailed = 1, ///< the input is wrong or the work failed; the standard error output says why
    kUsage = 2,  ///< the command line is wrong
};

/// An option that was just declared: what else holds for it.
class Option {
  public:
    explicit Option(CLI::Option* option)
        : option_(option) {}
    Option required();
    Option oneOf(std::vector<std::string> words);
    Option between(int least, int largest); ///< also each part of a value
    /// `check` answers what is wrong with a text, or nothing; `kind` is what the help calls the value.
    Option checked(std::string (*check)(const std::string& text), const std::string& kind);
    Option inParts(int count, char separator); ///< such as 800x600
    Option repeatable();                       ///< each occurrence adds one value
    Option showsDefault();                     ///< the help shows what the variable holds now
    Option showsDefault(const std::string& text);

  private:
    CLI::Option* option_;
};

/// What a program or one of its commands takes, bound to variables that keep their values when an option is
/// not given; they must outlive parse(). Names are "model" for a place in the line, "--name" and "-n,--name"
/// for an option. The library behind it compiles slowly, so that one file alone includes it.
class CommandLine {
  public:
    CommandLine(const std::string& program, const std::string& version, const std::string& description);
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    /// A command, which the program's own options may follow. With commands, one must be named.
    CommandLine command(const std::string& name, const std::string& description);
    /// Options of which just one must be given.
    CommandLine choice(const std::string& title);

    void flag(const std::string& names, bool& value, const std::string& text);
    Option option(const std::string& names, std::string& value, const std::string& text);
    Option option(const std::string& names, int& value, const std::string& text);
    Option option(const std::string& names, std::size_t& value, const std::string& text);
    Option option(const std::string& names, std::vector<std::string>& values, const std::string& text);
    Option option(const std::string& names, std::vector<int>& values, const std::string& text);
    Option option(const std::string& names, std::vector<double>& values, const std::string& text);
    void footer(const std::string& text);

    /// Fills the variables. Where nothing is left to do, prints the help or what is wrong and answers the
    /// exit code.
    std::optional<ExitCode> parse(int argc, char** argv);
    /// The command that was named, by the order of their declaration.
    std::size_t givenCommand() const;

  private:
    explicit CommandLine(CLI::App* part); ///< of another one, which owns it
    std::unique_ptr<CLI::App> program_;
    CLI::App* app_;
};

} // namespace workbench::cli
