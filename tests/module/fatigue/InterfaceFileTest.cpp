#include "framework/text/CodePage.h"
#include "framework/text/LineEnd.h"
#include "tests/module/fatigue/FatigueModel.h"
#include "tests/module/fatigue/InterfaceReader.h"
#include "tests/support/Golden.h"

#include <gtest/gtest.h>

namespace {

std::vector<std::string> linesOf(std::string_view text, std::string_view end) {
    std::vector<std::string> lines;
    for (std::size_t at; (at = text.find(end)) != text.npos; text.remove_prefix(at + end.size()))
        lines.emplace_back(text.substr(0, at));
    if (!text.empty()) lines.emplace_back(text);
    return lines;
}

std::vector<std::string> readMirror(const FatigueModel& model) {
    return linesOf(bytesOf(model.mirrorFile()), framework::kLineEnd);
}

/// The golden text of a type stands beside this file.
std::vector<std::string> golden(int type) {
    return linesOf(bytesOf(std::filesystem::path(VEXA_SOURCE_DIR) / "tests/module/fatigue/golden" /
                           ("type" + std::to_string(type) + ".txt")),
                   "\n");
}

// The solver is missing in these tests, so a run ends behind the interface file.
TEST(InterfaceFile, HoldsEveryTypeByteForByte) {
    for (int type = 0; type <= 4; ++type) {
        SCOPED_TRACE(type);
        FatigueModel model;
        const WorkingFolder here(model.folder.path());
        model.doc.path = L"model.wkm"; // no folder, so that the file is the same everywhere
        model.host.environment[L"FatigueText"] = L"yEs";
        model.definition.fatigueType = type;
        model.definition.stressOption = 3;
        model.definition.strainOption = 1;
        model.definition.quickRainflow = 8;
        model.definition.rainflowValue = 5;
        model.definition.meanStress = {0, 1, 0, 0, 2, 0};
        model.definition.strainCorrections = {1, 0, 1, 0};
        EXPECT_EQ(model.run(), 0);
        EXPECT_TRUE(model.host.errors.empty());
        ASSERT_EQ(model.host.boxes.size(), 1u);

        const std::string bytes = bytesOf(model.interfaceFile());
        const InterfaceReader reader(bytes);
        EXPECT_EQ(readMirror(model), reader.lines);
        EXPECT_EQ(reader.lines, golden(type));
        const std::string name = "fatigue/type" + std::to_string(type);
        keepGolden(name + "/FATIGUE.76", bytes);
        keepGolden(name + "/mirror.txt", bytesOf(model.mirrorFile()));

        std::filesystem::remove(model.mirrorFile());
        model.host.environment[L"FatigueText"] = L"yes please";
        model.run();
        EXPECT_FALSE(std::filesystem::exists(model.mirrorFile()));
        EXPECT_EQ(bytesOf(model.interfaceFile()), bytes);
    }
}

TEST(InterfaceFile, WidensAndConvertsFloats) {
    FatigueModel model;
    model.host.unitFactors[UnitKind::Stress] = 0.1;
    model.run();
    const std::string bytes = bytesOf(model.interfaceFile());
    const InterfaceReader reader(bytes);
    // The last record: sixth component, last node (one corner, value 607), first step of case "Dead".
    const double expected =
        static_cast<double>(static_cast<float>(static_cast<double>(607.0f + 1000.0f) * 0.1));
    EXPECT_EQ(std::get<double>(reader.records.back().at(6)), expected);
    EXPECT_NE(expected, 160.7);
    // The header's byte count and version, low byte first.
    EXPECT_EQ(bytes.substr(0, 4), std::string("\0\4\0\0", 4));
    EXPECT_EQ(bytes.substr(1032 + 12, 8), std::string("\x10\0\0\0\1\0\0\0", 8));
}

TEST(InterfaceFile, DerivesTheCyclicConstants) {
    FatigueModel model;
    model.definition.fatigueType = 1;
    model.definition.strainLifeMaterials[1].deriveCyclicStrengthCoefficient = 1;
    model.run();
    const std::string bytes = bytesOf(model.interfaceFile());
    const InterfaceReader reader(bytes);
    const auto constant = [&](std::size_t material, std::size_t i) {
        return std::get<double>(reader.records.at(10 + material).at(i));
    };
    EXPECT_DOUBLE_EQ(constant(0, 2), 0.15);
    EXPECT_DOUBLE_EQ(constant(0, 3), 1108.0299720104247); // 900 / 0.25 ^ 0.15
    EXPECT_EQ(constant(1, 2), 0.15);
    EXPECT_DOUBLE_EQ(constant(1, 3), 585.1418728371225); // 510 / 0.4 ^ 0.15, with the n' that is kept
}

TEST(InterfaceFile, CutsAndNamesLongOrForeignNames) {
    FatigueModel model;
    const auto field = [&] {
        const std::string bytes = bytesOf(model.interfaceFile());
        return bytes.substr(4, 1024);
    };
    // Folders may be long where one component may not.
    const std::filesystem::path deep = model.folder / std::string(200, 'a') / std::string(200, 'b') /
                                       std::string(200, 'c') / std::string(200, 'd') / std::string(200, 'e');
    std::filesystem::create_directories(deep);
    model.doc.path = framework::widePath(deep / pathOf("절점.wkm"));
    model.run();
    const std::string stem = (deep / pathOf("절점_Life")).string();
    ASSERT_GT(stem.size(), 1024u);
    EXPECT_EQ(bytesOf(deep / "FATIGUE.76").substr(4, 1024), stem.substr(0, 1024));

    model.doc.path = framework::widePath(model.folder / "절점.wkm");
    model.run();
    const std::string own = (model.folder / "절점_Life").string();
    EXPECT_EQ(field(), own + '\0' + std::string(1023 - own.size(), ' '));
    EXPECT_TRUE(model.host.errors.empty());
}

TEST(InterfaceFile, WarnsOfLettersThatTheCodePageLacks) {
    FatigueModel model;
    model.host.texts[L"IDS_VEXAGPS_FATIGUE_TEXT_REPLACED"] = L"cannot write %s";
    model.doc.path = framework::widePath(model.folder / "ćwiek 절점.wkm");
    const std::wstring stem = framework::widePath(model.folder / "ćwiek 절점_Life");
    ASSERT_TRUE(framework::setHostCodePage(framework::kCodePageKorean));
    model.run();
    framework::setHostCodePage(framework::kCodePageUtf8);
    EXPECT_EQ(model.host.errors, std::vector<std::wstring>{L"cannot write " + stem});
    const std::string own = (model.folder / "").string() + "?wiek \xC0\xFD\xC1\xA1_Life";
    EXPECT_EQ(bytesOf(model.interfaceFile()).substr(4, own.size() + 1), own + '\0');
}

TEST(InterfaceFile, StopsAtWhatItCannotWrite) {
    const struct {
        const char* what;
        void (*spoil)(FatigueModel&);
        std::size_t records; ///< written before
    } rows[] = {
        {"stress option", [](FatigueModel& m) { m.definition.stressOption = 4; }, 4},
        {"negative stress option", [](FatigueModel& m) { m.definition.stressOption = -1; }, 4},
        {"strain option", [](FatigueModel& m) { m.definition.strainOption = 4; }, 5},
        {"curve type", [](FatigueModel& m) { m.definition.stressLifeMaterials[1].curveType = 2; }, 13},
        {"material key", [](FatigueModel& m) { m.definition.stressLifeMaterials[1].materialKey = 0; }, 13},
        {"curve key of a parametric curve",
         [](FatigueModel& m) { m.definition.stressLifeMaterials[0].curveKey = 0; }, 10},
        {"unknown curve", [](FatigueModel& m) { m.definition.stressLifeMaterials[1].curveKey = 40; }, 13},
        {"unknown load function", [](FatigueModel& m) { m.definition.loads[1].loadFunctionKey = 53; }, 18},
        {"unreadable table",
         [](FatigueModel& m) {
             dynamic_cast<support::MemoryResult*>(m.steps[1]->GetVResult(312103))->unreadable = true;
         },
         33},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        FatigueModel model;
        row.spoil(model);
        EXPECT_EQ(model.run(), 0);
        EXPECT_TRUE(model.host.errors.empty());
        EXPECT_TRUE(model.host.boxes.empty()) << "the solver must not be asked for";
        EXPECT_EQ(model.host.progress.events.back(), L"close");
        const std::string bytes = bytesOf(model.interfaceFile());
        std::size_t records = 0;
        for (std::size_t at = 0; at < bytes.size(); ++records)
            at +=
                8 + static_cast<unsigned char>(bytes[at]) + 256u * static_cast<unsigned char>(bytes[at + 1]);
        EXPECT_EQ(records, row.records);
    }
}

TEST(InterfaceFile, SkipsMaterialsThatDoNotExist) {
    FatigueModel model;
    model.definition.stressLifeMaterials.insert(model.definition.stressLifeMaterials.begin(),
                                                {999, 0, 1, 2, {}, FatigueModel::kCurve});
    model.run();
    const std::string bytes = bytesOf(model.interfaceFile());
    const InterfaceReader reader(bytes);
    EXPECT_EQ(reader.records.at(2).at(2), InterfaceReader::Value(2));
    EXPECT_EQ(reader.records.at(10).at(0), InterfaceReader::Value(200000.0));
}

TEST(InterfaceFile, ListsOnlyNodesOfTheDefinitionsMaterials) {
    FatigueModel model;
    model.definition.stressLifeMaterials.pop_back();
    model.run();
    const std::string bytes = bytesOf(model.interfaceFile());
    const InterfaceReader reader(bytes);
    EXPECT_EQ(reader.records.at(2).at(1), InterfaceReader::Value(4));
    // The second node has its value of the first element alone.
    const auto second = reader.records.end() - 3 * 5 + 2;
    EXPECT_EQ(second->at(1), InterfaceReader::Value(3101.0));
}

/// Lets something stand under a name that takes no file.
const struct {
    const wchar_t* cause; ///< end of the message
    void (*make)(const std::filesystem::path&);
} kObstacles[] = {
    {L": Is a directory", [](const std::filesystem::path& path) { std::filesystem::create_directory(path); }},
#ifndef _WIN32
    {L": No space left on device",
     [](const std::filesystem::path& path) {
         ASSERT_TRUE(std::filesystem::is_character_file("/dev/full")) << "this machine has no full device";
         std::filesystem::create_symlink("/dev/full", path);
     }},
    {L": No such file or directory",
     [](const std::filesystem::path& path) { std::filesystem::create_symlink("/nowhere/at/all", path); }},
#endif
};

TEST(InterfaceFile, ReportsAFileThatCannotBeWritten) {
    for (const char* name : {"FATIGUE.76", "model_Static_FATIGUE_76.txt"})
        for (const auto& obstacle : kObstacles) {
            SCOPED_TRACE(name + std::string(", obstacle ") + std::to_string(&obstacle - kObstacles));
            FatigueModel model;
            model.host.environment[L"FatigueText"] = L"YES";
            obstacle.make(model.folder / name);
            EXPECT_EQ(model.run(), 0);
            ASSERT_EQ(model.host.errors.size(), 1u);
            const std::wstring end = framework::widePath(name) + obstacle.cause;
            EXPECT_TRUE(model.host.errors[0].ends_with(end)) << framework::toUtf8(model.host.errors[0]);
            EXPECT_TRUE(model.host.boxes.empty()) << "the solver must not be asked for";
            EXPECT_EQ(model.doc.postModes, std::vector<int>{0});
            EXPECT_EQ(model.host.waitCursor, (std::vector<bool>{true, false}));
            EXPECT_EQ(model.host.progress.events.back(), L"close");
            // The next run starts clean.
            std::filesystem::remove(model.folder / name);
            model.host.errors.clear();
            model.run();
            EXPECT_TRUE(model.host.errors.empty());
            const std::string bytes = bytesOf(model.interfaceFile());
            EXPECT_EQ(readMirror(model), InterfaceReader(bytes).lines);
        }
}

} // namespace
