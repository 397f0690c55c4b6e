#include "zip/zip_writer.h"

#include <algorithm>

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

namespace {

// The entry name of a package path: its first character, the "/", is dropped.
std::string entryName(const std::wstring& name) { return ziptext::wideToUtf8(name.empty() ? name : name.substr(1)); }

}  // namespace

void ZipWriter::add(std::wstring name, const char* data, unsigned size) {
    if (size == 0) return;
    guarded([&] {
        std::string utf8Name = entryName(name);
        // The source only wraps the caller's block: nothing is copied before compressing.
        CZipMemFile source(const_cast<char*>(data), size, 1024);
        if (!_archive.AddNewFile(source, utf8Name, -1, 7, 65536))
            CZipException::Throw(CZipException::internalError);
    });
}

ZipEntryBuf::ZipEntryBuf(ZipWriter& writer, std::wstring name) : _writer(writer), _name(std::move(name)) {
    _held.reserve(kHeldBack);
}

std::streamsize ZipEntryBuf::xsputn(const char* data, std::streamsize size) {
    if (size <= 0) return 0;
    size_t count = static_cast<size_t>(size);
    if (!_open && _held.size() + count <= kHeldBack) {
        _held.append(data, count);
        return size;
    }
    guarded([&] {
        if (!_open) {
            _writer._archive.OpenNewFile(entryName(_name), -1);
            _open = true;
            if (!_held.empty()) _writer._archive.WriteNewFile(_held.data(), static_cast<unsigned>(_held.size()));
            std::string().swap(_held);
        }
        for (size_t done = 0; done < count;) {
            unsigned step = static_cast<unsigned>(std::min<size_t>(count - done, 1u << 30));
            _writer._archive.WriteNewFile(data + done, step);
            done += step;
        }
    });
    return size;
}

ZipEntryBuf::int_type ZipEntryBuf::overflow(int_type c) {
    if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
    char one = traits_type::to_char_type(c);
    xsputn(&one, 1);
    return c;
}

void ZipEntryBuf::finish() {
    if (!_open) {
        _writer.add(_name, _held.data(), static_cast<unsigned>(_held.size()));
        return;
    }
    guarded([&] { _writer._archive.CloseNewFile(); });
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
