#include "workbench/meshfile/MeshStream.h"

#include "framework/text/CodePage.h"
#include "host/ElementTypes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace workbench {
namespace {

constexpr std::uint64_t kGoodMark = 0x31304853454D5856; // "VXMESH01"
constexpr std::uint64_t kFailMark = 0x4C4941464D5856;
constexpr std::uint8_t kNextField = 1, kEnd = 2;
constexpr std::int64_t kLargestNumber = std::numeric_limits<std::int32_t>::max();
constexpr std::size_t kLongestText = 4096;

/// UTF-8 without control characters, whatever came in.
std::string printable(std::string_view text) {
    std::wstring wide = framework::fromUtf8(std::string(text));
    for (wchar_t& c : wide)
        if (c < L' ' || c == L'\x7f') c = L'?';
    return framework::toUtf8(wide);
}

/// The first number that stands twice; 0 when none does.
std::int64_t repeatedNumber(std::vector<std::int64_t> numbers) {
    if (!std::is_sorted(numbers.begin(), numbers.end())) std::sort(numbers.begin(), numbers.end());
    const auto twice = std::adjacent_find(numbers.begin(), numbers.end());
    return twice == numbers.end() ? 0 : *twice;
}

bool areNumbers(const std::vector<std::int64_t>& numbers) {
    return std::all_of(numbers.begin(), numbers.end(),
                       [](std::int64_t n) { return n >= 1 && n <= kLargestNumber; });
}

bool arePositions(const std::vector<std::uint32_t>& positions, std::size_t count) {
    return std::all_of(positions.begin(), positions.end(), [&](std::uint32_t p) { return p < count; });
}

} // namespace

void MeshStreamWriter::bytes(const void* data, std::size_t size) {
    if (size > 0 && std::fwrite(data, 1, size, file_) != size) good_ = false;
}

template <class T>
void MeshStreamWriter::number(T value) {
    static_assert(std::is_trivially_copyable_v<T>);
    bytes(&value, sizeof value);
}

template <class T>
void MeshStreamWriter::array(const std::vector<T>& values) {
    number(std::uint64_t{values.size()});
    bytes(values.data(), values.size() * sizeof(T));
}

void MeshStreamWriter::text(std::string_view text) {
    const std::string_view kept = text.substr(0, kLongestText);
    number(std::uint64_t{kept.size()});
    bytes(kept.data(), kept.size());
}

void MeshStreamWriter::mesh(const MeshRecords& mesh) {
    number(kGoodMark);
    array(mesh.nodeNumbers);
    array(mesh.nodePositions);
    array(mesh.elementNumbers);
    array(mesh.elementTypes);
    array(mesh.elementNodes);
    number(std::uint64_t{mesh.groups.size()});
    for (const MeshGroup& group : mesh.groups) {
        text(group.name);
        array(group.elements);
    }
    number(std::uint64_t{mesh.notes.size()});
    for (const std::string& note : mesh.notes)
        text(note);
}

void MeshStreamWriter::field(const FieldHeader& header, const FieldValues& values) {
    number(kNextField);
    text(header.name);
    number(header.place);
    number(header.components);
    number(header.step);
    number(header.time);
    array(values.items);
    array(values.values);
}

bool MeshStreamWriter::finish() {
    number(kEnd);
    return good_ && std::fflush(file_) == 0;
}

bool MeshStreamWriter::fail(std::string_view message) {
    std::clearerr(file_);
    if (std::fseek(file_, 0, SEEK_SET) != 0) return false;
    good_ = true;
    number(kFailMark);
    text(message);
    return good_ && std::fflush(file_) == 0;
}

/// Reads forward; after the first failure everything is zero and empty.
class MeshFile::Source {
  public:
    Source(std::FILE* file, std::uint64_t at, std::uint64_t size)
        : file_(file)
        , at_(at)
        , size_(size) {
        good_ = at <= size && ::fseeko(file, static_cast<off_t>(at), SEEK_SET) == 0;
    }

    bool good() const { return good_; }
    std::uint64_t place() const { return at_; }

    template <class T>
    T number() {
        T value{};
        if (!bytes(&value, sizeof value)) value = T{};
        return value;
    }

    template <class T>
    std::vector<T> array() {
        std::vector<T> values;
        const std::uint64_t count = countOf(sizeof(T));
        values.resize(count);
        if (!bytes(values.data(), count * sizeof(T))) values.clear();
        return values;
    }

    template <class T>
    void skipArray() {
        at_ += countOf(sizeof(T)) * sizeof(T);
        good_ = good_ && ::fseeko(file_, static_cast<off_t>(at_), SEEK_SET) == 0;
    }

    std::string text() {
        std::string text(countOf(1), '\0');
        if (text.size() > kLongestText || !bytes(text.data(), text.size())) {
            good_ = false;
            return {};
        }
        return printable(text);
    }

    /// How many items follow, of at least `itemSize` bytes each.
    std::uint64_t countOf(std::size_t itemSize) {
        const auto count = number<std::uint64_t>();
        if (count > (size_ - at_) / itemSize) good_ = false;
        return good_ ? count : 0;
    }

  private:
    bool bytes(void* data, std::size_t size) {
        if (size > size_ - at_) good_ = false;
        if (!good_) return false;
        good_ = size == 0 || std::fread(data, 1, size, file_) == size;
        at_ += good_ ? size : 0;
        return good_;
    }

    std::FILE* file_;
    std::uint64_t at_;
    std::uint64_t size_;
    bool good_ = true;
};

Result<MeshFile> MeshFile::open(std::FILE* stream, const std::string& name) {
    MeshFile file;
    file.file_.reset(stream);
    file.name_ = name;
    const off_t size = ::fseeko(stream, 0, SEEK_END) == 0 ? ::ftello(stream) : -1;
    if (size < 0) return Error{name + ": what was read of it cannot be taken over"};
    file.size_ = static_cast<std::uint64_t>(size);
    Source source(stream, 0, file.size_);
    const auto mark = source.number<std::uint64_t>();
    if (mark == kFailMark) {
        const std::string message = source.text();
        if (source.good() && !message.empty()) return Error{name + ": " + message};
    }
    if (mark != kGoodMark)
        return Error{name + ": reading it gave nothing; the file is damaged or there is no space in the "
                            "folder for temporary files"};
    if (auto read = file.readMesh(source); !read) return read.error();
    if (auto checked = file.checkMesh(); !checked) return checked.error();
    if (auto read = file.readFields(source); !read) return read.error();
    return file;
}

Result<void> MeshFile::readMesh(Source& source) {
    mesh_.nodeNumbers = source.array<std::int64_t>();
    mesh_.nodePositions = source.array<std::array<double, 3>>();
    mesh_.elementNumbers = source.array<std::int64_t>();
    mesh_.elementTypes = source.array<std::uint8_t>();
    mesh_.elementNodes = source.array<std::uint32_t>();
    const std::uint64_t groups = source.countOf(2 * sizeof(std::uint64_t));
    for (std::uint64_t i = 0; i < groups && source.good(); ++i) {
        std::string group = source.text();
        mesh_.groups.push_back({std::move(group), source.array<std::uint32_t>()});
    }
    const std::uint64_t notes = source.countOf(sizeof(std::uint64_t));
    for (std::uint64_t i = 0; i < notes && source.good(); ++i)
        mesh_.notes.push_back(source.text());
    if (!source.good()) return Error{name_ + ": what was read of its mesh is not whole; the file is damaged"};
    return {};
}

Result<void> MeshFile::checkMesh() const {
    const auto damaged = [&](const std::string& what) { return Error{name_ + ": " + what}; };
    const std::size_t nodes = mesh_.nodeNumbers.size(), elements = mesh_.elementNumbers.size();
    if (nodes == 0) return damaged("the file has no nodes");
    if (nodes > std::uint64_t(kLargestNumber) || elements > std::uint64_t(kLargestNumber))
        return damaged("it has more nodes or elements than a document can hold");
    if (!areNumbers(mesh_.nodeNumbers)) return damaged("it has node numbers that are not 1 to 2147483647");
    if (!areNumbers(mesh_.elementNumbers))
        return damaged("it has element numbers that are not 1 to 2147483647");
    if (const auto twice = repeatedNumber(mesh_.nodeNumbers); twice != 0)
        return damaged("the node number " + std::to_string(twice) + " stands twice");
    if (const auto twice = repeatedNumber(mesh_.elementNumbers); twice != 0)
        return damaged("the element number " + std::to_string(twice) + " stands twice");
    std::uint64_t corners = 0;
    for (const std::uint8_t type : mesh_.elementTypes) {
        if (elementNodeCount(type) == 0) return damaged("an element has an unknown type");
        corners += static_cast<std::uint64_t>(elementNodeCount(type));
    }
    if (mesh_.nodePositions.size() != nodes || mesh_.elementTypes.size() != elements ||
        mesh_.elementNodes.size() != corners || !arePositions(mesh_.elementNodes, nodes))
        return damaged("its elements and nodes do not belong together; the file is damaged");
    for (std::size_t n = 0; n < nodes; ++n)
        for (const double coordinate : mesh_.nodePositions[n])
            if (!std::isfinite(coordinate))
                return damaged("the place of node " + std::to_string(mesh_.nodeNumbers[n]) +
                               " is not finite");
    for (const MeshGroup& group : mesh_.groups)
        if (!arePositions(group.elements, elements))
            return damaged("the group '" + group.name + "' names elements that are not there");
    return {};
}

Result<void> MeshFile::readFields(Source& source) {
    std::uint8_t next = source.number<std::uint8_t>();
    while (source.good() && next == kNextField) {
        FieldHeader header;
        header.name = source.text();
        header.place = source.number<FieldPlace>();
        header.components = source.number<std::uint32_t>();
        header.step = source.number<std::int32_t>();
        header.time = source.number<double>();
        places_.push_back(source.place());
        source.skipArray<std::uint32_t>();
        source.skipArray<float>();
        if (!source.good()) break;
        if (header.place > FieldPlace::Corner || header.components < 1 ||
            header.components > kMostFieldComponents || !std::isfinite(header.time))
            return Error{name_ + ": the array '" + header.name + "' has no sound form; the file is damaged"};
        fields_.push_back(std::move(header));
        next = source.number<std::uint8_t>();
    }
    if (!source.good() || next != kEnd)
        return Error{name_ + ": what was read of its arrays is not whole; the file is damaged"};
    return {};
}

std::uint64_t MeshFile::rowCount(const FieldHeader& header, const std::vector<std::uint32_t>& items) const {
    if (header.place != FieldPlace::Corner) {
        if (!items.empty()) return items.size();
        return header.place == FieldPlace::Node ? mesh_.nodeNumbers.size() : mesh_.elementNumbers.size();
    }
    if (items.empty()) return mesh_.elementNodes.size();
    std::uint64_t rows = 0;
    for (const std::uint32_t item : items)
        rows += static_cast<std::uint64_t>(elementNodeCount(mesh_.elementTypes[item]));
    return rows;
}

Result<FieldValues> MeshFile::load(std::size_t field) const {
    const FieldHeader& header = fields_[field];
    Source source(file_.get(), places_[field], size_);
    FieldValues values;
    values.items = source.array<std::uint32_t>();
    values.values = source.array<float>();
    const std::size_t items =
        header.place == FieldPlace::Node ? mesh_.nodeNumbers.size() : mesh_.elementNumbers.size();
    const bool ascending = std::adjacent_find(values.items.begin(), values.items.end(),
                                              std::greater_equal<>()) == values.items.end();
    if (!source.good() || !ascending || !arePositions(values.items, items) ||
        values.values.size() != rowCount(header, values.items) * header.components)
        return Error{name_ + ": the values of the array '" + header.name +
                     "' are not as many as its items; the file is damaged"};
    return values;
}

} // namespace workbench
