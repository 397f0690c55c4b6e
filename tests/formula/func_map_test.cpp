#include "formula/func_map.h"

#include "frame/zverror.h"

#include <gtest/gtest.h>

#include <cwctype>
#include <set>

using zelvar::FuncMap;
using zelvar::zverror;

namespace {

const FuncMap& table() {
    static const FuncMap funcMap;
    return funcMap;
}

std::string countError(const std::wstring& rest) {
    try {
        FuncMap::getFuncParamCount(rest);
    } catch (const zverror& e) {
        return e.what();
    }
    return "no error";
}

}  // namespace

TEST(FuncMap, HoldsEveryFunctionNumberOnceExceptTheReservedOnes) {
    const auto& rows = table().table();
    EXPECT_EQ(rows.size(), 372u);
    std::set<unsigned> codes;
    for (const auto& row : rows) {
        EXPECT_TRUE(codes.insert(row.second.code).second) << "duplicate code " << row.second.code;
        for (wchar_t ch : row.first) EXPECT_FALSE(std::iswlower(ch)) << "lower-case name";
    }
    std::set<unsigned> missing;
    for (unsigned code = 0; code <= 379; ++code)
        if (!codes.count(code)) missing.insert(code);
    EXPECT_EQ(missing, (std::set<unsigned>{202, 203, 217, 218, 249, 250, 255, 333}));
}

TEST(FuncMap, LookupByNameIsExactAndCaseSensitive) {
    EXPECT_EQ(table().code(L"SUM"), 4);
    EXPECT_EQ(table().code(L"sum"), 255);
    EXPECT_EQ(table().code(L"Sum"), 255);
    EXPECT_EQ(table().code(L""), 255);
    EXPECT_EQ(table().code(L"SUM "), 255);
    EXPECT_EQ(table().code(L"COUNT"), 0);
    EXPECT_EQ(table().code(L"LOG10"), 23);
    EXPECT_EQ(table().code(L"GET.CHART.ITEM"), 160);
    EXPECT_EQ(table().code(L"DAYS360"), 220);
    EXPECT_EQ(table().code(L"SUMX2MY2"), 304);
    EXPECT_EQ(table().code(L"RTD"), 379);
}

TEST(FuncMap, ReferenceMasks) {
    using Pair = std::pair<unsigned short, uint32_t>;
    EXPECT_EQ(table().codeRef(L"SUM"), (Pair{4, 0x3FFFFFFF}));
    EXPECT_EQ(table().codeRef(L"CHOOSE"), (Pair{100, 0x3FFFFFFE}));
    EXPECT_EQ(table().codeRef(L"SUMIF"), (Pair{345, 0x5}));
    EXPECT_EQ(table().codeRef(L"VLOOKUP"), (Pair{102, 0x6}));
    EXPECT_EQ(table().codeRef(L"DGET"), (Pair{235, 0x7}));
    EXPECT_EQ(table().codeRef(L"RANK"), (Pair{216, 0x2}));
    EXPECT_EQ(table().codeRef(L"GETPIVOTDATA"), (Pair{358, 0x3}));
    EXPECT_EQ(table().codeRef(L"NOTE"), (Pair{192, 0xE}));
    EXPECT_EQ(table().codeRef(L"TREND"), (Pair{50, 0xF}));
    EXPECT_EQ(table().codeRef(L"SERIES"), (Pair{92, 0x17}));
    EXPECT_EQ(table().codeRef(L"FORMULA.CONVERT"), (Pair{241, 0x1E}));
    EXPECT_EQ(table().codeRef(L"CREATE.OBJECT"), (Pair{236, 0x7FE}));
    EXPECT_EQ(table().codeRef(L"ABS"), (Pair{24, 0}));
    EXPECT_EQ(table().codeRef(L"unknown"), (Pair{255, 0}));
    // OR takes references and AND doesn't: table content, kept as it is.
    EXPECT_EQ(table().codeRef(L"AND"), (Pair{36, 0}));
    EXPECT_EQ(table().codeRef(L"OR"), (Pair{37, 0x3FFFFFFF}));

    int withReferences = 0;
    for (const auto& row : table().table())
        if (row.second.ref) ++withReferences;
    EXPECT_EQ(withReferences, 99);
}

TEST(FuncMap, LookupByNumberGivesNameAndFixedCount) {
    int params = 7;
    EXPECT_EQ(table().name(255, &params), L"?");
    EXPECT_EQ(params, 0);
    params = 7;
    EXPECT_EQ(table().name(100, &params), L"CHOOSE");
    EXPECT_EQ(params, 0);
    EXPECT_EQ(table().name(27, &params), L"ROUND");
    EXPECT_EQ(params, 2);
    EXPECT_EQ(table().name(119, &params), L"REPLACE");
    EXPECT_EQ(params, 4);
    EXPECT_EQ(table().name(316, &params), L"TTEST");
    EXPECT_EQ(params, 4);
    EXPECT_EQ(table().name(378, &params), L"THAIYEAR");
    EXPECT_EQ(params, 1);
    params = 7;
    EXPECT_EQ(table().name(333, &params), L"?");
    EXPECT_EQ(params, 0);
    EXPECT_EQ(table().name(380, &params), L"?");
    EXPECT_EQ(table().name(0xFFFF, &params), L"?");
    EXPECT_EQ(table().name(0, nullptr), L"COUNT");
    EXPECT_EQ(table().name(379, nullptr), L"RTD");
    // Every row can be found both ways.
    for (const auto& row : table().table()) {
        EXPECT_EQ(table().name(row.second.code, &params), row.first);
        EXPECT_EQ(params, row.second.params);
    }
}

TEST(FuncMap, ParamCountCountsTheOutermostCall) {
    EXPECT_EQ(FuncMap::getFuncParamCount(L"()"), 0);
    EXPECT_EQ(FuncMap::getFuncParamCount(L"( )"), 0);
    EXPECT_EQ(FuncMap::getFuncParamCount(L"  (a)"), 1);
    EXPECT_EQ(FuncMap::getFuncParamCount(L"(a,b)"), 2);
    EXPECT_EQ(FuncMap::getFuncParamCount(L"(a;b)"), 2);
    EXPECT_EQ(FuncMap::getFuncParamCount(L"(a;b,c)"), 3);
    EXPECT_EQ(FuncMap::getFuncParamCount(L"(1,2),3"), 2);
    EXPECT_EQ(FuncMap::getFuncParamCount(L"(1,(2,3))"), 2);
    EXPECT_EQ(FuncMap::getFuncParamCount(L"(1,SUM(2,3),4)"), 3);
    EXPECT_EQ(FuncMap::getFuncParamCount(L"(\")\",1)"), 2);
    EXPECT_EQ(FuncMap::getFuncParamCount(L"('a,b'!A1,c)"), 2);
    // A quote of the other kind inside a string doesn't open anything.
    EXPECT_EQ(FuncMap::getFuncParamCount(L"(\"it's\",1)"), 2);
    EXPECT_EQ(FuncMap::getFuncParamCount(L"('My \"Sheet'!A1,1)"), 2);
}

TEST(FuncMap, ParamCountKeepsItsRuleForEmptyArguments) {
    EXPECT_EQ(FuncMap::getFuncParamCount(L"(a,)"), 2);
    EXPECT_EQ(FuncMap::getFuncParamCount(L"(a,b,)"), 3);
    // A leading empty argument is undercounted, as required.
    EXPECT_EQ(FuncMap::getFuncParamCount(L"(,b)"), 1);
    EXPECT_EQ(FuncMap::getFuncParamCount(L"(,)"), 1);
    EXPECT_EQ(FuncMap::getFuncParamCount(L"(\"\")"), 1);
    EXPECT_EQ(FuncMap::getFuncParamCount(L"((1))"), 1);
}

TEST(FuncMap, ParamCountErrors) {
    EXPECT_EQ(countError(L""), "error: function parentheses not found");
    EXPECT_EQ(countError(L"(1,2"), "error: function parentheses not found");
    EXPECT_EQ(countError(L"(1,(2)"), "error: function parentheses not found");
    EXPECT_EQ(countError(L"(\")"), "error: function parentheses not found");
    EXPECT_EQ(countError(L"   "), "error: function parentheses not found");
    EXPECT_EQ(countError(L"+(1)"), "error: function name without open parenthesis");
    EXPECT_EQ(countError(L")"), "error: function name without open parenthesis");
    // The closing quote is an ordinary character, and comes before any parenthesis.
    EXPECT_EQ(countError(L"\"x\"(1)"), "error: function name without open parenthesis");
}

TEST(FuncMap, ParamCountFromAnOffset) {
    std::wstring text = L"SUM(1,2)";
    EXPECT_EQ(FuncMap::getFuncParamCount(text, 3), 2);
    EXPECT_EQ(countError(text.substr(8)), "error: function parentheses not found");
    EXPECT_THROW(FuncMap::getFuncParamCount(text, 8), zverror);
    EXPECT_THROW(FuncMap::getFuncParamCount(text, 100), zverror);
    EXPECT_EQ(FuncMap::countParams(L"(1,2)"), 0);
}
