#include "resultfile/Hdf5.h"

#include "base/ReplaceFile.h"
#include "resultfile/Layout.h"
#include "resultfile/Text.h"

#include <bit>
#include <charconv>
#include <string_view>

static_assert(std::endian::native == std::endian::little, "values are stored as they lie in memory");

namespace resultfile::hdf5 {

namespace {

std::recursive_mutex& sessionMutex() {
    static std::recursive_mutex mutex;
    return mutex;
}

/// What one walk over the error stack finds.
struct Cause {
    std::string innermost;
    int errorNumber = 0;
};

/// Guarded by the session's mutex.
Cause& lastCause() {
    static Cause cause;
    return cause;
}

herr_t visitError(unsigned depth, const H5E_error2_t* error, void* data) {
    auto& cause = *static_cast<Cause*>(data);
    const std::string_view text = error->desc ? error->desc : "";
    if (depth == 0) cause.innermost = text;
    constexpr std::string_view mark = "errno = ";
    if (const auto at = text.find(mark); at != text.npos && cause.errorNumber == 0)
        std::from_chars(text.data() + at + mark.size(), text.data() + text.size(), cause.errorNumber);
    return 0;
}

/// HDF5 calls this where it would print the stack, which the next call into it would clear.
herr_t keepCause(hid_t stack, void*) {
    Cause cause;
    H5Ewalk2(stack, H5E_WALK_UPWARD, visitError, &cause);
    lastCause() = std::move(cause);
    return 0;
}

bool isScalar(hid_t attribute) {
    const Handle space(H5Aget_space(attribute));
    return space && H5Sget_simple_extent_type(space.get()) == H5S_SCALAR;
}

Handle createScalar(hid_t object, const char* name, hid_t type) {
    const Handle space(H5Screate(H5S_SCALAR));
    return Handle(H5Acreate2(object, name, type, space.get(), H5P_DEFAULT, H5P_DEFAULT));
}

Handle openAttribute(hid_t object, const char* name) {
    return H5Aexists(object, name) > 0 ? Handle(H5Aopen(object, name, H5P_DEFAULT)) : Handle();
}

/// Selections of one run of a dataset, in the file and in memory.
struct Run {
    Handle file;
    Handle memory;
    bool valid = false;
};

Run selectRun(hid_t dataset, std::uint64_t first, std::uint64_t count) {
    const hsize_t start = first;
    const hsize_t size = count;
    Run run{Handle(H5Dget_space(dataset)), Handle(H5Screate_simple(1, &size, nullptr))};
    run.valid = run.file && run.memory &&
                H5Sselect_hyperslab(run.file.get(), H5S_SELECT_SET, &start, nullptr, &size, nullptr) >= 0;
    return run;
}

} // namespace

Session::Session()
    : lock_(sessionMutex()) {
    saved_ = H5Eget_auto2(H5E_DEFAULT, &print_, &printData_) >= 0;
    if (saved_) H5Eset_auto2(H5E_DEFAULT, keepCause, nullptr);
}

Session::~Session() {
    if (saved_) H5Eset_auto2(H5E_DEFAULT, print_, printData_);
}

bool Handle::reset() {
    if (id_ < 0) return true;
    const Session session;
    return H5Idec_ref(std::exchange(id_, H5I_INVALID_HID)) >= 0;
}

std::string failureCause() {
    const Cause& cause = lastCause();
    if (cause.errorNumber) return systemErrorText(cause.errorNumber);
    return cause.innermost.empty() ? "HDF5 gives no cause" : cause.innermost;
}

Handle groupCreation() {
    Handle creation(H5Pcreate(H5P_GROUP_CREATE));
    H5Pset_obj_track_times(creation.get(), false);
    // Links stay in the header of their group, however many there are: see headerIntact.
    H5Pset_link_phase_change(creation.get(), layout::kMostMembers, 0);
    return creation;
}

Handle datasetCreation() {
    Handle creation(H5Pcreate(H5P_DATASET_CREATE));
    H5Pset_obj_track_times(creation.get(), false);
    H5Pset_layout(creation.get(), H5D_CONTIGUOUS);
    H5Pset_fill_time(creation.get(), H5D_FILL_TIME_NEVER);
    // The place in the file is settled here, not by who writes first.
    H5Pset_alloc_time(creation.get(), H5D_ALLOC_TIME_EARLY);
    return creation;
}

template <>
hid_t fileType<float>() {
    return H5T_IEEE_F32LE;
}
template <>
hid_t fileType<double>() {
    return H5T_IEEE_F64LE;
}
template <>
hid_t fileType<std::int32_t>() {
    return H5T_STD_I32LE;
}
template <>
hid_t fileType<std::uint32_t>() {
    return H5T_STD_U32LE;
}
template <>
hid_t fileType<std::uint64_t>() {
    return H5T_STD_U64LE;
}
template <>
hid_t memoryType<float>() {
    return H5T_NATIVE_FLOAT;
}
template <>
hid_t memoryType<double>() {
    return H5T_NATIVE_DOUBLE;
}
template <>
hid_t memoryType<std::int32_t>() {
    return H5T_NATIVE_INT32;
}
template <>
hid_t memoryType<std::uint32_t>() {
    return H5T_NATIVE_UINT32;
}
template <>
hid_t memoryType<std::uint64_t>() {
    return H5T_NATIVE_UINT64;
}

bool writeText(hid_t object, const char* name, const std::string& text) {
    const Handle type(H5Tcopy(H5T_C_S1));
    // HDF5 knows no text of length zero: the empty text is one zero byte.
    if (H5Tset_size(type.get(), text.empty() ? 1 : text.size()) < 0) return false;
    if (H5Tset_strpad(type.get(), H5T_STR_NULLPAD) < 0 || H5Tset_cset(type.get(), H5T_CSET_UTF8) < 0)
        return false;
    const Handle attribute = createScalar(object, name, type.get());
    return attribute && H5Awrite(attribute.get(), type.get(), text.c_str()) >= 0;
}

template <class T>
bool writeNumber(hid_t object, const char* name, T value) {
    const Handle attribute = createScalar(object, name, fileType<T>());
    return attribute && H5Awrite(attribute.get(), memoryType<T>(), &value) >= 0;
}

std::optional<std::string> readText(hid_t object, const char* name) {
    const Handle attribute = openAttribute(object, name);
    if (!attribute || !isScalar(attribute.get())) return {};
    const Handle type(H5Aget_type(attribute.get()));
    if (!type || H5Tget_class(type.get()) != H5T_STRING || H5Tis_variable_str(type.get()) != 0) return {};
    const std::size_t size = H5Tget_size(type.get());
    if (size == 0 || size > layout::kLongestText) return {};
    std::string text(size, '\0');
    if (H5Aread(attribute.get(), type.get(), text.data()) < 0) return {};
    text.resize(std::string_view(text).find_last_not_of('\0') + 1);
    if (!isUtf8Text(text)) return {};
    return text;
}

template <class T>
std::optional<T> readNumber(hid_t object, const char* name) {
    const Handle attribute = openAttribute(object, name);
    if (!attribute || !isScalar(attribute.get())) return {};
    const Handle type(H5Aget_type(attribute.get()));
    if (!type || H5Tequal(type.get(), fileType<T>()) <= 0) return {};
    T value{};
    if (H5Aread(attribute.get(), memoryType<T>(), &value) < 0) return {};
    return value;
}

template bool writeNumber(hid_t, const char*, std::int32_t);
template bool writeNumber(hid_t, const char*, std::uint64_t);
template bool writeNumber(hid_t, const char*, double);
template std::optional<std::int32_t> readNumber(hid_t, const char*);
template std::optional<std::uint64_t> readNumber(hid_t, const char*);
template std::optional<double> readNumber(hid_t, const char*);

std::optional<Extent> contiguousExtent(hid_t dataset, hid_t type, std::uint64_t fileSize) {
    const Handle stored(H5Dget_type(dataset));
    if (!stored || H5Tequal(stored.get(), type) <= 0) return {};
    const Handle space(H5Dget_space(dataset));
    if (!space || H5Sget_simple_extent_type(space.get()) != H5S_SIMPLE ||
        H5Sget_simple_extent_ndims(space.get()) != 1)
        return {};
    hsize_t count = 0;
    if (H5Sget_simple_extent_dims(space.get(), &count, nullptr) != 1) return {};
    if (count == 0) return Extent{};
    // An offset is known only for data in one piece inside this very file.
    const haddr_t offset = H5Dget_offset(dataset);
    const std::uint64_t size = H5Tget_size(stored.get());
    if (offset == HADDR_UNDEF || offset >= fileSize || count > (fileSize - offset) / size) return {};
    return Extent{count, offset};
}

bool transferOut(hid_t dataset, hid_t memory, std::uint64_t first, std::uint64_t count, const void* values) {
    if (count == 0) return true;
    const Run run = selectRun(dataset, first, count);
    return run.valid && H5Dwrite(dataset, memory, run.memory.get(), run.file.get(), H5P_DEFAULT, values) >= 0;
}

bool transferIn(hid_t dataset, hid_t memory, std::uint64_t first, std::uint64_t count, void* values) {
    if (count == 0) return true;
    const Run run = selectRun(dataset, first, count);
    return run.valid && H5Dread(dataset, memory, run.memory.get(), run.file.get(), H5P_DEFAULT, values) >= 0;
}

Handle pendingGroup(hid_t file, const char* name) {
    const Handle creation(H5Pcreate(H5P_GROUP_CREATE));
    H5Pset_obj_track_times(creation.get(), false);
    return Handle(H5Gcreate2(file, name, H5P_DEFAULT, creation.get(), H5P_DEFAULT));
}

bool settleMembers(hid_t file, const char* pendingName, Handle& pending, std::size_t count, hid_t parent,
                   const char* name) {
    const Handle creation = groupCreation();
    const Handle group(H5Gcreate2(parent, name, H5P_DEFAULT, creation.get(), H5P_DEFAULT));
    if (!group) return false;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string member = layout::memberName(i);
        if (H5Lmove(pending.get(), member.c_str(), group.get(), member.c_str(), H5P_DEFAULT, H5P_DEFAULT) < 0)
            return false;
    }
    return pending.reset() && H5Ldelete(file, pendingName, H5P_DEFAULT) >= 0;
}

std::optional<std::uint64_t> memberCount(hid_t group) {
    H5G_info_t info{};
    if (H5Gget_info(group, &info) < 0) return {};
    return info.nlinks;
}

} // namespace resultfile::hdf5
