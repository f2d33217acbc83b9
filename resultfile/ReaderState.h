#pragma once

#include "base/Checksum.h"
#include "resultfile/FileDriver.h"
#include "resultfile/Hdf5.h"
#include "resultfile/Layout.h"
#include "resultfile/ResultFile.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace resultfile {

using namespace hdf5;

/// Values that are read and checksummed at once, few enough to stay in the cache between the two.
constexpr std::uint64_t kReadBlock = 1024 * 1024;

struct ItemList {
    std::string name;
    Location location = Location::Node;
    std::uint64_t count = 0;
    std::uint64_t valueCount = 0;
    haddr_t address = 0;
};

/// A member of a group.
struct Link {
    std::string name;
    haddr_t address = 0;
    unsigned id = 0; ///< of a component
};

/// What a Reader holds. Opening is in ReaderStructure.cpp, reading of values in Reader.cpp.
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
    Result<Handle> openAt(haddr_t address, H5I_type_t type, const std::string& subject) const;
    Result<Handle> openNamed(hid_t group, const char* name, H5I_type_t type) const;
    Result<std::vector<Link>> links(hid_t group, const std::string& subject);
    Result<std::vector<Link>> numberedLinks(hid_t group, const std::string& subject);
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
    Result<void> readSources();
    Result<void> readCases();
    Result<Case> readCase(hid_t group, const std::string& subject);
    Result<Step> readStep(hid_t group, const std::string& subject);
    Result<Component> readComponent(hid_t dataset, unsigned id, const std::string& subject);

    /// A component that the caller asks for, its dataset open.
    struct Found {
        const Component* component = nullptr;
        std::string subject;
    };
    Result<Found> find(std::size_t caseIndex, std::size_t stepIndex, unsigned id);
    std::string subjectOf(std::size_t caseIndex, std::size_t stepIndex, unsigned id) const;

    std::filesystem::path path;
    std::uint64_t size = 0; ///< of the file, bytes
    std::shared_ptr<OpenFile> source = std::make_shared<OpenFile>();
    Handle file;
    Contents contents;
    std::vector<ItemList> items;
    std::vector<std::vector<std::vector<haddr_t>>>
        tableAddresses; ///< by case, step and component of contents
    std::uint64_t objectsSeen = 0;
    std::uint64_t bytesSeen = 0;

    /// The component read last stays open for whoever reads it in pieces.
    Handle dataset;
    std::size_t datasetCase = 0, datasetStep = 0;
    unsigned datasetId = 0;
};

/// Reads a dataset whole and checks it. room(first, size) says where a block goes, use(block) sees it
/// afterwards.
template <class T, class Room, class Use>
Result<void> Reader::State::readBlocks(hid_t opened, std::uint64_t count, const std::string& subject,
                                       Room room, Use use) const {
    Checksum checksum;
    for (std::uint64_t first = 0; first < count; first += kReadBlock) {
        const std::uint64_t piece = std::min(kReadBlock, count - first);
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

} // namespace resultfile
