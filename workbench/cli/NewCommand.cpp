#include "framework/text/CodePage.h"
#include "workbench/cli/Output.h"
#include "workbench/import/ImportProject.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <filesystem>

namespace workbench::cli {
namespace {

void print(const ImportReport& report, const std::string& model) {
    std::printf("%s: %llu nodes, %llu elements\n", model.c_str(),
                static_cast<unsigned long long>(report.nodeCount),
                static_cast<unsigned long long>(report.elementCount));
    for (const ImportedAnalysis& analysis : report.analyses) {
        std::printf("  analysis \"%s\" -> %s\n", analysis.name.c_str(),
                    analysis.resultFile.filename().c_str());
        for (const ImportedCase& imported : analysis.cases)
            std::printf("    case \"%s\", %zu step%s\n", imported.name.c_str(), imported.steps.size(),
                        imported.steps.size() == 1 ? "" : "s");
    }
    for (const std::string& name : report.fatigueNames)
        std::printf("  fatigue definition \"%s\"\n", name.c_str());
}

nlohmann::json describe(const ImportReport& report, const std::string& model) {
    nlohmann::json analyses = nlohmann::json::array();
    for (const ImportedAnalysis& analysis : report.analyses) {
        nlohmann::json cases = nlohmann::json::array();
        for (const ImportedCase& imported : analysis.cases)
            cases.push_back({{"name", imported.name}, {"steps", imported.steps.size()}});
        analyses.push_back(
            {{"name", analysis.name}, {"file", analysis.resultFile.string()}, {"cases", cases}});
    }
    return {{"document", model},
            {"nodes", report.nodeCount},
            {"elements", report.elementCount},
            {"analyses", analyses},
            {"fatigue definitions", report.fatigueNames},
            {"warnings", report.warnings}};
}

class NewCommand final : public Command {
  public:
    explicit NewCommand(CommandLine& program) {
        CommandLine command = program.command("new", "Build a document and its results from a project deck");
        command.option("deck", deck_, "Project deck (.toml)").required();
        command.option("-o,--output", model_, "Document to write (default: the deck's name with .wkm)");
    }

    int run(WorkbenchHost& host, const CommonOptions& common) override {
        if (model_.empty()) model_ = std::filesystem::path(deck_).replace_extension(".wkm").string();
        if (std::filesystem::path(model_).extension() != ".wkm")
            return fail("the document's name must end in .wkm, which \"" + model_ + "\" does not");
        if (std::error_code ignored; std::filesystem::equivalent(deck_, model_, ignored))
            return fail("the document would replace its project deck " + deck_ +
                        ": give it another name with -o");
        WorkProgress& progress = host.progress();
        progress.Start();
        const auto report = importProject(deck_, model_, [&](const std::string& what, double fraction) {
            progress.SetText(framework::fromUtf8(what));
            progress.setFraction(fraction);
        });
        progress.Close();
        if (!report) return fail(report.error());
        for (const std::string& warning : report->warnings)
            std::fprintf(stderr, "warning: %s\n", warning.c_str());
        if (common.json)
            std::printf("%s\n", describe(*report, model_).dump(2).c_str());
        else
            print(*report, model_);
        return kDone;
    }

  private:
    std::string deck_;
    std::string model_;
};

} // namespace

std::unique_ptr<Command> makeNewCommand(CommandLine& program) {
    return std::make_unique<NewCommand>(program);
}

} // namespace workbench::cli
