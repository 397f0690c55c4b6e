// Books we write, read back by the independent reader python3-xlrd cell for cell: many sheets,
// 100,000 strings with long ones crossing record boundaries, non-ASCII text, both kinds of number
// records, booleans, blanks, errors, fonts, borders, fills, palette colours, number formats, dates.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "book/sheet_impl.h"
#include "zelvar.h"

using namespace zelvar;

namespace {

std::string esc(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == '\\') out += "\\\\";
        else if (c == '\t') out += "\\t";
        else if (c == '\n') out += "\\n";
        else out.push_back(c);
    }
    return out;
}

std::string num(double v) {
    // Python's repr of a float: shortest text that reads back to the same double.
    char buf[64];
    for (int precision = 1; precision <= 17; ++precision) {
        std::snprintf(buf, sizeof buf, "%.*g", precision, v);
        if (std::strtod(buf, nullptr) == v) break;
    }
    std::string s = buf;
    if (s.find_first_of(".en") == std::string::npos) s += ".0";
    // Python writes exponents as e+300, with at least two digits.
    return s;
}

std::string runDump(const std::string& path) {
    std::string command = std::string(ZELVAR_PYTHON) + " " + ZELVAR_SOURCE_DIR + "/tests/book/xlrd_dump.py '" + path + "' 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    std::string text;
    char buf[65536];
    size_t n;
    while (pipe && (n = fread(buf, 1, sizeof buf, pipe)) > 0) text.append(buf, n);
    if (pipe) pclose(pipe);
    return text;
}

bool haveXlrd() {
    std::string command = std::string(ZELVAR_PYTHON) + " -c 'import xlrd' 2>/dev/null";
    return std::system(command.c_str()) == 0;
}

struct Expected {
    std::vector<std::string> lines;
    void sheet(const std::string& name, int rows, int cols) {
        lines.push_back("S\t" + esc(name) + "\t" + std::to_string(rows) + "\t" + std::to_string(cols));
    }
    void cell(int r, int c, const std::string& type, const std::string& value) {
        lines.push_back("C\t" + std::to_string(r) + "\t" + std::to_string(c) + "\t" + type + "\t" + value);
    }
};

}  // namespace

TEST(XlsInterop, IndependentReaderSeesWhatWeWrote) {
    if (!haveXlrd()) GTEST_SKIP() << "python3-xlrd not installed";
    IBookT<char>* book = zvCreateBookA();
    book->setLocale("UTF-8");
    Expected expected;

    // Numbers of both record kinds, booleans, blanks and errors.
    ISheetT<char>* numbers = book->addSheet("Numbers");
    IFormatT<char>* blankFormat = book->addFormat();
    blankFormat->setBorder(BorderThin);
    const double specials[] = {1.5, 0.1, -2.0, 1e300, -1e-300, 123456789.125, 3.141592653589793, 0.0};
    expected.sheet("Numbers", 2000, 5);
    for (int r = 0; r < 2000; ++r) {
        double a = r * 0.5, b = r * 0.1 + specials[r % 8];
        numbers->writeNum(r, 0, a);
        numbers->writeNum(r, 1, b);
        numbers->writeBool(r, 2, r % 3 == 0);
        expected.cell(r, 0, "number", num(a));
        expected.cell(r, 1, "number", num(b));
        expected.cell(r, 2, "bool", r % 3 == 0 ? "1" : "0");
        if (r % 7 == 0) {
            numbers->writeBlank(r, 3, blankFormat);
            expected.cell(r, 3, "blank", "");
        }
        if (r % 11 == 0) {
            const int codes[] = {ErrorDiv0, ErrorNA, ErrorValue, ErrorRef, ErrorName, ErrorNum, ErrorNull};
            const char* texts[] = {"#DIV/0!", "#N/A", "#VALUE!", "#REF!", "#NAME?", "#NUM!", "#NULL!"};
            static_cast<SheetImplT<char>*>(numbers)->writeError(r, 4, codes[r % 7], nullptr);
            expected.cell(r, 4, "error", texts[r % 7]);
        }
    }

    // 100,000 strings: long ones cross CONTINUE records, some text is not ASCII.
    ISheetT<char>* strings = book->addSheet("Strings \xC3\xBC");
    expected.sheet("Strings \xC3\xBC", 50000, 3);
    const char* extras[] = {"Gr\xC3\xBC\xC3\x9F" "e", "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E", "\xE2\x82\xAC 5",
                            "tab\there", "plain"};
    std::map<std::pair<int, int>, std::string> written;
    for (int r = 0; r < 100000; ++r) {
        std::string text = "s" + std::to_string(r) + " " + extras[r % 5];
        if (r % 997 == 0) text += std::string(9000 + r % 13, static_cast<char>('a' + r % 26));
        if (r % 1999 == 0) {
            for (int k = 0; k < 4200; ++k) text += "\xC3\xA9";  // 16-bit form across a boundary
        }
        int row = r % 50000, col = r < 50000 ? 0 : 2;
        ASSERT_TRUE(strings->writeStr(row, col, text.c_str())) << book->errorMessage();
        written[{row, col}] = text;
        if (r % 4 == 0 && col == 0) {
            strings->writeStr(row, 1, extras[r % 5]);
            written[{row, 1}] = extras[r % 5];
        }
    }
    for (const auto& cell : written) expected.cell(cell.first.first, cell.first.second, "text", esc(cell.second));

    // Formats: fonts, borders, fills, palette colours, number formats, dates.
    ISheetT<char>* formats = book->addSheet("Formats");
    IFontT<char>* font = book->addFont();
    font->setBold(true);
    font->setItalic(true);
    font->setSize(14);
    font->setColor(book->colorPack(200, 100, 50));
    IFormatT<char>* styled = book->addFormat();
    styled->setFont(font);
    styled->setBorderLeft(BorderThin);
    styled->setBorderBottom(BorderDouble);
    styled->setFillPattern(FillSolid);
    styled->setPatternForegroundColor(book->colorPack(10, 20, 30));
    styled->setNumFormat(book->addCustomNumFormat("0.000 \"kg\""));
    IFormatT<char>* date = book->addFormat();
    date->setNumFormat(NumFormatDate);
    double when = book->datePack(2024, 2, 29);
    formats->writeNum(0, 0, 12.5, styled);
    formats->writeNum(0, 1, when, date);
    formats->writeStr(1, 0, "styled text", styled);
    expected.sheet("Formats", 2, 2);
    expected.cell(0, 0, "number", num(12.5));
    expected.lines.push_back("X\t0\t0\t1\t1\t280\tC86432\t0.000 \"kg\"\t1\t6\t1\t0A141E");
    expected.cell(0, 1, "number", num(when));
    expected.lines.push_back("X\t0\t1\t0\t0\t200\t-\tM/D/YY\t0\t0\t0\t-");
    expected.cell(1, 0, "text", "styled text");
    expected.lines.push_back("X\t1\t0\t1\t1\t280\tC86432\t0.000 \"kg\"\t1\t6\t1\t0A141E");

    for (int i = 0; i < 7; ++i) {
        std::string name = "Extra " + std::to_string(i);
        ISheetT<char>* extra = book->addSheet(name.c_str());
        extra->writeNum(i, i, i);
        expected.sheet(name, i + 1, i + 1);
        expected.cell(i, i, "number", num(i));
    }

    std::string path = std::string(ZELVAR_TEST_TMP) + "/interop.xls";
    ASSERT_TRUE(book->save(path.c_str())) << book->errorMessage();
    book->release();

    std::string dump = runDump(path);
    std::istringstream lines(dump);
    std::string line;
    size_t at = 0;
    int mismatches = 0;
    while (std::getline(lines, line)) {
        ASSERT_LT(at, expected.lines.size()) << "extra line: " << line.substr(0, 200);
        // The date cell's number format text is the reader's own rendering of id 14.
        if (line.rfind("X\t0\t1\t", 0) == 0 && expected.lines[at].rfind("X\t0\t1\t", 0) == 0) {
            EXPECT_NE(std::string::npos, line.find("\t0\t0\t200\t")) << line;
            ++at;
            continue;
        }
        bool same = line == expected.lines[at];
        size_t tab = line.rfind('\t');
        if (!same && line.find("\tnumber\t") != std::string::npos && tab != std::string::npos) {
            size_t etab = expected.lines[at].rfind('\t');
            same = line.substr(0, tab) == expected.lines[at].substr(0, etab) &&
                   std::strtod(line.c_str() + tab + 1, nullptr) == std::strtod(expected.lines[at].c_str() + etab + 1, nullptr);
        }
        if (!same && ++mismatches <= 10)
            ADD_FAILURE() << "expected: " << expected.lines[at].substr(0, 200) << "\n     got: " << line.substr(0, 200);
        ++at;
    }
    EXPECT_EQ(expected.lines.size(), at) << dump.substr(0, 2000);
    EXPECT_EQ(0, mismatches);
}
