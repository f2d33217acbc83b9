#include "base/ReplaceFile.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

TEST(ReplaceFile, ALinkStaysALink) {
    const TemporaryFolder folder;
    writeBytes(folder / "real", "old");
    fs::create_symlink(folder / "real", folder / "link");
    ReplacedFile file(folder / "link");
    writeBytes(file.temporaryPath(), "new");
    ASSERT_TRUE(file.commit());
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(bytesOf(folder / "real"), "new");
}

TEST(ReplaceFile, LeftoversOfEndedProgramsGoAndThoseOfLivingOnesStay) {
    const TemporaryFolder folder;
    fs::path names[2];
    for (const bool killed : {true, false}) {
        int ready[2];
        ASSERT_EQ(::pipe(ready), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            const ReplacedFile file(folder / "a.wkm");
            const std::string name = file.temporaryPath().string();
            const bool told = ::write(ready[1], name.data(), name.size()) > 0;
            if (!killed) ::pause();
            ::_exit(told ? 0 : 1); // no destructor: as if it were killed
        }
        char name[4096];
        const auto length = ::read(ready[0], name, sizeof name);
        ASSERT_GT(length, 0);
        names[killed] = std::string(name, static_cast<std::size_t>(length));
        if (killed) ::waitpid(child, nullptr, 0);
        EXPECT_TRUE(fs::exists(names[killed]));
        EXPECT_EQ(isAbandoned(names[killed]), killed);
        if (killed) continue;
        writeBytes(folder / "b.part-77", "somebody else's");
        { const ReplacedFile next(folder / "b"); }
        EXPECT_FALSE(fs::exists(names[true]));
        EXPECT_TRUE(fs::exists(names[false]));
        EXPECT_TRUE(fs::exists(folder / "b.part-77"));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        { const ReplacedFile next(folder / "c"); }
        EXPECT_FALSE(fs::exists(names[false]));
        ::close(ready[0]);
        ::close(ready[1]);
    }
}

} // namespace
