#include "base/ReplaceFile.h"
#include "resultfile/ObjectHeader.h"
#include "resultfile/ReaderState.h"
#include "resultfile/Superblock.h"
#include "resultfile/Text.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <set>

namespace resultfile {

namespace {

/// Fewest bytes that a group or dataset takes in the file. A file that seems to hold more of them than fit
/// links the same ones again and again.
constexpr std::uint64_t kSmallestObject = 64;

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

herr_t keepLink(hid_t, const char* name, const H5L_info_t* info, void* links) {
    if (info->type != H5L_TYPE_HARD) return -1; // soft and external links lead anywhere
    static_cast<std::vector<Link>*>(links)->push_back({name, info->u.address, 0});
    return 0;
}

} // namespace

Error Reader::State::unusable(const std::string& reason) const {
    return Error{"cannot read " + path.string() + ": " + reason};
}

/// Of a call of HDF5 that failed.
std::string Reader::State::cause() const {
    return source->fault() ? systemErrorText(source->fault()) : failureCause();
}

Result<Handle> Reader::State::openAt(haddr_t address, H5I_type_t type, const std::string& subject) const {
    Handle opened(headerIntact(*source, size, address) ? H5Oopen_by_addr(file.get(), address)
                                                       : H5I_INVALID_HID);
    if (!opened || H5Iget_type(opened.get()) != type)
        return unusable(subject + " is missing, damaged or changed by another program");
    return opened;
}

Result<Handle> Reader::State::openNamed(hid_t group, const char* name, H5I_type_t type) const {
    H5L_info_t link{};
    const bool found = H5Lget_info(group, name, &link, H5P_DEFAULT) >= 0 && link.type == H5L_TYPE_HARD;
    return openAt(found ? link.u.address : HADDR_UNDEF, type, inQuotes(name));
}

/// The members of a group, by name.
Result<std::vector<Link>> Reader::State::links(hid_t group, const std::string& subject) {
    const auto count = memberCount(group);
    if (!count) return unusable(subject + " cannot be listed: " + cause());
    objectsSeen += *count;
    if (objectsSeen > size / kSmallestObject) return unusable("it holds more objects than fit into its size");
    std::vector<Link> found;
    if (H5Literate(group, H5_INDEX_NAME, H5_ITER_INC, nullptr, keepLink, &found) < 0)
        return unusable(subject + " is missing, damaged or changed by another program");
    return found;
}

/// The members of a group that must be named "000001", "000002", ...
Result<std::vector<Link>> Reader::State::numberedLinks(hid_t group, const std::string& subject) {
    auto found = links(group, subject);
    if (!found) return found;
    for (std::size_t i = 0; i < found->size(); ++i)
        if ((*found)[i].name != layout::memberName(i))
            return unusable(subject + " lacks its member " + layout::memberName(i));
    return found;
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

Result<Handle> Reader::State::meshDataset(const char* name) const {
    const auto group = openNamed(file.get(), layout::kMesh, H5I_GROUP);
    return group ? openNamed(group->get(), name, H5I_DATASET) : group.error();
}

Result<std::vector<std::int32_t>> Reader::State::meshNumbers(const char* name, std::uint64_t count) const {
    const auto numbers = meshDataset(name);
    if (!numbers) return numbers.error();
    return wholeDataset<std::int32_t>(numbers->get(), count, inQuotes(name));
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
    if (auto read = readSources(); !read) return read;
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
    std::uint64_t counts[3];
    std::size_t index = 0;
    for (const char* name : {layout::kNodeNumbers, layout::kElementNumbers, layout::kElementCornerCounts}) {
        const auto numbers = meshDataset(name);
        if (!numbers) return numbers.error();
        const auto count = extent<std::int32_t>(numbers->get(), inQuotes(name));
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
    std::vector<std::int32_t> block(std::min(kReadBlock, contents.elementCount));
    bool negative = false;
    const auto read = readBlocks<std::int32_t>(
        numbers->get(), contents.elementCount, inQuotes(layout::kElementCornerCounts),
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
    const auto group = openNamed(file.get(), layout::kItemLists, H5I_GROUP);
    if (!group) return group.error();
    const auto lists = numberedLinks(group->get(), inQuotes(layout::kItemLists));
    if (!lists) return lists.error();
    std::set<std::string> names;
    std::vector<std::int32_t> corners;
    for (const Link& link : *lists) {
        const std::string subject = "item list " + link.name;
        const auto list = openAt(link.address, H5I_DATASET, subject);
        if (!list) return list.error();
        auto read = readItemList(list->get(), subject, corners);
        if (!read) return read.error();
        if (!names.insert(read->name).second)
            return unusable("item list " + inQuotes(read->name) + " is there twice");
        read->address = link.address;
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
    ItemList result{std::move(*name), *location, *length, *length, 0};
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

/// Only files of combined results have them.
Result<void> Reader::State::readSources() {
    if (H5Lexists(file.get(), layout::kSources, H5P_DEFAULT) <= 0) return {};
    const auto group = openNamed(file.get(), layout::kSources, H5I_GROUP);
    if (!group) return group.error();
    const auto sources = numberedLinks(group->get(), inQuotes(layout::kSources));
    if (!sources) return sources.error();
    for (const Link& link : *sources) {
        const auto opened = openAt(link.address, H5I_GROUP, "source " + link.name);
        if (!opened) return opened.error();
        auto name = readText(opened->get(), layout::kName);
        if (!name) return unusable("source " + link.name + " has no name");
        contents.sources.push_back(std::move(*name));
    }
    return {};
}

Result<void> Reader::State::readCases() {
    const auto group = openNamed(file.get(), layout::kCases, H5I_GROUP);
    if (!group) return group.error();
    const auto cases = numberedLinks(group->get(), inQuotes(layout::kCases));
    if (!cases) return cases.error();
    std::set<std::string> names;
    for (const Link& link : *cases) {
        const std::string subject = "case " + link.name;
        const auto opened = openAt(link.address, H5I_GROUP, subject);
        if (!opened) return opened.error();
        tableAddresses.emplace_back();
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
    const auto stepGroup = openNamed(group, layout::kSteps, H5I_GROUP);
    if (!stepGroup) return stepGroup.error();
    const auto steps = numberedLinks(stepGroup->get(), inQuotes(layout::kSteps) + " of " + subject);
    if (!steps) return steps.error();
    std::set<std::string> names;
    for (const Link& link : *steps) {
        const std::string stepSubject = "step " + link.name + " of " + subject;
        const auto opened = openAt(link.address, H5I_GROUP, stepSubject);
        if (!opened) return opened.error();
        tableAddresses.back().emplace_back();
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
    auto tables = links(group, subject);
    if (!tables) return tables.error();
    for (Link& link : *tables) {
        const auto id = componentId(link.name);
        if (!id) return unusable(inQuotes(link.name) + " in " + subject + " is not named by an identifier");
        link.id = *id;
    }
    std::sort(tables->begin(), tables->end(), [](const Link& a, const Link& b) { return a.id < b.id; });
    for (const Link& link : *tables) {
        const std::string tableSubject = "component " + link.name + " of " + subject;
        const auto opened = openAt(link.address, H5I_DATASET, tableSubject);
        if (!opened) return opened.error();
        auto read = readComponent(opened->get(), link.id, tableSubject);
        if (!read) return read.error();
        result.components.push_back(std::move(*read));
        tableAddresses.back().back().push_back(link.address);
    }
    return result;
}

Result<Component> Reader::State::readComponent(hid_t opened, unsigned id, const std::string& subject) {
    const auto location = readLocation(opened);
    if (!location) return unusable(subject + " has no location");
    const auto count = extent<float>(opened, subject);
    if (!count) return count.error();
    Component result{id, *location, *count, {}};
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

} // namespace resultfile
