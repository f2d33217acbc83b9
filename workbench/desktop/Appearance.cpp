#include "workbench/desktop/Appearance.h"

namespace workbench::desktop {
namespace {

/// The size that the framework's widths are for.
constexpr int kTextPixels = 11;

/// The toolkit's own style with the small marks that dialog units leave room for.
class DialogStyle final : public QProxyStyle {
  public:
    DialogStyle()
        : QProxyStyle("Fusion") {}

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        switch (metric) {
        case PM_IndicatorWidth:
        case PM_IndicatorHeight:
        case PM_ExclusiveIndicatorWidth:
        case PM_ExclusiveIndicatorHeight:
            return 13;
        case PM_CheckBoxLabelSpacing:
        case PM_RadioButtonLabelSpacing:
            return 4;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        // Without the animations a picture shows the state of now.
        if (hint == SH_Widget_Animation_Duration) return 0;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
};

QPalette lightPalette() {
    QPalette palette(QColor(240, 240, 240));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::WindowText, Qt::black);
    palette.setColor(QPalette::ButtonText, Qt::black);
    palette.setColor(QPalette::Button, QColor(239, 239, 239));
    palette.setColor(QPalette::Highlight, QColor(48, 110, 180));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Mid, QColor(184, 184, 184));
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(140, 140, 140));
    return palette;
}

} // namespace

void setAppearance(QApplication& application) {
    application.setStyle(new DialogStyle);
    application.setPalette(lightPalette());
    QFont font;
    font.setFamilies({"DejaVu Sans", "NanumGothic", "NanumBarunGothic"});
    font.setPixelSize(kTextPixels);
    // Widths scale as the font has them, not by whole pixels a letter.
    font.setHintingPreference(QFont::PreferNoHinting);
    QApplication::setFont(font);
}

QImage framedPicture(QWidget& window) {
    constexpr int kTitle = 26, kBorder = 1, kCross = 4;
    const QPixmap content = window.grab();
    QImage picture(content.width() + 2 * kBorder, content.height() + kTitle + kBorder, QImage::Format_RGB32);
    picture.fill(QColor(150, 160, 172));
    QPainter painter(&picture);
    painter.fillRect(kBorder, kBorder, content.width(), kTitle - kBorder, QColor(225, 230, 237));
    QFont font = QApplication::font();
    font.setPixelSize(12);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(QRect(10, 0, picture.width() - 40, kTitle), Qt::AlignVCenter | Qt::AlignLeft,
                     window.windowTitle());
    if (window.windowFlags() & Qt::WindowCloseButtonHint) {
        const QPoint middle(picture.width() - 16, kTitle / 2);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(QColor(70, 70, 70), 1.4));
        painter.drawLine(middle - QPoint(kCross, kCross), middle + QPoint(kCross, kCross));
        painter.drawLine(middle - QPoint(kCross, -kCross), middle + QPoint(kCross, -kCross));
    }
    painter.drawPixmap(kBorder, kTitle, content);
    return picture;
}

} // namespace workbench::desktop
