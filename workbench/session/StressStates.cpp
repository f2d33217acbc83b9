#include "workbench/session/StressStates.h"

#include "host/DPool.h"
#include "module/stability/StressSources.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <numbers>

namespace workbench {
namespace {

/// Element families in the order of stability::kMajorStressCodes.
struct SourceFamily {
    unsigned tensor; ///< identifier of the component before xx
    bool planar;
    int propertyType;
};
constexpr SourceFamily kFamilies[] = {
    {312100, false, PropertyType::Solid},      {412100, true, PropertyType::Shell},
    {432130, true, PropertyType::PlaneStrain}, {422130, true, PropertyType::PlaneStress},
    {452100, true, PropertyType::Membrane},
};
constexpr unsigned kPlanarParts[] = {1, 2, 4};
constexpr unsigned kSolidParts[] = {1, 2, 3, 4, 5, 6};

/// Tables of one step that stand at the same places, in memory as long as this lives.
class Tables {
  public:
    /// False when the step lacks one of them; an error when they cannot be read or do not fit each other.
    Result<bool> load(CPOHVCase& step, unsigned base, std::span<const unsigned> parts) {
        std::vector<CVResult*> found;
        for (const unsigned part : parts)
            if (CVResult* table = step.GetVResult(base + part)) found.push_back(table);
        if (found.size() != parts.size()) return false;
        for (CVResult* table : found) {
            leases_.push_back(std::make_unique<CVResultLease>(table));
            if (!*leases_.back())
                return Error{"component " + std::to_string(table->GetId()) + " cannot be read"};
            const T_RESULT_TABLE_D& first = at(0);
            const T_RESULT_TABLE_D& last = at(leases_.size() - 1);
            if (last.location != first.location || last.values.size() != first.values.size() ||
                !std::ranges::equal(last.items, first.items))
                return Error{"components " + std::to_string(first.id) + " and " + std::to_string(last.id) +
                             " do not stand at the same places"};
        }
        return true;
    }
    const T_RESULT_TABLE_D& at(std::size_t table) const { return **leases_[table]; }

  private:
    std::vector<std::unique_ptr<CVResultLease>> leases_;
};

ExtremePrincipals inPlane(double xx, double yy, double xy) {
    const double center = (xx + yy) / 2;
    const double radius = std::hypot((xx - yy) / 2, xy);
    return {center + radius, center - radius};
}

class Gathering {
  public:
    Gathering(Document& document, CPOHVCase& step)
        : document_(document)
        , mesh_(document.database().mesh())
        , step_(step) {}

    Result<std::map<ItrKey, StressStates>> run() {
        for (std::size_t family = 0; family < std::size(kFamilies); ++family)
            if (auto gathered = gather(family); !gathered) return gathered.error();
        if (!result_.empty()) return std::move(result_);
        return Error{
            "the step has no stresses of solids, plates, membranes, plane strain or plane stress, of "
            "which local safety is made"};
    }

  private:
    /// Takes the principal stresses of a family, from its own tables or from its tensor.
    Result<void> gather(std::size_t family) {
        const SourceFamily& source = kFamilies[family];
        const unsigned codes[] = {stability::kMajorStressCodes[family], stability::kMinorStressCodes[family]};
        Tables principals;
        const auto given = principals.load(step_, 0, codes);
        if (!given) return given.error();
        if (*given) {
            distribute(family, principals.at(0), [&](std::size_t i) {
                return ExtremePrincipals{principals.at(0).values[i], principals.at(1).values[i]};
            });
            return {};
        }
        Tables tensor;
        const auto parts = source.planar ? std::span<const unsigned>(kPlanarParts) : kSolidParts;
        const auto loaded = tensor.load(step_, source.tensor, parts);
        if (!loaded) return loaded.error();
        if (!*loaded) return {};
        distribute(family, tensor.at(0), [&](std::size_t i) {
            if (source.planar)
                return inPlane(tensor.at(0).values[i], tensor.at(1).values[i], tensor.at(2).values[i]);
            double components[6];
            for (std::size_t part = 0; part < 6; ++part)
                components[part] = tensor.at(part).values[i];
            return extremePrincipals(components);
        });
        return {};
    }

    static void add(StressStates& states, std::uint32_t node, const ExtremePrincipals& stress) {
        states.nodes.push_back(node);
        states.major.push_back(stress.major);
        states.minor.push_back(stress.minor);
    }

    template <class Stress>
    void distribute(std::size_t family, const T_RESULT_TABLE_D& table, const Stress& stress) {
        if (table.location == ResultLocation::ElementCorner)
            distributeCorners(table, stress);
        else
            distributeNodes(family, table, stress);
    }

    template <class Stress>
    void distributeCorners(const T_RESULT_TABLE_D& table, const Stress& stress) {
        const std::size_t count = table.items.empty() ? mesh_.elementCount() : table.items.size();
        std::size_t value = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t element = table.items.empty() ? i : table.items[i];
            StressStates& states = result_[mesh_.elementPropertyKeys[element]];
            for (const std::uint32_t node : mesh_.nodesOf(element)) {
                add(states, node, stress(value));
                ++value;
            }
        }
    }

    /// A value at a node counts once for each property of the family that meets there.
    template <class Stress>
    void distributeNodes(std::size_t family, const T_RESULT_TABLE_D& table, const Stress& stress) {
        constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();
        std::vector<std::uint32_t> valueOf(mesh_.nodeCount(), kNone);
        for (std::size_t i = 0; i < table.values.size(); ++i)
            valueOf[table.items.empty() ? i : table.items[i]] = static_cast<std::uint32_t>(i);
        std::map<ItrKey, std::vector<bool>> seen;
        for (std::size_t element = 0; element < mesh_.elementCount(); ++element) {
            const ItrKey property = mesh_.elementPropertyKeys[element];
            if (typeOf(property) != kFamilies[family].propertyType) continue;
            std::vector<bool>& visited = seen[property];
            visited.resize(mesh_.nodeCount());
            StressStates& states = result_[property];
            for (const std::uint32_t node : mesh_.nodesOf(element)) {
                if (visited[node] || valueOf[node] == kNone) continue;
                visited[node] = true;
                add(states, node, stress(valueOf[node]));
            }
        }
    }

    int typeOf(ItrKey property) {
        const auto [entry, isNew] = types_.try_emplace(property, 0);
        if (isNew) {
            tagTProp record;
            if (document_.database().Pool<DPoolProp>()->Get(property, record))
                entry->second = record.typeCode;
        }
        return entry->second;
    }

    Document& document_;
    const T_QM_MESH_D mesh_;
    CPOHVCase& step_;
    std::map<ItrKey, int> types_; ///< of properties
    std::map<ItrKey, StressStates> result_;
};

} // namespace

ExtremePrincipals extremePrincipals(const double (&tensor)[6]) {
    const auto [xx, yy, zz, xy, yz, zx] = tensor;
    const double mean = (xx + yy + zz) / 3;
    const double x = xx - mean, y = yy - mean, z = zz - mean;
    const double j2 = (x * x + y * y + z * z) / 2 + xy * xy + yz * yz + zx * zx;
    if (!(j2 > 0)) return {mean, mean};
    const double j3 = x * (y * z - yz * yz) - xy * (xy * z - yz * zx) + zx * (xy * yz - y * zx);
    const double radius = 2 * std::sqrt(j2 / 3);
    const double cosine = std::clamp(3 * std::sqrt(3.0) / 2 * j3 / std::pow(j2, 1.5), -1.0, 1.0);
    const double lode = std::acos(cosine) / 3; // from 0 to 60 degrees
    return {mean + radius * std::cos(lode), mean + radius * std::cos(lode + 2 * std::numbers::pi / 3)};
}

Result<std::map<ItrKey, StressStates>> stressStates(Document& document, CPOHVCase& step) {
    return Gathering(document, step).run();
}

} // namespace workbench
