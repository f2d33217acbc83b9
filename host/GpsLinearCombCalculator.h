#pragma once

#include "framework/Export.h"
#include "framework/containers/Array.h"
#include "host/POHTree.h"

#include <string>

class CQMDocBase;
class CQMViewBase;

/// Values of T_COMB_ENVL_RESULT_D::combinationType.
namespace CombinationType {
inline constexpr int Linear = 0;
inline constexpr int Envelope = 1;
} // namespace CombinationType

/// Values of T_COMB_ENVL_RESULT_D::action, which linear combinations alone look at.
namespace CombinationAction {
inline constexpr int Add = 0;         ///< a set of that name keeps its cases and gets another one
inline constexpr int Recalculate = 1; ///< a set of that name is replaced
} // namespace CombinationAction

/// Values of T_COMB_ENVL_RESULT_D::envelopeKind.
namespace EnvelopeKind {
inline constexpr int Maximum = 0;
inline constexpr int Minimum = 1;
inline constexpr int AbsoluteMaximumUnsigned = 2; ///< the largest magnitude
inline constexpr int AbsoluteMaximum = 3;         ///< the value of the largest magnitude, with its sign
} // namespace EnvelopeKind

/// A request to combine results. The three arrays have one entry an item.
struct T_COMB_ENVL_RESULT_D {
    CPOHAnalysis* analysis = nullptr; ///< that the items belong to
    std::wstring name;                ///< of the new result set
    int combinationType = CombinationType::Linear;
    int action = CombinationAction::Add;
    int envelopeKind = EnvelopeKind::Maximum;
    TArray<CPOHCase*> cases;
    TArray<CPOHVCase*> steps; ///< null: the whole case
    TArray<double> factors;
    int outputControl = 0; ///< value of the analysis' output control, 0 without one

    /// Back to the state of a new record.
    void Initialize() { *this = {}; }
};

/// The host's combination calculator.
class VEXA_API CGpsLinearCombCalculator {
  public:
    /// `view` may be null. Both must live longer.
    CGpsLinearCombCalculator(CQMDocBase* doc, CQMViewBase* view)
        : m_pDoc(doc)
        , m_pView(view) {}

    /// Computes the combination and writes the result set "_RCB_" + name + ".lmop" beside the model; with
    /// `registerSet` the set joins the results of the document, which is not saved. Zero when nothing was
    /// made; the host's error output then holds the cause. Objects of the result tree stay valid but for
    /// those of a set that is replaced.
    int GenerateSubCombResult(T_COMB_ENVL_RESULT_D& request, int registerSet);

  private:
    CQMDocBase* m_pDoc;
    CQMViewBase* m_pView;
};
