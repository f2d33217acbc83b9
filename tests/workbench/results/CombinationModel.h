#pragma once

#include "host/ElementTypes.h"
#include "resultfile/ResultFile.h"
#include "tests/support/TemporaryFolder.h"
#include "workbench/results/CombineResults.h"
#include "workbench/session/WorkbenchHost.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

/// A model of `nodes` nodes and two quadrilaterals over the first six of them, in a folder of its own, with
/// one analysis "Static".
struct CombinationModel {
    struct Table {
        unsigned id;
        std::vector<float> values;
        std::string items = {}; ///< a list of `lists`
        resultfile::Location location = resultfile::Location::Node;
    };
    struct Step {
        std::string name;
        double value;
        std::vector<Table> tables;
    };
    struct Case {
        std::string name;
        std::vector<Step> steps;
    };
    struct Item {
        std::string caseName;
        std::string step = {}; ///< empty: the whole case
        double factor = 1;
    };
    /// Values by node number, or by element number x 10 + corner from 1.
    using Values = std::map<int, float>;

    explicit CombinationModel(std::size_t nodes = 6)
        : host({}) {
        using namespace workbench;
        EXPECT_TRUE(database.beginTransaction(L"model"));
        tagTProp property;
        property.typeCode = PropertyType::Shell;
        const auto key = static_cast<std::uint32_t>(database.Pool<DPoolProp>()->TR_Add(property));
        MeshData mesh;
        for (std::size_t i = 0; i < nodes; ++i) {
            mesh.nodeNumbers.push_back(static_cast<std::int32_t>(i + 1));
            mesh.nodePositions.push_back({double(i % 3), double(i / 3), 0});
        }
        mesh.elementNumbers = {1, 2};
        mesh.elementTypes.assign(2, static_cast<std::uint8_t>(ElementType::Quad4));
        mesh.elementPropertyKeys.assign(2, key);
        mesh.elementNodeOffsets = {0, 4, 8};
        mesh.elementNodes = {0, 1, 4, 3, 1, 2, 5, 4};
        const auto set = database.setMesh(std::move(mesh));
        EXPECT_TRUE(set) << set.error().message;
        tagTVXMcas record;
        record.name = L"Static";
        analysis = database.Pool<DPoolVXMcas>()->TR_Add(record);
        EXPECT_TRUE(database.commitTransaction());
    }

    /// Writes the cases into a result file of their own and registers it.
    void add(const std::vector<Case>& cases, const std::string& file = "a.lmop") {
        using namespace resultfile;
        auto writer = Writer::create(folder / file, "Static", "test");
        const T_QM_MESH_D& mesh = database.mesh();
        const std::vector<std::int32_t> corners{4, 4};
        EXPECT_TRUE(writer && writer->setMesh({mesh.nodeNumbers, mesh.elementNumbers, corners}));
        for (const auto& [name, positions] : lists)
            EXPECT_TRUE(
                writer->addItems(name, name[0] == 'e' ? Location::ElementCorner : Location::Node, positions));
        std::uint32_t keys = 0;
        for (const Case& added : cases) {
            EXPECT_TRUE(writer->beginCase(added.name));
            ++keys;
            for (const Step& step : added.steps) {
                EXPECT_TRUE(writer->beginStep(step.name, step.value));
                ++keys;
                for (const Table& table : step.tables) {
                    const auto put = writer->writeTable(table.id, table.location, table.values, table.items);
                    EXPECT_TRUE(put) << put.error().message;
                }
            }
        }
        EXPECT_TRUE(writer->commit());
        EXPECT_TRUE(database.beginTransaction(L"register"));
        EXPECT_NE(database.addResultFile(analysis, file, keys, false), 0u);
        EXPECT_TRUE(database.commitTransaction());
        tree.rebuild();
    }

    workbench::CombinationRequest request(workbench::CombinationKind kind, const std::vector<Item>& items,
                                          const std::string& name = "Set") {
        workbench::CombinationRequest made;
        made.name = name;
        made.kind = kind;
        made.analysisKey = analysis;
        for (const Item& item : items)
            for (CPOHCase* candidate : tree.GetChild(analysis)->GetChildList()) {
                if (candidate->GetName() != std::wstring(item.caseName.begin(), item.caseName.end()))
                    continue;
                CPOHVCase* wanted = nullptr;
                for (CPOHVCase* step : candidate->GetVCaseList())
                    if (step->GetName() == std::wstring(item.step.begin(), item.step.end())) wanted = step;
                made.items.push_back({candidate, wanted, item.factor});
            }
        EXPECT_EQ(made.items.size(), items.size());
        return made;
    }

    Result<workbench::CombinationReport> combine(const workbench::CombinationRequest& wanted) {
        return workbench::combineResults(database, tree, folder.path(), wanted, true);
    }

    /// Values of a component of the set that was made, by place; nothing where there is none.
    Values values(unsigned id, const std::string& set = "Set", std::size_t step = 0, std::size_t inCase = 0) {
        Values found;
        for (CPOHAnalysis* made : tree.GetChildList()) {
            if (made->GetName() != std::wstring(set.begin(), set.end())) continue;
            CVResult* result = made->GetChildList().at(inCase)->GetVCaseList().at(step)->GetVResult(id);
            const CVResultLease lease(result);
            if (!lease) return found;
            const T_QM_MESH_D& mesh = database.mesh();
            const bool corner = lease->location == ResultLocation::ElementCorner;
            std::size_t at = 0;
            const std::size_t count = !lease->items.empty() ? lease->items.size()
                                      : corner              ? mesh.elementCount()
                                                            : mesh.nodeCount();
            for (std::size_t i = 0; i < count; ++i) {
                const std::size_t item = lease->items.empty() ? i : lease->items[i];
                for (int c = 1; c <= (corner ? 4 : 1); ++c)
                    found[corner ? mesh.elementNumbers[item] * 10 + c : mesh.nodeNumbers[item]] =
                        lease->values[at++];
            }
        }
        return found;
    }

    std::set<std::string> listing() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
            names.insert(entry.path().filename().string());
        return names;
    }

    /// Lists by name, which begins with "e" where they are of elements.
    std::map<std::string, std::vector<std::uint32_t>> lists;
    TemporaryFolder folder;
    workbench::WorkbenchHost host;
    workbench::ModelDatabase database;
    workbench::ResultTree tree{database, folder.path()};
    ItrKey analysis = 0;
};
