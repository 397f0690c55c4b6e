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

#include "xlsx_oracle.h"
#include "xml_test_util.h"
#include "xmlbook/xml_package.h"

using namespace zelvar;
using namespace xmltest;

namespace {

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

std::map<std::string, Oracle> corpusOracles(const std::vector<Entry>& entries) {
    std::vector<std::string> paths;
    for (const Entry& e : entries) paths.push_back(e.path);
    return loadOracles(paths, "xlsx-oracles.txt");
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
            ++values.checked;
            std::string why;
            ValueCheck check = checkValue(book, sheet, c.row, c.col, c, why);
            if (check == ValueCheck::ByRule) ++byRule;
            if (check == ValueCheck::Differs) values.miss(where + why);
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
    std::map<std::string, Oracle> oracles = corpusOracles(corpus);
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
