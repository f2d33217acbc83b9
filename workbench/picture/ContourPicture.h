#pragma once

#include "base/Result.h"
#include "host/records/Mesh.h"
#include "workbench/picture/Image.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// How values are spread over the colours.
enum class ValueScale { Linear, Logarithmic };

/// The values at the two ends of the scale bar; what lies outside takes the colour of the nearer end.
struct ValueRange {
    double low = 0.0;
    double high = 0.0;
};

/// A node that is pointed at, with a text beside it.
struct NodeMark {
    std::uint32_t node = 0; ///< value index
    std::string label;      ///< UTF-8, e.g. "Node 1234: 1.23e+02"
};

/// The few words that the picture adds by itself, so that a caller can give them in the user's language.
struct PictureWords {
    std::string maximum = "Max";
    std::string minimum = "Min";
    std::string noValue = "no value";
    std::string hidden = "behind"; ///< follows the label of a marked node that other parts of the model cover
};

/// What is drawn and how. Texts are UTF-8; a byte that is not is shown as U+FFFD, a line too long is cut.
struct ContourPicture {
    T_QM_MESH_D
    mesh; ///< solids by their outer faces, planes and lines as they are; other elements are left out
    std::span<const float> values;       ///< one a node in value-index order; NaN = no value, drawn grey
    std::vector<std::string> titleLines; ///< analysis, case, step; the first one is set larger
    std::string valueTitle;              ///< over the scale bar: component and unit; wraps at blanks
    std::vector<NodeMark> marks;         ///< in order of importance

    int width = 1600; ///< pixels, kSmallestPicture to kLargestPicture, as is the height
    int height = 1000;
    std::string colorScale = "viridis"; ///< one of colorScaleNames()
    bool bands = true;                  ///< one colour between two labels of the bar, else without steps
    ValueScale valueScale = ValueScale::Linear; ///< logarithmic: values <= 0 take the lowest colour
    std::optional<ValueRange> range;            ///< absent: the values' own, widened to round numbers
    std::string view = "iso";                   ///< one of viewNames()
    PictureWords words;
};

inline constexpr int kSmallestPicture = 320;
inline constexpr int kLargestPicture = 8192;

/// Names that ContourPicture::colorScale and ContourPicture::view accept.
std::span<const std::string_view> colorScaleNames();
std::span<const std::string_view> viewNames();

/// Draws the picture. Works with and without a display: where no X display answers, a private virtual one is
/// started (Xvfb, ended with the process). Fails with a sentence: a mesh that contradicts itself, no value at
/// all, a bad option, no way to draw. One picture at a time in a process; further threads wait.
Result<Image> drawContour(const ContourPicture& picture);

/// Draws the picture and writes it as a PNG file, which appears under its name whole or not at all.
Result<void> writeContourPng(const ContourPicture& picture, const std::filesystem::path& path);

} // namespace workbench
