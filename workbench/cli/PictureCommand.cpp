#include "framework/text/CodePage.h"
#include "host/QMUnitCtrl.h"
#include "workbench/cli/Output.h"
#include "workbench/cli/PictureMarks.h"
#include "workbench/cli/PictureValues.h"
#include "workbench/cli/ResultChoice.h"
#include "workbench/import/Names.h"
#include "workbench/picture/ContourPicture.h"
#include "workbench/results/Catalogue.h"
#include "workbench/results/ResultQuery.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <optional>

namespace workbench::cli {
namespace {

std::optional<double> factorOf(const std::string& text) {
    double factor = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), factor);
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(factor))
        return std::nullopt;
    return factor;
}

std::vector<std::string> names(std::span<const std::string_view> views) {
    return {views.begin(), views.end()};
}

/// Accepts the named views and two angles.
std::string checkView(const std::string& text) {
    if (isViewName(text)) return {};
    const std::vector<std::string> known = names(viewNames());
    return "there is no view \"" + text + "\"" + suggestion(text, known) + "; there are " + listNames(known) +
           " and two angles in degrees such as 30,20";
}

std::string checkColors(const std::string& text) {
    const std::vector<std::string> known = names(colorScaleNames());
    if (std::ranges::find(known, text) != known.end()) return {};
    return "there are no colours \"" + text + "\"" + suggestion(text, known) + "; there are " +
           listNames(known);
}

/// Accepts "auto", "off" and a factor.
std::string checkDeform(const std::string& text) {
    if (text == "auto" || text == "off" || factorOf(text)) return {};
    return "\"" + text + "\" is no way to deform a picture; there are auto, off and a factor such as 100";
}

nlohmann::json place(const std::vector<float>& values, const T_QM_MESH_D& mesh, bool largest) {
    const auto found = worstNodes(values, 1, largest);
    if (found.empty()) return nullptr;
    return {{"node", mesh.nodeNumbers[found[0]]}, {"value", values[found[0]]}};
}

class PictureCommand final : public Command {
  public:
    explicit PictureCommand(CommandLine& program) {
        CommandLine command =
            program.command("picture", "Draw a result component as a contour picture (PNG or SVG)");
        choice_.addTo(command);
        command.option("-o,--output", output_, "Picture to write (.png or .svg)").required();
        addViewOptions(command);
        addColorOptions(command);
        command
            .option("--mark", marks_,
                    "Marks: worst:N, worst-elements:N, node:12,13, element:7,8 or none; may be repeated")
            .repeatable()
            .showsDefault("worst:1");
        command.option("--title", title_, "Text above the picture (default: analysis, case and step)");
        command.option("--background", background_, "Background")
            .oneOf({"white", "transparent"})
            .showsDefault();
        command.option("--size", size_, "Width and height in pixels, such as 1600x1000").inParts(2, 'x');
    }

    int run(WorkbenchHost& host, const CommonOptions& common) override {
        if (!isPictureName(output_))
            return fail("the picture's name must end in .png or .svg, which \"" + output_ + "\" does not");
        const auto marks = parseMarks(marks_.empty() ? std::vector<std::string>{"worst:1"} : marks_);
        if (!marks) return fail(marks.error());
        auto document = openForCommand(host, choice_.model, common);
        if (!document) return fail(document.error());
        const auto table = choice_.find(**document);
        if (!table) return fail(table.error());
        const CVResultLease lease(*table);
        if (!lease) return kFailed; // the cause was reported
        return draw(host, common, (*document)->database().mesh(), **table, *marks);
    }

  private:
    void addViewOptions(CommandLine& command) {
        command
            .option("--view", view_,
                    "iso, front, back, left, right, top or bottom, or degrees to the right of the front and "
                    "upwards, such as 30,20")
            .checked(checkView, "VIEW")
            .showsDefault();
        command.option("--deform", deform_, "Deformed shape: auto, off or the factor of the displacements")
            .checked(checkDeform, "auto|off|FACTOR")
            .showsDefault();
        command.flag("--outline", outline_, "Edges of the undeformed shape beside the deformed one");
        command.option("--edges", edges_, "Edges of the model: none, features or mesh")
            .oneOf({"none", "features", "mesh"})
            .showsDefault();
    }

    void addColorOptions(CommandLine& command) {
        command
            .option("--colors", colors_,
                    "Colour scale: viridis, cividis, blue-red (white at zero) or grey (for print)")
            .checked(checkColors, "COLORS")
            .showsDefault();
        command.flag("--smooth", smooth_, "Colours without bands");
        command
            .option("--scale", scale_, "Spread of values over the colours (default: log for damage and life)")
            .oneOf({"linear", "log"});
        command
            .option("--range", range_,
                    "Ends of the scale bar, such as 0,250; what lies outside has colours of its own")
            .inParts(2, ',');
    }

    int draw(WorkbenchHost& host, const CommonOptions& common, const T_QM_MESH_D& mesh, CVResult& table,
             const MarkChoice& choice) const {
        const unsigned id = table.GetId();
        const auto values = shownValues(table, mesh);
        if (!values) return fail(values.error());
        const std::vector<std::uint8_t> valued = valuedElements(table.GetTable(), mesh);
        const std::vector<float> elements =
            elementValues(table.GetTable(), shownFactor(id), mesh, *values, valued, smallestIsWorst(id));
        const auto marks =
            chooseMarks(choice, {mesh, *values, elements, smallestIsWorst(id), host.language()});
        if (!marks) return fail(marks.error());

        ContourPicture picture = describe(host, table);
        picture.mesh = mesh;
        picture.values = *values;
        picture.valuedElements = valued;
        for (const ChosenMark& mark : *marks)
            picture.marks.push_back(mark.mark);
        std::vector<std::array<float, 3>> displacements;
        if (deform_ != "off") {
            auto found = displacementsOf(*table.GetVCase(), mesh);
            if (!found) return fail(found.error());
            displacements = std::move(*found);
            picture.displacements = displacements;
            picture.deformation = factorOf(deform_);
        }
        const auto drawn = writeContour(picture, output_);
        if (!drawn) return fail(drawn.error());
        if (common.json)
            std::printf("%s\n", report(host, table, picture, *drawn, *values, *marks).dump().c_str());
        return kDone;
    }

    ContourPicture describe(const WorkbenchHost& host, CVResult& table) const {
        ContourPicture picture = describedPicture(host, table);
        if (!title_.empty()) picture.titleLines = {title_};
        // A scale around zero has no place for logarithms, so that they are not the default of its pictures.
        if (scale_ == "linear" || (scale_.empty() && colors_ == "blue-red"))
            picture.valueScale = ValueScale::Linear;
        if (scale_ == "log") picture.valueScale = ValueScale::Logarithmic;
        if (!range_.empty()) picture.range = ValueRange{range_[0], range_[1]};
        picture.bands = !smooth_;
        picture.view = view_;
        picture.colorScale = colors_;
        picture.restOutline = outline_;
        picture.edges = edges_ == "none"   ? PictureEdges::None
                        : edges_ == "mesh" ? PictureEdges::Mesh
                                           : PictureEdges::Features;
        picture.transparent = background_ == "transparent";
        picture.width = size_[0];
        picture.height = size_[1];
        return picture;
    }

    nlohmann::json report(const WorkbenchHost& host, CVResult& table, const ContourPicture& picture,
                          const DrawnContour& drawn, const std::vector<float>& values,
                          const std::vector<ChosenMark>& marks) const {
        const unsigned id = table.GetId();
        const ComponentName* component = findComponent(id);
        nlohmann::json object{
            {"picture", output_},
            {"analysis", framework::toUtf8(table.GetAnalysis()->GetName())},
            {"case", framework::toUtf8(table.GetCase()->GetName())},
            {"step", framework::toUtf8(table.GetVCase()->GetName())},
            {"component", id},
            {"name", componentName(id, host.language())},
            {"unit", unitLabel(component ? component->unitKind : UnitKind::None, host.currentUnits())},
            {"view", picture.view},
            {"colors", picture.colorScale},
            {"scale", picture.valueScale == ValueScale::Logarithmic ? "log" : "linear"},
            {"range", {{"low", drawn.bar.low}, {"high", drawn.bar.high}}},
            {"minimum", place(values, picture.mesh, false)},
            {"maximum", place(values, picture.mesh, true)},
            {"deformation", drawn.deformation}};
        object["marks"] = nlohmann::json::array();
        for (const ChosenMark& mark : marks) {
            nlohmann::json value = mark.value;
            if (!std::isfinite(mark.value)) value = nullptr;
            object["marks"].push_back(
                {{mark.mark.kind == PictureMark::Kind::Node ? "node" : "element", mark.number},
                 {"value", value}});
        }
        return object;
    }

    ResultChoice choice_;
    std::string output_;
    std::string view_ = ContourPicture{}.view;
    std::string deform_ = "off";
    bool outline_ = false;
    std::string edges_ = "features";
    std::string colors_ = ContourPicture{}.colorScale;
    bool smooth_ = false;
    std::string scale_;
    std::vector<double> range_;
    std::vector<std::string> marks_;
    std::string title_;
    std::string background_ = "white";
    std::vector<int> size_{ContourPicture{}.width, ContourPicture{}.height};
};

} // namespace

std::unique_ptr<Command> makePictureCommand(CommandLine& program) {
    return std::make_unique<PictureCommand>(program);
}

} // namespace workbench::cli
