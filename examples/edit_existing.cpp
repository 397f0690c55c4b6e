// Load, edit, save: opens a workbook another program wrote, appends a row to its first sheet,
// adds a total and a note, and saves it under a new name. Whatever the library doesn't model in
// the file (charts, drawings, other streams) is carried through the save unchanged.
//
//     edit_existing in.xls out.xls
#include <cstdio>

#include "zelvar.h"

using namespace zelvar;

int main(int argc, char** argv) {
    if (argc < 3) {
        std::printf("usage: %s in.xls out.xls\n", argv[0]);
        return 2;
    }
    IBookA* book = zvCreateBookA();
    if (!book) return 1;
    if (!book->load(argv[1])) {
        std::printf("can't load %s: %s\n", argv[1], book->errorMessage());
        book->release();
        return 1;
    }
    std::printf("%s: %d sheets, format version %d\n", argv[1], book->sheetCount(), book->biffVersion());

    ISheetT<char>* sheet = book->getSheet(0);
    int first = sheet->firstRow(), next = sheet->lastRow();  // lastRow is one past the last used row
    std::printf("sheet %s holds rows %d to %d\n", sheet->name(), first + 1, next);

    // A new row in the style of the row above it: cellFormat gives the format to reuse.
    IFormatA* dateFormat = sheet->cellFormat(next - 1, 0);
    IFormatA* numberFormat = sheet->cellFormat(next - 1, 1);
    int y = 0, m = 0, d = 0;
    if (sheet->isDate(next - 1, 0)) book->dateUnpack(sheet->readNum(next - 1, 0) + 1, &y, &m, &d);
    sheet->writeNum(next, 0, book->datePack(y, m, d), dateFormat);
    sheet->writeNum(next, 1, 10, numberFormat);

    // A total under the column, and a note beside it.
    char formula[32];
    std::snprintf(formula, sizeof formula, "SUM(B%d:B%d)", first + 1, next + 1);
    sheet->writeStr(next + 1, 0, "Total");
    if (!sheet->writeFormula(next + 1, 1, formula)) std::printf("formula: %s\n", book->errorMessage());
    sheet->writeStr(next + 1, 2, "edited by the edit_existing example");

    if (!book->save(argv[2])) {
        std::printf("can't save %s: %s\n", argv[2], book->errorMessage());
        book->release();
        return 1;
    }
    std::printf("%s: added %04d-%02d-%02d and %s\n", argv[2], y, m, d, formula);
    book->release();
    return 0;
}
