// The book's links to sheets, its own and those of other books: the SupBook blocks of the
// globals as read (a SupBook record with its ExternName, Xct and Crn records) and the one
// ExternSheet table whose XTI entries the formula tokens and defined names point at. Everything
// is kept in the file's form, so a save writes back what was read unless an edit changed it.
#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

#include "biff/biff_record.h"

namespace zelvar {

// One XTI entry: the SupBook block it refers to and a range of that book's sheets (-1: none).
struct XtiEntry {
    int supBook = 0;
    int first = 0, last = 0;
};

template <class T>
class ExternSheets {
public:
    enum class Lookup { NoTable, NoEntry, Found };

    void clear() { _blocks.clear(); }
    // Reads a SupBook record whose header the caller consumed, and the records of its block.
    void readBlock(XlsStream& xls, uint16_t size);
    void write(XlsStream& xls) const;

    // The entry ixti of the table in force (that of the first block holding one).
    Lookup find(uint16_t ixti, XtiEntry& out) const;
    // Position of the block of this book's own SupBook, or -1 when there is none.
    int ownSupBook() const;
    // The entry for sheets first to last of this book: found, or added (with this book's own
    // SupBook, if it has none yet); sheetCount is the number of sheets of the book.
    uint16_t ownXti(int first, int last, size_t sheetCount);
    // After a sheet is inserted at or removed from index, this book's entries follow the sheets
    // they meant; an entry whose only sheet was removed refers to none (-1).
    void followSheetList(int index, bool inserted, size_t sheetCount);

private:
    using Block = std::vector<Biff<T>>;
    std::vector<Block> _blocks;
};

}  // namespace zelvar
