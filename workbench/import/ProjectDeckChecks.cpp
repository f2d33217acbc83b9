#include "workbench/import/ProjectDeckChecks.h"

#include "workbench/import/Names.h"
#include "workbench/import/SolverLog.h"

#include <algorithm>

namespace workbench {
namespace {

/// File names are compared without regard to case, since some file systems do so.
bool sameFileName(std::string_view left, std::string_view right) {
    return equalIgnoringCase(left, right);
}

template <class Records>
std::vector<std::string> namesOf(const Records& records) {
    std::vector<std::string> names;
    for (const auto& record : records)
        names.push_back(record.name);
    return names;
}

template <class Records>
void refuseDuplicates(const Records& records, const char* kind, DeckErrors& errors) {
    for (std::size_t i = 0; i < records.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            if (!records[i].name.empty() && equalIgnoringCase(records[i].name, records[j].name)) {
                errors.add(records[i].line, std::string(kind) + " '" + records[i].name +
                                                "' was given before, at line " +
                                                std::to_string(records[j].line));
                break;
            }
}

bool holds(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

void requireReference(const std::string& name, const std::vector<std::string>& known, const std::string& what,
                      int line, DeckErrors& errors) {
    if (name.empty() || holds(known, name)) return;
    const std::string near = suggestion(name, known);
    errors.add(line, what + " '" + name + "' is not in the deck" + (near.empty() ? ";" : near) + " it has " +
                         listNames(known));
}

void checkNumbers(const ProjectDeck& deck, DeckErrors& errors) {
    for (std::size_t i = 0; i < deck.functions.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            if (deck.functions[i].number == deck.functions[j].number)
                errors.add(deck.functions[i].line, "load function '" + deck.functions[i].name +
                                                       "' has the number " +
                                                       std::to_string(deck.functions[i].number) + " of '" +
                                                       deck.functions[j].name + "'");
}

/// The strengths that a correction reads must be given.
void checkStrengths(const ProjectDeck& deck, const DeckFatigue& fatigue, const DeckFatigueMaterial& material,
                    DeckErrors& errors) {
    if (!fatigue.isStressLife()) return;
    const auto shared =
        std::find_if(deck.materials.begin(), deck.materials.end(), [&](const DeckMaterial& candidate) {
            return equalIgnoringCase(candidate.name, material.material);
        });
    const bool hasYield = material.yield || (shared != deck.materials.end() && shared->yield);
    const bool hasUltimate = material.ultimate || (shared != deck.materials.end() && shared->ultimate);
    constexpr int kGoodman = 1, kGerber = 2, kSoderberg = 3;
    for (const int correction : fatigue.meanStress) {
        const bool needsUltimate = correction == kGoodman || correction == kGerber;
        if ((needsUltimate && !hasUltimate) || (correction == kSoderberg && !hasYield))
            errors.add(material.line, "fatigue definition '" + fatigue.name + "', material '" +
                                          material.material + "': the mean-stress correction needs the " +
                                          (needsUltimate ? "ultimate" : "yield") +
                                          " strength; give it here or in [[material]]");
    }
}

void checkMaterials(const ProjectDeck& deck, const DeckFatigue& fatigue, DeckErrors& errors) {
    const auto curves = namesOf(deck.curves);
    const std::string what = "fatigue definition '" + fatigue.name + "'";
    for (std::size_t i = 0; i < fatigue.materials.size(); ++i) {
        const DeckFatigueMaterial& material = fatigue.materials[i];
        requireReference(material.curve, curves, what + ": the S-N curve", material.line, errors);
        checkStrengths(deck, fatigue, material, errors);
        for (std::size_t j = 0; j < i; ++j)
            if (!material.material.empty() &&
                equalIgnoringCase(material.material, fatigue.materials[j].material)) {
                errors.add(material.line, what + " lists the material '" + material.material +
                                              "' twice, here and at line " +
                                              std::to_string(fatigue.materials[j].line));
                break;
            }
    }
}

void checkLoads(const ProjectDeck& deck, const DeckFatigue& fatigue, DeckErrors& errors) {
    const auto functions = namesOf(deck.functions);
    for (const DeckFatigueLoad& load : fatigue.loads)
        requireReference(load.function, functions,
                         "fatigue definition '" + fatigue.name + "': the load function", load.line, errors);
}

/// A run deletes the files of its result analysis first, so nobody else may own them. The solver writes
/// "<result>_Fatigue" before the file gets its name.
void checkResultName(const ProjectDeck& deck, const DeckFatigue& fatigue, DeckErrors& errors) {
    const std::string what = "fatigue definition '" + fatigue.name + "'";
    const std::string written = fatigue.result + "_Fatigue";
    if (fatigue.result.empty()) return;
    if (sameFileName(fatigue.result, fatigue.analysis)) {
        errors.add(fatigue.line, what + " has its own source '" + fatigue.analysis +
                                     "' as result analysis; a run would delete the results that it reads");
        return;
    }
    for (const DeckAnalysis& analysis : deck.analyses)
        if (sameFileName(analysis.name, fatigue.result) || sameFileName(analysis.name, written))
            errors.add(fatigue.line, what + ": its result analysis '" + fatigue.result +
                                         "' would overwrite the results of the analysis '" + analysis.name +
                                         "'");
    for (const DeckFatigue& other : deck.fatigue) {
        if (&other == &fatigue) continue;
        const bool shared = sameFileName(other.result, fatigue.result) && &other < &fatigue;
        if (shared || sameFileName(other.result, written))
            errors.add(fatigue.line, what + ": its result analysis '" + fatigue.result +
                                         "' would overwrite that of the fatigue definition '" + other.name +
                                         "'");
    }
}

} // namespace

void checkProjectDeck(const ProjectDeck& deck, DeckErrors& errors) {
    if (deck.analyses.empty())
        errors.add(0, "there is no [[analysis]]; it names a solver deck and its results");
    refuseDuplicates(deck.analyses, "analysis", errors);
    refuseDuplicates(deck.materials, "material", errors);
    refuseDuplicates(deck.curves, "S-N curve", errors);
    refuseDuplicates(deck.functions, "load function", errors);
    refuseDuplicates(deck.fatigue, "fatigue definition", errors);
    checkNumbers(deck, errors);
    const auto analyses = namesOf(deck.analyses);
    for (const DeckFatigue& fatigue : deck.fatigue) {
        requireReference(fatigue.analysis, analyses,
                         "fatigue definition '" + fatigue.name + "': the analysis", fatigue.line, errors);
        checkResultName(deck, fatigue, errors);
        checkMaterials(deck, fatigue, errors);
        checkLoads(deck, fatigue, errors);
    }
}

void checkFilesExist(const ProjectDeck& deck, DeckErrors& errors) {
    std::error_code code;
    for (const DeckAnalysis& analysis : deck.analyses) {
        const std::string what = "analysis '" + analysis.name + "': ";
        if (std::filesystem::is_directory(analysis.deck, code))
            errors.add(analysis.line, what + analysis.deck.string() + " is a folder, not a solver deck");
        else if (!std::filesystem::is_regular_file(analysis.deck, code))
            errors.add(analysis.line, what + "the solver deck " + analysis.deck.string() + " is not there");
        else if (!std::filesystem::is_regular_file(analysis.results, code))
            errors.add(analysis.line, what + "the solver left no results: " + analysis.results.string() +
                                          " is not there; solve the deck first" +
                                          solverLastWords(analysis.results));
    }
}

std::string analysisNameFault(std::string_view name) {
    constexpr std::string_view kForbidden = "/\\:*?\"<>|";
    if (const std::size_t at = name.find_first_of(kForbidden); at != std::string_view::npos)
        return "the name '" + std::string(name) + "' holds '" + name[at] +
               "'; it becomes part of a file name, where none of " + std::string(kForbidden) + " may stand";
    if (!name.empty() && (name.front() == ' ' || name.back() == ' ' || name.back() == '.'))
        return "the name '" + std::string(name) +
               "' begins or ends with a blank or ends with a point; it becomes part of a file name";
    return {};
}

} // namespace workbench
