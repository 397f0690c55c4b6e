// Reads a package: lists its entries in the order they stand in the file and extracts
// whole entries into memory. Every failure leaves as zverror.
#pragma once
#include <string>

#include "zip/zip_archive.h"

namespace zelvar {

class ZipReader {
public:
    // Reads from a block that the caller keeps alive as long as this reader.
    ZipReader(const char* data, unsigned size);
    explicit ZipReader(const std::wstring& path);
    ~ZipReader();
    ZipReader(const ZipReader&) = delete;
    ZipReader& operator=(const ZipReader&) = delete;

    unsigned size() const;
    // The entry's name as a package path: "/" in front and "/" between the parts.
    std::wstring name(unsigned index) const;
    // Hands out a block allocated with malloc, which the caller frees with free(). An index
    // out of range gives null and size 0.
    void data(unsigned index, const char** out, unsigned* size);

private:
    CZipArchive _archive;
    CZipMemFile _memFile;
};

}  // namespace zelvar
