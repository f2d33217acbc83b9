#pragma once

#include <cstdint>
#include <filesystem>
#include <utility>

/// An open file that carries the mark of whoever works on it: a lock that belongs to this opening of the
/// file. It ends with the object, also by the death of the process, and not before. Functions that answer an
/// int give an errno value, 0 on success.
class FileLock {
  public:
    enum class State { Taken, HeldElsewhere, Unknown };

    FileLock() = default;
    ~FileLock() { close(); }
    FileLock(FileLock&& other) noexcept
        : handle_(std::exchange(other.handle_, kClosed)) {}
    FileLock& operator=(FileLock&& other) noexcept {
        std::swap(handle_, other.handle_); // what was open here is closed with the other
        return *this;
    }

    /// Makes an empty file; EEXIST where something stands under that name.
    int create(const std::filesystem::path& path);
    /// Opens a file for writing without changing it; never waits, as for a pipe.
    int open(const std::filesystem::path& path, bool followsLinks);
    bool isOpen() const { return handle_ != kClosed; }
    void close();

    State tryLock();
    /// Whether `path` itself, no link, is an ordinary file and the one that is open here.
    bool isFileAt(const std::filesystem::path& path) const;

  private:
    static constexpr std::intptr_t kClosed = -1;
    std::intptr_t handle_ = kClosed;
};

/// Has the system write a file to the disk; a folder, too, where the system can.
int flushToDisk(const std::filesystem::path& path);

/// Renames unless something stands under the new name.
int renameWithoutReplacing(const std::filesystem::path& from, const std::filesystem::path& to);

/// The number of this process.
unsigned long long processNumber();
