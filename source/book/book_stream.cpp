// The workbook globals on file: reading every record into its member, slot or the list of
// unknown records, and writing them back in the writer's fixed order.
#include <iconv.h>

#include <algorithm>
#include <sstream>

#include "book/book_impl.h"
#include "book/font_impl.h"
#include "book/format_impl.h"
#include "book/sheet_impl.h"

namespace zelvar {

namespace {

// The external sheet table (an ExternSheet record) of a SupBook block, at its position in the
// block, or the block's size when it has none.
template <class T>
size_t externSheetAt(const std::vector<Biff<T>>& block) {
    for (size_t r = 0; r < block.size(); ++r)
        if (block[r].id == 23) return r;
    return block.size();
}

// A long table goes on in CONTINUE records; its entries may be cut anywhere between them. The
// whole table is their payloads joined.
template <class T>
std::vector<uint8_t> joinedTable(const std::vector<Biff<T>>& block, size_t at) {
    std::vector<uint8_t> table = block[at].payload;
    for (size_t r = at + 1; r < block.size() && block[r].id == 60; ++r)
        table.insert(table.end(), block[r].payload.begin(), block[r].payload.end());
    return table;
}

// Puts the joined table back. A table of the same length keeps the pieces the file had; any other
// is cut anew: the count and as many entries as fit into the first record, then CONTINUEs of whole
// entries.
template <class T>
void storeTable(std::vector<Biff<T>>& block, size_t at, const std::vector<uint8_t>& table) {
    size_t end = at + 1;
    size_t length = block[at].payload.size();
    while (end < block.size() && block[end].id == 60) length += block[end++].payload.size();
    if (length == table.size()) {
        size_t from = 0;
        for (size_t r = at; r < end; ++r) {
            std::copy(table.begin() + static_cast<long>(from),
                      table.begin() + static_cast<long>(from + block[r].payload.size()), block[r].payload.begin());
            from += block[r].payload.size();
        }
        return;
    }
    std::vector<Biff<T>> pieces;
    const size_t entriesPerRecord = 8224 / 6;
    size_t first = std::min(table.size(), 2 + 6 * entriesPerRecord);
    pieces.emplace_back(23);
    pieces.back().payload.assign(table.begin(), table.begin() + static_cast<long>(first));
    for (size_t from = first; from < table.size(); from += 6 * entriesPerRecord) {
        size_t to = std::min(table.size(), from + 6 * entriesPerRecord);
        pieces.emplace_back(60);
        pieces.back().payload.assign(table.begin() + static_cast<long>(from), table.begin() + static_cast<long>(to));
    }
    block.erase(block.begin() + static_cast<long>(at), block.begin() + static_cast<long>(end));
    block.insert(block.begin() + static_cast<long>(at), pieces.begin(), pieces.end());
}

}  // namespace

// Text of old files is 8-bit in the book's code page; it was widened byte by byte.
template <class T>
void BookImplT<T>::decodeCodePage(std::wstring& text) const {
    if (_codePage == 1200 || text.empty()) return;
    std::string bytes;
    for (wchar_t c : text) {
        if (static_cast<uint32_t>(c) > 0xFF) return;
        bytes.push_back(static_cast<char>(c));
    }
    std::string name = _codePage == 32769 ? "CP1252" : _codePage == 10000 ? "MACINTOSH" : "CP" + std::to_string(_codePage);
    iconv_t cd = iconv_open("WCHAR_T", name.c_str());
    if (cd == reinterpret_cast<iconv_t>(-1)) return;
    std::wstring out(bytes.size() * 2 + 4, L'\0');
    char* in = &bytes[0];
    size_t inLeft = bytes.size();
    char* outPtr = reinterpret_cast<char*>(&out[0]);
    size_t outLeft = out.size() * sizeof(wchar_t);
    size_t done = iconv(cd, &in, &inLeft, &outPtr, &outLeft);
    iconv_close(cd);
    if (done == static_cast<size_t>(-1)) return;
    out.resize(out.size() - outLeft / sizeof(wchar_t));
    text = out;
}

// The external sheet table lives in the first block that carries one.
template <class T>
std::wstring BookImplT<T>::referenceName(uint16_t ixti) const {
    for (const auto& block : _supBookBlocks) {
        size_t at = externSheetAt(block);
        if (at == block.size()) continue;
        std::vector<uint8_t> table = joinedTable(block, at);
        if (table.size() < 2) continue;
        size_t count = table[0] | table[1] << 8;
        if (ixti >= count || 2 + 6u * (ixti + 1u) > table.size()) return L"#REF!";
        const uint8_t* xti = table.data() + 2 + 6u * ixti;
        int16_t first = static_cast<int16_t>(xti[2] | xti[3] << 8);
        int16_t last = static_cast<int16_t>(xti[4] | xti[5] << 8);
        int sheets = static_cast<int>(_sheets.size());
        if (first < 0 || first >= sheets || last < 0 || last >= sheets) return L"#REF!";
        if (first == last) return GetFormula::quote(_sheets[first]->nameRef()) + L"!";
        return GetFormula::quote(_sheets[first]->nameRef() + L":" + _sheets[last]->nameRef()) + L"!";
    }
    return std::wstring();
}

template <class T>
void BookImplT<T>::getIndexesByName(const std::wstring& quoted, int& first, int& last) const {
    first = last = -1;
    std::wstring name = quoted;
    if (name.size() >= 2 && name.front() == L'\'' && name.back() == L'\'') {
        name = name.substr(1, name.size() - 2);
        for (size_t at = name.find(L"''"); at != std::wstring::npos; at = name.find(L"''", at + 1)) name.erase(at, 1);
    }
    auto find = [&](const std::wstring& wanted) {
        for (size_t i = 0; i < _sheets.size(); ++i)
            if (sicmp(_sheets[i]->nameRef(), wanted)) return static_cast<int>(i);
        return -1;
    };
    size_t colon = name.find(L':');
    if (colon != std::wstring::npos) {
        first = find(name.substr(0, colon));
        last = find(name.substr(colon + 1));
    }
    if (first < 0 || last < 0) first = last = find(name);
    if (first < 0) throw zverror("sheet is not found");
}

// The XTI of a sheet range in the table of this book's own SupBook: found, or appended. The table
// (an ExternSheet record) stands after the last SupBook block.
template <class T>
uint16_t BookImplT<T>::makeXti(const std::wstring& sheet) {
    int first = -1, lastTab = -1;
    getIndexesByName(sheet, first, lastTab);
    size_t self = _supBookBlocks.size();
    for (size_t i = 0; i < _supBookBlocks.size(); ++i) {
        const auto& head = _supBookBlocks[i].front();
        if (head.id == 430 && head.payload.size() == 4 && head.payload[2] == 1 && head.payload[3] == 4) {
            self = i;
            break;
        }
    }
    if (self == _supBookBlocks.size()) {
        Biff<T> supBook(430);
        uint16_t tabs = static_cast<uint16_t>(_sheets.size());
        supBook.payload = {static_cast<uint8_t>(tabs), static_cast<uint8_t>(tabs >> 8), 1, 4};
        _supBookBlocks.push_back({supBook});
    }
    // The ExternSheet record, with its continuations, must stand at the end of the last block.
    std::vector<Biff<T>>& last = _supBookBlocks.back();
    size_t at = externSheetAt(last);
    if (at == last.size()) {
        for (size_t b = 0; b + 1 < _supBookBlocks.size(); ++b) {
            auto& block = _supBookBlocks[b];
            size_t r = externSheetAt(block);
            if (r == block.size()) continue;
            size_t end = r + 1;
            while (end < block.size() && block[end].id == 60) ++end;
            at = last.size();
            last.insert(last.end(), block.begin() + static_cast<long>(r), block.begin() + static_cast<long>(end));
            block.erase(block.begin() + static_cast<long>(r), block.begin() + static_cast<long>(end));
            break;
        }
    }
    if (at == last.size()) {
        last.emplace_back(23);
        last.back().payload = {0, 0};
    }
    std::vector<uint8_t> table = joinedTable(last, at);
    if (table.size() < 2) table = {0, 0};
    size_t count = table[0] | table[1] << 8;
    count = std::min(count, (table.size() - 2) / 6);
    uint16_t found = static_cast<uint16_t>(count);
    for (size_t i = 0; i < count; ++i) {
        const uint8_t* x = table.data() + 2 + 6 * i;
        if ((x[0] | x[1] << 8) == static_cast<int>(self) && static_cast<int16_t>(x[2] | x[3] << 8) == first &&
            static_cast<int16_t>(x[4] | x[5] << 8) == lastTab) {
            found = static_cast<uint16_t>(i);
            break;
        }
    }
    if (found == count) {
        // The count field holds at most 65535 entries.
        if (count >= 65535) throw zverror("error in record ExternSheet");
        table.resize(2 + 6 * count);
        for (unsigned v : {static_cast<unsigned>(self), static_cast<unsigned>(first), static_cast<unsigned>(lastTab)}) {
            table.push_back(static_cast<uint8_t>(v));
            table.push_back(static_cast<uint8_t>(v >> 8));
        }
        ++count;
        table[0] = static_cast<uint8_t>(count);
        table[1] = static_cast<uint8_t>(count >> 8);
        storeTable(last, at, table);
    }
    return found;
}

// After a sheet is inserted at or removed from index, names and the external sheet table of this
// book's own SupBook follow the sheets they meant.
template <class T>
void BookImplT<T>::followSheetList(int index, bool inserted) {
    auto u16 = [](const std::vector<uint8_t>& p, size_t at) { return static_cast<int>(p[at] | p[at + 1] << 8); };
    auto set16 = [](std::vector<uint8_t>& p, size_t at, int v) {
        p[at] = static_cast<uint8_t>(v);
        p[at + 1] = static_cast<uint8_t>(v >> 8);
    };
    // Names that belong to a sheet carry its tab + 1.
    int noted = -1;
    for (size_t i = 0; i < _lbls.size(); ++i) {
        if (_lbls[i].empty() || _lbls[i].front().payload.size() < 10) continue;
        std::vector<uint8_t>& p = _lbls[i].front().payload;
        int itab = u16(p, 8);
        if (inserted) {
            if (itab >= index + 1) set16(p, 8, itab + 1);
        } else if (itab == index + 1) {
            noted = static_cast<int>(i);
        } else if (itab > index + 1) {
            set16(p, 8, itab - 1);
        }
    }
    if (noted >= 0) _lbls.erase(_lbls.begin() + noted);
    int self = -1;
    for (size_t i = 0; i < _supBookBlocks.size() && self < 0; ++i) {
        auto& head = _supBookBlocks[i].front();
        if (head.id == 430 && head.payload.size() == 4 && head.payload[2] == 1 && head.payload[3] == 4) {
            self = static_cast<int>(i);
            set16(head.payload, 0, static_cast<int>(_sheets.size()));
        }
    }
    if (self < 0) return;
    for (auto& block : _supBookBlocks) {
        size_t table = externSheetAt(block);
        if (table == block.size()) continue;
        std::vector<uint8_t> entries = joinedTable(block, table);
        if (entries.size() < 2) continue;
        size_t count = std::min<size_t>(u16(entries, 0), (entries.size() - 2) / 6);
        for (size_t k = 0; k < count; ++k) {
            size_t at = 2 + 6 * k;
            if (u16(entries, at) != self) continue;
            int first = static_cast<int16_t>(u16(entries, at + 2));
            int last = static_cast<int16_t>(u16(entries, at + 4));
            if (inserted) {
                if (first >= index) {
                    ++first;
                    ++last;
                } else if (last >= index) {
                    ++last;
                }
            } else {
                if (index >= first && index <= last) first = last = -1;
                if (first > index) --first;
                if (last > index) --last;
            }
            set16(entries, at + 2, first);
            set16(entries, at + 4, last);
        }
        storeTable(block, table, entries);
    }
}

template <class T>
bool BookImplT<T>::xtiCoversTab(uint16_t ixti, int tab) const {
    int self = -1;
    for (size_t i = 0; i < _supBookBlocks.size() && self < 0; ++i) {
        const auto& head = _supBookBlocks[i].front();
        if (head.id == 430 && head.payload.size() == 4 && head.payload[2] == 1 && head.payload[3] == 4)
            self = static_cast<int>(i);
    }
    if (self < 0) return false;
    for (const auto& block : _supBookBlocks) {
        size_t at = externSheetAt(block);
        if (at == block.size()) continue;
        std::vector<uint8_t> table = joinedTable(block, at);
        if (table.size() < 2) continue;
        size_t count = std::min<size_t>(table[0] | table[1] << 8, (table.size() - 2) / 6);
        if (ixti >= count) return false;
        const uint8_t* x = table.data() + 2 + 6 * ixti;
        int first = static_cast<int16_t>(x[2] | x[3] << 8), last = static_cast<int16_t>(x[4] | x[5] << 8);
        return (x[0] | x[1] << 8) == self && tab >= first && tab <= last;
    }
    return false;
}

template <class T>
std::wstring BookImplT<T>::definedName(uint32_t index) const {
    static const wchar_t* builtIn[] = {L"Consolidate_Area", L"Auto_Open", L"Auto_Close", L"Extract", L"Database",
                                       L"Criteria", L"Print_Area", L"Print_Titles", L"Recorder", L"Data_Form",
                                       L"Auto_Activate", L"Auto_Deactivate", L"Sheet_Title", L"_FilterDatabase"};
    if (index == 0 || index > _lbls.size() || _lbls[index - 1].empty()) return L"?";
    const std::vector<uint8_t>& p = _lbls[index - 1].front().payload;
    if (p.size() < 15) return L"?";
    uint16_t grbit = static_cast<uint16_t>(p[0] | p[1] << 8);
    size_t cch = p[3];
    std::wstring name;
    try {
        RecordReader in(p, "Lbl");
        in.skip(14);
        name = in.chars(cch, biff5() ? 0 : in.u8());
    } catch (const zverror&) {
        return L"?";
    }
    if ((grbit & 0x20) && name.size() == 1 && static_cast<unsigned>(name[0]) < 14) return builtIn[name[0]];
    return name;
}

template <class T>
void BookImplT<T>::readGlobal(uint16_t type, uint16_t size) {
    XlsStream& xls = _xls;
    switch (type) {
        case 14: _calcPrecision = readU16Record(xls, size, "CalcPrecision"); break;
        case 18: {
            // Writers differ in this record's length; its first word is the flag.
            RecordReader in(xls, size, "Protect");
            if (in.left() >= 2) _protect = in.u16();
            break;
        }
        case 19: _password = readU16Record(xls, size, "Password"); break;
        case 24: {
            std::vector<Biff<T>> name;
            readRawWithContinues(xls, type, size, name);
            _lbls.push_back(std::move(name));
            break;
        }
        case 25: _winProtect = readU16Record(xls, size, "WinProtect"); break;
        case 34: _date1904 = readU16Record(xls, size, "Date1904"); break;
        case 47: throw zverror("workbook is encrypted");
        case 49: {
            RecordReader in(xls, size, "Font");
            if (size < 14) in.fail();
            std::unique_ptr<FontImplT<T>> font(new FontImplT<T>(this));
            font->dyHeight = in.u16();
            font->grbit = in.u16();
            font->icv = in.u16();
            font->bls = in.u16();
            font->sss = in.u16();
            font->uls = in.u8();
            font->bFamily = in.u8();
            font->bCharSet = in.u8();
            font->reserved = in.u8();
            font->fontName = in.left() ? in.string(true, biff5()) : std::wstring();
            if (biff5()) decodeCodePage(font->fontName);
            _fonts.push_back(font.release());
            break;
        }
        case 61: {
            RecordReader in(xls, size, "Window1");
            if (size != 18) in.fail();
            _window1.xWn = in.u16();
            _window1.yWn = in.u16();
            _window1.dxWn = in.u16();
            _window1.dyWn = in.u16();
            _window1.flags = in.u16();
            _window1.itabCur = in.u16();
            _window1.itabFirst = in.u16();
            _window1.ctabSel = in.u16();
            _window1.wTabRatio = in.u16();
            break;
        }
        case 64: _backup = readU16Record(xls, size, "Backup"); break;
        case 66: _codePage = readU16Record(xls, size, "CodePage"); break;
        case 92: {
            RecordReader in(xls, size, "WriteAccess");
            _writeAccess.assign(in.at(), in.at() + in.size());
            break;
        }
        case 133: {
            RecordReader in(xls, size, "BoundSheet8");
            if (size < 8 && !(biff5() && size >= 7)) in.fail();
            BoundSheet bound;
            bound.lbPlyPos = in.u32();
            bound.hsState = in.u8();
            bound.dt = in.u8();
            _boundSheets.push_back(bound);
            _boundSheetNames.push_back(in.string(true, biff5()));
            if (biff5()) decodeCodePage(_boundSheetNames.back());
            break;
        }
        case 140: {
            RecordReader in(xls, size, "Country");
            if (size != 4) in.fail();
            _country[0] = in.u16();
            _country[1] = in.u16();
            break;
        }
        case 141: _hideObj = readU16Record(xls, size, "HideObj"); break;
        case 146: {
            RecordReader in(xls, size, "Palette");
            int16_t ccv = static_cast<int16_t>(in.u16());
            if (ccv < 0 || size != 2 + 4 * ccv) in.fail();
            _palette.ccv = ccv;
            _palette.colors.assign(static_cast<size_t>(ccv), LongRGB());
            for (auto& c : _palette.colors) {
                c.red = in.u8();
                c.green = in.u8();
                c.blue = in.u8();
                c.reserved = in.u8();
            }
            _paletteUsed = true;
            break;
        }
        case 156: _builtInFnGroupCount = readU16Record(xls, size, "BuiltInFnGroupCount"); break;
        case 193: {
            RecordReader in(xls, size, "Mms");
            if (size != 0 && size != 2) in.fail();
            if (size == 2) {
                _mms[0] = in.u8();
                _mms[1] = in.u8();
            }
            break;
        }
        case 211: _obProj.read(xls, size); break;
        case 442: _codeName.read(xls, size); break;
        case 445: _obNoMacros.read(xls, size); break;
        case 2172: _xfCRC.read(xls, size); break;
        case 2188: _compat12.read(xls, size); break;
        case 2190: _tableStyles.read(xls, size); break;
        case 2198: _theme.read(xls, size); break;
        case 2202: _mtrSettings.read(xls, size); break;
        case 2203: _compressPictures.read(xls, size); break;
        case 2211: _forceFullCalculation.read(xls, size); break;
        case 4188: _clrtClient.read(xls, size); break;
        case 218: _bookBool = readU16Record(xls, size, "BookBool"); break;
        case 224: {
            RecordReader in(xls, size, "XF");
            std::unique_ptr<FormatImplT<T>> format(new FormatImplT<T>(this));
            // A shorter XF stops at any field boundary.
            auto more = [&] { return in.pos() < in.size(); };
            format->ifnt = in.u16();
            if (more()) format->ifmt = in.u16();
            if (more()) format->flags = in.u16();
            if (biff5()) {
                if (more()) {
                    uint8_t a = in.u8();
                    uint8_t b = in.u8();
                    uint32_t c = in.u32();
                    uint32_t d = in.u32();
                    format->setAlignH(static_cast<AlignH>(a & 7));
                    format->setWrap((a >> 3) & 1);
                    format->setAlignV(static_cast<AlignV>((a >> 4) & 7));
                    const int rotations[4] = {0, 255, 90, 180};
                    format->setRotation(rotations[b & 3]);
                    format->setPatternForegroundColor(static_cast<Color>(c & 0x7F));
                    format->setPatternBackgroundColor(static_cast<Color>((c >> 7) & 0x7F));
                    format->setFillPattern(static_cast<FillPattern>((c >> 16) & 0x3F));
                    format->setBorderBottom(static_cast<BorderStyle>((c >> 22) & 7));
                    format->setBorderBottomColor(static_cast<Color>(c >> 31));
                    format->setBorderTop(static_cast<BorderStyle>(d & 7));
                    format->setBorderLeft(static_cast<BorderStyle>((d >> 3) & 7));
                    format->setBorderRight(static_cast<BorderStyle>((d >> 6) & 7));
                    format->setBorderTopColor(static_cast<Color>((d >> 9) & 0x7F));
                    format->setBorderLeftColor(static_cast<Color>((d >> 16) & 0x7F));
                    format->setBorderRightColor(static_cast<Color>((d >> 23) & 0x7F));
                }
            } else {
                if (more()) format->align = in.u32();
                if (more()) format->border = in.u32();
                if (more()) format->colour = in.u32();
                if (more()) format->fill = in.u16();
            }
            in.done();
            _formats.push_back(format.release());
            break;
        }
        case 225: {
            RecordReader in(xls, size, "InterfaceHdr");
            if (size != 0 && size != 2) in.fail();
            if (size == 2) _interfaceHdr = in.u16();
            break;
        }
        case 226: {
            RecordReader in(xls, size, "InterfaceEnd");
            in.done();
            break;
        }
        case 235:
            // Writers split a large drawing group over several MsoDrawingGroup records, each
            // with its own CONTINUEs; together they are the one drawing group of the book.
            readRawWithContinues(xls, type, size, _drawingGroup);
            break;
        case 252: _sst.read(xls, size, &_pool); break;
        case 255: {
            RecordReader skip(xls, size, "ExtSST");
            break;
        }
        case 317: {
            RecordReader in(xls, size, "RRTabId");
            if (size & 1) in.fail();
            if (size >= 2) {
                _rrTabId.resize(size / 2);
                for (auto& id : _rrTabId) id = in.u16();
            }
            break;
        }
        case 352: _usesELFs = readU16Record(xls, size, "UsesELFs"); break;
        case 353: _dsf = readU16Record(xls, size, "DSF"); break;
        case 430: {
            std::vector<Biff<T>> block;
            readRaw(xls, type, size, block);
            uint64_t sum = size;
            while (!xls.eof()) {
                uint16_t next = xls.peekInt16();
                if (next != 35 && next != 89 && next != 90 && next != 23 && next != 60) break;
                uint16_t nextType = 0, nextSize = 0;
                xls.readInt16(&nextType);
                xls.readInt16(&nextSize);
                sum += nextSize + 4u;
                if (sum > xls.fileSize()) throw zverror("SupBookBlock: file is corrupt");
                readRaw(xls, nextType, nextSize, block);
            }
            _supBookBlocks.push_back(std::move(block));
            break;
        }
        case 431: _prot4Rev = readU16Record(xls, size, "Prot4Rev"); break;
        case 439: _refreshAll = readU16Record(xls, size, "RefreshAll"); break;
        case 444: _prot4RevPass = readU16Record(xls, size, "Prot4RevPass"); break;
        case 448: {
            RecordReader in(xls, size, "Excel9File");
            in.done();
            break;
        }
        case 449: {
            RecordReader in(xls, size, "RecalcId");
            if (size != 8) in.fail();
            _recalcIdRt = in.u16();
            _recalcIdReserved = in.u16();
            _recalcIdBuild = in.u32();
            break;
        }
        case 659: {
            RecordReader in(xls, size, "Style");
            StyleBlock block;
            block.style.ixfe = static_cast<int16_t>(in.u16());
            if (block.style.builtIn()) {
                if (in.left()) block.style.istyBuiltIn = in.u8();
                if (in.left()) block.style.iLevel = in.u8();
            } else if (in.left()) {
                block.style.name = in.stringOrBareCount(biff5(), biff5());
                if (biff5()) decodeCodePage(block.style.name);
            }
            in.done();
            if (!xls.eof() && xls.peekInt16() == 0x0892) {
                uint16_t extType = 0, extSize = 0;
                xls.readInt16(&extType);
                xls.readInt16(&extSize);
                RecordReader ext(xls, extSize, "StyleExt");
                block.styleExt.assign(ext.at(), ext.at() + ext.size());
                block.hasStyleExt = true;
            }
            _styles.push_back(std::move(block));
            break;
        }
        case 1054: {
            RecordReader in(xls, size, "Format");
            if (size < (biff5() ? 3 : 5)) in.fail();
            uint16_t id = in.u16();
            // The text is what the record holds, whatever its count says.
            _customNumFormats.emplace_back(id, in.stringWithin(biff5(), biff5()));
            if (biff5()) decodeCodePage(_customNumFormats.back().second);
            break;
        }
        case 2147: {
            RecordReader skip(xls, size, "BookExt");
            break;
        }
        case 2173: readRaw(xls, type, size, _xfExts); break;
        default: readRaw(xls, type, size, _unknownRecords); break;
    }
}

// Tolerant of short BOF records: any size that ends on a field boundary is good.
Bof readBof(XlsStream& xls, uint16_t size) {
    RecordReader in(xls, size, "Bof");
    if (size > 16 || !(size == 2 || size == 4 || size == 6 || size == 8 || size == 12 || size == 16)) in.fail();
    Bof bof;
    bof.vers = in.u16();
    if (in.left()) bof.dt = in.u16();
    if (in.left()) bof.rupBuild = in.u16();
    if (in.left()) bof.rupYear = in.u16();
    if (in.left()) bof.bfh = in.u32();
    if (in.left()) bof.sfo = in.u32();
    return bof;
}

void writeBof(XlsStream& xls, const Bof& bof) {
    RecordWriter w;
    w.u16(bof.vers);
    w.u16(bof.dt);
    w.u16(bof.rupBuild);
    w.u16(bof.rupYear);
    w.u32(bof.bfh);
    w.u32(bof.sfo);
    w.write(xls, 2057);
}

template <class T>
void BookImplT<T>::readStream() {
    _xls.calcFileSize();
    unsigned counter = 0;
    _xls.readHeader(counter);
    _boundSheetNames.clear();
    bool sawBof = false;
    while (!_xls.eof()) {
        uint16_t type = 0, size = 0;
        if (_xls.readInt16(&type) < 2) break;
        if (type == 0) throw zverror("read error: record id can't be 0");
        if (_xls.readInt16(&size) < 2) throw zverror("read error: the stream ends inside a record");
        if (type == 10) break;
        if (type == 2057) {
            if (sawBof) throw zverror("read error: unexpected BOF record");
            _bof = readBof(_xls, size);
            if (_bof.vers != 1280 && _bof.vers != 1536) throw zverror("This file format isn't supported");
            sawBof = true;
            continue;
        }
        if (!sawBof) throw zverror("This file format isn't supported");
        readGlobal(type, size);
    }
    if (!sawBof) throw zverror("This file format isn't supported");
    if (!_drawingGroup.empty()) {
        std::vector<uint8_t> art;
        for (const auto& record : _drawingGroup) art.insert(art.end(), record.payload.begin(), record.payload.end());
        _drawing.load(art);
    }
    _unknownRecords.shrink_to_fit();
    for (size_t i = 0; i < _boundSheets.size(); ++i) {
        std::unique_ptr<SheetImplT<T>> sheet(new SheetImplT<T>(this));
        sheet->setWideName(_boundSheetNames[i]);
        sheet->setRefA1(!_refR1C1);
        // The substream ends where the next one starts, or with the stream.
        uint64_t start = _xls.bytesRead(), end = _xls.size();
        if (i + 1 < _boundSheets.size() && _boundSheets[i + 1].lbPlyPos > start && _boundSheets[i + 1].lbPlyPos < end)
            end = _boundSheets[i + 1].lbPlyPos;
        if (!_xls.eof()) sheet->read(_xls, end > start ? end - start : 0);
        _sheets.push_back(sheet.release());
    }
    _boundSheetNames.clear();
    _xls.readSections();
}

template <class T>
void BookImplT<T>::writeStream() {
    XlsStream& xls = _xls;
    xls.writeHeader();
    writeBof(xls, _bof);
    writeU16Record(xls, 225, _interfaceHdr);
    xls.write(193, 2);
    xls.write(reinterpret_cast<const char*>(_mms), 2);
    xls.write(226, 0);
    xls.write(92, reinterpret_cast<const char*>(_writeAccess.data()), static_cast<int>(_writeAccess.size()));
    writeU16Record(xls, 66, _codePage);
    writeU16Record(xls, 353, _dsf);
    {
        RecordWriter tabs;
        for (uint16_t id : _rrTabId) tabs.u16(id);
        tabs.write(xls, 317);
    }
    _obProj.writeIfPresent(xls);
    _obNoMacros.writeIfPresent(xls);
    _codeName.writeIfPresent(xls);
    writeU16Record(xls, 156, _builtInFnGroupCount);
    writeU16Record(xls, 25, _winProtect);
    writeU16Record(xls, 18, _protect);
    writeU16Record(xls, 19, _password);
    writeU16Record(xls, 431, _prot4Rev);
    writeU16Record(xls, 444, _prot4RevPass);
    {
        RecordWriter w;
        for (uint16_t v : {_window1.xWn, _window1.yWn, _window1.dxWn, _window1.dyWn, _window1.flags,
                           _window1.itabCur, _window1.itabFirst, _window1.ctabSel, _window1.wTabRatio})
            w.u16(v);
        w.write(xls, 61);
    }
    writeU16Record(xls, 64, _backup);
    writeU16Record(xls, 141, _hideObj);
    writeU16Record(xls, 34, _date1904);
    writeU16Record(xls, 14, _calcPrecision);
    writeU16Record(xls, 439, _refreshAll);
    writeU16Record(xls, 218, _bookBool);
    for (FontImplT<T>* font : _fonts) {
        RecordWriter w;
        w.u16(font->dyHeight);
        w.u16(font->grbit);
        w.u16(font->icv);
        w.u16(font->bls);
        w.u16(font->sss);
        w.u8(font->uls);
        w.u8(font->bFamily);
        w.u8(font->bCharSet);
        w.u8(font->reserved);
        if (!font->fontName.empty()) w.string16(font->fontName, true);
        w.write(xls, 49);
    }
    for (const auto& format : _customNumFormats) {
        RecordWriter w;
        w.u16(format.first);
        w.string16(format.second, false);
        w.write(xls, 1054);
    }
    for (FormatImplT<T>* format : _formats) {
        RecordWriter w;
        w.u16(format->ifnt);
        w.u16(format->ifmt);
        w.u16(format->flags);
        w.u32(format->align);
        w.u32(format->border);
        w.u32(format->colour);
        w.u16(format->fill);
        w.write(xls, 224);
    }
    _xfCRC.writeIfPresent(xls);
    for (const auto& ext : _xfExts) ext.write(xls);
    for (const StyleBlock& block : _styles) {
        RecordWriter w;
        w.u16(static_cast<uint16_t>(block.style.ixfe));
        if (block.style.builtIn()) {
            w.u8(block.style.istyBuiltIn);
            w.u8(block.style.iLevel);
        } else {
            w.string16(block.style.name, false);
        }
        w.write(xls, 659);
        if (block.hasStyleExt)
            xls.write(0x0892, reinterpret_cast<const char*>(block.styleExt.data()), static_cast<int>(block.styleExt.size()));
    }
    _tableStyles.writeIfPresent(xls);
    if (_paletteUsed) {
        RecordWriter w;
        w.u16(static_cast<uint16_t>(_palette.colors.size()));
        for (const auto& c : _palette.colors) {
            w.u8(c.red);
            w.u8(c.green);
            w.u8(c.blue);
            w.u8(c.reserved);
        }
        w.write(xls, 146);
    }
    _clrtClient.writeIfPresent(xls);
    writeU16Record(xls, 352, _usesELFs);
    std::vector<uint32_t> boundSheetPositions;
    for (size_t i = 0; i < _sheets.size(); ++i) {
        boundSheetPositions.push_back(xls.writePos());
        RecordWriter w;
        w.u32(_boundSheets[i].lbPlyPos);
        w.u8(_boundSheets[i].hsState);
        w.u8(_boundSheets[i].dt);
        if (!_sheets[i]->nameRef().empty()) w.string16(_sheets[i]->nameRef(), true);
        w.write(xls, 133);
    }
    _mtrSettings.writeIfPresent(xls);
    _forceFullCalculation.writeIfPresent(xls);
    xls.write(140, 4);
    xls.writeInt16(_country[0]);
    xls.writeInt16(_country[1]);
    for (const auto& block : _supBookBlocks)
        for (const auto& record : block) record.write(xls);
    for (const auto& name : _lbls)
        for (const auto& record : name) record.write(xls);
    if (_drawing.modified()) {
        // The group's bytes in one MsoDrawingGroup record and as many CONTINUE records as needed.
        std::vector<uint8_t> art = _drawing.bytes();
        for (size_t at = 0; at < art.size(); at += 8224) {
            size_t n = std::min<size_t>(8224, art.size() - at);
            xls.write(at == 0 ? 235 : 60, reinterpret_cast<const char*>(art.data() + at), static_cast<int>(n));
        }
    } else {
        for (const auto& record : _drawingGroup) record.write(xls);
    }
    xls.write(449, 8);
    xls.writeInt16(_recalcIdRt);
    xls.writeInt16(_recalcIdReserved);
    xls.writeInt32(_recalcIdBuild);
    _sst.write(xls);
    _theme.writeIfPresent(xls);
    _compressPictures.writeIfPresent(xls);
    _compat12.writeIfPresent(xls);
    for (const auto& record : _unknownRecords) record.write(xls);
    xls.write(10, 0);

    for (size_t i = 0; i < _sheets.size(); ++i) {
        uint32_t start = xls.writePos();
        _sheets[i]->write(xls);
        _boundSheets[i].lbPlyPos = start;
        xls.patchInt32(boundSheetPositions[i] + 4, start);
    }
    xls.close();
}

namespace {
// The stream and the bytes of one load or save are the caller's: none of them stays attached to
// the container once the operation is over, whichever way it ends.
struct Detach {
    XlsStream& xls;
    ~Detach() {
        xls.setStreamPtr(nullptr);
        xls.setSource(nullptr, 0);
        xls.setImageTarget(nullptr);
    }
};
}  // namespace

template <class T>
bool BookImplT<T>::loadFrom(std::iostream* stream, const char* data, size_t size) {
    _xls.reset(true);
    Detach detach{_xls};
    _xls.setStreamPtr(stream);
    if (!stream) _xls.setSource(data, size);
    readStream();
    return true;
}

template <class T>
void BookImplT<T>::saveTo(std::iostream* stream, std::string* image) {
    _xls.reset(false);
    Detach detach{_xls};
    _xls.setStreamPtr(stream);
    _xls.setImageTarget(image);
    for (SheetImplT<T>* sheet : _sheets) sheet->settleDimensions();
    writeStream();
}

#define ZELVAR_INSTANTIATE(T)                                                   \
    template void BookImplT<T>::readStream();                                   \
    template void BookImplT<T>::writeStream();                                  \
    template bool BookImplT<T>::loadFrom(std::iostream*, const char*, size_t);   \
    template void BookImplT<T>::decodeCodePage(std::wstring&) const;           \
    template std::wstring BookImplT<T>::referenceName(uint16_t) const;         \
    template std::wstring BookImplT<T>::definedName(uint32_t) const;           \
    template uint16_t BookImplT<T>::makeXti(const std::wstring&);               \
    template void BookImplT<T>::followSheetList(int, bool);                     \
    template bool BookImplT<T>::xtiCoversTab(uint16_t, int) const;              \
    template void BookImplT<T>::getIndexesByName(const std::wstring&, int&, int&) const; \
    template void BookImplT<T>::saveTo(std::iostream*, std::string*);
ZELVAR_INSTANTIATE(char)
ZELVAR_INSTANTIATE(wchar_t)
#undef ZELVAR_INSTANTIATE

}  // namespace zelvar
