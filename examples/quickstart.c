/* The same small table through the flat C interface. */
#include <stdio.h>

#include "zelvar_c.h"

int main(int argc, char** argv) {
    const char* path = argc > 1 ? argv[1] : "quickstart_c.xls";
    BookHandle book = zvCreateBookA();
    SheetHandle sheet;
    FormatHandle dateFormat, amountFormat;
    int r, c, y, m, d;
    const char* titles[] = {"Item", "Due", "Price", "In stock"};

    if (!book) return 1;
    zvBookSetLocaleA(book, "UTF-8");
    dateFormat = zvBookAddFormatA(book, NULL);
    zvFormatSetNumFormatA(dateFormat, 14);
    amountFormat = zvBookAddFormatA(book, NULL);
    zvFormatSetNumFormatA(amountFormat, zvBookAddCustomNumFormatA(book, "0.000"));

    sheet = zvBookAddSheetA(book, "Stock", NULL);
    for (c = 0; c < 4; ++c) zvSheetWriteStrA(sheet, 0, c, titles[c], NULL);
    zvSheetWriteStrA(sheet, 1, 0, "Bolts", NULL);
    zvSheetWriteNumA(sheet, 1, 1, zvBookDatePackA(book, 2026, 12, 1, 0, 0, 0, 0), dateFormat);
    zvSheetWriteNumA(sheet, 1, 2, 0.125, amountFormat);
    zvSheetWriteBoolA(sheet, 1, 3, 1, NULL);

    /* Save, reload into a fresh book, print. */
    if (!zvBookSaveA(book, path)) {
        printf("save failed: %s\n", zvBookErrorMessageA(book));
        return 1;
    }
    zvBookReleaseA(book);
    book = zvCreateBookA();
    zvBookSetLocaleA(book, "UTF-8");
    if (!zvBookLoadA(book, path)) {
        printf("load failed: %s\n", zvBookErrorMessageA(book));
        return 1;
    }
    sheet = zvBookGetSheetA(book, 0);
    printf("%s: sheet %s\n", path, zvSheetNameA(sheet));
    for (r = 0; r < zvSheetLastRowA(sheet); ++r) {
        for (c = 0; c < zvSheetLastColA(sheet); ++c) {
            switch (zvSheetCellTypeA(sheet, r, c)) {
                case 2: printf("%-10s", zvSheetReadStrA(sheet, r, c, NULL)); break;
                case 3: printf("%-10s", zvSheetReadBoolA(sheet, r, c, NULL) ? "yes" : "no"); break;
                case 1:
                    if (zvSheetIsDateA(sheet, r, c)) {
                        zvBookDateUnpackA(book, zvSheetReadNumA(sheet, r, c, NULL), &y, &m, &d, NULL, NULL, NULL, NULL);
                        printf("%04d-%02d-%02d", y, m, d);
                        printf("  ");
                    } else {
                        printf("%-10.3f", zvSheetReadNumA(sheet, r, c, NULL));
                    }
                    break;
                default: printf("%-10s", "");
            }
        }
        printf("\n");
    }
    printf("last message: %s\n", zvBookErrorMessageA(book));
    zvBookReleaseA(book);
    return 0;
}
