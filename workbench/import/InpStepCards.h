#pragma once

#include "workbench/import/InpCards.h"

#include <array>

namespace workbench {

/// Reads the heading, the steps, what they compute and what they ask for.
class InpStepCards final : public InpCardGroup<InpStepCards> {
  public:
    using InpCardGroup::InpCardGroup;

  private:
    friend InpCardGroup;
    static const std::array<Row, 35> kCards;

    bool startHeading();
    bool headingLine(std::string_view line);
    bool startStep();
    bool stepTitleLine(std::string_view line);
    bool endStep();
    bool procedure();
    bool resultRequest();
    /// Of values in files that are not read.
    bool otherRequest() { return true; }

    bool insideStep_ = false;
};

} // namespace workbench
