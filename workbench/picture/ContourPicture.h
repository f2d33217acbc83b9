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

/// The values at the two ends of the scale bar; what lies outside has colours of its own.
struct ValueRange {
    double low = 0.0;
    double high = 0.0;
};

/// A node or an element that is pointed at, with a text beside it.
struct PictureMark {
    enum class Kind { Node, Element };
    std::uint32_t index = 0; ///< of the node or the element in the mesh
    std::string label;       ///< UTF-8, e.g. "Node 1234: 1.23e+02"
    Kind kind = Kind::Node;
};

/// Which edges are drawn over the contour: none; borders and where the surface bends; those of every element.
enum class PictureEdges { None, Features, Mesh };

/// How far a view is enlarged from the one that shows the whole model, and where it looks.
struct PictureZoom {
    double factor = 1.0; ///< above 0
    double right = 0.0;  ///< what the model is moved by in the picture, in halves of its longest extent
    double up = 0.0;
};

/// The few words that the picture adds by itself, so that a caller can give them in the user's language.
struct PictureWords {
    std::string maximum = "Max";
    std::string minimum = "Min";
    std::string noValue = "no value";
    std::string hidden = "behind";     ///< follows the label of a mark that other parts of the model cover
    std::string deformed = "deformed"; ///< before the factor
};

/// What is drawn and how. Texts are UTF-8; a byte that is not is shown as U+FFFD, a line too long is cut.
struct ContourPicture {
    /// Solids by their outer faces, planes and lines as they are, points and springs as dots; interface and
    /// special elements are left out.
    T_QM_MESH_D mesh;
    std::span<const float> values; ///< one a node in value-index order; NaN = no value, drawn grey
    /// One an element: 0 = the element is grey, whatever its nodes have; empty = all as their nodes.
    std::span<const std::uint8_t> valuedElements;
    /// One a node, in lengths of the mesh; NaN = at rest; empty = the undeformed shape.
    std::span<const std::array<float, 3>> displacements;
    std::optional<double> deformation; ///< factor of the displacements; absent: automaticDeformation()
    bool restOutline = false;          ///< edges of the undeformed shape beside the deformed one

    std::vector<std::string> titleLines; ///< analysis, case, step; the first one is set larger
    std::string valueTitle;              ///< over the scale bar: component and unit; wraps at blanks
    std::vector<PictureMark> marks;      ///< in order of importance

    int width = 1600; ///< pixels, kSmallestPicture to kLargestPicture, as is the height
    int height = 1000;
    std::string colorScale = "viridis"; ///< one of colorScaleNames()
    bool bands = true;                  ///< one colour between two labels of the bar, else without steps
    ValueScale valueScale = ValueScale::Linear; ///< logarithmic: values <= 0 take the lowest colour
    std::optional<ValueRange> range;            ///< absent: the values' own, widened to round numbers
    std::string view = "iso"; ///< one of viewNames(), or angles "30,20": to the right of front and upwards
    PictureZoom zoom;
    PictureEdges edges = PictureEdges::Features;
    bool transparent = false; ///< no background, else a white one
    PictureWords words;
};

inline constexpr int kSmallestPicture = 320;
inline constexpr int kLargestPicture = 8192;

/// Names that ContourPicture::colorScale and ContourPicture::view accept.
std::span<const std::string_view> colorScaleNames();
std::span<const std::string_view> viewNames();

/// True for what ContourPicture::view accepts: one of the names, or two angles.
bool isViewName(std::string_view text);

/// What came out beside the picture.
struct DrawnContour {
    ValueRange bar;           ///< ends of the scale bar
    double deformation = 0.0; ///< factor of the displacements, 0 without
};

/// The factor by which the largest displacement becomes about a tenth of the model's longest extent: 1 where
/// it is that large already and at most twice the model, else a round number. 1 without any displacement.
double automaticDeformation(const T_QM_MESH_D& mesh, std::span<const std::array<float, 3>> displacements);

/// Draws the picture. Works with and without a display: where no X display answers, a private virtual one is
/// started (Xvfb, ended with the process). Fails with a sentence: a mesh that contradicts itself, no value at
/// all, a bad option, no way to draw. One picture at a time in a process; further threads wait.
Result<Image> drawContour(const ContourPicture& picture);

/// True for a name that writeContour knows a format for: .png and .svg, in upper or lower case.
bool isPictureName(const std::filesystem::path& path);
/// Whether it is the one of the two that ends in .svg.
bool isSvgName(const std::filesystem::path& path);

/// Draws the picture and writes it in the format of its name; it appears under that name whole or not at all.
/// In an SVG file titles, scale bar, axes and marks are text and shapes, and the model is an image of twice
/// as many pixels as the picture has.
Result<DrawnContour> writeContour(const ContourPicture& picture, const std::filesystem::path& path);

} // namespace workbench
