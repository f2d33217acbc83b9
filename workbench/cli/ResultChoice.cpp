#include "workbench/cli/ResultChoice.h"

#include "workbench/results/ResultQuery.h"

#include <CLI/CLI.hpp>

namespace workbench::cli {

void ResultChoice::addTo(CLI::App& command) {
    command.add_option("model", model, "Document (.wkm)")->required();
    command.add_option("--analysis", analysis, "Analysis by name")->required();
    command.add_option("--case", caseName, "Case by name (default: the only one)");
    command.add_option("--step", step, "Step by name (default: the last)");
    command.add_option("--component", component, "Identifier of the component, as `vexa info` lists them")
        ->required();
}

Result<CVResult*> ResultChoice::find(Document& document) const {
    auto found = findStep(document.results(), analysis, caseName, step);
    if (!found) return found.error();
    return findTable(**found, component);
}

} // namespace workbench::cli
