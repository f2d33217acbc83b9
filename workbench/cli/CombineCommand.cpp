#include "framework/text/CodePage.h"
#include "workbench/cli/CombineDialog.h"
#include "workbench/cli/Output.h"
#include "workbench/cli/ResultNames.h"
#include "workbench/import/Names.h"
#include "workbench/results/Catalogue.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <cstdio>
#include <system_error>

namespace workbench::cli {
namespace {

using nlohmann::json;

/// The name that was perhaps meant, else all that there are.
std::string hint(const std::string& name, const std::vector<std::string>& known) {
    const std::string near = suggestion(name, known);
    return near.empty() ? "; it has " + listNames(known) : near;
}

/// CASE or CASE:STEP. Names may hold colons themselves.
Result<std::pair<CPOHCase*, CPOHVCase*>> casePartOf(CPOHAnalysis& analysis, const std::string& text) {
    const auto& cases = analysis.GetChildList();
    if (CPOHCase* whole = byName(cases, text)) return std::pair<CPOHCase*, CPOHVCase*>(whole, nullptr);
    std::string fault;
    for (std::size_t colon = text.find(':'); colon != std::string::npos; colon = text.find(':', colon + 1)) {
        CPOHCase* owner = byName(cases, text.substr(0, colon));
        if (!owner) continue;
        const std::string name = text.substr(colon + 1);
        if (CPOHVCase* step = stepOf(owner->GetVCaseList(), name)) return std::pair(owner, step);
        const auto steps = namesOf(owner->GetVCaseList());
        fault = "case \"" + text.substr(0, colon) + "\" has no step \"" + name + "\"" + hint(name, steps);
    }
    if (!fault.empty()) return Error{fault};
    const auto names = namesOf(cases);
    const std::string name = text.substr(0, text.find(':'));
    return Error{"analysis \"" + framework::toUtf8(analysis.GetName()) + "\" has no case \"" + name + "\"" +
                 hint(name, names)};
}

/// CASE[:STEP][*FACTOR], added to the request.
Result<void> addItem(CPOHAnalysis& analysis, const std::string& text, T_COMB_ENVL_RESULT_D& request) {
    double factor = 1;
    std::string name = text;
    auto found = casePartOf(analysis, name); // without a factor, whatever stars the names hold
    if (const std::size_t star = text.rfind('*'); !found && star != std::string::npos) {
        name = trimmed(std::string_view(text).substr(0, star));
        const auto number = trimmed(std::string_view(text).substr(star + 1));
        const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), factor);
        if (error != std::errc{} || end != number.data() + number.size())
            return Error{"\"" + text +
                         "\" has no number behind its star: write it as CASE:STEP*FACTOR, as in \"" + name +
                         "*1.35\""};
        found = casePartOf(analysis, name);
    }
    if (!found) return found.error();
    request.cases.Add(found->first);
    request.steps.Add(found->second);
    request.factors.Add(factor);
    return {};
}

constexpr const char* kEnvelopes[] = {"max", "min", "absmaxu", "absmax"}; ///< by EnvelopeKind

class CombineCommand final : public Command {
  public:
    explicit CombineCommand(CommandLine& program) {
        CommandLine command = program.command("combine", "Combine results linearly or into an envelope");
        command.option("model", model_, "Document (.wkm)").required();
        command.option("item", items_, "Cases or steps with their factors: CASE[:STEP][*FACTOR]").required();
        command.option("--analysis", analysis_, "Analysis by name").required();
        command.option("--name", name_, "Name of the new result set").required();
        CommandLine kind = command.choice("What is made");
        kind.flag("--linear", linear_, "The sum of factor times value");
        kind.option("--envelope", envelope_,
                    "The extreme of factor times value: max, min, absmaxu (largest magnitude), absmax "
                    "(value of the largest magnitude)")
            .oneOf({std::begin(kEnvelopes), std::end(kEnvelopes)});
        command.footer(
            "A whole case takes part with all its steps: step by step in a linear combination (a case of "
            "one\n"
            "step counts in each), each for itself in an envelope. Steps go by name or by number from 1.\n"
            "The set becomes an analysis of the document; its file is _RCB_NAME.lmop beside the model.\n"
            "An envelope says for each value which item governs it: see the sources in vexa info.\n"
            "Examples:\n"
            "  vexa combine dam.wkm --analysis Static --name ULS --linear 'Dead*1.35' 'Water:Full*1.5'\n"
            "  vexa combine dam.wkm --analysis Quake --name Peak --envelope absmax History 'Dead*-1'");
    }

    int run(WorkbenchHost& host, const CommonOptions& common) override {
        auto document = openForCommand(host, model_, common);
        if (!document) return fail(document.error());
        T_COMB_ENVL_RESULT_D request;
        if (const auto filled = fill(**document, request); !filled) return fail(filled.error());
        // Before the work, so that it is not done in vain.
        if (const auto reserved = (*document)->reserve(); !reserved) return fail(reserved.error());
        if (!combineInDialog(**document, request) || !host.lastCombination())
            return kFailed; // the cause was reported
        const CombinationReport& report = *host.lastCombination();
        if (const auto saved = (*document)->save(); !saved) {
            std::error_code ignored; // nobody refers to the set
            std::filesystem::remove(report.file, ignored);
            return fail(saved.error());
        }
        if (common.json)
            std::printf("%s\n", describe(report, host.language()).dump(2).c_str());
        else
            print(report, host.language());
        return kDone;
    }

  private:
    Result<void> fill(Document& document, T_COMB_ENVL_RESULT_D& request) const {
        const auto& analyses = document.results().GetChildList();
        request.analysis = byName(analyses, analysis_);
        if (!request.analysis) {
            const auto names = namesOf(analyses);
            return Error{"the document has no analysis \"" + analysis_ + "\"" + hint(analysis_, names)};
        }
        request.name = framework::fromUtf8(name_);
        request.combinationType = linear_ ? CombinationType::Linear : CombinationType::Envelope;
        for (int kind = 0; kind < static_cast<int>(std::size(kEnvelopes)); ++kind)
            if (envelope_ == kEnvelopes[kind]) request.envelopeKind = kind;
        for (const std::string& item : items_)
            if (auto added = addItem(*request.analysis, item, request); !added) return added;
        return {};
    }

    json describe(const CombinationReport& report, Language language) const {
        json steps = json::array(), components = json::array(), sources = json::array();
        for (const auto& step : report.steps)
            steps.push_back({{"name", step.name}, {"value", step.value}});
        for (const unsigned id : report.components)
            components.push_back({{"id", id}, {"name", componentName(id, language)}});
        for (std::size_t i = 0; i < report.sources.size(); ++i)
            sources.push_back({{"number", report.firstSource + i}, {"name", report.sources[i]}});
        return {{"document", model_},           {"set", report.name},
                {"case", report.caseName},      {"steps", steps},
                {"components", components},     {"sources", sources},
                {"file", report.file.string()}, {"warnings", report.warnings}};
    }

    void print(const CombinationReport& report, Language language) const {
        std::printf("%s: analysis \"%s\" -> %s\n", model_.c_str(), report.name.c_str(),
                    report.file.filename().c_str());
        for (std::size_t i = 0; i < report.sources.size(); ++i)
            std::printf("  %4zu  %s\n", report.firstSource + i, report.sources[i].c_str());
        std::printf("  case \"%s\", %zu step%s, %zu components\n", report.caseName.c_str(),
                    report.steps.size(), report.steps.size() == 1 ? "" : "s", report.components.size());
        for (const unsigned id : report.components)
            if (governedBy(id) == 0) std::printf("    %7u  %s\n", id, componentName(id, language).c_str());
    }

    std::string model_, analysis_, name_, envelope_;
    std::vector<std::string> items_;
    bool linear_ = false;
};

} // namespace

std::unique_ptr<Command> makeCombineCommand(CommandLine& program) {
    return std::make_unique<CombineCommand>(program);
}

} // namespace workbench::cli
