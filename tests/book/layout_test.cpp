// Layout and print settings of binary sheets, and their survival through a save.
#include <string>

#include "test_util.h"

using namespace zelvar;
using namespace zvtest;

template <class T>
class LayoutTest : public ::testing::Test {
protected:
    void SetUp() override {
        book = newBook<T>();
        sheet = book->addSheet(S<T>("Layout").c_str());
    }
    // Saves and loads into a second book; returns its first sheet.
    ISheetT<T>* reloaded() {
        const char* data = nullptr;
        unsigned size = 0;
        EXPECT_TRUE(book->saveRaw(&data, &size)) << book->errorMessage();
        copy = newBook<T>();
        EXPECT_TRUE(copy->loadRaw(data, size)) << copy->errorMessage();
        return copy->getSheet(0);
    }
    BookPtr<T> book, copy;
    ISheetT<T>* sheet = nullptr;
};
TYPED_TEST_SUITE(LayoutTest, Widths);

TYPED_TEST(LayoutTest, RowHeightsAndHiddenRows) {
    auto* sheet = this->sheet;
    EXPECT_EQ(12.75, sheet->rowHeight(0));
    EXPECT_TRUE(sheet->setRow(1, 409.6, nullptr, false));
    EXPECT_FALSE(sheet->setRow(2, 409.65, nullptr, false));
    EXPECT_STREQ("height is too big", this->book->errorMessage());
    EXPECT_TRUE(sheet->setRow(3, 30, this->book->format(15), true));
    EXPECT_TRUE(sheet->rowHidden(3));
    EXPECT_TRUE(sheet->setRowHidden(5, true));
    EXPECT_TRUE(sheet->setRowHidden(6, false));
    EXPECT_FALSE(sheet->rowHidden(6));
    ISheetT<TypeParam>* again = this->reloaded();
    EXPECT_DOUBLE_EQ(409.6, again->rowHeight(1));
    EXPECT_EQ(30, again->rowHeight(3));
    EXPECT_TRUE(again->rowHidden(3));
    EXPECT_TRUE(again->rowHidden(5));
    EXPECT_FALSE(again->rowHidden(1));
}

TYPED_TEST(LayoutTest, ColumnWidthsRoundTrip) {
    auto* sheet = this->sheet;
    EXPECT_EQ(8.43, sheet->colWidth(0));
    EXPECT_TRUE(sheet->setCol(0, 0, 8.43, nullptr, false));
    EXPECT_EQ(8.43, sheet->colWidth(0));
    EXPECT_TRUE(sheet->setCol(2, 4, 20, nullptr, false));
    EXPECT_EQ(20, sheet->colWidth(3));
    EXPECT_TRUE(sheet->setColHidden(3, true));
    EXPECT_EQ(0, sheet->colWidth(3));
    EXPECT_TRUE(sheet->colHidden(3));
    EXPECT_FALSE(sheet->setCol(5, 4, 10));
    EXPECT_STREQ("colLast must be greater than or equal to colFirst", this->book->errorMessage());
    EXPECT_FALSE(sheet->setCol(0, 256, 10));
    EXPECT_STREQ("col must be in range 0-255", this->book->errorMessage());
    ISheetT<TypeParam>* again = this->reloaded();
    EXPECT_EQ(8.43, again->colWidth(0));
    EXPECT_EQ(20, again->colWidth(2));
    EXPECT_TRUE(again->colHidden(3));
    EXPECT_EQ(20, again->colWidth(4));
}

TYPED_TEST(LayoutTest, MergesBlanksAndLookup) {
    auto* sheet = this->sheet;
    IFormatT<TypeParam>* border = this->book->addFormat();
    border->setBorder(BorderThin);
    sheet->writeStr(1, 1, S<TypeParam>("title").c_str(), border);
    EXPECT_TRUE(sheet->setMerge(1, 2, 1, 4));
    // Absent cells of the block become blanks with the corner's format.
    IFormatT<TypeParam>* got = nullptr;
    EXPECT_TRUE(sheet->readBlank(2, 4, &got));
    EXPECT_EQ(border, got);
    int rf, rl, cf, cl;
    EXPECT_TRUE(sheet->getMerge(2, 3, &rf, &rl, &cf, &cl));
    EXPECT_EQ(1, rf);
    EXPECT_EQ(2, rl);
    EXPECT_EQ(1, cf);
    EXPECT_EQ(4, cl);
    EXPECT_FALSE(sheet->getMerge(0, 0, &rf, &rl, &cf, &cl));
    EXPECT_STREQ("this cell isn't in merging block", this->book->errorMessage());
    EXPECT_FALSE(sheet->setMerge(3, 2, 0, 0));
    EXPECT_STREQ("rowLast must be greater than or equal to rowFirst", this->book->errorMessage());
    ISheetT<TypeParam>* again = this->reloaded();
    EXPECT_TRUE(again->getMerge(1, 1, &rf, &rl, &cf, &cl));
    EXPECT_EQ(4, cl);
    EXPECT_TRUE(again->delMerge(1, 1));
    EXPECT_FALSE(again->getMerge(1, 1, &rf, &rl, &cf, &cl));
    EXPECT_FALSE(again->delMerge(1, 1));
}

TYPED_TEST(LayoutTest, PageBreaksPanesAndPrintSettings) {
    auto* sheet = this->sheet;
    EXPECT_TRUE(sheet->setHorPageBreak(5, true));
    EXPECT_FALSE(sheet->setHorPageBreak(5, true));
    EXPECT_STREQ("pagebreak already exists", this->book->errorMessage());
    EXPECT_TRUE(sheet->setVerPageBreak(3, true));
    EXPECT_FALSE(sheet->setVerPageBreak(4, false));
    EXPECT_STREQ("pagebreak not found", this->book->errorMessage());
    EXPECT_EQ(-1, sheet->getHorPageBreak(1));
    sheet->split(1, 0);
    EXPECT_EQ(100, sheet->zoom());
    sheet->setZoom(150);
    EXPECT_EQ(100, sheet->printZoom());
    EXPECT_FALSE(sheet->landscape());
    EXPECT_EQ(PaperDefault, sheet->paper());
    sheet->setLandscape(true);
    sheet->setPaper(PaperA4);
    sheet->setPrintZoom(80);
    sheet->setMarginLeft(1.25);
    EXPECT_EQ(1.0, sheet->marginTop());
    EXPECT_TRUE(sheet->setHeader(S<TypeParam>("&CReport").c_str(), 0.4));
    sheet->setHCenter(true);
    sheet->setPrintGridlines(true);
    sheet->setDisplayGridlines(false);
    sheet->setProtect(true);
    sheet->setTopLeftView(10, 2);
    EXPECT_TRUE(sheet->groupRows(2, 4, false));
    EXPECT_TRUE(sheet->groupCols(1, 2, true));
    ISheetT<TypeParam>* again = this->reloaded();
    EXPECT_EQ(1, again->getHorPageBreakSize());
    EXPECT_EQ(5, again->getHorPageBreak(0));
    EXPECT_EQ(3, again->getVerPageBreak(0));
    EXPECT_EQ(150, again->zoom());
    EXPECT_EQ(80, again->printZoom());
    EXPECT_TRUE(again->landscape());
    EXPECT_EQ(PaperA4, again->paper());
    EXPECT_EQ(1.25, again->marginLeft());
    EXPECT_EQ(0.75, again->marginRight());
    EXPECT_EQ(S<TypeParam>("&CReport"), again->header());
    EXPECT_EQ(0.4, again->headerMargin());
    EXPECT_TRUE(again->hCenter());
    EXPECT_TRUE(again->printGridlines());
    EXPECT_FALSE(again->displayGridlines());
    EXPECT_TRUE(again->protect());
    int row = 0, col = 0;
    again->getTopLeftView(&row, &col);
    EXPECT_EQ(10, row);
    EXPECT_EQ(2, col);
    EXPECT_TRUE(again->colHidden(1));
    sheet->setPrintFit(2, 3);
    int w = 0, h = 0;
    EXPECT_TRUE(sheet->getPrintFit(&w, &h));
    EXPECT_EQ(2, w);
    EXPECT_EQ(3, h);
}

TYPED_TEST(LayoutTest, GroupingRowsOfDifferentLevelsOverlaps) {
    auto* sheet = this->sheet;
    EXPECT_TRUE(sheet->groupRows(2, 3, false));
    EXPECT_FALSE(sheet->groupRows(1, 3, false));
    EXPECT_STREQ("detect overlap", this->book->errorMessage());
    EXPECT_FALSE(sheet->groupRows(4, 3, false));
    EXPECT_STREQ("must be rowFirst <= rowLast", this->book->errorMessage());
}
