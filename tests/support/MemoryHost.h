#pragma once

#include "host/HostServices.h"
#include "host/QMUnitCtrl.h"
#include "tests/support/MemoryDocument.h"

#include <functional>
#include <map>
#include <stdexcept>

namespace support {

/// Records what happens to the progress bar, one word or line a call.
class ProgressRecorder : public IQMProgressBar {
  public:
    void Start() override { note(L"start"); }
    void SetRange(int lower, int upper) override {
        note(L"range " + std::to_wstring(lower) + L" " + std::to_wstring(upper));
    }
    void SetText(const std::wstring& text) override { note(text); }
    void StepIt() override { note(L"step"); }
    void End() override { note(L"end"); }
    void Close() override { note(L"close"); }

    std::vector<std::wstring> events;
    std::function<void(const std::wstring&)> listener; ///< hears each event as it comes

  private:
    void note(std::wstring event) {
        if (listener) listener(event);
        events.push_back(std::move(event));
    }
};

/// Host services that keep everything in memory; registered while the object lives. A text is its key unless
/// `texts` has another.
class MemoryHost : public IHostServices {
  public:
    MemoryHost()
        : previousHost_(RegisterHostServices(this))
        , previousBar_(IQMProgressBar::m_pInstance) {
        IQMProgressBar::m_pInstance = &progress;
    }
    ~MemoryHost() override {
        IQMProgressBar::m_pInstance = previousBar_;
        RegisterHostServices(previousHost_);
    }
    MemoryHost(const MemoryHost&) = delete;
    MemoryHost& operator=(const MemoryHost&) = delete;

    Edition edition = Edition::A;
    std::wstring programPath;
    std::map<std::wstring, std::wstring, std::less<>> environment;
    std::map<std::wstring, std::wstring, std::less<>> texts;
    bool textsFail = false;            ///< GetMessageText throws
    std::map<int, double> unitFactors; ///< of the current unit system
    int forceUnit = 0;
    int lengthUnit = 0;
    std::vector<CVResult*> displayed; ///< arguments of DisplayPostResult
    std::vector<std::wstring> errors;
    std::vector<std::wstring> warnings;
    std::vector<std::wstring> boxes;
    std::vector<bool> waitCursor; ///< every change
    ProgressRecorder progress;

    Edition GetEdition() const override { return edition; }
    std::wstring GetProgramPath() const override { return programPath; }
    std::wstring GetTestEnvValue(std::wstring_view name) const override {
        const auto found = environment.find(name);
        return found == environment.end() ? std::wstring() : found->second;
    }
    std::wstring GetMessageText(std::wstring_view key) const override {
        if (textsFail) throw std::runtime_error("no texts");
        const auto found = texts.find(key);
        return found == texts.end() ? std::wstring(key) : found->second;
    }
    void ErrorOut(const std::wstring& text) override { errors.push_back(text); }
    void WarningOut(const std::wstring& text) override { warnings.push_back(text); }
    int ShowMessageBox(const std::wstring& text, unsigned) override {
        boxes.push_back(text);
        return IDOK;
    }
    void SetWaitCursor(bool on) override { waitCursor.push_back(on); }
    int GetUnitIndexCurrent() const override { return 1; }
    int GetUnitIndexDefault() const override { return 0; }
    double GetUnitFactor(int kind, int index) const override {
        const auto found = unitFactors.find(kind);
        return index == 1 && found != unitFactors.end() ? found->second : 1.0;
    }
    int GetUnitSystemForce() const override { return forceUnit; }
    int GetUnitSystemLength() const override { return lengthUnit; }
    void ShowMeshSet(CQMDocBase& doc, ItrKey set, bool show) override {
        auto& hidden = dynamic_cast<MemoryDocument&>(doc).hiddenMeshSets;
        show ? void(hidden.erase(set)) : void(hidden.insert(set));
    }
    std::wstring GetViewTitle(const CQMViewBase& view) const override {
        return view.GetDocument()->GetFullPathNameW();
    }
    void DisplayPostResult(CQMViewBase&, CVResult* result) override { displayed.push_back(result); }
    int BeginTransaction(CQMDocBase&, const std::wstring&) override { return 1; }
    int CommitTransaction(CQMDocBase&) override { return 1; }
    void RollbackTransaction(CQMDocBase&) override {}
    int ExecuteCommand(CQMDocBase*, const std::wstring&, const CommandParameters&) override { return 0; }

  private:
    IHostServices* previousHost_;
    IQMProgressBar* previousBar_;
};

} // namespace support
