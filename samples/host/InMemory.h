#pragma once

#include "host/HostServices.h"
#include "host/QMDocBase.h"

#include <iostream>

/// The least that a host gives: most texts are their keys, messages go to the standard error output, nothing is
/// drawn.
class SmallHost : public IHostServices {
  public:
    SmallHost() { RegisterHostServices(this); }
    ~SmallHost() override { RegisterHostServices(nullptr); }
    SmallHost(const SmallHost&) = delete;
    SmallHost& operator=(const SmallHost&) = delete;

    Edition GetEdition() const override { return Edition::A; }
    std::wstring GetProgramPath() const override { return L"./"; }
    std::wstring GetTestEnvValue(std::wstring_view) const override { return {}; }
    /// A real host has the texts of all keys, in the user's language.
    std::wstring GetMessageText(std::wstring_view key) const override {
        if (key == L"IDS_QMGPS_RESULT_COMBINATION") return L"Result Combination";
        if (key == L"IDS_VEXAGPS_History_Probes_Graph") return L"History Probes Graph";
        return std::wstring(key);
    }
    void ErrorOut(const std::wstring& text) override { std::wcerr << text << L'\n'; }
    int ShowMessageBox(const std::wstring& text, unsigned) override {
        std::wcerr << text << L'\n';
        return IDOK;
    }
    void SetWaitCursor(bool) override {}
    int GetUnitIndexCurrent() const override { return 0; }
    int GetUnitIndexDefault() const override { return 0; }
    double GetUnitFactor(int, int) const override { return 1; }
    int GetUnitSystemForce() const override { return 0; }
    int GetUnitSystemLength() const override { return 0; }
    void ShowMeshSet(CQMDocBase&, ItrKey, bool) override {}
    std::wstring GetViewTitle(const CQMViewBase&) const override { return L"model"; }
    void DisplayPostResult(CQMViewBase&, CVResult*) override {}
    int BeginTransaction(CQMDocBase&, const std::wstring&) override { return 1; }
    int CommitTransaction(CQMDocBase&) override { return 1; }
    void RollbackTransaction(CQMDocBase&) override {}
    int ExecuteCommand(CQMDocBase*, const std::wstring&, const CommandParameters&) override { return 0; }
};

/// A document with a view, a database without records and a result tree without results: an integrator's own
/// data takes their place piece by piece.
class SmallDocument : public CQMDocBase, CQMDBSession, CPOHManager, CPostFileManager {
  public:
    explicit SmallDocument(std::wstring path)
        : path_(std::move(path)) {}
    CQMViewBase& view() { return view_; }

    CQMViewBase* GetActiveView() const override { return &view_; }
    std::wstring GetFullPathNameW() const override { return path_; }
    CQMDBSession& GetDBSession() override { return *this; }
    CPOHManager* GetPOHManager() override { return this; }
    CPostFileManager* GetPostFileManager() override { return this; }
    void SetPostMode(int) override {}
    void SetPreMode(int) override {}
    const std::vector<ItrKey>& GetCurSelectBufferAsNode() const override { return nothingPicked_; }
    const std::vector<ItrKey>& GetCurSelectBufferAsElem() const override { return nothingPicked_; }
    void AddToSelBuffer(const std::vector<ItrKey>&, const std::vector<ItrKey>&) override {}
    void ClearSelectBuffer(int) override {}

  private:
    struct View : CQMViewBase {
        explicit View(SmallDocument& document)
            : owner(document) {}
        CQMDocBase* GetDocument() const override { return &owner; }
        SmallDocument& owner;
    };

    IDPool* GetDataPool(PoolId) override { return nullptr; }
    const T_QM_MESH_D& GetMesh() const override { return mesh_; }
    void ClearUndo() override {}

    ItrKey GetKey() const override { return 0; }
    const std::wstring& GetName() const override { return path_; }
    CPOHBase* GetParent() const override { return nullptr; }
    const std::vector<CPOHAnalysis*>& GetChildList() const override { return noAnalyses_; }
    CPOHAnalysis* GetChild(ItrKey) const override { return nullptr; }

    int AddFile(const std::wstring&, ItrKey, int) override { return 0; }

    std::wstring path_;
    T_QM_MESH_D mesh_;
    std::vector<ItrKey> nothingPicked_;
    std::vector<CPOHAnalysis*> noAnalyses_;
    mutable View view_{*this};
};
