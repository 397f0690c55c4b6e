// Formulas through the sheet: compiled on write, text on read, kept through a save, in both widths.
#include <string>

#include "book/sheet_impl.h"
#include "test_util.h"

using namespace zelvar;
using namespace zvtest;

template <class T>
class FormulaCellsTest : public ::testing::Test {
protected:
    void SetUp() override {
        book = newBook<T>();
        sheet = book->addSheet(S<T>("Calc").c_str());
        other = book->addSheet(S<T>("My Sheet").c_str());
    }
    std::string tokens(int row, int col) {
        auto* impl = static_cast<SheetImplT<T>*>(sheet);
        const auto& t = impl->formulaTokens(impl->entryFor(row, col));
        std::string hex;
        char buf[4];
        for (size_t i = 2; i < t.size(); ++i) {
            std::snprintf(buf, sizeof buf, "%02X ", t[i]);
            hex += buf;
        }
        if (!hex.empty()) hex.pop_back();
        return hex;
    }
    BookPtr<T> book;
    ISheetT<T>* sheet = nullptr;
    ISheetT<T>* other = nullptr;
};
TYPED_TEST_SUITE(FormulaCellsTest, Widths);

TYPED_TEST(FormulaCellsTest, TokensOfTheEncoder) {
    auto* sheet = this->sheet;
    struct {
        const char* text;
        const char* bytes;
    } cases[] = {
        {"1+2", "1E 01 00 1E 02 00 03"},
        {"65535", "1E FF FF"},
        {"SUM(A1:B2)", "25 00 00 01 00 00 C0 01 C0 42 01 04 00"},
        {"ABS(A1)", "44 00 00 00 C0 42 01 18 00"},
        {"ROW(A1)", "24 00 00 00 C0 42 01 08 00"},
        {"TODAY()", "19 01 00 00 41 DD 00"},
        {"\"x\"", "17 01 01 78 00"},
    };
    int row = 0;
    for (const auto& c : cases) {
        ASSERT_TRUE(sheet->writeFormula(row, 0, S<TypeParam>(c.text).c_str())) << c.text << ": " << this->book->errorMessage();
        EXPECT_EQ(c.bytes, this->tokens(row, 0)) << c.text;
        ++row;
    }
    ASSERT_TRUE(sheet->writeFormula(row, 0, S<TypeParam>("OFFSET(A1,1,1)").c_str()));
    std::string offset = this->tokens(row, 0);
    EXPECT_EQ("22 03 4E 00", offset.substr(offset.size() - 11));
}

TYPED_TEST(FormulaCellsTest, TextReadsBack) {
    auto* sheet = this->sheet;
    struct {
        const char* in;
        const char* out;
    } cases[] = {
        {"SUM(A1,B1)", "SUM(A1;B1)"},       {"(1+2)*3", "(1+2)*3"},        {"$A$1*2", "$A$1*2"},
        {"IF(A1>0,\"yes\",\"no\")", "IF(A1>0;\"yes\";\"no\")"},          {"-A1+B2^2", "-A1+B2^2"},
        {"'My Sheet'!A1+Calc!B2", "'My Sheet'!A1+Calc!B2"}, {"SUM('My Sheet'!A1:B3)", "SUM('My Sheet'!A1:B3)"},
        {"A1&\" kg\"", "A1&\" kg\""},
    };
    int row = 0;
    for (const auto& c : cases) {
        ASSERT_TRUE(sheet->writeFormula(row, 2, S<TypeParam>(c.in).c_str())) << c.in << ": " << this->book->errorMessage();
        const TypeParam* text = sheet->readFormula(row, 2);
        ASSERT_TRUE(text) << this->book->errorMessage();
        EXPECT_EQ(S<TypeParam>(c.out), text) << c.in;
        EXPECT_TRUE(sheet->isFormula(row, 2));
        EXPECT_EQ(CellNumber, sheet->cellType(row, 2));
        EXPECT_EQ(0, sheet->readNum(row, 2));
        ++row;
    }
    // Two references to the same sheet share one XTI; the text survives a save.
    const char* data = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(this->book->saveRaw(&data, &size)) << this->book->errorMessage();
    auto copy = newBook<TypeParam>();
    ASSERT_TRUE(copy->loadRaw(data, size)) << copy->errorMessage();
    EXPECT_EQ(S<TypeParam>("'My Sheet'!A1+Calc!B2"), copy->getSheet(0)->readFormula(5, 2));
    EXPECT_EQ(S<TypeParam>("SUM(A1;B1)"), copy->getSheet(0)->readFormula(0, 2));
}

TYPED_TEST(FormulaCellsTest, ErrorsOfTheEncoder) {
    auto* sheet = this->sheet;
    struct {
        const char* text;
        const char* message;
    } cases[] = {
        {"MyName", "incorrect token in formula"},
        {"A0", "Row is out of range"},
        {"Nowhere!A1", "sheet is not found"},
        {"IV1+IW1", "Column is out of range"},
    };
    for (const auto& c : cases) {
        EXPECT_FALSE(sheet->writeFormula(0, 0, S<TypeParam>(c.text).c_str())) << c.text;
        EXPECT_STREQ(c.message, this->book->errorMessage()) << c.text;
        EXPECT_EQ(CellEmpty, sheet->cellType(0, 0));
    }
    EXPECT_EQ(nullptr, sheet->readFormula(1, 1));
    EXPECT_STREQ("cell doesn't contain a formula", this->book->errorMessage());
}

TYPED_TEST(FormulaCellsTest, R1C1NotationOnBothSides) {
    this->book->setRefR1C1(true);
    auto* sheet = this->sheet;
    ASSERT_TRUE(sheet->writeFormula(2, 1, S<TypeParam>("R[-1]C+R1C1").c_str())) << this->book->errorMessage();
    EXPECT_EQ(S<TypeParam>("R[-1]C+R1C1"), sheet->readFormula(2, 1));
    this->book->setRefR1C1(false);
    EXPECT_EQ(S<TypeParam>("B2+$A$1"), sheet->readFormula(2, 1));
}

TYPED_TEST(FormulaCellsTest, ReferencesFollowInsertedAndDeletedSheets) {
    auto* sheet = this->sheet;
    ASSERT_TRUE(sheet->writeFormula(0, 0, S<TypeParam>("'My Sheet'!B2*2").c_str()));
    ASSERT_TRUE(this->book->insertSheet(0, S<TypeParam>("Front").c_str()));
    EXPECT_EQ(S<TypeParam>("'My Sheet'!B2*2"), sheet->readFormula(0, 0));
    ASSERT_TRUE(this->book->delSheet(2));  // "My Sheet"
    EXPECT_EQ(S<TypeParam>("#REF!B2*2"), sheet->readFormula(0, 0));
}

TYPED_TEST(FormulaCellsTest, NamedRangesPrintAreaAndTitles) {
    auto* sheet = this->sheet;
    EXPECT_FALSE(sheet->setNamedRange(S<TypeParam>("bad name").c_str(), 0, 1, 0, 1));
    EXPECT_STREQ("space symbol isn't allowed", this->book->errorMessage());
    ASSERT_TRUE(sheet->setNamedRange(S<TypeParam>("Prices").c_str(), 1, 10, 2, 3)) << this->book->errorMessage();
    ASSERT_TRUE(sheet->setNamedRange(S<TypeParam>("Prices").c_str(), 2, 20, 2, 4));  // moves it
    EXPECT_EQ(1, sheet->namedRangeSize());
    int rf = -1, rl = -1, cf = -1, cl = -1;
    ASSERT_TRUE(sheet->getNamedRange(S<TypeParam>("Prices").c_str(), &rf, &rl, &cf, &cl));
    EXPECT_EQ(2, rf);
    EXPECT_EQ(20, rl);
    EXPECT_EQ(2, cf);
    EXPECT_EQ(4, cl);
    EXPECT_FALSE(sheet->getNamedRange(S<TypeParam>("Missing").c_str(), &rf, &rl, &cf, &cl));
    EXPECT_STREQ("named range is not found", this->book->errorMessage());
    sheet->setPrintArea(0, 30, 0, 5);
    sheet->setPrintRepeatRows(0, 1);
    EXPECT_EQ(3, sheet->namedRangeSize());
    // Titles of rows and columns make a union, which is no single range.
    sheet->setPrintRepeatCols(0, 0);
    EXPECT_EQ(2, sheet->namedRangeSize());
    EXPECT_EQ(S<TypeParam>("Print_Area"), sheet->namedRange(1, &rf, &rl, &cf, &cl));
    EXPECT_EQ(30, rl);
    EXPECT_EQ(nullptr, sheet->namedRange(5, &rf, &rl, &cf, &cl));
    EXPECT_STREQ("index is out of range", this->book->errorMessage());

    // The names survive a save and an independent reader sees them.
    const char* data = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(this->book->saveRaw(&data, &size));
    auto copy = newBook<TypeParam>();
    ASSERT_TRUE(copy->loadRaw(data, size)) << copy->errorMessage();
    ISheetT<TypeParam>* again = copy->getSheet(0);
    ASSERT_TRUE(again->getNamedRange(S<TypeParam>("Prices").c_str(), &rf, &rl, &cf, &cl));
    EXPECT_EQ(20, rl);
    EXPECT_TRUE(again->delNamedRange(S<TypeParam>("Prices").c_str()));
    again->clearPrintArea();
    again->clearPrintRepeats();
    EXPECT_EQ(0, again->namedRangeSize());
    // A sheet-level name goes with its sheet.
    ASSERT_TRUE(sheet->setNamedRange(S<TypeParam>("Local").c_str(), 0, 0, 0, 0));
    ASSERT_TRUE(this->book->delSheet(0));
    EXPECT_EQ(0, this->book->getSheet(0)->namedRangeSize());
}

TYPED_TEST(FormulaCellsTest, NamesFollowInsertedRows) {
    auto* sheet = this->sheet;
    ASSERT_TRUE(sheet->setNamedRange(S<TypeParam>("Block").c_str(), 4, 8, 0, 1));
    ASSERT_TRUE(sheet->insertRow(2, 3));
    int rf = -1, rl = -1, cf = -1, cl = -1;
    ASSERT_TRUE(sheet->getNamedRange(S<TypeParam>("Block").c_str(), &rf, &rl, &cf, &cl));
    EXPECT_EQ(6, rf);
    EXPECT_EQ(10, rl);
    // Removing rows leaves areas alone.
    ASSERT_TRUE(sheet->removeRow(0, 0));
    ASSERT_TRUE(sheet->getNamedRange(S<TypeParam>("Block").c_str(), &rf, &rl, &cf, &cl));
    EXPECT_EQ(6, rf);
}

// A real file with shared formulas: overwriting a group's master hands the group on.
TEST(SharedFormulas, OverwrittenMasterHandsTheGroupOn) {
    IBookT<char>* book = zvCreateBookA();
    std::string path = std::string(ZELVAR_SOURCE_DIR) + "/tests/data/biff/shared-formulas.xls";
    ASSERT_TRUE(book->load(path.c_str())) << book->errorMessage();
    ISheetT<char>* sheet = book->getSheet(0);
    ASSERT_STREQ("2+2", sheet->readFormula(3, 1));
    ASSERT_TRUE(sheet->writeNum(3, 0, 5));
    EXPECT_EQ(5, sheet->readNum(3, 0));
    EXPECT_STREQ("2+2", sheet->readFormula(3, 1));
    EXPECT_STREQ("2+2", sheet->readFormula(3, 8));
    const char* data = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(book->saveRaw(&data, &size));
    IBookT<char>* copy = zvCreateBookA();
    ASSERT_TRUE(copy->loadRaw(data, size)) << copy->errorMessage();
    EXPECT_STREQ("2+2", copy->getSheet(0)->readFormula(3, 1));
    EXPECT_STREQ("2+2", copy->getSheet(0)->readFormula(3, 8));
    EXPECT_STREQ("1+1", copy->getSheet(0)->readFormula(1, 0));
    copy->release();
    book->release();
}
