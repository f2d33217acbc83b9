#include "workbench/session/SessionOutput.h"

#include <cstdio>

namespace workbench {

void TerminalOutput::print(const char* kind, const std::string& text) {
    progress_.clearLine();
    std::fprintf(stderr, "%s%s\n", kind, text.c_str());
}

void TerminalOutput::showError(const std::string& text) {
    print("error: ", text);
}

void TerminalOutput::showWarning(const std::string& text) {
    print("warning: ", text);
}

void TerminalOutput::showNote(const std::string& text) {
    print("", text);
}

} // namespace workbench
