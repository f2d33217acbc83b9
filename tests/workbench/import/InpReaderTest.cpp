#include "workbench/import/InpReader.h"

#include "host/ElementTypes.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

using namespace workbench;

/// A unit cube of one element; cards of a test go behind it.
const std::string kCube =
    "*NODE, NSET=ALL\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,0,0,1\n6,1,0,1\n7,1,1,1\n8,0,1,1\n"
    "*ELEMENT, TYPE=C3D8, ELSET=E\n1,1,2,3,4,5,6,7,8\n"; // lines 1 to 11

Result<SolverDeck> readText(const std::string& text) {
    return readInpText(text, "x.inp", ".");
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

TEST(InpReader, ReadsCardsInAnyOrderAndCase) {
    const auto deck = readText("** a comment\n"
                               "*heading\n"
                               "A cube\n"
                               "*Solid Section, Material=steel , elset=e\n"
                               "*NSET, NSET=Ends\n"
                               "top, 1\n"
                               "*nset, nset=TOP, GENERATE\n"
                               "5, 8, 2\n"
                               "\n"
                               "*ELEMENT, TYPE=c3d8r,\n"
                               "   ELSET=E\r\n"
                               "30, 10,20,3,\n"
                               "4,5,\n"
                               "** in between\n"
                               "6,7,8\n"
                               "2, 3,4,10,20,5,6,7,8,\n"
                               "*Elset, elset=\"all of it\"\n"
                               "E\n"
                               "*NODE\n"
                               "20, 1.,0\n"
                               "10, -1D-1, +2.5e+1 , 3\n"
                               "  3,0,0,0\n4,0,0,0\n5,0,0,0\n8,0,0,0\n6,0,0,0\n7,0,0,0\n1,0,0,9\n"
                               "*MATERIAL, NAME=Steel\n*DENSITY\n7.8E-9\n*ELASTIC, TYPE=ISO\n210000., 0.3\n"
                               "*STEP, NLGEOM\n*STATIC\n0.1,1.\n*NODE FILE\nU\n*END STEP\n"
                               "*STEP\nSecond\n*FREQUENCY\n3\n*END STEP\n");
    ASSERT_TRUE(deck) << deck.error().message;
    EXPECT_EQ(deck->title, "A cube");
    EXPECT_EQ(deck->nodeNumbers, (std::vector<std::int32_t>{1, 3, 4, 5, 6, 7, 8, 10, 20}));
    EXPECT_EQ(deck->nodePositions[7], (std::array{-0.1, 25.0, 3.0}));
    EXPECT_EQ(deck->nodePositions[8], (std::array{1.0, 0.0, 0.0}));
    EXPECT_EQ(deck->elementNumbers, (std::vector<std::int32_t>{2, 30}));
    EXPECT_EQ(deck->elementNodes,
              (std::vector<std::uint32_t>{1, 2, 7, 8, 3, 4, 5, 6, 7, 8, 1, 2, 3, 4, 5, 6}));
    ASSERT_EQ(deck->nodeSets.size(), 2u);
    EXPECT_EQ(deck->nodeSets[0].name, "Ends");
    EXPECT_EQ(deck->nodeSets[0].numbers, (std::vector<std::int32_t>{1, 5, 7}));
    ASSERT_EQ(deck->elementSets.size(), 2u);
    EXPECT_EQ(deck->elementSets[1].name, "all of it");
    EXPECT_EQ(deck->elementSets[1].numbers, (std::vector<std::int32_t>{2, 30}));
    ASSERT_EQ(deck->materials.size(), 1u);
    EXPECT_EQ(deck->materials[0].elasticModulus, 210000);
    EXPECT_EQ(deck->materials[0].poissonRatio, 0.3);
    EXPECT_EQ(deck->materials[0].density, 7.8e-9);
    ASSERT_EQ(deck->sections.size(), 1u);
    EXPECT_EQ(deck->sections[0].materials, std::vector<std::string>{"steel"});
    ASSERT_EQ(deck->steps.size(), 2u);
    EXPECT_EQ(deck->steps[0].procedure, "STATIC");
    EXPECT_TRUE(deck->steps[0].requestsResults);
    EXPECT_EQ(deck->steps[1].title, "Second");
    EXPECT_EQ(deck->steps[1].procedure, "FREQUENCY");
    EXPECT_FALSE(deck->steps[1].requestsResults);
    EXPECT_EQ(joined(deck->warnings), "");
}

TEST(InpReader, KnowsTheElements) {
    using enum ElementFamily;
    const std::tuple<const char*, ElementType, ElementFamily> rows[] = {
        {"C3D4", ElementType::Tet4, Solid},          {"C3D6", ElementType::Wedge6, Solid},
        {"C3D8I", ElementType::Hex8, Solid},         {"C3D8R", ElementType::Hex8, Solid},
        {"C3D10T", ElementType::Tet10, Solid},       {"C3D15", ElementType::Wedge15, Solid},
        {"C3D20R", ElementType::Hex20, Solid},       {"S3", ElementType::Tri3, Plate},
        {"S4R", ElementType::Quad4, Plate},          {"S6", ElementType::Tri6, Plate},
        {"S8R", ElementType::Quad8, Plate},          {"M3D6", ElementType::Tri6, Membrane},
        {"CPS4R", ElementType::Quad4, PlaneStress},  {"CPE8", ElementType::Quad8, PlaneStrain},
        {"CAX6", ElementType::Tri6, Axisymmetric},   {"B31R", ElementType::Beam, Line},
        {"B32R", ElementType::Line3, Line},          {"T3D2", ElementType::Line2, Line},
        {"SPRINGA", ElementType::Spring, Connector}, {"SPRING1", ElementType::Point, Connector},
        {"GAPUNI", ElementType::Spring, Connector},  {"MASS", ElementType::Point, Connector}};
    for (const auto& [card, type, family] : rows) {
        std::string text = "*NODE\n";
        const int count = elementNodeCount(static_cast<std::uint8_t>(type));
        for (int n = 1; n <= count; ++n)
            text += std::to_string(n) + ",0,0,0\n";
        text += std::string("*ELEMENT,TYPE=") + card + "\n7";
        for (int n = 1; n <= count; ++n)
            text += std::string(n % 9 == 0 ? ",\n" : ",") + std::to_string(n);
        const auto deck = readText(text + "\n");
        ASSERT_TRUE(deck) << card << ": " << deck.error().message;
        EXPECT_EQ(deck->elementTypes, (std::vector<std::uint8_t>{static_cast<std::uint8_t>(type)})) << card;
        EXPECT_EQ(deck->elementFamilies, std::vector{family}) << card;
        EXPECT_EQ(deck->elementNodeOffsets.back(), static_cast<std::uint32_t>(count)) << card;
    }
}

TEST(InpReader, ReadsSectionsOfEveryKind) {
    const auto deck = readText(kCube + "*ELEMENT,TYPE=S4,ELSET=P\n2,1,2,3,4\n3,5,6,7,8\n*ELSET,ELSET=Q\n3\n"
                                       "*MATERIAL,NAME=M\n*MATERIAL,NAME=N\n"
                                       "*Shell Section, Elset=P, Material=M, Offset=.5\n 0.25\n"
                                       "*SHELL SECTION,ELSET=Q,COMPOSITE\n.1,3,M,OR\n.2,,N\n.3,,M\n"
                                       "*MASS,ELSET=E\n1.\n");
    ASSERT_TRUE(deck) << deck.error().message;
    EXPECT_EQ(joined(deck->warnings), "");
    ASSERT_EQ(deck->sections.size(), 3u);
    EXPECT_EQ(deck->sections[0].thickness, 0.25);
    EXPECT_EQ(deck->sections[0].layers, 0);
    EXPECT_DOUBLE_EQ(deck->sections[1].thickness, 0.6);
    EXPECT_EQ(deck->sections[1].materials, (std::vector<std::string>{"M", "N"}));
    EXPECT_EQ(deck->elementLayers, (std::vector<std::uint16_t>{0, 0, 3}));
    EXPECT_TRUE(deck->sections[2].materials.empty());
}

struct Bad {
    const char* cards; ///< behind the cube, from line 12 on
    const char* words;
};

TEST(InpReader, RefusesBrokenDecks) {
    const Bad rows[] = {
        {"*NODE\n1,0,0,0\n", "x.inp:13: node 1 was given before, at x.inp:2"},
        {"*NODE\nx,0,0,0\n", "x.inp:13: 'x' is no node number"},
        {"*NODE\n0,0,0,0\n", "x.inp:13: '0' is no node number"},
        {"*NODE\n3000000000,0,0,0\n", "x.inp:13: '3000000000' is no node number"},
        {"*NODE\n9,0,1.5.,0\n", "x.inp:13: '1.5.' is no coordinate of node 9"},
        {"*NODE\n9,0,nan,0\n", "x.inp:13: 'nan' is no coordinate"},
        {"*NODE\n9,0,1e999,0\n", "x.inp:13: '1e999' is no coordinate"},
        {"*ELEMENT,TYPE=C3D4\n1,1,2,3,5\n", "x.inp:13: element 1 was given before, at x.inp:11"},
        {"*ELEMENT,TYPE=C3D4\n2,1,2,3,99\n",
         "x.inp:13: element 2 has node 99, which the deck does not define"},
        {"*ELEMENT,TYPE=C3D4\n2,1,2,3\n*STEP\n", "x.inp:14: element 2 lacks 1 of its 4 nodes"},
        {"*ELEMENT,TYPE=C3D4\n2,1,2,3\n", "element 2 lacks 1 of its 4 nodes"},
        {"*ELEMENT,TYPE=C3D4\n2,1,2,3,b\n", "x.inp:13: 'b' is no node number of element 2"},
        {"*ELEMENT\n2,1,2,3,4\n", "x.inp:12: *ELEMENT has no TYPE"},
        {"*NSET,NSET=A\nALLE\n",
         "x.inp:13: 'ALLE' is neither a number nor the name of a node set of the deck; "
         "those are 'ALL' and 'A'"},
        {"*NSET,NSET=A\nB\n*NSET,NSET=B\nA\n", "contains itself"},
        {"*NSET\n1\n", "x.inp:12: *NSET has no name"},
        {"*NSET,NSET=A,GENERATE\n5,1\n", "x.inp:13: the range ends before it begins"},
        {"*NSET,NSET=A,GENERATE\n1,5,0\n", "x.inp:13: '0' is no step of a range"},
        {"*ELASTIC\n1,1\n", "x.inp:12: *ELASTIC stands before any *MATERIAL"},
        {"*MATERIAL,NAME=M\n*ELASTIC\n21O000.,.3\n", "x.inp:14: '21O000.' is no elastic modulus"},
        {"*INCLUDE,INPUT=nowhere.inc\n", "x.inp:12: the included file ./nowhere.inc is not there"},
    };
    for (const Bad& row : rows) {
        const auto deck = readText(kCube + row.cards);
        ASSERT_FALSE(deck) << row.cards;
        EXPECT_NE(deck.error().message.find(row.words), std::string::npos)
            << row.cards << "gave: " << deck.error().message << "\nnot:  " << row.words;
    }
    const auto noDeck = readText("1,2,3\n");
    ASSERT_FALSE(noDeck);
    EXPECT_NE(noDeck.error().message.find("is this a solver deck?"), std::string::npos);
}

TEST(InpReader, NamesWhatItLeavesOut) {
    const Bad rows[] = {
        {"*WIDGET, A=1\n1\n*WIDGET\n", "x.inp:12: *WIDGET is not read (2 times)"},
        {"*BOUNDARY\nALL,1,3\n*CLOAD\n1,1,1.\n",
         "x.inp:12: *BOUNDARY: loads, supports and links are not kept in the model (2 cards)"},
        {"*ELEMENT,TYPE=US4\n5,1,2,3,4\n6,5,6,\n7,8\n",
         "x.inp:13: elements of type US4 are not read and left out (2 elements)"},
        {"*NODE\n9,0,0,0,5\n", "x.inp:13: node 9 has more than three"},
        {"*ELEMENT,TYPE=C3D4\n2,1,2,3,4,5\n", "x.inp:13: element 2 has more than the 4 nodes"},
        {"*MATERIAL,NAME=M\n*ELASTIC\n5,.3\n*MATERIAL,NAME=m\n*ELASTIC\n6,.4\n",
         "x.inp:15: material 'm' was given before, at x.inp:12; the first is kept"},
        {"*MATERIAL,NAME=M\n*ELASTIC\n-1.,.3\n",
         "x.inp:14: the elastic modulus of material 'M' is not positive"},
        {"*MATERIAL,NAME=M\n*HYPERELASTIC,NEO HOOKE\n1.,.3\n",
         "x.inp:13: *HYPERELASTIC: material 'M' keeps no elastic modulus"},
        {"*MATERIAL,NAME=M\n*SOLID SECTION,ELSET=X,MATERIAL=M\n",
         "x.inp:13: element set 'X' is not in the deck"},
        {"*MATERIAL,NAME=M\n*SOLID SECTION,ELSET=E,MATERIAL=N\n",
         "material 'N' is not in the deck; it has 'M'"},
        {"*STATIC\n", "x.inp:12: *STATIC stands outside of a *STEP"},
        {"*NODE,SYSTEM=C\n9,1,0,0\n", "x.inp:12: *NODE: the parameter SYSTEM is not read"},
        {"*MATERIAL,NAME=M\n*ELASTIC,TYPE=ORTHO\n1,2,3,4,5,6,7,8\n9\n",
         "x.inp:13: *ELASTIC of type ORTHO: material 'M' keeps no elastic modulus"},
        {"*MATERIAL,NAME=M\n*ELASTIC\n1,0,20\n2,0,30\n", "x.inp:15: *ELASTIC depends on the temperature"},
        {"*NSET,NSET=A\n1,2,77,78\n", "x.inp:12: set 'A' lists 2 nodes that the deck does not define"},
        {"*STEP\n*NODE FILE,GLOBAL=NO\nU\n", "x.inp:13: *NODE FILE asks for results in local systems"},
    };
    for (const Bad& row : rows) {
        const auto deck = readText(kCube + row.cards);
        ASSERT_TRUE(deck) << deck.error().message;
        EXPECT_EQ(deck->warnings.size(), 1u) << row.cards << joined(deck->warnings);
        EXPECT_NE(joined(deck->warnings).find(row.words), std::string::npos)
            << row.cards << "gave: " << joined(deck->warnings) << "not:  " << row.words;
    }
}

TEST(InpReader, TakesALargeRangeAsWhatTheModelHolds) {
    const auto deck = readText(kCube + "*NSET,NSET=A,GENERATE\n2,2147483647,3\n");
    ASSERT_TRUE(deck) << deck.error().message;
    EXPECT_EQ(deck->nodeSets[1].numbers, (std::vector<std::int32_t>{2, 5, 8}));
}

TEST(InpReader, IncludesFilesInPlace) {
    TemporaryFolder folder;
    const auto write = [&](const char* name, const std::string& text) { writeBytes(folder / name, text); };
    write(
        "main.inp",
        "*NODE\n*INCLUDE, INPUT=nodes.txt\n4,0,0,1\n*ELEMENT,TYPE=C3D4\n1,1,2,3,4\n*INCLUDE,INPUT=bad.inc\n");
    write("nodes.txt", "1,0,0,0\n2,1,0,0\n3,0,1,0\n");
    write("bad.inc", "*NSET,NSET=A\n1\n*NODE\n1.5,0\n");
    auto deck = readInp(folder / "main.inp");
    ASSERT_FALSE(deck);
    EXPECT_NE(deck.error().message.find("bad.inc:4: '1.5' is no node number"), std::string::npos)
        << deck.error().message;
    write("bad.inc", "");
    deck = readInp(folder / "main.inp");
    ASSERT_TRUE(deck) << deck.error().message;
    EXPECT_EQ(deck->nodeNumbers.size(), 4u);
    write("bad.inc", "*INCLUDE,INPUT=./main.inp\n");
    deck = readInp(folder / "main.inp");
    ASSERT_FALSE(deck);
    EXPECT_NE(deck.error().message.find("includes itself"), std::string::npos) << deck.error().message;
}

} // namespace
