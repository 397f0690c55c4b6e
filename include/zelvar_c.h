/*
 * zelvar: the flat C interface. Generated from include/zelvar.h by tools/gen_flat.py; do not edit.
 *
 * Each of the 217 operations of the C++ interfaces is one function per text width:
 * zv<Class><Operation>A takes 8-bit text, ...W wide text. The first argument is the object's
 * handle; a handle from an A factory is used with A functions only. bool results are 1 or 0,
 * enumerations are int. After a failure value, zvBookErrorMessageA/W tells why.
 *
 *     BookHandle book = zvCreateBookA();
 *     SheetHandle sheet = zvBookAddSheetA(book, "Sheet1", NULL);
 *     zvSheetWriteNumA(sheet, 0, 0, 42.0, NULL);
 *     zvBookReleaseA(book);
 *
 * C++ programs that use both headers include zelvar.h first.
 */
#ifndef ZELVAR_C_H
#define ZELVAR_C_H

#include <stddef.h>
#include <wchar.h>

#ifndef ZELVAR_API
#  if defined(_WIN32)
#    define ZELVAR_API __declspec(dllexport)
#  else
#    define ZELVAR_API __attribute__((visibility("default")))
#  endif
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct zvBookObject* BookHandle;
typedef struct zvSheetObject* SheetHandle;
typedef struct zvFormatObject* FormatHandle;
typedef struct zvFontObject* FontHandle;

#ifndef ZELVAR_CPP_FACTORIES
/* A new binary (.xls) book, or NULL if it could not be made. End it with zvBookReleaseA/W. */
ZELVAR_API BookHandle zvCreateBookA(void);
ZELVAR_API BookHandle zvCreateBookW(void);
/* As above; a failure during construction is not caught here. */
ZELVAR_API BookHandle zvCreateBookCA(void);
ZELVAR_API BookHandle zvCreateBookCW(void);
/* A new XML (.xlsx) book, or NULL if it could not be made. End it with zvBookReleaseA/W. */
ZELVAR_API BookHandle zvCreateXMLBookA(void);
ZELVAR_API BookHandle zvCreateXMLBookW(void);
/* As above; a failure during construction is not caught here. */
ZELVAR_API BookHandle zvCreateXMLBookCA(void);
ZELVAR_API BookHandle zvCreateXMLBookCW(void);
#endif

/* Book */
ZELVAR_API int zvBookLoadA(BookHandle handle, const char* filename);
ZELVAR_API int zvBookSaveA(BookHandle handle, const char* filename);
ZELVAR_API int zvBookLoadRawA(BookHandle handle, const char* data, unsigned size);
ZELVAR_API int zvBookSaveRawA(BookHandle handle, const char** data, unsigned* size);
ZELVAR_API SheetHandle zvBookAddSheetA(BookHandle handle, const char* name, SheetHandle initSheet);
ZELVAR_API SheetHandle zvBookInsertSheetA(BookHandle handle, int index, const char* name, SheetHandle initSheet);
ZELVAR_API SheetHandle zvBookGetSheetA(BookHandle handle, int index);
ZELVAR_API int zvBookSheetTypeA(BookHandle handle, int index);
ZELVAR_API int zvBookDelSheetA(BookHandle handle, int index);
ZELVAR_API int zvBookSheetCountA(BookHandle handle);
ZELVAR_API FormatHandle zvBookAddFormatA(BookHandle handle, FormatHandle initFormat);
ZELVAR_API FontHandle zvBookAddFontA(BookHandle handle, FontHandle initFont);
ZELVAR_API int zvBookAddCustomNumFormatA(BookHandle handle, const char* customNumFormat);
ZELVAR_API const char* zvBookCustomNumFormatA(BookHandle handle, int fmt);
ZELVAR_API FormatHandle zvBookFormatA(BookHandle handle, int index);
ZELVAR_API int zvBookFormatSizeA(BookHandle handle);
ZELVAR_API FontHandle zvBookFontA(BookHandle handle, int index);
ZELVAR_API int zvBookFontSizeA(BookHandle handle);
ZELVAR_API double zvBookDatePackA(BookHandle handle, int year, int month, int day, int hour, int min, int sec, int msec);
ZELVAR_API int zvBookDateUnpackA(BookHandle handle, double value, int* year, int* month, int* day, int* hour, int* min, int* sec, int* msec);
ZELVAR_API int zvBookColorPackA(BookHandle handle, int red, int green, int blue);
ZELVAR_API void zvBookColorUnpackA(BookHandle handle, int color, int* red, int* green, int* blue);
ZELVAR_API int zvBookActiveSheetA(BookHandle handle);
ZELVAR_API void zvBookSetActiveSheetA(BookHandle handle, int index);
ZELVAR_API int zvBookPictureSizeA(BookHandle handle);
ZELVAR_API int zvBookGetPictureA(BookHandle handle, int index, const char** data, unsigned* size);
ZELVAR_API int zvBookAddPictureA(BookHandle handle, const char* filename);
ZELVAR_API int zvBookAddPicture2A(BookHandle handle, const char* data, unsigned size);
ZELVAR_API const char* zvBookDefaultFontA(BookHandle handle, int* size);
ZELVAR_API void zvBookSetDefaultFontA(BookHandle handle, const char* name, int size);
ZELVAR_API int zvBookRefR1C1A(BookHandle handle);
ZELVAR_API void zvBookSetRefR1C1A(BookHandle handle, int refR1C1);
ZELVAR_API int zvBookRgbModeA(BookHandle handle);
ZELVAR_API void zvBookSetRgbModeA(BookHandle handle, int rgbMode);
ZELVAR_API int zvBookVersionA(BookHandle handle);
ZELVAR_API int zvBookBiffVersionA(BookHandle handle);
ZELVAR_API int zvBookIsDate1904A(BookHandle handle);
ZELVAR_API void zvBookSetDate1904A(BookHandle handle, int date1904);
ZELVAR_API int zvBookSetLocaleA(BookHandle handle, const char* locale);
ZELVAR_API const char* zvBookErrorMessageA(BookHandle handle);
ZELVAR_API void zvBookReleaseA(BookHandle handle);
ZELVAR_API int zvBookLoadW(BookHandle handle, const wchar_t* filename);
ZELVAR_API int zvBookSaveW(BookHandle handle, const wchar_t* filename);
ZELVAR_API int zvBookLoadRawW(BookHandle handle, const char* data, unsigned size);
ZELVAR_API int zvBookSaveRawW(BookHandle handle, const char** data, unsigned* size);
ZELVAR_API SheetHandle zvBookAddSheetW(BookHandle handle, const wchar_t* name, SheetHandle initSheet);
ZELVAR_API SheetHandle zvBookInsertSheetW(BookHandle handle, int index, const wchar_t* name, SheetHandle initSheet);
ZELVAR_API SheetHandle zvBookGetSheetW(BookHandle handle, int index);
ZELVAR_API int zvBookSheetTypeW(BookHandle handle, int index);
ZELVAR_API int zvBookDelSheetW(BookHandle handle, int index);
ZELVAR_API int zvBookSheetCountW(BookHandle handle);
ZELVAR_API FormatHandle zvBookAddFormatW(BookHandle handle, FormatHandle initFormat);
ZELVAR_API FontHandle zvBookAddFontW(BookHandle handle, FontHandle initFont);
ZELVAR_API int zvBookAddCustomNumFormatW(BookHandle handle, const wchar_t* customNumFormat);
ZELVAR_API const wchar_t* zvBookCustomNumFormatW(BookHandle handle, int fmt);
ZELVAR_API FormatHandle zvBookFormatW(BookHandle handle, int index);
ZELVAR_API int zvBookFormatSizeW(BookHandle handle);
ZELVAR_API FontHandle zvBookFontW(BookHandle handle, int index);
ZELVAR_API int zvBookFontSizeW(BookHandle handle);
ZELVAR_API double zvBookDatePackW(BookHandle handle, int year, int month, int day, int hour, int min, int sec, int msec);
ZELVAR_API int zvBookDateUnpackW(BookHandle handle, double value, int* year, int* month, int* day, int* hour, int* min, int* sec, int* msec);
ZELVAR_API int zvBookColorPackW(BookHandle handle, int red, int green, int blue);
ZELVAR_API void zvBookColorUnpackW(BookHandle handle, int color, int* red, int* green, int* blue);
ZELVAR_API int zvBookActiveSheetW(BookHandle handle);
ZELVAR_API void zvBookSetActiveSheetW(BookHandle handle, int index);
ZELVAR_API int zvBookPictureSizeW(BookHandle handle);
ZELVAR_API int zvBookGetPictureW(BookHandle handle, int index, const char** data, unsigned* size);
ZELVAR_API int zvBookAddPictureW(BookHandle handle, const wchar_t* filename);
ZELVAR_API int zvBookAddPicture2W(BookHandle handle, const char* data, unsigned size);
ZELVAR_API const wchar_t* zvBookDefaultFontW(BookHandle handle, int* size);
ZELVAR_API void zvBookSetDefaultFontW(BookHandle handle, const wchar_t* name, int size);
ZELVAR_API int zvBookRefR1C1W(BookHandle handle);
ZELVAR_API void zvBookSetRefR1C1W(BookHandle handle, int refR1C1);
ZELVAR_API int zvBookRgbModeW(BookHandle handle);
ZELVAR_API void zvBookSetRgbModeW(BookHandle handle, int rgbMode);
ZELVAR_API int zvBookVersionW(BookHandle handle);
ZELVAR_API int zvBookBiffVersionW(BookHandle handle);
ZELVAR_API int zvBookIsDate1904W(BookHandle handle);
ZELVAR_API void zvBookSetDate1904W(BookHandle handle, int date1904);
ZELVAR_API int zvBookSetLocaleW(BookHandle handle, const char* locale);
ZELVAR_API const char* zvBookErrorMessageW(BookHandle handle);
ZELVAR_API void zvBookReleaseW(BookHandle handle);

/* Sheet */
ZELVAR_API int zvSheetCellTypeA(SheetHandle handle, int row, int col);
ZELVAR_API int zvSheetIsFormulaA(SheetHandle handle, int row, int col);
ZELVAR_API FormatHandle zvSheetCellFormatA(SheetHandle handle, int row, int col);
ZELVAR_API void zvSheetSetCellFormatA(SheetHandle handle, int row, int col, FormatHandle format);
ZELVAR_API const char* zvSheetReadStrA(SheetHandle handle, int row, int col, FormatHandle* format);
ZELVAR_API int zvSheetWriteStrA(SheetHandle handle, int row, int col, const char* value, FormatHandle format);
ZELVAR_API double zvSheetReadNumA(SheetHandle handle, int row, int col, FormatHandle* format);
ZELVAR_API int zvSheetWriteNumA(SheetHandle handle, int row, int col, double value, FormatHandle format);
ZELVAR_API int zvSheetReadBoolA(SheetHandle handle, int row, int col, FormatHandle* format);
ZELVAR_API int zvSheetWriteBoolA(SheetHandle handle, int row, int col, int value, FormatHandle format);
ZELVAR_API int zvSheetReadBlankA(SheetHandle handle, int row, int col, FormatHandle* format);
ZELVAR_API int zvSheetWriteBlankA(SheetHandle handle, int row, int col, FormatHandle format);
ZELVAR_API const char* zvSheetReadFormulaA(SheetHandle handle, int row, int col, FormatHandle* format);
ZELVAR_API int zvSheetWriteFormulaA(SheetHandle handle, int row, int col, const char* value, FormatHandle format);
ZELVAR_API const char* zvSheetReadCommentA(SheetHandle handle, int row, int col);
ZELVAR_API void zvSheetWriteCommentA(SheetHandle handle, int row, int col, const char* value, const char* author, int width, int height);
ZELVAR_API int zvSheetIsDateA(SheetHandle handle, int row, int col);
ZELVAR_API int zvSheetReadErrorA(SheetHandle handle, int row, int col);
ZELVAR_API double zvSheetColWidthA(SheetHandle handle, int col);
ZELVAR_API double zvSheetRowHeightA(SheetHandle handle, int row);
ZELVAR_API int zvSheetSetColA(SheetHandle handle, int colFirst, int colLast, double width, FormatHandle format, int hidden);
ZELVAR_API int zvSheetSetRowA(SheetHandle handle, int row, double height, FormatHandle format, int hidden);
ZELVAR_API int zvSheetRowHiddenA(SheetHandle handle, int row);
ZELVAR_API int zvSheetSetRowHiddenA(SheetHandle handle, int row, int hidden);
ZELVAR_API int zvSheetColHiddenA(SheetHandle handle, int col);
ZELVAR_API int zvSheetSetColHiddenA(SheetHandle handle, int col, int hidden);
ZELVAR_API int zvSheetGetMergeA(SheetHandle handle, int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast);
ZELVAR_API int zvSheetSetMergeA(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast);
ZELVAR_API int zvSheetDelMergeA(SheetHandle handle, int row, int col);
ZELVAR_API int zvSheetPictureSizeA(SheetHandle handle);
ZELVAR_API int zvSheetGetPictureA(SheetHandle handle, int index, int* rowTop, int* colLeft, int* rowBottom, int* colRight, int* width, int* height, int* offsetX, int* offsetY);
ZELVAR_API void zvSheetSetPictureA(SheetHandle handle, int row, int col, int pictureId, double scale, int offsetX, int offsetY);
ZELVAR_API void zvSheetSetPicture2A(SheetHandle handle, int row, int col, int pictureId, int width, int height, int offsetX, int offsetY);
ZELVAR_API int zvSheetGetHorPageBreakA(SheetHandle handle, int index);
ZELVAR_API int zvSheetGetHorPageBreakSizeA(SheetHandle handle);
ZELVAR_API int zvSheetGetVerPageBreakA(SheetHandle handle, int index);
ZELVAR_API int zvSheetGetVerPageBreakSizeA(SheetHandle handle);
ZELVAR_API int zvSheetSetHorPageBreakA(SheetHandle handle, int row, int pageBreak);
ZELVAR_API int zvSheetSetVerPageBreakA(SheetHandle handle, int col, int pageBreak);
ZELVAR_API void zvSheetSplitA(SheetHandle handle, int row, int col);
ZELVAR_API int zvSheetGroupRowsA(SheetHandle handle, int rowFirst, int rowLast, int collapsed);
ZELVAR_API int zvSheetGroupColsA(SheetHandle handle, int colFirst, int colLast, int collapsed);
ZELVAR_API int zvSheetGroupSummaryBelowA(SheetHandle handle);
ZELVAR_API void zvSheetSetGroupSummaryBelowA(SheetHandle handle, int below);
ZELVAR_API int zvSheetGroupSummaryRightA(SheetHandle handle);
ZELVAR_API void zvSheetSetGroupSummaryRightA(SheetHandle handle, int right);
ZELVAR_API int zvSheetClearA(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast);
ZELVAR_API int zvSheetInsertColA(SheetHandle handle, int colFirst, int colLast);
ZELVAR_API int zvSheetInsertRowA(SheetHandle handle, int rowFirst, int rowLast);
ZELVAR_API int zvSheetRemoveColA(SheetHandle handle, int colFirst, int colLast);
ZELVAR_API int zvSheetRemoveRowA(SheetHandle handle, int rowFirst, int rowLast);
ZELVAR_API int zvSheetCopyCellA(SheetHandle handle, int rowSrc, int colSrc, int rowDst, int colDst);
ZELVAR_API int zvSheetFirstRowA(SheetHandle handle);
ZELVAR_API int zvSheetLastRowA(SheetHandle handle);
ZELVAR_API int zvSheetFirstColA(SheetHandle handle);
ZELVAR_API int zvSheetLastColA(SheetHandle handle);
ZELVAR_API int zvSheetDisplayGridlinesA(SheetHandle handle);
ZELVAR_API void zvSheetSetDisplayGridlinesA(SheetHandle handle, int show);
ZELVAR_API int zvSheetPrintGridlinesA(SheetHandle handle);
ZELVAR_API void zvSheetSetPrintGridlinesA(SheetHandle handle, int print);
ZELVAR_API int zvSheetZoomA(SheetHandle handle);
ZELVAR_API void zvSheetSetZoomA(SheetHandle handle, int zoom);
ZELVAR_API int zvSheetPrintZoomA(SheetHandle handle);
ZELVAR_API void zvSheetSetPrintZoomA(SheetHandle handle, int zoom);
ZELVAR_API int zvSheetGetPrintFitA(SheetHandle handle, int* wPages, int* hPages);
ZELVAR_API void zvSheetSetPrintFitA(SheetHandle handle, int wPages, int hPages);
ZELVAR_API int zvSheetLandscapeA(SheetHandle handle);
ZELVAR_API void zvSheetSetLandscapeA(SheetHandle handle, int landscape);
ZELVAR_API int zvSheetPaperA(SheetHandle handle);
ZELVAR_API void zvSheetSetPaperA(SheetHandle handle, int paper);
ZELVAR_API const char* zvSheetHeaderA(SheetHandle handle);
ZELVAR_API int zvSheetSetHeaderA(SheetHandle handle, const char* header, double margin);
ZELVAR_API double zvSheetHeaderMarginA(SheetHandle handle);
ZELVAR_API const char* zvSheetFooterA(SheetHandle handle);
ZELVAR_API int zvSheetSetFooterA(SheetHandle handle, const char* footer, double margin);
ZELVAR_API double zvSheetFooterMarginA(SheetHandle handle);
ZELVAR_API int zvSheetHCenterA(SheetHandle handle);
ZELVAR_API void zvSheetSetHCenterA(SheetHandle handle, int hCenter);
ZELVAR_API int zvSheetVCenterA(SheetHandle handle);
ZELVAR_API void zvSheetSetVCenterA(SheetHandle handle, int vCenter);
ZELVAR_API double zvSheetMarginLeftA(SheetHandle handle);
ZELVAR_API void zvSheetSetMarginLeftA(SheetHandle handle, double margin);
ZELVAR_API double zvSheetMarginRightA(SheetHandle handle);
ZELVAR_API void zvSheetSetMarginRightA(SheetHandle handle, double margin);
ZELVAR_API double zvSheetMarginTopA(SheetHandle handle);
ZELVAR_API void zvSheetSetMarginTopA(SheetHandle handle, double margin);
ZELVAR_API double zvSheetMarginBottomA(SheetHandle handle);
ZELVAR_API void zvSheetSetMarginBottomA(SheetHandle handle, double margin);
ZELVAR_API int zvSheetPrintRowColA(SheetHandle handle);
ZELVAR_API void zvSheetSetPrintRowColA(SheetHandle handle, int print);
ZELVAR_API void zvSheetSetPrintRepeatRowsA(SheetHandle handle, int rowFirst, int rowLast);
ZELVAR_API void zvSheetSetPrintRepeatColsA(SheetHandle handle, int colFirst, int colLast);
ZELVAR_API void zvSheetSetPrintAreaA(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast);
ZELVAR_API void zvSheetClearPrintRepeatsA(SheetHandle handle);
ZELVAR_API void zvSheetClearPrintAreaA(SheetHandle handle);
ZELVAR_API int zvSheetGetNamedRangeA(SheetHandle handle, const char* name, int* rowFirst, int* rowLast, int* colFirst, int* colLast);
ZELVAR_API int zvSheetSetNamedRangeA(SheetHandle handle, const char* name, int rowFirst, int rowLast, int colFirst, int colLast);
ZELVAR_API int zvSheetDelNamedRangeA(SheetHandle handle, const char* name);
ZELVAR_API int zvSheetNamedRangeSizeA(SheetHandle handle);
ZELVAR_API const char* zvSheetNamedRangeA(SheetHandle handle, int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast);
ZELVAR_API const char* zvSheetNameA(SheetHandle handle);
ZELVAR_API void zvSheetSetNameA(SheetHandle handle, const char* name);
ZELVAR_API int zvSheetProtectA(SheetHandle handle);
ZELVAR_API void zvSheetSetProtectA(SheetHandle handle, int protect);
ZELVAR_API int zvSheetHiddenA(SheetHandle handle);
ZELVAR_API int zvSheetSetHiddenA(SheetHandle handle, int state);
ZELVAR_API void zvSheetGetTopLeftViewA(SheetHandle handle, int* row, int* col);
ZELVAR_API void zvSheetSetTopLeftViewA(SheetHandle handle, int row, int col);
ZELVAR_API void zvSheetAddrToRowColA(SheetHandle handle, const char* addr, int* row, int* col, int* rowRelative, int* colRelative);
ZELVAR_API const char* zvSheetRowColToAddrA(SheetHandle handle, int row, int col, int rowRelative, int colRelative);
ZELVAR_API int zvSheetCellTypeW(SheetHandle handle, int row, int col);
ZELVAR_API int zvSheetIsFormulaW(SheetHandle handle, int row, int col);
ZELVAR_API FormatHandle zvSheetCellFormatW(SheetHandle handle, int row, int col);
ZELVAR_API void zvSheetSetCellFormatW(SheetHandle handle, int row, int col, FormatHandle format);
ZELVAR_API const wchar_t* zvSheetReadStrW(SheetHandle handle, int row, int col, FormatHandle* format);
ZELVAR_API int zvSheetWriteStrW(SheetHandle handle, int row, int col, const wchar_t* value, FormatHandle format);
ZELVAR_API double zvSheetReadNumW(SheetHandle handle, int row, int col, FormatHandle* format);
ZELVAR_API int zvSheetWriteNumW(SheetHandle handle, int row, int col, double value, FormatHandle format);
ZELVAR_API int zvSheetReadBoolW(SheetHandle handle, int row, int col, FormatHandle* format);
ZELVAR_API int zvSheetWriteBoolW(SheetHandle handle, int row, int col, int value, FormatHandle format);
ZELVAR_API int zvSheetReadBlankW(SheetHandle handle, int row, int col, FormatHandle* format);
ZELVAR_API int zvSheetWriteBlankW(SheetHandle handle, int row, int col, FormatHandle format);
ZELVAR_API const wchar_t* zvSheetReadFormulaW(SheetHandle handle, int row, int col, FormatHandle* format);
ZELVAR_API int zvSheetWriteFormulaW(SheetHandle handle, int row, int col, const wchar_t* value, FormatHandle format);
ZELVAR_API const wchar_t* zvSheetReadCommentW(SheetHandle handle, int row, int col);
ZELVAR_API void zvSheetWriteCommentW(SheetHandle handle, int row, int col, const wchar_t* value, const wchar_t* author, int width, int height);
ZELVAR_API int zvSheetIsDateW(SheetHandle handle, int row, int col);
ZELVAR_API int zvSheetReadErrorW(SheetHandle handle, int row, int col);
ZELVAR_API double zvSheetColWidthW(SheetHandle handle, int col);
ZELVAR_API double zvSheetRowHeightW(SheetHandle handle, int row);
ZELVAR_API int zvSheetSetColW(SheetHandle handle, int colFirst, int colLast, double width, FormatHandle format, int hidden);
ZELVAR_API int zvSheetSetRowW(SheetHandle handle, int row, double height, FormatHandle format, int hidden);
ZELVAR_API int zvSheetRowHiddenW(SheetHandle handle, int row);
ZELVAR_API int zvSheetSetRowHiddenW(SheetHandle handle, int row, int hidden);
ZELVAR_API int zvSheetColHiddenW(SheetHandle handle, int col);
ZELVAR_API int zvSheetSetColHiddenW(SheetHandle handle, int col, int hidden);
ZELVAR_API int zvSheetGetMergeW(SheetHandle handle, int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast);
ZELVAR_API int zvSheetSetMergeW(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast);
ZELVAR_API int zvSheetDelMergeW(SheetHandle handle, int row, int col);
ZELVAR_API int zvSheetPictureSizeW(SheetHandle handle);
ZELVAR_API int zvSheetGetPictureW(SheetHandle handle, int index, int* rowTop, int* colLeft, int* rowBottom, int* colRight, int* width, int* height, int* offsetX, int* offsetY);
ZELVAR_API void zvSheetSetPictureW(SheetHandle handle, int row, int col, int pictureId, double scale, int offsetX, int offsetY);
ZELVAR_API void zvSheetSetPicture2W(SheetHandle handle, int row, int col, int pictureId, int width, int height, int offsetX, int offsetY);
ZELVAR_API int zvSheetGetHorPageBreakW(SheetHandle handle, int index);
ZELVAR_API int zvSheetGetHorPageBreakSizeW(SheetHandle handle);
ZELVAR_API int zvSheetGetVerPageBreakW(SheetHandle handle, int index);
ZELVAR_API int zvSheetGetVerPageBreakSizeW(SheetHandle handle);
ZELVAR_API int zvSheetSetHorPageBreakW(SheetHandle handle, int row, int pageBreak);
ZELVAR_API int zvSheetSetVerPageBreakW(SheetHandle handle, int col, int pageBreak);
ZELVAR_API void zvSheetSplitW(SheetHandle handle, int row, int col);
ZELVAR_API int zvSheetGroupRowsW(SheetHandle handle, int rowFirst, int rowLast, int collapsed);
ZELVAR_API int zvSheetGroupColsW(SheetHandle handle, int colFirst, int colLast, int collapsed);
ZELVAR_API int zvSheetGroupSummaryBelowW(SheetHandle handle);
ZELVAR_API void zvSheetSetGroupSummaryBelowW(SheetHandle handle, int below);
ZELVAR_API int zvSheetGroupSummaryRightW(SheetHandle handle);
ZELVAR_API void zvSheetSetGroupSummaryRightW(SheetHandle handle, int right);
ZELVAR_API int zvSheetClearW(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast);
ZELVAR_API int zvSheetInsertColW(SheetHandle handle, int colFirst, int colLast);
ZELVAR_API int zvSheetInsertRowW(SheetHandle handle, int rowFirst, int rowLast);
ZELVAR_API int zvSheetRemoveColW(SheetHandle handle, int colFirst, int colLast);
ZELVAR_API int zvSheetRemoveRowW(SheetHandle handle, int rowFirst, int rowLast);
ZELVAR_API int zvSheetCopyCellW(SheetHandle handle, int rowSrc, int colSrc, int rowDst, int colDst);
ZELVAR_API int zvSheetFirstRowW(SheetHandle handle);
ZELVAR_API int zvSheetLastRowW(SheetHandle handle);
ZELVAR_API int zvSheetFirstColW(SheetHandle handle);
ZELVAR_API int zvSheetLastColW(SheetHandle handle);
ZELVAR_API int zvSheetDisplayGridlinesW(SheetHandle handle);
ZELVAR_API void zvSheetSetDisplayGridlinesW(SheetHandle handle, int show);
ZELVAR_API int zvSheetPrintGridlinesW(SheetHandle handle);
ZELVAR_API void zvSheetSetPrintGridlinesW(SheetHandle handle, int print);
ZELVAR_API int zvSheetZoomW(SheetHandle handle);
ZELVAR_API void zvSheetSetZoomW(SheetHandle handle, int zoom);
ZELVAR_API int zvSheetPrintZoomW(SheetHandle handle);
ZELVAR_API void zvSheetSetPrintZoomW(SheetHandle handle, int zoom);
ZELVAR_API int zvSheetGetPrintFitW(SheetHandle handle, int* wPages, int* hPages);
ZELVAR_API void zvSheetSetPrintFitW(SheetHandle handle, int wPages, int hPages);
ZELVAR_API int zvSheetLandscapeW(SheetHandle handle);
ZELVAR_API void zvSheetSetLandscapeW(SheetHandle handle, int landscape);
ZELVAR_API int zvSheetPaperW(SheetHandle handle);
ZELVAR_API void zvSheetSetPaperW(SheetHandle handle, int paper);
ZELVAR_API const wchar_t* zvSheetHeaderW(SheetHandle handle);
ZELVAR_API int zvSheetSetHeaderW(SheetHandle handle, const wchar_t* header, double margin);
ZELVAR_API double zvSheetHeaderMarginW(SheetHandle handle);
ZELVAR_API const wchar_t* zvSheetFooterW(SheetHandle handle);
ZELVAR_API int zvSheetSetFooterW(SheetHandle handle, const wchar_t* footer, double margin);
ZELVAR_API double zvSheetFooterMarginW(SheetHandle handle);
ZELVAR_API int zvSheetHCenterW(SheetHandle handle);
ZELVAR_API void zvSheetSetHCenterW(SheetHandle handle, int hCenter);
ZELVAR_API int zvSheetVCenterW(SheetHandle handle);
ZELVAR_API void zvSheetSetVCenterW(SheetHandle handle, int vCenter);
ZELVAR_API double zvSheetMarginLeftW(SheetHandle handle);
ZELVAR_API void zvSheetSetMarginLeftW(SheetHandle handle, double margin);
ZELVAR_API double zvSheetMarginRightW(SheetHandle handle);
ZELVAR_API void zvSheetSetMarginRightW(SheetHandle handle, double margin);
ZELVAR_API double zvSheetMarginTopW(SheetHandle handle);
ZELVAR_API void zvSheetSetMarginTopW(SheetHandle handle, double margin);
ZELVAR_API double zvSheetMarginBottomW(SheetHandle handle);
ZELVAR_API void zvSheetSetMarginBottomW(SheetHandle handle, double margin);
ZELVAR_API int zvSheetPrintRowColW(SheetHandle handle);
ZELVAR_API void zvSheetSetPrintRowColW(SheetHandle handle, int print);
ZELVAR_API void zvSheetSetPrintRepeatRowsW(SheetHandle handle, int rowFirst, int rowLast);
ZELVAR_API void zvSheetSetPrintRepeatColsW(SheetHandle handle, int colFirst, int colLast);
ZELVAR_API void zvSheetSetPrintAreaW(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast);
ZELVAR_API void zvSheetClearPrintRepeatsW(SheetHandle handle);
ZELVAR_API void zvSheetClearPrintAreaW(SheetHandle handle);
ZELVAR_API int zvSheetGetNamedRangeW(SheetHandle handle, const wchar_t* name, int* rowFirst, int* rowLast, int* colFirst, int* colLast);
ZELVAR_API int zvSheetSetNamedRangeW(SheetHandle handle, const wchar_t* name, int rowFirst, int rowLast, int colFirst, int colLast);
ZELVAR_API int zvSheetDelNamedRangeW(SheetHandle handle, const wchar_t* name);
ZELVAR_API int zvSheetNamedRangeSizeW(SheetHandle handle);
ZELVAR_API const wchar_t* zvSheetNamedRangeW(SheetHandle handle, int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast);
ZELVAR_API const wchar_t* zvSheetNameW(SheetHandle handle);
ZELVAR_API void zvSheetSetNameW(SheetHandle handle, const wchar_t* name);
ZELVAR_API int zvSheetProtectW(SheetHandle handle);
ZELVAR_API void zvSheetSetProtectW(SheetHandle handle, int protect);
ZELVAR_API int zvSheetHiddenW(SheetHandle handle);
ZELVAR_API int zvSheetSetHiddenW(SheetHandle handle, int state);
ZELVAR_API void zvSheetGetTopLeftViewW(SheetHandle handle, int* row, int* col);
ZELVAR_API void zvSheetSetTopLeftViewW(SheetHandle handle, int row, int col);
ZELVAR_API void zvSheetAddrToRowColW(SheetHandle handle, const wchar_t* addr, int* row, int* col, int* rowRelative, int* colRelative);
ZELVAR_API const wchar_t* zvSheetRowColToAddrW(SheetHandle handle, int row, int col, int rowRelative, int colRelative);

/* Format */
ZELVAR_API FontHandle zvFormatFontA(FormatHandle handle);
ZELVAR_API int zvFormatSetFontA(FormatHandle handle, FontHandle font);
ZELVAR_API int zvFormatNumFormatA(FormatHandle handle);
ZELVAR_API void zvFormatSetNumFormatA(FormatHandle handle, int numFormat);
ZELVAR_API int zvFormatAlignHA(FormatHandle handle);
ZELVAR_API void zvFormatSetAlignHA(FormatHandle handle, int align);
ZELVAR_API int zvFormatAlignVA(FormatHandle handle);
ZELVAR_API void zvFormatSetAlignVA(FormatHandle handle, int align);
ZELVAR_API int zvFormatWrapA(FormatHandle handle);
ZELVAR_API void zvFormatSetWrapA(FormatHandle handle, int wrap);
ZELVAR_API int zvFormatRotationA(FormatHandle handle);
ZELVAR_API int zvFormatSetRotationA(FormatHandle handle, int rotation);
ZELVAR_API int zvFormatIndentA(FormatHandle handle);
ZELVAR_API void zvFormatSetIndentA(FormatHandle handle, int indent);
ZELVAR_API int zvFormatShrinkToFitA(FormatHandle handle);
ZELVAR_API void zvFormatSetShrinkToFitA(FormatHandle handle, int shrinkToFit);
ZELVAR_API void zvFormatSetBorderA(FormatHandle handle, int style);
ZELVAR_API void zvFormatSetBorderColorA(FormatHandle handle, int color);
ZELVAR_API int zvFormatBorderLeftA(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderLeftA(FormatHandle handle, int style);
ZELVAR_API int zvFormatBorderRightA(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderRightA(FormatHandle handle, int style);
ZELVAR_API int zvFormatBorderTopA(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderTopA(FormatHandle handle, int style);
ZELVAR_API int zvFormatBorderBottomA(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderBottomA(FormatHandle handle, int style);
ZELVAR_API int zvFormatBorderLeftColorA(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderLeftColorA(FormatHandle handle, int color);
ZELVAR_API int zvFormatBorderRightColorA(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderRightColorA(FormatHandle handle, int color);
ZELVAR_API int zvFormatBorderTopColorA(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderTopColorA(FormatHandle handle, int color);
ZELVAR_API int zvFormatBorderBottomColorA(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderBottomColorA(FormatHandle handle, int color);
ZELVAR_API int zvFormatBorderDiagonalA(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderDiagonalA(FormatHandle handle, int border);
ZELVAR_API int zvFormatBorderDiagonalStyleA(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderDiagonalStyleA(FormatHandle handle, int style);
ZELVAR_API int zvFormatBorderDiagonalColorA(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderDiagonalColorA(FormatHandle handle, int color);
ZELVAR_API int zvFormatFillPatternA(FormatHandle handle);
ZELVAR_API void zvFormatSetFillPatternA(FormatHandle handle, int pattern);
ZELVAR_API int zvFormatPatternForegroundColorA(FormatHandle handle);
ZELVAR_API void zvFormatSetPatternForegroundColorA(FormatHandle handle, int color);
ZELVAR_API int zvFormatPatternBackgroundColorA(FormatHandle handle);
ZELVAR_API void zvFormatSetPatternBackgroundColorA(FormatHandle handle, int color);
ZELVAR_API int zvFormatLockedA(FormatHandle handle);
ZELVAR_API void zvFormatSetLockedA(FormatHandle handle, int locked);
ZELVAR_API int zvFormatHiddenA(FormatHandle handle);
ZELVAR_API void zvFormatSetHiddenA(FormatHandle handle, int hidden);
ZELVAR_API FontHandle zvFormatFontW(FormatHandle handle);
ZELVAR_API int zvFormatSetFontW(FormatHandle handle, FontHandle font);
ZELVAR_API int zvFormatNumFormatW(FormatHandle handle);
ZELVAR_API void zvFormatSetNumFormatW(FormatHandle handle, int numFormat);
ZELVAR_API int zvFormatAlignHW(FormatHandle handle);
ZELVAR_API void zvFormatSetAlignHW(FormatHandle handle, int align);
ZELVAR_API int zvFormatAlignVW(FormatHandle handle);
ZELVAR_API void zvFormatSetAlignVW(FormatHandle handle, int align);
ZELVAR_API int zvFormatWrapW(FormatHandle handle);
ZELVAR_API void zvFormatSetWrapW(FormatHandle handle, int wrap);
ZELVAR_API int zvFormatRotationW(FormatHandle handle);
ZELVAR_API int zvFormatSetRotationW(FormatHandle handle, int rotation);
ZELVAR_API int zvFormatIndentW(FormatHandle handle);
ZELVAR_API void zvFormatSetIndentW(FormatHandle handle, int indent);
ZELVAR_API int zvFormatShrinkToFitW(FormatHandle handle);
ZELVAR_API void zvFormatSetShrinkToFitW(FormatHandle handle, int shrinkToFit);
ZELVAR_API void zvFormatSetBorderW(FormatHandle handle, int style);
ZELVAR_API void zvFormatSetBorderColorW(FormatHandle handle, int color);
ZELVAR_API int zvFormatBorderLeftW(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderLeftW(FormatHandle handle, int style);
ZELVAR_API int zvFormatBorderRightW(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderRightW(FormatHandle handle, int style);
ZELVAR_API int zvFormatBorderTopW(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderTopW(FormatHandle handle, int style);
ZELVAR_API int zvFormatBorderBottomW(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderBottomW(FormatHandle handle, int style);
ZELVAR_API int zvFormatBorderLeftColorW(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderLeftColorW(FormatHandle handle, int color);
ZELVAR_API int zvFormatBorderRightColorW(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderRightColorW(FormatHandle handle, int color);
ZELVAR_API int zvFormatBorderTopColorW(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderTopColorW(FormatHandle handle, int color);
ZELVAR_API int zvFormatBorderBottomColorW(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderBottomColorW(FormatHandle handle, int color);
ZELVAR_API int zvFormatBorderDiagonalW(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderDiagonalW(FormatHandle handle, int border);
ZELVAR_API int zvFormatBorderDiagonalStyleW(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderDiagonalStyleW(FormatHandle handle, int style);
ZELVAR_API int zvFormatBorderDiagonalColorW(FormatHandle handle);
ZELVAR_API void zvFormatSetBorderDiagonalColorW(FormatHandle handle, int color);
ZELVAR_API int zvFormatFillPatternW(FormatHandle handle);
ZELVAR_API void zvFormatSetFillPatternW(FormatHandle handle, int pattern);
ZELVAR_API int zvFormatPatternForegroundColorW(FormatHandle handle);
ZELVAR_API void zvFormatSetPatternForegroundColorW(FormatHandle handle, int color);
ZELVAR_API int zvFormatPatternBackgroundColorW(FormatHandle handle);
ZELVAR_API void zvFormatSetPatternBackgroundColorW(FormatHandle handle, int color);
ZELVAR_API int zvFormatLockedW(FormatHandle handle);
ZELVAR_API void zvFormatSetLockedW(FormatHandle handle, int locked);
ZELVAR_API int zvFormatHiddenW(FormatHandle handle);
ZELVAR_API void zvFormatSetHiddenW(FormatHandle handle, int hidden);

/* Font */
ZELVAR_API int zvFontSizeA(FontHandle handle);
ZELVAR_API void zvFontSetSizeA(FontHandle handle, int size);
ZELVAR_API int zvFontItalicA(FontHandle handle);
ZELVAR_API void zvFontSetItalicA(FontHandle handle, int italic);
ZELVAR_API int zvFontStrikeOutA(FontHandle handle);
ZELVAR_API void zvFontSetStrikeOutA(FontHandle handle, int strikeOut);
ZELVAR_API int zvFontColorA(FontHandle handle);
ZELVAR_API void zvFontSetColorA(FontHandle handle, int color);
ZELVAR_API int zvFontBoldA(FontHandle handle);
ZELVAR_API void zvFontSetBoldA(FontHandle handle, int bold);
ZELVAR_API int zvFontScriptA(FontHandle handle);
ZELVAR_API void zvFontSetScriptA(FontHandle handle, int script);
ZELVAR_API int zvFontUnderlineA(FontHandle handle);
ZELVAR_API void zvFontSetUnderlineA(FontHandle handle, int underline);
ZELVAR_API const char* zvFontNameA(FontHandle handle);
ZELVAR_API int zvFontSetNameA(FontHandle handle, const char* name);
ZELVAR_API int zvFontSizeW(FontHandle handle);
ZELVAR_API void zvFontSetSizeW(FontHandle handle, int size);
ZELVAR_API int zvFontItalicW(FontHandle handle);
ZELVAR_API void zvFontSetItalicW(FontHandle handle, int italic);
ZELVAR_API int zvFontStrikeOutW(FontHandle handle);
ZELVAR_API void zvFontSetStrikeOutW(FontHandle handle, int strikeOut);
ZELVAR_API int zvFontColorW(FontHandle handle);
ZELVAR_API void zvFontSetColorW(FontHandle handle, int color);
ZELVAR_API int zvFontBoldW(FontHandle handle);
ZELVAR_API void zvFontSetBoldW(FontHandle handle, int bold);
ZELVAR_API int zvFontScriptW(FontHandle handle);
ZELVAR_API void zvFontSetScriptW(FontHandle handle, int script);
ZELVAR_API int zvFontUnderlineW(FontHandle handle);
ZELVAR_API void zvFontSetUnderlineW(FontHandle handle, int underline);
ZELVAR_API const wchar_t* zvFontNameW(FontHandle handle);
ZELVAR_API int zvFontSetNameW(FontHandle handle, const wchar_t* name);

#ifdef __cplusplus
}
#endif

#endif /* ZELVAR_C_H */
