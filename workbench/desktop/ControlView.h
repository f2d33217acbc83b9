#pragma once

#include "framework/windows/WindowRecord.h"
#include "workbench/desktop/QtWidgets.h"

namespace workbench::desktop {

/// Whoever keeps the widgets in step with the records.
class ViewKeeper {
  public:
    virtual ~ViewKeeper() = default;
    /// What the user did is through: the window's widget takes over what its record says now.
    virtual void refresh(HWND window) = 0;
};

/// The widget of one window. It shows the record when it is told to, and turns what its user does into the
/// framework's user actions; the record decides what comes of them. The window may be gone at any time.
class ControlView {
  public:
    ControlView(HWND window, ViewKeeper& keeper)
        : window_(window)
        , keeper_(keeper) {}
    virtual ~ControlView() = default;
    ControlView(const ControlView&) = delete;
    ControlView& operator=(const ControlView&) = delete;

    virtual QWidget& widget() = 0;
    /// Takes over what changed of the record: bits of framework::change. Place, visibility and whether it
    /// can be used are the keeper's.
    virtual void follow(const framework::WindowRecord& record, unsigned what) = 0;

    HWND handle() const { return window_; }

  protected:
    void refresh() { keeper_.refresh(window_); }

  private:
    HWND window_;
    ViewKeeper& keeper_;
};

/// A view of the shape that the record has; the widget belongs to its parent or, without one, to the caller.
ControlView* makeControlView(const framework::WindowRecord& record, ViewKeeper& keeper, QWidget* parent);

QString qText(const std::wstring& text);
std::wstring wideText(const QString& text);

} // namespace workbench::desktop
