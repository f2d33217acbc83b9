#include "framework/windows/ErrorOutput.h"

#include "framework/text/CodePage.h"

#include <exception>
#include <iostream>

namespace framework {
namespace {

std::function<void(const std::wstring&)>& errorOutput() {
    static std::function<void(const std::wstring&)> output;
    return output;
}

} // namespace

void setErrorOutput(std::function<void(const std::wstring&)> output) {
    errorOutput() = std::move(output);
}

void reportError(const std::wstring& text) {
    if (errorOutput())
        errorOutput()(text);
    else
        std::cerr << toUtf8(text) << '\n';
}

void reportException() noexcept {
    try {
        try {
            throw;
        } catch (const std::exception& fault) {
            reportError(L"a message handler failed: " + fromUtf8(fault.what()));
        } catch (...) {
            reportError(L"a message handler failed for a cause that has no name");
        }
    } catch (...) {
        // The output itself failed: nobody is left to be told.
    }
}

} // namespace framework
