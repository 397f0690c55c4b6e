// The flat C layer: one exported function per interface operation and text width.
// Generated from include/zelvar.h by tools/gen_flat.py; do not edit.
// No guard stands here: every operation catches its own failures and keeps the message.
#include "zelvar.h"
#include "zelvar_c.h"

extern "C" {

// Book, char
ZELVAR_API int zvBookLoadA(BookHandle handle, const char* filename) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->load(filename) ? 1 : 0;
}
ZELVAR_API int zvBookSaveA(BookHandle handle, const char* filename) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->save(filename) ? 1 : 0;
}
ZELVAR_API int zvBookLoadRawA(BookHandle handle, const char* data, unsigned size) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->loadRaw(data, size) ? 1 : 0;
}
ZELVAR_API int zvBookSaveRawA(BookHandle handle, const char** data, unsigned* size) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->saveRaw(data, size) ? 1 : 0;
}
ZELVAR_API SheetHandle zvBookAddSheetA(BookHandle handle, const char* name, SheetHandle initSheet) {
    return reinterpret_cast<SheetHandle>(reinterpret_cast<zelvar::IBookT<char>*>(handle)->addSheet(name, reinterpret_cast<zelvar::ISheetT<char>*>(initSheet)));
}
ZELVAR_API SheetHandle zvBookInsertSheetA(BookHandle handle, int index, const char* name, SheetHandle initSheet) {
    return reinterpret_cast<SheetHandle>(reinterpret_cast<zelvar::IBookT<char>*>(handle)->insertSheet(index, name, reinterpret_cast<zelvar::ISheetT<char>*>(initSheet)));
}
ZELVAR_API SheetHandle zvBookGetSheetA(BookHandle handle, int index) {
    return reinterpret_cast<SheetHandle>(reinterpret_cast<zelvar::IBookT<char>*>(handle)->getSheet(index));
}
ZELVAR_API int zvBookSheetTypeA(BookHandle handle, int index) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->sheetType(index);
}
ZELVAR_API int zvBookDelSheetA(BookHandle handle, int index) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->delSheet(index) ? 1 : 0;
}
ZELVAR_API int zvBookSheetCountA(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->sheetCount();
}
ZELVAR_API FormatHandle zvBookAddFormatA(BookHandle handle, FormatHandle initFormat) {
    return reinterpret_cast<FormatHandle>(reinterpret_cast<zelvar::IBookT<char>*>(handle)->addFormat(reinterpret_cast<zelvar::IFormatT<char>*>(initFormat)));
}
ZELVAR_API FontHandle zvBookAddFontA(BookHandle handle, FontHandle initFont) {
    return reinterpret_cast<FontHandle>(reinterpret_cast<zelvar::IBookT<char>*>(handle)->addFont(reinterpret_cast<zelvar::IFontT<char>*>(initFont)));
}
ZELVAR_API int zvBookAddCustomNumFormatA(BookHandle handle, const char* customNumFormat) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->addCustomNumFormat(customNumFormat);
}
ZELVAR_API const char* zvBookCustomNumFormatA(BookHandle handle, int fmt) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->customNumFormat(fmt);
}
ZELVAR_API FormatHandle zvBookFormatA(BookHandle handle, int index) {
    return reinterpret_cast<FormatHandle>(reinterpret_cast<zelvar::IBookT<char>*>(handle)->format(index));
}
ZELVAR_API int zvBookFormatSizeA(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->formatSize();
}
ZELVAR_API FontHandle zvBookFontA(BookHandle handle, int index) {
    return reinterpret_cast<FontHandle>(reinterpret_cast<zelvar::IBookT<char>*>(handle)->font(index));
}
ZELVAR_API int zvBookFontSizeA(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->fontSize();
}
ZELVAR_API double zvBookDatePackA(BookHandle handle, int year, int month, int day, int hour, int min, int sec, int msec) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->datePack(year, month, day, hour, min, sec, msec);
}
ZELVAR_API int zvBookDateUnpackA(BookHandle handle, double value, int* year, int* month, int* day, int* hour, int* min, int* sec, int* msec) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->dateUnpack(value, year, month, day, hour, min, sec, msec) ? 1 : 0;
}
ZELVAR_API int zvBookColorPackA(BookHandle handle, int red, int green, int blue) {
    return static_cast<int>(reinterpret_cast<zelvar::IBookT<char>*>(handle)->colorPack(red, green, blue));
}
ZELVAR_API void zvBookColorUnpackA(BookHandle handle, int color, int* red, int* green, int* blue) {
    reinterpret_cast<zelvar::IBookT<char>*>(handle)->colorUnpack(static_cast<zelvar::Color>(color), red, green, blue);
}
ZELVAR_API int zvBookActiveSheetA(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->activeSheet();
}
ZELVAR_API void zvBookSetActiveSheetA(BookHandle handle, int index) {
    reinterpret_cast<zelvar::IBookT<char>*>(handle)->setActiveSheet(index);
}
ZELVAR_API int zvBookPictureSizeA(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->pictureSize();
}
ZELVAR_API int zvBookGetPictureA(BookHandle handle, int index, const char** data, unsigned* size) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->getPicture(index, data, size);
}
ZELVAR_API int zvBookAddPictureA(BookHandle handle, const char* filename) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->addPicture(filename);
}
ZELVAR_API int zvBookAddPicture2A(BookHandle handle, const char* data, unsigned size) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->addPicture2(data, size);
}
ZELVAR_API const char* zvBookDefaultFontA(BookHandle handle, int* size) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->defaultFont(size);
}
ZELVAR_API void zvBookSetDefaultFontA(BookHandle handle, const char* name, int size) {
    reinterpret_cast<zelvar::IBookT<char>*>(handle)->setDefaultFont(name, size);
}
ZELVAR_API int zvBookRefR1C1A(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->refR1C1() ? 1 : 0;
}
ZELVAR_API void zvBookSetRefR1C1A(BookHandle handle, int refR1C1) {
    reinterpret_cast<zelvar::IBookT<char>*>(handle)->setRefR1C1(refR1C1 != 0);
}
ZELVAR_API int zvBookRgbModeA(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->rgbMode() ? 1 : 0;
}
ZELVAR_API void zvBookSetRgbModeA(BookHandle handle, int rgbMode) {
    reinterpret_cast<zelvar::IBookT<char>*>(handle)->setRgbMode(rgbMode != 0);
}
ZELVAR_API int zvBookVersionA(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->version();
}
ZELVAR_API int zvBookBiffVersionA(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->biffVersion();
}
ZELVAR_API int zvBookIsDate1904A(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->isDate1904() ? 1 : 0;
}
ZELVAR_API void zvBookSetDate1904A(BookHandle handle, int date1904) {
    reinterpret_cast<zelvar::IBookT<char>*>(handle)->setDate1904(date1904 != 0);
}
ZELVAR_API int zvBookSetLocaleA(BookHandle handle, const char* locale) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->setLocale(locale) ? 1 : 0;
}
ZELVAR_API const char* zvBookErrorMessageA(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<char>*>(handle)->errorMessage();
}
ZELVAR_API void zvBookReleaseA(BookHandle handle) {
    reinterpret_cast<zelvar::IBookT<char>*>(handle)->release();
}

// Book, wchar_t
ZELVAR_API int zvBookLoadW(BookHandle handle, const wchar_t* filename) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->load(filename) ? 1 : 0;
}
ZELVAR_API int zvBookSaveW(BookHandle handle, const wchar_t* filename) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->save(filename) ? 1 : 0;
}
ZELVAR_API int zvBookLoadRawW(BookHandle handle, const char* data, unsigned size) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->loadRaw(data, size) ? 1 : 0;
}
ZELVAR_API int zvBookSaveRawW(BookHandle handle, const char** data, unsigned* size) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->saveRaw(data, size) ? 1 : 0;
}
ZELVAR_API SheetHandle zvBookAddSheetW(BookHandle handle, const wchar_t* name, SheetHandle initSheet) {
    return reinterpret_cast<SheetHandle>(reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->addSheet(name, reinterpret_cast<zelvar::ISheetT<wchar_t>*>(initSheet)));
}
ZELVAR_API SheetHandle zvBookInsertSheetW(BookHandle handle, int index, const wchar_t* name, SheetHandle initSheet) {
    return reinterpret_cast<SheetHandle>(reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->insertSheet(index, name, reinterpret_cast<zelvar::ISheetT<wchar_t>*>(initSheet)));
}
ZELVAR_API SheetHandle zvBookGetSheetW(BookHandle handle, int index) {
    return reinterpret_cast<SheetHandle>(reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->getSheet(index));
}
ZELVAR_API int zvBookSheetTypeW(BookHandle handle, int index) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->sheetType(index);
}
ZELVAR_API int zvBookDelSheetW(BookHandle handle, int index) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->delSheet(index) ? 1 : 0;
}
ZELVAR_API int zvBookSheetCountW(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->sheetCount();
}
ZELVAR_API FormatHandle zvBookAddFormatW(BookHandle handle, FormatHandle initFormat) {
    return reinterpret_cast<FormatHandle>(reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->addFormat(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(initFormat)));
}
ZELVAR_API FontHandle zvBookAddFontW(BookHandle handle, FontHandle initFont) {
    return reinterpret_cast<FontHandle>(reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->addFont(reinterpret_cast<zelvar::IFontT<wchar_t>*>(initFont)));
}
ZELVAR_API int zvBookAddCustomNumFormatW(BookHandle handle, const wchar_t* customNumFormat) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->addCustomNumFormat(customNumFormat);
}
ZELVAR_API const wchar_t* zvBookCustomNumFormatW(BookHandle handle, int fmt) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->customNumFormat(fmt);
}
ZELVAR_API FormatHandle zvBookFormatW(BookHandle handle, int index) {
    return reinterpret_cast<FormatHandle>(reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->format(index));
}
ZELVAR_API int zvBookFormatSizeW(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->formatSize();
}
ZELVAR_API FontHandle zvBookFontW(BookHandle handle, int index) {
    return reinterpret_cast<FontHandle>(reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->font(index));
}
ZELVAR_API int zvBookFontSizeW(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->fontSize();
}
ZELVAR_API double zvBookDatePackW(BookHandle handle, int year, int month, int day, int hour, int min, int sec, int msec) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->datePack(year, month, day, hour, min, sec, msec);
}
ZELVAR_API int zvBookDateUnpackW(BookHandle handle, double value, int* year, int* month, int* day, int* hour, int* min, int* sec, int* msec) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->dateUnpack(value, year, month, day, hour, min, sec, msec) ? 1 : 0;
}
ZELVAR_API int zvBookColorPackW(BookHandle handle, int red, int green, int blue) {
    return static_cast<int>(reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->colorPack(red, green, blue));
}
ZELVAR_API void zvBookColorUnpackW(BookHandle handle, int color, int* red, int* green, int* blue) {
    reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->colorUnpack(static_cast<zelvar::Color>(color), red, green, blue);
}
ZELVAR_API int zvBookActiveSheetW(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->activeSheet();
}
ZELVAR_API void zvBookSetActiveSheetW(BookHandle handle, int index) {
    reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->setActiveSheet(index);
}
ZELVAR_API int zvBookPictureSizeW(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->pictureSize();
}
ZELVAR_API int zvBookGetPictureW(BookHandle handle, int index, const char** data, unsigned* size) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->getPicture(index, data, size);
}
ZELVAR_API int zvBookAddPictureW(BookHandle handle, const wchar_t* filename) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->addPicture(filename);
}
ZELVAR_API int zvBookAddPicture2W(BookHandle handle, const char* data, unsigned size) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->addPicture2(data, size);
}
ZELVAR_API const wchar_t* zvBookDefaultFontW(BookHandle handle, int* size) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->defaultFont(size);
}
ZELVAR_API void zvBookSetDefaultFontW(BookHandle handle, const wchar_t* name, int size) {
    reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->setDefaultFont(name, size);
}
ZELVAR_API int zvBookRefR1C1W(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->refR1C1() ? 1 : 0;
}
ZELVAR_API void zvBookSetRefR1C1W(BookHandle handle, int refR1C1) {
    reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->setRefR1C1(refR1C1 != 0);
}
ZELVAR_API int zvBookRgbModeW(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->rgbMode() ? 1 : 0;
}
ZELVAR_API void zvBookSetRgbModeW(BookHandle handle, int rgbMode) {
    reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->setRgbMode(rgbMode != 0);
}
ZELVAR_API int zvBookVersionW(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->version();
}
ZELVAR_API int zvBookBiffVersionW(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->biffVersion();
}
ZELVAR_API int zvBookIsDate1904W(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->isDate1904() ? 1 : 0;
}
ZELVAR_API void zvBookSetDate1904W(BookHandle handle, int date1904) {
    reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->setDate1904(date1904 != 0);
}
ZELVAR_API int zvBookSetLocaleW(BookHandle handle, const char* locale) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->setLocale(locale) ? 1 : 0;
}
ZELVAR_API const char* zvBookErrorMessageW(BookHandle handle) {
    return reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->errorMessage();
}
ZELVAR_API void zvBookReleaseW(BookHandle handle) {
    reinterpret_cast<zelvar::IBookT<wchar_t>*>(handle)->release();
}

// Sheet, char
ZELVAR_API int zvSheetCellTypeA(SheetHandle handle, int row, int col) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->cellType(row, col);
}
ZELVAR_API int zvSheetIsFormulaA(SheetHandle handle, int row, int col) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->isFormula(row, col) ? 1 : 0;
}
ZELVAR_API FormatHandle zvSheetCellFormatA(SheetHandle handle, int row, int col) {
    return reinterpret_cast<FormatHandle>(reinterpret_cast<zelvar::ISheetT<char>*>(handle)->cellFormat(row, col));
}
ZELVAR_API void zvSheetSetCellFormatA(SheetHandle handle, int row, int col, FormatHandle format) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setCellFormat(row, col, reinterpret_cast<zelvar::IFormatT<char>*>(format));
}
ZELVAR_API const char* zvSheetReadStrA(SheetHandle handle, int row, int col, FormatHandle* format) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->readStr(row, col, reinterpret_cast<zelvar::IFormatT<char>**>(format));
}
ZELVAR_API int zvSheetWriteStrA(SheetHandle handle, int row, int col, const char* value, FormatHandle format) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->writeStr(row, col, value, reinterpret_cast<zelvar::IFormatT<char>*>(format)) ? 1 : 0;
}
ZELVAR_API double zvSheetReadNumA(SheetHandle handle, int row, int col, FormatHandle* format) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->readNum(row, col, reinterpret_cast<zelvar::IFormatT<char>**>(format));
}
ZELVAR_API int zvSheetWriteNumA(SheetHandle handle, int row, int col, double value, FormatHandle format) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->writeNum(row, col, value, reinterpret_cast<zelvar::IFormatT<char>*>(format)) ? 1 : 0;
}
ZELVAR_API int zvSheetReadBoolA(SheetHandle handle, int row, int col, FormatHandle* format) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->readBool(row, col, reinterpret_cast<zelvar::IFormatT<char>**>(format)) ? 1 : 0;
}
ZELVAR_API int zvSheetWriteBoolA(SheetHandle handle, int row, int col, int value, FormatHandle format) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->writeBool(row, col, value != 0, reinterpret_cast<zelvar::IFormatT<char>*>(format)) ? 1 : 0;
}
ZELVAR_API int zvSheetReadBlankA(SheetHandle handle, int row, int col, FormatHandle* format) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->readBlank(row, col, reinterpret_cast<zelvar::IFormatT<char>**>(format)) ? 1 : 0;
}
ZELVAR_API int zvSheetWriteBlankA(SheetHandle handle, int row, int col, FormatHandle format) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->writeBlank(row, col, reinterpret_cast<zelvar::IFormatT<char>*>(format)) ? 1 : 0;
}
ZELVAR_API const char* zvSheetReadFormulaA(SheetHandle handle, int row, int col, FormatHandle* format) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->readFormula(row, col, reinterpret_cast<zelvar::IFormatT<char>**>(format));
}
ZELVAR_API int zvSheetWriteFormulaA(SheetHandle handle, int row, int col, const char* value, FormatHandle format) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->writeFormula(row, col, value, reinterpret_cast<zelvar::IFormatT<char>*>(format)) ? 1 : 0;
}
ZELVAR_API const char* zvSheetReadCommentA(SheetHandle handle, int row, int col) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->readComment(row, col);
}
ZELVAR_API void zvSheetWriteCommentA(SheetHandle handle, int row, int col, const char* value, const char* author, int width, int height) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->writeComment(row, col, value, author, width, height);
}
ZELVAR_API int zvSheetIsDateA(SheetHandle handle, int row, int col) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->isDate(row, col) ? 1 : 0;
}
ZELVAR_API int zvSheetReadErrorA(SheetHandle handle, int row, int col) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->readError(row, col);
}
ZELVAR_API double zvSheetColWidthA(SheetHandle handle, int col) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->colWidth(col);
}
ZELVAR_API double zvSheetRowHeightA(SheetHandle handle, int row) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->rowHeight(row);
}
ZELVAR_API int zvSheetSetColA(SheetHandle handle, int colFirst, int colLast, double width, FormatHandle format, int hidden) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setCol(colFirst, colLast, width, reinterpret_cast<zelvar::IFormatT<char>*>(format), hidden != 0) ? 1 : 0;
}
ZELVAR_API int zvSheetSetRowA(SheetHandle handle, int row, double height, FormatHandle format, int hidden) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setRow(row, height, reinterpret_cast<zelvar::IFormatT<char>*>(format), hidden != 0) ? 1 : 0;
}
ZELVAR_API int zvSheetRowHiddenA(SheetHandle handle, int row) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->rowHidden(row) ? 1 : 0;
}
ZELVAR_API int zvSheetSetRowHiddenA(SheetHandle handle, int row, int hidden) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setRowHidden(row, hidden != 0) ? 1 : 0;
}
ZELVAR_API int zvSheetColHiddenA(SheetHandle handle, int col) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->colHidden(col) ? 1 : 0;
}
ZELVAR_API int zvSheetSetColHiddenA(SheetHandle handle, int col, int hidden) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setColHidden(col, hidden != 0) ? 1 : 0;
}
ZELVAR_API int zvSheetGetMergeA(SheetHandle handle, int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->getMerge(row, col, rowFirst, rowLast, colFirst, colLast) ? 1 : 0;
}
ZELVAR_API int zvSheetSetMergeA(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setMerge(rowFirst, rowLast, colFirst, colLast) ? 1 : 0;
}
ZELVAR_API int zvSheetDelMergeA(SheetHandle handle, int row, int col) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->delMerge(row, col) ? 1 : 0;
}
ZELVAR_API int zvSheetPictureSizeA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->pictureSize();
}
ZELVAR_API int zvSheetGetPictureA(SheetHandle handle, int index, int* rowTop, int* colLeft, int* rowBottom, int* colRight, int* width, int* height, int* offsetX, int* offsetY) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->getPicture(index, rowTop, colLeft, rowBottom, colRight, width, height, offsetX, offsetY);
}
ZELVAR_API void zvSheetSetPictureA(SheetHandle handle, int row, int col, int pictureId, double scale, int offsetX, int offsetY) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setPicture(row, col, pictureId, scale, offsetX, offsetY);
}
ZELVAR_API void zvSheetSetPicture2A(SheetHandle handle, int row, int col, int pictureId, int width, int height, int offsetX, int offsetY) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setPicture2(row, col, pictureId, width, height, offsetX, offsetY);
}
ZELVAR_API int zvSheetGetHorPageBreakA(SheetHandle handle, int index) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->getHorPageBreak(index);
}
ZELVAR_API int zvSheetGetHorPageBreakSizeA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->getHorPageBreakSize();
}
ZELVAR_API int zvSheetGetVerPageBreakA(SheetHandle handle, int index) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->getVerPageBreak(index);
}
ZELVAR_API int zvSheetGetVerPageBreakSizeA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->getVerPageBreakSize();
}
ZELVAR_API int zvSheetSetHorPageBreakA(SheetHandle handle, int row, int pageBreak) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setHorPageBreak(row, pageBreak != 0) ? 1 : 0;
}
ZELVAR_API int zvSheetSetVerPageBreakA(SheetHandle handle, int col, int pageBreak) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setVerPageBreak(col, pageBreak != 0) ? 1 : 0;
}
ZELVAR_API void zvSheetSplitA(SheetHandle handle, int row, int col) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->split(row, col);
}
ZELVAR_API int zvSheetGroupRowsA(SheetHandle handle, int rowFirst, int rowLast, int collapsed) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->groupRows(rowFirst, rowLast, collapsed != 0) ? 1 : 0;
}
ZELVAR_API int zvSheetGroupColsA(SheetHandle handle, int colFirst, int colLast, int collapsed) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->groupCols(colFirst, colLast, collapsed != 0) ? 1 : 0;
}
ZELVAR_API int zvSheetGroupSummaryBelowA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->groupSummaryBelow() ? 1 : 0;
}
ZELVAR_API void zvSheetSetGroupSummaryBelowA(SheetHandle handle, int below) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setGroupSummaryBelow(below != 0);
}
ZELVAR_API int zvSheetGroupSummaryRightA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->groupSummaryRight() ? 1 : 0;
}
ZELVAR_API void zvSheetSetGroupSummaryRightA(SheetHandle handle, int right) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setGroupSummaryRight(right != 0);
}
ZELVAR_API int zvSheetClearA(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->clear(rowFirst, rowLast, colFirst, colLast) ? 1 : 0;
}
ZELVAR_API int zvSheetInsertColA(SheetHandle handle, int colFirst, int colLast) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->insertCol(colFirst, colLast) ? 1 : 0;
}
ZELVAR_API int zvSheetInsertRowA(SheetHandle handle, int rowFirst, int rowLast) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->insertRow(rowFirst, rowLast) ? 1 : 0;
}
ZELVAR_API int zvSheetRemoveColA(SheetHandle handle, int colFirst, int colLast) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->removeCol(colFirst, colLast) ? 1 : 0;
}
ZELVAR_API int zvSheetRemoveRowA(SheetHandle handle, int rowFirst, int rowLast) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->removeRow(rowFirst, rowLast) ? 1 : 0;
}
ZELVAR_API int zvSheetCopyCellA(SheetHandle handle, int rowSrc, int colSrc, int rowDst, int colDst) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->copyCell(rowSrc, colSrc, rowDst, colDst) ? 1 : 0;
}
ZELVAR_API int zvSheetFirstRowA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->firstRow();
}
ZELVAR_API int zvSheetLastRowA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->lastRow();
}
ZELVAR_API int zvSheetFirstColA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->firstCol();
}
ZELVAR_API int zvSheetLastColA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->lastCol();
}
ZELVAR_API int zvSheetDisplayGridlinesA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->displayGridlines() ? 1 : 0;
}
ZELVAR_API void zvSheetSetDisplayGridlinesA(SheetHandle handle, int show) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setDisplayGridlines(show != 0);
}
ZELVAR_API int zvSheetPrintGridlinesA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->printGridlines() ? 1 : 0;
}
ZELVAR_API void zvSheetSetPrintGridlinesA(SheetHandle handle, int print) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setPrintGridlines(print != 0);
}
ZELVAR_API int zvSheetZoomA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->zoom();
}
ZELVAR_API void zvSheetSetZoomA(SheetHandle handle, int zoom) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setZoom(zoom);
}
ZELVAR_API int zvSheetPrintZoomA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->printZoom();
}
ZELVAR_API void zvSheetSetPrintZoomA(SheetHandle handle, int zoom) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setPrintZoom(zoom);
}
ZELVAR_API int zvSheetGetPrintFitA(SheetHandle handle, int* wPages, int* hPages) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->getPrintFit(wPages, hPages) ? 1 : 0;
}
ZELVAR_API void zvSheetSetPrintFitA(SheetHandle handle, int wPages, int hPages) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setPrintFit(wPages, hPages);
}
ZELVAR_API int zvSheetLandscapeA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->landscape() ? 1 : 0;
}
ZELVAR_API void zvSheetSetLandscapeA(SheetHandle handle, int landscape) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setLandscape(landscape != 0);
}
ZELVAR_API int zvSheetPaperA(SheetHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::ISheetT<char>*>(handle)->paper());
}
ZELVAR_API void zvSheetSetPaperA(SheetHandle handle, int paper) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setPaper(static_cast<zelvar::Paper>(paper));
}
ZELVAR_API const char* zvSheetHeaderA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->header();
}
ZELVAR_API int zvSheetSetHeaderA(SheetHandle handle, const char* header, double margin) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setHeader(header, margin) ? 1 : 0;
}
ZELVAR_API double zvSheetHeaderMarginA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->headerMargin();
}
ZELVAR_API const char* zvSheetFooterA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->footer();
}
ZELVAR_API int zvSheetSetFooterA(SheetHandle handle, const char* footer, double margin) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setFooter(footer, margin) ? 1 : 0;
}
ZELVAR_API double zvSheetFooterMarginA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->footerMargin();
}
ZELVAR_API int zvSheetHCenterA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->hCenter() ? 1 : 0;
}
ZELVAR_API void zvSheetSetHCenterA(SheetHandle handle, int hCenter) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setHCenter(hCenter != 0);
}
ZELVAR_API int zvSheetVCenterA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->vCenter() ? 1 : 0;
}
ZELVAR_API void zvSheetSetVCenterA(SheetHandle handle, int vCenter) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setVCenter(vCenter != 0);
}
ZELVAR_API double zvSheetMarginLeftA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->marginLeft();
}
ZELVAR_API void zvSheetSetMarginLeftA(SheetHandle handle, double margin) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setMarginLeft(margin);
}
ZELVAR_API double zvSheetMarginRightA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->marginRight();
}
ZELVAR_API void zvSheetSetMarginRightA(SheetHandle handle, double margin) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setMarginRight(margin);
}
ZELVAR_API double zvSheetMarginTopA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->marginTop();
}
ZELVAR_API void zvSheetSetMarginTopA(SheetHandle handle, double margin) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setMarginTop(margin);
}
ZELVAR_API double zvSheetMarginBottomA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->marginBottom();
}
ZELVAR_API void zvSheetSetMarginBottomA(SheetHandle handle, double margin) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setMarginBottom(margin);
}
ZELVAR_API int zvSheetPrintRowColA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->printRowCol() ? 1 : 0;
}
ZELVAR_API void zvSheetSetPrintRowColA(SheetHandle handle, int print) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setPrintRowCol(print != 0);
}
ZELVAR_API void zvSheetSetPrintRepeatRowsA(SheetHandle handle, int rowFirst, int rowLast) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setPrintRepeatRows(rowFirst, rowLast);
}
ZELVAR_API void zvSheetSetPrintRepeatColsA(SheetHandle handle, int colFirst, int colLast) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setPrintRepeatCols(colFirst, colLast);
}
ZELVAR_API void zvSheetSetPrintAreaA(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setPrintArea(rowFirst, rowLast, colFirst, colLast);
}
ZELVAR_API void zvSheetClearPrintRepeatsA(SheetHandle handle) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->clearPrintRepeats();
}
ZELVAR_API void zvSheetClearPrintAreaA(SheetHandle handle) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->clearPrintArea();
}
ZELVAR_API int zvSheetGetNamedRangeA(SheetHandle handle, const char* name, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->getNamedRange(name, rowFirst, rowLast, colFirst, colLast) ? 1 : 0;
}
ZELVAR_API int zvSheetSetNamedRangeA(SheetHandle handle, const char* name, int rowFirst, int rowLast, int colFirst, int colLast) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setNamedRange(name, rowFirst, rowLast, colFirst, colLast) ? 1 : 0;
}
ZELVAR_API int zvSheetDelNamedRangeA(SheetHandle handle, const char* name) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->delNamedRange(name) ? 1 : 0;
}
ZELVAR_API int zvSheetNamedRangeSizeA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->namedRangeSize();
}
ZELVAR_API const char* zvSheetNamedRangeA(SheetHandle handle, int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->namedRange(index, rowFirst, rowLast, colFirst, colLast);
}
ZELVAR_API const char* zvSheetNameA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->name();
}
ZELVAR_API void zvSheetSetNameA(SheetHandle handle, const char* name) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setName(name);
}
ZELVAR_API int zvSheetProtectA(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->protect() ? 1 : 0;
}
ZELVAR_API void zvSheetSetProtectA(SheetHandle handle, int protect) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setProtect(protect != 0);
}
ZELVAR_API int zvSheetHiddenA(SheetHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::ISheetT<char>*>(handle)->hidden());
}
ZELVAR_API int zvSheetSetHiddenA(SheetHandle handle, int state) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setHidden(static_cast<zelvar::SheetState>(state)) ? 1 : 0;
}
ZELVAR_API void zvSheetGetTopLeftViewA(SheetHandle handle, int* row, int* col) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->getTopLeftView(row, col);
}
ZELVAR_API void zvSheetSetTopLeftViewA(SheetHandle handle, int row, int col) {
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->setTopLeftView(row, col);
}
ZELVAR_API void zvSheetAddrToRowColA(SheetHandle handle, const char* addr, int* row, int* col, int* rowRelative, int* colRelative) {
    bool rowRelative_value = false;
    bool colRelative_value = false;
    reinterpret_cast<zelvar::ISheetT<char>*>(handle)->addrToRowCol(addr, row, col, rowRelative ? &rowRelative_value : nullptr, colRelative ? &colRelative_value : nullptr);
    if (rowRelative) *rowRelative = rowRelative_value ? 1 : 0;
    if (colRelative) *colRelative = colRelative_value ? 1 : 0;
}
ZELVAR_API const char* zvSheetRowColToAddrA(SheetHandle handle, int row, int col, int rowRelative, int colRelative) {
    return reinterpret_cast<zelvar::ISheetT<char>*>(handle)->rowColToAddr(row, col, rowRelative != 0, colRelative != 0);
}

// Sheet, wchar_t
ZELVAR_API int zvSheetCellTypeW(SheetHandle handle, int row, int col) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->cellType(row, col);
}
ZELVAR_API int zvSheetIsFormulaW(SheetHandle handle, int row, int col) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->isFormula(row, col) ? 1 : 0;
}
ZELVAR_API FormatHandle zvSheetCellFormatW(SheetHandle handle, int row, int col) {
    return reinterpret_cast<FormatHandle>(reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->cellFormat(row, col));
}
ZELVAR_API void zvSheetSetCellFormatW(SheetHandle handle, int row, int col, FormatHandle format) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setCellFormat(row, col, reinterpret_cast<zelvar::IFormatT<wchar_t>*>(format));
}
ZELVAR_API const wchar_t* zvSheetReadStrW(SheetHandle handle, int row, int col, FormatHandle* format) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->readStr(row, col, reinterpret_cast<zelvar::IFormatT<wchar_t>**>(format));
}
ZELVAR_API int zvSheetWriteStrW(SheetHandle handle, int row, int col, const wchar_t* value, FormatHandle format) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->writeStr(row, col, value, reinterpret_cast<zelvar::IFormatT<wchar_t>*>(format)) ? 1 : 0;
}
ZELVAR_API double zvSheetReadNumW(SheetHandle handle, int row, int col, FormatHandle* format) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->readNum(row, col, reinterpret_cast<zelvar::IFormatT<wchar_t>**>(format));
}
ZELVAR_API int zvSheetWriteNumW(SheetHandle handle, int row, int col, double value, FormatHandle format) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->writeNum(row, col, value, reinterpret_cast<zelvar::IFormatT<wchar_t>*>(format)) ? 1 : 0;
}
ZELVAR_API int zvSheetReadBoolW(SheetHandle handle, int row, int col, FormatHandle* format) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->readBool(row, col, reinterpret_cast<zelvar::IFormatT<wchar_t>**>(format)) ? 1 : 0;
}
ZELVAR_API int zvSheetWriteBoolW(SheetHandle handle, int row, int col, int value, FormatHandle format) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->writeBool(row, col, value != 0, reinterpret_cast<zelvar::IFormatT<wchar_t>*>(format)) ? 1 : 0;
}
ZELVAR_API int zvSheetReadBlankW(SheetHandle handle, int row, int col, FormatHandle* format) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->readBlank(row, col, reinterpret_cast<zelvar::IFormatT<wchar_t>**>(format)) ? 1 : 0;
}
ZELVAR_API int zvSheetWriteBlankW(SheetHandle handle, int row, int col, FormatHandle format) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->writeBlank(row, col, reinterpret_cast<zelvar::IFormatT<wchar_t>*>(format)) ? 1 : 0;
}
ZELVAR_API const wchar_t* zvSheetReadFormulaW(SheetHandle handle, int row, int col, FormatHandle* format) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->readFormula(row, col, reinterpret_cast<zelvar::IFormatT<wchar_t>**>(format));
}
ZELVAR_API int zvSheetWriteFormulaW(SheetHandle handle, int row, int col, const wchar_t* value, FormatHandle format) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->writeFormula(row, col, value, reinterpret_cast<zelvar::IFormatT<wchar_t>*>(format)) ? 1 : 0;
}
ZELVAR_API const wchar_t* zvSheetReadCommentW(SheetHandle handle, int row, int col) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->readComment(row, col);
}
ZELVAR_API void zvSheetWriteCommentW(SheetHandle handle, int row, int col, const wchar_t* value, const wchar_t* author, int width, int height) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->writeComment(row, col, value, author, width, height);
}
ZELVAR_API int zvSheetIsDateW(SheetHandle handle, int row, int col) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->isDate(row, col) ? 1 : 0;
}
ZELVAR_API int zvSheetReadErrorW(SheetHandle handle, int row, int col) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->readError(row, col);
}
ZELVAR_API double zvSheetColWidthW(SheetHandle handle, int col) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->colWidth(col);
}
ZELVAR_API double zvSheetRowHeightW(SheetHandle handle, int row) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->rowHeight(row);
}
ZELVAR_API int zvSheetSetColW(SheetHandle handle, int colFirst, int colLast, double width, FormatHandle format, int hidden) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setCol(colFirst, colLast, width, reinterpret_cast<zelvar::IFormatT<wchar_t>*>(format), hidden != 0) ? 1 : 0;
}
ZELVAR_API int zvSheetSetRowW(SheetHandle handle, int row, double height, FormatHandle format, int hidden) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setRow(row, height, reinterpret_cast<zelvar::IFormatT<wchar_t>*>(format), hidden != 0) ? 1 : 0;
}
ZELVAR_API int zvSheetRowHiddenW(SheetHandle handle, int row) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->rowHidden(row) ? 1 : 0;
}
ZELVAR_API int zvSheetSetRowHiddenW(SheetHandle handle, int row, int hidden) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setRowHidden(row, hidden != 0) ? 1 : 0;
}
ZELVAR_API int zvSheetColHiddenW(SheetHandle handle, int col) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->colHidden(col) ? 1 : 0;
}
ZELVAR_API int zvSheetSetColHiddenW(SheetHandle handle, int col, int hidden) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setColHidden(col, hidden != 0) ? 1 : 0;
}
ZELVAR_API int zvSheetGetMergeW(SheetHandle handle, int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->getMerge(row, col, rowFirst, rowLast, colFirst, colLast) ? 1 : 0;
}
ZELVAR_API int zvSheetSetMergeW(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setMerge(rowFirst, rowLast, colFirst, colLast) ? 1 : 0;
}
ZELVAR_API int zvSheetDelMergeW(SheetHandle handle, int row, int col) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->delMerge(row, col) ? 1 : 0;
}
ZELVAR_API int zvSheetPictureSizeW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->pictureSize();
}
ZELVAR_API int zvSheetGetPictureW(SheetHandle handle, int index, int* rowTop, int* colLeft, int* rowBottom, int* colRight, int* width, int* height, int* offsetX, int* offsetY) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->getPicture(index, rowTop, colLeft, rowBottom, colRight, width, height, offsetX, offsetY);
}
ZELVAR_API void zvSheetSetPictureW(SheetHandle handle, int row, int col, int pictureId, double scale, int offsetX, int offsetY) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setPicture(row, col, pictureId, scale, offsetX, offsetY);
}
ZELVAR_API void zvSheetSetPicture2W(SheetHandle handle, int row, int col, int pictureId, int width, int height, int offsetX, int offsetY) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setPicture2(row, col, pictureId, width, height, offsetX, offsetY);
}
ZELVAR_API int zvSheetGetHorPageBreakW(SheetHandle handle, int index) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->getHorPageBreak(index);
}
ZELVAR_API int zvSheetGetHorPageBreakSizeW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->getHorPageBreakSize();
}
ZELVAR_API int zvSheetGetVerPageBreakW(SheetHandle handle, int index) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->getVerPageBreak(index);
}
ZELVAR_API int zvSheetGetVerPageBreakSizeW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->getVerPageBreakSize();
}
ZELVAR_API int zvSheetSetHorPageBreakW(SheetHandle handle, int row, int pageBreak) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setHorPageBreak(row, pageBreak != 0) ? 1 : 0;
}
ZELVAR_API int zvSheetSetVerPageBreakW(SheetHandle handle, int col, int pageBreak) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setVerPageBreak(col, pageBreak != 0) ? 1 : 0;
}
ZELVAR_API void zvSheetSplitW(SheetHandle handle, int row, int col) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->split(row, col);
}
ZELVAR_API int zvSheetGroupRowsW(SheetHandle handle, int rowFirst, int rowLast, int collapsed) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->groupRows(rowFirst, rowLast, collapsed != 0) ? 1 : 0;
}
ZELVAR_API int zvSheetGroupColsW(SheetHandle handle, int colFirst, int colLast, int collapsed) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->groupCols(colFirst, colLast, collapsed != 0) ? 1 : 0;
}
ZELVAR_API int zvSheetGroupSummaryBelowW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->groupSummaryBelow() ? 1 : 0;
}
ZELVAR_API void zvSheetSetGroupSummaryBelowW(SheetHandle handle, int below) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setGroupSummaryBelow(below != 0);
}
ZELVAR_API int zvSheetGroupSummaryRightW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->groupSummaryRight() ? 1 : 0;
}
ZELVAR_API void zvSheetSetGroupSummaryRightW(SheetHandle handle, int right) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setGroupSummaryRight(right != 0);
}
ZELVAR_API int zvSheetClearW(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->clear(rowFirst, rowLast, colFirst, colLast) ? 1 : 0;
}
ZELVAR_API int zvSheetInsertColW(SheetHandle handle, int colFirst, int colLast) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->insertCol(colFirst, colLast) ? 1 : 0;
}
ZELVAR_API int zvSheetInsertRowW(SheetHandle handle, int rowFirst, int rowLast) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->insertRow(rowFirst, rowLast) ? 1 : 0;
}
ZELVAR_API int zvSheetRemoveColW(SheetHandle handle, int colFirst, int colLast) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->removeCol(colFirst, colLast) ? 1 : 0;
}
ZELVAR_API int zvSheetRemoveRowW(SheetHandle handle, int rowFirst, int rowLast) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->removeRow(rowFirst, rowLast) ? 1 : 0;
}
ZELVAR_API int zvSheetCopyCellW(SheetHandle handle, int rowSrc, int colSrc, int rowDst, int colDst) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->copyCell(rowSrc, colSrc, rowDst, colDst) ? 1 : 0;
}
ZELVAR_API int zvSheetFirstRowW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->firstRow();
}
ZELVAR_API int zvSheetLastRowW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->lastRow();
}
ZELVAR_API int zvSheetFirstColW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->firstCol();
}
ZELVAR_API int zvSheetLastColW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->lastCol();
}
ZELVAR_API int zvSheetDisplayGridlinesW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->displayGridlines() ? 1 : 0;
}
ZELVAR_API void zvSheetSetDisplayGridlinesW(SheetHandle handle, int show) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setDisplayGridlines(show != 0);
}
ZELVAR_API int zvSheetPrintGridlinesW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->printGridlines() ? 1 : 0;
}
ZELVAR_API void zvSheetSetPrintGridlinesW(SheetHandle handle, int print) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setPrintGridlines(print != 0);
}
ZELVAR_API int zvSheetZoomW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->zoom();
}
ZELVAR_API void zvSheetSetZoomW(SheetHandle handle, int zoom) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setZoom(zoom);
}
ZELVAR_API int zvSheetPrintZoomW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->printZoom();
}
ZELVAR_API void zvSheetSetPrintZoomW(SheetHandle handle, int zoom) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setPrintZoom(zoom);
}
ZELVAR_API int zvSheetGetPrintFitW(SheetHandle handle, int* wPages, int* hPages) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->getPrintFit(wPages, hPages) ? 1 : 0;
}
ZELVAR_API void zvSheetSetPrintFitW(SheetHandle handle, int wPages, int hPages) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setPrintFit(wPages, hPages);
}
ZELVAR_API int zvSheetLandscapeW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->landscape() ? 1 : 0;
}
ZELVAR_API void zvSheetSetLandscapeW(SheetHandle handle, int landscape) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setLandscape(landscape != 0);
}
ZELVAR_API int zvSheetPaperW(SheetHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->paper());
}
ZELVAR_API void zvSheetSetPaperW(SheetHandle handle, int paper) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setPaper(static_cast<zelvar::Paper>(paper));
}
ZELVAR_API const wchar_t* zvSheetHeaderW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->header();
}
ZELVAR_API int zvSheetSetHeaderW(SheetHandle handle, const wchar_t* header, double margin) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setHeader(header, margin) ? 1 : 0;
}
ZELVAR_API double zvSheetHeaderMarginW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->headerMargin();
}
ZELVAR_API const wchar_t* zvSheetFooterW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->footer();
}
ZELVAR_API int zvSheetSetFooterW(SheetHandle handle, const wchar_t* footer, double margin) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setFooter(footer, margin) ? 1 : 0;
}
ZELVAR_API double zvSheetFooterMarginW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->footerMargin();
}
ZELVAR_API int zvSheetHCenterW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->hCenter() ? 1 : 0;
}
ZELVAR_API void zvSheetSetHCenterW(SheetHandle handle, int hCenter) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setHCenter(hCenter != 0);
}
ZELVAR_API int zvSheetVCenterW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->vCenter() ? 1 : 0;
}
ZELVAR_API void zvSheetSetVCenterW(SheetHandle handle, int vCenter) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setVCenter(vCenter != 0);
}
ZELVAR_API double zvSheetMarginLeftW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->marginLeft();
}
ZELVAR_API void zvSheetSetMarginLeftW(SheetHandle handle, double margin) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setMarginLeft(margin);
}
ZELVAR_API double zvSheetMarginRightW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->marginRight();
}
ZELVAR_API void zvSheetSetMarginRightW(SheetHandle handle, double margin) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setMarginRight(margin);
}
ZELVAR_API double zvSheetMarginTopW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->marginTop();
}
ZELVAR_API void zvSheetSetMarginTopW(SheetHandle handle, double margin) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setMarginTop(margin);
}
ZELVAR_API double zvSheetMarginBottomW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->marginBottom();
}
ZELVAR_API void zvSheetSetMarginBottomW(SheetHandle handle, double margin) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setMarginBottom(margin);
}
ZELVAR_API int zvSheetPrintRowColW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->printRowCol() ? 1 : 0;
}
ZELVAR_API void zvSheetSetPrintRowColW(SheetHandle handle, int print) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setPrintRowCol(print != 0);
}
ZELVAR_API void zvSheetSetPrintRepeatRowsW(SheetHandle handle, int rowFirst, int rowLast) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setPrintRepeatRows(rowFirst, rowLast);
}
ZELVAR_API void zvSheetSetPrintRepeatColsW(SheetHandle handle, int colFirst, int colLast) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setPrintRepeatCols(colFirst, colLast);
}
ZELVAR_API void zvSheetSetPrintAreaW(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setPrintArea(rowFirst, rowLast, colFirst, colLast);
}
ZELVAR_API void zvSheetClearPrintRepeatsW(SheetHandle handle) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->clearPrintRepeats();
}
ZELVAR_API void zvSheetClearPrintAreaW(SheetHandle handle) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->clearPrintArea();
}
ZELVAR_API int zvSheetGetNamedRangeW(SheetHandle handle, const wchar_t* name, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->getNamedRange(name, rowFirst, rowLast, colFirst, colLast) ? 1 : 0;
}
ZELVAR_API int zvSheetSetNamedRangeW(SheetHandle handle, const wchar_t* name, int rowFirst, int rowLast, int colFirst, int colLast) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setNamedRange(name, rowFirst, rowLast, colFirst, colLast) ? 1 : 0;
}
ZELVAR_API int zvSheetDelNamedRangeW(SheetHandle handle, const wchar_t* name) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->delNamedRange(name) ? 1 : 0;
}
ZELVAR_API int zvSheetNamedRangeSizeW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->namedRangeSize();
}
ZELVAR_API const wchar_t* zvSheetNamedRangeW(SheetHandle handle, int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->namedRange(index, rowFirst, rowLast, colFirst, colLast);
}
ZELVAR_API const wchar_t* zvSheetNameW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->name();
}
ZELVAR_API void zvSheetSetNameW(SheetHandle handle, const wchar_t* name) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setName(name);
}
ZELVAR_API int zvSheetProtectW(SheetHandle handle) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->protect() ? 1 : 0;
}
ZELVAR_API void zvSheetSetProtectW(SheetHandle handle, int protect) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setProtect(protect != 0);
}
ZELVAR_API int zvSheetHiddenW(SheetHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->hidden());
}
ZELVAR_API int zvSheetSetHiddenW(SheetHandle handle, int state) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setHidden(static_cast<zelvar::SheetState>(state)) ? 1 : 0;
}
ZELVAR_API void zvSheetGetTopLeftViewW(SheetHandle handle, int* row, int* col) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->getTopLeftView(row, col);
}
ZELVAR_API void zvSheetSetTopLeftViewW(SheetHandle handle, int row, int col) {
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->setTopLeftView(row, col);
}
ZELVAR_API void zvSheetAddrToRowColW(SheetHandle handle, const wchar_t* addr, int* row, int* col, int* rowRelative, int* colRelative) {
    bool rowRelative_value = false;
    bool colRelative_value = false;
    reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->addrToRowCol(addr, row, col, rowRelative ? &rowRelative_value : nullptr, colRelative ? &colRelative_value : nullptr);
    if (rowRelative) *rowRelative = rowRelative_value ? 1 : 0;
    if (colRelative) *colRelative = colRelative_value ? 1 : 0;
}
ZELVAR_API const wchar_t* zvSheetRowColToAddrW(SheetHandle handle, int row, int col, int rowRelative, int colRelative) {
    return reinterpret_cast<zelvar::ISheetT<wchar_t>*>(handle)->rowColToAddr(row, col, rowRelative != 0, colRelative != 0);
}

// Format, char
ZELVAR_API FontHandle zvFormatFontA(FormatHandle handle) {
    return reinterpret_cast<FontHandle>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->font());
}
ZELVAR_API int zvFormatSetFontA(FormatHandle handle, FontHandle font) {
    return reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setFont(reinterpret_cast<zelvar::IFontT<char>*>(font)) ? 1 : 0;
}
ZELVAR_API int zvFormatNumFormatA(FormatHandle handle) {
    return reinterpret_cast<zelvar::IFormatT<char>*>(handle)->numFormat();
}
ZELVAR_API void zvFormatSetNumFormatA(FormatHandle handle, int numFormat) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setNumFormat(numFormat);
}
ZELVAR_API int zvFormatAlignHA(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->alignH());
}
ZELVAR_API void zvFormatSetAlignHA(FormatHandle handle, int align) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setAlignH(static_cast<zelvar::AlignH>(align));
}
ZELVAR_API int zvFormatAlignVA(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->alignV());
}
ZELVAR_API void zvFormatSetAlignVA(FormatHandle handle, int align) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setAlignV(static_cast<zelvar::AlignV>(align));
}
ZELVAR_API int zvFormatWrapA(FormatHandle handle) {
    return reinterpret_cast<zelvar::IFormatT<char>*>(handle)->wrap() ? 1 : 0;
}
ZELVAR_API void zvFormatSetWrapA(FormatHandle handle, int wrap) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setWrap(wrap != 0);
}
ZELVAR_API int zvFormatRotationA(FormatHandle handle) {
    return reinterpret_cast<zelvar::IFormatT<char>*>(handle)->rotation();
}
ZELVAR_API int zvFormatSetRotationA(FormatHandle handle, int rotation) {
    return reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setRotation(rotation) ? 1 : 0;
}
ZELVAR_API int zvFormatIndentA(FormatHandle handle) {
    return reinterpret_cast<zelvar::IFormatT<char>*>(handle)->indent();
}
ZELVAR_API void zvFormatSetIndentA(FormatHandle handle, int indent) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setIndent(indent);
}
ZELVAR_API int zvFormatShrinkToFitA(FormatHandle handle) {
    return reinterpret_cast<zelvar::IFormatT<char>*>(handle)->shrinkToFit() ? 1 : 0;
}
ZELVAR_API void zvFormatSetShrinkToFitA(FormatHandle handle, int shrinkToFit) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setShrinkToFit(shrinkToFit != 0);
}
ZELVAR_API void zvFormatSetBorderA(FormatHandle handle, int style) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setBorder(static_cast<zelvar::BorderStyle>(style));
}
ZELVAR_API void zvFormatSetBorderColorA(FormatHandle handle, int color) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setBorderColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFormatBorderLeftA(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->borderLeft());
}
ZELVAR_API void zvFormatSetBorderLeftA(FormatHandle handle, int style) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setBorderLeft(static_cast<zelvar::BorderStyle>(style));
}
ZELVAR_API int zvFormatBorderRightA(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->borderRight());
}
ZELVAR_API void zvFormatSetBorderRightA(FormatHandle handle, int style) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setBorderRight(static_cast<zelvar::BorderStyle>(style));
}
ZELVAR_API int zvFormatBorderTopA(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->borderTop());
}
ZELVAR_API void zvFormatSetBorderTopA(FormatHandle handle, int style) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setBorderTop(static_cast<zelvar::BorderStyle>(style));
}
ZELVAR_API int zvFormatBorderBottomA(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->borderBottom());
}
ZELVAR_API void zvFormatSetBorderBottomA(FormatHandle handle, int style) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setBorderBottom(static_cast<zelvar::BorderStyle>(style));
}
ZELVAR_API int zvFormatBorderLeftColorA(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->borderLeftColor());
}
ZELVAR_API void zvFormatSetBorderLeftColorA(FormatHandle handle, int color) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setBorderLeftColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFormatBorderRightColorA(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->borderRightColor());
}
ZELVAR_API void zvFormatSetBorderRightColorA(FormatHandle handle, int color) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setBorderRightColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFormatBorderTopColorA(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->borderTopColor());
}
ZELVAR_API void zvFormatSetBorderTopColorA(FormatHandle handle, int color) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setBorderTopColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFormatBorderBottomColorA(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->borderBottomColor());
}
ZELVAR_API void zvFormatSetBorderBottomColorA(FormatHandle handle, int color) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setBorderBottomColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFormatBorderDiagonalA(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->borderDiagonal());
}
ZELVAR_API void zvFormatSetBorderDiagonalA(FormatHandle handle, int border) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setBorderDiagonal(static_cast<zelvar::BorderDiagonal>(border));
}
ZELVAR_API int zvFormatBorderDiagonalStyleA(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->borderDiagonalStyle());
}
ZELVAR_API void zvFormatSetBorderDiagonalStyleA(FormatHandle handle, int style) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setBorderDiagonalStyle(static_cast<zelvar::BorderStyle>(style));
}
ZELVAR_API int zvFormatBorderDiagonalColorA(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->borderDiagonalColor());
}
ZELVAR_API void zvFormatSetBorderDiagonalColorA(FormatHandle handle, int color) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setBorderDiagonalColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFormatFillPatternA(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->fillPattern());
}
ZELVAR_API void zvFormatSetFillPatternA(FormatHandle handle, int pattern) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setFillPattern(static_cast<zelvar::FillPattern>(pattern));
}
ZELVAR_API int zvFormatPatternForegroundColorA(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->patternForegroundColor());
}
ZELVAR_API void zvFormatSetPatternForegroundColorA(FormatHandle handle, int color) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setPatternForegroundColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFormatPatternBackgroundColorA(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<char>*>(handle)->patternBackgroundColor());
}
ZELVAR_API void zvFormatSetPatternBackgroundColorA(FormatHandle handle, int color) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setPatternBackgroundColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFormatLockedA(FormatHandle handle) {
    return reinterpret_cast<zelvar::IFormatT<char>*>(handle)->locked() ? 1 : 0;
}
ZELVAR_API void zvFormatSetLockedA(FormatHandle handle, int locked) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setLocked(locked != 0);
}
ZELVAR_API int zvFormatHiddenA(FormatHandle handle) {
    return reinterpret_cast<zelvar::IFormatT<char>*>(handle)->hidden() ? 1 : 0;
}
ZELVAR_API void zvFormatSetHiddenA(FormatHandle handle, int hidden) {
    reinterpret_cast<zelvar::IFormatT<char>*>(handle)->setHidden(hidden != 0);
}

// Format, wchar_t
ZELVAR_API FontHandle zvFormatFontW(FormatHandle handle) {
    return reinterpret_cast<FontHandle>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->font());
}
ZELVAR_API int zvFormatSetFontW(FormatHandle handle, FontHandle font) {
    return reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setFont(reinterpret_cast<zelvar::IFontT<wchar_t>*>(font)) ? 1 : 0;
}
ZELVAR_API int zvFormatNumFormatW(FormatHandle handle) {
    return reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->numFormat();
}
ZELVAR_API void zvFormatSetNumFormatW(FormatHandle handle, int numFormat) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setNumFormat(numFormat);
}
ZELVAR_API int zvFormatAlignHW(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->alignH());
}
ZELVAR_API void zvFormatSetAlignHW(FormatHandle handle, int align) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setAlignH(static_cast<zelvar::AlignH>(align));
}
ZELVAR_API int zvFormatAlignVW(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->alignV());
}
ZELVAR_API void zvFormatSetAlignVW(FormatHandle handle, int align) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setAlignV(static_cast<zelvar::AlignV>(align));
}
ZELVAR_API int zvFormatWrapW(FormatHandle handle) {
    return reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->wrap() ? 1 : 0;
}
ZELVAR_API void zvFormatSetWrapW(FormatHandle handle, int wrap) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setWrap(wrap != 0);
}
ZELVAR_API int zvFormatRotationW(FormatHandle handle) {
    return reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->rotation();
}
ZELVAR_API int zvFormatSetRotationW(FormatHandle handle, int rotation) {
    return reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setRotation(rotation) ? 1 : 0;
}
ZELVAR_API int zvFormatIndentW(FormatHandle handle) {
    return reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->indent();
}
ZELVAR_API void zvFormatSetIndentW(FormatHandle handle, int indent) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setIndent(indent);
}
ZELVAR_API int zvFormatShrinkToFitW(FormatHandle handle) {
    return reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->shrinkToFit() ? 1 : 0;
}
ZELVAR_API void zvFormatSetShrinkToFitW(FormatHandle handle, int shrinkToFit) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setShrinkToFit(shrinkToFit != 0);
}
ZELVAR_API void zvFormatSetBorderW(FormatHandle handle, int style) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setBorder(static_cast<zelvar::BorderStyle>(style));
}
ZELVAR_API void zvFormatSetBorderColorW(FormatHandle handle, int color) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setBorderColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFormatBorderLeftW(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->borderLeft());
}
ZELVAR_API void zvFormatSetBorderLeftW(FormatHandle handle, int style) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setBorderLeft(static_cast<zelvar::BorderStyle>(style));
}
ZELVAR_API int zvFormatBorderRightW(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->borderRight());
}
ZELVAR_API void zvFormatSetBorderRightW(FormatHandle handle, int style) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setBorderRight(static_cast<zelvar::BorderStyle>(style));
}
ZELVAR_API int zvFormatBorderTopW(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->borderTop());
}
ZELVAR_API void zvFormatSetBorderTopW(FormatHandle handle, int style) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setBorderTop(static_cast<zelvar::BorderStyle>(style));
}
ZELVAR_API int zvFormatBorderBottomW(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->borderBottom());
}
ZELVAR_API void zvFormatSetBorderBottomW(FormatHandle handle, int style) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setBorderBottom(static_cast<zelvar::BorderStyle>(style));
}
ZELVAR_API int zvFormatBorderLeftColorW(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->borderLeftColor());
}
ZELVAR_API void zvFormatSetBorderLeftColorW(FormatHandle handle, int color) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setBorderLeftColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFormatBorderRightColorW(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->borderRightColor());
}
ZELVAR_API void zvFormatSetBorderRightColorW(FormatHandle handle, int color) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setBorderRightColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFormatBorderTopColorW(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->borderTopColor());
}
ZELVAR_API void zvFormatSetBorderTopColorW(FormatHandle handle, int color) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setBorderTopColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFormatBorderBottomColorW(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->borderBottomColor());
}
ZELVAR_API void zvFormatSetBorderBottomColorW(FormatHandle handle, int color) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setBorderBottomColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFormatBorderDiagonalW(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->borderDiagonal());
}
ZELVAR_API void zvFormatSetBorderDiagonalW(FormatHandle handle, int border) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setBorderDiagonal(static_cast<zelvar::BorderDiagonal>(border));
}
ZELVAR_API int zvFormatBorderDiagonalStyleW(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->borderDiagonalStyle());
}
ZELVAR_API void zvFormatSetBorderDiagonalStyleW(FormatHandle handle, int style) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setBorderDiagonalStyle(static_cast<zelvar::BorderStyle>(style));
}
ZELVAR_API int zvFormatBorderDiagonalColorW(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->borderDiagonalColor());
}
ZELVAR_API void zvFormatSetBorderDiagonalColorW(FormatHandle handle, int color) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setBorderDiagonalColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFormatFillPatternW(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->fillPattern());
}
ZELVAR_API void zvFormatSetFillPatternW(FormatHandle handle, int pattern) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setFillPattern(static_cast<zelvar::FillPattern>(pattern));
}
ZELVAR_API int zvFormatPatternForegroundColorW(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->patternForegroundColor());
}
ZELVAR_API void zvFormatSetPatternForegroundColorW(FormatHandle handle, int color) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setPatternForegroundColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFormatPatternBackgroundColorW(FormatHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->patternBackgroundColor());
}
ZELVAR_API void zvFormatSetPatternBackgroundColorW(FormatHandle handle, int color) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setPatternBackgroundColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFormatLockedW(FormatHandle handle) {
    return reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->locked() ? 1 : 0;
}
ZELVAR_API void zvFormatSetLockedW(FormatHandle handle, int locked) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setLocked(locked != 0);
}
ZELVAR_API int zvFormatHiddenW(FormatHandle handle) {
    return reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->hidden() ? 1 : 0;
}
ZELVAR_API void zvFormatSetHiddenW(FormatHandle handle, int hidden) {
    reinterpret_cast<zelvar::IFormatT<wchar_t>*>(handle)->setHidden(hidden != 0);
}

// Font, char
ZELVAR_API int zvFontSizeA(FontHandle handle) {
    return reinterpret_cast<zelvar::IFontT<char>*>(handle)->size();
}
ZELVAR_API void zvFontSetSizeA(FontHandle handle, int size) {
    reinterpret_cast<zelvar::IFontT<char>*>(handle)->setSize(size);
}
ZELVAR_API int zvFontItalicA(FontHandle handle) {
    return reinterpret_cast<zelvar::IFontT<char>*>(handle)->italic() ? 1 : 0;
}
ZELVAR_API void zvFontSetItalicA(FontHandle handle, int italic) {
    reinterpret_cast<zelvar::IFontT<char>*>(handle)->setItalic(italic != 0);
}
ZELVAR_API int zvFontStrikeOutA(FontHandle handle) {
    return reinterpret_cast<zelvar::IFontT<char>*>(handle)->strikeOut() ? 1 : 0;
}
ZELVAR_API void zvFontSetStrikeOutA(FontHandle handle, int strikeOut) {
    reinterpret_cast<zelvar::IFontT<char>*>(handle)->setStrikeOut(strikeOut != 0);
}
ZELVAR_API int zvFontColorA(FontHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFontT<char>*>(handle)->color());
}
ZELVAR_API void zvFontSetColorA(FontHandle handle, int color) {
    reinterpret_cast<zelvar::IFontT<char>*>(handle)->setColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFontBoldA(FontHandle handle) {
    return reinterpret_cast<zelvar::IFontT<char>*>(handle)->bold() ? 1 : 0;
}
ZELVAR_API void zvFontSetBoldA(FontHandle handle, int bold) {
    reinterpret_cast<zelvar::IFontT<char>*>(handle)->setBold(bold != 0);
}
ZELVAR_API int zvFontScriptA(FontHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFontT<char>*>(handle)->script());
}
ZELVAR_API void zvFontSetScriptA(FontHandle handle, int script) {
    reinterpret_cast<zelvar::IFontT<char>*>(handle)->setScript(static_cast<zelvar::Script>(script));
}
ZELVAR_API int zvFontUnderlineA(FontHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFontT<char>*>(handle)->underline());
}
ZELVAR_API void zvFontSetUnderlineA(FontHandle handle, int underline) {
    reinterpret_cast<zelvar::IFontT<char>*>(handle)->setUnderline(static_cast<zelvar::Underline>(underline));
}
ZELVAR_API const char* zvFontNameA(FontHandle handle) {
    return reinterpret_cast<zelvar::IFontT<char>*>(handle)->name();
}
ZELVAR_API int zvFontSetNameA(FontHandle handle, const char* name) {
    return reinterpret_cast<zelvar::IFontT<char>*>(handle)->setName(name) ? 1 : 0;
}

// Font, wchar_t
ZELVAR_API int zvFontSizeW(FontHandle handle) {
    return reinterpret_cast<zelvar::IFontT<wchar_t>*>(handle)->size();
}
ZELVAR_API void zvFontSetSizeW(FontHandle handle, int size) {
    reinterpret_cast<zelvar::IFontT<wchar_t>*>(handle)->setSize(size);
}
ZELVAR_API int zvFontItalicW(FontHandle handle) {
    return reinterpret_cast<zelvar::IFontT<wchar_t>*>(handle)->italic() ? 1 : 0;
}
ZELVAR_API void zvFontSetItalicW(FontHandle handle, int italic) {
    reinterpret_cast<zelvar::IFontT<wchar_t>*>(handle)->setItalic(italic != 0);
}
ZELVAR_API int zvFontStrikeOutW(FontHandle handle) {
    return reinterpret_cast<zelvar::IFontT<wchar_t>*>(handle)->strikeOut() ? 1 : 0;
}
ZELVAR_API void zvFontSetStrikeOutW(FontHandle handle, int strikeOut) {
    reinterpret_cast<zelvar::IFontT<wchar_t>*>(handle)->setStrikeOut(strikeOut != 0);
}
ZELVAR_API int zvFontColorW(FontHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFontT<wchar_t>*>(handle)->color());
}
ZELVAR_API void zvFontSetColorW(FontHandle handle, int color) {
    reinterpret_cast<zelvar::IFontT<wchar_t>*>(handle)->setColor(static_cast<zelvar::Color>(color));
}
ZELVAR_API int zvFontBoldW(FontHandle handle) {
    return reinterpret_cast<zelvar::IFontT<wchar_t>*>(handle)->bold() ? 1 : 0;
}
ZELVAR_API void zvFontSetBoldW(FontHandle handle, int bold) {
    reinterpret_cast<zelvar::IFontT<wchar_t>*>(handle)->setBold(bold != 0);
}
ZELVAR_API int zvFontScriptW(FontHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFontT<wchar_t>*>(handle)->script());
}
ZELVAR_API void zvFontSetScriptW(FontHandle handle, int script) {
    reinterpret_cast<zelvar::IFontT<wchar_t>*>(handle)->setScript(static_cast<zelvar::Script>(script));
}
ZELVAR_API int zvFontUnderlineW(FontHandle handle) {
    return static_cast<int>(reinterpret_cast<zelvar::IFontT<wchar_t>*>(handle)->underline());
}
ZELVAR_API void zvFontSetUnderlineW(FontHandle handle, int underline) {
    reinterpret_cast<zelvar::IFontT<wchar_t>*>(handle)->setUnderline(static_cast<zelvar::Underline>(underline));
}
ZELVAR_API const wchar_t* zvFontNameW(FontHandle handle) {
    return reinterpret_cast<zelvar::IFontT<wchar_t>*>(handle)->name();
}
ZELVAR_API int zvFontSetNameW(FontHandle handle, const wchar_t* name) {
    return reinterpret_cast<zelvar::IFontT<wchar_t>*>(handle)->setName(name) ? 1 : 0;
}

}  // extern "C"
