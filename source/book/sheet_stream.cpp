// A worksheet's substream on file: every record is read into a member, a slot, a cell vector or
// the list of unknown records, and written back in the writer's fixed order. Substreams that are
// not worksheets (charts, macro sheets) are kept whole.
#include <algorithm>
#include <map>

#include "book/book_impl.h"
#include "book/sheet_impl.h"

namespace zelvar {

namespace {

void writeRaw(XlsStream& xls, uint16_t id, const std::vector<uint8_t>& payload) {
    xls.write(id, reinterpret_cast<const char*>(payload.data()), static_cast<int>(payload.size()));
}

// The row, column and format that every cell record begins with.
template <class R>
void readHead(RecordReader& in, R& cell) {
    cell.row = in.u16();
    cell.col = in.u16();
    cell.xf = in.u16();
}
void writeHead(RecordWriter& w, uint16_t row, uint16_t col, uint16_t xf) {
    w.u16(row);
    w.u16(col);
    w.u16(xf);
}

// Each kind of cell writes what follows the row, column and format, and gives its record's id.
uint16_t writeBody(RecordWriter& w, const RK& x) {
    w.u32(x.rk);
    return rt::RK;
}
uint16_t writeBody(RecordWriter& w, const Number& x) {
    w.f64(x.num);
    return rt::Number;
}
uint16_t writeBody(RecordWriter& w, const LabelSst& x) {
    w.u32(x.isst);
    return rt::LabelSst;
}
uint16_t writeBody(RecordWriter&, const Blank&) { return rt::Blank; }
uint16_t writeBody(RecordWriter& w, const BoolErr& x) {
    w.u8(x.bBoolErr);
    w.u8(x.fError);
    return rt::BoolErr;
}
uint16_t writeBody(RecordWriter& w, const Label& x) {
    w.string16(x.text ? x.text : L"", false);
    w.bytes(x.runs.data(), x.runs.size());
    return x.runs.empty() ? rt::Label : rt::RString;
}
template <class R>
void writeCell(XlsStream& xls, RecordWriter& w, const R& x) {
    writeHead(w, x.row, x.col, x.xf);
    uint16_t id = writeBody(w, x);
    w.write(xls, id);
}
// A formula is marked for recalculation when the file is opened, and written with the records
// that belong to it.
void writeCell(XlsStream& xls, RecordWriter& w, FormulaBlock& block) {
    Formula& f = block.formula;
    f.grbit |= 1;
    writeHead(w, f.row, f.col, f.xf);
    w.bytes(f.result, 8);
    w.u16(f.grbit);
    w.u32(f.chn);
    w.bytes(f.tokens.data(), f.tokens.size());
    w.write(xls, rt::Formula);
    if (block.arrayType) writeRaw(xls, block.arrayType, block.arrayRecord);
    if (block.shared) writeRaw(xls, rt::ShrFmla, block.shrFmla);
    if (block.hasString) {
        writeRaw(xls, rt::String, block.stringRecord);
        for (const auto& piece : block.stringContinues) writeRaw(xls, rt::Continue, piece);
    }
}

// The records that a page setup run takes together.
bool inPageSetupRun(uint16_t id) {
    switch (id) {
        case rt::Header:
        case rt::Footer:
        case rt::LeftMargin:
        case rt::RightMargin:
        case rt::TopMargin:
        case rt::BottomMargin:
        case rt::Pls:
        case rt::HCenter:
        case rt::VCenter:
        case rt::Setup: return true;
        default: return false;
    }
}

}  // namespace

template <class T>
template <class R>
void SheetImplT<T>::placeCell(const R& record) {
    auto& vec = records<R>();
    if (vec.size() >= (1u << 28)) throw zverror("too many cells in sheet");
    unsigned row = cellHead(record).row, col = cellHead(record).col;
    _sheetIndex(row, col & 0xFF) = SheetIndex::entry(R::kind, static_cast<unsigned>(vec.size()));
    vec.push_back(record);
    if constexpr (R::kind == KindLabelSst) _book->sst().addUser(record.isst);
}

template <class T>
void SheetImplT<T>::read(XlsStream& xls, uint64_t length) {
    // The substream's length bounds how many records of each kind it can hold: no vector grows
    // during the load. Space reserved and not used costs address space only, and the vectors are
    // cut to size at the end.
    auto atMost = [&](unsigned recordBytes, size_t cap) {
        return static_cast<size_t>(std::min<uint64_t>(length / recordBytes, cap));
    };
    const size_t cells = 1u << 24;
    _formulas.reserve(atMost(24, 11000));
    _unknownRecords.reserve(atMost(4, 6000));
    _rows.reserve(atMost(20, SheetIndex::kRows));
    _labelSsts.reserve(atMost(14, cells));
    _rks.reserve(atMost(10, cells));
    _numbers.reserve(atMost(18, cells));
    _boolErrs.reserve(atMost(12, cells));
    _blanks.reserve(atMost(10, cells));
    // Most of that space stays unused: whole huge pages at the end of each vector would hold
    // memory for nothing.
    preferSmallPages(_labelSsts.data(), _labelSsts.capacity() * sizeof(LabelSst));
    preferSmallPages(_rks.data(), _rks.capacity() * sizeof(RK));
    preferSmallPages(_numbers.data(), _numbers.capacity() * sizeof(Number));
    preferSmallPages(_boolErrs.data(), _boolErrs.capacity() * sizeof(BoolErr));
    preferSmallPages(_blanks.data(), _blanks.capacity() * sizeof(Blank));
    bool sawBof = false;
    uint16_t previous = 0;
    while (!xls.eof()) {
        uint16_t type = 0, size = 0;
        if (xls.readInt16(&type) < 2) break;
        if (type == 0) throw zverror("read error: record id can't be 0");
        if (xls.readInt16(&size) < 2) throw zverror("read error: the stream ends inside a record");
        if (type == rt::Eof) break;
        uint16_t before = previous;
        previous = type;
        if (type == rt::Bof) {
            if (sawBof) {
                // Embedded charts come only behind a drawing object; anywhere else a second BOF
                // means a broken stream.
                if (_bof.dt != Bof::kWorksheet || (before != rt::Obj && before != rt::MsoDrawing))
                    throw zverror("read error: unexpected BOF record");
                // A chart embedded in the sheet: its whole substream travels with the drawing.
                Biff<T> bof(type);
                bof.read(xls, size);
                _objects.push_back(std::move(bof));
                int depth = 1;
                while (depth > 0 && !xls.eof()) {
                    uint16_t t = 0, n = 0;
                    if (xls.readInt16(&t) < 2) break;
                    if (t == 0) throw zverror("read error: record id can't be 0");
                    xls.readInt16(&n);
                    readRaw(xls, t, n, _objects);
                    if (t == rt::Bof) ++depth;
                    if (t == rt::Eof) --depth;
                }
                // The sheet's drawing may go on in CONTINUE records right behind the chart.
                while (!xls.eof() && xls.peekInt16() == rt::Continue) {
                    uint16_t t = 0, n = 0;
                    xls.readInt16(&t);
                    xls.readInt16(&n);
                    readRaw(xls, t, n, _objects);
                }
                continue;
            }
            _bof = readBof(xls, size);
            sawBof = true;
            continue;
        }
        if (_bof.dt != Bof::kWorksheet) {
            readRaw(xls, type, size, _unknownRecords);
            continue;
        }
        readRecord(xls, type, size);
    }
    _formulas.shrink_to_fit();
    _unknownRecords.shrink_to_fit();
    _rows.shrink_to_fit();
    fitToSize(_labelSsts);
    fitToSize(_rks);
    fitToSize(_numbers);
    fitToSize(_boolErrs);
    fitToSize(_blanks);
    _dimensionsDirty = true;
}

template <class T>
void SheetImplT<T>::readPageSetup(XlsStream& xls, uint16_t type, uint16_t size) {
    bool biff5 = _book->biff5();
    while (true) {
        switch (type) {
            case rt::Header:
            case rt::Footer: {
                RecordReader in(xls, size, type == rt::Header ? "Header" : "Footer");
                std::wstring text = in.size() ? in.stringOrBareCount(biff5, biff5) : std::wstring();
                if (biff5) _book->decodeCodePage(text);
                (type == rt::Header ? _header : _footer) = text;
                break;
            }
            case rt::HCenter: _hCenter = readU16Record(xls, size, "HCenter"); break;
            case rt::VCenter: _vCenter = readU16Record(xls, size, "VCenter"); break;
            case rt::LeftMargin:
            case rt::RightMargin:
            case rt::TopMargin:
            case rt::BottomMargin: {
                RecordReader in(xls, size, "Margin");
                if (size != 8) in.fail();
                _margins[type - rt::LeftMargin] = in.f64();
                _marginSet[type - rt::LeftMargin] = true;
                break;
            }
            case rt::Pls:
                readRawWithContinues(xls, type, size, _pls);
                break;
            case rt::Setup: {
                RecordReader in(xls, size, "Setup");
                if (size != 34 && !(biff5 && size == 34)) in.fail();
                _setup.iPaperSize = in.u16();
                _setup.iScale = in.u16();
                _setup.iPageStart = static_cast<int16_t>(in.u16());
                _setup.iFitWidth = in.u16();
                _setup.iFitHeight = in.u16();
                _setup.grbit = in.u16();
                _setup.iRes = in.u16();
                _setup.iVRes = in.u16();
                _setup.numHdr = in.f64();
                _setup.numFtr = in.f64();
                _setup.iCopies = in.u16();
                break;
            }
            default: throw zverror("error in PageSetup");
        }
        if (xls.eof()) return;
        uint16_t next = xls.peekInt16();
        if (!inPageSetupRun(next)) return;
        xls.readInt16(&type);
        xls.readInt16(&size);
    }
}

template <class T>
void SheetImplT<T>::readFormulaBlock(XlsStream& xls, uint16_t size) {
    FormulaBlock block;
    {
        RecordReader in(xls, size, "Formula");
        if (size < 20) in.fail();
        block.formula.row = in.u16();
        block.formula.col = in.u16();
        block.formula.xf = in.u16();
        in.bytes(block.formula.result, 8);
        block.formula.grbit = in.u16();
        block.formula.chn = in.u32();
        block.formula.tokens.assign(in.at(), in.at() + in.left());
    }
    uint64_t sum = size;
    auto take = [&](std::vector<uint8_t>& into) {
        uint16_t t = 0, n = 0;
        xls.readInt16(&t);
        xls.readInt16(&n);
        sum += n + 4u;
        if (sum > xls.fileSize()) throw zverror("FormulaBlock: file is corrupt");
        RecordReader in(xls, n, "Formula");
        into.assign(in.at(), in.at() + in.size());
        return t;
    };
    if (!xls.eof()) {
        uint16_t next = xls.peekInt16();
        if (next == rt::Array || next == rt::Table) {
            block.arrayType = take(block.arrayRecord);
        } else if (next == rt::ShrFmla) {
            take(block.shrFmla);
            block.shared = true;
        }
    }
    if (!xls.eof() && xls.peekInt16() == rt::String) {
        take(block.stringRecord);
        block.hasString = true;
        while (!xls.eof() && xls.peekInt16() == rt::Continue) {
            block.stringContinues.emplace_back();
            take(block.stringContinues.back());
        }
        // The text result, for readStr.
        RecordReader in(block.stringRecord, "String");
        if (in.size() >= 3) {
            uint16_t count = in.u16();
            uint8_t flags = _book->biff5() ? 0 : in.u8();
            std::wstring text;
            size_t perChar = (flags & 1) ? 2 : 1;
            size_t here = std::min<size_t>(count, in.left() / perChar);
            text = in.chars(here, flags);
            for (const auto& piece : block.stringContinues) {
                if (text.size() >= count || piece.empty()) break;
                RecordReader more(piece, "String");
                uint8_t f = more.u8();
                size_t per = (f & 1) ? 2 : 1;
                text += more.chars(std::min<size_t>(count - text.size(), more.left() / per), f);
            }
            if (_book->biff5()) _book->decodeCodePage(text);
            block.formula.stringValue = _book->pool().copyW(text.data(), text.size());
        }
    }
    block.formula.row &= 0xFFFF;
    if (block.formula.col > 255) return;  // outside the grid: nothing can address it
    placeCell(block);
}

template <class T>
void SheetImplT<T>::readRecord(XlsStream& xls, uint16_t type, uint16_t size) {
    bool biff5 = _book->biff5();
    switch (type) {
        case rt::Formula: readFormulaBlock(xls, size); break;
        case rt::CalcCount: _calcCount = readU16Record(xls, size, "CalcCount"); break;
        case rt::CalcMode: _calcMode = readU16Record(xls, size, "CalcMode"); break;
        case rt::CalcRefMode: _calcRefMode = readU16Record(xls, size, "CalcRefMode"); break;
        case rt::CalcIter: _calcIter = readU16Record(xls, size, "CalcIter"); break;
        case rt::CalcDelta: {
            RecordReader in(xls, size, "CalcDelta");
            if (size != 8) in.fail();
            _calcDelta = in.f64();
            break;
        }
        case rt::Protect:
        case rt::Password:
        case rt::ObjProtect:
        case rt::ScenarioProtect: {
            int slot = type == rt::Protect ? 0 : type == rt::ScenarioProtect ? 1 : type == rt::ObjProtect ? 2 : 3;
            const char* names[4] = {"Protect", "ScenarioProtect", "ObjProtect", "Password"};
            // Writers differ in these records' lengths; the first word is the value.
            RecordReader in(xls, size, names[slot]);
            if (in.left() >= 2) _protection[slot] = in.u16();
            _protectionSet[slot] = true;
            break;
        }
        case rt::Header:
        case rt::Footer:
        case rt::HCenter:
        case rt::VCenter:
        case rt::Setup: readPageSetup(xls, type, size); break;
        case rt::VerticalPageBreaks:
        case rt::HorizontalPageBreaks: {
            RecordReader in(xls, size, type == rt::HorizontalPageBreaks ? "HorizontalPageBreaks" : "VerticalPageBreaks");
            uint16_t count = in.u16();
            auto& breaks = type == rt::HorizontalPageBreaks ? _horizontalPageBreaks : _verticalPageBreaks;
            breaks.clear();
            for (uint16_t i = 0; i < count; ++i) {
                PageBreak b;
                b.pos = in.u16();
                if (!biff5) {
                    b.start = in.u16();
                    b.end = in.u16();
                }
                breaks.push_back(b);
            }
            in.done();
            break;
        }
        case rt::NoteSh: readRaw(xls, type, size, _noteShs); break;
        case rt::Selection: readRaw(xls, type, size, _selections); break;
        case rt::PrintRowCol: _printRowCol = readU16Record(xls, size, "PrintRowCol"); break;
        case rt::PrintGrid: _printGrid = readU16Record(xls, size, "PrintGrid"); break;
        case rt::DefColWidth: _defColWidth = readU16Record(xls, size, "DefColWidth"); break;
        case rt::CalcSaveRecalc: _calcSaveRecalc = readU16Record(xls, size, "CalcSaveRecalc"); break;
        case rt::WsBool: _wsBool = readU16Record(xls, size, "WsBool"); break;
        case rt::GridSet: _gridSet = readU16Record(xls, size, "GridSet"); break;
        case rt::Pane: {
            RecordReader in(xls, size, "Pane");
            if (size < 9) in.fail();
            for (auto& v : _pane) v = in.u16();
            _paneActive = in.u8();
            _hasPane = true;
            break;
        }
        case rt::DCon: _dCon.read(xls, size); break;
        case rt::Sort: _sort.read(xls, size); break;
        case rt::DxGCol: _dxGCol.read(xls, size); break;
        case rt::AutoFilterInfo: _autoFilterInfo.read(xls, size); break;
        case rt::CodeName: _codeName.read(xls, size); break;
        case rt::EntExU2: _entExU2.read(xls, size); break;
        case rt::DropDownObjIds: _dropDownObjIds.read(xls, size); break;
        case rt::Plv: _plv.read(xls, size); break;
        case rt::HeaderFooter: _headerFooter.read(xls, size); break;
        case rt::Uncalced:
            _uncalced = readU16Record(xls, size, "Uncalced");
            _hasUncalced = true;
            break;
        case rt::ColInfo: {
            RecordReader in(xls, size, "ColInfo");
            if (size < 10) in.fail();
            ColInfo info;
            uint16_t first = in.u16(), last = in.u16();
            info.coldx = in.u16();
            info.ixfe = in.u16();
            info.grbit = in.u16();
            if (in.left() >= 2) info.reserved = in.u16();
            if (last > 255) last = 255;
            for (unsigned c = first; c <= last; ++c) {
                info.colFirst = info.colLast = static_cast<uint16_t>(c);
                _colInfos.push_back(info);
            }
            break;
        }
        case rt::Guts: {
            RecordReader in(xls, size, "Guts");
            if (size != 8) in.fail();
            for (auto& g : _guts) g = in.u16();
            break;
        }
        case rt::Scl: {
            RecordReader in(xls, size, "Scl");
            if (size != 4) in.fail();
            _sclNum = in.u16();
            _sclDenom = in.u16();
            break;
        }
        case rt::MulRk: {
            RecordReader in(xls, size, "MulRk");
            if (size < 6 || (size - 6) % 6) in.fail();
            uint16_t row = in.u16(), col = in.u16();
            size_t n = (size - 6u) / 6;
            for (size_t i = 0; i < n; ++i, ++col) {
                RK rk;
                rk.row = row;
                rk.col = col;
                rk.xf = in.u16();
                rk.rk = in.u32();
                if (col < 256) placeCell(rk);
            }
            break;
        }
        case rt::MulBlank: {
            RecordReader in(xls, size, "MulBlank");
            if (size < 6 || (size - 6) % 2) in.fail();
            uint16_t row = in.u16(), col = in.u16();
            size_t n = (size - 6u) / 2;
            for (size_t i = 0; i < n; ++i, ++col) {
                Blank blank;
                blank.row = row;
                blank.col = col;
                blank.xf = in.u16();
                if (col < 256) placeCell(blank);
            }
            break;
        }
        case rt::DBCell: {
            RecordReader skip(xls, size, "DBCell");
            break;
        }
        case rt::MergeCells: {
            RecordReader in(xls, size, "MergeCells");
            uint16_t count = in.u16();
            if (size != 2 + 8u * count) in.fail();
            std::vector<Rect> rects(count);
            for (Rect& r : rects) {
                r.rwFirst = in.u16();
                r.rwLast = in.u16();
                r.colFirst = in.u16();
                r.colLast = in.u16();
            }
            _mergeCells.push_back(std::move(rects));
            break;
        }
        case rt::MsoDrawing:
        case rt::Obj:
        case rt::TextObject:
            readRawWithContinues(xls, type, size, _objects);
            break;
        case rt::PhoneticInfo: {
            RecordReader in(xls, size, "PhoneticInfo");
            if (size < 6 || (size - 6) % 8) in.fail();
            _phoneticInfo.assign(in.at(), in.at() + in.size());
            break;
        }
        case rt::LabelSst: {
            RecordReader in(xls, size, "LabelSst");
            if (size != 10) in.fail();
            LabelSst cell;
            readHead(in, cell);
            cell.isst = in.u32();
            if (cell.isst >= _book->sst().count()) throw zverror("LabelSst: string index is out of range");
            if (cell.col < 256) placeCell(cell);
            break;
        }
        case rt::Blank: {
            RecordReader in(xls, size, "Blank");
            if (size != 6) in.fail();
            Blank cell;
            readHead(in, cell);
            if (cell.col < 256) placeCell(cell);
            break;
        }
        case rt::Number: {
            RecordReader in(xls, size, "Number");
            if (size != 14) in.fail();
            Number cell;
            readHead(in, cell);
            cell.num = in.f64();
            if (cell.col < 256) placeCell(cell);
            break;
        }
        case rt::RString:  // a text cell with formatting runs, which are kept as the file has them
        case rt::Label: {
            RecordReader in(xls, size, "Label");
            Label cell;
            readHead(in, cell);
            std::wstring text = in.string(false, biff5);
            if (biff5) _book->decodeCodePage(text);
            cell.text = _book->pool().copyW(text.data(), text.size());
            cell.biff5 = biff5;
            if (type == rt::RString) {
                // The run count, then per run the character position and the font.
                size_t count = biff5 ? in.u8() : in.u16();
                in.skip(count * (biff5 ? 2 : 4));
                in.done();
                cell.runs.assign(in.at() - (biff5 ? 1 + 2 * count : 2 + 4 * count), in.at());
            }
            if (cell.col < 256) placeCell(cell);
            break;
        }
        case rt::BoolErr: {
            RecordReader in(xls, size, "BoolErr");
            // Some writers pad the record with a ninth byte, which carries nothing.
            if (size != 8 && size != 9) in.fail();
            BoolErr cell;
            readHead(in, cell);
            cell.bBoolErr = in.u8();
            cell.fError = in.u8();
            if (cell.col < 256) placeCell(cell);
            break;
        }
        case rt::RK: {
            RecordReader in(xls, size, "RK");
            if (size != 10) in.fail();
            RK cell;
            readHead(in, cell);
            cell.rk = in.u32();
            if (cell.col < 256) placeCell(cell);
            break;
        }
        case rt::Dimensions: {
            RecordReader in(xls, size, "Dimensions");
            if (biff5 ? size != 10 : size != 14) in.fail();
            _dimensions.rwMic = biff5 ? in.u16() : in.u32();
            _dimensions.rwMac = biff5 ? in.u16() : in.u32();
            _dimensions.colMic = in.u16();
            _dimensions.colMac = in.u16();
            _dimensions.reserved = in.u16();
            _dimensions.biff5 = biff5;
            _sheetIndex.expectRows(_dimensions.rwMac > _dimensions.rwMic ? _dimensions.rwMac - _dimensions.rwMic : 0);
            break;
        }
        case rt::Row: {
            RecordReader in(xls, size, "Row");
            if (size != 16) in.fail();
            Row row;
            row.row = in.u16();
            row.colMic = in.u16();
            row.colMac = in.u16();
            row.miyRw = in.u16();
            row.reserved1 = in.u16();
            row.reserved2 = in.u16();
            row.grbit = in.u16();
            row.ixfe = in.u16();
            _rows.push_back(row);
            break;
        }
        case rt::Index: {
            RecordReader in(xls, size, "Index");
            _indexReserved = in.u32();
            _indexRwMic = biff5 ? in.u16() : in.u32();
            _indexRwMac = biff5 ? in.u16() : in.u32();
            _indexIbXF = in.u32();
            _indexPositions.resize(in.left() / 4);
            for (auto& p : _indexPositions) p = in.u32();
            break;
        }
        case rt::DefaultRowHeight: {
            RecordReader in(xls, size, "DefaultRowHeight");
            if (size != 4) in.fail();
            _defaultRowHeightFlags = in.u16();
            _defaultRowHeight = in.u16();
            break;
        }
        case rt::Window2: {
            RecordReader in(xls, size, "Window2");
            if (size != 18 && size != 10) in.fail();
            _window2.grbit = in.u16();
            _window2.rwTop = in.u16();
            _window2.colLeft = in.u16();
            if (size == 10) {
                in.u32();
            } else {
                _window2.icvHdr = in.u16();
                for (auto& w : _window2.rest) w = in.u16();
            }
            break;
        }
        default: readRaw(xls, type, size, _unknownRecords); break;
    }
}

template <class T>
void SheetImplT<T>::writeCells(XlsStream& xls) {
    RecordWriter w;
    for (unsigned r = _sheetIndex.nextRow(0); r < SheetIndex::kRows; r = _sheetIndex.nextRow(r + 1)) {
        for (unsigned c = _sheetIndex.colBegin(r), end = _sheetIndex.colEnd(r); c < end; ++c) {
            uint32_t e = _sheetIndex(r, c);
            if (!(e & 1)) continue;
            w.clear();
            visitCell(e, [&](auto& record) { writeCell(xls, w, record); });
        }
    }
}

template <class T>
void SheetImplT<T>::write(XlsStream& xls) {
    writeBof(xls, _bof);
    if (_bof.dt != Bof::kWorksheet) {
        for (const auto& record : _unknownRecords) record.write(xls);
        xls.write(rt::Eof, 0);
        return;
    }
    if (_hasUncalced) writeU16Record(xls, rt::Uncalced, _uncalced);
    {
        RecordWriter w;
        w.u32(_indexReserved), w.u32(_indexRwMic), w.u32(_indexRwMac), w.u32(_indexIbXF);
        for (uint32_t p : _indexPositions) w.u32(p);
        w.write(xls, rt::Index);
    }
    writeU16Records(xls, {{rt::CalcMode, _calcMode},
                          {rt::CalcCount, _calcCount},
                          {rt::CalcRefMode, _calcRefMode},
                          {rt::CalcIter, _calcIter}});
    xls.write(rt::CalcDelta, 8);
    xls.writeDouble(_calcDelta);
    writeU16Records(xls, {{rt::CalcSaveRecalc, _calcSaveRecalc},
                          {rt::PrintRowCol, _printRowCol},
                          {rt::PrintGrid, _printGrid},
                          {rt::GridSet, _gridSet}});
    {
        RecordWriter w;
        for (uint16_t g : _guts) w.u16(g);
        w.write(xls, rt::Guts);
    }
    xls.write(rt::DefaultRowHeight, 4);
    xls.writeInt16(_defaultRowHeightFlags);
    xls.writeInt16(_defaultRowHeight);
    writeU16Record(xls, rt::WsBool, _wsBool);
    for (int kind = 0; kind < 2; ++kind) {
        const auto& breaks = kind == 0 ? _horizontalPageBreaks : _verticalPageBreaks;
        if (breaks.empty()) continue;
        RecordWriter w;
        w.u16(static_cast<uint16_t>(breaks.size()));
        for (const PageBreak& b : breaks) w.u16(b.pos), w.u16(b.start), w.u16(b.end);
        w.write(xls, kind == 0 ? rt::HorizontalPageBreaks : rt::VerticalPageBreaks);
    }
    _headerFooter.writeIfPresent(xls);
    for (int i = 0; i < 2; ++i) {
        const std::wstring& text = i == 0 ? _header : _footer;
        RecordWriter w;
        if (!text.empty()) w.string16(text, false);
        w.write(xls, i == 0 ? rt::Header : rt::Footer);
    }
    writeU16Record(xls, rt::HCenter, _hCenter);
    writeU16Record(xls, rt::VCenter, _vCenter);
    for (int i = 0; i < 4; ++i) {
        if (!_marginSet[i]) continue;
        xls.write(static_cast<uint16_t>(rt::LeftMargin + i), 8);
        xls.writeDouble(_margins[i]);
    }
    for (const auto& record : _pls) record.write(xls);
    {
        RecordWriter w;
        w.u16(_setup.iPaperSize), w.u16(_setup.iScale), w.u16(static_cast<uint16_t>(_setup.iPageStart));
        w.u16(_setup.iFitWidth), w.u16(_setup.iFitHeight), w.u16(_setup.grbit), w.u16(_setup.iRes);
        w.u16(_setup.iVRes), w.f64(_setup.numHdr), w.f64(_setup.numFtr), w.u16(_setup.iCopies);
        w.write(xls, rt::Setup);
    }
    const uint16_t protectionIds[4] = {rt::Protect, rt::ScenarioProtect, rt::ObjProtect, rt::Password};
    for (int i = 0; i < 4; ++i)
        if (_protectionSet[i]) writeU16Record(xls, protectionIds[i], _protection[i]);
    writeU16Record(xls, rt::DefColWidth, _defColWidth);
    // Columns: runs of like entries, gaps between like columns closed.
    std::vector<ColInfo> cols = _colInfos;
    std::stable_sort(cols.begin(), cols.end(), [](const ColInfo& a, const ColInfo& b) { return a.colFirst < b.colFirst; });
    for (size_t i = 0; i < cols.size();) {
        size_t j = i;
        while (j + 1 < cols.size() && cols[j + 1].coldx == cols[i].coldx && cols[j + 1].ixfe == cols[i].ixfe &&
               cols[j + 1].grbit == cols[i].grbit)
            ++j;
        RecordWriter w;
        w.u16(cols[i].colFirst), w.u16(cols[j].colLast), w.u16(cols[i].coldx), w.u16(cols[i].ixfe);
        w.u16(cols[i].grbit), w.u16(cols[i].reserved);
        w.write(xls, rt::ColInfo);
        i = j + 1;
    }
    _sort.writeIfPresent(xls);
    _dropDownObjIds.writeIfPresent(xls);
    _autoFilterInfo.writeIfPresent(xls);
    settleDimensions();
    {
        RecordWriter w;
        w.u32(_dimensions.rwMic), w.u32(_dimensions.rwMac), w.u16(_dimensions.colMic), w.u16(_dimensions.colMac);
        w.u16(_dimensions.reserved);
        w.write(xls, rt::Dimensions);
    }
    for (Row& row : _rows) {
        row.colMic = row.colMac = 0;
        RecordWriter w;
        for (uint16_t v : {row.row, row.colMic, row.colMac, row.miyRw, row.reserved1, row.reserved2, row.grbit, row.ixfe})
            w.u16(v);
        w.write(xls, rt::Row);
    }
    writeCells(xls);
    _entExU2.writeIfPresent(xls);
    for (const auto& record : _objects) record.write(xls);
    for (const auto& record : _noteShs) record.write(xls);
    _dCon.writeIfPresent(xls);
    {
        RecordWriter w;
        w.u16(_window2.grbit), w.u16(_window2.rwTop), w.u16(_window2.colLeft), w.u16(_window2.icvHdr);
        for (uint16_t v : _window2.rest) w.u16(v);
        w.write(xls, rt::Window2);
    }
    _plv.writeIfPresent(xls);
    if (_sclDenom == 0 || _sclNum * 1u != _sclDenom * 1u) {
        xls.write(rt::Scl, 4);
        xls.writeInt16(_sclNum);
        xls.writeInt16(_sclDenom);
    }
    if (_hasPane) {
        RecordWriter w;
        for (uint16_t v : _pane) w.u16(v);
        w.u8(_paneActive);
        w.u8(0);
        w.write(xls, rt::Pane);
    }
    for (const auto& record : _selections) record.write(xls);
    _dxGCol.writeIfPresent(xls);
    for (const auto& merge : _mergeCells) {
        // One record holds at most 1026 rectangles.
        for (size_t at = 0; at < merge.size() || (merge.empty() && at == 0); at += 1026) {
            size_t n = std::min<size_t>(1026, merge.size() - at);
            RecordWriter w;
            w.u16(static_cast<uint16_t>(n));
            for (size_t k = at; k < at + n; ++k)
                w.u16(merge[k].rwFirst), w.u16(merge[k].rwLast), w.u16(merge[k].colFirst), w.u16(merge[k].colLast);
            w.write(xls, rt::MergeCells);
            if (merge.empty()) break;
        }
    }
    writeRaw(xls, rt::PhoneticInfo, _phoneticInfo);
    _codeName.writeIfPresent(xls);
    for (const auto& record : _unknownRecords)
        if (record.id != rt::Pls) record.write(xls);
    xls.write(rt::Eof, 0);
}

template void SheetImplT<char>::read(XlsStream&, uint64_t);
template void SheetImplT<wchar_t>::read(XlsStream&, uint64_t);
template void SheetImplT<char>::write(XlsStream&);
template void SheetImplT<wchar_t>::write(XlsStream&);

}  // namespace zelvar
