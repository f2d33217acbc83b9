#include "workbench/import/ProjectReferences.h"

#include "workbench/import/Names.h"

#include <algorithm>
#include <cmath>

namespace workbench {
namespace {

std::vector<std::string> namesOf(const std::vector<SolverMaterial>& materials) {
    std::vector<std::string> names;
    for (const SolverMaterial& material : materials)
        names.push_back(material.name);
    return names;
}

const SolverMaterial* findMaterial(const SolverDeck& model, const std::string& name) {
    for (const SolverMaterial& material : model.materials)
        if (equalIgnoringCase(material.name, name)) return &material;
    return nullptr;
}

void requireMaterial(const SolverDeck& model, const std::string& name, int line, DeckErrors& errors) {
    if (name.empty() || findMaterial(model, name)) return;
    const auto names = namesOf(model.materials);
    const std::string near = suggestion(name, names);
    errors.add(line, "the material '" + name + "' is not in the solver deck" + (near.empty() ? ";" : near) +
                         " it has " + listNames(names));
}

const DeckAnalysis* findAnalysis(const ProjectDeck& deck, const std::string& name) {
    for (const DeckAnalysis& analysis : deck.analyses)
        if (analysis.name == name) return &analysis;
    return nullptr;
}

void checkCases(const ProjectDeck& deck, const DeckFatigue& fatigue, DeckErrors& errors) {
    const DeckAnalysis* analysis = findAnalysis(deck, fatigue.analysis);
    if (!analysis) return;
    for (const DeckFatigueLoad& load : fatigue.loads) {
        const auto& cases = analysis->cases;
        if (std::find(cases.begin(), cases.end(), load.caseName) != cases.end()) continue;
        const std::string near = suggestion(load.caseName, cases);
        errors.add(load.line, "fatigue definition '" + fatigue.name + "': the case '" + load.caseName +
                                  "' is not one of analysis '" + analysis->name + "'" +
                                  (near.empty() ? ";" : near) + " it has " + listNames(cases));
    }
}

double extentOf(const std::vector<std::array<double, 3>>& positions) {
    double extent = 0;
    for (const auto& p : positions)
        extent = std::max({extent, std::fabs(p[0]), std::fabs(p[1]), std::fabs(p[2])});
    return extent;
}

} // namespace

void resolveCases(ProjectDeck& deck, std::span<const SolverDeck> solverDecks, DeckErrors& errors) {
    for (std::size_t i = 0; i < deck.analyses.size(); ++i) {
        DeckAnalysis& analysis = deck.analyses[i];
        const std::size_t steps = solverDecks[i].steps.size();
        const std::string what = "analysis '" + analysis.name + "': ";
        if (steps == 0)
            errors.add(analysis.line, what + analysis.deck.string() + " has no *STEP");
        else if (!analysis.cases.empty() && analysis.cases.size() != steps)
            errors.add(analysis.casesLine, what + "cases names " + std::to_string(analysis.cases.size()) +
                                               ", but the deck has " + std::to_string(steps) +
                                               (steps == 1 ? " step" : " steps"));
        for (std::size_t step = analysis.cases.size(); step < steps; ++step)
            analysis.cases.push_back("Step " + std::to_string(step + 1));
    }
}

void completeMaterials(const ProjectDeck& deck, SolverDeck& model) {
    for (const DeckMaterial& given : deck.materials)
        for (SolverMaterial& material : model.materials) {
            if (!equalIgnoringCase(material.name, given.name)) continue;
            material.elasticModulus = given.elasticModulus.value_or(material.elasticModulus);
            material.poissonRatio = given.poissonRatio.value_or(material.poissonRatio);
            material.density = given.density.value_or(material.density);
            if (given.strength) material.strength = given.strength;
        }
}

void checkReferences(const ProjectDeck& deck, const SolverDeck& model, DeckErrors& errors) {
    for (const DeckMaterial& material : deck.materials)
        requireMaterial(model, material.name, material.line, errors);
    for (const DeckFatigue& fatigue : deck.fatigue) {
        checkCases(deck, fatigue, errors);
        for (const DeckFatigueMaterial& material : fatigue.materials) {
            requireMaterial(model, material.material, material.line, errors);
            const SolverMaterial* found = findMaterial(model, material.material);
            if (found && !fatigue.isStressLife() && !(found->elasticModulus > 0))
                errors.add(material.line, "the material '" + material.material +
                                              "' has no elastic modulus in the solver deck (" + found->place +
                                              "); strain-life needs one, which [[material]] can give, too");
        }
    }
}

void checkSteps(const ProjectDeck& deck, std::span<const ImportedAnalysis> analyses, DeckErrors& errors) {
    for (const DeckFatigue& fatigue : deck.fatigue) {
        const auto analysis = std::find_if(analyses.begin(), analyses.end(), [&](const auto& candidate) {
            return candidate.name == fatigue.analysis;
        });
        if (analysis == analyses.end()) continue;
        for (const DeckFatigueLoad& load : fatigue.loads) {
            const auto found =
                std::find_if(analysis->cases.begin(), analysis->cases.end(),
                             [&](const auto& candidate) { return candidate.name == load.caseName; });
            if (found == analysis->cases.end()) continue;
            const std::string what =
                "fatigue definition '" + fatigue.name + "': the case '" + load.caseName + "' ";
            if (found->steps.empty())
                errors.add(load.line, what + "has no results");
            else if (!load.step.empty() &&
                     std::find(found->steps.begin(), found->steps.end(), load.step) == found->steps.end())
                errors.add(load.line,
                           what + "has no step '" + load.step + "'; it has " + listNames(found->steps));
        }
    }
}

std::string meshDifference(const SolverDeck& first, const SolverDeck& other) {
    if (first.nodeNumbers.size() != other.nodeNumbers.size())
        return std::to_string(other.nodeNumbers.size()) + " nodes in place of " +
               std::to_string(first.nodeNumbers.size());
    if (first.elementNumbers.size() != other.elementNumbers.size())
        return std::to_string(other.elementNumbers.size()) + " elements in place of " +
               std::to_string(first.elementNumbers.size());
    // Decks print coordinates with six digits or more.
    const double tolerance = 1e-6 * extentOf(first.nodePositions);
    for (std::size_t n = 0; n < first.nodeNumbers.size(); ++n) {
        if (first.nodeNumbers[n] != other.nodeNumbers[n])
            return "node " + std::to_string(other.nodeNumbers[n]) + " in place of " +
                   std::to_string(first.nodeNumbers[n]);
        for (std::size_t axis = 0; axis < 3; ++axis)
            if (std::fabs(first.nodePositions[n][axis] - other.nodePositions[n][axis]) > tolerance)
                return "node " + std::to_string(first.nodeNumbers[n]) + " lies elsewhere";
    }
    for (std::size_t e = 0; e < first.elementNumbers.size(); ++e) {
        if (first.elementNumbers[e] != other.elementNumbers[e])
            return "element " + std::to_string(other.elementNumbers[e]) + " in place of " +
                   std::to_string(first.elementNumbers[e]);
        const auto nodesOf = [e](const SolverDeck& deck) {
            return std::span(deck.elementNodes)
                .subspan(deck.elementNodeOffsets[e],
                         deck.elementNodeOffsets[e + 1] - deck.elementNodeOffsets[e]);
        };
        if (first.elementTypes[e] != other.elementTypes[e] ||
            first.elementFamilies[e] != other.elementFamilies[e] ||
            !std::ranges::equal(nodesOf(first), nodesOf(other)))
            return "element " + std::to_string(first.elementNumbers[e]) + " has another type or other nodes";
    }
    return first.leftOutElements == other.leftOutElements ? std::string()
                                                          : "other elements that are not read";
}

bool sameMaterials(const SolverDeck& first, const SolverDeck& other) {
    const bool materials =
        std::equal(first.materials.begin(), first.materials.end(), other.materials.begin(),
                   other.materials.end(), [](const SolverMaterial& a, const SolverMaterial& b) {
                       return equalIgnoringCase(a.name, b.name) && a.elasticModulus == b.elasticModulus &&
                              a.poissonRatio == b.poissonRatio && a.density == b.density;
                   });
    return materials &&
           std::equal(first.sections.begin(), first.sections.end(), other.sections.begin(),
                      other.sections.end(), [](const SolverSection& a, const SolverSection& b) {
                          return equalIgnoringCase(a.elementSet, b.elementSet) &&
                                 a.thickness == b.thickness &&
                                 std::equal(a.materials.begin(), a.materials.end(), b.materials.begin(),
                                            b.materials.end(), equalIgnoringCase);
                      });
}

} // namespace workbench
