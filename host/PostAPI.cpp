#include "host/PostAPI.h"

#include <algorithm>
#include <iterator>

ResultCategory IPostAPI::GetResCat(long type) {
    if (type < 100) return ResultCategory::None;
    if (type < 500) return static_cast<ResultCategory>(type / 100);
    if (type < 1000) return ResultCategory::None;

    struct Family {
        long code; ///< of the strains; the stresses have the next one
        ResultCategory category;
    };
    constexpr Family families[] = {
        {311, ResultCategory::Solid},       {411, ResultCategory::Plate},
        {451, ResultCategory::Membrane},    {481, ResultCategory::Axisymmetric},
        {421, ResultCategory::PlaneStress}, {431, ResultCategory::PlaneStrain},
    };
    while (type >= 1000)
        type /= 10;
    const auto found = std::find_if(std::begin(families), std::end(families), [&](const Family& family) {
        return type == family.code || type == family.code + 1;
    });
    return found != std::end(families) ? found->category : ResultCategory::None;
}
