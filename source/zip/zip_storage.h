// Buffered writing and positioned reading over the archive's file. Positions given to
// Seek are archive positions; the bytes found glued in front of an archive are added.
#pragma once
#include <cstdint>
#include <vector>

#include "zip/zip_abstract_file.h"

namespace zelvar {

class CZipStorage {
public:
    static constexpr unsigned kWriteBufferSize = 65536;
    static constexpr unsigned kLocateChunkSize = 32768;

    void Open(CZipAbstractFile* file, bool readOnly);
    void Close();
    bool IsOpen() const { return m_pFile != nullptr; }
    bool IsReadOnly() const { return m_bReadOnly; }
    CZipAbstractFile* GetFile() { return m_pFile; }

    void Write(const void* data, unsigned size);
    void Flush();
    // Reads exactly size bytes; running out of file means a damaged archive.
    void Read(void* data, unsigned size);
    // Like Read, but points into the file's memory instead of copying; null when the file
    // isn't in memory.
    const char* ReadInPlace(unsigned size);
    bool IsInMemory() const { return m_pFile->InPlaceData() != nullptr; }
    // Moves to an archive position (bytes before the archive added).
    void Seek(uint64_t archivePosition);
    // Current position in the file, buffered bytes included.
    uint64_t GetPosition() const;
    uint64_t GetLength() const { return m_pFile->GetLength(); }

    // Searches the file backwards from its end for a 4-byte signature within the last
    // maxDepth bytes; returns the file position of the last occurrence or -1.
    int64_t LocateSignature(uint32_t signature, uint32_t maxDepth);

    uint64_t m_uBytesBeforeZip = 0;

private:
    CZipAbstractFile* m_pFile = nullptr;
    bool m_bReadOnly = true;
    std::vector<char> m_pWriteBuffer;
    unsigned m_uBytesInWriteBuffer = 0;
};

}  // namespace zelvar
