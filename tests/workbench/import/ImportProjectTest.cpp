#include "workbench/import/ImportProject.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/workbench/import/FrdText.h"
#include "workbench/document/DocumentFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <sstream>

namespace {

using namespace workbench;

const std::string kInp = "*NODE, NSET=ALL\n1,0,0,0\n2,1,0,0\n3,0,1,0\n4,0,0,1\n9,5,5,5\n"
                         "*ELEMENT, TYPE=C3D4, ELSET=BODY\n10,1,2,3,4\n"
                         "*MATERIAL, NAME=Steel\n*ELASTIC\n210000,0.3\n*DENSITY\n7.8e-9\n"
                         "*SOLID SECTION, ELSET=BODY, MATERIAL=Steel\n"
                         "*STEP\n*STATIC\n*NODE FILE\nU\n*EL FILE\nS\n*END STEP\n"
                         "*STEP\n*FREQUENCY\n2\n*END STEP\n";

const std::string kToml =
    "[units]\nforce = 'kN'\nlength = 'm'\n"
    "[[analysis]]\nname = 'Static'\ndeck = 'a.inp'\ncases = ['Pull', 'Modes']\n"
    "[[material]]\nname = 'STEEL'\nultimate = 510\nyield = 355\n"
    "[[load_function]]\nname = 'F'\npoints = [[0, 0], [1, 1]]\n"
    "[[fatigue]]\nname = 'Life'\ntype = 'stress-life cases'\nmean_stress = ['Goodman']\n"
    "  [[fatigue.material]]\n  material = 'steel'\n  coefficient = 1000\n  exponent = -0.1\n"
    "  [[fatigue.load]]\n  case = 'Pull'\n  step = 'Time 1'\n  factor = 2\n  function = 'F'\n";

const std::vector<int> kNodes{1, 2, 3, 4};
double displacement(int node, int component) {
    return component == 0 ? 3.0 * node : component == 1 ? 4.0 * node : 0;
}
double stress(int node, int component) {
    return (component + 1) * node;
}

std::string frd(int firstStep = 1) {
    return FrdText()
        .mesh(kNodes, {10})
        .block("DISP", kDisplacement, kNodes, displacement, firstStep, 1, 0.5)
        .block("STRESS", kStress, kNodes, stress, firstStep, 1, 0.5)
        .block("WHAT", {"A"}, kNodes, stress, firstStep, 1, 0.5)
        .block("STRESS", kStress, {4, 3, 2, 1}, stress, firstStep, 2, 1)
        .block("DISP", kDisplacement, kNodes, displacement, 2, 1, 0, 1)
        .block("DISP", kDisplacement, {2, 3}, displacement, 2, 1, 0, 2)
        .end();
}

/// A project in a folder of its own.
struct Project {
    TemporaryFolder folder;
    Project() {
        writeBytes(folder / "a.inp", kInp);
        writeBytes(folder / "a.frd", frd());
        writeBytes(folder / "p.toml", kToml);
    }
    Result<ImportReport> import() const { return importProject(folder / "p.toml", folder / "m.wkm"); }
    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
};

const std::vector<std::string> kSources{"a.frd", "a.inp", "p.toml"};

template <class Pool>
typename Pool::Record onlyRecord(ModelDatabase& database) {
    Pool& pool = *database.Pool<Pool>();
    EXPECT_EQ(pool.GetCount(), 1u);
    return pool.GetAtNU(pool.GetKeyList().front());
}

TEST(ImportProject, MakesADocumentWithResults) {
    Project project;
    const auto report = project.import();
    ASSERT_TRUE(report) << report.error().message;
    EXPECT_EQ(report->nodeCount, 5u);
    ASSERT_EQ(report->analyses.size(), 1u);
    EXPECT_EQ(report->analyses[0].cases[0].steps, (std::vector<std::string>{"Time 0.5", "Time 1"}));
    EXPECT_EQ(report->analyses[0].cases[1].steps, (std::vector<std::string>{"Mode 1", "Mode 2"}));
    ASSERT_EQ(report->warnings.size(), 1u);
    EXPECT_NE(report->warnings[0].find("results WHAT are not known and left out"), std::string::npos);
    EXPECT_EQ(project.files(),
              (std::vector<std::string>{"a.frd", "a.inp", "m.wkm", "m_Static.lmop", "p.toml"}));

    const auto file = resultfile::Reader::open(project.folder / "m_Static.lmop");
    ASSERT_TRUE(file) << file.error().message;
    const auto values = [&](std::size_t c, std::size_t s, unsigned id) { return *file->values(c, s, id); };
    EXPECT_EQ(values(0, 0, 102), (std::vector<float>{4, 8, 12, 16}));
    EXPECT_EQ(values(0, 0, 104), (std::vector<float>{5, 10, 15, 20}));
    EXPECT_EQ(values(0, 1, 312106), (std::vector<float>{6, 12, 18, 24})) << "rows are in mesh order";
    // von Mises of (1, 2, 3, 4, 5, 6): sqrt((1 + 1 + 4) / 2 + 3 (16 + 25 + 36))
    EXPECT_FLOAT_EQ(values(0, 1, 312114)[0], static_cast<float>(std::sqrt(234.0)));
    EXPECT_EQ(values(1, 1, 101), (std::vector<float>{6, 9}));
    const auto& cases = file->contents().cases;
    EXPECT_EQ(cases[0].steps[0].value, 0.5);
    EXPECT_EQ(*file->items(cases[0].steps[0].components[0].items), (std::vector<std::uint32_t>{0, 1, 2, 3}));
    EXPECT_EQ(*file->items(cases[1].steps[1].components[0].items), (std::vector<std::uint32_t>{1, 2}));

    const auto opened = openDocument(project.folder / "m.wkm");
    ASSERT_TRUE(opened) << opened.error().message;
    ModelDatabase& database = **opened;
    EXPECT_EQ(database.units().force, "kN");
    EXPECT_EQ(database.mesh().nodeCount(), 5u);
    ASSERT_EQ(database.resultFiles().size(), 1u);
    EXPECT_EQ(database.resultFiles()[0].path, "m_Static.lmop");
    EXPECT_EQ(database.resultFiles()[0].keyCount, 6u) << "two cases, four steps";
    const auto material = onlyRecord<DPoolMatl>(database);
    EXPECT_EQ(material.elasticModulus, 210000);
    EXPECT_EQ(onlyRecord<DPoolProp>(database).materialKeys, (std::vector<ItrKey>{material.key}));
    EXPECT_EQ(onlyRecord<DPoolProp>(database).typeCode, PropertyType::Solid);
    EXPECT_EQ(database.Pool<DPoolMset>()->GetCount(), 2u);
    const auto fatigue = onlyRecord<DPoolFatg>(database);
    const auto& entry = fatigue.stressLifeMaterials.at(0);
    EXPECT_EQ(entry.materialKey, material.key);
    EXPECT_EQ(entry.yieldStrength, 355);
    EXPECT_EQ(entry.ultimateStrength, 510);
    EXPECT_EQ(entry.curveType, 0);
    EXPECT_EQ(entry.curveParameters, (std::array{1000.0, -0.1}));
    EXPECT_EQ(onlyRecord<DPoolSNFun>(database).key, entry.curveKey);
    EXPECT_EQ(onlyRecord<DPoolFLFun>(database).key, fatigue.loads.at(0).loadFunctionKey);
    EXPECT_EQ(fatigue.loads[0].stepName, L"Time 1");
    EXPECT_EQ(fatigue.meanStress, (std::array<std::int32_t, 6>{0, 1, 0, 0, 0, 0}));
    tagTVXMcas result;
    ASSERT_TRUE(database.Pool<DPoolVXMcas>()->Get(fatigue.resultAnalysisKey, result));
    EXPECT_EQ(result.name, L"Life");
    EXPECT_EQ(database.resultFiles()[0].analysisKey, fatigue.analysisKey);
}

TEST(ImportProject, LeavesNothingBehindOnFailure) {
    struct Row {
        const char* file;
        std::string bytes;
        const char* words;
    };
    const auto replaced = [](std::string text, const std::string& from, const std::string& to) {
        const std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return text.replace(at, from.size(), to);
    };
    const Row rows[] = {
        {"p.toml", replaced(kToml, "'a.inp'", "'b.inp'"), "b.inp is not there"},
        {"p.toml", kToml + "[[material]]\nname = 'STEAL'\n",
         "p.toml:28: the material 'STEAL' is not in the solver deck, did you mean 'Steel'?"},
        {"p.toml", replaced(kToml, "case = 'Pull'", "case = 'Pul'"),
         "the case 'Pul' is not one of analysis 'Static', did you mean 'Pull'?"},
        {"p.toml", replaced(kToml, "'Time 1'", "'Time 2'"),
         "the case 'Pull' has no step 'Time 2'; it has 'Time 0.5' and 'Time 1'"},
        {"p.toml", replaced(kToml, ", 'Modes'", ""), "cases names 1, but the deck has 2 steps"},
        {"a.inp", replaced(kInp, "10,1,2,3,4", "10,1,2,3,7"), "a.inp:8: element 10 has node 7"},
        {"a.inp", replaced(kInp, "10,1,2,3,4\n", ""), "has no elements of a type that is read"},
        {"a.frd", replaced(frd(), " 2.40000E+01", "         NaN"),
         "node 4, component SZX: 'NaN' is no finite number"},
        {"a.frd", frd().substr(0, 3000), "the solver did not finish, or the file is truncated"},
        {"a.frd", frd(3), "these are results of step 3, but the deck has 2"},
        {"a.frd", FrdText().mesh({1, 7}, {10}).end(), "node 7 is not in the deck"},
        {"a.frd", FrdText().mesh({1}, {11}).end(), "element 11 is not in the deck"},
        {"a.frd", FrdText().mesh(kNodes, {10}).end(), "the solver left no results"},
        {"a.frd", FrdText().block("DISP", kDisplacement, kNodes, displacement, 2).end(),
         "has no results of step 1 ('Pull'), which asks for some at"},
        {"a.frd", FrdText().block("DISP", kDisplacement, {1, 2, 1}, displacement).end(),
         "has values at node 1 twice"},
        {"a.frd", FrdText().block("DISP", kDisplacement, {1, 8}, displacement).end(),
         "values at node 8, which is not in the deck"},
    };
    for (const Row& row : rows) {
        Project project;
        writeBytes(project.folder / row.file, row.bytes);
        const auto report = project.import();
        ASSERT_FALSE(report) << row.words;
        EXPECT_NE(report.error().message.find(row.words), std::string::npos)
            << "gave: " << report.error().message << "\nnot:  " << row.words;
        EXPECT_EQ(project.files(), kSources) << row.words;
    }
    Project project;
    std::filesystem::remove(project.folder / "a.frd");
    writeBytes(project.folder / "a.sta", "  STEP      INC\n     1          3     1     2  0.350000E+00\n");
    writeBytes(project.folder / "a.log",
               "\n *ERROR: solution seems to diverge; please try \n        automatic incrementation\n\n");
    const auto report = project.import();
    ASSERT_FALSE(report);
    EXPECT_NE(report.error().message.find(
                  "is not there; solve the deck first; its log says: *ERROR: solution seems to "
                  "diverge; please try automatic incrementation; the last increment that it "
                  "finished is step 1, increment 3"),
              std::string::npos)
        << report.error().message;
}

/// The former files stay, byte for byte, when a later import fails, at whatever point that is.
TEST(ImportProject, KeepsFormerFilesOnFailure) {
    Project project;
    ASSERT_TRUE(project.import());
    const std::string document = bytesOf(project.folder / "m.wkm");
    const std::string results = bytesOf(project.folder / "m_Static.lmop");
    const auto files = project.files();
    writeBytes(project.folder / "a.frd", frd().substr(0, 3000));
    EXPECT_FALSE(project.import());
    EXPECT_EQ(project.files(), files);
    EXPECT_EQ(bytesOf(project.folder / "m_Static.lmop"), results);
    // Everything is right but the document cannot be put in place: its name is taken by a folder.
    writeBytes(project.folder / "a.frd", frd());
    std::filesystem::rename(project.folder / "m.wkm", project.folder / "old.wkm");
    std::filesystem::create_directories(project.folder / "m.wkm" / "inside");
    EXPECT_FALSE(project.import());
    EXPECT_EQ(bytesOf(project.folder / "m_Static.lmop"), results);
    std::filesystem::remove_all(project.folder / "m.wkm");
    std::filesystem::rename(project.folder / "old.wkm", project.folder / "m.wkm");
    EXPECT_EQ(project.files(), files);
    EXPECT_EQ(bytesOf(project.folder / "m.wkm"), document);
    ASSERT_TRUE(project.import());
    EXPECT_EQ(project.files(), files);
}

TEST(ImportProject, SharesOneMeshAmongAnalyses) {
    Project project;
    writeBytes(project.folder / "b.inp", kInp);
    writeBytes(project.folder / "b.frd", frd());
    const std::string second = kToml + "[[analysis]]\nname = 'Other'\ndeck = 'b.inp'\n";
    writeBytes(project.folder / "p.toml", second.substr(0, second.find("type =")) + "analysis = 'Static'\n" +
                                              second.substr(second.find("type =")));
    auto report = project.import();
    ASSERT_TRUE(report) << report.error().message;
    EXPECT_EQ(report->analyses[1].cases[0].name, "Step 1");
    const std::pair<const char*, const char*> rows[] = {{"2,1,0,0", "2,1.1,0,0"},
                                                        {"9,5,5,5", "8,5,5,5"},
                                                        {"10,1,2,3,4", "10,1,2,4,3"},
                                                        {"10,1,2,3,4", "11,1,2,3,4"},
                                                        {"9,5,5,5\n", ""}};
    for (const auto& [from, to] : rows) {
        std::string text = kInp;
        text.replace(text.find(from), std::strlen(from), to);
        writeBytes(project.folder / "b.inp", text);
        report = project.import();
        ASSERT_FALSE(report) << to;
        EXPECT_NE(report.error().message.find("its mesh is not that of"), std::string::npos)
            << report.error().message;
    }
}

/// Values by block name, step, node: a reader of its own for files that the solver wrote.
std::map<std::string, std::map<int, std::vector<float>>> readPlainly(const std::string& text) {
    std::map<std::string, std::map<int, std::vector<float>>> blocks;
    std::istringstream lines(text);
    std::string line, step, name;
    while (std::getline(lines, line)) {
        if (line.rfind("    1PSTEP", 0) == 0) step = line.substr(line.find_last_not_of(' '), 1);
        if (line.rfind(" -4", 0) == 0)
            name = line.substr(5, 8).substr(0, line.substr(5, 8).find(' ')) + " " + step;
        if (line.rfind(" -3", 0) == 0) name.clear();
        if (line.rfind(" -1", 0) != 0 || name.empty()) continue;
        auto& values = blocks[name][std::atoi(line.substr(3, 10).c_str())];
        values.clear();
        for (std::size_t at = 13; at + 12 <= line.size(); at += 12)
            values.push_back(std::strtof(line.substr(at, 12).c_str(), nullptr));
    }
    return blocks;
}

/// A cube sheared and pulled by the real solver.
TEST(ImportProject, KeepsEveryDigitOfARealRun) {
    if (std::system("command -v ccx > /dev/null 2>&1") != 0) GTEST_SKIP() << "ccx is not installed";
    Project project;
    writeBytes(
        project.folder / "a.inp",
        "*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,0,0,1\n6,1,0,1\n7,1,1,1\n8,0,1,1\n"
        "*ELEMENT,TYPE=C3D8,ELSET=E\n1,1,2,3,4,5,6,7,8\n*NSET,NSET=BOT\n1,2,3,4\n*NSET,NSET=TOP\n5,6,7,8\n"
        "*MATERIAL,NAME=STEEL\n*ELASTIC\n210000.,.3\n*SOLID "
        "SECTION,ELSET=E,MATERIAL=STEEL\n*BOUNDARY\nBOT,1,3\n"
        "*STEP\n*STATIC\n*CLOAD\nTOP,1,100.\n*NODE FILE\nU,RF\n*EL FILE\nS,E\n*END STEP\n"
        "*STEP\n*STATIC\n*CLOAD,OP=NEW\nTOP,3,50.\n*END STEP\n");
    ASSERT_EQ(std::system(("cd '" + project.folder.path().string() + "' && ccx a > a.log 2>&1").c_str()), 0);
    std::string toml = kToml;
    writeBytes(project.folder / "p.toml", toml.replace(toml.find("'Modes'"), 7, "'Push'"));
    const auto report = project.import();
    ASSERT_TRUE(report) << report.error().message;

    const auto blocks = readPlainly(bytesOf(project.folder / "a.frd"));
    const auto file = resultfile::Reader::open(project.folder / "m_Static.lmop");
    ASSERT_TRUE(file) << file.error().message;
    const std::tuple<const char*, unsigned, int> rows[] = {
        {"DISP", 101, 3}, {"STRESS", 312101, 6}, {"TOSTRAIN", 311101, 6}, {"FORC", 111, 3}};
    for (const auto& [name, id, count] : rows)
        for (std::size_t c = 0; c < 2; ++c) {
            const auto& block = blocks.at(std::string(name) + " " + std::to_string(c + 1));
            for (int component = 0; component < count; ++component) {
                const auto values = file->values(c, 0, id + unsigned(component));
                ASSERT_TRUE(values) << values.error().message;
                std::size_t n = 0;
                for (const auto& [node, printed] : block)
                    EXPECT_EQ((*values)[n++], printed.at(std::size_t(component))) << name << " " << node;
            }
        }
    // The shear strains are tensor components: tau = 2 G eps, G = E / (2 (1 + nu)).
    const float tau = file->values(0, 0, 312106)->front(), strain = file->values(0, 0, 311106)->front();
    EXPECT_NEAR(tau / (2 * 210000 / 2.6 * strain), 1, 1e-4);
}

} // namespace
