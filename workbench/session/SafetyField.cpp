#include "workbench/session/SafetyField.h"

#include "framework/text/CodePage.h"
#include "host/AppDB.h"
#include "module/stability/VEXAGpsSafetyRate.h"
#include "resultfile/ResultFile.h"
#include "workbench/results/Catalogue.h"
#include "workbench/results/ResultSet.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <numbers>

namespace workbench {
namespace {

using stability::RateMode;

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
    std::size_t count() const { return leases_.size(); }

  private:
    std::vector<std::unique_ptr<CVResultLease>> leases_;
};

ExtremePrincipals inPlane(double xx, double yy, double xy) {
    const double center = (xx + yy) / 2;
    const double radius = std::hypot((xx - yy) / 2, xy);
    return {center + radius, center - radius};
}

/// The states that share a property, in columns.
struct States {
    std::vector<std::uint32_t> nodes;
    std::vector<double> major, minor;

    void add(std::uint32_t node, const ExtremePrincipals& stress) {
        nodes.push_back(node);
        major.push_back(stress.major);
        minor.push_back(stress.minor);
    }
};

class SafetyField {
  public:
    SafetyField(Document& document, const SafetyRequest& request)
        : document_(document)
        , mesh_(document.database().mesh())
        , step_(*request.step)
        , request_(request)
        , best_(mesh_.nodeCount()) {
        report_.mode = request.mode.value_or(modeOfAnalysis());
    }

    Result<SafetyReport> run() {
        auto set = findResultSet(document_.database(), document_.results(), document_.path().parent_path(),
                                 "_SFT_", request_.name);
        if (!set) return set.error();
        report_.file = set->file;
        for (std::size_t family = 0; family < std::size(kFamilies); ++family)
            if (auto gathered = gather(family); !gathered) return gathered.error();
        if (states_.empty())
            return Error{
                "the step has no stresses of solids, plates, membranes, plane strain or plane stress, of "
                "which local safety is made"};
        if (auto evaluated = evaluate(); !evaluated) return evaluated.error();
        if (auto written = write(*set); !written) return written.error();
        const ItrKey model = step_.GetCase()->GetAnalysis()->GetKey();
        if (auto done =
                registerResultSet(document_.database(), document_.results(), *set, model, 2, L"Local safety");
            !done)
            return done.error();
        return std::move(report_);
    }

  private:
    RateMode modeOfAnalysis() const {
        auto& database = document_.database();
        tagTVXMcas analysis;
        tagTVXOctr control;
        const bool known =
            database.Pool<DPoolVXMcas>()->Get(step_.GetCase()->GetAnalysis()->GetKey(), analysis) &&
            database.Pool<DPoolVXOctr>()->Get(analysis.outputControlKey, control);
        return known && control.stressRatio ? RateMode::StressRatio : RateMode::FactorOfSafety;
    }

    /// Takes the principal stresses of a family, from its own tables or from its tensor.
    Result<void> gather(std::size_t family) {
        const SourceFamily& source = kFamilies[family];
        const unsigned codes[] = {stability::kMajorStressCodes[family], stability::kMinorStressCodes[family]};
        Tables principals;
        const auto given = principals.load(step_, 0, codes);
        if (!given) return given.error();
        if (*given)
            return distribute(family, principals.at(0), [&](std::size_t i) {
                return ExtremePrincipals{principals.at(0).values[i], principals.at(1).values[i]};
            });
        Tables tensor;
        const auto parts = source.planar ? std::span<const unsigned>(kPlanarParts) : kSolidParts;
        const auto loaded = tensor.load(step_, source.tensor, parts);
        if (!loaded) return loaded.error();
        if (!*loaded) return {};
        return distribute(family, tensor.at(0), [&](std::size_t i) {
            if (source.planar)
                return inPlane(tensor.at(0).values[i], tensor.at(1).values[i], tensor.at(2).values[i]);
            double components[6];
            for (std::size_t part = 0; part < 6; ++part)
                components[part] = tensor.at(part).values[i];
            return extremePrincipals(components);
        });
    }

    template <class Stress>
    Result<void> distribute(std::size_t family, const T_RESULT_TABLE_D& table, const Stress& stress) {
        if (table.location == ResultLocation::ElementCorner)
            distributeCorners(table, stress);
        else
            distributeNodes(family, table, stress);
        return {};
    }

    template <class Stress>
    void distributeCorners(const T_RESULT_TABLE_D& table, const Stress& stress) {
        const std::size_t count = table.items.empty() ? mesh_.elementCount() : table.items.size();
        std::size_t value = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t element = table.items.empty() ? i : table.items[i];
            States& states = states_[mesh_.elementPropertyKeys[element]];
            for (const std::uint32_t node : mesh_.nodesOf(element)) {
                states.add(node, stress(value));
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
            States& states = states_[property];
            for (const std::uint32_t node : mesh_.nodesOf(element)) {
                if (visited[node] || valueOf[node] == kNone) continue;
                visited[node] = true;
                states.add(node, stress(valueOf[node]));
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

    Result<void> evaluate() {
        bool anyStrength = false;
        std::vector<double> rates;
        for (const auto& [property, states] : states_) {
            tagTMatl material;
            const ItrKey key = IAppDB::Instance().GetMaterialOfProperty(document_, property);
            if (key == 0 || !document_.database().Pool<DPoolMatl>()->Get(key, material)) continue;
            const auto kind = stability::rateOf(material);
            if (kind == stability::RateOf::Refused) continue;
            const bool hasStrength = kind == stability::RateOf::Strength;
            anyStrength = anyStrength || hasStrength;
            const stability::Strength strength = stability::strengthOf(material);
            rates.assign(states.nodes.size(), 0);
            if (hasStrength)
                stability::safetyRates(strength, report_.mode, states.major, states.minor, rates);
            for (std::size_t i = 0; i < rates.size(); ++i)
                take({states.nodes[i], rates[i], hasStrength ? strength.cohesion : 0,
                      hasStrength ? strength.frictionAngle : 0, states.major[i], states.minor[i],
                      hasStrength});
            report_.states += rates.size();
        }
        if (!anyStrength)
            return Error{
                "no material of the stresses has a strength; give it cohesion and friction_angle in the "
                "[[material]] of the project deck and make the document anew"};
        collect();
        return {};
    }

    void take(const NodeSafety& state) {
        auto& best = best_[state.node];
        if (!best || isLessSafe(state, *best, report_.mode)) best = state;
    }

    void collect() {
        std::size_t left = 0;
        for (const auto& state : best_) {
            if (!state) continue;
            if (std::isfinite(static_cast<float>(state->rate)))
                report_.nodes.push_back(*state);
            else
                ++left;
        }
        if (left)
            report_.warnings.push_back(
                "left out: " + std::to_string(left) +
                " nodes whose rate is not finite, where the mean stress uses the whole "
                "strength up");
    }

    Result<void> write(const ResultSet& set) {
        auto writer = resultfile::Writer::create(set.file, set.name, "vexa local safety");
        if (!writer) return writer.error();
        std::vector<std::int32_t> corners(mesh_.elementCount());
        for (std::size_t e = 0; e < corners.size(); ++e)
            corners[e] = static_cast<std::int32_t>(mesh_.nodesOf(e).size());
        if (auto done = writer->setMesh({mesh_.nodeNumbers, mesh_.elementNumbers, corners}); !done)
            return done;
        std::string items;
        if (report_.nodes.size() != mesh_.nodeCount()) {
            items = "safety";
            std::vector<std::uint32_t> positions;
            for (const NodeSafety& node : report_.nodes)
                positions.push_back(node.node);
            if (auto done = writer->addItems(items, resultfile::Location::Node, positions); !done)
                return done;
        }
        if (auto done = writer->beginCase(framework::toUtf8(step_.GetCase()->GetName())); !done) return done;
        if (auto done = writer->beginStep(framework::toUtf8(step_.GetName()), step_.GetStepValue()); !done)
            return done;
        const bool isRatio = report_.mode == RateMode::StressRatio;
        const std::pair<unsigned, double NodeSafety::*> tables[] = {
            {isRatio ? safety::kStressRatio : safety::kFactor, &NodeSafety::rate},
            {safety::kCohesion, &NodeSafety::cohesion},
            {safety::kFrictionAngle, &NodeSafety::frictionAngle},
            {safety::kMajorStress, &NodeSafety::major},
            {safety::kMinorStress, &NodeSafety::minor},
        };
        std::vector<float> values(report_.nodes.size());
        for (const auto& [id, member] : tables) {
            std::ranges::transform(report_.nodes, values.begin(), [member](const NodeSafety& node) {
                return static_cast<float>(node.*member);
            });
            if (auto done = writer->writeTable(id, resultfile::Location::Node, values, items); !done)
                return done;
        }
        return writer->commit();
    }

    Document& document_;
    const T_QM_MESH_D mesh_;
    CPOHVCase& step_;
    const SafetyRequest& request_;
    std::map<ItrKey, States> states_; ///< by property
    std::map<ItrKey, int> types_;
    std::vector<std::optional<NodeSafety>> best_; ///< by node
    SafetyReport report_;
};

/// How safe a rate is, the more the safer.
double safetyOf(const NodeSafety& state, RateMode mode) {
    constexpr double kMost = std::numeric_limits<double>::infinity();
    if (!state.hasStrength) return kMost;
    if (mode == RateMode::StressRatio) // negative and undefined beyond the apex
        return state.rate >= 0 ? -state.rate : -kMost;
    if (state.rate == stability::kUndefinedRate) return std::numeric_limits<double>::max();
    return state.rate == stability::kApexRate ? 0 : state.rate;
}

} // namespace

bool isLessSafe(const NodeSafety& a, const NodeSafety& b, RateMode mode) {
    return safetyOf(a, mode) < safetyOf(b, mode);
}

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

Result<SafetyReport> computeSafety(Document& document, const SafetyRequest& request) {
    return SafetyField(document, request).run();
}

} // namespace workbench
