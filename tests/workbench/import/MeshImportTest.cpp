#include "tests/support/TemporaryFolder.h"
#include "workbench/document/DocumentFile.h"
#include "workbench/import/ImportProject.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using namespace workbench;
using Values = std::vector<float>;

/// A mesh file, imported with what follows its name in the project deck.
struct Import {
    TemporaryFolder folder;
    std::string name;

    Import(const std::string& fileName, const std::string& text)
        : name(fileName) {
        writeBytes(folder / name, text);
    }

    Result<ImportReport> run(const std::string& keys = {}) const {
        writeBytes(folder / "p.toml", "[[analysis]]\nname = 'A'\ndeck = '" + name + "'\n" + keys);
        return importProject(folder / "p.toml", folder / "m.wkm");
    }

    /// The values of a component of a step (from 0).
    Values values(unsigned id, std::size_t step = 0) const {
        const auto file = resultfile::Reader::open(folder / "m_A.lmop");
        if (!file || step >= file->contents().cases[0].steps.size()) return {};
        const auto values = file->values(0, step, id);
        return values ? *values : Values();
    }

    /// The positions that the values of a component follow; empty where they follow the whole mesh.
    std::vector<std::uint32_t> items(unsigned id, resultfile::Location location, std::size_t step = 0) const {
        const auto file = resultfile::Reader::open(folder / "m_A.lmop");
        if (!file) return {};
        for (const auto& component : file->contents().cases[0].steps[step].components)
            if (component.id == id) {
                EXPECT_EQ(component.location, location) << id;
                return component.items.empty() ? std::vector<std::uint32_t>() : *file->items(component.items);
            }
        ADD_FAILURE() << "no component " << id;
        return {};
    }

    std::unique_ptr<ModelDatabase> document() const {
        auto opened = openDocument(folder / "m.wkm");
        return opened ? std::move(*opened) : nullptr;
    }
};

/// Whether one of the warnings, or the failure, holds each of the words.
testing::AssertionResult says(const std::vector<std::string>& texts, const std::vector<std::string>& words) {
    for (const std::string& text : texts)
        if (std::ranges::all_of(words, [&](const auto& w) { return text.find(w) != std::string::npos; }))
            return testing::AssertionSuccess();
    auto failure = testing::AssertionFailure() << "none says it:";
    for (const std::string& text : texts)
        failure << "\n  " << text;
    return failure;
}

/// A list of numbers that holds still.
template <class T>
std::vector<T> listOf(std::span<const T> numbers) {
    return {numbers.begin(), numbers.end()};
}

constexpr auto kNode = resultfile::Location::Node;
constexpr auto kCorner = resultfile::Location::ElementCorner;

/// Two tetrahedra on one face, a line between two of their nodes and a point apart.
std::string vtu(const std::string& pointData, const std::string& cellData) {
    return "<?xml version=\"1.0\"?>\n"
           "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\">\n"
           "<UnstructuredGrid>\n<FieldData><DataArray type=\"Float64\" Name=\"TimeValue\" "
           "NumberOfTuples=\"1\" "
           "format=\"ascii\">2.5</DataArray></FieldData>\n"
           "<Piece NumberOfPoints=\"6\" NumberOfCells=\"4\">\n<Points><DataArray type=\"Float64\" "
           "NumberOfComponents=\"3\" format=\"ascii\">0 0 0 1 0 0 0 1 0 0 0 1 0 0 -1 9 9 "
           "9</DataArray></Points>\n"
           "<Cells><DataArray type=\"Int32\" Name=\"connectivity\" format=\"ascii\">0 1 2 3 0 2 1 4 0 1 "
           "5</DataArray>"
           "<DataArray type=\"Int32\" Name=\"offsets\" format=\"ascii\">4 8 10 11</DataArray>"
           "<DataArray type=\"UInt8\" Name=\"types\" format=\"ascii\">10 10 3 1</DataArray></Cells>\n"
           "<PointData>" +
           pointData + "</PointData>\n<CellData>" + cellData +
           "</CellData>\n</Piece></UnstructuredGrid></VTKFile>\n";
}

std::string array(const std::string& name, int components, const std::string& values,
                  const std::string& more = {}) {
    return "<DataArray type=\"Float64\" Name=\"" + name + "\" NumberOfComponents=\"" +
           std::to_string(components) + "\" " + more + " format=\"ascii\">" + values + "</DataArray>\n";
}

TEST(MeshImport, TakesPointAndCellDataOfVtu) {
    std::string stress, displacement;
    for (int node = 1; node <= 6; ++node) {
        for (int c = 1; c <= 6; ++c)
            stress += std::to_string(10 * node + c) + " ";
        displacement += std::to_string(3 * node) + " " + std::to_string(4 * node) + " 0 ";
    }
    // The components stand as xx yy zz xy xz yz.
    const std::string names = "ComponentName0=\"XX\" ComponentName1=\"YY\" ComponentName2=\"ZZ\" "
                              "ComponentName3=\"XY\" ComponentName4=\"XZ\" ComponentName5=\"YZ\"";
    const Import import("a.vtu", vtu(array("Stress", 6, stress, names) + array("U", 3, displacement) +
                                         array("other", 1, "1 2 3 4 5 6") + array("T", 1, "1 2 nan 4 5 6"),
                                     array("density", 1, "7 8 9 10") + array("MaterialIds", 1, "4 3 3 3")));
    const auto report = import.run("[analysis.fields]\ndensity = 311131\n");
    ASSERT_TRUE(report) << report.error().message;
    EXPECT_EQ(report->nodeCount, 6u);
    EXPECT_EQ(report->elementCount, 3u) << "the line is an edge";
    EXPECT_EQ(report->analyses[0].cases[0].steps, std::vector<std::string>{"Time 2.5"});
    EXPECT_TRUE(says(report->warnings, {"a.vtu", "'other'", "[analysis.fields]"}));
    EXPECT_TRUE(says(report->warnings, {"'T'", "not finite at 1 points"}));
    EXPECT_EQ(report->warnings.size(), 2u);

    EXPECT_EQ(import.values(102), (Values{4, 8, 12, 16, 20, 24}));
    EXPECT_EQ(import.values(104), (Values{5, 10, 15, 20, 25, 30}));
    EXPECT_EQ(import.values(501), (Values{1, 2, 4, 5, 6}));
    EXPECT_EQ(import.items(501, kNode), (std::vector<std::uint32_t>{0, 1, 3, 4, 5}));
    EXPECT_EQ(import.values(312105), (Values{16, 26, 36, 46, 56})) << "yz";
    EXPECT_EQ(import.values(312106), (Values{15, 25, 35, 45, 55})) << "zx";
    EXPECT_EQ(import.items(312105, kNode), (std::vector<std::uint32_t>{0, 1, 2, 3, 4}));
    // von Mises of 11 to 16: sqrt((1 + 1 + 4) / 2 + 3 (14^2 + 16^2 + 15^2))
    EXPECT_FLOAT_EQ(import.values(312114)[0], static_cast<float>(std::sqrt(3 + 3 * (196 + 256 + 225))));
    EXPECT_EQ(import.values(311131), (Values{7, 7, 7, 7, 8, 8, 8, 8, 10}));
    EXPECT_TRUE(import.items(311131, kCorner).empty());

    const auto document = import.document();
    ASSERT_TRUE(document);
    EXPECT_EQ(listOf(document->mesh().elementNumbers), (std::vector<std::int32_t>{1, 2, 4}))
        << "cells keep their places";
    EXPECT_EQ(document->Pool<DPoolMatl>()->GetCount(), 2u);
    EXPECT_EQ(document->Pool<DPoolMset>()->GetCount(), 2u);
}

TEST(MeshImport, KeepsNumbersOfVtu) {
    const Import import("a.vtu",
                        vtu(array("GlobalNodeId", 1, "60 50 40 30 20 10") + array("T", 1, "1 2 3 4 5 6"),
                            array("GlobalElementId", 1, "8 7 6 5")));
    ASSERT_TRUE(import.run());
    const auto document = import.document();
    EXPECT_EQ(listOf(document->mesh().nodeNumbers), (std::vector<std::int32_t>{10, 20, 30, 40, 50, 60}));
    EXPECT_EQ(listOf(document->mesh().elementNumbers), (std::vector<std::int32_t>{5, 7, 8}));
    EXPECT_EQ(listOf(document->mesh().elementNodes), (std::vector<std::uint32_t>{0, 5, 3, 4, 1, 5, 4, 3, 2}));
    EXPECT_EQ(import.values(501), (Values{6, 5, 4, 3, 2, 1}));
}

/// A quadrilateral that stands upright along the direction (1, 1, 0), with one state of stress.
std::string plateVtk(const std::string& tensors) {
    return "# vtk DataFile Version 3.0\nplate\nASCII\nDATASET UNSTRUCTURED_GRID\nPOINTS 4 double\n"
           "0 0 0 1 1 0 1 1 1 0 0 1\nCELLS 1 5\n4 0 1 2 3\nCELL_TYPES 1\n9\n" +
           tensors;
}

TEST(MeshImport, TurnsTensorsOfPlatesIntoTheirAxes) {
    // 10 along (1, 1, 0) and 4 along z; shear 3 between them. Global: xx = yy = xy = 5, zz = 4, yz = zx = 3 /
    // sqrt 2.
    const std::string tensor = "5 5 2.1213203435596424 5 5 2.1213203435596424 2.1213203435596424 "
                               "2.1213203435596424 4\n";
    const std::string nodes = "POINT_DATA 4\nTENSORS sigma double\n" + tensor + tensor + tensor + tensor;
    const std::string cells = "CELL_DATA 1\nTENSORS sigma double\n" + tensor;
    const std::string nine = "CELL_DATA 1\nFIELD f 1\nexx 9 1 double\n" + tensor;
    const struct {
        std::string text;
        const char* keys;
        unsigned xx, yy, xy, equivalent;
        float shear;
    } kRows[] = {
        {nodes, "", 412101, 412102, 412104, 412114, 3},
        {cells, "", 412101, 412102, 412104, 412114, 3},
        {cells, "planar = 'membrane'\n", 452101, 452102, 452104, 452114, 3},
        {nine, "[analysis.fields]\nexx = 'strain'\n", 411101, 411102, 411104, 411114, 3},
        {nine, "[analysis.fields]\nexx = 'engineering strain'\n", 411101, 411102, 411104, 411114, -1}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.keys + std::to_string(row.xx));
        const Import import("p.vtk", plateVtk(row.text));
        const auto report = import.run(row.keys);
        ASSERT_TRUE(report) << report.error().message;
        EXPECT_TRUE(import.items(row.xx, kCorner).empty());
        ASSERT_EQ(import.values(row.xx).size(), 4u);
        if (row.shear < 0) {
            // Half of the shear: xx = yy = 5 and xy = 2.5 are 7.5 along (1, 1, 0).
            EXPECT_NEAR(import.values(row.xx)[3], 7.5, 1e-5);
            EXPECT_NEAR(import.values(row.xy)[3], 1.5, 1e-5);
            continue;
        }
        EXPECT_NEAR(import.values(row.xx)[3], 10, 1e-5);
        EXPECT_NEAR(import.values(row.yy)[3], 4, 1e-5);
        EXPECT_NEAR(import.values(row.xy)[3], row.shear, 1e-5);
        const double mises = std::sqrt(0.5 * (36 + 16 + 100) + 3 * 9);
        EXPECT_NEAR(import.values(row.equivalent)[3], row.xx < 412000 ? mises * 2 / 3 : mises, 1e-4);
    }
}

TEST(MeshImport, KeepsTensorsOfPlaneElementsInGlobalAxes) {
    const std::string nodes = "POINT_DATA 4\nTENSORS sigma double\n1 4 6 4 2 5 6 5 3\n1 4 6 4 2 5 6 5 3\n"
                              "1 4 6 4 2 5 6 5 3\n1 4 6 4 2 5 6 5 3\n";
    const struct {
        const char* planar;
        unsigned xx, xy, equivalent;
        double mises;
    } kRows[] = {{"plane stress", 422131, 422134, 422184, std::sqrt(0.5 * (1 + 4 + 1) + 48)},
                 {"plane strain", 432131, 432134, 432184, std::sqrt(0.5 * (1 + 1 + 4) + 48)},
                 {"Axisymmetric", 482101, 482104, 482114, std::sqrt(0.5 * (1 + 1 + 4) + 48)}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.planar);
        const Import import("p.vtk", plateVtk(nodes));
        const auto report = import.run("planar = '" + std::string(row.planar) + "'\n");
        ASSERT_TRUE(report) << report.error().message;
        EXPECT_EQ(import.values(row.xx), Values(4, 1));
        EXPECT_EQ(import.values(row.xy), Values(4, 4));
        EXPECT_FLOAT_EQ(import.values(row.equivalent).at(0), static_cast<float>(row.mises));
    }
}

/// A tetrahedron and one of its faces, with data of two times.
const std::string kMsh =
    "$MeshFormat\n4.1 0 8\n$EndMeshFormat\n$PhysicalNames\n2\n2 7 \"fixed\"\n3 5 "
    "\"body\"\n$EndPhysicalNames\n"
    "$Entities\n0 0 1 1\n1 0 0 0 1 1 1 1 7 0\n1 0 0 0 1 1 1 1 5 0\n$EndEntities\n"
    "$Nodes\n1 4 11 24\n3 1 0 4\n11\n12\n13\n24\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n$EndNodes\n"
    "$Elements\n2 2 3 10\n2 1 2 1\n3 11 12 13\n3 1 4 1\n10 11 12 13 24\n$EndElements\n"
    "$NodeData\n1\n\"displacement\"\n1\n0.5\n3\n0\n3\n4\n24 9 0 0\n11 1 0 0\n12 2 0 0\n13 3 0 "
    "0\n$EndNodeData\n"
    "$NodeData\n1\n\"displacement\"\n1\n1.5\n3\n1\n3\n2\n12 5 0 0\n11 4 0 0\n$EndNodeData\n"
    "$ElementNodeData\n1\n\"stress\"\n1\n1.5\n3\n1\n9\n1\n10 4 "
    "1 4 6 4 2 5 6 5 3  2 4 6 4 2 5 6 5 3  3 4 6 4 2 5 6 5 3  4 4 6 4 2 5 6 5 3\n$EndElementNodeData\n"
    "$ElementData\n1\n\"temperature\"\n1\n1.5\n3\n1\n1\n2\n3 70\n10 80\n$EndElementData\n";

TEST(MeshImport, TakesStepsGroupsAndNumbersOfGmsh) {
    const Import import("a.msh", kMsh);
    const auto report = import.run("cases = ['Pull']\n");
    ASSERT_TRUE(report) << report.error().message;
    EXPECT_TRUE(report->warnings.empty());
    EXPECT_EQ(report->analyses[0].cases[0].name, "Pull");
    EXPECT_EQ(report->analyses[0].cases[0].steps, (std::vector<std::string>{"Time 0.5", "Time 1.5"}));
    EXPECT_EQ(import.values(101), (Values{1, 2, 3, 9}));
    EXPECT_EQ(import.values(101, 1), (Values{4, 5}));
    EXPECT_EQ(import.items(101, kNode, 1), (std::vector<std::uint32_t>{0, 1}));
    EXPECT_EQ(import.values(312101, 1), (Values{1, 2, 3, 4}));
    EXPECT_EQ(import.values(312105, 1), Values(4, 5));
    EXPECT_EQ(import.values(312106, 1), Values(4, 6));
    EXPECT_TRUE(import.items(312101, kCorner, 1).empty());
    EXPECT_EQ(import.values(501, 1), Values(4, 80)) << "the face is no element";

    const auto document = import.document();
    EXPECT_EQ(listOf(document->mesh().nodeNumbers), (std::vector<std::int32_t>{11, 12, 13, 24}));
    EXPECT_EQ(listOf(document->mesh().elementNumbers), (std::vector<std::int32_t>{10}));
    auto& sets = *document->Pool<DPoolMset>();
    ASSERT_EQ(sets.GetCount(), 2u);
    for (const ItrKey key : sets.GetKeyList()) {
        const auto set = sets.GetAtNU(key);
        const bool fixed = set.name == L"fixed";
        EXPECT_EQ(set.nodeNumbers,
                  fixed ? (std::vector<std::int32_t>{11, 12, 13}) : std::vector<std::int32_t>());
        EXPECT_EQ(set.elementNumbers, fixed ? std::vector<std::int32_t>() : (std::vector<std::int32_t>{10}));
    }

    ASSERT_TRUE(import.run("planar = 'shell'\n"));
    EXPECT_EQ(listOf(import.document()->mesh().elementNumbers), (std::vector<std::int32_t>{3, 10}))
        << "faces are kept";
    EXPECT_EQ(import.values(501, 1), (Values{70, 70, 70, 80, 80, 80, 80}));
}

TEST(MeshImport, TakesResultsFromAnotherFileOfTheSameMesh) {
    const Import import("a.msh", kMsh.substr(0, kMsh.find("$NodeData")));
    writeBytes(import.folder / "r.msh", kMsh);
    ASSERT_TRUE(import.run("results = 'r.msh'\n"));
    EXPECT_EQ(import.values(101), (Values{1, 2, 3, 9}));
    std::string moved = kMsh;
    moved.replace(moved.find("0 0 1\n$EndNodes"), 5, "0 0 2");
    writeBytes(import.folder / "r.msh", moved);
    const auto report = import.run("results = 'r.msh'\n");
    ASSERT_FALSE(report);
    EXPECT_TRUE(says({report.error().message}, {"r.msh: its mesh is not that of", "node 24 lies elsewhere"}));
}

/// Strain-life needs a modulus, which no mesh file has.
TEST(MeshImport, TakesConstantsOfMaterialsFromTheProjectDeck) {
    const std::string fatigue =
        "[[fatigue]]\nname = 'F'\ntype = 'strain-life steps'\n[[fatigue.material]]\nmaterial = 'body'\n"
        "fatigue_strength_coefficient = 900\nfatigue_strength_exponent = -0.1\n"
        "fatigue_ductility_coefficient = 0.3\nfatigue_ductility_exponent = -0.5\n"
        "[[fatigue.load]]\ncase = 'Step 1'\n";
    const Import import("a.msh", kMsh);
    const auto without = import.run(fatigue);
    ASSERT_FALSE(without);
    EXPECT_TRUE(says({without.error().message}, {"'body' has no elastic modulus"}));
    const auto with =
        import.run("[[material]]\nname = 'Body'\nelastic_modulus = 210000\npoisson_ratio = 0.3\n" + fatigue);
    ASSERT_TRUE(with) << with.error().message;
    const auto document = import.document();
    auto& pool = *document->Pool<DPoolMatl>();
    EXPECT_EQ(pool.GetAtNU(pool.GetKeyList().front()).elasticModulus, 210000);
}

TEST(MeshImport, RefusesWithASentence) {
    const Import import("a.msh", kMsh);
    const struct {
        const char* keys;
        std::vector<std::string> words;
    } kRows[] = {
        {"[analysis.fields]\nsigma = 'stress'\n", {"a.msh", "no array 'sigma'", "line 5", "'displacement'"}},
        {"[analysis.fields]\ntemperature = 'stress'\n",
         {"'temperature' has 1 component", "6 or 9 components"}},
        {"[analysis.fields]\nstress = 312101\n", {"'stress' has 9 components", "has 1 component"}},
        {"[analysis.fields]\nstress = 'pressure'\n", {"p.toml:5", "cannot become 'pressure'"}},
        {"[analysis.fields]\nstress = 312199\n", {"cannot become 312199", "result catalogue"}},
        {"[analysis.fields]\nstress = 1.5\n", {"p.toml:5", "accepted are"}},
        {"results = 'a.frd'\n", {"p.toml", "different kinds"}},
        {"planar = 'solid'\n", {"p.toml", "plane strain"}},
        {"cases = ['a', 'b']\n", {"cases names 2", "1 step"}},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.keys);
        const auto report = import.run(row.keys);
        ASSERT_FALSE(report);
        EXPECT_TRUE(says({report.error().message}, row.words));
    }
    writeBytes(import.folder / "a.inp", "*NODE\n1,0,0,0\n");
    writeBytes(import.folder / "a.frd", "");
    writeBytes(import.folder / "p.toml", "[[analysis]]\nname = 'A'\ndeck = 'a.inp'\nplanar = 'shell'\n");
    const auto report = importProject(import.folder / "p.toml", import.folder / "m.wkm");
    ASSERT_FALSE(report);
    EXPECT_TRUE(says({report.error().message}, {"planar is for mesh files"}));
}

TEST(MeshImport, WarnsOfWhatItLeavesOut) {
    const Import twice("a.vtu", vtu(array("T", 1, "1 2 3 4 5 6"), array("temperature", 1, "1 2 3 4")));
    auto report = twice.run();
    ASSERT_TRUE(report) << report.error().message;
    EXPECT_TRUE(says(report->warnings, {"'temperature' at cells is left out", "'T' gives the same"}));
    EXPECT_EQ(twice.values(501), (Values{1, 2, 3, 4, 5, 6}));

    const Import bare("a.vtu", vtu({}, {}));
    report = bare.run();
    ASSERT_TRUE(report) << report.error().message;
    EXPECT_TRUE(says(report->warnings, {"gives no results"}));

    const Import strip("a.vtk",
                       "# vtk DataFile Version 3.0\nt\nASCII\nDATASET UNSTRUCTURED_GRID\nPOINTS 4 float\n"
                       "0 0 0 1 0 0 0 1 0 1 1 0\nCELLS 2 9\n4 0 1 2 3\n3 0 1 2\nCELL_TYPES 2\n6\n5\n"
                       "CELL_DATA 2\nSCALARS T float 1\nLOOKUP_TABLE default\n1\n2\n");
    report = strip.run();
    ASSERT_TRUE(report) << report.error().message;
    EXPECT_TRUE(says(report->warnings, {"1 cells of VTK's type 6"}));
    EXPECT_EQ(strip.values(501), Values(3, 2));
}

} // namespace
