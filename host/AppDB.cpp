#include "host/AppDB.h"

#include "host/QMDocBase.h"

IAppDB& IAppDB::Instance() {
    static IAppDB instance;
    return instance;
}

ItrKey IAppDB::GetMaterialOfProperty(CQMDocBase& doc, ItrKey propertyKey) const {
    const auto* properties = doc.GetDBSession().Pool<DPoolProp>();
    if (!properties) return 0;
    const auto materials = properties->GetMatlItr(propertyKey);
    return materials.empty() ? 0 : materials.front();
}
