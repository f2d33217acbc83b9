#include "framework/text/CodePage.h"
#include "module/stability/SafetyGraphType.h"
#include "workbench/cli/DesktopChart.h"
#include "workbench/cli/Output.h"
#include "workbench/cli/SafetyGraph.h"
#include "workbench/import/Names.h"
#include "workbench/picture/ContourPicture.h"
#include "workbench/session/SafetyHistories.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace workbench::cli {
namespace {

using nlohmann::json;

constexpr const char* kTypes[] = {"displacement", "iterations"}; ///< by SafetyGraphType

std::string shortNumber(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", value);
    return text;
}

json finite(double value) {
    return std::isfinite(value) ? json(value) : json(nullptr);
}

json points(const std::vector<double>& x, const std::vector<double>& y) {
    json all = json::array();
    for (std::size_t i = 0; i < x.size(); ++i)
        all.push_back({finite(x[i]), finite(y[i])});
    return all;
}

class FosCommand final : public Command {
  public:
    explicit FosCommand(CommandLine& program) {
        CommandLine command =
            program.command("fos", "Show the history of the factor of safety of a strength reduction");
        command.option("model", model_, "Document (.wkm)").required();
        command.option("--name", name_, "Name of the history: MODEL_NAME_fos.out beside the document")
            .required();
        command.option("-o,--output", output_, "Picture of a curve to write (.svg or .png)");
        command.option("--subcase", subcase_, "Subcase that the picture shows (default: the first)");
        command.option("--graph", graph_, "What the picture has across: displacement or iterations")
            .oneOf({kTypes[0], kTypes[1]})
            .showsDefault();
        command.option("--size", size_, "Width and height of the picture, such as 800x520")
            .inParts(2, 'x')
            .between(50, 8192);
        command.footer("Prints for each subcase the last factor, and the last one at which the analysis "
                       "converged.\nExample:\n"
                       "  vexa fos slope.wkm --name Slope --graph iterations -o fos.svg");
    }

    int run(WorkbenchHost& host, const CommonOptions& common) override {
        if (!output_.empty() && !isPictureName(output_))
            return fail("the picture's name must end in .png or .svg, which \"" + output_ + "\" does not");
        auto document = openForCommand(host, model_, common);
        if (!document) return fail(document.error());
        SafetyGraph graph(**document, name_);
        const std::vector<SafetyCurves> curves = graph.curves();
        if (curves.empty()) return fail(noSubcase(**document));
        const auto shown = chosen(curves);
        if (!shown) return fail(shown.error());
        if (!output_.empty()) {
            if (type() == SafetyGraphType::Displacement && curves[*shown].displacements.empty())
                std::fprintf(stderr,
                             "warning: no row of subcase \"%s\" converged, which leaves the picture empty; "
                             "--graph iterations shows all rows\n",
                             curves[*shown].name.c_str());
            if (const auto drawn = draw(graph, *shown, common); !drawn) return fail(drawn.error());
        }
        if (common.json)
            std::printf("%s\n", describe(curves).dump(2).c_str());
        else
            print(curves, host.language());
        return kDone;
    }

  private:
    int type() const {
        return graph_ == kTypes[SafetyGraphType::Iterations] ? SafetyGraphType::Iterations
                                                             : SafetyGraphType::Displacement;
    }

    Error noSubcase(const Document& document) const {
        std::vector<std::string> names;
        for (const std::wstring& name : safetyHistoryNames(document))
            names.push_back(framework::toUtf8(name));
        const std::string fault = "there is no subcase in the history \"" + name_ + "\" of " + model_;
        if (names.empty() || std::ranges::find(names, name_) != names.end())
            return {fault + ": run the strength-reduction analysis, which writes it beside the document"};
        return {fault + suggestion(name_, names) + "; beside the document there are " + listNames(names)};
    }

    Result<std::size_t> chosen(const std::vector<SafetyCurves>& curves) const {
        if (subcase_.empty()) return std::size_t{0};
        const auto found = std::ranges::find(curves, subcase_, &SafetyCurves::name);
        if (found != curves.end()) return static_cast<std::size_t>(found - curves.begin());
        std::vector<std::string> names;
        for (const SafetyCurves& curve : curves)
            names.push_back(curve.name);
        return Error{"the history has no subcase \"" + subcase_ + "\"" + suggestion(subcase_, names) +
                     "; there are " + listNames(names)};
    }

    Result<void> draw(SafetyGraph& graph, std::size_t subcase, const CommonOptions& common) const {
        if (isSvgName(output_)) return writeText(graph.svg(subcase, type(), size_[0], size_[1]), output_);
        const TemporaryText script(SafetyGraph::script(subcase, type()));
        std::vector<std::string> arguments{model_,
                                           "--dialog=CVEXAGpsSafetyGraphDlg",
                                           "--argument=" + name_,
                                           "--do=" + script.path(),
                                           "--lang=" + common.language,
                                           "--size=" + std::to_string(size_[0]) + "x" +
                                               std::to_string(size_[1]),
                                           "--chart=" + output_};
        if (!common.units.empty()) arguments.push_back("--units=" + common.units);
        return runDesktop(arguments);
    }

    json describe(const std::vector<SafetyCurves>& curves) const {
        json subcases = json::array();
        for (const SafetyCurves& curve : curves) {
            const bool any = !curve.iterationFactors.empty(), converged = !curve.displacementFactors.empty();
            subcases.push_back(
                {{"name", curve.name},
                 {"rows", curve.iterationFactors.size()},
                 {"last factor", any ? finite(curve.iterationFactors.back()) : json(nullptr)},
                 {"last converged factor",
                  converged ? finite(curve.displacementFactors.back()) : json(nullptr)},
                 {"factor over displacement", points(curve.displacements, curve.displacementFactors)},
                 {"factor over iterations", points(curve.iterations, curve.iterationFactors)}});
        }
        json object{{"document", model_}, {"history", name_}, {"subcases", subcases}};
        if (!output_.empty()) object["picture"] = output_;
        return object;
    }

    static void print(const std::vector<SafetyCurves>& curves, Language language) {
        const bool korean = language == Language::Korean;
        TextTable table(korean ? std::vector<std::string>{"하위 케이스", "행", "반복 횟수", "마지막 안전율",
                                                          "수렴한 마지막 안전율", "변위"}
                               : std::vector<std::string>{"subcase", "rows", "iterations", "last factor",
                                                          "last converged", "displacement"});
        const auto last = [](const std::vector<double>& values) {
            return values.empty() ? std::string("-") : shortNumber(values.back());
        };
        for (const SafetyCurves& curve : curves)
            table.add({curve.name, std::to_string(curve.iterationFactors.size()), last(curve.iterations),
                       last(curve.iterationFactors), last(curve.displacementFactors),
                       last(curve.displacements)});
        std::printf("%s", table.text().c_str());
    }

    std::string model_, name_, output_, subcase_;
    std::string graph_ = kTypes[SafetyGraphType::Displacement];
    std::vector<int> size_{800, 520};
};

} // namespace

std::unique_ptr<Command> makeFosCommand(CommandLine& program) {
    return std::make_unique<FosCommand>(program);
}

} // namespace workbench::cli
