#include "host/MSGFunction.h"
#include "workbench/desktop/MainWindow.h"
#include "workbench/desktop/ModuleDialogs.h"
#include "workbench/session/SafetyHistories.h"

#include <algorithm>

namespace workbench::desktop {
namespace {

/// One of several choices, of which one is on.
template <class Act>
QAction& addChoice(QMenu& menu, QActionGroup& group, const QString& text, bool on, Act act) {
    QAction* action = menu.addAction(text);
    action->setCheckable(true);
    action->setChecked(on);
    group.addAction(action);
    QObject::connect(action, &QAction::triggered, action, std::move(act));
    return *action;
}

} // namespace

QString message(const wchar_t* key) {
    return qText(CMSGFunction::GetValue(key));
}

void MainWindow::translate() {
    treeDock_->setWindowTitle(message(L"IDS_WB_RESULTS"));
    outputDock_->setWindowTitle(message(L"IDS_WB_OUTPUT"));
    deformationLabel_->setText(" " + message(L"IDS_WB_DEFORMATION") + " ");
    view_->setHint(message(document_ ? L"IDS_WB_CHOOSE_RESULT" : L"IDS_WB_NO_MODEL"));
    desk_.setButtonTexts({{IDOK, CMSGFunction::GetValue(L"IDS_QM_OK")},
                          {IDCANCEL, CMSGFunction::GetValue(L"IDS_QM_CANCEL")},
                          {IDABORT, CMSGFunction::GetValue(L"IDS_WB_ABORT")},
                          {IDRETRY, CMSGFunction::GetValue(L"IDS_WB_RETRY")},
                          {IDIGNORE, CMSGFunction::GetValue(L"IDS_WB_IGNORE")},
                          {IDYES, CMSGFunction::GetValue(L"IDS_WB_YES")},
                          {IDNO, CMSGFunction::GetValue(L"IDS_WB_NO")}});
    setWindowTitle(document_ ? QString::fromStdString(document_->path().filename().string()) + " - VEXA"
                             : QString("VEXA"));
    fillDeformation();
    makeMenus();
}

/// Made anew when the language or the model is another one: entries that would do nothing are not there.
void MainWindow::makeMenus() {
    menuBar()->clear();
    for (QMenu* old : menuBar()->findChildren<QMenu*>(Qt::FindDirectChildrenOnly))
        old->deleteLater(); // one of its entries may be what brought us here
    addFileMenu();
    addViewMenu();
    if (document_) {
        addResultsMenu();
        addFatigueMenu();
        addPickMenu();
        addUnitsMenu();
    }
    addLanguageMenu();
}

void MainWindow::addFileMenu() {
    QMenu* menu = menuBar()->addMenu(message(L"IDS_WB_FILE"));
    menu->addAction(message(L"IDS_WB_OPEN"), QKeySequence::Open, this, [this] { chooseAndOpen(); });
    menu->addAction(message(L"IDS_WB_IMPORT"), this, [this] { chooseAndImport(); });
    if (document_) {
        menu->addAction(message(L"IDS_WB_SAVE"), QKeySequence::Save, this, [this] { save(); });
        if (view_->result())
            menu->addAction(message(L"IDS_WB_SAVE_PICTURE"), this, [this] { savePicture(); });
    }
    menu->addSeparator();
    menu->addAction(message(L"IDS_WB_EXIT"), this, [this] { close(); });
}

void MainWindow::addViewMenu() {
    if (!view_->result()) return;
    QMenu* menu = menuBar()->addMenu(message(L"IDS_WB_VIEW"));
    const std::pair<const char*, const wchar_t*> views[] = {
        {"iso", L"IDS_WB_VIEW_ISO"},      {"front", L"IDS_WB_VIEW_FRONT"}, {"back", L"IDS_WB_VIEW_BACK"},
        {"left", L"IDS_WB_VIEW_LEFT"},    {"right", L"IDS_WB_VIEW_RIGHT"}, {"top", L"IDS_WB_VIEW_TOP"},
        {"bottom", L"IDS_WB_VIEW_BOTTOM"}};
    for (const auto& [name, key] : views)
        menu->addAction(message(key), this, [this, view = std::string(name)] { view_->setNamedView(view); });
    menu->addAction(message(L"IDS_WB_FIT"), this, [this] { view_->fit(); });
    menu->addSeparator();

    QMenu* colors = menu->addMenu(message(L"IDS_WB_COLORS"));
    auto* scales = new QActionGroup(colors);
    const std::pair<const char*, const wchar_t*> names[] = {{"viridis", L"IDS_WB_COLORS_VIRIDIS"},
                                                            {"cividis", L"IDS_WB_COLORS_CIVIDIS"},
                                                            {"blue-red", L"IDS_WB_COLORS_BLUE_RED"},
                                                            {"grey", L"IDS_WB_COLORS_GREY"}};
    for (const auto& [name, key] : names)
        addChoice(*colors, *scales, message(key), options_.colorScale == name,
                  [this, scale = std::string(name)] {
                      options_.colorScale = scale;
                      showAgain();
                  });
    QAction* bands = menu->addAction(message(L"IDS_WB_COLOR_BANDS"));
    bands->setCheckable(true);
    bands->setChecked(options_.bands);
    connect(bands, &QAction::triggered, this, [this](bool on) {
        options_.bands = on;
        showAgain();
    });
    QMenu* edges = menu->addMenu(message(L"IDS_WB_EDGES"));
    auto* kinds = new QActionGroup(edges);
    const std::pair<PictureEdges, const wchar_t*> edgeKinds[] = {
        {PictureEdges::None, L"IDS_WB_EDGES_NONE"},
        {PictureEdges::Features, L"IDS_WB_EDGES_FEATURES"},
        {PictureEdges::Mesh, L"IDS_WB_EDGES_MESH"}};
    for (const auto& [kind, key] : edgeKinds)
        addChoice(*edges, *kinds, message(key), options_.edges == kind, [this, wanted = kind] {
            options_.edges = wanted;
            showAgain();
        });
    QAction* outline = menu->addAction(message(L"IDS_WB_DEFORMATION_OUTLINE"));
    outline->setCheckable(true);
    outline->setChecked(options_.outline);
    connect(outline, &QAction::triggered, this, [this](bool on) {
        options_.outline = on;
        showAgain();
    });
}

void MainWindow::addResultsMenu() {
    QMenu* menu = menuBar()->addMenu(message(L"IDS_WB_RESULTS_MENU"));
    for (const ModuleDialog& dialog : moduleDialogs())
        menu->addAction(message(dialog.menuKey), this, [this, &dialog] {
            tellPlace();
            if (std::wstring_view(dialog.className) == kSafetyGraphClass)
                openSafetyGraph(dialog);
            else
                openModuleDialog(dialog, *document_, {});
        });
}

/// Of several histories the user chooses one.
void MainWindow::openSafetyGraph(const ModuleDialog& dialog) {
    QStringList names;
    for (const std::wstring& name : safetyHistoryNames(*document_))
        names << qText(name);
    QString chosen = names.isEmpty() ? QString() : names.front();
    bool isChosen = true;
    if (names.size() > 1)
        chosen = QInputDialog::getItem(this, message(L"IDS_VEXA_CAE_GRAPH_FOS"),
                                       message(L"IDS_WB_HISTORY_NAME"), names, 0, false, &isChosen);
    if (isChosen && document_) openModuleDialog(dialog, *document_, wideText(chosen));
}

void MainWindow::addFatigueMenu() {
    const auto* pool = document_->database().Pool<DPoolFatg>();
    const std::vector<ItrKey> all = pool->GetKeyList();
    if (all.empty()) return;
    QMenu* menu = menuBar()->addMenu(message(L"IDS_WB_FATIGUE"));
    if (all.size() > 1)
        menu->addAction(message(L"IDS_WB_FATIGUE_ALL"), this, [this, all] { runFatigueOf(all); });
    for (const ItrKey key : all)
        menu->addAction(qText(pool->GetAtNU(key).name).replace("&", "&&"), this,
                        [this, key] { runFatigueOf({key}); });
}

void MainWindow::addPickMenu() {
    QMenu* menu = menuBar()->addMenu(message(L"IDS_WB_PICK"));
    auto* kinds = new QActionGroup(menu);
    addChoice(*menu, *kinds, message(L"IDS_WB_PICK_NODES"), view_->pickKind() == PickKind::Node,
              [this] { view_->setPickKind(PickKind::Node); });
    addChoice(*menu, *kinds, message(L"IDS_WB_PICK_ELEMENTS"), view_->pickKind() == PickKind::Element,
              [this] { view_->setPickKind(PickKind::Element); });
    menu->addSeparator();
    menu->addAction(message(L"IDS_WB_CLEAR_SELECTION"), this, [this] { clearSelection(); });
}

void MainWindow::addUnitsMenu() {
    QMenu* menu = menuBar()->addMenu(message(L"IDS_WB_UNITS"));
    auto* systems = new QActionGroup(menu);
    std::vector<UnitSystem> usual = {{"N", "mm"},   {"N", "m"},    {"kN", "m"},   {"kN", "mm"},  {"MN", "m"},
                                     {"kgf", "cm"}, {"tonf", "m"}, {"lbf", "in"}, {"kips", "ft"}};
    if (std::ranges::find(usual, host_.databaseUnits()) == usual.end())
        usual.insert(usual.begin(), host_.databaseUnits());
    if (std::ranges::find(usual, host_.currentUnits()) == usual.end())
        usual.insert(usual.begin(), host_.currentUnits());
    for (const UnitSystem& system : usual)
        addChoice(*menu, *systems, QString::fromStdString(system.force + ", " + system.length),
                  host_.currentUnits() == system, [this, system] { setUnits(system); });
}

void MainWindow::addLanguageMenu() {
    QMenu* menu = menuBar()->addMenu(message(L"IDS_WB_LANGUAGE"));
    auto* languages = new QActionGroup(menu);
    // Each in its own language, so that whoever cannot read the others finds it.
    addChoice(*menu, *languages, "&English", host_.language() == Language::English,
              [this] { setLanguage(Language::English); });
    addChoice(*menu, *languages, QString::fromUtf8("한국어(&K)"), host_.language() == Language::Korean,
              [this] { setLanguage(Language::Korean); });
}

void MainWindow::fillDeformation() {
    const QSignalBlocker quiet(deformation_);
    deformation_->clear();
    deformation_->addItems(
        {message(L"IDS_WB_DEFORMATION_OFF"), message(L"IDS_WB_DEFORMATION_AUTO"), "1", "10", "100", "1000"});
    switch (options_.deformation) {
    case DisplayOptions::Deformation::Off:
        deformation_->setCurrentIndex(0);
        break;
    case DisplayOptions::Deformation::Automatic:
        deformation_->setCurrentIndex(1);
        break;
    case DisplayOptions::Deformation::Factor:
        deformation_->setEditText(QString::number(options_.factor));
    }
}

} // namespace workbench::desktop
