#pragma once

#include "base/Result.h"
#include "workbench/session/Document.h"

#include <string>

namespace CLI {
class App;
}

namespace workbench::cli {

/// The options that choose one result table of a document.
struct ResultChoice {
    std::string model;
    std::string analysis;
    std::string caseName;
    std::string step;
    unsigned component = 0;

    void addTo(CLI::App& command);
    Result<CVResult*> find(Document& document) const;
};

} // namespace workbench::cli
