// A file on disk through POSIX calls, for archives opened or created by path.
#pragma once
#include <string>

#include "zip/zip_abstract_file.h"

namespace zelvar {

class CZipFile : public CZipAbstractFile {
public:
    enum OpenMode { modeRead = 1, modeCreate = 2 };

    CZipFile() = default;
    ~CZipFile() override;
    CZipFile(const CZipFile&) = delete;
    CZipFile& operator=(const CZipFile&) = delete;

    // Throws CZipException with the errno value as its cause.
    void Open(const std::string& path, OpenMode mode);

    unsigned Read(void* buffer, unsigned size) override;
    void Write(const void* buffer, unsigned size) override;
    uint64_t Seek(int64_t offset, int from) override;
    uint64_t GetPosition() const override;
    uint64_t GetLength() const override;
    void SetLength(uint64_t length) override;
    void Flush() override;
    void Close() override;
    bool IsClosed() const override { return m_hFile < 0; }

private:
    [[noreturn]] void ThrowErrno() const;

    int m_hFile = -1;
    std::string m_szFileName;
};

}  // namespace zelvar
