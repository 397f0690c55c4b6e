// Formulas we write are computed by an independent spreadsheet program (ssconvert --recalc from
// Debian's gnumeric) to the values their text means. Skips when ssconvert is not installed.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "zelvar.h"

using namespace zelvar;

namespace {

struct Case {
    std::string formula;
    std::string expected;  // number printed with %.10g, or the text, or TRUE/FALSE
};

std::string num(double v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.10g", v);
    return buf;
}

bool haveSsconvert() { return std::system("command -v ssconvert > /dev/null 2>&1") == 0; }

std::vector<std::string> csvLine(const std::string& line) {
    std::vector<std::string> out;
    std::string cur;
    bool quoted = false;
    for (size_t i = 0; i < line.size(); ++i) {
        char c = line[i];
        if (c == '"') {
            if (quoted && i + 1 < line.size() && line[i + 1] == '"') {
                cur.push_back('"');
                ++i;
            } else {
                quoted = !quoted;
            }
        } else if (c == ',' && !quoted) {
            out.push_back(cur);
            cur.clear();
        } else {
            cur.push_back(c);
        }
    }
    out.push_back(cur);
    return out;
}

}  // namespace

TEST(FormulaRecalc, AnIndependentProgramComputesWhatTheTextMeans) {
    if (!haveSsconvert()) GTEST_SKIP() << "ssconvert not installed (tools/install-deps.sh installs gnumeric)";
    IBookT<char>* book = zvCreateBookA();
    book->setLocale("UTF-8");
    ISheetT<char>* calc = book->addSheet("Calc");
    ISheetT<char>* data = book->addSheet("My Data");
    ISheetT<char>* plain = book->addSheet("Data2");
    // Data: A1:A10 = 1..10, B1:B10 = 2.5 * row, C1:C10 text.
    double sumA = 0, sumB = 0;
    for (int r = 0; r < 10; ++r) {
        data->writeNum(r, 0, r + 1);
        data->writeNum(r, 1, 2.5 * (r + 1));
        plain->writeNum(r, 0, (r + 1) * (r + 1));
        data->writeStr(r, 2, ("item" + std::to_string(r + 1)).c_str());
        sumA += r + 1;
        sumB += 2.5 * (r + 1);
    }
    std::vector<Case> cases = {
        {"1+2*3", "7"}, {"(1+2)*3", "9"}, {"10-4-3", "3"}, {"2^3^2", num(std::pow(std::pow(2, 3), 2))},
        {"-3+5", "2"}, {"+4*2", "8"}, {"7/2", "3.5"}, {"1.5*4", "6"}, {"100000*3", "300000"},
        {"(2+3)*(4-1)/5", "3"}, {"1=1", "TRUE"}, {"2<1", "FALSE"}, {"3>2", "TRUE"}, {"2<=2", "TRUE"},
        {"\"ab\"&\"cd\"", "abcd"}, {"\"n=\"&5", "n=5"}, {"LEN(\"hello\")", "5"}, {"UPPER(\"abc\")", "ABC"},
        {"LOWER(\"ABC\")", "abc"}, {"LEFT(\"spreadsheet\",6)", "spread"}, {"RIGHT(\"spreadsheet\",5)", "sheet"},
        {"MID(\"spreadsheet\",3,4)", "read"}, {"CONCATENATE(\"a\",\"b\",\"c\")", "abc"}, {"TRIM(\"  x  \")", "x"},
        {"ABS(-4.5)", "4.5"}, {"INT(7.9)", "7"}, {"MOD(17,5)", "2"}, {"ROUND(2.567,2)", "2.57"},
        {"SQRT(16)", "4"}, {"POWER(2,10)", "1024"}, {"MAX(3,9,4)", "9"}, {"MIN(3,9,4)", "3"},
        {"AVERAGE(2,4,6)", "4"}, {"PRODUCT(2,3,4)", "24"}, {"IF(1>2,\"yes\",\"no\")", "no"},
        {"IF(AND(1,1),10,20)", "10"}, {"IF(OR(0,0),10,20)", "20"}, {"NOT(FALSE)", "TRUE"},
        {"SUM('My Data'!A1:A10)", num(sumA)}, {"SUM('My Data'!B1:B10)", num(sumB)},
        {"AVERAGE('My Data'!A1:A10)", num(sumA / 10)}, {"COUNT('My Data'!A1:C10)", "20"},
        {"MAX(Data2!A1:A10)", "100"}, {"Data2!A3+'My Data'!B2", num(9 + 5)},
        {"SUMPRODUCT('My Data'!A1:A3,'My Data'!B1:B3)", num(1 * 2.5 + 2 * 5 + 3 * 7.5)},
        {"ROUND(PI(),4)", "3.1416"}, {"5<6", "TRUE"}, {"65535+1", "65536"}, {"0.1+0.2", num(0.1 + 0.2)},
        {"FACT(5)", "120"}, {"SIGN(-3)", "-1"},
    };
    // Per-row families: references on the same sheet and to other sheets.
    for (int i = 1; i <= 10; ++i) {
        cases.push_back({"'My Data'!A" + std::to_string(i) + "*2+1", num(i * 2 + 1)});
        cases.push_back({"'My Data'!B" + std::to_string(i) + "-'My Data'!A" + std::to_string(i), num(1.5 * i)});
        cases.push_back({"IF('My Data'!A" + std::to_string(i) + ">5,\"big\",\"small\")", i > 5 ? "big" : "small"});
        cases.push_back({"SUM('My Data'!A1:A" + std::to_string(i) + ")", num(i * (i + 1) / 2.0)});
        cases.push_back({"ROUND(SQRT(Data2!A" + std::to_string(i) + "),0)", num(i)});
        cases.push_back({"LEN('My Data'!C" + std::to_string(i) + ")", num(i < 10 ? 5 : 6)});
        cases.push_back({"MOD(Data2!A" + std::to_string(i) + ",7)", num((i * i) % 7)});
        cases.push_back({"MAX('My Data'!A1:A" + std::to_string(i) + ")*MIN('My Data'!B1:B" + std::to_string(i) + ")",
                         num(i * 2.5)});
        cases.push_back({"'My Data'!A" + std::to_string(i) + "^2=Data2!A" + std::to_string(i), "TRUE"});
        cases.push_back({"ABS(" + std::to_string(i) + "-'My Data'!A" + std::to_string(11 - i) + ")",
                         num(std::abs(i - (11 - i)))});
        cases.push_back({"INT('My Data'!B" + std::to_string(i) + ")", num(std::floor(2.5 * i))});
        cases.push_back({"\"#\"&'My Data'!A" + std::to_string(i), "#" + std::to_string(i)});
        cases.push_back({"(" + std::to_string(i) + "+1)*(" + std::to_string(i) + "-1)", num((i + 1) * (i - 1))});
        cases.push_back({"AVERAGE(Data2!A1:A" + std::to_string(i) + ")", num([&] {
                             double s = 0;
                             for (int k = 1; k <= i; ++k) s += k * k;
                             return s / i;
                         }())});
        cases.push_back({"COUNT('My Data'!A1:A" + std::to_string(i) + ")", num(i)});
    }
    ASSERT_GE(cases.size(), 200u);
    for (size_t i = 0; i < cases.size(); ++i)
        ASSERT_TRUE(calc->writeFormula(static_cast<int>(i), 0, cases[i].formula.c_str()))
            << cases[i].formula << ": " << book->errorMessage();
    std::string dir = ZELVAR_TEST_TMP;
    std::string path = dir + "/recalc.xls";
    ASSERT_TRUE(book->save(path.c_str())) << book->errorMessage();
    book->release();
    std::string csv = dir + "/recalc.csv";
    std::remove(csv.c_str());
    std::string command = "ssconvert --recalc '" + path + "' '" + csv + "' > /dev/null 2>&1";
    ASSERT_EQ(0, std::system(command.c_str()));
    std::ifstream in(csv);
    std::string line;
    size_t row = 0;
    int mismatches = 0;
    while (std::getline(in, line) && row < cases.size()) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        std::string got = csvLine(line)[0];
        const std::string& want = cases[row].expected;
        bool same = got == want;
        if (!same) {
            char* end = nullptr;
            double g = std::strtod(got.c_str(), &end), w = std::strtod(want.c_str(), nullptr);
            same = end && *end == 0 && !got.empty() && std::fabs(g - w) <= 1e-9 * std::max(1.0, std::fabs(w));
        }
        if (!same && ++mismatches <= 20)
            ADD_FAILURE() << cases[row].formula << ": computed '" << got << "', expected '" << want << "'";
        ++row;
    }
    EXPECT_EQ(cases.size(), row);
    EXPECT_EQ(0, mismatches);
}
