// Small models of every family of elements, solved by the solver that is installed and compared with closed
// solutions.
#include "host/records/Material.h"
#include "tests/support/TemporaryFolder.h"
#include "workbench/document/DocumentFile.h"
#include "workbench/import/ImportProject.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace {

using namespace workbench;

bool solverIsThere() {
    static const bool there = std::system("command -v ccx > /dev/null 2>&1") == 0;
    return there;
}

/// A deck solved and imported. Tables are those of the first step.
struct Solved {
    TemporaryFolder folder;
    std::string error;
    std::vector<std::string> warnings;

    explicit Solved(const std::string& deck) {
        writeBytes(folder / "a.inp", deck);
        writeBytes(folder / "p.toml", "[[analysis]]\nname = 'A'\ndeck = 'a.inp'\n");
        if (std::system(("cd '" + folder.path().string() + "' && ccx a > a.log 2>&1").c_str()) != 0)
            error = bytesOf(folder / "a.log");
        const auto report = importProject(folder / "p.toml", folder / "m.wkm");
        if (!report)
            error = report.error().message;
        else
            warnings = report->warnings;
    }

    resultfile::Reader open() const {
        auto file = resultfile::Reader::open(folder / "m_A.lmop");
        EXPECT_TRUE(file) << file.error().message;
        return std::move(*file);
    }

    std::vector<unsigned> ids() const {
        std::vector<unsigned> ids;
        const auto file = open();
        for (const auto& component : file.contents().cases[0].steps[0].components)
            ids.push_back(component.id);
        return ids;
    }

    std::vector<float> table(unsigned id) const {
        auto values = open().values(0, 0, id);
        EXPECT_TRUE(values) << id << ": " << (values ? "" : values.error().message);
        return values ? *values : std::vector<float>();
    }

    /// Numbers of the nodes or elements that a table has.
    std::vector<std::int32_t> itemsOf(unsigned id) const {
        const auto file = open();
        for (const auto& component : file.contents().cases[0].steps[0].components) {
            if (component.id != id) continue;
            auto numbers = component.location == resultfile::Location::Node ? *file.nodeNumbers()
                                                                            : *file.elementNumbers();
            if (component.items.empty()) return numbers;
            std::vector<std::int32_t> listed;
            const auto positions = *file.items(component.items);
            for (const std::uint32_t position : positions)
                listed.push_back(numbers[position]);
            return listed;
        }
        ADD_FAILURE() << "no table " << id;
        return {};
    }

    float atNode(unsigned id, std::int32_t number) const {
        const auto numbers = itemsOf(id);
        const auto found = std::find(numbers.begin(), numbers.end(), number);
        if (found == numbers.end()) {
            ADD_FAILURE() << "table " << id << " has no node " << number;
            return NAN;
        }
        return table(id)[static_cast<std::size_t>(found - numbers.begin())];
    }
};

using Vector = std::array<double, 3>;

/// A turn that leaves no axis where it was.
Vector turned(const Vector& v) {
    return {-v[1], -0.6 * v[0] + 0.8 * v[2], -0.8 * v[0] - 0.6 * v[2]};
}

double dot(const Vector& a, const Vector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

constexpr double kLength = 10, kWidth = 2, kThickness = 0.2, kForce = 3, kModulus = 210000;

struct Strip {
    const char* type;
    const char* section; ///< card and data behind ELSET
    bool isTurned;
    double tolerance;
};

/// A strip of plates along x, clamped at x = 0, pushed along its normal at the other end.
std::string stripDeck(const Strip& strip) {
    const std::string type = strip.type;
    const bool quadratic = type.find('6') != std::string::npos || type.find('8') != std::string::npos;
    const bool triangles = type.find('3') != std::string::npos || type.find('6') != std::string::npos;
    constexpr int kElements = 10;
    const int columns = 2 * kElements + 1; // a grid of corners and middles, three rows high
    const auto number = [&](int column, int row) { return std::to_string(1 + column + row * columns); };
    std::string nodes = "*NODE\n", elements = "*ELEMENT,TYPE=" + type + ",ELSET=E\n", loads;
    const auto place = [&](const Vector& v) { return strip.isTurned ? turned(v) : v; };
    const auto isUsed = [&](int column, int row) {
        if (column % 2 == 0 && row % 2 == 0) return true;
        return quadratic && (column % 2 == 0 || row % 2 == 0 || triangles);
    };
    std::string clamped = "*NSET,NSET=CLAMP\n", tip = "*NSET,NSET=TIP\n";
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < columns; ++column) {
            if (!isUsed(column, row)) continue;
            const Vector at = place({kLength * column / (columns - 1), kWidth * row / 2, 0});
            nodes += number(column, row);
            for (const double coordinate : at)
                nodes += "," + std::to_string(coordinate);
            nodes += "\n";
            if (column == 0) clamped += number(column, row) + "\n";
        }
    int element = 0;
    const auto add = [&](std::initializer_list<std::array<int, 2>> list) {
        elements += std::to_string(++element);
        for (const auto& [column, row] : list)
            elements += "," + number(column, row);
        elements += "\n";
    };
    for (int c = 0; c < columns - 1; c += 2) {
        if (!triangles && quadratic)
            add({{c, 0}, {c + 2, 0}, {c + 2, 2}, {c, 2}, {c + 1, 0}, {c + 2, 1}, {c + 1, 2}, {c, 1}});
        else if (!triangles)
            add({{c, 0}, {c + 2, 0}, {c + 2, 2}, {c, 2}});
        else {
            add({{c, 0}, {c + 2, 0}, {c + 2, 2}, {c + 1, 0}, {c + 2, 1}, {c + 1, 1}});
            add({{c + 2, 2}, {c, 2}, {c, 0}, {c + 1, 2}, {c, 1}, {c + 1, 1}});
        }
    }
    const Vector force = place({0, 0, kForce});
    const double shares[] = {1.0 / 6, 4.0 / 6, 1.0 / 6};
    for (int row = 0; row < 3; ++row) {
        if (!isUsed(columns - 1, row)) continue;
        for (std::size_t axis = 0; axis < 3; ++axis)
            loads += number(columns - 1, row) + "," + std::to_string(axis + 1) + "," +
                     std::to_string(force[axis] * (quadratic ? shares[row] : 0.5)) + "\n";
    }
    return nodes + elements + clamped + "*MATERIAL,NAME=M\n*ELASTIC\n210000,0.\n" + strip.section +
           "*BOUNDARY\nCLAMP,1,6\n*STEP\n*STATIC\n*CLOAD\n" + loads +
           "*NODE FILE\nU,RF\n*EL FILE\nS,E\n*END STEP\n";
}

/// Top and bottom of a bent plate: 6 M / (b t^2) with opposite signs, in whatever plane it lies.
TEST(SolvedFamilies, BendsPlates) {
    if (!solverIsThere()) GTEST_SKIP() << "ccx is not installed";
    const char* const plain = "*SHELL SECTION,ELSET=E,MATERIAL=M\n0.2\n";
    const Strip rows[] = {
        {"S8R", plain, false, 0.02},
        {"S8R", plain, true, 0.02},
        {"S8", plain, true, 0.05},
        {"S6", plain, true, 0.05},
        {"S4", plain, true, 0.10},
        {"S8R", "*SHELL SECTION,ELSET=E,COMPOSITE\n0.05,,M\n0.15,,M\n", true, 0.02},
        {"S8R", "*SHELL SECTION,ELSET=E,MATERIAL=M,OFFSET=0.5\n0.2\n", true, 0.02},
    };
    for (const Strip& row : rows) {
        SCOPED_TRACE(std::string(row.type) + (row.isTurned ? " turned, " : " flat, ") + row.section);
        const Solved solved(stripDeck(row));
        ASSERT_EQ(solved.error, "");
        const auto opened = openDocument(solved.folder / "m.wkm");
        ASSERT_TRUE(opened) << opened.error().message;
        const T_QM_MESH_D& mesh = (*opened)->mesh();
        DPoolProp& properties = *(*opened)->Pool<DPoolProp>();
        const tagTProp property = properties.GetAtNU(properties.GetKeyList().front());
        EXPECT_EQ(property.typeCode, PropertyType::Shell);
        EXPECT_DOUBLE_EQ(property.thickness, kThickness);
        EXPECT_EQ(property.materialKeys.size(), 1u);

        // Local x runs along the strip or against it, so that xx is the stress of bending.
        const auto top = solved.table(412101), bottom = solved.table(412151), across = solved.table(412102);
        const auto strain = solved.table(411101), equivalent = solved.table(412114);
        ASSERT_EQ(top.size(), mesh.elementNodes.size());
        const Vector along = row.isTurned ? turned({1, 0, 0}) : Vector{1, 0, 0};
        const double scale = 6 * kForce * kLength / (kWidth * kThickness * kThickness);
        for (std::size_t e = 0; e < mesh.elementCount(); ++e)
            for (std::size_t i = mesh.elementNodeOffsets[e]; i < mesh.elementNodeOffsets[e + 1]; ++i) {
                const double x = dot(mesh.nodePositions[mesh.elementNodes[i]], along);
                if (x < 2 || x > 8) continue; // away from clamp and load
                const double bending = scale * (1 - x / kLength);
                EXPECT_NEAR(top[i], -bending, row.tolerance * scale) << "element " << e << ", x " << x;
                EXPECT_NEAR(bottom[i], bending, row.tolerance * scale) << "element " << e << ", x " << x;
                EXPECT_NEAR(across[i], 0, row.tolerance * scale);
                EXPECT_NEAR(strain[i] * kModulus, top[i], 0.03 * scale);
                EXPECT_NEAR(equivalent[i], bending, row.tolerance * scale);
            }
        // The tip moves along the normal, and the supports carry the load.
        const Vector normal = row.isTurned ? turned({0, 0, 1}) : Vector{0, 0, 1};
        const double inertia = kWidth * std::pow(kThickness, 3) / 12;
        const double deflection = kForce * std::pow(kLength, 3) / (3 * kModulus * inertia);
        double moved = 0, carried = 0;
        for (unsigned axis = 0; axis < 3; ++axis) {
            moved += static_cast<double>(solved.atNode(101 + axis, 21)) * normal[axis];
            const auto forces = solved.table(111 + axis);
            carried += std::accumulate(forces.begin(), forces.end(), 0.0) * normal[axis];
        }
        EXPECT_NEAR(moved / deflection, 1, 0.03);
        // Forces at free nodes are those of the load; together with the supports they cancel.
        EXPECT_NEAR(carried, 0, 0.01 * kForce);
    }
}

/// A square pulled along x by 100 in its plane. `turn` puts its plane elsewhere.
std::string pulledSquare(const std::string& type, const std::string& section, const std::string& fileRequest,
                         bool turn) {
    const bool quadratic = type.find('8') != std::string::npos;
    std::string text = "*NODE\n";
    const Vector places[] = {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0},
                             {1, 0, 0}, {2, 1, 0}, {1, 2, 0}, {0, 1, 0}};
    const std::size_t count = quadratic ? 8 : 4;
    for (std::size_t n = 0; n < count; ++n) {
        const Vector at = turn ? turned(places[n]) : places[n];
        text += std::to_string(n + 1);
        for (const double coordinate : at)
            text += "," + std::to_string(coordinate);
        text += "\n";
    }
    text += "*ELEMENT,TYPE=" + type + ",ELSET=E\n1,1,2,3,4" + (quadratic ? ",5,6,7,8\n" : "\n");
    text += "*MATERIAL,NAME=M\n*ELASTIC\n210000,.3\n" + section;
    const Vector pull = turn ? turned({1, 0, 0}) : Vector{1, 0, 0};
    const std::pair<int, double> right[] = {
        {2, quadratic ? 1.0 / 6 : 0.5}, {3, quadratic ? 1.0 / 6 : 0.5}, {6, 4.0 / 6}};
    std::string loads; // 100 N/mm^2 over 2 mm x 1 mm
    for (std::size_t i = 0; i < (quadratic ? 3u : 2u); ++i)
        for (std::size_t axis = 0; axis < 3; ++axis)
            loads += std::to_string(right[i].first) + "," + std::to_string(axis + 1) + "," +
                     std::to_string(200 * right[i].second * pull[axis]) + "\n";
    // The left side stays along the pull and out of its plane; along the other direction its first node does.
    text += turn ? "*BOUNDARY\n1,1,6\n4,2,6\n" : "*BOUNDARY\n1,1,2\n4,1\n";
    if (quadratic) text += turn ? "8,2,6\n" : "8,1\n";
    return text + "*STEP\n*STATIC\n*CLOAD\n" + loads + "*NODE FILE" + fileRequest +
           "\nU\n*EL FILE\nS,E\n*END STEP\n";
}

TEST(SolvedFamilies, PullsPlaneElements) {
    if (!solverIsThere()) GTEST_SKIP() << "ccx is not installed";
    struct Row {
        const char* type;
        const char* request;
        unsigned first; ///< identifier of stress xx
        unsigned equivalent;
        int property;
        bool hasNormal; ///< a stress across the plane
    };
    const Row rows[] = {
        {"CPE8", "", 432131, 432184, PropertyType::PlaneStrain, true},
        {"CPE8", ",OUTPUT=3D", 432131, 432184, PropertyType::PlaneStrain, true},
        {"CPE4", "", 432131, 432184, PropertyType::PlaneStrain, true},
        {"CPS8", "", 422131, 422184, PropertyType::PlaneStress, false},
        {"CPS4", ",OUTPUT=3D", 422131, 422184, PropertyType::PlaneStress, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.type) + row.request);
        const Solved solved(
            pulledSquare(row.type, "*SOLID SECTION,ELSET=E,MATERIAL=M\n1.\n", row.request, false));
        ASSERT_EQ(solved.error, "");
        const double across = row.hasNormal ? 30 : 0;
        const double vonMises = std::sqrt(100 * 100 - 100 * across + across * across);
        const std::pair<unsigned, double> expected[] = {
            {row.first, 100},
            {row.first + 1, 0},
            {row.first + 3, 0},
            {row.equivalent, vonMises},
        };
        for (const auto& [id, value] : expected)
            for (const float found : solved.table(id))
                EXPECT_NEAR(found, value, 0.01) << id;
        const double strain = (100 - 0.3 * across) / kModulus;
        for (const float found : solved.table(row.first - 1000))
            EXPECT_NEAR(found, strain, 1e-4 * strain);
        EXPECT_NEAR(solved.atNode(101, 3), 2 * strain, 1e-4 * strain);
        const auto ids = solved.ids();
        const bool hasNormal = std::find(ids.begin(), ids.end(), row.first + 2) != ids.end();
        EXPECT_EQ(hasNormal, row.hasNormal);
        for (const float found : hasNormal ? solved.table(row.first + 2) : std::vector<float>())
            EXPECT_NEAR(found, across, 0.01);
        for (const unsigned other : {312101u, 412101u, 452101u, 482101u})
            EXPECT_EQ(std::count(ids.begin(), ids.end(), other), 0) << other;
        const auto opened = openDocument(solved.folder / "m.wkm");
        ASSERT_TRUE(opened);
        DPoolProp& properties = *(*opened)->Pool<DPoolProp>();
        EXPECT_EQ(properties.GetAtNU(properties.GetKeyList().front()).typeCode, row.property);
    }
}

/// A membrane in a plane of its own: the pull is xx of its axes, and nothing bends.
TEST(SolvedFamilies, PullsAMembrane) {
    if (!solverIsThere()) GTEST_SKIP() << "ccx is not installed";
    for (const char* request : {"", ",OUTPUT=3D"}) {
        SCOPED_TRACE(request);
        const Solved solved(
            pulledSquare("M3D4R", "*MEMBRANE SECTION,ELSET=E,MATERIAL=M\n1.\n", request, true));
        ASSERT_EQ(solved.error, "");
        const std::pair<unsigned, double> expected[] = {
            {452101, 100}, {452102, 0}, {452104, 0}, {452114, 100}};
        for (const auto& [id, value] : expected) {
            EXPECT_EQ(solved.table(id).size(), 4u);
            for (const float found : solved.table(id))
                EXPECT_NEAR(found, value, 0.05) << id;
        }
        for (const float found : solved.table(451102))
            EXPECT_NEAR(found * kModulus, -30, 0.05);
    }
}

/// A pipe under inner pressure, by Lame: radial -p inside, hoop p (ro^2 + ri^2) / (ro^2 - ri^2).
TEST(SolvedFamilies, PressesAPipe) {
    if (!solverIsThere()) GTEST_SKIP() << "ccx is not installed";
    for (const char* request : {"", ",OUTPUT=3D"}) {
        SCOPED_TRACE(request);
        constexpr int kElements = 10;
        constexpr double kPressure = 30;
        std::string nodes = "*NODE\n", elements = "*ELEMENT,TYPE=CAX8R,ELSET=E\n", ends = "*BOUNDARY\n";
        for (int column = 0; column <= 2 * kElements; ++column)
            for (int row = 0; row < 3; ++row) {
                if (column % 2 == 1 && row == 1) continue;
                const std::string number = std::to_string(1 + 3 * column + row);
                nodes += number + "," + std::to_string(1 + 0.5 * column / kElements) + "," +
                         std::to_string(0.05 * row) + ",0\n";
                ends += number + ",2,2\n"; // plane ends: no axial strain
            }
        for (int e = 0; e < kElements; ++e) {
            const auto at = [&](int column, int row) {
                return "," + std::to_string(1 + 3 * (2 * e + column) + row);
            };
            elements += std::to_string(e + 1) + at(0, 0) + at(2, 0) + at(2, 2) + at(0, 2) + at(1, 0) +
                        at(2, 1) + at(1, 2) + at(0, 1) + "\n";
        }
        const Solved solved(nodes + elements + ends +
                            "*MATERIAL,NAME=M\n*ELASTIC\n210000,.3\n*SOLID SECTION,ELSET=E,MATERIAL=M\n"
                            "*STEP\n*STATIC\n*DLOAD\n1,P4,30.\n*NODE FILE" +
                            request + "\nU\n*EL FILE\nS,E\n*END STEP\n");
        ASSERT_EQ(solved.error, "");
        const double hoop = kPressure * (4 + 1) / (4 - 1.0);
        EXPECT_NEAR(solved.atNode(482101, 1), -kPressure, 0.02 * kPressure);
        EXPECT_NEAR(solved.atNode(482103, 1), hoop, 0.01 * hoop);
        EXPECT_NEAR(solved.atNode(482101, 3 * 2 * kElements + 1), 0, 0.02 * kPressure);
        EXPECT_NEAR(solved.atNode(482102, 1), 0.3 * (hoop - kPressure), 0.02 * hoop);
        // u = r e_hoop, and e_hoop by Hooke's law.
        const double strain = (hoop - 0.3 * (-kPressure + 0.3 * (hoop - kPressure))) / kModulus;
        EXPECT_NEAR(solved.atNode(101, 1), strain, 0.01 * strain);
        EXPECT_NEAR(solved.atNode(481103, 1), strain, 0.01 * strain);
    }
}

/// Families side by side: each has its own tables, which list what they have and nothing else.
TEST(SolvedFamilies, KeepsFamiliesApart) {
    if (!solverIsThere()) GTEST_SKIP() << "ccx is not installed";
    const Solved solved("*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,0,0,1\n6,1,0,1\n7,1,1,1\n8,0,1,1\n"
                        "11,5,0,0\n12,6,0,0\n13,6,1,0\n14,5,1,0\n21,9,0,0\n22,10,0,0\n23,11,0,0\n31,11,0,3\n"
                        "*ELEMENT,TYPE=C3D8,ELSET=S\n1,1,2,3,4,5,6,7,8\n"
                        "*ELEMENT,TYPE=S4,ELSET=P\n2,11,12,13,14\n"
                        "*ELEMENT,TYPE=B32R,ELSET=B\n3,21,22,23\n"
                        "*ELEMENT,TYPE=SPRINGA,ELSET=SP\n4,23,31\n"
                        "*SPRING,ELSET=SP\n\n1.E-3\n*MATERIAL,NAME=M\n*ELASTIC\n210000,.3\n"
                        "*SOLID SECTION,ELSET=S,MATERIAL=M\n*SHELL SECTION,ELSET=P,MATERIAL=M\n.1\n"
                        "*BEAM SECTION,ELSET=B,MATERIAL=M,SECTION=RECT\n.1,.2\n0,1,0\n"
                        "*BOUNDARY\n1,1,3\n2,1,3\n3,1,3\n4,1,3\n11,1,6\n14,1,6\n21,1,6\n31,1,3\n"
                        "*STEP\n*STATIC\n*CLOAD\n7,3,100.\n12,3,1.\n23,3,1.\n"
                        "*NODE FILE\nU\n*EL FILE\nS,E,ENER\n*END STEP\n");
    ASSERT_EQ(solved.error, "");
    EXPECT_EQ(solved.itemsOf(101).size(), 16u) << "every node moves or stays";
    EXPECT_EQ(solved.itemsOf(312114), (std::vector<std::int32_t>{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(solved.itemsOf(311131), (std::vector<std::int32_t>{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(solved.itemsOf(412164), (std::vector<std::int32_t>{2}));
    EXPECT_EQ(solved.table(412151).size(), 4u);
    // F L^3 / (3 E I), nearly, with one element: the section is 0.1 along y and 0.2 along the force.
    const double deflection = 8 / (3 * kModulus * 0.1 * 0.008 / 12);
    EXPECT_NEAR(solved.atNode(103, 23), deflection, 0.1 * deflection);
    std::vector<int> codes;
    const auto opened = openDocument(solved.folder / "m.wkm");
    ASSERT_TRUE(opened);
    DPoolProp& properties = *(*opened)->Pool<DPoolProp>();
    for (const ItrKey key : properties.GetKeyList())
        codes.push_back(properties.GetAtNU(key).typeCode);
    EXPECT_EQ(codes, (std::vector<int>{PropertyType::Connector, PropertyType::Solid, PropertyType::Shell,
                                       PropertyType::Line}));
}

/// Results in the axes of orientations come back as those in global axes, of solids and of plates.
TEST(SolvedFamilies, TurnsLocalResultsBack) {
    if (!solverIsThere()) GTEST_SKIP() << "ccx is not installed";
    struct Row {
        const char* orientation;
        bool followed;
    };
    const Row rows[] = {
        {"*ORIENTATION,NAME=OR\n0.6,0.8,0,-0.8,0.6,0.3\n", true},
        {"*ORIENTATION,NAME=OR,SYSTEM=CYLINDRICAL\n-300,-200,0,-300,-250,100\n", true},
        {"*ORIENTATION,NAME=OR\n0.6,0.8,0,-0.8,0.6,0.3\n3,30.\n", false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.orientation);
        const auto deck = [&](const std::string& request) {
            return std::string(
                       "*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,0,0,1\n6,1,0,1\n7,1,1,1\n8,0,1,1\n"
                       "11,5,0,0\n12,6,0,0\n13,6,1,0\n14,5,1,0\n"
                       "*ELEMENT,TYPE=C3D8,ELSET=BODY\n1,1,2,3,4,5,6,7,8\n"
                       "*ELEMENT,TYPE=S4,ELSET=PLATE\n2,11,12,13,14\n") +
                   row.orientation +
                   "*MATERIAL,NAME=M\n*ELASTIC\n210000,.3\n"
                   "*SOLID SECTION,ELSET=BODY,MATERIAL=M,ORIENTATION=OR\n"
                   "*SHELL SECTION,ELSET=PLATE,MATERIAL=M,ORIENTATION=OR\n.1\n"
                   "*BOUNDARY\n1,1,3\n2,1,3\n3,1,3\n4,1,3\n11,1,6\n14,1,6\n"
                   "*STEP\n*STATIC\n*CLOAD\n7,1,100.\n7,3,50.\n12,1,10.\n13,2,5.\n13,3,1.\n"
                   "*NODE FILE\nU\n*EL FILE" +
                   request + "\nS,E\n*END STEP\n";
        };
        const Solved global(deck("")), local(deck(",GLOBAL=NO"));
        ASSERT_EQ(global.error + local.error, "");
        bool same = true;
        for (const unsigned id : {312101u, 312102u, 312104u, 312106u, 412101u, 412152u, 412104u}) {
            const auto expected = global.table(id), found = local.table(id);
            ASSERT_EQ(expected.size(), found.size());
            // Directions that differ from place to place leave a little of the averages of the solver.
            double largest = 0;
            for (const float value : global.table(id / 1000 * 1000 + 101))
                largest = std::max(largest, std::fabs(static_cast<double>(value)));
            for (std::size_t i = 0; i < expected.size(); ++i)
                same = same && std::fabs(expected[i] - found[i]) < 0.005 * largest;
        }
        EXPECT_EQ(same, row.followed);
        const bool warned = std::any_of(local.warnings.begin(), local.warnings.end(), [](const auto& text) {
            return text.find("not followed") != std::string::npos;
        });
        EXPECT_EQ(warned, !row.followed);
    }
}

/// Deck and results with bytes changed, cut or doubled: an import or a sentence.
TEST(SolvedFamilies, AnswersDamageWithASentence) {
    if (!solverIsThere()) GTEST_SKIP() << "ccx is not installed";
    const Solved solved(
        "*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,2,0,0\n6,2,1,0\n7,3,1,0\n"
        "*ELEMENT,TYPE=S4,ELSET=PLATE\n1,1,2,3,4\n*ELEMENT,TYPE=CPS4,ELSET=PLANE\n2,2,5,6,3\n"
        "*ELEMENT,TYPE=B31,ELSET=BEAM\n3,6,7\n"
        "*MATERIAL,NAME=M\n*ELASTIC\n210000,.3\n*ORIENTATION,NAME=OR\n1,0,0,0,1,0\n"
        "*SHELL SECTION,ELSET=PLATE,MATERIAL=M,ORIENTATION=OR\n.1\n"
        "*SOLID SECTION,ELSET=PLANE,MATERIAL=M,ORIENTATION=OR\n.1\n"
        "*BEAM SECTION,ELSET=BEAM,MATERIAL=M,SECTION=RECT\n.1,.2\n0,0,1\n"
        "*BOUNDARY\n1,1,6\n4,1,6\n2,3\n3,3\n5,3\n6,3,6\n7,2,6\n"
        "*STEP\n*STATIC\n*CLOAD\n5,1,1.\n*NODE FILE\nU\n*EL FILE,GLOBAL=NO\nS,E\n*END STEP\n");
    const std::string sources[] = {bytesOf(solved.folder / "a.inp"), bytesOf(solved.folder / "a.frd")};
    const char* const names[] = {"a.inp", "a.frd"};
    std::uint64_t state = 20240611;
    const auto draw = [&](std::size_t below) {
        state = state * 6364136223846793005u + 1442695040888963407u;
        return static_cast<std::size_t>((state >> 33) % below);
    };
    for (int turn = 0; turn < 40; ++turn) {
        const std::size_t which = draw(2);
        std::string text = sources[which];
        for (std::size_t change = 1 + draw(3); change > 0; --change) {
            const std::size_t at = draw(text.size()), length = 1 + draw(60);
            switch (draw(4)) {
            case 0:
                text[at] = "0123456789-+*,=E \n"[draw(18)];
                break;
            case 1:
                text.erase(at, length);
                break;
            case 2:
                text.insert(at, text.substr(draw(text.size()), length));
                break;
            default:
                text[at] = static_cast<char>(draw(256));
            }
        }
        writeBytes(solved.folder / names[1 - which], sources[1 - which]);
        writeBytes(solved.folder / names[which], text);
        const auto report = importProject(solved.folder / "p.toml", solved.folder / "m.wkm");
        EXPECT_TRUE(report || !report.error().message.empty()) << "turn " << turn << ", " << names[which];
    }
}

} // namespace
