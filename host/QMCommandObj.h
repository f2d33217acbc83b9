#pragma once

#include <string>
#include <utility>
#include <vector>

class CQMDocBase;

/// A named command of the host with its parameters.
class CQMCommandObj {
  public:
    CQMCommandObj(std::wstring name, CQMDocBase* doc) : m_strName(std::move(name)), m_pDoc(doc) {}
    void AddParam(std::wstring value) { m_params.push_back(std::move(value)); }
    int Execute(); ///< zero when the host knows no such command or it failed

  private:
    std::wstring m_strName;
    CQMDocBase* m_pDoc;
    std::vector<std::wstring> m_params;
};
