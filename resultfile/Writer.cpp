#include "base/Checksum.h"
#include "base/ReplaceFile.h"
#include "resultfile/FileDriver.h"
#include "resultfile/Hdf5.h"
#include "resultfile/Layout.h"
#include "resultfile/ResultFile.h"
#include "resultfile/Text.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <map>
#include <optional>
#include <set>

namespace resultfile {

using namespace hdf5;

namespace {

/// Small pieces of a table are gathered up to this many values, so that HDF5 gets few and large writes.
constexpr std::size_t kGathered = 64 * 1024;
/// Values that are checked, checksummed and written at once, few enough to stay in the cache meanwhile.
constexpr std::size_t kBlock = 1024 * 1024;

/// Groups of the unfinished file; none is left in a finished one.
constexpr const char* kPendingCases = "pending_cases";
constexpr const char* kPendingSteps = "pending_steps";
constexpr const char* kPendingSources = "pending_sources";

/// Position of the first value that is infinite or not a number; values.size() when all are finite.
std::size_t firstNonFinite(std::span<const float> values) {
    constexpr std::uint32_t exponent = 0x7F800000;
    for (std::size_t begin = 0; begin < values.size(); begin += 4096) {
        const auto block = values.subspan(begin, std::min<std::size_t>(4096, values.size() - begin));
        unsigned found = 0;
        for (const float value : block)
            found |= (std::bit_cast<std::uint32_t>(value) & exponent) == exponent;
        if (!found) continue;
        const auto bad =
            std::find_if(block.begin(), block.end(), [](float value) { return !std::isfinite(value); });
        return begin + static_cast<std::size_t>(bad - block.begin());
    }
    return values.size();
}

template <class T>
bool strictlyAscending(std::span<const T> numbers) {
    return std::adjacent_find(numbers.begin(), numbers.end(), std::greater_equal<>()) == numbers.end();
}

/// Why a name cannot be stored; empty when it can.
std::string textFault(const std::string& text) {
    if (text.size() > layout::kLongestText)
        return "is longer than " + std::to_string(layout::kLongestText) + " bytes";
    return isUtf8Text(text) ? "" : "is not UTF-8 text without zero bytes";
}

/// Temporary files being written by this process: a second writer of the same file would remove the first
/// one's.
std::set<std::filesystem::path>& filesBeingWritten() {
    static std::set<std::filesystem::path> files;
    return files;
}

/// The temporary file's name, taken for as long as the object lives.
class Reservation {
  public:
    explicit Reservation(std::filesystem::path path)
        : path_(std::move(path)) {
        const Session session;
        taken_ = filesBeingWritten().insert(path_).second;
    }
    ~Reservation() {
        const Session session;
        if (taken_) filesBeingWritten().erase(path_);
    }
    Reservation(const Reservation&) = delete;
    Reservation& operator=(const Reservation&) = delete;
    bool taken() const { return taken_; }

  private:
    std::filesystem::path path_;
    bool taken_;
};

struct ItemList {
    Location location;
    std::uint64_t valueCount;
};

struct OpenTable {
    unsigned id;
    std::uint64_t count;
    std::uint64_t accepted = 0; ///< values appended so far
    std::uint64_t written = 0;
    Handle dataset; ///< none once the table is full
    Checksum checksum;
    std::vector<float> gathered;
};

} // namespace

struct Writer::State {
    explicit State(const std::filesystem::path& path)
        : target(path) {}
    ~State() { abandon(); }

    Error fail(const std::string& reason);
    Error failInHdf5(const std::string& what);
    std::string at(unsigned id) const;

    Result<void> create();
    Result<void> writeTexts();
    template <class T>
    Result<Handle> writeNumbers(hid_t group, const char* name, std::span<const T> numbers);
    Result<std::uint64_t> expectedCount(unsigned id, Location location, const std::string& items);
    Result<void> addTable(unsigned id, Location location, std::uint64_t count, const std::string& items);
    Result<void> append(std::size_t index, std::span<const float> values);
    Result<void> gather(OpenTable& table, std::span<const float> piece, bool last);
    Result<void> writeBlock(OpenTable& table, std::span<const float> values);
    Result<void> finish(OpenTable& table);
    Result<void> endStep();
    Result<void> endCase();
    Result<void> complete();
    Error failInCommit(const Error& error);
    void closeFile();
    void abandon();

    const std::filesystem::path target;
    std::string analysis, producer, inputChecksum;
    std::optional<Error> failure;

    std::optional<Reservation> reservation;
    std::optional<ReplacedFile> replaced;
    std::shared_ptr<OpenFile> sink = std::make_shared<OpenFile>();
    Handle file, itemLists, newGroup, newDataset;
    Handle pendingCases, pendingSteps; ///< where cases, and steps of the open case, are until all are there
    Handle openCase, step;

    std::uint64_t nodeCount = 0;
    std::uint64_t elementCount = 0;
    std::uint64_t cornerCount = 0;
    bool hasMesh = false;
    bool hasSources = false;
    std::vector<std::int32_t> cornerCounts;
    std::map<std::string, ItemList> items;

    std::string caseName, stepName;
    std::set<std::string> caseNames, stepNames;
    std::set<unsigned> ids;     ///< components of the step
    std::size_t firstTable = 0; ///< index of tables.front(), counted over the whole file
    std::vector<OpenTable> tables;
};

Error Writer::State::fail(const std::string& reason) {
    failure = Error{"cannot write " + target.string() + ": " + reason};
    abandon();
    return *failure;
}

/// A write that failed explains whatever HDF5 says after it.
Error Writer::State::failInHdf5(const std::string& what) {
    return fail(what + ": " + (sink->fault() ? systemErrorText(sink->fault()) : failureCause()));
}

std::string Writer::State::at(unsigned id) const {
    return "component " + std::to_string(id) + " of step " + inQuotes(stepName) + " of case " +
           inQuotes(caseName);
}

void Writer::State::closeFile() {
    tables.clear();
    for (Handle* handle :
         {&step, &openCase, &pendingSteps, &pendingCases, &itemLists, &newGroup, &newDataset})
        handle->reset();
}

/// Leaves nothing behind.
void Writer::State::abandon() {
    const Session session;
    closeFile();
    file.reset();
    sink->close();
    replaced.reset();
    reservation.reset();
}

Result<void> Writer::State::create() {
    for (const std::string* text : {&analysis, &producer})
        if (const auto fault = textFault(*text); !fault.empty())
            return fail("the text " + inQuotes(*text) + " " + fault);
    std::error_code unknown;
    auto whole = std::filesystem::weakly_canonical(std::filesystem::absolute(target), unknown);
    reservation.emplace(unknown ? target : std::move(whole));
    if (!reservation->taken()) return fail("it is being written already");
    replaced.emplace(target);
    if (!sink->create(replaced->temporaryPath())) return fail(systemErrorText(sink->fault()));
    file = createHdf5(sink, replaced->temporaryPath());
    if (!file) return failInHdf5("the file");
    newGroup = groupCreation();
    newDataset = datasetCreation();
    itemLists = Handle(H5Gcreate2(file.get(), layout::kItemLists, H5P_DEFAULT, newGroup.get(), H5P_DEFAULT));
    pendingCases = pendingGroup(file.get(), kPendingCases);
    if (!itemLists || !pendingCases) return failInHdf5("its groups");
    return {};
}

Result<void> Writer::State::writeTexts() {
    const hid_t root = file.get();
    if (writeText(root, layout::kFormat, layout::kFormatName) &&
        writeNumber<std::int32_t>(root, layout::kVersion, layout::kFormatVersion) &&
        writeText(root, layout::kAnalysis, analysis) && writeText(root, layout::kProducer, producer) &&
        writeText(root, layout::kInputChecksum, inputChecksum))
        return {};
    return failInHdf5("attributes of the file");
}

/// A whole dataset with its checksum.
template <class T>
Result<Handle> Writer::State::writeNumbers(hid_t group, const char* name, std::span<const T> numbers) {
    const hsize_t size = numbers.size();
    const Handle space(H5Screate_simple(1, &size, nullptr));
    Handle dataset(
        H5Dcreate2(group, name, fileType<T>(), space.get(), H5P_DEFAULT, newDataset.get(), H5P_DEFAULT));
    if (!dataset || !transferOut(dataset.get(), memoryType<T>(), 0, size, numbers.data()) ||
        !writeNumber(dataset.get(), layout::kChecksum, Checksum::of(std::as_bytes(numbers))))
        return failInHdf5(std::string("dataset ") + name);
    return dataset;
}

Result<std::uint64_t> Writer::State::expectedCount(unsigned id, Location location,
                                                   const std::string& itemsName) {
    if (itemsName.empty()) return location == Location::Node ? nodeCount : cornerCount;
    const auto list = items.find(itemsName);
    if (list == items.end())
        return fail(at(id) + " follows the item list " + inQuotes(itemsName) + ", which is missing");
    if (list->second.location != location)
        return fail(at(id) + " and its item list " + inQuotes(itemsName) + " have different locations");
    return list->second.valueCount;
}

Result<void> Writer::State::addTable(unsigned id, Location location, std::uint64_t count,
                                     const std::string& itemsName) {
    if (failure) return *failure;
    if (!step) return fail("component " + std::to_string(id) + " comes before the first step of a case");
    if (!ids.insert(id).second) return fail(at(id) + " is there twice");
    if (ids.size() > layout::kMostMembers) return fail(at(id) + " is one too many");
    const auto expected = expectedCount(id, location, itemsName);
    if (!expected) return expected.error();
    if (count != *expected)
        return fail(at(id) + " has " + std::to_string(count) + " values where the mesh has " +
                    std::to_string(*expected));

    const Session session;
    const hsize_t size = count;
    const Handle space(H5Screate_simple(1, &size, nullptr));
    OpenTable table{id, count, 0, 0, {}, {}, {}};
    table.dataset = Handle(H5Dcreate2(step.get(), std::to_string(id).c_str(), fileType<float>(), space.get(),
                                      H5P_DEFAULT, newDataset.get(), H5P_DEFAULT));
    const hid_t dataset = table.dataset.get();
    if (!table.dataset ||
        !writeNumber<std::int32_t>(dataset, layout::kLocation, static_cast<std::int32_t>(location)) ||
        (!itemsName.empty() && !writeText(dataset, layout::kItems, itemsName)))
        return failInHdf5(at(id));
    tables.push_back(std::move(table));
    return count == 0 ? finish(tables.back()) : Result<void>();
}

Result<void> Writer::State::append(std::size_t index, std::span<const float> values) {
    if (failure) return *failure;
    if (index < firstTable || index - firstTable >= tables.size())
        return fail("values are appended to a table whose step has ended");
    OpenTable& table = tables[index - firstTable];
    if (values.size() > table.count - table.accepted)
        return fail(at(table.id) + " gets more than its " + std::to_string(table.count) + " values");
    const bool full = values.size() == table.count - table.accepted;
    while (!values.empty()) {
        const bool direct = table.gathered.empty() && (full || values.size() >= kGathered);
        const std::size_t room = direct ? kBlock : kGathered - table.gathered.size();
        const auto piece = values.first(std::min(room, values.size()));
        values = values.subspan(piece.size());
        if (const std::size_t bad = firstNonFinite(piece); bad != piece.size())
            return fail(at(table.id) + " is not finite at value " + std::to_string(table.accepted + bad + 1) +
                        " of " + std::to_string(table.count));
        table.accepted += piece.size();
        auto done = direct ? writeBlock(table, piece) : gather(table, piece, full && values.empty());
        if (!done) return done;
    }
    return full && table.dataset ? finish(table) : Result<void>();
}

/// Adds a piece that fits to the gathered values; writes them when they are many or `last`.
Result<void> Writer::State::gather(OpenTable& table, std::span<const float> piece, bool last) {
    if (table.gathered.capacity() == 0)
        table.gathered.reserve(std::min<std::uint64_t>(kGathered, table.count));
    table.gathered.insert(table.gathered.end(), piece.begin(), piece.end());
    if (table.gathered.size() < kGathered && !last) return {};
    auto done = writeBlock(table, table.gathered);
    table.gathered.clear();
    return done;
}

Result<void> Writer::State::writeBlock(OpenTable& table, std::span<const float> values) {
    const Session session;
    table.checksum.add(std::as_bytes(values));
    if (!transferOut(table.dataset.get(), memoryType<float>(), table.written, values.size(), values.data()) ||
        sink->fault())
        return failInHdf5(at(table.id));
    table.written += values.size();
    return {};
}

Result<void> Writer::State::finish(OpenTable& table) {
    const Session session;
    if (!writeNumber(table.dataset.get(), layout::kChecksum, table.checksum.value()) ||
        !table.dataset.reset())
        return failInHdf5(at(table.id));
    table.gathered = {};
    return {};
}

Result<void> Writer::State::endStep() {
    for (const OpenTable& table : tables)
        if (table.accepted != table.count)
            return fail(at(table.id) + " has " + std::to_string(table.accepted) + " of its " +
                        std::to_string(table.count) + " values");
    firstTable += tables.size();
    tables.clear();
    ids.clear();
    if (!step.reset()) return failInHdf5("step " + inQuotes(stepName));
    return {};
}

Result<void> Writer::State::endCase() {
    if (auto ended = endStep(); !ended || !openCase) return ended;
    if (!settleMembers(file.get(), kPendingSteps, pendingSteps, stepNames.size(), openCase.get(),
                       layout::kSteps) ||
        !openCase.reset())
        return failInHdf5("case " + inQuotes(caseName));
    stepNames.clear();
    return {};
}

Writer::Writer(std::unique_ptr<State> state)
    : state_(std::move(state)) {}
Writer::~Writer() = default;
Writer::Writer(Writer&&) noexcept = default;
Writer& Writer::operator=(Writer&&) noexcept = default;

Result<Writer> Writer::create(const std::filesystem::path& path, std::string analysis, std::string producer) {
    const Session session;
    auto state = std::make_unique<State>(path);
    state->analysis = std::move(analysis);
    state->producer = std::move(producer);
    if (auto created = state->create(); !created) return created.error();
    return Writer(std::move(state));
}

Result<void> Writer::setMesh(const Mesh& mesh) {
    State& s = *state_;
    if (s.failure) return *s.failure;
    if (s.hasMesh) return s.fail("the mesh is set twice");
    if (!strictlyAscending(mesh.nodeNumbers) || !strictlyAscending(mesh.elementNumbers))
        return s.fail("node and element numbers must ascend, each once");
    if (mesh.elementNumbers.size() != mesh.elementCornerCounts.size())
        return s.fail("each element needs one corner count");
    for (const std::int32_t count : mesh.elementCornerCounts) {
        if (count < 0) return s.fail("an element has a negative corner count");
        s.cornerCount += static_cast<std::uint64_t>(count);
    }
    const Session session;
    const Handle group(H5Gcreate2(s.file.get(), layout::kMesh, H5P_DEFAULT, s.newGroup.get(), H5P_DEFAULT));
    if (!group) return s.failInHdf5("the mesh");
    for (const auto& [name, numbers] : {std::pair{layout::kNodeNumbers, mesh.nodeNumbers},
                                        std::pair{layout::kElementNumbers, mesh.elementNumbers},
                                        std::pair{layout::kElementCornerCounts, mesh.elementCornerCounts}})
        if (auto written = s.writeNumbers(group.get(), name, numbers); !written) return written.error();
    s.nodeCount = mesh.nodeNumbers.size();
    s.elementCount = mesh.elementNumbers.size();
    s.cornerCounts.assign(mesh.elementCornerCounts.begin(), mesh.elementCornerCounts.end());
    s.hasMesh = true;
    return {};
}

Result<void> Writer::setInputChecksum(const std::string& checksum) {
    if (state_->failure) return *state_->failure;
    if (const auto fault = textFault(checksum); !fault.empty())
        return state_->fail("the input checksum " + inQuotes(checksum) + " " + fault);
    state_->inputChecksum = checksum;
    return {};
}

Result<void> Writer::setSources(std::span<const std::string> names) {
    State& s = *state_;
    if (s.failure) return *s.failure;
    if (s.hasSources) return s.fail("its sources are set twice");
    if (names.size() > layout::kMostMembers)
        return s.fail("it cannot hold more than " + std::to_string(layout::kMostMembers) + " sources");
    const Session session;
    Handle pending = pendingGroup(s.file.get(), kPendingSources);
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (const auto fault = textFault(names[i]); !fault.empty())
            return s.fail("the source " + inQuotes(names[i]) + " " + fault);
        const std::string member = layout::memberName(i);
        const Handle source(
            H5Gcreate2(pending.get(), member.c_str(), H5P_DEFAULT, s.newGroup.get(), H5P_DEFAULT));
        if (!source || !writeText(source.get(), layout::kName, names[i]))
            return s.failInHdf5("source " + inQuotes(names[i]));
    }
    if (!settleMembers(s.file.get(), kPendingSources, pending, names.size(), s.file.get(), layout::kSources))
        return s.failInHdf5("the sources");
    s.hasSources = true;
    return {};
}

Result<void> Writer::addItems(const std::string& name, Location location,
                              std::span<const std::uint32_t> positions) {
    State& s = *state_;
    if (s.failure) return *s.failure;
    const std::string list = "item list " + inQuotes(name);
    if (!s.hasMesh) return s.fail(list + " comes before the mesh");
    if (const auto fault = textFault(name); !fault.empty() || name.empty())
        return s.fail(list + " " + (name.empty() ? "has no name" : fault));
    if (s.items.count(name)) return s.fail(list + " is there twice");
    if (s.items.size() == layout::kMostMembers) return s.fail(list + " is one too many");
    const std::uint64_t size = location == Location::Node ? s.nodeCount : s.elementCount;
    if (!strictlyAscending(positions) || (!positions.empty() && positions.back() >= size))
        return s.fail(list + " needs ascending positions below " + std::to_string(size));

    ItemList added{location, positions.size()};
    if (location == Location::ElementCorner) {
        added.valueCount = 0;
        for (const std::uint32_t position : positions)
            added.valueCount += s.cornerCounts[position];
    }
    const Session session;
    auto dataset = s.writeNumbers(s.itemLists.get(), layout::memberName(s.items.size()).c_str(), positions);
    if (!dataset) return dataset.error();
    if (!writeText(dataset->get(), layout::kName, name) ||
        !writeNumber<std::int32_t>(dataset->get(), layout::kLocation, static_cast<std::int32_t>(location)))
        return s.failInHdf5(list);
    s.items.emplace(name, added);
    return {};
}

Result<void> Writer::beginCase(const std::string& name) {
    State& s = *state_;
    if (s.failure) return *s.failure;
    if (!s.hasMesh) return s.fail("case " + inQuotes(name) + " comes before the mesh");
    const Session session;
    if (auto ended = s.endCase(); !ended) return ended;
    if (const auto fault = textFault(name); !fault.empty())
        return s.fail("the case name " + inQuotes(name) + " " + fault);
    if (!s.caseNames.insert(name).second) return s.fail("case " + inQuotes(name) + " is there twice");
    if (s.caseNames.size() > layout::kMostMembers)
        return s.fail("case " + inQuotes(name) + " is one too many");
    s.caseName = name;
    const std::string member = layout::memberName(s.caseNames.size() - 1);
    s.pendingSteps = pendingGroup(s.file.get(), kPendingSteps);
    s.openCase =
        Handle(H5Gcreate2(s.pendingCases.get(), member.c_str(), H5P_DEFAULT, s.newGroup.get(), H5P_DEFAULT));
    if (!s.pendingSteps || !s.openCase || !writeText(s.openCase.get(), layout::kName, name))
        return s.failInHdf5("case " + inQuotes(name));
    return {};
}

Result<void> Writer::beginStep(const std::string& name, double value) {
    State& s = *state_;
    if (s.failure) return *s.failure;
    const std::string subject = "step " + inQuotes(name) + " of case " + inQuotes(s.caseName);
    if (!s.openCase) return s.fail("step " + inQuotes(name) + " comes before the first case");
    const Session session;
    if (auto ended = s.endStep(); !ended) return ended;
    if (const auto fault = textFault(name); !fault.empty())
        return s.fail("the step name " + inQuotes(name) + " " + fault);
    if (!std::isfinite(value)) return s.fail(subject + " has a value that is not finite");
    if (!s.stepNames.insert(name).second) return s.fail(subject + " is there twice");
    if (s.stepNames.size() > layout::kMostMembers) return s.fail(subject + " is one too many");
    s.stepName = name;
    const std::string member = layout::memberName(s.stepNames.size() - 1);
    s.step =
        Handle(H5Gcreate2(s.pendingSteps.get(), member.c_str(), H5P_DEFAULT, s.newGroup.get(), H5P_DEFAULT));
    if (!s.step || !writeText(s.step.get(), layout::kName, name) ||
        !writeNumber(s.step.get(), layout::kValue, value))
        return s.failInHdf5(subject);
    return {};
}

Result<void> Writer::writeTable(unsigned id, Location location, std::span<const float> values,
                                const std::string& items) {
    if (auto added = state_->addTable(id, location, values.size(), items); !added) return added;
    return state_->append(state_->firstTable + state_->tables.size() - 1, values);
}

Result<Writer::Table> Writer::openTable(unsigned id, Location location, std::uint64_t count,
                                        const std::string& items) {
    if (auto added = state_->addTable(id, location, count, items); !added) return added.error();
    return Table(*state_, state_->firstTable + state_->tables.size() - 1);
}

Result<void> Writer::Table::append(std::span<const float> values) {
    return state_->append(index_, values);
}

/// Everything but the name.
Result<void> Writer::State::complete() {
    if (failure) return *failure;
    if (!hasMesh) return fail("the mesh is missing");
    if (auto ended = endCase(); !ended) return ended;
    if (!settleMembers(file.get(), kPendingCases, pendingCases, caseNames.size(), file.get(), layout::kCases))
        return failInHdf5("the cases");
    if (auto written = writeTexts(); !written) return written;
    closeFile();
    if (!file.reset() || !sink->close() || sink->fault()) return failInHdf5("closing");
    return {};
}

Error Writer::State::failInCommit(const Error& error) {
    failure = error;
    abandon();
    return error;
}

Result<void> Writer::commit() {
    State& s = *state_;
    const Session session;
    if (auto completed = s.complete(); !completed) return completed;
    if (auto committed = s.replaced->commit(); !committed) return s.failInCommit(committed.error());
    s.abandon();
    s.failure = Error{s.target.string() + " is complete: nothing more can be written"};
    return {};
}

Result<std::filesystem::path> Writer::commitUnderFreeName() {
    State& s = *state_;
    const Session session;
    if (auto completed = s.complete(); !completed) return completed.error();
    auto committed = s.replaced->commitUnderFreeName();
    if (!committed) return s.failInCommit(committed.error());
    s.failure = Error{committed->string() + " is complete: nothing more can be written"};
    return committed;
}

} // namespace resultfile
