#pragma once

#include "framework/Export.h"
#include "host/PostAPI.h"
#include "host/VResult.h"

#include <map>
#include <memory>

/// Builds result tables that a step does not hold, such as derived components.
class IVResultFactory {
  public:
    virtual ~IVResultFactory() = default;
    /// The table of a result type at a step, owned by the caller; null when it cannot be built.
    virtual std::unique_ptr<CVResult> Create(CPOHVCase& step, long type) = 0;
};

/// The factories of the process by result category.
class VEXA_API CVResultFactoryManager {
  public:
    static CVResultFactoryManager& GetInstance();
    /// The factory of the type's category; null when none is registered or the type has no category.
    IVResultFactory* GetVResultFactory(long type) const;
    /// Registers the factory of a category and answers the previous one; null takes it away. The factory must
    /// stay until then.
    IVResultFactory* SetVResultFactory(ResultCategory category, IVResultFactory* factory);

  private:
    CVResultFactoryManager() = default;
    std::map<ResultCategory, IVResultFactory*> m_factories;
};
