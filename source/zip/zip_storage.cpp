#include "zip/zip_storage.h"

#include <algorithm>
#include <cstring>

#include "zip/zip_exception.h"

namespace zelvar {

void CZipStorage::Open(CZipAbstractFile* file, bool readOnly) {
    m_pFile = file;
    m_bReadOnly = readOnly;
    m_uBytesBeforeZip = 0;
    m_uBytesInWriteBuffer = 0;
    if (!readOnly) m_pWriteBuffer.resize(kWriteBufferSize);
}

void CZipStorage::Close() {
    m_pFile = nullptr;
    m_uBytesInWriteBuffer = 0;
    std::vector<char>().swap(m_pWriteBuffer);
}

void CZipStorage::Write(const void* data, unsigned size) {
    const char* in = static_cast<const char*>(data);
    while (size > 0) {
        if (m_uBytesInWriteBuffer == 0 && size >= kWriteBufferSize) {
            // A full block goes straight through; copying it would gain nothing.
            m_pFile->Write(in, size);
            return;
        }
        unsigned room = kWriteBufferSize - m_uBytesInWriteBuffer;
        unsigned part = std::min(room, size);
        std::memcpy(m_pWriteBuffer.data() + m_uBytesInWriteBuffer, in, part);
        m_uBytesInWriteBuffer += part;
        in += part;
        size -= part;
        if (m_uBytesInWriteBuffer == kWriteBufferSize) Flush();
    }
}

void CZipStorage::Flush() {
    if (m_uBytesInWriteBuffer == 0) return;
    unsigned pending = m_uBytesInWriteBuffer;
    m_uBytesInWriteBuffer = 0;
    m_pFile->Write(m_pWriteBuffer.data(), pending);
}

void CZipStorage::Read(void* data, unsigned size) {
    if (size == 0) return;
    if (m_pFile->Read(data, size) != size) CZipException::Throw(CZipException::badZipFile);
}

const char* CZipStorage::ReadInPlace(unsigned size) {
    const char* memory = m_pFile->InPlaceData();
    if (!memory) return nullptr;
    uint64_t position = m_pFile->GetPosition();
    if (position > m_pFile->GetLength() || m_pFile->GetLength() - position < size)
        CZipException::Throw(CZipException::badZipFile);
    m_pFile->Seek(static_cast<int64_t>(position + size), CZipAbstractFile::begin);
    return memory + position;
}

void CZipStorage::Seek(uint64_t archivePosition) {
    Flush();
    uint64_t target = archivePosition + m_uBytesBeforeZip;
    if (target < archivePosition || target > uint64_t(INT64_MAX))
        CZipException::Throw(CZipException::badZipFile);
    m_pFile->Seek(static_cast<int64_t>(target), CZipAbstractFile::begin);
}

uint64_t CZipStorage::GetPosition() const { return m_pFile->GetPosition() + m_uBytesInWriteBuffer; }

int64_t CZipStorage::LocateSignature(uint32_t signature, uint32_t maxDepth) {
    uint64_t length = m_pFile->GetLength();
    uint64_t lowest = length > maxDepth ? length - maxDepth : 0;
    const unsigned char pattern[4] = {
        static_cast<unsigned char>(signature), static_cast<unsigned char>(signature >> 8),
        static_cast<unsigned char>(signature >> 16), static_cast<unsigned char>(signature >> 24)};
    // Chunks overlap by 3 bytes so that a signature across a chunk border is found.
    std::vector<unsigned char> chunk(kLocateChunkSize + 3);
    uint64_t chunkEnd = length;
    while (chunkEnd > lowest && chunkEnd - lowest >= 1) {
        uint64_t chunkStart = chunkEnd - lowest > kLocateChunkSize ? chunkEnd - kLocateChunkSize : lowest;
        uint64_t readEnd = std::min<uint64_t>(chunkEnd + 3, length);
        unsigned count = static_cast<unsigned>(readEnd - chunkStart);
        m_pFile->Seek(static_cast<int64_t>(chunkStart), CZipAbstractFile::begin);
        if (m_pFile->Read(chunk.data(), count) != count) CZipException::Throw(CZipException::badZipFile);
        for (unsigned i = static_cast<unsigned>(chunkEnd - chunkStart); i-- > 0;) {
            if (i + 4 <= count && std::memcmp(chunk.data() + i, pattern, 4) == 0)
                return static_cast<int64_t>(chunkStart + i);
        }
        chunkEnd = chunkStart;
    }
    return -1;
}

}  // namespace zelvar
