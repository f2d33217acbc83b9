#pragma once

#include "host/dialogs/QMPostSelDialog.h"
#include "tests/support/DialogFixture.h"
#include "tests/host/dialogs/resource.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

/// The templates of HostDialogs.rc.
std::span<const framework::DialogTemplate> hostDialogTemplates();

/// Writes down what it is told, and then does what the test says.
class ToolDialog : public CQMPostSelDialog {
  public:
    ToolDialog(std::vector<std::string>& log, CQMDocBase* doc, std::function<void(ToolDialog&)> act = {})
        : CQMPostSelDialog(IDD_TOOL, doc)
        , log_(log)
        , act_(std::move(act)) {}
    ~ToolDialog() override { log_.push_back("deleted"); }

    int Create(CWnd* parent) override { return CQMDialog::Create(IDD_TOOL, parent); }
    using CQMDialog::Create;
    int EnterApply() override { return note("apply"); }
    void OnChangeLanguage() override {
        SetItemMessage(IDC_TOOL_LABEL, L"IDS_LABEL");
        SetTitleMessage(L"IDS_TITLE");
        note("language");
    }
    void OnUnitChanged() override { note("unit"); }
    void OnPostUpdate(unsigned flags) override { note("update " + std::to_string(flags)); }
    void OnChangeMode(int mode) override { note("mode " + std::to_string(mode)); }
    void OnSnap(const std::array<double, 3>& point) override {
        note("snap " + std::to_string(int(point[2])));
    }
    void GLDrawTempShape() override { note("draw"); }
    int OnDlgMouseWheel(UINT, short delta, CPoint) override { return note("wheel " + std::to_string(delta)); }

    std::function<void(CDataExchange*)> exchange;

  protected:
    void DoDataExchange(CDataExchange* run) override {
        if (exchange) exchange(run);
    }

  private:
    int note(std::string event) {
        log_.push_back(std::move(event));
        if (act_) act_(*this);
        return 1;
    }
    std::vector<std::string>& log_;
    std::function<void(ToolDialog&)> act_;
};

/// The templates are there; a host of texts has titles for language tests.
class ToolTest : public DialogFixture {
  protected:
    ToolTest() { framework::addTemplates(hostDialogTemplates()); }
    ToolDialog& open(std::function<void(ToolDialog&)> act = {}) {
        auto* dialog = new ToolDialog(log, &document, std::move(act));
        EXPECT_TRUE(dialog->Create(nullptr));
        dialog->ShowWindow(SW_SHOW);
        return *dialog;
    }
    std::string logged() {
        std::string line;
        for (const auto& word : log)
            line += (line.empty() ? "" : ", ") + word;
        log.clear();
        return line;
    }
    std::vector<std::string> log;
};
