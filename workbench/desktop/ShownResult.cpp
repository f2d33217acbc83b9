#include "workbench/desktop/ShownResult.h"

#include "host/QMUnitCtrl.h"
#include "workbench/cli/PictureMarks.h"
#include "workbench/cli/PictureValues.h"
#include "workbench/results/Catalogue.h"
#include "workbench/results/ResultQuery.h"

#include <algorithm>
#include <cmath>

namespace workbench::desktop {

ResultPlace placeOf(CVResult& table) {
    ResultPlace place;
    place.analysis = table.GetAnalysis()->GetKey();
    const auto& cases = table.GetAnalysis()->GetChildList();
    const auto& steps = table.GetCase()->GetVCaseList();
    place.resultCase = static_cast<std::size_t>(std::ranges::find(cases, table.GetCase()) - cases.begin());
    place.step = static_cast<std::size_t>(std::ranges::find(steps, table.GetVCase()) - steps.begin());
    place.component = table.GetId();
    return place;
}

CVResult* tableAt(Document& document, const ResultPlace& place) {
    CPOHAnalysis* analysis = document.results().GetChild(place.analysis);
    if (!analysis || place.resultCase >= analysis->GetChildList().size()) return nullptr;
    const auto& steps = analysis->GetChildList()[place.resultCase]->GetVCaseList();
    return place.step < steps.size() ? steps[place.step]->GetVResult(place.component) : nullptr;
}

Result<std::unique_ptr<ShownResult>> ShownResult::make(const WorkbenchHost& host, Document& document,
                                                       CVResult& table, const DisplayOptions& options,
                                                       std::shared_ptr<const SurfaceFaces> faces,
                                                       const TextWidth& measure) {
    const CVResultLease lease(&table);
    if (!lease) return Error{"the result cannot be read; the messages above say why"};
    const T_QM_MESH_D& mesh = document.database().mesh();
    auto nodes = cli::shownValues(table, mesh);
    if (!nodes) return nodes.error();

    auto shown = std::unique_ptr<ShownResult>(new ShownResult);
    shown->place_ = placeOf(table);
    shown->language_ = host.language();
    shown->nodes_ = std::move(*nodes);
    const ComponentName* component = findComponent(table.GetId());
    const int unitKind = component ? component->unitKind : UnitKind::None;
    shown->unit_ = unitLabel(unitKind, host.currentUnits());
    shown->valued_ = cli::valuedElements(*lease, mesh);
    const unsigned id = table.GetId();
    shown->elements_ = cli::elementValues(*lease, cli::shownFactor(id), mesh, shown->nodes_, shown->valued_,
                                          cli::smallestIsWorst(id));

    ContourPicture& picture = shown->picture_;
    picture = cli::describedPicture(host, table);
    picture.mesh = mesh;
    picture.values = shown->nodes_;
    picture.valuedElements = shown->valued_;
    picture.colorScale = options.colorScale;
    picture.bands = options.bands;
    picture.edges = options.edges;
    // A scale around zero has no place for logarithms.
    if (options.colorScale == "blue-red") picture.valueScale = ValueScale::Linear;
    if (options.deformation != DisplayOptions::Deformation::Off) {
        if (auto found = cli::displacementsOf(*table.GetVCase(), mesh)) {
            shown->displacements_ = std::move(*found);
            picture.displacements = shown->displacements_;
            picture.restOutline = options.outline;
            if (options.deformation == DisplayOptions::Deformation::Factor)
                picture.deformation = options.factor;
        }
    }
    auto drawing = ContourDrawing::make(picture, std::move(faces), measure);
    if (!drawing) return drawing.error();
    shown->drawing_ = std::move(*drawing);
    return shown;
}

float ShownResult::valueOf(PictureMark::Kind kind, std::uint32_t index) const {
    return kind == PictureMark::Kind::Node ? nodes_[index] : elements_[index];
}

std::string ShownResult::labelOf(PictureMark::Kind kind, std::uint32_t index) const {
    const bool node = kind == PictureMark::Kind::Node;
    const bool korean = language_ == Language::Korean;
    const std::string text =
        std::string(node ? (korean ? "절점 " : "Node ") : (korean ? "요소 " : "Element ")) +
        std::to_string(node ? mesh().nodeNumbers[index] : mesh().elementNumbers[index]);
    const float value = valueOf(kind, index);
    return std::isnan(value) ? text : text + ": " + shortNumber(value);
}

std::string ShownResult::readoutOf(PictureMark::Kind kind, std::uint32_t index) const {
    std::string text = labelOf(kind, index);
    if (!std::isnan(valueOf(kind, index)) && !unit_.empty()) text += " " + unit_;
    if (kind == PictureMark::Kind::Element) return text;
    const auto& at = mesh().nodePositions[index];
    return text + "  (" + shortNumber(at[0]) + ", " + shortNumber(at[1]) + ", " + shortNumber(at[2]) + ")";
}

} // namespace workbench::desktop
