#pragma once

#include "framework/files/Archive.h"

#include <cstdint>
#include <ostream>
#include <span>
#include <string_view>
#include <type_traits>

namespace fatigue {

/// A text field of a record: all its bytes go into the file, those before the first zero byte into the
/// mirror.
struct TextField {
    std::string_view bytes;
};

/// Writes records (byte count, payload, byte count) into an archive and, when there is a mirror, each record
/// as one line of text. A record's fields are named once, so that file and mirror cannot drift apart.
///
/// Fields are std::int32_t, double, spans of either, spans of float (widened to double) and TextField.
class RecordWriter {
  public:
    /// `mirror` may be null.
    RecordWriter(CArchive& archive, std::ostream* mirror)
        : archive_(archive)
        , mirror_(mirror) {}

    /// A line of the mirror that names the section behind it.
    void comment(std::string_view text) {
        if (mirror_) *mirror_ << text << '\n';
    }

    template <class... Fields>
    void record(const Fields&... fields) {
        const std::int32_t length = frame(fields...);
        if (!mirror_) return;
        *mirror_ << length;
        (print(fields), ...);
        *mirror_ << ' ' << length << '\n';
    }

    /// The header record, whose mirror line is "* FATIGUE(version) " and the other fields, without byte
    /// counts.
    void header(std::int32_t version, std::int32_t nodes, std::int32_t materials, std::int32_t type) {
        frame(version, nodes, materials, type);
        if (mirror_)
            *mirror_ << "* FATIGUE(" << version << ") " << nodes << ' ' << materials << ' ' << type << '\n';
    }

  private:
    template <class... Fields>
    std::int32_t frame(const Fields&... fields) {
        const std::int32_t length = static_cast<std::int32_t>((byteCount(fields) + ...));
        CArchive& archive = archive_; // a local reference: the bytes stored could alias the member
        archive << length;
        (put(archive, fields), ...);
        archive << length;
        return length;
    }

    static constexpr std::size_t byteCount(std::int32_t) { return sizeof(std::int32_t); }
    static constexpr std::size_t byteCount(double) { return sizeof(double); }
    static std::size_t byteCount(const TextField& text) { return text.bytes.size(); }
    template <class T, std::size_t N>
    static constexpr std::size_t byteCount(std::span<const T, N> values) {
        return values.size() * (std::is_same_v<T, std::int32_t> ? sizeof(std::int32_t) : sizeof(double));
    }

    static void put(CArchive& archive, std::int32_t value) { archive << value; }
    static void put(CArchive& archive, double value) { archive << value; }
    static void put(CArchive& archive, const TextField& text) {
        archive.Write(text.bytes.data(), text.bytes.size());
    }
    template <class T, std::size_t N>
    static void put(CArchive& archive, std::span<const T, N> values) {
        for (const T value : values)
            archive << wide(value);
    }

    void print(std::int32_t value) { *mirror_ << ' ' << value; }
    void print(double value) { *mirror_ << ' ' << value; }
    void print(const TextField& text) { *mirror_ << ' ' << text.bytes.substr(0, text.bytes.find('\0')); }
    template <class T, std::size_t N>
    void print(std::span<const T, N> values) {
        for (const T value : values)
            *mirror_ << ' ' << wide(value);
    }

    static std::int32_t wide(std::int32_t value) { return value; }
    static double wide(double value) { return value; }
    static double wide(float value) { return static_cast<double>(value); }

    CArchive& archive_;
    std::ostream* mirror_;
};

} // namespace fatigue
