#include "framework/containers/ArgumentException.h"
#include "tests/workbench/document/DocumentTesting.h"
#include "workbench/document/ModelState.h"

#include <functional>
#include <limits>

namespace workbench {

namespace {

TEST(RecordPool, ChangesOnlyInsideATransaction) {
    ModelDatabase d;
    auto* pool = d.Pool<DPoolMatl>();
    EXPECT_EQ(pool->TR_Add({}), 0u);
    EXPECT_FALSE(d.setUnits({"N", "m"}));
    EXPECT_FALSE(bool(d.setMesh({})));
    EXPECT_FALSE(d.commitTransaction());
    EXPECT_FALSE(d.undo());
    ItrKey key = 0;
    change(d, [&] { key = pool->TR_Add({77, 1, L"steel", 1, 2, 3}); });
    EXPECT_NE(key, 77u);
    EXPECT_EQ(pool->GetAtNU(key).key, key);
    EXPECT_EQ(pool->TR_Modify(pool->GetAtNU(key)), 0);
    EXPECT_EQ(pool->TR_Del(key), 0);
    ASSERT_TRUE(d.beginTransaction(L"one"));
    EXPECT_FALSE(d.beginTransaction(L"two"));
    EXPECT_FALSE(d.undo());
    EXPECT_EQ(pool->TR_Modify({key + 1, 1, L"", 0, 0, 0}), 0);
    EXPECT_EQ(pool->TR_Del(key + 1), 0);
    d.rollbackTransaction();
    EXPECT_FALSE(d.inTransaction());
}

TEST(RecordPool, UnknownKeysThrowOrLeaveTheRecordAlone) {
    auto d = oddDocument();
    tagTMatl material{0, 5, L"kept", 1, 2, 3};
    for (const ItrKey key : {ItrKey{0}, ItrKey{1} << 31, std::numeric_limits<ItrKey>::max()}) {
        EXPECT_THROW(d->Pool<DPoolMatl>()->GetAtNU(key), CInvalidArgException);
        EXPECT_THROW(d->Pool<DPoolNode>()->GetAtNU(key), CInvalidArgException);
        EXPECT_THROW(d->Pool<DPoolElem>()->GetAtNU(key), CInvalidArgException);
        EXPECT_EQ(d->Pool<DPoolMatl>()->Get(key, material), 0);
        EXPECT_TRUE(d->Pool<DPoolProp>()->GetMatlItr(key).empty());
    }
    EXPECT_EQ(material.name, L"kept");
    EXPECT_EQ(d->GetDataPool(static_cast<PoolId>(12345)), nullptr);
}

TEST(ModelDatabase, AnswersEachPoolUnderItsNumber) {
    ModelDatabase d;
    for (const int id : {3,    4,    5,    6,    7,    8,    9,    44,   1010, 1013, 1014, 1020,
                         1021, 1022, 1030, 1031, 1032, 1033, 1040, 1041, 1042, 1050, 1051, 1052}) {
        const auto* pool = d.GetDataPool(static_cast<PoolId>(id));
        ASSERT_NE(pool, nullptr) << id;
        EXPECT_EQ(static_cast<int>(pool->Id()), id);
    }
}

TEST(ModelDatabase, KeysEndBelowTwoToThe31) {
    ModelDatabase d;
    d.state().keys.resume((ItrKey{1} << 31) - 3);
    change(d, [&] {
        const ItrKey analysis = d.Pool<DPoolVXMcas>()->TR_Add({});
        EXPECT_EQ(d.addResultFile(analysis, "a", 2, false), 0u);
        EXPECT_FALSE(bool(d.setMesh(hexRow(1))));
        EXPECT_EQ(d.Pool<DPoolMatl>()->TR_Add({}), (ItrKey{1} << 31) - 2);
        EXPECT_EQ(d.Pool<DPoolMatl>()->TR_Add({}), (ItrKey{1} << 31) - 1);
        EXPECT_EQ(d.Pool<DPoolMatl>()->TR_Add({}), 0u);
    });
    EXPECT_EQ(d.Pool<DPoolMatl>()->GetCount(), 2u);
}

TEST(ModelDatabase, KeepsWhatIsInUse) {
    ModelDatabase d;
    change(d, [&] {
        const ItrKey part = d.Pool<DPoolProp>()->TR_Add({});
        const ItrKey analysis = d.Pool<DPoolVXMcas>()->TR_Add({});
        ASSERT_TRUE(bool(d.setMesh(hexRow(1, static_cast<std::uint32_t>(part)))));
        const ItrKey first = d.addResultFile(analysis, "a", 1, false);
        const ItrKey second = d.addResultFile(analysis, "b", 1, true);
        EXPECT_EQ(d.resultFiles().size(), 1u);
        EXPECT_EQ(d.removeResultFile(first), 0);
        EXPECT_EQ(d.Pool<DPoolProp>()->TR_Del(part), 0);
        EXPECT_EQ(d.Pool<DPoolVXMcas>()->TR_Del(analysis), 0);
        EXPECT_EQ(d.addResultFile(part, "no analysis", 1, false), 0u);
        EXPECT_EQ(d.removeResultFile(second), 1);
        ASSERT_TRUE(bool(d.setMesh({})));
        EXPECT_EQ(d.Pool<DPoolProp>()->TR_Del(part), 1);
        EXPECT_EQ(d.Pool<DPoolVXMcas>()->TR_Del(analysis), 1);
    });
}

TEST(ModelDatabase, ForgetsAllButTheLastHundredSteps) {
    ModelDatabase d;
    for (int i = 0; i < 150; ++i)
        change(d, [&] { d.Pool<DPoolMatl>()->TR_Add({}); });
    change(d, [] {}); // nothing changed: no step
    int undone = 0;
    while (d.undo())
        ++undone;
    EXPECT_EQ(undone, 100);
    EXPECT_EQ(d.Pool<DPoolMatl>()->GetCount(), 50u);
    change(d, [&] { d.Pool<DPoolMatl>()->TR_Add({}); });
    d.ClearUndo();
    EXPECT_FALSE(d.undo());
}

TEST(MeshPools, ComposeNodesAndElements) {
    ModelDatabase d;
    ItrKey part = 0;
    change(d, [&] {
        part = d.Pool<DPoolProp>()->TR_Add({});
        MeshData mesh = hexRow(3, static_cast<std::uint32_t>(part), 10);
        mesh.elementPropertyKeys[1] = 0;
        ASSERT_TRUE(bool(d.setMesh(std::move(mesh))));
    });
    const auto* nodes = d.Pool<DPoolNode>();
    const auto* elements = d.Pool<DPoolElem>();
    ASSERT_EQ(nodes->GetCount(), 16u);
    ASSERT_EQ(elements->GetCount(), 3u);
    const auto keys = nodes->GetKeyList();
    const tagTNode& first = nodes->GetAtNU(keys[0]);
    const tagTNode& last = nodes->GetAtNU(keys[15]);
    EXPECT_EQ(first.number, 10);
    EXPECT_EQ(last.number, 25);
    EXPECT_EQ(last.indexWord & kNodeIndexMask, 15u);
    EXPECT_EQ(last.position, d.mesh().nodePositions[15]);
    const tagTElem& element = elements->GetAtNU(elements->GetKeyList()[2]);
    EXPECT_EQ(element.propertyKey, part);
    EXPECT_TRUE(std::ranges::equal(element.nodes, d.mesh().nodesOf(2)));
    EXPECT_EQ(elements->GetItrSetByItrPropSet({999, part}),
              (std::vector<ItrKey>{elements->GetKeyList()[0], elements->GetKeyList()[2]}));
    EXPECT_EQ(elements->GetItrSetByItrPropSet({0}), std::vector<ItrKey>{elements->GetKeyList()[1]});
    EXPECT_TRUE(elements->GetItrSetByItrPropSet({}).empty());
    ASSERT_TRUE(d.undo());
    EXPECT_THROW(nodes->GetAtNU(keys[0]), CInvalidArgException);
}

struct MeshFault {
    const char* name;
    std::function<void(MeshData&)> spoil;
    const char* message;
};

TEST(SetMesh, RefusesWhatDoesNotHoldTogether) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    const MeshFault faults[] = {
        {"node number twice", [](auto& m) { m.nodeNumbers[4] = m.nodeNumbers[3]; },
         "node number 13 follows 13"},
        {"node number zero", [](auto& m) { m.nodeNumbers[0] = 0; }, "node number 0 follows 0"},
        {"element numbers descend", [](auto& m) { m.elementNumbers[1] = 3; }, "element number 3 follows 10"},
        {"positions missing", [](auto& m) { m.nodePositions.pop_back(); },
         "12 node numbers but 11 positions"},
        {"types missing", [](auto& m) { m.elementTypes.pop_back(); }, "1 types"},
        {"offsets missing", [](auto& m) { m.elementNodeOffsets.clear(); }, "offsets"},
        {"offsets too short", [](auto& m) { m.elementNodes.push_back(0); }, "offsets"},
        {"offsets descend", [](auto& m) { m.elementNodeOffsets[1] = 4000000000u; }, "element 10 of type 11"},
        {"node index too large", [](auto& m) { m.elementNodes[9] = 12; },
         "element 11 refers to node index 12"},
        {"unknown type", [](auto& m) { m.elementTypes[1] = 99; }, "element 11 has the unknown type 99"},
        {"type with other nodes", [](auto& m) { m.elementTypes[0] = 8; },
         "element 10 of type 8 does not have its 4"},
        {"unknown property", [](auto& m) { m.elementPropertyKeys[1] = 77; },
         "element 11 refers to property key 77"},
        {"not a number", [](auto& m) { m.nodePositions[2][1] = kNan; }, "node 12 has a coordinate"},
        {"infinite", [](auto& m) { m.nodePositions[2][2] = -HUGE_VAL; }, "node 12 has a coordinate"},
    };
    for (const MeshFault& fault : faults) {
        SCOPED_TRACE(fault.name);
        ModelDatabase d;
        d.beginTransaction(L"mesh");
        MeshData mesh = hexRow(2, 0, 10);
        fault.spoil(mesh);
        const auto done = d.setMesh(std::move(mesh));
        ASSERT_FALSE(bool(done));
        EXPECT_NE(done.error().message.find(fault.message), std::string::npos) << done.error().message;
        EXPECT_EQ(d.mesh().nodeCount(), 0u);
    }
}

struct PlanarRow {
    const char* name;
    ElementType type;
    std::vector<std::array<double, 3>> corners;
    std::array<std::array<double, 3>, 3> axes; ///< zero x: degenerate
};

TEST(LocalAxes, FollowTheFirstEdge) {
    const double h = std::sqrt(0.5);
    const PlanarRow rows[] = {
        {"unit square",
         ElementType::Quad4,
         {{0, 0, 0}, {2, 0, 0}, {2, 3, 0}, {0, 3, 0}},
         {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}},
        {"turned by one corner",
         ElementType::Quad4,
         {{2, 0, 0}, {2, 3, 0}, {0, 3, 0}, {0, 0, 0}},
         {{{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}}},
        {"in the yz plane",
         ElementType::Tri3,
         {{5, 0, 0}, {5, 1, 0}, {5, 0, 1}},
         {{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}}},
        {"slanted",
         ElementType::Tri3,
         {{0, 0, 0}, {1, 0, 1}, {0, 1, 0}},
         {{{h, 0, h}, {0, 1, 0}, {-h, 0, h}}}},
        {"warped: the edge is projected",
         ElementType::Quad4,
         {{0, 0, 1}, {1, 0, -1}, {1, 1, 1}, {0, 1, -1}},
         {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}},
        {"huge",
         ElementType::Tri3,
         {{0, 0, 0}, {1e300, 0, 0}, {0, 1e300, 0}},
         {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}},
        {"tiny",
         ElementType::Tri3,
         {{0, 0, 0}, {1e-300, 0, 0}, {0, 1e-300, 0}},
         {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}},
        {"midside nodes do not count",
         ElementType::Tri6,
         {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {9, 9, 9}, {8, 8, 8}, {7, 7, 7}},
         {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}},
        {"all in a line", ElementType::Tri3, {{0, 0, 0}, {1, 1, 1}, {2, 2, 2}}, {}},
        {"a point", ElementType::Quad4, {{1, 1, 1}, {1, 1, 1}, {1, 1, 1}, {1, 1, 1}}, {}},
        {"no first edge", ElementType::Quad4, {{0, 0, 0}, {0, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {}},
        {"a solid", ElementType::Tet4, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}, {}},
    };
    for (const PlanarRow& row : rows) {
        SCOPED_TRACE(row.name);
        ModelDatabase d;
        MeshData mesh;
        for (const auto& corner : row.corners) {
            mesh.nodePositions.push_back(corner);
            mesh.nodeNumbers.push_back(static_cast<std::int32_t>(mesh.nodePositions.size()));
            mesh.elementNodes.push_back(static_cast<std::uint32_t>(mesh.elementNodes.size()));
        }
        mesh.elementNumbers = {1};
        mesh.elementTypes = {static_cast<std::uint8_t>(row.type)};
        mesh.elementPropertyKeys = {0};
        mesh.elementNodeOffsets.push_back(static_cast<std::uint32_t>(mesh.elementNodes.size()));
        change(d, [&] { ASSERT_TRUE(bool(d.setMesh(std::move(mesh)))); });
        const auto* pool = d.Pool<DPoolElem>();
        double axes[3][3] = {{7, 7, 7}, {7, 7, 7}, {7, 7, 7}};
        const bool planar = row.axes[2] != std::array<double, 3>{};
        ASSERT_EQ(pool->Calc2DElemLocalVector(pool->GetAtNU(pool->GetKeyList()[0]), axes) != 0, planar);
        for (std::size_t i = 0; i < 9; ++i)
            EXPECT_NEAR(axes[i / 3][i % 3], planar ? row.axes[i / 3][i % 3] : 7, 1e-12) << i;
    }
}

} // namespace

} // namespace workbench
