#pragma once

#include "framework/Export.h"
#include "host/MSGFunction.h"
#include "host/QMAppBase.h"
#include "host/QMCommandObj.h"
#include "host/QMGlobalData.h"
#include "host/QMProgressBar.h"
#include "host/records/ItrKey.h"

#include <string>
#include <string_view>
#include <vector>

class CQMViewBase;
class CVResult;
struct T_COMB_ENVL_RESULT_D;

/// What an implementation of the host gives, apart from the documents themselves: the functions of the host
/// interface forward to the registered object. Register one object before the module is used; it must
/// outlive every use. Everything is called on one thread.
class IHostServices {
  public:
    virtual ~IHostServices() = default;

    virtual Edition GetEdition() const = 0;
    virtual std::wstring GetProgramPath() const = 0;
    virtual std::wstring GetTestEnvValue(std::wstring_view name) const = 0;

    virtual std::wstring GetMessageText(std::wstring_view key) const = 0;
    virtual void ErrorOut(const std::wstring& text) = 0;
    virtual void WarningOut(const std::wstring& text) { ErrorOut(text); }
    virtual int ShowMessageBox(const std::wstring& text, unsigned style) = 0;
    virtual void SetWaitCursor(bool on) = 0;

    virtual int GetUnitIndexCurrent() const = 0;
    virtual int GetUnitIndexDefault() const = 0;
    /// Factor from the default unit system to system `index`.
    virtual double GetUnitFactor(int kind, int index) const = 0;

    /// Positions of the current system's units in the host's lists of force and of length units.
    virtual int GetUnitSystemForce() const = 0;
    virtual int GetUnitSystemLength() const = 0;

    /// Keeps whether the views of `doc` show a mesh set (the caller knows that it exists).
    virtual void ShowMeshSet(CQMDocBase& doc, ItrKey set, bool show) = 0;
    virtual std::wstring GetViewTitle(const CQMViewBase& view) const = 0;
    /// Redraws the post-processing display of a view with a result table; null: without one.
    virtual void DisplayPostResult(CQMViewBase& view, CVResult* result) = 0;

    virtual int BeginTransaction(CQMDocBase& doc, const std::wstring& title) = 0;
    virtual int CommitTransaction(CQMDocBase& doc) = 0;
    virtual void RollbackTransaction(CQMDocBase& doc) = 0;
    /// See CGpsLinearCombCalculator; zero where the host combines no results.
    virtual int GenerateSubCombResult(CQMDocBase&, CQMViewBase*, const T_COMB_ENVL_RESULT_D&, bool) {
        return 0;
    }
    virtual int ExecuteCommand(CQMDocBase* doc, const std::wstring& name,
                               const CommandParameters& params) = 0;
};

/// Registers the host for this process (null takes it away) and answers the previous one. Its error output
/// also gets the causes that no message handler handled.
VEXA_API IHostServices* RegisterHostServices(IHostServices* services);

/// The registered host; throws std::logic_error when there is none.
VEXA_API IHostServices& HostServices();
