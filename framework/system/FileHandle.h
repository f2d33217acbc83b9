#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace framework {

enum class FileAccess { read, write, readWrite };
enum class FileCreation {
    existing,    ///< the file must exist
    emptied,     ///< made, or emptied when it exists
    keptContents ///< made when it does not exist
};

/// A file of the operating system, unbuffered, not inherited by child processes. Every function that answers
/// an int gives the system's error number, 0 on success. Interrupted calls are repeated.
class FileHandle {
  public:
    FileHandle() = default;
    ~FileHandle() { close(); }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    int open(const std::filesystem::path& path, FileAccess access,
             FileCreation creation); ///< refuses a folder
    bool isOpen() const { return handle_ != kClosed; }
    /// Reads until `count` bytes are there or the file ends; `done` receives their number, also on failure.
    int read(void* buffer, std::size_t count, std::size_t& done);
    /// Writes until all bytes are written; `done` receives how many were, also on failure.
    int write(const void* buffer, std::size_t count, std::size_t& done);
    int seek(std::uint64_t position);
    int length(std::uint64_t& bytes) const;
    int close(); ///< the handle is closed also on failure

  private:
    static constexpr std::intptr_t kClosed = -1;
    std::intptr_t handle_ = kClosed;
};

/// Whether there is a file, not a folder.
bool fileExists(const std::filesystem::path& path);

/// Deletes a file, never a folder. The system's error number, 0 on success.
int removeFile(const std::filesystem::path& path);

/// Renames a file; fails when `to` exists. The system's error number, 0 on success.
int renameFile(const std::filesystem::path& from, const std::filesystem::path& to);

} // namespace framework
