#include "workbench/desktop/ControlView.h"

#include "workbench/desktop/ControlMakers.h"
#include "workbench/desktop/ControlShape.h"

namespace workbench::desktop {

ControlView* makeControlView(const framework::WindowRecord& record, ViewKeeper& keeper, QWidget* parent) {
    using Maker = ControlView* (*)(HWND, ViewKeeper&, QWidget*);
    static const std::map<ControlShape, Maker> makers = {
        {ControlShape::Page, makePage},     {ControlShape::Plain, makePlain},
        {ControlShape::Text, makeText},     {ControlShape::Group, makeGroup},
        {ControlShape::Push, makePush},     {ControlShape::Check, makeCheck},
        {ControlShape::Radio, makeRadio},   {ControlShape::Line, makeLine},
        {ControlShape::Field, makeField},   {ControlShape::Choice, makeChoice},
        {ControlShape::Rows, makeRows},     {ControlShape::Tabs, makeTabs},
        {ControlShape::Arrows, makeArrows}, {ControlShape::Chart, makeChart},
    };
    return makers.at(shapeOf(record))(record.handle, keeper, parent);
}

QString qText(const std::wstring& text) {
    return QString::fromStdWString(text);
}

std::wstring wideText(const QString& text) {
    return text.toStdWString();
}

} // namespace workbench::desktop
