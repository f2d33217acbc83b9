#pragma once

#include "workbench/picture/Image.h"
#include "workbench/picture/ViewCamera.h"

#include <functional>
#include <string>
#include <vector>

namespace workbench {

/// A filled convex polygon over the model.
struct OverlayPolygon {
    std::vector<Pixel> corners;
    Rgb color{};
    double opacity = 1.0;
};

enum class TextAlign { Left, Center, Right };

/// One line of text, centred on its anchor in height.
struct OverlayText {
    std::string text; ///< valid UTF-8
    Pixel at{};
    double size = 0.0; ///< font size in pixels
    bool bold = false;
    TextAlign align = TextAlign::Left;
};

/// What is drawn flat over the model, in pixels of the finished picture, in order: polygons, then texts.
struct Overlay {
    std::vector<OverlayPolygon> polygons;
    std::vector<OverlayText> texts;

    void addBox(const PixelBox& box, Rgb color, double opacity = 1.0);
    void addFrame(const PixelBox& box, double thickness, Rgb color);
    void addLine(Pixel from, Pixel to, double thickness, Rgb color, double opacity = 1.0);
    void addDisc(Pixel center, double radius, Rgb color);
};

/// Width in pixels of a line of text (text, font size, bold).
using TextWidth = std::function<double(const std::string&, double, bool)>;

/// The text as valid UTF-8 without control characters: bytes that are not become U+FFFD, tabs and line ends
/// blanks.
std::string cleanText(std::string_view text);

/// The text, or its beginning and an ellipsis, so that it fits `width`. Never splits a character.
std::string fittingText(const std::string& text, double width, double size, bool bold,
                        const TextWidth& measure);

/// The text in at most `mostLines` lines that fit `width`, broken at blanks; what is left over is cut.
std::vector<std::string> wrappedText(const std::string& text, double width, double size, bool bold,
                                     std::size_t mostLines, const TextWidth& measure);

} // namespace workbench
