#include "workbench/session/MessageTables.h"

namespace workbench {
namespace {

constexpr Message kMessages[] = {
    {"IDS_VEXAGPS_FATIGUE_ANALYSIS_PROPERTY_TYPE", "Property \"%s\" is of type %s.",
     "특성 \"%s\"의 종류는 %s입니다."},
    {"IDS_VEXAGPS_FATIGUE_ANALYSIS_PROPERTY_TYPE_ERROR",
     "Elements of this property type cannot take part in a fatigue analysis.",
     "이 특성 종류의 요소는 피로 해석에 사용할 수 없습니다."},
    {"IDS_VEXAGPS_FATIGUE_ANALYSIS_RESULT_ERROR",
     "Results that the fatigue analysis needs do not exist: run the analysis with stresses and strains "
     "requested.",
     "피로 해석에 필요한 결과가 없습니다: 응력과 변형률을 요청하여 해석을 수행하십시오."},
    {"IDS_VEXAGPS_FATIGUE_GENERATE", "Generating fatigue data", "피로 데이터 생성"},
    {"IDS_VEXAGPS_FATIGUE_LOAD_GENERATE", "Gathering the values of load %d", "하중 %d의 값 수집"},
    {"IDS_VEXAGPS_FATIGUE_NOT_EXIST_CURVE", "The fatigue definition has no load with a load function.",
     "피로 정의에 하중 함수가 지정된 하중이 없습니다."},
    {"IDS_VEXAGPS_FATIGUE_NOT_EXIST_LOAD",
     "No step of the analysis belongs to the load of the fatigue definition.",
     "피로 정의의 하중에 해당하는 해석 단계가 없습니다."},
    {"IDS_VEXAGPS_FATIGUE_NOT_EXIST_LOAD_CYCLE", "The number of load cycles must be at least 1.",
     "하중 반복 횟수는 1 이상이어야 합니다."},
    {"IDS_VEXAGPS_FATIGUE_READ_RESULT", "Reading results", "결과 읽기"},
    {"IDS_VEXAGPS_FATIGUE_SOLVE_KPR", "Running the fatigue solver (KPR)", "피로 솔버 실행 (KPR)"},
    {"IDS_VEXAGPS_FATIGUE_SOLVE_WKM", "Running the fatigue solver (WKM)", "피로 솔버 실행 (WKM)"},
    {"IDS_VEXAGPS_FATIGUE_TEXT_REPLACED",
     "\"%s\" has characters that the code page of the solver's input file lacks; they are written as \"?\".",
     "\"%s\"에 솔버 입력 파일의 코드 페이지에 없는 문자가 있어 \"?\"로 기록합니다."},
    {"IDS_VEXAGPS_FATIGUE_WRITE_SOLVER_FILE", "Writing the solver's input file", "솔버 입력 파일 작성"},
};

} // namespace

std::span<const Message> fatigueMessages() {
    return kMessages;
}

} // namespace workbench
