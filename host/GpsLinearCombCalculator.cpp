#include "host/GpsLinearCombCalculator.h"

#include "host/HostServices.h"

int CGpsLinearCombCalculator::GenerateSubCombResult(T_COMB_ENVL_RESULT_D& request, int registerSet) {
    if (!m_pDoc) return 0;
    return HostServices().GenerateSubCombResult(*m_pDoc, m_pView, request, registerSet != 0);
}
