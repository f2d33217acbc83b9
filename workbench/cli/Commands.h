#pragma once

#include "workbench/cli/CommandLine.h"
#include "workbench/session/WorkbenchHost.h"

#include <memory>
#include <string>
#include <vector>

namespace workbench::cli {

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

std::unique_ptr<Command> makeNewCommand(CommandLine& program);
std::unique_ptr<Command> makeInfoCommand(CommandLine& program);
std::unique_ptr<Command> makeTableCommand(CommandLine& program);
std::unique_ptr<Command> makeFatigueCommand(CommandLine& program);
std::unique_ptr<Command> makePictureCommand(CommandLine& program);
std::unique_ptr<Command> makeCombineCommand(CommandLine& program);
std::unique_ptr<Command> makeCheckCommand(CommandLine& program);
std::unique_ptr<Command> makeFosCommand(CommandLine& program);
std::unique_ptr<Command> makeSafetyCommand(CommandLine& program);

} // namespace workbench::cli
