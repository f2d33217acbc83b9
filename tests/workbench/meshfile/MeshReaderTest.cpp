#include "tests/support/TemporaryFolder.h"
#include "tests/workbench/meshfile/ReferenceCells.h"
#include "workbench/meshfile/MeshReaderProcess.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace {

using namespace workbench;
using Place = std::array<double, 3>;
using enum ElementType;

const std::vector<std::array<int, 3>> kNoEdges;

/// The corners between which each node of an edge lies, in the host's order, from the first such node on.
const std::map<ElementType, std::vector<std::array<int, 3>>> kEdgeNodes{
    {Line3, {{1, 0, 2}}},
    {Tri6, {{3, 0, 1}, {4, 1, 2}, {5, 2, 0}}},
    {Quad8, {{4, 0, 1}, {5, 1, 2}, {6, 2, 3}, {7, 3, 0}}},
    {Tet10, {{4, 0, 1}, {5, 1, 2}, {6, 2, 0}, {7, 0, 3}, {8, 1, 3}, {9, 2, 3}}},
    {Pyramid13, {{5, 0, 1}, {6, 1, 2}, {7, 2, 3}, {8, 3, 0}, {9, 0, 4}, {10, 1, 4}, {11, 2, 4}, {12, 3, 4}}},
    {Wedge15,
     {{6, 0, 1},
      {7, 1, 2},
      {8, 2, 0},
      {9, 3, 4},
      {10, 4, 5},
      {11, 5, 3},
      {12, 0, 3},
      {13, 1, 4},
      {14, 2, 5}}},
    {Hex20,
     {{8, 0, 1},
      {9, 1, 2},
      {10, 2, 3},
      {11, 3, 0},
      {12, 4, 5},
      {13, 5, 6},
      {14, 6, 7},
      {15, 7, 4},
      {16, 0, 4},
      {17, 1, 5},
      {18, 2, 6},
      {19, 3, 7}}}};

Place minus(const Place& a, const Place& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

double volume(const Place& a, const Place& b, const Place& c) {
    return (a[1] * b[2] - a[2] * b[1]) * c[0] + (a[2] * b[0] - a[0] * b[2]) * c[1] +
           (a[0] * b[1] - a[1] * b[0]) * c[2];
}

/// Six times the volume between the first face and the first node of the opposite side; above 0 in the host.
double orientation(ElementType type, const std::vector<Place>& n) {
    const std::size_t opposite =
        type == Hex8 || type == Hex20 || type == Pyramid5 || type == Pyramid13 ? 4 : 3;
    return volume(minus(n[1], n[0]), minus(n[2], n[0]), minus(n[opposite], n[0]));
}

bool isAlongAxis(const Place& edge) {
    return (std::fabs(edge[0]) > 0.5) + (std::fabs(edge[1]) > 0.5) + (std::fabs(edge[2]) > 0.5) == 1;
}

void expectHostOrder(ElementType type, const std::vector<Place>& nodes) {
    const auto edges = kEdgeNodes.find(type);
    for (const auto& [node, first, second] : edges == kEdgeNodes.end() ? kNoEdges : edges->second)
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(nodes[std::size_t(node)][i],
                        (nodes[std::size_t(first)][i] + nodes[std::size_t(second)][i]) / 2, 1e-9)
                << "node " << node;
    for (std::size_t i = 0; i < 4 && (type == Quad4 || type == Hex8); ++i) {
        EXPECT_TRUE(isAlongAxis(minus(nodes[i], nodes[(i + 1) % 4]))) << "edge " << i;
        if (type == Hex8) {
            EXPECT_TRUE(isAlongAxis(minus(nodes[i], nodes[i + 4]))) << "upright edge " << i;
        }
    }
    if (isSolidElement(static_cast<std::uint8_t>(type))) {
        EXPECT_GT(orientation(type, nodes), 0);
    }
}

const FieldValues load(const MeshFile& file, const std::string& name) {
    for (std::size_t i = 0; i < file.fields().size(); ++i)
        if (file.fields()[i].name == name) {
            auto values = file.load(i);
            EXPECT_TRUE(values) << values.error().message;
            return *values;
        }
    ADD_FAILURE() << "no array " << name;
    return {};
}

void expectCells(const MeshFile& file, const std::vector<ReferenceCell>& cells) {
    const MeshRecords& mesh = file.mesh();
    ASSERT_EQ(mesh.elementTypes.size(), cells.size());
    std::map<std::int64_t, std::vector<Place>> nodesOf;
    std::map<std::int64_t, std::uint8_t> typeOf;
    std::size_t at = 0;
    for (std::size_t e = 0; e < cells.size(); ++e) {
        auto& nodes = nodesOf[mesh.elementNumbers[e]];
        typeOf[mesh.elementNumbers[e]] = mesh.elementTypes[e];
        for (int i = 0; i < elementNodeCount(mesh.elementTypes[e]); ++i)
            nodes.push_back(mesh.nodePositions[mesh.elementNodes[at++]]);
    }
    for (std::size_t c = 0; c < cells.size(); ++c) {
        SCOPED_TRACE("cell of kind " + std::to_string(cells[c].code));
        const auto number = static_cast<std::int64_t>(c + 1);
        ASSERT_EQ(typeOf[number], static_cast<std::uint8_t>(cells[c].type));
        ASSERT_EQ(nodesOf[number].size(), static_cast<std::size_t>(elementNodeCount(typeOf[number])));
        EXPECT_NEAR(nodesOf[number][0][0], 4.0 * double(c), 1.01) << "nodes of another cell";
        expectHostOrder(cells[c].type, nodesOf[number]);
    }
    const FieldValues temperature = load(file, "temperature");
    ASSERT_EQ(temperature.values.size(), mesh.nodeNumbers.size());
    for (std::size_t n = 0; n < mesh.nodeNumbers.size(); ++n)
        EXPECT_EQ(temperature.values[n], static_cast<float>(mesh.nodePositions[n][0]));
    const FieldValues energy = load(file, "energy");
    ASSERT_EQ(energy.values.size(), cells.size());
    for (std::size_t e = 0; e < cells.size(); ++e)
        EXPECT_EQ(energy.values[e], static_cast<float>(mesh.elementNumbers[e]));
    ASSERT_EQ(mesh.groups.size(), cells.size());
    for (const MeshGroup& group : mesh.groups) {
        ASSERT_EQ(group.elements.size(), 1u);
        EXPECT_TRUE(group.name.ends_with(" " + std::to_string(mesh.elementNumbers[group.elements[0]])))
            << group.name;
    }
}

struct FileForm {
    const char* name;
    bool isVtk;
    VtkForm vtk;
    double version;
    bool binary;

    void write(const std::filesystem::path& file) const {
        isVtk ? writeVtkCells(file, vtk) : writeGmshCells(file, version, binary);
    }
};

constexpr FileForm kForms[] = {{"text.vtu", true, VtkForm::XmlText, 0, false},
                               {"base64.vtu", true, VtkForm::XmlBinary, 0, false},
                               {"appended.vtu", true, VtkForm::XmlAppended, 0, false},
                               {"text.vtk", true, VtkForm::LegacyText, 0, false},
                               {"binary.VTK", true, VtkForm::LegacyBinary, 0, false},
                               {"text2.msh", false, {}, 2.2, false},
                               {"binary2.msh", false, {}, 2.2, true},
                               {"text4.msh", false, {}, 4.1, false},
                               {"binary4.msh", false, {}, 4.1, true}};

TEST(MeshReader, ReadsEveryKindOfCellInEveryForm) {
    TemporaryFolder folder;
    for (const FileForm& form : kForms) {
        SCOPED_TRACE(form.name);
        form.write(folder / form.name);
        const auto file = readMeshFile(folder / form.name);
        ASSERT_TRUE(file) << file.error().message;
        expectCells(*file, form.isVtk ? vtkReferenceCells() : gmshReferenceCells());
        EXPECT_TRUE(file->mesh().notes.empty());
        EXPECT_EQ(file->fields()[0].time, form.isVtk ? 0 : 2.5);
    }
}

TEST(MeshReader, ReadsABoxThatGmshMeshed) {
    TemporaryFolder folder;
    writeGmshBox(folder / "box.msh");
    const auto file = readMeshFile(folder / "box.msh");
    ASSERT_TRUE(file) << file.error().message;
    const MeshRecords& mesh = file->mesh();
    double total = 0;
    std::size_t at = 0;
    for (const std::uint8_t type : mesh.elementTypes) {
        std::vector<Place> nodes;
        for (int i = 0; i < elementNodeCount(type); ++i)
            nodes.push_back(mesh.nodePositions[mesh.elementNodes[at++]]);
        expectHostOrder(static_cast<ElementType>(type), nodes);
        if (type == static_cast<std::uint8_t>(Tet10)) total += orientation(Tet10, nodes) / 6;
    }
    EXPECT_NEAR(total, 2, 1e-9);
    ASSERT_EQ(mesh.groups.size(), 2u);
}

/// Scripts in the place of the program that reads: whatever it does ends in a sentence.
TEST(MeshReader, AnswersHoweverItsProgramEnds) {
    TemporaryFolder folder;
    writeBytes(folder / "a.vtu", "x");
    const std::pair<const char*, const char*> kEnds[] = {
        {"kill -SEGV $$", "broke off (signal 11)"},
        {"exec sleep 60", "took more than 1 seconds"},
        {"exit 0", "gave nothing"},
        {"exit 3", "gave nothing"},
        {"printf VXMESH01 >&3", "not whole"},
        {"printf 'VXMESH01\\377\\377\\377\\377\\377\\377\\377\\177' >&3", "not whole"},
        {"printf 'VXMFAIL\\000\\005\\000\\000\\000\\000\\000\\000\\000words' >&3", "words"}};
    for (const auto& [script, expected] : kEnds) {
        SCOPED_TRACE(script);
        writeBytes(folder / "read", std::string("#!/bin/bash\n") + script + "\n");
        std::filesystem::permissions(folder / "read", std::filesystem::perms::owner_all);
        const auto file = readMeshFile(folder / "a.vtu", {folder / "read", std::chrono::seconds(1)});
        ASSERT_FALSE(file);
        EXPECT_NE(file.error().message.find(expected), std::string::npos) << file.error().message;
        EXPECT_EQ(file.error().message.find((folder / "a.vtu").string()), 0u) << file.error().message;
    }
    EXPECT_FALSE(readMeshFile(folder / "a.vtu", {folder / "missing", {}}));
    EXPECT_FALSE(readMeshFile(folder / "missing.vtu"));
}

/// gmsh runs scripts in the place of meshes and beside them; neither may happen.
TEST(MeshReader, RunsNoScriptsOfGmsh) {
    TemporaryFolder folder;
    const std::string mark = (folder / "mark").string();
    const std::string script = "SystemCall \"touch '" + mark + "'\";\n";
    writeGmshCells(folder / "a.msh", 4.1, false);
    writeBytes(folder / "a.msh.opt", script);
    EXPECT_TRUE(readMeshFile(folder / "a.msh"));
    for (const std::string begin : {"", " ", "\n$MeshFormat\n", "// $MeshFormat\n"}) {
        writeBytes(folder / "b.msh", begin + script + "$EndMeshFormat\n");
        const auto file = readMeshFile(folder / "b.msh");
        ASSERT_FALSE(file);
        EXPECT_NE(file.error().message.find("does not begin with $MeshFormat"), std::string::npos);
    }
    EXPECT_FALSE(std::filesystem::exists(mark));
}

TEST(MeshReader, RefusesWhatIsNoSoundMesh) {
    TemporaryFolder folder;
    const std::string vtk = "# vtk DataFile Version 3.0\nt\nASCII\nDATASET UNSTRUCTURED_GRID\n";
    const std::string msh = "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n";
    const std::string piece =
        "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\">"
        "<UnstructuredGrid><Piece NumberOfPoints=\"1000000000000\" NumberOfCells=\"0\">"
        "<Points><DataArray type=\"Float64\" NumberOfComponents=\"3\" format=\"ascii\">"
        "0 0 0</DataArray></Points></Piece></UnstructuredGrid></VTKFile>\n";
    const struct {
        const char* name;
        std::string text;
        const char* expected;
    } kFiles[] = {
        {"empty.vtu", "", "not an XML file"},
        {"empty.vtk", "", "not a legacy file"},
        {"empty.msh", "", "$MeshFormat"},
        {"huge.vtu", piece, ""},
        {"huge.vtk", vtk + "POINTS 1000000000000 double\n0 0 0\n", ""},
        {"surface.vtk", "# vtk DataFile Version 3.0\nt\nASCII\nDATASET POLYDATA\nPOINTS 1 float\n0 0 0\n",
         "with an unstructured grid"},
        {"outside.vtk", vtk + "POINTS 2 float\n0 0 0 1 0 0\nCELLS 1 3\n2 0 7\nCELL_TYPES 1\n3\n", ""},
        {"nan.vtk", vtk + "POINTS 1 float\nnan 0 0\nCELLS 1 2\n1 0\nCELL_TYPES 1\n1\n",
         ""},
        {"old.msh", "$MeshFormat\n9.1 0 8\n$EndMeshFormat\n", "version"},
        {"cut.msh", msh + "$Nodes\n2\n1 0 0 0\n", "cut"},
        {"none.msh", msh, "no nodes"},
        {"twice.msh", msh + "$Nodes\n2\n1 0 0 0\n1 1 0 0\n$EndNodes\n$Elements\n0\n$EndElements\n", ""},
        {"far.msh",
         msh + "$Nodes\n1\n3000000000 0 0 0\n$EndNodes\n$Elements\n1\n1 15 2 1 1 3000000000\n$EndElements\n",
         ""},
    };
    for (const auto& row : kFiles) {
        SCOPED_TRACE(row.name);
        writeBytes(folder / row.name, row.text);
        const auto file = readMeshFile(folder / row.name);
        ASSERT_FALSE(file);
        EXPECT_NE(file.error().message.find(row.expected), std::string::npos) << file.error().message;
        EXPECT_EQ(file.error().message.find((folder / row.name).string()), 0u) << file.error().message;
    }
}

std::uint32_t nextRandom(std::uint32_t& state) {
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    return state;
}

std::string damaged(std::string bytes, std::uint32_t& random) {
    if (nextRandom(random) % 3 == 0) return bytes.substr(0, nextRandom(random) % bytes.size());
    for (std::uint32_t i = 0, changes = 1 + nextRandom(random) % 4; i < changes; ++i)
        bytes[nextRandom(random) % bytes.size()] = static_cast<char>(nextRandom(random));
    return bytes;
}

/// Every answer is a mesh or a sentence that names the file.
TEST(MeshReader, AnswersDamageWithASentence) {
    constexpr std::uint32_t kSeed = 20260703;
    constexpr int kDamages = 12; ///< of each form
    RecordProperty("seed", std::to_string(kSeed));
    std::uint32_t random = kSeed;
    TemporaryFolder folder;
    for (const FileForm& form : kForms) {
        form.write(folder / form.name);
        const std::string sound = bytesOf(folder / form.name);
        int refused = 0;
        for (int i = 0; i < kDamages; ++i) {
            writeBytes(folder / form.name, damaged(sound, random));
            const auto file = readMeshFile(folder / form.name, {{}, std::chrono::seconds(60)});
            if (file) continue;
            ++refused;
            const std::string& message = file.error().message;
            EXPECT_EQ(message.find((folder / form.name).string() + ": "), 0u) << message;
            EXPECT_EQ(message.find("took more than"), std::string::npos) << message;
        }
        EXPECT_GT(refused, 0) << form.name << ", seed " << kSeed;
    }
}

/// What comes over from the reading program is checked as a file would be.
TEST(MeshStream, AnswersDamageWithASentence) {
    constexpr std::uint32_t kSeed = 4711;
    std::uint32_t random = kSeed;
    MeshRecords mesh;
    mesh.nodeNumbers = {4, 3, 2, 1};
    mesh.nodePositions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    mesh.elementNumbers = {7, 5};
    mesh.elementTypes = {8, 0};
    mesh.elementNodes = {0, 1, 2, 3, 0};
    mesh.groups = {{"group", {0, 1}}};
    mesh.notes = {"note"};
    TemporaryFolder folder;
    std::FILE* out = std::fopen((folder / "s").c_str(), "wb");
    MeshStreamWriter writer(out);
    writer.mesh(mesh);
    writer.field({"points", FieldPlace::Node, 2, 0, 0}, {{}, std::vector<float>(8, 1)});
    writer.field({"corners", FieldPlace::Corner, 1, 0, 0}, {{0}, std::vector<float>(4, 1)});
    ASSERT_TRUE(writer.finish());
    std::fclose(out);
    const std::string sound = bytesOf(folder / "s");
    const auto open = [&](const std::string& bytes) {
        writeBytes(folder / "s", bytes);
        return MeshFile::open(std::fopen((folder / "s").c_str(), "rb"), "name");
    };
    const auto whole = open(sound);
    ASSERT_TRUE(whole) << whole.error().message;
    EXPECT_EQ(load(*whole, "corners").values.size(), 4u);
    for (int i = 0; i < 1000; ++i) {
        const auto file = open(damaged(sound, random));
        if (!file) {
            EXPECT_EQ(file.error().message.find("name: "), 0u) << file.error().message;
            continue;
        }
        for (std::size_t field = 0; field < file->fields().size(); ++field) {
            const auto values = file->load(field);
            EXPECT_TRUE(values || values.error().message.starts_with("name: "));
        }
    }
}

} // namespace
