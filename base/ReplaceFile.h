#pragma once

#include "base/FileLock.h"
#include "base/Result.h"

#include <filesystem>
#include <string>
#include <string_view>

/// A file that appears under its name whole or not at all: write to `temporaryPath()` beside it, then commit.
/// Without commit the temporary file is removed when the object goes. A link is followed; a target that is no
/// ordinary file (a folder, a device) is never replaced.
///
/// The object holds a lock on its file, before and after the commit, which ends with it or with its process:
/// by that other programs tell a file that is being written from one that a killed program left.
class ReplacedFile {
  public:
    /// Creates the temporary file, empty; its name is `target` + ".vexa-part-" + process number + a count.
    /// Where that fails the writer's own opening fails likewise and tells why. Temporary files of ended
    /// programs in the folder are removed.
    explicit ReplacedFile(std::filesystem::path target);
    ~ReplacedFile();
    ReplacedFile(ReplacedFile&& other) noexcept;
    ReplacedFile& operator=(ReplacedFile&&) = delete;

    const std::filesystem::path& target() const { return target_; }
    const std::filesystem::path& temporaryPath() const { return temporary_; }

    /// Flushes the temporary file to the disk and renames it to the target. The writer must have closed it.
    Result<void> commit();
    /// Likewise, but replaces nothing: where a file stands under the target's name the new one gets the first
    /// free one of "name~2.ext", "name~3.ext", ... Answers its path.
    Result<std::filesystem::path> commitUnderFreeName();

  private:
    Result<void> flush() const;
    void named();

    std::filesystem::path target_;
    std::filesystem::path temporary_;
    FileLock lock_;
};

/// `name` with "~" and `number` before its extension: "a.lmop" and 2 give "a~2.lmop".
std::filesystem::path numberedName(const std::filesystem::path& name, int number);

/// Whether a file name is that of a temporary file of a ReplacedFile.
bool isTemporaryName(const std::filesystem::path& name);

/// Whether no program that lives is writing the file at `path` through a ReplacedFile. False, too, where that
/// cannot be told: no right to write, a file system without locks, no ordinary file.
bool isAbandoned(const std::filesystem::path& path);
/// Removes a file that is abandoned. False when it is not, or the removal failed.
bool removeAbandoned(const std::filesystem::path& path);

/// The same mark on a file that stands: whoever works long on a file that it will change holds it meanwhile.
class FileInWork {
  public:
    /// False when another program or object holds the mark. Files that cannot be marked count as marked: no
    /// right to write, a file system without locks.
    bool mark(const std::filesystem::path& path);

  private:
    FileLock lock_;
};

/// Gives the file `existing` the second name `name` in the same folder, in one move, in the place of an
/// abandoned file that may stand there. False, and nothing changed, where another program works on that file
/// or the file system knows no second names.
bool takeName(const std::filesystem::path& existing, const std::filesystem::path& name);

/// The system's sentence for an errno value, without a locale.
std::string systemErrorText(int errorNumber);
