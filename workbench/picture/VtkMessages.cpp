#include "workbench/picture/VtkMessages.h"

namespace workbench {

class VtkMessages::Window : public vtkOutputWindow {
  public:
    static Window* New() {
        auto* window = new Window;
        window->InitializeObjectBase();
        return window;
    }

    void DisplayText(const char*) override {}
    void DisplayWarningText(const char*) override {}
    void DisplayGenericWarningText(const char*) override {}
    void DisplayDebugText(const char*) override {}
    void DisplayErrorText(const char* text) override {
        if (error_.empty() && text) error_ = text;
    }

    std::string error_;
};

VtkMessages::VtkMessages()
    : window_(vtkSmartPointer<Window>::New())
    , previous_(vtkOutputWindow::GetInstance()) {
    vtkOutputWindow::SetInstance(window_);
}

VtkMessages::~VtkMessages() {
    vtkOutputWindow::SetInstance(previous_);
}

const std::string& VtkMessages::error() const {
    return window_->error_;
}

} // namespace workbench
