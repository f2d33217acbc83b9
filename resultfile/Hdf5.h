#pragma once

#include "base/Result.h"

#include <hdf5.h>

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

/// What the result file needs of HDF5's C interface. Every call happens within a Session.
namespace resultfile::hdf5 {

/// Held around calls of HDF5: one thread at a time, and HDF5 does not print its error stack but keeps the
/// cause of the last failure. The setting that was there comes back, so that another user of HDF5 keeps its
/// own.
class Session {
  public:
    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

  private:
    std::scoped_lock<std::recursive_mutex> lock_;
    H5E_auto2_t print_ = nullptr;
    void* printData_ = nullptr;
    bool saved_ = false;
};

/// Owns one identifier.
class Handle {
  public:
    Handle() = default;
    explicit Handle(hid_t id)
        : id_(id) {}
    ~Handle() { reset(); }
    Handle(Handle&& other) noexcept
        : id_(std::exchange(other.id_, H5I_INVALID_HID)) {}
    Handle& operator=(Handle&& other) noexcept {
        if (this != &other) {
            reset();
            id_ = std::exchange(other.id_, H5I_INVALID_HID);
        }
        return *this;
    }

    hid_t get() const { return id_; }
    explicit operator bool() const { return id_ >= 0; }
    /// Gives the identifier back; false when HDF5 could not finish with it.
    bool reset();

  private:
    hid_t id_ = H5I_INVALID_HID;
};

/// The cause of the last failure in the session: the system's sentence when there was one, else what HDF5
/// says.
std::string failureCause();

/// Creation of groups and of contiguous, unfilled datasets without time stamps.
Handle groupCreation();
Handle datasetCreation();

/// One text or number as a scalar attribute. Text is stored with a fixed length, since only that is covered
/// by the checksums of the structure. False on failure.
bool writeText(hid_t object, const char* name, const std::string& text);
template <class T>
bool writeNumber(hid_t object, const char* name, T value);

/// The attribute, or nothing when it is missing or of another kind. Text is UTF-8 of at most kLongestText
/// bytes.
std::optional<std::string> readText(hid_t object, const char* name);
template <class T>
std::optional<T> readNumber(hid_t object, const char* name);

/// Type in the file and in memory of the numbers that the format stores.
template <class T>
hid_t fileType();
template <class T>
hid_t memoryType();

/// A one-dimensional dataset as it lies in the file.
struct Extent {
    std::uint64_t count = 0;
    std::uint64_t offset = 0; ///< of the first byte; 0 when count is 0
};
/// Nothing unless the dataset has `type`, one dimension, and lies in one piece below `fileSize`.
std::optional<Extent> contiguousExtent(hid_t dataset, hid_t type, std::uint64_t fileSize);

/// Writes or reads `count` numbers from position `first` on.
bool transferOut(hid_t dataset, hid_t memory, std::uint64_t first, std::uint64_t count, const void* values);
bool transferIn(hid_t dataset, hid_t memory, std::uint64_t first, std::uint64_t count, void* values);

/// A group for members that are still being made. HDF5 takes cubic time when links come one by one into the
/// header of a group while other objects are made; here it keeps them in a tree.
Handle pendingGroup(hid_t file, const char* name);
/// Moves the first `count` members "000001", "000002", ... of a pending group to a new group `name` of
/// `parent` that keeps them in its header; the pending group goes.
bool settleMembers(hid_t file, const char* pendingName, Handle& pending, std::size_t count, hid_t parent,
                   const char* name);

/// Number of links of a group; nothing on failure.
std::optional<std::uint64_t> memberCount(hid_t group);

} // namespace resultfile::hdf5
