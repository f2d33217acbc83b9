#include "framework/text/CodePage.h"
#include "resultfile/FatigueComponents.h"
#include "workbench/cli/Output.h"
#include "workbench/results/Catalogue.h"
#include "workbench/results/ResultQuery.h"
#include "workbench/session/FatigueRun.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <cstdio>

namespace workbench::cli {
namespace {

using nlohmann::json;

/// One fatigue result component at every node.
struct FatigueColumn {
    unsigned id;
    std::vector<float> values;
};

/// The damage and life columns of a fatigue result, in the order of the corrections.
Result<std::vector<FatigueColumn>> fatigueColumns(Document& document, const std::string& analysis) {
    auto step = findStep(document.results(), analysis, "", "");
    if (!step) return step.error();
    std::vector<FatigueColumn> columns;
    for (unsigned correction = 0; correction < resultfile::fatigue::kCorrections.size(); ++correction)
        for (const unsigned base : {resultfile::fatigue::kDamage, resultfile::fatigue::kLife}) {
            const unsigned id = resultfile::fatigue::componentId(base, correction);
            CVResult* table = (*step)->GetVResult(id);
            if (!table) continue;
            auto values = nodalValues(*table, document.database().mesh());
            if (!values) return values.error();
            columns.push_back({id, std::move(*values)});
        }
    if (columns.empty()) return Error{"the result of \"" + analysis + "\" holds neither damage nor life"};
    return columns;
}

/// Nodes in the order of the most severe column: the last damage, else the last life.
std::vector<std::uint32_t> mostDamaged(const std::vector<FatigueColumn>& columns, std::size_t count) {
    const FatigueColumn* ranking = &columns.back();
    for (const FatigueColumn& column : columns)
        if (column.id < resultfile::fatigue::kLife) ranking = &column;
    return worstNodes(ranking->values, count, ranking->id < resultfile::fatigue::kLife);
}

class FatigueCommand final : public Command {
  public:
    explicit FatigueCommand(CLI::App& app) {
        CLI::App* command =
            app.add_subcommand("fatigue", "Run fatigue definitions and show the most damaged nodes");
        command->add_option("model", model_, "Document (.wkm)")->required();
        command->add_option("name", names_, "Definitions by name (default: all)");
        command->add_option("--top", top_, "Number of nodes in the table")
            ->check(CLI::Range(1, 1000000))
            ->capture_default_str();
        command->footer(
            "Leaves FATIGUE.76 beside the model; with FatigueText=YES in the environment also its text.");
    }

    int run(WorkbenchHost& host, const CommonOptions& common) override {
        auto document = openForCommand(host, model_, common);
        if (!document) return fail(document.error());
        const auto keys = findFatigueDefinitions(**document, names_);
        if (!keys) return fail(keys.error());
        const auto reports = runFatigue(host, **document, *keys);
        if ((*document)->database().isModified())
            if (const auto saved = (*document)->save(); !saved) return fail(saved.error());

        json all = json::array();
        bool failed = false;
        for (const FatigueRunReport& report : reports) {
            json row{{"definition", report.definition},
                     {"result", report.resultAnalysis},
                     {"succeeded", report.succeeded}};
            if (report.succeeded) {
                const auto columns = fatigueColumns(**document, report.resultAnalysis);
                if (!columns) return fail(columns.error());
                row["worst"] = worstRows(**document, *columns, host.language(), common.json, report);
            } else {
                failed = true;
                fail("the fatigue run \"" + report.definition + "\" failed" +
                     (report.cause.empty() ? "" : ": " + report.cause));
            }
            all.push_back(std::move(row));
        }
        if (common.json) std::printf("%s\n", all.dump(2).c_str());
        return failed ? kFailed : kDone;
    }

  private:
    /// The worst nodes as JSON; prints them as a table unless JSON is what was asked for.
    json worstRows(Document& document, const std::vector<FatigueColumn>& columns, Language language,
                   bool quiet, const FatigueRunReport& report) const {
        const T_QM_MESH_D& mesh = document.database().mesh();
        const bool korean = language == Language::Korean;
        std::vector<std::string> header{korean ? "절점" : "node", "x", "y", "z"};
        for (const FatigueColumn& column : columns)
            header.push_back(componentName(column.id, language));
        TextTable table(std::move(header));
        json rows = json::array();
        for (const std::uint32_t node : mostDamaged(columns, top_)) {
            std::vector<std::string> cells{std::to_string(mesh.nodeNumbers[node])};
            json row{{"node", mesh.nodeNumbers[node]}, {"position", mesh.nodePositions[node]}};
            for (const double coordinate : mesh.nodePositions[node])
                cells.push_back(numberText(static_cast<float>(coordinate)));
            for (const FatigueColumn& column : columns) {
                char text[32];
                std::snprintf(text, sizeof text, "%.4g", static_cast<double>(column.values[node]));
                cells.emplace_back(text);
                row[std::to_string(column.id)] = column.values[node];
            }
            table.add(std::move(cells));
            rows.push_back(std::move(row));
        }
        if (!quiet)
            std::printf("%s \"%s\" -> \"%s\"\n%s", korean ? "피로 해석" : "Fatigue run",
                        report.definition.c_str(), report.resultAnalysis.c_str(), table.text().c_str());
        return rows;
    }

    std::string model_;
    std::vector<std::string> names_;
    std::size_t top_ = 10;
};

} // namespace

std::unique_ptr<Command> makeFatigueCommand(CLI::App& app) {
    return std::make_unique<FatigueCommand>(app);
}

} // namespace workbench::cli
