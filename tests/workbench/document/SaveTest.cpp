#include "tests/workbench/document/DocumentTesting.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>
#include <thread>

namespace workbench {

namespace {

namespace fs = std::filesystem;

/// Version `n` of a document: whether a file holds one version whole can be told from its parts. Every third
/// version has another mesh.
void makeVersion(ModelDatabase& d, int n) {
    d.beginTransaction(L"version");
    d.setUnits({std::to_string(n), "mm"});
    for (const ItrKey key : d.Pool<DPoolMatl>()->GetKeyList())
        d.Pool<DPoolMatl>()->TR_Del(key);
    for (int i = 0; i < 20 + n % 30; ++i)
        d.Pool<DPoolMatl>()->TR_Add({0, n, std::wstring(300, L'm'), 1. * n, 0.3, 1});
    if (n % 3 == 0) {
        EXPECT_TRUE(bool(d.setMesh(hexRow(static_cast<std::uint32_t>(2000 + n)))));
    }
    d.commitTransaction();
    d.ClearUndo();
}

/// The version that stands in the file; -1, with a failure, when it is none or of several.
int versionIn(const fs::path& path) {
    const auto opened = openDocument(path);
    if (!opened) {
        ADD_FAILURE() << opened.error().message;
        return -1;
    }
    ModelDatabase& d = **opened;
    const int n = std::stoi(d.units().force);
    const auto keys = d.Pool<DPoolMatl>()->GetKeyList();
    EXPECT_EQ(keys.size(), static_cast<std::size_t>(20 + n % 30));
    for (const ItrKey key : keys)
        EXPECT_EQ(d.Pool<DPoolMatl>()->GetAtNU(key).number, n);
    EXPECT_EQ(d.mesh().elementCount(), static_cast<std::size_t>(2000 + n / 3 * 3));
    return n;
}

std::vector<std::string> namesIn(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

/// Runs `work` in a child process, which ends with its answer.
pid_t inChild(const std::function<int()>& work) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(work());
    return child;
}

int exitOf(pid_t child) {
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string failureOf(const Result<void>& saved) {
    return saved ? "" : saved.error().message;
}

TEST(Save, AKilledSaveLeavesTheOldOrTheNewDocument) {
    constexpr std::uint64_t kSeed = 7;
    Generator random(kSeed);
    TemporaryFolder folder;
    const fs::path path = folder / "a.wkm";
    ModelDatabase first;
    makeVersion(first, 0);
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(failureOf(saveDocument(first, path)), "");
    auto saveTime =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    int last = 0;
    for (int i = 0; i < 20 && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE("seed " + std::to_string(kSeed) + ", kill " + std::to_string(i));
        const pid_t child = inChild([&] {
            auto opened = openDocument(path);
            for (int n = last + 1; opened && n < last + 100000; ++n) {
                makeVersion(**opened, n);
                if (!saveDocument(**opened, path)) return 1;
            }
            return 2;
        });
        std::this_thread::sleep_for((1 + random.below(5000)) * saveTime / 1000);
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << "the child gave up with " << status;
        const int now = versionIn(path);
        EXPECT_GE(now, last);
        if (now == last) saveTime += saveTime / 2; // too early to be of interest
        last = now;
    }
    EXPECT_GT(last, 0) << "no child saved anything: the test proves nothing";
    auto opened = openDocument(path);
    ASSERT_TRUE(bool(opened));
    makeVersion(**opened, last + 1);
    ASSERT_EQ(failureOf(saveDocument(**opened, path)), "");
    EXPECT_FALSE(fs::exists(folder / "a.wkm-journal"));
}

TEST(Save, AFullDiskLeavesTheOldDocument) {
    struct Row {
        const char* name;
        int next;       ///< the version to save: 1 keeps the mesh of 0, 3 has another one
        bool elsewhere; ///< to a new file beside it
    };
    for (const Row& row :
         {Row{"records in place", 1, false}, Row{"whole", 3, false}, Row{"new file", 3, true}}) {
        SCOPED_TRACE(row.name);
        TemporaryFolder folder;
        ModelDatabase first;
        makeVersion(first, 0);
        ASSERT_EQ(failureOf(saveDocument(first, folder / "a.wkm")), "");
        const fs::path target = row.elsewhere ? folder / "b.wkm" : folder / "a.wkm";
        const int ended = exitOf(inChild([&] {
            auto opened = openDocument(folder / "a.wkm");
            if (!opened) return 1;
            makeVersion(**opened, row.next);
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{4096 * 3, 4096 * 3};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            const auto saved = saveDocument(**opened, target);
            if (saved) return 2;
            return saved.error().message.find(target.string()) == std::string::npos ||
                           !(*opened)->isModified()
                       ? 3
                       : 0;
        }));
        EXPECT_EQ(ended, 0);
        EXPECT_EQ(versionIn(folder / "a.wkm"), 0);
        EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{"a.wkm"});
    }
}

TEST(Save, SaysWhereItCannotWrite) {
    TemporaryFolder folder;
    fs::create_directory(folder / "folder");
    auto d = oddDocument();
    for (const fs::path& path : {folder / "missing" / "a.wkm", folder / "folder", fs::path("/proc/a.wkm")}) {
        const std::string failure = failureOf(saveDocument(*d, path));
        EXPECT_NE(failure.find(path.string()), std::string::npos) << failure;
    }
    EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{"folder"});
    d->beginTransaction(L"open");
    EXPECT_NE(failureOf(saveDocument(*d, folder / "a.wkm")).find("transaction"), std::string::npos);
}

TEST(Save, RecordsAreSavedInPlaceAndMeshesWhole) {
    TemporaryFolder folder;
    const fs::path path = folder / "a.wkm";
    ModelDatabase d;
    makeVersion(d, 0);
    ASSERT_EQ(failureOf(saveDocument(d, path)), "");
    fs::create_hard_link(path, folder / "link"); // follows changes in place only
    for (const int n : {1, 2}) {
        makeVersion(d, n);
        ASSERT_EQ(failureOf(saveDocument(d, path)), "");
        EXPECT_EQ(versionIn(folder / "link"), n);
    }
    makeVersion(d, 3);
    ASSERT_EQ(failureOf(saveDocument(d, path)), "");
    EXPECT_EQ(versionIn(path), 3);
    EXPECT_EQ(versionIn(folder / "link"), 2);
    ASSERT_TRUE(fs::remove(path));
    EXPECT_EQ(failureOf(saveDocument(d, path)), ""); // a document that went missing is written anew
    EXPECT_EQ(versionIn(path), 3);
}

TEST(Save, UndoneMeshCountsAsTheMeshThatWasSaved) {
    TemporaryFolder folder;
    ModelDatabase d;
    change(d, [&] { ASSERT_TRUE(bool(d.setMesh(hexRow(5)))); });
    ASSERT_EQ(failureOf(saveDocument(d, folder / "a.wkm")), "");
    change(d, [&] { ASSERT_TRUE(bool(d.setMesh(hexRow(7)))); });
    ASSERT_TRUE(d.undo());
    change(d, [&] { d.setUnits({"kN", "m"}); });
    ASSERT_EQ(failureOf(saveDocument(d, folder / "a.wkm")), "");
    auto opened = openDocument(folder / "a.wkm");
    ASSERT_TRUE(bool(opened)) << opened.error().message;
    EXPECT_EQ(difference(d, **opened), "");
}

TEST(Save, DoesNotOverwriteWhatAnotherProgramSaved) {
    for (const int next : {1, 3}) {
        TemporaryFolder folder;
        const fs::path path = folder / "a.wkm";
        ModelDatabase first;
        makeVersion(first, 0);
        ASSERT_EQ(failureOf(saveDocument(first, path)), "");
        auto second = openDocument(path);
        ASSERT_TRUE(bool(second));
        makeVersion(**second, 2);
        ASSERT_EQ(failureOf(saveDocument(**second, path)), "");
        makeVersion(first, next);
        for (const std::string& failure :
             {failureOf(checkSavable(first)), failureOf(saveDocument(first, path))})
            EXPECT_NE(failure.find("another program has changed it"), std::string::npos) << failure;
        EXPECT_EQ(versionIn(path), 2);
        EXPECT_EQ(failureOf(saveDocument(first, folder / "b.wkm")), "");
    }
}

TEST(Save, LeftoversOfAKilledProgramAreNotAppliedToTheNewFile) {
    for (const char* leftover : {"-journal", "-wal"}) {
        TemporaryFolder folder;
        const fs::path path = folder / "a.wkm";
        std::ofstream(path) << "some text that is no document";
        std::ofstream(path.string() + leftover) << std::string(5000, '\xD9');
        ModelDatabase d;
        makeVersion(d, 3);
        ASSERT_EQ(failureOf(saveDocument(d, path)), "");
        EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{"a.wkm"});
        EXPECT_EQ(versionIn(path), 3);
    }
}

TEST(Save, ALinkKeepsPointingAtTheDocument) {
    TemporaryFolder folder;
    fs::create_directory(folder / "real");
    ModelDatabase d;
    makeVersion(d, 0);
    ASSERT_EQ(failureOf(saveDocument(d, folder / "real" / "a.wkm")), "");
    fs::permissions(folder / "real" / "a.wkm", fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink(folder / "real" / "a.wkm", folder / "a.wkm");
    makeVersion(d, 3);
    ASSERT_EQ(failureOf(saveDocument(d, folder / "a.wkm")), "");
    EXPECT_TRUE(fs::is_symlink(folder / "a.wkm"));
    EXPECT_EQ(versionIn(folder / "real" / "a.wkm"), 3);
    EXPECT_EQ(fs::status(folder / "a.wkm").permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

} // namespace

} // namespace workbench
