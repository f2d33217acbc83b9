#include "workbench/desktop/ControlShape.h"

#include "framework/windows/WindowClasses.h"
#include "framework/windows/desktop/DesktopPort.h"
#include "framework/windows/dialogs/Navigation.h"
#include "host/chart/ChartCtrl.h"

#include <algorithm>

namespace workbench::desktop {
namespace {

using framework::ControlKind;

/// A combo box's template rectangle reaches down to the end of its list.
constexpr int kClosedComboHeight = 23;

ControlShape shapeOfButton(UINT style) {
    if (style & BS_PUSHLIKE) return ControlShape::Push;
    switch (style & BS_TYPEMASK) {
    case BS_GROUPBOX:
        return ControlShape::Group;
    case BS_CHECKBOX:
    case BS_AUTOCHECKBOX:
    case BS_3STATE:
    case BS_AUTO3STATE:
        return ControlShape::Check;
    case BS_RADIOBUTTON:
    case BS_AUTORADIOBUTTON:
        return ControlShape::Radio;
    default:
        return ControlShape::Push;
    }
}

} // namespace

ControlShape shapeOf(const framework::WindowRecord& record) {
    const ControlKind kind = record.windowClass->kind;
    if (kind == ControlKind::kDialog) return ControlShape::Page;
    if (tqx::frx::findChart(record.handle)) return ControlShape::Chart;
    if (framework::paintsItself(record.handle)) return ControlShape::Plain;
    switch (kind) {
    case ControlKind::kStatic:
        return ControlShape::Text;
    case ControlKind::kEdit:
        return record.style & ES_MULTILINE ? ControlShape::Field : ControlShape::Line;
    case ControlKind::kButton:
        return shapeOfButton(record.style);
    case ControlKind::kCombo:
        return ControlShape::Choice;
    case ControlKind::kList:
    case ControlKind::kListControl:
        return ControlShape::Rows;
    case ControlKind::kTab:
        return ControlShape::Tabs;
    case ControlKind::kSpin:
        return ControlShape::Arrows;
    default:
        return ControlShape::Plain;
    }
}

CRect shownRect(const framework::WindowRecord& record) {
    CRect rect = record.rect;
    if (record.windowClass->kind == ControlKind::kCombo && (record.style & CBS_DROPDOWNLIST) != CBS_SIMPLE)
        rect.bottom = rect.top + std::min(rect.Height(), kClosedComboHeight);
    if (const auto* parent = framework::findWindow(record.parent)) {
        const int border = framework::borderWidth(*parent);
        rect.OffsetRect(border, border);
    }
    return rect;
}

bool isDefaultButton(const framework::WindowRecord& record) {
    const auto* dialog = framework::findWindow(framework::navigatingDialog(record.handle));
    if (dialog && dialog->defaultId) return dialog->defaultId == record.id;
    return (record.style & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
}

} // namespace workbench::desktop
