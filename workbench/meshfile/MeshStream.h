#pragma once

#include "base/Result.h"
#include "workbench/meshfile/MeshRecords.h"

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// The form in which the program that reads mesh files hands a mesh and its fields over: numbers as they
/// stand in memory, since both programs run on one machine. First the mesh, then the fields, then an end
/// mark; or a sentence that says why there is none.
class MeshStreamWriter {
  public:
    /// `file` stays the caller's.
    explicit MeshStreamWriter(std::FILE* file)
        : file_(file) {}

    void mesh(const MeshRecords& mesh);
    void field(const FieldHeader& header, const FieldValues& values);
    /// Writes the end mark. False when any writing failed.
    bool finish();
    /// Writes a sentence in the place of everything that was written so far.
    bool fail(std::string_view message);

  private:
    template <class T>
    void number(T value);
    template <class T>
    void array(const std::vector<T>& values);
    void text(std::string_view text);
    void bytes(const void* data, std::size_t size);

    std::FILE* file_;
    bool good_ = true;
};

/// A mesh file that was read: its mesh, and its fields, which are loaded one by one. Nothing that the stream
/// holds is taken on trust: counts are checked against its size, positions against the mesh, numbers for
/// being 1 to 2147483647 and unique, coordinates for being finite; texts are made printable.
class MeshFile {
  public:
    /// Reads a stream from its beginning. `name` stands for the mesh file in messages.
    static Result<MeshFile> open(std::FILE* file, const std::string& name);

    const MeshRecords& mesh() const { return mesh_; }
    const std::vector<FieldHeader>& fields() const { return fields_; }
    /// The values of a field. Rows are as many as its items, or as the corners of these.
    Result<FieldValues> load(std::size_t field) const;

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    class Source;

    Result<void> readMesh(Source& source);
    Result<void> checkMesh() const;
    Result<void> readFields(Source& source);
    std::uint64_t rowCount(const FieldHeader& header, const std::vector<std::uint32_t>& items) const;

    std::unique_ptr<std::FILE, Close> file_;
    std::string name_;
    std::uint64_t size_ = 0;
    MeshRecords mesh_;
    std::vector<FieldHeader> fields_;
    std::vector<std::uint64_t> places_; ///< of the values of each field in the stream
};

} // namespace workbench
