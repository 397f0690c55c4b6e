// Pictures and comments of a binary sheet: placing a picture of the book's store by a client
// anchor, reading pictures back, and comments as a text box shape with its note.
#include <cmath>
#include <unordered_map>

#include "book/book_impl.h"
#include "book/sheet_impl.h"

namespace zelvar {

namespace {

const wchar_t kCommentAuthor[] = L"zelvar";

// Pixel heights of rows, looked up once per anchor: an anchor may span thousands of rows of a
// sheet that has thousands of row records.
struct RowPixels {
    std::unordered_map<unsigned, int> heights;
    int standard = 0;
    int operator()(int row) const {
        auto it = heights.find(static_cast<unsigned>(row));
        return it == heights.end() ? standard : it->second;
    }
};

}  // namespace

template <class T>
int SheetImplT<T>::colWidthInt(int col) const {
    const ColInfo* c = findCol(col);
    if (!c) return _defColWidth * 8;
    if (_book->fonts().empty()) return static_cast<int>(c->coldx / 36.5);
    return static_cast<int>(c->coldx / (256.0 / 7));
}

template <class T>
int SheetImplT<T>::rowHeightInt(int row) const {
    const Row* r = findRow(row);
    return (r ? r->miyRw : _defaultRowHeight) / 15;
}

static RowPixels rowPixels(const std::vector<Row>& rows, uint16_t defaultHeight) {
    RowPixels pixels;
    pixels.standard = defaultHeight / 15;
    for (const Row& r : rows) pixels.heights.emplace(r.row, r.miyRw / 15);  // the first record wins
    return pixels;
}

template <class T>
OfficeArtCoord SheetImplT<T>::calcCoord(int row, int col, int width, int height, int offsetX, int offsetY) const {
    int colL = col, colR = col, rwT = row, rwB = row;
    if (width == -1 || height == -1) {
        for (const auto& merge : _mergeCells)
            for (const Rect& r : merge) {
                if (row < r.rwFirst || row > r.rwLast || col < r.colFirst || col > r.colLast) continue;
                if (height == -1) rwT = r.rwFirst, rwB = r.rwLast;
                if (width == -1) colL = r.colFirst, colR = r.colLast;
            }
    }
    int64_t x = static_cast<int64_t>(width) + offsetX;
    while (colR < 255 && x >= colWidthInt(colR)) {
        x -= colWidthInt(colR);
        ++colR;
    }
    const RowPixels rowHeight = rowPixels(_rows, _defaultRowHeight);
    int64_t y = static_cast<int64_t>(height) + offsetY;
    while (rwB < 65535 && y >= rowHeight(rwB)) {
        y -= rowHeight(rwB);
        ++rwB;
    }
    // A fraction of a cell, as the anchor stores it; a size of -1 stands for the whole range.
    auto part = [](int64_t value, int cell, int scale) -> uint16_t {
        if (value == -1 || value == -2) return 32767;
        if (cell <= 0 || value <= 0) return 0;
        int64_t v = static_cast<int64_t>(static_cast<double>(value) / static_cast<uint64_t>(cell) * scale);
        return static_cast<uint16_t>(std::min<int64_t>(v, scale - 1));
    };
    OfficeArtCoord c;
    c.colL = static_cast<uint16_t>(colL);
    c.colR = static_cast<uint16_t>(colR);
    c.rwT = static_cast<uint16_t>(rwT);
    c.rwB = static_cast<uint16_t>(rwB);
    c.dxR = part(x, colWidthInt(colR), 1024);
    c.dyB = part(y, rowHeight(rwB), 256);
    c.dyT = part(offsetY, rowHeight(rwT), 256);
    c.dxL = part(offsetX, colWidthInt(colL), 1024);
    return c;
}

template <class T>
void SheetImplT<T>::extractPictureCoordAndSize(const ShapeInfo& shape, int* rowTop, int* colLeft, int* rowBottom,
                                               int* colRight, int* width, int* height, int* offsetX,
                                               int* offsetY) const {
    const OfficeArtCoord& a = shape.anchor;
    const RowPixels rowHeight = rowPixels(_rows, _defaultRowHeight);
    int ox = static_cast<int>(a.dxL * colWidthInt(a.colL) / 1024.0 + 0.5);
    int oy = static_cast<int>(a.dyT * rowHeight(a.rwT) / 256.0 + 0.5);
    int64_t w = -ox, h = -oy;
    for (int c = a.colL; c < a.colR; ++c) w += colWidthInt(c);
    for (int r = a.rwT; r < a.rwB; ++r) h += rowHeight(r);
    w += static_cast<int>(a.dxR * colWidthInt(a.colR) / 1024.0 + 0.5);
    h += static_cast<int>(a.dyB * rowHeight(a.rwB) / 256.0 + 0.5);
    if (rowTop) *rowTop = a.rwT;
    if (colLeft) *colLeft = a.colL;
    if (rowBottom) *rowBottom = a.rwB;
    if (colRight) *colRight = a.colR;
    if (width) *width = static_cast<int>(w);
    if (height) *height = static_cast<int>(h);
    if (offsetX) *offsetX = ox;
    if (offsetY) *offsetY = oy;
}

template <class T>
int SheetImplT<T>::nextObjectCounter() {
    if (_objectCounter < 0) {
        bool any = false;
        unsigned last = maxObjectId(_objects, &any);
        _objectCounter = any ? static_cast<int>(last) + 1 : 0;
    }
    return _objectCounter;
}

template <class T>
int SheetImplT<T>::pictureSize() const {
    return _book->guard(0, [&] { return static_cast<int>(drawingPictures(_objects).size()); });
}

template <class T>
int SheetImplT<T>::getPicture(int index, int* rowTop, int* colLeft, int* rowBottom, int* colRight, int* width,
                              int* height, int* offsetX, int* offsetY) const {
    return _book->guard(-1, [&] {
        std::vector<ShapeInfo> pictures = drawingPictures(_objects);
        if (index < 0 || index >= static_cast<int>(pictures.size())) throw zverror("picture not found");
        const ShapeInfo& shape = pictures[static_cast<size_t>(index)];
        extractPictureCoordAndSize(shape, rowTop, colLeft, rowBottom, colRight, width, height, offsetX, offsetY);
        return _book->drawingGroup().blipIndexForPib(shape.pib);
    });
}

template <class T>
void SheetImplT<T>::setPicture(int row, int col, int pictureId, double scale, int offsetX, int offsetY) {
    int width = 0, height = 0;
    bool ok = _book->guard(false, [&] {
        const DrawingGroup& group = _book->drawingGroup();
        if (pictureId < 0 || pictureId >= group.pictureCount()) throw zverror("pictureId is out of range");
        BlipView blip = group.picture(pictureId);
        width = static_cast<int>(blip.width * scale);
        height = static_cast<int>(blip.height * scale);
        return true;
    });
    if (ok) setPicture2(row, col, pictureId, width, height, offsetX, offsetY);
}

template <class T>
void SheetImplT<T>::setPicture2(int row, int col, int pictureId, int width, int height, int offsetX, int offsetY) {
    const char* warning = nullptr;
    bool ok = _book->guard(false, [&] {
        checkRanges(row, col);
        DrawingGroup& group = _book->drawingGroup();
        if (pictureId < 0 || pictureId >= group.pictureCount()) throw zverror("pictureId is out of range");
        bool yCut = false, xCut = false;
        if (rowHeightInt(row) < offsetY) offsetY = rowHeightInt(row), yCut = true;
        if (colWidthInt(col) < offsetX) offsetX = colWidthInt(col), xCut = true;
        if (xCut && yCut)
            warning = "warning: offset_x and offset_y exceed cell's size";
        else if (yCut)
            warning = "warning: offset_y exceed cell's height";
        else if (xCut)
            warning = "warning: offset_x exceed cell's width";
        OfficeArtCoord coord = calcCoord(row, col, width, height, offsetX, offsetY);
        const int pib = group.pibForPicture(pictureId);
        ShapePlan plan = reserveShape(_objects, group, ShapeRole::Picture);
        uint16_t objId = freeObjectId(_objects, static_cast<unsigned>(nextObjectCounter()));
        _objectCounter = objId + 1;
        NewShape shape;
        shape.art = pictureShape(plan.spid, pib, coord);
        shape.objects.push_back({rt::Obj, pictureObj(objId)});
        insertShape(_objects, plan, shape);
        group.addPicRef(pib);
        return true;
    });
    if (ok && warning) _book->setMessage(warning);
}

template <class T>
void SheetImplT<T>::writeComment(int row, int col, const T* value, const T* author, int width, int height) {
    _book->guardVoid([&] {
        checkRanges(row, col);
        _book->initMsoDrawingGroup();
        DrawingGroup& group = _book->drawingGroup();
        OfficeArtCoord coord = calcCoord(row, col, width, height, 0, 0);
        std::wstring text, who;
        if (value) toWide(value, _book->utf8Mode(), text);
        if (author)
            toWide(author, _book->utf8Mode(), who);
        else
            who = kCommentAuthor;
        std::wstring units = RecordWriter::utf16Units(text);
        if (units.size() > 0xFFFF) throw zverror("comment is too long");
        ShapePlan plan = reserveShape(_objects, group, ShapeRole::Comment);
        uint16_t objId = freeObjectId(_objects, static_cast<unsigned>(nextObjectCounter()) + 1);
        _objectCounter = objId;
        NewShape shape;
        shape.art = commentShape(plan.spid, coord);
        shape.objects.push_back({rt::Obj, commentObj(objId)});
        shape.textboxArt = clientTextbox();
        // The text's run names font 5, the first font a book adds; a book with fewer fonts uses
        // its default font.
        shape.textboxObjects = commentText(units, _book->fonts().size() >= 5 ? 5 : 0);
        insertShape(_objects, plan, shape);
        NoteView note;
        note.row = static_cast<uint16_t>(row);
        note.col = static_cast<uint16_t>(col);
        note.idObj = objId;
        note.author = who;
        std::vector<uint8_t> payload = makeNote(note);
        for (auto& record : _noteShs) {
            NoteView old;
            if (readNote(record.payload, &old) && old.row == row && old.col == col) {
                record.payload = std::move(payload);
                break;
            }
        }
        if (!payload.empty()) {
            Biff<T> record(rt::NoteSh);
            record.payload = std::move(payload);
            _noteShs.push_back(std::move(record));
        }
        _dimensions.update(static_cast<unsigned>(row), static_cast<unsigned>(col));
    });
}

template <class T>
const T* SheetImplT<T>::readComment(int row, int col) const {
    return _book->template guard<const T*>(nullptr, [&]() -> const T* {
        checkRanges(row, col);
        const bool biff5 = _book->biff5();
        for (size_t i = 0; i < _noteShs.size(); ++i) {
            const auto& p = _noteShs[i].payload;
            if (p.size() < 6 || le::get16(p.data()) != row || le::get16(p.data() + 2) != col) continue;
            std::wstring text;
            if (biff5) {
                // The text rides in the note itself and in notes with row 0xFFFF behind it.
                for (size_t j = i; j < _noteShs.size(); ++j) {
                    const auto& q = _noteShs[j].payload;
                    if (j > i && (q.size() < 6 || le::get16(q.data()) != 0xFFFF)) break;
                    if (q.size() < 6) break;
                    size_t n = std::min<size_t>(le::get16(q.data() + 4), q.size() - 6);
                    for (size_t k = 0; k < n; ++k) text.push_back(static_cast<wchar_t>(q[6 + k]));
                }
                _book->decodeCodePage(text);
                _commentText.swap(text);
                return tc(_commentText.c_str());
            }
            NoteView note;
            if (!readNote(p, &note)) return nullptr;
            if (!findCommentText(_objects, note.idObj, &text)) return nullptr;
            _commentText.swap(text);
            return tc(_commentText.c_str());
        }
        return nullptr;
    });
}

#define ZV_SHEET_DRAWING(T)                                                                               \
    template int SheetImplT<T>::colWidthInt(int) const;                                               \
    template int SheetImplT<T>::rowHeightInt(int) const;                                              \
    template OfficeArtCoord SheetImplT<T>::calcCoord(int, int, int, int, int, int) const;             \
    template int SheetImplT<T>::pictureSize() const;                                                  \
    template int SheetImplT<T>::getPicture(int, int*, int*, int*, int*, int*, int*, int*, int*) const; \
    template void SheetImplT<T>::setPicture(int, int, int, double, int, int);                         \
    template void SheetImplT<T>::setPicture2(int, int, int, int, int, int, int);                      \
    template void SheetImplT<T>::writeComment(int, int, const T*, const T*, int, int);                \
    template const T* SheetImplT<T>::readComment(int, int) const;

ZV_SHEET_DRAWING(char)
ZV_SHEET_DRAWING(wchar_t)

}  // namespace zelvar
