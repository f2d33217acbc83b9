#include "base/Checksum.h"
#include "base/ReplaceFile.h"
#include "resultfile/Hdf5.h"
#include "resultfile/Layout.h"
#include "resultfile/ResultFile.h"
#include "resultfile/Superblock.h"
#include "resultfile/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numeric>
#include <optional>
#include <set>

namespace resultfile {

using namespace hdf5;

namespace {

/// Values that are read and checksummed at once: 256 KiB, which the second-level cache holds.
constexpr std::uint64_t kBlock = 64 * 1024;

/// Fewest bytes that a group or dataset takes in the file. A file that seems to hold more of them than fit
/// links the same ones again and again.
constexpr std::uint64_t kSmallestObject = 64;

struct ItemList {
    std::string name;
    Location location = Location::Node;
    std::uint64_t count = 0;
    std::uint64_t valueCount = 0;
};

std::optional<Location> readLocation(hid_t object) {
    const auto number = readNumber<std::int32_t>(object, layout::kLocation);
    if (number == static_cast<int>(Location::Node)) return Location::Node;
    if (number == static_cast<int>(Location::ElementCorner)) return Location::ElementCorner;
    return {};
}

/// The identifier that a member's name stands for; nothing unless it is written as the Writer writes it.
std::optional<unsigned> componentId(std::string_view name) {
    unsigned id = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), id);
    if (error != std::errc() || name != std::to_string(id)) return {};
    return id;
}

herr_t keepName(hid_t, const char* name, const H5L_info_t*, void* names) {
    static_cast<std::vector<std::string>*>(names)->emplace_back(name);
    return 0;
}

} // namespace

struct Reader::State {
    explicit State(std::filesystem::path opened)
        : path(std::move(opened)) {}

    Error unusable(const std::string& reason) const;
    Result<Handle> member(hid_t group, const std::string& name, H5I_type_t type, const std::string& subject);
    Result<std::uint64_t> members(hid_t group, const std::string& subject) const;
    template <class T>
    Result<std::uint64_t> extent(hid_t dataset, const std::string& subject);
    template <class T>
    Result<std::vector<T>> wholeDataset(hid_t dataset, std::uint64_t count, const std::string& subject) const;
    template <class T>
    Result<std::vector<T>> meshNumbers(const char* name, std::uint64_t count) const;

    Result<void> open();
    Result<void> readTexts();
    Result<void> readMesh();
    Result<void> readItemLists();
    Result<void> readCases();
    Result<Case> readCase(hid_t group, const std::string& subject);
    Result<Step> readStep(hid_t group, const std::string& subject);
    Result<Component> readComponent(hid_t dataset, const std::string& name, const std::string& subject);

    /// A component that the caller asks for, its dataset open.
    struct Found {
        const Component* component = nullptr;
        std::string subject;
    };
    Result<Found> find(std::size_t caseIndex, std::size_t stepIndex, unsigned id);
    Result<void> verify(hid_t dataset, std::uint64_t found, const std::string& subject) const;

    std::filesystem::path path;
    std::uint64_t size = 0; ///< of the file, bytes
    Handle file;
    Contents contents;
    std::vector<ItemList> items;
    std::uint64_t objectsSeen = 0;
    std::uint64_t bytesSeen = 0;

    /// The component read last stays open for whoever reads it in pieces.
    Handle dataset;
    std::size_t datasetCase = 0, datasetStep = 0;
    unsigned datasetId = 0;
};

Error Reader::State::unusable(const std::string& reason) const {
    return Error{"cannot read " + path.string() + ": " + reason};
}

Result<Handle> Reader::State::member(hid_t group, const std::string& name, H5I_type_t type,
                                     const std::string& subject) {
    if (++objectsSeen > size / kSmallestObject)
        return unusable("it holds more objects than fit into its size");
    Handle opened = openMember(group, name.c_str(), type);
    if (!opened) return unusable(subject + " is missing or damaged");
    return opened;
}

Result<std::uint64_t> Reader::State::members(hid_t group, const std::string& subject) const {
    const auto count = memberCount(group);
    if (!count) return unusable(subject + " cannot be listed: " + failureCause());
    if (*count > size / kSmallestObject) return unusable("it holds more objects than fit into its size");
    return *count;
}

template <class T>
Result<std::uint64_t> Reader::State::extent(hid_t opened, const std::string& subject) {
    const auto found = contiguousExtent(opened, fileType<T>(), size);
    if (!found) return unusable(subject + " is not one row of numbers of the right type inside the file");
    // Datasets do not share bytes, so that all of them together fit as well.
    bytesSeen += found->count * sizeof(T);
    if (bytesSeen > size) return unusable("its datasets overlap");
    return found->count;
}

Result<void> Reader::State::verify(hid_t opened, std::uint64_t found, const std::string& subject) const {
    const auto stored = readNumber<std::uint64_t>(opened, layout::kChecksum);
    if (!stored) return unusable(subject + " has no checksum");
    if (*stored != found) return unusable(subject + " is damaged: its checksum differs");
    return {};
}

/// Read and checked. `count` has been checked against the file's size.
template <class T>
Result<std::vector<T>> Reader::State::wholeDataset(hid_t opened, std::uint64_t count,
                                                   const std::string& subject) const {
    std::vector<T> numbers;
    numbers.reserve(count);
    Checksum checksum;
    for (std::uint64_t first = 0; first < count; first += kBlock) {
        const std::uint64_t piece = std::min(kBlock, count - first);
        numbers.resize(first + piece);
        if (!transferIn(opened, memoryType<T>(), first, piece, numbers.data() + first))
            return unusable(subject + ": " + failureCause());
        checksum.add(std::as_bytes(std::span(numbers).subspan(first)));
    }
    if (auto verified = verify(opened, checksum.value(), subject); !verified) return verified.error();
    return numbers;
}

template <class T>
Result<std::vector<T>> Reader::State::meshNumbers(const char* name, std::uint64_t count) const {
    const Handle group = openMember(file.get(), layout::kMesh, H5I_GROUP);
    const Handle numbers = group ? openMember(group.get(), name, H5I_DATASET) : Handle();
    if (!numbers) return unusable(std::string("dataset ") + name + ": " + failureCause());
    return wholeDataset<T>(numbers.get(), count, std::string("dataset ") + name);
}

Result<void> Reader::State::open() {
    const auto superblock = checkSuperblock(path);
    if (!superblock) return superblock.error();
    size = superblock->fileSize;
    const Handle access = fileAccess();
    file = Handle(H5Fopen(path.c_str(), H5F_ACC_RDONLY, access.get()));
    if (!file) return unusable(failureCause());
    if (auto read = readTexts(); !read) return read;
    if (auto read = readMesh(); !read) return read;
    if (auto read = readItemLists(); !read) return read;
    return readCases();
}

Result<void> Reader::State::readTexts() {
    const Handle root(H5Gopen2(file.get(), "/", H5P_DEFAULT));
    if (!root) return unusable(failureCause());
    const auto format = readText(root.get(), layout::kFormat);
    if (format != layout::kFormatName) return unusable("it is an HDF5 file, but not a result file");
    const auto version = readNumber<std::int32_t>(root.get(), layout::kVersion);
    if (!version) return unusable("its format version is missing or damaged");
    if (*version != layout::kFormatVersion)
        return unusable("its format has version " + std::to_string(*version) +
                        ", this program reads version " + std::to_string(layout::kFormatVersion) +
                        "; use a " + (*version > layout::kFormatVersion ? "newer" : "older") +
                        " program or compute it anew");
    auto analysis = readText(root.get(), layout::kAnalysis);
    auto producer = readText(root.get(), layout::kProducer);
    auto checksum = readText(root.get(), layout::kInputChecksum);
    if (!analysis || !producer || !checksum) return unusable("one of its texts is missing or damaged");
    contents.analysis = std::move(*analysis);
    contents.producer = std::move(*producer);
    contents.inputChecksum = std::move(*checksum);
    return {};
}

Result<void> Reader::State::readMesh() {
    const auto group = member(file.get(), layout::kMesh, H5I_GROUP, "the mesh");
    if (!group) return group.error();
    std::uint64_t counts[3];
    std::size_t index = 0;
    for (const char* name : {layout::kNodeNumbers, layout::kElementNumbers, layout::kElementCornerCounts}) {
        const auto numbers = member(group->get(), name, H5I_DATASET, std::string("dataset ") + name);
        if (!numbers) return numbers.error();
        const auto count = extent<std::int32_t>(numbers->get(), std::string("dataset ") + name);
        if (!count) return count.error();
        counts[index++] = *count;
    }
    if (counts[1] != counts[2]) return unusable("its elements and their corner counts differ in number");
    contents.nodeCount = counts[0];
    contents.elementCount = counts[1];
    return {};
}

/// Counts that tables are checked against: corners of the mesh and values of each item list.
Result<void> Reader::State::readItemLists() {
    const auto corners = meshNumbers<std::int32_t>(layout::kElementCornerCounts, contents.elementCount);
    if (!corners) return corners.error();
    if (std::any_of(corners->begin(), corners->end(), [](std::int32_t count) { return count < 0; }))
        return unusable("an element has a negative corner count");
    contents.cornerCount = std::accumulate(corners->begin(), corners->end(), std::uint64_t{0});

    const auto group = member(file.get(), layout::kItemLists, H5I_GROUP, "the group of item lists");
    if (!group) return group.error();
    const auto count = members(group->get(), "the group of item lists");
    if (!count) return count.error();
    std::set<std::string> names;
    for (std::uint64_t i = 0; i < *count; ++i) {
        const std::string subject = "item list " + std::to_string(i + 1);
        const auto list = member(group->get(), layout::memberName(i), H5I_DATASET, subject);
        if (!list) return list.error();
        const auto length = extent<std::uint32_t>(list->get(), subject);
        if (!length) return length.error();
        auto name = readText(list->get(), layout::kName);
        const auto location = readLocation(list->get());
        if (!name || name->empty() || !location) return unusable(subject + " lacks its name or location");
        if (!names.insert(*name).second) return unusable("item list " + inQuotes(*name) + " is there twice");
        const auto positions = wholeDataset<std::uint32_t>(list->get(), *length, subject);
        if (!positions) return positions.error();
        const std::uint64_t limit = *location == Location::Node ? contents.nodeCount : contents.elementCount;
        if (std::adjacent_find(positions->begin(), positions->end(), std::greater_equal<>()) !=
                positions->end() ||
            (!positions->empty() && positions->back() >= limit))
            return unusable(subject + " does not hold ascending positions of the mesh");
        std::uint64_t values = *length;
        if (*location == Location::ElementCorner) {
            values = 0;
            for (const std::uint32_t position : *positions)
                values += static_cast<std::uint64_t>((*corners)[position]);
        }
        items.push_back({std::move(*name), *location, *length, values});
    }
    return {};
}

Result<void> Reader::State::readCases() {
    const auto group = member(file.get(), layout::kCases, H5I_GROUP, "the group of cases");
    if (!group) return group.error();
    const auto count = members(group->get(), "the group of cases");
    if (!count) return count.error();
    std::set<std::string> names;
    for (std::uint64_t i = 0; i < *count; ++i) {
        const std::string subject = "case " + std::to_string(i + 1);
        const auto opened = member(group->get(), layout::memberName(i), H5I_GROUP, subject);
        if (!opened) return opened.error();
        auto read = readCase(opened->get(), subject);
        if (!read) return read.error();
        if (!names.insert(read->name).second)
            return unusable("case " + inQuotes(read->name) + " is there twice");
        contents.cases.push_back(std::move(*read));
    }
    return {};
}

Result<Case> Reader::State::readCase(hid_t group, const std::string& subject) {
    auto name = readText(group, layout::kName);
    if (!name) return unusable(subject + " has no name");
    Case result{std::move(*name), {}};
    const auto steps = member(group, layout::kSteps, H5I_GROUP, "the group of steps of " + subject);
    if (!steps) return steps.error();
    const auto count = members(steps->get(), "the group of steps of " + subject);
    if (!count) return count.error();
    std::set<std::string> names;
    for (std::uint64_t i = 0; i < *count; ++i) {
        const std::string stepSubject = "step " + std::to_string(i + 1) + " of " + subject;
        const auto opened = member(steps->get(), layout::memberName(i), H5I_GROUP, stepSubject);
        if (!opened) return opened.error();
        auto read = readStep(opened->get(), stepSubject);
        if (!read) return read.error();
        if (!names.insert(read->name).second)
            return unusable("step " + inQuotes(read->name) + " of " + subject + " is there twice");
        result.steps.push_back(std::move(*read));
    }
    return result;
}

Result<Step> Reader::State::readStep(hid_t group, const std::string& subject) {
    auto name = readText(group, layout::kName);
    const auto value = readNumber<double>(group, layout::kValue);
    if (!name || !value || !std::isfinite(*value)) return unusable(subject + " lacks its name or value");
    Step result{std::move(*name), *value, {}};
    if (const auto count = members(group, subject); !count) return count.error();
    std::vector<std::string> names;
    if (H5Literate(group, H5_INDEX_NAME, H5_ITER_NATIVE, nullptr, keepName, &names) < 0)
        return unusable(subject + " cannot be listed: " + failureCause());
    for (const std::string& component : names) {
        const auto opened = member(group, component, H5I_DATASET, inQuotes(component) + " in " + subject);
        if (!opened) return opened.error();
        auto read =
            readComponent(opened->get(), component, "component " + inQuotes(component) + " of " + subject);
        if (!read) return read.error();
        result.components.push_back(std::move(*read));
    }
    std::sort(result.components.begin(), result.components.end(),
              [](const Component& a, const Component& b) { return a.id < b.id; });
    return result;
}

Result<Component> Reader::State::readComponent(hid_t opened, const std::string& name,
                                               const std::string& subject) {
    const auto id = componentId(name);
    if (!id) return unusable(subject + " is not named by an identifier");
    const auto location = readLocation(opened);
    if (!location) return unusable(subject + " has no location");
    const auto count = extent<float>(opened, subject);
    if (!count) return count.error();
    Component result{*id, *location, *count, {}};
    std::uint64_t expected = *location == Location::Node ? contents.nodeCount : contents.cornerCount;
    if (H5Aexists(opened, layout::kItems) > 0) {
        auto listName = readText(opened, layout::kItems);
        const auto list =
            std::find_if(items.begin(), items.end(), [&](const ItemList& l) { return l.name == listName; });
        if (list == items.end() || list->location != *location)
            return unusable(subject + " follows an item list that is missing or has another location");
        expected = list->valueCount;
        result.items = list->name;
    }
    if (*count != expected)
        return unusable(subject + " has " + std::to_string(*count) + " values where the mesh has " +
                        std::to_string(expected));
    return result;
}

Result<Reader::State::Found> Reader::State::find(std::size_t caseIndex, std::size_t stepIndex, unsigned id) {
    const std::string text = "component " + std::to_string(id);
    if (caseIndex >= contents.cases.size() || stepIndex >= contents.cases[caseIndex].steps.size())
        return unusable(text + " is asked for in a case or step that is missing");
    const Case& resultCase = contents.cases[caseIndex];
    const Step& step = resultCase.steps[stepIndex];
    Found found{nullptr, text + " of step " + inQuotes(step.name) + " of case " + inQuotes(resultCase.name)};
    const auto at =
        std::lower_bound(step.components.begin(), step.components.end(), id,
                         [](const Component& component, unsigned key) { return component.id < key; });
    if (at == step.components.end() || at->id != id) return unusable(found.subject + " is missing");
    found.component = &*at;
    if (dataset && datasetCase == caseIndex && datasetStep == stepIndex && datasetId == id) return found;
    const std::string place = std::string(layout::kCases) + "/" + layout::memberName(caseIndex) + "/" +
                              layout::kSteps + "/" + layout::memberName(stepIndex) + "/" + std::to_string(id);
    dataset = Handle(H5Dopen2(file.get(), place.c_str(), H5P_DEFAULT));
    if (!dataset) return unusable(found.subject + ": " + failureCause());
    datasetCase = caseIndex;
    datasetStep = stepIndex;
    datasetId = id;
    return found;
}

Reader::Reader(std::unique_ptr<State> state)
    : state_(std::move(state)) {}
Reader::~Reader() = default;
Reader::Reader(Reader&&) noexcept = default;
Reader& Reader::operator=(Reader&&) noexcept = default;

Result<Reader> Reader::open(const std::filesystem::path& path) {
    const Session session;
    auto state = std::make_unique<State>(path);
    if (auto opened = state->open(); !opened) return opened.error();
    return Reader(std::move(state));
}

const std::filesystem::path& Reader::path() const {
    return state_->path;
}
const Contents& Reader::contents() const {
    return state_->contents;
}

Result<std::vector<std::int32_t>> Reader::nodeNumbers() const {
    const Session session;
    return state_->meshNumbers<std::int32_t>(layout::kNodeNumbers, state_->contents.nodeCount);
}

Result<std::vector<std::int32_t>> Reader::elementNumbers() const {
    const Session session;
    return state_->meshNumbers<std::int32_t>(layout::kElementNumbers, state_->contents.elementCount);
}

Result<std::vector<std::int32_t>> Reader::elementCornerCounts() const {
    const Session session;
    return state_->meshNumbers<std::int32_t>(layout::kElementCornerCounts, state_->contents.elementCount);
}

Result<std::vector<std::uint32_t>> Reader::items(const std::string& name) const {
    const Session session;
    const auto& lists = state_->items;
    const auto list =
        std::find_if(lists.begin(), lists.end(), [&](const ItemList& l) { return l.name == name; });
    if (list == lists.end()) return state_->unusable("item list " + inQuotes(name) + " is missing");
    const std::string place = std::string(layout::kItemLists) + "/" +
                              layout::memberName(static_cast<std::size_t>(list - lists.begin()));
    const Handle opened(H5Dopen2(state_->file.get(), place.c_str(), H5P_DEFAULT));
    if (!opened) return state_->unusable("item list " + inQuotes(name) + ": " + failureCause());
    return state_->wholeDataset<std::uint32_t>(opened.get(), list->count, "item list " + inQuotes(name));
}

Result<std::vector<float>> Reader::values(std::size_t caseIndex, std::size_t stepIndex, unsigned id) const {
    const Session session;
    const auto found = state_->find(caseIndex, stepIndex, id);
    if (!found) return found.error();
    return state_->wholeDataset<float>(state_->dataset.get(), found->component->count, found->subject);
}

Result<void> Reader::valuesInto(std::size_t caseIndex, std::size_t stepIndex, unsigned id,
                                std::uint64_t first, std::span<float> out) const {
    const Session session;
    const auto found = state_->find(caseIndex, stepIndex, id);
    if (!found) return found.error();
    const std::uint64_t count = found->component->count;
    if (first > count || out.size() > count - first)
        return state_->unusable(found->subject + " has " + std::to_string(count) + " values, not " +
                                std::to_string(out.size()) + " from position " + std::to_string(first) +
                                " on");
    if (!transferIn(state_->dataset.get(), memoryType<float>(), first, out.size(), out.data()))
        return state_->unusable(found->subject + ": " + failureCause());
    return {};
}

} // namespace resultfile
