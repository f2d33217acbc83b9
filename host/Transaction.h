#pragma once

#include "framework/Export.h"

#include <string>

class CQMDocBase;

/// Brackets changes of the model database so that they can be undone as one step. A transaction that is
/// neither committed nor rolled back is rolled back when its object goes.
class VEXA_API CTransaction {
  public:
    explicit CTransaction(CQMDocBase& doc)
        : m_doc(doc) {}
    ~CTransaction() { Rollback(); }
    CTransaction(const CTransaction&) = delete;
    CTransaction& operator=(const CTransaction&) = delete;
    /// `title` is what the undo list shows. Zero when another transaction is open.
    int Begin(const std::wstring& title);
    int Commit(); ///< zero when the host could not keep the changes; they are then rolled back
    void Rollback();

  private:
    CQMDocBase& m_doc;
    bool m_bOpen = false;
};
