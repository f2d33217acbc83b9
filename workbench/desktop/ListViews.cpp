#include "framework/windows/WindowClasses.h"
#include "framework/windows/WindowMessages.h"
#include "framework/windows/controls/ComboBox.h"
#include "framework/windows/controls/ListBox.h"
#include "framework/windows/desktop/DesktopPort.h"
#include "framework/windows/desktop/UserActions.h"
#include "workbench/desktop/ControlMakers.h"

namespace workbench::desktop {
namespace {

using framework::findWindow;
using framework::WindowRecord;

class ChoiceView final : public QComboBox, public ControlView {
  public:
    ChoiceView(HWND window, ViewKeeper& keeper, QWidget* parent)
        : QComboBox(parent)
        , ControlView(window, keeper) {
        connect(this, &QComboBox::activated, this, [this](int index) {
            framework::user::choose(handle(), index);
            refresh();
        });
    }

    QWidget& widget() override { return *this; }

    void follow(const WindowRecord& record, unsigned) override {
        const QSignalBlocker quiet(this);
        followItems(record);
        if (isEditable() != framework::hasEdit(record.handle)) {
            setEditable(framework::hasEdit(record.handle));
            if (lineEdit()) makeEdit();
        }
        setCurrentIndex(record.current);
        if (lineEdit()) followText(record);
        followList(record);
    }

    void showPopup() override {
        framework::user::dropDown(handle(), true);
        refresh();
    }
    void hidePopup() override {
        QComboBox::hidePopup();
        const auto* record = findWindow(handle());
        if (!shown_ || !record) return;
        shown_ = false;
        if (record->dropped) framework::user::dropDown(handle(), false);
        refresh();
    }

  protected:
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }

  private:
    void followItems(const WindowRecord& record) {
        QStringList texts;
        for (const auto& item : record.items)
            texts << qText(item.texts[0]);
        bool same = texts.size() == count();
        for (int i = 0; same && i < count(); ++i)
            same = itemText(i) == texts[i];
        if (same) return;
        clear();
        addItems(texts);
    }
    void makeEdit() {
        setCompleter(nullptr);
        setInsertPolicy(NoInsert);
        lineEdit()->setContextMenuPolicy(Qt::NoContextMenu);
        lineEdit()->setFocusPolicy(Qt::NoFocus);
        connect(lineEdit(), &QLineEdit::textEdited, this, [this](const QString& text) {
            framework::user::type(handle(), wideText(text));
            refresh();
        });
    }
    void followText(const WindowRecord& record) {
        QLineEdit& edit = *lineEdit();
        const QSignalBlocker quiet(&edit);
        if (edit.text() != qText(record.text)) edit.setText(qText(record.text));
        const int begin = static_cast<int>(record.selectionBegin);
        const int end = static_cast<int>(record.selectionEnd);
        if (begin == end)
            edit.setCursorPosition(end);
        else
            edit.setSelection(begin, end - begin);
    }
    void followList(const WindowRecord& record) {
        view()->setMinimumWidth(record.droppedWidth);
        if (record.dropped && !shown_) {
            shown_ = true;
            QComboBox::showPopup();
        } else if (!record.dropped && shown_) {
            shown_ = false;
            QComboBox::hidePopup();
        }
        if (shown_) view()->setCurrentIndex(model()->index(record.current, 0));
    }

    bool shown_ = false;
};

/// Reads the items of a record as they are asked for.
class RowsModel final : public QAbstractTableModel {
  public:
    explicit RowsModel(HWND window)
        : window_(window) {}

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : rows_; }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : columns_; }

    QVariant data(const QModelIndex& index, int role) const override {
        const auto* record = findWindow(window_);
        if (!record || index.row() >= static_cast<int>(record->items.size())) return {};
        const auto& item = record->items[static_cast<std::size_t>(index.row())];
        const auto column = static_cast<std::size_t>(index.column());
        switch (role) {
        case Qt::DisplayRole:
            return column < item.texts.size() ? qText(item.texts[column]) : QString();
        case Qt::CheckStateRole:
            if (!record->checkItems || column != 0) return {};
            return item.check == BST_INDETERMINATE ? Qt::PartiallyChecked
                   : item.check                    ? Qt::Checked
                                                   : Qt::Unchecked;
        case Qt::TextAlignmentRole:
            return alignment(*record, column);
        default:
            return {};
        }
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        const auto* record = findWindow(window_);
        const auto column = static_cast<std::size_t>(section);
        if (!record || orientation != Qt::Horizontal || column >= record->columns.size()) return {};
        if (role == Qt::DisplayRole) return qText(record->columns[column].title);
        return role == Qt::TextAlignmentRole ? alignment(*record, column) : QVariant();
    }

    /// Takes over the size of the record; true when it is another one.
    bool follow(const WindowRecord& record) {
        const int rows = static_cast<int>(record.items.size());
        const int columns = std::max(1, static_cast<int>(record.columns.size()));
        const bool resized = rows != rows_ || columns != columns_;
        if (resized) {
            beginResetModel();
            rows_ = rows;
            columns_ = columns;
            endResetModel();
        } else if (rows > 0) {
            Q_EMIT dataChanged(index(0, 0), index(rows - 1, columns - 1));
        }
        Q_EMIT headerDataChanged(Qt::Horizontal, 0, columns - 1);
        return resized;
    }

  private:
    static QVariant alignment(const WindowRecord& record, std::size_t column) {
        const int format = column < record.columns.size() ? record.columns[column].format : LVCFMT_LEFT;
        return static_cast<int>(Qt::AlignVCenter | (format == LVCFMT_RIGHT    ? Qt::AlignRight
                                                    : format == LVCFMT_CENTER ? Qt::AlignHCenter
                                                                              : Qt::AlignLeft));
    }

    HWND window_;
    int rows_ = 0;
    int columns_ = 1;
};

/// Rows of texts with check boxes and columns, as the record has them.
class RowsView final : public QTreeView, public ControlView {
  public:
    RowsView(HWND window, ViewKeeper& keeper, QWidget* parent)
        : QTreeView(parent)
        , ControlView(window, keeper)
        , model_(window) {
        setModel(&model_);
        setRootIsDecorated(false);
        setUniformRowHeights(true);
        setItemsExpandable(false);
        setAllColumnsShowFocus(true);
        setContextMenuPolicy(Qt::NoContextMenu);
        header()->setSectionsClickable(true);
        header()->setSectionsMovable(false);
        connect(header(), &QHeaderView::sectionClicked, this, [this](int column) {
            framework::user::clickColumn(handle(), column);
            refresh();
        });
        connect(header(), &QHeaderView::sectionResized, this,
                [this](int column, int, int width) { keepWidth(column, width); });
    }

    QWidget& widget() override { return *this; }

    void follow(const WindowRecord& record, unsigned what) override {
        following_ = true;
        followStyle(record);
        const int scrolled = verticalScrollBar()->value();
        if (model_.follow(record)) verticalScrollBar()->setValue(scrolled);
        for (int i = 0; i < static_cast<int>(record.columns.size()); ++i)
            header()->resizeSection(i, record.columns[static_cast<std::size_t>(i)].width);
        if (what & framework::change::kContent) followSelection(record);
        following_ = false;
    }

  protected:
    void mousePressEvent(QMouseEvent* event) override {
        pressedBox_ = boxAt(event->position().toPoint());
        if (pressedBox_ >= 0) return;
        QTreeView::mousePressEvent(event);
        tell();
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        if (pressedBox_ >= 0) return;
        QTreeView::mouseMoveEvent(event);
        if (event->buttons() & Qt::LeftButton) tell();
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        const int box = std::exchange(pressedBox_, -1);
        if (box < 0) {
            QTreeView::mouseReleaseEvent(event);
            tell();
        } else if (box == boxAt(event->position().toPoint())) {
            const auto* record = findWindow(handle());
            const auto row = static_cast<std::size_t>(box);
            if (record && row < record->items.size())
                framework::user::checkItem(handle(), box, !record->items[row].check);
            refresh();
        }
    }
    void mouseDoubleClickEvent(QMouseEvent* event) override {
        const QModelIndex index = indexAt(event->position().toPoint());
        if (boxAt(event->position().toPoint()) >= 0)
            mousePressEvent(event);
        else if (index.isValid())
            framework::user::doubleClickItem(handle(), index.row());
        refresh();
    }

  private:
    void followStyle(const WindowRecord& record) {
        const bool table = record.windowClass->kind == framework::ControlKind::kListControl;
        header()->setVisible(table && !record.columns.empty() && !(record.style & LVS_NOCOLUMNHEADER));
        header()->setStretchLastSection(record.columns.empty());
        setSelectionMode(!table && (record.style & LBS_NOSEL)          ? NoSelection
                         : !framework::isMultiple(record)              ? SingleSelection
                         : !table && !(record.style & LBS_EXTENDEDSEL) ? MultiSelection
                                                                       : ExtendedSelection);
    }
    void followSelection(const WindowRecord& record) {
        QItemSelection selection;
        for (int row = 0; row < static_cast<int>(record.items.size()); ++row)
            if (record.items[static_cast<std::size_t>(row)].selected)
                selection.select(model_.index(row, 0), model_.index(row, model_.columnCount() - 1));
        selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
        const QModelIndex current = model_.index(record.current, 0);
        if (current == selectionModel()->currentIndex()) return;
        selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
        if (current.isValid()) scrollTo(current);
    }
    /// The row whose check box lies there; -1 for none.
    int boxAt(const QPoint& point) const {
        const auto* record = findWindow(handle());
        const QModelIndex index = indexAt(point);
        if (!record || !record->checkItems || !index.isValid() || index.column() != 0) return -1;
        const QRect row = visualRect(index);
        constexpr int kMargin = 6;
        const int box = style()->pixelMetric(QStyle::PM_IndicatorWidth) + kMargin;
        return point.x() < row.left() + box ? index.row() : -1;
    }
    /// The widget's selection as the user made it; the caret comes last.
    void tell() {
        const auto* record = findWindow(handle());
        if (!record || !selectionModel()) return;
        std::vector<int> rows;
        for (const QModelIndex& index : selectionModel()->selectedRows())
            rows.push_back(index.row());
        std::ranges::sort(rows);
        std::vector<int> before;
        for (std::size_t row = 0; row < record->items.size(); ++row)
            if (record->items[row].selected) before.push_back(static_cast<int>(row));
        if (rows != before) {
            const auto caret = std::ranges::find(rows, selectionModel()->currentIndex().row());
            if (caret != rows.end()) std::rotate(caret, caret + 1, rows.end());
            framework::user::select(handle(), rows);
        }
        refresh();
    }
    void keepWidth(int column, int width) {
        auto* record = findWindow(handle());
        if (following_ || !record || column >= static_cast<int>(record->columns.size())) return;
        record->columns[static_cast<std::size_t>(column)].width = width;
    }

    RowsModel model_;
    int pressedBox_ = -1;
    bool following_ = false;
};

} // namespace

ControlView* makeChoice(HWND window, ViewKeeper& keeper, QWidget* parent) {
    return new ChoiceView(window, keeper, parent);
}

ControlView* makeRows(HWND window, ViewKeeper& keeper, QWidget* parent) {
    return new RowsView(window, keeper, parent);
}

} // namespace workbench::desktop
