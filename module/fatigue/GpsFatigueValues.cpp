#include "host/QMUnitCtrl.h"
#include "module/fatigue/GpsFatigueSolver.h"
#include "module/fatigue/LoadAverage.h"

#include <algorithm>

namespace {

fatigue::TableView viewOf(const T_RESULT_TABLE_D& table) {
    return {table.location == ResultLocation::Node, table.values, table.items};
}

} // namespace

int CGpsFatigueSolver::GetStressValue(CPOHCase* resultCase, CPOHVCase* step, float** table) {
    return GetNodeValue(resultCase, step, fatigue::ResultForm::Primary, table);
}

int CGpsFatigueSolver::GetStrainValue(CPOHCase* resultCase, CPOHVCase* step, float** table) {
    return GetNodeValue(resultCase, step, fatigue::ResultForm::Paired, table);
}

/// Holds as few tables as the arithmetic allows: one at a time, or the three in-plane ones of a turned group.
int CGpsFatigueSolver::GetNodeValue(CPOHCase* resultCase, CPOHVCase* step, fatigue::ResultForm form,
                                    float** table) {
    fatigue::LoadAverage average(m_lists, table);
    for (int g = 0; g < fatigue::kGroupCount; ++g) {
        const auto group = static_cast<fatigue::ElementGroup>(g);
        if (!m_lists.present(group)) continue;
        const auto sources = fatigue::tensorSources(m_resultIdTable, group, form);
        if (fatigue::hasLocalAxes(group)) {
            const CVResultLease xx(GetVRst(resultCase, step, sources[0].id));
            const CVResultLease yy(GetVRst(resultCase, step, sources[1].id));
            const CVResultLease xy(GetVRst(resultCase, step, sources[2].id));
            if (!xx || !yy || !xy) return 0;
            if (!average.addTurned(group, {viewOf(*xx), viewOf(*yy), viewOf(*xy)})) return 0;
            continue;
        }
        for (const fatigue::ComponentSource& source : sources) {
            const CVResultLease values(GetVRst(resultCase, step, source.id));
            if (!values || !average.add(group, source.component, viewOf(*values))) return 0;
        }
    }
    return average.finish();
}

int CGpsFatigueSolver::CalcTransformDataElem(tagTElem& elem, double* in, double* out) {
    std::copy_n(in, fatigue::kTensorComponents, out);
    double axes[3][3];
    if (!m_elementPool->Calc2DElemLocalVector(elem, axes)) return 0;
    return Ucs2GlobalComp6(out, axes);
}

int CGpsFatigueSolver::Ucs2GlobalComp6(double* comp, const double axes[3][3]) {
    fatigue::turnToGlobal(comp, axes);
    return 1;
}

void CGpsFatigueSolver::ConvertNodeValUnitIn(float*** values, const int dims[3]) {
    const double factor = CQMUnitCtrl::GetConvertFactorCurrent(UnitKind::Stress);
    if (factor == 1.0) return;
    for (int load = 0; load < dims[0]; ++load)
        for (int array = 0; array < dims[1]; ++array) {
            float* const nodes = values[load][array];
            for (int node = 0; node < dims[2]; ++node)
                nodes[node] = static_cast<float>(static_cast<double>(nodes[node]) * factor);
        }
}
