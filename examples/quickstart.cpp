// A small sales table: a bold header, numbers with a custom format, dates with a date format and
// booleans; then every cell is read back and printed. A path ending in .xlsx gives an XML
// workbook, any other a binary one: the code is the same for both.
#include <cstdio>
#include <cstring>

#include "zelvar.h"

using namespace zelvar;

// The factory of the family that the file name asks for.
static IBookT<char>* createBook(const char* path) {
    size_t n = std::strlen(path);
    bool xml = n > 5 && std::strcmp(path + n - 5, ".xlsx") == 0;
    return xml ? zvCreateXMLBookA() : zvCreateBookA();
}

int main(int argc, char** argv) {
    const char* path = argc > 1 ? argv[1] : "quickstart.xls";
    IBookT<char>* book = createBook(path);
    if (!book) return 1;
    book->setLocale("UTF-8");

    IFontT<char>* boldFont = book->addFont(nullptr);
    boldFont->setBold(true);
    IFormatT<char>* header = book->addFormat(nullptr);
    header->setFont(boldFont);
    header->setBorderBottom(BorderThin);

    IFormatT<char>* dateFormat = book->addFormat(nullptr);
    dateFormat->setNumFormat(NumFormatDate);
    IFormatT<char>* amountFormat = book->addFormat(nullptr);
    amountFormat->setNumFormat(book->addCustomNumFormat("#,##0.00 \"€\""));

    ISheetT<char>* sheet = book->addSheet("Sales", nullptr);
    const char* titles[] = {"Region", "Date", "Amount", "Paid"};
    for (int c = 0; c < 4; ++c) sheet->writeStr(0, c, titles[c], header);

    struct { const char* region; int y, m, d; double amount; bool paid; } rows[] = {
        {"North", 2026, 1, 15, 1250.5, true},
        {"Süd", 2026, 2, 3, 980.25, false},
        {"East", 2026, 2, 28, 2210.0, true},
    };
    for (int i = 0; i < 3; ++i) {
        int r = i + 1;
        sheet->writeStr(r, 0, rows[i].region, nullptr);
        sheet->writeNum(r, 1, book->datePack(rows[i].y, rows[i].m, rows[i].d), dateFormat);
        sheet->writeNum(r, 2, rows[i].amount, amountFormat);
        sheet->writeBool(r, 3, rows[i].paid, nullptr);
    }

    // Save, then read the file back into a fresh book and print what it holds.
    if (!book->save(path)) {
        std::printf("save failed: %s\n", book->errorMessage());
        return 1;
    }
    book->release();
    book = createBook(path);
    book->setLocale("UTF-8");
    if (!book->load(path)) {
        std::printf("load failed: %s\n", book->errorMessage());
        return 1;
    }
    sheet = book->getSheet(0);
    std::printf("%s: sheet %s, rows %d-%d, columns %d-%d\n", path, sheet->name(), sheet->firstRow(),
                sheet->lastRow() - 1, sheet->firstCol(), sheet->lastCol() - 1);
    for (int r = sheet->firstRow(); r < sheet->lastRow(); ++r) {
        for (int c = sheet->firstCol(); c < sheet->lastCol(); ++c) {
            switch (sheet->cellType(r, c)) {
                case CellString: std::printf("%-12s", sheet->readStr(r, c)); break;
                case CellBoolean: std::printf("%-12s", sheet->readBool(r, c) ? "yes" : "no"); break;
                case CellNumber:
                    if (sheet->isDate(r, c)) {
                        int y, m, d;
                        book->dateUnpack(sheet->readNum(r, c), &y, &m, &d);
                        std::printf("%04d-%02d-%02d  ", y, m, d);
                    } else {
                        IFormatT<char>* f = nullptr;
                        double v = sheet->readNum(r, c, &f);
                        std::printf("%-12.2f", v);
                    }
                    break;
                default: std::printf("%-12s", "");
            }
        }
        std::printf("\n");
    }
    IFormatT<char>* amount = sheet->cellFormat(1, 2);
    std::printf("custom format %d: %s\n", amount->numFormat(), book->customNumFormat(amount->numFormat()));
    std::printf("last message: %s\n", book->errorMessage());
    book->release();
    return 0;
}
