#pragma once

#include "base/Result.h"

#include <string>
#include <vector>

namespace workbench {

/// The faults of a project deck, gathered so that its author sees them at once.
class DeckErrors {
  public:
    explicit DeckErrors(std::string fileName)
        : fileName_(std::move(fileName)) {}

    void add(int line, const std::string& message);
    bool empty() const { return faults_.empty(); }
    /// All of them in the order of their lines, at most twenty, one a line.
    Error toError() const;

  private:
    struct Fault {
        int line;
        std::string message;
    };
    std::string fileName_;
    std::vector<Fault> faults_;
};

} // namespace workbench
