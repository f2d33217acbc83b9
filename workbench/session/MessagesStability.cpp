#include "workbench/session/MessageTables.h"

namespace workbench {
namespace {

constexpr Message kMessages[] = {
    {"IDS_VEXAGPS_DISP_SAFETY_GRAPH_TITLE", "Factor of Safety - Displacement", "안전율-변위"},
    {"IDS_VEXAGPS_DISP_SAFETY_GRAPH_X_AXIS", "Displacement", "변위"},
    {"IDS_VEXAGPS_ITER_SAFETY_GRAPH_TITLE", "Factor of Safety - Iterations", "안전율-반복 횟수"},
    {"IDS_VEXAGPS_ITER_SAFETY_GRAPH_X_AXIS", "Accumulated iterations", "누적 반복 횟수"},
    {"IDS_VEXAGPS_NO_SAFETY_GRAPH_FILE",
     "There is no history of the factor of safety: the file %s does not exist or cannot be read; run the "
     "strength-reduction analysis first.",
     "안전율 이력이 없습니다: 파일 %s이(가) 없거나 읽을 수 없습니다. 먼저 강도 감소 해석을 수행하십시오."},
    {"IDS_VEXAGPS_SAFETY_GRAPH_SHORT_LINE",
     "%s, line %d: a row needs iterations, displacement, factor of safety and flag; it was left out.",
     "%s, %d행: 반복 횟수, 변위, 안전율, 표시가 모두 필요하므로 이 행은 제외했습니다."},
    {"IDS_VEXAGPS_SAFETY_GRAPH_SHORT_LINES", "%s: %d more rows with fewer than four values were left out.",
     "%s: 값이 네 개보다 적은 행 %d개를 더 제외했습니다."},
    {"IDS_VEXAGPS_SAFETY_GRAPH_Y_AXIS", "Factor of safety", "안전율"},
    {"IDS_VEXA_GPS_ANALYSIS_CASE", "&Analysis case", "해석 케이스(&A)"},
    {"IDS_VEXA_GPS_FOS_GRAPH_TYPE", "&Graph type", "그래프 종류(&G)"},
};

} // namespace

std::span<const Message> stabilityMessages() {
    return kMessages;
}

} // namespace workbench
