// Raw records and the payload reader that record classes parse with. A record the library does
// not interpret is kept as its id and payload and written back unchanged.
#pragma once
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "biff/record_ids.h"
#include "biff/xls.h"
#include "frame/little_endian.h"
#include "frame/zverror.h"

// The field readers run once per field of every record loaded: always inline.
#define ZV_INLINE inline __attribute__((always_inline))

namespace zelvar {

template <class T>
struct Biff {
    uint16_t id = 0;
    std::vector<uint8_t> payload;

    Biff() = default;
    explicit Biff(uint16_t type) : id(type) {}
    int read(XlsStream& xls, uint16_t size) {
        if (size == 0) return 0;
        payload.resize(size);
        int got = xls.read(reinterpret_cast<char*>(payload.data()), size);
        if (got < size) throw zverror("read error: the stream ends inside a record");
        return got;
    }
    int write(XlsStream& xls) const {
        return xls.write(id, reinterpret_cast<const char*>(payload.data()), static_cast<int>(payload.size()));
    }
};

// An optional slot: written only when a file supplied it.
template <class T>
struct EmptyBiff : Biff<T> {
    bool empty = true;
    explicit EmptyBiff(uint16_t type = 0) : Biff<T>(type) {}
    int read(XlsStream& xls, uint16_t size) {
        empty = false;
        return Biff<T>::read(xls, size);
    }
    int writeIfPresent(XlsStream& xls) const { return empty ? 0 : this->write(xls); }
    void clear() {
        empty = true;
        this->payload.clear();
    }
};

// A record's payload read whole, with checked little-endian field access. Running past the end
// fails with "<Name> size is incorrect".
class RecordReader {
public:
    // Cell records are short: their payload stays in the reader itself, with no allocation.
    RecordReader(XlsStream& xls, uint16_t size, const char* name) : _size(size), _name(name) {
        uint8_t* into = _inline;
        if (size > sizeof _inline) {
            _heap.reset(new uint8_t[size]);
            into = _heap.get();
        }
        _data = into;
        int got = size ? xls.read(reinterpret_cast<char*>(into), size) : 0;
        if (got < size) throw zverror("read error: the stream ends inside a record");
    }
    // Reads a payload kept elsewhere, which must outlive the reader.
    RecordReader(const std::vector<uint8_t>& data, const char* name)
        : _data(data.data()), _size(data.size()), _name(name) {}
    RecordReader(const RecordReader&) = delete;
    RecordReader& operator=(const RecordReader&) = delete;

    size_t size() const { return _size; }
    size_t pos() const { return _pos; }
    size_t left() const { return _size - _pos; }
    const uint8_t* at() const { return _data + _pos; }
    ZV_INLINE uint8_t u8() {
        need(1);
        return _data[_pos++];
    }
    ZV_INLINE uint16_t u16() {
        need(2);
        uint16_t v = le::get16(_data + _pos);
        _pos += 2;
        return v;
    }
    ZV_INLINE uint32_t u32() {
        need(4);
        uint32_t v = le::get32(_data + _pos);
        _pos += 4;
        return v;
    }
    ZV_INLINE double f64() {
        need(8);
        double v;
        std::memcpy(&v, _data + _pos, 8);
        _pos += 8;
        return v;
    }
    void bytes(void* out, size_t n) {
        need(n);
        std::memcpy(out, _data + _pos, n);
        _pos += n;
    }
    void skip(size_t n) {
        need(n);
        _pos += n;
    }
    // A string of the record: count (8 or 16 bits), flag byte unless noFlag, characters.
    std::wstring string(bool shortCount, bool noFlag) {
        size_t count = shortCount ? u8() : u16();
        uint8_t flags = noFlag ? 0 : u8();
        return chars(count, flags);
    }
    // The same, where an empty text may be stored as its count alone, without the flag byte.
    std::wstring stringOrBareCount(bool shortCount, bool noFlag) {
        if (!noFlag && left() == (shortCount ? 1u : 2u)) {
            if ((shortCount ? u8() : u16()) != 0) fail();
            return std::wstring();
        }
        return string(shortCount, noFlag);
    }
    // The same, taking only the characters the record holds when its count claims more; bytes
    // behind the text are skipped.
    std::wstring stringWithin(bool shortCount, bool noFlag) {
        size_t count = shortCount ? u8() : u16();
        uint8_t flags = noFlag ? 0 : u8();
        std::wstring text = chars(std::min(count, left() / ((flags & 1) ? 2 : 1)), flags);
        _pos = _size;
        return text;
    }
    std::wstring chars(size_t count, uint8_t flags) {
        std::wstring out;
        out.reserve(count);
        if (flags & 1) {
            need(count * 2);
            for (size_t i = 0; i < count; ++i) out.push_back(static_cast<wchar_t>(le::get16(_data + _pos + 2 * i)));
            _pos += count * 2;
        } else {
            need(count);
            for (size_t i = 0; i < count; ++i) out.push_back(static_cast<wchar_t>(_data[_pos + i]));
            _pos += count;
        }
        return out;
    }
    // The whole payload must have been used.
    void done() const {
        if (_pos != _size) fail();
    }
    [[noreturn]] void fail() const;

private:
    void need(size_t n) const {
        if (__builtin_expect(_size - _pos < n, 0)) fail();
    }
    uint8_t _inline[32];
    std::unique_ptr<uint8_t[]> _heap;
    const uint8_t* _data;
    size_t _size;
    size_t _pos = 0;
    const char* _name;
};

// Builds a record's payload field by field, for writing.
class RecordWriter {
public:
    void u8(uint8_t v) { _data.push_back(v); }
    void u16(uint16_t v) { le::append16(_data, v); }
    void u32(uint32_t v) { le::append32(_data, v); }
    void f64(double v) {
        uint8_t b[8];
        std::memcpy(b, &v, 8);
        _data.insert(_data.end(), b, b + 8);
    }
    void bytes(const void* p, size_t n) {
        const uint8_t* b = static_cast<const uint8_t*>(p);
        _data.insert(_data.end(), b, b + n);
    }
    // Text the library writes is always in the 16-bit form.
    void string16(const std::wstring& text, bool shortCount) {
        std::wstring units = utf16Units(text);
        // The count field must hold what is written, not only the characters asked for.
        if (units.size() > (shortCount ? 255u : 65535u)) throw zverror("string is too long");
        if (shortCount)
            u8(static_cast<uint8_t>(units.size()));
        else
            u16(static_cast<uint16_t>(units.size()));
        u8(1);
        chars16(units);
    }
    void chars16(const std::wstring& units) {
        for (wchar_t c : units) u16(static_cast<uint16_t>(c));
    }
    // Wide text as the 16-bit units the file holds: characters beyond 16 bits become pairs.
    static std::wstring utf16Units(const std::wstring& text) {
        std::wstring out;
        out.reserve(text.size());
        for (wchar_t c : text) {
            uint32_t v = static_cast<uint32_t>(c);
            if (v > 0xFFFF && v <= 0x10FFFF) {
                v -= 0x10000;
                out.push_back(static_cast<wchar_t>(0xD800 + (v >> 10)));
                out.push_back(static_cast<wchar_t>(0xDC00 + (v & 0x3FF)));
            } else {
                out.push_back(static_cast<wchar_t>(v & 0xFFFF));
            }
        }
        return out;
    }
    size_t size() const { return _data.size(); }
    const std::vector<uint8_t>& data() const { return _data; }
    void clear() { _data.clear(); }
    int write(XlsStream& xls, uint16_t id) const {
        if (_data.size() > 8224) throw zverror("record is too long");
        return xls.write(id, reinterpret_cast<const char*>(_data.data()), static_cast<int>(_data.size()));
    }

private:
    std::vector<uint8_t> _data;
};

// Appends a record carried raw; the variant with continues also takes the CONTINUE records that
// follow it, since they belong to it.
template <class T>
void readRaw(XlsStream& xls, uint16_t type, uint16_t size, std::vector<Biff<T>>& into) {
    Biff<T> record(type);
    record.read(xls, size);
    into.push_back(std::move(record));
}

template <class T>
void readRawWithContinues(XlsStream& xls, uint16_t type, uint16_t size, std::vector<Biff<T>>& into) {
    readRaw(xls, type, size, into);
    while (!xls.eof() && xls.peekInt16() == rt::Continue) {
        uint16_t id = 0, length = 0;
        xls.readInt16(&id);
        xls.readInt16(&length);
        readRaw(xls, id, length, into);
    }
}

// A record that holds one 16-bit value: read with its size check, or written.
inline uint16_t readU16Record(XlsStream& xls, uint16_t size, const char* name) {
    RecordReader in(xls, size, name);
    uint16_t v = in.u16();
    in.done();
    return v;
}

inline void writeU16Record(XlsStream& xls, uint16_t id, uint16_t value) {
    xls.write(id, 2);
    xls.writeInt16(value);
}

// A run of such records, written in the order given.
struct U16Record {
    uint16_t id;
    uint16_t value;
};
inline void writeU16Records(XlsStream& xls, std::initializer_list<U16Record> records) {
    for (const U16Record& record : records) writeU16Record(xls, record.id, record.value);
}

}  // namespace zelvar
