#include "tests/workbench/document/DocumentTesting.h"

namespace workbench {

namespace {

/// What a database should hold, kept by the simplest means.
struct Expected {
    std::map<ItrKey, std::wstring> materials;
    std::map<ItrKey, std::vector<std::int32_t>> sets;
    std::int32_t firstNodeNumber = 0; ///< tells one mesh from another; 0 without mesh
    std::size_t nodeCount = 0;
    std::string length = "mm";
    std::vector<std::string> files;
    bool operator==(const Expected&) const = default;
};

Expected stateOf(ModelDatabase& d) {
    Expected state;
    for (const ItrKey key : d.Pool<DPoolMatl>()->GetKeyList())
        state.materials[key] = d.Pool<DPoolMatl>()->GetAtNU(key).name;
    for (const ItrKey key : d.Pool<DPoolMset>()->GetKeyList())
        state.sets[key] = d.Pool<DPoolMset>()->GetAtNU(key).elementNumbers;
    state.nodeCount = d.mesh().nodeCount();
    if (state.nodeCount > 0) {
        const auto* nodes = d.Pool<DPoolNode>();
        state.firstNodeNumber = nodes->GetAtNU(nodes->GetKeyList().front()).number;
    }
    state.length = d.units().length;
    for (const auto& file : d.resultFiles())
        state.files.push_back(file.path);
    return state;
}

class RandomSession {
  public:
    explicit RandomSession(std::uint64_t seed)
        : random_(seed) {
        change(*database_, [&] { analysis_ = took(database_->Pool<DPoolVXMcas>()->TR_Add({})); });
        database_->ClearUndo();
    }

    void step() {
        switch (random_.below(10)) {
        case 0:
            undo();
            break;
        case 1:
            reload();
            break;
        default:
            transaction();
        }
        ASSERT_EQ(stateOf(*database_), expected_);
    }

  private:
    ItrKey took(ItrKey key) {
        EXPECT_GT(key, lastKey_) << "a key was given out twice";
        lastKey_ = key;
        return key;
    }

    template <class M>
    ItrKey anyKeyOf(const M& items) {
        if (items.empty()) return 0;
        return std::next(items.begin(), static_cast<std::ptrdiff_t>(random_.below(items.size())))->first;
    }

    void transaction() {
        const Expected before = expected_;
        ASSERT_TRUE(database_->beginTransaction(L"t"));
        const auto count = 1 + random_.below(6);
        for (std::uint64_t i = 0; i < count; ++i)
            operation();
        ASSERT_EQ(stateOf(*database_), expected_);
        if (random_.below(3) == 0) {
            database_->rollbackTransaction();
            expected_ = before;
        } else {
            ASSERT_TRUE(database_->commitTransaction());
            if (touched_) undone_.push_back(before);
        }
        touched_ = false;
    }

    void operation() {
        auto* materials = database_->Pool<DPoolMatl>();
        auto* sets = database_->Pool<DPoolMset>();
        const std::wstring name = std::to_wstring(random_.below(1000));
        const auto number = static_cast<std::int32_t>(1 + random_.below(1000));
        const ItrKey material = anyKeyOf(expected_.materials);
        const ItrKey set = anyKeyOf(expected_.sets);
        bool done = true;
        switch (random_.below(8)) {
        case 0:
            expected_.materials[took(materials->TR_Add({0, 0, name, 0, 0, 0}))] = name;
            break;
        case 1:
            expected_.sets[took(sets->TR_Add({0, name, {number, 5}, {}}))] = {number, 5};
            break;
        case 2:
            if ((done = materials->TR_Modify({material, 0, name, 0, 0, 0}) != 0))
                expected_.materials[material] = name;
            EXPECT_EQ(done, material != 0);
            break;
        case 3:
            EXPECT_EQ(done = materials->TR_Del(material) != 0, expected_.materials.erase(material) != 0);
            break;
        case 4:
            EXPECT_EQ(done = sets->TR_Del(set) != 0, expected_.sets.erase(set) != 0);
            break;
        case 5:
            ASSERT_TRUE(
                bool(database_->setMesh(hexRow(static_cast<std::uint32_t>(1 + number % 5), 0, number))));
            took(database_->mesh().nodeKeys.front());
            took(database_->mesh().elementKeys.back());
            expected_.firstNodeNumber = number;
            expected_.nodeCount = static_cast<std::size_t>(1 + number % 5) * 4 + 4;
            break;
        case 6:
            ASSERT_TRUE(database_->setUnits({"N", std::to_string(number)}));
            expected_.length = std::to_string(number);
            break;
        default: {
            const bool replace = number % 3 == 0;
            const ItrKey key = took(database_->addResultFile(analysis_, std::to_string(number), 3, replace));
            lastKey_ = key + 3;
            if (replace) expected_.files.clear();
            expected_.files.push_back(std::to_string(number));
        }
        }
        touched_ = touched_ || done;
    }

    void undo() {
        ASSERT_EQ(database_->undo() != 0, !undone_.empty());
        if (undone_.empty()) return;
        expected_ = undone_.back();
        undone_.pop_back();
    }

    void reload() {
        auto saved = saveDocument(*database_, folder_ / "random.wkm");
        ASSERT_TRUE(bool(saved)) << saved.error().message;
        EXPECT_FALSE(database_->isModified());
        if (random_.below(2) == 0) return; // goes on, with its undo
        auto opened = openDocument(folder_ / "random.wkm");
        ASSERT_TRUE(bool(opened)) << opened.error().message;
        ASSERT_EQ(difference(*database_, **opened), "");
        database_ = std::move(*opened);
        undone_.clear();
    }

    Generator random_;
    TemporaryFolder folder_;
    std::unique_ptr<ModelDatabase> database_ = std::make_unique<ModelDatabase>();
    Expected expected_;
    std::vector<Expected> undone_;
    ItrKey analysis_ = 0;
    ItrKey lastKey_ = 0;
    bool touched_ = false;
};

TEST(Transaction, RandomSessionsHoldWhatASimpleModelHolds) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSession session(seed);
        for (int i = 0; i < 60 && !testing::Test::HasFailure(); ++i)
            session.step();
    }
}

TEST(Transaction, ModifiedFollowsChanges) {
    ModelDatabase d;
    EXPECT_FALSE(d.isModified());
    d.beginTransaction(L"t");
    d.Pool<DPoolMatl>()->TR_Add({});
    EXPECT_TRUE(d.isModified());
    d.rollbackTransaction();
    EXPECT_FALSE(d.isModified());
    change(d, [&] { d.setUnits({"kN", "m"}); });
    EXPECT_TRUE(d.isModified());
    std::wstring title;
    EXPECT_TRUE(d.undo(&title));
    EXPECT_EQ(title, L"change");
    EXPECT_TRUE(d.isModified());
}

} // namespace

} // namespace workbench
