#include "tests/module/entry/LoadedLibrary.h"

#include <gtest/gtest.h>

// The templates that the library has registered lie in its memory, and stay known.
TEST(LoadedLibrary, StaysInTheProcessOnceInitialized) {
    EXPECT_FALSE(loadedlibrary::isLoaded());
    ASSERT_TRUE(loadedlibrary::loadInitializeUnload());
    EXPECT_TRUE(loadedlibrary::isLoaded());
}
