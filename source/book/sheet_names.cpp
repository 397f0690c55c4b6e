// Defined names of a binary sheet: named ranges, the print area and print titles. Names are Lbl
// records whose tokens point through the book's own external sheet table at this sheet.
#include <algorithm>
#include <cstring>

#include "book/book_impl.h"
#include "book/sheet_impl.h"

namespace zelvar {

namespace {
const wchar_t* const kBuiltInNames[] = {L"Consolidate_Area", L"Auto_Open", L"Auto_Close", L"Extract", L"Database",
                                        L"Criteria", L"Print_Area", L"Print_Titles", L"Recorder", L"Data_Form",
                                        L"Auto_Activate", L"Auto_Deactivate", L"Sheet_Title", L"_FilterDatabase"};
constexpr uint16_t kBuiltInFlag = 0x20;

void put16(std::vector<uint8_t>& p, size_t at, unsigned v) { le::put16(&p[at], v); }
using le::get16;

// The 11 bytes of an area on another sheet: PtgArea3d, external sheet index, rows, columns.
std::vector<uint8_t> area3d(uint16_t ixti, int rowFirst, int rowLast, int colFirst, int colLast) {
    std::vector<uint8_t> t(11, 0);
    t[0] = 0x3B;
    put16(t, 1, ixti);
    put16(t, 3, static_cast<unsigned>(rowFirst));
    put16(t, 5, static_cast<unsigned>(rowLast));
    put16(t, 7, static_cast<unsigned>(colFirst));
    put16(t, 9, static_cast<unsigned>(colLast));
    return t;
}
}  // namespace

template <class T>
struct SheetImplT<T>::NameView {
    bool builtIn = false;
    int itab = 0;
    std::wstring name;  // the built-in number's text for built-in names
    int number = -1;
    size_t tokensAt = 0;
    size_t cce = 0;
};

template <class T>
bool SheetImplT<T>::readName(const Biff<T>& lbl, NameView& view) const {
    const std::vector<uint8_t>& p = lbl.payload;
    if (p.size() < 15) return false;
    view.builtIn = (get16(&p[0]) & kBuiltInFlag) != 0;
    size_t cch = p[3];
    view.cce = get16(&p[4]);
    view.itab = static_cast<int>(get16(&p[8]));
    bool wide = p[14] & 1;
    size_t at = 15;
    if (at + cch * (wide ? 2 : 1) > p.size()) return false;
    view.name.clear();
    for (size_t i = 0; i < cch; ++i) view.name.push_back(static_cast<wchar_t>(wide ? get16(&p[at + 2 * i]) : p[at + i]));
    at += cch * (wide ? 2 : 1);
    view.tokensAt = at;
    if (at + view.cce > p.size()) return false;
    if (view.builtIn && view.name.size() == 1 && static_cast<unsigned>(view.name[0]) < 14) {
        view.number = static_cast<int>(view.name[0]);
        view.name = kBuiltInNames[view.number];
    }
    return true;
}

template <class T>
Biff<T>* SheetImplT<T>::findName(const std::wstring& name, bool builtIn, int number) {
    int tab = _book->getTabIndex(this);
    NameView view;
    for (auto& lbl : _book->lblRef()) {
        if (lbl.empty() || !readName(lbl.front(), view) || view.itab != tab + 1) continue;
        if (builtIn ? view.number == number : (!view.builtIn && view.name == name)) return &lbl.front();
    }
    return nullptr;
}

template <class T>
void SheetImplT<T>::addName(const std::wstring& name, bool builtIn, const std::vector<uint8_t>& tokens) {
    int tab = _book->getTabIndex(this);
    std::vector<uint8_t> p(15, 0);
    put16(p, 0, builtIn ? kBuiltInFlag : 0);
    p[3] = static_cast<uint8_t>(name.size());
    put16(p, 4, static_cast<unsigned>(tokens.size()));
    put16(p, 8, static_cast<unsigned>(tab + 1));
    p[14] = 1;  // the name in the 16-bit form
    for (wchar_t c : name) le::append16(p, static_cast<uint32_t>(c));
    p.insert(p.end(), tokens.begin(), tokens.end());
    Biff<T> lbl(rt::Lbl);
    lbl.payload = std::move(p);
    _book->lblRef().push_back({lbl});
}

template <class T>
bool SheetImplT<T>::setNamedRange(const T* name, int rowFirst, int rowLast, int colFirst, int colLast) {
    return _book->guard(false, [&] {
        std::wstring wide;
        if (name) toWide(name, _book->utf8Mode(), wide);
        if (wide.find(L' ') != std::wstring::npos) throw zverror("space symbol isn't allowed");
        if (wide.empty() || wide.size() > 255) throw zverror("incorrect name");
        if (Biff<T>* lbl = findName(wide, false, -1)) {
            NameView view;
            readName(*lbl, view);
            if (view.cce == 11 && lbl->payload[view.tokensAt] == 0x3B) {
                for (int k = 0; k < 4; ++k)
                    put16(lbl->payload, view.tokensAt + 3 + 2 * k,
                          static_cast<unsigned>(k == 0 ? rowFirst : k == 1 ? rowLast : k == 2 ? colFirst : colLast));
                return true;
            }
            // Any other form (a single cell, a formula) is replaced by the area: one name of
            // this name and scope.
            std::vector<uint8_t> tokens = area3d(_book->makeXti(_name), rowFirst, rowLast, colFirst, colLast);
            for (auto& record : _book->lblRef()) {
                if (record.empty() || &record.front() != lbl) continue;
                record.resize(1);  // continuations held the old tokens
                break;
            }
            lbl->payload.resize(view.tokensAt);
            lbl->payload.insert(lbl->payload.end(), tokens.begin(), tokens.end());
            put16(lbl->payload, 4, static_cast<unsigned>(tokens.size()));
            return true;
        }
        uint16_t ixti = _book->makeXti(_name);
        addName(wide, false, area3d(ixti, rowFirst, rowLast, colFirst, colLast));
        return true;
    });
}

template <class T>
bool SheetImplT<T>::getNamedRange(const T* name, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
    return _book->guard(false, [&] {
        std::wstring wide;
        if (name) toWide(name, _book->utf8Mode(), wide);
        int tab = _book->getTabIndex(this);
        NameView view;
        for (auto& lbl : _book->lblRef()) {
            if (lbl.empty() || !readName(lbl.front(), view) || view.itab != tab + 1 || view.name != wide) continue;
            const uint8_t* t = lbl.front().payload.data() + view.tokensAt;
            if (view.cce >= 11 && t[0] == 0x3B) {
                if (rowFirst) *rowFirst = static_cast<int>(get16(t + 3));
                if (rowLast) *rowLast = static_cast<int>(get16(t + 5));
                if (colFirst) *colFirst = static_cast<int>(get16(t + 7) & 0x3FFF);
                if (colLast) *colLast = static_cast<int>(get16(t + 9) & 0x3FFF);
                return true;
            }
            if (view.cce >= 7 && t[0] == 0x3A) {
                if (rowFirst) *rowFirst = static_cast<int>(get16(t + 3));
                if (rowLast) *rowLast = static_cast<int>(get16(t + 3));
                if (colFirst) *colFirst = static_cast<int>(get16(t + 5) & 0x3FFF);
                if (colLast) *colLast = static_cast<int>(get16(t + 5) & 0x3FFF);
                return true;
            }
        }
        throw zverror("named range is not found");
    });
}

template <class T>
bool SheetImplT<T>::delNamedRange(const T* name) {
    return _book->guard(false, [&] {
        std::wstring wide;
        if (name) toWide(name, _book->utf8Mode(), wide);
        int tab = _book->getTabIndex(this);
        NameView view;
        auto& lbls = _book->lblRef();
        for (size_t i = 0; i < lbls.size(); ++i) {
            if (lbls[i].empty() || !readName(lbls[i].front(), view) || view.itab != tab + 1 || view.name != wide) continue;
            lbls.erase(lbls.begin() + static_cast<long>(i));
            return true;
        }
        throw zverror("named range is not found");
    });
}

template <class T>
int SheetImplT<T>::namedRangeSize() const {
    int tab = _book->getTabIndex(this), count = 0;
    NameView view;
    for (auto& lbl : _book->lblRef()) {
        if (lbl.empty() || !readName(lbl.front(), view)) continue;
        if (view.cce != 11 && view.cce != 7) continue;
        const uint8_t* t = lbl.front().payload.data() + view.tokensAt;
        if (_book->xtiCoversTab(static_cast<uint16_t>(get16(t + 1)), tab)) ++count;
    }
    return count;
}

template <class T>
const T* SheetImplT<T>::namedRange(int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
    return _book->template guard<const T*>(nullptr, [&]() -> const T* {
        int tab = _book->getTabIndex(this), seen = 0;
        NameView view;
        for (auto& lbl : _book->lblRef()) {
            if (lbl.empty() || !readName(lbl.front(), view)) continue;
            if (view.cce != 11 && view.cce != 7) continue;
            const uint8_t* t = lbl.front().payload.data() + view.tokensAt;
            if (!_book->xtiCoversTab(static_cast<uint16_t>(get16(t + 1)), tab)) continue;
            if (seen++ != index) continue;
            bool area = view.cce == 11;
            if (rowFirst) *rowFirst = static_cast<int>(get16(t + 3));
            if (rowLast) *rowLast = static_cast<int>(get16(t + (area ? 5 : 3)));
            if (colFirst) *colFirst = static_cast<int>(get16(t + (area ? 7 : 5)) & 0x3FFF);
            if (colLast) *colLast = static_cast<int>(get16(t + (area ? 9 : 5)) & 0x3FFF);
            _nameText = view.name;
            return tc(_nameText.c_str());
        }
        throw zverror("index is out of range");
    });
}

// Print area (6) or print titles (7) as a built-in name of this sheet. Titles hold rows, columns or
// both; both make the union of two areas.
template <class T>
void SheetImplT<T>::setBuiltInArea(int number, int rowFirst, int rowLast, int colFirst, int colLast, bool rows) {
    uint16_t ixti = _book->makeXti(_name);
    std::vector<uint8_t> area = area3d(ixti, rowFirst, rowLast, colFirst, colLast);
    Biff<T>* lbl = findName(std::wstring(), true, number);
    if (!lbl) {
        addName(std::wstring(1, static_cast<wchar_t>(number)), true, area);
        return;
    }
    NameView view;
    readName(*lbl, view);
    std::vector<uint8_t> tokens(lbl->payload.begin() + static_cast<long>(view.tokensAt),
                                lbl->payload.begin() + static_cast<long>(view.tokensAt + view.cce));
    std::vector<uint8_t> rest(lbl->payload.begin() + static_cast<long>(view.tokensAt + view.cce), lbl->payload.end());
    if (number == 7 && tokens.size() == 26) {
        // Union: rows area at 3, columns area at 14.
        std::copy(area.begin(), area.end(), tokens.begin() + (rows ? 3 : 14));
    } else if (number == 7 && tokens.size() == 11) {
        bool holdsRows = get16(&tokens[7]) == 0 && (get16(&tokens[9]) & 0x3FFF) == 255;
        if (holdsRows == rows) {
            tokens = area;
        } else {
            std::vector<uint8_t> both = {0x29, 23, 0};
            const std::vector<uint8_t>& rowArea = rows ? area : tokens;
            const std::vector<uint8_t>& colArea = rows ? tokens : area;
            both.insert(both.end(), rowArea.begin(), rowArea.end());
            both.insert(both.end(), colArea.begin(), colArea.end());
            both.push_back(0x10);
            tokens = both;
        }
    } else {
        tokens = area;
    }
    lbl->payload.resize(view.tokensAt);
    lbl->payload.insert(lbl->payload.end(), tokens.begin(), tokens.end());
    lbl->payload.insert(lbl->payload.end(), rest.begin(), rest.end());
    put16(lbl->payload, 4, static_cast<unsigned>(tokens.size()));
}

template <class T>
void SheetImplT<T>::clearBuiltIn(int number) {
    int tab = _book->getTabIndex(this);
    NameView view;
    auto& lbls = _book->lblRef();
    for (size_t i = 0; i < lbls.size(); ++i) {
        if (lbls[i].empty() || !readName(lbls[i].front(), view)) continue;
        if (view.itab == tab + 1 && view.number == number) {
            lbls.erase(lbls.begin() + static_cast<long>(i));
            return;
        }
    }
}

template <class T>
void SheetImplT<T>::setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) {
    _book->guardVoid([&] { setBuiltInArea(6, rowFirst, rowLast, colFirst, colLast, true); });
}

template <class T>
void SheetImplT<T>::setPrintRepeatRows(int rowFirst, int rowLast) {
    _book->guardVoid([&] { setBuiltInArea(7, rowFirst, rowLast, 0, 255, true); });
}

template <class T>
void SheetImplT<T>::setPrintRepeatCols(int colFirst, int colLast) {
    _book->guardVoid([&] { setBuiltInArea(7, 0, 65535, colFirst, colLast, false); });
}

template <class T>
void SheetImplT<T>::clearPrintRepeats() {
    _book->guardVoid([&] { clearBuiltIn(7); });
}

template <class T>
void SheetImplT<T>::clearPrintArea() {
    _book->guardVoid([&] { clearBuiltIn(6); });
}

// After rows are inserted or removed, names of single areas and cells on this sheet move down.
// Removing rows raises a single cell's row as well, as inserting does; whole-column areas stay.
template <class T>
void SheetImplT<T>::updateNamedRange(int first, int last, bool isRow, bool isInsert) {
    const int count = last - first + 1;
    int tab = _book->getTabIndex(this);
    NameView view;
    for (auto& lbl : _book->lblRef()) {
        if (lbl.empty() || !readName(lbl.front(), view)) continue;
        std::vector<uint8_t>& p = lbl.front().payload;
        uint8_t* t = p.data() + view.tokensAt;
        if (view.cce < 3 || !_book->xtiCoversTab(static_cast<uint16_t>(get16(t + 1)), tab)) continue;
        if (t[0] == 0x3B && view.cce == 11) {
            unsigned rwFirst = get16(t + 3), rwLast = get16(t + 5);
            if (isRow && isInsert && !(rwFirst == 0 && rwLast == 65535)) {
                if (first <= static_cast<int>(rwLast)) rwLast += count;
                if (first <= static_cast<int>(rwFirst)) rwFirst += count;
                put16(p, view.tokensAt + 3, std::min(rwFirst, 65535u));
                put16(p, view.tokensAt + 5, std::min(rwLast, 65535u));
            }
        } else if (t[0] == 0x3A && view.cce == 7) {
            unsigned row = get16(t + 3);
            if (isRow && first <= static_cast<int>(row)) put16(p, view.tokensAt + 3, std::min(row + count, 65535u));
        }
    }
}

#define ZELVAR_INSTANTIATE(T)                                                              \
    template void SheetImplT<T>::updateNamedRange(int, int, bool, bool);                   \
    template bool SheetImplT<T>::setNamedRange(const T*, int, int, int, int);              \
    template bool SheetImplT<T>::getNamedRange(const T*, int*, int*, int*, int*);          \
    template bool SheetImplT<T>::delNamedRange(const T*);                                  \
    template int SheetImplT<T>::namedRangeSize() const;                                    \
    template const T* SheetImplT<T>::namedRange(int, int*, int*, int*, int*);              \
    template void SheetImplT<T>::setPrintArea(int, int, int, int);                         \
    template void SheetImplT<T>::setPrintRepeatRows(int, int);                             \
    template void SheetImplT<T>::setPrintRepeatCols(int, int);                             \
    template void SheetImplT<T>::clearPrintRepeats();                                      \
    template void SheetImplT<T>::clearPrintArea();
ZELVAR_INSTANTIATE(char)
ZELVAR_INSTANTIATE(wchar_t)
#undef ZELVAR_INSTANTIATE

}  // namespace zelvar
