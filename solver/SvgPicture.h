#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace solver {

struct SvgPoint {
    double x = 0; ///< pixels from the left
    double y = 0; ///< pixels from the top
};

enum class SvgAnchor { Start, Middle, End };

struct SvgTextStyle {
    double size = 12;
    SvgAnchor anchor = SvgAnchor::Start;
    std::string_view fill = "#222222";
    bool bold = false;
    bool upwards = false; ///< turned by 90 degrees about its point, to be read from below
};

/// An SVG picture that grows element by element; what comes later lies on top. Colours are SVG colours.
class SvgPicture {
  public:
    /// A white sheet; `title` is what a screen reader says of it.
    SvgPicture(double width, double height, std::string_view title);

    double width() const { return width_; }
    double height() const { return height_; }

    /// `stroke` empty: no border.
    void rectangle(SvgPoint corner, double width, double height, std::string_view fill,
                   std::string_view stroke = "");
    void line(SvgPoint from, SvgPoint to, std::string_view stroke, double width = 1);
    void polyline(std::span<const SvgPoint> points, std::string_view stroke, double width);
    void circle(SvgPoint centre, double radius, std::string_view fill);
    /// UTF-8 on a base line through `at`.
    void text(SvgPoint at, std::string_view text, const SvgTextStyle& style = {});

    /// The whole document; the picture is used up.
    std::string finish() &&;

  private:
    double width_;
    double height_;
    std::string body_;
};

/// Pixels that a text takes at most, about: sans fonts stay below 0.62 of the size a character on average.
double svgTextWidth(std::string_view text, double size);

} // namespace solver
