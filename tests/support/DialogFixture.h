#pragma once

#include "framework/windows/WindowState.h"
#include "framework/windows/desktop/ScriptedDesk.h"
#include "framework/windows/dialogs/DialogTemplate.h"
#include "tests/support/MemoryHost.h"
#include "workbench/session/WindowFrame.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

/// A host, a document with a view, and the frame that its dialogs open in. Nothing may be left behind: no
/// window and no cause that nobody handled.
class DialogFixture : public testing::Test {
  protected:
    DialogFixture() {
        framework::scriptedDesk().clear();
        frame.emplace(L"main", CRect(100, 50, 900, 650), CRect(300, 110, 900, 640));
        frame->showView(view);
        document.path = L"/models/dam.wkm";
        document.activeView = &view;
    }
    ~DialogFixture() override {
        if (view.m_hWnd) view.DestroyWindow();
        frame.reset();
        EXPECT_TRUE(framework::topLevelWindows().empty());
        EXPECT_EQ(liveWindows(), 0);
        EXPECT_EQ(framework::scriptedDesk().problems(), std::vector<std::wstring>());
    }
    static std::ptrdiff_t liveWindows() {
        const auto& slots = framework::windowState().slots;
        return std::count_if(slots.begin(), slots.end(),
                             [](const auto& slot) { return slot.record != nullptr; });
    }

    support::MemoryHost host;
    support::MemoryDocument document;
    support::MemoryView view{document};
    std::optional<workbench::WindowFrame> frame;
};
