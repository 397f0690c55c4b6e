// The shared string table of a binary book: every cell text once, addressed by a stable index.
#pragma once
#include <sparsehash/sparse_hash_map>

#include <cstdint>
#include <cwchar>
#include <string>
#include <utility>
#include <vector>

#include "biff/xls.h"
#include "frame/mem_pool.h"

namespace zelvar {

// Phonetic (East Asian reading) block of a string, carried as bytes.
struct ExtStringPhonetic : public BaseClass {
    int32_t size = 0;
    unsigned char* bytes = nullptr;
};

// Rich text runs (character position, font index) and the phonetic block of a string.
struct ExtStringFormat : public BaseClass {
    std::vector<std::pair<uint16_t, uint16_t>> runs;
    ExtStringPhonetic* phonetic = nullptr;
};

// Flag byte bits of the string layouts.
enum : unsigned char { kHighByte = 0x01, kPhonetic = 0x04, kRichText = 0x08 };

// One entry of the table: its text lives in the book's pool, so copies are shallow.
template <class T>
struct ExtString {
    unsigned char flags = kHighByte;
    const wchar_t* text = nullptr;
    ExtStringFormat* format = nullptr;
};

// FNV-1 over the wide characters; flags and runs don't enter the hash.
template <class T>
struct ExtStringHash {
    size_t operator()(const ExtString<T>& s) const {
        uint32_t h = 2166136261u;
        for (const wchar_t* p = s.text; *p; ++p) {
            h *= 16777619u;
            h ^= static_cast<uint32_t>(*p);
        }
        return h;
    }
};

// Equal text, equal rich runs, and never equal with a phonetic block, so such strings stay unshared.
template <class T>
struct eqstr {
    bool operator()(const ExtString<T>& a, const ExtString<T>& b) const;
};

template <class T>
class StrMap {
public:
    // Index of the string: an existing one unless force, else a new slot at the end.
    unsigned insert(const ExtString<T>& string, bool force, bool& inserted);
    // Index of an equal string, or -1.
    long find(const ExtString<T>& string) const {
        auto found = _map.find(string);
        return found == _map.end() || found->second == kNoSlot ? -1 : static_cast<long>(found->second);
    }
    // Replaces the slot's string; the old text no longer maps to the slot.
    void insert(unsigned index, const ExtString<T>& string);
    const ExtString<T>& extract(unsigned index) const { return _strings.at(index); }
    unsigned count() const { return static_cast<unsigned>(_strings.size()); }
    void reset();

private:
    // Map value of a text whose slot was given to another text.
    static constexpr unsigned kNoSlot = ~0u;
    std::vector<ExtString<T>> _strings;
    google::sparse_hash_map<ExtString<T>, unsigned, ExtStringHash<T>, eqstr<T>> _map;
};

template <class T>
class SST {
public:
    // The pool that holds the strings and the book's text mode.
    void bind(MemPool* pool, const bool* utf8Mode) {
        _pool = pool;
        _utf8Mode = utf8Mode;
    }
    // Adds a reference to the text: an existing index unless force, else a new one.
    unsigned insert(const T* text, bool force);
    // Overwrites the slot in place; counters unchanged.
    void insert(unsigned index, const T* text);
    // Adds a string read from a file into a new slot (duplicates keep their own slots).
    unsigned insertLoaded(const ExtString<T>& string);
    const wchar_t* extract(unsigned index) const { return _map.extract(index).text; }
    // Reads the table of a file (the record header is consumed); every slot is kept.
    void read(XlsStream& xls, uint16_t size, MemPool* pool);
    // Writes the SST record and its CONTINUE pieces; sizes are patched at the end.
    void write(XlsStream& xls);
    const ExtString<T>& entry(unsigned index) const { return _map.extract(index); }
    unsigned count() const { return _map.count(); }
    void reset();
    std::wstring dump() const;

    // Cell records that refer to each slot, stale ones included: a slot used by one record only
    // may be rewritten in place when that record's text changes.
    void addUser(unsigned index);
    void removeUser(unsigned index);
    unsigned users(unsigned index) const { return index < _users.size() ? _users[index] : 0; }

    uint32_t cstTotal = 0;
    uint32_t cstUnique = 0;

private:
    const wchar_t* toPool(const T* text, size_t* length);

    StrMap<T> _map;
    std::vector<unsigned> _users;
    MemPool* _pool = nullptr;
    const bool* _utf8Mode = nullptr;
    std::wstring _scratch;
};

}  // namespace zelvar
