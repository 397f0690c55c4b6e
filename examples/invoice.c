/* An invoice in C through the flat interface: the same operations as the C++ interfaces, as
 * functions zv<Class><Operation>A that take the object's handle first. Booleans are int, and an
 * argument that C++ leaves out by default is given here: NULL for "no format". */
#include <stdio.h>

#include "zelvar_c.h"

int main(int argc, char** argv) {
    const char* path = argc > 1 ? argv[1] : "invoice.xls";
    BookHandle book = zvCreateBookA();
    SheetHandle sheet;
    FontHandle bold;
    FormatHandle header, money, date;
    int i;
    static const struct { const char* item; int quantity; double price; } lines[] = {
        {"Consulting (hours)", 12, 95.0}, {"Travel", 1, 240.5}, {"Licence", 3, 149.0}};

    if (!book) return 1;
    zvBookSetLocaleA(book, "UTF-8");
    sheet = zvBookAddSheetA(book, "Invoice", NULL);

    bold = zvBookAddFontA(book, NULL);
    zvFontSetBoldA(bold, 1);
    header = zvBookAddFormatA(book, NULL);
    zvFormatSetFontA(header, bold);
    zvFormatSetBorderBottomA(header, 2);                     /* BorderMedium */
    money = zvBookAddFormatA(book, NULL);
    zvFormatSetNumFormatA(money, zvBookAddCustomNumFormatA(book, "#,##0.00 \"€\""));
    date = zvBookAddFormatA(book, NULL);
    zvFormatSetNumFormatA(date, 14);                         /* NumFormatDate */

    zvSheetWriteStrA(sheet, 0, 0, "Invoice 2026-117", header);
    zvSheetWriteNumA(sheet, 0, 3, zvBookDatePackA(book, 2026, 11, 23, 0, 0, 0, 0), date);
    zvSheetWriteStrA(sheet, 2, 0, "Item", header);
    zvSheetWriteStrA(sheet, 2, 1, "Quantity", header);
    zvSheetWriteStrA(sheet, 2, 2, "Price", header);
    zvSheetWriteStrA(sheet, 2, 3, "Amount", header);
    for (i = 0; i < 3; ++i) {
        char formula[32];
        int r = 3 + i;
        zvSheetWriteStrA(sheet, r, 0, lines[i].item, NULL);
        zvSheetWriteNumA(sheet, r, 1, lines[i].quantity, NULL);
        zvSheetWriteNumA(sheet, r, 2, lines[i].price, money);
        snprintf(formula, sizeof formula, "B%d*C%d", r + 1, r + 1);
        zvSheetWriteFormulaA(sheet, r, 3, formula, money);
    }
    zvSheetWriteStrA(sheet, 6, 2, "Total", header);
    zvSheetWriteFormulaA(sheet, 6, 3, "SUM(D4:D6)", money);
    zvSheetSetColA(sheet, 0, 0, 22, NULL, 0);
    zvSheetSetColA(sheet, 1, 3, 12, NULL, 0);

    /* Every operation leaves its outcome in the book's message: "ok" or what went wrong. */
    if (!zvSheetWriteNumA(sheet, 70000, 0, 1.0, NULL))
        printf("as expected: %s\n", zvBookErrorMessageA(book));

    if (!zvBookSaveA(book, path)) {
        printf("save failed: %s\n", zvBookErrorMessageA(book));
        zvBookReleaseA(book);
        return 1;
    }
    printf("%s: total formula %s\n", path, zvSheetReadFormulaA(sheet, 6, 3, NULL));
    zvBookReleaseA(book);
    return 0;
}
