#include "module/combination/CombinationItem.h"

#include <algorithm>

namespace combination {

T_RESULT_COMB_ITEM_D itemOf(CPOHBase& object, double factor) {
    switch (object.GetObjectKind()) {
    case POHKind::Case:
        return {static_cast<CPOHCase*>(&object), nullptr, factor};
    case POHKind::Step: {
        auto& step = static_cast<CPOHVCase&>(object);
        return {step.GetCase(), &step, factor};
    }
    default:
        return {nullptr, nullptr, factor};
    }
}

T_COMB_ENVL_RESULT_D requestOf(const Values& values, CPOHAnalysis* analysis,
                               const TArray<T_RESULT_COMB_ITEM_D>& items) {
    T_COMB_ENVL_RESULT_D request;
    request.Initialize();
    request.analysis = analysis;
    request.name = values.name;
    request.combinationType = values.type;
    request.action = values.action;
    request.envelopeKind = values.envelopeKind;
    request.cases.SetSize(items.GetSize());
    request.steps.SetSize(items.GetSize());
    request.factors.SetSize(items.GetSize());
    for (std::size_t i = 0; i < items.GetSize(); ++i) {
        request.cases[i] = items[i].resultCase;
        request.steps[i] = items[i].vcase;
        request.factors[i] = items[i].factor;
    }
    return request;
}

bool isInTree(const CPOHManager& tree, const T_RESULT_COMB_ITEM_D& item) {
    for (const CPOHAnalysis* analysis : tree.GetChildList())
        for (const CPOHCase* known : analysis->GetChildList())
            if (known == item.resultCase)
                return !item.vcase || std::ranges::count(known->GetVCaseList(), item.vcase) > 0;
    return false;
}

} // namespace combination
