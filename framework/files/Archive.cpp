#include "framework/files/Archive.h"

CArchive::CArchive(CFile* file, Mode)
    : m_pFile(file) {}

CArchive::~CArchive() {
    try {
        Close();
    } catch (const std::exception&) {
        // Nobody is left to hear of it; the file below fails again when it is closed.
    }
}

void CArchive::FlushBuffer() {
    if (!m_pFile) throw CFileException(CFileException::genericException, 0, {}, CFileException::write);
    m_pFile->Write(m_buffer.data(), m_position);
    m_position = 0;
}

void CArchive::Write(const void* bytes, std::size_t count) {
    if (count <= kSize - m_position) {
        if (count) std::memcpy(m_buffer.data() + m_position, bytes, count);
        m_position += count;
        return;
    }
    FlushBuffer();
    if (count > kSize) return m_pFile->Write(bytes, count);
    std::memcpy(m_buffer.data(), bytes, count);
    m_position = count;
}

void CArchive::Flush() {
    FlushBuffer();
    m_pFile->Flush();
}

void CArchive::Close() {
    if (!m_pFile) return;
    FlushBuffer();
    m_pFile->Flush();
    m_pFile = nullptr;
}
