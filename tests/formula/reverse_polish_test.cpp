#include "formula/reverse_polish.h"

#include "formula/func_map.h"
#include "formula_builder.h"
#include "frame/zverror.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <random>
#include <string>

using zelvar::FuncMap;
using zelvar::ReversePolish;
using zelvar::zverror;

namespace {

const FuncMap& funcs() {
    static const FuncMap funcMap;
    return funcMap;
}

std::wstring rpn(const std::wstring& text) { return zelvar::toReversePolish(text, funcs()); }

std::string rpnError(const std::wstring& text) {
    try {
        std::wstring result = rpn(text);
        return "no error";
    } catch (const zverror& e) {
        return e.what();
    }
}

// One row of a table: the formula text and its postfix form, or, for a refused text, the
// message it fails with.
struct Case {
    const wchar_t* text;
    const wchar_t* expected;
    bool refused = false;
};

void expectPostfix(std::initializer_list<Case> cases) {
    for (const Case& c : cases) {
        std::wstring text = c.text;
        SCOPED_TRACE(std::string(text.begin(), text.end()));
        if (c.refused) {
            std::wstring message = c.expected;
            EXPECT_EQ(rpnError(c.text), std::string(message.begin(), message.end()));
        } else {
            EXPECT_EQ(rpn(c.text), c.expected);
        }
    }
}

}  // namespace

TEST(ReversePolish, ArithmeticAndPrecedence) {
    expectPostfix({
        {L"=1+2", L"1 2 +"},
        {L"1+2", L"1 2 +"},
        {L" 1 + 2 ", L"1 2 +"},
        {L"1+2*3", L"1 2 3 * +"},
        {L"1*2+3", L"1 2 * 3 +"},
        {L"1-2-3", L"1 2 - 3 -"},
        {L"8/4/2", L"8 4 / 2 /"},
        // ^ groups to the left as well.
        {L"2^3^2", L"2 3 ^ 2 ^"},
        {L"1+2^3*4", L"1 2 3 ^ 4 * +"},
        {L"(1+2)*3", L"1 2 + ( 3 *"},
        {L"((1))", L"1 ( ("},
        {L"1+2%", L"1 2 % +"},
        // & binds loosest of all, and = looser than <.
        {L"1&2=3", L"1 2 3 = &"},
        {L"A1=1<2", L"A1 1 2 < ="},
        {L"A1<1=B1", L"A1 1 < B1 ="},
        {L"\"a b\"&\"c\"", L"\"a b\" \"c\" &"},
        {L"", L""},
        {L"=", L""},
        {L"==1", L"1 ="},
        {L"1.5", L"1.5"},
    });
}

TEST(ReversePolish, UnarySigns) {
    expectPostfix({
        {L"-A1^2", L"A1 uMinus 2 ^"},
        {L"2*-3", L"2 3 uMinus *"},
        {L"+A1", L"A1 uPlus"},
        {L"1--1", L"1 1 uMinus -"},
        {L"--1", L"1 uMinus uMinus"},
        {L"-(1+2)", L"1 2 + ( uMinus"},
        {L"2^-1", L"2 1 uMinus ^"},
        {L"(-1)", L"1 uMinus ("},
        {L"SUM(-1,2)", L"1 uMinus 2 SUM2F"},
        {L"SUM(1,-2)", L"1 2 uMinus SUM2F"},
        // Only operands raise the count, so a call without arguments and % leave the next sign
        // unary: kept as it is.
        {L"NOW()-1", L"NOW0F 1 uMinus"},
        {L"5%+1", L"5 1 uPlus %"},
        // A sign in an exponent splits the number.
        {L"1.5E+3", L"1.5E 3 +"},
    });
}

TEST(ReversePolish, ComparisonOperatorsKeepTheirTokenizing) {
    expectPostfix({
        {L"A1<=1", L"A1 1 <="},
        {L"A1<1", L"A1 1 <"},
        {L"A1>1", L"A1 1 >"},
        {L"A1=1", L"A1 1 ="},
        // ">=" and "<>" are never formed: the two characters come out as two operators.
        {L"A1>=1", L"A1 1 = >"},
        {L"A1<>1", L"A1 1 > <"},
        {L"A1< =1", L"A1 1 <="},
    });
}

TEST(ReversePolish, FunctionsOfFixedAndVariableArity) {
    expectPostfix({
        {L"SUM(A1,B1)", L"A1R B1R SUM2F"},
        {L"SUM(A1;B1)", L"A1R B1R SUM2F"},
        {L"SUM( A1 , B1 )", L"A1R B1R SUM2F"},
        {L"SUM(A1:B2)", L"A1:B2 SUM1F"},
        {L"SUM(1,2,3,4,5)", L"1 2 3 4 5 SUM5F"},
        {L"IF(A1,B1,C1)", L"A1 B1 C1 IF3F"},
        {L"IF(A1>0,B1,C1)", L"A1 0 > B1 C1 IF3F"},
        {L"ABS(A1)", L"A1 ABS1F"},
        {L"ROUND(A1,2)", L"A1 2 ROUND2F"},
        {L"PI()", L"PI0F"},
        {L"PI()*2", L"PI0F 2 *"},
        {L"MID(\"abc\",2,1)", L"\"abc\" 2 1 MID3F"},
        {L"SUM(1,)", L"1 SUM2F"},
        {L"GET.CHART.ITEM(1)", L"1 GET.CHART.ITEM1F"},
        {L"T(A1)", L"A1R T1F"},
        // Names holding digits come back whole from the postfix word.
        {L"LOG10(100)", L"100 LOG101F"},
        {L"ATAN2(1,2)", L"1 2 ATAN22F"},
        {L"DAYS360(A1,B1)", L"A1 B1 DAYS3602F"},
        {L"DAYS360(A1,B1)+1", L"A1 B1 DAYS3602F 1 +"},
    });
}

TEST(ReversePolish, NestedCalls) {
    expectPostfix({
        {L"SUM(A1,MAX(B1,C1))", L"A1R B1R C1R MAX2F SUM2F"},
        {L"ROUND(SUM(A1:A3)/3,2)", L"A1:A3 SUM1F 3 / 2 ROUND2F"},
        {L"IF(ISNA(A1),0,ROW(B2))", L"A1 ISNA1F 0 B2R ROW1F IF3F"},
        {L"(SUM(1))", L"1 SUM1F ("},
        {L"SUM((1+2)*3,4)", L"1 2 + ( 3 * 4 SUM2F"},
        {L"ABS(SUM(A1,B1))", L"A1R B1R SUM2F ABS1F"},
        {L"SUM(ABS(A1),B1)", L"A1 ABS1F B1R SUM2F"},
        {L"IF(A1,IF(B1,1,2),PI())", L"A1 B1 1 2 IF3F PI0F IF3F"},
    });
}

TEST(ReversePolish, ReferenceParametersGetTheMark) {
    expectPostfix({
        {L"ROW(A1)", L"A1R ROW1F"},
        {L"SUMIF(A1,B1,C1)", L"A1R B1 C1R SUMIF3F"},
        {L"VLOOKUP(A1,B1,2)", L"A1 B1R 2 VLOOKUP3F"},
        {L"NPV(A1,B1,C1)", L"A1 B1R C1R NPV3F"},
        {L"SUM($A$1,Sheet2!B2)", L"$A$1R Sheet2!B2R SUM2F"},
        {L"SUM('My Sheet'!A1)", L"'My Sheet'!A1R SUM1F"},
        {L"SUM('My Sheet'!A1:B2)", L"'My Sheet'!A1:B2 SUM1F"},
        {L"SUM(A 1)", L"A1R SUM1F"},
        // Numbers and strings aren't references; inner parentheses keep the parameter.
        {L"SUM(1,\"x\")", L"1 \"x\" SUM2F"},
        {L"ROW((A1))", L"A1R ( ROW1F"},
        // Outside a call a reference stays a value.
        {L"A1+SUM(B1)", L"A1 B1R SUM1F +"},
        {L"SUM(B1)+A1", L"B1R SUM1F A1 +"},
    });
    // The parameter index counts modulo 32: 0x3FFFFFFF leaves the 31st and 32nd argument
    // unmarked and marks the 33rd again.
    std::wstring args, expected;
    for (int i = 1; i <= 33; ++i) {
        if (i > 1) args += L",";
        args += L"A" + std::to_wstring(i);
        expected += L"A" + std::to_wstring(i) + (i == 31 || i == 32 ? L" " : L"R ");
    }
    EXPECT_EQ(rpn(L"SUM(" + args + L")"), expected + L"SUM33F");
}

TEST(ReversePolish, BooleanWords) {
    expectPostfix({
        {L"TRUE+1", L"TRUE 1 +"},
        {L"IF(TRUE,1,FALSE)", L"TRUE 1 FALSE IF3F"},
        {L"TRUE()", L"TRUE0F"},
        {L"NOT(FALSE())", L"FALSE0F NOT1F"},
        // The marking pass takes the word for a call of its own, which then owns the following
        // separator and closing parenthesis: the reference after it stays unmarked.
        {L"SUM(TRUE,A1)", L"TRUE A1 SUM2F"},
        {L"SUM(A1,TRUE)", L"A1R TRUE SUM2F"},
        // At the very end the word is taken for the function.
        {L"TRUE", L"error: function parentheses not found", true},
        {L"1+FALSE", L"error: function parentheses not found", true},
    });
}

TEST(ReversePolish, KeptOddOutcomes) {
    expectPostfix({
        // Names are case-sensitive: "sum" is an operand and its parenthesis a plain one.
        {L"sum(A1)", L"sum A1 ("},
        // The postfix word of SUMX2MY2 is cut at its first digit and not recognised, so it
        // stays on the stack to the end.
        {L"SUMX2MY2(A1:A2,B1:B2)", L"A1:A2 B1:B2 SUMX2MY22F"},
        {L"SUMX2MY2(A1:A2,B1:B2)+1", L"A1:A2 B1:B2 1 + SUMX2MY22F"},
        // An unclosed parenthesis leaves as a token.
        {L"(1+2", L"1 2 + ("},
        // Each quote kind toggles its own flag: an apostrophe inside a string keeps the rest
        // of the text in one token.
        {L"\"it's\"&A1", L"\"it's\"&A1"},
        {L"\"it's\"", L"\"it's\""},
    });
}

TEST(ReversePolish, OperandsOfOtherShapes) {
    expectPostfix({
        {L"'My Sheet'!A1+1", L"'My Sheet'!A1 1 +"},
        {L"Sheet2!A1*2", L"Sheet2!A1 2 *"},
        {L"my_name+1", L"my_name 1 +"},
        {L"#REF!+1", L"#REF! 1 +"},
        {L"\"a,b\"&\"(\"", L"\"a,b\" \"(\" &"},
        {L"CONCATENATE(\"a;b\",\")\")", L"\"a;b\" \")\" CONCATENATE2F"},
        {L"\"say \"\"hi\"\"\"", L"\"say \"\"hi\"\"\""},
        {L"SUM1+1", L"SUM1 1 +"},
    });
}

TEST(ReversePolish, ErrorTexts) {
    expectPostfix({
        {L")", L"error in formula", true},
        {L"1+2)", L"error in formula", true},
        {L"SUM(1))", L"error in formula", true},
        {L"SUM(1", L"error: function parentheses not found", true},
        {L"ABS", L"error: function parentheses not found", true},
        {L"SUM+1", L"error: function name without open parenthesis", true},
        {L"1+PI", L"error: function parentheses not found", true},
        {L"N*2", L"error: function name without open parenthesis", true},
    });
}

TEST(ReversePolish, Helpers) {
    EXPECT_TRUE(ReversePolish::isRef(L"$A$1"));
    EXPECT_TRUE(ReversePolish::isRef(L"Sheet1!B2"));
    EXPECT_TRUE(ReversePolish::isRef(L"'My Sheet'!B2"));
    EXPECT_FALSE(ReversePolish::isRef(L"A1:B2"));
    EXPECT_FALSE(ReversePolish::isRef(L"Sheet1!"));
    EXPECT_FALSE(ReversePolish::isRef(L"A"));
    EXPECT_FALSE(ReversePolish::isRef(L"12"));
    EXPECT_FALSE(ReversePolish::isRef(L"1A"));
    EXPECT_FALSE(ReversePolish::isRef(L""));

    EXPECT_TRUE(ReversePolish::isAlphaNumber(L""));
    EXPECT_TRUE(ReversePolish::isAlphaNumber(L"Sheet1!$A$1:B2.5"));
    EXPECT_FALSE(ReversePolish::isAlphaNumber(L"a_b"));
    EXPECT_TRUE(ReversePolish::isNumber(L""));
    EXPECT_TRUE(ReversePolish::isNumber(L"0123"));
    EXPECT_FALSE(ReversePolish::isNumber(L"1.5"));
    EXPECT_TRUE(ReversePolish::isString(L"\"\""));
    EXPECT_FALSE(ReversePolish::isString(L"\""));
    EXPECT_FALSE(ReversePolish::isString(L"\"a"));

    EXPECT_EQ(ReversePolish::pri(L","), 1);
    EXPECT_EQ(ReversePolish::pri(L"&"), 2);
    EXPECT_EQ(ReversePolish::pri(L"<>"), 3);
    EXPECT_EQ(ReversePolish::pri(L">="), 4);
    EXPECT_EQ(ReversePolish::pri(L"-"), 5);
    EXPECT_EQ(ReversePolish::pri(L"/"), 6);
    EXPECT_EQ(ReversePolish::pri(L"^"), 7);
    EXPECT_EQ(ReversePolish::pri(L"%"), 8);
    EXPECT_EQ(ReversePolish::pri(L"uPlus"), 9);
    EXPECT_EQ(ReversePolish::pri(L"("), 0);
    EXPECT_EQ(ReversePolish::pri(L"SUM2F"), -1);
    EXPECT_TRUE(ReversePolish::isOperator(L";"));
    EXPECT_TRUE(ReversePolish::isOperator(L"<>"));
    EXPECT_FALSE(ReversePolish::isOperator(L"("));
    EXPECT_FALSE(ReversePolish::isOperator(L"uMinus"));

    uint32_t ref = 0;
    EXPECT_TRUE(ReversePolish::isFunc(L"SUM", ref, funcs()));
    EXPECT_EQ(ref, 0x3FFFFFFFu);
    EXPECT_TRUE(ReversePolish::isFunc(L"SUMIF3F", ref, funcs()));
    EXPECT_EQ(ref, 0x5u);
    EXPECT_TRUE(ReversePolish::isFunc(L"LOG101F", ref, funcs()));
    EXPECT_TRUE(ReversePolish::isFunc(L"DAYS3602F", ref, funcs()));
    EXPECT_TRUE(ReversePolish::isFunc(L"ATAN2F", ref, funcs()));  // ATAN with two arguments
    EXPECT_FALSE(ReversePolish::isFunc(L"SUMX2MY22F", ref, funcs()));
    EXPECT_FALSE(ReversePolish::isFunc(L"sum", ref, funcs()));
    EXPECT_FALSE(ReversePolish::isFunc(L"2F", ref, funcs()));
    EXPECT_FALSE(ReversePolish::isFunc(L"12F", ref, funcs()));

    std::wstring text = L" A 1 +\"x y\"<=3";
    EXPECT_EQ(ReversePolish::getToken(text), L"A1");
    EXPECT_EQ(ReversePolish::getToken(text), L"+");
    EXPECT_EQ(ReversePolish::getToken(text), L"\"x y\"");
    EXPECT_EQ(ReversePolish::getToken(text), L"<=");
    EXPECT_EQ(ReversePolish::getToken(text), L"3");
    EXPECT_EQ(ReversePolish::getToken(text), L"");
    EXPECT_TRUE(text.empty());

    text = L"a b \"c d\" 'e f'";
    ReversePolish::removeSpaces(text);
    EXPECT_EQ(text, L"ab\"c d\"'e f'");
    text = L"\"it's\" & 1";
    ReversePolish::removeSpaces(text);
    EXPECT_EQ(text, L"\"it's\"&1");

    text = L"==1";
    ReversePolish::prepare(text);
    EXPECT_EQ(text, L"=1");
    text = L"";
    ReversePolish::prepare(text);
    EXPECT_EQ(text, L"");

    text = L"SUM(A1, ABS(B1), C1:C2)+ROW(D4)";
    ReversePolish::addRefs(text, funcs());
    EXPECT_EQ(text, L"SUM(A1R,ABS(B1),C1:C2)+ROW(D4R)");
}

// Fuzz finding: an unclosed quote takes the rest of the text, trailing blanks included, into
// its token; only the separator blank after the last token is dropped.
TEST(ReversePolishFuzz, UnclosedQuoteKeepsTrailingBlankInItsToken) {
    EXPECT_EQ(rpn(L"A1+'x!A2) "), L"A1 'x!A2)  +");
    EXPECT_EQ(rpn(L"'x!A2 "), L"'x!A2 ");
}

// Independent check: formulas built from random bytes, with the postfix text that their
// structure gives, printed with the fewest parentheses and random blanks.
TEST(ReversePolish, WellFormedFormulasGiveTheirPostfix) {
    std::mt19937 random(20261123);
    uint8_t bytes[96];
    for (int round = 0; round < 5000; ++round) {
        for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(random());
        zelvar::formula_test::FormulaBuilder builder(bytes, sizeof bytes);
        auto formula = builder.build(0, 0, 0, false);
        ASSERT_EQ(rpn(formula.text), formula.postfix) << "formula: " << std::string(formula.text.begin(), formula.text.end());
    }
}
