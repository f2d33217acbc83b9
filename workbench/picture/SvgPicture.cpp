#include "workbench/picture/SvgPicture.h"

#include <array>
#include <charconv>

namespace workbench {
namespace {

/// Nanum Barun Gothic is what the widths were measured with, where it is installed; the others have Hangul or
/// are what every system has.
constexpr std::string_view kFonts =
    "NanumBarunGothic, 'Nanum Barun Gothic', 'Noto Sans CJK KR', 'Malgun Gothic', 'DejaVu Sans', sans-serif";

std::string number(double value) {
    std::array<char, 400> text;
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 2).ptr;
    std::string written(text.data(), end);
    while (written.back() == '0')
        written.pop_back();
    if (written.back() == '.') written.pop_back();
    return written == "-0" ? "0" : written;
}

std::string escaped(std::string_view text) {
    std::string safe;
    for (const char c : text) {
        if (c == '&')
            safe += "&amp;";
        else if (c == '<')
            safe += "&lt;";
        else if (c == '>')
            safe += "&gt;";
        else
            safe += c;
    }
    return safe;
}

std::string hexColor(const Rgb& color) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text = "#";
    for (const std::uint8_t part : color) {
        text += kDigits[part >> 4];
        text += kDigits[part & 15];
    }
    return text;
}

std::string polygonText(const OverlayPolygon& polygon, double height) {
    std::string text = "<polygon points=\"";
    for (const Pixel& corner : polygon.corners)
        text += (text.back() == '"' ? "" : " ") + number(corner[0]) + "," + number(height - corner[1]);
    text += "\" fill=\"" + hexColor(polygon.color) + "\"";
    if (polygon.opacity < 1.0) text += " fill-opacity=\"" + number(polygon.opacity) + "\"";
    return text + "/>\n";
}

std::string textText(const OverlayText& text, double height, const TextWidth& measure) {
    if (text.text.empty()) return {};
    // Half of a capital's height under the middle of the line.
    const double baseline = height - text.at[1] + 0.35 * text.size;
    std::string written = "<text x=\"" + number(text.at[0]) + "\" y=\"" + number(baseline) +
                          "\" font-size=\"" + number(text.size) + "\" textLength=\"" +
                          number(measure(text.text, text.size, text.bold)) +
                          "\" lengthAdjust=\"spacingAndGlyphs\"";
    if (text.bold) written += " font-weight=\"bold\"";
    if (text.align == TextAlign::Center) written += " text-anchor=\"middle\"";
    if (text.align == TextAlign::Right) written += " text-anchor=\"end\"";
    return written + ">" + escaped(text.text) + "</text>\n";
}

} // namespace

std::string base64(std::span<const unsigned char> bytes) {
    constexpr char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t left = bytes.size() - i;
        const unsigned group = static_cast<unsigned>(bytes[i]) << 16 |
                               (left > 1 ? static_cast<unsigned>(bytes[i + 1]) << 8 : 0u) |
                               (left > 2 ? static_cast<unsigned>(bytes[i + 2]) : 0u);
        text += kLetters[group >> 18];
        text += kLetters[group >> 12 & 63u];
        text += left > 1 ? kLetters[group >> 6 & 63u] : '=';
        text += left > 2 ? kLetters[group & 63u] : '=';
    }
    return text;
}

std::string svgText(const SvgPicture& picture, const TextWidth& measure) {
    const std::string width = std::to_string(picture.width), height = std::to_string(picture.height);
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<svg xmlns=\"http://www.w3.org/2000/svg\" "
                       "xmlns:xlink=\"http://www.w3.org/1999/xlink\" version=\"1.1\" width=\"" +
                       width + "\" height=\"" + height + "\" viewBox=\"0 0 " + width + " " + height +
                       "\" font-family=\"" + std::string(kFonts) + "\">\n";
    text += "<title>" + escaped(cleanText(picture.title)) + "</title>\n";
    text += "<desc>" + escaped(cleanText(picture.description)) + "</desc>\n";
    if (!picture.transparent)
        text += "<rect width=\"" + width + "\" height=\"" + height + "\" fill=\"#fff\"/>\n";
    const PixelBox& box = picture.imageBox;
    text += "<image x=\"" + number(box.left) + "\" y=\"" + number(picture.height - box.top) + "\" width=\"" +
            number(box.width()) + "\" height=\"" + number(box.height()) +
            "\" preserveAspectRatio=\"none\" xlink:href=\"data:image/png;base64," + base64(picture.png) +
            "\"/>\n";
    for (const OverlayPolygon& polygon : picture.overlay.polygons)
        text += polygonText(polygon, picture.height);
    for (const OverlayText& line : picture.overlay.texts)
        text += textText(line, picture.height, measure);
    return text + "</svg>\n";
}

} // namespace workbench
