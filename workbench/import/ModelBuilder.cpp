#include "workbench/import/ModelBuilder.h"

#include "framework/text/CodePage.h"
#include "workbench/import/Names.h"
#include "workbench/import/NumberIndex.h"

#include <algorithm>
#include <array>

namespace workbench {
namespace {

/// Analysis-type code of the analyses that fatigue results are registered under.
constexpr std::int32_t kFatigueAnalysis = 999;

std::wstring wide(const std::string& text) {
    return framework::fromUtf8(text);
}

/// Adds a record to its pool and answers its key.
template <class Pool>
Result<ItrKey> addRecord(ModelDatabase& database, const typename Pool::Record& record, const char* kind) {
    Pool* pool = database.Pool<Pool>();
    const ItrKey key = pool ? pool->TR_Add(record) : 0;
    if (key == 0)
        return Error{std::string("the document does not take the ") + kind + " '" +
                     framework::toUtf8(record.name) + "'"};
    return key;
}

Result<std::vector<ItrKey>> addMaterials(const SolverDeck& deck, ModelDatabase& database) {
    std::vector<ItrKey> keys;
    for (const SolverMaterial& material : deck.materials) {
        tagTMatl record;
        record.number = static_cast<std::int32_t>(keys.size()) + 1;
        record.name = wide(material.name);
        record.elasticModulus = material.elasticModulus;
        record.poissonRatio = material.poissonRatio;
        record.density = material.density;
        if (const auto& strength = material.strength) {
            record.strengthDefined = 1;
            record.cohesion = strength->cohesion;
            record.frictionAngle = strength->frictionAngle;
            record.tensileCutoff = strength->tensileStrength.has_value();
            record.tensileStrength = strength->tensileStrength.value_or(0);
        }
        const auto key = addRecord<DPoolMatl>(database, record, "material");
        if (!key) return key.error();
        keys.push_back(*key);
    }
    return keys;
}

template <class Records>
std::size_t findName(const Records& records, const std::string& name) {
    return static_cast<std::size_t>(
        std::find_if(records.begin(), records.end(),
                     [&](const auto& record) { return equalIgnoringCase(record.name, name); }) -
        records.begin());
}

/// The section of each element by position, or the number of sections where it has none. A later section
/// takes elements over from an earlier one, as the solver has it.
std::vector<std::size_t> sectionsOfElements(const SolverDeck& deck) {
    std::vector<std::size_t> sectionOf(deck.elementNumbers.size(), deck.sections.size());
    const NumberIndex elements(deck.elementNumbers);
    for (std::size_t s = 0; s < deck.sections.size(); ++s)
        for (const std::int32_t number :
             deck.elementSets[findName(deck.elementSets, deck.sections[s].elementSet)].numbers)
            sectionOf[elements.find(number)] = s;
    return sectionOf;
}

class PropertyBuilder {
  public:
    PropertyBuilder(const SolverDeck& deck, const std::vector<ItrKey>& materialKeys, ModelDatabase& database,
                    std::vector<std::string>& warnings)
        : deck_(deck)
        , materialKeys_(materialKeys)
        , database_(database)
        , warnings_(warnings) {}

    /// Adds a property for every section and family that elements are left with, and answers the property key
    /// of each element.
    Result<std::vector<std::uint32_t>> run() {
        const auto sectionOf = sectionsOfElements(deck_);
        const std::size_t none = deck_.sections.size();
        std::vector<std::array<std::size_t, kFamilies>> counts(none + 1);
        for (std::size_t e = 0; e < sectionOf.size(); ++e)
            ++counts[sectionOf[e]][family(e)];
        std::vector<std::array<std::uint32_t, kFamilies>> keyOf(none + 1);
        for (std::size_t s = 0; s <= none; ++s) {
            const auto families = static_cast<std::size_t>(
                std::count_if(counts[s].begin(), counts[s].end(), [](std::size_t n) { return n > 0; }));
            if (families == 0 && s < none)
                warnings_.push_back(deck_.sections[s].place + ": the section of '" +
                                    deck_.sections[s].elementSet +
                                    "' has no elements that are read; it is left out");
            for (std::size_t f = 0; f < kFamilies; ++f) {
                if (counts[s][f] == 0) continue;
                tagTProp record = recordOf(s, static_cast<ElementFamily>(f), counts[s][f]);
                if (families > 1) record.name += wide(std::string(" (") + kFamilyNames[f] + ")");
                const auto key = addRecord<DPoolProp>(database_, record, "property");
                if (!key) return key.error();
                keyOf[s][f] = static_cast<std::uint32_t>(*key);
            }
        }
        std::vector<std::uint32_t> keys(sectionOf.size());
        for (std::size_t e = 0; e < keys.size(); ++e)
            keys[e] = keyOf[sectionOf[e]][family(e)];
        return keys;
    }

  private:
    static constexpr std::size_t kFamilies = 8;
    static constexpr const char* kFamilyNames[kFamilies] = {
        "solid", "shell", "membrane", "plane stress", "plane strain", "axisymmetric", "line", "connector"};

    std::size_t family(std::size_t element) const {
        return static_cast<std::size_t>(deck_.elementFamilies[element]);
    }

    tagTProp recordOf(std::size_t s, ElementFamily family, std::size_t count) {
        tagTProp record;
        record.number = ++number_;
        record.typeCode = propertyTypeOf(family);
        if (s == deck_.sections.size()) {
            record.name = L"No section";
            warnings_.push_back(std::to_string(count) + " " + kFamilyNames[static_cast<std::size_t>(family)] +
                                (count == 1 ? " element has" : " elements have") +
                                " no section, and so no material");
            return record;
        }
        const SolverSection& section = deck_.sections[s];
        record.name = wide(section.elementSet);
        for (const std::string& material : section.materials)
            record.materialKeys.push_back(materialKeys_[findName(deck_.materials, material)]);
        const bool solid = family == ElementFamily::Solid;
        const bool flat = isExpanded(family) && family != ElementFamily::Line;
        if (flat) record.thickness = section.thickness;
        if ((solid || flat) && section.materials.empty())
            warnings_.push_back(section.place + ": the section of '" + section.elementSet +
                                "' has no material");
        return record;
    }

    const SolverDeck& deck_;
    const std::vector<ItrKey>& materialKeys_;
    ModelDatabase& database_;
    std::vector<std::string>& warnings_;
    std::int32_t number_ = 0;
};

/// A node set and an element set of the same name are one mesh set.
Result<void> addMeshSets(SolverDeck& deck, ModelDatabase& database) {
    for (SolverSet& nodes : deck.nodeSets) {
        tagTMset record;
        record.name = wide(nodes.name);
        record.nodeNumbers = std::move(nodes.numbers);
        const std::size_t elements = findName(deck.elementSets, nodes.name);
        if (elements < deck.elementSets.size()) record.elementNumbers = deck.elementSets[elements].numbers;
        if (const auto key = addRecord<DPoolMset>(database, record, "set"); !key) return key.error();
    }
    for (SolverSet& elements : deck.elementSets) {
        if (findName(deck.nodeSets, elements.name) < deck.nodeSets.size()) continue;
        tagTMset record;
        record.name = wide(elements.name);
        record.elementNumbers = std::move(elements.numbers);
        if (const auto key = addRecord<DPoolMset>(database, record, "set"); !key) return key.error();
    }
    return {};
}

/// The record of a name in a pool; 0 when there is none.
template <class Pool>
ItrKey keyOfName(ModelDatabase& database, const std::string& name) {
    Pool& pool = *database.Pool<Pool>();
    for (const ItrKey key : pool.GetKeyList())
        if (equalIgnoringCase(framework::toUtf8(pool.GetAtNU(key).name), name)) return key;
    return 0;
}

/// Strengths of a definition's material: its own, else those of the deck's [[material]].
void setStrengths(const ProjectDeck& deck, const DeckFatigueMaterial& material, T_FATG_STRESS_LIFE_D& entry) {
    const std::size_t shared = findName(deck.materials, material.material);
    const bool found = shared < deck.materials.size();
    entry.yieldStrength = material.yield.value_or(found ? deck.materials[shared].yield.value_or(0) : 0);
    entry.ultimateStrength =
        material.ultimate.value_or(found ? deck.materials[shared].ultimate.value_or(0) : 0);
}

Result<void> addFatigueMaterials(const ProjectDeck& deck, const DeckFatigue& fatigue, ModelDatabase& database,
                                 tagTFatg& record) {
    for (const DeckFatigueMaterial& material : fatigue.materials) {
        const ItrKey materialKey = keyOfName<DPoolMatl>(database, material.material);
        if (!fatigue.isStressLife()) {
            record.strainLifeMaterials.push_back(material.strainLife);
            record.strainLifeMaterials.back().materialKey = materialKey;
            continue;
        }
        T_FATG_STRESS_LIFE_D entry;
        entry.materialKey = materialKey;
        setStrengths(deck, material, entry);
        if (!material.curve.empty()) {
            entry.curveType = 1;
            entry.curveKey = keyOfName<DPoolSNFun>(database, material.curve);
        } else {
            // A parametric entry needs a curve record too, since the run refuses an entry without one.
            tagSNFun curve;
            curve.name = wide(fatigue.name + ": " + material.material);
            const auto key = addRecord<DPoolSNFun>(database, curve, "S-N curve");
            if (!key) return key.error();
            entry.curveType = 0;
            entry.curveParameters = {material.coefficient, material.exponent};
            entry.curveKey = *key;
        }
        record.stressLifeMaterials.push_back(entry);
    }
    return {};
}

void setOptions(const DeckFatigue& fatigue, tagTFatg& record) {
    record.fatigueType = fatigue.type;
    record.stressOption = fatigue.measure;
    record.strainOption = fatigue.measure;
    record.quickRainflow = fatigue.quickRainflow ? 1 : 0;
    record.rainflowValue = fatigue.quickRainflow.value_or(0);
    record.meanStress.fill(0);
    record.strainCorrections.fill(0);
    for (const int flag : fatigue.meanStress)
        (fatigue.isStressLife() ? record.meanStress[std::size_t(flag)]
                                : record.strainCorrections[std::size_t(flag)]) = 1;
    record.outputs.fill(0);
    for (const int flag : fatigue.outputs)
        record.outputs[std::size_t(flag)] = 1;
    record.loadCycleCount = fatigue.cycles;
    record.infiniteLife = fatigue.infiniteLife;
}

Result<void> addDefinition(const ProjectDeck& deck, const DeckFatigue& fatigue,
                           const std::map<std::string, ItrKey>& analysisKeys, ModelDatabase& database) {
    tagTFatg record;
    record.name = wide(fatigue.name);
    record.analysisKey = analysisKeys.at(fatigue.analysis);
    const auto resultKey = addAnalysis(fatigue.result, kFatigueAnalysis, database);
    if (!resultKey) return resultKey.error();
    record.resultAnalysisKey = *resultKey;
    setOptions(fatigue, record);
    if (auto added = addFatigueMaterials(deck, fatigue, database, record); !added) return added;
    for (const DeckFatigueLoad& load : fatigue.loads)
        record.loads.push_back({wide(load.caseName), wide(load.step), load.factor,
                                load.function.empty() ? 0 : keyOfName<DPoolFLFun>(database, load.function)});
    const auto key = addRecord<DPoolFatg>(database, record, "fatigue definition");
    return key ? Result<void>() : Result<void>(key.error());
}

} // namespace

Result<ItrKey> addAnalysis(const std::string& name, std::int32_t typeCode, ModelDatabase& database) {
    tagTVXMcas record;
    record.name = wide(name);
    record.typeCode = typeCode;
    return addRecord<DPoolVXMcas>(database, record, "analysis");
}

Result<void> addModel(SolverDeck& deck, ModelDatabase& database, std::vector<std::string>& warnings) {
    const auto materialKeys = addMaterials(deck, database);
    if (!materialKeys) return materialKeys.error();
    auto propertyKeys = PropertyBuilder(deck, *materialKeys, database, warnings).run();
    if (!propertyKeys) return propertyKeys.error();
    if (auto added = addMeshSets(deck, database); !added) return added;
    MeshData mesh;
    mesh.nodeNumbers = std::move(deck.nodeNumbers);
    mesh.nodePositions = std::move(deck.nodePositions);
    mesh.elementNumbers = std::move(deck.elementNumbers);
    mesh.elementTypes = std::move(deck.elementTypes);
    mesh.elementPropertyKeys = std::move(*propertyKeys);
    mesh.elementNodeOffsets = std::move(deck.elementNodeOffsets);
    mesh.elementNodes = std::move(deck.elementNodes);
    return database.setMesh(std::move(mesh));
}

Result<void> addFatigueRecords(const ProjectDeck& deck, const std::map<std::string, ItrKey>& analysisKeys,
                               ModelDatabase& database) {
    for (const DeckCurve& curve : deck.curves) {
        tagSNFun record;
        record.name = wide(curve.name);
        record.points = curve.points;
        if (const auto key = addRecord<DPoolSNFun>(database, record, "S-N curve"); !key) return key.error();
    }
    for (const DeckLoadFunction& function : deck.functions) {
        tagFLFun record;
        record.name = wide(function.name);
        record.number = function.number;
        record.points = function.points;
        if (const auto key = addRecord<DPoolFLFun>(database, record, "load function"); !key)
            return key.error();
    }
    for (const DeckFatigue& fatigue : deck.fatigue)
        if (auto added = addDefinition(deck, fatigue, analysisKeys, database); !added) return added;
    return {};
}

} // namespace workbench
