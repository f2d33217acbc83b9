#include "solver/Check.h"

#include "base/Checksum.h"
#include "solver/ByteSource.h"
#include "solver/DefinitionText.h"
#include "solver/Evaluation.h"
#include "solver/InterfaceReader.h"
#include "solver/NodeScan.h"
#include "solver/Progress.h"
#include "solver/TextEncoding.h"

#include <string>
#include <utility>
#include <vector>

namespace solver {
namespace {

struct NodeSummary {
    std::int32_t first = 0;
    std::int32_t last = 0;
    std::size_t count = 0;
    std::size_t withoutMaterial = 0;

    void add(const NodeBatch& batch) {
        if (count == 0) first = batch.numbers.front();
        last = batch.numbers.back();
        count += batch.size();
        std::uint32_t begin = 0;
        for (const std::uint32_t end : batch.materialEnds)
            withoutMaterial += std::exchange(begin, end) == end;
    }
};

void describeNodes(const NodeSummary& nodes, std::ostream& out) {
    out << "Nodes: " << nodes.count << ", numbers " << nodes.first << " to " << nodes.last;
    if (nodes.withoutMaterial > 0) out << "; without a material, so left out: " << nodes.withoutMaterial;
    out << '\n';
}

std::string correctionNames(const EvaluationPlan& plan) {
    std::string text;
    for (const unsigned correction : plan.corrections)
        text += (text.empty() ? "" : ", ") + std::string(meanStressCorrections()[correction].name);
    return text;
}

} // namespace

std::optional<RunFailure> checkInterfaceFile(const RunSettings& settings, std::ostream& out) {
    const auto refuse = [](Error error) { return RunFailure{kBadInput, std::move(error)}; };
    const std::string name = settings.interfaceFile.string();
    const auto refuseContent = [&](const Error& error) { return refuse({name + ": " + error.message}); };
    auto source = openFile(settings.interfaceFile);
    if (!source) return refuse(source.error());
    InterfaceReader reader(**source);
    const auto definition = reader.readDefinition();
    if (!definition) return refuse(definition.error());
    NodeSummary nodes;
    {
        Progress progress(settings.terminal, static_cast<std::uint64_t>(definition->nodeCount));
        const auto scanned = scanNodes(reader, *definition, [&](const NodeBatch& batch) {
            nodes.add(batch);
            progress.advance(batch.size());
        });
        if (!scanned) return refuse(scanned.error());
    }
    const auto stem = toUtf8(definition->resultFileStem, settings.codePage);
    if (!stem) return refuseContent(stem.error());
    std::vector<std::string> notes;
    const auto plan = makePlan(*definition, notes);
    if (!plan) return refuseContent(plan.error());
    if (nodes.withoutMaterial == nodes.count)
        return refuseContent({"no node has a material; nothing can be evaluated"});

    out << name << " is sound.\n";
    out << "Result file: " << *stem << "_Fatigue.lmop\n";
    describeDefinition(*definition, out);
    out << "Measure: " << plan->measure->name << "; corrections: " << correctionNames(*plan) << '\n';
    for (const std::string& note : notes)
        out << note << '\n';
    describeNodes(nodes, out);
    out << "Bytes: " << (*source)->size() << ", checksum: " << checksumText(reader.checksum()) << '\n';
    return std::nullopt;
}

} // namespace solver
