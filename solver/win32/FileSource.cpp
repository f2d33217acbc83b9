#include "base/ReplaceFile.h"
#include "solver/ByteSource.h"

#include <windows.h>

#include <algorithm>
#include <system_error>
#include <utility>

namespace solver {
namespace {

constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;

std::string lastErrorText() {
    const auto error = static_cast<int>(::GetLastError());
    return systemErrorText(std::system_category().default_error_condition(error).value());
}

class FileSource final : public ByteSource {
  public:
    FileSource(HANDLE handle, std::uint64_t size, std::string name)
        : handle_(handle)
        , size_(size)
        , name_(std::move(name)) {}
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;
    ~FileSource() override { ::CloseHandle(handle_); }

    const std::string& name() const override { return name_; }
    std::uint64_t size() const override { return size_; }

    Result<std::size_t> read(std::span<std::byte> out) override {
        std::size_t done = 0;
        while (done < out.size()) {
            const auto wanted = static_cast<DWORD>(std::min(out.size() - done, kLargestTransfer));
            DWORD got = 0;
            if (!::ReadFile(handle_, out.data() + done, wanted, &got, nullptr))
                return Error{"cannot read " + name_ + ": " + lastErrorText()};
            if (got == 0) break;
            done += got;
        }
        return done;
    }

  private:
    HANDLE handle_;
    std::uint64_t size_;
    std::string name_;
};

} // namespace

Result<std::unique_ptr<ByteSource>> openFile(const std::filesystem::path& path) {
    const HANDLE handle = ::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                        nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return Error{"cannot open " + path.string() + ": " + lastErrorText()};
    BY_HANDLE_FILE_INFORMATION information{};
    LARGE_INTEGER size{};
    if (::GetFileType(handle) != FILE_TYPE_DISK || !::GetFileInformationByHandle(handle, &information) ||
        (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) || !::GetFileSizeEx(handle, &size)) {
        ::CloseHandle(handle);
        return Error{"cannot read " + path.string() + ": it is not a regular file"};
    }
    return std::unique_ptr<ByteSource>(
        std::make_unique<FileSource>(handle, static_cast<std::uint64_t>(size.QuadPart), path.string()));
}

} // namespace solver
