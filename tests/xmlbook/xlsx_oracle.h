// The corpus oracles of XML workbooks (what an independent reader saw in each file), read through
// the dump script beside these tests, and the comparison of one cell of a sheet with one oracle
// cell.
#pragma once
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "zelvar.h"

namespace xmltest {

struct OracleCell {
    int row, col;
    std::string type, value;
};
struct OracleSheet {
    int index;
    std::string name;
    std::vector<OracleCell> cells;
};
struct Oracle {
    std::string error;
    std::vector<OracleSheet> sheets;
};

inline std::string readFile(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

inline std::vector<std::string> splitTabs(const std::string& line) {
    std::vector<std::string> parts;
    std::string cur;
    for (char c : line) {
        if (c == '\t') {
            parts.push_back(cur);
            cur.clear();
        } else {
            cur.push_back(c);
        }
    }
    parts.push_back(cur);
    return parts;
}

inline std::string unescapeOracle(const std::string& s) {
    std::string out;
    for (size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '\\' && i + 1 < s.size()) {
            char c = s[++i];
            out.push_back(c == 't' ? '\t' : c == 'n' ? '\n' : c == 'r' ? '\r' : c);
        } else {
            out.push_back(s[i]);
        }
    }
    return out;
}

// The oracles of the given workbook paths, all at once through the dump script; keyed by path.
inline std::map<std::string, Oracle> loadOracles(const std::vector<std::string>& paths, const std::string& listName) {
    std::string list = std::string(ZELVAR_TEST_TMP) + "/" + listName;
    std::string cmd = std::string(ZELVAR_PYTHON) + " " + ZELVAR_SOURCE_DIR + "/tests/xmlbook/xlsx_oracle_cells.py";
    for (const std::string& path : paths) cmd += " '" + path + ".oracle.json'";
    cmd += " > " + list;
    std::map<std::string, Oracle> oracles;
    if (std::system(cmd.c_str()) != 0) return oracles;
    std::istringstream lines(readFile(list));
    std::string line;
    Oracle* current = nullptr;
    while (std::getline(lines, line)) {
        auto cols = splitTabs(line);
        if (cols[0] == "F") {
            std::string path = cols[1].substr(0, cols[1].size() - std::string(".oracle.json").size());
            current = &oracles[path];
        } else if (!current) {
            continue;
        } else if (cols[0] == "E") {
            current->error = unescapeOracle(cols[1]);
        } else if (cols[0] == "S") {
            current->sheets.push_back({std::atoi(cols[1].c_str()), unescapeOracle(cols[2]), {}});
        } else if (cols[0] == "C" && !current->sheets.empty() && cols.size() >= 5) {
            current->sheets.back().cells.push_back(
                {std::atoi(cols[1].c_str()), std::atoi(cols[2].c_str()), cols[3], unescapeOracle(cols[4])});
        }
    }
    return oracles;
}

inline const char* errorText(int code) {
    switch (code) {
        case 0: return "#NULL!";
        case 7: return "#DIV/0!";
        case 15: return "#VALUE!";
        case 23: return "#REF!";
        case 29: return "#NAME?";
        case 36: return "#NUM!";
        case 42: return "#N/A";
        default: return "?";
    }
}

enum class ValueCheck { Same, ByRule, Differs };

// Compares the value of the cell at (row, col) with an oracle cell that is not a formula. Texts
// that differ only by this library's rules (decimal escapes, a string item's own text before its
// runs) and date numbers the reader shows as errors count as ByRule. On Differs, why says what.
inline ValueCheck checkValue(zelvar::IBookT<char>* book, zelvar::ISheetT<char>* sheet, int row, int col, const OracleCell& c,
                             std::string& why) {
    using namespace zelvar;
    if (c.type == "date" || c.type == "duration") {
        if (sheet->cellType(row, col) == CellNumber) return ValueCheck::Same;
        why = "date is no number";
        return ValueCheck::Differs;
    }
    if (c.type == "number") {
        double want = std::strtod(c.value.c_str(), nullptr);
        double got = sheet->readNum(row, col);
        if (got == want || std::fabs(got - want) <= 1e-9 * std::fabs(want) || (std::isinf(want) && std::isinf(got)))
            return ValueCheck::Same;
        why = "number " + std::to_string(got) + " vs " + c.value + " " + book->errorMessage();
        return ValueCheck::Differs;
    }
    if (c.type == "text") {
        const char* text = sheet->readStr(row, col);
        if (text && c.value == text) return ValueCheck::Same;
        if (text && (std::string(text).find("_x") != std::string::npos || c.value.compare(0, std::strlen(text), text) == 0))
            return ValueCheck::ByRule;
        why = "text [" + std::string(text ? text : book->errorMessage()) + "] vs [" + c.value + "]";
        return ValueCheck::Differs;
    }
    if (c.type == "bool") {
        bool got = sheet->readBool(row, col);
        if (got == (c.value == "1") && std::string(book->errorMessage()) == "ok") return ValueCheck::Same;
        why = "bool";
        return ValueCheck::Differs;
    }
    if (c.type == "error") {
        // The reader shows a date number it cannot convert as an error.
        if (sheet->cellType(row, col) == CellNumber && sheet->isDate(row, col)) return ValueCheck::ByRule;
        int got = sheet->readError(row, col);
        if (c.value == errorText(got)) return ValueCheck::Same;
        why = std::string("error ") + errorText(got) + " vs " + c.value;
        return ValueCheck::Differs;
    }
    why = "unknown oracle type " + c.type;
    return ValueCheck::Differs;
}

}  // namespace xmltest
