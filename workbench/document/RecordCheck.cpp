#include "workbench/document/RecordCheck.h"

#include "framework/text/CodePage.h"
#include "workbench/document/ModelState.h"
#include "workbench/document/RecordFields.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <span>
#include <tuple>

namespace workbench {

namespace {

constexpr const char* kMakeAnew = "make the document anew with vexa new, or restore it from a copy";

/// The first field of a record with a number that is not finite; empty when all are.
class NonFinite {
  public:
    template <class T>
    static std::string in(const T& value) {
        if constexpr (std::is_same_v<T, double>)
            return std::isfinite(value) ? "" : "value";
        else if constexpr (std::is_integral_v<T> || std::is_same_v<T, std::wstring>)
            return "";
        else
            return inFields(value);
    }
    template <class V>
    static std::string in(const std::vector<V>& values) {
        return inList(values);
    }
    template <class V, std::size_t N>
    static std::string in(const std::array<V, N>& values) {
        return inList(values);
    }

  private:
    template <class List>
    static std::string inList(const List& values) {
        for (const auto& value : values)
            if (auto found = in(value); !found.empty()) return found;
        return "";
    }
    template <class T>
    static std::string inFields(const T& record) {
        std::string found;
        const auto look = [&](const auto& field) {
            if (found.empty() && !in(record.*field.member).empty()) found = field.name;
        };
        std::apply([&](const auto&... field) { (look(field), ...); }, RecordFields<T>::fields);
        return found;
    }
};

std::string inQuotes(const std::wstring& name) {
    return "\"" + framework::toUtf8(name) + "\"";
}

class RecordCheck {
  public:
    explicit RecordCheck(ModelDatabase& database)
        : database_(database) {}

    Findings run() {
        std::apply([&](const auto&... pool) { (checkNumbers(pool), ...); }, database_.state().pools);
        each<DPoolProp>("property", [&](const tagTProp& property) {
            for (const ItrKey key : property.materialKeys)
                require<DPoolMatl>(key, "material");
        });
        each<DPoolVXMcas>("analysis", [&](const tagTVXMcas& analysis) {
            if (analysis.outputControlKey) require<DPoolVXOctr>(analysis.outputControlKey, "output control");
        });
        if (database_.state().meshIsLoaded)
            each<DPoolMset>("mesh set", [&](const tagTMset& set) {
                requireNumbers(set.elementNumbers, database_.mesh().elementNumbers, "element");
                requireNumbers(set.nodeNumbers, database_.mesh().nodeNumbers, "node");
            });
        each<DPoolSNFun>("S-N curve",
                         [&](const tagSNFun& curve) { requireAscending(curve.points, "cycles", true); });
        each<DPoolFLFun>("load function", [&](const tagFLFun& function) {
            requireAscending(function.points, "times", false);
        });
        each<DPoolFatg>("fatigue definition", [&](const tagTFatg& definition) { checkFatigue(definition); });
        return std::move(findings_);
    }

  private:
    void report(const std::string& problem, const std::string& remedy = kMakeAnew) {
        findings_.push_back({item_, problem, remedy});
    }

    /// Visits the records of a pool; what is reported meanwhile belongs to the record.
    template <class Pool, class Visit>
    void each(const char* kind, Visit visit) {
        const auto* pool = database_.Pool<Pool>();
        for (const ItrKey key : pool->GetKeyList()) {
            const auto& record = pool->GetAtNU(key);
            item_ = std::string(kind) + " " + inQuotes(record.name);
            visit(record);
        }
    }

    template <class Pool>
    void checkNumbers(const Pool& pool) {
        for (const auto& [key, record] : pool.records()) {
            const std::string field = NonFinite::in(record);
            if (field.empty()) continue;
            item_ = "record " + std::to_string(key) + " (" + pool.name() + ") " + inQuotes(record.name);
            report("its field \"" + field + "\" has a number that is not finite");
        }
    }

    template <class Pool>
    bool require(ItrKey key, const char* kind) {
        if (database_.Pool<Pool>()->Exist(key)) return true;
        report("it refers to " + std::string(kind) + " key " + std::to_string(key) +
               ", which does not exist");
        return false;
    }

    void requireNumbers(const std::vector<std::int32_t>& numbers, std::span<const std::int32_t> known,
                        const char* kind) {
        std::size_t missing = 0;
        std::int32_t first = 0;
        for (const std::int32_t number : numbers)
            if (!std::ranges::binary_search(known, number) && missing++ == 0) first = number;
        if (missing)
            report("it names " + std::string(kind) + " " + std::to_string(first) +
                   (missing > 1 ? " and " + std::to_string(missing - 1) + " more" : "") +
                   ", which the mesh does not have");
        if (std::ranges::adjacent_find(numbers, std::greater_equal<>()) != numbers.end())
            report("its " + std::string(kind) + " numbers do not ascend");
    }

    void requireAscending(const std::vector<std::array<double, 2>>& points, const char* what, bool positive) {
        for (std::size_t i = 0; i < points.size(); ++i) {
            const bool ordered = i == 0 || points[i][0] > points[i - 1][0];
            const bool inRange = !positive || (points[i][0] > 0 && points[i][1] > 0);
            if (ordered && inRange) continue;
            return report("its point " + std::to_string(i + 1) +
                          (ordered ? " is not positive" : std::string(" breaks the order of its ") + what));
        }
    }

    void checkFatigue(const tagTFatg& definition) {
        require<DPoolVXMcas>(definition.analysisKey, "analysis");
        if (require<DPoolVXMcas>(definition.resultAnalysisKey, "result analysis")) checkResult(definition);
        if (definition.fatigueType < FatigueType::StressLifeCases ||
            definition.fatigueType > FatigueType::StressAndStrainSteps)
            report("its type " + std::to_string(definition.fatigueType) + " is unknown");
        if (definition.loadCycleCount < 1) report("its number of load cycles is below 1");
        std::set<ItrKey> materials;
        const auto checkMaterial = [&](ItrKey key) {
            require<DPoolMatl>(key, "material");
            if (!materials.insert(key).second)
                report("it has the material with key " + std::to_string(key) + " twice");
        };
        for (const T_FATG_STRESS_LIFE_D& entry : definition.stressLifeMaterials) {
            checkMaterial(entry.materialKey);
            if (require<DPoolSNFun>(entry.curveKey, "S-N curve") && entry.curveType == 1 &&
                database_.Pool<DPoolSNFun>()->GetAtNU(entry.curveKey).points.size() < 2)
                report("its S-N curve with key " + std::to_string(entry.curveKey) +
                       " has fewer than two points");
        }
        materials.clear();
        for (const T_FATG_STRAIN_LIFE_D& entry : definition.strainLifeMaterials)
            checkMaterial(entry.materialKey);
        for (const T_FATG_LOAD_D& load : definition.loads)
            if (load.loadFunctionKey) require<DPoolFLFun>(load.loadFunctionKey, "load function");
    }

    /// A run deletes the file of the result analysis.
    void checkResult(const tagTFatg& definition) {
        if (definition.resultAnalysisKey == definition.analysisKey)
            report("its result analysis is the analysis that it reads, whose results a run would replace");
        const auto [other, isNew] = owners_.emplace(definition.resultAnalysisKey, definition.name);
        if (!isNew)
            report("it shares its result analysis with the fatigue definition " + inQuotes(other->second));
    }

    ModelDatabase& database_;
    Findings findings_;
    std::string item_;
    std::map<ItrKey, std::wstring> owners_; ///< definitions by their result analysis
};

} // namespace

Findings checkRecords(ModelDatabase& database) {
    return RecordCheck(database).run();
}

} // namespace workbench
