#include "tests/resultfile/Sample.h"
#include "tests/support/RandomIntegers.h"
#include "tests/support/TemporaryFolder.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

using namespace resultfile;

namespace {

std::size_t entries(const std::filesystem::path& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

/// A file and what it holds, to be damaged.
struct Original {
    TemporaryFolder folder;
    std::string bytes;
    std::uint64_t contents = 0;

    Original() {
        EXPECT_OK(Sample().writeTo(folder / "a.lmop"));
        bytes = bytesOf(folder / "a.lmop");
        const auto read = readEverything(folder / "a.lmop");
        EXPECT_OK(read);
        if (read) contents = *read;
    }

    /// Damaged bytes are an error sentence or do not matter.
    testing::AssertionResult check(const std::string& damaged, std::size_t* refused = nullptr) {
        writeBytes(folder / "b.lmop", damaged);
        const auto read = readEverything(folder / "b.lmop");
        if (refused) *refused += !read;
        if (read && *read != contents) return testing::AssertionFailure() << "other contents in silence";
        if (!read && read.error().message.find("b.lmop: ") == std::string::npos)
            return testing::AssertionFailure() << "poor message: " << read.error().message;
        return testing::AssertionSuccess();
    }
};

TEST(DamagedFile, CutShortIsAlwaysAnError) {
    Original original;
    const std::size_t files = entries("/proc/self/fd");
    for (std::size_t i = 0; i < 200; ++i) {
        const std::size_t length = i < 60 ? i : original.bytes.size() * i / 200;
        EXPECT_TRUE(original.check(original.bytes.substr(0, length))) << "cut to " << length;
        EXPECT_FALSE(Reader::open(original.folder / "b.lmop")) << "cut to " << length;
    }
    EXPECT_EQ(entries("/proc/self/fd"), files) << "files stay open";
}

TEST(DamagedFile, OneWrongByteIsNeverSilent) {
    Original original;
    RandomIntegers random;
    const std::size_t files = entries("/proc/self/fd");
    std::size_t refused = 0;
    for (int i = 0; i < 1000; ++i) {
        std::string damaged = original.bytes;
        const std::size_t position = random.below(damaged.size());
        damaged[position] = static_cast<char>(damaged[position] ^ static_cast<char>(1 + random.below(255)));
        EXPECT_TRUE(original.check(damaged, &refused)) << "at " << position << ", " << random.seedText();
    }
    EXPECT_GT(refused, 100u) << "most of the file is in use";
    EXPECT_EQ(entries("/proc/self/fd"), files) << "files stay open";
}

TEST(DamagedFile, WrongRunsOfBytesAreNeverSilent) {
    Original original;
    RandomIntegers random;
    for (int i = 0; i < 500; ++i) {
        std::string damaged = original.bytes;
        const std::size_t position = random.below(damaged.size());
        const std::size_t length = std::min(damaged.size() - position, 1 + random.below(600));
        // Not copies from elsewhere in the file: a structure that is whole with its checksum may stand
        // anywhere.
        const int kind = static_cast<int>(random.below(3));
        for (std::size_t at = position; at < position + length; ++at)
            damaged[at] = kind == 0 ? '\0' : kind == 1 ? '\xFF' : static_cast<char>(random.below(256));
        EXPECT_TRUE(original.check(damaged))
            << length << " bytes at " << position << ", " << random.seedText();
    }
}

TEST(DamagedFile, SentencesNameTheFault) {
    Original original;
    const struct {
        std::string bytes;
        const char* message;
    } rows[] = {{"", "it is empty"},
                {"CONTROL 1 2 3\n", "it is not an HDF5 file"},
                {original.bytes.substr(0, 30), "it is cut short"},
                {original.bytes.substr(0, 5000), "it is cut short: 5000 of "},
                {std::string(original.bytes).replace(8, 1, 1, '\0'), "not a result file"}};
    for (const auto& row : rows) {
        writeBytes(original.folder / "b.lmop", row.bytes);
        const auto reader = Reader::open(original.folder / "b.lmop");
        ASSERT_FALSE(reader);
        EXPECT_NE(reader.error().message.find(row.message), std::string::npos) << reader.error().message;
    }
    EXPECT_NE(Reader::open("/nowhere.lmop").error().message.find("No such file"), std::string::npos);
    EXPECT_NE(Reader::open("/dev/zero").error().message.find("not a regular file"), std::string::npos);
    EXPECT_NE(Reader::open("/").error().message.find("not a regular file"), std::string::npos);
}

/// Runs `act` in a child process, which ends with its exit status or by a signal; what it returns comes back.
template <class Act>
std::string inChild(Act act, int* status) {
    int ends[2];
    if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
    const pid_t child = ::fork();
    if (child == 0) {
        const std::string text = act();
        const bool sent = ::write(ends[1], text.data(), text.size()) == static_cast<ssize_t>(text.size());
        std::exit(sent ? 0 : 1); // with HDF5's own clearing up
    }
    ::close(ends[1]);
    std::string text;
    char buffer[512];
    for (ssize_t got; (got = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(got));
    ::close(ends[0]);
    ::waitpid(child, status, 0);
    return text;
}

TEST(ResultFile, FullDiskLeavesTheOldFile) {
    Original original;
    const auto target = original.folder / "a.lmop";
    Sample large;
    large.nodes.resize(200'000);
    std::iota(large.nodes.begin(), large.nodes.end(), 1);
    EXPECT_OK(large.writeTo(original.folder / "large.lmop"));
    const std::size_t size = std::filesystem::file_size(original.folder / "large.lmop");
    for (const std::size_t limit :
         {std::size_t{0}, std::size_t{100}, std::size_t{5000}, size / 2, size - 5000, size - 1}) {
        SCOPED_TRACE(limit);
        int status = 0;
        const std::string message = inChild(
            [&]() -> std::string {
                std::signal(SIGXFSZ, SIG_IGN);
                const rlimit restricted{limit, limit};
                if (::setrlimit(RLIMIT_FSIZE, &restricted) != 0) return "no limit";
                const auto written = large.writeTo(target);
                return written ? "written" : written.error().message;
            },
            &status);
        EXPECT_EQ(status, 0);
        EXPECT_NE(message.find(target.string() + ": "), std::string::npos) << message;
        EXPECT_NE(message.find("File too large"), std::string::npos) << message;
        EXPECT_EQ(bytesOf(target), original.bytes);
        EXPECT_EQ(entries(original.folder.path()), 2u) << "something is left behind";
    }
}

TEST(ResultFile, KilledWriterLeavesTheOldFile) {
    Original original;
    const auto target = original.folder / "a.lmop";
    int status = 0;
    inChild(
        [&]() -> std::string {
            auto writer = Writer::create(target, "A", "test");
            if (writer && Sample().write(*writer)) ::raise(SIGKILL);
            return "";
        },
        &status);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(bytesOf(target), original.bytes);
}

TEST(ResultFile, WithoutCommitNothingStays) {
    Original original;
    const auto target = original.folder / "a.lmop";
    {
        auto writer = Writer::create(target, "A", "test");
        ASSERT_OK(writer);
        Writer moved = std::move(*writer);
        EXPECT_OK(Sample().write(moved));
        EXPECT_FALSE(Writer::create(target, "A", "test")) << "two writers of one file";
        EXPECT_EQ(entries(original.folder.path()), 2u) << "the second writer took the first one's file";
    }
    EXPECT_EQ(bytesOf(target), original.bytes);
    EXPECT_EQ(entries(original.folder.path()), 1u);
}

TEST(ResultFile, FailedCommitLeavesNothing) {
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder / "a.lmop" / "inside");
    const auto written = Sample().writeTo(folder / "a.lmop");
    ASSERT_FALSE(written);
    EXPECT_NE(written.error().message.find("no ordinary file"), std::string::npos) << written.error().message;
    EXPECT_EQ(entries(folder.path()), 1u);
    const auto elsewhere = Sample().writeTo(folder / "missing" / "a.lmop");
    ASSERT_FALSE(elsewhere);
    EXPECT_NE(elsewhere.error().message.find("No such file"), std::string::npos) << elsewhere.error().message;
}

TEST(ResultFile, ReaderKeepsTheFileThatItOpened) {
    Original original;
    const auto path = original.folder / "a.lmop";
    const auto reader = Reader::open(path);
    ASSERT_OK(reader);
    const auto before = reader->values(0, 0, 9);
    Sample other;
    other.nodes.resize(3);
    other.lists[0].positions = {0};
    EXPECT_OK(other.writeTo(path));
    EXPECT_EQ(*reader->values(0, 0, 9), *before);
    EXPECT_EQ(*reader->nodeNumbers(), Sample().nodes);
    const auto replaced = Reader::open(path);
    ASSERT_OK(replaced);
    EXPECT_EQ(*replaced->nodeNumbers(), other.nodes);
}

} // namespace
