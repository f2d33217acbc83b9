#include "workbench/desktop/MainWindow.h"

#include "framework/text/CodePage.h"
#include "framework/text/Format.h"
#include "host/MSGFunction.h"
#include "workbench/import/ImportProject.h"
#include "workbench/session/FatigueRun.h"

#include <algorithm>
#include <cmath>

namespace workbench::desktop {
namespace {

CRect screenRect(const QWidget& widget) {
    const QPoint corner = widget.mapToGlobal(QPoint(0, 0));
    return {corner.x(), corner.y(), corner.x() + widget.width(), corner.y() + widget.height()};
}

/// What a person most likely wants to see of a step.
unsigned firstComponent(const std::vector<unsigned>& ids) {
    for (const unsigned wanted : {312114U, 412114U, 432114U, 422114U, 482114U, 104U})
        if (std::ranges::find(ids, wanted) != ids.end()) return wanted;
    return ids.empty() ? 0 : ids.front();
}

std::wstring nameOf(const std::filesystem::path& path) {
    return framework::fromUtf8(path.filename().string());
}

} // namespace

MainWindow::MainWindow(WorkbenchHost& host, DesktopOutput& output, QtDesktop& desk, WindowFrame& frame)
    : host_(host)
    , output_(output)
    , desk_(desk)
    , frame_(frame)
    , view_(new ContourView(this)) {
    setCentralWidget(view_);
    makeDocks();
    output_.attach(pane_, bar_);
    output_.treeChanged = [this] { treeChanged(); };
    output_.resultDisplayed = [this](CVResult* table) {
        if (table) showPlace(placeOf(*table), true);
    };
    view_->picked = [this](std::optional<std::uint32_t> index, bool adds) { picked(index, adds); };
    view_->failed = [this](const std::string& text) { output_.showError(text); };
    tree_->chosen = [this](const ResultPlace& place) { showPlace(place, true); };
    view_->installEventFilter(this);
    desk_.adopt(frame_.mainWindow().m_hWnd, *this);
    translate();
}

MainWindow::~MainWindow() {
    closeDocument();
    output_.attach(nullptr, nullptr);
    output_.treeChanged = nullptr;
    output_.resultDisplayed = nullptr;
}

void MainWindow::makeDocks() {
    tree_ = new ResultsTree(this);
    treeDock_ = new QDockWidget(this);
    treeDock_->setObjectName("results");
    treeDock_->setWidget(tree_);
    pane_ = new QPlainTextEdit(this);
    pane_->setReadOnly(true);
    pane_->setMaximumBlockCount(10000);
    outputDock_ = new QDockWidget(this);
    outputDock_->setObjectName("output");
    outputDock_->setWidget(pane_);
    for (QDockWidget* dock : {treeDock_, outputDock_})
        dock->setFeatures(QDockWidget::DockWidgetMovable);
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    addDockWidget(Qt::LeftDockWidgetArea, treeDock_);
    addDockWidget(Qt::BottomDockWidgetArea, outputDock_);
    resizeDocks({treeDock_}, {280}, Qt::Horizontal);
    resizeDocks({outputDock_}, {90}, Qt::Vertical);

    readout_ = new QLabel(this);
    bar_ = new QProgressBar(this);
    bar_->setFixedWidth(320);
    statusBar()->addWidget(readout_, 1);
    statusBar()->addPermanentWidget(bar_);
    statusBar()->setSizeGripEnabled(false);

    tools_ = addToolBar("tools");
    tools_->setMovable(false);
    deformationLabel_ = new QLabel(tools_);
    deformation_ = new QComboBox(tools_);
    deformation_->setEditable(true);
    deformation_->setInsertPolicy(QComboBox::NoInsert);
    deformation_->setCompleter(nullptr);
    deformation_->setMinimumWidth(110);
    connect(deformation_->lineEdit(), &QLineEdit::returnPressed, this, [this] { readDeformation(); });
    connect(deformation_, &QComboBox::activated, this, [this] { readDeformation(); });
    tools_->addWidget(deformationLabel_);
    tools_->addWidget(deformation_);
}

Result<void> MainWindow::open(const std::filesystem::path& path, const UnitSystem& units) {
    auto opened = Document::open(path);
    if (!opened) return opened.error();
    const auto& stored = (*opened)->database().units();
    const UnitSystem own{stored.force, stored.length};
    if (!isKnown(own))
        return Error{path.string() + " is in " + own.force + " and " + own.length +
                     ", which this program does not know"};
    closeDocument();
    document_ = std::move(*opened);
    host_.setDatabaseUnits(own);
    if (!units.force.empty()) host_.setCurrentUnits(units);
    frame_.showView(*document_->GetActiveView());
    desk_.adopt(document_->GetActiveView()->m_hWnd, *view_);
    document_->SetPostMode(0);
    tree_->show(document_.get(), host_.language());
    tellPlace();
    translate();
    return {};
}

void MainWindow::closeDocument() {
    view_->setResult(nullptr, false);
    tree_->show(nullptr, host_.language());
    marks_.clear();
    readout_->clear();
    document_.reset(); // its dialogs close with it
}

void MainWindow::showFirstResult() {
    for (CPOHAnalysis* analysis : document_->results().GetChildList())
        for (CPOHCase* resultCase : analysis->GetChildList()) {
            const auto& steps = resultCase->GetVCaseList();
            if (!steps.empty() && !steps.back()->GetResultIds().empty())
                return showFirstResultOf(*steps.back());
        }
}

void MainWindow::showFirstResultOf(CPOHVCase& step) {
    if (CVResult* table = step.GetVResult(firstComponent(step.GetResultIds()))) showResult(*table);
}

void MainWindow::showResult(CVResult& table) {
    showPlace(placeOf(table), false);
}

/// Takes a copy of the place: that of the result that is shown goes with it.
void MainWindow::showPlace(ResultPlace place, bool keepView) {
    CVResult* table = document_ ? tableAt(*document_, place) : nullptr;
    if (!table) return;
    const bool first = !view_->result();
    auto faces = first ? nullptr : view_->result()->drawing().faces();
    auto shown =
        ShownResult::make(host_, *document_, *table, options_, std::move(faces), ContourView::textWidth());
    if (!shown) {
        output_.showError(shown.error().message);
        return;
    }
    view_->setResult(std::move(*shown), keepView && !first);
    tree_->choose(place);
    if (first) makeMenus();
}

void MainWindow::showAgain() {
    if (view_->result()) showPlace(view_->result()->place(), true);
}

/// Called while a handler runs: the tree is read when control is back.
void MainWindow::treeChanged() {
    if (std::exchange(treeOutdated_, true)) return;
    QTimer::singleShot(0, this, [this] {
        treeOutdated_ = false;
        tree_->show(document_.get(), host_.language());
    });
}

void MainWindow::setLanguage(Language language) {
    host_.setLanguage(language);
    tree_->show(document_.get(), language);
    translate();
    showAgain();
}

void MainWindow::setUnits(const UnitSystem& units) {
    host_.setCurrentUnits(units);
    showAgain();
}

void MainWindow::readDeformation() {
    bool isNumber = false;
    const double factor = QLocale::c().toDouble(deformation_->currentText(), &isNumber);
    const int index = deformation_->findText(deformation_->currentText());
    if (index == 0) {
        options_.deformation = DisplayOptions::Deformation::Off;
    } else if (index == 1) {
        options_.deformation = DisplayOptions::Deformation::Automatic;
    } else if (isNumber && std::isfinite(factor)) {
        options_.deformation = DisplayOptions::Deformation::Factor;
        options_.factor = factor;
    } else {
        fillDeformation(); // not understood: what holds stays
        return;
    }
    showAgain();
}

void MainWindow::picked(std::optional<std::uint32_t> index, bool adds) {
    if (!document_) return;
    const bool nodes = view_->pickKind() == PickKind::Node;
    if (!adds) {
        document_->ClearSelectBuffer(0);
        marks_.clear();
    }
    ShownResult& shown = *view_->result();
    const auto kind = nodes ? PictureMark::Kind::Node : PictureMark::Kind::Element;
    if (index) {
        const auto keys = nodes ? shown.mesh().nodeKeys : shown.mesh().elementKeys;
        const std::vector<ItrKey> one{keys[*index]};
        const bool known = std::ranges::any_of(
            marks_, [&](const PictureMark& mark) { return mark.kind == kind && mark.index == *index; });
        if (!known) {
            document_->AddToSelBuffer(nodes ? one : std::vector<ItrKey>(),
                                      nodes ? std::vector<ItrKey>() : one);
            marks_.push_back({*index, shown.labelOf(kind, *index), kind});
        }
    }
    for (PictureMark& mark : marks_) // the older ones may have the values of another result
        mark.label = shown.labelOf(mark.kind, mark.index);
    readout_->setText(index ? QString::fromStdString(shown.readoutOf(kind, *index)) : QString());
    view_->setMarks(marks_);
}

void MainWindow::clearSelection() {
    document_->ClearSelectBuffer(0);
    marks_.clear();
    readout_->clear();
    view_->setMarks({});
}

int MainWindow::ask(const std::wstring& text, unsigned style) {
    return desk_.ShowMessageBox(frame_.mainWindow().m_hWnd, text, L"VEXA", style);
}

void MainWindow::report(const std::string& text) {
    output_.showError(text);
    ask(framework::fromUtf8(text), MB_OK | MB_ICONERROR);
}

bool MainWindow::mayClose() {
    if (!document_ || !document_->database().isModified()) return true;
    const int answer = ask(framework::formatWide(CMSGFunction::GetValue(L"IDS_WB_SAVE_CHANGES").c_str(),
                                                 nameOf(document_->path())),
                           MB_YESNOCANCEL | MB_ICONQUESTION);
    if (answer == IDYES) return save();
    return answer == IDNO;
}

void MainWindow::chooseAndOpen() {
    const QString path = QFileDialog::getOpenFileName(this, {}, {}, message(L"IDS_WB_MODELS") + " (*.wkm)");
    if (path.isEmpty() || !mayClose()) return;
    if (const auto opened = open(path.toStdString(), {}); !opened) return report(opened.error().message);
    showFirstResult();
}

void MainWindow::chooseAndImport() {
    const QString deck =
        QFileDialog::getOpenFileName(this, {}, {}, message(L"IDS_WB_PROJECT_DECKS") + " (*.toml)");
    if (deck.isEmpty()) return;
    const auto proposed = std::filesystem::path(deck.toStdString()).replace_extension(".wkm");
    QString model = QFileDialog::getSaveFileName(this, {}, QString::fromStdString(proposed.string()),
                                                 message(L"IDS_WB_MODELS") + " (*.wkm)");
    if (model.isEmpty() || !mayClose()) return;
    if (!model.endsWith(".wkm")) model += ".wkm";
    WorkProgress& progress = output_.progress();
    progress.Start();
    const auto made =
        importProject(deck.toStdString(), model.toStdString(), [&](const std::string& what, double fraction) {
            progress.SetText(framework::fromUtf8(what));
            progress.setFraction(fraction);
        });
    progress.Close();
    if (!made) return report(made.error().message);
    for (const std::string& warning : made->warnings)
        output_.showWarning(warning);
    if (const auto opened = open(model.toStdString(), {}); !opened) return report(opened.error().message);
    showFirstResult();
}

bool MainWindow::save() {
    const auto saved = document_->save();
    if (!saved) {
        report(saved.error().message);
        return false;
    }
    output_.showNote(framework::toUtf8(framework::formatWide(
        CMSGFunction::GetValue(L"IDS_WB_SAVED").c_str(), framework::fromUtf8(document_->path().string()))));
    return true;
}

void MainWindow::savePicture() {
    QString path = QFileDialog::getSaveFileName(this, {}, {}, message(L"IDS_WB_PICTURES") + " (*.png *.svg)");
    if (path.isEmpty()) return;
    if (!isPictureName(path.toStdString())) path += ".png";
    const auto written = writeContour(view_->pictureAsSeen(), path.toStdString());
    if (!written) return report(written.error().message);
    output_.showNote(framework::toUtf8(
        framework::formatWide(CMSGFunction::GetValue(L"IDS_WB_SAVED").c_str(), wideText(path))));
}

void MainWindow::runFatigueOf(const std::vector<ItrKey>& definitions) {
    for (const FatigueRunReport& run : runFatigue(host_, *document_, definitions))
        if (run.succeeded)
            output_.showNote("\"" + run.definition + "\" -> \"" + run.resultAnalysis + "\"");
        else
            output_.showError("the fatigue run \"" + run.definition + "\" failed" +
                              (run.cause.empty() ? "" : ": " + run.cause));
    treeChanged();
}

/// The frame's windows stand where ours do: dialogs are placed by them.
void MainWindow::tellPlace() {
    frame_.place(screenRect(*this), screenRect(*view_));
}

void MainWindow::closeEvent(QCloseEvent* event) {
    const bool busy = desk_.isInLoop() || !isEnabled();
    if (busy || !mayClose())
        event->ignore();
    else
        QCoreApplication::exit(0); // with all dialogs that are open
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    tellPlace();
}

void MainWindow::moveEvent(QMoveEvent* event) {
    QMainWindow::moveEvent(event);
    tellPlace();
}

bool MainWindow::eventFilter(QObject* object, QEvent* event) {
    if (object == view_ && event->type() == QEvent::Resize) tellPlace();
    return QMainWindow::eventFilter(object, event);
}

} // namespace workbench::desktop
