#pragma once

#include "workbench/session/WorkbenchHost.h"

#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace workbench::cli {

/// Exit codes of the program.
enum ExitCode : int {
    kDone = 0,
    kFailed = 1, ///< the input is wrong or the work failed; the standard error output says why
    kUsage = 2,  ///< the command line is wrong
};

/// What every command takes.
struct CommonOptions {
    bool json = false;
    std::string language = "en";
    std::string edition = "A";
    std::string programFolder; ///< empty: the program's own
    std::string units;         ///< unit system for display; empty: the document's own
};

/// A command of the program: its options are bound when it is made, and it runs when it was named.
class Command {
  public:
    virtual ~Command() = default;
    virtual int run(WorkbenchHost& host, const CommonOptions& common) = 0;
};

std::unique_ptr<Command> makeNewCommand(CLI::App& app);
std::unique_ptr<Command> makeInfoCommand(CLI::App& app);
std::unique_ptr<Command> makeTableCommand(CLI::App& app);
std::unique_ptr<Command> makeFatigueCommand(CLI::App& app);
std::unique_ptr<Command> makePictureCommand(CLI::App& app);
std::unique_ptr<Command> makeCombineCommand(CLI::App& app);
std::unique_ptr<Command> makeCheckCommand(CLI::App& app);
std::unique_ptr<Command> makeFosCommand(CLI::App& app);
std::unique_ptr<Command> makeSafetyCommand(CLI::App& app);

} // namespace workbench::cli
