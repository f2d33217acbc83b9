#include "host/VResultFactory.h"

#include <utility>

CVResultFactoryManager& CVResultFactoryManager::GetInstance() {
    static CVResultFactoryManager instance;
    return instance;
}

IVResultFactory* CVResultFactoryManager::GetVResultFactory(long type) const {
    const ResultCategory category = IPostAPI::GetResCat(type);
    const auto found = m_factories.find(category);
    return category != ResultCategory::None && found != m_factories.end() ? found->second : nullptr;
}

IVResultFactory* CVResultFactoryManager::SetVResultFactory(ResultCategory category,
                                                           IVResultFactory* factory) {
    return std::exchange(m_factories[category], factory);
}
