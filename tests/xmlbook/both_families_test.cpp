// Behaviour that the binary and the XML book share, run over both factories and both text
// widths, so that the two families cannot drift apart unnoticed.
#include "xml_test_util.h"

using namespace zelvar;
using namespace xmltest;

namespace {

template <class T, bool Xml>
struct Family {
    using Char = T;
    static constexpr bool xml = Xml;
    static IBookT<T>* create();
};
template <>
IBookT<char>* Family<char, false>::create() { return zvCreateBookA(); }
template <>
IBookT<wchar_t>* Family<wchar_t, false>::create() { return zvCreateBookW(); }
template <>
IBookT<char>* Family<char, true>::create() { return zvCreateXMLBookA(); }
template <>
IBookT<wchar_t>* Family<wchar_t, true>::create() { return zvCreateXMLBookW(); }

template <class F>
class BothFamilies : public ::testing::Test {
protected:
    using T = typename F::Char;
    void SetUp() override { book.reset(F::create()); }
    // Saves to memory and loads into a fresh book of the same family.
    void reload() {
        const char* data = nullptr;
        unsigned size = 0;
        ASSERT_TRUE(book->saveRaw(&data, &size)) << book->errorMessage();
        BookPtr<T> fresh(F::create());
        ASSERT_TRUE(fresh->loadRaw(data, size)) << fresh->errorMessage();
        book = std::move(fresh);
    }
    BookPtr<T> book;
};

using Families = ::testing::Types<Family<char, false>, Family<wchar_t, false>, Family<char, true>, Family<wchar_t, true>>;
TYPED_TEST_SUITE(BothFamilies, Families);

TYPED_TEST(BothFamilies, CellsSurviveASaveAndALoad) {
    using T = typename TypeParam::Char;
    ISheetT<T>* sheet = this->book->addSheet(S<T>("Data").c_str());
    ASSERT_NE(sheet, nullptr);
    ASSERT_TRUE(sheet->writeStr(0, 0, S<T>("text").c_str()));
    ASSERT_TRUE(sheet->writeNum(1, 0, -2.75));
    ASSERT_TRUE(sheet->writeBool(2, 0, true));
    ASSERT_TRUE(sheet->writeFormula(3, 0, S<T>("SUM(A2;4)").c_str()));
    ASSERT_TRUE(sheet->writeBlank(4, 0, this->book->format(0)));
    this->reload();
    sheet = this->book->getSheet(0);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(std::basic_string<T>(sheet->name()), S<T>("Data"));
    EXPECT_EQ(std::basic_string<T>(sheet->readStr(0, 0)), S<T>("text"));
    EXPECT_EQ(sheet->readNum(1, 0), -2.75);
    EXPECT_TRUE(sheet->readBool(2, 0));
    EXPECT_TRUE(sheet->isFormula(3, 0));
    EXPECT_EQ(std::basic_string<T>(sheet->readFormula(3, 0)), S<T>("SUM(A2;4)"));
    EXPECT_EQ(sheet->cellType(0, 0), CellString);
    EXPECT_EQ(sheet->cellType(1, 0), CellNumber);
    EXPECT_EQ(sheet->cellType(2, 0), CellBoolean);
    EXPECT_EQ(sheet->cellType(4, 0), CellBlank);
    EXPECT_EQ(sheet->cellType(9, 9), CellEmpty);
}

TYPED_TEST(BothFamilies, SheetListMessages) {
    using T = typename TypeParam::Char;
    ASSERT_NE(this->book->addSheet(S<T>("One").c_str()), nullptr);
    EXPECT_EQ(this->book->addSheet(S<T>("ONE").c_str()), nullptr);
    EXPECT_STREQ(this->book->errorMessage(), "book already contains such sheet name");
    EXPECT_FALSE(this->book->delSheet(0));
    EXPECT_STREQ(this->book->errorMessage(), "can't remove the last sheet in workbook");
    ASSERT_NE(this->book->insertSheet(0, S<T>("Zero").c_str()), nullptr);
    EXPECT_EQ(this->book->sheetCount(), 2);
    EXPECT_EQ(std::basic_string<T>(this->book->getSheet(1)->name()), S<T>("One"));
    EXPECT_TRUE(this->book->delSheet(0));
    EXPECT_EQ(std::basic_string<T>(this->book->getSheet(0)->name()), S<T>("One"));
}

// A renamed sheet keeps its named ranges, print area and print titles, also through a save, and
// a name over 31 characters is cut with a warning.
TYPED_TEST(BothFamilies, RenamedSheetKeepsItsNames) {
    using T = typename TypeParam::Char;
    ISheetT<T>* sheet = this->book->addSheet(S<T>("Old-name").c_str());
    ISheetT<T>* other = this->book->addSheet(S<T>("Other").c_str());
    ASSERT_TRUE(sheet->setNamedRange(S<T>("Block").c_str(), 1, 3, 0, 1)) << this->book->errorMessage();
    ASSERT_TRUE(other->setNamedRange(S<T>("Elsewhere").c_str(), 0, 0, 2, 2)) << this->book->errorMessage();
    sheet->setPrintArea(0, 9, 0, 3);
    sheet->setPrintRepeatRows(0, 1);
    sheet->setName(S<T>("New name").c_str());
    EXPECT_STREQ(this->book->errorMessage(), "ok");
    this->reload();
    sheet = this->book->getSheet(0);
    other = this->book->getSheet(1);
    EXPECT_EQ(std::basic_string<T>(sheet->name()), S<T>("New name"));
    int r1 = -1, r2 = -1, c1 = -1, c2 = -1;
    ASSERT_TRUE(sheet->getNamedRange(S<T>("Block").c_str(), &r1, &r2, &c1, &c2)) << this->book->errorMessage();
    EXPECT_EQ(r1 * 1000 + r2 * 100 + c1 * 10 + c2, 1301);
    ASSERT_TRUE(other->getNamedRange(S<T>("Elsewhere").c_str(), &r1, &r2, &c1, &c2)) << this->book->errorMessage();
    EXPECT_EQ(r1 * 1000 + r2 * 100 + c1 * 10 + c2, 22);
    EXPECT_FALSE(sheet->getNamedRange(S<T>("Elsewhere").c_str(), &r1, &r2, &c1, &c2));
    EXPECT_EQ(sheet->namedRangeSize(), 3);  // Block, print area, print titles

    sheet->setName(S<T>("A name of more than thirty-one characters").c_str());
    EXPECT_STREQ(this->book->errorMessage(), "warning: sheet's name is cut to 31 characters");
    EXPECT_EQ(std::basic_string<T>(sheet->name()), S<T>("A name of more than thirty-one "));
    EXPECT_TRUE(sheet->getNamedRange(S<T>("Block").c_str(), &r1, &r2, &c1, &c2)) << this->book->errorMessage();
}

TYPED_TEST(BothFamilies, DatesAndColours) {
    double value = this->book->datePack(2021, 7, 15, 6, 30, 15, 250);
    int y, m, d, h, mi, s, ms;
    ASSERT_TRUE(this->book->dateUnpack(value, &y, &m, &d, &h, &mi, &s, &ms));
    EXPECT_EQ(y * 10000 + m * 100 + d, 20210715);
    EXPECT_EQ(h * 10000 + mi * 100 + s, 63015);
    EXPECT_EQ(ms, 250);
    int r, g, b;
    this->book->colorUnpack(this->book->colorPack(1, 2, 3), &r, &g, &b);
    EXPECT_EQ(r * 10000 + g * 100 + b, 10203);
}

// Where the two families answer differently, the headers say how ("XML books: ..."). Each row
// is one such answer: the call, then its result and message for each family, as documented.
template <class T>
struct Difference {
    const char* what;
    std::string (*call)(IBookT<T>* book, ISheetT<T>* sheet);
    const char* binary;
    const char* xml;
};

template <class T>
std::string answer(IBookT<T>* book, long long result) {
    return std::to_string(result) + " [" + book->errorMessage() + "]";
}

template <class T>
std::string answer(IBookT<T>* book, const T* text) {
    return std::string(text ? "text" : "null") + " [" + book->errorMessage() + "]";
}

TYPED_TEST(BothFamilies, WhereTheFamiliesDifferTheHeadersSaySo) {
    using T = typename TypeParam::Char;
    using B = IBookT<T>*;
    using Sh = ISheetT<T>*;
    const Difference<T> rows[] = {
        {"setRotation out of range", [](B b, Sh) { return answer(b, b->addFormat()->setRotation(200)); },
         "0 [rotation must be in range 0-180 or 255]", "1 [ok]"},
        {"customNumFormat of a built-in id", [](B b, Sh) { return answer(b, b->customNumFormat(3)); },
         "null [custom number format not found]", "null [ok]"},
        {"getHorPageBreak past the end", [](B b, Sh s) { return answer(b, s->getHorPageBreak(2)); },
         "-1 [index is out of range]", "-1 [ok]"},
        {"getVerPageBreak past the end", [](B b, Sh s) { return answer(b, s->getVerPageBreak(0)); },
         "-1 [index is out of range]", "-1 [ok]"},
        {"load of a missing file", [](B b, Sh) { return answer(b, b->load(S<T>("/nonexistent/in.book").c_str())); },
         "0 [can't open file for reading]", "0 [No such file or directory.]"},
        {"writeFormula of an unfinished call", [](B b, Sh s) { return answer(b, s->writeFormula(0, 0, S<T>("SUM(").c_str())); },
         "0 [error: function parentheses not found]", "1 [ok]"},
        {"writeFormula below row 65536", [](B b, Sh s) { return answer(b, s->writeFormula(70000, 0, S<T>("1").c_str())); },
         "0 [row must be in range 0-65535]", "1 [ok]"},
        {"writeComment", [](B b, Sh s) { return s->writeComment(1, 1, S<T>("note").c_str()), answer(b, 0LL); },
         "0 [ok]", "0 [not supported]"},
        {"readError of a text cell",
         [](B b, Sh s) { return s->writeStr(2, 2, S<T>("x").c_str()), answer(b, s->readError(2, 2)); },
         "255 [ok]", "255 [this cell doesn't contain an error]"},
        {"colorPack in index mode", [](B b, Sh) { return answer(b, b->colorPack(0, 97, 168)); }, "8 [ok]",
         "25000 [ok]"},
        {"colorUnpack of a palette index",
         [](B b, Sh) {
             int red = -1, green = -1, blue = -1;
             b->colorUnpack(ColorTeal, &red, &green, &blue);
             return answer(b, red * 1000000LL + green * 1000 + blue);
         },
         "128128 [ok]", "21 [ok]"},
        {"delNamedRange of an unknown name", [](B b, Sh s) { return answer(b, s->delNamedRange(S<T>("Nothing").c_str())); },
         "0 [named range is not found]", "0 [named range not found]"},
    };
    for (const auto& row : rows) {
        BookPtr<T> book(TypeParam::create());
        ISheetT<T>* sheet = book->addSheet(S<T>("Sheet1").c_str());
        ASSERT_NE(sheet, nullptr);
        EXPECT_EQ(row.call(book.get(), sheet), TypeParam::xml ? row.xml : row.binary) << row.what;
    }
}

TYPED_TEST(BothFamilies, OnlyTheXmlBookRefusesToSaveWithoutSheets) {
    const char* data = nullptr;
    unsigned size = 0;
    EXPECT_EQ(this->book->saveRaw(&data, &size), !TypeParam::xml);
    EXPECT_STREQ(this->book->errorMessage(), TypeParam::xml ? "min/max occurs error on marshaling" : "ok");
}

}  // namespace
