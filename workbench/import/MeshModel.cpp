#include "workbench/import/MeshModel.h"

#include "workbench/import/Names.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace workbench {
namespace {

/// Corners of a face, edge or point by ascending position; unused places hold kNone.
using Boundary = std::array<std::uint32_t, 4>;
using Corners = std::span<const std::uint32_t>;

using Side = std::array<std::uint8_t, 4>; ///< corners of a side; of a triangle the last stands twice

constexpr Side kTetrahedron[] = {{0, 1, 2, 2}, {0, 1, 3, 3}, {1, 2, 3, 3}, {0, 2, 3, 3}};
constexpr Side kPyramid[] = {{0, 1, 2, 3}, {0, 1, 4, 4}, {1, 2, 4, 4}, {2, 3, 4, 4}, {3, 0, 4, 4}};
constexpr Side kWedge[] = {{0, 1, 2, 2}, {3, 4, 5, 5}, {0, 1, 4, 3}, {1, 2, 5, 4}, {2, 0, 3, 5}};
constexpr Side kHexahedron[] = {{0, 1, 2, 3}, {4, 5, 6, 7}, {0, 1, 5, 4},
                                {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};
constexpr Side kTriangle[] = {{0, 1, 2, 2}};
constexpr Side kQuadrilateral[] = {{0, 1, 2, 3}};

std::span<const Side> facesOf(ElementType type) {
    switch (type) {
    case ElementType::Tet4:
    case ElementType::Tet10:
        return kTetrahedron;
    case ElementType::Pyramid5:
    case ElementType::Pyramid13:
        return kPyramid;
    case ElementType::Wedge6:
    case ElementType::Wedge15:
        return kWedge;
    case ElementType::Hex8:
    case ElementType::Hex20:
        return kHexahedron;
    case ElementType::Tri3:
    case ElementType::Tri6:
        return kTriangle;
    case ElementType::Quad4:
    case ElementType::Quad8:
        return kQuadrilateral;
    default:
        return {};
    }
}

Boundary boundaryOf(std::initializer_list<std::uint32_t> corners) {
    Boundary boundary;
    boundary.fill(MeshModel::kNone);
    std::copy(corners.begin(), corners.end(), boundary.begin());
    std::sort(boundary.begin(), boundary.end());
    return boundary;
}

Boundary faceOf(Corners nodes, const Side& side) {
    if (side[2] == side[3]) return boundaryOf({nodes[side[0]], nodes[side[1]], nodes[side[2]]});
    return boundaryOf({nodes[side[0]], nodes[side[1]], nodes[side[2]], nodes[side[3]]});
}

int dimensionOf(std::uint8_t type) {
    if (isSolidElement(type)) return 3;
    if (isPlanarElement(type)) return 2;
    return type == static_cast<std::uint8_t>(ElementType::Point) ? 0 : 1;
}

/// Which elements are faces, edges or points of elements of more dimensions.
class BoundaryElements {
  public:
    explicit BoundaryElements(const MeshRecords& mesh)
        : mesh_(mesh)
        , found_(mesh.elementTypes.size()) {
        std::size_t at = 0;
        for (const std::uint8_t type : mesh.elementTypes) {
            offsets_.push_back(at);
            at += static_cast<std::size_t>(elementNodeCount(type));
        }
    }

    std::vector<bool> find() {
        for (std::uint32_t e = 0; e < found_.size(); ++e)
            if (dimensionOf(mesh_.elementTypes[e]) < 3) candidates_.push_back({ownBoundary(e), e});
        if (candidates_.empty()) return std::move(found_);
        std::sort(candidates_.begin(), candidates_.end());
        for (std::size_t e = 0; e < found_.size(); ++e)
            markSides(e);
        return std::move(found_);
    }

  private:
    Corners nodesOf(std::size_t element) const {
        return Corners(mesh_.elementNodes)
            .subspan(offsets_[element],
                     static_cast<std::size_t>(elementNodeCount(mesh_.elementTypes[element])));
    }

    Boundary ownBoundary(std::size_t element) const {
        const Corners nodes = nodesOf(element);
        const std::uint8_t type = mesh_.elementTypes[element];
        switch (dimensionOf(type)) {
        case 2:
            return faceOf(nodes, facesOf(static_cast<ElementType>(type)).front());
        case 1:
            return boundaryOf({nodes.front(), nodes.back()});
        default:
            return boundaryOf({nodes.front()});
        }
    }

    void markSides(std::size_t element) {
        const std::uint8_t type = mesh_.elementTypes[element];
        const int dimension = dimensionOf(type);
        const Corners nodes = nodesOf(element);
        for (const Side& side : facesOf(static_cast<ElementType>(type))) {
            if (dimension == 3) mark(faceOf(nodes, side));
            const std::size_t corners = side[2] == side[3] ? 3 : 4;
            for (std::size_t i = 0; i < corners; ++i) {
                mark(boundaryOf({nodes[side[i]], nodes[side[(i + 1) % corners]]}));
                mark(boundaryOf({nodes[side[i]]}));
            }
        }
        if (dimension == 1) {
            mark(boundaryOf({nodes.front()}));
            mark(boundaryOf({nodes.back()}));
        }
    }

    void mark(const Boundary& boundary) {
        auto at = std::lower_bound(candidates_.begin(), candidates_.end(),
                                   std::pair<Boundary, std::uint32_t>{boundary, 0});
        for (; at != candidates_.end() && at->first == boundary; ++at)
            found_[at->second] = true;
    }

    const MeshRecords& mesh_;
    std::vector<std::size_t> offsets_;
    std::vector<std::pair<Boundary, std::uint32_t>> candidates_;
    std::vector<bool> found_;
};

/// Positions by ascending number.
std::vector<std::uint32_t> orderOf(const std::vector<std::int64_t>& numbers) {
    std::vector<std::uint32_t> order(numbers.size());
    std::iota(order.begin(), order.end(), 0u);
    if (!std::is_sorted(numbers.begin(), numbers.end()))
        std::sort(order.begin(), order.end(),
                  [&](std::uint32_t a, std::uint32_t b) { return numbers[a] < numbers[b]; });
    return order;
}

class Builder {
  public:
    Builder(const MeshRecords& mesh, const std::string& name, std::optional<ElementFamily> planar)
        : mesh_(mesh)
        , name_(name)
        , planar_(planar) {}

    void build(MeshModel& model) {
        addNodes(model);
        addElements(model);
        addGroups(model);
        model.deck.steps.push_back({"", "STATIC", false, name_});
        for (const std::string& note : mesh_.notes)
            model.deck.warnings.push_back(name_ + ": " + note);
    }

  private:
    void addNodes(MeshModel& model) {
        model.nodePositions.resize(mesh_.nodeNumbers.size());
        std::uint32_t at = 0;
        for (const std::uint32_t node : orderOf(mesh_.nodeNumbers)) {
            model.nodePositions[node] = at++;
            model.deck.nodeNumbers.push_back(static_cast<std::int32_t>(mesh_.nodeNumbers[node]));
            model.deck.nodePositions.push_back(mesh_.nodePositions[node]);
        }
    }

    void addElements(MeshModel& model) {
        isBoundary_ = planar_ ? std::vector<bool>(mesh_.elementTypes.size()) : BoundaryElements(mesh_).find();
        for (const std::uint8_t type : mesh_.elementTypes)
            offsets_.push_back(offsets_.back() + static_cast<std::uint32_t>(elementNodeCount(type)));
        model.elementPositions.assign(mesh_.elementTypes.size(), MeshModel::kNone);
        SolverDeck& deck = model.deck;
        for (const std::uint32_t element : orderOf(mesh_.elementNumbers)) {
            const auto number = static_cast<std::int32_t>(mesh_.elementNumbers[element]);
            if (isBoundary_[element]) continue;
            model.elementPositions[element] = static_cast<std::uint32_t>(deck.elementNumbers.size());
            deck.elementNumbers.push_back(number);
            deck.elementTypes.push_back(mesh_.elementTypes[element]);
            deck.elementFamilies.push_back(familyOf(mesh_.elementTypes[element]));
            for (std::uint32_t i = offsets_[element]; i < offsets_[element + 1]; ++i)
                deck.elementNodes.push_back(model.nodePositions[mesh_.elementNodes[i]]);
            deck.elementNodeOffsets.push_back(static_cast<std::uint32_t>(deck.elementNodes.size()));
        }
    }

    ElementFamily familyOf(std::uint8_t type) const {
        switch (dimensionOf(type)) {
        case 3:
            return ElementFamily::Solid;
        case 2:
            return planar_.value_or(ElementFamily::Plate);
        case 1:
            return ElementFamily::Line;
        default:
            return ElementFamily::Connector;
        }
    }

    void addGroups(MeshModel& model) {
        std::vector<bool> grouped(model.deck.elementNumbers.size());
        for (const MeshGroup& group : mesh_.groups) {
            std::vector<std::int32_t> elements, nodes;
            for (const std::uint32_t element : group.elements) {
                const std::uint32_t at = model.elementPositions[element];
                if (at == MeshModel::kNone) {
                    for (std::uint32_t i = offsets_[element]; i < offsets_[element + 1]; ++i)
                        nodes.push_back(model.deck.nodeNumbers[model.nodePositions[mesh_.elementNodes[i]]]);
                    continue;
                }
                elements.push_back(model.deck.elementNumbers[at]);
                grouped[at] = true;
            }
            if (!nodes.empty()) addToSet(model.deck.nodeSets, group.name, nodes);
            if (!elements.empty()) addSection(model.deck, group.name, elements);
        }
        std::vector<std::int32_t> rest;
        for (std::size_t e = 0; e < grouped.size(); ++e)
            if (!grouped[e]) rest.push_back(model.deck.elementNumbers[e]);
        if (!rest.empty()) addSection(model.deck, "Elements", rest);
    }

    static bool addToSet(std::vector<SolverSet>& sets, const std::string& name,
                         const std::vector<std::int32_t>& numbers) {
        auto set = std::find_if(sets.begin(), sets.end(),
                                [&](const SolverSet& one) { return equalIgnoringCase(one.name, name); });
        const bool isNew = set == sets.end();
        if (isNew) set = sets.insert(sets.end(), {name, {}});
        set->numbers.insert(set->numbers.end(), numbers.begin(), numbers.end());
        std::sort(set->numbers.begin(), set->numbers.end());
        set->numbers.erase(std::unique(set->numbers.begin(), set->numbers.end()), set->numbers.end());
        return isNew;
    }

    void addSection(SolverDeck& deck, const std::string& name, const std::vector<std::int32_t>& elements) {
        if (!addToSet(deck.elementSets, name, elements)) return;
        SolverMaterial material;
        material.name = name;
        material.place = name_;
        deck.materials.push_back(material);
        SolverSection section;
        section.elementSet = name;
        section.materials = {name};
        section.place = name_;
        deck.sections.push_back(section);
    }

    const MeshRecords& mesh_;
    const std::string& name_;
    std::optional<ElementFamily> planar_;
    std::vector<bool> isBoundary_;
    std::vector<std::uint32_t> offsets_{0};
};

} // namespace

Result<MeshModel> readMeshModel(const std::filesystem::path& path, std::optional<ElementFamily> planar) {
    auto file = readMeshFile(path);
    if (!file) return file.error();
    MeshModel model{std::move(*file), {}, {}, {}};
    const std::string name = path.string();
    Builder(model.file.mesh(), name, planar).build(model);
    return model;
}

} // namespace workbench
