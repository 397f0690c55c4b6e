// Formats and fonts: a small price list with a title font, a coloured header row, borders, number
// formats (built-in and custom), alignment, wrapped and rotated text.
//
// A format is made once by the book and then given to as many cells as need it: a format per cell
// would make the file large and slow. Fonts are attached to formats, not to cells.
#include <cstdio>

#include "zelvar.h"

using namespace zelvar;

int main(int argc, char** argv) {
    const char* path = argc > 1 ? argv[1] : "formats_fonts.xls";
    IBookA* book = zvCreateBookA();
    if (!book) return 1;
    book->setLocale("UTF-8");  // 8-bit text in and out is UTF-8
    ISheetA* sheet = book->addSheet("Prices");

    // Title: a big navy font on a format of its own.
    IFontA* titleFont = book->addFont();
    titleFont->setName("Liberation Serif");
    titleFont->setSize(16);
    titleFont->setBold();
    titleFont->setColor(ColorNavy);
    IFormatA* title = book->addFormat();
    title->setFont(titleFont);

    // Header row: white bold text on a solid fill of a colour of our own, centred, with borders.
    IFontA* headerFont = book->addFont();
    headerFont->setBold();
    headerFont->setColor(ColorWhite);
    IFormatA* header = book->addFormat();
    header->setFont(headerFont);
    header->setFillPattern(FillSolid);
    // colorPack finds the colour in the palette or takes over an entry not handed out yet.
    header->setPatternForegroundColor(book->colorPack(0, 97, 168));
    header->setAlignH(HAlignCenter);
    header->setAlignV(VAlignCenter);
    header->setBorder(BorderThin);
    header->setWrap();  // "Unit price (EUR)" breaks into two lines in its narrow column

    // Body formats: a copy of one format changes only what differs.
    IFormatA* text = book->addFormat();
    text->setBorder(BorderThin);
    text->setBorderColor(ColorGray);
    IFormatA* money = book->addFormat(text);
    money->setNumFormat(NumFormatNumberSepD2);  // built-in "#,##0.00"
    IFormatA* weight = book->addFormat(text);
    weight->setNumFormat(book->addCustomNumFormat("0.0 \"kg\""));  // a custom format gets an id >= 164
    IFormatA* percent = book->addFormat(text);
    percent->setNumFormat(NumFormatPercent);
    percent->setAlignH(HAlignRight);

    // A note in italic red, rotated up the side of the table.
    IFontA* noteFont = book->addFont();
    noteFont->setItalic();
    noteFont->setColor(ColorRed);
    IFormatA* note = book->addFormat();
    note->setFont(noteFont);
    note->setRotation(90);
    note->setAlignV(VAlignCenter);

    sheet->writeStr(0, 0, "Price list", title);
    const char* titles[] = {"Item", "Unit price (EUR)", "Weight", "Discount"};
    for (int c = 0; c < 4; ++c) sheet->writeStr(2, c, titles[c], header);
    struct { const char* item; double price, kg, discount; } items[] = {
        {"Grüner Tee", 4.5, 0.25, 0.0}, {"Espresso beans", 12.9, 1.0, 0.1}, {"Cocoa", 6.75, 0.5, 0.05}};
    for (int i = 0; i < 3; ++i) {
        int r = 3 + i;
        sheet->writeStr(r, 0, items[i].item, text);
        sheet->writeNum(r, 1, items[i].price, money);
        sheet->writeNum(r, 2, items[i].kg, weight);
        sheet->writeNum(r, 3, items[i].discount, percent);
    }
    sheet->writeStr(2, 5, "prices of 2026", note);
    sheet->setMerge(2, 5, 5, 5);  // the note runs down the rows of the table
    sheet->setCol(0, 0, 18);
    sheet->setCol(1, 3, 11);
    sheet->setRow(2, 30);

    if (!book->save(path)) {
        std::printf("save failed: %s\n", book->errorMessage());
        book->release();
        return 1;
    }
    std::printf("%s: %d formats, %d fonts, weight format \"%s\"\n", path, book->formatSize(), book->fontSize(),
                book->customNumFormat(weight->numFormat()));
    book->release();
    return 0;
}
