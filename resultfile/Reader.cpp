#include "base/Checksum.h"
#include "base/ReplaceFile.h"
#include "resultfile/FileDriver.h"
#include "resultfile/Hdf5.h"
#include "resultfile/Layout.h"
#include "resultfile/ObjectHeader.h"
#include "resultfile/ResultFile.h"
#include "resultfile/Superblock.h"
#include "resultfile/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <set>

namespace resultfile {

using namespace hdf5;

namespace {

/// Values that are read and checksummed at once, few enough to stay in the cache between the two.
constexpr std::uint64_t kBlock = 1024 * 1024;

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
    ~State() {
        dataset.reset();
        file.reset();
        source->close();
    }

    Error unusable(const std::string& reason) const;
    std::string cause() const;
    Handle openMember(hid_t group, const char* name, H5I_type_t type) const;
    Result<Handle> member(hid_t group, const std::string& name, H5I_type_t type, const std::string& subject);
    Result<std::uint64_t> members(hid_t group, const std::string& subject) const;
    template <class T>
    Result<std::uint64_t> extent(hid_t dataset, const std::string& subject);
    template <class T, class Room, class Use>
    Result<void> readBlocks(hid_t dataset, std::uint64_t count, const std::string& subject, Room room,
                            Use use) const;
    template <class T>
    Result<std::vector<T>> wholeDataset(hid_t dataset, std::uint64_t count, const std::string& subject) const;
    Result<Handle> meshDataset(const char* name) const;
    Result<std::vector<std::int32_t>> meshNumbers(const char* name, std::uint64_t count) const;

    Result<void> open();
    Result<void> readTexts();
    Result<void> readMesh();
    Result<void> countCorners();
    Result<void> readItemLists();
    Result<ItemList> readItemList(hid_t list, const std::string& subject, std::vector<std::int32_t>& corners);
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

    std::filesystem::path path;
    std::uint64_t size = 0; ///< of the file, bytes
    std::shared_ptr<OpenFile> source = std::make_shared<OpenFile>();
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

/// Of a call of HDF5 that failed.
std::string Reader::State::cause() const {
    return source->fault() ? systemErrorText(source->fault()) : failureCause();
}

/// Opens a member that is linked directly (no soft or external link) and is of `type`; else an empty handle.
Handle Reader::State::openMember(hid_t group, const char* name, H5I_type_t type) const {
    H5L_info_t link{};
    if (H5Lget_info(group, name, &link, H5P_DEFAULT) < 0 || link.type != H5L_TYPE_HARD) return {};
    if (!headerIntact(*source, size, link.u.address)) return {};
    Handle opened(H5Oopen(group, name, H5P_DEFAULT));
    if (!opened || H5Iget_type(opened.get()) != type) return {};
    return opened;
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
    if (!count) return unusable(subject + " cannot be listed: " + cause());
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

/// Reads a dataset whole and checks it. room(first, size) says where a block goes, use(block) sees it
/// afterwards.
template <class T, class Room, class Use>
Result<void> Reader::State::readBlocks(hid_t opened, std::uint64_t count, const std::string& subject,
                                       Room room, Use use) const {
    Checksum checksum;
    for (std::uint64_t first = 0; first < count; first += kBlock) {
        const std::uint64_t piece = std::min(kBlock, count - first);
        const std::span<T> block(room(first, piece), piece);
        if (!transferIn(opened, memoryType<T>(), first, piece, block.data()))
            return unusable(subject + ": " + cause());
        checksum.add(std::as_bytes(block));
        use(block);
    }
    const auto stored = readNumber<std::uint64_t>(opened, layout::kChecksum);
    if (!stored) return unusable(subject + " has no checksum");
    if (*stored != checksum.value()) return unusable(subject + " is damaged: its checksum differs");
    return {};
}

/// `count` has been checked against the file's size.
template <class T>
Result<std::vector<T>> Reader::State::wholeDataset(hid_t opened, std::uint64_t count,
                                                   const std::string& subject) const {
    std::vector<T> numbers;
    numbers.reserve(count);
    const auto grow = [&](std::uint64_t first, std::uint64_t piece) {
        numbers.resize(first + piece);
        return numbers.data() + first;
    };
    const auto read = readBlocks<T>(opened, count, subject, grow, [](std::span<const T>) {});
    if (!read) return read.error();
    return numbers;
}

Result<Handle> Reader::State::meshDataset(const char* name) const {
    const Handle group = openMember(file.get(), layout::kMesh, H5I_GROUP);
    Handle numbers = group ? openMember(group.get(), name, H5I_DATASET) : Handle();
    if (!numbers) return unusable(std::string("dataset ") + name + ": " + cause());
    return numbers;
}

Result<std::vector<std::int32_t>> Reader::State::meshNumbers(const char* name, std::uint64_t count) const {
    const auto numbers = meshDataset(name);
    if (!numbers) return numbers.error();
    return wholeDataset<std::int32_t>(numbers->get(), count, std::string("dataset ") + name);
}

Result<void> Reader::State::open() {
    if (!source->openToRead(path)) return unusable(systemErrorText(source->fault()));
    if (const auto fault = superblockFault(*source); !fault.empty()) return unusable(fault);
    size = source->size();
    file = openHdf5(source, path);
    if (!file) return unusable(cause());
    if (auto read = readTexts(); !read) return read;
    if (auto read = readMesh(); !read) return read;
    if (auto read = readItemLists(); !read) return read;
    return readCases();
}

Result<void> Reader::State::readTexts() {
    const Handle root(H5Gopen2(file.get(), "/", H5P_DEFAULT));
    if (!root) return unusable(cause());
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
    return countCorners();
}

/// Sums the corners without keeping the counts, which are needed for lists of elements alone.
Result<void> Reader::State::countCorners() {
    const auto numbers = meshDataset(layout::kElementCornerCounts);
    if (!numbers) return numbers.error();
    std::vector<std::int32_t> block(std::min(kBlock, contents.elementCount));
    bool negative = false;
    const auto read = readBlocks<std::int32_t>(
        numbers->get(), contents.elementCount, std::string("dataset ") + layout::kElementCornerCounts,
        [&](std::uint64_t, std::uint64_t) { return block.data(); },
        [&](std::span<const std::int32_t> counts) {
            for (const std::int32_t count : counts) {
                negative |= count < 0;
                contents.cornerCount += static_cast<std::uint32_t>(count);
            }
        });
    if (!read) return read;
    return negative ? Result<void>(unusable("an element has a negative corner count")) : Result<void>();
}

Result<void> Reader::State::readItemLists() {
    const auto group = member(file.get(), layout::kItemLists, H5I_GROUP, "the group of item lists");
    if (!group) return group.error();
    const auto count = members(group->get(), "the group of item lists");
    if (!count) return count.error();
    std::set<std::string> names;
    std::vector<std::int32_t> corners;
    for (std::uint64_t i = 0; i < *count; ++i) {
        const std::string subject = "item list " + std::to_string(i + 1);
        const auto list = member(group->get(), layout::memberName(i), H5I_DATASET, subject);
        if (!list) return list.error();
        auto read = readItemList(list->get(), subject, corners);
        if (!read) return read.error();
        if (!names.insert(read->name).second)
            return unusable("item list " + inQuotes(read->name) + " is there twice");
        items.push_back(std::move(*read));
    }
    return {};
}

/// `corners` are the corner counts of the mesh once a list has needed them.
Result<ItemList> Reader::State::readItemList(hid_t list, const std::string& subject,
                                             std::vector<std::int32_t>& corners) {
    const auto length = extent<std::uint32_t>(list, subject);
    if (!length) return length.error();
    auto name = readText(list, layout::kName);
    const auto location = readLocation(list);
    if (!name || name->empty() || !location) return unusable(subject + " lacks its name or location");
    const auto positions = wholeDataset<std::uint32_t>(list, *length, subject);
    if (!positions) return positions.error();
    const std::uint64_t limit = *location == Location::Node ? contents.nodeCount : contents.elementCount;
    if (std::adjacent_find(positions->begin(), positions->end(), std::greater_equal<>()) !=
            positions->end() ||
        (!positions->empty() && positions->back() >= limit))
        return unusable(subject + " does not hold ascending positions of the mesh");
    ItemList result{std::move(*name), *location, *length, *length};
    if (*location == Location::Node) return result;
    if (corners.empty()) {
        auto read = meshNumbers(layout::kElementCornerCounts, contents.elementCount);
        if (!read) return read.error();
        corners = std::move(*read);
    }
    result.valueCount = 0;
    for (const std::uint32_t position : *positions)
        result.valueCount += static_cast<std::uint64_t>(corners[position]);
    return result;
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
        return unusable(subject + " cannot be listed: " + cause());
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
    if (!dataset) return unusable(found.subject + ": " + cause());
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
    return state_->meshNumbers(layout::kNodeNumbers, state_->contents.nodeCount);
}

Result<std::vector<std::int32_t>> Reader::elementNumbers() const {
    const Session session;
    return state_->meshNumbers(layout::kElementNumbers, state_->contents.elementCount);
}

Result<std::vector<std::int32_t>> Reader::elementCornerCounts() const {
    const Session session;
    return state_->meshNumbers(layout::kElementCornerCounts, state_->contents.elementCount);
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
    if (!opened) return state_->unusable("item list " + inQuotes(name) + ": " + state_->cause());
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
    const hid_t dataset = state_->dataset.get();
    if (first == 0 && out.size() == count)
        return state_->readBlocks<float>(
            dataset, count, found->subject,
            [&](std::uint64_t begin, std::uint64_t) { return out.data() + begin; },
            [](std::span<const float>) {});
    if (!transferIn(dataset, memoryType<float>(), first, out.size(), out.data()))
        return state_->unusable(found->subject + ": " + state_->cause());
    return {};
}

} // namespace resultfile
