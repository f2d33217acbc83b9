#include "workbench/session/WorkbenchHost.h"

#include "framework/files/PathMap.h"
#include "framework/text/CodePage.h"
#include "framework/windows/desktop/ScriptedDesk.h"
#include "host/FileCtrl.h"
#include "host/GpsLinearCombCalculator.h"
#include "host/dialogs/Notifications.h"
#include "module/entry/VEXAGpsDialog.h"
#include "workbench/session/Document.h"
#include "workbench/session/Messages.h"

#include <algorithm>
#include <cstdlib>
#include <system_error>

namespace workbench {
namespace {

std::filesystem::path ownFolder() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::filesystem::current_path(error) : program.parent_path();
}

ModelDatabase& databaseOf(CQMDocBase& doc) {
    return static_cast<Document&>(doc).database();
}

/// The table holds every unit of a known system.
int positionOf(const std::vector<std::string>& names, const std::string& name) {
    return static_cast<int>(std::find(names.begin(), names.end(), name) - names.begin());
}

} // namespace

WorkbenchHost::WorkbenchHost(SessionOptions options, SessionOutput* output)
    : options_(std::move(options))
    , output_(output ? *output : terminal_)
    , systems_{{"N", "mm"}}
    , previous_(RegisterHostServices(this)) {
    if (options_.programFolder.empty()) options_.programFolder = ownFolder();
    IQMProgressBar::m_pInstance = &progress();
    framework::scriptedDesk().setMessageListener(
        [this](const framework::ShownMessage& shown) { output_.showNote(framework::toUtf8(shown.text)); });
    setLanguage(options_.language);
    Init_VEXA_gpsdll();
}

WorkbenchHost::~WorkbenchHost() {
    framework::scriptedDesk().setMessageListener({});
    IQMProgressBar::m_pInstance = nullptr;
    RegisterHostServices(previous_);
}

std::wstring WorkbenchHost::GetProgramPath() const {
    return framework::widePath(options_.programFolder) + L"/";
}

std::wstring WorkbenchHost::GetTestEnvValue(std::wstring_view name) const {
    const char* value = std::getenv(framework::toUtf8(name).c_str());
    return value ? framework::fromUtf8(value) : std::wstring();
}

std::wstring WorkbenchHost::GetMessageText(std::wstring_view key) const {
    return messageText(key, options_.language);
}

void WorkbenchHost::ErrorOut(const std::wstring& text) {
    errors_.push_back(framework::toUtf8(text));
    output_.showError(errors_.back());
}

void WorkbenchHost::WarningOut(const std::wstring& text) {
    output_.showWarning(framework::toUtf8(text));
}

int WorkbenchHost::ShowMessageBox(const std::wstring& text, unsigned style) {
    errors_.push_back(framework::toUtf8(text));
    const HWND active = GetActiveWindow();
    return framework::desktop().ShowMessageBox(active, text, L"VEXA_gps", style);
}

void WorkbenchHost::setLanguage(Language language) {
    options_.language = language;
    translateDataExchange(language);
    NotifyLanguageChanged();
}

double WorkbenchHost::GetUnitFactor(int kind, int index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= systems_.size()) return 1;
    return unitFactor(kind, systems_[0], systems_[static_cast<std::size_t>(index)]);
}

void WorkbenchHost::setDatabaseUnits(const UnitSystem& system) {
    systems_ = {system};
    current_ = 0;
    NotifyUnitChanged(nullptr);
}

void WorkbenchHost::setCurrentUnits(const UnitSystem& system) {
    systems_.resize(1);
    current_ = system == systems_[0] ? 0 : 1;
    if (current_ == 1) systems_.push_back(system);
    NotifyUnitChanged(nullptr);
}

int WorkbenchHost::GetUnitSystemForce() const {
    return positionOf(forceUnits(), currentUnits().force);
}

int WorkbenchHost::GetUnitSystemLength() const {
    return positionOf(lengthUnits(), currentUnits().length);
}

void WorkbenchHost::ShowMeshSet(CQMDocBase& doc, ItrKey set, bool show) {
    static_cast<Document&>(doc).showMeshSet(set, show);
}

std::wstring WorkbenchHost::GetViewTitle(const CQMViewBase& view) const {
    return CFileCtrl::GetFileName(view.GetDocument()->GetFullPathNameW());
}

int WorkbenchHost::BeginTransaction(CQMDocBase& doc, const std::wstring& title) {
    return databaseOf(doc).beginTransaction(title);
}

int WorkbenchHost::CommitTransaction(CQMDocBase& doc) {
    return databaseOf(doc).commitTransaction();
}

void WorkbenchHost::RollbackTransaction(CQMDocBase& doc) {
    databaseOf(doc).rollbackTransaction();
}

int WorkbenchHost::GenerateSubCombResult(CQMDocBase& doc, CQMViewBase*, const T_COMB_ENVL_RESULT_D& request,
                                         bool registerSet) {
    lastCombination_.reset();
    auto& document = static_cast<Document&>(doc);
    const auto checked = combinationRequest(document.results(), request);
    Result<CombinationReport> made =
        checked ? CombinationReport() : Result<CombinationReport>(checked.error());
    if (checked) {
        progress().Start();
        progress().SetText(CMSGFunction::GetValue(L"IDS_QMGPS_RESULT_COMBINATION"));
        made =
            combineResults(document.database(), document.results(), document.path().parent_path(), *checked,
                           registerSet, [&](double fraction) { progress().setFraction(fraction); });
        progress().Close();
    }
    if (!made) {
        ErrorOut(framework::fromUtf8(made.error().message));
        return 0;
    }
    for (const std::string& warning : made->warnings)
        output_.showWarning(warning);
    lastCombination_ = std::move(*made);
    output_.resultsChanged(doc);
    if (registerSet) NotifyPostUpdate(doc.GetActiveView(), PostUpdate::Tree);
    return 1;
}

int WorkbenchHost::ExecuteCommand(CQMDocBase* doc, const std::wstring& name, const CommandParameters&) {
    if (!doc) return 0;
    auto& document = static_cast<Document&>(*doc);
    if (name == L"Undo") {
        const int undone = document.database().undo();
        document.results().rebuild();
        output_.resultsChanged(document);
        NotifyPostUpdate(doc->GetActiveView(), PostUpdate::Tree);
        return undone;
    }
    if (name == L"Save") {
        const auto saved = document.save();
        if (!saved) ErrorOut(framework::fromUtf8(saved.error().message));
        return saved ? 1 : 0;
    }
    return 0;
}

} // namespace workbench
