#include "base/ReplaceFile.h"
#include "workbench/cli/Commands.h"
#include "workbench/cli/Output.h"

#include <fcntl.h>
#include <unistd.h>

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

void addCommonOptions(CommandLine& program, CommonOptions& common) {
    program.flag("--json", common.json, "Print the result as JSON");
    program.option("--lang", common.language, "Language of texts").oneOf({"en", "ko"});
    program.option("--edition", common.edition, "Edition of the host")
        .oneOf({"A", "B", "C", "D"})
        .showsDefault();
    program.option("--program-folder", common.programFolder,
                   "Folder that holds \"64bit Solver\" (default: the program's own)");
    program.option("--units", common.units, "Unit system for display, such as kN,m (default: the document's)")
        .checked(unitSystemFault, "FORCE,LENGTH");
}

SessionOptions sessionOptions(const CommonOptions& common) {
    SessionOptions options;
    options.edition = static_cast<Edition>(common.edition[0] - 'A');
    options.language = common.language == "ko" ? Language::Korean : Language::English;
    options.programFolder = common.programFolder;
    return options;
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
    CommandLine program("vexa", VEXA_VERSION, kDescription);
    program.footer(kFooter);
    CommonOptions common;
    addCommonOptions(program, common);

    std::unique_ptr<Command> commands[] = {
        makeNewCommand(program),     makeInfoCommand(program),    makeTableCommand(program),
        makeFatigueCommand(program), makePictureCommand(program), makeCombineCommand(program),
        makeCheckCommand(program),   makeFosCommand(program),     makeSafetyCommand(program)};
    if (const auto done = program.parse(argc, argv)) return *done;
    WorkbenchHost host(sessionOptions(common));
    return commands[program.givenCommand()]->run(host, common);
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
