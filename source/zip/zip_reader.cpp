#include "zip/zip_reader.h"

#include <cstdlib>
#include <new>

#include "frame/zverror.h"
#include "zip/zip_exception.h"
#include "zip/zip_text.h"

namespace zelvar {

namespace {

// Engine failures become the library's exception with the engine's text.
template <typename Work>
void guarded(Work work) {
    try {
        work();
    } catch (const CZipException& failure) {
        throw zverror(failure.GetErrorDescription());
    } catch (const zverror&) {
        throw;
    } catch (...) {
        throw zverror("Zip Memory Allocation Failure");
    }
}

}  // namespace

ZipReader::ZipReader(const char* data, unsigned size)
    : _memFile(const_cast<char*>(data), data ? size : 0, 1024) {
    guarded([&] { _archive.Open(_memFile, CZipArchive::zipOpenReadOnly); });
}

ZipReader::ZipReader(const std::wstring& path) {
    guarded([&] { _archive.Open(ziptext::pathToNarrow(path), CZipArchive::zipOpenReadOnly, 0); });
}

ZipReader::~ZipReader() {
    try {
        _archive.Close(0, false);
    } catch (...) {
    }
}

unsigned ZipReader::size() const { return _archive.GetCount(); }

std::wstring ZipReader::name(unsigned index) const {
    const CZipFileHeader* header = _archive.GetFileInfo(index);
    if (!header) return std::wstring();
    std::wstring path = ziptext::utf8ToWide(header->GetFileName());
    for (wchar_t& c : path)
        if (c == L'\\') c = L'/';
    if (!path.empty() && path[0] != L'/') path.insert(path.begin(), L'/');
    return path;
}

void ZipReader::data(unsigned index, const char** out, unsigned* size) {
    *out = nullptr;
    *size = 0;
    const CZipFileHeader* header = _archive.GetFileInfo(index);
    if (!header) return;
    if (header->m_uUncomprSize >= 0xFFFFFFFFu) throw zverror("incorrect file size in archive");
    guarded([&] {
        CZipMemFile block(1024);
        _archive.ExtractFile(index, block, true, 65536);
        unsigned length = 0;
        char* bytes = block.Detach(&length);
        if (!bytes) {
            // An entry with nothing in it still gives a block the caller can free.
            bytes = static_cast<char*>(std::malloc(1));
            if (!bytes) throw std::bad_alloc();
            length = 0;
        }
        *out = bytes;
        *size = length;
    });
}

}  // namespace zelvar
