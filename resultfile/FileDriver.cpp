#include "resultfile/FileDriver.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <limits>
#include <unordered_map>
#include <utility>

namespace resultfile::hdf5 {

bool OpenFile::openToRead(const std::filesystem::path& path) {
    // Without O_NONBLOCK the opening of a pipe would wait for its writer.
    return opened(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
}

bool OpenFile::create(const std::filesystem::path& path) {
    return opened(::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
}

bool OpenFile::opened(int descriptor) {
    close();
    fault_ = 0;
    descriptor_ = descriptor;
    return descriptor >= 0 || failed();
}

bool OpenFile::close() {
    if (descriptor_ < 0) return true;
    return ::close(std::exchange(descriptor_, -1)) == 0 || failed();
}

/// Keeps the first cause, which explains the later ones.
bool OpenFile::failed() {
    if (!fault_) fault_ = errno;
    return false;
}

bool OpenFile::read(std::uint64_t offset, std::size_t size, void* bytes) {
    auto* to = static_cast<char*>(bytes);
    while (size > 0) {
        const ssize_t got = ::pread(descriptor_, to, size, static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return failed();
        if (got == 0) {
            std::memset(to, 0, size);
            return true;
        }
        to += got;
        offset += static_cast<std::uint64_t>(got);
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

bool OpenFile::write(std::uint64_t offset, std::size_t size, const void* bytes) {
    const auto* from = static_cast<const char*>(bytes);
    while (size > 0) {
        const ssize_t put = ::pwrite(descriptor_, from, size, static_cast<off_t>(offset));
        if (put < 0 && errno == EINTR) continue;
        if (put < 0) return failed();
        from += put;
        offset += static_cast<std::uint64_t>(put);
        size -= static_cast<std::size_t>(put);
    }
    return true;
}

bool OpenFile::truncate(std::uint64_t size) {
    return ::ftruncate(descriptor_, static_cast<off_t>(size)) == 0 || failed();
}

std::uint64_t OpenFile::size() {
    struct stat status {};
    if (::fstat(descriptor_, &status) == 0) return static_cast<std::uint64_t>(status.st_size);
    failed();
    return 0;
}

bool OpenFile::isRegular() {
    struct stat status {};
    return ::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
}

namespace {

constexpr haddr_t kLastAddress = static_cast<haddr_t>(std::numeric_limits<off_t>::max());

/// Structure that HDF5 wrote after the disk refused to take more. HDF5 reads some of it back while it closes
/// the file, and crashes later when it cannot.
class LostPages {
  public:
    void write(OpenFile& file, haddr_t offset, std::size_t size, const void* bytes) {
        forPages(offset, size, [&](haddr_t number, std::size_t inPage, std::size_t done, std::size_t length) {
            auto [page, added] = pages_.try_emplace(number);
            if (added) file.read(number * kPage, kPage, page->second.data());
            std::memcpy(page->second.data() + inPage, static_cast<const char*>(bytes) + done, length);
        });
    }
    /// Puts what was lost over what was read from the file.
    void patch(haddr_t offset, std::size_t size, void* bytes) const {
        if (pages_.empty()) return;
        forPages(offset, size, [&](haddr_t number, std::size_t inPage, std::size_t done, std::size_t length) {
            const auto page = pages_.find(number);
            if (page == pages_.end()) return;
            std::memcpy(static_cast<char*>(bytes) + done, page->second.data() + inPage, length);
        });
    }

  private:
    static constexpr std::size_t kPage = 4096;
    template <class Visit>
    static void forPages(haddr_t offset, std::size_t size, Visit visit) {
        for (std::size_t done = 0, length = 0; done < size; done += length) {
            const std::size_t inPage = (offset + done) % kPage;
            length = std::min(kPage - inPage, size - done);
            visit((offset + done) / kPage, inPage, done, length);
        }
    }
    std::unordered_map<haddr_t, std::array<char, kPage>> pages_;
};

/// What HDF5 holds of an open file; HDF5 asks for its own part to be first.
struct DriverFile {
    H5FD_t common;
    std::shared_ptr<OpenFile> file;
    haddr_t allocated; ///< end of what HDF5 has given out
    haddr_t size;      ///< end of the file, also of writes that failed
    LostPages lost;
};

/// Handed over with the access properties; lives as long as the call that opens.
struct DriverInfo {
    const std::shared_ptr<OpenFile>* file;
};

DriverFile& own(H5FD_t* file) {
    return *reinterpret_cast<DriverFile*>(file);
}
const DriverFile& own(const H5FD_t* file) {
    return *reinterpret_cast<const DriverFile*>(file);
}

H5FD_t* openFile(const char*, unsigned, hid_t access, haddr_t) {
    const auto* info = static_cast<const DriverInfo*>(H5Pget_driver_info(access));
    if (!info) return nullptr;
    auto driven = std::make_unique<DriverFile>();
    driven->file = *info->file;
    driven->size = driven->file->size();
    return &driven.release()->common;
}

/// The descriptor stays open: it is the OpenFile's.
herr_t closeFile(H5FD_t* file) {
    delete &own(file);
    return 0;
}

herr_t queryFeatures(const H5FD_t*, unsigned long* flags) {
    *flags = H5FD_FEAT_AGGREGATE_METADATA | H5FD_FEAT_ACCUMULATE_METADATA | H5FD_FEAT_DATA_SIEVE |
             H5FD_FEAT_AGGREGATE_SMALLDATA | H5FD_FEAT_DEFAULT_VFD_COMPATIBLE;
    return 0;
}

haddr_t allocatedEnd(const H5FD_t* file, H5FD_mem_t) {
    return own(file).allocated;
}

herr_t setAllocatedEnd(H5FD_t* file, H5FD_mem_t, haddr_t end) {
    own(file).allocated = end;
    return 0;
}

haddr_t fileEnd(const H5FD_t* file, H5FD_mem_t) {
    return own(file).size;
}

herr_t readBytes(H5FD_t* file, H5FD_mem_t, hid_t, haddr_t offset, std::size_t size, void* bytes) {
    DriverFile& driven = own(file);
    if (!driven.file->read(offset, size, bytes)) return -1;
    driven.lost.patch(offset, size, bytes);
    return 0;
}

herr_t writeBytes(H5FD_t* file, H5FD_mem_t type, hid_t, haddr_t offset, std::size_t size, const void* bytes) {
    DriverFile& driven = own(file);
    driven.size = std::max<haddr_t>(driven.size, offset + size);
    // After the first failure the file is lost, and the disk may be full for others too.
    if (!driven.file->fault() && driven.file->write(offset, size, bytes)) return 0;
    if (type != H5FD_MEM_DRAW) driven.lost.write(*driven.file, offset, size, bytes);
    return 0;
}

herr_t truncateFile(H5FD_t* file, hid_t, hbool_t) {
    DriverFile& driven = own(file);
    if (driven.size == driven.allocated) return 0;
    if (!driven.file->fault()) driven.file->truncate(driven.allocated);
    driven.size = driven.allocated;
    return 0;
}

H5FD_class_t driverClass() {
    H5FD_class_t driver{};
    driver.name = "vexa";
    driver.maxaddr = kLastAddress;
    driver.fc_degree = H5F_CLOSE_WEAK;
    driver.fapl_size = sizeof(DriverInfo);
    driver.open = openFile;
    driver.close = closeFile;
    driver.query = queryFeatures;
    driver.get_eoa = allocatedEnd;
    driver.set_eoa = setAllocatedEnd;
    driver.get_eof = fileEnd;
    driver.read = readBytes;
    driver.write = writeBytes;
    driver.truncate = truncateFile;
    constexpr H5FD_mem_t freeLists[] = H5FD_FLMAP_DICHOTOMY;
    std::copy(std::begin(freeLists), std::end(freeLists), driver.fl_map);
    return driver;
}

/// Access through `file`, in the format of HDF5 1.8: the first whose structure carries checksums throughout.
Handle accessThrough(const std::shared_ptr<OpenFile>& file) {
    const H5FD_class_t driverOfOurs = driverClass();
    const Handle driver(H5FDregister(&driverOfOurs));
    Handle access(H5Pcreate(H5P_FILE_ACCESS));
    const DriverInfo info{&file};
    if (!driver || H5Pset_driver(access.get(), driver.get(), &info) < 0 ||
        H5Pset_libver_bounds(access.get(), H5F_LIBVER_V18, H5F_LIBVER_V18) < 0)
        return {};
    return access;
}

} // namespace

Handle openHdf5(const std::shared_ptr<OpenFile>& file, const std::filesystem::path& path) {
    const Handle access = accessThrough(file);
    return access ? Handle(H5Fopen(path.c_str(), H5F_ACC_RDONLY, access.get())) : Handle();
}

Handle createHdf5(const std::shared_ptr<OpenFile>& file, const std::filesystem::path& path) {
    const Handle access = accessThrough(file);
    // Without a time in the root group the same contents are the same bytes.
    const Handle creation(H5Pcreate(H5P_FILE_CREATE));
    if (!access || !creation || H5Pset_obj_track_times(creation.get(), false) < 0) return {};
    return Handle(H5Fcreate(path.c_str(), H5F_ACC_TRUNC, creation.get(), access.get()));
}

} // namespace resultfile::hdf5
