#include "formula/xml_formula.h"

#include "formula/reverse_polish.h"
#include "formula_builder.h"
#include "frame/excel_util.h"
#include "frame/zverror.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

using zelvar::ExcelUtil;
using zelvar::XMLFormula;
using zelvar::zverror;

namespace {

std::wstring a1(std::wstring text, int row, int col, bool binaryGrid) {
    XMLFormula::toRefA1(text, row, col, binaryGrid);
    return text;
}

std::wstring r1c1(std::wstring text, int row, int col) {
    XMLFormula::toRefR1C1(text, row, col);
    return text;
}

std::string a1Error(const std::wstring& token, int row, int col, bool binaryGrid) {
    try {
        XMLFormula::toA1(token, row, col, binaryGrid);
    } catch (const zverror& e) {
        return e.what();
    }
    return "no error";
}

std::vector<std::wstring> tokens(std::wstring text) {
    std::vector<std::wstring> result;
    for (std::wstring token = XMLFormula::getToken(text); !token.empty();
         token = XMLFormula::getToken(text))
        result.push_back(token);
    return result;
}

}  // namespace

TEST(XMLFormula, AddressToR1C1) {
    const struct { const wchar_t* address; int row, col; const wchar_t* r1c1; } cases[] = {
        {L"B3", 1, 0, L"R[1]C[1]"},
        {L"$B$3", 1, 0, L"R3C2"},
        {L"B$3", 1, 0, L"R3C[1]"},
        {L"$B3", 1, 0, L"R[1]C2"},
        {L"b3", 1, 0, L"R[1]C[1]"},
        // The cell's own row and column write no bracket.
        {L"A1", 0, 0, L"RC"},
        {L"C7", 6, 0, L"RC[2]"},
        {L"A1", 5, 2, L"R[-5]C[-2]"},
        {L"XFD1048576", 0, 0, L"R[1048575]C[16383]"},
        {L"$IV$65536", 7, 7, L"R65536C256"},
        {L"A12345678", 0, 0, L"R[12345677]C"},
        // Leading zeros in the row number keep the row's "$".
        {L"$A$01", 5, 5, L"R1C1"},
        {L"A01", 0, 0, L"RC"},
    };
    for (const auto& c : cases) EXPECT_EQ(XMLFormula::toR1C1(c.address, c.row, c.col), c.r1c1) << c.address;
}

TEST(XMLFormula, NonAddressesPassUnchanged) {
    for (const wchar_t* token : {L"SUM", L"A", L"123", L"A123456789", L"ABCDE1", L"$ABCD1", L"A1B",
                                 L"A1:B2", L"A$", L"$1", L"+", L"\"x\"", L"1.5", L"A0", L"$A$0",
                                 L"R1C1", L"RC", L"Sheet1"})
        EXPECT_EQ(XMLFormula::toR1C1(token, 3, 3), token) << token;
    for (const wchar_t* token : {L"R1", L"C1", L"R", L"R[1]", L"R[]C", L"R[1C", L"R[-]C",
                                 L"R1C1X", L"R0C1", L"R1C0", L"SUM", L"A1", L"RR1C1", L"R-1C1",
                                 L"R[ 1]C", L"1.5", L""})
        EXPECT_EQ(XMLFormula::toA1(token, 3, 3, true), token) << token;
}

TEST(XMLFormula, R1C1ToAddress) {
    const struct { const wchar_t* r1c1; int row, col; bool binaryGrid; const wchar_t* address; } cases[] = {
        {L"R3C2", 9, 9, true, L"$B$3"},
        {L"R[1]C[1]", 1, 0, true, L"B3"},
        {L"RC", 4, 2, true, L"C5"},
        {L"rc", 4, 2, false, L"C5"},
        {L"R2C", 4, 2, true, L"C$2"},
        {L"RC3", 4, 2, true, L"$C5"},
        {L"r[-1]c[-2]", 4, 2, true, L"A4"},
        {L"R[0]C[0]", 4, 2, true, L"C5"},
        {L"R65536C256", 0, 0, true, L"$IV$65536"},
    };
    for (const auto& c : cases) EXPECT_EQ(XMLFormula::toA1(c.r1c1, c.row, c.col, c.binaryGrid), c.address) << c.r1c1;
}

TEST(XMLFormula, NegativeRelativeResultsWrapRoundTheGrid) {
    EXPECT_EQ(XMLFormula::toA1(L"R[-3]C", 0, 0, true), L"A65534");
    EXPECT_EQ(XMLFormula::toA1(L"R[-3]C", 0, 0, false), L"A1048574");
    EXPECT_EQ(XMLFormula::toA1(L"RC[-1]", 0, 0, true), L"IV1");
    EXPECT_EQ(XMLFormula::toA1(L"RC[-1]", 0, 0, false), L"XFD1");
    EXPECT_EQ(XMLFormula::toA1(L"R[-1]C[-1]", 0, 0, true), L"IV65536");
    EXPECT_EQ(a1(L"SUM(R[-1]C:R[-3]C)", 0, 0, true), L"SUM(A65536:A65534)");
    EXPECT_EQ(a1(L"SUM(R[-1]C:R[-3]C)", 0, 0, false), L"SUM(A1048576:A1048574)");
}

TEST(XMLFormula, ResultsOutsideTheLargestGridFail) {
    const struct { const wchar_t* r1c1; int row, col; bool binaryGrid; const char* message; } cases[] = {
        {L"R[2000000]C", 0, 0, false, "row must be in range 0-1048575"},
        {L"R[-2000000]C", 0, 0, false, "row must be in range 0-1048575"},
        {L"R1048577C1", 0, 0, false, "row must be in range 0-1048575"},
        {L"R99999999999999999999C1", 0, 0, false, "row must be in range 0-1048575"},
        {L"R1C16385", 0, 0, false, "col must be in range 0-16383"},
        {L"RC[-20000]", 0, 0, false, "col must be in range 0-16383"},
    };
    for (const auto& c : cases) EXPECT_EQ(a1Error(c.r1c1, c.row, c.col, c.binaryGrid), c.message) << c.r1c1;
    // The binary grid doesn't limit the result; its encoder does.
    EXPECT_EQ(XMLFormula::toA1(L"R[1]C", 65535, 0, true), L"A65537");
}

TEST(XMLFormula, WholeTextsInBothDirections) {
    EXPECT_EQ(r1c1(L"SUM(A1:B2)+Sheet2!$C$3", 0, 0), L"SUM(RC:R[1]C[1])+Sheet2!R3C3");
    EXPECT_EQ(a1(L"SUM(RC:R[1]C[1])+Sheet2!R3C3", 0, 0, true), L"SUM(A1:B2)+Sheet2!$C$3");
    EXPECT_EQ(r1c1(L"=IF(A1>0,\"x y\",LOG10(B2))", 1, 1),
              L"=IF(R[-1]C[-1]>0,\"x y\",LOG10(RC))");
    // Function names with digits aren't addresses, though they have the shape of one.
    EXPECT_EQ(r1c1(L"DAYS360(A1,B1)+ATAN2(1,2)", 0, 0), L"DAYS360(RC,RC[1])+ATAN2(1,2)");
    EXPECT_EQ(a1(L"DAYS360(RC,RC[1])+ATAN2(1,2)", 0, 0, true), L"DAYS360(A1,B1)+ATAN2(1,2)");
    EXPECT_EQ(r1c1(L"A1+LOG10", 0, 0), L"RC+R[9]C[8508]");
    // Blanks outside quotes are lost both ways.
    EXPECT_EQ(r1c1(L"A1 + 1", 0, 0), L"RC+1");
    EXPECT_EQ(a1(L"RC + \"a b\"", 0, 0, true), L"A1+\"a b\"");
    EXPECT_EQ(a1(L"'My Sheet'!R1C1", 0, 0, true), L"'My Sheet'!$A$1");
    EXPECT_EQ(r1c1(L"", 0, 0), L"");
    EXPECT_EQ(a1(L"", 0, 0, true), L"");
}

TEST(XMLFormula, RoundTripOfAddresses) {
    for (int row : {0, 1, 25, 1000, 65535}) {
        for (int col : {0, 1, 25, 26, 255}) {
            for (int flags = 0; flags < 4; ++flags) {
                std::wstring addr = ExcelUtil::rowColToAddr(row, col, flags & 1, flags & 2);
                for (auto cell : {std::pair<int, int>{0, 0}, {10, 3}, {65535, 255}}) {
                    std::wstring r1c1Text = XMLFormula::toR1C1(addr, cell.first, cell.second);
                    EXPECT_EQ(XMLFormula::toA1(r1c1Text, cell.first, cell.second, true), addr)
                        << addr << " via " << r1c1Text;
                    EXPECT_EQ(XMLFormula::toA1(r1c1Text, cell.first, cell.second, false), addr);
                }
            }
        }
    }
}

TEST(XMLFormula, Tokens) {
    EXPECT_EQ(tokens(L"SUM(R[-1]C:R[-3]C)"),
              (std::vector<std::wstring>{L"SUM", L"(", L"R[-1]C", L":", L"R[-3]C", L")"}));
    EXPECT_EQ(tokens(L"+$A$1*Sheet1!b2"),
              (std::vector<std::wstring>{L"+", L"$A$1", L"*", L"Sheet1", L"!", L"b2"}));
    EXPECT_EQ(tokens(L"rc[2]&\"x\""), (std::vector<std::wstring>{L"rc[2]", L"&\"", L"x", L"\""}));
    EXPECT_EQ(tokens(L"R[1]C[-1]+1"), (std::vector<std::wstring>{L"R[1]C[-1]", L"+", L"1"}));
    EXPECT_EQ(tokens(L"A1[2]"), (std::vector<std::wstring>{L"A1", L"[", L"2", L"]"}));
    EXPECT_EQ(tokens(L"(-1)"), (std::vector<std::wstring>{L"(-", L"1", L")"}));
    std::wstring text = L"A1+B2";
    EXPECT_EQ(XMLFormula::getToken(text), L"A1");
    EXPECT_EQ(text, L"+B2");
}

// Whole formulas go to R1C1 and back unchanged but for their blanks, from any cell of both
// grids.
TEST(XMLFormula, RoundTripOfWholeFormulas) {
    std::mt19937 random(5);
    uint8_t bytes[64];
    for (int round = 0; round < 3000; ++round) {
        for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(random());
        zelvar::formula_test::FormulaBuilder builder(bytes, sizeof bytes);
        std::wstring text = builder.build(0, 0, 0, false).text;
        zelvar::ReversePolish::removeSpaces(text);
        const bool binaryGrid = round & 1;
        const int row = static_cast<int>(random() % (binaryGrid ? 65536 : 1048576));
        const int col = static_cast<int>(random() % (binaryGrid ? 256 : 16384));
        std::wstring converted = r1c1(text, row, col);
        ASSERT_EQ(a1(converted, row, col, binaryGrid), text)
            << std::string(text.begin(), text.end()) << " at " << row << "," << col;
    }
}
