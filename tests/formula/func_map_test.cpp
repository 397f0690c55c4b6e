#include "formula/func_map.h"

#include "frame/zverror.h"

#include <gtest/gtest.h>

#include <cwchar>
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
    const struct { const wchar_t* name; int code; } cases[] = {
        {L"SUM", 4},
        {L"sum", 255},
        {L"Sum", 255},
        {L"", 255},
        {L"SUM ", 255},
        {L"COUNT", 0},
        {L"LOG10", 23},
        {L"GET.CHART.ITEM", 160},
        {L"DAYS360", 220},
        {L"SUMX2MY2", 304},
        {L"RTD", 379},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.name, c.name + std::wcslen(c.name)));
        EXPECT_EQ(table().code(c.name), c.code);
    }
}

TEST(FuncMap, ReferenceMasks) {
    using Pair = std::pair<unsigned short, uint32_t>;
    const struct { const wchar_t* name; unsigned short code; uint32_t mask; } cases[] = {
        {L"SUM", 4, 0x3FFFFFFF},
        {L"CHOOSE", 100, 0x3FFFFFFE},
        {L"SUMIF", 345, 0x5},
        {L"VLOOKUP", 102, 0x6},
        {L"DGET", 235, 0x7},
        {L"RANK", 216, 0x2},
        {L"GETPIVOTDATA", 358, 0x3},
        {L"NOTE", 192, 0xE},
        {L"TREND", 50, 0xF},
        {L"SERIES", 92, 0x17},
        {L"FORMULA.CONVERT", 241, 0x1E},
        {L"CREATE.OBJECT", 236, 0x7FE},
        {L"ABS", 24, 0},
        {L"unknown", 255, 0},
        // OR takes references and AND doesn't: table content, kept as it is.
        {L"AND", 36, 0},
        {L"OR", 37, 0x3FFFFFFF},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.name, c.name + std::wcslen(c.name)));
        EXPECT_EQ(table().codeRef(c.name), (Pair{c.code, c.mask}));
    }

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
    const struct { const wchar_t* text; int count; } cases[] = {
        {L"()", 0},
        {L"( )", 0},
        {L"  (a)", 1},
        {L"(a,b)", 2},
        {L"(a;b)", 2},
        {L"(a;b,c)", 3},
        {L"(1,2),3", 2},
        {L"(1,(2,3))", 2},
        {L"(1,SUM(2,3),4)", 3},
        {L"(\")\",1)", 2},
        {L"('a,b'!A1,c)", 2},
        // A quote of the other kind inside a string doesn't open anything.
        {L"(\"it's\",1)", 2},
        {L"('My \"Sheet'!A1,1)", 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.text, c.text + std::wcslen(c.text)));
        EXPECT_EQ(FuncMap::getFuncParamCount(c.text), c.count);
    }
}

TEST(FuncMap, ParamCountKeepsItsRuleForEmptyArguments) {
    const struct { const wchar_t* text; int count; } cases[] = {
        {L"(a,)", 2},
        {L"(a,b,)", 3},
        // A leading empty argument is undercounted, as required.
        {L"(,b)", 1},
        {L"(,)", 1},
        {L"(\"\")", 1},
        {L"((1))", 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.text, c.text + std::wcslen(c.text)));
        EXPECT_EQ(FuncMap::getFuncParamCount(c.text), c.count);
    }
}

TEST(FuncMap, ParamCountErrors) {
    const struct { const wchar_t* text; const char* message; } cases[] = {
        {L"", "error: function parentheses not found"},
        {L"(1,2", "error: function parentheses not found"},
        {L"(1,(2)", "error: function parentheses not found"},
        {L"(\")", "error: function parentheses not found"},
        {L"   ", "error: function parentheses not found"},
        {L"+(1)", "error: function name without open parenthesis"},
        {L")", "error: function name without open parenthesis"},
        // The closing quote is an ordinary character, and comes before any parenthesis.
        {L"\"x\"(1)", "error: function name without open parenthesis"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.text, c.text + std::wcslen(c.text)));
        EXPECT_EQ(countError(c.text), c.message);
    }
}

TEST(FuncMap, ParamCountFromAnOffset) {
    std::wstring text = L"SUM(1,2)";
    EXPECT_EQ(FuncMap::getFuncParamCount(text, 3), 2);
    EXPECT_EQ(countError(text.substr(8)), "error: function parentheses not found");
    EXPECT_THROW(FuncMap::getFuncParamCount(text, 8), zverror);
    EXPECT_THROW(FuncMap::getFuncParamCount(text, 100), zverror);
    EXPECT_EQ(FuncMap::countParams(L"(1,2)"), 0);
}
