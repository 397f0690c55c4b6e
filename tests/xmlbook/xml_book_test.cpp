// The XML book through its public interface: the parts of a new package, sheets, cells of every
// kind, formats and fonts on the stylesheet, and the failures that the operations report.
#include <cstring>

#include "xml_test_util.h"
#include "frame/little_endian.h"

using namespace zelvar;
using namespace xmltest;

namespace {

template <class T>
class XmlBook : public ::testing::Test {};
using Widths = ::testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(XmlBook, Widths);

TEST(XmlPackage, NewBookHasFiveParts) {
    BookPtr<char> book = newXmlBook<char>();
    ASSERT_TRUE(book);
    EXPECT_STREQ(book->errorMessage(), "ok");
    // A workbook part needs at least one sheet to be valid.
    const char* data = nullptr;
    unsigned size = 0;
    EXPECT_FALSE(book->saveRaw(&data, &size));
    EXPECT_STREQ(book->errorMessage(), "min/max occurs error on marshaling");
    ASSERT_NE(book->addSheet("Only"), nullptr);
    auto parts = savedEntries(book.get());
    std::vector<std::string> names;
    for (const auto& part : parts) names.push_back(part.first);
    // Written in the case-blind order of the part paths.
    EXPECT_EQ(names, (std::vector<std::string>{"[Content_Types].xml", "_rels/.rels", "xl/_rels/workbook.xml.rels",
                                               "xl/styles.xml", "xl/workbook.xml", "xl/worksheets/sheet1.xml"}));
    EXPECT_TRUE(contains(parts["xl/workbook.xml"], "<calcPr fullCalcOnLoad=\"true\"/>"));
    EXPECT_TRUE(contains(parts["_rels/.rels"], "Target=\"xl/workbook.xml\""));
    EXPECT_TRUE(contains(parts["[Content_Types].xml"], "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"));
    const std::string& styles = parts["xl/styles.xml"];
    EXPECT_TRUE(contains(styles, "<fonts count=\"1\"><font><sz val=\"11\"/><name val=\"Calibri\"/></font></fonts>"));
    EXPECT_TRUE(contains(styles, "<fills count=\"2\"><fill><patternFill patternType=\"none\"/></fill><fill><patternFill patternType=\"gray125\"/></fill></fills>"));
    EXPECT_TRUE(contains(styles, "<borders count=\"1\"><border><left/><right/><top/><bottom/><diagonal/></border></borders>"));
    EXPECT_TRUE(contains(styles, "<cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/>"));
    EXPECT_EQ(book->formatSize(), 1);
    EXPECT_EQ(book->fontSize(), 1);
}

TEST(XmlPackage, SecondSaveWritesTheSameBytes) {
    BookPtr<char> book = newXmlBook<char>();
    ISheetT<char>* sheet = book->addSheet("One");
    sheet->writeStr(0, 0, "text");
    sheet->writeNum(1, 0, 2.5);
    auto first = savedEntries(book.get());
    auto second = savedEntries(book.get());
    EXPECT_EQ(first, second);
    EXPECT_EQ(first.count("xl/sharedStrings.xml"), 1u);
}

TEST(XmlPackage, BadInputGivesMessages) {
    BookPtr<char> book = newXmlBook<char>();
    EXPECT_FALSE(book->loadRaw("not a zip at all", 16));
    EXPECT_STREQ(book->errorMessage(),
                 "The central directory was not found in the archive (or you were trying to open not the last volume of a segmented archive).");
    // A compound file (an encrypted package) is no ZIP either.
    std::string compound("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
    compound.resize(4096, '\0');
    EXPECT_FALSE(book->loadRaw(compound.data(), static_cast<unsigned>(compound.size())));
    EXPECT_STRNE(book->errorMessage(), "ok");

    std::string noTypes = makePackage({{"xl/workbook.xml", "<workbook/>"}});
    EXPECT_FALSE(book->loadRaw(noTypes.data(), static_cast<unsigned>(noTypes.size())));
    EXPECT_STREQ(book->errorMessage(), "std::exception");

    const std::string types =
        "<?xml version=\"1.0\"?><Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
        "<Default Extension=\"xml\" ContentType=\"application/xml\"/></Types>";
    std::string noWorkbook = makePackage({{"[Content_Types].xml", types}, {"a.xml", "<a/>"}});
    EXPECT_FALSE(book->loadRaw(noWorkbook.data(), static_cast<unsigned>(noWorkbook.size())));
    EXPECT_STREQ(book->errorMessage(), "workbook relationships not found");
    // After a failed load every operation answers, none crashes.
    EXPECT_EQ(book->sheetCount(), 0);
    EXPECT_EQ(book->getSheet(0), nullptr);
    EXPECT_EQ(book->addSheet("x"), nullptr);
    const char* data = nullptr;
    unsigned size = 0;
    book->saveRaw(&data, &size);
    EXPECT_NE(book->addFormat(), nullptr);

    const std::string laughs =
        "<?xml version=\"1.0\"?><!DOCTYPE t [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\">"
        "<!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\"><!ENTITY d \"&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;\">]>"
        "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">&d;&d;&d;&d;&d;&d;</Types>";
    std::string bomb = makePackage({{"[Content_Types].xml", laughs}});
    EXPECT_FALSE(book->loadRaw(bomb.data(), static_cast<unsigned>(bomb.size())));
    EXPECT_STRNE(book->errorMessage(), "ok");
}

// Sets the uncompressed size that one entry states, in its central and its local header.
std::string withStatedSize(std::string zip, const std::string& name, uint32_t size) {
    using namespace zelvar::le;
    auto u = [&](size_t at) { return reinterpret_cast<unsigned char*>(&zip[at]); };
    size_t end = zip.rfind(std::string("PK\x05\x06", 4));
    size_t p = get32(u(end + 16));
    for (unsigned i = 0, n = get16(u(end + 10)); i < n; ++i) {
        unsigned nameSize = get16(u(p + 28));
        if (zip.compare(p + 46, nameSize, name) == 0) {
            put32(u(p + 24), size);
            put32(u(get32(u(p + 42)) + 22), size);
        }
        p += 46 + nameSize + get16(u(p + 30)) + get16(u(p + 32));
    }
    return zip;
}

// Hostile packages are refused with the message of the layer that catches them, before they
// take memory or time out of proportion to their size.
TEST(XmlPackage, HostilePackagesAreRefused) {
    BookPtr<char> made = newXmlBook<char>();
    made->addSheet("S")->writeStr(0, 0, "text");
    auto parts = savedEntries(made.get());
    const std::string sheetName = "xl/worksheets/sheet1.xml";
    const std::string open = "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"><sheetData>";
    std::string laughs = "<?xml version=\"1.0\"?><!DOCTYPE worksheet [<!ENTITY l0 \"lollollollollollollollollollol\">";
    for (int i = 1; i < 10; ++i) {
        laughs += "<!ENTITY l" + std::to_string(i) + " \"";
        for (int k = 0; k < 10; ++k) laughs += "&l" + std::to_string(i - 1) + ";";
        laughs += "\">";
    }
    laughs += "]>" + open + "<row r=\"1\"><c r=\"A1\" t=\"str\"><v>&l9;</v></c></row></sheetData></worksheet>";
    std::string deep = open;
    for (int i = 0; i < 100000; ++i) deep += "<x>";

    auto withSheet = [&](const std::string& xml) {
        auto copy = parts;
        copy[sheetName] = xml;
        return makePackage(copy);
    };
    const std::string good = makePackage(parts);
    const struct {
        const char* what;
        std::string package;
        const char* message;
    } cases[] = {
        {"billion laughs", withSheet(laughs), "Unexpected entity"},
        {"deep nesting", withSheet(deep), "XML badly formed"},
        // A bomb states the size its data inflate to; more than deflate can give from the
        // entry's bytes is refused before anything is allocated.
        {"size beyond what the data can inflate to", withStatedSize(good, sheetName, 0x7FFFFFF0), "Damaged or not a zip file."},
        {"size below what the data inflate to", withStatedSize(good, sheetName, 16), "Crc is mismatched."},
        {"size of all ones", withStatedSize(good, sheetName, 0xFFFFFFFF), "incorrect file size in archive"},
    };
    for (const auto& c : cases) {
        BookPtr<char> book = newXmlBook<char>();
        EXPECT_FALSE(book->loadRaw(c.package.data(), static_cast<unsigned>(c.package.size()))) << c.what;
        EXPECT_STREQ(book->errorMessage(), c.message) << c.what;
        // The book still answers.
        EXPECT_NE(book->addFormat(), nullptr) << c.what;
    }
    BookPtr<char> book = newXmlBook<char>();
    EXPECT_TRUE(book->loadRaw(good.data(), static_cast<unsigned>(good.size()))) << book->errorMessage();
}

TEST(XmlPackage, UnknownPartsComeBackByteForByteAndPartsWithoutTypeAreDropped) {
    BookPtr<char> book = newXmlBook<char>();
    book->addSheet("S");
    auto parts = savedEntries(book.get());
    // A part with a default of its own and one without any content type.
    std::string& types = parts["[Content_Types].xml"];
    types.insert(types.find("<Default"), "<Default Extension=\"vml\" ContentType=\"application/vnd.openxmlformats-officedocument.vmlDrawing\"/>");
    static const char vml[] = "<xml>\r\n  kept as it is \x01\x02</xml>";
    parts["xl/drawings/vmlDrawing1.vml"] = std::string(vml, sizeof vml - 1);
    parts["xl/unknown.bin"] = "no type";
    std::string package = makePackage(parts);
    BookPtr<char> loaded = newXmlBook<char>();
    ASSERT_TRUE(loaded->loadRaw(package.data(), static_cast<unsigned>(package.size()))) << loaded->errorMessage();
    auto again = savedEntries(loaded.get());
    EXPECT_EQ(again["xl/drawings/vmlDrawing1.vml"], parts["xl/drawings/vmlDrawing1.vml"]);
    EXPECT_EQ(again.count("xl/unknown.bin"), 0u);
}

TYPED_TEST(XmlBook, SheetsAreAddedInsertedCopiedAndDeleted) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* a = book->addSheet(S<T>("A").c_str());
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(book->activeSheet(), 0);
    book->addSheet(S<T>("B").c_str());
    EXPECT_EQ(book->activeSheet(), 0);
    EXPECT_EQ(book->addSheet(S<T>("b").c_str()), nullptr);
    EXPECT_STREQ(book->errorMessage(), "book already contains such sheet name");
    // Inserting before the active sheet keeps the same sheet active.
    ISheetT<T>* first = book->insertSheet(0, S<T>("First").c_str());
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(book->activeSheet(), 1);
    EXPECT_EQ(book->insertSheet(9, S<T>("Z").c_str()), nullptr);
    EXPECT_STREQ(book->errorMessage(), "index is out of range");

    a->writeNum(3, 4, 7.5);
    ISheetT<T>* copy = book->addSheet(S<T>("Copy").c_str(), book->getSheet(1));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->readNum(3, 4), 7.5);
    copy->writeNum(3, 4, 1.0);
    EXPECT_EQ(book->getSheet(1)->readNum(3, 4), 7.5);

    std::basic_string<T> long32 = S<T>("abcdefghijklmnopqrstuvwxyz012345");
    ISheetT<T>* cut = book->addSheet(long32.c_str());
    ASSERT_NE(cut, nullptr);
    EXPECT_STREQ(book->errorMessage(), "warning: sheet's name is cut to 31 characters");
    EXPECT_EQ(std::basic_string<T>(cut->name()), long32.substr(0, 31));

    ASSERT_EQ(book->sheetCount(), 5);
    EXPECT_TRUE(book->delSheet(1));
    EXPECT_EQ(book->sheetCount(), 4);
    EXPECT_EQ(std::basic_string<T>(book->getSheet(1)->name()), S<T>("B"));
    EXPECT_FALSE(book->delSheet(4));
    EXPECT_STREQ(book->errorMessage(), "index is out of range");
    while (book->sheetCount() > 1) ASSERT_TRUE(book->delSheet(0));
    EXPECT_FALSE(book->delSheet(0));
    EXPECT_STREQ(book->errorMessage(), "can't remove the last sheet in workbook");
    EXPECT_EQ(book->getSheet(3), nullptr);
    EXPECT_STREQ(book->errorMessage(), "index is out of range");
}

TEST(XmlBookSheets, PathsAreNotReusedWhileAHigherOneExists) {
    BookPtr<char> book = newXmlBook<char>();
    book->addSheet("1");
    book->addSheet("2");
    book->addSheet("3");
    ASSERT_TRUE(book->delSheet(1));
    book->addSheet("4");
    auto parts = savedEntries(book.get());
    EXPECT_EQ(parts.count("xl/worksheets/sheet4.xml"), 1u);
    EXPECT_EQ(parts.count("xl/worksheets/sheet2.xml"), 0u);
    EXPECT_TRUE(contains(parts["xl/workbook.xml"], "name=\"4\" sheetId=\"4\""));
}

TEST(XmlBookSheets, ActiveAndHiddenSheets) {
    BookPtr<char> book = newXmlBook<char>();
    ISheetT<char>* a = book->addSheet("a");
    ISheetT<char>* b = book->addSheet("b");
    book->setActiveSheet(1);
    EXPECT_EQ(book->activeSheet(), 1);
    book->setActiveSheet(5);
    EXPECT_STREQ(book->errorMessage(), "index is out of range");
    EXPECT_EQ(book->activeSheet(), 1);
    // Hiding the active sheet moves the activity to the next visible one.
    EXPECT_TRUE(b->setHidden(SheetHidden));
    EXPECT_EQ(book->activeSheet(), 0);
    EXPECT_FALSE(a->setHidden(SheetVeryHidden));
    EXPECT_STREQ(book->errorMessage(), "a workbook must contain at least one visible worksheet");
    EXPECT_EQ(b->hidden(), SheetHidden);
    EXPECT_TRUE(b->setHidden(SheetVisible));
    EXPECT_EQ(b->hidden(), SheetVisible);
}

TYPED_TEST(XmlBook, CellsOfEveryKind) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("Cells").c_str());
    ASSERT_TRUE(sheet->writeStr(0, 0, S<T>("text").c_str()));
    ASSERT_TRUE(sheet->writeNum(0, 1, 0.1));
    ASSERT_TRUE(sheet->writeBool(0, 2, true));
    ASSERT_TRUE(sheet->writeBlank(0, 3, book->format(0)));
    ASSERT_TRUE(sheet->writeFormula(0, 4, S<T>("=IF(A1=\"a;b\";SUM(B1;1);'x;y'!A1)").c_str()));
    ASSERT_TRUE(sheet->writeStr(1048575, 16383, S<T>("corner").c_str()));
    EXPECT_FALSE(sheet->writeNum(1048576, 0, 1));
    EXPECT_STREQ(book->errorMessage(), "row must be in range 0-1048575");
    EXPECT_FALSE(sheet->writeNum(1048576, 16384, 1));
    EXPECT_STREQ(book->errorMessage(), "col must be in range 0-16383");
    EXPECT_FALSE(sheet->writeNum(-1, 0, 1));
    EXPECT_FALSE(sheet->writeBlank(5, 5, nullptr));
    EXPECT_STREQ(book->errorMessage(), "format is null");

    auto check = [](IBookT<T>* book, ISheetT<T>* s) {
        EXPECT_EQ(std::basic_string<T>(s->readStr(0, 0)), S<T>("text"));
        EXPECT_EQ(s->readNum(0, 1), 0.1);
        EXPECT_TRUE(s->readBool(0, 2));
        IFormatT<T>* format = nullptr;
        EXPECT_TRUE(s->readBlank(0, 3, &format));
        EXPECT_NE(format, nullptr);
        EXPECT_EQ(std::basic_string<T>(s->readFormula(0, 4)), S<T>("IF(A1=\"a;b\";SUM(B1;1);'x;y'!A1)"));
        EXPECT_TRUE(s->isFormula(0, 4));
        EXPECT_EQ(s->cellType(0, 4), CellBlank);
        EXPECT_EQ(std::basic_string<T>(s->readStr(1048575, 16383)), S<T>("corner"));
        EXPECT_EQ(s->cellType(0, 0), CellString);
        EXPECT_EQ(s->cellType(0, 1), CellNumber);
        EXPECT_EQ(s->cellType(0, 2), CellBoolean);
        EXPECT_EQ(s->cellType(0, 3), CellBlank);
        EXPECT_EQ(s->cellType(7, 7), CellEmpty);
        EXPECT_EQ(s->readNum(0, 0), 0.0);
        EXPECT_STREQ(book->errorMessage(), "this cell doesn't contain a number");
        EXPECT_EQ(s->readStr(0, 1), nullptr);
        EXPECT_STREQ(book->errorMessage(), "this cell doesn't contain a string");
        EXPECT_FALSE(s->readBool(0, 1));
        EXPECT_STREQ(book->errorMessage(), "this cell doesn't contain a bool");
        EXPECT_FALSE(s->readBlank(0, 1, nullptr));
        EXPECT_STREQ(book->errorMessage(), "cell is not blank");
        EXPECT_EQ(s->readFormula(0, 1), nullptr);
        EXPECT_STREQ(book->errorMessage(), "this cell doesn't contain a formula");
        EXPECT_EQ(s->readError(0, 1), ErrorNone);
        EXPECT_STREQ(book->errorMessage(), "this cell doesn't contain an error");
        EXPECT_EQ(s->readStr(9, 9), nullptr);
        EXPECT_STREQ(book->errorMessage(), "cell is not found");
        EXPECT_EQ(s->firstRow(), 0);
        EXPECT_EQ(s->lastRow(), 1048576);
        EXPECT_EQ(s->firstCol(), 0);
        EXPECT_EQ(s->lastCol(), 16384);
    };
    check(book.get(), sheet);
    const char* data = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(book->saveRaw(&data, &size));
    BookPtr<T> loaded = newXmlBook<T>();
    ASSERT_TRUE(loaded->loadRaw(data, size)) << loaded->errorMessage();
    book.reset();
    check(loaded.get(), loaded->getSheet(0));
}

TEST(XmlBookCells, FormulaTextIsStoredWithCommas) {
    BookPtr<char> book = newXmlBook<char>();
    ISheetT<char>* sheet = book->addSheet("F");
    sheet->writeFormula(0, 0, "=SUM(A1;B2)");
    sheet->writeFormula(1, 0, "CONCATENATE(\"a;b\",'it''s;x'!A1)");
    auto parts = savedEntries(book.get());
    const std::string& xml = parts["xl/worksheets/sheet1.xml"];
    EXPECT_TRUE(contains(xml, "<f>SUM(A1,B2)</f>")) << xml;
    EXPECT_TRUE(contains(xml, "<f>CONCATENATE(&quot;a;b&quot;,&apos;it&apos;&apos;s;x&apos;!A1)</f>")) << xml;
    EXPECT_STREQ(sheet->readFormula(1, 0), "CONCATENATE(\"a;b\";'it''s;x'!A1)");
}

TEST(XmlBookCells, SharedStringsAreEscapedAndCounted) {
    BookPtr<wchar_t> book = newXmlBook<wchar_t>();
    ISheetT<wchar_t>* sheet = book->addSheet(L"S");
    sheet->writeStr(0, 0, L"same");
    sheet->writeStr(1, 0, L"same");
    sheet->writeStr(2, 0, L" lead");
    sheet->writeStr(3, 0, std::wstring(L"a\x01z").c_str());
    sheet->writeStr(4, 0, L"_x0065_");
    sheet->writeStr(5, 0, L"\x00e9\x4e2d\x0001f600");
    EXPECT_EQ(std::wstring(sheet->readStr(3, 0)), std::wstring(L"a\x01z"));
    // Escapes are decimal: an underscore form in the text is read as the character it names.
    EXPECT_EQ(std::wstring(sheet->readStr(4, 0)), L"A");
    // A character beyond the basic plane is escaped with more than four digits and stays so.
    EXPECT_EQ(std::wstring(sheet->readStr(5, 0)), L"\x00e9\x4e2d_x128512_");
    auto parts = savedEntries(book.get());
    const std::string& sst = parts["xl/sharedStrings.xml"];
    EXPECT_TRUE(contains(sst, "count=\"6\" uniqueCount=\"5\"")) << sst;
    EXPECT_TRUE(contains(sst, "<t xml:space=\"preserve\"> lead</t>")) << sst;
    EXPECT_TRUE(contains(sst, "<t>a_x0001_z</t>")) << sst;
}

TYPED_TEST(XmlBook, FormatsAndFontsLiveOnTheStylesheet) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("F").c_str());
    IFontT<T>* font = book->addFont();
    ASSERT_NE(font, nullptr);
    font->setName(S<T>("Arial").c_str());
    font->setSize(14);
    font->setBold();
    font->setItalic();
    font->setUnderline(UnderlineDouble);
    font->setScript(ScriptSuper);
    font->setColor(ColorRed);
    IFormatT<T>* format = book->addFormat();
    EXPECT_EQ(format->alignV(), VAlignBottom);
    EXPECT_TRUE(format->setFont(font));
    format->setNumFormat(book->addCustomNumFormat(S<T>("0.000").c_str()));
    EXPECT_EQ(format->numFormat(), 166);
    EXPECT_EQ(book->addCustomNumFormat(S<T>("0.000").c_str()), 166);
    format->setAlignH(HAlignCenter);
    format->setAlignV(VAlignTop);
    format->setWrap();
    format->setRotation(45);
    format->setIndent(2);
    format->setBorder(BorderDashed);
    format->setBorderColor(ColorBlue);
    format->setBorderDiagonal(DiagonalBoth);
    format->setBorderDiagonalStyle(BorderThick);
    format->setFillPattern(FillSolid);
    format->setPatternForegroundColor(ColorYellow);
    format->setLocked(false);
    format->setHidden(true);
    ASSERT_TRUE(sheet->writeNum(0, 0, 1.5, format));
    IFormatT<T>* dateFormat = book->addFormat();
    dateFormat->setNumFormat(NumFormatDate);
    sheet->writeNum(1, 0, book->datePack(2024, 2, 29), dateFormat);
    EXPECT_EQ(book->formatSize(), 3);
    EXPECT_EQ(book->fontSize(), 2);

    const char* data = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(book->saveRaw(&data, &size));
    BookPtr<T> loaded = newXmlBook<T>();
    ASSERT_TRUE(loaded->loadRaw(data, size));
    ISheetT<T>* s = loaded->getSheet(0);
    IFormatT<T>* f = nullptr;
    EXPECT_EQ(s->readNum(0, 0, &f), 1.5);
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(f->numFormat(), 166);
    EXPECT_EQ(std::basic_string<T>(loaded->customNumFormat(166)), S<T>("0.000"));
    EXPECT_EQ(f->alignH(), HAlignCenter);
    EXPECT_EQ(f->alignV(), VAlignTop);
    EXPECT_TRUE(f->wrap());
    EXPECT_EQ(f->rotation(), 45);
    EXPECT_EQ(f->indent(), 2);
    EXPECT_EQ(f->borderLeft(), BorderDashed);
    EXPECT_EQ(f->borderBottom(), BorderDashed);
    EXPECT_EQ(f->borderTopColor(), ColorBlue);
    EXPECT_EQ(f->borderDiagonal(), DiagonalBoth);
    EXPECT_EQ(f->borderDiagonalStyle(), BorderThick);
    EXPECT_EQ(f->fillPattern(), FillSolid);
    EXPECT_EQ(f->patternForegroundColor(), ColorYellow);
    EXPECT_FALSE(f->locked());
    EXPECT_TRUE(f->hidden());
    IFontT<T>* lf = f->font();
    ASSERT_NE(lf, nullptr);
    EXPECT_EQ(std::basic_string<T>(lf->name()), S<T>("Arial"));
    EXPECT_EQ(lf->size(), 14);
    EXPECT_TRUE(lf->bold());
    EXPECT_TRUE(lf->italic());
    EXPECT_FALSE(lf->strikeOut());
    EXPECT_EQ(lf->underline(), UnderlineDouble);
    EXPECT_EQ(lf->script(), ScriptSuper);
    EXPECT_EQ(lf->color(), ColorRed);
    EXPECT_TRUE(s->isDate(1, 0));
    EXPECT_FALSE(s->isDate(0, 0));
    int year = 0, month = 0, day = 0;
    EXPECT_TRUE(loaded->dateUnpack(s->readNum(1, 0), &year, &month, &day));
    EXPECT_EQ(year * 10000 + month * 100 + day, 20240229);

    // A format of another book is refused by the writers and copied by addFormat.
    EXPECT_FALSE(s->writeNum(2, 0, 1, format));
    EXPECT_STREQ(loaded->errorMessage(), "unknown format");
    IFormatT<T>* copied = loaded->addFormat(format);
    ASSERT_NE(copied, nullptr);
    EXPECT_EQ(copied->alignH(), HAlignCenter);
    EXPECT_EQ(copied->borderRight(), BorderDashed);
    EXPECT_EQ(copied->numFormat(), 166);
    ASSERT_NE(copied->font(), nullptr);
    EXPECT_EQ(std::basic_string<T>(copied->font()->name()), S<T>("Arial"));
    EXPECT_TRUE(s->writeNum(2, 0, 1, copied));
}

TEST(XmlBookDates, BothBases) {
    BookPtr<char> book = newXmlBook<char>();
    double d1900 = book->datePack(2000, 1, 1);
    EXPECT_EQ(d1900, 36526.0);
    book->setDate1904();
    EXPECT_TRUE(book->isDate1904());
    EXPECT_EQ(book->datePack(2000, 1, 1), d1900 - 1462);
    int y, m, d, h, mi, s, ms;
    EXPECT_TRUE(book->dateUnpack(d1900 - 1462 + 0.5, &y, &m, &d, &h, &mi, &s, &ms));
    EXPECT_EQ(y * 10000 + m * 100 + d, 20000101);
    EXPECT_EQ(h, 12);
    EXPECT_TRUE(book->dateUnpack(0.0, &y, &m, &d, &h, &mi, &s, &ms));
    EXPECT_EQ(y + m + d + h + mi + s + ms, 0);
    EXPECT_FALSE(book->dateUnpack(3e6, &y, &m, &d));
}

TEST(XmlBookProxy, StrictPackageLoadsThroughTheSecondDialectAndSavesAsStrict) {
    BookPtr<char> book = newXmlBook<char>();
    book->addSheet("S")->writeNum(0, 0, 42);
    auto parts = savedEntries(book.get());
    // The same package in the strict namespaces.
    for (auto& part : parts) {
        std::string& xml = part.second;
        for (size_t pos; (pos = xml.find("http://schemas.openxmlformats.org/spreadsheetml/2006/main")) != std::string::npos;)
            xml.replace(pos, 57, "http://purl.oclc.org/ooxml/spreadsheetml/main");
        for (size_t pos; (pos = xml.find("\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\"")) != std::string::npos;)
            xml.replace(pos, 69, "\"http://purl.oclc.org/ooxml/officeDocument/relationships\"");
    }
    std::string strict = makePackage(parts);
    std::string path = tmpPath("proxy-strict.xlsx");
    {
        FILE* f = std::fopen(path.c_str(), "wb");
        std::fwrite(strict.data(), 1, strict.size(), f);
        std::fclose(f);
    }
    BookPtr<char> proxy = newXmlBook<char>();
    EXPECT_FALSE(proxy->loadRaw(strict.data(), static_cast<unsigned>(strict.size())));
    ASSERT_TRUE(proxy->load(path.c_str())) << proxy->errorMessage();
    EXPECT_STREQ(proxy->errorMessage(), "ok");
    EXPECT_EQ(proxy->getSheet(0)->readNum(0, 0), 42.0);
    auto saved = savedEntries(proxy.get());
    EXPECT_TRUE(contains(saved["xl/workbook.xml"], "http://purl.oclc.org/ooxml/spreadsheetml/main"));
    EXPECT_TRUE(contains(saved["xl/worksheets/sheet1.xml"], "http://purl.oclc.org/ooxml/spreadsheetml/main"));
    // A transitional file afterwards switches back.
    std::string normalPath = tmpPath("proxy-normal.xlsx");
    ASSERT_TRUE(book->save(normalPath.c_str()));
    ASSERT_TRUE(proxy->load(normalPath.c_str())) << proxy->errorMessage();
    EXPECT_TRUE(contains(savedEntries(proxy.get())["xl/workbook.xml"], "http://schemas.openxmlformats.org/spreadsheetml/2006/main"));
}

}  // namespace
