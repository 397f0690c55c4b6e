// Structural edits and merged blocks of XML sheets through the public interface: rows and
// columns inserted and removed, areas cleared, merges kept true, and edits that move storage
// but leave formula text alone.
#include <chrono>

#include "xml_test_util.h"

using namespace zelvar;
using namespace xmltest;

namespace {

template <class T>
class XmlEdit : public ::testing::Test {};
using Widths = ::testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(XmlEdit, Widths);

TYPED_TEST(XmlEdit, InsertedRowsMoveCellsAndMergesButNotFormulaText) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
    ASSERT_NE(sheet, nullptr);
    EXPECT_FALSE(sheet->insertRow(5, 4));
    EXPECT_STREQ(book->errorMessage(), "rowLast must be greater than or equal to rowFirst");

    sheet->writeNum(4, 0, 1);
    sheet->writeNum(5, 0, 2);
    sheet->writeFormula(6, 1, S<T>("A5+1").c_str());
    ASSERT_TRUE(sheet->setMerge(0, 9, 2, 2));   // C1:C10
    ASSERT_TRUE(sheet->setMerge(20, 21, 0, 1));  // below the insertion: moves whole
    ASSERT_TRUE(sheet->insertRow(5, 5)) << book->errorMessage();
    EXPECT_EQ(sheet->readNum(4, 0), 1);
    EXPECT_EQ(sheet->cellType(5, 0), CellEmpty);
    EXPECT_EQ(sheet->readNum(6, 0), 2);
    EXPECT_EQ(narrow(sheet->readFormula(7, 1)), "A5+1");
    EXPECT_EQ(sheet->lastRow(), 8);

    // C1:C10 was split at row 6 into C1:C5 and C7:C11; this splits C1:C5 again and moves the rest.
    ASSERT_TRUE(sheet->insertRow(3, 4));
    int r1, r2, c1, c2;
    ASSERT_TRUE(sheet->getMerge(0, 2, &r1, &r2, &c1, &c2));
    EXPECT_EQ(r1, 0);
    EXPECT_EQ(r2, 2);
    ASSERT_TRUE(sheet->getMerge(12, 2, &r1, &r2, &c1, &c2));
    EXPECT_EQ(r1, 8);
    EXPECT_EQ(r2, 12);
    EXPECT_FALSE(sheet->getMerge(3, 2, &r1, &r2, &c1, &c2));
    EXPECT_STREQ(book->errorMessage(), "this cell isn't in merging block");
    ASSERT_TRUE(sheet->getMerge(24, 1, &r1, &r2, &c1, &c2));
    EXPECT_EQ(r1, 23);
    EXPECT_EQ(r2, 24);
    // Split parts go to the end of the list, in the order they were made.
    EXPECT_TRUE(contains(sheetXml(book.get()),
                         "<mergeCell ref=\"C1:C3\"/><mergeCell ref=\"A24:B25\"/><mergeCell ref=\"C9:C13\"/><mergeCell ref=\"C6:C7\"/>"));
}

TYPED_TEST(XmlEdit, RemovedRowsShrinkAndDropMerges) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
    for (int r = 0; r < 10; ++r) sheet->writeNum(r, 0, r);
    sheet->setRow(12, 30);  // a row without cells moves as well
    ASSERT_TRUE(sheet->setMerge(2, 3, 1, 1));   // B3:B4, removed whole
    ASSERT_TRUE(sheet->setMerge(6, 7, 1, 1));   // B7:B8, slides into its place
    ASSERT_TRUE(sheet->setMerge(0, 8, 3, 3));   // D1:D9, shrinks
    ASSERT_TRUE(sheet->removeRow(2, 3)) << book->errorMessage();
    EXPECT_EQ(sheet->readNum(1, 0), 1);
    EXPECT_EQ(sheet->readNum(2, 0), 4);
    EXPECT_EQ(sheet->readNum(7, 0), 9);
    EXPECT_EQ(sheet->cellType(8, 0), CellEmpty);
    EXPECT_DOUBLE_EQ(sheet->rowHeight(10), 30);
    EXPECT_EQ(sheet->lastRow(), 11);
    int r1, r2, c1, c2;
    EXPECT_FALSE(sheet->getMerge(2, 1, &r1, &r2, &c1, &c2));
    // The block that slid into the removed block's place waits for a later call.
    ASSERT_TRUE(sheet->getMerge(6, 1, &r1, &r2, &c1, &c2));
    EXPECT_EQ(r1, 6);
    EXPECT_EQ(r2, 7);
    ASSERT_TRUE(sheet->getMerge(0, 3, &r1, &r2, &c1, &c2));
    EXPECT_EQ(r2, 6);
    EXPECT_TRUE(contains(sheetXml(book.get()), "<mergeCells count=\"2\">"));

    // Removing every row of every block drops the list; the block behind a removed one waits
    // for the next call.
    ASSERT_TRUE(sheet->removeRow(0, 100));
    EXPECT_TRUE(sheet->getMerge(0, 3, &r1, &r2, &c1, &c2));
    ASSERT_TRUE(sheet->removeRow(0, 100));
    EXPECT_EQ(sheet->lastRow(), 0);
    EXPECT_FALSE(contains(sheetXml(book.get()), "mergeCells"));
}

TYPED_TEST(XmlEdit, ColumnsInsertedAndRemovedMoveCellsMergesAndColEntries) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
    for (int c = 0; c < 6; ++c) sheet->writeNum(0, c, c);
    ASSERT_TRUE(sheet->setCol(1, 4, 20));  // one entry, columns 2 to 5 in the file
    ASSERT_TRUE(sheet->setMerge(1, 1, 1, 4));
    EXPECT_FALSE(sheet->insertCol(3, 2));
    EXPECT_STREQ(book->errorMessage(), "colLast must be greater than or equal to colFirst");
    ASSERT_TRUE(sheet->insertCol(2, 2));
    EXPECT_EQ(sheet->readNum(0, 1), 1);
    EXPECT_EQ(sheet->cellType(0, 2), CellEmpty);
    EXPECT_EQ(sheet->readNum(0, 6), 5);
    std::string xml = sheetXml(book.get());
    // The part behind the insertion is appended, out of ascending order.
    EXPECT_TRUE(contains(xml, "<col min=\"2\" max=\"2\" width=\"20.7109375\" customWidth=\"true\"/><col min=\"4\" max=\"6\""));
    EXPECT_TRUE(contains(xml, "<mergeCell ref=\"B2:B2\"/><mergeCell ref=\"D2:F2\"/>"));

    ASSERT_TRUE(sheet->removeCol(1, 3));
    EXPECT_EQ(sheet->readNum(0, 0), 0);
    EXPECT_EQ(sheet->readNum(0, 1), 3);
    EXPECT_EQ(sheet->readNum(0, 3), 5);
    EXPECT_EQ(sheet->lastCol(), 4);
    xml = sheetXml(book.get());
    // The entry and the block that slide into a removed one's place are not looked at in
    // this call: both keep their columns.
    EXPECT_FALSE(contains(xml, "<col min=\"2\""));
    EXPECT_TRUE(contains(xml, "<col min=\"4\" max=\"6\""));
    int r1, r2, c1, c2;
    EXPECT_FALSE(sheet->getMerge(1, 1, &r1, &r2, &c1, &c2));
    ASSERT_TRUE(sheet->getMerge(1, 3, &r1, &r2, &c1, &c2));
    EXPECT_EQ(c1, 3);
    EXPECT_EQ(c2, 5);
}

TYPED_TEST(XmlEdit, ClearDropsCellsEmptiedRowsAndOverlappingMerges) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) sheet->writeNum(r, c, r * 10 + c);
    sheet->setMerge(0, 1, 0, 1);
    sheet->setMerge(3, 3, 2, 3);
    EXPECT_FALSE(sheet->clear(2, 1, 0, 0));
    EXPECT_FALSE(sheet->clear(0, 0, 2, 1));
    ASSERT_TRUE(sheet->clear(0, 2, 0, 3));
    EXPECT_EQ(sheet->cellType(1, 1), CellEmpty);
    EXPECT_EQ(sheet->readNum(3, 3), 33);
    EXPECT_EQ(sheet->firstRow(), 3);
    int r1, r2, c1, c2;
    EXPECT_FALSE(sheet->getMerge(0, 0, &r1, &r2, &c1, &c2));
    EXPECT_TRUE(sheet->getMerge(3, 2, &r1, &r2, &c1, &c2));
    sheet->setRow(10, 20);
    ASSERT_TRUE(sheet->clear());
    EXPECT_EQ(sheet->lastRow(), 0);
    std::string xml = sheetXml(book.get());
    EXPECT_TRUE(contains(xml, "<sheetData/>"));
    EXPECT_FALSE(contains(xml, "mergeCell"));
}

TYPED_TEST(XmlEdit, MergesAreSetReadAndDeleted) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
    EXPECT_FALSE(sheet->setMerge(0, 0, 0, 16384));
    EXPECT_STREQ(book->errorMessage(), "col must be less than 16384");
    EXPECT_FALSE(sheet->setMerge(1, 0, 0, 0));
    EXPECT_FALSE(sheet->setMerge(0, 0, 1, 0));
    EXPECT_FALSE(sheet->delMerge(0, 0));
    EXPECT_STREQ(book->errorMessage(), "this cell isn't in merging block");

    IFormatT<T>* bold = book->addFormat();
    sheet->writeStr(0, 0, S<T>("top").c_str(), bold);
    ASSERT_TRUE(sheet->setMerge(0, 1, 0, 1));
    // The block takes the top left cell's format.
    EXPECT_EQ(sheet->cellFormat(1, 1), bold);
    EXPECT_EQ(sheet->cellType(1, 1), CellBlank);
    ASSERT_TRUE(sheet->setMerge(5, 5, 0, 0));  // one cell is still written as a range
    EXPECT_TRUE(contains(sheetXml(book.get()), "<mergeCells count=\"2\"><mergeCell ref=\"A1:B2\"/><mergeCell ref=\"A6:A6\"/></mergeCells>"));
    ASSERT_TRUE(sheet->delMerge(1, 0));
    ASSERT_TRUE(sheet->delMerge(5, 0));
    EXPECT_FALSE(contains(sheetXml(book.get()), "mergeCells"));
}

TYPED_TEST(XmlEdit, WholeSheetBandsCostWhatTheSheetHolds) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
    sheet->writeNum(5, 0, 1);
    // A band over every row in the default format creates no cells.
    ASSERT_TRUE(sheet->setMerge(0, 1048575, 0, 0));
    EXPECT_EQ(sheet->cellType(1000, 0), CellEmpty);
    ASSERT_TRUE(sheet->setMerge(0, 1048575, 2, 3));
    ASSERT_TRUE(sheet->removeRow(10, 1048575));
    int r1, r2, c1, c2;
    ASSERT_TRUE(sheet->getMerge(9, 0, &r1, &r2, &c1, &c2));
    EXPECT_EQ(r1, 0);
    EXPECT_EQ(r2, 9);
    ASSERT_TRUE(sheet->removeRow(0, 4));
    ASSERT_TRUE(sheet->getMerge(0, 2, &r1, &r2, &c1, &c2));
    EXPECT_EQ(r2, 4);
    EXPECT_EQ(sheet->readNum(0, 0), 1);
}

// Found on a corpus package with whole-column merges: inserting rows pushed the block's end past
// the last row, and writing its reference failed.
TYPED_TEST(XmlEdit, MergesPushedOverTheLastRowOrColumnAreCut) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
    ASSERT_TRUE(sheet->setMerge(0, 1048575, 0, 0));
    ASSERT_TRUE(sheet->setMerge(1048575, 1048575, 2, 3));
    ASSERT_TRUE(sheet->setMerge(0, 0, 16380, 16383));
    ASSERT_TRUE(sheet->insertRow(0, 1)) << book->errorMessage();
    ASSERT_TRUE(sheet->insertCol(0, 0)) << book->errorMessage();
    int r1, r2, c1, c2;
    ASSERT_TRUE(sheet->getMerge(5, 1, &r1, &r2, &c1, &c2));
    EXPECT_EQ(r1, 2);
    EXPECT_EQ(r2, 1048575);
    EXPECT_FALSE(sheet->getMerge(1048575, 3, &r1, &r2, &c1, &c2));  // pushed off the sheet
    ASSERT_TRUE(sheet->getMerge(2, 16383, &r1, &r2, &c1, &c2));
    EXPECT_EQ(c1, 16381);
    EXPECT_EQ(c2, 16383);
}

TYPED_TEST(XmlEdit, EditedPackageReloads) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
    for (int r = 0; r < 5; ++r)
        for (int c = 0; c < 3; ++c) sheet->writeNum(r, c, r * 10 + c);
    sheet->setMerge(1, 2, 1, 2);
    sheet->insertRow(0, 0);
    sheet->removeCol(0, 0);
    const char* data = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(book->saveRaw(&data, &size));
    std::string bytes(data, size);
    BookPtr<T> again = newXmlBook<T>();
    ASSERT_TRUE(again->loadRaw(bytes.data(), static_cast<unsigned>(bytes.size()))) << again->errorMessage();
    ISheetT<T>* loaded = again->getSheet(0);
    EXPECT_EQ(loaded->readNum(1, 0), 1);
    EXPECT_EQ(loaded->readNum(5, 1), 42);
    int r1, r2, c1, c2;
    ASSERT_TRUE(loaded->getMerge(2, 0, &r1, &r2, &c1, &c2));
    EXPECT_EQ(r1, 2);
    EXPECT_EQ(r2, 3);
    EXPECT_EQ(c1, 0);
    EXPECT_EQ(c2, 1);
}

}  // namespace
