// The external sheet table on its own: entries found and added for this book's sheets, following
// inserted and removed sheets, and the file's CONTINUE pieces kept while the table's length stays.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "biff/record_ids.h"
#include "book/extern_sheets.h"
#include "frame/little_endian.h"
#include "xls_stream_util.h"

using namespace zelvar;
using zvtest::Record;

namespace {

std::string le16(unsigned v) { return std::string{static_cast<char>(v & 0xFF), static_cast<char>(v >> 8)}; }

// The SupBook blocks of a workbook stream made of these records.
ExternSheets<char> loaded(const std::vector<Record>& records) {
    std::string file = zvtest::container(records);
    XlsStream xls;
    xls.setSource(file.data(), file.size());
    xls.calcFileSize();
    unsigned counter = 0;
    xls.readHeader(counter);
    ExternSheets<char> sheets;
    while (!xls.eof()) {
        uint16_t id = 0, size = 0;
        if (xls.readInt16(&id) < 2 || id == 0) break;
        xls.readInt16(&size);
        EXPECT_EQ(rt::SupBook, id);
        sheets.readBlock(xls, size);
    }
    return sheets;
}

std::vector<Record> written(const ExternSheets<char>& sheets) {
    std::stringstream out(std::ios::in | std::ios::out | std::ios::binary);
    XlsStream xls;
    xls.setStreamPtr(&out);
    sheets.write(xls);
    xls.close();
    return zvtest::streamRecords(out.str());
}

XtiEntry entry(const ExternSheets<char>& sheets, uint16_t ixti) {
    XtiEntry x{-9, -9, -9};
    EXPECT_EQ(ExternSheets<char>::Lookup::Found, sheets.find(ixti, x)) << ixti;
    return x;
}

}  // namespace

TEST(ExternSheets, OwnEntriesAreFoundOrAddedAndFollowTheSheets) {
    ExternSheets<char> sheets;
    XtiEntry x;
    EXPECT_EQ(ExternSheets<char>::Lookup::NoTable, sheets.find(0, x));
    EXPECT_EQ(-1, sheets.ownSupBook());
    EXPECT_EQ(0, sheets.ownXti(0, 0, 3));
    EXPECT_EQ(1, sheets.ownXti(1, 2, 3));
    EXPECT_EQ(0, sheets.ownXti(0, 0, 3));
    EXPECT_EQ(0, sheets.ownSupBook());
    EXPECT_EQ(ExternSheets<char>::Lookup::NoEntry, sheets.find(2, x));

    auto records = written(sheets);
    ASSERT_EQ(2u, records.size());
    EXPECT_EQ(rt::SupBook, records[0].id);
    EXPECT_EQ(le16(3) + le16(0x0401), records[0].payload);
    EXPECT_EQ(rt::ExternSheet, records[1].id);
    EXPECT_EQ(le16(2) + le16(0) + le16(0) + le16(0) + le16(0) + le16(1) + le16(2), records[1].payload);

    // Inserting at 1 moves the range 1..2 on; removing sheet 0 leaves its entry with no sheet.
    sheets.followSheetList(1, true, 4);
    EXPECT_EQ(0, entry(sheets, 0).first);
    EXPECT_EQ(2, entry(sheets, 1).first);
    EXPECT_EQ(3, entry(sheets, 1).last);
    sheets.followSheetList(0, false, 3);
    EXPECT_EQ(-1, entry(sheets, 0).first);
    EXPECT_EQ(-1, entry(sheets, 0).last);
    EXPECT_EQ(1, entry(sheets, 1).first);
    EXPECT_EQ(2, entry(sheets, 1).last);
    EXPECT_EQ(le16(3) + le16(0x0401), written(sheets)[0].payload);
}

TEST(ExternSheets, ContinuedTableKeepsItsPiecesAndMovesToTheLastBlock) {
    // Another book's SupBook holds the table, cut inside its second entry; this book's own block
    // comes after it.
    // Entries: this book's sheet 0, the other book's sheet 1, this book's sheet 1.
    std::string table = le16(3) + le16(1) + le16(0) + le16(0) + le16(0) + le16(1) + le16(1) + le16(1) + le16(1) +
                        le16(1);
    std::string other = le16(1) + le16(1) + std::string("\x00x", 2);
    std::vector<Record> file = {{rt::SupBook, other},
                                {rt::ExternSheet, table.substr(0, 11)},
                                {rt::Continue, table.substr(11)},
                                {rt::SupBook, le16(2) + le16(0x0401)}};
    ExternSheets<char> sheets = loaded(file);
    EXPECT_EQ(1, sheets.ownSupBook());
    EXPECT_EQ(0, entry(sheets, 1).supBook);
    EXPECT_EQ(1, entry(sheets, 2).supBook);

    // Same length: the pieces stay as the file cut them, and only this book's entries move.
    sheets.followSheetList(0, true, 3);
    auto records = written(sheets);
    ASSERT_EQ(4u, records.size());
    EXPECT_EQ(11u, records[1].payload.size());
    EXPECT_EQ(rt::Continue, records[2].id);
    EXPECT_EQ(1, entry(sheets, 0).first);
    EXPECT_EQ(1, entry(sheets, 1).first);
    EXPECT_EQ(2, entry(sheets, 2).first);

    // A new entry: the table goes behind the last block, cut anew into one record.
    EXPECT_EQ(2, sheets.ownXti(2, 2, 3));
    EXPECT_EQ(3, sheets.ownXti(0, 0, 3));
    records = written(sheets);
    ASSERT_EQ(3u, records.size());
    EXPECT_EQ(rt::SupBook, records[0].id);
    EXPECT_EQ(rt::SupBook, records[1].id);
    EXPECT_EQ(rt::ExternSheet, records[2].id);
    EXPECT_EQ(2u + 6u * 4u, records[2].payload.size());
    EXPECT_EQ(4u, le::get16(reinterpret_cast<const uint8_t*>(records[2].payload.data())));
}
