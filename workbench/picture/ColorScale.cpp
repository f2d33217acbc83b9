#include "workbench/picture/ColorScale.h"

#include "workbench/picture/ContourPicture.h"

#include <algorithm>
#include <cmath>

namespace workbench {
namespace {

/// Every 15th of the 256 colours of viridis, which S. van der Walt, N. Smith and E. Firing designed to be
/// perceptually uniform, also for colour-blind readers and in black and white (published under CC0 with
/// matplotlib 1.5, lib/matplotlib/_cm_listed.py).
constexpr std::array<float, 3> kViridis[] = {
    {0.267004f, 0.004874f, 0.329415f}, {0.281924f, 0.089666f, 0.412415f}, {0.280255f, 0.165693f, 0.476498f},
    {0.263663f, 0.237631f, 0.518762f}, {0.237441f, 0.305202f, 0.541921f}, {0.208623f, 0.367752f, 0.552675f},
    {0.182256f, 0.426184f, 0.557120f}, {0.159194f, 0.482237f, 0.558073f}, {0.137770f, 0.537492f, 0.554906f},
    {0.121148f, 0.592739f, 0.544641f}, {0.128087f, 0.647749f, 0.523491f}, {0.180653f, 0.701402f, 0.488189f},
    {0.274149f, 0.751988f, 0.436601f}, {0.395174f, 0.797475f, 0.367757f}, {0.535621f, 0.835785f, 0.281908f},
    {0.688944f, 0.865448f, 0.182725f}, {0.845561f, 0.887322f, 0.099702f}, {0.993248f, 0.906157f, 0.143936f},
};

/// Every 15th of the 256 colours of cividis, made for readers with and without red-green blindness to see
/// nearly the same: J. R. Nunez, C. R. Anderton, R. S. Renslow, PLoS ONE 13(7), 2018, e0199239 (published
/// under CC0 with matplotlib, lib/matplotlib/_cm_listed.py).
constexpr std::array<float, 3> kCividis[] = {
    {0.000000f, 0.135112f, 0.304751f}, {0.000000f, 0.176082f, 0.407577f}, {0.087465f, 0.214879f, 0.437342f},
    {0.180503f, 0.256180f, 0.427299f}, {0.247605f, 0.296986f, 0.422917f}, {0.305886f, 0.337681f, 0.424512f},
    {0.359916f, 0.378641f, 0.431501f}, {0.411607f, 0.420145f, 0.443577f}, {0.461616f, 0.462405f, 0.461969f},
    {0.514226f, 0.505546f, 0.472640f}, {0.570607f, 0.549695f, 0.469593f}, {0.628576f, 0.595104f, 0.459641f},
    {0.687957f, 0.641966f, 0.442886f}, {0.748772f, 0.690470f, 0.418448f}, {0.811054f, 0.740801f, 0.385198f},
    {0.875057f, 0.793125f, 0.339685f}, {0.941147f, 0.847530f, 0.275815f}, {0.995737f, 0.909344f, 0.217772f},
};

constexpr std::array<float, 3> fromBytes(int red, int green, int blue) {
    return {static_cast<float>(red) / 255.0f, static_cast<float>(green) / 255.0f,
            static_cast<float>(blue) / 255.0f};
}

/// The eleven classes of RdBu from blue to red, which C. A. Brewer's ColorBrewer 2.0 (colorbrewer2.org) marks
/// as safe for colour-blind readers and for colour print.
constexpr std::array<float, 3> kBlueRed[] = {
    fromBytes(5, 48, 97),     fromBytes(33, 102, 172),  fromBytes(67, 147, 195),  fromBytes(146, 197, 222),
    fromBytes(209, 229, 240), fromBytes(247, 247, 247), fromBytes(253, 219, 199), fromBytes(244, 165, 130),
    fromBytes(214, 96, 77),   fromBytes(178, 24, 43),   fromBytes(103, 0, 31)};

/// For print without colour: high values dark, and never as light as the paper.
constexpr std::array<float, 3> kGrey[] = {{0.90f, 0.90f, 0.90f}, {0.16f, 0.16f, 0.16f}};

// What lies beyond a range differs from its end in lightness, so that it shows without colours too.
// Vermilion, green and yellow are of the eight colours that M. Okabe and K. Ito chose for colour-blind
// readers (Color Universal Design, 2008).
constexpr Rgb kVermilion{213, 94, 0}, kGreen{0, 158, 115}, kYellow{240, 228, 66};
constexpr Rgb kPaleBlue{198, 219, 239}, kPaleYellow{255, 243, 205};
constexpr Rgb kMiddleGrey{178, 178, 178}, kWhite{255, 255, 255}, kBlack{0, 0, 0};

constexpr ColorScale kScales[] = {
    {"viridis", kViridis, false, kPaleBlue, kVermilion, kMiddleGrey},
    {"cividis", kCividis, false, kPaleBlue, kVermilion, kMiddleGrey},
    {"blue-red", kBlueRed, true, kGreen, kYellow, kMiddleGrey},
    {"grey", kGrey, false, kWhite, kBlack, kPaleYellow},
};
constexpr std::string_view kNames[] = {kScales[0].name, kScales[1].name, kScales[2].name, kScales[3].name};

} // namespace

const ColorScale* ColorScale::find(std::string_view name) {
    const auto* found = std::ranges::find(kScales, name, &ColorScale::name);
    return found == std::end(kScales) ? nullptr : found;
}

Rgb ColorScale::at(double position) const {
    const double along = std::clamp(position, 0.0, 1.0) * static_cast<double>(anchors.size() - 1);
    const auto left = std::min(static_cast<std::size_t>(along), anchors.size() - 2);
    const double part = along - static_cast<double>(left);
    Rgb color{};
    for (std::size_t c = 0; c < 3; ++c) {
        const double mixed = anchors[left][c] * (1.0 - part) + anchors[left + 1][c] * part;
        color[c] = static_cast<std::uint8_t>(std::lround(mixed * 255.0));
    }
    return color;
}

std::span<const std::string_view> colorScaleNames() {
    return kNames;
}

} // namespace workbench
