// The flat C layer against the C++ interface it wraps: one script of calls covering every
// operation runs once through the C++ interface and once through the zv...A / zv...W functions,
// over both book families. Every result, every output argument and the book's message after each
// call go to a log; the two routes must write the same log and, for the binary family, save the
// same bytes. The char and wchar_t runs must agree as well, their texts compared as UTF-8.
#include "zelvar.h"
#include "zelvar_c.h"

#include "../officeart/officeart_test_util.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <deque>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

using namespace zelvar;

namespace {

std::string utf8(const char* text) { return text; }

std::string utf8(const wchar_t* text) {
    std::string out;
    for (; *text; ++text) {
        unsigned c = static_cast<unsigned>(*text);
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c < 0x800) {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            out += static_cast<char>(0xE0 | (c >> 12));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (c >> 18));
            out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

// The flat function of the width T: zv...A for char, zv...W for wchar_t.
template <class T, class NarrowFn, class WideFn>
auto pick(NarrowFn narrow, WideFn wide) {
    if constexpr (std::is_same_v<T, char>)
        return narrow;
    else
        return wide;
}

// C++ arguments as the flat functions take them: objects as handles, bool and enumerations as int.
template <class T> BookHandle toFlat(IBookT<T>* p) { return reinterpret_cast<BookHandle>(p); }
template <class T> SheetHandle toFlat(ISheetT<T>* p) { return reinterpret_cast<SheetHandle>(p); }
template <class T> FormatHandle toFlat(IFormatT<T>* p) { return reinterpret_cast<FormatHandle>(p); }
template <class T> FontHandle toFlat(IFontT<T>* p) { return reinterpret_cast<FontHandle>(p); }
template <class T> FormatHandle* toFlat(IFormatT<T>** p) { return reinterpret_cast<FormatHandle*>(p); }
template <class V>
auto toFlat(V v) {
    if constexpr (std::is_enum_v<V> || std::is_same_v<V, bool>)
        return static_cast<int>(v);
    else
        return v;
}

// A flat result as the C++ interface types it.
template <class R, class Raw>
R fromFlat(Raw raw) {
    if constexpr (std::is_pointer_v<R> && std::is_pointer_v<Raw> && !std::is_same_v<R, Raw>)
        return reinterpret_cast<R>(raw);
    else if constexpr (std::is_same_v<R, bool>)
        return raw != 0;
    else
        return static_cast<R>(raw);
}

// One run of the script: the book it works on, whether it goes through the flat layer, and
// the log it writes.
template <class T>
class Route {
public:
    Route(IBookT<T>* book, bool flat) : _book(book), _flat(flat) {}

    // Calls the operation through the route, logs its result and the book's message, and
    // returns the result as the C++ interface types it.
    template <class O, class Cpp, class Flat, class... A>
    auto call(const char* what, O* object, Cpp cpp, Flat flat, A... args) {
        using R = decltype(cpp(object, args...));
        if constexpr (std::is_void_v<R>) {
            if (_flat)
                flat(toFlat(object), toFlat(args)...);
            else
                cpp(object, args...);
            note(what, "-");
        } else {
            R result;
            if (_flat) {
                auto raw = flat(toFlat(object), toFlat(args)...);
                note(what, text(raw));
                result = fromFlat<R>(raw);
            } else {
                result = cpp(object, args...);
                note(what, text(result));
            }
            return result;
        }
    }

    // Output arguments and other observations go to the log as well.
    template <class... V>
    void out(const V&... values) {
        std::string line = "  out:";
        ((line += " " + text(values)), ...);
        _log.push_back(line);
    }

    // A literal in the text width of the run; kept alive as long as the route.
    const T* s(const char* text) {
        std::basic_string<T> wide;
        for (const unsigned char* p = reinterpret_cast<const unsigned char*>(text); *p;) {
            unsigned c = *p++;
            if (c >= 0xC0) {
                int more = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : 1;
                c &= 0x3F >> more;
                while (more-- > 0 && *p) c = (c << 6) | (*p++ & 0x3F);
            }
            wide += static_cast<T>(c);
        }
        if constexpr (std::is_same_v<T, char>) wide = text;
        _texts.push_back(wide);
        return _texts.back().c_str();
    }

    IBookT<T>* book() const { return _book; }
    bool flat() const { return _flat; }
    const std::vector<std::string>& log() const { return _log; }

private:
    void note(const char* what, const std::string& result) {
        _log.push_back(std::string(what) + " = " + result + " [" + utf8(_book->errorMessage()) + "]");
    }

    // Texts of either width: the book's message is 8-bit in both.
    template <class C>
    std::enable_if_t<std::is_same_v<C, char> || std::is_same_v<C, wchar_t>, std::string> text(const C* value) {
        return value ? "\"" + utf8(value) + "\"" : "null";
    }
    std::string text(bool value) { return value ? "1" : "0"; }
    std::string text(double value) {
        char buffer[32];
        std::snprintf(buffer, sizeof buffer, "%.17g", value);
        return buffer;
    }
    // Objects are named by the order they first show up in, so the two routes compare.
    std::string text(const void* object) {
        if (!object) return "null";
        auto it = _objects.emplace(object, static_cast<int>(_objects.size())).first;
        return "object " + std::to_string(it->second);
    }
    template <class V>
    std::enable_if_t<std::is_integral_v<V> || std::is_enum_v<V>, std::string> text(V value) {
        return std::to_string(static_cast<long long>(value));
    }

    IBookT<T>* _book;
    bool _flat;
    std::vector<std::string> _log;
    std::map<const void*, int> _objects;
    std::deque<std::basic_string<T>> _texts;
};

// One operation through the route r: the object, the C++ method, the flat name without its
// width letter, then the arguments.
#define CALL(object, method, flatName, ...)                                                  \
    r.call(#flatName, object, [](auto* o, auto... a) { return o->method(a...); },           \
           pick<T>(zv##flatName##A, zv##flatName##W), ##__VA_ARGS__)

// The script: every operation of the four interfaces at least once, with arguments that tell
// one parameter from another, and some calls that fail so that the messages are compared too.
// `path` names a file of this run, of the book's family, for load and save.
template <class T>
void script(Route<T>& r, const std::string& path) {
    IBookT<T>* book = r.book();
    const std::string png = zvtest::makePng(3, 2);

    // Book: sheets, formats, fonts, number formats.
    CALL(book, setLocale, BookSetLocale, "UTF-8");
    ISheetT<T>* sheet = CALL(book, addSheet, BookAddSheet, r.s("Data"), nullptr);
    ISheetT<T>* first = CALL(book, insertSheet, BookInsertSheet, 0, r.s("Grüße"), nullptr);
    CALL(book, insertSheet, BookInsertSheet, 7, r.s("Nowhere"), nullptr);
    CALL(book, addSheet, BookAddSheet, r.s("Copy"), first);
    CALL(book, addSheet, BookAddSheet, r.s("data"), nullptr);
    CALL(book, sheetCount, BookSheetCount);
    CALL(book, getSheet, BookGetSheet, 1);
    CALL(book, getSheet, BookGetSheet, 9);
    CALL(book, sheetType, BookSheetType, 0);
    CALL(book, sheetType, BookSheetType, -1);
    CALL(book, delSheet, BookDelSheet, 2);
    CALL(book, delSheet, BookDelSheet, 5);
    CALL(book, setActiveSheet, BookSetActiveSheet, 1);
    CALL(book, activeSheet, BookActiveSheet);
    CALL(book, formatSize, BookFormatSize);
    CALL(book, fontSize, BookFontSize);
    IFontT<T>* font = CALL(book, addFont, BookAddFont, nullptr);
    IFormatT<T>* fmt = CALL(book, addFormat, BookAddFormat, nullptr);
    IFormatT<T>* fmt2 = CALL(book, addFormat, BookAddFormat, fmt);
    CALL(book, addFont, BookAddFont, font);
    CALL(book, format, BookFormat, 0);
    CALL(book, format, BookFormat, 10000);
    CALL(book, font, BookFont, 0);
    CALL(book, font, BookFont, -2);
    int custom = CALL(book, addCustomNumFormat, BookAddCustomNumFormat, r.s("0.000 \"m²\""));
    CALL(book, addCustomNumFormat, BookAddCustomNumFormat, r.s("0.000 \"m²\""));
    CALL(book, customNumFormat, BookCustomNumFormat, custom);
    CALL(book, customNumFormat, BookCustomNumFormat, 3);

    // Book: dates, colours, the default font and the switches.
    double when = CALL(book, datePack, BookDatePack, 2026, 11, 23, 10, 29, 58, 250);
    int y = 0, mo = 0, d = 0, h = 0, mi = 0, sec = 0, ms = 0;
    CALL(book, dateUnpack, BookDateUnpack, when, &y, &mo, &d, &h, &mi, &sec, &ms);
    r.out(y, mo, d, h, mi, sec, ms);
    CALL(book, dateUnpack, BookDateUnpack, -5.0, &y, &mo, &d, &h, &mi, &sec, &ms);
    Color orange = CALL(book, colorPack, BookColorPack, 250, 120, 10);
    int red = 0, green = 0, blue = 0;
    CALL(book, colorUnpack, BookColorUnpack, orange, &red, &green, &blue);
    r.out(red, green, blue);
    CALL(book, colorUnpack, BookColorUnpack, ColorRed, &red, &green, &blue);
    r.out(red, green, blue);
    int points = 0;
    CALL(book, setDefaultFont, BookSetDefaultFont, r.s("Liberation Sans"), 13);
    CALL(book, defaultFont, BookDefaultFont, &points);
    r.out(points);
    CALL(book, refR1C1, BookRefR1C1);
    CALL(book, setRefR1C1, BookSetRefR1C1, true);
    CALL(book, refR1C1, BookRefR1C1);
    CALL(book, setRefR1C1, BookSetRefR1C1, false);
    CALL(book, rgbMode, BookRgbMode);
    CALL(book, setRgbMode, BookSetRgbMode, true);
    CALL(book, rgbMode, BookRgbMode);
    CALL(book, setRgbMode, BookSetRgbMode, false);
    CALL(book, version, BookVersion);
    CALL(book, biffVersion, BookBiffVersion);
    CALL(book, isDate1904, BookIsDate1904);
    CALL(book, setDate1904, BookSetDate1904, true);
    CALL(book, isDate1904, BookIsDate1904);
    CALL(book, setDate1904, BookSetDate1904, false);

    // Book: pictures, from memory and from a file.
    CALL(book, addPicture2, BookAddPicture2, png.data(), static_cast<unsigned>(png.size()));
    CALL(book, addPicture2, BookAddPicture2, "GIF89a", 6u);
    std::string picturePath = path + ".png";
    if (FILE* f = std::fopen(picturePath.c_str(), "wb")) {
        std::fwrite(png.data(), 1, png.size(), f);
        std::fclose(f);
    }
    CALL(book, addPicture, BookAddPicture, r.s(picturePath.c_str()));
    CALL(book, addPicture, BookAddPicture, r.s("/nonexistent/logo.png"));
    std::remove(picturePath.c_str());
    CALL(book, pictureSize, BookPictureSize);
    const char* data = nullptr;
    unsigned size = 0;
    CALL(book, getPicture, BookGetPicture, 1, &data, &size);
    r.out(size, data ? std::string(data, size) == png : false);
    CALL(book, getPicture, BookGetPicture, 4, &data, &size);

    // Font.
    CALL(font, setName, FontSetName, r.s("Liberation Serif"));
    CALL(font, name, FontName);
    CALL(font, setSize, FontSetSize, 17);
    CALL(font, size, FontSize);
    CALL(font, setItalic, FontSetItalic, true);
    CALL(font, italic, FontItalic);
    CALL(font, setStrikeOut, FontSetStrikeOut, true);
    CALL(font, strikeOut, FontStrikeOut);
    CALL(font, setColor, FontSetColor, ColorOlive);
    CALL(font, color, FontColor);
    CALL(font, setBold, FontSetBold, true);
    CALL(font, bold, FontBold);
    CALL(font, setScript, FontSetScript, ScriptSub);
    CALL(font, script, FontScript);
    CALL(font, setUnderline, FontSetUnderline, UnderlineDouble);
    CALL(font, underline, FontUnderline);

    // Format.
    CALL(fmt, setFont, FormatSetFont, font);
    CALL(fmt, font, FormatFont);
    CALL(fmt, setNumFormat, FormatSetNumFormat, custom);
    CALL(fmt, numFormat, FormatNumFormat);
    CALL(fmt, setAlignH, FormatSetAlignH, HAlignRight);
    CALL(fmt, alignH, FormatAlignH);
    CALL(fmt, setAlignV, FormatSetAlignV, VAlignCenter);
    CALL(fmt, alignV, FormatAlignV);
    CALL(fmt, setWrap, FormatSetWrap, true);
    CALL(fmt, wrap, FormatWrap);
    CALL(fmt, setRotation, FormatSetRotation, 45);
    CALL(fmt, setRotation, FormatSetRotation, 200);
    CALL(fmt, rotation, FormatRotation);
    CALL(fmt, setIndent, FormatSetIndent, 3);
    CALL(fmt, indent, FormatIndent);
    CALL(fmt, setShrinkToFit, FormatSetShrinkToFit, true);
    CALL(fmt, shrinkToFit, FormatShrinkToFit);
    CALL(fmt2, setBorder, FormatSetBorder, BorderDashed);
    CALL(fmt2, setBorderColor, FormatSetBorderColor, ColorBlue);
    CALL(fmt2, borderTop, FormatBorderTop);
    CALL(fmt2, borderLeftColor, FormatBorderLeftColor);
    CALL(fmt, setBorderLeft, FormatSetBorderLeft, BorderThin);
    CALL(fmt, setBorderRight, FormatSetBorderRight, BorderMedium);
    CALL(fmt, setBorderTop, FormatSetBorderTop, BorderThick);
    CALL(fmt, setBorderBottom, FormatSetBorderBottom, BorderDouble);
    CALL(fmt, borderLeft, FormatBorderLeft);
    CALL(fmt, borderRight, FormatBorderRight);
    CALL(fmt, borderTop, FormatBorderTop);
    CALL(fmt, borderBottom, FormatBorderBottom);
    CALL(fmt, setBorderLeftColor, FormatSetBorderLeftColor, ColorRed);
    CALL(fmt, setBorderRightColor, FormatSetBorderRightColor, ColorGreen);
    CALL(fmt, setBorderTopColor, FormatSetBorderTopColor, ColorBlue);
    CALL(fmt, setBorderBottomColor, FormatSetBorderBottomColor, ColorMaroon);
    CALL(fmt, borderLeftColor, FormatBorderLeftColor);
    CALL(fmt, borderRightColor, FormatBorderRightColor);
    CALL(fmt, borderTopColor, FormatBorderTopColor);
    CALL(fmt, borderBottomColor, FormatBorderBottomColor);
    CALL(fmt, setBorderDiagonal, FormatSetBorderDiagonal, DiagonalUp);
    CALL(fmt, borderDiagonal, FormatBorderDiagonal);
    CALL(fmt, setBorderDiagonalStyle, FormatSetBorderDiagonalStyle, BorderHair);
    CALL(fmt, borderDiagonalStyle, FormatBorderDiagonalStyle);
    CALL(fmt, setBorderDiagonalColor, FormatSetBorderDiagonalColor, ColorTeal);
    CALL(fmt, borderDiagonalColor, FormatBorderDiagonalColor);
    CALL(fmt, setFillPattern, FormatSetFillPattern, FillDarkGrid);
    CALL(fmt, fillPattern, FormatFillPattern);
    CALL(fmt, setPatternForegroundColor, FormatSetPatternForegroundColor, ColorSilver);
    CALL(fmt, patternForegroundColor, FormatPatternForegroundColor);
    CALL(fmt, setPatternBackgroundColor, FormatSetPatternBackgroundColor, ColorGray);
    CALL(fmt, patternBackgroundColor, FormatPatternBackgroundColor);
    CALL(fmt, setLocked, FormatSetLocked, false);
    CALL(fmt, locked, FormatLocked);
    CALL(fmt, setHidden, FormatSetHidden, true);
    CALL(fmt, hidden, FormatHidden);

    // Sheet: cells of every kind, read back with their formats.
    IFormatT<T>* got = nullptr;
    CALL(sheet, writeStr, SheetWriteStr, 1, 2, r.s("Straße"), fmt);
    CALL(sheet, readStr, SheetReadStr, 1, 2, &got);
    r.out(got);
    CALL(sheet, writeNum, SheetWriteNum, 2, 3, 1234.5, fmt2);
    CALL(sheet, readNum, SheetReadNum, 2, 3, &got);
    r.out(got);
    CALL(sheet, writeNum, SheetWriteNum, 70000, 1, 1.0, nullptr);
    CALL(sheet, writeBool, SheetWriteBool, 3, 1, true, nullptr);
    CALL(sheet, readBool, SheetReadBool, 3, 1, &got);
    CALL(sheet, writeBlank, SheetWriteBlank, 4, 4, fmt);
    CALL(sheet, readBlank, SheetReadBlank, 4, 4, &got);
    CALL(sheet, writeFormula, SheetWriteFormula, 5, 3, r.s("SUM(D3:D4)*2"), fmt2);
    CALL(sheet, readFormula, SheetReadFormula, 5, 3, &got);
    CALL(sheet, writeFormula, SheetWriteFormula, 6, 3, r.s("1/0"), nullptr);
    CALL(sheet, writeFormula, SheetWriteFormula, 7, 3, r.s("SUM("), nullptr);
    CALL(sheet, isFormula, SheetIsFormula, 5, 3);
    CALL(sheet, isFormula, SheetIsFormula, 1, 2);
    CALL(sheet, cellType, SheetCellType, 1, 2);
    CALL(sheet, cellType, SheetCellType, 3, 1);
    CALL(sheet, cellType, SheetCellType, 40, 40);
    CALL(sheet, cellFormat, SheetCellFormat, 2, 3);
    CALL(sheet, setCellFormat, SheetSetCellFormat, 3, 1, fmt);
    CALL(sheet, cellFormat, SheetCellFormat, 3, 1);
    CALL(sheet, writeNum, SheetWriteNum, 8, 0, when, fmt);
    CALL(sheet, isDate, SheetIsDate, 8, 0);
    CALL(sheet, readError, SheetReadError, 1, 2);
    CALL(sheet, writeComment, SheetWriteComment, 1, 2, r.s("a note"), r.s("Zoë"), 150, 80);
    CALL(sheet, readComment, SheetReadComment, 1, 2);
    CALL(sheet, readComment, SheetReadComment, 2, 2);
    CALL(sheet, copyCell, SheetCopyCell, 2, 3, 9, 5);
    CALL(sheet, readNum, SheetReadNum, 9, 5, &got);
    CALL(sheet, firstRow, SheetFirstRow);
    CALL(sheet, lastRow, SheetLastRow);
    CALL(sheet, firstCol, SheetFirstCol);
    CALL(sheet, lastCol, SheetLastCol);

    // Sheet: layout.
    CALL(sheet, setCol, SheetSetCol, 1, 3, 14.5, fmt2, false);
    CALL(sheet, setCol, SheetSetCol, 4, 2, 10.0, nullptr, false);
    CALL(sheet, colWidth, SheetColWidth, 2);
    CALL(sheet, setRow, SheetSetRow, 2, 21.75, nullptr, false);
    CALL(sheet, rowHeight, SheetRowHeight, 2);
    CALL(sheet, setRowHidden, SheetSetRowHidden, 11, true);
    CALL(sheet, rowHidden, SheetRowHidden, 11);
    CALL(sheet, setColHidden, SheetSetColHidden, 7, true);
    CALL(sheet, colHidden, SheetColHidden, 7);
    CALL(sheet, setMerge, SheetSetMerge, 12, 13, 1, 4);
    int r1 = -1, r2 = -1, c1 = -1, c2 = -1;
    CALL(sheet, getMerge, SheetGetMerge, 13, 2, &r1, &r2, &c1, &c2);
    r.out(r1, r2, c1, c2);
    CALL(sheet, delMerge, SheetDelMerge, 12, 3);
    CALL(sheet, getMerge, SheetGetMerge, 13, 2, &r1, &r2, &c1, &c2);
    CALL(sheet, setHorPageBreak, SheetSetHorPageBreak, 20, true);
    CALL(sheet, setVerPageBreak, SheetSetVerPageBreak, 6, true);
    CALL(sheet, getHorPageBreakSize, SheetGetHorPageBreakSize);
    CALL(sheet, getHorPageBreak, SheetGetHorPageBreak, 0);
    CALL(sheet, getVerPageBreakSize, SheetGetVerPageBreakSize);
    CALL(sheet, getVerPageBreak, SheetGetVerPageBreak, 0);
    CALL(sheet, getVerPageBreak, SheetGetVerPageBreak, 3);
    CALL(sheet, split, SheetSplit, 2, 1);
    CALL(sheet, groupRows, SheetGroupRows, 14, 16, true);
    CALL(sheet, groupCols, SheetGroupCols, 8, 9, false);
    CALL(sheet, setGroupSummaryBelow, SheetSetGroupSummaryBelow, false);
    CALL(sheet, groupSummaryBelow, SheetGroupSummaryBelow);
    CALL(sheet, setGroupSummaryRight, SheetSetGroupSummaryRight, false);
    CALL(sheet, groupSummaryRight, SheetGroupSummaryRight);
    CALL(sheet, setDisplayGridlines, SheetSetDisplayGridlines, false);
    CALL(sheet, displayGridlines, SheetDisplayGridlines);
    CALL(sheet, setPrintGridlines, SheetSetPrintGridlines, true);
    CALL(sheet, printGridlines, SheetPrintGridlines);
    CALL(sheet, setZoom, SheetSetZoom, 135);
    CALL(sheet, zoom, SheetZoom);
    CALL(sheet, setPrintZoom, SheetSetPrintZoom, 80);
    CALL(sheet, printZoom, SheetPrintZoom);
    int wide = -1, high = -1;
    CALL(sheet, setPrintFit, SheetSetPrintFit, 2, 3);
    CALL(sheet, getPrintFit, SheetGetPrintFit, &wide, &high);
    r.out(wide, high);
    CALL(sheet, setLandscape, SheetSetLandscape, true);
    CALL(sheet, landscape, SheetLandscape);
    CALL(sheet, setPaper, SheetSetPaper, PaperA4);
    CALL(sheet, paper, SheetPaper);
    CALL(sheet, setHeader, SheetSetHeader, r.s("&LLeft&RRight"), 0.4);
    CALL(sheet, header, SheetHeader);
    CALL(sheet, headerMargin, SheetHeaderMargin);
    CALL(sheet, setFooter, SheetSetFooter, r.s("Page &P"), 0.35);
    CALL(sheet, footer, SheetFooter);
    CALL(sheet, footerMargin, SheetFooterMargin);
    CALL(sheet, setHCenter, SheetSetHCenter, true);
    CALL(sheet, hCenter, SheetHCenter);
    CALL(sheet, setVCenter, SheetSetVCenter, true);
    CALL(sheet, vCenter, SheetVCenter);
    CALL(sheet, setMarginLeft, SheetSetMarginLeft, 0.6);
    CALL(sheet, setMarginRight, SheetSetMarginRight, 0.7);
    CALL(sheet, setMarginTop, SheetSetMarginTop, 0.8);
    CALL(sheet, setMarginBottom, SheetSetMarginBottom, 0.9);
    CALL(sheet, marginLeft, SheetMarginLeft);
    CALL(sheet, marginRight, SheetMarginRight);
    CALL(sheet, marginTop, SheetMarginTop);
    CALL(sheet, marginBottom, SheetMarginBottom);
    CALL(sheet, setPrintRowCol, SheetSetPrintRowCol, true);
    CALL(sheet, printRowCol, SheetPrintRowCol);
    CALL(sheet, setProtect, SheetSetProtect, true);
    CALL(sheet, protect, SheetProtect);
    CALL(sheet, setTopLeftView, SheetSetTopLeftView, 5, 2);
    int top = -1, left = -1;
    CALL(sheet, getTopLeftView, SheetGetTopLeftView, &top, &left);
    r.out(top, left);

    // Sheet: names, print area and titles, pictures, the sheet's own name and state.
    CALL(sheet, setNamedRange, SheetSetNamedRange, r.s("Prices"), 1, 4, 2, 3);
    CALL(sheet, getNamedRange, SheetGetNamedRange, r.s("Prices"), &r1, &r2, &c1, &c2);
    r.out(r1, r2, c1, c2);
    CALL(sheet, namedRangeSize, SheetNamedRangeSize);
    CALL(sheet, namedRange, SheetNamedRange, 0, &r1, &r2, &c1, &c2);
    r.out(r1, r2, c1, c2);
    CALL(sheet, setPrintRepeatRows, SheetSetPrintRepeatRows, 0, 1);
    CALL(sheet, setPrintRepeatCols, SheetSetPrintRepeatCols, 0, 0);
    CALL(sheet, setPrintArea, SheetSetPrintArea, 0, 30, 0, 6);
    CALL(sheet, namedRangeSize, SheetNamedRangeSize);
    CALL(sheet, clearPrintRepeats, SheetClearPrintRepeats);
    CALL(sheet, clearPrintArea, SheetClearPrintArea);
    CALL(sheet, delNamedRange, SheetDelNamedRange, r.s("Prices"));
    CALL(sheet, delNamedRange, SheetDelNamedRange, r.s("Prices"));
    CALL(sheet, setPicture, SheetSetPicture, 18, 1, 0, 2.0, 3, 4);
    CALL(sheet, setPicture2, SheetSetPicture2, 20, 2, 1, 40, 30, 1, 2);
    CALL(sheet, setPicture2, SheetSetPicture2, 22, 2, 9, 40, 30, 0, 0);
    CALL(sheet, pictureSize, SheetPictureSize);
    int pr1, pc1, pr2, pc2, pw, ph, px, py;
    CALL(sheet, getPicture, SheetGetPicture, 1, &pr1, &pc1, &pr2, &pc2, &pw, &ph, &px, &py);
    r.out(pr1, pc1, pr2, pc2, pw, ph, px, py);
    CALL(first, setName, SheetSetName, r.s("Erste"));
    CALL(first, name, SheetName);
    CALL(first, setHidden, SheetSetHidden, SheetHidden);
    CALL(first, hidden, SheetHidden);
    CALL(first, setHidden, SheetSetHidden, SheetVisible);

    // Sheet: addresses and structural edits.
    // The relative flags are bool* here and int* in C, which the call table can't map.
    int row = -1, col = -1, rowRel = -1, colRel = -1;
    if (r.flat()) {
        pick<T>(zvSheetAddrToRowColA, zvSheetAddrToRowColW)(toFlat(sheet), r.s("$C7"), &row, &col, &rowRel, &colRel);
    } else {
        bool rowRelative = false, colRelative = true;
        sheet->addrToRowCol(r.s("$C7"), &row, &col, &rowRelative, &colRelative);
        rowRel = rowRelative, colRel = colRelative;
    }
    r.out(row, col, rowRel, colRel);
    CALL(sheet, addrToRowCol, SheetAddrToRowCol, r.s("AB$12"), &row, &col, nullptr, nullptr);
    r.out(row, col);
    CALL(sheet, rowColToAddr, SheetRowColToAddr, 6, 27, false, true);
    CALL(sheet, insertRow, SheetInsertRow, 2, 3);
    CALL(sheet, insertCol, SheetInsertCol, 1, 1);
    CALL(sheet, readNum, SheetReadNum, 4, 4, &got);
    CALL(sheet, removeRow, SheetRemoveRow, 2, 3);
    CALL(sheet, removeCol, SheetRemoveCol, 1, 1);
    CALL(sheet, readNum, SheetReadNum, 2, 3, &got);
    CALL(sheet, insertRow, SheetInsertRow, 5, 4);
    CALL(sheet, clear, SheetClear, 3, 3, 0, 5);
    CALL(sheet, cellType, SheetCellType, 3, 1);

    // Save, load again and read some of it back; then the same through memory.
    CALL(book, save, BookSave, r.s(path.c_str()));
    CALL(book, load, BookLoad, r.s(path.c_str()));
    std::remove(path.c_str());
    CALL(book, load, BookLoad, r.s("/nonexistent/book.xls"));
    CALL(book, errorMessage, BookErrorMessage);
    const char* saved = nullptr;
    unsigned savedSize = 0;
    CALL(book, saveRaw, BookSaveRaw, &saved, &savedSize);
    std::string bytes = saved ? std::string(saved, savedSize) : std::string();
    CALL(book, loadRaw, BookLoadRaw, bytes.data(), static_cast<unsigned>(bytes.size()));
    CALL(book, loadRaw, BookLoadRaw, "junk", 4u);
    CALL(book, loadRaw, BookLoadRaw, bytes.data(), static_cast<unsigned>(bytes.size()));
    ISheetT<T>* again = CALL(book, getSheet, BookGetSheet, 1);
    if (again) {
        CALL(again, name, SheetName);
        CALL(again, readStr, SheetReadStr, 1, 2, &got);
        CALL(again, readFormula, SheetReadFormula, 5, 3, &got);
        CALL(again, readComment, SheetReadComment, 1, 2);
        CALL(again, colWidth, SheetColWidth, 2);
        CALL(again, pictureSize, SheetPictureSize);
    }
    r.out(bytes.size() > 0);
}

template <class T>
IBookT<T>* createBook(bool xml);
template <>
IBookT<char>* createBook<char>(bool xml) { return xml ? zvCreateXMLBookA() : zvCreateBookA(); }
template <>
IBookT<wchar_t>* createBook<wchar_t>(bool xml) { return xml ? zvCreateXMLBookW() : zvCreateBookW(); }

// Runs the script once through the route; returns its log and the bytes the book saves at the end.
template <class T>
std::vector<std::string> run(bool xml, bool flat, std::string* saved) {
    IBookT<T>* book = createBook<T>(xml);
    Route<T> r(book, flat);
    std::string path = std::string(ZELVAR_TEST_TMP) + "/flat-layer-" + (xml ? "xml-" : "bin-") +
                          (flat ? "flat-" : "cpp-") + (std::is_same_v<T, char> ? "a" : "w") +
                          (xml ? ".xlsx" : ".xls");
    script(r, path);
    const char* data = nullptr;
    unsigned size = 0;
    if (book->saveRaw(&data, &size)) saved->assign(data, size);
    if (flat)
        pick<T>(zvBookReleaseA, zvBookReleaseW)(toFlat(book));
    else
        book->release();
    return r.log();
}

void expectSameLogs(const std::vector<std::string>& cpp, const std::vector<std::string>& flat) {
    ASSERT_EQ(cpp.size(), flat.size());
    for (size_t i = 0; i < cpp.size(); ++i) EXPECT_EQ(cpp[i], flat[i]) << "step " << i;
}

class FlatLayer : public ::testing::TestWithParam<bool> {};

TEST_P(FlatLayer, EveryFunctionAgreesWithTheInterfaceItWraps) {
    bool xml = GetParam();
    std::string cppA, flatA, cppW, flatW;
    auto logCppA = run<char>(xml, false, &cppA);
    auto logFlatA = run<char>(xml, true, &flatA);
    auto logCppW = run<wchar_t>(xml, false, &cppW);
    auto logFlatW = run<wchar_t>(xml, true, &flatW);
    {
        SCOPED_TRACE("char: C++ against zv...A");
        expectSameLogs(logCppA, logFlatA);
    }
    {
        SCOPED_TRACE("wchar_t: C++ against zv...W");
        expectSameLogs(logCppW, logFlatW);
    }
    {
        SCOPED_TRACE("char against wchar_t");
        expectSameLogs(logCppA, logCppW);
    }
    // The XML family stamps the time into its package; the binary family writes the same bytes.
    if (!xml) {
        EXPECT_EQ(cppA, flatA);
        EXPECT_EQ(cppW, flatW);
        EXPECT_EQ(cppA, cppW);
    }
}

INSTANTIATE_TEST_SUITE_P(BothFamilies, FlatLayer, ::testing::Values(false, true),
                         [](const ::testing::TestParamInfo<bool>& info) { return info.param ? "Xml" : "Binary"; });

}  // namespace
