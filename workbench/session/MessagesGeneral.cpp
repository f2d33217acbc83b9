#include "workbench/session/MessageTables.h"

namespace workbench {
namespace {

constexpr Message kMessages[] = {
    {"IDS_CHART_MORE", "... and %d more", "... 외 %d개"},
    {"IDS_CHART_SUMMARY", "%s: %d points, minimum %s, maximum %s", "%s: 점 %d개, 최소 %s, 최대 %s"},
    {"IDS_QM_APPLY", "A&pply", "적용(&P)"},
    {"IDS_QM_BASE_CLOSE", "Close", "닫기"},
    {"IDS_QM_CANCEL", "Cancel", "취소"},
    {"IDS_QM_DB_CANNOT_EXECUTE_FILE", "The program cannot be started: %s",
     "프로그램을 실행할 수 없습니다: %s"},
    {"IDS_QM_DB_CANNOT_FIND_FILE", "The file cannot be found: %s", "파일을 찾을 수 없습니다: %s"},
    {"IDS_QM_DB_PROPTYPE_2D_GAUGING_PLATE", "2D gauging plate", "2D 게이지 판"},
    {"IDS_QM_DB_PROPTYPE_2D_GEOGRID", "2D geogrid", "2D 지오그리드"},
    {"IDS_QM_DDX_INTEGER", "Please enter an integer.", "정수를 입력하십시오."},
    {"IDS_QM_DDX_LENGTH", "Please enter at most %s characters.", "%s자 이내로 입력하십시오."},
    {"IDS_QM_DDX_NUMBER", "Please enter a number.", "숫자를 입력하십시오."},
    {"IDS_QM_DDX_RANGE", "Please enter a number between %s and %s.", "%s에서 %s 사이의 숫자를 입력하십시오."},
    {"IDS_QM_LIB_ERROR", "Error", "오류"},
    {"IDS_QM_OK", "OK", "확인"},
    {"IDS_UTIL_FONT_ARIAL", "Arial", "Arial"},
    {"IDS_VEXAGPS_Analysis_Result", "Results Graph", "결과 그래프"},
    {"IDS_VEXAGPS_Dynamic_Results_Plot", "Dynamic Results Plot", "동적 결과 도시"},
    {"IDS_VEXAGPS_Dynamic_Results_Select", "Dialog", "대화 상자"},
    {"IDS_VEXAGPS_Generate_Optimization_Model", "Generate Optimization Model", "최적화 모델 생성"},
    {"IDS_VEXAGPS_History_Probes_Graph", "History Probes Graph", "이력 프로브 그래프"},
    {"IDS_VEXAGPS_Response_Surface", "Response Surface", "반응 표면"},
    {"IDS_VEXAGPS_Results_Graph", "Results Graph", "결과 그래프"},
    {"IDS_VEXAGPS_Slope_Stability_FOS_Result", "Slope Stability FOS Result", "사면 안정 안전율 결과"},
    {"IDS_VEXAGPS_Stagewise_Relative_Displacement", "Stagewise Relative Displacement", "단계별 상대 변위"},
    {"IDS_VEXAGPS_TOOL_NOT_AVAILABLE", "This tool is not available in this version.",
     "이 도구는 이 버전에서 사용할 수 없습니다."},
    {"IDS_VEXA_CAE_GRAPH_FOS", "Safety Graph", "안전율 그래프"},
    {"IDS_VEXA_LBC_2D_PLOTONLY", "2D plot-only", "2D 출력 전용"},
};

} // namespace

std::span<const Message> generalMessages() {
    return kMessages;
}

} // namespace workbench
