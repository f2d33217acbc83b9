#pragma once

#include "framework/containers/Array.h"
#include "host/GpsLinearCombCalculator.h"

#include <string>

/// One item of a combination. The host owns the objects.
struct T_RESULT_COMB_ITEM_D {
    CPOHCase* resultCase = nullptr; ///< the case, also of the step
    CPOHVCase* vcase = nullptr;     ///< the step; null for the whole case
    double factor = 1;
};

namespace combination {

/// What the user chose beside the items.
struct Values {
    std::wstring name; ///< of the new set
    int type = CombinationType::Linear;
    int action = CombinationAction::Recalculate;
    int envelopeKind = EnvelopeKind::Maximum;
};

/// The item for an object of the result tree: a case, or a step under its case. Null pointers for any other
/// object.
T_RESULT_COMB_ITEM_D itemOf(CPOHBase& object, double factor);

/// Everything but the output control, which belongs to the analysis.
T_COMB_ENVL_RESULT_D requestOf(const Values& values, CPOHAnalysis* analysis,
                               const TArray<T_RESULT_COMB_ITEM_D>& items);

/// Whether the result tree still has an item's objects; they are not looked into.
bool isInTree(const CPOHManager& tree, const T_RESULT_COMB_ITEM_D& item);

} // namespace combination
