#pragma once

#include "workbench/import/InpCards.h"

#include <array>
#include <limits>

namespace workbench {

/// Reads materials. Linear elasticity and density are kept, the rest costs a warning.
class InpMaterialCards final : public InpCardGroup<InpMaterialCards> {
  public:
    using InpCardGroup::InpCardGroup;

  private:
    friend InpCardGroup;
    static const std::array<Row, 21> kCards;

    bool startMaterial();
    SolverMaterial& material();
    bool insideMaterial();
    /// A law in place of linear elasticity.
    bool otherLaw();
    bool otherData();
    bool startElastic();
    bool elasticLine(std::string_view line);
    bool startDensity();
    bool densityLine(std::string_view line);
    bool noteTemperatures();

    static constexpr std::size_t kNoMaterial = std::numeric_limits<std::size_t>::max();
    static constexpr std::size_t kIgnoredMaterial = kNoMaterial - 1;

    std::size_t material_ = kNoMaterial; ///< that cards of constants belong to
    SolverMaterial ignoredMaterial_;
    int constantsLines_ = 0;
};

} // namespace workbench
