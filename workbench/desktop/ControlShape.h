#pragma once

#include "framework/windows/WindowRecord.h"

namespace workbench::desktop {

/// What a window looks like on the screen; its class, style and object decide.
enum class ControlShape {
    Page,   ///< a dialog, or a page in one
    Plain,  ///< a window of no control class, or one that an object paints
    Text,   ///< a static: text, frame or line
    Group,  ///< a group box
    Push,   ///< a push button, or a check box or radio button that looks like one
    Check,  ///< a check box
    Radio,  ///< a radio button
    Line,   ///< an edit of one line
    Field,  ///< an edit of several lines
    Choice, ///< a combo box
    Rows,   ///< a list box, check list box or list control
    Tabs,   ///< a tab control
    Arrows, ///< a spin button
    Chart,  ///< a chart of the host
};

ControlShape shapeOf(const framework::WindowRecord& record);

/// Where a window is shown: a child's in the widget of its parent, another's on the screen without its frame.
/// A combo box that drops down is as high as its closed part.
CRect shownRect(const framework::WindowRecord& record);

/// The dialog's default button is drawn as such.
bool isDefaultButton(const framework::WindowRecord& record);

} // namespace workbench::desktop
