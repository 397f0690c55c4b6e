// Sheet settings of XML sheets through the public interface: widths and heights with their pixel
// rounding, hidden rows and columns, outline groups, page breaks, views, print setup, margins,
// header and footer and protection; and the settings that both families keep alike.
#include <cstring>

#include "xml_test_util.h"

using namespace zelvar;
using namespace xmltest;

namespace {

template <class T>
class XmlSettings : public ::testing::Test {};
using Widths = ::testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(XmlSettings, Widths);

TYPED_TEST(XmlSettings, DefaultsWithoutElements) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
    EXPECT_EQ(sheet->zoom(), 100);
    EXPECT_EQ(sheet->printZoom(), 100);
    EXPECT_DOUBLE_EQ(sheet->marginTop(), 0.75);
    EXPECT_DOUBLE_EQ(sheet->marginLeft(), 0.7);
    EXPECT_DOUBLE_EQ(sheet->headerMargin(), 0.3);
    EXPECT_DOUBLE_EQ(sheet->footerMargin(), 0.3);
    EXPECT_TRUE(sheet->displayGridlines());
    EXPECT_FALSE(sheet->printGridlines());
    EXPECT_FALSE(sheet->landscape());
    EXPECT_FALSE(sheet->protect());
    EXPECT_TRUE(sheet->groupSummaryBelow());
    EXPECT_TRUE(sheet->groupSummaryRight());
    EXPECT_EQ(sheet->header(), nullptr);
    EXPECT_EQ(sheet->getHorPageBreakSize(), 0);
    EXPECT_EQ(sheet->getHorPageBreak(0), -1);
    int w = 0, h = 0;
    EXPECT_FALSE(sheet->getPrintFit(&w, &h));
    EXPECT_EQ(w, 1);
    EXPECT_EQ(h, 1);
    EXPECT_DOUBLE_EQ(sheet->rowHeight(3), 15.0);
    EXPECT_DOUBLE_EQ(sheet->colWidth(3), 8.43);  // 64 pixels
    int row = -1, col = -1;
    sheet->getTopLeftView(&row, &col);
    EXPECT_EQ(row, 0);
    EXPECT_EQ(col, 0);
    std::string xml = sheetXml(book.get());
    EXPECT_FALSE(contains(xml, "pageMargins"));
    EXPECT_FALSE(contains(xml, "pageSetup"));
}

TYPED_TEST(XmlSettings, WidthsGoThroughPixels) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
    EXPECT_FALSE(sheet->setCol(0, 16384, 10));
    EXPECT_STREQ(book->errorMessage(), "col must be less than 16384");
    EXPECT_FALSE(sheet->setCol(3, 2, 10));
    EXPECT_STREQ(book->errorMessage(), "colLast must be greater than or equal to colFirst");
    const struct {
        double chars, stored, back;
    } table[] = {{10, 10.7109375, 10}, {20, 20.7109375, 20}, {0.5, 0.85546875, 0.5}, {8.43, 9.140625, 8.43}, {3.3, 4.01171875, 3.29}};
    for (const auto& row : table) {
        ASSERT_TRUE(sheet->setCol(2, 2, row.chars));
        EXPECT_DOUBLE_EQ(sheet->colWidth(2), row.back) << row.chars;
    }
    sheet->setCol(2, 2, 10);
    EXPECT_TRUE(contains(sheetXml(book.get()), "<col min=\"3\" max=\"3\" width=\"10.7109375\" customWidth=\"true\"/>"));
    // Over several entries: split at both ends, holes between them stay.
    sheet->setCol(6, 6, 5);
    ASSERT_TRUE(sheet->setCol(1, 7, 12));
    EXPECT_DOUBLE_EQ(sheet->colWidth(2), 12);
    EXPECT_DOUBLE_EQ(sheet->colWidth(6), 12);
    EXPECT_DOUBLE_EQ(sheet->colWidth(4), 8.43);
    EXPECT_DOUBLE_EQ(sheet->colWidth(1), 12);
    EXPECT_DOUBLE_EQ(sheet->colWidth(7), 12);
    // Hidden columns keep their width.
    ASSERT_TRUE(sheet->setColHidden(2, true));
    EXPECT_TRUE(sheet->colHidden(2));
    EXPECT_DOUBLE_EQ(sheet->colWidth(2), 12);
    ASSERT_TRUE(sheet->setColHidden(2, false));
    EXPECT_FALSE(sheet->colHidden(2));
}

TYPED_TEST(XmlSettings, RowsHeightsHiddenAndGroups) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
    ASSERT_TRUE(sheet->setRow(2, 30));
    EXPECT_DOUBLE_EQ(sheet->rowHeight(2), 30);
    ASSERT_TRUE(sheet->setRowHidden(4, true));
    EXPECT_TRUE(sheet->rowHidden(4));
    ASSERT_TRUE(sheet->setRowHidden(4, false));
    EXPECT_FALSE(sheet->rowHidden(4));
    EXPECT_TRUE(contains(sheetXml(book.get()), "<row r=\"3\" ht=\"30\" customHeight=\"true\"/><row r=\"5\"/>"));

    EXPECT_FALSE(sheet->groupRows(5, 4));
    EXPECT_STREQ(book->errorMessage(), "must be rowFirst <= rowLast");
    ASSERT_TRUE(sheet->groupRows(10, 12, false));
    ASSERT_TRUE(sheet->groupRows(10, 12, true));  // twice deepens by one
    std::string xml = sheetXml(book.get());
    EXPECT_TRUE(contains(xml, "<row r=\"11\" hidden=\"true\" outlineLevel=\"2\"/>"));
    EXPECT_TRUE(contains(xml, "<row r=\"14\" collapsed=\"true\"/>"));
    EXPECT_FALSE(sheet->groupRows(9, 11, false));
    EXPECT_STREQ(book->errorMessage(), "detect overlap");
    // The first row is cut to its low 16 bits; the end stays on the full number.
    ASSERT_TRUE(sheet->groupRows(65536 + 20, 65536 + 20, false));
    EXPECT_TRUE(contains(sheetXml(book.get()), "<row r=\"21\" outlineLevel=\"1\"/>"));

    EXPECT_FALSE(sheet->groupCols(3, 2));
    EXPECT_STREQ(book->errorMessage(), "must be colFirst <= colLast");
    ASSERT_TRUE(sheet->groupCols(1, 2, true));
    EXPECT_TRUE(sheet->colHidden(1));
    xml = sheetXml(book.get());
    EXPECT_TRUE(contains(xml, "outlineLevel=\"1\""));
    EXPECT_TRUE(contains(xml, "<col min=\"4\" max=\"4\" width=\"9.140625\" collapsed=\"true\"/>"));
    sheet->setGroupSummaryBelow(false);
    sheet->setGroupSummaryRight(false);
    EXPECT_FALSE(sheet->groupSummaryBelow());
    EXPECT_FALSE(sheet->groupSummaryRight());
    EXPECT_TRUE(contains(sheetXml(book.get()), "<outlinePr summaryBelow=\"false\" summaryRight=\"false\"/>"));
}

TYPED_TEST(XmlSettings, PageBreaksDeleteOneBelowTheirId) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
    ASSERT_TRUE(sheet->setHorPageBreak(5, true));
    ASSERT_TRUE(sheet->setHorPageBreak(5, true));  // taken again, not added
    ASSERT_TRUE(sheet->setHorPageBreak(9, true));
    ASSERT_TRUE(sheet->setVerPageBreak(3, true));
    EXPECT_EQ(sheet->getHorPageBreakSize(), 2);
    EXPECT_EQ(sheet->getHorPageBreak(1), 9);
    EXPECT_EQ(sheet->getVerPageBreak(0), 3);
    std::string xml = sheetXml(book.get());
    EXPECT_TRUE(contains(xml, "<rowBreaks count=\"2\" manualBreakCount=\"2\"><brk id=\"5\" max=\"16383\" man=\"true\"/><brk id=\"9\" max=\"16383\" man=\"true\"/></rowBreaks>"));
    EXPECT_TRUE(contains(xml, "<colBreaks count=\"1\" manualBreakCount=\"1\"><brk id=\"3\" max=\"1048575\" man=\"true\"/></colBreaks>"));
    EXPECT_FALSE(sheet->setHorPageBreak(5, false));
    EXPECT_STREQ(book->errorMessage(), "pagebreak not found");
    ASSERT_TRUE(sheet->setHorPageBreak(4, false));
    ASSERT_TRUE(sheet->setHorPageBreak(8, false));
    ASSERT_TRUE(sheet->setVerPageBreak(2, false));
    EXPECT_EQ(sheet->getHorPageBreakSize(), 0);
    xml = sheetXml(book.get());
    EXPECT_FALSE(contains(xml, "rowBreaks"));
    EXPECT_FALSE(contains(xml, "colBreaks"));
}

TYPED_TEST(XmlSettings, ViewsPrintSetupMarginsHeaderFooterProtection) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
    sheet->setZoom(150);
    sheet->setDisplayGridlines(false);
    sheet->setTopLeftView(3, 2);
    sheet->split(2, 1);
    EXPECT_EQ(sheet->zoom(), 150);
    EXPECT_FALSE(sheet->displayGridlines());
    int row, col;
    sheet->getTopLeftView(&row, &col);
    EXPECT_EQ(row, 3);
    EXPECT_EQ(col, 2);
    std::string xml = sheetXml(book.get());
    EXPECT_TRUE(contains(xml, "showGridLines=\"false\""));
    EXPECT_TRUE(contains(xml, "zoomScale=\"150\" zoomScaleNormal=\"150\""));
    EXPECT_TRUE(contains(xml, "<pane xSplit=\"1\" ySplit=\"2\" topLeftCell=\"B3\" activePane=\"bottomRight\" state=\"frozenSplit\"/>"));

    sheet->setMarginLeft(1.0);
    EXPECT_TRUE(contains(sheetXml(book.get()), "<pageMargins left=\"1\" right=\"0.7\" top=\"0.75\" bottom=\"0.75\" header=\"0.3\" footer=\"0.3\"/>"));
    sheet->setMarginRight(1.5);
    sheet->setMarginTop(2);
    sheet->setMarginBottom(2.5);
    EXPECT_DOUBLE_EQ(sheet->marginRight(), 1.5);
    EXPECT_DOUBLE_EQ(sheet->marginBottom(), 2.5);
    ASSERT_TRUE(sheet->setHeader(S<T>("&CTitle").c_str(), 0.4));
    ASSERT_TRUE(sheet->setFooter(S<T>("&P").c_str(), 0.6));
    EXPECT_EQ(std::basic_string<T>(sheet->header()), S<T>("&CTitle"));
    EXPECT_EQ(std::basic_string<T>(sheet->footer()), S<T>("&P"));
    EXPECT_DOUBLE_EQ(sheet->headerMargin(), 0.4);
    EXPECT_DOUBLE_EQ(sheet->footerMargin(), 0.6);

    sheet->setPrintFit(2, 3);
    int w, h;
    EXPECT_TRUE(sheet->getPrintFit(&w, &h));
    EXPECT_EQ(w, 2);
    EXPECT_EQ(h, 3);
    sheet->setPrintZoom(80);  // a scale turns the fit off
    EXPECT_FALSE(sheet->getPrintFit(&w, &h));
    EXPECT_EQ(sheet->printZoom(), 80);
    sheet->setLandscape(true);
    sheet->setPaper(PaperA4);
    sheet->setPrintGridlines(true);
    sheet->setPrintRowCol(true);
    sheet->setHCenter(true);
    sheet->setVCenter(true);
    EXPECT_TRUE(sheet->landscape());
    EXPECT_EQ(sheet->paper(), PaperA4);
    EXPECT_TRUE(sheet->printGridlines() && sheet->printRowCol() && sheet->hCenter() && sheet->vCenter());
    sheet->setProtect(true);
    EXPECT_TRUE(sheet->protect());
    xml = sheetXml(book.get());
    EXPECT_TRUE(contains(xml, "<sheetProtection sheet=\"true\" objects=\"true\" scenarios=\"true\"/>"));
    EXPECT_TRUE(contains(xml, "<printOptions horizontalCentered=\"true\" verticalCentered=\"true\" headings=\"true\" gridLines=\"true\"/>"));
    EXPECT_TRUE(contains(xml, "orientation=\"landscape\""));
    EXPECT_TRUE(contains(xml, "<oddHeader>&amp;CTitle</oddHeader>"));
    sheet->setLandscape(false);
    sheet->setProtect(false);
    sheet->setPrintGridlines(false);
    EXPECT_FALSE(sheet->landscape());
    EXPECT_FALSE(sheet->protect());
    EXPECT_FALSE(sheet->printGridlines());

    // All of it comes back from the file.
    const char* data = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(book->saveRaw(&data, &size));
    std::string bytes(data, size);
    BookPtr<T> again = newXmlBook<T>();
    ASSERT_TRUE(again->loadRaw(bytes.data(), static_cast<unsigned>(bytes.size()))) << again->errorMessage();
    ISheetT<T>* loaded = again->getSheet(0);
    EXPECT_EQ(loaded->zoom(), 150);
    EXPECT_DOUBLE_EQ(loaded->marginTop(), 2);
    EXPECT_EQ(loaded->paper(), PaperA4);
    EXPECT_EQ(std::basic_string<T>(loaded->footer()), S<T>("&P"));
}

TYPED_TEST(XmlSettings, NamedRangesPrintAreaAndTitles) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* first = book->addSheet(S<T>("First").c_str());
    ISheetT<T>* sheet = book->addSheet(S<T>("My sheet").c_str());
    EXPECT_FALSE(sheet->setNamedRange(S<T>("a b").c_str(), 0, 0, 0, 0));
    EXPECT_STREQ(book->errorMessage(), "space symbol isn't allowed");
    ASSERT_TRUE(sheet->setNamedRange(S<T>("Block").c_str(), 1, 2, 0, 1));
    ASSERT_TRUE(sheet->setNamedRange(S<T>("Block").c_str(), 1, 3, 0, 1));  // overwritten
    ASSERT_TRUE(sheet->setNamedRange(S<T>("BLOCK").c_str(), 4, 4, 2, 2));  // another case: a second entry
    ASSERT_TRUE(first->setNamedRange(S<T>("Other").c_str(), 0, 0, 0, 0));
    EXPECT_EQ(sheet->namedRangeSize(), 2);
    EXPECT_EQ(first->namedRangeSize(), 1);
    int r1, r2, c1, c2;
    ASSERT_TRUE(sheet->getNamedRange(S<T>("block").c_str(), &r1, &r2, &c1, &c2));  // case doesn't matter
    EXPECT_EQ(r1, 1);
    EXPECT_EQ(r2, 3);
    EXPECT_EQ(c2, 1);
    EXPECT_EQ(std::basic_string<T>(sheet->namedRange(1, &r1, &r2, &c1, &c2)), S<T>("BLOCK"));
    EXPECT_EQ(r1, 4);
    EXPECT_EQ(c1, 2);
    EXPECT_EQ(sheet->namedRange(2, &r1, &r2, &c1, &c2), nullptr);
    EXPECT_STREQ(book->errorMessage(), "index is out of range");
    EXPECT_FALSE(sheet->getNamedRange(S<T>("Other").c_str(), &r1, &r2, &c1, &c2));
    EXPECT_STREQ(book->errorMessage(), "named range is not found");

    sheet->setPrintArea(0, 9, 0, 3);
    sheet->setPrintRepeatRows(0, 1);
    sheet->setPrintRepeatCols(0, 1);
    std::string workbook = savedEntries(book.get())["xl/workbook.xml"];
    EXPECT_TRUE(contains(workbook, "<definedName name=\"Block\" localSheetId=\"1\">&apos;My sheet&apos;!$A$2:$B$4</definedName>")) << workbook;
    EXPECT_TRUE(contains(workbook, "<definedName name=\"_xlnm.Print_Area\" localSheetId=\"1\">&apos;My sheet&apos;!$A$1:$D$10</definedName>")) << workbook;
    EXPECT_TRUE(contains(workbook, "<definedName name=\"_xlnm.Print_Titles\" localSheetId=\"1\">&apos;My sheet&apos;!$1:$2,&apos;My sheet&apos;!$A:$B</definedName>")) << workbook;
    ASSERT_TRUE(sheet->delNamedRange(S<T>("Block").c_str()));
    EXPECT_FALSE(sheet->delNamedRange(S<T>("Block").c_str()));
    EXPECT_STREQ(book->errorMessage(), "named range not found");
    sheet->clearPrintArea();
    sheet->clearPrintRepeats();
    EXPECT_STREQ(book->errorMessage(), "ok");
    workbook = savedEntries(book.get())["xl/workbook.xml"];
    EXPECT_FALSE(contains(workbook, "_xlnm"));
}

// Renaming a sheet rewrites the defined names that refer to it by its quoted name followed by
// "!", and nothing else: not a longer name ending in the old one, not text in double quotes, not
// a function name that begins like it.
TYPED_TEST(XmlSettings, RenameRewritesTheNamesThatReferToTheSheet) {
    using T = TypeParam;
    struct Case {
        const char *oldName, *newName, *text, *expected;
    };
    const Case cases[] = {
        {"S", "T", "S!$A$1", "T!$A$1"},
        {"S", "T", "SUM(S!$A$1,S!$B$2)", "SUM(T!$A$1,T!$B$2)"},
        {"S", "T", "SS!$A$1+Sales!$A$1", "SS!$A$1+Sales!$A$1"},
        {"S", "T", "\"S!\"&S!A1", "\"S!\"&T!A1"},
        {"S", "My sheet", "S!$A$1:$B$2", "'My sheet'!$A$1:$B$2"},
        {"a-b", "ab", "'a-b'!$A$1,'xa-b'!$A$1", "ab!$A$1,'xa-b'!$A$1"},
        {"My sheet", "Yours", "'My sheet'!$1:$2,'My sheet'!$A:$B", "Yours!$1:$2,Yours!$A:$B"},
        {"Data", "Data 2", "Data", "Data"},  // a constant without a sheet reference
        {"it's", "it is", "it's!$C$3", "'it is'!$C$3"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        BookPtr<T> book = newXmlBook<T>();
        book->addSheet(S<T>(c.oldName).c_str());
        auto parts = savedEntries(book.get());
        std::string& workbook = parts["xl/workbook.xml"];
        std::string escaped;
        for (const char* p = c.text; *p; ++p) escaped += *p == '&' ? std::string("&amp;") : *p == '"' ? std::string("&quot;") : std::string(1, *p);
        workbook.insert(workbook.find("</sheets>") + 9, "<definedNames><definedName name=\"N\">" + escaped + "</definedName></definedNames>");
        std::string bytes = makePackage(parts);
        book.reset(newXmlBook<T>().release());
        ASSERT_TRUE(book->loadRaw(bytes.data(), static_cast<unsigned>(bytes.size()))) << book->errorMessage();
        book->getSheet(0)->setName(S<T>(c.newName).c_str());
        EXPECT_STREQ(book->errorMessage(), "ok");
        std::string saved = savedEntries(book.get())["xl/workbook.xml"];
        size_t from = saved.find("<definedName name=\"N\">") + 22, to = saved.find("</definedName>");
        ASSERT_LT(from, to) << saved;
        std::string text = saved.substr(from, to - from);
        for (const char* entity : {"&apos;", "&quot;", "&amp;"})
            for (size_t pos; (pos = text.find(entity)) != std::string::npos;)
                text.replace(pos, std::strlen(entity), entity[1] == 'a' && entity[2] == 'p' ? "'" : entity[1] == 'q' ? "\"" : "&");
        EXPECT_EQ(text, c.expected);
    }
}

// Settings that both families keep alike, over both factories.
template <class T>
IBookT<T>* createBinaryBook();
template <>
IBookT<char>* createBinaryBook<char>() { return zvCreateBookA(); }
template <>
IBookT<wchar_t>* createBinaryBook<wchar_t>() { return zvCreateBookW(); }

TYPED_TEST(XmlSettings, BothFamiliesAlike) {
    using T = TypeParam;
    for (int family = 0; family < 2; ++family) {
        SCOPED_TRACE(family ? "binary" : "xml");
        BookPtr<T> book(family ? createBinaryBook<T>() : createXmlBook<T>());
        ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
        ASSERT_NE(sheet, nullptr);
        ASSERT_TRUE(sheet->setRow(1, 25.5));
        EXPECT_DOUBLE_EQ(sheet->rowHeight(1), 25.5);
        ASSERT_TRUE(sheet->setRowHidden(3, true));
        EXPECT_TRUE(sheet->rowHidden(3));
        ASSERT_TRUE(sheet->setMerge(1, 2, 1, 3));
        int r1, r2, c1, c2;
        ASSERT_TRUE(sheet->getMerge(2, 2, &r1, &r2, &c1, &c2));
        EXPECT_EQ(r1, 1);
        EXPECT_EQ(r2, 2);
        EXPECT_EQ(c1, 1);
        EXPECT_EQ(c2, 3);
        ASSERT_TRUE(sheet->delMerge(1, 1));
        EXPECT_FALSE(sheet->getMerge(2, 2, &r1, &r2, &c1, &c2));
        sheet->setLandscape(true);
        EXPECT_TRUE(sheet->landscape());
        sheet->setPaper(PaperLetter);
        EXPECT_EQ(sheet->paper(), PaperLetter);
        sheet->setMarginLeft(1.25);
        EXPECT_DOUBLE_EQ(sheet->marginLeft(), 1.25);
        sheet->setZoom(120);
        EXPECT_EQ(sheet->zoom(), 120);
        sheet->setPrintZoom(90);
        EXPECT_EQ(sheet->printZoom(), 90);
        sheet->setProtect(true);
        EXPECT_TRUE(sheet->protect());
        ASSERT_TRUE(sheet->setHeader(S<T>("&LLeft").c_str(), 0.5));
        EXPECT_EQ(std::basic_string<T>(sheet->header()), S<T>("&LLeft"));
        ASSERT_TRUE(sheet->setNamedRange(S<T>("Area").c_str(), 1, 4, 2, 3));
        ASSERT_TRUE(sheet->getNamedRange(S<T>("Area").c_str(), &r1, &r2, &c1, &c2));
        EXPECT_EQ(r1, 1);
        EXPECT_EQ(r2, 4);
        EXPECT_EQ(c1, 2);
        EXPECT_EQ(c2, 3);
        EXPECT_EQ(sheet->namedRangeSize(), 1);
        ASSERT_TRUE(sheet->delNamedRange(S<T>("Area").c_str()));
        EXPECT_EQ(sheet->namedRangeSize(), 0);
    }
}

}  // namespace
