#pragma once

#include "resultfile/Hdf5.h"

#include <cstdint>
#include <filesystem>
#include <memory>

/// HDF5's file access over a descriptor of ours. HDF5 1.10 crashes while it closes a file that it could not
/// write, at the latest when the program ends. So a failed write is kept in `OpenFile` and HDF5 goes on
/// undisturbed; the Writer looks at the fault before it trusts the file. Nothing is locked: a file is
/// complete before it gets its name and is replaced, never changed, and file systems without locks stay
/// readable.
namespace resultfile::hdf5 {

class OpenFile {
  public:
    OpenFile() = default;
    ~OpenFile() { close(); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    /// False on failure; the cause is fault().
    bool openToRead(const std::filesystem::path& path);
    /// An empty file, also where there was one.
    bool create(const std::filesystem::path& path);
    bool close();

    /// errno of the first failure; 0 when there was none.
    int fault() const { return fault_; }
    /// Reads `size` bytes; zeros stand beyond the end of the file.
    bool read(std::uint64_t offset, std::size_t size, void* bytes);
    bool write(std::uint64_t offset, std::size_t size, const void* bytes);
    bool truncate(std::uint64_t size);
    /// 0 when the size cannot be asked for.
    std::uint64_t size();
    bool isRegular();

  private:
    bool opened(int descriptor);
    bool failed();

    int descriptor_ = -1;
    int fault_ = 0;
};

/// Opens or creates the HDF5 file that lies in `file`, which is to be closed after the handle. HDF5 shares
/// it, since it does not always let go of a damaged file.
Handle openHdf5(const std::shared_ptr<OpenFile>& file, const std::filesystem::path& path);
Handle createHdf5(const std::shared_ptr<OpenFile>& file, const std::filesystem::path& path);

} // namespace resultfile::hdf5
