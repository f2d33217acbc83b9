#include "module/combination/CombinationRules.h"

#include "framework/text/Format.h"

namespace combination {

using framework::formatWide;

std::wstring setFilePathName(std::wstring_view folder, std::wstring_view name) {
    return formatWide(L"%s%s%s", folder, L"_RCB_", name);
}

std::wstring proposedName(const std::wstring& base, const NameIsFree& isFree) {
    constexpr int kLast = 99;
    std::wstring name = base;
    for (int k = 0; k <= kLast && !isFree(name); ++k)
        name = formatWide(L"%s_%d", base, k);
    return name;
}

std::wstring itemText(const std::wstring& caseName, const std::wstring* stepName) {
    return stepName ? formatWide(L"%s:%s", caseName, *stepName) : caseName;
}

std::wstring factorText(double factor) {
    return formatWide(L"%g", factor);
}

InputFault checkInput(std::size_t itemCount, const std::wstring& name, const NameIsFree& isFree) {
    if (itemCount == 0) return {L"IDS_QMGPS_THERE_IS_NO_COMBINATION_INFO"};
    if (!isFree(name)) return {L"IDS_QMGPS_SET_NAME_IS_ALREADY_USED", true};
    if (name.empty()) return {L"IDS_QMGPS_NEW_SET_NAME_IS_EMPTY"};
    return {};
}

} // namespace combination
