#include "tests/support/MemoryHost.h"

#include <gtest/gtest.h>

namespace {

using support::MemoryDocument;

TEST(AnalysisPool, CopyNamesAreFreeAndFitTheirField) {
    const std::wstring longest(64, L'x');
    struct Row {
        std::vector<std::wstring> taken;
        std::wstring name, copy;
    };
    const Row rows[] = {
        {{}, L"A", L"A_1"},       {{L"A", L"A_1", L"A_3"}, L"A", L"A_2"},
        {{L"a_1"}, L"A", L"A_1"}, {{L"A_1"}, L"A_1", L"A_1_1"},
        {{}, L"", L"_1"},         {{longest}, longest, std::wstring(62, L'x') + L"_1"},
    };
    for (const Row& row : rows) {
        MemoryDocument doc;
        for (const std::wstring& name : row.taken)
            doc.analyses.TR_Add({0, name});
        EXPECT_EQ(doc.analyses.GetNewCopyName(row.name), row.copy);
    }
    MemoryDocument doc;
    for (int i = 1; i < 10; ++i)
        doc.analyses.TR_Add({0, std::wstring(62, L'x') + L"_" + std::to_wstring(i)});
    EXPECT_EQ(doc.analyses.GetNewCopyName(longest), std::wstring(61, L'x') + L"_10");
}

TEST(PropertyPool, SolidsAndUnknownPropertiesHaveNoThickness) {
    MemoryDocument doc;
    doc.properties.put({1, 1, L"plate", PropertyType::Shell, 0, 2.5, {}});
    doc.properties.put({2, 2, L"block", PropertyType::Solid, 0, 2.5, {}});
    double thickness = -1;
    for (const ItrKey key : {2, 3})
        EXPECT_EQ(doc.properties.GetThickness(key, thickness), 0);
    EXPECT_EQ(thickness, -1);
    EXPECT_EQ(doc.properties.GetThickness(1, thickness), 1);
    EXPECT_EQ(thickness, 2.5);
}

TEST(Project, IsThreeDimensionalWithSolidsOrDepth) {
    struct Row {
        ElementType type;
        double lastZ;
        bool is3D;
    };
    const Row rows[] = {{ElementType::Quad4, 7, false},
                        {ElementType::Quad4, 7.5, true},
                        {ElementType::Tet4, 7, true},
                        {ElementType::Line2, 7, false}};
    for (const Row& row : rows) {
        MemoryDocument doc;
        const auto* project = doc.GetDBSession().Pool<DPoolProj>();
        ASSERT_NE(project, nullptr);
        EXPECT_FALSE(project->Is3D()) << "no mesh";
        for (int i = 0; i < 4; ++i)
            doc.mesh.addNode(i + 1, {i * 1.0, i % 2 * 1.0, i == 3 ? row.lastZ : 7});
        doc.mesh.addElement(1, row.type, 1, {0, 1, 2, 3});
        EXPECT_EQ(project->Is3D() != 0, row.is3D) << &row - rows;
    }
}

} // namespace
