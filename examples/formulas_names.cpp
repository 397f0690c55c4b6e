// Formulas and named ranges: a small budget whose totals are formulas, one of them over another
// sheet, and named ranges for the blocks a reader will want to find by name.
//
// The library compiles formula text and stores it; it computes nothing. A freshly written formula
// caches 0 until a spreadsheet program recalculates it, which readers do on opening.
#include <cstdio>

#include "zelvar.h"

using namespace zelvar;

int main(int argc, char** argv) {
    const char* path = argc > 1 ? argv[1] : "formulas_names.xls";
    IBookA* book = zvCreateBookA();
    if (!book) return 1;
    ISheetA* rates = book->addSheet("Rates");
    ISheetA* budget = book->addSheet("Budget");

    rates->writeStr(0, 0, "VAT");
    rates->writeNum(0, 1, 0.19);

    budget->writeStr(0, 0, "Item");
    budget->writeStr(0, 1, "Net");
    budget->writeStr(0, 2, "Gross");
    const char* items[] = {"Rent", "Power", "Travel", "Books"};
    double net[] = {1200, 185.4, 430, 96.2};
    char formula[64];
    for (int i = 0; i < 4; ++i) {
        int r = i + 1;
        budget->writeStr(r, 0, items[i]);
        budget->writeNum(r, 1, net[i]);
        // A reference to another sheet; the leading "=" is optional, ";" or "," separate arguments.
        std::snprintf(formula, sizeof formula, "ROUND(B%d*(1+Rates!$B$1),2)", r + 1);
        if (!budget->writeFormula(r, 2, formula)) std::printf("%s: %s\n", formula, book->errorMessage());
    }
    budget->writeStr(5, 0, "Total");
    budget->writeFormula(5, 1, "SUM(B2:B5)");
    budget->writeFormula(5, 2, "SUM(C2:C5)");
    budget->writeStr(6, 0, "Largest");
    budget->writeFormula(6, 1, "IF(MAX(B2:B5)>1000,\"over 1000\",\"all small\")");

    // A named range is defined in the scope of its sheet; readers find the block by its name.
    budget->setNamedRange("NetAmounts", 1, 4, 1, 1);   // B2:B5
    budget->setNamedRange("GrossAmounts", 1, 4, 2, 2); // C2:C5
    rates->setNamedRange("VatRate", 0, 0, 1, 1);       // Rates!B1

    // Formula text reads back without "=", with ";" between arguments.
    std::printf("C2: %s\n", budget->readFormula(1, 2));
    std::printf("B7: %s\n", budget->readFormula(6, 1));
    for (int i = 0; i < budget->namedRangeSize(); ++i) {
        int r1, r2, c1, c2;
        const char* name = budget->namedRange(i, &r1, &r2, &c1, &c2);
        std::printf("name %s: rows %d-%d, column %d\n", name, r1, r2, c1);
    }

    // A mistake in a formula is reported, and the cell keeps what it had.
    if (!budget->writeFormula(8, 0, "SUM(B2:B5"))
        std::printf("refused: %s\n", book->errorMessage());

    if (!book->save(path)) {
        std::printf("save failed: %s\n", book->errorMessage());
        book->release();
        return 1;
    }
    book->release();
    return 0;
}
