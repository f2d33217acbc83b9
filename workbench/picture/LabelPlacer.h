#pragma once

#include "workbench/picture/CoverageGrid.h"

#include <span>
#include <utility>
#include <vector>

namespace workbench {

/// Finds room for labels around the marks that they belong to.
class LabelPlacer {
  public:
    /// Labels stay inside `area`; `model` says where the model is. `marks` are the centres of all marks, of
    /// the given radius. Distances are tried in multiples of `unit`. The references must outlive the placer.
    LabelPlacer(const PixelBox& area, const CoverageGrid& model, std::span<const Pixel> marks, double radius,
                double unit);

    /// The place of the label of a mark. It keeps clear of the labels that were placed before, of all marks
    /// and of the lines to them as long as there is room, then covers little of the model and is near.
    PixelBox place(std::size_t mark, double width, double height);

  private:
    double costOf(std::size_t mark, const PixelBox& box) const;

    PixelBox area_;
    const CoverageGrid& model_;
    std::span<const Pixel> marks_;
    double radius_;
    double unit_;
    std::vector<PixelBox> labels_;
    std::vector<std::pair<Pixel, Pixel>> leaders_;
};

/// The point of the box that is nearest to another point.
Pixel nearestPoint(const PixelBox& box, const Pixel& to);

} // namespace workbench
