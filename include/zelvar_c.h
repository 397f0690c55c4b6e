/*
 * zelvar: the flat C interface. Generated from include/zelvar.h by tools/gen_flat.py; do not edit.
 *
 * Each of the 217 operations of the C++ interfaces is one function per text width:
 * zv<Class><Operation>A takes 8-bit text, ...W wide text. The first argument is the object's
 * handle; a handle from an A factory is used with A functions only. bool results are 1 or 0,
 * enumerations are int (their numbers are listed in zelvar.h). After a failure value,
 * zvBookErrorMessageA/W tells why; a format's or font's failure goes to its book's message.
 *
 *     BookHandle book = zvCreateBookA();
 *     SheetHandle sheet = zvBookAddSheetA(book, "Sheet1", NULL);
 *     zvSheetWriteNumA(sheet, 0, 0, 42.0, NULL);
 *     zvBookReleaseA(book);
 *
 * Each function's comment says what it does, then "Fails with:" and the messages it can set
 * ("none": it can't fail and may leave the message as it was), then a two-line example over a
 * book, sheet, fmt (a format) and font. Where XML books (.xlsx) answer differently, a note
 * "XML books:" says how. The text names operations as the C++ interfaces do: addSheet of a book
 * is zvBookAddSheetA/W here, setBold of a font zvFontSetBoldA/W.
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
/* A new, empty binary (.xls) book with 8-bit text, or NULL if it could not be made; end it with
 * zvBookReleaseA. It has no sheet until zvBookAddSheetA or zvBookLoadA.
 * Fails with: none (there is no book to hold a message).
 *     BookHandle book = zvCreateBookA();
 *     if (book) zvBookReleaseA(book); */
ZELVAR_API BookHandle zvCreateBookA(void);
/* As zvCreateBookA, with wide (wchar_t) text; use the W functions with it.
 * Fails with: none.
 *     BookHandle wide = zvCreateBookW();
 *     if (wide) zvBookReleaseW(wide); */
ZELVAR_API BookHandle zvCreateBookW(void);
/* As zvCreateBookA, but a failure during construction is not caught here.
 * Fails with: none.
 *     BookHandle book = zvCreateBookCA();
 *     zvBookReleaseA(book); */
ZELVAR_API BookHandle zvCreateBookCA(void);
/* As zvCreateBookW, but a failure during construction is not caught here.
 * Fails with: none.
 *     BookHandle wide = zvCreateBookCW();
 *     zvBookReleaseW(wide); */
ZELVAR_API BookHandle zvCreateBookCW(void);
/* A new XML (.xlsx) book with 8-bit text, with the parts of a new package and the default
 * stylesheet, or NULL if it could not be made; end it with zvBookReleaseA. It is transitional
 * until a strict file is loaded; zvBookLoadA tries the other dialect when the first fails.
 * Fails with: none (there is no book to hold a message).
 *     BookHandle book = zvCreateXMLBookA();
 *     if (book) zvBookReleaseA(book); */
ZELVAR_API BookHandle zvCreateXMLBookA(void);
/* As zvCreateXMLBookA, with wide (wchar_t) text; use the W functions with it.
 * Fails with: none.
 *     BookHandle wide = zvCreateXMLBookW();
 *     if (wide) zvBookReleaseW(wide); */
ZELVAR_API BookHandle zvCreateXMLBookW(void);
/* As zvCreateXMLBookA, but a failure during construction is not caught here.
 * Fails with: none.
 *     BookHandle book = zvCreateXMLBookCA();
 *     zvBookReleaseA(book); */
ZELVAR_API BookHandle zvCreateXMLBookCA(void);
/* As zvCreateXMLBookW, but a failure during construction is not caught here.
 * Fails with: none.
 *     BookHandle wide = zvCreateXMLBookCW();
 *     zvBookReleaseW(wide); */
ZELVAR_API BookHandle zvCreateXMLBookCW(void);
#endif

/* ---- Book ---- */
/* Discards the book's content and reads the whole file; on failure the book is a new empty
 * book. Text of 8-bit names follows setLocale.
 * Fails with: "can't open file for reading", "This file format isn't supported", "workbook
 * is encrypted", "read error: the stream ends inside a record", and messages naming the
 * damaged structure of a broken file. XML books: the ZIP layer's text for a file it can't
 * open or read, as "No such file or directory.".
 *     if (!zvBookLoadA(book, "in.xls"))
 *         printf("can't load: %s\n", zvBookErrorMessageA(book)); */
ZELVAR_API int zvBookLoadA(BookHandle handle, const char* filename);
ZELVAR_API int zvBookLoadW(BookHandle handle, const wchar_t* filename);
/* Writes the whole book to the file, replacing it; can be repeated.
 * Fails with: "can't open file for writing", "stream error, perhaps it's too small writing
 * buffer". XML books: "min/max occurs error on marshaling" for a book without sheets.
 *     if (!zvBookSaveA(book, "out.xls"))
 *         printf("can't save: %s\n", zvBookErrorMessageA(book)); */
ZELVAR_API int zvBookSaveA(BookHandle handle, const char* filename);
ZELVAR_API int zvBookSaveW(BookHandle handle, const wchar_t* filename);
/* As load, from a memory block that the caller keeps. After a failure the book may hold part
 * of the block; the next load or loadRaw starts clean.
 * Fails with: the messages of load, except those of opening a file.
 *     const char* data; unsigned size;
 *     if (zvBookSaveRawA(other, &data, &size)) zvBookLoadRawA(book, data, size); */
ZELVAR_API int zvBookLoadRawA(BookHandle handle, const char* data, unsigned size);
ZELVAR_API int zvBookLoadRawW(BookHandle handle, const char* data, unsigned size);
/* Writes the book to a block owned by the book, valid until the next saveRaw or release.
 * Fails with: "stream error, perhaps it's too small writing buffer". XML books: "min/max
 * occurs error on marshaling" for a book without sheets.
 *     const char* data; unsigned size;
 *     if (zvBookSaveRawA(book, &data, &size)) fwrite(data, 1, size, stdout); */
ZELVAR_API int zvBookSaveRawA(BookHandle handle, const char** data, unsigned* size);
ZELVAR_API int zvBookSaveRawW(BookHandle handle, const char** data, unsigned* size);
/* Adds a sheet at the end: empty, or a copy of initSheet (a sheet of this book). Names are
 * unique without regard to case and at most 31 characters long; a longer one is cut.
 * Fails with: "sheet name mustn't be NULL", "book already contains such sheet name",
 * "specified sheet not found", "warning: sheet's name is cut to 31 characters" (the sheet is
 * made).
 *     SheetHandle data = zvBookAddSheetA(book, "Data", NULL);
 *     SheetHandle copy = zvBookAddSheetA(book, "Data (2)", data); */
ZELVAR_API SheetHandle zvBookAddSheetA(BookHandle handle, const char* name, SheetHandle initSheet);
ZELVAR_API SheetHandle zvBookAddSheetW(BookHandle handle, const wchar_t* name, SheetHandle initSheet);
/* Adds a sheet at position index, 0 to sheetCount(), as addSheet does at the end.
 * Fails with: "index is out of range", and the messages of addSheet.
 *     SheetHandle first = zvBookInsertSheetA(book, 0, "Summary", NULL);
 *     zvBookSetActiveSheetA(book, 0); */
ZELVAR_API SheetHandle zvBookInsertSheetA(BookHandle handle, int index, const char* name, SheetHandle initSheet);
ZELVAR_API SheetHandle zvBookInsertSheetW(BookHandle handle, int index, const wchar_t* name, SheetHandle initSheet);
/* The sheet at index, 0 to sheetCount() - 1.
 * Fails with: "index is out of range". XML books: "sheet not found".
 *     for (int i = 0; i < zvBookSheetCountA(book); ++i)
 *         puts(zvSheetNameA(zvBookGetSheetA(book, i))); */
ZELVAR_API SheetHandle zvBookGetSheetA(BookHandle handle, int index);
ZELVAR_API SheetHandle zvBookGetSheetW(BookHandle handle, int index);
/* Kind of the sheet at index (SheetType): a worksheet, a chart sheet or another substream
 * that is kept as it is; 2 (SheetTypeOther) on failure.
 * Fails with: "index is out of range". XML books: "sheet not found".
 *     if (zvBookSheetTypeA(book, 1) == 1)
 *         puts("a chart sheet"); */
ZELVAR_API int zvBookSheetTypeA(BookHandle handle, int index);
ZELVAR_API int zvBookSheetTypeW(BookHandle handle, int index);
/* Removes the sheet at index; its pointer is no longer valid.
 * Fails with: "index is out of range", "can't remove the last sheet in workbook".
 *     if (zvBookSheetCountA(book) > 1)
 *         zvBookDelSheetA(book, 0); */
ZELVAR_API int zvBookDelSheetA(BookHandle handle, int index);
ZELVAR_API int zvBookDelSheetW(BookHandle handle, int index);
/* Number of sheets, chart sheets and other substreams included.
 * Fails with: none.
 *     int count = zvBookSheetCountA(book);
 *     SheetHandle last = zvBookGetSheetA(book, count - 1); */
ZELVAR_API int zvBookSheetCountA(BookHandle handle);
ZELVAR_API int zvBookSheetCountW(BookHandle handle);
/* A new format: the defaults, or a copy of initFormat (of this book or another) with a copy of
 * its font.
 * Fails with: "string is too long" when the copied font's name can't be taken.
 *     FormatHandle money = zvBookAddFormatA(book, NULL);
 *     FormatHandle boldMoney = zvBookAddFormatA(book, money); */
ZELVAR_API FormatHandle zvBookAddFormatA(BookHandle handle, FormatHandle initFormat);
ZELVAR_API FormatHandle zvBookAddFormatW(BookHandle handle, FormatHandle initFormat);
/* A new font: the defaults, or a copy of initFont.
 * Fails with: "string is too long" when the copied name can't be taken.
 *     FontHandle title = zvBookAddFontA(book, NULL);
 *     zvFontSetSizeA(title, 16); */
ZELVAR_API FontHandle zvBookAddFontA(BookHandle handle, FontHandle initFont);
ZELVAR_API FontHandle zvBookAddFontW(BookHandle handle, FontHandle initFont);
/* The id (164 and up) of a custom number format text such as "0.00%" or "yyyy-mm-dd"; the
 * same text gives the same id. 0 on failure.
 * Fails with: "maximum number of custom formats is exceeded" when the ids up to 392 are taken.
 *     int euro = zvBookAddCustomNumFormatA(book, "#,##0.00 \"EUR\"");
 *     zvFormatSetNumFormatA(fmt, euro); */
ZELVAR_API int zvBookAddCustomNumFormatA(BookHandle handle, const char* customNumFormat);
ZELVAR_API int zvBookAddCustomNumFormatW(BookHandle handle, const wchar_t* customNumFormat);
/* Text of a custom number format id, in the book's text buffer.
 * Fails with: "custom number format not found", also for the built-in ids below 164. XML
 * books: null with "ok".
 *     const char* text = zvBookCustomNumFormatA(book, zvFormatNumFormatA(fmt));
 *     if (text) puts(text); */
ZELVAR_API const char* zvBookCustomNumFormatA(BookHandle handle, int fmt);
ZELVAR_API const wchar_t* zvBookCustomNumFormatW(BookHandle handle, int fmt);
/* The format at index, 0 to formatSize() - 1; cells of a loaded file point at these.
 * Fails with: "index is out of range".
 *     FormatHandle standard = zvBookFormatA(book, 15);
 *     zvSheetWriteNumA(sheet, 0, 0, 1, standard); */
ZELVAR_API FormatHandle zvBookFormatA(BookHandle handle, int index);
ZELVAR_API FormatHandle zvBookFormatW(BookHandle handle, int index);
/* Number of formats; a new binary book has 21 built-in ones.
 * Fails with: none.
 *     for (int i = 0; i < zvBookFormatSizeA(book); ++i)
 *         printf("%d\n", zvFormatNumFormatA(zvBookFormatA(book, i))); */
ZELVAR_API int zvBookFormatSizeA(BookHandle handle);
ZELVAR_API int zvBookFormatSizeW(BookHandle handle);
/* The font at index, 0 to fontSize() - 1; font 0 is the default font.
 * Fails with: "index is out of range".
 *     FontHandle standard = zvBookFontA(book, 0);
 *     printf("%d points\n", zvFontSizeA(standard)); */
ZELVAR_API FontHandle zvBookFontA(BookHandle handle, int index);
ZELVAR_API FontHandle zvBookFontW(BookHandle handle, int index);
/* Number of fonts; a new binary book has 5 built-in ones.
 * Fails with: none.
 *     for (int i = 0; i < zvBookFontSizeA(book); ++i)
 *         puts(zvFontNameA(zvBookFontA(book, i))); */
ZELVAR_API int zvBookFontSizeA(BookHandle handle);
ZELVAR_API int zvBookFontSizeW(BookHandle handle);
/* The date number of a date and time: days since the book's epoch (1900, or 1904 with
 * setDate1904) plus the time as a fraction of a day. Write it with a date format.
 * Fails with: none.
 *     double when = zvBookDatePackA(book, 2026, 11, 23, 14, 30, 0, 0);
 *     zvFormatSetNumFormatA(fmt, 22); zvSheetWriteNumA(sheet, 0, 0, when, fmt); */
ZELVAR_API double zvBookDatePackA(BookHandle handle, int year, int month, int day, int hour, int min, int sec, int msec);
ZELVAR_API double zvBookDatePackW(BookHandle handle, int year, int month, int day, int hour, int min, int sec, int msec);
/* Splits a date number into its parts; the last four pointers may be null. False, with the
 * message left as it was, for numbers outside the calendar.
 * Fails with: none.
 *     int y, m, d;
 *     if (zvBookDateUnpackA(book, zvSheetReadNumA(sheet, 1, 0, NULL), &y, &m, &d, NULL, NULL, NULL, NULL)) printf("%d-%02d-%02d\n", y, m, d); */
ZELVAR_API int zvBookDateUnpackA(BookHandle handle, double value, int* year, int* month, int* day, int* hour, int* min, int* sec, int* msec);
ZELVAR_API int zvBookDateUnpackW(BookHandle handle, double value, int* year, int* month, int* day, int* hour, int* min, int* sec, int* msec);
/* A colour for red, green and blue (0 to 255). Binary family: the palette index of that
 * colour; when no entry matches exactly, the first entry that colorPack hasn't handed out yet
 * (from index 8 up) is changed to it, so a named colour such as ColorBlack may then show the
 * new colour. ColorAutomatic on failure. XML books: the RGB value (red << 16 | green << 8 |
 * blue) in either mode; formats and fonts read it as that colour only after setRgbMode(true).
 * Fails with: "no free color index, limit is reached for xls format".
 *     int brand = zvBookColorPackA(book, 0, 97, 168);
 *     zvFontSetColorA(font, brand); */
ZELVAR_API int zvBookColorPackA(BookHandle handle, int red, int green, int blue);
ZELVAR_API int zvBookColorPackW(BookHandle handle, int red, int green, int blue);
/* Red, green and blue (0 to 255) of a colour in the book's coding; each pointer may be null.
 * Fails with: none. XML books split the value as RGB in either mode, so ColorTeal (21) gives
 * 0, 0, 21 there.
 *     int r, g, b;
 *     zvBookColorUnpackA(book, 21, &r, &g, &b);  // 0, 128, 128 */
ZELVAR_API void zvBookColorUnpackA(BookHandle handle, int color, int* red, int* green, int* blue);
ZELVAR_API void zvBookColorUnpackW(BookHandle handle, int color, int* red, int* green, int* blue);
/* Index of the sheet whose tab is active when the file opens.
 * Fails with: none.
 *     SheetHandle current = zvBookGetSheetA(book, zvBookActiveSheetA(book));
 *     puts(zvSheetNameA(current)); */
ZELVAR_API int zvBookActiveSheetA(BookHandle handle);
ZELVAR_API int zvBookActiveSheetW(BookHandle handle);
/* Makes the sheet at index active and the only selected one.
 * Fails with: "index is out of range".
 *     zvBookSetActiveSheetA(book, zvBookSheetCountA(book) - 1);
 *     zvBookSaveA(book, "out.xls"); */
ZELVAR_API void zvBookSetActiveSheetA(BookHandle handle, int index);
ZELVAR_API void zvBookSetActiveSheetW(BookHandle handle, int index);
/* Number of pictures in the book's store, those of a loaded file included.
 * Fails with: none.
 *     for (int i = 0; i < zvBookPictureSizeA(book); ++i)
 *         printf("%d\n", zvBookGetPictureA(book, i, NULL, NULL)); */
ZELVAR_API int zvBookPictureSizeA(BookHandle handle);
ZELVAR_API int zvBookPictureSizeW(BookHandle handle);
/* Type (PictureType) and bytes of a picture of the store; the block stays the book's. 255
 * (PictureError) on failure.
 * Fails with: "index is out of range".
 *     const char* data; unsigned size;
 *     if (zvBookGetPictureA(book, 0, &data, &size) == 0) fwrite(data, 1, size, stdout); */
ZELVAR_API int zvBookGetPictureA(BookHandle handle, int index, const char** data, unsigned* size);
ZELVAR_API int zvBookGetPictureW(BookHandle handle, int index, const char** data, unsigned* size);
/* Adds a picture file to the store and returns its id for ISheetT::setPicture; -1 on
 * failure. The type comes from the name's ending: .png, .jpg, .wmf, .emf, .bmp, .dib.
 * Fails with: "unknown picture format", "can't open file", "invalid jpg file", "picture is
 * too big".
 *     int logo = zvBookAddPictureA(book, "logo.png");
 *     if (logo < 0) puts(zvBookErrorMessageA(book)); */
ZELVAR_API int zvBookAddPictureA(BookHandle handle, const char* filename);
ZELVAR_API int zvBookAddPictureW(BookHandle handle, const wchar_t* filename);
/* As addPicture, from a memory block, which is copied; the type comes from its first bytes.
 * Fails with: "unknown picture format", "invalid jpg file", "picture is too big".
 *     const char* data; unsigned size;
 *     if (zvBookGetPictureA(other, 0, &data, &size) != 255) zvBookAddPicture2A(book, data, size); */
ZELVAR_API int zvBookAddPicture2A(BookHandle handle, const char* data, unsigned size);
ZELVAR_API int zvBookAddPicture2W(BookHandle handle, const char* data, unsigned size);
/* Name of the default font (font 0), in the font's text buffer; its size in points goes to
 * *size when size is not null.
 * Fails with: "fonts is empty".
 *     int points;
 *     const char* family = zvBookDefaultFontA(book, &points); */
ZELVAR_API const char* zvBookDefaultFontA(BookHandle handle, int* size);
ZELVAR_API const wchar_t* zvBookDefaultFontW(BookHandle handle, int* size);
/* Sets the name and size in points of the default font (font 0), which cells without a font
 * of their own show in.
 * Fails with: "fonts is empty", "string is too long".
 *     zvBookSetDefaultFontA(book, "Liberation Sans", 11);
 *     puts(zvBookErrorMessageA(book)); */
ZELVAR_API void zvBookSetDefaultFontA(BookHandle handle, const char* name, int size);
ZELVAR_API void zvBookSetDefaultFontW(BookHandle handle, const wchar_t* name, int size);
/* Whether formula text is read and written in R1C1 notation.
 * Fails with: none.
 *     zvBookSetRefR1C1A(book, 1);
 *     int r1c1 = zvBookRefR1C1A(book);  // 1 */
ZELVAR_API int zvBookRefR1C1A(BookHandle handle);
ZELVAR_API int zvBookRefR1C1W(BookHandle handle);
/* Chooses R1C1 (true) or A1 notation for formula text, for all sheets and those still to come.
 * Fails with: none.
 *     zvBookSetRefR1C1A(book, 1);
 *     zvSheetWriteFormulaA(sheet, 2, 0, "R[-2]C+R[-1]C", NULL); */
ZELVAR_API void zvBookSetRefR1C1A(BookHandle handle, int refR1C1);
ZELVAR_API void zvBookSetRefR1C1W(BookHandle handle, int refR1C1);
/* Whether colours are RGB values (true) or palette indexes.
 * Fails with: none.
 *     if (zvBookRgbModeA(book))
 *         puts("RGB colours"); */
ZELVAR_API int zvBookRgbModeA(BookHandle handle);
ZELVAR_API int zvBookRgbModeW(BookHandle handle);
/* Sets the colour coding. Only XML books use RGB values; binary books keep palette indexes.
 * Fails with: none.
 *     zvBookSetRgbModeA(book, 0);
 *     zvFontSetColorA(font, 10); */
ZELVAR_API void zvBookSetRgbModeA(BookHandle handle, int rgbMode);
ZELVAR_API void zvBookSetRgbModeW(BookHandle handle, int rgbMode);
/* The library's version, 0x03050300.
 * Fails with: none.
 *     int v = zvBookVersionA(book);
 *     printf("%x\n", v); */
ZELVAR_API int zvBookVersionA(BookHandle handle);
ZELVAR_API int zvBookVersionW(BookHandle handle);
/* The record format version of a binary book: 1536 (BIFF8) for new books and .xls files,
 * 1280 (BIFF5) for the older files it reads. XML books: 0.
 * Fails with: none.
 *     if (zvBookBiffVersionA(book) == 1280)
 *         puts("a BIFF5 file"); */
ZELVAR_API int zvBookBiffVersionA(BookHandle handle);
ZELVAR_API int zvBookBiffVersionW(BookHandle handle);
/* Whether dates count from 1904 instead of 1900.
 * Fails with: none.
 *     if (zvBookIsDate1904A(book))
 *         puts("1904 date system"); */
ZELVAR_API int zvBookIsDate1904A(BookHandle handle);
ZELVAR_API int zvBookIsDate1904W(BookHandle handle);
/* Chooses the 1904 (true) or the 1900 date system for datePack and dateUnpack; numbers already
 * in cells do not change.
 * Fails with: none.
 *     zvBookSetDate1904A(book, 1);
 *     double day = zvBookDatePackA(book, 1904, 1, 2, 0, 0, 0, 0);  // 1 */
ZELVAR_API void zvBookSetDate1904A(BookHandle handle, int date1904);
ZELVAR_API void zvBookSetDate1904W(BookHandle handle, int date1904);
/* Chooses how 8-bit text is converted: "UTF-8", or a C locale name ("" for the environment's,
 * the default), which then becomes the process's locale.
 * Fails with: "setlocale error" when the C library refuses the name.
 *     zvBookSetLocaleA(book, "UTF-8");
 *     zvSheetWriteStrA(sheet, 0, 0, "Grüße", NULL); */
ZELVAR_API int zvBookSetLocaleA(BookHandle handle, const char* locale);
ZELVAR_API int zvBookSetLocaleW(BookHandle handle, const char* locale);
/* The outcome of the last operation on the book or anything it owns: "ok", or what went
 * wrong; always 8-bit. Valid until the next operation.
 * Fails with: none.
 *     if (!zvSheetWriteNumA(sheet, 70000, 0, 1.0, NULL))
 *         puts(zvBookErrorMessageA(book));  // "row must be in range 0-65535" */
ZELVAR_API const char* zvBookErrorMessageA(BookHandle handle);
ZELVAR_API const char* zvBookErrorMessageW(BookHandle handle);
/* Destroys the book and everything it owns; no pointer it handed out stays valid.
 * Fails with: none.
 *     zvBookSaveA(book, "out.xls");
 *     zvBookReleaseA(book); */
ZELVAR_API void zvBookReleaseA(BookHandle handle);
ZELVAR_API void zvBookReleaseW(BookHandle handle);

/* ---- Sheet ---- */
/* The kind of value stored at the cell (CellType); a formula answers the kind of its cached
 * result. Places outside the grid are empty.
 * Fails with: none.
 *     if (zvSheetCellTypeA(sheet, 2, 1) == 1)
 *         printf("%g\n", zvSheetReadNumA(sheet, 2, 1, NULL)); */
ZELVAR_API int zvSheetCellTypeA(SheetHandle handle, int row, int col);
ZELVAR_API int zvSheetCellTypeW(SheetHandle handle, int row, int col);
/* Whether the cell holds a formula; false outside the grid.
 * Fails with: none.
 *     if (zvSheetIsFormulaA(sheet, 5, 0))
 *         puts(zvSheetReadFormulaA(sheet, 5, 0, NULL)); */
ZELVAR_API int zvSheetIsFormulaA(SheetHandle handle, int row, int col);
ZELVAR_API int zvSheetIsFormulaW(SheetHandle handle, int row, int col);
/* The cell's format; for an absent cell that of its row, then of its column, then format 0.
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "formats are not
 * found", "format not found".
 *     FormatHandle f = zvSheetCellFormatA(sheet, 0, 0);
 *     if (f && zvFormatWrapA(f)) puts("wraps"); */
ZELVAR_API FormatHandle zvSheetCellFormatA(SheetHandle handle, int row, int col);
ZELVAR_API FormatHandle zvSheetCellFormatW(SheetHandle handle, int row, int col);
/* Changes the cell's format and keeps its value; an absent cell becomes a blank with it.
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "specified
 * format is not found" for a null format or one of another book.
 *     zvFormatSetFillPatternA(fmt, 1);
 *     zvSheetSetCellFormatA(sheet, 3, 2, fmt); */
ZELVAR_API void zvSheetSetCellFormatA(SheetHandle handle, int row, int col, FormatHandle format);
ZELVAR_API void zvSheetSetCellFormatW(SheetHandle handle, int row, int col, FormatHandle format);
/* Text of a text cell, or of a formula with a text result, in the sheet's text buffer.
 * format, when not null, receives the cell's format (null on failure).
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "this cell
 * doesn't contain a string". XML books: "cell is not found" for an absent cell.
 *     const char* text = zvSheetReadStrA(sheet, 0, 0, NULL);
 *     if (text) puts(text); */
ZELVAR_API const char* zvSheetReadStrA(SheetHandle handle, int row, int col, FormatHandle* format);
ZELVAR_API const wchar_t* zvSheetReadStrW(SheetHandle handle, int row, int col, FormatHandle* format);
/* Writes text, replacing what the cell held. Equal texts share one entry of the book's
 * string table.
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "string mustn't
 * be NULL", "string is too long" at 32768 characters or more, "specified format not found".
 *     if (!zvSheetWriteStrA(sheet, 0, 0, "Name", fmt))
 *         puts(zvBookErrorMessageA(book)); */
ZELVAR_API int zvSheetWriteStrA(SheetHandle handle, int row, int col, const char* value, FormatHandle format);
ZELVAR_API int zvSheetWriteStrW(SheetHandle handle, int row, int col, const wchar_t* value, FormatHandle format);
/* Number of a number cell, or of a formula with a number result; 0 on failure. format, when
 * not null, receives the cell's format (null on failure).
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "this cell
 * doesn't contain a number". XML books: "cell is not found" for an absent cell.
 *     FormatHandle f = NULL;
 *     double value = zvSheetReadNumA(sheet, 1, 0, &f); */
ZELVAR_API double zvSheetReadNumA(SheetHandle handle, int row, int col, FormatHandle* format);
ZELVAR_API double zvSheetReadNumW(SheetHandle handle, int row, int col, FormatHandle* format);
/* Writes a number, replacing what the cell held. A date is a number with a date format
 * (IBookT::datePack).
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "specified format
 * not found", "too many cells in sheet".
 *     zvSheetWriteNumA(sheet, 1, 0, 3.25, NULL);
 *     zvSheetWriteNumA(sheet, 1, 1, 0.075, fmt); */
ZELVAR_API int zvSheetWriteNumA(SheetHandle handle, int row, int col, double value, FormatHandle format);
ZELVAR_API int zvSheetWriteNumW(SheetHandle handle, int row, int col, double value, FormatHandle format);
/* Value of a boolean cell, or of a formula with a boolean result; false on failure. An error
 * cell is not a boolean, whatever its code.
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "this cell
 * doesn't contain a bool". XML books: "cell is not found" for an absent cell.
 *     int paid = zvSheetReadBoolA(sheet, 4, 3, NULL);
 *     if (strcmp(zvBookErrorMessageA(book), "ok") != 0) puts("not a int"); */
ZELVAR_API int zvSheetReadBoolA(SheetHandle handle, int row, int col, FormatHandle* format);
ZELVAR_API int zvSheetReadBoolW(SheetHandle handle, int row, int col, FormatHandle* format);
/* Writes a boolean, replacing what the cell held.
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "specified format
 * not found", "too many cells in sheet".
 *     zvSheetWriteBoolA(sheet, 4, 3, 1, NULL);
 *     zvSheetWriteBoolA(sheet, 5, 3, 0, fmt); */
ZELVAR_API int zvSheetWriteBoolA(SheetHandle handle, int row, int col, int value, FormatHandle format);
ZELVAR_API int zvSheetWriteBoolW(SheetHandle handle, int row, int col, int value, FormatHandle format);
/* True when the cell is a blank (a format and no value); its format goes to *format.
 * Fails with: "format mustn't be NULL", "row must be in range 0-65535", "col must be in range
 * 0-255", "this cell doesn't contain a blank". XML books: "cell is not blank".
 *     FormatHandle f = NULL;
 *     if (zvSheetReadBlankA(sheet, 4, 4, &f)) printf("border %d\n", zvFormatBorderTopA(f)); */
ZELVAR_API int zvSheetReadBlankA(SheetHandle handle, int row, int col, FormatHandle* format);
ZELVAR_API int zvSheetReadBlankW(SheetHandle handle, int row, int col, FormatHandle* format);
/* Makes the cell a blank: a format and no value, as for a bordered empty cell.
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "specified format
 * not found", "too many cells in sheet". XML books: "format is null" for a null format.
 *     zvFormatSetBorderA(fmt, 1);
 *     zvSheetWriteBlankA(sheet, 4, 4, fmt); */
ZELVAR_API int zvSheetWriteBlankA(SheetHandle handle, int row, int col, FormatHandle format);
ZELVAR_API int zvSheetWriteBlankW(SheetHandle handle, int row, int col, FormatHandle format);
/* Formula text of the cell without a leading "=", in A1 or R1C1 notation as
 * IBookT::refR1C1() says; a cell of a shared or array formula gives its own form of the
 * group's formula. The text is in the sheet's text buffer.
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "cell doesn't
 * contain a formula", and a message naming the damage for tokens that can't be read. XML
 * books: "cell is not found", "this cell doesn't contain a formula".
 *     const char* formula = zvSheetReadFormulaA(sheet, 5, 0, NULL);
 *     if (formula) printf("=%s\n", formula); */
ZELVAR_API const char* zvSheetReadFormulaA(SheetHandle handle, int row, int col, FormatHandle* format);
ZELVAR_API const wchar_t* zvSheetReadFormulaW(SheetHandle handle, int row, int col, FormatHandle* format);
/* Compiles a formula (a leading "=" is optional) and stores it with a cached result of 0;
 * nothing is calculated. Other sheets are named as in Sheet2!A1 or 'My sheet'!A1:B2.
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "formula mustn't
 * be NULL", "specified format not found", "error in formula", "error: function parentheses not
 * found", "incorrect number of function parameters", "incorrect token in formula" (also for a
 * defined name or an unknown function), "sheet is not found", "formula is too long", "too many
 * external sheet references"; the cell stays as it was. An operator without its operands,
 * as in "1+", is not caught here: such a formula is stored, and readFormula then fails with
 * "toInfix error: expected two operands for binary operator". XML books store the text
 * unchecked: only "value is null" and the cell ranges of writeNum.
 *     zvSheetWriteFormulaA(sheet, 5, 0, "SUM(A1:A5)", NULL);
 *     zvSheetWriteFormulaA(sheet, 6, 0, "IF(A6>100,\"high\",\"low\")", fmt); */
ZELVAR_API int zvSheetWriteFormulaA(SheetHandle handle, int row, int col, const char* value, FormatHandle format);
ZELVAR_API int zvSheetWriteFormulaW(SheetHandle handle, int row, int col, const wchar_t* value, FormatHandle format);
/* Comment text of the cell, or null when the cell has none (with "ok").
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255". XML books: "not
 * supported".
 *     const char* note = zvSheetReadCommentA(sheet, 0, 0);
 *     if (!note) puts(zvBookErrorMessageA(book)); */
ZELVAR_API const char* zvSheetReadCommentA(SheetHandle handle, int row, int col);
ZELVAR_API const wchar_t* zvSheetReadCommentW(SheetHandle handle, int row, int col);
/* Attaches a comment to the cell with its author (null: the default author) and the size of
 * its box in pixels; a second comment on the same cell replaces the first.
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "comment is too
 * long", "author is too long", "too many shapes", "too many objects in sheet". XML books:
 * "not supported".
 *     zvSheetWriteCommentA(sheet, 0, 0, "checked", "audit", 129, 75);
 *     puts(zvBookErrorMessageA(book)); */
ZELVAR_API void zvSheetWriteCommentA(SheetHandle handle, int row, int col, const char* value, const char* author, int width, int height);
ZELVAR_API void zvSheetWriteCommentW(SheetHandle handle, int row, int col, const wchar_t* value, const wchar_t* author, int width, int height);
/* Whether the cell is a number whose format is a date format: ids 14 to 22 and 45 to 47, or a
 * custom format with a date or time letter outside brackets.
 * Fails with: none.
 *     int y, m, d;
 *     if (zvSheetIsDateA(sheet, 1, 0)) zvBookDateUnpackA(book, zvSheetReadNumA(sheet, 1, 0, NULL), &y, &m, &d, NULL, NULL, NULL, NULL); */
ZELVAR_API int zvSheetIsDateA(SheetHandle handle, int row, int col);
ZELVAR_API int zvSheetIsDateW(SheetHandle handle, int row, int col);
/* The error code of an error cell or formula result (ErrorType); 255 (ErrorNone) for any
 * other cell, which is no failure.
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255". XML books: "cell
 * is not found", "this cell doesn't contain an error", "unknown error value".
 *     if (zvSheetReadErrorA(sheet, 2, 2) == 7)
 *         puts("division by zero"); */
ZELVAR_API int zvSheetReadErrorA(SheetHandle handle, int row, int col);
ZELVAR_API int zvSheetReadErrorW(SheetHandle handle, int row, int col);
/* Column width in characters of the default font's digits: 8.43 for a column never set, 0 for
 * a hidden one.
 * Fails with: none.
 *     zvSheetSetColA(sheet, 0, 0, 20, NULL, 0);
 *     double width = zvSheetColWidthA(sheet, 0);  // 20 */
ZELVAR_API double zvSheetColWidthA(SheetHandle handle, int col);
ZELVAR_API double zvSheetColWidthW(SheetHandle handle, int col);
/* Row height in points; the sheet's default height for a row never set.
 * Fails with: none.
 *     zvSheetSetRowA(sheet, 0, 30, NULL, 0);
 *     double height = zvSheetRowHeightA(sheet, 0);  // 30 */
ZELVAR_API double zvSheetRowHeightA(SheetHandle handle, int row);
ZELVAR_API double zvSheetRowHeightW(SheetHandle handle, int row);
/* Width (in characters), format and hidden state of the columns colFirst to colLast.
 * Fails with: "col must be in range 0-255", "colLast must be greater than or equal to
 * colFirst", "specified format not found". XML books: "col must be less than 16384".
 *     zvSheetSetColA(sheet, 0, 0, 30, NULL, 0);
 *     zvSheetSetColA(sheet, 1, 4, 12, fmt, 0); */
ZELVAR_API int zvSheetSetColA(SheetHandle handle, int colFirst, int colLast, double width, FormatHandle format, int hidden);
ZELVAR_API int zvSheetSetColW(SheetHandle handle, int colFirst, int colLast, double width, FormatHandle format, int hidden);
/* Height (in points), format and hidden state of a row.
 * Fails with: "row must be in range 0-65535", "specified format not found", "height is too
 * big" at 409.65 points or more.
 *     zvSheetSetRowA(sheet, 0, 30, fmt, 0);
 *     zvSheetSetRowA(sheet, 7, 15, NULL, 1); */
ZELVAR_API int zvSheetSetRowA(SheetHandle handle, int row, double height, FormatHandle format, int hidden);
ZELVAR_API int zvSheetSetRowW(SheetHandle handle, int row, double height, FormatHandle format, int hidden);
/* Whether the row is hidden.
 * Fails with: none.
 *     zvSheetSetRowHiddenA(sheet, 3, 1);
 *     int gone = zvSheetRowHiddenA(sheet, 3);  // 1 */
ZELVAR_API int zvSheetRowHiddenA(SheetHandle handle, int row);
ZELVAR_API int zvSheetRowHiddenW(SheetHandle handle, int row);
/* Hides or shows a row.
 * Fails with: "row must be in range 0-65535".
 *     zvSheetSetRowHiddenA(sheet, 3, 1);
 *     zvSheetSetRowHiddenA(sheet, 3, 0); */
ZELVAR_API int zvSheetSetRowHiddenA(SheetHandle handle, int row, int hidden);
ZELVAR_API int zvSheetSetRowHiddenW(SheetHandle handle, int row, int hidden);
/* Whether the column is hidden.
 * Fails with: none.
 *     zvSheetSetColHiddenA(sheet, 2, 1);
 *     int gone = zvSheetColHiddenA(sheet, 2);  // 1 */
ZELVAR_API int zvSheetColHiddenA(SheetHandle handle, int col);
ZELVAR_API int zvSheetColHiddenW(SheetHandle handle, int col);
/* Hides or shows a column. It takes the width colWidth() reads, which is 0 while the column
 * is hidden: a column shown again needs its width from setCol.
 * Fails with: "col must be in range 0-255".
 *     zvSheetSetColHiddenA(sheet, 2, 1);
 *     zvSheetSetColA(sheet, 2, 2, 12, NULL, 0);  // shown again, 12 characters wide */
ZELVAR_API int zvSheetSetColHiddenA(SheetHandle handle, int col, int hidden);
ZELVAR_API int zvSheetSetColHiddenW(SheetHandle handle, int col, int hidden);
/* The merged block that holds the cell, through the pointers (each may be null).
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "this cell isn't
 * in merging block".
 *     int r1, r2, c1, c2;
 *     if (zvSheetGetMergeA(sheet, 0, 1, &r1, &r2, &c1, &c2)) printf("%d..%d\n", c1, c2); */
ZELVAR_API int zvSheetGetMergeA(SheetHandle handle, int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast);
ZELVAR_API int zvSheetGetMergeW(SheetHandle handle, int row, int col, int* rowFirst, int* rowLast, int* colFirst, int* colLast);
/* Merges the block; its absent cells become blanks with the top left cell's format. Overlap
 * with other blocks is not checked.
 * Fails with: "col must be in range 0-255", "rowLast must be greater than or equal to
 * rowFirst", "colLast must be greater than or equal to colFirst". XML books: "col must be less
 * than 16384".
 *     zvSheetWriteStrA(sheet, 0, 0, "Quarterly report", fmt);
 *     zvSheetSetMergeA(sheet, 0, 0, 0, 3); */
ZELVAR_API int zvSheetSetMergeA(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast);
ZELVAR_API int zvSheetSetMergeW(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast);
/* Removes the merged block that holds the cell; false, with the message left as it was, when
 * no block holds it.
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255". XML books: "this
 * cell isn't in merging block" when no block holds it.
 *     zvSheetSetMergeA(sheet, 0, 0, 0, 3);
 *     zvSheetDelMergeA(sheet, 0, 2); */
ZELVAR_API int zvSheetDelMergeA(SheetHandle handle, int row, int col);
ZELVAR_API int zvSheetDelMergeW(SheetHandle handle, int row, int col);
/* Number of pictures anchored on this sheet.
 * Fails with: none.
 *     for (int i = 0; i < zvSheetPictureSizeA(sheet); ++i)
 *         printf("%d\n", zvSheetGetPictureA(sheet, i, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL)); */
ZELVAR_API int zvSheetPictureSizeA(SheetHandle handle);
ZELVAR_API int zvSheetPictureSizeW(SheetHandle handle);
/* Id (in the book's store) and place of the index-th picture of the sheet, -1 on failure;
 * every pointer may be null. Width and height are in pixels.
 * Fails with: "picture not found".
 *     int row, col;
 *     int id = zvSheetGetPictureA(sheet, 0, &row, &col, NULL, NULL, NULL, NULL, NULL, NULL); */
ZELVAR_API int zvSheetGetPictureA(SheetHandle handle, int index, int* rowTop, int* colLeft, int* rowBottom, int* colRight, int* width, int* height, int* offsetX, int* offsetY);
ZELVAR_API int zvSheetGetPictureW(SheetHandle handle, int index, int* rowTop, int* colLeft, int* rowBottom, int* colRight, int* width, int* height, int* offsetX, int* offsetY);
/* Anchors a picture of the book's store at the cell, at its natural size times scale, moved
 * by offsetX and offsetY pixels. An offset beyond the cell is cut to the cell's size and
 * leaves a warning as the message: "warning: offset_x exceed cell's width", "warning:
 * offset_y exceed cell's height" or "warning: offset_x and offset_y exceed cell's size".
 * Fails with: "pictureId is out of range", "row must be in range 0-65535", "col must be in
 * range 0-255".
 *     int id = zvBookAddPictureA(book, "logo.png");
 *     zvSheetSetPictureA(sheet, 0, 0, id, 0.5, 0, 0); */
ZELVAR_API void zvSheetSetPictureA(SheetHandle handle, int row, int col, int pictureId, double scale, int offsetX, int offsetY);
ZELVAR_API void zvSheetSetPictureW(SheetHandle handle, int row, int col, int pictureId, double scale, int offsetX, int offsetY);
/* Anchors a picture at a size in pixels. A width or height of -1 is not the natural size
 * (setPicture with scale 1 gives that): the anchor then ends in the last row or column of
 * the merged block that holds the cell (or in the cell itself) with a far offset beyond that
 * cell, which readers show in their own ways and getPicture reads back as a meaningless
 * size. Offsets as in setPicture, with the same warnings.
 * Fails with: "pictureId is out of range", "row must be in range 0-65535", "col must be in
 * range 0-255".
 *     int id = zvBookAddPictureA(book, "logo.png");
 *     zvSheetSetPicture2A(sheet, 0, 0, id, 200, 100, 0, 0); */
ZELVAR_API void zvSheetSetPicture2A(SheetHandle handle, int row, int col, int pictureId, int width, int height, int offsetX, int offsetY);
ZELVAR_API void zvSheetSetPicture2W(SheetHandle handle, int row, int col, int pictureId, int width, int height, int offsetX, int offsetY);
/* Row of the index-th horizontal page break (the break comes before that row); -1 on failure.
 * Fails with: "index is out of range". XML books: -1 with "ok".
 *     for (int i = 0; i < zvSheetGetHorPageBreakSizeA(sheet); ++i)
 *         printf("%d\n", zvSheetGetHorPageBreakA(sheet, i)); */
ZELVAR_API int zvSheetGetHorPageBreakA(SheetHandle handle, int index);
ZELVAR_API int zvSheetGetHorPageBreakW(SheetHandle handle, int index);
/* Number of horizontal page breaks.
 * Fails with: none.
 *     zvSheetSetHorPageBreakA(sheet, 40, 1);
 *     int breaks = zvSheetGetHorPageBreakSizeA(sheet);  // 1 */
ZELVAR_API int zvSheetGetHorPageBreakSizeA(SheetHandle handle);
ZELVAR_API int zvSheetGetHorPageBreakSizeW(SheetHandle handle);
/* Column of the index-th vertical page break; -1 on failure.
 * Fails with: "index is out of range". XML books: -1 with "ok".
 *     for (int i = 0; i < zvSheetGetVerPageBreakSizeA(sheet); ++i)
 *         printf("%d\n", zvSheetGetVerPageBreakA(sheet, i)); */
ZELVAR_API int zvSheetGetVerPageBreakA(SheetHandle handle, int index);
ZELVAR_API int zvSheetGetVerPageBreakW(SheetHandle handle, int index);
/* Number of vertical page breaks.
 * Fails with: none.
 *     zvSheetSetVerPageBreakA(sheet, 6, 1);
 *     int breaks = zvSheetGetVerPageBreakSizeA(sheet);  // 1 */
ZELVAR_API int zvSheetGetVerPageBreakSizeA(SheetHandle handle);
ZELVAR_API int zvSheetGetVerPageBreakSizeW(SheetHandle handle);
/* Adds (true) or removes (false) a page break before the row.
 * Fails with: "pagebreak already exists", "pagebreak not found", "number of pagebreaks is
 * exceed limit" beyond 1026 breaks.
 *     zvSheetSetHorPageBreakA(sheet, 40, 1);
 *     zvSheetSetHorPageBreakA(sheet, 40, 0); */
ZELVAR_API int zvSheetSetHorPageBreakA(SheetHandle handle, int row, int pageBreak);
ZELVAR_API int zvSheetSetHorPageBreakW(SheetHandle handle, int row, int pageBreak);
/* Adds (true) or removes (false) a page break before the column.
 * Fails with: "pagebreak already exists", "pagebreak not found", "number of pagebreaks is
 * exceed limit" beyond 1026 breaks.
 *     zvSheetSetVerPageBreakA(sheet, 6, 1);
 *     zvSheetSetVerPageBreakA(sheet, 6, 0); */
ZELVAR_API int zvSheetSetVerPageBreakA(SheetHandle handle, int col, int pageBreak);
ZELVAR_API int zvSheetSetVerPageBreakW(SheetHandle handle, int col, int pageBreak);
/* Freezes the panes above row and left of col: they stay in view while the rest scrolls.
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255".
 *     zvSheetSplitA(sheet, 1, 0);  // the header row stays
 *     zvSheetSplitA(sheet, 1, 1);  // and the first column */
ZELVAR_API void zvSheetSplitA(SheetHandle handle, int row, int col);
ZELVAR_API void zvSheetSplitW(SheetHandle handle, int row, int col);
/* Makes rows rowFirst to rowLast one outline level deeper, collapsed (hidden) or not.
 * Fails with: "must be rowFirst <= rowLast", "row must be in range 0-65535", "detect overlap"
 * when the rows are not all at one level.
 *     zvSheetGroupRowsA(sheet, 1, 10, 0);
 *     zvSheetSetGroupSummaryBelowA(sheet, 1); */
ZELVAR_API int zvSheetGroupRowsA(SheetHandle handle, int rowFirst, int rowLast, int collapsed);
ZELVAR_API int zvSheetGroupRowsW(SheetHandle handle, int rowFirst, int rowLast, int collapsed);
/* Makes columns colFirst to colLast one outline level deeper, collapsed (hidden) or not.
 * Fails with: "must be colFirst <= colLast", "col must be in range 0-255".
 *     zvSheetGroupColsA(sheet, 1, 3, 1);
 *     zvSheetSetGroupSummaryRightA(sheet, 1); */
ZELVAR_API int zvSheetGroupColsA(SheetHandle handle, int colFirst, int colLast, int collapsed);
ZELVAR_API int zvSheetGroupColsW(SheetHandle handle, int colFirst, int colLast, int collapsed);
/* Whether the summary row of an outline group stands below its rows.
 * Fails with: none.
 *     zvSheetSetGroupSummaryBelowA(sheet, 0);
 *     int below = zvSheetGroupSummaryBelowA(sheet);  // 0 */
ZELVAR_API int zvSheetGroupSummaryBelowA(SheetHandle handle);
ZELVAR_API int zvSheetGroupSummaryBelowW(SheetHandle handle);
/* Puts the summary rows of outline groups below (true) or above their rows.
 * Fails with: none.
 *     zvSheetGroupRowsA(sheet, 1, 10, 0);
 *     zvSheetSetGroupSummaryBelowA(sheet, 0); */
ZELVAR_API void zvSheetSetGroupSummaryBelowA(SheetHandle handle, int below);
ZELVAR_API void zvSheetSetGroupSummaryBelowW(SheetHandle handle, int below);
/* Whether the summary column of an outline group stands right of its columns.
 * Fails with: none.
 *     zvSheetSetGroupSummaryRightA(sheet, 0);
 *     int right = zvSheetGroupSummaryRightA(sheet);  // 0 */
ZELVAR_API int zvSheetGroupSummaryRightA(SheetHandle handle);
ZELVAR_API int zvSheetGroupSummaryRightW(SheetHandle handle);
/* Puts the summary columns of outline groups right (true) or left of their columns.
 * Fails with: none.
 *     zvSheetGroupColsA(sheet, 1, 3, 0);
 *     zvSheetSetGroupSummaryRightA(sheet, 0); */
ZELVAR_API void zvSheetSetGroupSummaryRightA(SheetHandle handle, int right);
ZELVAR_API void zvSheetSetGroupSummaryRightW(SheetHandle handle, int right);
/* Empties a block: its cells, comments and the merged blocks that overlap it. Bounds beyond
 * the grid are brought into it, so clear() empties the whole sheet.
 * Fails with: "rowLast must be greater than or equal to rowFirst", "colLast must be greater
 * than or equal to colFirst".
 *     zvSheetClearA(sheet, 1, 100, 0, 5);
 *     zvSheetClearA(sheet, 0, 1048575, 0, 16383); */
ZELVAR_API int zvSheetClearA(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast);
ZELVAR_API int zvSheetClearW(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast);
/* Inserts empty columns colFirst to colLast before column colFirst; cells, widths, comments
 * and merged blocks to the right move along. Formula text is not rewritten.
 * Fails with: "colLast must be greater than or equal to colFirst".
 *     zvSheetInsertColA(sheet, 1, 2);  // two new columns B and C
 *     zvSheetWriteStrA(sheet, 0, 1, "new", NULL); */
ZELVAR_API int zvSheetInsertColA(SheetHandle handle, int colFirst, int colLast);
ZELVAR_API int zvSheetInsertColW(SheetHandle handle, int colFirst, int colLast);
/* Inserts empty rows rowFirst to rowLast before row rowFirst; cells, heights, comments, merged
 * blocks and the sheet's named ranges below move down. Formula text is not rewritten.
 * Fails with: "rowLast must be greater than or equal to rowFirst".
 *     zvSheetInsertRowA(sheet, 1, 1);  // one new row 2
 *     zvSheetWriteNumA(sheet, 1, 0, 7, NULL); */
ZELVAR_API int zvSheetInsertRowA(SheetHandle handle, int rowFirst, int rowLast);
ZELVAR_API int zvSheetInsertRowW(SheetHandle handle, int rowFirst, int rowLast);
/* Removes columns colFirst to colLast; cells, widths and merged blocks to the right move
 * left.
 * Fails with: "colLast must be greater than or equal to colFirst".
 *     zvSheetRemoveColA(sheet, 3, 3);
 *     int last = zvSheetLastColA(sheet); */
ZELVAR_API int zvSheetRemoveColA(SheetHandle handle, int colFirst, int colLast);
ZELVAR_API int zvSheetRemoveColW(SheetHandle handle, int colFirst, int colLast);
/* Removes rows rowFirst to rowLast; cells, heights, merged blocks and named ranges below move
 * up.
 * Fails with: "rowLast must be greater than or equal to rowFirst".
 *     zvSheetRemoveRowA(sheet, 5, 9);
 *     int last = zvSheetLastRowA(sheet); */
ZELVAR_API int zvSheetRemoveRowA(SheetHandle handle, int rowFirst, int rowLast);
ZELVAR_API int zvSheetRemoveRowW(SheetHandle handle, int rowFirst, int rowLast);
/* Copies one cell, value and format, onto another place of the same sheet; a formula is
 * copied as it stands, its references unchanged.
 * Fails with: "row must be in range 0-65535", "col must be in range 0-255", "empty cell" for
 * an absent source, "unknown type of cell" for an 8-bit text cell of an old file.
 *     zvSheetWriteNumA(sheet, 0, 0, 1.5, fmt);
 *     zvSheetCopyCellA(sheet, 0, 0, 10, 0); */
ZELVAR_API int zvSheetCopyCellA(SheetHandle handle, int rowSrc, int colSrc, int rowDst, int colDst);
ZELVAR_API int zvSheetCopyCellW(SheetHandle handle, int rowSrc, int colSrc, int rowDst, int colDst);
/* First row of the used range (cells and merged blocks).
 * Fails with: none.
 *     for (int r = zvSheetFirstRowA(sheet); r < zvSheetLastRowA(sheet); ++r)
 *         printf("%g\n", zvSheetReadNumA(sheet, r, 0, NULL)); */
ZELVAR_API int zvSheetFirstRowA(SheetHandle handle);
ZELVAR_API int zvSheetFirstRowW(SheetHandle handle);
/* One past the last row of the used range; equal to firstRow() on an empty sheet.
 * Fails with: none. XML books: rows without cells count once the sheet is loaded or edited
 * by insertRow and the like, but rows that setRowHidden or groupRows make count only then.
 *     int rows = zvSheetLastRowA(sheet) - zvSheetFirstRowA(sheet);
 *     printf("%d rows\n", rows); */
ZELVAR_API int zvSheetLastRowA(SheetHandle handle);
ZELVAR_API int zvSheetLastRowW(SheetHandle handle);
/* First column of the used range.
 * Fails with: none.
 *     for (int c = zvSheetFirstColA(sheet); c < zvSheetLastColA(sheet); ++c)
 *         printf("%d\n", zvSheetCellTypeA(sheet, 0, c)); */
ZELVAR_API int zvSheetFirstColA(SheetHandle handle);
ZELVAR_API int zvSheetFirstColW(SheetHandle handle);
/* One past the last column of the used range.
 * Fails with: none.
 *     int cols = zvSheetLastColA(sheet) - zvSheetFirstColA(sheet);
 *     printf("%d columns\n", cols); */
ZELVAR_API int zvSheetLastColA(SheetHandle handle);
ZELVAR_API int zvSheetLastColW(SheetHandle handle);
/* Whether gridlines show on screen.
 * Fails with: none.
 *     zvSheetSetDisplayGridlinesA(sheet, 0);
 *     int shown = zvSheetDisplayGridlinesA(sheet);  // 0 */
ZELVAR_API int zvSheetDisplayGridlinesA(SheetHandle handle);
ZELVAR_API int zvSheetDisplayGridlinesW(SheetHandle handle);
/* Shows or hides the gridlines on screen.
 * Fails with: none.
 *     zvSheetSetDisplayGridlinesA(sheet, 0);
 *     zvSheetSetDisplayGridlinesA(sheet, 1); */
ZELVAR_API void zvSheetSetDisplayGridlinesA(SheetHandle handle, int show);
ZELVAR_API void zvSheetSetDisplayGridlinesW(SheetHandle handle, int show);
/* Whether gridlines are printed.
 * Fails with: none.
 *     zvSheetSetPrintGridlinesA(sheet, 1);
 *     int printed = zvSheetPrintGridlinesA(sheet);  // 1 */
ZELVAR_API int zvSheetPrintGridlinesA(SheetHandle handle);
ZELVAR_API int zvSheetPrintGridlinesW(SheetHandle handle);
/* Prints the gridlines, or not.
 * Fails with: none.
 *     zvSheetSetPrintGridlinesA(sheet, 1);
 *     zvSheetSetPrintGridlinesA(sheet, 0); */
ZELVAR_API void zvSheetSetPrintGridlinesA(SheetHandle handle, int print);
ZELVAR_API void zvSheetSetPrintGridlinesW(SheetHandle handle, int print);
/* Screen zoom in percent; 100 unless set.
 * Fails with: none.
 *     zvSheetSetZoomA(sheet, 150);
 *     int percent = zvSheetZoomA(sheet);  // 150 */
ZELVAR_API int zvSheetZoomA(SheetHandle handle);
ZELVAR_API int zvSheetZoomW(SheetHandle handle);
/* Sets the screen zoom in percent (readers accept 10 to 400).
 * Fails with: none.
 *     zvSheetSetZoomA(sheet, 75);
 *     zvSheetSetZoomA(sheet, 100); */
ZELVAR_API void zvSheetSetZoomA(SheetHandle handle, int zoom);
ZELVAR_API void zvSheetSetZoomW(SheetHandle handle, int zoom);
/* Print scale in percent; 100 unless set.
 * Fails with: none.
 *     zvSheetSetPrintZoomA(sheet, 80);
 *     int percent = zvSheetPrintZoomA(sheet);  // 80 */
ZELVAR_API int zvSheetPrintZoomA(SheetHandle handle);
ZELVAR_API int zvSheetPrintZoomW(SheetHandle handle);
/* Sets the print scale in percent (readers accept 10 to 400) and ends fit-to-pages mode.
 * Fails with: none.
 *     zvSheetSetPrintZoomA(sheet, 90);
 *     int fit = zvSheetGetPrintFitA(sheet, NULL, NULL);  // 0 */
ZELVAR_API void zvSheetSetPrintZoomA(SheetHandle handle, int zoom);
ZELVAR_API void zvSheetSetPrintZoomW(SheetHandle handle, int zoom);
/* Whether fit-to-pages mode is on, with its page counts across and down (pointers may be
 * null; 0 means as many as needed).
 * Fails with: none.
 *     int across, down;
 *     if (zvSheetGetPrintFitA(sheet, &across, &down)) printf("%d x %d\n", across, down); */
ZELVAR_API int zvSheetGetPrintFitA(SheetHandle handle, int* wPages, int* hPages);
ZELVAR_API int zvSheetGetPrintFitW(SheetHandle handle, int* wPages, int* hPages);
/* Turns fit-to-pages mode on: the print is scaled to wPages across and hPages down; 0 leaves
 * that direction free.
 * Fails with: none.
 *     zvSheetSetPrintFitA(sheet, 1, 0);  // one page wide, as long as needed
 *     zvSheetSetLandscapeA(sheet, 1); */
ZELVAR_API void zvSheetSetPrintFitA(SheetHandle handle, int wPages, int hPages);
ZELVAR_API void zvSheetSetPrintFitW(SheetHandle handle, int wPages, int hPages);
/* Whether the sheet prints in landscape orientation.
 * Fails with: none.
 *     zvSheetSetLandscapeA(sheet, 1);
 *     int wide = zvSheetLandscapeA(sheet);  // 1 */
ZELVAR_API int zvSheetLandscapeA(SheetHandle handle);
ZELVAR_API int zvSheetLandscapeW(SheetHandle handle);
/* Prints in landscape (true) or portrait orientation.
 * Fails with: none.
 *     zvSheetSetLandscapeA(sheet, 1);
 *     zvSheetSetPaperA(sheet, 9); */
ZELVAR_API void zvSheetSetLandscapeA(SheetHandle handle, int landscape);
ZELVAR_API void zvSheetSetLandscapeW(SheetHandle handle, int landscape);
/* Paper size code (Paper); 0 while no page setup has been given.
 * Fails with: none.
 *     zvSheetSetPaperA(sheet, 1);
 *     int p = zvSheetPaperA(sheet);  // 1 */
ZELVAR_API int zvSheetPaperA(SheetHandle handle);
ZELVAR_API int zvSheetPaperW(SheetHandle handle);
/* Sets the paper size code; any number is stored as it is.
 * Fails with: none.
 *     zvSheetSetPaperA(sheet, 9);
 *     zvSheetSetPaperA(sheet, 5); */
ZELVAR_API void zvSheetSetPaperA(SheetHandle handle, int paper);
ZELVAR_API void zvSheetSetPaperW(SheetHandle handle, int paper);
/* Header text of the printed page, with its &-codes, in the sheet's text buffer.
 * Fails with: none.
 *     zvSheetSetHeaderA(sheet, "&CQuarterly report", 0.5);
 *     const char* text = zvSheetHeaderA(sheet); */
ZELVAR_API const char* zvSheetHeaderA(SheetHandle handle);
ZELVAR_API const wchar_t* zvSheetHeaderW(SheetHandle handle);
/* Sets the header text (&L, &C, &R start the left, centre and right parts; &P is the page
 * number, &N the page count, &D the date) and its margin in inches.
 * Fails with: "string is too long" beyond 255 characters.
 *     zvSheetSetHeaderA(sheet, "&LSales&RPage &P of &N", 0.3);
 *     zvSheetSetHeaderA(sheet, "&C&D", 0.5); */
ZELVAR_API int zvSheetSetHeaderA(SheetHandle handle, const char* header, double margin);
ZELVAR_API int zvSheetSetHeaderW(SheetHandle handle, const wchar_t* header, double margin);
/* Margin of the header in inches.
 * Fails with: none.
 *     zvSheetSetHeaderA(sheet, "&CReport", 0.4);
 *     double inches = zvSheetHeaderMarginA(sheet);  // 0.4 */
ZELVAR_API double zvSheetHeaderMarginA(SheetHandle handle);
ZELVAR_API double zvSheetHeaderMarginW(SheetHandle handle);
/* Footer text of the printed page, in the sheet's text buffer.
 * Fails with: none.
 *     zvSheetSetFooterA(sheet, "&CPage &P", 0.5);
 *     const char* text = zvSheetFooterA(sheet); */
ZELVAR_API const char* zvSheetFooterA(SheetHandle handle);
ZELVAR_API const wchar_t* zvSheetFooterW(SheetHandle handle);
/* Sets the footer text (the codes of setHeader) and its margin in inches.
 * Fails with: "string is too long" beyond 255 characters.
 *     zvSheetSetFooterA(sheet, "&CPage &P of &N", 0.3);
 *     zvSheetSetFooterA(sheet, "&R&F", 0.5); */
ZELVAR_API int zvSheetSetFooterA(SheetHandle handle, const char* footer, double margin);
ZELVAR_API int zvSheetSetFooterW(SheetHandle handle, const wchar_t* footer, double margin);
/* Margin of the footer in inches.
 * Fails with: none.
 *     zvSheetSetFooterA(sheet, "&CPage &P", 0.4);
 *     double inches = zvSheetFooterMarginA(sheet);  // 0.4 */
ZELVAR_API double zvSheetFooterMarginA(SheetHandle handle);
ZELVAR_API double zvSheetFooterMarginW(SheetHandle handle);
/* Whether the print is centred horizontally on the page.
 * Fails with: none.
 *     zvSheetSetHCenterA(sheet, 1);
 *     int centred = zvSheetHCenterA(sheet);  // 1 */
ZELVAR_API int zvSheetHCenterA(SheetHandle handle);
ZELVAR_API int zvSheetHCenterW(SheetHandle handle);
/* Centres the print horizontally on the page, or not.
 * Fails with: none.
 *     zvSheetSetHCenterA(sheet, 1);
 *     zvSheetSetVCenterA(sheet, 1); */
ZELVAR_API void zvSheetSetHCenterA(SheetHandle handle, int hCenter);
ZELVAR_API void zvSheetSetHCenterW(SheetHandle handle, int hCenter);
/* Whether the print is centred vertically on the page.
 * Fails with: none.
 *     zvSheetSetVCenterA(sheet, 1);
 *     int centred = zvSheetVCenterA(sheet);  // 1 */
ZELVAR_API int zvSheetVCenterA(SheetHandle handle);
ZELVAR_API int zvSheetVCenterW(SheetHandle handle);
/* Centres the print vertically on the page, or not.
 * Fails with: none.
 *     zvSheetSetVCenterA(sheet, 1);
 *     zvSheetSetVCenterA(sheet, 0); */
ZELVAR_API void zvSheetSetVCenterA(SheetHandle handle, int vCenter);
ZELVAR_API void zvSheetSetVCenterW(SheetHandle handle, int vCenter);
/* Left page margin in inches.
 * Fails with: none.
 *     zvSheetSetMarginLeftA(sheet, 0.5);
 *     double inches = zvSheetMarginLeftA(sheet);  // 0.5 */
ZELVAR_API double zvSheetMarginLeftA(SheetHandle handle);
ZELVAR_API double zvSheetMarginLeftW(SheetHandle handle);
/* Sets the left page margin in inches.
 * Fails with: none.
 *     zvSheetSetMarginLeftA(sheet, 0.4);
 *     zvSheetSetMarginRightA(sheet, 0.4); */
ZELVAR_API void zvSheetSetMarginLeftA(SheetHandle handle, double margin);
ZELVAR_API void zvSheetSetMarginLeftW(SheetHandle handle, double margin);
/* Right page margin in inches.
 * Fails with: none.
 *     zvSheetSetMarginRightA(sheet, 0.5);
 *     double inches = zvSheetMarginRightA(sheet);  // 0.5 */
ZELVAR_API double zvSheetMarginRightA(SheetHandle handle);
ZELVAR_API double zvSheetMarginRightW(SheetHandle handle);
/* Sets the right page margin in inches.
 * Fails with: none.
 *     zvSheetSetMarginRightA(sheet, 0.4);
 *     zvSheetSetMarginLeftA(sheet, 0.4); */
ZELVAR_API void zvSheetSetMarginRightA(SheetHandle handle, double margin);
ZELVAR_API void zvSheetSetMarginRightW(SheetHandle handle, double margin);
/* Top page margin in inches.
 * Fails with: none.
 *     zvSheetSetMarginTopA(sheet, 1.0);
 *     double inches = zvSheetMarginTopA(sheet);  // 1 */
ZELVAR_API double zvSheetMarginTopA(SheetHandle handle);
ZELVAR_API double zvSheetMarginTopW(SheetHandle handle);
/* Sets the top page margin in inches.
 * Fails with: none.
 *     zvSheetSetMarginTopA(sheet, 0.75);
 *     zvSheetSetMarginBottomA(sheet, 0.75); */
ZELVAR_API void zvSheetSetMarginTopA(SheetHandle handle, double margin);
ZELVAR_API void zvSheetSetMarginTopW(SheetHandle handle, double margin);
/* Bottom page margin in inches.
 * Fails with: none.
 *     zvSheetSetMarginBottomA(sheet, 1.0);
 *     double inches = zvSheetMarginBottomA(sheet);  // 1 */
ZELVAR_API double zvSheetMarginBottomA(SheetHandle handle);
ZELVAR_API double zvSheetMarginBottomW(SheetHandle handle);
/* Sets the bottom page margin in inches.
 * Fails with: none.
 *     zvSheetSetMarginBottomA(sheet, 0.75);
 *     zvSheetSetMarginTopA(sheet, 0.75); */
ZELVAR_API void zvSheetSetMarginBottomA(SheetHandle handle, double margin);
ZELVAR_API void zvSheetSetMarginBottomW(SheetHandle handle, double margin);
/* Whether row numbers and column letters are printed.
 * Fails with: none.
 *     zvSheetSetPrintRowColA(sheet, 1);
 *     int headings = zvSheetPrintRowColA(sheet);  // 1 */
ZELVAR_API int zvSheetPrintRowColA(SheetHandle handle);
ZELVAR_API int zvSheetPrintRowColW(SheetHandle handle);
/* Prints row numbers and column letters, or not.
 * Fails with: none.
 *     zvSheetSetPrintRowColA(sheet, 1);
 *     zvSheetSetPrintGridlinesA(sheet, 1); */
ZELVAR_API void zvSheetSetPrintRowColA(SheetHandle handle, int print);
ZELVAR_API void zvSheetSetPrintRowColW(SheetHandle handle, int print);
/* Rows printed again at the top of every page (a built-in name of the sheet); columns set by
 * setPrintRepeatCols stay.
 * Fails with: "too many external sheet references".
 *     zvSheetSetPrintRepeatRowsA(sheet, 0, 0);  // the header row on each page
 *     zvSheetSetPrintRepeatColsA(sheet, 0, 0); */
ZELVAR_API void zvSheetSetPrintRepeatRowsA(SheetHandle handle, int rowFirst, int rowLast);
ZELVAR_API void zvSheetSetPrintRepeatRowsW(SheetHandle handle, int rowFirst, int rowLast);
/* Columns printed again at the left of every page; rows set by setPrintRepeatRows stay.
 * Fails with: "too many external sheet references".
 *     zvSheetSetPrintRepeatColsA(sheet, 0, 1);
 *     zvSheetClearPrintRepeatsA(sheet); */
ZELVAR_API void zvSheetSetPrintRepeatColsA(SheetHandle handle, int colFirst, int colLast);
ZELVAR_API void zvSheetSetPrintRepeatColsW(SheetHandle handle, int colFirst, int colLast);
/* Limits printing to a block (a built-in name of the sheet).
 * Fails with: "too many external sheet references".
 *     zvSheetSetPrintAreaA(sheet, 0, 49, 0, 5);
 *     zvSheetClearPrintAreaA(sheet); */
ZELVAR_API void zvSheetSetPrintAreaA(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast);
ZELVAR_API void zvSheetSetPrintAreaW(SheetHandle handle, int rowFirst, int rowLast, int colFirst, int colLast);
/* Removes the repeated rows and columns.
 * Fails with: none.
 *     zvSheetSetPrintRepeatRowsA(sheet, 0, 0);
 *     zvSheetClearPrintRepeatsA(sheet); */
ZELVAR_API void zvSheetClearPrintRepeatsA(SheetHandle handle);
ZELVAR_API void zvSheetClearPrintRepeatsW(SheetHandle handle);
/* Removes the print area: the whole used range prints again.
 * Fails with: none.
 *     zvSheetSetPrintAreaA(sheet, 0, 9, 0, 3);
 *     zvSheetClearPrintAreaA(sheet); */
ZELVAR_API void zvSheetClearPrintAreaA(SheetHandle handle);
ZELVAR_API void zvSheetClearPrintAreaW(SheetHandle handle);
/* The block of a name in this sheet's scope, through the pointers (each may be null).
 * Fails with: "named range is not found", also for a name that refers to something other than
 * one cell or block. XML books: "warning: some parts were skipped" for a name of several
 * blocks (a warning: the first block comes back).
 *     int r1, r2, c1, c2;
 *     if (zvSheetGetNamedRangeA(sheet, "Prices", &r1, &r2, &c1, &c2)) printf("%d..%d\n", r1, r2); */
ZELVAR_API int zvSheetGetNamedRangeA(SheetHandle handle, const char* name, int* rowFirst, int* rowLast, int* colFirst, int* colLast);
ZELVAR_API int zvSheetGetNamedRangeW(SheetHandle handle, const wchar_t* name, int* rowFirst, int* rowLast, int* colFirst, int* colLast);
/* Defines a name for a block of this sheet, in the sheet's own scope, or moves an existing
 * one. Readers' formulas can use it; writeFormula doesn't compile names in this version.
 * Fails with: "space symbol isn't allowed", "incorrect name" for an empty name or one longer
 * than 255 characters, "too many external sheet references".
 *     zvSheetSetNamedRangeA(sheet, "Prices", 1, 10, 2, 2);  // C2:C11
 *     zvSheetSetNamedRangeA(sheet, "Prices", 1, 20, 2, 2);  // moved to C2:C21 */
ZELVAR_API int zvSheetSetNamedRangeA(SheetHandle handle, const char* name, int rowFirst, int rowLast, int colFirst, int colLast);
ZELVAR_API int zvSheetSetNamedRangeW(SheetHandle handle, const wchar_t* name, int rowFirst, int rowLast, int colFirst, int colLast);
/* Removes a name in this sheet's scope.
 * Fails with: "named range is not found". XML books: "named range not found".
 *     if (!zvSheetDelNamedRangeA(sheet, "Prices"))
 *         puts(zvBookErrorMessageA(book)); */
ZELVAR_API int zvSheetDelNamedRangeA(SheetHandle handle, const char* name);
ZELVAR_API int zvSheetDelNamedRangeW(SheetHandle handle, const wchar_t* name);
/* Number of names whose cell or block lies on this sheet.
 * Fails with: none.
 *     for (int i = 0; i < zvSheetNamedRangeSizeA(sheet); ++i)
 *         puts(zvSheetNamedRangeA(sheet, i, NULL, NULL, NULL, NULL)); */
ZELVAR_API int zvSheetNamedRangeSizeA(SheetHandle handle);
ZELVAR_API int zvSheetNamedRangeSizeW(SheetHandle handle);
/* The index-th name whose cell or block lies on this sheet, with its block through the
 * pointers (each may be null); the text is in the sheet's text buffer.
 * Fails with: "index is out of range".
 *     int r1, r2, c1, c2;
 *     const char* name = zvSheetNamedRangeA(sheet, 0, &r1, &r2, &c1, &c2); */
ZELVAR_API const char* zvSheetNamedRangeA(SheetHandle handle, int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast);
ZELVAR_API const wchar_t* zvSheetNamedRangeW(SheetHandle handle, int index, int* rowFirst, int* rowLast, int* colFirst, int* colLast);
/* Name of the sheet, in the sheet's text buffer.
 * Fails with: none.
 *     zvSheetSetNameA(sheet, "Summary");
 *     const char* name = zvSheetNameA(sheet);  // "Summary" */
ZELVAR_API const char* zvSheetNameA(SheetHandle handle);
ZELVAR_API const wchar_t* zvSheetNameW(SheetHandle handle);
/* Renames the sheet. Names longer than 31 characters are cut, and the message then reads as
 * a warning. Other sheets' names are not compared.
 * Fails with: "sheet name mustn't be NULL", "warning: sheet's name is cut to 31 characters"
 * (the name is set).
 *     zvSheetSetNameA(sheet, "2026 Q4");
 *     puts(zvBookErrorMessageA(book));  // "ok" */
ZELVAR_API void zvSheetSetNameA(SheetHandle handle, const char* name);
ZELVAR_API void zvSheetSetNameW(SheetHandle handle, const wchar_t* name);
/* Whether the sheet is protected against editing.
 * Fails with: none.
 *     zvSheetSetProtectA(sheet, 1);
 *     int locked = zvSheetProtectA(sheet);  // 1 */
ZELVAR_API int zvSheetProtectA(SheetHandle handle);
ZELVAR_API int zvSheetProtectW(SheetHandle handle);
/* Protects the sheet (no password): locked cells can't be edited, hidden formulas don't show.
 * Fails with: none.
 *     zvFormatSetLockedA(fmt, 0);
 *     zvSheetSetProtectA(sheet, 1); */
ZELVAR_API void zvSheetSetProtectA(SheetHandle handle, int protect);
ZELVAR_API void zvSheetSetProtectW(SheetHandle handle, int protect);
/* Visibility of the sheet tab (SheetState).
 * Fails with: none.
 *     if (zvSheetHiddenA(sheet) == 0)
 *         zvSheetSetHiddenA(sheet, 1); */
ZELVAR_API int zvSheetHiddenA(SheetHandle handle);
ZELVAR_API int zvSheetHiddenW(SheetHandle handle);
/* Shows or hides the sheet; a very hidden sheet can be shown again only by a program.
 * Fails with: "a workbook must contain at least one visible worksheet" when the last visible
 * sheet would be hidden, "book not found". XML books: "hidden is out of range".
 *     SheetHandle lookup = zvBookAddSheetA(book, "Lookup", NULL);
 *     zvSheetSetHiddenA(lookup, 2); */
ZELVAR_API int zvSheetSetHiddenA(SheetHandle handle, int state);
ZELVAR_API int zvSheetSetHiddenW(SheetHandle handle, int state);
/* The first visible cell of the sheet's window (the scroll position).
 * Fails with: none.
 *     int row, col;
 *     zvSheetGetTopLeftViewA(sheet, &row, &col); */
ZELVAR_API void zvSheetGetTopLeftViewA(SheetHandle handle, int* row, int* col);
ZELVAR_API void zvSheetGetTopLeftViewW(SheetHandle handle, int* row, int* col);
/* Scrolls the sheet's window so that the cell is the first visible one.
 * Fails with: none.
 *     zvSheetSetTopLeftViewA(sheet, 100, 0);
 *     zvBookSetActiveSheetA(book, 0); */
ZELVAR_API void zvSheetSetTopLeftViewA(SheetHandle handle, int row, int col);
ZELVAR_API void zvSheetSetTopLeftViewW(SheetHandle handle, int row, int col);
/* Parses an A1 address ("B3", "$B$3", "b3"), with whether its row and column are relative
 * (no "$"). The relative pointers may be null. The text is not checked: a part that is
 * missing reads as -1.
 * Fails with: "address mustn't be NULL".
 *     int row, col;
 *     zvSheetAddrToRowColA(sheet, "$B3", &row, &col, NULL, NULL);  // 2, 1 */
ZELVAR_API void zvSheetAddrToRowColA(SheetHandle handle, const char* addr, int* row, int* col, int* rowRelative, int* colRelative);
ZELVAR_API void zvSheetAddrToRowColW(SheetHandle handle, const wchar_t* addr, int* row, int* col, int* rowRelative, int* colRelative);
/* Makes an A1 address, with "$" before an absolute row or column, in the sheet's text buffer.
 * Fails with: "row must be in range 0-1048575", "col must be in range 0-16383".
 *     puts(zvSheetRowColToAddrA(sheet, 0, 26, 1, 1));  // AA1
 *     puts(zvSheetRowColToAddrA(sheet, 4, 1, 0, 0));  // $B$5 */
ZELVAR_API const char* zvSheetRowColToAddrA(SheetHandle handle, int row, int col, int rowRelative, int colRelative);
ZELVAR_API const wchar_t* zvSheetRowColToAddrW(SheetHandle handle, int row, int col, int rowRelative, int colRelative);

/* ---- Format ---- */
/* The format's font, or null when a loaded file points the format at no font.
 * Fails with: "incorrect font".
 *     FontHandle f = zvFormatFontA(fmt);
 *     if (f) zvFontSetBoldA(f, 1); */
ZELVAR_API FontHandle zvFormatFontA(FormatHandle handle);
ZELVAR_API FontHandle zvFormatFontW(FormatHandle handle);
/* Gives the format a font of the same book.
 * Fails with: "specified font not found" for a font of another book or null.
 *     FontHandle bold = zvBookAddFontA(book, NULL);
 *     zvFontSetBoldA(bold, 1); zvFormatSetFontA(fmt, bold); */
ZELVAR_API int zvFormatSetFontA(FormatHandle handle, FontHandle font);
ZELVAR_API int zvFormatSetFontW(FormatHandle handle, FontHandle font);
/* Number-format id: a built-in id below 164 (NumFormat) or one from
 * IBookT::addCustomNumFormat.
 * Fails with: none.
 *     int id = zvFormatNumFormatA(fmt);
 *     const char* text = id >= 164 ? zvBookCustomNumFormatA(book, id) : NULL; */
ZELVAR_API int zvFormatNumFormatA(FormatHandle handle);
ZELVAR_API int zvFormatNumFormatW(FormatHandle handle);
/* Sets the number-format id. No check is made; an id that names no format shows as General
 * in most readers.
 * Fails with: none.
 *     zvFormatSetNumFormatA(fmt, 10);
 *     zvFormatSetNumFormatA(fmt, zvBookAddCustomNumFormatA(book, "0.000")); */
ZELVAR_API void zvFormatSetNumFormatA(FormatHandle handle, int numFormat);
ZELVAR_API void zvFormatSetNumFormatW(FormatHandle handle, int numFormat);
/* Horizontal alignment (AlignH).
 * Fails with: none.
 *     zvFormatSetAlignHA(fmt, 2);
 *     int h = zvFormatAlignHA(fmt);  // 2 */
ZELVAR_API int zvFormatAlignHA(FormatHandle handle);
ZELVAR_API int zvFormatAlignHW(FormatHandle handle);
/* Sets the horizontal alignment.
 * Fails with: none.
 *     zvFormatSetAlignHA(fmt, 3);
 *     zvSheetWriteNumA(sheet, 0, 0, 12.5, fmt); */
ZELVAR_API void zvFormatSetAlignHA(FormatHandle handle, int align);
ZELVAR_API void zvFormatSetAlignHW(FormatHandle handle, int align);
/* Vertical alignment (AlignV); bottom unless set.
 * Fails with: none.
 *     zvFormatSetAlignVA(fmt, 0);
 *     int v = zvFormatAlignVA(fmt);  // 0 */
ZELVAR_API int zvFormatAlignVA(FormatHandle handle);
ZELVAR_API int zvFormatAlignVW(FormatHandle handle);
/* Sets the vertical alignment.
 * Fails with: none.
 *     zvFormatSetAlignVA(fmt, 1);
 *     zvSheetSetRowA(sheet, 0, 30, fmt, 0); */
ZELVAR_API void zvFormatSetAlignVA(FormatHandle handle, int align);
ZELVAR_API void zvFormatSetAlignVW(FormatHandle handle, int align);
/* Whether text wraps inside the cell.
 * Fails with: none.
 *     zvFormatSetWrapA(fmt, 1);
 *     int wraps = zvFormatWrapA(fmt); */
ZELVAR_API int zvFormatWrapA(FormatHandle handle);
ZELVAR_API int zvFormatWrapW(FormatHandle handle);
/* Wraps text inside the cell, or not.
 * Fails with: none.
 *     zvFormatSetWrapA(fmt, 1);
 *     zvSheetWriteStrA(sheet, 0, 0, "a long text that wraps", fmt); */
ZELVAR_API void zvFormatSetWrapA(FormatHandle handle, int wrap);
ZELVAR_API void zvFormatSetWrapW(FormatHandle handle, int wrap);
/* Text rotation: 0 to 90 counter-clockwise degrees, 91 to 180 for 1 to 90 degrees clockwise,
 * 255 for letters stacked top to bottom.
 * Fails with: none.
 *     zvFormatSetRotationA(fmt, 45);
 *     int degrees = zvFormatRotationA(fmt);  // 45 */
ZELVAR_API int zvFormatRotationA(FormatHandle handle);
ZELVAR_API int zvFormatRotationW(FormatHandle handle);
/* Sets the text rotation (see rotation()).
 * Fails with: "rotation must be in range 0-180 or 255"; the rotation stays as it was. XML
 * books: none, any value is stored.
 *     zvFormatSetRotationA(fmt, 90);
 *     if (!zvFormatSetRotationA(fmt, 200)) puts(zvBookErrorMessageA(book)); */
ZELVAR_API int zvFormatSetRotationA(FormatHandle handle, int rotation);
ZELVAR_API int zvFormatSetRotationW(FormatHandle handle, int rotation);
/* Indent level of the text.
 * Fails with: none.
 *     zvFormatSetIndentA(fmt, 2);
 *     int level = zvFormatIndentA(fmt);  // 2 */
ZELVAR_API int zvFormatIndentA(FormatHandle handle);
ZELVAR_API int zvFormatIndentW(FormatHandle handle);
/* Sets the indent level, 0 to 15; the binary family keeps the low four bits of larger values.
 * Fails with: none.
 *     zvFormatSetAlignHA(fmt, 1);
 *     zvFormatSetIndentA(fmt, 3); */
ZELVAR_API void zvFormatSetIndentA(FormatHandle handle, int indent);
ZELVAR_API void zvFormatSetIndentW(FormatHandle handle, int indent);
/* Whether text shrinks to fit the cell.
 * Fails with: none.
 *     zvFormatSetShrinkToFitA(fmt, 1);
 *     int shrinks = zvFormatShrinkToFitA(fmt); */
ZELVAR_API int zvFormatShrinkToFitA(FormatHandle handle);
ZELVAR_API int zvFormatShrinkToFitW(FormatHandle handle);
/* Shrinks text to fit the cell, or not.
 * Fails with: none.
 *     zvFormatSetShrinkToFitA(fmt, 1);
 *     zvFormatSetShrinkToFitA(fmt, 0); */
ZELVAR_API void zvFormatSetShrinkToFitA(FormatHandle handle, int shrinkToFit);
ZELVAR_API void zvFormatSetShrinkToFitW(FormatHandle handle, int shrinkToFit);
/* Sets the style of all four sides at once.
 * Fails with: none.
 *     zvFormatSetBorderA(fmt, 1);
 *     zvFormatSetBorderColorA(fmt, 23); */
ZELVAR_API void zvFormatSetBorderA(FormatHandle handle, int style);
ZELVAR_API void zvFormatSetBorderW(FormatHandle handle, int style);
/* Sets the colour of all four sides at once.
 * Fails with: none.
 *     zvFormatSetBorderA(fmt, 2);
 *     zvFormatSetBorderColorA(fmt, 12); */
ZELVAR_API void zvFormatSetBorderColorA(FormatHandle handle, int color);
ZELVAR_API void zvFormatSetBorderColorW(FormatHandle handle, int color);
/* Style of the left side (BorderStyle).
 * Fails with: none.
 *     zvFormatSetBorderLeftA(fmt, 3);
 *     int s = zvFormatBorderLeftA(fmt);  // 3 */
ZELVAR_API int zvFormatBorderLeftA(FormatHandle handle);
ZELVAR_API int zvFormatBorderLeftW(FormatHandle handle);
/* Sets the style of the left side.
 * Fails with: none.
 *     zvFormatSetBorderLeftA(fmt, 5);
 *     zvFormatSetBorderLeftColorA(fmt, 10); */
ZELVAR_API void zvFormatSetBorderLeftA(FormatHandle handle, int style);
ZELVAR_API void zvFormatSetBorderLeftW(FormatHandle handle, int style);
/* Style of the right side (BorderStyle).
 * Fails with: none.
 *     zvFormatSetBorderRightA(fmt, 4);
 *     int s = zvFormatBorderRightA(fmt);  // 4 */
ZELVAR_API int zvFormatBorderRightA(FormatHandle handle);
ZELVAR_API int zvFormatBorderRightW(FormatHandle handle);
/* Sets the style of the right side.
 * Fails with: none.
 *     zvFormatSetBorderRightA(fmt, 1);
 *     zvFormatSetBorderRightColorA(fmt, 23); */
ZELVAR_API void zvFormatSetBorderRightA(FormatHandle handle, int style);
ZELVAR_API void zvFormatSetBorderRightW(FormatHandle handle, int style);
/* Style of the top side (BorderStyle).
 * Fails with: none.
 *     zvFormatSetBorderTopA(fmt, 6);
 *     int s = zvFormatBorderTopA(fmt);  // 6 */
ZELVAR_API int zvFormatBorderTopA(FormatHandle handle);
ZELVAR_API int zvFormatBorderTopW(FormatHandle handle);
/* Sets the style of the top side.
 * Fails with: none.
 *     zvFormatSetBorderTopA(fmt, 2);
 *     zvFormatSetBorderTopColorA(fmt, 8); */
ZELVAR_API void zvFormatSetBorderTopA(FormatHandle handle, int style);
ZELVAR_API void zvFormatSetBorderTopW(FormatHandle handle, int style);
/* Style of the bottom side (BorderStyle).
 * Fails with: none.
 *     zvFormatSetBorderBottomA(fmt, 7);
 *     int s = zvFormatBorderBottomA(fmt);  // 7 */
ZELVAR_API int zvFormatBorderBottomA(FormatHandle handle);
ZELVAR_API int zvFormatBorderBottomW(FormatHandle handle);
/* Sets the style of the bottom side.
 * Fails with: none.
 *     zvFormatSetBorderBottomA(fmt, 6);
 *     zvSheetWriteNumA(sheet, 9, 1, 1250.0, fmt); */
ZELVAR_API void zvFormatSetBorderBottomA(FormatHandle handle, int style);
ZELVAR_API void zvFormatSetBorderBottomW(FormatHandle handle, int style);
/* Colour of the left side (see Color).
 * Fails with: none.
 *     zvFormatSetBorderLeftColorA(fmt, 17);
 *     int c = zvFormatBorderLeftColorA(fmt);  // 17 */
ZELVAR_API int zvFormatBorderLeftColorA(FormatHandle handle);
ZELVAR_API int zvFormatBorderLeftColorW(FormatHandle handle);
/* Sets the colour of the left side.
 * Fails with: none.
 *     zvFormatSetBorderLeftA(fmt, 1);
 *     zvFormatSetBorderLeftColorA(fmt, 21); */
ZELVAR_API void zvFormatSetBorderLeftColorA(FormatHandle handle, int color);
ZELVAR_API void zvFormatSetBorderLeftColorW(FormatHandle handle, int color);
/* Colour of the right side (see Color).
 * Fails with: none.
 *     zvFormatSetBorderRightColorA(fmt, 17);
 *     int c = zvFormatBorderRightColorA(fmt);  // 17 */
ZELVAR_API int zvFormatBorderRightColorA(FormatHandle handle);
ZELVAR_API int zvFormatBorderRightColorW(FormatHandle handle);
/* Sets the colour of the right side.
 * Fails with: none.
 *     zvFormatSetBorderRightA(fmt, 1);
 *     zvFormatSetBorderRightColorA(fmt, 21); */
ZELVAR_API void zvFormatSetBorderRightColorA(FormatHandle handle, int color);
ZELVAR_API void zvFormatSetBorderRightColorW(FormatHandle handle, int color);
/* Colour of the top side (see Color).
 * Fails with: none.
 *     zvFormatSetBorderTopColorA(fmt, 16);
 *     int c = zvFormatBorderTopColorA(fmt);  // 16 */
ZELVAR_API int zvFormatBorderTopColorA(FormatHandle handle);
ZELVAR_API int zvFormatBorderTopColorW(FormatHandle handle);
/* Sets the colour of the top side.
 * Fails with: none.
 *     zvFormatSetBorderTopA(fmt, 1);
 *     zvFormatSetBorderTopColorA(fmt, 19); */
ZELVAR_API void zvFormatSetBorderTopColorA(FormatHandle handle, int color);
ZELVAR_API void zvFormatSetBorderTopColorW(FormatHandle handle, int color);
/* Colour of the bottom side (see Color).
 * Fails with: none.
 *     zvFormatSetBorderBottomColorA(fmt, 16);
 *     int c = zvFormatBorderBottomColorA(fmt);  // 16 */
ZELVAR_API int zvFormatBorderBottomColorA(FormatHandle handle);
ZELVAR_API int zvFormatBorderBottomColorW(FormatHandle handle);
/* Sets the colour of the bottom side.
 * Fails with: none.
 *     zvFormatSetBorderBottomA(fmt, 5);
 *     zvFormatSetBorderBottomColorA(fmt, 18); */
ZELVAR_API void zvFormatSetBorderBottomColorA(FormatHandle handle, int color);
ZELVAR_API void zvFormatSetBorderBottomColorW(FormatHandle handle, int color);
/* Which diagonal lines the cell has (BorderDiagonal).
 * Fails with: none.
 *     zvFormatSetBorderDiagonalA(fmt, 3);
 *     int d = zvFormatBorderDiagonalA(fmt);  // 3 */
ZELVAR_API int zvFormatBorderDiagonalA(FormatHandle handle);
ZELVAR_API int zvFormatBorderDiagonalW(FormatHandle handle);
/* Draws the diagonal from top left, from bottom left, both or none.
 * Fails with: none.
 *     zvFormatSetBorderDiagonalA(fmt, 1);
 *     zvFormatSetBorderDiagonalStyleA(fmt, 1); */
ZELVAR_API void zvFormatSetBorderDiagonalA(FormatHandle handle, int border);
ZELVAR_API void zvFormatSetBorderDiagonalW(FormatHandle handle, int border);
/* Line style of the diagonals (BorderStyle).
 * Fails with: none.
 *     zvFormatSetBorderDiagonalStyleA(fmt, 3);
 *     int s = zvFormatBorderDiagonalStyleA(fmt);  // 3 */
ZELVAR_API int zvFormatBorderDiagonalStyleA(FormatHandle handle);
ZELVAR_API int zvFormatBorderDiagonalStyleW(FormatHandle handle);
/* Sets the line style of the diagonals.
 * Fails with: none.
 *     zvFormatSetBorderDiagonalA(fmt, 2);
 *     zvFormatSetBorderDiagonalStyleA(fmt, 2); */
ZELVAR_API void zvFormatSetBorderDiagonalStyleA(FormatHandle handle, int style);
ZELVAR_API void zvFormatSetBorderDiagonalStyleW(FormatHandle handle, int style);
/* Colour of the diagonals (see Color).
 * Fails with: none.
 *     zvFormatSetBorderDiagonalColorA(fmt, 10);
 *     int c = zvFormatBorderDiagonalColorA(fmt);  // 10 */
ZELVAR_API int zvFormatBorderDiagonalColorA(FormatHandle handle);
ZELVAR_API int zvFormatBorderDiagonalColorW(FormatHandle handle);
/* Sets the colour of the diagonals.
 * Fails with: none.
 *     zvFormatSetBorderDiagonalA(fmt, 3);
 *     zvFormatSetBorderDiagonalColorA(fmt, 10); */
ZELVAR_API void zvFormatSetBorderDiagonalColorA(FormatHandle handle, int color);
ZELVAR_API void zvFormatSetBorderDiagonalColorW(FormatHandle handle, int color);
/* Fill pattern of the cell background (FillPattern).
 * Fails with: none.
 *     zvFormatSetFillPatternA(fmt, 1);
 *     int p = zvFormatFillPatternA(fmt);  // 1 */
ZELVAR_API int zvFormatFillPatternA(FormatHandle handle);
ZELVAR_API int zvFormatFillPatternW(FormatHandle handle);
/* Sets the fill pattern; FillSolid with a foreground colour gives a plain coloured cell.
 * Fails with: none.
 *     zvFormatSetFillPatternA(fmt, 1);
 *     zvFormatSetPatternForegroundColorA(fmt, 13); */
ZELVAR_API void zvFormatSetFillPatternA(FormatHandle handle, int pattern);
ZELVAR_API void zvFormatSetFillPatternW(FormatHandle handle, int pattern);
/* Foreground colour of the fill pattern (see Color).
 * Fails with: none.
 *     zvFormatSetPatternForegroundColorA(fmt, 22);
 *     int c = zvFormatPatternForegroundColorA(fmt);  // 22 */
ZELVAR_API int zvFormatPatternForegroundColorA(FormatHandle handle);
ZELVAR_API int zvFormatPatternForegroundColorW(FormatHandle handle);
/* Sets the foreground colour of the fill pattern: the colour of a solid fill.
 * Fails with: none.
 *     zvFormatSetFillPatternA(fmt, 1);
 *     zvFormatSetPatternForegroundColorA(fmt, 15); */
ZELVAR_API void zvFormatSetPatternForegroundColorA(FormatHandle handle, int color);
ZELVAR_API void zvFormatSetPatternForegroundColorW(FormatHandle handle, int color);
/* Background colour of the fill pattern (see Color).
 * Fails with: none.
 *     zvFormatSetPatternBackgroundColorA(fmt, 9);
 *     int c = zvFormatPatternBackgroundColorA(fmt);  // 9 */
ZELVAR_API int zvFormatPatternBackgroundColorA(FormatHandle handle);
ZELVAR_API int zvFormatPatternBackgroundColorW(FormatHandle handle);
/* Sets the background colour of the fill pattern, seen between the pattern's dots.
 * Fails with: none.
 *     zvFormatSetFillPatternA(fmt, 15);
 *     zvFormatSetPatternBackgroundColorA(fmt, 9); */
ZELVAR_API void zvFormatSetPatternBackgroundColorA(FormatHandle handle, int color);
ZELVAR_API void zvFormatSetPatternBackgroundColorW(FormatHandle handle, int color);
/* Whether the cell is locked when its sheet is protected (ISheetT::setProtect).
 * Fails with: none.
 *     zvFormatSetLockedA(fmt, 0);
 *     int editable = !zvFormatLockedA(fmt); */
ZELVAR_API int zvFormatLockedA(FormatHandle handle);
ZELVAR_API int zvFormatLockedW(FormatHandle handle);
/* Locks the cell against editing on a protected sheet, or leaves it open.
 * Fails with: none.
 *     zvFormatSetLockedA(fmt, 0);
 *     zvSheetSetProtectA(sheet, 1); */
ZELVAR_API void zvFormatSetLockedA(FormatHandle handle, int locked);
ZELVAR_API void zvFormatSetLockedW(FormatHandle handle, int locked);
/* Whether the formula of the cell is hidden when its sheet is protected.
 * Fails with: none.
 *     zvFormatSetHiddenA(fmt, 1);
 *     int secret = zvFormatHiddenA(fmt); */
ZELVAR_API int zvFormatHiddenA(FormatHandle handle);
ZELVAR_API int zvFormatHiddenW(FormatHandle handle);
/* Hides the formula of the cell on a protected sheet, or shows it.
 * Fails with: none.
 *     zvFormatSetHiddenA(fmt, 1);
 *     zvSheetSetProtectA(sheet, 1); */
ZELVAR_API void zvFormatSetHiddenA(FormatHandle handle, int hidden);
ZELVAR_API void zvFormatSetHiddenW(FormatHandle handle, int hidden);

/* ---- Font ---- */
/* Size in points. The binary family stores twentieths of a point, so 409 points is the most
 * that comes back unchanged.
 * Fails with: none.
 *     zvFontSetSizeA(font, 14);
 *     int points = zvFontSizeA(font);  // 14 */
ZELVAR_API int zvFontSizeA(FontHandle handle);
ZELVAR_API int zvFontSizeW(FontHandle handle);
/* Sets the size in points; larger values are capped at 8191 twentieths of a point.
 * Fails with: none.
 *     FontHandle big = zvBookAddFontA(book, font);
 *     zvFontSetSizeA(big, 24); */
ZELVAR_API void zvFontSetSizeA(FontHandle handle, int size);
ZELVAR_API void zvFontSetSizeW(FontHandle handle, int size);
/* Whether the font is italic.
 * Fails with: none.
 *     zvFontSetItalicA(font, 1);
 *     if (zvFontItalicA(font)) puts("italic"); */
ZELVAR_API int zvFontItalicA(FontHandle handle);
ZELVAR_API int zvFontItalicW(FontHandle handle);
/* Makes the font italic or upright.
 * Fails with: none.
 *     zvFontSetItalicA(font, 1);
 *     zvFontSetItalicA(font, 0); */
ZELVAR_API void zvFontSetItalicA(FontHandle handle, int italic);
ZELVAR_API void zvFontSetItalicW(FontHandle handle, int italic);
/* Whether the text is struck through.
 * Fails with: none.
 *     zvFontSetStrikeOutA(font, 1);
 *     int struck = zvFontStrikeOutA(font); */
ZELVAR_API int zvFontStrikeOutA(FontHandle handle);
ZELVAR_API int zvFontStrikeOutW(FontHandle handle);
/* Strikes the text through, or not.
 * Fails with: none.
 *     zvFontSetStrikeOutA(font, 1);
 *     zvFontSetStrikeOutA(font, 0); */
ZELVAR_API void zvFontSetStrikeOutA(FontHandle handle, int strikeOut);
ZELVAR_API void zvFontSetStrikeOutW(FontHandle handle, int strikeOut);
/* Colour of the text in the book's coding (see Color); ColorAutomatic unless set.
 * Fails with: none.
 *     zvFontSetColorA(font, 10);
 *     int c = zvFontColorA(font);  // 10 */
ZELVAR_API int zvFontColorA(FontHandle handle);
ZELVAR_API int zvFontColorW(FontHandle handle);
/* Sets the colour of the text (see Color; IBookT::colorPack makes one from RGB).
 * Fails with: none.
 *     zvFontSetColorA(font, 18);
 *     zvFontSetColorA(font, zvBookColorPackA(book, 0, 97, 168)); */
ZELVAR_API void zvFontSetColorA(FontHandle handle, int color);
ZELVAR_API void zvFontSetColorW(FontHandle handle, int color);
/* Whether the font is bold.
 * Fails with: none.
 *     zvFontSetBoldA(font, 1);
 *     int heavy = zvFontBoldA(font); */
ZELVAR_API int zvFontBoldA(FontHandle handle);
ZELVAR_API int zvFontBoldW(FontHandle handle);
/* Makes the font bold or normal.
 * Fails with: none.
 *     zvFontSetBoldA(font, 1);
 *     zvFormatSetFontA(fmt, font); */
ZELVAR_API void zvFontSetBoldA(FontHandle handle, int bold);
ZELVAR_API void zvFontSetBoldW(FontHandle handle, int bold);
/* Superscript, subscript or normal (Script).
 * Fails with: none.
 *     zvFontSetScriptA(font, 1);
 *     int s = zvFontScriptA(font);  // 1 */
ZELVAR_API int zvFontScriptA(FontHandle handle);
ZELVAR_API int zvFontScriptW(FontHandle handle);
/* Sets superscript, subscript or normal.
 * Fails with: none.
 *     zvFontSetScriptA(font, 2);
 *     zvFontSetScriptA(font, 0); */
ZELVAR_API void zvFontSetScriptA(FontHandle handle, int script);
ZELVAR_API void zvFontSetScriptW(FontHandle handle, int script);
/* The underline (Underline).
 * Fails with: none.
 *     zvFontSetUnderlineA(font, 2);
 *     int u = zvFontUnderlineA(font);  // 2 */
ZELVAR_API int zvFontUnderlineA(FontHandle handle);
ZELVAR_API int zvFontUnderlineW(FontHandle handle);
/* Sets the underline: none, single, double, or their accounting forms.
 * Fails with: none.
 *     zvFontSetUnderlineA(font, 1);
 *     zvFontSetUnderlineA(font, 0); */
ZELVAR_API void zvFontSetUnderlineA(FontHandle handle, int underline);
ZELVAR_API void zvFontSetUnderlineW(FontHandle handle, int underline);
/* Font family name, in the font's own text buffer.
 * Fails with: "warning: some characters have not been converted properly" (a warning: the
 * text still comes back) when the name has characters the 8-bit coding can't show.
 *     zvFontSetNameA(font, "Courier New");
 *     const char* family = zvFontNameA(font);  // "Courier New" */
ZELVAR_API const char* zvFontNameA(FontHandle handle);
ZELVAR_API const wchar_t* zvFontNameW(FontHandle handle);
/* Sets the font family name; null gives an empty name.
 * Fails with: "string is too long" at 256 characters or more; the name stays as it was.
 *     if (!zvFontSetNameA(font, "DejaVu Sans"))
 *         puts(zvBookErrorMessageA(book)); */
ZELVAR_API int zvFontSetNameA(FontHandle handle, const char* name);
ZELVAR_API int zvFontSetNameW(FontHandle handle, const wchar_t* name);

#ifdef __cplusplus
}
#endif

#endif /* ZELVAR_C_H */
