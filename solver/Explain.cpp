#include "solver/Explain.h"

#include "base/ReplaceFile.h"
#include "resultfile/FatigueComponents.h"
#include "solver/ByteSource.h"
#include "solver/CycleReport.h"
#include "solver/DefinitionText.h"
#include "solver/InterfaceReader.h"
#include "solver/NodeScan.h"
#include "solver/NumberText.h"
#include "solver/Progress.h"
#include "solver/SvgHistory.h"
#include "solver/SvgMatrix.h"

#include <algorithm>
#include <fstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace solver {
namespace {

using resultfile::fatigue::kCorrections;

constexpr std::size_t kWorstCycles = 5;

/// What the file holds of one node.
struct FoundNode {
    std::vector<CycleReport> reports;
    std::int32_t first = 0; ///< smallest and largest number in the file
    std::int32_t last = 0;
    bool found = false;
    std::optional<Error> failure;
};

/// Reads the file to its end, as a run does, and evaluates the node on the way.
Result<FoundNode> findNode(InterfaceReader& reader, const Definition& definition, const EvaluationPlan& plan,
                           std::int32_t node, std::ostream* terminal) {
    FoundNode result;
    Progress progress(terminal, static_cast<std::uint64_t>(definition.nodeCount));
    bool any = false;
    const auto scanned = scanNodes(reader, definition, [&](const NodeBatch& batch) {
        if (!std::exchange(any, true)) result.first = batch.numbers.front();
        result.last = batch.numbers.back();
        progress.advance(batch.size());
        const auto at = std::ranges::lower_bound(batch.numbers, node);
        if (at == batch.numbers.end() || *at != node) return;
        result.found = true;
        auto reports =
            reportCycles(definition, plan, batch, static_cast<std::size_t>(at - batch.numbers.begin()));
        if (reports)
            result.reports = std::move(*reports);
        else
            result.failure = reports.error();
    });
    if (!scanned) return scanned.error();
    return result;
}

std::string cyclesCsv(const std::vector<CycleReport>& reports) {
    std::string text =
        "correction,material,normal_x,normal_y,normal_z,from,to,amplitude,mean,mean_stress,count,"
        "equivalent_amplitude,cycles_to_failure,damage_per_block\n";
    for (const CycleReport& report : reports)
        for (const EvaluatedCycle& cycle : report.cycles) {
            text += std::string(kCorrections[report.correction]) + "," +
                    std::to_string(report.outcome.material + 1);
            for (const double component : report.outcome.normal)
                text += "," + exactNumber(component);
            for (const double value : {cycle.mean - cycle.range / 2, cycle.mean + cycle.range / 2,
                                       cycle.range / 2, cycle.mean, cycle.meanStress, cycle.count,
                                       cycle.equivalentAmplitude, cycle.cyclesToFailure, cycle.damage})
                text += "," + exactNumber(value);
            text += "\n";
        }
    return text;
}

const CycleReport& worstReport(const std::vector<CycleReport>& reports) {
    return *std::ranges::max_element(reports, {},
                                     [](const CycleReport& report) { return report.outcome.damage; });
}

std::string quantity(const Definition& definition) {
    return isStressLife(definition.type) ? "stress" : "strain";
}

std::string subtitle(const CycleReport& report, const EvaluationPlan& plan) {
    std::string text = std::string(plan.measure->name) + ", correction " + kCorrections[report.correction] +
                       ": damage " + shortNumber(report.outcome.damage, 4) + ", life " +
                       shortNumber(report.outcome.life, 4) + " blocks";
    return text;
}

std::string history(const Definition& definition, const EvaluationPlan& plan, const CycleReport& report,
                    const std::string& title) {
    std::vector<double> positions = definition.times;
    if (!isCaseBased(definition.type))
        for (std::size_t step = 0; step < report.history.size(); ++step)
            positions.push_back(static_cast<double>(step));
    return historyPicture({title, subtitle(report, plan), isCaseBased(definition.type) ? "time" : "step",
                           quantity(definition), positions, report.history});
}

std::string matrix(const Definition& definition, const EvaluationPlan& plan, const CycleReport& report,
                   const std::string& title) {
    std::vector<MatrixEntry> entries;
    for (const EvaluatedCycle& cycle : report.cycles)
        entries.push_back({cycle.range / 2, cycle.mean, cycle.count, cycle.damage});
    return matrixPicture({title, subtitle(report, plan), quantity(definition), entries});
}

void summarize(const Definition& definition, const std::vector<CycleReport>& reports,
               const std::string& title, std::ostream& out) {
    out << title << ": " << typeText(definition) << ", blocks: " << definition.loadCycleCount << '\n';
    for (const CycleReport& report : reports) {
        const Outcome& outcome = report.outcome;
        out << kCorrections[report.correction] << ": damage " << shortNumber(outcome.damage) << ", life "
            << shortNumber(outcome.life) << " blocks, material " << outcome.material + 1;
        if (outcome.normal != Vector3{})
            out << ", plane normal to " << shortNumber(outcome.normal[0], 4) << ' '
                << shortNumber(outcome.normal[1], 4) << ' ' << shortNumber(outcome.normal[2], 4);
        out << "\n  " << report.cycles.size()
            << " cycles and half cycles are counted in one block; the worst:\n";
        std::vector<EvaluatedCycle> worst = report.cycles;
        const auto shown = static_cast<std::ptrdiff_t>(std::min(worst.size(), kWorstCycles));
        std::ranges::partial_sort(worst, worst.begin() + shown, std::greater{}, &EvaluatedCycle::damage);
        worst.resize(static_cast<std::size_t>(shown));
        for (const EvaluatedCycle& cycle : worst)
            out << "  " << shortNumber(cycle.count) << " x amplitude " << shortNumber(cycle.range / 2)
                << ", mean " << shortNumber(cycle.mean) << " -> equivalent amplitude "
                << shortNumber(cycle.equivalentAmplitude) << ", N = " << shortNumber(cycle.cyclesToFailure)
                << ", damage " << shortNumber(cycle.damage) << '\n';
    }
}

Result<void> writeWhole(const std::filesystem::path& path, std::string_view text) {
    ReplacedFile file(path);
    std::ofstream stream(file.temporaryPath(), std::ios::binary);
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
    stream.close();
    if (!stream)
        return Error{"cannot write " + path.string() +
                     ": the folder is missing or closed to you, or the disk is full"};
    return file.commit();
}

} // namespace

std::optional<RunFailure> explainNode(const RunSettings& settings, std::int32_t node,
                                      const std::optional<std::filesystem::path>& stem, std::ostream& out) {
    const auto refuse = [](Error error) { return RunFailure{kBadInput, std::move(error)}; };
    const std::string name = settings.interfaceFile.string();
    auto source = openFile(settings.interfaceFile);
    if (!source) return refuse(source.error());
    InterfaceReader reader(**source);
    const auto definition = reader.readDefinition();
    if (!definition) return refuse(definition.error());
    std::vector<std::string> notes;
    const auto plan = makePlan(*definition, notes);
    if (!plan) return refuse({name + ": " + plan.error().message});
    const auto found = findNode(reader, *definition, *plan, node, settings.terminal);
    if (!found) return refuse(found.error());
    if (found->failure) return refuse({name + ": " + found->failure->message});
    if (!found->found)
        return refuse({name + " has no node " + std::to_string(node) + "; its nodes have numbers from " +
                       std::to_string(found->first) + " to " + std::to_string(found->last)});

    const std::string title = "Node " + std::to_string(node);
    const std::filesystem::path start =
        stem ? *stem : settings.interfaceFile.parent_path() / ("node_" + std::to_string(node));
    const CycleReport& worst = worstReport(found->reports);
    summarize(*definition, found->reports, title, out);
    for (const std::string& note : notes)
        out << note << '\n';
    const std::pair<const char*, std::string> files[] = {
        {"_cycles.csv", cyclesCsv(found->reports)},
        {"_history.svg", history(*definition, *plan, worst, title)},
        {"_matrix.svg", matrix(*definition, *plan, worst, title)}};
    for (const auto& [ending, text] : files) {
        std::filesystem::path path = start;
        path += ending;
        if (const auto written = writeWhole(path, text); !written)
            return RunFailure{kCannotWrite, written.error()};
        out << "Written: " << path.string() << '\n';
    }
    return std::nullopt;
}

} // namespace solver
