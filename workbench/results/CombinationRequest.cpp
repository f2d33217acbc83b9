#include "framework/text/CodePage.h"
#include "workbench/results/CombineResults.h"

#include <algorithm>
#include <optional>

namespace workbench {
namespace {

std::optional<CombinationKind> kindOf(const T_COMB_ENVL_RESULT_D& request) {
    if (request.combinationType == CombinationType::Linear) return CombinationKind::Linear;
    if (request.combinationType != CombinationType::Envelope) return {};
    switch (request.envelopeKind) {
    case EnvelopeKind::Maximum:
        return CombinationKind::Maximum;
    case EnvelopeKind::Minimum:
        return CombinationKind::Minimum;
    case EnvelopeKind::AbsoluteMaximumUnsigned:
        return CombinationKind::AbsoluteMaximum;
    case EnvelopeKind::AbsoluteMaximum:
        return CombinationKind::SignedAbsoluteMaximum;
    }
    return {};
}

template <class T>
bool contains(const std::vector<T*>& objects, const T* wanted) {
    return std::ranges::find(objects, wanted) != objects.end();
}

/// Whether the tree has the case, and the case the step, unless that is null.
bool isInTree(const ResultTree& tree, const CPOHCase* resultCase, const CPOHVCase* step) {
    for (const CPOHAnalysis* analysis : tree.GetChildList())
        for (const CPOHCase* known : analysis->GetChildList())
            if (known == resultCase)
                return !step || std::ranges::any_of(known->GetVCaseList(),
                                                    [&](const CPOHVCase* other) { return other == step; });
    return false;
}

} // namespace

Result<CombinationRequest> combinationRequest(const ResultTree& tree, const T_COMB_ENVL_RESULT_D& request) {
    const std::size_t count = request.cases.GetSize();
    if (request.steps.GetSize() != count || request.factors.GetSize() != count)
        return Error{"a combination needs one case, one step and one factor for each item"};
    const auto kind = kindOf(request);
    if (!kind)
        return Error{"combination type " + std::to_string(request.combinationType) + " with envelope kind " +
                     std::to_string(request.envelopeKind) + " is unknown"};
    if (!request.analysis || !contains<CPOHAnalysis>(tree.GetChildList(), request.analysis))
        return Error{"the analysis whose results are to be combined is not in the document: choose one"};
    CombinationRequest checked;
    checked.name = framework::toUtf8(request.name);
    checked.kind = *kind;
    checked.merge = request.action == CombinationAction::Add;
    checked.analysisKey = request.analysis->GetKey();
    for (std::size_t i = 0; i < count; ++i) {
        if (!isInTree(tree, request.cases[i], request.steps[i]))
            return Error{"item " + std::to_string(i + 1) +
                         " of the combination is not among the results any more: add it again"};
        checked.items.push_back({request.cases[i], request.steps[i], request.factors[i]});
    }
    return checked;
}

} // namespace workbench
