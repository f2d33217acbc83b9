#include "workbench/results/CombinationPlan.h"

#include "framework/text/CodePage.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace workbench {
namespace {

std::string utf8(const std::wstring& text) {
    return framework::toUtf8(text);
}

/// An item with the steps that it stands for.
struct Row {
    const CombinationItem* item;
    std::vector<ResultStep*> steps;

    std::string caseName() const { return "case \"" + utf8(item->resultCase->GetName()) + "\""; }
    /// The step that takes part in step `at` of a linear combination.
    ResultStep* stepAt(std::size_t at) const { return steps.size() == 1 ? steps.front() : steps[at]; }
};

Result<std::vector<Row>> rowsOf(const std::vector<CombinationItem>& items) {
    std::vector<Row> rows;
    for (const CombinationItem& item : items) {
        Row row{&item, {}};
        if (!std::isfinite(item.factor)) return Error{"the factor of " + row.caseName() + " is not finite"};
        if (item.step)
            row.steps.push_back(dynamic_cast<ResultStep*>(item.step));
        else
            for (CPOHVCase* step : item.resultCase->GetVCaseList())
                row.steps.push_back(dynamic_cast<ResultStep*>(step));
        if (row.steps.empty()) return Error{row.caseName() + " has no steps to combine"};
        if (std::ranges::find(row.steps, nullptr) != row.steps.end())
            return Error{row.caseName() + " is not among the stored results of the document"};
        rows.push_back(std::move(row));
    }
    if (rows.empty()) return Error{"there is nothing to combine: name at least one case or step"};
    return rows;
}

std::string sourceName(const CombinationItem& item, const CPOHVCase* step) {
    std::string name = utf8(item.resultCase->GetName());
    if (step) name += ":" + utf8(step->GetName());
    if (item.factor == 1) return name;
    char factor[32];
    std::snprintf(factor, sizeof factor, " * %g", item.factor);
    return name + factor;
}

/// What all members have in common, else the stand-in.
template <class Value, class Get>
Value sharedOr(const std::vector<CombinationMember>& members, Get get, Value other) {
    const Value first = get(*members.front().step);
    const bool same = std::ranges::all_of(members, [&](const auto& m) { return get(*m.step) == first; });
    return same ? first : other;
}

Result<CombinationPlan> planLinear(const std::vector<Row>& rows) {
    CombinationPlan plan;
    const Row* leading = nullptr;
    for (const Row& row : rows)
        if (row.steps.size() > 1 && !leading) leading = &row;
    for (const Row& row : rows) {
        plan.sources.push_back(sourceName(*row.item, row.item->step));
        if (row.steps.size() == 1 || &row == leading) continue;
        if (row.steps.size() != leading->steps.size())
            return Error{leading->caseName() + " has " + std::to_string(leading->steps.size()) +
                         " steps and " + row.caseName() + " has " + std::to_string(row.steps.size()) +
                         ": whole cases are combined step by step, so name single steps of one of them"};
        const bool sameValues = std::ranges::equal(row.steps, leading->steps, {}, &ResultStep::GetStepValue,
                                                   &ResultStep::GetStepValue);
        if (!sameValues)
            plan.warnings.push_back("the steps of " + leading->caseName() + " and " + row.caseName() +
                                    " have different values; they are combined in their order");
    }
    for (std::size_t at = 0; at < (leading ? leading->steps.size() : 1); ++at) {
        CombinedStep step;
        for (std::size_t i = 0; i < rows.size(); ++i)
            step.members.push_back(
                {rows[i].stepAt(at), rows[i].item->factor, static_cast<std::uint32_t>(i + 1)});
        if (leading) {
            step.name = utf8(leading->steps[at]->GetName());
            step.value = leading->steps[at]->GetStepValue();
        } else {
            step.name = sharedOr<std::string>(
                step.members, [](const ResultStep& s) { return utf8(s.GetName()); }, "Combination");
            step.value = sharedOr<double>(
                step.members, [](const ResultStep& s) { return s.GetStepValue(); }, 0);
        }
        plan.steps.push_back(std::move(step));
    }
    return plan;
}

const char* envelopeName(CombinationKind kind) {
    switch (kind) {
    case CombinationKind::Minimum:
        return "Minimum";
    case CombinationKind::AbsoluteMaximum:
        return "Absolute maximum";
    case CombinationKind::SignedAbsoluteMaximum:
        return "Absolute maximum with sign";
    case CombinationKind::Linear:
    case CombinationKind::Maximum:
        break;
    }
    return "Maximum";
}

CombinationPlan planEnvelope(CombinationKind kind, const std::vector<Row>& rows) {
    CombinationPlan plan;
    CombinedStep step{envelopeName(kind), 0, {}};
    for (const Row& row : rows)
        for (ResultStep* member : row.steps) {
            plan.sources.push_back(sourceName(*row.item, member));
            step.members.push_back(
                {member, row.item->factor, static_cast<std::uint32_t>(plan.sources.size())});
        }
    step.value = sharedOr<double>(
        step.members, [](const ResultStep& s) { return s.GetStepValue(); }, 0);
    plan.steps.push_back(std::move(step));
    return plan;
}

} // namespace

Result<CombinationPlan> planCombination(CombinationKind kind, const std::vector<CombinationItem>& items) {
    const auto rows = rowsOf(items);
    if (!rows) return rows.error();
    if (kind == CombinationKind::Linear) return planLinear(*rows);
    return planEnvelope(kind, *rows);
}

} // namespace workbench
