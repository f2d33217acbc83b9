#include "host/PDLItem.h"
#include "host/VResultFactory.h"
#include "tests/support/MemoryDocument.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using support::MemoryDocument;
using support::MemoryResult;
using Values = std::vector<float>;

constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

/// Equal values, where NaN equals NaN.
bool same(std::span<const float> a, std::span<const float> b) {
    return std::ranges::equal(a, b,
                              [](float x, float y) { return x == y || (std::isnan(x) && std::isnan(y)); });
}

class PostData : public ::testing::Test {
  protected:
    /// Nodes 0..4; a triangle 0 1 2, a line 2 3; node 4 has no element.
    PostData() {
        for (int i = 0; i < 5; ++i)
            doc_.mesh.addNode(i + 1);
        doc_.mesh.addElement(1, ElementType::Tri3, 1, {0, 1, 2});
        doc_.mesh.addElement(2, ElementType::Line2, 1, {2, 3});
    }
    MemoryResult& result(ResultLocation location, Values values, std::vector<std::uint32_t> items = {}) {
        return step_.add(101, location, std::move(values), std::move(items));
    }
    MemoryDocument doc_;
    support::MemoryStep& step_ = doc_.results.addAnalysis(1, L"a").addCase(2, L"c").addStep(3, L"s");
};

TEST_F(PostData, ValuesComeANodeOrACorner) {
    constexpr auto node = ResultLocation::Node, corner = ResultLocation::ElementCorner;
    struct Row {
        const char* name;
        ResultLocation location;
        Values values;
        std::vector<std::uint32_t> items;
        Values original, main; ///< empty: refused
    };
    const Row rows[] = {
        {"all nodes", node, {1, 2, 3, 4, 5}, {}, {1, 2, 3, 4, 5}, {1, 2, 3, 4, 5}},
        {"some nodes", node, {2, 4}, {1, 3}, {kNone, 2, kNone, 4, kNone}, {kNone, 2, kNone, 4, kNone}},
        {"all corners", corner, {1, 2, 3, 7, 9}, {}, {1, 2, 3, 7, 9}, {1, 2, 5, 9, kNone}},
        {"one element", corner, {7, 9}, {1}, {kNone, kNone, kNone, 7, 9}, {kNone, kNone, 7, 9, kNone}},
        {"too few nodes", node, {1, 2, 3, 4}, {}, {}, {}},
        {"too many nodes", node, {1, 2, 3}, {1, 3}, {}, {}},
        {"no such node", node, {1, 2}, {1, 5}, {}, {}},
        {"too few corners", corner, {1, 2, 3, 4}, {}, {}, {}},
        {"too many corners", corner, {1, 2, 3}, {1}, {}, {}},
        {"no such element", corner, {1, 2}, {2}, {}, {}},
    };
    CPDLItem item(&doc_, nullptr);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        MemoryResult& table = result(row.location, row.values, row.items);
        const bool fits = !row.original.empty();
        EXPECT_EQ(item.LoadOrgData(&table) != 0, fits);
        EXPECT_TRUE(same(item.GetValues(), row.original));
        EXPECT_EQ(item.GetLocation(), fits ? row.location : node);
        EXPECT_EQ(item.LoadMainData(&table) != 0, fits);
        EXPECT_TRUE(same(item.GetValues(), row.main));
        EXPECT_EQ(item.GetLocation(), node);
        EXPECT_EQ(table.users, 0);
    }
}

TEST_F(PostData, WithoutATableTheItemIsEmpty) {
    MemoryResult& table = result(ResultLocation::Node, {1, 2, 3, 4, 5});
    CPDLItem item(&doc_, nullptr);
    ASSERT_TRUE(item.LoadOrgData(&table));
    item.Clear();
    EXPECT_TRUE(item.GetValues().empty());
    ASSERT_TRUE(item.LoadOrgData(&table));
    EXPECT_EQ(item.LoadMainData(nullptr), 0);
    EXPECT_TRUE(item.GetValues().empty());
    ASSERT_TRUE(item.LoadOrgData(&table));
    table.unreadable = true;
    EXPECT_EQ(item.LoadOrgData(&table), 0);
    EXPECT_TRUE(item.GetValues().empty());
    EXPECT_EQ(CPDLItem(nullptr, nullptr).LoadOrgData(&table), 0);
}

TEST(ResultCategories, FollowTheFamiliesOfTheCodes) {
    struct Row {
        long code;
        ResultCategory category;
    };
    const Row rows[] = {
        {-101, ResultCategory::None},
        {99, ResultCategory::None},
        {101, ResultCategory::Displacement},
        {205, ResultCategory::Velocity},
        {311, ResultCategory::Acceleration},
        {414, ResultCategory::Seepage},
        {501, ResultCategory::None},
        {999, ResultCategory::None},
        {312101, ResultCategory::Solid},
        {311114, ResultCategory::Solid},
        {412164, ResultCategory::Plate},
        {4111, ResultCategory::Plate},
        {45210, ResultCategory::Membrane},
        {451101, ResultCategory::Membrane},
        {482101, ResultCategory::Axisymmetric},
        {481101, ResultCategory::Axisymmetric},
        {422184, ResultCategory::PlaneStress},
        {421131, ResultCategory::PlaneStress},
        {432184, ResultCategory::PlaneStrain},
        {431131, ResultCategory::PlaneStrain},
        {313101, ResultCategory::None},
        {310101, ResultCategory::None},
        {76110, ResultCategory::None},
    };
    for (const Row& row : rows)
        EXPECT_EQ(IPostAPI::GetResCat(row.code), row.category) << row.code;
}

TEST_F(PostData, FactoriesAnswerForTheirCategory) {
    struct Doubled : IVResultFactory {
        std::unique_ptr<CVResult> Create(CPOHVCase& step, long type) override {
            return std::make_unique<MemoryResult>(&step, static_cast<unsigned>(type), ResultLocation::Node,
                                                  Values{2}, std::vector<std::uint32_t>{});
        }
    } factory;
    auto& manager = CVResultFactoryManager::GetInstance();
    EXPECT_EQ(manager.GetVResultFactory(312101), nullptr);
    EXPECT_EQ(manager.SetVResultFactory(ResultCategory::Solid, &factory), nullptr);
    ASSERT_EQ(manager.GetVResultFactory(312101), &factory);
    EXPECT_EQ(manager.GetVResultFactory(311101), &factory);
    EXPECT_EQ(manager.GetVResultFactory(412101), nullptr);
    EXPECT_EQ(manager.GetVResultFactory(312101)->Create(step_, 312101)->GetVCase(), &step_);
    EXPECT_EQ(manager.SetVResultFactory(ResultCategory::Solid, nullptr), &factory);
    EXPECT_EQ(manager.GetVResultFactory(312101), nullptr);
}

} // namespace
