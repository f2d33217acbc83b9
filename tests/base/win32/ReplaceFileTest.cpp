#include "base/ReplaceFile.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

TEST(ReplaceFile, ALinkStaysALink) {
    GTEST_SKIP() << "links need a privilege here";
}

TEST(ReplaceFile, LeftoversOfEndedProgramsGoAndThoseOfLivingOnesStay) {
    const TemporaryFolder folder;
    const ReplacedFile living(folder / "a.wkm");
    const fs::path left = folder / "댐.wkm.vexa-part-77-1"; // nobody holds it, as if its program were killed
    writeBytes(left, "left");
    writeBytes(folder / "b.part-77", "somebody else's");
    EXPECT_TRUE(isAbandoned(left));
    EXPECT_FALSE(isAbandoned(living.temporaryPath()));
    { const ReplacedFile next(folder / "b"); }
    EXPECT_FALSE(fs::exists(left));
    EXPECT_TRUE(fs::exists(living.temporaryPath()));
    EXPECT_TRUE(fs::exists(folder / "b.part-77"));
    EXPECT_FALSE(removeAbandoned(living.temporaryPath()));
}

} // namespace
