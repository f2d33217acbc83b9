#pragma once

#include <cstdint>
#include <vector>

/// The result types that the host offers by default; a module may answer its own.
class ICustomResultOpt {
  public:
    virtual ~ICustomResultOpt() = default;
    /// Result-type codes offered for an analysis-type code, in the order of the list; null for the host's own
    /// choice. Owned by the object.
    virtual const std::vector<std::int32_t>* GetDefaultVresType(int analysisType) = 0;
};
