#include "module/combination/CombinationRules.h"

#include "module/combination/CombinationItem.h"
#include "tests/support/MemoryResults.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using namespace combination;

TEST(CombinationRules, ProposesTheFirstFreeName) {
    std::set<std::wstring> hundred{L"Set"};
    for (int k = 0; k < 99; ++k)
        hundred.insert(L"Set_" + std::to_wstring(k));
    std::set<std::wstring> all = hundred;
    all.insert(L"Set_99");
    const struct {
        std::set<std::wstring> taken;
        const wchar_t* proposed;
        int asked; ///< names that were looked for
    } rows[] = {
        {{}, L"Set", 1},
        {{L"Set"}, L"Set_0", 2},
        {{L"Set", L"Set_0", L"Set_1", L"Set_3"}, L"Set_2", 4},
        {{L"Set_0"}, L"Set", 1},
        {hundred, L"Set_99", 100},
        {all, L"Set_99", 100},
    };
    for (const auto& row : rows) {
        int asked = 0;
        const auto name = proposedName(L"Set", [&](const std::wstring& candidate) {
            ++asked;
            return !row.taken.contains(candidate);
        });
        EXPECT_EQ(name, row.proposed);
        EXPECT_EQ(asked, row.asked) << row.taken.size();
    }
}

TEST(CombinationRules, ChecksItemsThenTheFileThenTheName) {
    const struct {
        std::size_t items;
        const wchar_t* name;
        bool isFree;
        const wchar_t* key;
        bool namesSet;
    } rows[] = {
        {1, L"N", true, L"", false},
        {0, L"N", true, L"IDS_QMGPS_THERE_IS_NO_COMBINATION_INFO", false},
        {0, L"", true, L"IDS_QMGPS_THERE_IS_NO_COMBINATION_INFO", false},
        {0, L"N", false, L"IDS_QMGPS_THERE_IS_NO_COMBINATION_INFO", false},
        {1, L"N", false, L"IDS_QMGPS_SET_NAME_IS_ALREADY_USED", true},
        {1, L"", true, L"IDS_QMGPS_NEW_SET_NAME_IS_EMPTY", false},
        {1, L"", false, L"IDS_QMGPS_SET_NAME_IS_ALREADY_USED", true}, // a file "_RCB_.lmop" is there
        {3, L" ", true, L"", false},                                  // a blank is a name here
    };
    for (const auto& row : rows) {
        const auto fault = checkInput(row.items, row.name, [&](const std::wstring& name) {
            EXPECT_EQ(name, row.name);
            return row.isFree;
        });
        EXPECT_EQ(std::wstring(fault.key), row.key) << row.items;
        EXPECT_EQ(fault.namesSet, row.namesSet);
    }
}

TEST(CombinationRules, WriteItemsAndFiles) {
    const std::wstring step = L"t=1";
    EXPECT_EQ(itemText(L"Dead", nullptr), L"Dead");
    EXPECT_EQ(itemText(L"Dead", &step), L"Dead:t=1");
    EXPECT_EQ(itemText(L"100%d", &step), L"100%d:t=1");
    const std::pair<double, const wchar_t*> factors[] = {
        {1, L"1"}, {1.35, L"1.35"}, {-0.5, L"-0.5"}, {0, L"0"}, {1e-7, L"1e-07"}, {1.23456789, L"1.23457"}};
    for (const auto& [factor, text] : factors)
        EXPECT_EQ(factorText(factor), text);
    EXPECT_EQ(setFilePathName(L"/models/", L"ULS 1.35"), L"/models/_RCB_ULS 1.35");
}

TEST(CombinationRules, FillTheRequestInTheOrderOfTheItems) {
    support::MemoryResultTree tree;
    auto& analysis = tree.addAnalysis(7, L"Static");
    auto& dead = analysis.addCase(8, L"Dead");
    auto& full = dead.addStep(9, L"Full");
    auto& wind = tree.addAnalysis(10, L"Quake").addCase(11, L"Wind");

    TArray<T_RESULT_COMB_ITEM_D> items;
    items.Add(itemOf(full, 1.5));
    items.Add(itemOf(wind, -2));
    items.Add(itemOf(dead, 0));
    const auto request = requestOf({L"N", 1, 0, 3}, &analysis, items);
    EXPECT_EQ(request.analysis, &analysis);
    EXPECT_EQ(request.name, L"N");
    EXPECT_EQ(request.combinationType, 1);
    EXPECT_EQ(request.action, 0);
    EXPECT_EQ(request.envelopeKind, 3);
    EXPECT_EQ(request.outputControl, 0);
    ASSERT_EQ(request.cases.GetSize(), 3u);
    ASSERT_EQ(request.steps.GetSize(), 3u);
    ASSERT_EQ(request.factors.GetSize(), 3u);
    EXPECT_EQ(request.cases[0], &dead);
    EXPECT_EQ(request.steps[0], &full);
    EXPECT_EQ(request.factors[0], 1.5);
    EXPECT_EQ(request.cases[1], &wind);
    EXPECT_EQ(request.steps[1], nullptr);
    EXPECT_EQ(request.factors[1], -2);
    EXPECT_EQ(request.cases[2], &dead);
    EXPECT_EQ(itemOf(analysis, 1).resultCase, nullptr);

    // What has gone is noticed without being looked into.
    for (const auto& item : items)
        EXPECT_TRUE(isInTree(tree, item));
    auto* gone = reinterpret_cast<CPOHCase*>(&items);
    EXPECT_FALSE(isInTree(tree, {gone, nullptr, 1}));
    EXPECT_FALSE(isInTree(tree, {&wind, &full, 1})); // a step of another case
}

} // namespace
