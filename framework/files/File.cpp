#include "framework/files/File.h"

#include "framework/files/PathMap.h"
#include "framework/system/FileHandle.h"
#include "framework/system/SystemError.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>

using framework::FileAccess;
using framework::FileCreation;

namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 20;

CFileException failure(int osError, const std::wstring& path, CFileException::Operation operation) {
    return CFileException(framework::fileCause(osError), osError, path, operation);
}

FileAccess accessOf(unsigned flags) {
    if (flags & CFile::modeReadWrite) return FileAccess::readWrite;
    return flags & CFile::modeWrite ? FileAccess::write : FileAccess::read;
}

FileCreation creationOf(unsigned flags) {
    if (!(flags & CFile::modeCreate)) return FileCreation::existing;
    return flags & CFile::modeNoTruncate ? FileCreation::keptContents : FileCreation::emptied;
}

} // namespace

/// The open file and its one buffer, which holds either bytes read ahead or bytes not yet written.
struct CFile::State {
    framework::FileHandle handle;
    std::wstring path;
    unsigned flags = 0;
    std::unique_ptr<char[]> buffer;
    std::size_t next = 0;       ///< first byte read ahead that nobody took
    std::size_t filled = 0;     ///< end of the bytes read ahead
    std::size_t gathered = 0;   ///< bytes not yet written
    std::uint64_t position = 0; ///< of the system's file
    /// The first failed write. What the file holds is then unknown, so every later write fails alike.
    std::optional<CFileException> broken;

    std::size_t ahead() const { return filled - next; }
    std::uint64_t logicalPosition() const { return position + gathered - ahead(); }

    void needBuffer() {
        if (!buffer) buffer = std::make_unique_for_overwrite<char[]>(kBufferSize);
    }
    void writeThrough(const void* bytes, std::size_t count) {
        if (broken) throw *broken;
        std::size_t done = 0;
        const int error = handle.write(bytes, count, done);
        position += done;
        if (!error) return;
        broken = failure(error, path, CFileException::write);
        throw *broken;
    }
    void flush() {
        if (broken) throw *broken;
        if (gathered) writeThrough(buffer.get(), std::exchange(gathered, 0));
    }
    std::size_t readThrough(void* bytes, std::size_t count) {
        std::size_t done = 0;
        const int error = handle.read(bytes, count, done);
        position += done;
        if (error) throw failure(error, path, CFileException::read);
        return done;
    }
    /// Reads the next block ahead, once the last one is used up; false at the end of the file.
    bool fill() {
        flush();
        needBuffer();
        next = filled = 0;
        filled = readThrough(buffer.get(), kBufferSize);
        return filled != 0;
    }
    std::size_t takeAhead(char* to, std::size_t count) {
        const std::size_t taken = std::min(count, ahead());
        if (taken) std::memcpy(to, buffer.get() + next, taken);
        next += taken;
        return taken;
    }
    void moveTo(std::uint64_t target) {
        flush();
        if (const int error = handle.seek(target)) throw failure(error, path, CFileException::use);
        next = filled = 0;
        position = target;
    }
    std::uint64_t length() const {
        std::uint64_t bytes = 0;
        if (const int error = handle.length(bytes)) throw failure(error, path, CFileException::use);
        return gathered ? std::max(bytes, position + gathered) : bytes;
    }
};

CFile::CFile() = default;

CFile::~CFile() {
    try {
        Close();
    } catch (const std::exception&) {
        // Nobody is left to hear of it.
    }
}

int CFile::Open(const std::wstring& path, unsigned flags, CFileException* error) {
    if (m_state) {
        if (error) *error = CFileException(CFileException::sharingViolation, 0, path, CFileException::open);
        return 0;
    }
    auto state = std::make_unique<State>();
    state->path = path;
    state->flags = flags;
    if (const int failed =
            state->handle.open(framework::nativePath(path), accessOf(flags), creationOf(flags))) {
        if (error) *error = failure(failed, path, CFileException::open);
        return 0;
    }
    m_state = std::move(state);
    m_strFileName = path;
    return 1;
}

bool CFile::IsOpen() const {
    return m_state != nullptr;
}
bool CFile::IsText() const {
    return m_state && (m_state->flags & typeText);
}

CFile::State& CFile::Opened() const {
    if (!m_state)
        throw CFileException(CFileException::genericException, 0, m_strFileName, CFileException::use);
    return *m_state;
}

std::size_t CFile::Read(void* buffer, std::size_t count) {
    State& state = Opened();
    auto* to = static_cast<char*>(buffer);
    std::size_t done = state.takeAhead(to, count);
    if (done == count) return done;
    if (count - done >= kBufferSize) {
        state.flush();
        return done + state.readThrough(to + done, count - done);
    }
    if (state.fill()) done += state.takeAhead(to + done, count - done);
    return done;
}

int CFile::ReadLine(std::string& line) {
    State& state = Opened();
    line.clear();
    bool any = false;
    while (state.ahead() || state.fill()) {
        any = true;
        const char* first = state.buffer.get() + state.next;
        const void* found = std::memchr(first, '\n', state.ahead());
        const std::size_t size =
            found ? static_cast<std::size_t>(static_cast<const char*>(found) - first) : state.ahead();
        line.append(first, size);
        state.next += size + (found ? 1 : 0);
        if (!found) continue;
        if (line.ends_with('\r')) line.pop_back();
        return 1;
    }
    return any ? 1 : 0;
}

void CFile::Write(const void* buffer, std::size_t count) {
    State& state = Opened();
    if (state.filled) state.moveTo(state.logicalPosition());
    if (state.broken) throw *state.broken;
    auto* from = static_cast<const char*>(buffer);
    while (count) {
        // A whole buffer's worth needs no copy.
        if (state.gathered == 0 && count >= kBufferSize) return state.writeThrough(from, count);
        state.needBuffer();
        const std::size_t part = std::min(count, kBufferSize - state.gathered);
        std::memcpy(state.buffer.get() + state.gathered, from, part);
        state.gathered += part;
        from += part;
        count -= part;
        if (state.gathered == kBufferSize) state.flush();
    }
}

void CFile::Flush() {
    Opened().flush();
}

std::uint64_t CFile::Seek(std::int64_t offset, SeekPosition from) {
    State& state = Opened();
    const std::uint64_t base = from == begin ? 0 : from == current ? state.logicalPosition() : state.length();
    const std::uint64_t distance =
        offset < 0 ? 0 - static_cast<std::uint64_t>(offset) : static_cast<std::uint64_t>(offset);
    const auto limit = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (offset < 0 ? distance > base : distance > limit - std::min(base, limit))
        throw CFileException(CFileException::badPath, 0, state.path, CFileException::use);
    state.moveTo(offset < 0 ? base - distance : base + distance);
    return state.position;
}

std::uint64_t CFile::GetPosition() const {
    return Opened().logicalPosition();
}
std::uint64_t CFile::GetLength() const {
    return Opened().length();
}

void CFile::Close() {
    if (!m_state) return;
    const std::unique_ptr<State> state = std::move(m_state);
    state->flush(); // when this throws, the handle is closed as `state` goes
    if (const int error = state->handle.close()) throw failure(error, state->path, CFileException::close);
}

void CFile::Abort() noexcept {
    m_state.reset();
}

void CFile::Remove(const std::wstring& path) {
    if (const int error = framework::removeFile(framework::nativePath(path)))
        throw failure(error, path, CFileException::remove);
}

void CFile::Rename(const std::wstring& from, const std::wstring& to) {
    if (const int error = framework::renameFile(framework::nativePath(from), framework::nativePath(to)))
        throw failure(error, from, CFileException::rename);
}
