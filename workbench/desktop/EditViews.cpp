#include "framework/windows/WindowFunctions.h"
#include "framework/windows/desktop/UserActions.h"
#include "workbench/desktop/ControlMakers.h"

namespace workbench::desktop {
namespace {

using framework::WindowRecord;

/// Where the user put the caret and the selection, in the record's text.
void tellSelection(HWND window, std::size_t begin, std::size_t end) {
    const auto* record = framework::findWindow(window);
    if (!record || (record->selectionBegin == begin && record->selectionEnd == end)) return;
    SendMessage(window, EM_SETSEL, begin, static_cast<LPARAM>(end));
}

Qt::Alignment alignmentOf(const WindowRecord& record) {
    return Qt::AlignVCenter | (record.style & ES_RIGHT    ? Qt::AlignRight
                               : record.style & ES_CENTER ? Qt::AlignHCenter
                                                          : Qt::AlignLeft);
}

class LineView final : public QLineEdit, public ControlView {
  public:
    LineView(HWND window, ViewKeeper& keeper, QWidget* parent)
        : QLineEdit(parent)
        , ControlView(window, keeper) {
        setContextMenuPolicy(Qt::NoContextMenu);
        // Keys go to the framework; what arrives here comes from an input method or a drop.
        connect(this, &QLineEdit::textEdited, this, [this](const QString& text) {
            const int caret = cursorPosition();
            framework::user::paste(handle(), wideText(text));
            tellSelection(handle(), static_cast<std::size_t>(caret), static_cast<std::size_t>(caret));
            refresh();
        });
    }

    QWidget& widget() override { return *this; }

    void follow(const WindowRecord& record, unsigned) override {
        const QSignalBlocker quiet(this);
        if (text() != qText(record.text)) setText(qText(record.text));
        setReadOnly((record.style & ES_READONLY) != 0);
        setAlignment(alignmentOf(record));
        const int begin = static_cast<int>(record.selectionBegin);
        const int end = static_cast<int>(record.selectionEnd);
        if (begin == end)
            setCursorPosition(end);
        else
            setSelection(begin, end - begin);
    }

  protected:
    void mousePressEvent(QMouseEvent* event) override {
        QLineEdit::mousePressEvent(event);
        tell();
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        QLineEdit::mouseMoveEvent(event);
        tell();
    }
    void mouseDoubleClickEvent(QMouseEvent* event) override {
        QLineEdit::mouseDoubleClickEvent(event);
        tell();
    }

  private:
    void tell() {
        const int caret = cursorPosition();
        int anchor = caret;
        if (hasSelectedText()) anchor = caret == selectionStart() ? selectionEnd() : selectionStart();
        tellSelection(handle(), static_cast<std::size_t>(anchor), static_cast<std::size_t>(caret));
        refresh();
    }
};

/// The record ends its lines with two characters, the widget with one.
class FieldView final : public QPlainTextEdit, public ControlView {
  public:
    FieldView(HWND window, ViewKeeper& keeper, QWidget* parent)
        : QPlainTextEdit(parent)
        , ControlView(window, keeper) {
        setContextMenuPolicy(Qt::NoContextMenu);
        setTabChangesFocus(true);
        setUndoRedoEnabled(false);
    }

    QWidget& widget() override { return *this; }

    void follow(const WindowRecord& record, unsigned) override {
        const QSignalBlocker quiet(this);
        const QString shown = qText(record.text).remove('\r');
        if (toPlainText() != shown) setPlainText(shown);
        setReadOnly((record.style & ES_READONLY) != 0);
        setLineWrapMode(record.style & ES_AUTOHSCROLL ? NoWrap : WidgetWidth);
        QTextCursor cursor = textCursor();
        cursor.setPosition(shownPosition(record.text, record.selectionBegin));
        cursor.setPosition(shownPosition(record.text, record.selectionEnd), QTextCursor::KeepAnchor);
        setTextCursor(cursor);
    }

  protected:
    void mousePressEvent(QMouseEvent* event) override {
        QPlainTextEdit::mousePressEvent(event);
        tell();
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        QPlainTextEdit::mouseReleaseEvent(event);
        tell();
    }
    void inputMethodEvent(QInputMethodEvent* event) override {
        QPlainTextEdit::inputMethodEvent(event);
        if (event->commitString().isEmpty()) return;
        const QString text = toPlainText().replace('\n', "\r\n");
        const int caret = textCursor().position();
        framework::user::paste(handle(), wideText(text));
        if (const auto* record = framework::findWindow(handle())) {
            const std::size_t at = recordPosition(record->text, caret);
            tellSelection(handle(), at, at);
        }
        refresh();
    }

  private:
    static int shownPosition(const std::wstring& text, std::size_t position) {
        const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(position, text.size()));
        return static_cast<int>(end - text.begin() - std::count(text.begin(), end, L'\r'));
    }
    static std::size_t recordPosition(const std::wstring& text, int shown) {
        std::size_t position = 0;
        for (; position < text.size() && shown > 0; ++position)
            if (text[position] != L'\r') --shown;
        return position;
    }
    void tell() {
        if (const auto* record = framework::findWindow(handle())) {
            const QTextCursor cursor = textCursor();
            tellSelection(handle(), recordPosition(record->text, cursor.anchor()),
                          recordPosition(record->text, cursor.position()));
        }
        refresh();
    }
};

} // namespace

ControlView* makeLine(HWND window, ViewKeeper& keeper, QWidget* parent) {
    return new LineView(window, keeper, parent);
}

ControlView* makeField(HWND window, ViewKeeper& keeper, QWidget* parent) {
    return new FieldView(window, keeper, parent);
}

} // namespace workbench::desktop
