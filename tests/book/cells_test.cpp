// Cells of the binary sheet: kinds, limits, the shared string table, formats of cells.
#include <cmath>
#include <string>

#include "book/book_impl.h"
#include "book/sheet_impl.h"
#include "test_util.h"

using namespace zelvar;
using namespace zvtest;

template <class T>
class CellsTest : public ::testing::Test {
protected:
    void SetUp() override {
        book = newBook<T>();
        sheet = book->addSheet(S<T>("Cells").c_str());
        ASSERT_TRUE(sheet);
    }
    SheetImplT<T>* impl() { return static_cast<SheetImplT<T>*>(sheet); }
    SST<T>& sst() { return static_cast<BookImplT<T>*>(book.get())->sst(); }
    BookPtr<T> book;
    ISheetT<T>* sheet = nullptr;
};
TYPED_TEST_SUITE(CellsTest, Widths);

TYPED_TEST(CellsTest, NumbersRoundTripExactlyInBothRecordKinds) {
    auto* sheet = this->sheet;
    // 1.5 has 32 low zero bits and fits the compact record; 0.1 needs the full double.
    const double values[] = {1.5, 0.1, 0.0, -2.0, 1e300, -1e-300, 123456789.0, 3.141592653589793,
                             static_cast<double>(1 << 30), std::ldexp(1.0, -1074)};
    int row = 0;
    for (double v : values) {
        ASSERT_TRUE(sheet->writeNum(row, 1, v));
        EXPECT_EQ(CellNumber, sheet->cellType(row, 1));
        EXPECT_EQ(v, sheet->readNum(row, 1)) << "row " << row;
        ++row;
    }
    EXPECT_EQ(KindRK, SheetIndex::kind(this->impl()->entryFor(0, 1)));
    EXPECT_EQ(KindNumber, SheetIndex::kind(this->impl()->entryFor(1, 1)));
    EXPECT_EQ(KindRK, SheetIndex::kind(this->impl()->entryFor(2, 1)));
}

TYPED_TEST(CellsTest, RewritingWithTheOtherKindLeavesTheOldRecordBehind) {
    auto* sheet = this->sheet;
    ASSERT_TRUE(sheet->writeNum(0, 0, 1.5));
    ASSERT_TRUE(sheet->writeNum(0, 0, 0.1));
    EXPECT_EQ(0.1, sheet->readNum(0, 0));
    EXPECT_EQ(1u, this->impl()->recordCount(KindRK));
    EXPECT_EQ(1u, this->impl()->recordCount(KindNumber));
    // Same kind again: changed in place, no new record.
    ASSERT_TRUE(sheet->writeNum(0, 0, 0.2));
    EXPECT_EQ(1u, this->impl()->recordCount(KindNumber));
    ASSERT_TRUE(sheet->writeBool(0, 0, true));
    EXPECT_EQ(CellBoolean, sheet->cellType(0, 0));
    EXPECT_TRUE(sheet->readBool(0, 0));
    EXPECT_EQ(0.0, sheet->readNum(0, 0));
    EXPECT_STREQ("this cell doesn't contain a number", this->book->errorMessage());
}

TYPED_TEST(CellsTest, RangeLimitsAreCheckedBeforeAnyChange) {
    auto* sheet = this->sheet;
    EXPECT_FALSE(sheet->writeNum(65536, 0, 1));
    EXPECT_STREQ("row must be in range 0-65535", this->book->errorMessage());
    EXPECT_FALSE(sheet->writeNum(-1, 0, 1));
    EXPECT_STREQ("row must be in range 0-65535", this->book->errorMessage());
    EXPECT_FALSE(sheet->writeStr(0, 256, S<TypeParam>("x").c_str()));
    EXPECT_STREQ("col must be in range 0-255", this->book->errorMessage());
    EXPECT_FALSE(sheet->writeBool(0, -1, true));
    EXPECT_STREQ("col must be in range 0-255", this->book->errorMessage());
    EXPECT_TRUE(sheet->writeNum(65535, 255, 7));
    EXPECT_EQ(7, sheet->readNum(65535, 255));
    // cellType takes the row as a 16-bit value without a check: 65536 reads row 0.
    sheet->writeNum(0, 3, 1);
    EXPECT_EQ(CellNumber, sheet->cellType(65536, 3));
    EXPECT_EQ(CellEmpty, sheet->cellType(1, 3));
    EXPECT_EQ(0.0, sheet->readNum(70000, 0));
    EXPECT_STREQ("row must be in range 0-65535", this->book->errorMessage());
}

TYPED_TEST(CellsTest, StringLengthLimitIs32767) {
    auto* sheet = this->sheet;
    std::basic_string<TypeParam> longest(32767, 'x');
    EXPECT_TRUE(sheet->writeStr(0, 0, longest.c_str()));
    EXPECT_EQ(longest, sheet->readStr(0, 0));
    std::basic_string<TypeParam> tooLong(32768, 'y');
    EXPECT_FALSE(sheet->writeStr(0, 0, tooLong.c_str()));
    EXPECT_STREQ("string is too long", this->book->errorMessage());
    EXPECT_EQ(longest, sheet->readStr(0, 0));
    EXPECT_FALSE(sheet->writeStr(1, 0, tooLong.c_str()));
    EXPECT_EQ(CellEmpty, sheet->cellType(1, 0));
}

TYPED_TEST(CellsTest, SharedStringsAreReusedAndReplacedInPlace) {
    auto* sheet = this->sheet;
    SST<TypeParam>& sst = this->sst();
    ASSERT_TRUE(sheet->writeStr(0, 0, S<TypeParam>("same").c_str()));
    ASSERT_TRUE(sheet->writeStr(1, 0, S<TypeParam>("same").c_str()));
    EXPECT_EQ(2u, sst.cstTotal);
    EXPECT_EQ(1u, sst.cstUnique);
    EXPECT_EQ(1u, sst.count());
    // Shared: rewriting one cell gives it its own string and leaves the other alone.
    ASSERT_TRUE(sheet->writeStr(1, 0, S<TypeParam>("other").c_str()));
    EXPECT_EQ(S<TypeParam>("same"), sheet->readStr(0, 0));
    EXPECT_EQ(S<TypeParam>("other"), sheet->readStr(1, 0));
    EXPECT_EQ(2u, sst.count());
    // Only user: the table entry is replaced, no new slot.
    ASSERT_TRUE(sheet->writeStr(1, 0, S<TypeParam>("renamed").c_str()));
    EXPECT_EQ(2u, sst.count());
    EXPECT_EQ(S<TypeParam>("renamed"), sheet->readStr(1, 0));
    EXPECT_EQ(S<TypeParam>("same"), sheet->readStr(0, 0));
    // The replaced text left its slot, so writing it again makes a new one holding it.
    ASSERT_TRUE(sheet->writeStr(2, 0, S<TypeParam>("other").c_str()));
    EXPECT_EQ(3u, sst.count());
    EXPECT_EQ(S<TypeParam>("other"), sheet->readStr(2, 0));
    EXPECT_EQ(S<TypeParam>("renamed"), sheet->readStr(1, 0));
}

TYPED_TEST(CellsTest, StringsAreSharedAcrossSheets) {
    ISheetT<TypeParam>* second = this->book->addSheet(S<TypeParam>("Second").c_str());
    ASSERT_TRUE(this->sheet->writeStr(0, 0, S<TypeParam>("both").c_str()));
    ASSERT_TRUE(second->writeStr(5, 5, S<TypeParam>("both").c_str()));
    EXPECT_EQ(1u, this->sst().count());
    ASSERT_TRUE(second->writeStr(5, 5, S<TypeParam>("mine").c_str()));
    EXPECT_EQ(S<TypeParam>("both"), this->sheet->readStr(0, 0));
    // Deleting a sheet gives its strings up: the other sheet's cell is then the only user.
    ASSERT_TRUE(this->book->delSheet(1));
    unsigned before = this->sst().count();
    ASSERT_TRUE(this->sheet->writeStr(0, 0, S<TypeParam>("alone").c_str()));
    EXPECT_EQ(before, this->sst().count());
}

TYPED_TEST(CellsTest, FormatsMustBelongToTheBook) {
    auto* sheet = this->sheet;
    auto other = newBook<TypeParam>();
    IFormatT<TypeParam>* foreign = other->addFormat();
    EXPECT_FALSE(sheet->writeStr(0, 0, S<TypeParam>("x").c_str(), foreign));
    EXPECT_STREQ("specified format not found", this->book->errorMessage());
    EXPECT_EQ(CellEmpty, sheet->cellType(0, 0));
    EXPECT_FALSE(sheet->writeNum(0, 0, 1, foreign));
    EXPECT_EQ(CellEmpty, sheet->cellType(0, 0));

    IFormatT<TypeParam>* mine = this->book->addFormat();
    ASSERT_TRUE(sheet->writeNum(0, 0, 5, mine));
    IFormatT<TypeParam>* got = nullptr;
    EXPECT_EQ(5, sheet->readNum(0, 0, &got));
    EXPECT_EQ(mine, got);
    // A rewrite without a format keeps the cell's format.
    ASSERT_TRUE(sheet->writeNum(0, 0, 0.3));
    sheet->readNum(0, 0, &got);
    EXPECT_EQ(mine, got);
    // A new cell without a format gets format 15.
    ASSERT_TRUE(sheet->writeBool(1, 1, false));
    sheet->readBool(1, 1, &got);
    EXPECT_EQ(this->book->format(15), got);
}

TYPED_TEST(CellsTest, BlanksAndCellFormat) {
    auto* sheet = this->sheet;
    IFormatT<TypeParam>* fmt = this->book->addFormat();
    sheet->setCellFormat(2, 2, fmt);
    EXPECT_STREQ("ok", this->book->errorMessage());
    EXPECT_EQ(CellBlank, sheet->cellType(2, 2));
    IFormatT<TypeParam>* got = nullptr;
    EXPECT_TRUE(sheet->readBlank(2, 2, &got));
    EXPECT_EQ(fmt, got);
    EXPECT_FALSE(sheet->readBlank(2, 2, nullptr));
    EXPECT_STREQ("format mustn't be NULL", this->book->errorMessage());
    EXPECT_FALSE(sheet->readBlank(3, 3, &got));
    EXPECT_STREQ("this cell doesn't contain a blank", this->book->errorMessage());
    sheet->setCellFormat(2, 3, nullptr);
    EXPECT_STREQ("specified format is not found", this->book->errorMessage());
    // setCellFormat on an existing cell changes only its format.
    sheet->writeNum(4, 4, 9);
    sheet->setCellFormat(4, 4, fmt);
    EXPECT_EQ(9, sheet->readNum(4, 4, &got));
    EXPECT_EQ(fmt, got);
    EXPECT_EQ(fmt, sheet->cellFormat(4, 4));
    // An absent cell with no row or column format falls back to format 0.
    EXPECT_EQ(this->book->format(0), sheet->cellFormat(9, 9));
    // A formatted row wins over a formatted column.
    IFormatT<TypeParam>* rowFormat = this->book->addFormat();
    IFormatT<TypeParam>* colFormat = this->book->addFormat();
    ASSERT_TRUE(sheet->setCol(7, 7, 10, colFormat));
    EXPECT_EQ(colFormat, sheet->cellFormat(9, 7));
    ASSERT_TRUE(sheet->setRow(9, 15, rowFormat));
    EXPECT_EQ(rowFormat, sheet->cellFormat(9, 7));
    EXPECT_EQ(colFormat, sheet->cellFormat(8, 7));
}

TYPED_TEST(CellsTest, ReadingTheWrongKindFails) {
    auto* sheet = this->sheet;
    sheet->writeNum(0, 0, 1);
    EXPECT_EQ(nullptr, sheet->readStr(0, 0));
    EXPECT_STREQ("this cell doesn't contain a string", this->book->errorMessage());
    EXPECT_FALSE(sheet->readBool(0, 0));
    EXPECT_STREQ("this cell doesn't contain a bool", this->book->errorMessage());
    EXPECT_EQ(ErrorNone, sheet->readError(0, 0));
    EXPECT_STREQ("ok", this->book->errorMessage());
    EXPECT_FALSE(sheet->isFormula(0, 0));
    IFormatT<TypeParam>* got = this->book->format(3);
    EXPECT_EQ(nullptr, sheet->readStr(7, 7, &got));
    EXPECT_EQ(nullptr, got);
}

TYPED_TEST(CellsTest, ErrorCellsAreNotBooleans) {
    // Error cells arrive from files; the error flag decides, not the stored byte.
    ASSERT_TRUE(this->impl()->writeError(0, 0, ErrorDiv0, nullptr));
    EXPECT_EQ(CellError, this->sheet->cellType(0, 0));
    EXPECT_EQ(ErrorDiv0, this->sheet->readError(0, 0));
    EXPECT_FALSE(this->sheet->readBool(0, 0));
    EXPECT_STREQ("this cell doesn't contain a bool", this->book->errorMessage());
}

TYPED_TEST(CellsTest, UsedRangeIsOnePastTheLast) {
    auto* sheet = this->sheet;
    EXPECT_EQ(0, sheet->firstRow());
    EXPECT_EQ(0, sheet->lastRow());
    EXPECT_EQ(0, sheet->firstCol());
    EXPECT_EQ(0, sheet->lastCol());
    sheet->writeNum(5, 3, 1);
    EXPECT_EQ(5, sheet->firstRow());
    EXPECT_EQ(6, sheet->lastRow());
    EXPECT_EQ(3, sheet->firstCol());
    EXPECT_EQ(4, sheet->lastCol());
    sheet->writeStr(2, 7, S<TypeParam>("x").c_str());
    sheet->writeBlank(9, 0, this->book->format(15));
    EXPECT_EQ(2, sheet->firstRow());
    EXPECT_EQ(10, sheet->lastRow());
    EXPECT_EQ(0, sheet->firstCol());
    EXPECT_EQ(8, sheet->lastCol());
}

TYPED_TEST(CellsTest, DatesAreRecognisedByTheirFormat) {
    auto* sheet = this->sheet;
    auto* book = this->book.get();
    IFormatT<TypeParam>* builtin = book->addFormat();
    builtin->setNumFormat(NumFormatDate);
    sheet->writeNum(0, 0, book->datePack(2020, 1, 1), builtin);
    EXPECT_TRUE(sheet->isDate(0, 0));
    IFormatT<TypeParam>* percent = book->addFormat();
    percent->setNumFormat(NumFormatPercent);
    sheet->writeNum(1, 0, 0.5, percent);
    EXPECT_FALSE(sheet->isDate(1, 0));
    struct {
        const char* text;
        bool date;
    } customs[] = {{"yyyy-mm-dd", true}, {"[Red]0.00", false}, {"[h]:mm", true},
                   {"Standard", true},   {"0.00", false},      {"\"d\"0", true}};
    int row = 2;
    for (const auto& c : customs) {
        IFormatT<TypeParam>* f = book->addFormat();
        f->setNumFormat(book->addCustomNumFormat(S<TypeParam>(c.text).c_str()));
        sheet->writeNum(row, 0, 100, f);
        EXPECT_EQ(c.date, sheet->isDate(row, 0)) << c.text;
        ++row;
    }
    // Text cells are never dates whatever their format.
    sheet->writeStr(row, 0, S<TypeParam>("2020-01-01").c_str(), builtin);
    EXPECT_FALSE(sheet->isDate(row, 0));
    // An id that is neither built in nor custom has no text to scan.
    IFormatT<TypeParam>* unknown = book->addFormat();
    unknown->setNumFormat(300);
    sheet->writeNum(row + 1, 0, 1, unknown);
    EXPECT_FALSE(sheet->isDate(row + 1, 0));
}

TYPED_TEST(CellsTest, AddressesConvertBothWays) {
    auto* sheet = this->sheet;
    EXPECT_EQ(S<TypeParam>("A1"), sheet->rowColToAddr(0, 0, true, true));
    EXPECT_EQ(S<TypeParam>("$A$1"), sheet->rowColToAddr(0, 0, false, false));
    EXPECT_EQ(S<TypeParam>("AA1"), sheet->rowColToAddr(0, 26, true, true));
    EXPECT_EQ(S<TypeParam>("XFD1048576"), sheet->rowColToAddr(1048575, 16383, true, true));
    EXPECT_EQ(nullptr, sheet->rowColToAddr(0, 16384, true, true));
    EXPECT_STREQ("col must be in range 0-16383", this->book->errorMessage());
    int row = -5, col = -5;
    bool rowRel = false, colRel = false;
    sheet->addrToRowCol(S<TypeParam>("$IV$65536").c_str(), &row, &col, &rowRel, &colRel);
    EXPECT_EQ(65535, row);
    EXPECT_EQ(255, col);
    EXPECT_FALSE(rowRel);
    EXPECT_FALSE(colRel);
    sheet->addrToRowCol(S<TypeParam>("B3").c_str(), &row, &col, &rowRel, &colRel);
    EXPECT_EQ(2, row);
    EXPECT_EQ(1, col);
    EXPECT_TRUE(rowRel);
    EXPECT_TRUE(colRel);
    for (int c : {0, 25, 26, 51, 52, 701, 702, 16383}) {
        sheet->addrToRowCol(sheet->rowColToAddr(41, c, false, true), &row, &col, &rowRel, &colRel);
        EXPECT_EQ(c, col);
        EXPECT_EQ(41, row);
        EXPECT_FALSE(rowRel);
        EXPECT_TRUE(colRel);
    }
}
