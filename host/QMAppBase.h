#pragma once

#include "framework/Export.h"

#include <string>
#include <string_view>

/// Editions of the host.
enum class Edition { A, B, C, D };
VEXA_API bool IsEditionA();
VEXA_API bool IsEditionB();
VEXA_API bool IsEditionC();
VEXA_API bool IsEditionD();

class VEXA_API CQMAppBase {
  public:
    /// Folder of the host program, with a separator at its end.
    static std::wstring GetProgramPath();
};

class VEXA_API CProduct {
  public:
    /// A value of the test environment; empty when it is not set.
    static std::wstring GetTestEnvValue(std::wstring_view name);
};

/// The wait cursor; calls nest.
VEXA_API void BeginWaitCursor();
VEXA_API void EndWaitCursor();
