// The pieces of the package: relationship ids, content type look-up, sheet path numbers, and the
// text helpers of the XML family.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "xmlbook/xml_book.h"
#include "xmlbook/xml_package.h"
#include "xmlbook/xml_util.h"

using namespace zelvar;

namespace {

TEST(XmlRelationships, IdsTargetsAndTypes) {
    Relationships rels;
    const std::wstring type = L"urn:t";
    EXPECT_EQ(rels.addRelation(type, L"a.xml"), L"rId1");
    EXPECT_EQ(rels.addRelation(type, L"b.xml"), L"rId2");
    // Ids that are no plain number behind three characters count for nothing.
    rels.tree.append_Relationship().set_Id(L"rId7x");
    rels.tree.append_Relationship().set_Id(L"ab");
    rels.tree.append_Relationship().set_Id(L"rId9");
    EXPECT_EQ(rels.makeId(), L"rId10");
    EXPECT_EQ(rels.target(L"rId2"), L"b.xml");
    EXPECT_EQ(rels.target(L"rId5"), L"");
    EXPECT_EQ(rels.firstTargetByType(type), L"a.xml");
    EXPECT_EQ(rels.nextTarget(), L"b.xml");
    EXPECT_EQ(rels.nextTarget(), L"");
    rels.delRelationByTarget(L"A.xml");  // case matters
    EXPECT_EQ(rels.target(L"rId1"), L"a.xml");
    rels.delRelation(L"rId1");
    EXPECT_EQ(rels.target(L"rId1"), L"");
    EXPECT_EQ(rels.firstTargetByType(type), L"b.xml");
}

TEST(XmlContentTypes, OverridesBeforeDefaultsAndCaseBlindNames) {
    // Content types must have the form the schema gives them (type/subtype).
    ContentTypes types;
    types.addDefault(L"xml", L"application/xml");
    types.addOverride(L"/xl/workbook.xml", L"application/vnd.test.main+xml");
    EXPECT_EQ(types.contentType(L"/XL/Workbook.XML"), L"application/vnd.test.main+xml");
    EXPECT_EQ(types.contentType(L"xl\\other.xml"), L"application/xml");
    EXPECT_EQ(types.contentType(L"/xl/picture.png"), L"");
    types.addOverride(L"/xl/workbook.xml", L"application/vnd.test.changed+xml");
    EXPECT_EQ(types.contentType(L"/xl/workbook.xml"), L"application/vnd.test.changed+xml");
    types.delOverride(L"/XL/workbook.xml");  // exact name only
    EXPECT_EQ(types.contentType(L"/xl/workbook.xml"), L"application/vnd.test.changed+xml");
    types.delOverride(L"/xl/workbook.xml");
    EXPECT_EQ(types.contentType(L"/xl/workbook.xml"), L"application/xml");
}

TEST(XmlPaths, SheetNumbersAndPathPieces) {
    struct {
        const wchar_t* name;
        int before, after;
    } cases[] = {
        {L"worksheets/sheet12.xml", 1, 13}, {L"worksheets/sheet12.xml", 20, 20}, {L"worksheets/chart.xml", 3, 3},
        {L"sheet7", 1, 1} /* the last four characters go unread */, {L"s.x", 1, 1}, {L"sheet9.bin", 1, 10},
    };
    for (const auto& c : cases) {
        int suffix = c.before;
        XMLBookImplT<char, excelNormal_tag>::calcNumSuffix(c.name, suffix);
        EXPECT_EQ(suffix, c.after) << std::string(c.name, c.name + wcslen(c.name));
    }
    EXPECT_EQ(FileUtil::getExtension(L"/xl/media/image1.PNG"), L"PNG");
    EXPECT_EQ(FileUtil::getExtension(L"/xl/name."), L"");
    EXPECT_EQ(FileUtil::normalize(L"xl\\a.xml"), L"/xl/a.xml");
    EXPECT_EQ(FileUtil::getDir(L"/book/main.xml"), L"/book");
    EXPECT_LT(sicmp2(L"/[Content_Types].xml", L"/_rels/.rels"), 0);
    EXPECT_LT(sicmp2(L"/_rels/.rels", L"/xl/a.xml"), 0);
    EXPECT_EQ(sicmp2(L"/XL/A.xml", L"/xl/a.XML"), 0);
}

TEST(XmlText, EscapesSeparatorsAndQuotes) {
    struct {
        const wchar_t *in, *escaped;
    } esc[] = {{L"plain", L"plain"}, {L"a\x01", L"a_x0001_"}, {L"\x1f", L"_x0031_"}, {L"\xfffe", L"_x65534_"}};
    for (const auto& c : esc) {
        std::wstring text = c.in;
        StrUtil::xmlEsc(text);
        EXPECT_EQ(text, c.escaped);
    }
    struct {
        const wchar_t *in, *out;
    } unesc[] = {{L"_x0013_", L"\x0d"}, {L"_x000D_", L"_x000D_"}, {L"a_x0065_b", L"aAb"}, {L"_x001_", L"_x001_"}};
    for (const auto& c : unesc) {
        std::wstring text = c.in;
        StrUtil::xmlUnEsc(text);
        EXPECT_EQ(text, c.out);
    }
    std::wstring formula = L"IF(A1=\"x;y\";'a;b'!B2;\"it's\";C3)";
    StrUtil::swapSeparators(formula, L';', L',');
    EXPECT_EQ(formula, L"IF(A1=\"x;y\",'a;b'!B2,\"it's\",C3)");
    EXPECT_EQ(StrUtil::unquote(L"'it''s'"), L"it's");
    // Only a blank or a hyphen makes a sheet name quoted; a quote alone doesn't, and is doubled
    // only inside quotes.
    struct {
        const wchar_t *name, *quoted;
    } quotes[] = {{L"Sheet1", L"Sheet1"},       {L"My sheet", L"'My sheet'"}, {L"a-b", L"'a-b'"},
                  {L"it's", L"it's"},           {L"it's me", L"'it''s me'"},  {L"Q1.2024", L"Q1.2024"},
                  {L"1st", L"1st"},             {L"", L""},                   {L"tab\there", L"tab\there"},
                  {L"\x00e9t\x00e9", L"\x00e9t\x00e9"}, {L"-", L"'-'"}};
    for (const auto& c : quotes) EXPECT_EQ(StrUtil::quote(c.name), c.quoted) << c.name;
    EXPECT_EQ(shiftFormula(L"SUM(A1:B2)+$C$3+C$4+\"A1\"+LOG10(D5)", 2, 1), L"SUM(B3:C4)+$C$3+D$4+\"A1\"+LOG10(E7)");
    EXPECT_EQ(Converter::doubleToString(0.1), L"0.10000000000000001");
}

// Numbers are written in the form of "%.17g", whichever way the digits are made.
TEST(XmlConverter, NumbersAreWrittenAsPrintfWrites) {
    std::vector<double> values = {0.0, -0.0, 1.0, -1.0, 0.5, 1e15, 1e16, 1e17, 99999999999999984.0, -1e17, 9007199254740993.0, 123456789012345678.0, 1e-5,
                                  1e-4, 0.0001234, 1e100, -1e-300, 5e-324, 1.7976931348623157e308,
                                  std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                                  std::numeric_limits<double>::quiet_NaN(), 853552.53, 0.29482597857713699, 45000.25};
    std::mt19937_64 random(13);
    for (int i = 0; i < 20000; ++i) {
        uint64_t bits = random();
        double value;
        std::memcpy(&value, &bits, sizeof value);
        values.push_back(value);
        values.push_back(static_cast<double>(static_cast<int64_t>(bits % 2000000000) - 1000000000) / 1000.0);
        // Whole numbers around the limits of the integer form: 2^53, 10^16, 10^17.
        values.push_back(static_cast<double>(static_cast<int64_t>(bits >> 7) - (int64_t(1) << 56)));
        values.push_back(static_cast<double>(static_cast<int64_t>(bits % 2000000) - 1000000));
    }
    for (double value : values) {
        char expected[64], got[32];
        int n = std::snprintf(expected, sizeof expected, "%.17g", value);
        size_t size = Converter::doubleToChars(value, got);
        ASSERT_EQ(std::string(got, size), std::string(expected, static_cast<size_t>(n)));
    }
}

}  // namespace
