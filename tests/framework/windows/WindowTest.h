#pragma once

#include "framework/windows/ErrorOutput.h"
#include "framework/windows/Keyboard.h"
#include "framework/windows/WindowState.h"
#include "framework/windows/controls/Button.h"
#include "framework/windows/controls/ComboBox.h"
#include "framework/windows/controls/Edit.h"
#include "framework/windows/controls/ListBox.h"
#include "framework/windows/controls/ListCtrl.h"
#include "framework/windows/controls/SpinButtonCtrl.h"
#include "framework/windows/controls/TabCtrl.h"
#include "framework/windows/desktop/ScriptedDesk.h"
#include "framework/windows/desktop/UserActions.h"
#include "tests/framework/windows/TestTemplates.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// The templates of the tests, an empty desk, and causes that nobody handled in `errors`; no window is left
/// behind.
class WindowTest : public testing::Test {
  protected:
    WindowTest() {
        framework::addTemplates(testDialogTemplates());
        framework::scriptedDesk().clear();
        framework::setErrorOutput([this](const std::wstring& text) { errors.push_back(text); });
    }
    ~WindowTest() override {
        framework::setErrorOutput({});
        EXPECT_TRUE(framework::topLevelWindows().empty());
    }
    static std::string joined(const std::vector<std::string>& words) {
        std::string line;
        for (const auto& word : words)
            line += (line.empty() ? "" : " ") + word;
        return line;
    }

    std::vector<std::wstring> errors;
};
