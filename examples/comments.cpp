// Comments (cell notes): a review of a small price list, with a note on some cells, each with
// its author and the size of its box; one note replaced; the notes read back from the saved file.
//
// Comments are a binary-family feature here: an XML book answers writeComment and readComment
// with the message "not supported" and leaves its cells as they were. The end of the program shows
// that, so a program that serves both families can tell the user instead of losing notes quietly.
#include <cstdio>

#include "zelvar.h"

using namespace zelvar;

int main(int argc, char** argv) {
    const char* path = argc > 1 ? argv[1] : "comments.xls";
    IBookT<char>* book = zvCreateBookA();
    if (!book) return 1;
    book->setLocale("UTF-8");

    ISheetT<char>* sheet = book->addSheet("Review", nullptr);
    const char* items[] = {"Item", "Tea", "Coffee", "Cocoa"};
    const double prices[] = {0, 4.5, 7.25, 3.1};
    sheet->writeStr(0, 0, items[0]);
    sheet->writeStr(0, 1, "Price");
    for (int r = 1; r < 4; ++r) {
        sheet->writeStr(r, 0, items[r]);
        sheet->writeNum(r, 1, prices[r]);
    }

    // A note with its author and the default box of 129 by 75 pixels.
    sheet->writeComment(0, 1, "Prices per 250 g, tax included.", "Pricing");
    // A longer note in a larger box; line breaks are kept.
    sheet->writeComment(2, 1, "Up from 6.90 in March.\nCheck again after the next delivery.", "Purchasing",
                        220, 90);
    // A null author gives the library's default author.
    sheet->writeComment(3, 0, "Seasonal: winter only.");
    // A second comment on a cell replaces the first.
    sheet->writeComment(1, 1, "Old price, remove.", "Pricing");
    sheet->writeComment(1, 1, "Grüner Tee, loose leaf.", "Pricing");
    std::printf("comments written: %s\n", book->errorMessage());

    if (!book->save(path)) {
        std::printf("save failed: %s\n", book->errorMessage());
        return 1;
    }
    book->release();

    // Read the notes back. readComment gives null, with "ok", for a cell without a note.
    book = zvCreateBookA();
    book->setLocale("UTF-8");
    if (!book->load(path)) {
        std::printf("load failed: %s\n", book->errorMessage());
        return 1;
    }
    sheet = book->getSheet(0);
    for (int r = sheet->firstRow(); r < sheet->lastRow(); ++r) {
        for (int c = sheet->firstCol(); c < sheet->lastCol(); ++c) {
            if (const char* note = sheet->readComment(r, c))
                std::printf("%s%d: %s\n", c == 0 ? "A" : "B", r + 1, note);
        }
    }
    book->release();

    // The XML family: the same calls report "not supported".
    IBookT<char>* xml = zvCreateXMLBookA();
    ISheetT<char>* xmlSheet = xml->addSheet("Review", nullptr);
    xmlSheet->writeStr(0, 0, "Tea");
    xmlSheet->writeComment(0, 0, "Prices per 250 g.", "Pricing");
    std::printf("XML book, writeComment: %s\n", xml->errorMessage());
    const char* note = xmlSheet->readComment(0, 0);
    std::printf("XML book, readComment: %s (%s)\n", note ? note : "null", xml->errorMessage());
    xml->release();
    return 0;
}
