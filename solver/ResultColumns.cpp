#include "solver/ResultColumns.h"

#include "resultfile/FatigueComponents.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace solver {
namespace {

/// A result and when it is written.
struct Output {
    unsigned baseId;
    double (*value)(const Outcome&);
    bool (*wanted)(const Definition&, const EvaluationPlan&);
};

template <std::size_t flag>
bool asked(const Definition& definition, const EvaluationPlan&) {
    return definition.outputs[flag];
}
bool choosesMaterial(const Definition& definition, const EvaluationPlan&) {
    return definition.materialCount > 1;
}
bool choosesPlane(const Definition&, const EvaluationPlan& plan) {
    return plan.searchesPlanes();
}

template <double Outcome::*member>
double memberOf(const Outcome& outcome) {
    return outcome.*member;
}
double materialNumber(const Outcome& outcome) {
    return outcome.material + 1.0;
}
template <std::size_t axis>
double normalAlong(const Outcome& outcome) {
    return outcome.normal[axis];
}

namespace fatigue = resultfile::fatigue;

/// In the order of the identifiers.
constexpr std::array<Output, 7> kOutputs{{
    {fatigue::kDamage, memberOf<&Outcome::damage>, asked<0>},
    {fatigue::kLife, memberOf<&Outcome::life>, asked<1>},
    {fatigue::kEquivalentAmplitude, memberOf<&Outcome::equivalentAmplitude>, asked<2>},
    {fatigue::kGoverningMaterial, materialNumber, choosesMaterial},
    {fatigue::kGoverningNormal[0], normalAlong<0>, choosesPlane},
    {fatigue::kGoverningNormal[1], normalAlong<1>, choosesPlane},
    {fatigue::kGoverningNormal[2], normalAlong<2>, choosesPlane},
}};

constexpr const char* kItems = "fatigue nodes";

float narrow(double value) {
    constexpr double kLargest = std::numeric_limits<float>::max();
    return static_cast<float>(std::min(value, kLargest));
}

} // namespace

ResultColumns::ResultColumns(std::filesystem::path resultFile, double blocks,
                             SpooledColumn<std::int32_t> numbers, SpooledColumn<std::uint32_t> positions)
    : resultFile_(std::move(resultFile))
    , blocks_(blocks)
    , numbers_(std::move(numbers))
    , positions_(std::move(positions)) {}

Result<ResultColumns> ResultColumns::create(const std::filesystem::path& resultFile,
                                            const Definition& definition, const EvaluationPlan& plan) {
    const std::filesystem::path folder = resultFile.has_parent_path() ? resultFile.parent_path() : ".";
    auto numbers = Spool::create(folder);
    if (!numbers) return numbers.error();
    auto positions = Spool::create(folder);
    if (!positions) return positions.error();
    ResultColumns result(resultFile, plan.blocks, SpooledColumn<std::int32_t>(std::move(*numbers)),
                         SpooledColumn<std::uint32_t>(std::move(*positions)));
    for (const Output& output : kOutputs) {
        if (!output.wanted(definition, plan)) continue;
        for (std::size_t i = 0; i < plan.corrections.size(); ++i) {
            auto spool = Spool::create(folder);
            if (!spool) return spool.error();
            const unsigned id = fatigue::componentId(output.baseId, plan.corrections[i]);
            result.columns_.push_back({id, i, output.value, SpooledColumn<float>(std::move(*spool))});
        }
    }
    return result;
}

Result<void> ResultColumns::append(std::int32_t node, std::span<const Outcome> outcomes) {
    const auto position = static_cast<std::uint32_t>(nodes_++);
    if (auto put = numbers_.append(std::span(&node, 1)); !put) return put;
    if (outcomes.empty()) return {};
    ++nodesWithResults_;
    if (auto put = positions_.append(std::span(&position, 1)); !put) return put;
    for (Column& column : columns_) {
        const float value = narrow(column.value(outcomes[column.correction]));
        if (auto put = column.values.append(std::span(&value, 1)); !put) return put;
    }
    return {};
}

Result<void> ResultColumns::write(const std::string& inputChecksum, const std::string& producer) && {
    using resultfile::Location;
    auto writer = resultfile::Writer::create(resultFile_, resultFile_.stem().string(), producer);
    if (!writer) return writer.error();
    if (auto done = giveMesh(*writer); !done) return done;
    if (auto done = writer->setInputChecksum(inputChecksum); !done) return done;
    const std::string items = nodesWithResults_ < nodes_ ? kItems : "";
    if (!items.empty())
        if (auto done = giveItems(*writer, items); !done) return done;
    const std::string step = "Blocks " + std::to_string(static_cast<long long>(blocks_));
    if (auto done = writer->beginCase("Fatigue"); !done) return done;
    if (auto done = writer->beginStep(step, blocks_); !done) return done;
    for (Column& column : columns_) {
        auto spool = std::move(column.values);
        const auto values = spool.view();
        if (!values) return values.error();
        if (auto done = writer->writeTable(column.id, Location::Node, *values, items); !done) return done;
    }
    return writer->commit();
}

// Each column is moved out, so that it is gone from memory before the next one comes in.

Result<void> ResultColumns::giveMesh(resultfile::Writer& writer) {
    auto spool = std::move(numbers_);
    const auto numbers = spool.view();
    if (!numbers) return numbers.error();
    return writer.setMesh({*numbers, {}, {}});
}

Result<void> ResultColumns::giveItems(resultfile::Writer& writer, const std::string& name) {
    auto spool = std::move(positions_);
    const auto positions = spool.view();
    if (!positions) return positions.error();
    return writer.addItems(name, resultfile::Location::Node, *positions);
}

} // namespace solver
