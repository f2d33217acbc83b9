#include "framework/text/CodePage.h"
#include "framework/windows/desktop/DeskScript.h"
#include "module/entry/VEXAGpsDialog.h"
#include "workbench/cli/CommandLine.h"
#include "workbench/cli/ResultChoice.h"
#include "workbench/desktop/Appearance.h"
#include "workbench/desktop/ChartExport.h"
#include "workbench/desktop/MainWindow.h"
#include "workbench/desktop/ModuleDialogs.h"
#include "workbench/desktop/ScreenDescription.h"
#include "workbench/picture/DrawingDisplay.h"
#include "workbench/picture/ProbeWindow.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace {

using namespace workbench;
using namespace workbench::desktop;

using enum cli::ExitCode;

struct Options {
    cli::ResultChoice choice; ///< model, and what is shown of it
    std::string dialog;
    std::string argument;
    std::string script;
    std::string screenshot;
    std::string chart;
    std::string describe;
    std::string language = "en";
    std::string edition = "A";
    std::string units;
    std::string programFolder;
    std::vector<int> size{1280, 800};

    /// Nobody sits before the screen.
    bool endsByItself() const { return !screenshot.empty() || !chart.empty(); }
};

constexpr const char* kDescription =
    "vexa-desktop shows a model with its results and opens the dialogs of VEXA_gps.";
constexpr const char* kFooter =
    "Without a model the window opens empty; File opens one or imports a project deck.\n"
    "--screenshot needs no display: it writes a picture of the dialog, or of the main window, and ends;\n"
    "--chart does the same with the chart in the dialog.\n"
    "Exit codes: 0 done, 1 wrong input or failure (the standard error output says why), 2 wrong command "
    "line.";

int fail(const std::string& message) {
    std::fprintf(stderr, "error: %s\n", message.c_str());
    return kFailed;
}

void addOptions(cli::CommandLine& program, Options& options) {
    program.option("model", options.choice.model, "Document (.wkm)");
    program.option("--dialog", options.dialog, "Open this dialog, by its class name");
    program.option("--argument", options.argument, "Text that the dialog takes, such as a name");
    program.option("--do", options.script, "Script of user actions to do (docs/desk-script.md)");
    program.option("--screenshot", options.screenshot, "Write a picture (.png) and end");
    program.option("--chart", options.chart,
                   "Write the chart of the dialog (.png, .pdf, .svg or .csv) in the size of --size, and end");
    program.option("--analysis", options.choice.analysis, "Show a result of this analysis, by name");
    program.option("--case", options.choice.caseName, "Case by name (default: the only one)");
    program.option("--step", options.choice.step, "Step by name or number (default: the last)");
    program.option("--component", options.choice.component, "Component by identifier or name");
    program.option("--lang", options.language, "Language of texts").oneOf({"en", "ko"});
    program.option("--units", options.units, "Unit system for display, such as kN,m")
        .checked(unitSystemFault, "FORCE,LENGTH");
    program.option("--edition", options.edition, "Edition of the host")
        .oneOf({"A", "B", "C", "D"})
        .showsDefault();
    program.option("--program-folder", options.programFolder,
                   "Folder that holds \"64bit Solver\" (default: the program's own)");
    program.option("--size", options.size, "Width and height of the main window, such as 1280x800")
        .inParts(2, 'x')
        .between(50, 8192);
    program.option("--describe", options.describe,
                   "Keep a list of what is on the screen, and where, in this file");
}

/// What does not go together, or names nothing; empty when all is well.
std::string usageError(const Options& options) {
    if (!options.dialog.empty() && !findModuleDialog(framework::fromUtf8(options.dialog))) {
        std::string known;
        for (const ModuleDialog& dialog : moduleDialogs())
            known += " " + framework::toUtf8(dialog.className);
        return "there is no dialog \"" + options.dialog + "\"; there are" + known;
    }
    if (!options.dialog.empty() && options.choice.model.empty()) return "--dialog needs a model";
    if (!options.argument.empty() && options.dialog.empty()) return "--argument needs --dialog";
    if (!options.choice.analysis.empty() && options.choice.model.empty()) return "--analysis needs a model";
    if (!options.choice.component.empty() && options.choice.analysis.empty())
        return "--component needs --analysis";
    if (!options.screenshot.empty() && !options.screenshot.ends_with(".png"))
        return "the screenshot's name must end in .png, which \"" + options.screenshot + "\" does not";
    if (!options.chart.empty() && options.dialog.empty()) return "--chart needs --dialog";
    if (!options.chart.empty() && !options.screenshot.empty())
        return "--chart and --screenshot do not go together";
    return {};
}

/// The screen that the toolkit draws on; a sentence when there is none.
std::string chooseScreen(const Options& options) {
    if (options.endsByItself()) {
        ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
        return {};
    }
    if (std::getenv("QT_QPA_PLATFORM") || std::getenv("WAYLAND_DISPLAY")) return {};
    const char* display = std::getenv("DISPLAY");
    if (!display || !*display)
        return "there is no display: set DISPLAY, or ask for a picture with --screenshot";
    if (!displayAnswers(display)) return std::string("the display ") + display + " does not answer";
    return {};
}

Result<std::vector<framework::DeskStep>> readScript(const std::string& path) {
    if (path.empty()) return std::vector<framework::DeskStep>();
    std::ifstream file(path, std::ios::binary);
    if (!file) return Error{"cannot read the script " + path};
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    framework::DeskScript script = framework::parseDeskScript(framework::fromUtf8(text));
    if (!script.problems.empty()) return Error{path + ": " + framework::toUtf8(script.problems.front())};
    return std::move(script.steps);
}

Result<void> savePicture(const QImage& picture, const std::string& path) {
    QSaveFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::WriteOnly) || !picture.save(&file, "PNG") || !file.commit())
        return Error{"cannot write the picture " + path + ": " + file.errorString().toStdString()};
    return {};
}

class Program {
  public:
    explicit Program(Options options)
        : options_(std::move(options)) {}

    int run(QApplication& application, std::vector<framework::DeskStep> steps) {
        setAppearance(application);
        DesktopOutput output;
        WorkbenchHost host(sessionOptions(), &output);
        QtDesktop desk;
        desk.messageListener = [&](const std::wstring& text) { output.showNote(framework::toUtf8(text)); };
        WindowFrame frame(L"VEXA");
        Init_VEXA_gpsdll();
        MainWindow window(host, output, desk, frame);
        window.resize(options_.size[0], options_.size[1]);
        desk_ = &desk;
        window_ = &window;
        if (const auto opened = openModel(); !opened) return fail(opened.error().message);
        window.show();
        desk.flush();
        std::optional<ScreenDescription> description;
        if (!options_.describe.empty()) description.emplace(options_.describe);
        if (!options_.endsByItself()) {
            QTimer::singleShot(0, [&] { openDialog(std::move(steps), {}); });
            return QApplication::exec() == 0 ? kDone : kFailed;
        }
        openDialog(std::move(steps), [&] { options_.chart.empty() ? shoot() : saveChart(); });
        return exitCode_;
    }

  private:
    SessionOptions sessionOptions() const {
        SessionOptions session;
        session.edition = static_cast<Edition>(options_.edition[0] - 'A');
        session.language = options_.language == "ko" ? Language::Korean : Language::English;
        session.programFolder = options_.programFolder;
        return session;
    }

    Result<void> openModel() {
        if (options_.choice.model.empty()) return {};
        if (auto opened = window_->open(options_.choice.model, parseUnitSystem(options_.units)); !opened)
            return opened;
        if (!options_.chart.empty()) return {}; // nobody sees the contour
        if (options_.choice.analysis.empty()) {
            window_->showFirstResult();
        } else if (options_.choice.component.empty()) {
            const auto step = options_.choice.findStep(*window_->document());
            if (!step) return step.error();
            window_->showFirstResultOf(**step);
        } else {
            const auto table = options_.choice.find(*window_->document());
            if (!table) return table.error();
            window_->showResult(**table);
        }
        return {};
    }

    /// Does the script in the dialog, or in the main window without one.
    void openDialog(std::vector<framework::DeskStep> steps, std::function<void()> atEnd) {
        const bool shooting = static_cast<bool>(atEnd);
        if (steps.empty() && options_.dialog.empty() && !shooting) return;
        desk_->play(std::move(steps), shooting, std::move(atEnd));
        if (!options_.dialog.empty())
            openModuleDialog(*findModuleDialog(framework::fromUtf8(options_.dialog)), *window_->document(),
                             framework::fromUtf8(options_.argument));
        desk_->finishPlaying();
        for (const std::wstring& problem : desk_->problems()) {
            exitCode_ = kFailed;
            fail(options_.script + ": " + framework::toUtf8(problem));
        }
    }

    void shoot() {
        QCoreApplication::processEvents();
        QWidget* shown = options_.dialog.empty() ? window_ : desk_->widgetOf(GetActiveWindow());
        if (!shown) {
            exitCode_ = fail("the dialog " + options_.dialog + " did not open");
            return;
        }
        if (const auto saved = savePicture(framedPicture(*shown), options_.screenshot); !saved)
            exitCode_ = fail(saved.error().message);
    }

    void saveChart() {
        QCoreApplication::processEvents();
        QWidget* dialog = desk_->widgetOf(GetActiveWindow());
        const auto plots = dialog ? dialog->findChildren<QCustomPlot*>() : QList<QCustomPlot*>();
        auto* chart = plots.isEmpty() ? nullptr : dynamic_cast<ChartWidget*>(plots.front());
        if (!chart) {
            exitCode_ = fail("the dialog " + options_.dialog + " did not open or has no chart");
            return;
        }
        const tqx::frx::ChartState* state = chart->state();
        if (!state ||
            std::ranges::all_of(state->series, [](const auto& series) { return series.y.empty(); })) {
            exitCode_ =
                fail("the chart of the dialog " + options_.dialog + " has no values; nothing was written");
            return;
        }
        chart->resize(options_.size[0], options_.size[1]);
        const QString problem = exportChart(*chart, QString::fromStdString(options_.chart));
        if (!problem.isEmpty()) exitCode_ = fail(problem.toStdString());
    }

    Options options_;
    QtDesktop* desk_ = nullptr;
    MainWindow* window_ = nullptr;
    int exitCode_ = kDone;
};

int runProgram(int argc, char** argv) {
    Options options;
    cli::CommandLine program("vexa-desktop", VEXA_VERSION, kDescription);
    program.footer(kFooter);
    addOptions(program, options);
    if (const auto done = program.parse(argc, argv)) return *done;
    if (const std::string wrong = usageError(options); !wrong.empty()) {
        fail(wrong);
        return kUsage;
    }
    if (const std::string missing = chooseScreen(options); !missing.empty()) return fail(missing);
    auto steps = readScript(options.script);
    if (!steps) return fail(steps.error().message);
    // Tried in a copy of this process, so before the toolkit has threads.
    if (options.chart.empty())
        if (const auto drawable = drawingDisplay(&canDrawOn); !drawable)
            return fail(drawable.error().message);

    // Without a display the toolkit warns of what a screen would do.
    if (options.endsByItself())
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            if (type == QtCriticalMsg || type == QtFatalMsg)
                std::fprintf(stderr, "%s\n", text.toUtf8().constData());
        });
    int count = 1;
    QApplication application(count, argv);
    QApplication::setApplicationDisplayName("VEXA");
    Program running(std::move(options));
    return running.run(application, std::move(*steps));
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return runProgram(argc, argv);
    } catch (const std::bad_alloc&) {
        return fail("there is not enough memory for this");
    } catch (const std::exception& error) {
        return fail(error.what());
    }
}

#if defined(__SANITIZE_ADDRESS__)
/// The toolkit's connections to the desktop's message bus and to its fonts last as long as the process.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libdbus-1\nleak:libfontconfig\n";
}
#endif
