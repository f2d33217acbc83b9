#include "solver/ByteSource.h"

#include <algorithm>
#include <utility>

namespace solver {
namespace {

class MemorySource final : public ByteSource {
  public:
    MemorySource(std::string name, std::span<const std::byte> bytes)
        : name_(std::move(name))
        , size_(bytes.size())
        , rest_(bytes) {}

    const std::string& name() const override { return name_; }
    std::uint64_t size() const override { return size_; }

    Result<std::size_t> read(std::span<std::byte> out) override {
        const std::size_t count = std::min(out.size(), rest_.size());
        std::copy_n(rest_.begin(), count, out.begin());
        rest_ = rest_.subspan(count);
        return count;
    }

  private:
    std::string name_;
    std::uint64_t size_;
    std::span<const std::byte> rest_;
};

} // namespace

std::unique_ptr<ByteSource> openMemory(std::string name, std::span<const std::byte> bytes) {
    return std::make_unique<MemorySource>(std::move(name), bytes);
}

} // namespace solver
