#include "base/ReplaceFile.h"
#include "workbench/cli/Commands.h"
#include "workbench/cli/Output.h"
#include "workbench/import/Names.h"

#include <CLI/CLI.hpp>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <utility>

namespace {

using namespace workbench;
using namespace workbench::cli;

constexpr const char* kDescription =
    "Post-processing of solved finite-element models: import, fatigue life, tables and pictures.";

constexpr const char* kFooter =
    "Exit codes: 0 done; 1 wrong input or failed work, named on the standard error output; "
    "2 wrong command line.\n"
    "After ./run there is a model to look at: vexa info build/samples/notch/notch.wkm";

void addCommonOptions(CLI::App& app, CommonOptions& common) {
    app.add_flag("--json", common.json, "Print the result as JSON");
    app.add_option("--lang", common.language, "Language of texts")->check(CLI::IsMember({"en", "ko"}));
    app.add_option("--edition", common.edition, "Edition of the host")
        ->check(CLI::IsMember({"A", "B", "C", "D"}))
        ->capture_default_str();
    app.add_option("--program-folder", common.programFolder,
                   "Folder that holds \"64bit Solver\" (default: the program's own)");
    app.add_option("--units", common.units, "Unit system for display, such as kN,m (default: the document's)")
        ->check(CLI::Validator(unitSystemFault, "FORCE,LENGTH"));
}

SessionOptions sessionOptions(const CommonOptions& common) {
    SessionOptions options;
    options.edition = static_cast<Edition>(common.edition[0] - 'A');
    options.language = common.language == "ko" ? Language::Korean : Language::English;
    options.programFolder = common.programFolder;
    return options;
}

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

/// A standard file that is closed would be the next file that is opened, and what is printed would stand in
/// it. Opened the wrong way round, so that using it fails as before.
void holdStandardFiles() {
    for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(file, F_GETFD) < 0) ::open("/dev/null", file == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

/// The exit code of a command that ended with `code`, once what it printed has arrived or could not.
int delivered(int code) {
    errno = 0;
    const bool isWritten = std::fflush(stdout) == 0 && !std::ferror(stdout);
    if (isWritten || code != kDone) return code;
    return fail("cannot write to the standard output: " + systemErrorText(errno));
}

int run(int argc, char** argv) {
    CLI::App app{kDescription, "vexa"};
    app.footer(kFooter);
    app.set_version_flag("--version", std::string("vexa ") + VEXA_VERSION);
    app.require_subcommand(1);
    app.fallthrough();
    CommonOptions common;
    addCommonOptions(app, common);

    std::unique_ptr<Command> commands[] = {
        makeNewCommand(app),     makeInfoCommand(app),    makeTableCommand(app),
        makeFatigueCommand(app), makePictureCommand(app), makeCombineCommand(app),
        makeCheckCommand(app),   makeFosCommand(app),     makeSafetyCommand(app)};
    try {
        app.parse(argc, argv);
    } catch (const CLI::RequiredError& error) {
        const std::string unknown = unknownCommand(app);
        if (unknown.empty()) return app.exit(error) == 0 ? kDone : kUsage;
        fail(unknown);
        return kUsage;
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kDone : kUsage;
    }
    const auto subcommands = app.get_subcommands([](CLI::App*) { return true; });
    WorkbenchHost host(sessionOptions(common));
    for (std::size_t i = 0; i < std::size(commands); ++i)
        if (subcommands[i]->parsed()) return commands[i]->run(host, common);
    return kUsage;
}

} // namespace

int main(int argc, char** argv) {
    holdStandardFiles();
    // A reader that leaves early and a file beyond the user's limit are write errors, not deaths.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return delivered(run(argc, argv));
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "error: there is not enough memory for this\n");
    } catch (const std::exception& error) {
        std::fprintf(stderr, "error: %s\n", error.what());
    }
    return kFailed;
}
