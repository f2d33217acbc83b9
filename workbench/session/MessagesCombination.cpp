#include "workbench/session/MessageTables.h"

namespace workbench {
namespace {

constexpr Message kMessages[] = {
    {"IDS_QMGPS_ADD", "&Add", "추가(&A)"},
    {"IDS_QMGPS_ANALYSISSET", "Anal&ysis set", "해석 세트(&Y)"},
    {"IDS_QMGPS_COMBINATION_ADD", "Add", "추가"},
    {"IDS_QMGPS_COMBINATION_RECALC", "Recalculate", "다시 계산"},
    {"IDS_QMGPS_COMBINATION_TYPE", "Combination type", "조합 방식"},
    {"IDS_QMGPS_COMBTYPE_ENVELOPE", "&Envelope", "포락(&E)"},
    {"IDS_QMGPS_COMBTYPE_LINEAR_COMB", "Linear &combination", "선형 조합(&C)"},
    {"IDS_QMGPS_COMB_ABSMAX", "Absolute maximum with sign", "부호 있는 절대 최대"},
    {"IDS_QMGPS_COMB_ABSMAXU", "Absolute maximum", "절대 최대"},
    {"IDS_QMGPS_COMB_FACTOR", "Factor", "배율"},
    {"IDS_QMGPS_COMB_STEP", "Case:Step", "케이스:단계"},
    {"IDS_QMGPS_DELETE", "&Delete", "삭제(&D)"},
    {"IDS_QMGPS_DELETE_ALL", "Delete A&ll", "모두 삭제(&L)"},
    {"IDS_QMGPS_FROM_RESULT", "&From result", "대상 결과(&F)"},
    {"IDS_QMGPS_MAXIMUM", "Maximum", "최대"},
    {"IDS_QMGPS_MINIMUM", "Minimum", "최소"},
    {"IDS_QMGPS_NEW_COMBINATION", "Combination", "조합"},
    {"IDS_QMGPS_NEW_SET", "&New set", "새 세트(&N)"},
    {"IDS_QMGPS_NEW_SET_NAME_IS_EMPTY", "The name of the new set is empty: enter one.",
     "새 세트의 이름이 비어 있습니다: 이름을 입력하십시오."},
    {"IDS_QMGPS_RESULT_COMBINATION", "Result Combination/Envelope Results", "결과 조합/포락"},
    {"IDS_QMGPS_RESULT_DATA", "Result data", "결과 데이터"},
    {"IDS_QMGPS_SCALE_FACTOR", "&Scale factor", "배율(&S)"},
    {"IDS_QMGPS_SET_NAME_IS_ALREADY_USED", "The set name \"%s\" is already used: choose another one.",
     "세트 이름 \"%s\"이(가) 이미 사용 중입니다: 다른 이름을 입력하십시오."},
    {"IDS_QMGPS_THERE_IS_NO_COMBINATION_INFO",
     "There is nothing to combine: choose a result and add it to the list.",
     "조합할 항목이 없습니다: 결과를 선택하여 목록에 추가하십시오."},
};

} // namespace

std::span<const Message> combinationMessages() {
    return kMessages;
}

} // namespace workbench
