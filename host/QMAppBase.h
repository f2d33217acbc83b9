#pragma once

#include <string>
#include <string_view>

/// Editions of the host.
enum class Edition { A, B, C, D };
bool IsEditionA();
bool IsEditionB();
bool IsEditionC();
bool IsEditionD();

class CQMAppBase {
  public:
    /// Folder of the host program, with a separator at its end.
    static std::wstring GetProgramPath();
};

class CProduct {
  public:
    /// A value of the test environment; empty when it is not set.
    static std::wstring GetTestEnvValue(std::wstring_view name);
};

/// The wait cursor; calls nest.
void BeginWaitCursor();
void EndWaitCursor();
