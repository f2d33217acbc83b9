#pragma once

#include "framework/Export.h"

#include <string>
#include <utility>
#include <vector>

class CQMDocBase;

/// Names and values of the parameters of a host command, in the order of adding.
using CommandParameters = std::vector<std::pair<std::wstring, std::wstring>>;

/// A named command of the host with its parameters.
class VEXA_API CQMCommandObj {
  public:
    CQMCommandObj(std::wstring name, CQMDocBase* doc)
        : m_strName(std::move(name))
        , m_pDoc(doc) {}
    void AddParam(std::wstring name, std::wstring value) {
        m_params.emplace_back(std::move(name), std::move(value));
    }
    int Execute(); ///< zero when the host knows no such command or it failed

  private:
    std::wstring m_strName;
    CQMDocBase* m_pDoc;
    CommandParameters m_params;
};
