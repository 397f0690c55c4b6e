// Text conversion, the arena and A1 addressing.
#include <gtest/gtest.h>

#include <clocale>
#include <cstring>
#include <string>

#include "frame/excel_util.h"
#include "frame/mem_pool.h"
#include "frame/text.h"
#include "frame/zverror.h"
#include "zelvar.h"

using namespace zelvar;

namespace {
struct Book {
    IBookT<char>* book = zvCreateBookA();
    ~Book() { book->release(); }
};
}  // namespace

TEST(MemPool, AllocatesFromBlocksAndCopiesWideText) {
    MemPool pool;
    EXPECT_EQ(nullptr, pool.allocA(0));
    EXPECT_EQ(nullptr, pool.allocW(0));
    char* a = pool.allocA(5);
    char* b = pool.allocA(5);
    EXPECT_EQ(a + 5, b);
    const wchar_t* w = pool.copyW(L"hello", 5);
    EXPECT_STREQ(L"hello", w);
    // A request larger than a block still gets memory of its own.
    char* big = pool.allocA(MemPool::kBlockUnits + 10);
    ASSERT_NE(nullptr, big);
    big[MemPool::kBlockUnits + 9] = 1;
    char* after = pool.allocA(3);
    EXPECT_EQ(b + 5, after);
    pool.free();
    EXPECT_NE(nullptr, pool.allocA(1));
}

TEST(Text, WideIdentityAndPoolConversion) {
    MemPool pool;
    const wchar_t* text = L"abc";
    EXPECT_EQ(text, tc(text, &pool, false, static_cast<wchar_t*>(nullptr)));
    EXPECT_EQ(nullptr, tc(static_cast<const wchar_t*>(nullptr), &pool, false, static_cast<char*>(nullptr)));
    EXPECT_STREQ("abc", tc(text, &pool, false, static_cast<char*>(nullptr)));
    EXPECT_STREQ("\xE2\x82\xAC 5", tc(L"\u20AC 5", &pool, true, static_cast<char*>(nullptr)));
}

TEST(Text, Utf8UnitsRoundTripIncludingSurrogates) {
    std::wstring wide;
    const char* text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z";  // a é € 😀 z
    narrowToWide(text, std::strlen(text), true, wide);
    // Characters beyond 16 bits are kept as two units, the form the binary files store.
    ASSERT_EQ(6u, wide.size());
    EXPECT_EQ(0xD83D, static_cast<int>(wide[3]));
    std::string back;
    EXPECT_TRUE(wideToNarrow(wide.data(), wide.size(), true, back));
    EXPECT_EQ(text, back);
    EXPECT_THROW(narrowToWide("\xC3", 1, true, wide), zverror);
    try {
        narrowToWide("bad \xFF", 5, true, wide);
    } catch (const zverror& e) {
        EXPECT_STREQ("can't convert multibyte to wide string, perhaps incorrect locale", e.what());
    }
}

TEST(Text, XStringKeepsTheNewerFace) {
    XString s;
    s.assign(L"wide");
    EXPECT_STREQ("wide", s.c_str<char>(false));
    s.assign("narrow");
    EXPECT_STREQ(L"narrow", s.c_str<wchar_t>(false));
    s.assign(static_cast<const char*>(nullptr));
    EXPECT_STREQ("", s.c_str<char>(false));
    EXPECT_FALSE(s.failed());
}

TEST(Text, CharactersOutsideTheCLocaleBecomeQuestionMarks) {
    std::string saved = std::setlocale(LC_ALL, nullptr);
    ASSERT_TRUE(std::setlocale(LC_ALL, "C"));
    XString s;
    s.assign(L"x\u00E9y");
    EXPECT_STREQ("x?y", s.c_str<char>(false));
    EXPECT_TRUE(s.failed());
    StringKeeper<char> keeper;
    keeper.assign(L"\u4E2Dz", false);
    EXPECT_STREQ("?z", keeper.c_str());
    keeper.assign(nullptr, false);
    EXPECT_EQ(nullptr, keeper.c_str());
    std::setlocale(LC_ALL, saved.c_str());
}

TEST(Text, ReadStrInTheCLocaleReplacesUnmappedCharacters) {
    IBookT<wchar_t>* wide = zvCreateBookW();
    IBookT<char>* narrow = zvCreateBookA();
    narrow->setLocale("C");
    ISheetT<char>* sheet = narrow->addSheet("S");
    // Stored through the wide interface of another book is not possible: write in UTF-8 mode,
    // then read back in the C locale.
    narrow->setLocale("UTF-8");
    ASSERT_TRUE(sheet->writeStr(0, 0, "caf\xC3\xA9"));
    EXPECT_STREQ("caf\xC3\xA9", sheet->readStr(0, 0));
    narrow->setLocale("C");
    EXPECT_STREQ("caf?", sheet->readStr(0, 0));
    EXPECT_STREQ("ok", narrow->errorMessage());
    narrow->release();
    wide->release();
}

TEST(Text, CaseInsensitiveNames) {
    // sicmp is the equality test, sicmp2 the ordering, CaseInsensitiveLess its "less than".
    const struct {
        const wchar_t *a, *b;
        bool equal;
        int order;  // sign of sicmp2(a, b)
    } cases[] = {
        {L"Sheet1", L"sHEET1", true, 0},
        {L"", L"", true, 0},
        {L"a", L"B", false, -1},
        {L"ab", L"A", false, 1},          // a prefix sorts first
        {L"ab", L"Ab ", false, -1},       // lengths differ: never equal
        {L"[Content_Types].xml", L"[CONTENT_TYPES].XML", true, 0},
        {L"/[Content_Types].xml", L"/_rels/.rels", false, -1},  // '[' < '_' once lowered
        {L"Z", L"a", false, 1},           // by lowered code units, not by raw ones
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.a << " / " << c.b);
        EXPECT_EQ(c.equal, sicmp(c.a, c.b));
        EXPECT_EQ(c.equal, sicmp(c.b, c.a));
        int order = sicmp2(c.a, c.b);
        EXPECT_EQ(c.order, (order > 0) - (order < 0));
        EXPECT_EQ(-c.order, (sicmp2(c.b, c.a) > 0) - (sicmp2(c.b, c.a) < 0));
        EXPECT_EQ(c.order < 0, CaseInsensitiveLess()(c.a, c.b));
    }
}

TEST(ExcelUtil, AddressesAndLimits) {
    EXPECT_EQ(L"A1", ExcelUtil::rowColToAddr(0, 0, true, true));
    EXPECT_EQ(L"$A$1", ExcelUtil::rowColToAddr(0, 0, false, false));
    EXPECT_EQ(L"AA1", ExcelUtil::rowColToAddr(0, 26, true, true));
    EXPECT_EQ(L"$C", ExcelUtil::rowColToAddr(-1, 2, true, false));
    EXPECT_THROW(ExcelUtil::rowColToAddr(1048576, 0, true, true), zverror);
    EXPECT_THROW(ExcelUtil::rowColToAddr(-2, 0, true, true), zverror);
    int row, col;
    bool rowRel, colRel;
    ExcelUtil::addrToRowCol(L"c", &row, &col, &rowRel, &colRel);
    EXPECT_EQ(-1, row);
    EXPECT_EQ(2, col);
    ExcelUtil::addrToRowCol(L"A$10", &row, &col, &rowRel, &colRel);
    EXPECT_EQ(9, row);
    EXPECT_EQ(0, col);
    EXPECT_FALSE(rowRel);
    EXPECT_TRUE(colRel);
}

TEST(Utf8Mode, NonAsciiTextRoundTripsByteForByte) {
    Book b;
    b.book->setLocale("UTF-8");
    ISheetT<char>* sheet = b.book->addSheet("Ünïcødé");
    ASSERT_TRUE(sheet);
    EXPECT_STREQ("Ünïcødé", sheet->name());
    const char* texts[] = {"Grüße", "日本語のテキスト", "emoji \xF0\x9F\x98\x80 done", "€100"};
    int row = 0;
    for (const char* t : texts) ASSERT_TRUE(sheet->writeStr(row++, 0, t));
    row = 0;
    for (const char* t : texts) EXPECT_STREQ(t, sheet->readStr(row++, 0));
    EXPECT_FALSE(sheet->writeStr(9, 0, "broken \xC3"));
    EXPECT_STREQ("can't convert multibyte to wide string, perhaps incorrect locale", b.book->errorMessage());
    EXPECT_EQ(CellEmpty, sheet->cellType(9, 0));
}
