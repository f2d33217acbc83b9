#include "framework/text/CodePage.h"
#include "host/QMUnitCtrl.h"
#include "resultfile/FatigueComponents.h"
#include "workbench/cli/Output.h"
#include "workbench/cli/ResultChoice.h"
#include "workbench/picture/ContourPicture.h"
#include "workbench/results/Catalogue.h"
#include "workbench/results/ResultQuery.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace workbench::cli {
namespace {

/// Damage and life spread over many powers of ten.
bool isSpreadWidely(unsigned id) {
    return id >= resultfile::fatigue::kDamage && id < resultfile::fatigue::kEquivalentAmplitude;
}

bool isLife(unsigned id) {
    return id >= resultfile::fatigue::kLife && id < resultfile::fatigue::kEquivalentAmplitude;
}

/// The node that an engineer looks for: shortest life, else the largest magnitude.
std::vector<std::uint32_t> worstNode(const std::vector<float>& values, unsigned id) {
    if (isLife(id)) return worstNodes(values, 1, false);
    std::vector<float> magnitudes(values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        magnitudes[i] = std::abs(values[i]);
    return worstNodes(magnitudes, 1, true);
}

std::vector<std::string> names(std::span<const std::string_view> views) {
    return {views.begin(), views.end()};
}

class PictureCommand final : public Command {
  public:
    explicit PictureCommand(CLI::App& app) {
        CLI::App* command =
            app.add_subcommand("picture", "Draw a result component as a contour picture (PNG)");
        choice_.addTo(*command);
        command->add_option("-o,--output", output_, "Picture to write (.png)")->required();
        command->add_option("--view", view_, "Named view")
            ->check(CLI::IsMember(names(viewNames())))
            ->capture_default_str();
        command->add_option("--colors", colors_, "Colour scale")
            ->check(CLI::IsMember(names(colorScaleNames())))
            ->capture_default_str();
        command
            ->add_option("--scale", scale_,
                         "Spread of values over the colours (default: log for damage and life)")
            ->check(CLI::IsMember({"linear", "log"}));
        command->add_option("--size", size_, "Width and height in pixels")->expected(2)->delimiter('x');
    }

    int run(WorkbenchHost& host, const CommonOptions& common) override {
        if (!output_.ends_with(".png"))
            return fail("the picture's name must end in .png, which \"" + output_ + "\" does not");
        auto document = openForCommand(host, choice_.model, common);
        if (!document) return fail(document.error());
        const auto table = choice_.find(**document);
        if (!table) return fail(table.error());
        const T_QM_MESH_D& mesh = (*document)->database().mesh();
        auto values = nodalValues(**table, mesh);
        if (!values) return fail(values.error());

        const ComponentName* component = findComponent(choice_.component);
        const int unitKind = component ? component->unitKind : UnitKind::None;
        const double factor = CQMUnitCtrl::GetConvertFactorCurrent(unitKind);
        for (float& value : *values)
            value = static_cast<float>(value * factor);

        ContourPicture picture = describe(host, **table, unitKind);
        picture.mesh = mesh;
        picture.values = *values;
        nlohmann::json report{{"picture", output_}};
        for (const std::uint32_t node : worstNode(*values, choice_.component)) {
            char text[64];
            std::snprintf(text, sizeof text, "%d: %.4g", mesh.nodeNumbers[node],
                          static_cast<double>((*values)[node]));
            picture.marks.push_back(
                {node, (host.language() == Language::Korean ? "절점 " : "Node ") + std::string(text)});
            report["worst"] = {{"node", mesh.nodeNumbers[node]}, {"value", (*values)[node]}};
        }
        if (const auto written = writeContourPng(picture, output_); !written) return fail(written.error());
        if (common.json) std::printf("%s\n", report.dump().c_str());
        return kDone;
    }

  private:
    ContourPicture describe(const WorkbenchHost& host, CVResult& table, int unitKind) const {
        ContourPicture picture;
        const std::string unit = unitLabel(unitKind, host.currentUnits());
        picture.valueTitle =
            componentName(choice_.component, host.language()) + (unit.empty() ? "" : " [" + unit + "]");
        picture.titleLines = {framework::toUtf8(table.GetAnalysis()->GetName()),
                              framework::toUtf8(table.GetCase()->GetName()) + " : " +
                                  framework::toUtf8(table.GetVCase()->GetName())};
        const bool log = scale_.empty() ? isSpreadWidely(choice_.component) : scale_ == "log";
        picture.valueScale = log ? ValueScale::Logarithmic : ValueScale::Linear;
        picture.view = view_;
        picture.colorScale = colors_;
        picture.width = size_[0];
        picture.height = size_[1];
        if (host.language() == Language::Korean) picture.words = {"최대", "최소", "값 없음", "뒤쪽"};
        return picture;
    }

    ResultChoice choice_;
    std::string output_;
    std::string view_ = ContourPicture{}.view;
    std::string colors_ = ContourPicture{}.colorScale;
    std::string scale_;
    std::vector<int> size_{ContourPicture{}.width, ContourPicture{}.height};
};

} // namespace

std::unique_ptr<Command> makePictureCommand(CLI::App& app) {
    return std::make_unique<PictureCommand>(app);
}

} // namespace workbench::cli
