#pragma once

#include "workbench/import/ElementCards.h"
#include "workbench/import/FrdReader.h"
#include "workbench/import/SolverDeck.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace workbench {

/// The deck's side of a result file. What the spans show must outlive whoever uses them.
struct ResultMesh {
    std::span<const std::int32_t> nodeNumbers; ///< ascending
    std::span<const std::array<double, 3>> nodePositions;
    std::span<const std::int32_t> elementNumbers; ///< ascending
    std::span<const std::uint8_t> elementTypes;
    std::span<const ElementFamily> elementFamilies;
    std::span<const std::uint32_t> elementNodeOffsets;
    std::span<const std::uint32_t> elementNodes;   ///< node positions
    std::span<const std::int32_t> leftOutElements; ///< ascending; elements of types that are not read
    std::span<const std::uint16_t> elementLayers;  ///< empty: no element has layers
    std::span<const SolverOrientation> orientations;
    /// Of each element, as SolverDeck has them; empty: tensors of the file stand in global axes.
    std::span<const std::uint16_t> elementOrientations;
    bool solverAddsItems = false; ///< the result file may have nodes and elements that are not the deck's

    std::span<const std::uint32_t> nodesOf(std::size_t element) const {
        return elementNodes.subspan(elementNodeOffsets[element],
                                    elementNodeOffsets[element + 1] - elementNodeOffsets[element]);
    }
};

/// What the solver's result file has in place of the nodes of shells, membranes, plane and axisymmetric
/// elements, beams and trusses. The solver computes these as solids: a shell node becomes a node on the lower
/// face and one on the upper face (the side that the normal of the element's node order points to), with one
/// between them at the corners of quadratic elements; a beam node becomes the corners of a section. Of a
/// layered shell the lower face of the first and the upper face of the last layer count.
///
/// Call add for each element of the file, then finish. In a file that was written with
/// OUTPUT=2D the elements stand as the deck has them; both nodes of a pair are then the deck's own.
class ExpandedMesh {
  public:
    /// Two nodes of the file, opposite each other, that stand for a node of the deck. Only their mean tells
    /// how that one moves: reduced integration lets the faces of thin plates swing against each other.
    struct Pair {
        std::uint32_t node = 0; ///< position of the deck's node
        std::int32_t lower = 0, upper = 0;
        auto operator<=>(const Pair&) const = default;
    };
    /// A node of the file that stands for a node of the deck.
    struct Member {
        std::uint32_t node = 0;
        std::int32_t member = 0;
        auto operator<=>(const Member&) const = default;
    };
    /// An element of the deck: a pair for each of its nodes, in order; of lines only the first of two.
    struct Element {
        std::uint32_t element = 0; ///< position in the mesh
        std::uint32_t firstPair = 0;
        bool flat = false; ///< stored as the deck has it
    };

    explicit ExpandedMesh(const ResultMesh& mesh);

    /// Whether the deck has elements of a family that is expanded.
    bool expects() const { return expects_; }
    /// `position` of the element in the deck's mesh. Fails when its type in the file is none that the solver
    /// makes of it.
    Result<void> add(std::size_t position, const FrdElement& element);
    /// Takes an element that the deck does not have: it may be a layer of a shell, whose layers have numbers
    /// of their own behind those of the deck, shell by shell from the lower face up. False when the deck has
    /// no shells with layers.
    bool addLayer(const FrdElement& element);
    /// Answers whether the layers, if there are any, are as many as the deck's.
    bool finish();

    /// By element; those of the file only.
    std::span<const Element> elements() const { return elements_; }
    /// The pair of an element's node.
    const Pair& pairOf(const Element& element, std::size_t node) const {
        return cornerPairs_[element.firstPair + node];
    }
    /// All pairs, by the deck's node, each once.
    std::span<const Pair> pairs() const { return pairs_; }
    /// All nodes that stand for one of the deck, by that one, each once.
    std::span<const Member> members() const { return members_; }

  private:
    struct Layer {
        std::int32_t number;
        int type;
        std::vector<std::int32_t> nodes;
    };

    bool placeLayers();

    ResultMesh mesh_;
    bool expects_ = false;
    std::vector<Element> elements_;
    std::vector<Layer> layers_;     ///< until finish
    std::vector<Pair> cornerPairs_; ///< element by element
    std::vector<Pair> pairs_;
    std::vector<Member> members_;
};

} // namespace workbench
