#include "zip/zip_mem_file.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "zip/zip_exception.h"

namespace zelvar {

CZipMemFile::CZipMemFile(char* buffer, unsigned size, unsigned growBy)
    : m_nGrowBy(growBy), m_nBufSize(size), m_nDataSize(size), m_lpBuf(buffer),
      m_bAutoDelete(false) {}

CZipMemFile::~CZipMemFile() { Close(); }

void CZipMemFile::Close() {
    if (m_bAutoDelete) std::free(m_lpBuf);
    m_lpBuf = nullptr;
    m_nPos = m_nBufSize = m_nDataSize = 0;
}

char* CZipMemFile::Detach(unsigned* size) {
    char* block = m_lpBuf;
    if (size) *size = m_nDataSize;
    m_lpBuf = nullptr;
    m_nPos = m_nBufSize = m_nDataSize = 0;
    return block;
}

void CZipMemFile::Grow(uint64_t wanted) {
    if (wanted <= m_nBufSize) return;
    // A wrapped block belongs to the caller and must not move.
    if (!m_bAutoDelete) CZipException::Throw(CZipException::memError);
    // Capacity stays a multiple of the grow step past the wanted size, but a block that
    // grows again grows by half at least: many small appends must not copy the block
    // over and over.
    uint64_t step = m_nGrowBy ? m_nGrowBy : 1024;
    uint64_t target = m_nBufSize ? std::max<uint64_t>(wanted, m_nBufSize + m_nBufSize / 2) : wanted;
    uint64_t capacity = m_nBufSize + (target - m_nBufSize + step - 1) / step * step;
    if (capacity > UINT32_MAX && wanted <= UINT32_MAX) capacity = UINT32_MAX;
    if (capacity > UINT32_MAX) CZipException::Throw(CZipException::memError);
    void* block = m_lpBuf ? std::realloc(m_lpBuf, capacity) : std::malloc(capacity);
    if (!block) CZipException::Throw(CZipException::memError);
    m_lpBuf = static_cast<char*>(block);
    m_nBufSize = static_cast<unsigned>(capacity);
}

unsigned CZipMemFile::Read(void* buffer, unsigned size) {
    if (m_nPos >= m_nDataSize) return 0;
    unsigned count = m_nDataSize - m_nPos;
    if (size < count) count = size;
    std::memcpy(buffer, m_lpBuf + m_nPos, count);
    m_nPos += count;
    return count;
}

void CZipMemFile::Write(const void* buffer, unsigned size) {
    if (size == 0) return;
    uint64_t end = uint64_t(m_nPos) + size;
    if (end > m_nBufSize) Grow(end);
    std::memcpy(m_lpBuf + m_nPos, buffer, size);
    m_nPos = static_cast<unsigned>(end);
    if (m_nPos > m_nDataSize) m_nDataSize = m_nPos;
}

uint64_t CZipMemFile::Seek(int64_t offset, int from) {
    int64_t base = from == begin ? 0 : from == current ? int64_t(m_nPos) : int64_t(m_nDataSize);
    int64_t target = base + offset;
    if (target < 0 || target > int64_t(UINT32_MAX)) CZipException::Throw(CZipException::badZipFile);
    m_nPos = static_cast<unsigned>(target);
    return m_nPos;
}

void CZipMemFile::SetLength(uint64_t length) {
    if (length > UINT32_MAX) CZipException::Throw(CZipException::memError);
    if (m_nBufSize < length)
        Grow(length);
    else
        m_nPos = static_cast<unsigned>(length);
    m_nDataSize = static_cast<unsigned>(length);
}

}  // namespace zelvar
