// Merges and layout: a title merged across the table, column widths and row heights, a hidden
// helper column, frozen header panes, an outline group of detail rows, and the view's zoom.
#include <cstdio>

#include "zelvar.h"

using namespace zelvar;

int main(int argc, char** argv) {
    const char* path = argc > 1 ? argv[1] : "merges_layout.xls";
    IBookA* book = zvCreateBookA();
    if (!book) return 1;
    ISheetA* sheet = book->addSheet("Layout");

    IFormatA* centred = book->addFormat();
    centred->setAlignH(HAlignCenter);
    centred->setAlignV(VAlignCenter);
    centred->setBorder(BorderMedium);

    // The title stands in the top left cell of the merged block; the block's other cells become
    // blanks with the same format, so the border goes round the whole block.
    sheet->writeStr(0, 0, "Quarterly figures", centred);
    sheet->setMerge(0, 1, 0, 4);  // A1:E2

    const char* quarters[] = {"Region", "Q1", "Q2", "Q3", "Q4"};
    for (int c = 0; c < 5; ++c) sheet->writeStr(2, c, quarters[c]);
    for (int r = 3; r < 13; ++r) {
        char region[16];
        std::snprintf(region, sizeof region, "Region %d", r - 2);
        sheet->writeStr(r, 0, region);
        for (int c = 1; c < 5; ++c) sheet->writeNum(r, c, r * 10 + c);
        sheet->writeNum(r, 5, r);  // a sort key the reader needn't see
    }

    sheet->setCol(0, 0, 20);          // width in characters
    sheet->setCol(1, 4, 9);
    sheet->setColHidden(5, true);     // the sort key column
    sheet->setRow(2, 24);             // height in points
    sheet->split(3, 1);               // rows 1-3 and column A stay in view
    sheet->groupRows(4, 12, false);   // the detail rows fold under region 1
    sheet->setZoom(120);

    int r1, r2, c1, c2;
    if (sheet->getMerge(1, 3, &r1, &r2, &c1, &c2))
        std::printf("D2 lies in the merged block rows %d-%d, columns %d-%d\n", r1, r2, c1, c2);
    std::printf("column A is %.2f characters wide, row 3 is %.2f points high\n", sheet->colWidth(0),
                sheet->rowHeight(2));

    if (!book->save(path)) {
        std::printf("save failed: %s\n", book->errorMessage());
        book->release();
        return 1;
    }
    book->release();
    return 0;
}
