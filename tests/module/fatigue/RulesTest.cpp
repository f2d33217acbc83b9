#include "module/fatigue/FatigueKind.h"
#include "module/fatigue/FileNames.h"
#include "module/fatigue/MergedTimeAxis.h"
#include "module/fatigue/NodeMaterials.h"
#include "module/fatigue/ResultIdTable.h"
#include "module/fatigue/SolverLaunch.h"
#include "module/fatigue/TextFields.h"
#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>
#include <string>

using namespace fatigue;
using Ids = std::vector<unsigned>;

TEST(FatigueKind, FollowsTheBitsOfTheType) {
    const struct {
        std::int32_t type;
        bool stressLife, steps;
        std::int32_t header;
    } rows[] = {{0, true, false, 0},  {1, false, false, 1},  {2, true, true, 2},
                {3, false, true, 3},  {4, false, true, 4},   {5, false, false, 0},
                {6, false, false, 0}, {-1, false, false, 0}, {-2, false, false, 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.type);
        EXPECT_EQ(isStressLife(row.type), row.stressLife);
        EXPECT_EQ(isStepBased(row.type), row.steps);
        EXPECT_EQ(headerTypeCode(row.type), row.header);
    }
}

TEST(ResultIdTable, RequiresAndReadsPerGroup) {
    const ResultIds full = resultIds(false), c = resultIds(true);
    const struct {
        const char* what;
        const ResultIds& ids;
        ElementGroup group;
        Ids primary, pairs, stress, strain;
    } rows[] = {
        {"solid",
         full,
         ElementGroup::Solid,
         {312101, 312102, 312103, 312104, 312105, 312106, 312114},
         {311101, 311102, 311103, 311104, 311105, 311106, 311114},
         {312101, 312102, 312103, 312104, 312105, 312106},
         {311101, 311102, 311103, 311104, 311105, 311106}},
        {"plate, read on top",
         full,
         ElementGroup::Plate,
         {412101, 412102, 412104, 412114, 412151, 412152, 412154, 412164},
         {411101, 411102, 411104, 411114, 411151, 411152, 411154, 411164},
         {412101, 412102, 412104},
         {411101, 411102, 411104}},
        {"membrane",
         full,
         ElementGroup::Membrane,
         {452101, 452102, 452104, 452114},
         {451101, 451102, 451104, 451114},
         {452101, 452102, 452104},
         {451101, 451102, 451104}},
        {"axisymmetric",
         full,
         ElementGroup::Axisymmetric,
         {482101, 482102, 482103, 482104, 482114},
         {481101, 481102, 481103, 481104, 481114},
         {482101, 482102, 482103, 482104},
         {481101, 481102, 481103, 481104}},
        {"plane stress",
         full,
         ElementGroup::PlaneStress,
         {422131, 422132, 422134, 422184},
         {421131, 421132, 421134, 421184},
         {422131, 422132, 422134},
         {421131, 421132, 421134}},
        // 432184 pairs with nothing, and no strain stands through the thickness.
        {"plane strain",
         full,
         ElementGroup::PlaneStrain,
         {432131, 432132, 432133, 432134, 432184},
         {431131, 431132, 431134, 431184},
         {432131, 432132, 432133, 432134},
         {431131, 431132, 431134}},
        {"solid in edition C",
         c,
         ElementGroup::Solid,
         {60010, 60011, 60012, 60013, 60014, 60015, 60031},
         {60050, 60051, 60052, 60053, 60054, 60055, 60061},
         {60010, 60011, 60012, 60013, 60014, 60015},
         {60050, 60051, 60052, 60053, 60054, 60055}},
        {"plate in edition C",
         c,
         ElementGroup::Plate,
         {7020, 7021, 7023, 7033, 7420, 7421, 7423, 7433},
         {7065, 7066, 7068, 7077, 7465, 7466, 7468, 7477},
         {7020, 7021, 7023},
         {7065, 7066, 7068}},
        {"plane strain in edition C", c, ElementGroup::PlaneStrain, {}, {}, {0, 0, 0, 0}, {0, 0, 0}},
    };
    const auto read = [](const ResultIds& ids, ElementGroup group, ResultForm form) {
        Ids found;
        for (const ComponentSource& source : tensorSources(ids, group, form))
            found.push_back(source.id);
        return found;
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(requiredIds(row.ids, row.group, false), row.primary);
        Ids both = row.primary;
        both.insert(both.end(), row.pairs.begin(), row.pairs.end());
        EXPECT_EQ(requiredIds(row.ids, row.group, true), both);
        EXPECT_EQ(read(row.ids, row.group, ResultForm::Primary), row.stress);
        EXPECT_EQ(read(row.ids, row.group, ResultForm::Paired), row.strain);
        // The last digit of a full identifier is the component.
        for (const ResultForm form : {ResultForm::Primary, ResultForm::Paired})
            for (const ComponentSource& source : tensorSources(full, row.group, form))
                EXPECT_EQ(source.component, static_cast<int>(source.id % 10) - 1);
    }
    EXPECT_EQ(pairedSlot(31), 64);
    EXPECT_FALSE(pairedSlot(32));
}

TEST(MergedTimeAxis, IsOneAscendingAxis) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        const char* what;
        std::vector<double> times, axis;
    } rows[] = {
        {"none", {}, {}},
        {"two functions", {0, 2, 4, 0, 1, 4}, {0, 1, 2, 4}},
        {"closer than the tolerance", {1 + 9e-10, 1, 2, 2 + 1.1e-9}, {1, 2, 2 + 1.1e-9}},
        {"a chain is measured from the time that stays", {0, 6e-10, 1.2e-9, 1.8e-9}, {0, 1.2e-9}},
        {"negative", {-1, -3, 0}, {-3, -1, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(mergedTimeAxis(row.times), row.axis);
    }
    const std::vector<double> axis = mergedTimeAxis({nan, 3, nan, 1, 2});
    ASSERT_GE(axis.size(), 4u);
    EXPECT_EQ(std::vector(axis.begin(), axis.begin() + 3), (std::vector<double>{1, 2, 3}));
    EXPECT_TRUE(std::isnan(axis[3]));
}

TEST(NodeMaterials, AnswersLikeAnOrderedMultimap) {
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    NodeMaterials materials;
    std::set<std::pair<std::uint64_t, std::int32_t>> expected;
    const auto check = [&] {
        for (std::uint64_t node = 0; node < 60; ++node) {
            std::vector<std::int32_t> indices;
            for (const auto& pair : expected)
                if (pair.first == node) indices.push_back(pair.second);
            const auto found = materials.of(node);
            ASSERT_EQ(std::vector(found.begin(), found.end()), indices) << node;
        }
    };
    for (int round = 0; round < 3; ++round) {
        // More additions than are kept pending at once.
        for (int i = 0; i < 70000; ++i) {
            const std::uint64_t node = random.below(50);
            const auto index = static_cast<std::int32_t>(random.below(4 + static_cast<std::size_t>(round)));
            materials.add(node, index);
            expected.emplace(node, index);
        }
        check();
    }
    for (const std::uint64_t node : {7u, 3u, 3u, 40u})
        EXPECT_EQ(materials.of(node).size(), 6u) << node;
    materials.clear();
    EXPECT_TRUE(materials.of(7).empty());
}

TEST(TextField, FillsCutsAndEndsWithZero) {
    const struct {
        std::string text, field; ///< with the byte behind a field of four
    } rows[] = {
        {"", std::string("\0   #", 5)},       {"ab", std::string("ab\0 #", 5)},
        {"abc", std::string("abc\0#", 5)},    {"abcd", std::string("abcd\0", 5)},
        {"abcdef", std::string("abcd\0", 5)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        std::string buffer(5, '#');
        fillTextField(row.text, buffer.data(), 4);
        EXPECT_EQ(buffer, row.field);
    }
}

TEST(FileNames, StandBesideTheModel) {
    const struct {
        std::wstring stem, folder;
    } rows[] = {{L"C:\\work\\bar", L"C:\\work\\"}, {L"/home/a.b/bar", L"/home/a.b/"}, {L"bar", L""}};
    for (const auto& row : rows) {
        const FileNames names = fileNames(row.stem, L"Static v1.2", L"Life");
        EXPECT_EQ(names.resultFileStem, row.stem + L"_Life");
        EXPECT_EQ(names.solverBasePath, row.stem + L"_Static v1.2.lmop");
        EXPECT_EQ(names.interfaceFilePath, row.folder + L"FATIGUE.76");
        EXPECT_EQ(names.textMirrorPath, row.stem + L"_Static v1.2_FATIGUE_76.txt");
        EXPECT_EQ(registeredName(names.resultFileStem), row.stem + L"_Life.lmop");
        EXPECT_EQ(solverResultName(names.resultFileStem), row.stem + L"_Life_Fatigue.lmop");
    }
}

TEST(SolverLaunch, QuotesTheFileAlone) {
    const std::wstring program = solverExePath(L"C:\\Program Files\\host\\");
    EXPECT_EQ(program, L"C:\\Program Files\\host\\64bit Solver\\FatigueSolver.exe");
    EXPECT_EQ(solverCommandLine(program, L"D:\\my work\\FATIGUE.76"),
              L"C:\\Program Files\\host\\64bit Solver\\FatigueSolver.exe \"D:\\my work\\FATIGUE.76\"");
    for (const bool registered : {false, true})
        for (const bool own : {false, true})
            EXPECT_EQ(resultAction(registered, own) == ResultAction::Rename, own && !registered);
}
