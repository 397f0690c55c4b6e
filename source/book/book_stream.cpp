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

// The external sheet table names a range of this book's sheets; what lies outside them is #REF!.
template <class T>
std::wstring BookImplT<T>::referenceName(uint16_t ixti) const {
    XtiEntry xti;
    auto found = _externSheets.find(ixti, xti);
    if (found == ExternSheets<T>::Lookup::NoTable) return std::wstring();
    int sheets = static_cast<int>(_sheets.size());
    if (found == ExternSheets<T>::Lookup::NoEntry || xti.first < 0 || xti.first >= sheets || xti.last < 0 ||
        xti.last >= sheets)
        return L"#REF!";
    if (xti.first == xti.last) return GetFormula::quote(_sheets[xti.first]->nameRef()) + L"!";
    return GetFormula::quote(_sheets[xti.first]->nameRef() + L":" + _sheets[xti.last]->nameRef()) + L"!";
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

// The XTI of a sheet range in the table of this book's own SupBook: found, or appended.
template <class T>
uint16_t BookImplT<T>::makeXti(const std::wstring& sheet) {
    int first = -1, last = -1;
    getIndexesByName(sheet, first, last);
    return _externSheets.ownXti(first, last, _sheets.size());
}

// After a sheet is inserted at or removed from index, names and the external sheet table of this
// book's own SupBook follow the sheets they meant.
template <class T>
void BookImplT<T>::followSheetList(int index, bool inserted) {
    // Names that belong to a sheet carry its tab + 1.
    int noted = -1;
    for (size_t i = 0; i < _lbls.size(); ++i) {
        if (_lbls[i].empty() || _lbls[i].front().payload.size() < 10) continue;
        std::vector<uint8_t>& p = _lbls[i].front().payload;
        int itab = le::get16(&p[8]);
        if (inserted) {
            if (itab >= index + 1) le::put16(&p[8], static_cast<uint32_t>(itab + 1));
        } else if (itab == index + 1) {
            noted = static_cast<int>(i);
        } else if (itab > index + 1) {
            le::put16(&p[8], static_cast<uint32_t>(itab - 1));
        }
    }
    if (noted >= 0) _lbls.erase(_lbls.begin() + noted);
    _externSheets.followSheetList(index, inserted, _sheets.size());
}

template <class T>
bool BookImplT<T>::xtiCoversTab(uint16_t ixti, int tab) const {
    int own = _externSheets.ownSupBook();
    XtiEntry xti;
    return own >= 0 && _externSheets.find(ixti, xti) == ExternSheets<T>::Lookup::Found && xti.supBook == own &&
           tab >= xti.first && tab <= xti.last;
}

template <class T>
std::wstring BookImplT<T>::definedName(uint32_t index) const {
    static const wchar_t* builtIn[] = {L"Consolidate_Area", L"Auto_Open", L"Auto_Close", L"Extract", L"Database",
                                       L"Criteria", L"Print_Area", L"Print_Titles", L"Recorder", L"Data_Form",
                                       L"Auto_Activate", L"Auto_Deactivate", L"Sheet_Title", L"_FilterDatabase"};
    if (index == 0 || index > _lbls.size() || _lbls[index - 1].empty()) return L"?";
    const std::vector<uint8_t>& p = _lbls[index - 1].front().payload;
    if (p.size() < 15) return L"?";
    uint16_t grbit = le::get16(&p[0]);
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
        case rt::CalcPrecision: _calcPrecision = readU16Record(xls, size, "CalcPrecision"); break;
        case rt::Protect: {
            // Writers differ in this record's length; its first word is the flag.
            RecordReader in(xls, size, "Protect");
            if (in.left() >= 2) _protect = in.u16();
            break;
        }
        case rt::Password: _password = readU16Record(xls, size, "Password"); break;
        case rt::Lbl: {
            std::vector<Biff<T>> name;
            readRawWithContinues(xls, type, size, name);
            _lbls.push_back(std::move(name));
            break;
        }
        case rt::WinProtect: _winProtect = readU16Record(xls, size, "WinProtect"); break;
        case rt::Date1904: _date1904 = readU16Record(xls, size, "Date1904"); break;
        case rt::FilePass: throw zverror("workbook is encrypted");
        case rt::Font: {
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
        case rt::Window1: {
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
        case rt::Backup: _backup = readU16Record(xls, size, "Backup"); break;
        case rt::CodePage: _codePage = readU16Record(xls, size, "CodePage"); break;
        case rt::WriteAccess: {
            RecordReader in(xls, size, "WriteAccess");
            _writeAccess.assign(in.at(), in.at() + in.size());
            break;
        }
        case rt::BoundSheet8: {
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
        case rt::Country: {
            RecordReader in(xls, size, "Country");
            if (size != 4) in.fail();
            _country[0] = in.u16();
            _country[1] = in.u16();
            break;
        }
        case rt::HideObj: _hideObj = readU16Record(xls, size, "HideObj"); break;
        case rt::Palette: {
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
        case rt::BuiltInFnGroupCount: _builtInFnGroupCount = readU16Record(xls, size, "BuiltInFnGroupCount"); break;
        case rt::Mms: {
            RecordReader in(xls, size, "Mms");
            if (size != 0 && size != 2) in.fail();
            if (size == 2) {
                _mms[0] = in.u8();
                _mms[1] = in.u8();
            }
            break;
        }
        case rt::ObProj: _obProj.read(xls, size); break;
        case rt::CodeName: _codeName.read(xls, size); break;
        case rt::ObNoMacros: _obNoMacros.read(xls, size); break;
        case rt::XFCRC: _xfCRC.read(xls, size); break;
        case rt::Compat12: _compat12.read(xls, size); break;
        case rt::TableStyles: _tableStyles.read(xls, size); break;
        case rt::Theme: _theme.read(xls, size); break;
        case rt::MTRSettings: _mtrSettings.read(xls, size); break;
        case rt::CompressPictures: _compressPictures.read(xls, size); break;
        case rt::ForceFullCalculation: _forceFullCalculation.read(xls, size); break;
        case rt::ClrtClient: _clrtClient.read(xls, size); break;
        case rt::BookBool: _bookBool = readU16Record(xls, size, "BookBool"); break;
        case rt::XF: {
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
        case rt::InterfaceHdr: {
            RecordReader in(xls, size, "InterfaceHdr");
            if (size != 0 && size != 2) in.fail();
            if (size == 2) _interfaceHdr = in.u16();
            break;
        }
        case rt::InterfaceEnd: {
            RecordReader in(xls, size, "InterfaceEnd");
            in.done();
            break;
        }
        case rt::MsoDrawingGroup:
            // Writers split a large drawing group over several MsoDrawingGroup records, each
            // with its own CONTINUEs; together they are the one drawing group of the book.
            readRawWithContinues(xls, type, size, _drawingGroup);
            break;
        case rt::SST: _sst.read(xls, size, &_pool); break;
        case rt::ExtSST: {
            RecordReader skip(xls, size, "ExtSST");
            break;
        }
        case rt::RRTabId: {
            RecordReader in(xls, size, "RRTabId");
            if (size & 1) in.fail();
            if (size >= 2) {
                _rrTabId.resize(size / 2);
                for (auto& id : _rrTabId) id = in.u16();
            }
            break;
        }
        case rt::UsesELFs: _usesELFs = readU16Record(xls, size, "UsesELFs"); break;
        case rt::DSF: _dsf = readU16Record(xls, size, "DSF"); break;
        case rt::SupBook: _externSheets.readBlock(xls, size); break;
        case rt::Prot4Rev: _prot4Rev = readU16Record(xls, size, "Prot4Rev"); break;
        case rt::RefreshAll: _refreshAll = readU16Record(xls, size, "RefreshAll"); break;
        case rt::Prot4RevPass: _prot4RevPass = readU16Record(xls, size, "Prot4RevPass"); break;
        case rt::Excel9File: {
            RecordReader in(xls, size, "Excel9File");
            in.done();
            break;
        }
        case rt::RecalcId: {
            RecordReader in(xls, size, "RecalcId");
            if (size != 8) in.fail();
            _recalcIdRt = in.u16();
            _recalcIdReserved = in.u16();
            _recalcIdBuild = in.u32();
            break;
        }
        case rt::Style: {
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
            if (!xls.eof() && xls.peekInt16() == rt::StyleExt) {
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
        case rt::Format: {
            RecordReader in(xls, size, "Format");
            if (size < (biff5() ? 3 : 5)) in.fail();
            uint16_t id = in.u16();
            // The text is what the record holds, whatever its count says.
            _customNumFormats.emplace_back(id, in.stringWithin(biff5(), biff5()));
            if (biff5()) decodeCodePage(_customNumFormats.back().second);
            break;
        }
        case rt::BookExt: {
            RecordReader skip(xls, size, "BookExt");
            break;
        }
        case rt::XFExt: readRaw(xls, type, size, _xfExts); break;
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
    w.write(xls, rt::Bof);
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
        if (type == rt::Eof) break;
        if (type == rt::Bof) {
            if (sawBof) throw zverror("read error: unexpected BOF record");
            _bof = readBof(_xls, size);
            if (_bof.vers != Bof::kBiff5 && _bof.vers != Bof::kBiff8) throw zverror("This file format isn't supported");
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
    writeU16Record(xls, rt::InterfaceHdr, _interfaceHdr);
    xls.write(rt::Mms, 2);
    xls.write(reinterpret_cast<const char*>(_mms), 2);
    xls.write(rt::InterfaceEnd, 0);
    xls.write(rt::WriteAccess, reinterpret_cast<const char*>(_writeAccess.data()), static_cast<int>(_writeAccess.size()));
    writeU16Record(xls, rt::CodePage, _codePage);
    writeU16Record(xls, rt::DSF, _dsf);
    {
        RecordWriter tabs;
        for (uint16_t id : _rrTabId) tabs.u16(id);
        tabs.write(xls, rt::RRTabId);
    }
    _obProj.writeIfPresent(xls);
    _obNoMacros.writeIfPresent(xls);
    _codeName.writeIfPresent(xls);
    writeU16Records(xls, {{rt::BuiltInFnGroupCount, _builtInFnGroupCount}, {rt::WinProtect, _winProtect},
                          {rt::Protect, _protect}, {rt::Password, _password}, {rt::Prot4Rev, _prot4Rev},
                          {rt::Prot4RevPass, _prot4RevPass}});
    {
        RecordWriter w;
        for (uint16_t v : {_window1.xWn, _window1.yWn, _window1.dxWn, _window1.dyWn, _window1.flags,
                           _window1.itabCur, _window1.itabFirst, _window1.ctabSel, _window1.wTabRatio})
            w.u16(v);
        w.write(xls, rt::Window1);
    }
    writeU16Records(xls, {{rt::Backup, _backup}, {rt::HideObj, _hideObj}, {rt::Date1904, _date1904},
                          {rt::CalcPrecision, _calcPrecision}, {rt::RefreshAll, _refreshAll},
                          {rt::BookBool, _bookBool}});
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
        w.write(xls, rt::Font);
    }
    for (const auto& format : _customNumFormats) {
        RecordWriter w;
        w.u16(format.first);
        w.string16(format.second, false);
        w.write(xls, rt::Format);
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
        w.write(xls, rt::XF);
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
        w.write(xls, rt::Style);
        if (block.hasStyleExt)
            xls.write(rt::StyleExt, reinterpret_cast<const char*>(block.styleExt.data()), static_cast<int>(block.styleExt.size()));
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
        w.write(xls, rt::Palette);
    }
    _clrtClient.writeIfPresent(xls);
    writeU16Record(xls, rt::UsesELFs, _usesELFs);
    std::vector<uint32_t> boundSheetPositions;
    for (size_t i = 0; i < _sheets.size(); ++i) {
        boundSheetPositions.push_back(xls.writePos());
        RecordWriter w;
        w.u32(_boundSheets[i].lbPlyPos);
        w.u8(_boundSheets[i].hsState);
        w.u8(_boundSheets[i].dt);
        if (!_sheets[i]->nameRef().empty()) w.string16(_sheets[i]->nameRef(), true);
        w.write(xls, rt::BoundSheet8);
    }
    _mtrSettings.writeIfPresent(xls);
    _forceFullCalculation.writeIfPresent(xls);
    xls.write(rt::Country, 4);
    xls.writeInt16(_country[0]);
    xls.writeInt16(_country[1]);
    _externSheets.write(xls);
    for (const auto& name : _lbls)
        for (const auto& record : name) record.write(xls);
    if (_drawing.modified()) {
        // The group's bytes in one MsoDrawingGroup record and as many CONTINUE records as needed.
        std::vector<uint8_t> art = _drawing.bytes();
        for (size_t at = 0; at < art.size(); at += 8224) {
            size_t n = std::min<size_t>(8224, art.size() - at);
            xls.write(at == 0 ? rt::MsoDrawingGroup : rt::Continue, reinterpret_cast<const char*>(art.data() + at), static_cast<int>(n));
        }
    } else {
        for (const auto& record : _drawingGroup) record.write(xls);
    }
    xls.write(rt::RecalcId, 8);
    xls.writeInt16(_recalcIdRt);
    xls.writeInt16(_recalcIdReserved);
    xls.writeInt32(_recalcIdBuild);
    _sst.write(xls);
    _theme.writeIfPresent(xls);
    _compressPictures.writeIfPresent(xls);
    _compat12.writeIfPresent(xls);
    for (const auto& record : _unknownRecords) record.write(xls);
    xls.write(rt::Eof, 0);

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
