#pragma once

#include "base/Result.h"
#include "workbench/session/Document.h"

#include <memory>
#include <string>
#include <vector>

namespace workbench::cli {

/// What the safety graph draws of a subcase.
struct SafetyCurves {
    std::string name;
    std::vector<double> displacements; ///< of the converged rows
    std::vector<double> displacementFactors;
    std::vector<double> iterations; ///< accumulated, of all rows
    std::vector<double> iterationFactors;
};

/// The module's safety graph, opened in a frame without a screen and worked like its user does.
class SafetyGraph {
  public:
    /// Opens it for the history of a name; what it has to say goes to the session's output.
    SafetyGraph(Document& document, const std::string& name);
    ~SafetyGraph();
    SafetyGraph(const SafetyGraph&) = delete;
    SafetyGraph& operator=(const SafetyGraph&) = delete;

    std::vector<SafetyCurves> curves();
    /// The chart of a subcase as SVG; `type` is the position in the box of graph types.
    std::string svg(std::size_t subcase, int type, int width, int height);
    /// A script of user actions that brings the dialog to that chart.
    static std::string script(std::size_t subcase, int type);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace workbench::cli
