// Print settings: orientation and paper, scaling to the page width, margins, centring, header and
// footer with page numbers, a print area, a header row repeated on every page, printed gridlines
// and a manual page break.
#include <cstdio>

#include "zelvar.h"

using namespace zelvar;

int main(int argc, char** argv) {
    const char* path = argc > 1 ? argv[1] : "print_settings.xls";
    IBookA* book = zvCreateBookA();
    if (!book) return 1;
    ISheetA* sheet = book->addSheet("Report");

    const char* titles[] = {"Day", "Visitors", "Orders", "Revenue"};
    for (int c = 0; c < 4; ++c) sheet->writeStr(0, c, titles[c]);
    for (int r = 1; r <= 120; ++r) {
        sheet->writeNum(r, 0, r);
        sheet->writeNum(r, 1, 1000 + r * 7 % 300);
        sheet->writeNum(r, 2, 40 + r * 3 % 50);
        sheet->writeNum(r, 3, (40 + r * 3 % 50) * 19.5);
    }

    sheet->setLandscape(true);
    sheet->setPaper(PaperA4);
    sheet->setPrintFit(1, 0);            // one page wide, as many pages long as needed
    sheet->setMarginLeft(0.5);           // margins in inches
    sheet->setMarginRight(0.5);
    sheet->setMarginTop(0.9);
    sheet->setMarginBottom(0.9);
    sheet->setHCenter(true);
    // &L, &C, &R: left, centre and right part; &P page number, &N page count, &D date.
    sheet->setHeader("&LShop report&R&D", 0.4);
    sheet->setFooter("&CPage &P of &N", 0.4);
    sheet->setPrintArea(0, 120, 0, 3);   // A1:D121
    sheet->setPrintRepeatRows(0, 0);     // the title row on every page
    sheet->setPrintGridlines(true);
    sheet->setHorPageBreak(61);          // a new page starts at row 62

    int across = 0, down = 0;
    bool fit = sheet->getPrintFit(&across, &down);
    std::printf("landscape %d, paper %d, fit %d (%d x %d), header \"%s\"\n", sheet->landscape(), sheet->paper(),
                fit, across, down, sheet->header());

    if (!book->save(path)) {
        std::printf("save failed: %s\n", book->errorMessage());
        book->release();
        return 1;
    }
    book->release();
    return 0;
}
