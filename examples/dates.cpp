// Dates and times: a date is a number, days since the book's epoch plus the time as a fraction of
// a day, shown as a date by its format. datePack makes the number, dateUnpack splits it again, and
// isDate tells whether a cell's format shows it as a date.
#include <cstdio>

#include "zelvar.h"

using namespace zelvar;

int main(int argc, char** argv) {
    const char* path = argc > 1 ? argv[1] : "dates.xls";
    IBookA* book = zvCreateBookA();
    if (!book) return 1;
    ISheetA* sheet = book->addSheet("Schedule");

    // One format per way of showing a date: a built-in one and two custom ones.
    IFormatA* day = book->addFormat();
    day->setNumFormat(NumFormatDate);
    IFormatA* stamp = book->addFormat();
    stamp->setNumFormat(book->addCustomNumFormat("yyyy-mm-dd hh:mm"));
    IFormatA* clock = book->addFormat();
    clock->setNumFormat(NumFormatCustomHMM);

    sheet->writeStr(0, 0, "Event");
    sheet->writeStr(0, 1, "Day");
    sheet->writeStr(0, 2, "Starts");
    sheet->writeStr(0, 3, "Duration");
    struct { const char* event; int y, m, d, hour, min; double hours; } events[] = {
        {"Kick-off", 2026, 1, 12, 9, 30, 1.5},
        {"Leap day review", 2028, 2, 29, 14, 0, 0.75},
        {"Year end", 2026, 12, 31, 23, 59, 0.25},
    };
    for (int i = 0; i < 3; ++i) {
        int r = i + 1;
        const auto& e = events[i];
        sheet->writeStr(r, 0, e.event);
        sheet->writeNum(r, 1, book->datePack(e.y, e.m, e.d), day);
        sheet->writeNum(r, 2, book->datePack(e.y, e.m, e.d, e.hour, e.min), stamp);
        sheet->writeNum(r, 3, e.hours / 24, clock);  // a time alone is a fraction of a day
    }
    sheet->setCol(0, 0, 16);
    sheet->setCol(1, 2, 17);

    if (!book->save(path)) {
        std::printf("save failed: %s\n", book->errorMessage());
        book->release();
        return 1;
    }

    // Reading dates back: isDate looks at the cell's format, dateUnpack splits the number.
    for (int r = 1; r < sheet->lastRow(); ++r) {
        int y, m, d, hour, min, sec;
        if (sheet->isDate(r, 2) && book->dateUnpack(sheet->readNum(r, 2), &y, &m, &d, &hour, &min, &sec))
            std::printf("%-16s %04d-%02d-%02d %02d:%02d\n", sheet->readStr(r, 0), y, m, d, hour, min);
    }
    book->release();
    return 0;
}
