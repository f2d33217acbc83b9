#pragma once

#include "tests/support/TemporaryFolder.h"

#include <clocale>
#include <cstdlib>
#include <string>

/// Puts the process under a locale with a decimal comma (made for the purpose where the system has none)
/// until the object goes.
class GermanLocale {
  public:
#ifdef _WIN32
    GermanLocale() {
        active_ = std::setlocale(LC_ALL, "German_Germany.1252") != nullptr;
    }
    ~GermanLocale() {
        std::setlocale(LC_ALL, "C");
    }
#else
    GermanLocale() {
        const std::string compile =
            "localedef -i de_DE -f UTF-8 '" + (folder_ / "de_DE.UTF-8").string() + "' >/dev/null 2>&1";
        ::setenv("LOCPATH", folder_.path().c_str(), 1);
        active_ = std::system(compile.c_str()) == 0 && std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
    }
    ~GermanLocale() {
        std::setlocale(LC_ALL, "C");
        ::unsetenv("LOCPATH");
    }
#endif
    bool isActive() const {
        return active_ && *std::localeconv()->decimal_point == ',';
    }

  private:
    TemporaryFolder folder_;
    bool active_ = false;
};
