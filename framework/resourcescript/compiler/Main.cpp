// Turns a resource script into C++ tables: vexa-resources SCRIPT.rc OUTPUT.cpp FUNCTION
#include "framework/resourcescript/ResourceScript.h"
#include "framework/text/CodePage.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>

namespace {

using namespace framework;

std::optional<std::wstring> readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::cerr << path.string() << ": cannot be read\n";
        return {};
    }
    return fromUtf8(std::string(std::istreambuf_iterator<char>(file), {}));
}

std::optional<ResourceScript> compile(const std::filesystem::path& path) {
    const auto text = readFile(path);
    if (!text) return {};
    ScriptSymbols symbols;
    for (const auto& name : includedHeaders(*text)) {
        const auto header = readFile(path.parent_path() / name);
        if (!header) return {};
        readSymbols(*header, symbols);
    }
    ResourceScript script = readResourceScript(*text, symbols);
    for (const auto& problem : script.problems)
        std::cerr << path.string() << ": " << toUtf8(problem) << '\n';
    if (!script.problems.empty()) return {};
    return script;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 4) {
        std::cerr << "usage: vexa-resources SCRIPT.rc OUTPUT.cpp FUNCTION\n";
        return 2;
    }
    const auto script = compile(arguments[1]);
    if (!script) return 1;
    std::ofstream out(arguments[2], std::ios::binary);
    out << toUtf8(writeTemplateSource(*script, fromUtf8(arguments[3])));
    out.close();
    if (out) return 0;
    std::cerr << arguments[2] << ": cannot be written\n";
    return 1;
}
