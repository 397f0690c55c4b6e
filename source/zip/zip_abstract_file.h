// What the archive engine reads from and writes to: a file on disk or a block in memory.
#pragma once
#include <cstdint>

namespace zelvar {

class CZipAbstractFile {
public:
    enum SeekFrom { begin = 0, current = 1, end = 2 };

    virtual ~CZipAbstractFile() = default;
    // Reads up to size bytes; returns how many were read (0 at the end).
    virtual unsigned Read(void* buffer, unsigned size) = 0;
    // Writes all bytes or throws.
    virtual void Write(const void* buffer, unsigned size) = 0;
    virtual uint64_t Seek(int64_t offset, int from) = 0;
    virtual uint64_t GetPosition() const = 0;
    virtual uint64_t GetLength() const = 0;
    virtual void SetLength(uint64_t length) = 0;
    virtual void Flush() = 0;
    virtual void Close() = 0;
    virtual bool IsClosed() const = 0;
    // The whole content when it lies in memory already, so that reading needs no copy.
    virtual const char* InPlaceData() const { return nullptr; }
};

}  // namespace zelvar
