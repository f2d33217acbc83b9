#include "workbench/desktop/ScreenDescription.h"

namespace workbench::desktop {
namespace {

void addLine(QString& list, const QString& kind, const QWidget& owner, const QRect& rect,
             const QString& state, QString text) {
    const QPoint at = owner.mapToGlobal(rect.topLeft());
    text.replace('\n', ' ');
    list += QString("%1 %2 %3 %4 %5 %6 %7\n")
                .arg(kind)
                .arg(at.x())
                .arg(at.y())
                .arg(rect.width())
                .arg(rect.height())
                .arg(state.isEmpty() ? QString("-") : state, text);
}

QString plain(QString text) {
    return text.remove('&');
}

void addMenu(QString& list, const QMenu& menu) {
    for (QAction* action : menu.actions())
        if (!action->isSeparator())
            addLine(list, "entry", menu, menu.actionGeometry(action), action->isChecked() ? "on" : "",
                    plain(action->text()));
}

void addTree(QString& list, const QTreeWidget& tree) {
    for (QTreeWidgetItemIterator it(const_cast<QTreeWidget*>(&tree)); *it; ++it) {
        const QRect rect = tree.visualItemRect(*it);
        if (rect.isEmpty()) continue;
        int depth = 0;
        for (const QTreeWidgetItem* up = (*it)->parent(); up; up = up->parent())
            ++depth;
        addLine(list, QString("item%1").arg(depth), *tree.viewport(), rect,
                *it == tree.currentItem() ? "on"
                : (*it)->isExpanded()     ? "open"
                                          : "",
                (*it)->text(0));
    }
}

void addRows(QString& list, const QAbstractItemView& view) {
    const QAbstractItemModel& model = *view.model();
    for (int row = 0; row < model.rowCount(view.rootIndex()); ++row) {
        const QModelIndex index = model.index(row, 0, view.rootIndex());
        const QRect rect = view.visualRect(index);
        if (rect.isEmpty()) continue;
        QStringList texts;
        for (int column = 0; column < model.columnCount(); ++column)
            texts << model.index(row, column).data().toString();
        addLine(list, "row", *view.viewport(), rect, view.selectionModel()->isSelected(index) ? "on" : "",
                texts.join(" | "));
    }
}

void addWidget(QString& list, const QWidget& widget) {
    const QString id = widget.objectName().isEmpty() ? QString("-") : widget.objectName();
    const QRect rect = widget.rect();
    const QString off = widget.isEnabled() ? "" : "off";
    if (const auto* tree = qobject_cast<const QTreeWidget*>(&widget)) {
        addTree(list, *tree);
    } else if (const auto* view = qobject_cast<const QAbstractItemView*>(&widget)) {
        addLine(list, "list:" + id, widget, rect, off, {});
        addRows(list, *view);
    } else if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
        addLine(list, "button:" + id, widget, rect, button->isChecked() ? "on" : off, plain(button->text()));
    } else if (const auto* edit = qobject_cast<const QLineEdit*>(&widget)) {
        addLine(list, "edit:" + id, widget, rect, widget.hasFocus() ? "on" : off, edit->text());
    } else if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) {
        addLine(list, "choice:" + id, widget, rect, off, combo->currentText());
    } else if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        addLine(list, "label", widget, rect, off, label->text());
    } else if (const auto* pane = qobject_cast<const QPlainTextEdit*>(&widget)) {
        addLine(list, "text:" + id, widget, rect, off, pane->toPlainText());
    } else if (!widget.accessibleName().isEmpty()) {
        addLine(list, "label", widget, rect, off, plain(widget.accessibleName()));
    }
}

} // namespace

QString screenDescription() {
    QString list;
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible()) continue;
        addLine(list, "window", *window, window->rect(),
                window->isActiveWindow() ? "on"
                : window->isEnabled()    ? ""
                                         : "off",
                window->windowTitle());
        if (const auto* menu = qobject_cast<const QMenu*>(window)) addMenu(list, *menu);
        for (const QWidget* widget : window->findChildren<QWidget*>()) {
            if (!widget->isVisible() || widget->window() != window) continue;
            if (const auto* bar = qobject_cast<const QMenuBar*>(widget))
                for (QAction* action : bar->actions())
                    addLine(list, "menu", *bar, bar->actionGeometry(action), "", plain(action->text()));
            else
                addWidget(list, *widget);
        }
    }
    return list;
}

ScreenDescription::ScreenDescription(std::string path)
    : path_(std::move(path)) {
    constexpr int kMilliseconds = 50;
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { write(); });
    timer_.start(kMilliseconds);
}

void ScreenDescription::write() {
    const QString now = screenDescription();
    if (now == last_) return;
    QSaveFile file(QString::fromStdString(path_));
    const QByteArray bytes = now.toUtf8();
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit()) last_ = now;
}

} // namespace workbench::desktop
