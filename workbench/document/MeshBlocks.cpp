#include "workbench/document/MeshBlocks.h"

#include "base/Checksum.h"
#include "workbench/document/BulkMemory.h"

#include <algorithm>
#include <bit>
#include <future>
#include <memory>
#include <optional>

namespace workbench {

static_assert(std::endian::native == std::endian::little, "mesh blocks are copied as they lie in memory");

namespace {

/// The columns in the order of the file. Reading in two goes, from kSecondHalf on, halves the bytes of a
/// usual mesh.
constexpr int kColumnCount = 9;
constexpr int kSecondHalf = 5;
/// From so many blocks on, a thread for the second half pays.
constexpr std::size_t kBlocksWorthThread = 20;

struct MeshCounts {
    std::size_t nodes = 0;
    std::size_t elements = 0;
    std::size_t elementNodes = 0;
};

/// Calls use(name, column, items) for the columns [first, end) until one call fails.
template <class M, class F>
Result<void> forColumns(int first, int end, M& mesh, const MeshCounts& counts, F&& use) {
    int column = 0;
    Result<void> done;
    const auto visit = [&](const char* name, auto& items, std::size_t count) {
        if (column >= first && column < end && done) done = use(name, items, count);
        ++column;
    };
    visit("node_key", mesh.nodeKeys, counts.nodes);
    visit("node_number", mesh.nodeNumbers, counts.nodes);
    visit("node_position", mesh.nodePositions, counts.nodes);
    visit("element_key", mesh.elementKeys, counts.elements);
    visit("element_number", mesh.elementNumbers, counts.elements);
    visit("element_type", mesh.elementTypes, counts.elements);
    visit("element_property", mesh.elementPropertyKeys, counts.elements);
    visit("element_node_offset", mesh.elementNodeOffsets, counts.elements + 1);
    visit("element_node", mesh.elementNodes, counts.elementNodes);
    return done;
}

std::size_t blocksFor(std::size_t items) {
    return (items + kBlockItems - 1) / kBlockItems;
}

class BlockWriter {
  public:
    BlockWriter(const SqliteConnection& connection, DocumentRows& rows)
        : insert_(connection, "INSERT INTO mesh_blocks VALUES (?, ?, ?, ?, ?, ?)")
        , rows_(rows) {}

    template <class T>
    Result<void> operator()(const char* name, const std::vector<T>& column, std::size_t) {
        for (std::size_t begin = 0; begin < column.size(); begin += kBlockItems) {
            const std::size_t items = std::min(kBlockItems, column.size() - begin);
            const auto bytes = std::as_bytes(std::span(column).subspan(begin, items));
            const MeshBlockRow row{name, static_cast<std::int64_t>(begin / kBlockItems),
                                   static_cast<std::int64_t>(items), checksumText(Checksum::of(bytes)),
                                   static_cast<std::int64_t>(bytes.size())};
            rows_.blocks.push_back(row);
            insert_.bind(1, static_cast<std::int64_t>(rows_.blocks.size()));
            insert_.bind(2, row.column);
            insert_.bind(3, row.block);
            insert_.bind(4, row.items);
            insert_.bind(5, row.checksum);
            insert_.bind(6, bytes);
            if (auto done = insert_.run(); !done) return done;
        }
        return {};
    }

  private:
    SqliteStatement insert_;
    DocumentRows& rows_;
};

/// Checks that the next rows are the blocks of a column, and reads them.
class BlockReader {
  public:
    /// Starts at the row of index `next`.
    BlockReader(const SqliteConnection& connection, const std::vector<MeshBlockRow>& rows, std::size_t next)
        : connection_(connection)
        , rows_(rows)
        , next_(next) {}

    template <class T>
    Result<void> operator()(const char* name, std::vector<T>& column, std::size_t items) {
        if (auto done = checkRows(name, items, sizeof(T)); !done) return done;
        column.clear();
        reserveForBulkFill(column, items);
        // Through one block in the cache: the column's own memory is then touched once, by the copy.
        static_assert(sizeof(T) <= kLargestItem && alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);
        const auto* buffer = reinterpret_cast<const T*>(buffer_.get());
        while (column.size() < items) {
            const MeshBlockRow& row = rows_[next_++];
            if (auto done = readBlock(row); !done) return done;
            column.insert(column.end(), buffer, buffer + row.items);
        }
        return {};
    }

  private:
    struct BlobCloser {
        void operator()(sqlite3_blob* blob) const { sqlite3_blob_close(blob); }
    };

    static std::string nameOf(const MeshBlockRow& row) {
        return "block " + std::to_string(row.block) + " of the mesh column " + row.column;
    }

    Result<void> checkRows(const char* name, std::size_t items, std::size_t itemBytes) const {
        for (std::size_t i = 0; i < blocksFor(items); ++i) {
            const std::size_t expected = std::min(kBlockItems, items - i * kBlockItems);
            if (next_ + i >= rows_.size())
                return Error{"it lacks block " + std::to_string(i) + " of the mesh column " + name +
                             "; it is damaged"};
            const MeshBlockRow& row = rows_[next_ + i];
            if (row.column != name || row.block != static_cast<std::int64_t>(i))
                return Error{"it has " + nameOf(row) + " where block " + std::to_string(i) +
                             " of the mesh column " + name + " belongs; it is damaged"};
            if (row.items != static_cast<std::int64_t>(expected) ||
                row.bytes != static_cast<std::int64_t>(expected * itemBytes))
                return Error{nameOf(row) + " has not the " + std::to_string(expected) +
                             " items that its counts ask for; the file is damaged"};
        }
        return {};
    }

    Result<void> readBlock(const MeshBlockRow& row) {
        const std::span into(buffer_.get(), static_cast<std::size_t>(row.bytes));
        const auto id = static_cast<sqlite3_int64>(next_);
        int status = SQLITE_OK;
        if (blob_) {
            status = sqlite3_blob_reopen(blob_.get(), id);
        } else {
            sqlite3_blob* opened = nullptr;
            status = sqlite3_blob_open(connection_.handle(), "main", "mesh_blocks", "data", id, 0, &opened);
            blob_.reset(opened);
        }
        const int size = static_cast<int>(into.size());
        if (status == SQLITE_OK && sqlite3_blob_bytes(blob_.get()) != size)
            return Error{nameOf(row) + " has another size than its row says; the file is damaged"};
        if (status == SQLITE_OK) status = sqlite3_blob_read(blob_.get(), into.data(), size, 0);
        if (status != SQLITE_OK)
            return Error{nameOf(row) + " cannot be read: " + connection_.error().message};
        if (checksumText(Checksum::of(into)) != row.checksum)
            return Error{nameOf(row) +
                         " does not match its checksum; the file is damaged, restore it from a copy"};
        return {};
    }

    const SqliteConnection& connection_;
    const std::vector<MeshBlockRow>& rows_;
    std::unique_ptr<sqlite3_blob, BlobCloser> blob_;
    static constexpr std::size_t kLargestItem = sizeof(std::array<double, 3>);
    std::unique_ptr<std::byte[]> buffer_ =
        std::make_unique_for_overwrite<std::byte[]>(kBlockItems * kLargestItem);
    std::size_t next_;
};

Result<MeshCounts> meshCounts(const DocumentRows& rows) {
    const auto nodes = countOf(rows, "node_count");
    const auto elements = countOf(rows, "element_count");
    const auto elementNodes = countOf(rows, "element_node_count");
    for (const auto* count : {&nodes, &elements, &elementNodes})
        if (!*count) return count->error();
    return MeshCounts{*nodes, *elements, *elementNodes};
}

/// A second connection to the same file, in a transaction of its own; nothing where it cannot be had. The
/// first one's transaction keeps writers away, so both see the same document.
std::optional<SqliteConnection> secondConnection(const SqliteConnection& first) {
    const char* name = sqlite3_db_filename(first.handle(), "main");
    auto second = SqliteConnection::open(name, SQLITE_OPEN_READONLY);
    if (!second || !second->run("BEGIN") || first.fileHasMoved()) return {};
    return std::move(*second);
}

} // namespace

Result<void> writeMeshBlocks(const SqliteConnection& connection, const MeshData& mesh, DocumentRows& rows) {
    return forColumns(0, kColumnCount, mesh, {}, BlockWriter(connection, rows));
}

Result<MeshData> readMeshBlocks(const SqliteConnection& connection, const DocumentRows& rows) {
    const auto counts = meshCounts(rows);
    if (!counts) return counts.error();
    std::size_t firstHalf = 0;
    std::size_t all = 0;
    MeshData mesh;
    const auto addTo = [](std::size_t& blocks) {
        return [&blocks](const char*, const auto&, std::size_t items) {
            blocks += blocksFor(items);
            return Result<void>();
        };
    };
    if (auto done = forColumns(0, kSecondHalf, mesh, *counts, addTo(firstHalf)); !done) return done.error();
    if (auto done = forColumns(0, kColumnCount, mesh, *counts, addTo(all)); !done) return done.error();
    if (rows.blocks.size() > all)
        return Error{"it has more mesh blocks than its counts allow; it is damaged"};

    const auto readHalf = [&](const SqliteConnection& from, bool second) {
        return forColumns(second ? kSecondHalf : 0, second ? kColumnCount : kSecondHalf, mesh, *counts,
                          BlockReader(from, rows.blocks, second ? firstHalf : 0));
    };
    std::optional<SqliteConnection> second;
    if (all >= kBlocksWorthThread) second = secondConnection(connection);
    std::future<Result<void>> other;
    if (second) other = std::async(std::launch::async, [&] { return readHalf(*second, true); });
    auto done = readHalf(connection, false);
    const auto otherDone = second ? other.get() : done ? readHalf(connection, true) : done;
    if (!done) return done.error();
    if (!otherDone) return otherDone.error();
    return mesh;
}

} // namespace workbench
