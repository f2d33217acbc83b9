#include "framework/text/CodePage.h"
#include "host/QMUnitCtrl.h"
#include "workbench/cli/Output.h"
#include "workbench/cli/ResultChoice.h"
#include "workbench/results/Catalogue.h"
#include "workbench/session/SafetyField.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <system_error>

namespace workbench::cli {
namespace {

using nlohmann::json;
using stability::RateMode;

class SafetyCommand final : public Command {
  public:
    explicit SafetyCommand(CommandLine& program) {
        CommandLine command = program.command("safety", "Local safety of a step after Mohr-Coulomb");
        choice_.addStepTo(command);
        command
            .option("--mode", mode_,
                    "fos (factor of safety) or ratio (stress over strength); default: that of the analysis")
            .oneOf({"fos", "ratio"});
        command.option("--name", name_, "Name of the new result set (default: \"Safety\" and the case)");
        command.option("--top", top_, "How many nodes to list, the least safe first")
            .between(0, 1000000)
            .showsDefault();
        command.footer(
            "Materials get their strength in the project deck: cohesion, friction_angle and, for a "
            "tension cut-off,\ntensile_strength. The set becomes an analysis of the document; its "
            "file is _SFT_NAME.lmop beside the model.\n"
            "Rates: 0 beyond the apex of the strength line, -1 without a radius, -2 centred on the "
            "apex.\n"
            "Example:\n"
            "  vexa safety slope.wkm --analysis Slope --case Gravity --name Safety\n"
            "  vexa picture slope.wkm --analysis Safety --component 77101 --range 0.9,3 -o safety.png");
    }

    int run(WorkbenchHost& host, const CommonOptions& common) override {
        auto document = openForCommand(host, choice_.model, common);
        if (!document) return fail(document.error());
        const auto step = choice_.findStep(**document);
        if (!step) return fail(step.error());
        if (const auto reserved = (*document)->reserve(); !reserved) return fail(reserved.error());

        SafetyRequest request{*step, {}, name_};
        if (!mode_.empty())
            request.mode = mode_ == "ratio" ? RateMode::StressRatio : RateMode::FactorOfSafety;
        if (name_.empty()) request.name = "Safety " + framework::toUtf8((*step)->GetCase()->GetName());
        auto report = computeSafety(**document, request);
        if (!report) return fail(report.error());
        if (const auto saved = (*document)->save(); !saved) {
            std::error_code ignored; // nobody refers to a new set
            if (report->isNewSet) std::filesystem::remove(report->file, ignored);
            return fail(saved.error());
        }
        for (const std::string& warning : report->warnings)
            std::fprintf(stderr, "warning: %s\n", warning.c_str());
        sortBySafety(*report);
        if (common.json)
            std::printf("%s\n",
                        describe(host, request, *report, (*document)->database().mesh()).dump(2).c_str());
        else
            print(host, request, *report, (*document)->database().mesh());
        return kDone;
    }

  private:
    static void sortBySafety(SafetyReport& report) {
        std::ranges::stable_sort(report.nodes, [&](const NodeSafety& a, const NodeSafety& b) {
            return isLessSafe(a, b, report.mode);
        });
    }

    static unsigned rateId(const SafetyReport& report) {
        return report.mode == RateMode::StressRatio ? safety::kStressRatio : safety::kFactor;
    }

    std::size_t listed(const SafetyReport& report) const { return std::min(report.nodes.size(), top_); }

    json describe(const WorkbenchHost& host, const SafetyRequest& request, const SafetyReport& report,
                  const T_QM_MESH_D& mesh) const {
        json nodes = json::array();
        const double stress = CQMUnitCtrl::GetConvertFactorCurrent(UnitKind::Stress);
        for (std::size_t i = 0; i < listed(report); ++i) {
            const NodeSafety& node = report.nodes[i];
            nodes.push_back({{"node", mesh.nodeNumbers[node.node]},
                             {"rate", node.rate},
                             {"cohesion", node.cohesion * stress},
                             {"friction angle", node.frictionAngle},
                             {"major", node.major * stress},
                             {"minor", node.minor * stress},
                             {"has strength", node.hasStrength}});
        }
        const CPOHVCase& step = *request.step;
        return {{"document", choice_.model},
                {"analysis", framework::toUtf8(step.GetCase()->GetAnalysis()->GetName())},
                {"case", framework::toUtf8(step.GetCase()->GetName())},
                {"step", framework::toUtf8(step.GetName())},
                {"set", request.name},
                {"file", report.file.string()},
                {"mode", report.mode == RateMode::StressRatio ? "ratio" : "fos"},
                {"component", rateId(report)},
                {"stress unit", unitLabel(UnitKind::Stress, host.currentUnits())},
                {"states", report.states},
                {"node count", report.nodes.size()},
                {"nodes", nodes},
                {"warnings", report.warnings}};
    }

    void print(const WorkbenchHost& host, const SafetyRequest& request, const SafetyReport& report,
               const T_QM_MESH_D& mesh) const {
        const CPOHVCase& step = *request.step;
        const bool korean = host.language() == Language::Korean;
        std::printf(korean
                        ? "%s: 해석 \"%s\" -> %s\n  케이스 \"%s\", 단계 \"%s\": 응력 상태 %zu개, 절점 %zu개\n"
                        : "%s: analysis \"%s\" -> %s\n  from case \"%s\", step \"%s\": %zu stress states, "
                          "%zu nodes\n",
                    choice_.model.c_str(), request.name.c_str(), report.file.filename().c_str(),
                    framework::toUtf8(step.GetCase()->GetName()).c_str(),
                    framework::toUtf8(step.GetName()).c_str(), report.states, report.nodes.size());
        if (top_ == 0) return;
        const std::string unit = " [" + unitLabel(UnitKind::Stress, host.currentUnits()) + "]";
        const auto titled = [&](unsigned id) { return componentName(id, host.language()); };
        TextTable table({korean ? "절점" : "node", titled(rateId(report)), titled(safety::kCohesion) + unit,
                         titled(safety::kFrictionAngle), titled(safety::kMajorStress) + unit,
                         titled(safety::kMinorStress) + unit});
        const double stress = CQMUnitCtrl::GetConvertFactorCurrent(UnitKind::Stress);
        const auto text = [](double value) { return numberText(static_cast<float>(value)); };
        for (std::size_t i = 0; i < listed(report); ++i) {
            const NodeSafety& node = report.nodes[i];
            table.add({std::to_string(mesh.nodeNumbers[node.node]), text(node.rate),
                       text(node.cohesion * stress), text(node.frictionAngle), text(node.major * stress),
                       text(node.minor * stress)});
        }
        std::printf("%s", table.text().c_str());
    }

    ResultChoice choice_;
    std::string mode_, name_;
    std::size_t top_ = 10;
};

} // namespace

std::unique_ptr<Command> makeSafetyCommand(CommandLine& program) {
    return std::make_unique<SafetyCommand>(program);
}

} // namespace workbench::cli
