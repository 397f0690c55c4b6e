// Books this library writes, read by independent programs: python3-openpyxl sees every sheet,
// cell kind, format and state we wrote, ssconvert reads the same values, and every part we write
// is valid against the published schemas (xmllint). Each check skips with a message when its
// tool is missing.
#include <cstdio>
#include <fstream>
#include <set>
#include <sstream>

#include "xml_test_util.h"

using namespace zelvar;
using namespace xmltest;

namespace {

bool haveOpenpyxl() {
    int status = -1;
    run(std::string(ZELVAR_PYTHON) + " -c 'import openpyxl' 2>/dev/null", &status);
    return status == 0;
}

std::string checker() { return std::string(ZELVAR_SOURCE_DIR) + "/tests/xmlbook/xlsx_interop_check.py"; }

// A book with every cell kind, formats, non-ASCII text, dates and sheet states. The far corner
// of the grid is left out for converters that write every row and column up to the last cell.
// Each test names its own file: ctest runs tests in parallel processes.
std::string writeRichBook(const std::string& name, bool farCorner = true) {
    BookPtr<char> book = newXmlBook<char>();
    book->setLocale("UTF-8");
    ISheetT<char>* main = book->addSheet("Main");
    ISheetT<char>* far = book->addSheet("Far \xc3\xa9t\xc3\xa9");
    ISheetT<char>* hidden = book->addSheet("Hidden");
    IFontT<char>* font = book->addFont();
    font->setName("Arial");
    font->setSize(14);
    font->setBold();
    font->setItalic();
    font->setUnderline(UnderlineSingle);
    IFormatT<char>* styled = book->addFormat();
    styled->setFont(font);
    styled->setBorderLeft(BorderThin);
    styled->setBorderBottom(BorderDouble);
    styled->setFillPattern(FillSolid);
    styled->setPatternForegroundColor(ColorYellow);
    styled->setAlignH(HAlignCenter);
    styled->setWrap();
    styled->setNumFormat(book->addCustomNumFormat("0.000"));
    IFormatT<char>* date = book->addFormat();
    date->setNumFormat(NumFormatDate);

    main->writeStr(0, 0, "plain");
    main->writeStr(0, 1, "\xe4\xb8\xad\xe6\x96\x87 \xc3\xbc\xc3\x9f");
    main->writeNum(1, 0, 3.25, styled);
    main->writeNum(1, 1, -1e-7);
    main->writeBool(2, 0, true);
    main->writeBool(2, 1, false);
    main->writeNum(3, 0, book->datePack(2024, 2, 29, 13, 30, 0), date);
    main->writeFormula(4, 0, "SUM(A2;1)");
    main->writeFormula(4, 1, "IF(A3;\"yes;no\";\"no\")");
    main->writeStr(5, 0, " leading and trailing ");
    far->writeNum(70000, 0, 1.5);
    if (farCorner) {
        far->writeStr(1048575, 16383, "corner");
        far->writeNum(10, 300, 42);
    }
    hidden->writeStr(0, 0, "secret");
    hidden->setHidden(SheetHidden);
    book->setActiveSheet(1);
    std::string path = tmpPath(name);
    EXPECT_TRUE(book->save(path.c_str())) << book->errorMessage();
    return path;
}

bool has(const std::string& text, const std::string& line) { return text.find(line + "\n") != std::string::npos; }

TEST(XlsxInterop, OpenpyxlReadsEveryKindFormatAndState) {
    if (!haveOpenpyxl()) GTEST_SKIP() << "python3-openpyxl is not installed";
    std::string path = writeRichBook("interop-rich-openpyxl.xlsx");
    std::string seen = run(std::string(ZELVAR_PYTHON) + " " + checker() + " " + path + " small 2>&1");
    EXPECT_TRUE(has(seen, "A\t1")) << seen;
    EXPECT_TRUE(has(seen, "S\tMain\tvisible")) << seen;
    EXPECT_TRUE(has(seen, "S\tFar \xc3\xa9t\xc3\xa9\tvisible")) << seen;
    EXPECT_TRUE(has(seen, "S\tHidden\thidden")) << seen;
    EXPECT_TRUE(has(seen, "C\tMain\t0\t0\tstr\tplain")) << seen;
    EXPECT_TRUE(has(seen, "C\tMain\t0\t1\tstr\t\xe4\xb8\xad\xe6\x96\x87 \xc3\xbc\xc3\x9f")) << seen;
    EXPECT_TRUE(has(seen, "C\tMain\t1\t0\tfloat\t3.25")) << seen;
    EXPECT_TRUE(has(seen, "C\tMain\t1\t1\tfloat\t-9.9999999999999995e-08")) << seen;
    EXPECT_TRUE(has(seen, "C\tMain\t2\t0\tbool\tTrue")) << seen;
    EXPECT_TRUE(has(seen, "C\tMain\t2\t1\tbool\tFalse")) << seen;
    EXPECT_TRUE(has(seen, "C\tMain\t3\t0\tdatetime\t2024-02-29 13:30:00")) << seen;
    EXPECT_TRUE(has(seen, "C\tMain\t4\t0\tstr\t=SUM(A2,1)")) << seen;
    EXPECT_TRUE(has(seen, "C\tMain\t4\t1\tstr\t=IF(A3,\"yes;no\",\"no\")")) << seen;
    EXPECT_TRUE(has(seen, "C\tMain\t5\t0\tstr\t leading and trailing ")) << seen;
    EXPECT_TRUE(has(seen, "F\tMain\t1\t0\tfont=Arial,14,True,True,single\tnum=0.000\tfill=solid\tborder=thin,double\talign=center,True")) << seen;
    EXPECT_TRUE(has(seen, "C\tFar \xc3\xa9t\xc3\xa9\t70000\t0\tfloat\t1.5")) << seen;
    EXPECT_TRUE(has(seen, "C\tFar \xc3\xa9t\xc3\xa9\t1048575\t16383\tstr\tcorner")) << seen;
    EXPECT_TRUE(has(seen, "C\tFar \xc3\xa9t\xc3\xa9\t10\t300\tint\t42") || has(seen, "C\tFar \xc3\xa9t\xc3\xa9\t10\t300\tfloat\t42")) << seen;
    EXPECT_TRUE(has(seen, "C\tHidden\t0\t0\tstr\tsecret")) << seen;
}

TEST(XlsxInterop, OpenpyxlReadsAMillionCells) {
    if (!haveOpenpyxl()) GTEST_SKIP() << "python3-openpyxl is not installed";
    BookPtr<char> book = newXmlBook<char>();
    ISheetT<char>* sheet = book->addSheet("Big");
    double sum = 0;
    for (int row = 0; row < 2000; ++row)
        for (int col = 0; col < 500; ++col) {
            double value = row * 0.5 + col;
            sum += value;
            ASSERT_TRUE(sheet->writeNum(row, col, value));
        }
    std::string path = tmpPath("interop-big.xlsx");
    ASSERT_TRUE(book->save(path.c_str())) << book->errorMessage();
    std::string seen = run(std::string(ZELVAR_PYTHON) + " " + checker() + " " + path + " big 2>&1");
    char expected[128];
    std::snprintf(expected, sizeof expected, "B\tBig\t1000000\t%.17g\t1999\t499", sum);
    EXPECT_TRUE(has(seen, expected)) << seen << " expected " << expected;
}

TEST(XlsxInterop, SsconvertReadsTheValues) {
    int status = -1;
    run("command -v ssconvert >/dev/null 2>&1", &status);
    if (status != 0) GTEST_SKIP() << "ssconvert is not installed";
    std::string path = writeRichBook("interop-near.xlsx", false);
    std::string csv = tmpPath("interop-near.csv");
    run("ssconvert -S --export-type=Gnumeric_stf:stf_csv '" + path + "' '" + csv + ".%n' 2>/dev/null", &status);
    ASSERT_EQ(status, 0);
    std::ifstream first(csv + ".0");
    std::stringstream text;
    text << first.rdbuf();
    std::string main = text.str();
    EXPECT_NE(main.find("plain,\"\xe4\xb8\xad\xe6\x96\x87 \xc3\xbc\xc3\x9f\"\n"), std::string::npos) << main;
    EXPECT_NE(main.find("3.25,-9.9999999999999995E-08\n"), std::string::npos) << main;
    EXPECT_NE(main.find("TRUE,FALSE\n"), std::string::npos) << main;
    EXPECT_NE(main.find("\"2024/02/29 13:30:00\","), std::string::npos) << main;
    // The formulas are recalculated by the reader from the text we stored.
    EXPECT_NE(main.find("4.25,yes;no\n"), std::string::npos) << main;
    EXPECT_NE(main.find("\" leading and trailing \","), std::string::npos) << main;
    std::ifstream third(csv + ".2");
    std::stringstream hiddenText;
    hiddenText << third.rdbuf();
    EXPECT_EQ(hiddenText.str(), "secret\n");
}

TEST(XlsxInterop, PartsAreValidAgainstThePublishedSchemas) {
    std::string schemas = std::string(ZELVAR_SHARED_DIR) + "/schemas";
    if (!std::ifstream(schemas + "/transitional/sml.xsd")) GTEST_SKIP() << "no schemas at " << schemas;
    int status = -1;
    run("command -v xmllint >/dev/null 2>&1", &status);
    if (status != 0) GTEST_SKIP() << "xmllint is not installed";
    std::string path = writeRichBook("interop-rich-schemas.xlsx");
    std::ifstream in(path, std::ios::binary);
    std::stringstream bytes;
    bytes << in.rdbuf();
    std::string package = bytes.str();
    auto parts = entries(package.data(), static_cast<unsigned>(package.size()));
    for (const auto& part : parts) {
        std::string schema = schemas + "/transitional/sml.xsd";
        if (part.first.find(".rels") != std::string::npos) schema = schemas + "/opc/opc-relationships.xsd";
        if (part.first == "[Content_Types].xml") schema = schemas + "/opc/opc-contentTypes.xsd";
        std::string file = tmpPath("interop-part.xml");
        // The published schema declares no xml:space on the text of a string item, though the
        // attribute is how every writer keeps blanks at the ends of a text: it is left out here.
        std::string xml = part.second;
        for (size_t pos; (pos = xml.find(" xml:space=\"preserve\"")) != std::string::npos;) xml.erase(pos, 21);
        std::ofstream(file, std::ios::binary) << xml;
        std::string out = run("xmllint --noout --schema '" + schema + "' '" + file + "' 2>&1", &status);
        EXPECT_EQ(status, 0) << part.first << ": " << out;
    }
}

}  // namespace
