// Writes a package to a file or to memory: whole entries, then the central directory.
// Every failure leaves as zverror.
#pragma once
#include <string>

#include "zip/zip_archive.h"

namespace zelvar {

class ZipWriter {
public:
    // Writes to memory; getRaw hands the block out after close.
    ZipWriter();
    explicit ZipWriter(const std::wstring& path);
    // Without close the archive gets no central directory.
    ~ZipWriter();
    ZipWriter(const ZipWriter&) = delete;
    ZipWriter& operator=(const ZipWriter&) = delete;

    // Adds one entry; the first character of name (the package path's "/") is dropped.
    // An empty part makes no entry at all.
    void add(std::wstring name, const char* data, unsigned size);
    void close();
    // The block now belongs to the caller, who frees it with free().
    void getRaw(const char** data, unsigned* size);

private:
    CZipArchive _archive;
    CZipMemFile _memFile;
};

}  // namespace zelvar
