#pragma once

#include <vtkRenderWindow.h>
#include <vtkSmartPointer.h>

#include <string>

namespace workbench {

/// An offscreen VTK window on an X display of its own connection.
class SceneWindow {
  public:
    SceneWindow(const std::string& display, int width, int height);
    ~SceneWindow();
    SceneWindow(const SceneWindow&) = delete;
    SceneWindow& operator=(const SceneWindow&) = delete;

    /// False when the display does not answer; then nothing else may be called.
    bool isOpen() const { return connection_ != nullptr; }

    /// Opens the OpenGL context. VTK ends the process where it cannot.
    bool supportsDrawing();

    void render();

    vtkRenderWindow& window() { return *window_; }

  private:
    void* connection_ = nullptr;
    vtkSmartPointer<vtkRenderWindow> window_;
};

} // namespace workbench
