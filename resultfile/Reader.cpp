#include "base/ReplaceFile.h"
#include "resultfile/ReaderState.h"
#include "resultfile/Text.h"

#include <bit>

namespace resultfile {

Result<Reader::State::Found> Reader::State::find(std::size_t caseIndex, std::size_t stepIndex, unsigned id) {
    const std::string text = "component " + std::to_string(id);
    if (caseIndex >= contents.cases.size() || stepIndex >= contents.cases[caseIndex].steps.size())
        return unusable(text + " is asked for in a case or step that is missing");
    const Case& resultCase = contents.cases[caseIndex];
    const Step& step = resultCase.steps[stepIndex];
    Found found{nullptr, subjectOf(caseIndex, stepIndex, id)};
    const auto at =
        std::lower_bound(step.components.begin(), step.components.end(), id,
                         [](const Component& component, unsigned key) { return component.id < key; });
    if (at == step.components.end() || at->id != id) return unusable(found.subject + " is missing");
    found.component = &*at;
    if (dataset && datasetCase == caseIndex && datasetStep == stepIndex && datasetId == id) return found;
    const auto position = static_cast<std::size_t>(at - step.components.begin());
    dataset = Handle(H5Oopen_by_addr(file.get(), tableAddresses[caseIndex][stepIndex][position]));
    if (!dataset) return unusable(found.subject + ": " + cause());
    datasetCase = caseIndex;
    datasetStep = stepIndex;
    datasetId = id;
    return found;
}

std::string Reader::State::subjectOf(std::size_t caseIndex, std::size_t stepIndex, unsigned id) const {
    const Case& resultCase = contents.cases[caseIndex];
    return "component " + std::to_string(id) + " of step " + inQuotes(resultCase.steps[stepIndex].name) +
           " of case " + inQuotes(resultCase.name);
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
    const Handle opened(H5Oopen_by_addr(state_->file.get(), list->address));
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

Result<void> Reader::visit(std::size_t caseIndex, std::size_t stepIndex, unsigned id,
                           const std::function<void(std::span<const float>)>& use) const {
    const Session session;
    const auto found = state_->find(caseIndex, stepIndex, id);
    if (!found) return found.error();
    const std::uint64_t count = found->component->count;
    std::vector<float> block(std::min(kReadBlock, count));
    return state_->readBlocks<float>(
        state_->dataset.get(), count, found->subject,
        [&](std::uint64_t, std::uint64_t) { return block.data(); }, use);
}

Result<Reader::Stream> Reader::stream(std::size_t caseIndex, std::size_t stepIndex, unsigned id) const {
    const Session session;
    const auto found = state_->find(caseIndex, stepIndex, id);
    if (!found) return found.error();
    const hid_t dataset = state_->dataset.get();
    const auto extent = contiguousExtent(dataset, fileType<float>(), state_->size);
    const auto checksum = readNumber<std::uint64_t>(dataset, layout::kChecksum);
    if (!extent || extent->count != found->component->count || !checksum)
        return state_->unusable(found->subject + " has been changed since the file was opened");
    Stream stream;
    stream.state_ = state_.get();
    stream.caseIndex_ = caseIndex;
    stream.stepIndex_ = stepIndex;
    stream.id_ = id;
    stream.offset_ = extent->offset;
    stream.count_ = extent->count;
    stream.expected_ = *checksum;
    return stream;
}

Result<void> Reader::Stream::next(std::span<float> out) {
    static_assert(std::endian::native == std::endian::little, "values are read as they are stored");
    const auto subject = [&] { return state_->subjectOf(caseIndex_, stepIndex_, id_); };
    if (out.size() > count_ - position_)
        return state_->unusable(subject() + " has no more than " + std::to_string(count_) + " values");
    if (!state_->source->read(offset_ + position_ * sizeof(float), out.size_bytes(), out.data()))
        return state_->unusable(subject() + ": " + systemErrorText(state_->source->fault()));
    checksum_.add(std::as_bytes(out));
    position_ += out.size();
    if (position_ == count_ && checksum_.value() != expected_)
        return state_->unusable(subject() + " is damaged: its checksum differs");
    return {};
}

} // namespace resultfile
