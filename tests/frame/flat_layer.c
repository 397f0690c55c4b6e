/* The flat C interface, compiled by the C compiler and linked against the shared library. */
#include <stdio.h>
#include <string.h>
#include <wchar.h>

#include "zelvar_c.h"

static int failures = 0;
#define CHECK(cond)                                                  \
    do {                                                             \
        if (!(cond)) {                                               \
            fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #cond); \
            ++failures;                                              \
        }                                                            \
    } while (0)

static void narrowBook(void) {
    BookHandle book = zvCreateBookA();
    SheetHandle sheet;
    FormatHandle format, got = NULL;
    FontHandle font;
    int row = -1, col = -1, rowRel = 7, colRel = 7, y, m, d;

    CHECK(book != NULL);
    CHECK(zvBookFormatSizeA(book) == 21);
    CHECK(zvBookFontSizeA(book) == 5);
    CHECK(zvBookVersionA(book) == 0x03050300);
    CHECK(zvBookLoadA(book, "/nonexistent/file.xls") == 0);
    CHECK(strcmp(zvBookErrorMessageA(book), "can't open file for reading") == 0);

    sheet = zvBookAddSheetA(book, "Flat", NULL);
    CHECK(sheet != NULL);
    CHECK(zvBookSheetCountA(book) == 1);
    CHECK(zvBookGetSheetA(book, 1) == NULL);
    format = zvBookAddFormatA(book, NULL);
    font = zvBookAddFontA(book, NULL);
    zvFontSetBoldA(font, 5);
    CHECK(zvFontBoldA(font) == 1);
    CHECK(zvFormatSetFontA(format, font) == 1);
    CHECK(zvFormatFontA(format) == font);
    CHECK(zvFormatSetRotationA(format, 181) == 0);
    CHECK(strcmp(zvBookErrorMessageA(book), "rotation must be in range 0-180 or 255") == 0);

    CHECK(zvSheetWriteNumA(sheet, 2, 3, 42.5, format) == 1);
    CHECK(zvSheetReadNumA(sheet, 2, 3, &got) == 42.5);
    CHECK(got == format);
    CHECK(zvSheetWriteStrA(sheet, 0, 0, "text", NULL) == 1);
    CHECK(strcmp(zvSheetReadStrA(sheet, 0, 0, NULL), "text") == 0);
    CHECK(zvSheetWriteBoolA(sheet, 1, 1, 1, NULL) == 1);
    CHECK(zvSheetReadBoolA(sheet, 1, 1, NULL) == 1);
    CHECK(zvSheetCellTypeA(sheet, 1, 1) == 3);
    CHECK(zvSheetWriteNumA(sheet, 70000, 0, 1, NULL) == 0);
    CHECK(strcmp(zvBookErrorMessageA(book), "row must be in range 0-65535") == 0);
    CHECK(zvSheetLastRowA(sheet) == 3);
    CHECK(zvSheetLastColA(sheet) == 4);

    zvSheetAddrToRowColA(sheet, "C7", &row, &col, &rowRel, &colRel);
    CHECK(row == 6 && col == 2);
    CHECK(rowRel == 1 && colRel == 1);
    zvSheetAddrToRowColA(sheet, "$C$7", &row, &col, &rowRel, &colRel);
    CHECK(rowRel == 0 && colRel == 0);
    CHECK(strcmp(zvSheetRowColToAddrA(sheet, 0, 27, 0, 1), "AB$1") == 0);

    CHECK(zvBookDateUnpackA(book, zvBookDatePackA(book, 2001, 9, 11, 0, 0, 0, 0), &y, &m, &d, NULL, NULL, NULL, NULL) == 1);
    CHECK(y == 2001 && m == 9 && d == 11);
    CHECK(zvBookColorPackA(book, 255, 0, 0) == 10);
    zvBookReleaseA(book);
}

static void wideBook(void) {
    BookHandle book = zvCreateBookW();
    SheetHandle sheet = zvBookAddSheetW(book, L"Wide", NULL);
    CHECK(sheet != NULL);
    CHECK(zvSheetWriteStrW(sheet, 0, 0, L"\u00E9t\u00E9", NULL) == 1);
    CHECK(wcscmp(zvSheetReadStrW(sheet, 0, 0, NULL), L"\u00E9t\u00E9") == 0);
    CHECK(wcscmp(zvSheetNameW(sheet), L"Wide") == 0);
    CHECK(zvBookAddCustomNumFormatW(book, L"0.0%") == 164);
    CHECK(wcscmp(zvBookCustomNumFormatW(book, 164), L"0.0%") == 0);
    CHECK(zvBookDelSheetW(book, 0) == 0);
    CHECK(strcmp(zvBookErrorMessageW(book), "can't remove the last sheet in workbook") == 0);
    zvBookReleaseW(book);
}

/* Fault: the flat addrToRowCol wrote through its relative pointers without looking, so the
 * header's own example, which passes NULL for them, crashed. */
static void addrToRowColTakesNullRelativePointers(void) {
    BookHandle book = zvCreateBookA();
    BookHandle wide = zvCreateBookW();
    SheetHandle sheet = zvBookAddSheetA(book, "Addresses", NULL);
    SheetHandle wideSheet = zvBookAddSheetW(wide, L"Addresses", NULL);
    int row = -1, col = -1, colRel = -1;
    zvSheetAddrToRowColA(sheet, "$B3", &row, &col, NULL, NULL);
    CHECK(row == 2 && col == 1);
    zvSheetAddrToRowColW(wideSheet, L"D$9", &row, &col, NULL, &colRel);
    CHECK(row == 8 && col == 3 && colRel == 1);
    zvBookReleaseA(book);
    zvBookReleaseW(wide);
}

int main(void) {
    narrowBook();
    wideBook();
    addrToRowColTakesNullRelativePointers();
    if (failures) fprintf(stderr, "%d checks failed\n", failures);
    return failures ? 1 : 0;
}
