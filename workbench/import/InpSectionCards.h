#pragma once

#include "workbench/import/InpCards.h"

#include <array>
#include <optional>

namespace workbench {

/// Reads sections and orientations.
class InpSectionCards final : public InpCardGroup<InpSectionCards> {
  public:
    using InpCardGroup::InpCardGroup;
    /// Sections of sets that are not there are left out, and materials that are not there forgotten.
    void checkSections();

  private:
    friend InpCardGroup;
    static const std::array<Row, 11> kCards;

    bool startSection();
    bool startOrientation();
    /// Two points; a further line turns the axes about one of them, which is not followed.
    bool orientationLine(std::string_view line);
    bool startBeamSection();
    bool startConnectorSection();
    /// A section without material where `materialParameter` is empty or the card has none.
    bool beginSection(std::string_view materialParameter);
    void addSectionMaterial(const std::string& name);
    bool thicknessLine(std::string_view line);
    /// A layer of a composite shell: thickness, an unused field, material, orientation.
    bool layerLine(std::string_view line);

    static constexpr std::size_t kMostOrientations = 65534;
    static constexpr int kMostLayers = 65535;

    std::optional<std::size_t> section_; ///< whose data lines are read
    int sectionLines_ = 0;
    int orientationLines_ = 0;
};

} // namespace workbench
