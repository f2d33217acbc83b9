#include "workbench/import/ResultRows.h"

#include <algorithm>
#include <numeric>

namespace workbench {
namespace {

constexpr std::uint32_t kNoRow = NumberIndex::kNone;

/// Finds the row of a node number in a block.
class RowIndex {
  public:
    explicit RowIndex(const std::vector<std::int32_t>& nodes) {
        if (std::is_sorted(nodes.begin(), nodes.end())) {
            numbers_ = nodes;
        } else {
            order_.resize(nodes.size());
            std::iota(order_.begin(), order_.end(), 0u);
            std::stable_sort(order_.begin(), order_.end(),
                             [&](std::uint32_t a, std::uint32_t b) { return nodes[a] < nodes[b]; });
            sorted_.reserve(nodes.size());
            for (const std::uint32_t row : order_)
                sorted_.push_back(nodes[row]);
            numbers_ = sorted_;
        }
        index_ = NumberIndex(numbers_);
    }
    RowIndex(const RowIndex&) = delete;
    RowIndex& operator=(const RowIndex&) = delete;

    std::uint32_t find(std::int32_t number) const {
        const std::uint32_t place = index_.find(number);
        return place == kNoRow || order_.empty() ? place : order_[place];
    }
    /// Ascending.
    std::span<const std::int32_t> numbers() const { return numbers_; }

  private:
    std::vector<std::uint32_t> order_; ///< rows by number; empty where they are so already
    std::vector<std::int32_t> sorted_;
    std::span<const std::int32_t> numbers_;
    NumberIndex index_;
};

/// Adds nodes one after another, each with its rows and their weights.
class NodeRowsBuilder {
  public:
    void add(std::uint32_t row, float weight) {
        rows_.rows.push_back(row);
        rows_.weights.push_back(weight);
    }
    void endNode(std::uint32_t position) {
        const auto end = static_cast<std::uint32_t>(rows_.rows.size());
        if (end == rows_.offsets.back()) return;
        rows_.positions.push_back(position);
        rows_.offsets.push_back(end);
    }
    /// Makes the weights of the node's rows sum up to 1.
    void scaleNode() {
        const auto begin = rows_.weights.begin() + rows_.offsets.back();
        const float total = std::accumulate(begin, rows_.weights.end(), 0.0f);
        if (total > 0)
            for (auto weight = begin; weight != rows_.weights.end(); ++weight)
                *weight /= total;
    }
    NodeRows take() {
        if (rows_.rows.size() == rows_.positions.size()) { // one row a node
            rows_.offsets.clear();
            rows_.weights.clear();
        }
        return std::move(rows_);
    }
    NodeRowsBuilder() { rows_.offsets.push_back(0); }

  private:
    NodeRows rows_;
};

/// Nodes that stand under their own numbers, with the row of each.
NodeRows ownRows(const NumberIndex& meshNodes, const RowIndex& block, const std::vector<bool>& wanted) {
    NodeRows rows;
    for (const std::int32_t number : block.numbers()) {
        const std::uint32_t position = meshNodes.find(number);
        if (position == NumberIndex::kNone) continue;
        if (!wanted.empty() && !wanted[position]) continue;
        rows.positions.push_back(position);
        rows.rows.push_back(block.find(number));
    }
    return rows;
}

std::vector<bool> nodesOfFamily(const ResultMesh& mesh, ElementFamily family) {
    std::vector<bool> wanted(mesh.nodeNumbers.size());
    for (std::size_t e = 0; e < mesh.elementNumbers.size(); ++e)
        if (mesh.elementFamilies[e] == family)
            for (const std::uint32_t node : mesh.nodesOf(e))
                wanted[node] = true;
    return wanted;
}

/// Each of the deck's nodes by its own row, else by the mean of the pairs that stand for it.
NodeRows meanRows(const ExpandedMesh& expanded, const NodeRows& own, const RowIndex& block) {
    NodeRowsBuilder builder;
    const auto pairs = expanded.pairs();
    std::size_t direct = 0;
    for (std::size_t p = 0; p < pairs.size() || direct < own.positions.size();) {
        if (direct < own.positions.size() && (p == pairs.size() || own.positions[direct] <= pairs[p].node)) {
            const std::uint32_t node = own.positions[direct];
            builder.add(own.rows[direct++], 1);
            builder.endNode(node);
            while (p < pairs.size() && pairs[p].node == node)
                ++p;
            continue;
        }
        const std::uint32_t node = pairs[p].node;
        for (; p < pairs.size() && pairs[p].node == node; ++p) {
            const std::uint32_t lower = block.find(pairs[p].lower), upper = block.find(pairs[p].upper);
            if (lower == kNoRow || upper == kNoRow) continue;
            builder.add(lower, 1);
            builder.add(upper, 1);
        }
        builder.scaleNode();
        builder.endNode(node);
    }
    return builder.take();
}

/// Each of the deck's nodes by the sum over what stands for it, else by its own row.
NodeRows sumRows(const ExpandedMesh& expanded, const NodeRows& own, const RowIndex& block) {
    NodeRowsBuilder builder;
    const auto members = expanded.members();
    std::size_t direct = 0;
    for (std::size_t m = 0; m < members.size() || direct < own.positions.size();) {
        if (m == members.size() ||
            (direct < own.positions.size() && own.positions[direct] < members[m].node)) {
            builder.add(own.rows[direct], 1);
            builder.endNode(own.positions[direct++]);
            continue;
        }
        const std::uint32_t node = members[m].node;
        for (; m < members.size() && members[m].node == node; ++m)
            if (const std::uint32_t row = block.find(members[m].member); row != kNoRow) builder.add(row, 1);
        if (direct < own.positions.size() && own.positions[direct] == node) {
            builder.add(own.rows[direct], 1);
            ++direct;
        }
        builder.endNode(node);
    }
    return builder.take();
}

/// Nodes of a plane family: the mean over the pairs of its elements.
NodeRows familyRows(const ResultMesh& mesh, const ExpandedMesh& expanded, ElementFamily family,
                    const RowIndex& block) {
    std::vector<ExpandedMesh::Pair> pairs;
    for (const ExpandedMesh::Element& element : expanded.elements()) {
        if (mesh.elementFamilies[element.element] != family) continue;
        for (std::size_t i = 0; i < mesh.nodesOf(element.element).size(); ++i)
            pairs.push_back(expanded.pairOf(element, i));
    }
    std::sort(pairs.begin(), pairs.end());
    pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
    NodeRowsBuilder builder;
    for (std::size_t p = 0; p < pairs.size();) {
        const std::uint32_t node = pairs[p].node;
        for (; p < pairs.size() && pairs[p].node == node; ++p) {
            const std::uint32_t lower = block.find(pairs[p].lower), upper = block.find(pairs[p].upper);
            if (lower == kNoRow || upper == kNoRow) continue;
            builder.add(lower, 1);
            if (upper != lower) builder.add(upper, 1);
        }
        builder.scaleNode();
        builder.endNode(node);
    }
    return builder.take();
}

/// Elements of a family all of whose corners have rows.
CornerRows cornerRows(const ResultMesh& mesh, const ExpandedMesh& expanded, ElementFamily family,
                      bool withFlat, const RowIndex& block) {
    CornerRows rows;
    for (const ExpandedMesh::Element& element : expanded.elements()) {
        if (mesh.elementFamilies[element.element] != family || (element.flat && !withFlat)) continue;
        const std::size_t corners = mesh.nodesOf(element.element).size();
        const std::size_t before = rows.pairs.size();
        for (std::size_t i = 0; i < corners; ++i) {
            const ExpandedMesh::Pair& pair = expanded.pairOf(element, i);
            const CornerRows::Pair found{block.find(pair.lower), block.find(pair.upper)};
            if (found.lower != kNoRow && found.upper != kNoRow) rows.pairs.push_back(found);
        }
        if (rows.pairs.size() == before + corners)
            rows.elements.push_back(element.element);
        else
            rows.pairs.resize(before);
    }
    return rows;
}

/// Nodes of the block that stand for none of the mesh.
void countForeign(const NumberIndex& meshNodes, const ExpandedMesh& expanded, const RowIndex& block,
                  ResultRows& result) {
    std::vector<std::int32_t> members;
    for (const ExpandedMesh::Member& member : expanded.members())
        members.push_back(member.member);
    std::sort(members.begin(), members.end());
    for (const std::int32_t number : block.numbers()) {
        if (meshNodes.find(number) != NumberIndex::kNone) continue;
        if (std::binary_search(members.begin(), members.end(), number)) continue;
        if (result.foreignNodes++ == 0) result.firstForeignNode = number;
    }
}

/// The orientation of each row, by the elements that it belongs to.
std::vector<RowOrientation> rowOrientations(const ResultMesh& mesh, const ExpandedMesh& expanded,
                                            const RowIndex& block) {
    std::vector<RowOrientation> rows(block.numbers().size());
    std::vector<bool> known(rows.size());
    const auto mark = [&](std::size_t element, std::uint32_t node, std::int32_t number) {
        const std::uint32_t row = block.find(number);
        if (row == kNoRow) return;
        const std::uint16_t orientation = mesh.elementOrientations[element];
        if (known[row] && rows[row].orientation != orientation)
            rows[row].orientation = RowOrientation::kMixed;
        else
            rows[row] = {orientation, node, static_cast<std::uint32_t>(element)};
        known[row] = true;
    };
    for (std::size_t e = 0; e < mesh.elementNumbers.size(); ++e)
        if (mesh.elementFamilies[e] == ElementFamily::Solid)
            for (const std::uint32_t node : mesh.nodesOf(e))
                mark(e, node, mesh.nodeNumbers[node]);
    for (const ExpandedMesh::Element& element : expanded.elements())
        for (std::size_t i = 0; i < mesh.nodesOf(element.element).size(); ++i) {
            const ExpandedMesh::Pair& pair = expanded.pairOf(element, i);
            mark(element.element, pair.node, pair.lower);
            mark(element.element, pair.node, pair.upper);
        }
    return rows;
}

} // namespace

std::span<const float> NodeRows::valuesOf(std::span<const float> table, std::vector<float>& space) const {
    if (asTheyStand) return table;
    space.resize(positions.size());
    if (offsets.empty()) {
        for (std::size_t i = 0; i < rows.size(); ++i)
            space[i] = table[rows[i]];
        return space;
    }
    for (std::size_t i = 0; i < positions.size(); ++i) {
        double sum = 0;
        for (std::size_t r = offsets[i]; r < offsets[i + 1]; ++r)
            sum += static_cast<double>(weights[r]) * static_cast<double>(table[rows[r]]);
        space[i] = static_cast<float>(sum);
    }
    return space;
}

ResultRows ResultRows::of(const ResultMesh& mesh, const NumberIndex& meshNodes, const ExpandedMesh& expanded,
                          const std::vector<std::int32_t>& blockNodes) {
    ResultRows result;
    const RowIndex block(blockNodes);
    const auto twice = std::adjacent_find(block.numbers().begin(), block.numbers().end());
    if (twice != block.numbers().end()) {
        result.repeatedNode = *twice;
        return result;
    }
    countForeign(meshNodes, expanded, block, result);
    if (!mesh.elementOrientations.empty()) result.orientations = rowOrientations(mesh, expanded, block);
    NodeRows own = ownRows(meshNodes, block, {});
    if (!expanded.expects()) {
        own.asTheyStand =
            own.rows.size() == blockNodes.size() && std::is_sorted(own.rows.begin(), own.rows.end());
        if (own.asTheyStand) own.rows = {};
        result.means = std::move(own);
        return result;
    }
    result.plain = false;
    result.means = meanRows(expanded, own, block);
    result.sums_ = sumRows(expanded, own, block);
    result.solids_ = ownRows(meshNodes, block, nodesOfFamily(mesh, ElementFamily::Solid));
    result.planeStress = familyRows(mesh, expanded, ElementFamily::PlaneStress, block);
    result.planeStrain = familyRows(mesh, expanded, ElementFamily::PlaneStrain, block);
    result.axisymmetric = familyRows(mesh, expanded, ElementFamily::Axisymmetric, block);
    result.plates = cornerRows(mesh, expanded, ElementFamily::Plate, false, block);
    result.membranes = cornerRows(mesh, expanded, ElementFamily::Membrane, true, block);
    for (const ExpandedMesh::Element& element : expanded.elements()) {
        const ElementFamily family = mesh.elementFamilies[element.element];
        result.flatPlates += element.flat && family == ElementFamily::Plate;
        result.lines += family == ElementFamily::Line;
    }
    return result;
}

} // namespace workbench
