// Real binary workbooks written by other programs: every file that should load does, its cells
// match what an independent reader saw (the corpus oracles), a load-save-load round trip keeps
// them, saving the reloaded book again gives the same bytes, and every record the writer does not
// form anew comes back byte for byte.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "xls_stream_util.h"
#include "zelvar.h"

using namespace zelvar;

namespace {

struct OracleCell {
    int row, col;
    std::string type, value;
};
struct OracleSheet {
    std::string name;
    std::vector<OracleCell> cells;
};
struct Oracle {
    std::string error;
    std::vector<OracleSheet> sheets;
};

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

std::vector<std::string> split(const std::string& line) {
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

std::string shared() { return ZELVAR_SHARED_DIR; }

std::string readFile(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

struct Entry {
    std::string path, expected;
};

// Entries of a manifest whose paths start with "xls/", resolved against root.
std::vector<Entry> manifestEntries(const std::string& manifest, const std::string& root) {
    std::vector<Entry> entries;
    std::istringstream lines(readFile(manifest));
    std::string line;
    while (std::getline(lines, line)) {
        auto parts = split(line);
        if (parts.size() < 7 || parts[0].rfind("xls/", 0) != 0) continue;
        entries.push_back({root + "/" + parts[0], parts[6]});
    }
    return entries;
}

std::map<std::string, Oracle> oracles(const std::vector<std::string>& files) {
    std::map<std::string, Oracle> result;
    std::string list = std::string(ZELVAR_TEST_TMP) + "/oracle-list.txt";
    std::string command = std::string(ZELVAR_PYTHON) + " " + ZELVAR_SOURCE_DIR + "/tests/book/oracle_cells.py";
    for (const auto& f : files) command += " '" + f + ".oracle.json'";
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return result;
    std::string text;
    char buf[65536];
    size_t n;
    while ((n = fread(buf, 1, sizeof buf, pipe)) > 0) text.append(buf, n);
    pclose(pipe);
    std::istringstream lines(text);
    std::string line;
    Oracle* current = nullptr;
    while (std::getline(lines, line)) {
        auto p = split(line);
        if (p[0] == "F" && p.size() >= 2) {
            std::string file = p[1].substr(0, p[1].size() - std::string(".oracle.json").size());
            current = &result[file];
        } else if (!current) {
            continue;
        } else if (p[0] == "E") {
            current->error = p.size() > 1 ? p[1] : "error";
        } else if (p[0] == "S" && p.size() >= 3) {
            current->sheets.push_back({unescape(p[2]), {}});
        } else if (p[0] == "C" && p.size() >= 5 && !current->sheets.empty()) {
            current->sheets.back().cells.push_back({std::atoi(p[1].c_str()), std::atoi(p[2].c_str()), p[3], unescape(p[4])});
        }
    }
    return result;
}

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

// Compares one book with the oracle; returns the number of mismatches (reported as failures).
int compareWithOracle(IBookT<char>* book, const Oracle& oracle, const std::string& file) {
    int mismatches = 0;
    std::vector<ISheetT<char>*> worksheets;
    for (int i = 0; i < book->sheetCount(); ++i)
        if (book->sheetType(i) == SheetTypeWorksheet) worksheets.push_back(book->getSheet(i));
    if (worksheets.size() < oracle.sheets.size()) {
        ADD_FAILURE() << file << ": " << worksheets.size() << " worksheets, oracle has " << oracle.sheets.size();
        return 1;
    }
    for (size_t s = 0; s < oracle.sheets.size(); ++s) {
        ISheetT<char>* sheet = worksheets[s];
        const OracleSheet& expected = oracle.sheets[s];
        if (expected.name != sheet->name()) {
            ADD_FAILURE() << file << ": sheet " << s << " is '" << sheet->name() << "', oracle '" << expected.name << "'";
            ++mismatches;
        }
        for (const OracleCell& cell : expected.cells) {
            std::string where = file + " [" + expected.name + "!" + std::to_string(cell.row) + "," + std::to_string(cell.col) + "] ";
            if (cell.row > 65535 || cell.col > 255) continue;
            int type = sheet->cellType(cell.row, cell.col);
            bool ok = true;
            std::string got;
            if (cell.type == "number" || cell.type == "date") {
                double v = sheet->readNum(cell.row, cell.col);
                double want = std::strtod(cell.value.c_str(), nullptr);
                ok = type == CellNumber && (v == want || (std::isnan(v) && std::isnan(want)));
                got = std::to_string(v);
            } else if (cell.type == "text" && cell.value.empty() && type == CellBlank && sheet->isFormula(cell.row, cell.col)) {
                ok = true;  // a formula whose cached result is the empty text reads as a blank
            } else if (cell.type == "text") {
                const char* s = sheet->readStr(cell.row, cell.col);
                ok = type == CellString && s && cell.value == s;
                got = s ? s : "(null)";
            } else if (cell.type == "bool") {
                ok = type == CellBoolean && sheet->readBool(cell.row, cell.col) == (cell.value == "1");
            } else if (cell.type == "error") {
                int code = sheet->readError(cell.row, cell.col);
                ok = type == CellError && cell.value == errorText(code);
                got = errorText(code);
            }
            if (!ok) {
                if (++mismatches <= 5)
                    ADD_FAILURE() << where << "expected " << cell.type << " '" << cell.value << "', got type " << type
                                  << " '" << got << "'";
            }
        }
    }
    return mismatches;
}

struct BookHolder {
    IBookT<char>* book = zvCreateBookA();
    BookHolder() { book->setLocale("UTF-8"); }
    ~BookHolder() { book->release(); }
};

// Loads every file of a manifest and checks it as its expected outcome says; returns counts.
void checkCorpus(const std::vector<Entry>& entries, int minimumLoaded) {
    std::vector<std::string> okFiles;
    for (const auto& e : entries)
        if (e.expected == "load-ok") okFiles.push_back(e.path);
    auto dumps = oracles(okFiles);
    int loaded = 0, compared = 0, roundTrips = 0, refused = 0;
    for (const auto& e : entries) {
        BookHolder holder;
        IBookT<char>* book = holder.book;
        bool ok = book->load(e.path.c_str());
        if (e.expected == "load-fail-encrypted") {
            EXPECT_FALSE(ok) << e.path;
            if (!ok) {
                EXPECT_STREQ("workbook is encrypted", book->errorMessage()) << e.path;
            }
            continue;
        }
        if (e.expected == "load-fail-damaged") {
            // The end of the workbook stream is where its sector chain ends: a stream cut inside
            // a record but padded to its sector reads as whole.
            bool paddedCut = e.path.find("gen-damaged-stream-cut-mid-record") != std::string::npos ||
                             e.path.find("fuzzcase-javalibbinFuzzer-4657005060816896") != std::string::npos;
            if (!paddedCut) {
                EXPECT_FALSE(ok) << e.path << " loaded although damaged";
            }
            continue;
        }
        if (e.expected != "load-ok") continue;
        if (!ok) {
            // Files this library refuses on purpose: a zero record id where a record must begin,
            // and an InterfaceEnd record with a payload.
            std::string message = book->errorMessage();
            if (message == "read error: record id can't be 0" || message == "InterfaceEnd size is incorrect") {
                ++refused;
                continue;
            }
            ADD_FAILURE() << e.path << ": " << message;
            continue;
        }
        ++loaded;
        const Oracle& oracle = dumps[e.path];
        if (!oracle.error.empty()) continue;
        if (compareWithOracle(book, oracle, e.path) == 0) ++compared;

        // Round trip: save, reload, compare again; a second save gives the same bytes.
        const char* data = nullptr;
        unsigned size = 0;
        if (!book->saveRaw(&data, &size)) {
            // Books whose stream is called "Book" are read, never written.
            continue;
        }
        std::string first(data, size);
        BookHolder again;
        if (!again.book->loadRaw(first.data(), static_cast<unsigned>(first.size()))) {
            ADD_FAILURE() << e.path << ": reload failed: " << again.book->errorMessage();
            continue;
        }
        if (compareWithOracle(again.book, oracle, e.path + " (reloaded)") != 0) continue;
        ASSERT_TRUE(again.book->saveRaw(&data, &size)) << again.book->errorMessage();
        EXPECT_EQ(first, std::string(data, size)) << e.path << ": second save differs";
        ++roundTrips;
    }
    std::printf("loaded %d, matched oracle %d, round trips %d, refused %d\n", loaded, compared, roundTrips, refused);
    EXPECT_GE(loaded, minimumLoaded);
}

}  // namespace

TEST(XlsCorpus, FilesLoadMatchTheOracleAndRoundTrip) {
    std::string manifest = shared() + "/corpus/MANIFEST.tsv";
    if (readFile(manifest).empty()) GTEST_SKIP() << "shared corpus not present";
    checkCorpus(manifestEntries(manifest, shared() + "/corpus"), 160);
}

// A few real files travel with the repository, so a clone without the shared corpus still tests
// them. Their manifest keeps the corpus's paths ("xls/<name>").
TEST(XlsCorpus, RepositoryCopiesLoadAndRoundTrip) {
    std::string dir = std::string(ZELVAR_SOURCE_DIR) + "/tests/data/biff";
    auto entries = manifestEntries(dir + "/MANIFEST.tsv", dir);
    for (auto& e : entries) e.path = dir + "/" + e.path.substr(dir.size() + 1 + 4);
    ASSERT_EQ(9u, entries.size());
    checkCorpus(entries, 8);
}

// Formula texts of the corpus are compared with an independent reader's in
// tests/formula/corpus_formula_text_test.cpp.

namespace {

// A logical record: its id and its payload joined with those of the CONTINUEs behind it.
using Logical = std::pair<uint16_t, std::string>;

// The substreams of a workbook stream (globals first, then one per sheet, in order), each as its
// logical records. A BOF inside a substream (an embedded chart) belongs to that substream; bytes
// behind the last EOF (left over in the stream by some writers) belong to none.
std::vector<std::vector<Logical>> substreams(const std::vector<zvtest::Record>& records) {
    std::vector<std::vector<Logical>> out;
    int depth = 0;
    for (const auto& r : records) {
        if (r.id == rt::Bof && depth++ == 0) out.emplace_back();
        if (depth == 0) continue;
        if (r.id == rt::Continue && !out.back().empty())
            out.back().back().second += r.payload;
        else
            out.back().emplace_back(r.id, r.payload);
        if (r.id == rt::Eof && --depth < 0) depth = 0;
    }
    return out;
}

// Records the writer forms anew by rule, so their bytes may differ from the input's:
const std::set<uint16_t> kReformed = {
    // cells: MulRk and MulBlank come out as single RK and Blank records, formulas marked for
    // recalculation, Label and rich text in the 16-bit form, a padded BoolErr in 8 bytes; and
    // what only locates cells: Row (column range zeroed), DBCell, Dimensions (recomputed)
    189, 190, 513, 6, 516, 214, 517, 520, 215, 512,
    // the string table, written in its own CONTINUE layout
    252,
    // BoundSheet (sheet positions, name in the 16-bit form) and column runs
    133, 125,
    // text records written in the 16-bit form: Font, Format, Style, Header, Footer
    49, 1054, 659, 20, 21,
    // the tab id list, which the book sets to 1 to n
    317,
};

// Records dropped on purpose: ExtSST and BookExt are not written, Excel9File carries nothing, a
// Pls outside its page setup run is not written back, empty page break lists are not written.
const std::set<uint16_t> kDropped = {255, 2147, 448, 77, 26, 27};

// Records held in one member or slot of the book or sheet: of several in a substream, the last
// one read is the one kept.
const std::set<uint16_t> kSingle = {
    // globals
    14, 18, 19, 25, 34, 61, 64, 66, 92, 140, 141, 146, 156, 193, 218, 225, 352, 353, 431, 439, 444, 449,
    211, 442, 445, 2172, 2188, 2190, 2198, 2202, 2203, 2211, 4188,
    // worksheets
    12, 13, 15, 16, 17, 42, 43, 65, 80, 85, 94, 95, 128, 129, 130, 131, 132, 144, 153, 157, 160, 161,
    239, 450, 549, 574, 2164, 2187, 2204, 38, 39, 40, 41};

void keepLastOfSingles(std::vector<Logical>& records) {
    std::set<uint16_t> seen;
    std::vector<Logical> kept;
    for (auto r = records.rbegin(); r != records.rend(); ++r)
        if (!kSingle.count(r->first) || seen.insert(r->first).second) kept.push_back(*r);
    records.assign(kept.rbegin(), kept.rend());
}

// The input's records that the output lacks, per substream, as "id" texts.
std::vector<std::string> missingRecords(const std::string& input, const std::string& output) {
    auto before = substreams(zvtest::streamRecords(input));
    auto after = substreams(zvtest::streamRecords(output));
    std::vector<std::string> missing;
    if (before.size() != after.size()) {
        missing.push_back("substream count " + std::to_string(before.size()) + " -> " + std::to_string(after.size()));
        return missing;
    }
    for (size_t s = 0; s < before.size(); ++s) {
        keepLastOfSingles(before[s]);
        std::multiset<Logical> kept(after[s].begin(), after[s].end());
        for (const Logical& r : before[s]) {
            if (kReformed.count(r.first) || kDropped.count(r.first)) continue;
            auto found = kept.find(r);
            if (found != kept.end()) {
                kept.erase(found);
                continue;
            }
            missing.push_back("substream " + std::to_string(s) + " record " + std::to_string(r.first) + " (" +
                              std::to_string(r.second.size()) + " bytes)");
        }
    }
    return missing;
}

}  // namespace

// After load and save, every record that the writer does not form anew comes back byte for byte,
// each joined with its CONTINUEs and compared as a multiset per substream.
TEST(XlsCorpus, RoundTripKeepsRecordsByteForByte) {
    std::string manifest = shared() + "/corpus/MANIFEST.tsv";
    if (readFile(manifest).empty()) GTEST_SKIP() << "shared corpus not present";
    int saved = 0, lossless = 0;
    for (const auto& e : manifestEntries(manifest, shared() + "/corpus")) {
        if (e.expected != "load-ok") continue;
        std::string input = readFile(e.path);
        BookHolder holder;
        if (!holder.book->loadRaw(input.data(), static_cast<unsigned>(input.size()))) continue;
        const char* data = nullptr;
        unsigned size = 0;
        if (!holder.book->saveRaw(&data, &size)) continue;  // a "Book" stream is read, never written
        ++saved;
        auto missing = missingRecords(input, std::string(data, size));
        if (missing.empty()) {
            ++lossless;
            continue;
        }
        std::string list;
        for (size_t i = 0; i < missing.size() && i < 5; ++i) list += "\n  " + missing[i];
        ADD_FAILURE() << e.path << ": " << missing.size() << " records lost or changed" << list;
    }
    std::printf("saved %d, byte-lossless %d\n", saved, lossless);
}
