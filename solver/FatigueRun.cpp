#include "solver/FatigueRun.h"

#include "base/Checksum.h"
#include "resultfile/FatigueComponents.h"
#include "solver/BatchPipeline.h"
#include "solver/ByteSource.h"
#include "solver/InterfaceReader.h"
#include "solver/NumberText.h"
#include "solver/Progress.h"
#include "solver/ResultColumns.h"
#include "solver/TextEncoding.h"

#include <span>
#include <utility>
#include <vector>

namespace solver {
namespace {

std::string describe(const Definition& definition, const EvaluationPlan& plan) {
    const bool cases = isCaseBased(definition.type);
    const auto count = std::to_string(definition.loadsPerNode());
    std::string measure = plan.measure->name;
    if (plan.stressMeasure)
        measure += " of strain with " + std::string(plan.stressMeasure->name) + " of stress";
    return std::string(isStressLife(definition.type) ? "Stress-life" : "Strain-life") + " over " + count +
           (cases ? " load entries, " : " steps, ") + measure +
           ", blocks: " + std::to_string(definition.loadCycleCount) + ".";
}

/// The most damaged node of each correction; the first of several.
class WorstNodes {
  public:
    explicit WorstNodes(const EvaluationPlan& plan)
        : plan_(plan)
        , worst_(plan.corrections.size()) {}

    void add(std::int32_t node, std::span<const Outcome> outcomes) {
        for (std::size_t i = 0; i < outcomes.size(); ++i)
            if (!any_ || outcomes[i].damage > worst_[i].outcome.damage) worst_[i] = {node, outcomes[i]};
        any_ = any_ || !outcomes.empty();
    }

    void report(std::ostream& out) const {
        for (std::size_t i = 0; i < worst_.size(); ++i) {
            const auto& [node, outcome] = worst_[i];
            out << resultfile::fatigue::kCorrections[plan_.corrections[i]] << ": ";
            if (outcome.damage > 0)
                out << "largest damage " << shortNumber(outcome.damage) << " at node " << node << ", life "
                    << shortNumber(outcome.life) << " blocks" << plane(outcome) << ".\n";
            else
                out << "no node is damaged.\n";
        }
    }

  private:
    std::string plane(const Outcome& outcome) const {
        if (!plan_.searchesPlanes()) return "";
        const auto& [x, y, z] = outcome.normal;
        return ", on the plane normal to " + shortNumber(x) + ", " + shortNumber(y) + ", " + shortNumber(z);
    }

    struct Worst {
        std::int32_t node = 0;
        Outcome outcome;
    };
    const EvaluationPlan& plan_;
    std::vector<Worst> worst_;
    bool any_ = false;
};

RunFailure badInput(Error error) {
    return {kBadInput, std::move(error)};
}
RunFailure cannotWrite(Error error) {
    return {kCannotWrite, std::move(error)};
}

Error inFile(const std::filesystem::path& file, const Error& error) {
    return {file.string() + ": " + error.message};
}

} // namespace

std::optional<RunFailure> runFatigue(const RunSettings& settings, std::ostream& out) {
    const auto& file = settings.interfaceFile;
    auto source = openFile(file);
    if (!source) return badInput(source.error());
    InterfaceReader reader(**source);
    const auto definition = reader.readDefinition();
    if (!definition) return badInput(definition.error());
    const auto stem = toUtf8(definition->resultFileStem, settings.codePage);
    if (!stem) return badInput(inFile(file, stem.error()));
    std::vector<std::string> notes;
    const auto plan = makePlan(*definition, notes);
    if (!plan) return badInput(inFile(file, plan.error()));

    const std::filesystem::path resultFile = *stem + "_Fatigue.lmop";
    auto columns = ResultColumns::create(resultFile, *definition, *plan);
    if (!columns) return cannotWrite(columns.error());
    WorstNodes worst(*plan);
    Progress progress(settings.terminal, static_cast<std::uint64_t>(definition->nodeCount));
    const auto keep = [&](std::int32_t node, std::span<const Outcome> outcomes) {
        progress.advance();
        worst.add(node, outcomes);
        return columns->append(node, outcomes);
    };
    if (auto failure = evaluateNodes(reader, *definition, *plan, settings.threads, keep))
        return failure->ofSink ? cannotWrite(failure->error) : badInput(failure->error);
    const std::size_t nodes = columns->nodesWithResults(), without = columns->nodes() - nodes;
    if (nodes == 0) return badInput(inFile(file, {"no node has a material; nothing can be evaluated"}));
    if (without > 0) notes.push_back("Nodes without a material, left out: " + std::to_string(without) + ".");
    const auto written =
        std::move(*columns).write(checksumText(reader.checksum()), "FatigueSolver " VEXA_VERSION);
    if (!written) return cannotWrite(written.error());
    progress.end();

    out << describe(*definition, *plan) << '\n';
    for (const std::string& note : notes)
        out << note << '\n';
    worst.report(out);
    out << "Nodes: " << nodes << ". Result: " << resultFile.string() << '\n';
    return std::nullopt;
}

} // namespace solver
