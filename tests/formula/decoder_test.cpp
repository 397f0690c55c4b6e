// Token bytes of the binary format back to formula text.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "formula/formula_decoder.h"
#include "frame/zverror.h"

using namespace zelvar;

namespace {

class Names : public FormulaNames {
public:
    std::wstring referenceName(uint16_t ixti) const override {
        if (ixti == 0) return L"Sheet2!";
        if (ixti == 1) return GetFormula::quote(L"My Sheet") + L"!";
        return L"#REF!";
    }
    std::wstring definedName(uint32_t index) const override { return index == 1 ? L"Rate" : L"?"; }
};

std::wstring decode(const std::vector<uint8_t>& tokens, bool shared = false, uint16_t row = 0, uint16_t col = 0) {
    Names names;
    return GetFormula::getFormula(tokens.data(), tokens.size(), false, names, shared, row, col);
}

std::string failure(const std::vector<uint8_t>& tokens) {
    try {
        decode(tokens);
    } catch (const zverror& e) {
        return e.what();
    }
    return "no failure";
}

}  // namespace

TEST(FormulaDecoder, OperatorsParenthesesAndConstants) {
    // 1+2 and (1+2)*3 with integer tokens.
    EXPECT_EQ(L"1+2", decode({0x1E, 1, 0, 0x1E, 2, 0, 0x03}));
    EXPECT_EQ(L"(1+2)*3", decode({0x1E, 1, 0, 0x1E, 2, 0, 0x03, 0x15, 0x1E, 3, 0, 0x05}));
    EXPECT_EQ(L"-5%", decode({0x1E, 5, 0, 0x13, 0x14}));
    EXPECT_EQ(L"TRUE", decode({0x1D, 1}));
    // A number through a default stream: six significant digits.
    double v = 1234567.5;
    std::vector<uint8_t> num = {0x1F};
    const uint8_t* b = reinterpret_cast<const uint8_t*>(&v);
    num.insert(num.end(), b, b + 8);
    EXPECT_EQ(L"1.23457e+06", decode(num));
    EXPECT_EQ(L"\"a b\"&\"c\"", decode({0x17, 3, 0, 'a', ' ', 'b', 0x17, 1, 1, 'c', 0, 0x08}));
}

TEST(FormulaDecoder, ReferencesAndSheets) {
    // A1 relative, $A$1 absolute.
    EXPECT_EQ(L"A1", decode({0x24, 0, 0, 0x00, 0xC0}));
    EXPECT_EQ(L"$A$1", decode({0x24, 0, 0, 0x00, 0x00}));
    EXPECT_EQ(L"B2:$D$10", decode({0x25, 1, 0, 9, 0, 0x01, 0xC0, 0x03, 0x00}));
    EXPECT_EQ(L"Sheet2!C3", decode({0x3A, 0, 0, 2, 0, 0x02, 0xC0}));
    EXPECT_EQ(L"'My Sheet'!A1:B2", decode({0x3B, 1, 0, 0, 0, 1, 0, 0x00, 0xC0, 0x01, 0xC0}));
    // A deleted sheet: the area shows its columns only.
    EXPECT_EQ(L"#REF!A:B", decode({0x3B, 5, 0, 0, 0, 1, 0, 0x00, 0xC0, 0x01, 0xC0}));
    EXPECT_EQ(L"Rate*2", decode({0x43, 1, 0, 0, 0, 0x1E, 2, 0, 0x05}));
    // A function outside the table is called through a name: Rate(A1;2).
    EXPECT_EQ(L"Rate(A1;2)", decode({0x23, 1, 0, 0, 0, 0x24, 0, 0, 0, 0xC0, 0x1E, 2, 0, 0x42, 3, 0xFF, 0}));
}

TEST(FormulaDecoder, SharedFormulaOffsetsFollowTheAskingCell) {
    // PtgRefN with row offset -1 (0xFFFF) asked from row 5 gives row 4 (A5 in text).
    EXPECT_EQ(L"A5", decode({0x2C, 0xFF, 0xFF, 0x00, 0xC0}, true, 5, 0));
    // Column offset +1 from column 2 gives D.
    EXPECT_EQ(L"D1", decode({0x2C, 0x00, 0x00, 0x01, 0xC0}, true, 0, 2));
}

TEST(FormulaDecoder, FunctionsUseSemicolons) {
    // SUM(A1,B1): two refs, PtgFuncVar with 2 arguments, function 4.
    EXPECT_EQ(L"SUM(A1;B1)", decode({0x24, 0, 0, 0, 0xC0, 0x24, 0, 0, 1, 0xC0, 0x22, 2, 4, 0}));
    // TODAY(): the semicolon attribute prints nothing, then PtgFuncV 221.
    EXPECT_EQ(L"TODAY()", decode({0x19, 0x01, 0, 0, 0x41, 221, 0}));
    // Fixed-arity function: ROUND(1.5,0) through PtgFunc 27.
    EXPECT_EQ(L"ROUND(1;0)", decode({0x1E, 1, 0, 0x1E, 0, 0, 0x21, 27, 0}));
    // A missing argument prints as MISS.
    EXPECT_EQ(L"IF(A1;MISS;1)", decode({0x24, 0, 0, 0, 0xC0, 0x16, 0x1E, 1, 0, 0x42, 3, 1, 0}));
}

TEST(FormulaDecoder, MalformedStreamsFailWithTheirMessages) {
    const struct { std::vector<uint8_t> tokens; const char* message; } cases[] = {
        {{}, "can't build infix formula string"},
        {{0x7F}, "can't recognize formula block: unknown ptg"},
        {{0x24, 0, 0}, "GetFormula move1 error"},
        {{0x18, 0x55, 0, 0, 0, 0, 0}, "unknown Ptg 0x18"},
        {{0x19, 0x03, 0, 0}, "unknown Ptg 0x19"},
        {{0x13}, "toInfix error: incorrect unary minus expression"},
        {{0x1E, 1, 0, 0x03}, "toInfix error: expected two operands for binary operator"},
        {{0x15}, "toInfix error: incorrect brackets"},
        {{0x22, 2, 4, 0}, "toInfix error: incorrect function expression"},
    };
    for (const auto& c : cases) EXPECT_EQ(failure(c.tokens), c.message) << c.tokens.size() << " token bytes";
}
