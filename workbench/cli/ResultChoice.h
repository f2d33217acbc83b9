#pragma once

#include "base/Result.h"
#include "workbench/cli/CommandLine.h"
#include "workbench/session/Document.h"

#include <string>

namespace workbench::cli {

/// The options that choose one result table of a document.
struct ResultChoice {
    std::string model;
    std::string analysis;
    std::string caseName;
    std::string step;
    std::string component;

    void addTo(CommandLine& command);
    void addStepTo(CommandLine& command); ///< all but the component

    /// The step that is named, or the one of that number in its case. A name that does not exist is answered
    /// with those that do.
    Result<CPOHVCase*> findStep(Document& document) const;

    /// The table of the component of that step.
    Result<CVResult*> find(Document& document) const;
};

/// The component of a step that a person means: its identifier, or its name in English or Korean, of which a
/// part will do when no other component has it. Upper and lower case are the same.
Result<unsigned> componentOf(CPOHVCase& step, const std::string& text);

} // namespace workbench::cli
