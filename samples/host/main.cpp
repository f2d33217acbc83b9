// What a host does with VEXA_gps: it loads the library, registers itself, and opens dialogs by name.
#include "InMemory.h"
#include "Library.h"
#include "framework/windows/WinThread.h"
#include "framework/windows/desktop/ScriptedDesk.h"
#include "framework/windows/desktop/UserActions.h"

#include <cstdint>
#include <stdexcept>

using DialogEntry = std::int64_t(CQMDocBase* document, const wchar_t* dialogClass, void* p1, void* p2);

// The static operations of IVEXAGpsDialog under the names that the compilers of both systems give them.
constexpr char kDoModal[] = "_ZN14IVEXAGpsDialog7DoModalEP10CQMDocBasePKwPvS4_";
constexpr char kDoModeless[] = "_ZN14IVEXAGpsDialog10DoModelessEP10CQMDocBasePKwPvS4_";

int main(int argc, char** argv) try {
    if (argc != 2) throw std::runtime_error("usage: sample_host LIBRARY    (VEXA_gps.so or VEXA_gps.dll)");
    const Library module(argv[1]);
    const auto doModal = module.function<DialogEntry>(kDoModal);
    const auto doModeless = module.function<DialogEntry>(kDoModeless);

    SmallHost host;
    CWinThread thread;
    CWnd mainWindow;
    mainWindow.CreateEx(0, nullptr, L"Sample host", WS_OVERLAPPED | WS_VISIBLE, {0, 0, 1280, 800}, nullptr,
                        0);
    thread.m_pMainWnd = &mainWindow;
    SmallDocument document(L"sample.wkm");
    document.view().Create(nullptr, L"", WS_VISIBLE, {0, 60, 1280, 800}, &mainWindow, 0);

    module.function<void()>("Init_VEXA_gpsdll")();

    // Without a screen the user is a script. It meets the modal dialog in its own loop, and closes it.
    framework::scriptedDesk().addStep([] {
        std::wcout << L"modal:    " << framework::windowText(GetActiveWindow()) << L'\n';
        framework::user::close(GetActiveWindow());
    });
    const std::int64_t answer = doModal(&document, L"CVEXAGpsResultCombinationDlg", nullptr, nullptr);
    std::wcout << L"answer:   " << answer << L'\n';

    doModeless(&document, L"CVEXAGpsDynamicResultsGraphDlg", nullptr, nullptr);
    std::wcout << L"modeless: " << framework::windowText(GetActiveWindow()) << L'\n';
    ::DestroyWindow(GetActiveWindow());
    return 0;
} catch (const std::exception& failure) {
    std::cerr << "error: " << failure.what() << '\n';
    return 1;
}
