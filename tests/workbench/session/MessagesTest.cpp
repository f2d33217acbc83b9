#include "workbench/session/Messages.h"

#include "framework/text/CodePage.h"
#include "framework/windows/dialogs/DataExchange.h"
#include "host/MSGFunction.h"
#include "workbench/session/WorkbenchHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

namespace {

using namespace workbench;

std::set<std::string> translatedKeys() {
    std::set<std::string> keys;
    for (const auto& table : messageTables())
        for (const Message& row : table)
            keys.insert(row.key);
    return keys;
}

/// Keys that stand in the sources of the product and the workbench, but for the tables themselves.
std::set<std::string> usedKeys() {
    std::set<std::string> keys;
    for (const char* room : {"framework", "host", "module", "workbench"})
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(std::string(VEXA_SOURCE_DIR "/") + room)) {
            const auto& path = entry.path();
            if (path.extension() != ".cpp" && path.extension() != ".h") continue;
            static const std::regex tables("Messages.+\\.cpp");
            if (std::regex_match(path.filename().string(), tables)) continue;
            std::ifstream file(path);
            const std::string text{std::istreambuf_iterator<char>(file), {}};
            static const std::regex key("\"(IDS_[A-Za-z0-9_]+)\"");
            for (auto it = std::sregex_iterator(text.begin(), text.end(), key); it != std::sregex_iterator();
                 ++it)
                keys.insert((*it)[1]);
        }
    return keys;
}

TEST(Messages, StandInOrderWithTheSamePlaceholdersInBothLanguages) {
    const auto placeholders = [](std::string text) {
        std::string found;
        for (std::smatch match; std::regex_search(text, match, std::regex("%[a-z]")); text = match.suffix())
            found += match.str();
        return found;
    };
    std::set<std::string> seen;
    for (const auto& table : messageTables()) {
        EXPECT_TRUE(
            std::ranges::is_sorted(table, {}, [](const Message& row) { return std::string(row.key); }));
        for (const Message& row : table) {
            EXPECT_TRUE(seen.insert(row.key).second) << row.key << " stands twice";
            EXPECT_EQ(placeholders(row.english), placeholders(row.korean)) << row.key;
            EXPECT_EQ(messageText(framework::fromUtf8(row.key), Language::Korean),
                      framework::fromUtf8(row.korean));
        }
    }
    EXPECT_EQ(messageText(L"IDS_UNKNOWN", Language::English), L"IDS_UNKNOWN");
}

TEST(Messages, AreTheKeysThatAreUsed) {
    const auto used = usedKeys();
    const auto translated = translatedKeys();
    for (const std::string& key : used)
        EXPECT_TRUE(translated.contains(key)) << key << " has no text";
    for (const std::string& key : translated)
        EXPECT_TRUE(used.contains(key)) << key << " is used nowhere";
}

TEST(Messages, FollowTheLanguageAtRunTime) {
    WorkbenchHost host({});
    EXPECT_EQ(CMSGFunction::GetValue(L"IDS_QM_CANCEL"), L"Cancel");
    EXPECT_EQ(dataExchangeTexts().number, L"Please enter a number.");
    host.setLanguage(Language::Korean);
    EXPECT_EQ(CMSGFunction::GetValue(L"IDS_QM_CANCEL"), L"취소");
    EXPECT_EQ(dataExchangeTexts().number, L"숫자를 입력하십시오.");
    host.setLanguage(Language::English);
    EXPECT_EQ(dataExchangeTexts().range, L"Please enter a number between %s and %s.");
}

} // namespace
