#include "workbench/document/RecordCheck.h"

#include "tests/workbench/document/DocumentTesting.h"
#include "workbench/document/ModelState.h"

#include <functional>
#include <limits>

namespace workbench {

namespace {

/// A document in which everything that refers to something is there once.
struct Sound {
    Sound() {
        change(database, [&] {
            material = database.Pool<DPoolMatl>()->TR_Add({0, 1, L"steel", 210000, 0.3, 7.85e-9});
            tagTProp plate;
            plate.name = L"plate";
            plate.materialKeys = {material};
            property = database.Pool<DPoolProp>()->TR_Add(plate);
            MeshData mesh = hexRow(3);
            mesh.elementPropertyKeys.assign(3, static_cast<std::uint32_t>(property));
            ASSERT_TRUE(bool(database.setMesh(std::move(mesh))));
            elementNumbers.assign(database.mesh().elementNumbers.begin(),
                                  database.mesh().elementNumbers.end());
            nodeNumbers.assign(database.mesh().nodeNumbers.begin(), database.mesh().nodeNumbers.end());
            set = database.Pool<DPoolMset>()->TR_Add({0, L"all", elementNumbers, nodeNumbers});
            control = database.Pool<DPoolVXOctr>()->TR_Add({0, L"control", 1});
            analysis = database.Pool<DPoolVXMcas>()->TR_Add({0, L"Static", 101, control});
            result = database.Pool<DPoolVXMcas>()->TR_Add({0, L"Life", 999, 0});
            curve = database.Pool<DPoolSNFun>()->TR_Add({0, L"curve", {{1e3, 300}, {1e6, 100}}});
            function = database.Pool<DPoolFLFun>()->TR_Add({0, 1, L"swing", {{0, 1}, {1, -1}}});
            fatigue = database.Pool<DPoolFatg>()->TR_Add(definition());
        });
    }

    tagTFatg definition() const {
        tagTFatg record;
        record.name = L"Service";
        record.analysisKey = analysis;
        record.resultAnalysisKey = result;
        record.stressLifeMaterials = {{material, 1, 355, 510, {}, curve}};
        record.loads = {{L"Pull", L"", 1, function}};
        return record;
    }

    /// Changes a record of a pool.
    template <class Pool>
    void modify(ItrKey key, const std::function<void(typename Pool::Record&)>& how) {
        auto record = database.Pool<Pool>()->GetAtNU(key);
        how(record);
        ASSERT_TRUE(database.Pool<Pool>()->TR_Modify(record));
    }
    void modifyFatigue(const std::function<void(tagTFatg&)>& how) { modify<DPoolFatg>(fatigue, how); }

    ModelDatabase database;
    ItrKey material = 0, property = 0, set = 0, control = 0, analysis = 0, result = 0, curve = 0,
           function = 0, fatigue = 0;
    std::vector<std::int32_t> elementNumbers, nodeNumbers;
};

TEST(RecordCheck, NamesWhatDoesNotHold) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    struct Row {
        std::function<void(Sound&)> damage;
        const char* item; ///< null: nothing is wrong
        const char* problem;
    };
    const Row rows[] = {
        {[](Sound&) {}, nullptr, ""},
        {[](Sound& s) { s.modifyFatigue([](auto& f) { f.loads[0].loadFunctionKey = 0; }); }, nullptr, ""},
        {[](Sound& s) { s.modifyFatigue([](auto& f) { f.stressLifeMaterials.clear(); }); }, nullptr, ""},
        {[](Sound& s) { s.modify<DPoolVXMcas>(s.analysis, [](auto& a) { a.outputControlKey = 0; }); },
         nullptr, ""},
        {[](Sound& s) { s.modify<DPoolProp>(s.property, [](auto& p) { p.materialKeys.push_back(77); }); },
         "property \"plate\"", "material key 77, which does not exist"},
        {[](Sound& s) { s.database.Pool<DPoolVXOctr>()->TR_Del(s.control); }, "analysis \"Static\"",
         "output control key"},
        {[](Sound& s) {
             s.modify<DPoolMset>(s.set, [](auto& m) {
                 m.nodeNumbers.insert(m.nodeNumbers.end(), {900, 901});
             });
         },
         "mesh set \"all\"", "names node 900 and 1 more, which the mesh"},
        {[](Sound& s) { s.modify<DPoolMset>(s.set, [](auto& m) { m.elementNumbers = {9999}; }); },
         "mesh set \"all\"", "names element 9999, which the mesh"},
        {[](Sound& s) {
             s.modify<DPoolMset>(s.set, [](auto& m) { m.nodeNumbers.push_back(m.nodeNumbers[0]); });
         },
         "mesh set \"all\"", "node numbers do not ascend"},
        {[](Sound& s) { s.modify<DPoolMatl>(s.material, [](auto& m) { m.density = nan; }); },
         "(material) \"steel\"", "\"density\""},
        {[](Sound& s) { s.modify<DPoolSNFun>(s.curve, [](auto& c) { c.points[1][1] = nan; }); },
         "(sn_curve) \"curve\"", "\"points\""},
        {[](Sound& s) { s.modifyFatigue([](auto& f) { f.stressLifeMaterials[0].yieldStrength = 1 / 0.0; }); },
         "(fatigue) \"Service\"", "\"stress_life\""},
        {[](Sound& s) { s.modify<DPoolSNFun>(s.curve, [](auto& c) { c.points[1][0] = 1e3; }); },
         "S-N curve \"curve\"", "point 2 breaks the order of its cycles"},
        {[](Sound& s) { s.modify<DPoolSNFun>(s.curve, [](auto& c) { c.points[0][1] = 0; }); },
         "S-N curve \"curve\"", "point 1 is not positive"},
        {[](Sound& s) { s.modify<DPoolSNFun>(s.curve, [](auto& c) { c.points.resize(1); }); },
         "fatigue definition \"Service\"", "fewer than two points"},
        {[](Sound& s) { s.modify<DPoolFLFun>(s.function, [](auto& f) { f.points[1][0] = -1; }); },
         "load function \"swing\"", "point 2 breaks the order of its times"},
        {[](Sound& s) { s.database.Pool<DPoolMatl>()->TR_Del(s.material); }, "fatigue definition \"Service\"",
         "material key"},
        {[](Sound& s) { s.database.Pool<DPoolSNFun>()->TR_Del(s.curve); }, "fatigue definition \"Service\"",
         "S-N curve key"},
        {[](Sound& s) { s.database.Pool<DPoolFLFun>()->TR_Del(s.function); },
         "fatigue definition \"Service\"", "load function key"},
        {[](Sound& s) { s.database.Pool<DPoolVXMcas>()->TR_Del(s.analysis); },
         "fatigue definition \"Service\"", "analysis key"},
        {[](Sound& s) { s.database.Pool<DPoolVXMcas>()->TR_Del(s.result); }, "fatigue definition \"Service\"",
         "result analysis key"},
        {[](Sound& s) { s.modifyFatigue([](auto& f) { f.resultAnalysisKey = f.analysisKey; }); },
         "fatigue definition \"Service\"", "whose results a run would replace"},
        {[](Sound& s) { s.database.Pool<DPoolFatg>()->TR_Add(s.definition()); },
         "fatigue definition \"Service\"", "shares its result analysis"},
        {[](Sound& s) { s.modifyFatigue([](auto& f) { f.fatigueType = 5; }); },
         "fatigue definition \"Service\"", "type 5 is unknown"},
        {[](Sound& s) { s.modifyFatigue([](auto& f) { f.loadCycleCount = 0; }); },
         "fatigue definition \"Service\"", "load cycles is below 1"},
        {[](Sound& s) {
             s.modifyFatigue([](auto& f) { f.stressLifeMaterials.push_back(f.stressLifeMaterials.front()); });
         },
         "fatigue definition \"Service\"", "twice"},
    };
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        SCOPED_TRACE("row " + std::to_string(i) + ": " + rows[i].problem);
        Sound sound;
        change(sound.database, [&] { rows[i].damage(sound); });
        const Findings found = checkRecords(sound.database);
        const auto matches = [&](const Finding& finding) {
            return finding.item.find(rows[i].item) != std::string::npos &&
                   finding.problem.find(rows[i].problem) != std::string::npos && !finding.remedy.empty();
        };
        if (rows[i].item)
            EXPECT_TRUE(std::ranges::any_of(found, matches))
                << (found.empty() ? "nothing" : found[0].item + ": " + found[0].problem);
        else
            EXPECT_TRUE(found.empty()) << found[0].item << ": " << found[0].problem;
    }
}

} // namespace

} // namespace workbench
