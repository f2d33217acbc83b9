#pragma once

#include <vtkOutputWindow.h>
#include <vtkSmartPointer.h>

#include <string>

namespace workbench {

/// While it lives, VTK's messages go here instead of the error output.
class VtkMessages {
  public:
    VtkMessages();
    ~VtkMessages();
    VtkMessages(const VtkMessages&) = delete;
    VtkMessages& operator=(const VtkMessages&) = delete;

    /// The first error; empty without one. Warnings are dropped.
    const std::string& error() const;

  private:
    class Window;
    vtkSmartPointer<Window> window_;
    vtkSmartPointer<vtkOutputWindow> previous_;
};

} // namespace workbench
