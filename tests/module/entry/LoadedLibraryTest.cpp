#include "tests/module/entry/LoadedLibrary.h"

#include "framework/windows/dialogs/DialogTemplate.h"
#include "module/resources/Templates.h"

#include <gtest/gtest.h>

// The templates that the library has registered lie in its memory, and stay known.
TEST(LoadedLibrary, StaysInTheProcessOnceInitialized) {
    EXPECT_FALSE(loadedlibrary::isLoaded());
    ASSERT_TRUE(loadedlibrary::loadInitializeUnload());
    EXPECT_TRUE(loadedlibrary::isLoaded());
    const auto own = moduleTemplates();
    const framework::DialogTemplate* registered = framework::findTemplate(own.front().id);
    ASSERT_TRUE(registered);
    EXPECT_NE(registered, &own.front());
    EXPECT_STREQ(registered->title, own.front().title);
    framework::removeTemplates({registered, own.size()}); // those of this program are for the other tests
}
