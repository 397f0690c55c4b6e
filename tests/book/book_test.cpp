// Book-level behaviour of the binary family: defaults, sheet list, dates, colours, locale.
#include <clocale>
#include <cstring>
#include <string>

#include "test_util.h"

using namespace zelvar;
using namespace zvtest;

template <class T>
class BookTest : public ::testing::Test {};
TYPED_TEST_SUITE(BookTest, Widths);

TYPED_TEST(BookTest, NewBookHasTheStandardDefaults) {
    auto book = newBook<TypeParam>();
    ASSERT_TRUE(book);
    EXPECT_EQ(21, book->formatSize());
    EXPECT_EQ(5, book->fontSize());
    EXPECT_EQ(0, book->sheetCount());
    EXPECT_EQ(0x03050300, book->version());
    EXPECT_EQ(1536, book->biffVersion());
    EXPECT_FALSE(book->isDate1904());
    EXPECT_FALSE(book->rgbMode());
    EXPECT_FALSE(book->refR1C1());
    EXPECT_STREQ("ok", book->errorMessage());
    int size = 0;
    EXPECT_EQ(S<TypeParam>("Arial"), book->defaultFont(&size));
    EXPECT_EQ(10, size);
    // Format 15 is what a new cell gets: a locked cell format with font 0 and General.
    IFormatT<TypeParam>* cellDefault = book->format(15);
    ASSERT_TRUE(cellDefault);
    EXPECT_EQ(0, cellDefault->numFormat());
    EXPECT_TRUE(cellDefault->locked());
    EXPECT_EQ(VAlignBottom, cellDefault->alignV());
    EXPECT_EQ(44, book->format(16)->numFormat());
    EXPECT_EQ(41, book->format(20)->numFormat());
    EXPECT_EQ(ColorSystemForeground, cellDefault->patternForegroundColor());
    EXPECT_EQ(ColorSystemBackground, cellDefault->patternBackgroundColor());
}

TYPED_TEST(BookTest, IndexesOutOfRangeFailWithAMessage) {
    auto book = newBook<TypeParam>();
    EXPECT_EQ(nullptr, book->getSheet(0));
    EXPECT_STREQ("index is out of range", book->errorMessage());
    book->addSheet(S<TypeParam>("One").c_str());
    EXPECT_EQ(nullptr, book->getSheet(-1));
    EXPECT_STREQ("index is out of range", book->errorMessage());
    EXPECT_EQ(nullptr, book->getSheet(book->sheetCount()));
    EXPECT_EQ(SheetTypeOther, book->sheetType(1));
    EXPECT_STREQ("index is out of range", book->errorMessage());
    EXPECT_EQ(SheetTypeWorksheet, book->sheetType(0));
    EXPECT_STREQ("ok", book->errorMessage());
    EXPECT_EQ(nullptr, book->format(21));
    EXPECT_EQ(nullptr, book->format(-1));
    EXPECT_EQ(nullptr, book->font(5));
    EXPECT_STREQ("index is out of range", book->errorMessage());
    EXPECT_EQ(nullptr, book->insertSheet(3, S<TypeParam>("Far").c_str()));
    EXPECT_STREQ("index is out of range", book->errorMessage());
}

TYPED_TEST(BookTest, SheetNamesAreCutAndMustBeUniqueIgnoringCase) {
    auto book = newBook<TypeParam>();
    std::basic_string<TypeParam> longName = S<TypeParam>("A name that is much longer than 31 chars");
    ISheetT<TypeParam>* sheet = book->addSheet(longName.c_str());
    ASSERT_TRUE(sheet);
    EXPECT_STREQ("warning: sheet's name is cut to 31 characters", book->errorMessage());
    EXPECT_EQ(longName.substr(0, 31), sheet->name());

    ASSERT_TRUE(book->addSheet(S<TypeParam>("Data").c_str()));
    EXPECT_STREQ("ok", book->errorMessage());
    EXPECT_EQ(nullptr, book->addSheet(S<TypeParam>("dATA").c_str()));
    EXPECT_STREQ("book already contains such sheet name", book->errorMessage());
    EXPECT_EQ(2, book->sheetCount());

    sheet->setName(longName.c_str());
    EXPECT_STREQ("warning: sheet's name is cut to 31 characters", book->errorMessage());
    sheet->setName(S<TypeParam>("Short").c_str());
    EXPECT_STREQ("ok", book->errorMessage());
    EXPECT_EQ(S<TypeParam>("Short"), sheet->name());
}

TEST(BookNames, Utf8NamesAreCutAfter31CodePoints) {
    auto book = newBook<char>();
    book->setLocale("UTF-8");
    std::string name;
    for (int i = 0; i < 40; ++i) name += "\xC3\xA9";  // é
    ISheetT<char>* sheet = book->addSheet(name.c_str());
    ASSERT_TRUE(sheet);
    EXPECT_STREQ("warning: sheet's name is cut to 31 characters", book->errorMessage());
    EXPECT_EQ(name.substr(0, 62), sheet->name());
}

TYPED_TEST(BookTest, InsertAndDeleteKeepTheActiveSheet) {
    auto book = newBook<TypeParam>();
    book->addSheet(S<TypeParam>("A").c_str());
    book->addSheet(S<TypeParam>("B").c_str());
    book->addSheet(S<TypeParam>("C").c_str());
    book->setActiveSheet(1);
    EXPECT_EQ(1, book->activeSheet());
    // A sheet inserted before the active one keeps the same sheet active.
    ASSERT_TRUE(book->insertSheet(0, S<TypeParam>("Front").c_str()));
    EXPECT_EQ(2, book->activeSheet());
    EXPECT_EQ(S<TypeParam>("B"), book->getSheet(2)->name());
    ASSERT_TRUE(book->insertSheet(4, S<TypeParam>("End").c_str()));
    EXPECT_EQ(2, book->activeSheet());
    book->setActiveSheet(4);
    EXPECT_TRUE(book->delSheet(4));
    EXPECT_EQ(3, book->activeSheet());
    EXPECT_EQ(4, book->sheetCount());
    EXPECT_FALSE(book->delSheet(7));
    EXPECT_STREQ("index is out of range", book->errorMessage());
    while (book->sheetCount() > 1) EXPECT_TRUE(book->delSheet(0));
    EXPECT_FALSE(book->delSheet(0));
    EXPECT_STREQ("can't remove the last sheet in workbook", book->errorMessage());
    book->setActiveSheet(5);
    EXPECT_STREQ("index is out of range", book->errorMessage());
}

TYPED_TEST(BookTest, TheLastVisibleSheetCannotBeHidden) {
    auto book = newBook<TypeParam>();
    ISheetT<TypeParam>* a = book->addSheet(S<TypeParam>("A").c_str());
    ISheetT<TypeParam>* b = book->addSheet(S<TypeParam>("B").c_str());
    EXPECT_TRUE(a->setHidden(SheetHidden));
    EXPECT_EQ(SheetHidden, a->hidden());
    // The hidden sheet was active: the next visible one takes over.
    EXPECT_EQ(1, book->activeSheet());
    EXPECT_FALSE(b->setHidden(SheetVeryHidden));
    EXPECT_STREQ("a workbook must contain at least one visible worksheet", book->errorMessage());
    EXPECT_EQ(SheetVisible, b->hidden());
    EXPECT_TRUE(a->setHidden(SheetVisible));
    EXPECT_TRUE(b->setHidden(SheetVeryHidden));
    EXPECT_EQ(SheetVeryHidden, b->hidden());
}

TYPED_TEST(BookTest, CopiedSheetCarriesItsCells) {
    auto book = newBook<TypeParam>();
    ISheetT<TypeParam>* a = book->addSheet(S<TypeParam>("A").c_str());
    a->writeNum(3, 4, 2.5);
    a->writeStr(0, 0, S<TypeParam>("shared").c_str());
    ISheetT<TypeParam>* copy = book->addSheet(S<TypeParam>("Copy").c_str(), a);
    ASSERT_TRUE(copy);
    EXPECT_EQ(2.5, copy->readNum(3, 4));
    EXPECT_EQ(S<TypeParam>("shared"), copy->readStr(0, 0));
    // The copy shares the string, so rewriting it in one sheet must not change the other.
    copy->writeStr(0, 0, S<TypeParam>("changed").c_str());
    EXPECT_EQ(S<TypeParam>("shared"), a->readStr(0, 0));
    EXPECT_EQ(S<TypeParam>("changed"), copy->readStr(0, 0));
}

TYPED_TEST(BookTest, DatesPackAndUnpack) {
    auto book = newBook<TypeParam>();
    EXPECT_EQ(0.5, book->datePack(0, 0, 0, 12, 0, 0, 0));
    int y = -1, m = -1, d = -1, h = -1, mi = -1, s = -1, ms = -1;
    EXPECT_TRUE(book->dateUnpack(0.5, &y, &m, &d, &h, &mi, &s, &ms));
    EXPECT_EQ(0, y);
    EXPECT_EQ(0, m);
    EXPECT_EQ(0, d);
    EXPECT_EQ(12, h);
    EXPECT_EQ(0, mi);
    // The constants give 1 for 1899-12-31 and 2 for 1900-01-01; no 1900 leap-year correction.
    EXPECT_EQ(1.0, book->datePack(1899, 12, 31));
    EXPECT_EQ(2.0, book->datePack(1900, 1, 1));
    double stamp = book->datePack(2024, 2, 29, 23, 59, 58, 250);
    EXPECT_TRUE(book->dateUnpack(stamp, &y, &m, &d, &h, &mi, &s, &ms));
    EXPECT_EQ(2024, y);
    EXPECT_EQ(2, m);
    EXPECT_EQ(29, d);
    EXPECT_EQ(23, h);
    EXPECT_EQ(59, mi);
    EXPECT_EQ(58, s);
    EXPECT_EQ(250, ms);
    for (int year : {1901, 1950, 1999, 2000, 2038, 9999}) {
        double v = book->datePack(year, 7, 14);
        ASSERT_TRUE(book->dateUnpack(v, &y, &m, &d));
        EXPECT_EQ(year, y);
        EXPECT_EQ(7, m);
        EXPECT_EQ(14, d);
    }
    double in1900 = book->datePack(2010, 5, 6);
    book->setDate1904(true);
    EXPECT_TRUE(book->isDate1904());
    EXPECT_EQ(in1900 - 1462, book->datePack(2010, 5, 6));
    EXPECT_EQ(0.0, book->datePack(1904, 1, 1));
    ASSERT_TRUE(book->dateUnpack(in1900 - 1462, &y, &m, &d));
    EXPECT_EQ(2010, y);
    EXPECT_EQ(5, m);
    EXPECT_EQ(6, d);
}

TYPED_TEST(BookTest, DateUnpackOutsideTheCalendarTouchesNothing) {
    auto book = newBook<TypeParam>();
    book->getSheet(7);  // leaves a failure message behind
    int y = 11, m = 22, d = 33;
    EXPECT_FALSE(book->dateUnpack(2958466.0, &y, &m, &d));
    EXPECT_FALSE(book->dateUnpack(-657435.0, &y, &m, &d));
    EXPECT_EQ(11, y);
    EXPECT_EQ(22, m);
    EXPECT_EQ(33, d);
    EXPECT_STREQ("index is out of range", book->errorMessage());
}

TYPED_TEST(BookTest, PaletteHands56ColoursOut) {
    auto book = newBook<TypeParam>();
    EXPECT_EQ(8, book->colorPack(0, 0, 0));
    // An existing colour is found, not allocated again.
    EXPECT_EQ(10, book->colorPack(255, 0, 0));
    EXPECT_EQ(10, book->colorPack(255, 0, 0));
    int r, g, b;
    // New colours take the first entries not asked for yet: index 9 (white) is the next.
    EXPECT_EQ(9, book->colorPack(1, 2, 3));
    book->colorUnpack(static_cast<Color>(9), &r, &g, &b);
    EXPECT_EQ(1, r);
    EXPECT_EQ(2, g);
    EXPECT_EQ(3, b);
    int given = 3;
    for (int i = 0; given < 56; ++i, ++given) {
        Color c = book->colorPack(10 + i, 20, 30);
        EXPECT_GE(c, 8);
        EXPECT_LE(c, 63);
    }
    EXPECT_EQ(ColorAutomatic, book->colorPack(200, 201, 202));
    EXPECT_STREQ("no free color index, limit is reached for xls format", book->errorMessage());
    // A colour already in the palette still resolves when the palette is full.
    EXPECT_EQ(10, book->colorPack(255, 0, 0));
    EXPECT_STREQ("ok", book->errorMessage());
}

TEST(BookPalette, FirstNewColourReplacesBlack) {
    auto book = newBook<char>();
    EXPECT_EQ(8, book->colorPack(1, 2, 3));
    int r = -1, g = -1, b = -1;
    book->colorUnpack(ColorBlack, &r, &g, &b);
    EXPECT_EQ(1, r);
    book->colorUnpack(static_cast<Color>(64), &r, &g, &b);
    EXPECT_STRNE("ok", book->errorMessage());
    EXPECT_EQ(1, r);
}

TYPED_TEST(BookTest, CustomNumberFormatsTakeIds164To392) {
    auto book = newBook<TypeParam>();
    int first = book->addCustomNumFormat(S<TypeParam>("0.000").c_str());
    EXPECT_EQ(164, first);
    EXPECT_EQ(first, book->addCustomNumFormat(S<TypeParam>("0.000").c_str()));
    EXPECT_EQ(S<TypeParam>("0.000"), book->customNumFormat(164));
    EXPECT_EQ(nullptr, book->customNumFormat(165));
    EXPECT_STREQ("custom number format not found", book->errorMessage());
    for (int i = 1; i < 229; ++i) {
        std::string text = "\"n" + std::to_string(i) + "\" 0";
        EXPECT_EQ(164 + i, book->addCustomNumFormat(S<TypeParam>(text.c_str()).c_str()));
    }
    EXPECT_EQ(0, book->addCustomNumFormat(S<TypeParam>("#,##0 \"kg\"").c_str()));
    EXPECT_STREQ("maximum number of custom formats is exceeded", book->errorMessage());
    EXPECT_EQ(200, book->addCustomNumFormat(S<TypeParam>("\"n36\" 0").c_str()));
}

TYPED_TEST(BookTest, MissingFileLoadLeavesACleanBook) {
    auto book = newBook<TypeParam>();
    book->addSheet(S<TypeParam>("Gone").c_str());
    book->addFormat();
    EXPECT_FALSE(book->load(S<TypeParam>("/nonexistent/dir/file.xls").c_str()));
    EXPECT_STREQ("can't open file for reading", book->errorMessage());
    EXPECT_EQ(21, book->formatSize());
    EXPECT_EQ(5, book->fontSize());
    EXPECT_EQ(0, book->sheetCount());
    ASSERT_TRUE(book->addSheet(S<TypeParam>("Again").c_str()));
}

TYPED_TEST(BookTest, FailedRawLoadLeavesTheBrokenState) {
    auto book = newBook<TypeParam>();
    const char garbage[] = "this is not a workbook at all";
    EXPECT_FALSE(book->loadRaw(garbage, sizeof garbage));
    EXPECT_STRNE("ok", book->errorMessage());
    EXPECT_EQ(0, book->formatSize());
    EXPECT_EQ(0, book->sheetCount());
}

TEST(BookLocale, Utf8ModeLeavesTheCLocaleAlone) {
    auto book = newBook<char>();
    std::string before = std::setlocale(LC_ALL, nullptr);
    EXPECT_TRUE(book->setLocale("UTF-8"));
    EXPECT_EQ(before, std::setlocale(LC_ALL, nullptr));
    EXPECT_FALSE(book->setLocale("no_SUCH.locale-at-all"));
    EXPECT_STREQ("setlocale error", book->errorMessage());
    EXPECT_TRUE(book->setLocale("C"));
}

TYPED_TEST(BookTest, RefR1C1FollowsTheLastSheet) {
    auto book = newBook<TypeParam>();
    book->setRefR1C1(true);
    EXPECT_TRUE(book->refR1C1());
    book->addSheet(S<TypeParam>("A").c_str());
    EXPECT_TRUE(book->refR1C1());
    book->setRefR1C1(false);
    EXPECT_FALSE(book->refR1C1());
}

