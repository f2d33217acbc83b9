#include "workbench/session/Messages.h"

#include "framework/text/CodePage.h"
#include "framework/windows/dialogs/DataExchange.h"
#include "workbench/session/MessageTables.h"

#include <algorithm>

namespace workbench {
namespace {

const Message* findMessage(std::span<const Message> table, const std::string& key) {
    const auto found = std::lower_bound(table.begin(), table.end(), key,
                                        [](const Message& row, const std::string& k) { return row.key < k; });
    return found != table.end() && found->key == key ? &*found : nullptr;
}

} // namespace

std::span<const std::span<const Message>> messageTables() {
    static const std::span<const Message> tables[] = {
        generalMessages(), combinationMessages(), desktopMessages(), fatigueMessages(), stabilityMessages()};
    return tables;
}

std::wstring messageText(std::wstring_view key, Language language) {
    const std::string narrow = framework::toUtf8(key);
    for (const auto& table : messageTables())
        if (const Message* message = findMessage(table, narrow))
            return framework::fromUtf8(language == Language::Korean ? message->korean : message->english);
    return std::wstring(key);
}

void translateDataExchange(Language language) {
    dataExchangeTexts() = {
        .number = messageText(L"IDS_QM_DDX_NUMBER", language),
        .integer = messageText(L"IDS_QM_DDX_INTEGER", language),
        .range = messageText(L"IDS_QM_DDX_RANGE", language),
        .length = messageText(L"IDS_QM_DDX_LENGTH", language),
    };
}

} // namespace workbench
