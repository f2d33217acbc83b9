#pragma once

#include "base/Checksum.h"
#include "base/Result.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace resultfile {

/// Where the values of a component stand. The numbers are the ones stored in the file.
enum class Location : int { Node = 1, ElementCorner = 2 };

/// A component of a step: one table of 32-bit floats.
struct Component {
    unsigned id = 0; ///< identifier of the result catalogue
    Location location = Location::Node;
    std::uint64_t count = 0; ///< number of values
    std::string items;       ///< name of the item list that the values follow; empty: the mesh itself
};

/// One step (time, load factor, mode).
struct Step {
    std::string name;
    double value = 0;
    std::vector<Component> components; ///< ascending by id
};

/// One result case. Names are unique within the file; names of steps within their case.
struct Case {
    std::string name;
    std::vector<Step> steps;
};

/// Everything about a result file but its values.
struct Contents {
    std::string analysis;      ///< name of the analysis
    std::string producer;      ///< program that wrote the file
    std::string inputChecksum; ///< checksum of the input that the results were computed from; may be empty
    std::uint64_t nodeCount = 0;
    std::uint64_t elementCount = 0;
    std::uint64_t cornerCount = 0; ///< number of element corners, all elements
    /// What the results were combined from. Tables of governing items hold their numbers, from 1.
    std::vector<std::string> sources;
    std::vector<Case> cases;
};

/// The mesh that the tables follow, by the numbers that people know.
struct Mesh {
    std::span<const std::int32_t> nodeNumbers;         ///< strictly ascending
    std::span<const std::int32_t> elementNumbers;      ///< strictly ascending; may be empty
    std::span<const std::int32_t> elementCornerCounts; ///< nodes of each element, same length
};

/// Writes a result file under a temporary name; nothing is visible under `path` before commit succeeds, and
/// without commit nothing stays. Failures are sticky: after the first one every call fails with its message.
class Writer {
    struct State;

  public:
    static Result<Writer> create(const std::filesystem::path& path, std::string analysis,
                                 std::string producer);
    ~Writer();
    Writer(Writer&&) noexcept;
    Writer& operator=(Writer&&) noexcept;

    /// Must be called once, before the first item list and the first case.
    Result<void> setMesh(const Mesh& mesh);
    Result<void> setInputChecksum(const std::string& checksum);
    /// Contents::sources, once at most.
    Result<void> setSources(std::span<const std::string> names);
    /// A list of mesh positions (node indices; element indices for ElementCorner; ascending) that tables can
    /// follow. A table of corners on a list has the corners of the listed elements.
    Result<void> addItems(const std::string& name, Location location,
                          std::span<const std::uint32_t> positions);

    Result<void> beginCase(const std::string& name);
    Result<void> beginStep(const std::string& name, double value);

    /// A component of the current step, whole. Values must be finite.
    Result<void> writeTable(unsigned id, Location location, std::span<const float> values,
                            const std::string& items = {});

    /// A component of the current step that is filled in pieces, in order. Several may be open at a time;
    /// each must be full before the next case or step begins.
    class Table {
      public:
        Result<void> append(std::span<const float> values);

      private:
        friend class Writer;
        Table(State& state, std::size_t index)
            : state_(&state)
            , index_(index) {}
        State* state_;
        std::size_t index_;
    };
    Result<Table> openTable(unsigned id, Location location, std::uint64_t count,
                            const std::string& items = {});

    /// Closes the file, flushes it to the disk and gives it its name.
    Result<void> commit();
    /// Likewise, but replaces nothing: where a file stands under that name, the new one gets "~2", "~3", ...
    /// before its extension. Answers the name. As long as the writer lives, other programs of ours see the
    /// file as being worked on (isAbandoned is false).
    Result<std::filesystem::path> commitUnderFreeName();

  private:
    explicit Writer(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

/// Reads a result file. Opening reads and checks the structure; values are read on demand. The file may be
/// replaced under its name meanwhile: an open reader keeps the file that it opened. One thread at a time uses
/// a reader; several readers of one file are fine.
class Reader {
    struct State;

  public:
    static Result<Reader> open(const std::filesystem::path& path);
    ~Reader();
    Reader(Reader&&) noexcept;
    Reader& operator=(Reader&&) noexcept;

    const std::filesystem::path& path() const;
    const Contents& contents() const;

    Result<std::vector<std::int32_t>> nodeNumbers() const;
    Result<std::vector<std::int32_t>> elementNumbers() const;
    Result<std::vector<std::int32_t>> elementCornerCounts() const;
    Result<std::vector<std::uint32_t>> items(const std::string& name) const;

    /// Values of a component, checked against their checksum; positions are those of contents().
    Result<std::vector<float>> values(std::size_t caseIndex, std::size_t stepIndex, unsigned id) const;
    /// out.size() values from position `first` on. The whole table is checked against its checksum, a part is
    /// not.
    Result<void> valuesInto(std::size_t caseIndex, std::size_t stepIndex, unsigned id, std::uint64_t first,
                            std::span<float> out) const;
    /// Gives all values to `use` in pieces, in order, and checks them against their checksum at the end: for
    /// tables that need not be in memory whole.
    Result<void> visit(std::size_t caseIndex, std::size_t stepIndex, unsigned id,
                       const std::function<void(std::span<const float>)>& use) const;

    /// The values of a component one piece after another. Any number may be open at a time, at some hundred
    /// bytes each; the reader must live longer.
    class Stream {
      public:
        std::uint64_t count() const { return count_; }
        std::uint64_t position() const { return position_; }
        /// The next out.size() values, not more than are left. With the last one the table is checked against
        /// its checksum.
        Result<void> next(std::span<float> out);

      private:
        friend class Reader;
        const State* state_ = nullptr;
        std::size_t caseIndex_ = 0, stepIndex_ = 0;
        unsigned id_ = 0;
        std::uint64_t offset_ = 0; ///< of the first value in the file
        std::uint64_t count_ = 0, position_ = 0;
        std::uint64_t expected_ = 0; ///< checksum
        Checksum checksum_;
    };
    Result<Stream> stream(std::size_t caseIndex, std::size_t stepIndex, unsigned id) const;

  private:
    explicit Reader(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

} // namespace resultfile
