#include "workbench/cli/CommandLine.h"

#include "workbench/import/Names.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace workbench::cli {

namespace {

/// What to say of a word that stands in the place of the command and is none; empty without such a word.
std::string unknownCommand(const CLI::App& app) {
    const std::vector<std::string> words = app.remaining();
    const auto stray = std::ranges::find_if(words, [](const std::string& word) { return word[0] != '-'; });
    if (!app.get_subcommands().empty() || stray == words.end()) return {};
    std::vector<std::string> known;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        known.push_back(command->get_name());
    return "there is no command \"" + *stray + "\"" + suggestion(*stray, known) + "; there are " +
           listNames(known);
}

} // namespace

Option Option::required() {
    option_->required();
    return *this;
}

Option Option::oneOf(std::vector<std::string> words) {
    option_->check(CLI::IsMember(std::move(words)));
    return *this;
}

Option Option::between(int least, int largest) {
    option_->check(CLI::Range(least, largest));
    return *this;
}

Option Option::checked(std::string (*check)(const std::string& text), const std::string& kind) {
    option_->check(CLI::Validator(check, kind));
    return *this;
}

Option Option::inParts(int count, char separator) {
    option_->expected(count)->delimiter(separator);
    return *this;
}

Option Option::repeatable() {
    option_->expected(1)->take_all();
    return *this;
}

Option Option::showsDefault() {
    option_->capture_default_str();
    return *this;
}

Option Option::showsDefault(const std::string& text) {
    option_->default_str(text);
    return *this;
}

CommandLine::CommandLine(const std::string& program, const std::string& version,
                         const std::string& description)
    : program_(std::make_unique<CLI::App>(description, program))
    , app_(program_.get()) {
    app_->set_version_flag("--version", program + " " + version);
}

CommandLine::CommandLine(CLI::App* part)
    : app_(part) {}

CommandLine::~CommandLine() = default;

CommandLine CommandLine::command(const std::string& name, const std::string& description) {
    app_->require_subcommand(1);
    app_->fallthrough();
    return CommandLine(app_->add_subcommand(name, description));
}

CommandLine CommandLine::choice(const std::string& title) {
    CLI::App* const group = app_->add_option_group(title);
    group->require_option(1);
    return CommandLine(group);
}

void CommandLine::flag(const std::string& names, bool& value, const std::string& text) {
    app_->add_flag(names, value, text);
}
Option CommandLine::option(const std::string& names, std::string& value, const std::string& text) {
    return Option(app_->add_option(names, value, text));
}
Option CommandLine::option(const std::string& names, int& value, const std::string& text) {
    return Option(app_->add_option(names, value, text));
}
Option CommandLine::option(const std::string& names, std::size_t& value, const std::string& text) {
    return Option(app_->add_option(names, value, text));
}
Option CommandLine::option(const std::string& names, std::vector<std::string>& values,
                           const std::string& text) {
    return Option(app_->add_option(names, values, text));
}
Option CommandLine::option(const std::string& names, std::vector<int>& values, const std::string& text) {
    return Option(app_->add_option(names, values, text));
}
Option CommandLine::option(const std::string& names, std::vector<double>& values, const std::string& text) {
    return Option(app_->add_option(names, values, text));
}

void CommandLine::footer(const std::string& text) {
    app_->footer(text);
}

std::optional<ExitCode> CommandLine::parse(int argc, char** argv) {
    try {
        app_->parse(argc, argv);
    } catch (const CLI::RequiredError& error) {
        const std::string unknown = unknownCommand(*app_);
        if (unknown.empty()) return app_->exit(error) == 0 ? kDone : kUsage;
        std::fprintf(stderr, "error: %s\n", unknown.c_str());
        return kUsage;
    } catch (const CLI::ParseError& error) {
        return app_->exit(error) == 0 ? kDone : kUsage;
    }
    return std::nullopt;
}

std::size_t CommandLine::givenCommand() const {
    const auto commands = app_->get_subcommands([](CLI::App*) { return true; });
    std::size_t given = 0;
    while (given < commands.size() && !commands[given]->parsed())
        ++given;
    return given;
}

} // namespace workbench::cli
