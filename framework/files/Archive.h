#pragma once

#include "framework/Export.h"
#include "framework/files/File.h"

#include <array>
#include <bit>
#include <concepts>
#include <cstdint>
#include <cstring>

/// Writes values in binary form, little-endian, to a file. Only the store mode exists.
/// Inserting is inline and allocation-free; the buffer of 4096 bytes goes to the file when it is full.
class VEXA_API CArchive {
  public:
    enum Mode { store = 0 };

    explicit CArchive(CFile* file, Mode mode = store);
    ~CArchive(); ///< closes; a failure is lost, so call Close where it matters
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    CArchive& operator<<(std::int32_t value) { return Put(static_cast<std::uint32_t>(value)); }
    CArchive& operator<<(double value) { return Put(std::bit_cast<std::uint64_t>(value)); }
    void Write(const void* bytes, std::size_t count); ///< raises CFileException
    void Flush();                                     ///< raises CFileException
    void Close();                                     ///< flushes; the file stays open. Raises CFileException
    void Abort() noexcept {
        m_position = 0;
        m_pFile = nullptr;
    }
    CFile* GetFile() const { return m_pFile; }

  private:
    template <std::unsigned_integral T>
    CArchive& Put(T value) {
        if (kSize - m_position < sizeof value) FlushBuffer();
        if constexpr (std::endian::native == std::endian::big) {
            T swapped = 0;
            for (std::size_t i = 0; i < sizeof value; ++i, value >>= 8)
                swapped = static_cast<T>(swapped << 8 | (value & 0xFF));
            value = swapped;
        }
        std::memcpy(m_buffer.data() + m_position, &value, sizeof value);
        m_position += sizeof value;
        return *this;
    }
    void FlushBuffer();

    static constexpr std::size_t kSize = 4096;
    CFile* m_pFile;
    std::size_t m_position = 0;
    std::array<unsigned char, kSize> m_buffer;
};
