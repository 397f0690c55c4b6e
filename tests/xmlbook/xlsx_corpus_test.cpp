// Real XML workbooks written by other programs: every package that should load does, its cells
// match what an independent reader saw (the corpus oracles), a load-save-load round trip keeps
// them, a second save gives the same entries, and every part the book keeps as bytes comes back
// byte for byte. Strict packages are counted apart.
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <vector>

#include "xml_test_util.h"
#include "xmlbook/xml_package.h"

using namespace zelvar;
using namespace xmltest;

namespace {

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

std::string readFile(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

std::vector<std::string> splitTabs(const std::string& line) {
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

std::string unescape(const std::string& s) {
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

struct Entry {
    std::string path, expected;
    bool strict;
};

std::string shared() { return ZELVAR_SHARED_DIR; }

std::vector<Entry> corpusEntries() {
    std::vector<Entry> entries;
    std::istringstream lines(readFile(shared() + "/corpus/MANIFEST.tsv"));
    std::string line;
    while (std::getline(lines, line)) {
        auto cols = splitTabs(line);
        if (cols.size() < 7 || cols[0].compare(0, 5, "xlsx/") != 0) continue;
        entries.push_back({shared() + "/corpus/" + cols[0], cols[6], cols[5].find("strict") != std::string::npos});
    }
    return entries;
}

// All oracles at once through the dump script beside the binary corpus test.
std::map<std::string, Oracle> loadOracles(const std::vector<Entry>& entries) {
    std::string list = std::string(ZELVAR_TEST_TMP) + "/xlsx-oracles.txt";
    std::string cmd = std::string(ZELVAR_PYTHON) + " " + ZELVAR_SOURCE_DIR + "/tests/xmlbook/xlsx_oracle_cells.py";
    for (const Entry& e : entries) cmd += " '" + e.path + ".oracle.json'";
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
            current->error = unescape(cols[1]);
        } else if (cols[0] == "S") {
            current->sheets.push_back({std::atoi(cols[1].c_str()), unescape(cols[2]), {}});
        } else if (cols[0] == "C" && !current->sheets.empty() && cols.size() >= 5) {
            current->sheets.back().cells.push_back({std::atoi(cols[1].c_str()), std::atoi(cols[2].c_str()), cols[3], unescape(cols[4])});
        }
    }
    return oracles;
}

// Formula text as the independent reader shows it: "=" in front, "," between arguments.
std::string oracleFormula(const char* ours) {
    std::string text = std::string("=") + ours;
    bool inDouble = false, inSingle = false;
    for (char& c : text) {
        if (c == '"' && !inSingle) inDouble = !inDouble;
        else if (c == '\'' && !inDouble) inSingle = !inSingle;
        else if (c == ';' && !inDouble && !inSingle) c = ',';
    }
    return text;
}

struct Tally {
    int checked = 0, mismatched = 0;
    std::vector<std::string> samples;
    void miss(const std::string& what) {
        ++mismatched;
        if (samples.size() < (getenv("ZELVAR_ALL_MISMATCHES") ? 100000u : 12u)) samples.push_back(what);
    }
};

const char* errorText(int code) {
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

// Compares the cells of a book with the oracle; formula cells are compared as text.
void compareCells(IBookT<char>* book, const Oracle& oracle, const std::string& file, Tally& values, Tally& formulas,
                  int& byRule) {
    int worksheet = 0;
    for (const OracleSheet& os : oracle.sheets) {
        // Chart sheets are in the book's list but not in the oracle's.
        int index = os.index;
        // Macro and dialog sheets are kept as parts, not read as worksheets.
        if (index < book->sheetCount() && book->sheetType(index) != SheetTypeWorksheet) continue;
        ISheetT<char>* sheet = index < book->sheetCount() ? book->getSheet(index) : nullptr;
        ++worksheet;
        if (!sheet) {
            values.miss(file + ": sheet " + os.name + " missing: " + book->errorMessage());
            continue;
        }
        for (const OracleCell& c : os.cells) {
            std::string where = file + " " + os.name + "!" + std::to_string(c.row) + "," + std::to_string(c.col) + " ";
            if (c.type == "formula") {
                ++formulas.checked;
                const char* text = sheet->readFormula(c.row, c.col);
                if (!text) formulas.miss(where + "no formula: " + book->errorMessage());
                else if (oracleFormula(text) != c.value) formulas.miss(where + oracleFormula(text) + " vs " + c.value);
                continue;
            }
            if (c.type == "date" || c.type == "duration") {
                ++values.checked;
                if (sheet->cellType(c.row, c.col) != CellNumber) values.miss(where + "date is no number");
                continue;
            }
            ++values.checked;
            if (c.type == "number") {
                double want = std::strtod(c.value.c_str(), nullptr);
                double got = sheet->readNum(c.row, c.col);
                if (!(got == want || std::fabs(got - want) <= 1e-9 * std::fabs(want)) &&
                    !(std::isinf(want) && std::isinf(got)))
                    values.miss(where + "number " + std::to_string(got) + " vs " + c.value + " " + book->errorMessage());
            } else if (c.type == "text") {
                const char* text = sheet->readStr(c.row, c.col);
                // Escapes are decimal by rule and a string with its own text ignores its runs:
                // texts that differ only there are told apart from real differences.
                if (text && c.value != text &&
                    (std::string(text).find("_x") != std::string::npos || c.value.compare(0, std::strlen(text), text) == 0))
                    ++byRule;
                else if (!text || c.value != text)
                    values.miss(where + "text [" + (text ? text : book->errorMessage()) + "] vs [" + c.value + "]");
            } else if (c.type == "bool") {
                bool got = sheet->readBool(c.row, c.col);
                if (got != (c.value == "1") || std::string(book->errorMessage()) != "ok") values.miss(where + "bool");
            } else if (c.type == "error") {
                // The reader shows a date number it cannot convert as an error.
                if (sheet->cellType(c.row, c.col) == CellNumber && sheet->isDate(c.row, c.col)) {
                    ++byRule;
                    continue;
                }
                int got = sheet->readError(c.row, c.col);
                if (c.value != errorText(got)) values.miss(where + "error " + errorText(got) + " vs " + c.value);
            }
        }
    }
}

// Content types of the parts that the book rewrites; all others go back as they came.
bool modelled(const std::wstring& type) {
    using namespace ooxml_names;
    return type.empty() || type == relsType || type == workbookType || type == macroWorkbookType ||
           type == templateWorkbookType || type == macroTemplateWorkbookType || type == worksheetType ||
           type == stylesType || type == sharedStringsType || type == L"application/vnd.openxmlformats-officedocument.spreadsheetml.calcChain+xml";
}

// Packages whose entry names use "\" between the pieces of a path, or whose names differ from
// the content types' part names in case. The manifest calls them damaged because its check and its
// reader take names literally; entry names become package paths with "/" and parts are found
// whatever their case, so they load. Values from the independent reader on copies with the names
// written out as package paths.
const char* const kLoadByPathRules[] = {"javalib-49609.xlsx", "netreader-Test_git_issue_385_backslash.xlsx",
                                        "rsreader-issue_530.xlsx"};

bool loadsByPathRules(const std::string& file) {
    for (const char* name : kLoadByPathRules)
        if (file == name) return true;
    return false;
}

TEST(XlsxCorpus, BackslashAndCaseBlindEntryNamesLoadByTheirPackagePaths) {
    const std::string dir = shared() + "/corpus/xlsx/";
    if (!std::ifstream(dir + kLoadByPathRules[0])) GTEST_SKIP() << "no corpus at " << shared();
    const struct {
        const char* file;
        int sheets, sheet;
        const char* name;
        int row, col;
        const char* text;
        int numRow, numCol;
        double number;
    } cases[] = {
        // "[content_types].xml" and "xl\\sharedstrings.xml" against "/xl/sharedStrings.xml".
        {"javalib-49609.xlsx", 2, 1, "VIC", 0, 1, "Cycle", 38, 97, 1992.58701547893},
        {"netreader-Test_git_issue_385_backslash.xlsx", 1, 0, "Sheet1", 9, 9, "10x27", -1, 0, 0},
        {"rsreader-issue_530.xlsx", 1, 0, "\xE5\x87\xBA\xE5\x8B\xA4\xE5\x88\x86\xE7\xB1\xBB\xE7\xBB\x84\xE7\xBB\x87"
                                          "\xE6\xB1\x87\xE6\x80\xBB\xE8\xA1\xA8",
         0, 1, "\xE4\xBA\x8E\xE5\x9B\xBD\xE6\xA0\x8B", -1, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        BookPtr<char> book = newXmlBook<char>();
        ASSERT_TRUE(book->load((dir + c.file).c_str())) << book->errorMessage();
        book->setLocale("UTF-8");
        auto check = [&](IBookT<char>* b) {
            ASSERT_EQ(b->sheetCount(), c.sheets);
            ISheetT<char>* sheet = b->getSheet(c.sheet);
            ASSERT_NE(sheet, nullptr);
            EXPECT_STREQ(sheet->name(), c.name);
            const char* text = sheet->readStr(c.row, c.col);
            EXPECT_STREQ(text ? text : b->errorMessage(), c.text);
            if (c.numRow >= 0) EXPECT_DOUBLE_EQ(sheet->readNum(c.numRow, c.numCol), c.number);
        };
        check(book.get());
        // Saved, the names are package paths with "/", and the book reads back the same.
        const char* data = nullptr;
        unsigned size = 0;
        ASSERT_TRUE(book->saveRaw(&data, &size)) << book->errorMessage();
        for (const auto& part : entries(data, size)) EXPECT_EQ(part.first.find('\\'), std::string::npos) << part.first;
        std::string copy(data, size);
        BookPtr<char> again = newXmlBook<char>();
        ASSERT_TRUE(again->loadRaw(copy.data(), size)) << again->errorMessage();
        again->setLocale("UTF-8");
        check(again.get());
    }
}

TEST(XlsxCorpus, LoadsMatchesOraclesAndRoundTrips) {
    if (!std::ifstream(shared() + "/corpus/MANIFEST.tsv")) GTEST_SKIP() << "no corpus at " << shared();
    std::vector<Entry> corpus = corpusEntries();
    std::map<std::string, Oracle> oracles = loadOracles(corpus);
    int loaded[2] = {0, 0}, shouldLoad[2] = {0, 0}, failedAsExpected = 0, shouldFail = 0;
    Tally values, formulas, roundTrip, bytes, resave;
    int differByRule = 0, loadByPathRules = 0;
    std::vector<std::string> loadFailures, unexpectedLoads;
    for (const Entry& e : corpus) {
        std::string file = e.path.substr(e.path.rfind('/') + 1);
        BookPtr<char> book = newXmlBook<char>();
        bool ok = book->load(e.path.c_str());
        if (e.expected != "load-ok") {
            if (loadsByPathRules(file)) {
                ++loadByPathRules;
                EXPECT_TRUE(ok) << file << ": " << book->errorMessage();
            } else if (e.expected != "unknown") {
                ++shouldFail;
                if (!ok) ++failedAsExpected;
                else unexpectedLoads.push_back(file);
                if (!ok) {
                    EXPECT_STRNE(book->errorMessage(), "ok") << file;
                }
            }
            continue;
        }
        ++shouldLoad[e.strict];
        if (!ok) {
            loadFailures.push_back(file + ": " + book->errorMessage());
            continue;
        }
        ++loaded[e.strict];
        book->setLocale("UTF-8");
        const Oracle& oracle = oracles[e.path];
        if (oracle.error.empty()) compareCells(book.get(), oracle, file, values, formulas, differByRule);

        std::string savedPath = tmpPath("corpus-roundtrip" + std::string(e.path.substr(e.path.rfind('.'))));
        if (!book->save(savedPath.c_str())) {
            roundTrip.miss(file + ": save: " + book->errorMessage());
            continue;
        }
        BookPtr<char> again = newXmlBook<char>();
        if (!again->load(savedPath.c_str())) {
            roundTrip.miss(file + ": reload: " + again->errorMessage());
            continue;
        }
        again->setLocale("UTF-8");
        ++roundTrip.checked;
        if (oracle.error.empty()) {
            Tally v2, f2;
            int ignored = 0;
            compareCells(again.get(), oracle, file + " (reloaded)", v2, f2, ignored);
            Tally v1, f1;
            compareCells(book.get(), oracle, file, v1, f1, ignored);
            if (v2.mismatched != v1.mismatched || f2.mismatched != f1.mismatched)
                roundTrip.miss(file + ": reloaded cells differ" + (v2.samples.empty() ? std::string() : ": " + v2.samples[0]));
        }
        // Parts kept as bytes come back unchanged.
        std::string original = readFile(e.path), saved = readFile(savedPath);
        auto before = entries(original.data(), static_cast<unsigned>(original.size()));
        auto after = entries(saved.data(), static_cast<unsigned>(saved.size()));
        std::string typesName;
        for (const auto& part : before)
            if (part.first.size() == 19 && strcasecmp(part.first.c_str(), "[Content_Types].xml") == 0) typesName = part.first;
        ContentTypes types(before[typesName].data(), static_cast<unsigned>(before[typesName].size()));
        for (const auto& part : before) {
            std::wstring name = L"/" + std::wstring(part.first.begin(), part.first.end());
            if (part.first == typesName || modelled(types.contentType(name)) || part.second.empty()) continue;
            ++bytes.checked;
            auto it = after.find(part.first);
            if (it == after.end()) bytes.miss(file + ": part lost: " + part.first);
            else if (it->second != part.second) bytes.miss(file + ": part changed: " + part.first);
        }
        // A second save of the reloaded book writes the same entries.
        const char* data = nullptr;
        unsigned size = 0;
        ++resave.checked;
        if (!again->saveRaw(&data, &size)) {
            resave.miss(file + ": " + again->errorMessage());
        } else if (entries(data, size) != after) {
            resave.miss(file + ": second save differs");
        }
    }
    auto report = [](const char* what, const Tally& t) {
        std::printf("%s: %d checked, %d mismatched\n", what, t.checked, t.mismatched);
        for (const auto& s : t.samples) std::printf("    %s\n", s.c_str());
    };
    std::printf("transitional load-ok packages: %d of %d loaded\n", loaded[0], shouldLoad[0]);
    std::printf("strict load-ok packages: %d of %d loaded\n", loaded[1], shouldLoad[1]);
    std::printf("packages that should fail: %d of %d failed\n", failedAsExpected, shouldFail);
    std::printf("marked damaged for their entry names, loaded by the package path rules: %d\n", loadByPathRules);
    for (const auto& f : loadFailures) std::printf("    load failure: %s\n", f.c_str());
    for (const auto& f : unexpectedLoads) std::printf("    loaded though damaged: %s\n", f.c_str());
    report("cell values", values);
    std::printf("texts and dates that differ from the reader's by this book's rules: %d\n", differByRule);
    report("formula texts", formulas);
    report("round trips", roundTrip);
    report("kept parts", bytes);
    report("second saves", resave);
    EXPECT_EQ(loaded[0], shouldLoad[0]);
    EXPECT_EQ(loaded[1], shouldLoad[1]);
    EXPECT_EQ(values.mismatched, 0);
    EXPECT_EQ(roundTrip.mismatched, 0);
    EXPECT_EQ(bytes.mismatched, 0);
    EXPECT_EQ(resave.mismatched, 0);
    RecordProperty("formula_mismatches", formulas.mismatched);
}

}  // namespace
