#include "zip/zip_writer.h"

#include "frame/zverror.h"
#include "zip/zip_exception.h"
#include "zip/zip_text.h"

namespace zelvar {

namespace {

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

ZipWriter::ZipWriter() : _memFile(1024) {
    guarded([&] { _archive.Open(_memFile, CZipArchive::zipCreate); });
}

ZipWriter::ZipWriter(const std::wstring& path) : _memFile(1024) {
    guarded([&] { _archive.Open(ziptext::pathToNarrow(path), CZipArchive::zipCreate, 0); });
}

ZipWriter::~ZipWriter() {
    try {
        _archive.Close(1, false);
    } catch (...) {
    }
}

void ZipWriter::add(std::wstring name, const char* data, unsigned size) {
    if (size == 0) return;
    guarded([&] {
        std::string utf8Name = ziptext::wideToUtf8(name.empty() ? name : name.substr(1));
        // The source only wraps the caller's block: nothing is copied before compressing.
        CZipMemFile source(const_cast<char*>(data), size, 1024);
        if (!_archive.AddNewFile(source, utf8Name, -1, 7, 65536))
            CZipException::Throw(CZipException::internalError);
    });
}

void ZipWriter::close() {
    guarded([&] { _archive.Close(0, false); });
}

void ZipWriter::getRaw(const char** data, unsigned* size) {
    unsigned length = 0;
    *data = _memFile.Detach(&length);
    *size = length;
}

}  // namespace zelvar
