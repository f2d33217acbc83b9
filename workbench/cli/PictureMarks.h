#pragma once

#include "base/Result.h"
#include "host/VResult.h"
#include "host/records/Mesh.h"
#include "workbench/picture/ContourPicture.h"
#include "workbench/results/Catalogue.h"

#include <span>
#include <string>
#include <vector>

namespace workbench::cli {

/// What is marked in a picture: the worst places, and some by number.
struct MarkChoice {
    std::size_t worstNodes = 0;
    std::size_t worstElements = 0;
    std::vector<std::int32_t> nodes; ///< by number
    std::vector<std::int32_t> elements;
};

inline constexpr std::size_t kMostMarks = 100;

/// Reads "worst:5", "worst-elements:3", "element:7,8", "node:12,13", "12,13" and "none", several together.
Result<MarkChoice> parseMarks(const std::vector<std::string>& texts);

/// A mark with what it stands at.
struct ChosenMark {
    PictureMark mark;
    std::int32_t number = 0; ///< of the node or element
    float value = 0.0f;      ///< NaN without one
};

/// What the values of a picture mean for its marks.
struct MarkedValues {
    const T_QM_MESH_D& mesh;
    std::span<const float> nodes;    ///< one a node, NaN = none
    std::span<const float> elements; ///< one an element, see elementValues()
    bool smallestIsWorst;            ///< as of a life; else the largest magnitude
    Language language;
};

/// The worst of the values at the nodes of each element: of its own corners where the result stands there,
/// with `factor`, else of the nodal values. NaN where an element has none.
std::vector<float> elementValues(const T_RESULT_TABLE_D& table, double factor, const T_QM_MESH_D& mesh,
                                 std::span<const float> nodal, std::span<const std::uint8_t> valued,
                                 bool smallestIsWorst);

/// The marks in order of importance, none twice. A number that the mesh lacks is an error.
Result<std::vector<ChosenMark>> chooseMarks(const MarkChoice& choice, const MarkedValues& values);

} // namespace workbench::cli
