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

/// For print without colour: high values dark, and never as light as the paper.
constexpr std::array<float, 3> kGrey[] = {{0.93f, 0.93f, 0.93f}, {0.13f, 0.13f, 0.13f}};

constexpr ColorScale kScales[] = {{"viridis", kViridis}, {"grey", kGrey}};
constexpr std::string_view kNames[] = {kScales[0].name, kScales[1].name};

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
