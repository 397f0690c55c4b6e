// Fuzz target: an XML workbook from memory. Whatever the bytes, loading must fail with a message
// or succeed, and a loaded book must answer its cells, save and read back, with no crash, hang or
// leak.
//
// Bytes flipped inside a deflated entry almost never survive its checksum, so the mutator mostly
// opens the package, changes one entry's uncompressed bytes (or its name, or drops it) and packs
// the package again; that lets the parts' XML and the book's use of it be explored. Now and then
// it changes the archive's raw bytes, for the container itself.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "zelvar.h"
#include "zip/zip_reader.h"
#include "zip/zip_writer.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace {

struct Entry {
    std::wstring name;
    std::string bytes;
};

bool unpack(const uint8_t* data, size_t size, std::vector<Entry>& entries) {
    try {
        zelvar::ZipReader reader(reinterpret_cast<const char*>(data), static_cast<unsigned>(size));
        for (unsigned i = 0; i < reader.size(); ++i) {
            Entry e;
            e.name = reader.name(i);
            const char* bytes = nullptr;
            unsigned length = 0;
            reader.data(i, &bytes, &length);
            if (bytes) e.bytes.assign(bytes, length);
            std::free(const_cast<char*>(bytes));
            entries.push_back(std::move(e));
        }
    } catch (...) {
        return false;
    }
    return !entries.empty();
}

size_t pack(const std::vector<Entry>& entries, uint8_t* data, size_t maxSize) {
    try {
        zelvar::ZipWriter writer;
        for (const Entry& e : entries) writer.add(e.name, e.bytes.data(), static_cast<unsigned>(e.bytes.size()));
        writer.close();
        const char* out = nullptr;
        unsigned size = 0;
        writer.getRaw(&out, &size);
        size_t result = 0;
        if (out && size <= maxSize) {
            std::memcpy(data, out, size);
            result = size;
        }
        std::free(const_cast<char*>(out));
        return result;
    } catch (...) {
        return 0;
    }
}

// Changes one entry of a package; 0 when the input is no package or the result doesn't fit.
size_t mutateEntry(uint8_t* data, size_t size, size_t maxSize, std::minstd_rand& rng) {
    std::vector<Entry> entries;
    if (!unpack(data, size, entries)) return 0;
    Entry& e = entries[rng() % entries.size()];
    switch (rng() % 16) {
    case 0:
        entries.erase(entries.begin() + (&e - entries.data()));
        break;
    case 1: {
        if (e.name.empty()) break;
        std::string name(e.name.begin(), e.name.end());
        size_t length = name.size();
        name.resize(length + 8);
        name.resize(LLVMFuzzerMutate(reinterpret_cast<uint8_t*>(&name[0]), length, name.size()));
        e.name.assign(name.begin(), name.end());
        break;
    }
    default: {
        size_t length = e.bytes.size();
        size_t room = length + 256 + length / 4;
        e.bytes.resize(room);
        e.bytes.resize(LLVMFuzzerMutate(reinterpret_cast<uint8_t*>(&e.bytes[0]), length, room));
        break;
    }
    }
    return pack(entries, data, maxSize);
}

}  // namespace

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned seed) {
    std::minstd_rand rng(seed);
    if (rng() % 8 != 0)
        if (size_t out = mutateEntry(data, size, maxSize, rng)) return out;
    return LLVMFuzzerMutate(data, size, maxSize);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zelvar::IBookT<char>* book = zvCreateXMLBookA();
    if (!book) return 0;
    if (book->loadRaw(reinterpret_cast<const char*>(data), static_cast<unsigned>(size))) {
        for (int i = 0; i < book->sheetCount(); ++i) {
            zelvar::ISheetT<char>* sheet = book->getSheet(i);
            if (!sheet) continue;
            sheet->name();
            for (int r = sheet->firstRow(); r < sheet->lastRow() && r < sheet->firstRow() + 50; ++r)
                for (int c = sheet->firstCol(); c < sheet->lastCol() && c < sheet->firstCol() + 20; ++c) {
                    sheet->readStr(r, c);
                    sheet->readNum(r, c);
                    sheet->readFormula(r, c);
                    sheet->readError(r, c);
                    sheet->cellFormat(r, c);
                    sheet->isDate(r, c);
                }
            sheet->writeStr(0, 0, "fuzz");
            sheet->writeNum(1, 1, 1.5, book->format(0));
        }
        const char* saved = nullptr;
        unsigned savedSize = 0;
        if (book->saveRaw(&saved, &savedSize)) {
            zelvar::IBookT<char>* again = zvCreateXMLBookA();
            again->loadRaw(saved, savedSize);
            again->release();
        }
    }
    book->release();
    return 0;
}
