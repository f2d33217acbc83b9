#pragma once

#include "workbench/desktop/ControlView.h"

namespace workbench::desktop {

// One maker a shape; see makeControlView.
ControlView* makePage(HWND window, ViewKeeper& keeper, QWidget* parent);
ControlView* makePlain(HWND window, ViewKeeper& keeper, QWidget* parent);
ControlView* makeText(HWND window, ViewKeeper& keeper, QWidget* parent);
ControlView* makeGroup(HWND window, ViewKeeper& keeper, QWidget* parent);
ControlView* makePush(HWND window, ViewKeeper& keeper, QWidget* parent);
ControlView* makeCheck(HWND window, ViewKeeper& keeper, QWidget* parent);
ControlView* makeRadio(HWND window, ViewKeeper& keeper, QWidget* parent);
ControlView* makeLine(HWND window, ViewKeeper& keeper, QWidget* parent);
ControlView* makeField(HWND window, ViewKeeper& keeper, QWidget* parent);
ControlView* makeChoice(HWND window, ViewKeeper& keeper, QWidget* parent);
ControlView* makeRows(HWND window, ViewKeeper& keeper, QWidget* parent);
ControlView* makeTabs(HWND window, ViewKeeper& keeper, QWidget* parent);
ControlView* makeArrows(HWND window, ViewKeeper& keeper, QWidget* parent);
ControlView* makeChart(HWND window, ViewKeeper& keeper, QWidget* parent);

} // namespace workbench::desktop
