#pragma once

/// The tree of works (model parts, analyses, results) beside the host's views.
class IWorksTreeManager {
  public:
    virtual ~IWorksTreeManager() = default;
    virtual void ShowHideLabel(int show) = 0; ///< shows (nonzero) or hides the labels of the tree's items
};
