// A growing memory block seen as a file: the target of an archive written to memory, the
// wrapper of a caller's block being read, and the block an entry is extracted into.
#pragma once
#include "zip/zip_abstract_file.h"

namespace zelvar {

class CZipMemFile : public CZipAbstractFile {
public:
    explicit CZipMemFile(unsigned growBy = 1024) : m_nGrowBy(growBy) {}
    // Wraps a block the caller keeps; it is neither grown past its size nor freed here.
    CZipMemFile(char* buffer, unsigned size, unsigned growBy = 1024);
    ~CZipMemFile() override;
    CZipMemFile(const CZipMemFile&) = delete;
    CZipMemFile& operator=(const CZipMemFile&) = delete;

    unsigned Read(void* buffer, unsigned size) override;
    void Write(const void* buffer, unsigned size) override;
    uint64_t Seek(int64_t offset, int from) override;
    uint64_t GetPosition() const override { return m_nPos; }
    uint64_t GetLength() const override { return m_nDataSize; }
    // Grows the block when it is too small, otherwise moves the position there; either way
    // the data size becomes length.
    void SetLength(uint64_t length) override;
    void Flush() override {}
    void Close() override;
    bool IsClosed() const override { return false; }
    const char* InPlaceData() const override { return m_lpBuf; }

    char* Data() { return m_lpBuf; }
    const char* Data() const { return m_lpBuf; }
    // Hands the block to the caller, who frees it with free(); the file is empty afterwards.
    char* Detach(unsigned* size);

    unsigned m_nGrowBy;
    unsigned m_nPos = 0;
    unsigned m_nBufSize = 0;
    unsigned m_nDataSize = 0;
    char* m_lpBuf = nullptr;
    bool m_bAutoDelete = true;

private:
    void Grow(uint64_t wanted);
};

}  // namespace zelvar
