#include "workbench/import/FileSet.h"

namespace workbench {

FileSet::~FileSet() {
    std::error_code ignored; // nothing better can be done about a failure to undo
    for (const Entry& entry : entries_)
        if (entry.before.empty())
            std::filesystem::remove(entry.path, ignored);
        else
            std::filesystem::rename(entry.before, entry.path, ignored);
}

Result<void> FileSet::add(const std::filesystem::path& path, const std::function<Result<void>()>& replace) {
    Entry entry{path, {}};
    std::error_code code;
    if (std::filesystem::exists(path, code)) {
        for (int number = 1; entry.before.empty() || std::filesystem::exists(entry.before, code); ++number)
            entry.before = path.string() + ".old-" + std::to_string(number);
        std::filesystem::create_hard_link(path, entry.before, code);
        if (code) std::filesystem::copy_file(path, entry.before, code); // where links are not to be had
        if (code) return Error{"cannot keep the former " + path.string() + ": " + code.message()};
    }
    auto replaced = replace();
    if (replaced) {
        entries_.push_back(std::move(entry));
    } else if (!entry.before.empty()) {
        std::filesystem::remove(entry.before, code);
    }
    return replaced;
}

void FileSet::keep() {
    std::error_code ignored;
    for (const Entry& entry : entries_)
        if (!entry.before.empty()) std::filesystem::remove(entry.before, ignored);
    entries_.clear();
}

} // namespace workbench
