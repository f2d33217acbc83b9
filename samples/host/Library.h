#pragma once

#include <string>

/// A shared library loaded at run time. It stays loaded: windows of the module may outlive whoever loaded it.
/// Apart from main.cpp, since the system's headers and the framework's define the same names.
class Library {
  public:
    explicit Library(std::string file); ///< throws std::runtime_error with the system's reason

    /// An exported function by its name in the library; throws when there is none.
    template <class Function>
    Function* function(const char* name) const {
        return reinterpret_cast<Function*>(address(name));
    }

  private:
    void* address(const char* name) const;

    std::string file_;
    void* handle_;
};
