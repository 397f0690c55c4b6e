// Structural edits of binary sheets: cells, heights, widths and merges follow inserted and
// removed rows and columns.
#include <string>

#include "test_util.h"

using namespace zelvar;
using namespace zvtest;

template <class T>
class EditTest : public ::testing::Test {
protected:
    void SetUp() override {
        book = newBook<T>();
        sheet = book->addSheet(S<T>("Edit").c_str());
    }
    BookPtr<T> book;
    ISheetT<T>* sheet = nullptr;
};
TYPED_TEST_SUITE(EditTest, Widths);

TYPED_TEST(EditTest, InsertRowsMovesCellsHeightsAndSplitsMerges) {
    auto* sheet = this->sheet;
    sheet->writeNum(1, 0, 10);
    sheet->writeStr(4, 1, S<TypeParam>("below").c_str());
    sheet->writeNum(65535, 0, 99);
    sheet->setRow(4, 30);
    ASSERT_TRUE(sheet->setMerge(1, 5, 2, 3));
    ASSERT_TRUE(sheet->insertRow(3, 3));
    EXPECT_EQ(10, sheet->readNum(1, 0));
    EXPECT_EQ(S<TypeParam>("below"), sheet->readStr(5, 1));
    EXPECT_EQ(CellEmpty, sheet->cellType(4, 1));
    EXPECT_EQ(30, sheet->rowHeight(5));
    // The cell pushed beyond the last row is gone.
    EXPECT_EQ(CellEmpty, sheet->cellType(65535, 0));
    int rf, rl, cf, cl;
    ASSERT_TRUE(sheet->getMerge(1, 2, &rf, &rl, &cf, &cl));
    EXPECT_EQ(1, rf);
    EXPECT_EQ(2, rl);
    ASSERT_TRUE(sheet->getMerge(5, 2, &rf, &rl, &cf, &cl));
    EXPECT_EQ(4, rf);
    EXPECT_EQ(6, rl);
    EXPECT_FALSE(sheet->getMerge(3, 2, &rf, &rl, &cf, &cl));
    EXPECT_EQ(1, sheet->firstRow());
    EXPECT_EQ(7, sheet->lastRow());
    EXPECT_FALSE(sheet->insertRow(5, 4));
    EXPECT_STREQ("rowLast must be greater than or equal to rowFirst", this->book->errorMessage());
}

TYPED_TEST(EditTest, RemoveRowsAndColumns) {
    auto* sheet = this->sheet;
    for (int r = 0; r < 10; ++r) sheet->writeNum(r, 0, r);
    sheet->writeNum(9, 5, 5);
    ASSERT_TRUE(sheet->setMerge(2, 3, 1, 1));
    ASSERT_TRUE(sheet->removeRow(2, 3));
    EXPECT_EQ(1, sheet->readNum(1, 0));
    EXPECT_EQ(4, sheet->readNum(2, 0));
    EXPECT_EQ(9, sheet->readNum(7, 0));
    EXPECT_EQ(CellEmpty, sheet->cellType(8, 0));
    int rf, rl, cf, cl;
    // Removing all the rows of a merge block removes the block.
    EXPECT_FALSE(sheet->getMerge(2, 1, &rf, &rl, &cf, &cl));
    ASSERT_TRUE(sheet->removeCol(0, 2));
    EXPECT_EQ(5, sheet->readNum(7, 2));
    EXPECT_EQ(CellEmpty, sheet->cellType(7, 0));
    EXPECT_EQ(8, sheet->lastRow());
    EXPECT_EQ(3, sheet->lastCol());
}

TYPED_TEST(EditTest, InsertColumnsMovesWidths) {
    auto* sheet = this->sheet;
    sheet->writeNum(0, 1, 1);
    sheet->setCol(1, 1, 30);
    ASSERT_TRUE(sheet->insertCol(0, 1));
    EXPECT_EQ(1, sheet->readNum(0, 3));
    EXPECT_EQ(30, sheet->colWidth(3));
    EXPECT_EQ(8.43, sheet->colWidth(0));
}

TYPED_TEST(EditTest, ClearAndCopy) {
    auto* sheet = this->sheet;
    sheet->writeNum(0, 0, 1.5);
    sheet->writeStr(0, 1, S<TypeParam>("text").c_str());
    ASSERT_TRUE(sheet->copyCell(0, 0, 5, 5));
    ASSERT_TRUE(sheet->copyCell(0, 1, 6, 6));
    EXPECT_EQ(1.5, sheet->readNum(5, 5));
    EXPECT_EQ(S<TypeParam>("text"), sheet->readStr(6, 6));
    EXPECT_FALSE(sheet->copyCell(9, 9, 1, 1));
    EXPECT_STREQ("empty cell", this->book->errorMessage());
    // Limits out of the grid are clamped: the whole sheet is cleared.
    EXPECT_TRUE(sheet->clear(-5, 70000, -1, 300));
    EXPECT_EQ(CellEmpty, sheet->cellType(5, 5));
    EXPECT_EQ(CellEmpty, sheet->cellType(0, 0));
    EXPECT_EQ(0, sheet->lastRow());
    EXPECT_FALSE(sheet->clear(3, 2, 0, 0));
    EXPECT_STREQ("rowLast must be greater than or equal to rowFirst", this->book->errorMessage());
    // A copied shared string is shared: rewriting the copy leaves the original.
    sheet->writeStr(0, 0, S<TypeParam>("one").c_str());
    sheet->copyCell(0, 0, 1, 0);
    sheet->writeStr(1, 0, S<TypeParam>("two").c_str());
    EXPECT_EQ(S<TypeParam>("one"), sheet->readStr(0, 0));
}
