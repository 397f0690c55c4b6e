#include "biff/sst.h"

#include "biff/biff_record.h"
#include "frame/text.h"
#include "frame/zverror.h"

namespace zelvar {

template <class T>
bool eqstr<T>::operator()(const ExtString<T>& a, const ExtString<T>& b) const {
    if (a.text == b.text && a.text == nullptr) return true;
    if (!a.text || !b.text) return false;
    if (std::wcscmp(a.text, b.text) != 0) return false;
    if ((a.flags & (kPhonetic | kRichText)) != (b.flags & (kPhonetic | kRichText))) return false;
    if (a.flags & kPhonetic) return false;
    if (a.flags & kRichText) {
        const auto* ra = a.format ? &a.format->runs : nullptr;
        const auto* rb = b.format ? &b.format->runs : nullptr;
        size_t na = ra ? ra->size() : 0, nb = rb ? rb->size() : 0;
        if (na != nb) return false;
        for (size_t i = 0; i < na; ++i)
            if ((*ra)[i] != (*rb)[i]) return false;
    }
    return true;
}

template <class T>
unsigned StrMap<T>::insert(const ExtString<T>& string, bool force, bool& inserted) {
    if (!force) {
        auto found = _map.find(string);
        if (found != _map.end() && found->second != kNoSlot) {
            inserted = false;
            return found->second;
        }
    }
    unsigned index = count();
    _map[string] = index;
    _strings.push_back(string);
    inserted = true;
    return index;
}

template <class T>
void StrMap<T>::insert(unsigned index, const ExtString<T>& string) {
    // The old text leaves the slot: its entry must not lead a later insert of that text here.
    auto old = _map.find(_strings.at(index));
    if (old != _map.end() && old->second == index) old->second = kNoSlot;
    _strings[index] = string;
    _map[string] = index;
}

template <class T>
void StrMap<T>::reset() {
    _strings.clear();
    _map.clear();
}

template <class T>
const wchar_t* SST<T>::toPool(const T* text, size_t* length) {
    toWide(text, *_utf8Mode, _scratch);
    *length = _scratch.size();
    return _scratch.c_str();
}

template <class T>
unsigned SST<T>::insert(const T* text, bool force) {
    size_t length = 0;
    ExtString<T> probe;
    probe.text = toPool(text, &length);
    bool inserted = false;
    unsigned index;
    // Look up with the scratch text first so that repeated texts cost no pool memory.
    long existing = force ? -1 : _map.find(probe);
    if (existing >= 0) {
        index = static_cast<unsigned>(existing);
    } else {
        probe.text = _pool->copyW(_scratch.data(), length);
        index = _map.insert(probe, true, inserted);
    }
    ++cstTotal;
    if (inserted) ++cstUnique;
    return index;
}

template <class T>
void SST<T>::insert(unsigned index, const T* text) {
    size_t length = 0;
    toPool(text, &length);
    ExtString<T> string;
    string.text = _pool->copyW(_scratch.data(), length);
    _map.insert(index, string);
}

template <class T>
unsigned SST<T>::insertLoaded(const ExtString<T>& string) {
    bool inserted = false;
    return _map.insert(string, true, inserted);
}

template <class T>
void SST<T>::reset() {
    cstTotal = cstUnique = 0;
    _map.reset();
    _users.clear();
}

template <class T>
void SST<T>::addUser(unsigned index) {
    if (index >= _users.size()) _users.resize(index + 1, 0);
    ++_users[index];
}

template <class T>
void SST<T>::removeUser(unsigned index) {
    if (index < _users.size() && _users[index] > 0) --_users[index];
}

template <class T>
std::wstring SST<T>::dump() const {
    std::wstring out = L"[SST cstTotal=" + std::to_wstring(cstTotal) + L" cstUnique=" +
                       std::to_wstring(cstUnique) + L" (";
    for (unsigned i = 0; i < count(); ++i) {
        if (i) out += L",";
        out += extract(i);
    }
    return out + L")]";
}

template struct eqstr<char>;
template struct eqstr<wchar_t>;
template class StrMap<char>;
template class StrMap<wchar_t>;
template class SST<char>;
template class SST<wchar_t>;

}  // namespace zelvar

namespace zelvar {

namespace {

// Reading one logical string that may run on into CONTINUE records.
class ContinuedReader {
public:
    ContinuedReader(XlsStream& xls, unsigned& left) : _xls(xls), _left(left) {}
    void header() {
        uint16_t id = 0, size = 0;
        _xls.readInt16(&id);
        if (_xls.readInt16(&size) < 2) throw zverror("SST size is incorrect");
        _left = size;
    }
    void bytes(void* out, size_t n) {
        uint8_t* p = static_cast<uint8_t*>(out);
        while (n > 0) {
            if (_left == 0) {
                header();
                if (_left == 0) continue;
            }
            size_t take = n < _left ? n : _left;
            int got = _xls.read(reinterpret_cast<char*>(p), static_cast<int>(take));
            if (got < static_cast<int>(take)) throw zverror("SST size is incorrect");
            p += take;
            n -= take;
            _left -= static_cast<unsigned>(take);
        }
    }
    uint8_t u8() {
        uint8_t v = 0;
        bytes(&v, 1);
        return v;
    }
    uint16_t u16() {
        uint8_t b[2];
        bytes(b, 2);
        return le::get16(b);
    }
    uint32_t u32() {
        uint8_t b[4];
        bytes(b, 4);
        return le::get32(b);
    }
    unsigned& left() { return _left; }

private:
    XlsStream& _xls;
    unsigned& _left;
};

template <class T>
ExtString<T> readExtString(XlsStream& xls, unsigned& left, MemPool* pool) {
    ContinuedReader in(xls, left);
    ExtString<T> s;
    uint16_t count = in.u16();
    s.flags = in.u8();
    uint16_t runs = (s.flags & kRichText) ? in.u16() : 0;
    uint32_t phonetic = (s.flags & kPhonetic) ? in.u32() : 0;
    if (s.flags & (kRichText | kPhonetic)) {
        s.format = new ExtStringFormat();
        pool->addPointer(s.format);
    }
    wchar_t* text = pool->allocW(count + 1u);
    unsigned form = s.flags & kHighByte;
    size_t have = 0;
    uint8_t piece[8224];
    while (have < count) {
        // A piece of characters that starts a CONTINUE repeats the flag byte; the form may change.
        if (left == 0) {
            in.header();
            if (left == 0) continue;
            form = in.u8() & kHighByte;
            if (left == 0) continue;
        }
        size_t want = (count - have) * (form ? 2 : 1);
        size_t take = want < left ? want : left;
        if (take > sizeof piece) take = form ? sizeof piece - (sizeof piece & 1) : sizeof piece;
        if (form && (take & 1)) throw zverror("error in XLUnicodeString record #2");
        in.bytes(piece, take);
        if (form) {
            for (size_t i = 0; i < take; i += 2) text[have++] = static_cast<wchar_t>(le::get16(piece + i));
        } else {
            for (size_t i = 0; i < take; ++i) text[have++] = static_cast<wchar_t>(piece[i]);
        }
    }
    text[count] = 0;
    s.text = text;
    for (uint16_t i = 0; i < runs; ++i) {
        uint16_t ich = in.u16();
        uint16_t ifnt = in.u16();
        s.format->runs.emplace_back(ich, ifnt);
    }
    if (phonetic) {
        if (phonetic > xls.fileSize()) throw zverror("SST size is incorrect");
        s.format->phonetic = new ExtStringPhonetic();
        pool->addPointer(s.format->phonetic);
        s.format->phonetic->size = static_cast<int32_t>(phonetic);
        s.format->phonetic->bytes = reinterpret_cast<unsigned char*>(pool->allocA(phonetic));
        in.bytes(s.format->phonetic->bytes, phonetic);
    }
    return s;
}

// Writing with a running byte budget; each piece's size is patched when the table is done.
class PieceWriter {
public:
    PieceWriter(XlsStream& xls, unsigned& left, std::vector<std::pair<uint32_t, uint16_t>>& pieces)
        : _xls(xls), _left(left), _pieces(pieces) {}
    void open(uint16_t initial) {
        _xls.writeInt16(0x003C);
        _pieces.emplace_back(_xls.writePos(), initial);
        _xls.writeInt16(initial);
    }
    void put(const void* data, size_t n) {
        _xls.write(static_cast<const char*>(data), static_cast<int>(n));
        _pieces.back().second = static_cast<uint16_t>(_pieces.back().second + n);
    }
    void u8(uint8_t v) { put(&v, 1); }
    void u16(uint16_t v) {
        uint8_t b[2];
        le::put16(b, v);
        put(b, 2);
    }
    void u32(uint32_t v) {
        uint8_t b[4];
        le::put32(b, v);
        put(b, 4);
    }

private:
    XlsStream& _xls;
    unsigned& _left;
    std::vector<std::pair<uint32_t, uint16_t>>& _pieces;
};

template <class T>
void writeExtString(XlsStream& xls, const ExtString<T>& s, unsigned& left,
                    std::vector<std::pair<uint32_t, uint16_t>>& pieces, std::vector<uint8_t>& scratch) {
    PieceWriter out(xls, left, pieces);
    // A string's head never starts in the last 9 bytes of a record.
    if (left <= 9) {
        out.open(0);
        left = 8224;
    }
    std::wstring units = s.text ? std::wstring(s.text) : std::wstring();
    // Text read in 8-bit pieces stays 8-bit, unless a character needs the 16-bit form.
    uint8_t form = s.flags & kHighByte;
    for (wchar_t c : units)
        if (static_cast<uint32_t>(c) > 0xFF) form = kHighByte;
    if (form) units = RecordWriter::utf16Units(units);
    bool rich = (s.flags & kRichText) && s.format;
    bool phonetic = (s.flags & kPhonetic) && s.format && s.format->phonetic;
    uint8_t flags = static_cast<uint8_t>(form | (rich ? kRichText : 0) | (phonetic ? kPhonetic : 0));
    out.u16(static_cast<uint16_t>(units.size()));
    out.u8(flags);
    left -= 3;
    if (rich) {
        out.u16(static_cast<uint16_t>(s.format->runs.size()));
        left -= 2;
    }
    if (phonetic) {
        out.u32(static_cast<uint32_t>(s.format->phonetic->size));
        left -= 4;
    }
    bool wide = flags & kHighByte;
    scratch.clear();
    for (wchar_t c : units) {
        scratch.push_back(static_cast<uint8_t>(c));
        if (wide) scratch.push_back(static_cast<uint8_t>(static_cast<uint32_t>(c) >> 8));
    }
    size_t remaining = scratch.size(), at = 0;
    if (remaining <= left) {
        out.put(scratch.data(), remaining);
        left -= static_cast<unsigned>(remaining);
    } else {
        if (left & 1) left -= 1;  // a 16-bit character is never split
        bool first = true;
        while (remaining > 0) {
            if (!(first && left != 0)) {
                out.open(1);
                uint8_t form = flags & kHighByte;
                xls.write(reinterpret_cast<const char*>(&form), 1);
                left = 8222;
            }
            first = false;
            size_t n = remaining < left ? remaining : left;
            out.put(scratch.data() + at, n);
            at += n;
            remaining -= n;
            left -= static_cast<unsigned>(n);
        }
    }
    if (rich) {
        for (const auto& run : s.format->runs) {
            if (left < 4) {
                out.open(0);
                left = 8224;
            }
            out.u16(run.first);
            out.u16(run.second);
            left -= 4;
        }
    }
    if (phonetic) {
        size_t rest = static_cast<size_t>(s.format->phonetic->size), done = 0;
        bool first = true;
        while (rest > 0) {
            if (!first || left == 0) {
                out.open(0);
                left = 8224;
            }
            first = false;
            size_t n = rest < left ? rest : left;
            out.put(s.format->phonetic->bytes + done, n);
            done += n;
            rest -= n;
            left -= static_cast<unsigned>(n);
        }
    }
}

}  // namespace

template <class T>
void SST<T>::read(XlsStream& xls, uint16_t size, MemPool* pool) {
    if (size < 8) throw zverror("SST size is incorrect");
    uint32_t total = 0, unique = 0;
    xls.readInt32(&total);
    xls.readInt32(&unique);
    cstTotal = total;
    cstUnique = unique;
    unsigned left = size - 8u;
    for (uint32_t i = 0; i < unique; ++i) {
        // Counts that promise more strings than the table holds end at the table's end.
        if (left == 0 && (xls.eof() || xls.peekInt16() != rt::Continue)) break;
        insertLoaded(readExtString<T>(xls, left, pool));
    }
    if (left > 0) {
        std::vector<char> rest(left);
        xls.read(rest.data(), static_cast<int>(left));
    }
}

template <class T>
void SST<T>::write(XlsStream& xls) {
    cstUnique = count();
    xls.writeInt16(0x00FC);
    std::vector<std::pair<uint32_t, uint16_t>> pieces;
    pieces.emplace_back(xls.writePos(), 8);
    xls.writeInt16(8);
    xls.writeInt32(cstTotal);
    xls.writeInt32(cstUnique);
    unsigned left = 8216;
    std::vector<uint8_t> scratch;
    for (unsigned i = 0; i < count(); ++i) writeExtString<T>(xls, _map.extract(i), left, pieces, scratch);
    for (const auto& piece : pieces) xls.patchInt16(piece.first, piece.second);
}

template void SST<char>::read(XlsStream&, uint16_t, MemPool*);
template void SST<wchar_t>::read(XlsStream&, uint16_t, MemPool*);
template void SST<char>::write(XlsStream&);
template void SST<wchar_t>::write(XlsStream&);

}  // namespace zelvar
