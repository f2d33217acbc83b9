#include "workbench/cli/FatigueTables.h"
#include "workbench/cli/Output.h"
#include "workbench/session/FatigueRun.h"

#include <nlohmann/json.hpp>

#include <cstdio>

namespace workbench::cli {
namespace {

using nlohmann::json;

class FatigueCommand final : public Command {
  public:
    explicit FatigueCommand(CommandLine& program) {
        CommandLine command =
            program.command("fatigue", "Run fatigue definitions and show the most damaged nodes");
        command.option("model", model_, "Document (.wkm)").required();
        command.option("name", names_, "Definitions by name (default: all)");
        command.option("--top", top_, "Number of nodes in the table").between(1, 1000000).showsDefault();
        command.footer(
            "Leaves FATIGUE.76 beside the model; with FatigueText=YES in the environment also its text.");
    }

    int run(WorkbenchHost& host, const CommonOptions& common) override {
        auto document = openForCommand(host, model_, common);
        if (!document) return fail(document.error());
        const auto keys = findFatigueDefinitions(**document, names_);
        if (!keys) return fail(keys.error());
        const auto reports = runFatigue(host, **document, *keys, true);

        json all = json::array();
        std::vector<FatigueResult> results;
        bool failed = false;
        for (std::size_t i = 0; i < reports.size(); ++i) {
            const FatigueRunReport& report = reports[i];
            json row{{"definition", report.definition},
                     {"result", report.resultAnalysis},
                     {"succeeded", report.succeeded}};
            if (report.succeeded) {
                const tagTFatg& definition = (*document)->database().Pool<DPoolFatg>()->GetAtNU((*keys)[i]);
                auto result = readFatigueResult(**document, definition, host.language());
                if (!result) return fail(result.error());
                row["worst"] = showWorst(**document, *result, host.language(), common.json);
                results.push_back(std::move(*result));
            } else {
                failed = true;
                fail("the fatigue run \"" + report.definition + "\" failed" +
                     (report.cause.empty() ? "" : ": " + report.cause));
            }
            all.push_back(std::move(row));
        }
        if (common.json)
            std::printf("%s\n", all.dump(2).c_str());
        else if (results.size() > 1)
            std::printf("\n%s\n%s",
                        host.language() == Language::Korean ? "최단 수명(블록) @절점"
                                                            : "Shortest life in blocks @node",
                        comparisonTable(results, (*document)->database().mesh(), host.language()).c_str());
        return failed ? kFailed : kDone;
    }

  private:
    /// The worst nodes as JSON; prints them as a table unless JSON is what was asked for.
    json showWorst(Document& document, const FatigueResult& result, Language language, bool quiet) const {
        const T_QM_MESH_D& mesh = document.database().mesh();
        const auto nodes = mostDamagedNodes(result, top_);
        json rows = json::array();
        for (const std::uint32_t node : nodes) {
            json row{{"node", mesh.nodeNumbers[node]}, {"position", mesh.nodePositions[node]}};
            for (const FatigueColumn& column : result.columns)
                row[std::to_string(column.id)] = column.values[node];
            rows.push_back(std::move(row));
        }
        if (!quiet)
            std::printf("%s \"%s\" -> \"%s\" (%s)\n%s",
                        language == Language::Korean ? "피로 해석" : "Fatigue run", result.definition.c_str(),
                        result.resultAnalysis.c_str(), result.measure.c_str(),
                        nodeTable(result, mesh, nodes, language).c_str());
        return rows;
    }

    std::string model_;
    std::vector<std::string> names_;
    std::size_t top_ = 10;
};

} // namespace

std::unique_ptr<Command> makeFatigueCommand(CommandLine& program) {
    return std::make_unique<FatigueCommand>(program);
}

} // namespace workbench::cli
