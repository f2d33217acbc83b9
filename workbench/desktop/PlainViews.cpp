#include "framework/windows/WindowFunctions.h"
#include "framework/windows/desktop/DesktopPort.h"
#include "framework/windows/desktop/UserActions.h"
#include "workbench/desktop/ControlMakers.h"

namespace workbench::desktop {
namespace {

using framework::WindowRecord;

/// A dialog, or a page in one, that paints nothing itself: its controls are widgets of their own.
class PageView final : public QWidget, public ControlView {
  public:
    PageView(HWND window, ViewKeeper& keeper, QWidget* parent)
        : QWidget(parent)
        , ControlView(window, keeper) {}

    QWidget& widget() override { return *this; }
    void follow(const WindowRecord& record, unsigned) override {
        if (!record.parent) setWindowTitle(qText(record.text));
    }

  protected:
    void closeEvent(QCloseEvent* event) override {
        event->ignore();
        framework::user::close(handle());
        refresh();
    }
};

class TextView final : public QWidget, public ControlView {
  public:
    TextView(HWND window, ViewKeeper& keeper, QWidget* parent)
        : QWidget(parent)
        , ControlView(window, keeper) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

    QWidget& widget() override { return *this; }
    void follow(const WindowRecord& record, unsigned) override {
        style_ = record.style;
        setAccessibleName(qText(record.text));
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        constexpr UINT kType = 0x1F;
        QPainter painter(this);
        const UINT type = style_ & kType;
        if (style_ & SS_SUNKEN) qDrawShadePanel(&painter, rect(), palette(), true);
        switch (type) {
        case SS_ETCHEDHORZ:
            painter.setPen(palette().color(QPalette::Mid));
            painter.drawLine(0, 0, width(), 0);
            break;
        case SS_ETCHEDFRAME:
        case SS_BLACKFRAME:
            painter.setPen(palette().color(type == SS_BLACKFRAME ? QPalette::Text : QPalette::Mid));
            painter.drawRect(rect().adjusted(0, 0, -1, -1));
            break;
        default:
            style()->drawItemText(&painter, rect(), flagsOf(type), palette(), isEnabled(), accessibleName(),
                                  foregroundRole());
        }
    }

  private:
    int flagsOf(UINT type) const {
        const bool wraps = type == SS_LEFT || type == SS_CENTER || type == SS_RIGHT;
        int flags = type == SS_CENTER ? Qt::AlignHCenter : type == SS_RIGHT ? Qt::AlignRight : Qt::AlignLeft;
        flags |= style_ & SS_CENTERIMAGE ? Qt::AlignVCenter : Qt::AlignTop;
        if (wraps && !(style_ & SS_CENTERIMAGE)) flags |= Qt::TextWordWrap;
        if (!(style_ & SS_NOPREFIX)) flags |= Qt::TextShowMnemonic;
        return flags;
    }

    UINT style_ = 0;
};

class GroupView final : public QWidget, public ControlView {
  public:
    GroupView(HWND window, ViewKeeper& keeper, QWidget* parent)
        : QWidget(parent)
        , ControlView(window, keeper) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

    QWidget& widget() override { return *this; }
    void follow(const WindowRecord& record, unsigned) override {
        setAccessibleName(qText(record.text));
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        constexpr int kIndent = 8, kGap = 2, kRadius = 2;
        QPainter painter(this);
        const QFontMetrics metrics = fontMetrics();
        const QString text = accessibleName();
        const QSize size = metrics.size(Qt::TextShowMnemonic, text);
        const QRect title(kIndent, 0, size.width(), size.height());
        painter.save();
        if (!text.isEmpty())
            painter.setClipRegion(QRegion(rect()) - QRegion(title.adjusted(-kGap, 0, kGap, 0)));
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawRoundedRect(rect().adjusted(0, size.height() / 2, -1, -1), kRadius, kRadius);
        painter.restore();
        style()->drawItemText(&painter, title, Qt::AlignLeft | Qt::TextShowMnemonic, palette(), isEnabled(),
                              text, QPalette::WindowText);
    }
};

/// A row of tabs and the frame of the display area, which lies under the pages.
class TabsView final : public QWidget, public ControlView {
  public:
    TabsView(HWND window, ViewKeeper& keeper, QWidget* parent)
        : QWidget(parent)
        , ControlView(window, keeper)
        , bar_(new QTabBar(this)) {
        bar_->setFocusPolicy(Qt::NoFocus);
        bar_->setExpanding(false);
        bar_->setDrawBase(false);
        connect(bar_, &QTabBar::currentChanged, this, [this](int index) {
            if (following_ || index < 0) return;
            framework::user::select(handle(), {index});
            refresh();
        });
        lower();
    }

    QWidget& widget() override { return *this; }
    void follow(const WindowRecord& record, unsigned) override {
        following_ = true;
        const int count = static_cast<int>(record.items.size());
        while (bar_->count() > count)
            bar_->removeTab(bar_->count() - 1);
        for (int i = 0; i < count; ++i) {
            const QString text = qText(record.items[static_cast<std::size_t>(i)].texts[0]).replace("&", "&&");
            if (i == bar_->count())
                bar_->addTab(text);
            else if (bar_->tabText(i) != text)
                bar_->setTabText(i, text);
        }
        if (record.current >= 0) bar_->setCurrentIndex(record.current);
        following_ = false;
    }

  protected:
    void resizeEvent(QResizeEvent*) override { bar_->setGeometry(0, 0, width(), kTabHeight); }
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::Mid));
        painter.setBrush(palette().color(QPalette::Window).lighter(103));
        painter.drawRect(QRect(0, kTabHeight - 1, width() - 1, height() - kTabHeight));
    }

  private:
    static constexpr int kTabHeight = 21; ///< what the framework leaves for them

    QTabBar* bar_;
    bool following_ = false;
};

/// Two arrows, of which the one that is held goes on stepping.
class ArrowsView final : public QWidget, public ControlView {
  public:
    ArrowsView(HWND window, ViewKeeper& keeper, QWidget* parent)
        : QWidget(parent)
        , ControlView(window, keeper) {
        connect(&timer_, &QTimer::timeout, this, [this] {
            timer_.setInterval(kRepeatMilliseconds);
            step();
        });
    }

    QWidget& widget() override { return *this; }
    void follow(const WindowRecord& record, unsigned) override {
        horizontal_ = (record.style & UDS_HORZ) != 0;
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        for (const bool up : {true, false}) {
            QStyleOptionButton panel;
            panel.initFrom(this);
            panel.rect = arrow(up);
            panel.state |= held_ == (up ? 1 : -1) ? QStyle::State_Sunken : QStyle::State_Raised;
            style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &panel, &painter, this);
            QStyleOption sign;
            sign.initFrom(this);
            const QRect place = arrow(up);
            const int size = std::min({place.width(), place.height(), 9});
            sign.rect = QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, {size, size}, place);
            style()->drawPrimitive(horizontal_
                                       ? (up ? QStyle::PE_IndicatorArrowRight : QStyle::PE_IndicatorArrowLeft)
                                       : (up ? QStyle::PE_IndicatorArrowUp : QStyle::PE_IndicatorArrowDown),
                                   &sign, &painter, this);
        }
    }
    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() != Qt::LeftButton) return;
        held_ = arrow(true).contains(event->position().toPoint()) ? 1 : -1;
        timer_.start(kFirstMilliseconds);
        step();
    }
    void mouseReleaseEvent(QMouseEvent*) override { release(); }
    void hideEvent(QHideEvent*) override { release(); }

  private:
    static constexpr int kFirstMilliseconds = 400;
    static constexpr int kRepeatMilliseconds = 60;

    QRect arrow(bool up) const {
        if (horizontal_)
            return up ? rect().adjusted(width() / 2, 0, 0, 0) : rect().adjusted(0, 0, -width() / 2, 0);
        return up ? rect().adjusted(0, 0, 0, -height() / 2) : rect().adjusted(0, height() / 2, 0, 0);
    }
    void step() {
        framework::user::spin(handle(), held_);
        refresh();
        update();
    }
    void release() {
        timer_.stop();
        held_ = 0;
        update();
    }

    QTimer timer_;
    int held_ = 0;
    bool horizontal_ = false;
};

} // namespace

ControlView* makePage(HWND window, ViewKeeper& keeper, QWidget* parent) {
    if (framework::paintsItself(window)) return makePlain(window, keeper, parent);
    return new PageView(window, keeper, parent);
}
ControlView* makeText(HWND window, ViewKeeper& keeper, QWidget* parent) {
    return new TextView(window, keeper, parent);
}
ControlView* makeGroup(HWND window, ViewKeeper& keeper, QWidget* parent) {
    return new GroupView(window, keeper, parent);
}
ControlView* makeTabs(HWND window, ViewKeeper& keeper, QWidget* parent) {
    return new TabsView(window, keeper, parent);
}
ControlView* makeArrows(HWND window, ViewKeeper& keeper, QWidget* parent) {
    return new ArrowsView(window, keeper, parent);
}

} // namespace workbench::desktop
