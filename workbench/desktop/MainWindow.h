#pragma once

#include "workbench/desktop/ContourView.h"
#include "workbench/desktop/DesktopOutput.h"
#include "workbench/desktop/QtDesktop.h"
#include "workbench/desktop/ResultsTree.h"
#include "workbench/session/WindowFrame.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace workbench::desktop {

struct ModuleDialog;

/// The program's window: results, the model with one of them, messages, and menus. It stands for the frame's
/// main window and, with its view, for the view of the open document.
class MainWindow final : public QMainWindow {
  public:
    /// All must outlive the window.
    MainWindow(WorkbenchHost& host, DesktopOutput& output, QtDesktop& desk, WindowFrame& frame);
    ~MainWindow() override;

    /// Opens a model in place of the one that is open. `units`: for display; empty: the document's own.
    Result<void> open(const std::filesystem::path& path, const UnitSystem& units);
    Document* document() { return document_.get(); }
    ContourView& view() { return *view_; }
    ResultsTree& tree() { return *tree_; }

    /// Shows a table of the document; one that cannot be shown is reported.
    void showResult(CVResult& table);
    /// Of the first analysis that has results: an equivalent stress or the total displacement where there is
    /// one.
    void showFirstResult();
    void showFirstResultOf(CPOHVCase& step);

    void setLanguage(Language language);
    void setUnits(const UnitSystem& units);

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    // Menus.cpp
    void translate();
    void makeMenus();
    void addFileMenu();
    void addViewMenu();
    void addResultsMenu();
    void openSafetyGraph(const ModuleDialog& dialog);
    void addFatigueMenu();
    void addPickMenu();
    void addUnitsMenu();
    void addLanguageMenu();
    void fillDeformation();

    void makeDocks();
    void closeDocument();
    bool mayClose();
    void chooseAndOpen();
    void chooseAndImport();
    bool save();
    void savePicture();
    void runFatigueOf(const std::vector<ItrKey>& definitions);
    void report(const std::string& message);
    void treeChanged();
    void showPlace(ResultPlace place, bool keepView);
    void showAgain();
    void picked(std::optional<std::uint32_t> index, bool adds);
    void clearSelection();
    void readDeformation();
    void tellPlace();
    int ask(const std::wstring& text, unsigned style);

    WorkbenchHost& host_;
    DesktopOutput& output_;
    QtDesktop& desk_;
    WindowFrame& frame_;
    std::unique_ptr<Document> document_;
    DisplayOptions options_;
    std::vector<PictureMark> marks_;
    ContourView* view_;
    ResultsTree* tree_;
    QDockWidget* treeDock_;
    QDockWidget* outputDock_;
    QPlainTextEdit* pane_;
    QProgressBar* bar_;
    QLabel* readout_;
    QToolBar* tools_;
    QLabel* deformationLabel_;
    QComboBox* deformation_;
    bool treeOutdated_ = false;
};

/// The text of a message key in the host's language.
QString message(const wchar_t* key);

} // namespace workbench::desktop
