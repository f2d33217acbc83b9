#include "framework/drawing/Svg.h"

#include "framework/drawing/DC.h"
#include "framework/drawing/PixelPath.h"
#include "framework/drawing/SvgText.h"
#include "framework/text/Print.h"

#include <algorithm>

namespace framework {
namespace {

// Parts of the em by which common sans-serif faces rise above and fall below the base line.
constexpr double kAscent = 0.9;
constexpr double kDescent = 0.2;
constexpr double kLetterWidth = 0.56; ///< on the average, for the ground under a text

/// Painters of SVG cover the pixels whose middles lie between the ends of a line, the lesser end counted and
/// the greater one not. This moves an end that an upright or level line has at the wrong side, so that a line
/// that goes up or to the left has its first pixel too and leaves out its last one.
void leaveOutLastPixel(std::vector<CPoint>& path) {
    const auto shift = [](CPoint from, CPoint to) {
        return CPoint(from.y == to.y && to.x < from.x, from.x == to.x && to.y < from.y);
    };
    const CPoint first = shift(path[0], path[1]), last = shift(path[path.size() - 2], path.back());
    path.front() = path.front() + first;
    path.back() = path.back() + last;
}

class SvgWriter {
  public:
    explicit SvgWriter(std::string& out)
        : out_(out) {}

    void write(const Recording& drawn) {
        for (const auto& command : drawn.commands())
            std::visit([&](const auto& one) { add(drawn, one); }, command);
    }

    void number(const char* name, double value) {
        out_ += ' ';
        out_ += name;
        out_ += "=\"";
        svg::appendNumber(out_, value);
        out_ += '"';
    }
    void box(const CRect& rect) {
        number("x", rect.left);
        number("y", rect.top);
        number("width", rect.Width());
        number("height", rect.Height());
    }

  private:
    void color(const char* name, COLORREF value) {
        out_ += ' ';
        out_ += name;
        out_ += "=\"";
        svg::appendColor(out_, value);
        out_ += '"';
    }
    void stroke(const PenLook& pen) {
        if (pen.none) return;
        color("stroke", pen.color);
        if (pen.width == 1) return;
        number("stroke-width", pen.width);
        out_ += " stroke-linecap=\"round\" stroke-linejoin=\"round\"";
    }

    void add(const Recording&, const FillCommand& fill) {
        out_ += "<rect";
        box(fill.rect);
        color("fill", fill.color);
        out_ += "/>\n";
    }

    void add(const Recording& drawn, const PolylineCommand& line) {
        out_ += "<polyline fill=\"none\"";
        stroke(line.pen);
        // The middle of a pen of odd width is the middle of a pixel.
        if (line.pen.width % 2) out_ += " transform=\"translate(.5 .5)\"";
        out_ += " points=\"";
        auto path = pixelPath(drawn.points(line));
        std::ranges::transform(path, path.begin(), withinReach);
        if (line.pen.width == 1) leaveOutLastPixel(path);
        const char* separator = "";
        for (const CPoint point : path) {
            out_ += separator;
            appendInteger(out_, point.x);
            out_ += ',';
            appendInteger(out_, point.y);
            separator = " ";
        }
        out_ += "\"/>\n";
    }

    void add(const Recording& drawn, const EllipsesCommand& ellipses) {
        out_ += "<g";
        stroke(ellipses.pen);
        if (ellipses.brush.none)
            out_ += " fill=\"none\"";
        else
            color("fill", ellipses.brush.color);
        out_ += " shape-rendering=\"auto\">\n";
        // The outline lies within the box.
        const double inset = ellipses.pen.none ? 0 : ellipses.pen.width;
        for (const CRect& box : drawn.boxes(ellipses)) {
            out_ += "<ellipse";
            number("cx", box.left + box.Width() / 2.0);
            number("cy", box.top + box.Height() / 2.0);
            number("rx", std::max(box.Width() - inset, 0.0) / 2);
            number("ry", std::max(box.Height() - inset, 0.0) / 2);
            out_ += "/>\n";
        }
        out_ += "</g>\n";
    }

    void add(const Recording& drawn, const TextCommand& command) {
        const DrawnText& text = drawn.text(command);
        const double em = emOf(text.font);
        const unsigned across = text.align & TA_CENTER, down = text.align & TA_BASELINE;
        const double base = text.at.y + em * (down == TA_BASELINE ? 0
                                              : down == TA_BOTTOM ? -kDescent
                                                                  : kAscent);
        const bool turned = text.font.lfEscapement != 0;
        if (turned) {
            out_ += "<g transform=\"rotate(";
            svg::appendNumber(out_, -text.font.lfEscapement / 10.0);
            out_ += ' ';
            appendInteger(out_, text.at.x);
            out_ += ' ';
            appendInteger(out_, text.at.y);
            out_ += ")\">\n";
        }
        if (text.opaque) {
            const double width = static_cast<double>(text.text.size()) * em * kLetterWidth;
            out_ += "<rect";
            number("x", text.at.x - (across == TA_CENTER ? width / 2 : across == TA_RIGHT ? width : 0));
            number("y", base - em * kAscent);
            number("width", width);
            number("height", em * (kAscent + kDescent));
            color("fill", text.background);
            out_ += "/>\n";
        }
        out_ += "<text";
        number("x", text.at.x);
        number("y", base);
        color("fill", text.color);
        if (across == TA_CENTER) out_ += " text-anchor=\"middle\"";
        if (across == TA_RIGHT) out_ += " text-anchor=\"end\"";
        font(text.font, em);
        out_ += " xml:space=\"preserve\">";
        svg::appendText(out_, text.text);
        out_ += turned ? "</text>\n</g>\n" : "</text>\n";
    }

    void font(const LOGFONT& font, double em) {
        constexpr int kBoldest = 1000;
        out_ += " font-family=\"";
        if (font.lfFaceName[0]) {
            svg::appendText(out_, font.lfFaceName);
            out_ += ", ";
        }
        out_ += "sans-serif\"";
        number("font-size", em);
        if (font.lfWeight > 0 && font.lfWeight != FW_NORMAL)
            number("font-weight", std::min(font.lfWeight, kBoldest));
        if (font.lfItalic) out_ += " font-style=\"italic\"";
        if (font.lfUnderline || font.lfStrikeOut) {
            out_ += " text-decoration=\"";
            out_ += !font.lfStrikeOut   ? "underline"
                    : !font.lfUnderline ? "line-through"
                                        : "underline line-through";
            out_ += '"';
        }
    }

    void add(const Recording&, const TransferCommand& transfer) {
        out_ += "<svg";
        box(transfer.target);
        out_ += " viewBox=\"";
        appendInteger(out_, transfer.source.x);
        out_ += ' ';
        appendInteger(out_, transfer.source.y);
        out_ += ' ';
        appendInteger(out_, transfer.target.Width());
        out_ += ' ';
        appendInteger(out_, transfer.target.Height());
        out_ += "\">\n";
        write(*transfer.content);
        out_ += "</svg>\n";
    }

    std::string& out_;
};

} // namespace

std::string toSvg(const Recording& drawn, CSize size) {
    std::string out = "<svg xmlns=\"http://www.w3.org/2000/svg\"";
    SvgWriter writer(out);
    writer.number("width", size.cx);
    writer.number("height", size.cy);
    out += " viewBox=\"0 0 ";
    appendInteger(out, size.cx);
    out += ' ';
    appendInteger(out, size.cy);
    out += "\" shape-rendering=\"crispEdges\">\n";
    writer.write(drawn);
    out += "</svg>\n";
    return out;
}

} // namespace framework
