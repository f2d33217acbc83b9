#pragma once

#include "framework/Export.h"
#include "host/records/ItrKey.h"

class CQMDocBase;

/// Questions to the database that span several pools.
class VEXA_API IAppDB {
  public:
    static IAppDB& Instance();
    /// The first material of a property; 0 when it has none or is unknown.
    ItrKey GetMaterialOfProperty(CQMDocBase& doc, ItrKey propertyKey) const;
};
