/* The XML family through the flat C interface: its factories, cells, a save to memory and a
 * load back, in both text widths. */
#include <stdio.h>
#include <string.h>
#include <wchar.h>

#include "zelvar_c.h"

static int failures = 0;
#define CHECK(cond)                                                                      \
    do {                                                                                 \
        if (!(cond)) {                                                                   \
            fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #cond);    \
            ++failures;                                                                  \
        }                                                                                \
    } while (0)

static void narrowBook(void) {
    BookHandle book = zvCreateXMLBookA(), again = zvCreateXMLBookCA();
    SheetHandle sheet;
    const char* data = NULL;
    unsigned size = 0;
    CHECK(book != NULL && again != NULL);
    sheet = zvBookAddSheetA(book, "Flat", NULL);
    CHECK(sheet != NULL);
    CHECK(zvSheetWriteNumA(sheet, 2, 3, 6.5, NULL) == 1);
    CHECK(zvSheetWriteStrA(sheet, 0, 0, "text", NULL) == 1);
    CHECK(zvSheetWriteNumA(sheet, 1048576, 0, 1, NULL) == 0);
    CHECK(strcmp(zvBookErrorMessageA(book), "row must be in range 0-1048575") == 0);
    CHECK(zvBookSaveRawA(book, &data, &size) == 1);
    CHECK(zvBookLoadRawA(again, data, size) == 1);
    sheet = zvBookGetSheetA(again, 0);
    CHECK(sheet != NULL);
    CHECK(zvSheetReadNumA(sheet, 2, 3, NULL) == 6.5);
    CHECK(strcmp(zvSheetReadStrA(sheet, 0, 0, NULL), "text") == 0);
    CHECK(strcmp(zvSheetNameA(sheet), "Flat") == 0);
    zvBookReleaseA(again);
    zvBookReleaseA(book);
}

static void wideBook(void) {
    BookHandle book = zvCreateXMLBookW();
    SheetHandle sheet;
    CHECK(book != NULL);
    sheet = zvBookAddSheetW(book, L"Wide", NULL);
    CHECK(zvSheetWriteStrW(sheet, 0, 0, L"\x4e2d", NULL) == 1);
    CHECK(wcscmp(zvSheetReadStrW(sheet, 0, 0, NULL), L"\x4e2d") == 0);
    CHECK(zvBookSheetCountW(book) == 1);
    zvBookReleaseW(book);
}

int main(void) {
    narrowBook();
    wideBook();
    if (failures) fprintf(stderr, "%d checks failed\n", failures);
    return failures ? 1 : 0;
}
