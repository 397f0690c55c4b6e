// Sheets we edit and set up, read by independent programs: python3-openpyxl sees the widths,
// heights, hidden state, merges, panes, page setup, margins, breaks, header and pictures we wrote,
// ssconvert reads the shifted values and sees the pictures at their anchors, and the sheet and
// drawing parts are valid against the published schemas. Each check skips with a message when its
// tool is missing.
#include <cstdio>
#include <fstream>
#include <sstream>

#include "xml_test_util.h"

using namespace zelvar;
using namespace xmltest;

namespace {

bool has(const std::string& text, const std::string& line) { return text.find(line + "\n") != std::string::npos; }

std::string writeLaidOutBook() {
    BookPtr<char> book = newXmlBook<char>();
    ISheetT<char>* sheet = book->addSheet("Laid out");
    for (int r = 0; r < 6; ++r)
        for (int c = 0; c < 4; ++c) sheet->writeNum(r, c, r * 10 + c);
    sheet->insertRow(2, 2);  // values of rows 2 and on move one down
    sheet->removeCol(1, 1);  // values of columns 2 and on move one left
    sheet->setCol(4, 5, 20);
    sheet->setColHidden(6, true);
    sheet->setRow(1, 30);
    sheet->setRowHidden(8, true);
    sheet->setMerge(10, 11, 0, 2);
    sheet->split(1, 1);
    sheet->setZoom(125);
    sheet->setDisplayGridlines(false);
    sheet->setLandscape(true);
    sheet->setPaper(PaperA4);
    sheet->setPrintZoom(80);
    sheet->setMarginLeft(1.25);
    sheet->setHeader("&CReport", 0.4);
    sheet->setHorPageBreak(20, true);
    sheet->setVerPageBreak(3, true);
    sheet->setProtect(true);
    std::string image = wholePng(150, 40);
    int id = book->addPicture2(image.data(), static_cast<unsigned>(image.size()));
    EXPECT_EQ(id, 0) << book->errorMessage();
    sheet->setPicture2(12, 1, id, 150, 40);
    // A second picture at its own size, 50 pixels right of and 10 below the corner of B17: its 30
    // by 20 pixels reach 16 pixels into column C and 10 into row 18.
    std::string small = wholePng(30, 20);
    int second = book->addPicture2(small.data(), static_cast<unsigned>(small.size()));
    sheet->setPicture(16, 1, second, 1.0, 50, 10);
    std::string path = tmpPath("interop-layout.xlsx");
    EXPECT_TRUE(book->save(path.c_str())) << book->errorMessage();
    return path;
}

TEST(XlsxLayoutInterop, OpenpyxlReadsLayoutPrintSettingsAndPictures) {
    int status = -1;
    run(std::string(ZELVAR_PYTHON) + " -c 'import openpyxl' 2>/dev/null", &status);
    if (status != 0) GTEST_SKIP() << "python3-openpyxl is not installed";
    std::string path = writeLaidOutBook();
    std::string seen = run(std::string(ZELVAR_PYTHON) + " " + ZELVAR_SOURCE_DIR + "/tests/xmlbook/xlsx_layout_check.py " + path + " 2>&1");
    EXPECT_TRUE(has(seen, "COL\tLaid out\t5\t6\t20.7109375\tFalse\t0")) << seen;
    EXPECT_TRUE(has(seen, "COL\tLaid out\t7\t7\t9.140625\tTrue\t0")) << seen;
    EXPECT_TRUE(has(seen, "ROW\tLaid out\t2\t30.0\tFalse\t0")) << seen;
    EXPECT_TRUE(has(seen, "ROW\tLaid out\t9\tNone\tTrue\t0")) << seen;
    EXPECT_TRUE(has(seen, "MERGE\tLaid out\tA11:C12")) << seen;
    EXPECT_TRUE(has(seen, "FREEZE\tLaid out\tB2")) << seen;
    EXPECT_TRUE(has(seen, "ZOOM\tLaid out\t125\tFalse")) << seen;
    EXPECT_TRUE(has(seen, "PAGE\tLaid out\tlandscape\t9\t80")) << seen;
    EXPECT_TRUE(has(seen, "MARGINS\tLaid out\t1.25\t0.7\t0.75\t0.75\t0.4\t0.3")) << seen;
    EXPECT_TRUE(has(seen, "BREAKS\tLaid out\t[20]\t[3]")) << seen;
    EXPECT_TRUE(has(seen, "HEADER\tLaid out\tReport")) << seen;
    EXPECT_TRUE(has(seen, "PROTECT\tLaid out\tTrue")) << seen;
    // 150 pixels from column B: two columns of 64, then 22 pixels into column D.
    EXPECT_TRUE(has(seen, "IMAGE\txl/drawings/drawing1.xml\t12\t1\t14\t3\t209550\trId1")) << seen;
    // With an imaging library openpyxl loads the picture itself, at its anchor and with its size.
    if (has(seen, "IMAGING\tTrue")) {
        EXPECT_TRUE(has(seen, "PICTURE\tLaid out\t12\t1\t0\t0\t14\t3\t150\t40")) << seen;
        EXPECT_TRUE(has(seen, "PICTURE\tLaid out\t16\t1\t95250\t476250\t17\t2\t30\t20")) << seen;
    } else {
        std::printf("no imaging library for python3: openpyxl's own picture loading is not checked\n");
    }
    EXPECT_TRUE(has(seen, "C\tLaid out\t0\t1\t2")) << seen;
    EXPECT_TRUE(has(seen, "C\tLaid out\t3\t0\t20")) << seen;
    EXPECT_TRUE(has(seen, "C\tLaid out\t6\t2\t53")) << seen;
}

TEST(XlsxLayoutInterop, SsconvertReadsTheShiftedValues) {
    int status = -1;
    run("command -v ssconvert >/dev/null 2>&1", &status);
    if (status != 0) GTEST_SKIP() << "ssconvert is not installed";
    std::string path = writeLaidOutBook();
    std::string csv = tmpPath("interop-layout.csv");
    run("ssconvert -S --export-type=Gnumeric_stf:stf_csv '" + path + "' '" + csv + ".%n' 2>/dev/null", &status);
    ASSERT_EQ(status, 0);
    std::ifstream in(csv + ".0");
    std::stringstream text;
    text << in.rdbuf();
    std::string values = text.str();
    EXPECT_EQ(values.find("0,2,3,\n10,12,13,\n,,,\n20,22,23,\n"), 0u) << values;
    EXPECT_NE(values.find("\n50,52,53,\n"), std::string::npos) << values;
}

// ssconvert reads our pictures as image objects over the cells of their anchors.
TEST(XlsxLayoutInterop, SsconvertSeesThePicturesAtTheirAnchors) {
    int status = -1;
    run("command -v ssconvert >/dev/null 2>&1 && command -v zcat >/dev/null 2>&1", &status);
    if (status != 0) GTEST_SKIP() << "ssconvert or zcat is not installed";
    std::string path = writeLaidOutBook();
    std::string native = tmpPath("interop-layout.gnumeric");
    run("ssconvert '" + path + "' '" + native + "' 2>/dev/null", &status);
    ASSERT_EQ(status, 0);
    std::string xml = run("zcat '" + native + "'");
    size_t images = 0;
    for (size_t pos = 0; (pos = xml.find("<gnm:SheetObjectImage ", pos)) != std::string::npos; ++pos) ++images;
    EXPECT_EQ(images, 2u) << xml.substr(0, 2000);
    EXPECT_NE(xml.find("ObjectBound=\"B13:D15\""), std::string::npos);
    EXPECT_NE(xml.find("ObjectBound=\"B17:C18\""), std::string::npos);
}

TEST(XlsxLayoutInterop, SheetAndDrawingPartsAreValid) {
    std::string schemas = std::string(ZELVAR_SHARED_DIR) + "/schemas/transitional";
    if (!std::ifstream(schemas + "/sml.xsd")) GTEST_SKIP() << "no schemas at " << schemas;
    int status = -1;
    run("command -v xmllint >/dev/null 2>&1", &status);
    if (status != 0) GTEST_SKIP() << "xmllint is not installed";
    std::string path = writeLaidOutBook();
    std::ifstream in(path, std::ios::binary);
    std::stringstream bytes;
    bytes << in.rdbuf();
    std::string package = bytes.str();
    auto parts = entries(package.data(), static_cast<unsigned>(package.size()));
    for (const char* name : {"xl/worksheets/sheet1.xml", "xl/drawings/drawing1.xml"}) {
        ASSERT_TRUE(parts.count(name)) << name;
        std::string schema = schemas + (std::string(name).find("drawing") != std::string::npos ? "/dml-spreadsheetDrawing.xsd" : "/sml.xsd");
        std::string file = tmpPath("interop-layout-part.xml");
        std::ofstream(file, std::ios::binary) << parts[name];
        std::string out = run("xmllint --noout --schema '" + schema + "' '" + file + "' 2>&1", &status);
        EXPECT_EQ(status, 0) << name << ": " << out;
    }
}

}  // namespace
