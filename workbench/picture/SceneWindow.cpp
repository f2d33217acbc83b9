#include "workbench/picture/SceneWindow.h"

#include <X11/Xlib.h>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace workbench {
namespace {

/// The graphics driver is unloaded with memory of its own still allocated, some hundred bytes a process: the
/// leak check of a sanitizer build leaves out what is allocated while this lives.
class DriverAtWork {
  public:
#if defined(__SANITIZE_ADDRESS__)
    DriverAtWork() {
        __lsan_disable();
    }
    ~DriverAtWork() {
        __lsan_enable();
    }
#else
    DriverAtWork() {}
#endif
    DriverAtWork(const DriverAtWork&) = delete;
    DriverAtWork& operator=(const DriverAtWork&) = delete;
};

} // namespace

SceneWindow::SceneWindow(const std::string& display, int width, int height)
    : connection_(XOpenDisplay(display.c_str())) {
    if (!connection_) return;
    window_ = vtkSmartPointer<vtkRenderWindow>::New();
    window_->SetDisplayId(connection_);
    window_->SetOffScreenRendering(1);
    window_->SetMultiSamples(0);
    window_->SetSize(width, height);
}

SceneWindow::~SceneWindow() {
    const DriverAtWork driver;
    window_ = nullptr; // before the connection that it draws through
    if (connection_) XCloseDisplay(static_cast<Display*>(connection_));
}

bool SceneWindow::supportsDrawing() {
    const DriverAtWork driver;
    return window_->SupportsOpenGL() != 0;
}

void SceneWindow::render() {
    const DriverAtWork driver;
    window_->Render();
}

} // namespace workbench
