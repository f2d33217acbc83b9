#pragma once

#include "workbench/import/ExpandedMesh.h"
#include "workbench/import/NumberIndex.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace workbench {

/// Which rows of a block make the values of which nodes of the mesh.
struct NodeRows {
    std::vector<std::uint32_t> positions; ///< of the nodes that have values, ascending
    std::vector<std::uint32_t> rows;
    std::vector<std::uint32_t> offsets; ///< rows of node i: [i, i + 1); empty: one row a node
    std::vector<float> weights;         ///< of each row; empty with offsets
    bool asTheyStand = false;           ///< the rows of the block are the values, in order
    std::string items;                  ///< name of the list of positions; empty: all nodes

    /// The values in the order of positions: `table` itself, or `space` filled.
    std::span<const float> valuesOf(std::span<const float> table, std::vector<float>& space) const;
};

/// The pairs of rows that make the values of the corners of plates or membranes.
struct CornerRows {
    struct Pair {
        std::uint32_t lower, upper;
    };
    std::vector<std::uint32_t> elements; ///< mesh positions, ascending
    std::vector<Pair> pairs;             ///< corner by corner of each element
    std::string items;                   ///< name of the list of elements; empty: all of them
};

/// The orientation that a row of a tensor stands in.
struct RowOrientation {
    static constexpr std::uint16_t kMixed = 0xFFFF; ///< of elements with several
    std::uint16_t orientation = 0;                  ///< as SolverDeck::elementOrientations
    std::uint32_t node = 0;                         ///< mesh position of its node
    std::uint32_t element = 0;                      ///< and of an element there
};

/// Which rows of a block belong to which items of the mesh: the same for all blocks that list the same nodes.
struct ResultRows {
    bool plain = true;     ///< no element is expanded: the means are the sums and the solids, too
    NodeRows means;        ///< displacements, temperatures and the like
    NodeRows planeStress;  ///< nodes of such elements, mean over what stands for them
    NodeRows planeStrain;  ///< likewise
    NodeRows axisymmetric; ///< likewise
    CornerRows plates;
    CornerRows membranes;
    std::vector<RowOrientation> orientations; ///< row by row; empty: all in global axes
    std::size_t flatPlates = 0;               ///< plates that the file has without their faces
    std::size_t lines = 0;                    ///< beams and trusses in the file
    std::int32_t firstForeignNode = 0;        ///< a node that the mesh does not know; 0: none
    std::size_t foreignNodes = 0;             ///< how many of them
    std::int32_t repeatedNode = 0;            ///< a node that stands twice; 0: none

    /// Forces.
    NodeRows& sums() { return plain ? means : sums_; }
    /// Nodes of solids.
    NodeRows& solids() { return plain ? means : solids_; }

    /// `expanded` must be finished.
    static ResultRows of(const ResultMesh& mesh, const NumberIndex& meshNodes, const ExpandedMesh& expanded,
                         const std::vector<std::int32_t>& blockNodes);

  private:
    NodeRows sums_, solids_; ///< unless plain
};

} // namespace workbench
