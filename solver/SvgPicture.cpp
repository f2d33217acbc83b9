#include "solver/SvgPicture.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace solver {
namespace {

/// Hundredths of a pixel are enough.
void put(std::string& to, double value) {
    char text[64];
    to.append(text, std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 2).ptr);
}

void putAttribute(std::string& to, std::string_view name, double value) {
    to += ' ';
    to += name;
    to += "=\"";
    put(to, value);
    to += '"';
}

void putAttribute(std::string& to, std::string_view name, std::string_view value) {
    to += ' ';
    to += name;
    to += "=\"";
    to += value;
    to += '"';
}

void putEscaped(std::string& to, std::string_view text) {
    for (const char c : text)
        switch (c) {
        case '&':
            to += "&amp;";
            break;
        case '<':
            to += "&lt;";
            break;
        case '>':
            to += "&gt;";
            break;
        default:
            // Control characters have no place in XML.
            to += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
        }
}

std::string_view anchorName(SvgAnchor anchor) {
    switch (anchor) {
    case SvgAnchor::Middle:
        return "middle";
    case SvgAnchor::End:
        return "end";
    default:
        return "start";
    }
}

} // namespace

SvgPicture::SvgPicture(double width, double height, std::string_view title)
    : width_(width)
    , height_(height) {
    body_ = "<svg xmlns=\"http://www.w3.org/2000/svg\"";
    putAttribute(body_, "width", width);
    putAttribute(body_, "height", height);
    body_ += " viewBox=\"0 0 ";
    put(body_, width);
    body_ += ' ';
    put(body_, height);
    body_ += "\" font-family=\"Arial, Helvetica, 'DejaVu Sans', sans-serif\">\n<title>";
    putEscaped(body_, title);
    body_ += "</title>\n";
    rectangle({0, 0}, width, height, "#ffffff");
}

void SvgPicture::rectangle(SvgPoint corner, double width, double height, std::string_view fill,
                           std::string_view stroke) {
    body_ += "<rect";
    putAttribute(body_, "x", corner.x);
    putAttribute(body_, "y", corner.y);
    putAttribute(body_, "width", width);
    putAttribute(body_, "height", height);
    putAttribute(body_, "fill", fill);
    if (!stroke.empty()) putAttribute(body_, "stroke", stroke);
    body_ += "/>\n";
}

void SvgPicture::line(SvgPoint from, SvgPoint to, std::string_view stroke, double width) {
    body_ += "<line";
    putAttribute(body_, "x1", from.x);
    putAttribute(body_, "y1", from.y);
    putAttribute(body_, "x2", to.x);
    putAttribute(body_, "y2", to.y);
    putAttribute(body_, "stroke", stroke);
    putAttribute(body_, "stroke-width", width);
    body_ += "/>\n";
}

void SvgPicture::polyline(std::span<const SvgPoint> points, std::string_view stroke, double width) {
    body_ += "<polyline points=\"";
    for (const SvgPoint& point : points) {
        put(body_, point.x);
        body_ += ',';
        put(body_, point.y);
        body_ += ' ';
    }
    body_ += "\" fill=\"none\" stroke-linejoin=\"round\"";
    putAttribute(body_, "stroke", stroke);
    putAttribute(body_, "stroke-width", width);
    body_ += "/>\n";
}

void SvgPicture::circle(SvgPoint centre, double radius, std::string_view fill) {
    body_ += "<circle";
    putAttribute(body_, "cx", centre.x);
    putAttribute(body_, "cy", centre.y);
    putAttribute(body_, "r", radius);
    putAttribute(body_, "fill", fill);
    body_ += "/>\n";
}

void SvgPicture::text(SvgPoint at, std::string_view text, const SvgTextStyle& style) {
    body_ += "<text";
    putAttribute(body_, "x", at.x);
    putAttribute(body_, "y", at.y);
    putAttribute(body_, "font-size", style.size);
    putAttribute(body_, "fill", style.fill);
    putAttribute(body_, "text-anchor", anchorName(style.anchor));
    if (style.bold) putAttribute(body_, "font-weight", std::string_view("bold"));
    if (style.upwards) {
        body_ += " transform=\"rotate(-90 ";
        put(body_, at.x);
        body_ += ' ';
        put(body_, at.y);
        body_ += ")\"";
    }
    body_ += '>';
    putEscaped(body_, text);
    body_ += "</text>\n";
}

std::string SvgPicture::finish() && {
    body_ += "</svg>\n";
    return std::move(body_);
}

double svgTextWidth(std::string_view text, double size) {
    const auto characters =
        std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; });
    return 0.62 * size * static_cast<double>(characters);
}

} // namespace solver
