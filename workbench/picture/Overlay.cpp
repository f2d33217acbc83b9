#include "workbench/picture/Overlay.h"

#include <cmath>
#include <numbers>

namespace workbench {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD"; // U+FFFD
constexpr std::string_view kEllipsis = "\xE2\x80\xA6";    // U+2026

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Length of the UTF-8 sequence at the start of `text`; 0 when there is none (Unicode 15, table 3-7).
std::size_t sequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80) return 1;
    const std::size_t length = lead >= 0xC2 && lead <= 0xDF   ? 2
                               : lead >= 0xE0 && lead <= 0xEF ? 3
                               : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                              : 0;
    if (length == 0 || text.size() < length) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if (!isContinuation(text[i])) return 0;
    const unsigned char second = byte(1);
    const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
    const bool beyond = (lead == 0xED && second > 0x9F) || (lead == 0xF4 && second > 0x8F);
    return overlong || beyond ? 0 : length;
}

/// U+FFFE and U+FFFF, which XML does not allow.
bool isNoncharacter(std::string_view character) {
    return character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF";
}

std::size_t previousCharacter(const std::string& text, std::size_t end) {
    do
        --end;
    while (end > 0 && isContinuation(text[end]));
    return end;
}

} // namespace

void Overlay::addBox(const PixelBox& box, Rgb color, double opacity) {
    polygons.push_back(
        {{{box.left, box.bottom}, {box.right, box.bottom}, {box.right, box.top}, {box.left, box.top}},
         color,
         opacity});
}

void Overlay::addFrame(const PixelBox& box, double thickness, Rgb color) {
    const double t = thickness;
    addBox({box.left, box.bottom, box.right, box.bottom + t}, color);
    addBox({box.left, box.top - t, box.right, box.top}, color);
    addBox({box.left, box.bottom, box.left + t, box.top}, color);
    addBox({box.right - t, box.bottom, box.right, box.top}, color);
}

void Overlay::addLine(Pixel from, Pixel to, double thickness, Rgb color, double opacity) {
    const double dx = to[0] - from[0], dy = to[1] - from[1];
    const double length = std::hypot(dx, dy);
    if (length == 0.0) return;
    const double nx = -dy / length * thickness / 2, ny = dx / length * thickness / 2;
    polygons.push_back({{{from[0] - nx, from[1] - ny},
                         {to[0] - nx, to[1] - ny},
                         {to[0] + nx, to[1] + ny},
                         {from[0] + nx, from[1] + ny}},
                        color,
                        opacity});
}

void Overlay::addDisc(Pixel center, double radius, Rgb color) {
    constexpr int kSides = 32;
    OverlayPolygon disc{{}, color, 1.0};
    for (int i = 0; i < kSides; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / kSides;
        disc.corners.push_back({center[0] + radius * std::cos(angle), center[1] + radius * std::sin(angle)});
    }
    polygons.push_back(std::move(disc));
}

std::string cleanText(std::string_view text) {
    std::string clean;
    clean.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = sequenceLength(text);
        const auto byte = static_cast<unsigned char>(text[0]);
        if (length == 0)
            clean += kReplacement;
        else if (byte == '\t' || byte == '\n' || byte == '\r')
            clean += ' ';
        else if (isNoncharacter(text.substr(0, length)))
            clean += kReplacement;
        else if (byte >= 0x20 && byte != 0x7F)
            clean += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return clean;
}

std::string fittingText(const std::string& text, double width, double size, bool bold,
                        const TextWidth& measure) {
    // No glyph that matters is narrower than a tenth of the font size: longer texts need no measuring.
    std::size_t end = std::min(text.size(), static_cast<std::size_t>(std::max(1.0, 40.0 * width / size)));
    while (end > 0 && end < text.size() && isContinuation(text[end]))
        --end;
    if (end == text.size() && measure(text, size, bold) <= width) return text;
    while (end > 0) {
        end = previousCharacter(text, end);
        std::string cut = text.substr(0, end) + std::string(kEllipsis);
        if (measure(cut, size, bold) <= width) return cut;
    }
    return {};
}

std::vector<std::string> wrappedText(const std::string& text, double width, double size, bool bold,
                                     std::size_t mostLines, const TextWidth& measure) {
    std::vector<std::string> lines;
    std::size_t begin = 0;
    while (begin < text.size() && lines.size() + 1 < mostLines) {
        std::size_t end = begin; // after the last word that fits
        for (std::size_t blank = begin; blank < text.size();) {
            blank = std::min(text.find(' ', blank + 1), text.size());
            if (measure(text.substr(begin, blank - begin), size, bold) > width) break;
            end = blank;
        }
        if (end == begin) end = std::min(text.find(' ', begin + 1), text.size());
        lines.push_back(fittingText(text.substr(begin, end - begin), width, size, bold, measure));
        begin = end == text.size() ? end : end + 1;
    }
    if (begin < text.size()) lines.push_back(fittingText(text.substr(begin), width, size, bold, measure));
    return lines;
}

} // namespace workbench
