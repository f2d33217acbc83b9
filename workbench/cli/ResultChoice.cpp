#include "workbench/cli/ResultChoice.h"

#include "workbench/cli/ResultNames.h"
#include "workbench/import/Names.h"
#include "workbench/results/Catalogue.h"
#include "workbench/results/ResultQuery.h"

#include <algorithm>

namespace workbench::cli {
namespace {

/// The only child for an empty name, else the one of that name; null for none.
template <class T>
T* childOf(const std::vector<T*>& children, const std::string& name) {
    if (name.empty()) return children.size() == 1 ? children.front() : nullptr;
    return byName(children, name);
}

/// ", did you mean ...?" for the first of the three names that does not exist.
std::string suggestionFor(CPOHManager& results, const ResultChoice& choice) {
    const auto& analyses = results.GetChildList();
    CPOHAnalysis* analysis = childOf(analyses, choice.analysis);
    if (!analysis) return suggestion(choice.analysis, namesOf(analyses));
    CPOHCase* resultCase = childOf(analysis->GetChildList(), choice.caseName);
    if (!resultCase) return suggestion(choice.caseName, namesOf(analysis->GetChildList()));
    return suggestion(choice.step, namesOf(resultCase->GetVCaseList()));
}

/// The step of that number, where there is none of that name.
CPOHVCase* stepByNumber(CPOHManager& results, const ResultChoice& choice) {
    CPOHAnalysis* analysis = childOf(results.GetChildList(), choice.analysis);
    CPOHCase* resultCase = analysis ? childOf(analysis->GetChildList(), choice.caseName) : nullptr;
    return resultCase ? stepOf(resultCase->GetVCaseList(), choice.step) : nullptr;
}

/// The words in upper case, without brackets and the like.
std::vector<std::string> wordsOf(const std::string& text) {
    std::vector<std::string> words;
    std::string word;
    for (const char c : upperCase(text) + " ") {
        const bool separates = std::string_view(" ()[],;:%").find(c) != std::string_view::npos;
        if (!separates) {
            word += c;
        } else if (!word.empty()) {
            words.push_back(std::move(word));
            word.clear();
        }
    }
    return words;
}

bool hasWords(const std::string& name, const std::vector<std::string>& words) {
    const std::vector<std::string> own = wordsOf(name);
    return std::ranges::all_of(words, [&](const std::string& word) {
        return std::ranges::any_of(own, [&](const std::string& w) { return w.starts_with(word); });
    });
}

/// The names and what remains of them without their first words, as a person would shorten them.
std::vector<std::string> withShortForms(const std::vector<std::string>& names) {
    std::vector<std::string> forms = names;
    for (const std::string& name : names)
        for (std::size_t blank = name.find(' '); blank != std::string::npos;
             blank = name.find(' ', blank + 1))
            forms.push_back(name.substr(blank + 1));
    return forms;
}

} // namespace

void ResultChoice::addStepTo(CommandLine& command) {
    command.option("model", model, "Document (.wkm)").required();
    command.option("--analysis", analysis, "Analysis by name").required();
    command.option("--case", caseName, "Case by name (default: the only one)");
    command.option("--step", step, "Step by name, or by its number in the case (default: the last)");
}

void ResultChoice::addTo(CommandLine& command) {
    addStepTo(command);
    command
        .option("--component", component,
                "Component by identifier or name, as `vexa info` lists them; words that only one has will do")
        .required();
}

Result<CPOHVCase*> ResultChoice::findStep(Document& document) const {
    auto found = workbench::findStep(document.results(), analysis, caseName, step);
    if (found) return found;
    if (CPOHVCase* numbered = stepByNumber(document.results(), *this)) return numbered;
    return Error{found.error().message + suggestionFor(document.results(), *this)};
}

Result<CVResult*> ResultChoice::find(Document& document) const {
    const auto found = findStep(document);
    if (!found) return found.error();
    const auto id = componentOf(**found, component);
    if (!id) return id.error();
    return findTable(**found, *id);
}

Result<unsigned> componentOf(CPOHVCase& step, const std::string& text) {
    if (const auto number = asNumber(text)) return static_cast<unsigned>(std::min<std::size_t>(*number, ~0u));
    const std::vector<std::string> words = wordsOf(text);
    std::vector<unsigned> matches;
    std::vector<std::string> names;
    std::string known, several;
    const bool wantsGoverning = std::ranges::any_of(words, [](const std::string& word) {
        return word.starts_with("GOVERN") || word.starts_with("지배");
    });
    for (const unsigned id : step.GetResultIds()) {
        const std::string listed =
            " " + std::to_string(id) + " (" + componentName(id, Language::English) + ")";
        known += listed;
        if (sourceOfAlias(id) != 0) continue; // the same values by another number
        // Their names hold the words of the components that they belong to.
        if (governedBy(id) != 0 && !wantsGoverning) continue;
        for (const Language language : {Language::English, Language::Korean}) {
            const std::string name = componentName(id, language);
            if (equalIgnoringCase(name, text)) return id;
            names.push_back(name);
            if (words.empty() || !hasWords(name, words)) continue;
            if (!matches.empty() && matches.back() == id) continue; // by its other name too
            matches.push_back(id);
            several += listed;
        }
    }
    if (matches.size() == 1) return matches.front();
    const std::string owner = "step \"" + framework::toUtf8(step.GetName()) + "\" of case \"" +
                              framework::toUtf8(step.GetCase()->GetName()) + "\"";
    if (!matches.empty())
        return Error{"\"" + text + "\" fits several components of " + owner + ": choose one of" + several};
    return Error{owner + " has no component \"" + text + "\"" + suggestion(text, withShortForms(names)) +
                 "; it has" + known};
}

} // namespace workbench::cli
