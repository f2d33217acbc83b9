#pragma once

#include "host/HostServices.h"
#include "workbench/results/Catalogue.h"
#include "workbench/results/CombineResults.h"
#include "workbench/session/SessionOutput.h"
#include "workbench/session/UnitTable.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

/// What a user chose for a session.
struct SessionOptions {
    Edition edition = Edition::A;
    Language language = Language::English;
    std::filesystem::path programFolder; ///< where "64bit Solver" lies; the program's own folder by default
};

/// The workbench as the host of the module. What it says goes to its output: a terminal unless another one is
/// given; message boxes go to the desktop, and without one their text is a note and they take their default
/// answer. Test-environment values are environment variables. Registered as the host of this process while it
/// lives.
class WorkbenchHost final : public IHostServices {
  public:
    /// `output`, when given, must outlive the host.
    explicit WorkbenchHost(SessionOptions options, SessionOutput* output = nullptr);
    ~WorkbenchHost() override;
    WorkbenchHost(const WorkbenchHost&) = delete;
    WorkbenchHost& operator=(const WorkbenchHost&) = delete;

    Edition GetEdition() const override { return options_.edition; }
    std::wstring GetProgramPath() const override;
    std::wstring GetTestEnvValue(std::wstring_view name) const override;
    std::wstring GetMessageText(std::wstring_view key) const override;
    void ErrorOut(const std::wstring& text) override;
    void WarningOut(const std::wstring& text) override;
    int ShowMessageBox(const std::wstring& text, unsigned style) override;
    void SetWaitCursor(bool on) override { output_.setWaitCursor(on); }
    int GetUnitIndexCurrent() const override { return current_; }
    int GetUnitIndexDefault() const override { return 0; }
    double GetUnitFactor(int kind, int index) const override;
    int GetUnitSystemForce() const override;
    int GetUnitSystemLength() const override;
    void ShowMeshSet(CQMDocBase& doc, ItrKey set, bool show) override;
    /// The name of the document's file.
    std::wstring GetViewTitle(const CQMViewBase& view) const override;
    void DisplayPostResult(CQMViewBase& view, CVResult* result) override {
        output_.displayResult(view, result);
    }
    int BeginTransaction(CQMDocBase& doc, const std::wstring& title) override;
    int CommitTransaction(CQMDocBase& doc) override;
    void RollbackTransaction(CQMDocBase& doc) override;
    /// Answers with the messages of combineResults in the error output; what was left out is a warning.
    int GenerateSubCombResult(CQMDocBase& doc, CQMViewBase* view, const T_COMB_ENVL_RESULT_D& request,
                              bool registerSet) override;
    /// Knows "Save" and "Undo".
    int ExecuteCommand(CQMDocBase* doc, const std::wstring& name, const CommandParameters& params) override;

    Language language() const { return options_.language; }
    /// From now on texts are in this language; open dialogs are told.
    void setLanguage(Language language);
    SessionOutput& output() { return output_; }
    WorkProgress& progress() { return output_.progress(); }

    /// The unit system of the open document's numbers, which becomes the current one too.
    void setDatabaseUnits(const UnitSystem& system);
    /// The unit system for display.
    void setCurrentUnits(const UnitSystem& system);
    const UnitSystem& databaseUnits() const { return systems_[0]; }
    const UnitSystem& currentUnits() const { return systems_[static_cast<std::size_t>(current_)]; }

    /// Errors reported so far, in order, as UTF-8.
    const std::vector<std::string>& errors() const { return errors_; }

    /// What the last combination of results made; nothing when it failed.
    const std::optional<CombinationReport>& lastCombination() const { return lastCombination_; }

  private:
    SessionOptions options_;
    TerminalOutput terminal_;
    SessionOutput& output_;
    std::vector<UnitSystem> systems_;
    int current_ = 0;
    std::vector<std::string> errors_;
    std::optional<CombinationReport> lastCombination_;
    IHostServices* previous_;
};

} // namespace workbench
