#include "module/fatigue/ResultIdTable.h"

#include <algorithm>

namespace fatigue {
namespace {

struct GroupSlots {
    int first;
    int count;
    std::span<const TensorComponent>
        primary; ///< components of the first slots; equivalents and the rest follow
    std::span<const TensorComponent> paired;
};

constexpr TensorComponent kSpatial[] = {XX, YY, ZZ, XY, YZ, ZX};
constexpr TensorComponent kInPlane[] = {XX, YY, XY};
constexpr TensorComponent kInPlaneAndThrough[] = {XX, YY, ZZ, XY};

constexpr std::array<GroupSlots, kGroupCount> kGroups{{
    {0, 7, kSpatial, kSpatial},
    {7, 8, kInPlane, kInPlane},
    {15, 4, kInPlane, kInPlane},
    {19, 5, kInPlaneAndThrough, kInPlaneAndThrough},
    {24, 4, kInPlane, kInPlane},
    // Plane strain has no strain through the thickness, so its paired slots hold xx, yy, xy and the
    // equivalent.
    {28, 5, kInPlaneAndThrough, kInPlane},
}};

constexpr ResultIds kFullTable{
    312101, 312102, 312103, 312104, 312105, 312106, 312114,         //
    412101, 412102, 412104, 412114, 412151, 412152, 412154, 412164, //
    452101, 452102, 452104, 452114,                                 //
    482101, 482102, 482103, 482104, 482114,                         //
    422131, 422132, 422134, 422184,                                 //
    432131, 432132, 432133, 432134, 432184,                         //
    311101, 311102, 311103, 311104, 311105, 311106, 311114,         //
    411101, 411102, 411104, 411114, 411151, 411152, 411154, 411164, //
    451101, 451102, 451104, 451114,                                 //
    481101, 481102, 481103, 481104, 481114,                         //
    421131, 421132, 421134, 421184,                                 //
    431131, 431132, 431134, 431184,
};

constexpr std::array<std::int32_t, 15> kEditionCPrimary{60010, 60011, 60012, 60013, 60014, 60015, 60031, 7020,
                                                        7021,  7023,  7033,  7420,  7421,  7423,  7433};
constexpr std::array<std::int32_t, 15> kEditionCPaired{60050, 60051, 60052, 60053, 60054, 60055, 60061, 7065,
                                                       7066,  7068,  7077,  7465,  7466,  7468,  7477};

} // namespace

ResultIds resultIds(bool editionC) {
    if (!editionC) return kFullTable;
    ResultIds ids{};
    std::ranges::copy(kEditionCPrimary, ids.begin());
    std::ranges::copy(kEditionCPaired, ids.begin() + kPairDistance);
    return ids;
}

std::optional<int> pairedSlot(int slot) {
    const int paired = slot + kPairDistance;
    if (paired >= kSlotCount) return std::nullopt;
    return paired;
}

std::vector<unsigned> requiredIds(const ResultIds& ids, ElementGroup group, bool withPaired) {
    const GroupSlots& slots = kGroups[static_cast<std::size_t>(group)];
    std::vector<unsigned> required;
    const auto require = [&](int slot) {
        if (const std::int32_t id = ids[static_cast<std::size_t>(slot)])
            required.push_back(static_cast<unsigned>(id));
    };
    for (int slot = slots.first; slot < slots.first + slots.count; ++slot)
        require(slot);
    if (withPaired)
        for (int slot = slots.first; slot < slots.first + slots.count; ++slot)
            if (const auto paired = pairedSlot(slot)) require(*paired);
    return required;
}

std::vector<ComponentSource> tensorSources(const ResultIds& ids, ElementGroup group, ResultForm form) {
    const GroupSlots& slots = kGroups[static_cast<std::size_t>(group)];
    std::vector<ComponentSource> sources;
    const bool paired = form == ResultForm::Paired;
    int slot = slots.first + (paired ? kPairDistance : 0);
    for (const TensorComponent component : paired ? slots.paired : slots.primary)
        sources.push_back({static_cast<unsigned>(ids[static_cast<std::size_t>(slot++)]), component});
    return sources;
}

} // namespace fatigue
