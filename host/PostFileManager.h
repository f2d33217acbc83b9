#pragma once

#include "host/records/ItrKey.h"

#include <string>

/// Registers result files with a document.
class CPostFileManager {
  public:
    virtual ~CPostFileManager() = default;
    /// Registers the result file at `path` under an analysis; its results then appear in the result tree.
    /// `flag` 1 replaces what was registered under the analysis before. Zero when the host does not accept
    /// the file; the error output then names the file and the cause.
    virtual int AddFile(const std::wstring& path, ItrKey analysisKey, int flag) = 0;
};
