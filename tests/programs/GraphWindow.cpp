// A graph on a screen, for a test that works it from outside, and for a picture of it.
//
// graph-window --describe FILE      shows it, and keeps a line about it in the file: its place on the screen,
//                                   how often its curve was painted, and the clicks that its owner got
// graph-window --picture FILE       draws it as it is after a click and a move of the mouse

#include "framework/windows/desktop/UserActions.h"
#include "tests/support/GraphDialog.h"
#include "tests/support/MemoryHost.h"
#include "workbench/desktop/Appearance.h"
#include "workbench/desktop/PaintedView.h"
#include "workbench/desktop/QtDesktop.h"

namespace {

using namespace workbench::desktop;

void describe(const QString& path, const QtDesktop& desk, const GraphDialog& dialog) {
    auto* view = dynamic_cast<PaintedView*>(desk.widgetOf(dialog.graph.m_hWnd));
    if (!view || !view->isVisible()) return;
    const QPoint corner = view->mapToGlobal(QPoint(0, 0));
    QString line = QString("graph %1 %2 %3 %4 painted %5 clicks")
                       .arg(corner.x())
                       .arg(corner.y())
                       .arg(view->width())
                       .arg(view->height())
                       .arg(view->pictures().painted());
    for (const double x : dialog.clicks)
        line += QString(" %1").arg(x, 0, 'f', 3);
    const QImage shown = view->grab().toImage();
    line += " line";
    for (int x = 0; x < shown.width(); ++x) // of the mouse: grey from top to bottom
        if (shown.pixelColor(x, 1) == QColor(175, 175, 175)) line += QString(" %1").arg(x);
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write((line + "\n").toUtf8());
        file.commit();
    }
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3) return 2;
    const QString path = QString::fromLocal8Bit(arguments[2]);
    QApplication application(count, arguments);
    setAppearance(application);
    support::MemoryHost host;
    host.texts[L"IDS_UTIL_FONT_ARIAL"] = L"Arial";
    framework::addTemplates(testDialogTemplates());
    QtDesktop desk;
    GraphDialog dialog;
    if (!dialog.Create(IDD_GRAPH)) return 1;
    dialog.ShowWindow(SW_SHOW);
    if (std::string_view(arguments[1]) == "--picture") {
        framework::user::mouse(dialog.graph.m_hWnd, WM_LBUTTONDOWN, {90, 40});
        framework::user::mouse(dialog.graph.m_hWnd, WM_MOUSEMOVE, {187, 60});
        QCoreApplication::processEvents();
        desk.flush();
        const bool saved = desk.widgetOf(dialog.m_hWnd)->grab().save(path);
        dialog.DestroyWindow();
        return saved ? 0 : 1;
    }
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        if (!IsWindowVisible(dialog.m_hWnd)) return QCoreApplication::quit();
        describe(path, desk, dialog);
    });
    timer.start(50);
    const int code = application.exec();
    dialog.DestroyWindow();
    return code;
}

#if defined(__SANITIZE_ADDRESS__)
/// As in vexa-desktop: what the libraries of a screen keep as long as the process.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libdbus-1\nleak:libfontconfig\n";
}
#endif
