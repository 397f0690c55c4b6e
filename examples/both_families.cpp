// The same program over both families: one function writes an order list through the common
// interface, and the file name picks the family (.xls: the binary book of zvCreateBookA; .xlsx:
// the XML book of zvCreateXMLBookA). Each file is then loaded again and summed up.
//
//     both_families orders.xls orders.xlsx
//
// The interface is the same; what differs is what each format can hold. The program asks the
// book instead of assuming: a binary sheet ends at row 65536 and column 256, an XML sheet goes
// on to row 1048576 and column 16384, and comments are kept by the binary family only.
#include <cstdio>
#include <cstring>

#include "zelvar.h"

using namespace zelvar;

static bool isXmlPath(const char* path) {
    const char* dot = std::strrchr(path, '.');
    return dot && (std::strcmp(dot, ".xlsx") == 0 || std::strcmp(dot, ".xlsm") == 0);
}

// The factory of the family that the file name asks for.
static IBookT<char>* createBook(const char* path) {
    return isXmlPath(path) ? zvCreateXMLBookA() : zvCreateBookA();
}

// Written once, for either family.
static bool writeOrders(IBookT<char>* book) {
    book->setLocale("UTF-8");
    IFontT<char>* bold = book->addFont(nullptr);
    bold->setBold(true);
    IFormatT<char>* title = book->addFormat(nullptr);
    title->setFont(bold);
    title->setAlignH(HAlignCenter);
    IFormatT<char>* date = book->addFormat(nullptr);
    date->setNumFormat(NumFormatDate);
    IFormatT<char>* money = book->addFormat(nullptr);
    money->setNumFormat(NumFormatNumberSepD2);

    ISheetT<char>* sheet = book->addSheet("Orders", nullptr);
    sheet->writeStr(0, 0, "Orders of November", title);
    sheet->setMerge(0, 0, 0, 3);
    const char* heads[] = {"Customer", "Date", "Quantity", "Amount"};
    for (int c = 0; c < 4; ++c) sheet->writeStr(1, c, heads[c], title);
    sheet->setCol(0, 0, 18);

    struct { const char* customer; int day; double quantity, amount; } orders[] = {
        {"Müller & Co", 3, 12, 1140.0},
        {"Northwind", 11, 4, 522.5},
        {"Atelier Zoé", 24, 30, 2847.9},
    };
    for (int i = 0; i < 3; ++i) {
        int r = 2 + i;
        sheet->writeStr(r, 0, orders[i].customer);
        sheet->writeNum(r, 1, book->datePack(2026, 11, orders[i].day), date);
        sheet->writeNum(r, 2, orders[i].quantity);
        sheet->writeNum(r, 3, orders[i].amount, money);
    }
    sheet->writeStr(5, 0, "Total", title);
    sheet->writeFormula(5, 2, "SUM(C3:C5)");
    sheet->writeFormula(5, 3, "SUM(D3:D5)", money);
    return true;
}

// What one family holds and the other doesn't, found out by asking the book.
static void showLimits(IBookT<char>* book) {
    ISheetT<char>* sheet = book->getSheet(0);
    if (sheet->writeNum(100000, 0, 1.0))
        std::printf("  row 100001 can be written\n");
    else
        std::printf("  row 100001: %s\n", book->errorMessage());
    sheet->clear(100000, 100000, 0, 0);
    sheet->writeComment(2, 0, "Pays within 10 days.", "Sales");
    std::printf("  comment: %s\n", book->errorMessage());
}

int main(int argc, char** argv) {
    const char* defaults[] = {"orders.xls", "orders.xlsx"};
    const char* const* paths = argc > 1 ? argv + 1 : defaults;
    int count = argc > 1 ? argc - 1 : 2;
    for (int i = 0; i < count; ++i) {
        const char* path = paths[i];
        IBookT<char>* book = createBook(path);
        if (!book) return 1;
        writeOrders(book);
        std::printf("%s (%s family):\n", path, isXmlPath(path) ? "XML" : "binary");
        showLimits(book);
        if (!book->save(path)) {
            std::printf("save failed: %s\n", book->errorMessage());
            return 1;
        }
        book->release();

        // Load it again and sum the orders through the same interface.
        book = createBook(path);
        book->setLocale("UTF-8");
        if (!book->load(path)) {
            std::printf("load failed: %s\n", book->errorMessage());
            return 1;
        }
        ISheetT<char>* sheet = book->getSheet(0);
        double total = 0;
        for (int r = 2; r < 5; ++r) total += sheet->readNum(r, 3);
        // The texts a sheet hands out share the sheet's text buffer, valid up to its next call
        // that returns text: print (or copy) each before asking for the next.
        std::printf("  %s: %.2f in all", sheet->name(), total);
        std::printf(", total cell =%s\n", sheet->readFormula(5, 3));
        book->release();
    }
    return 0;
}
