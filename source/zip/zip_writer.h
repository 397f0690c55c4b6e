// Writes a package to a file or to memory: whole entries, then the central directory.
// Every failure leaves as zverror.
#pragma once
#include <streambuf>
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
    friend class ZipEntryBuf;
    CZipArchive _archive;
    CZipMemFile _memFile;
};

// One entry whose bytes come in pieces, as a stream buffer that an output stream writes to, so
// that a part is compressed as it is produced and never held whole. The first 64 kB are held
// back: a part that ends before that goes through add, with its rules for empty and tiny parts.
class ZipEntryBuf : public std::streambuf {
public:
    ZipEntryBuf(ZipWriter& writer, std::wstring name);
    // Ends the entry after its last byte; without it the archive is left unfinished.
    void finish();

protected:
    std::streamsize xsputn(const char* data, std::streamsize size) override;
    int_type overflow(int_type c) override;

private:
    static constexpr size_t kHeldBack = 65536;
    ZipWriter& _writer;
    std::wstring _name;
    std::string _held;
    bool _open = false;
};

}  // namespace zelvar
