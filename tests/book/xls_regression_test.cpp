// Faults found outside the tests, each kept as a regression test named after what the user saw.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "biff/xls.h"
#include "xls_stream_util.h"
#include "zelvar.h"

using namespace zelvar;
using namespace zvtest;

namespace {

std::string readFile(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

std::string saved(IBookT<char>* book) {
    const char* data = nullptr;
    unsigned size = 0;
    EXPECT_TRUE(book->saveRaw(&data, &size)) << book->errorMessage();
    return data ? std::string(data, size) : std::string();
}

struct Book {
    IBookT<char>* book = zvCreateBookA();
    ~Book() { book->release(); }
    IBookT<char>* operator->() const { return book; }
};

// The records of the globals substream, up to and without its EOF.
std::vector<Record> globals(const std::vector<Record>& all) {
    std::vector<Record> out;
    for (const auto& r : all) {
        if (r.id == rt::Eof) break;
        out.push_back(r);
    }
    return out;
}

// The MsoDrawingGroup records of the globals, each followed by its CONTINUEs.
std::vector<Record> drawingGroup(const std::vector<Record>& all) {
    std::vector<Record> out;
    bool inGroup = false;
    for (const auto& r : globals(all)) {
        if (r.id == rt::MsoDrawingGroup) inGroup = true;
        else if (r.id != rt::Continue) inGroup = false;
        if (inGroup) out.push_back(r);
    }
    return out;
}

std::string filled(size_t size, char seed) {
    std::string s(size, '\0');
    for (size_t i = 0; i < size; ++i) s[i] = static_cast<char>(seed + i * 7);
    return s;
}

// A saved book with these records put in front of the globals' EOF.
std::string withGlobals(const std::vector<Record>& extra) {
    Book book;
    book->addSheet("S")->writeNum(0, 0, 1);
    auto all = streamRecords(saved(book.book));
    size_t eof = 0;
    while (eof < all.size() && all[eof].id != rt::Eof) ++eof;
    all.insert(all.begin() + static_cast<long>(eof), extra.begin(), extra.end());
    return container(all);
}

}  // namespace

// Pictures destroyed on save: a drawing group stored as two MsoDrawingGroup records, each with
// CONTINUEs, lost its first record on load.
TEST(XlsRegression, PicturesDestroyedOnSaveDrawingGroupOfTwoRecords) {
    const std::vector<Record> group = {{rt::MsoDrawingGroup, filled(8224, 1)},
                                       {rt::Continue, filled(8224, 2)},
                                       {rt::Continue, filled(100, 3)},
                                       {rt::MsoDrawingGroup, filled(8224, 4)},
                                       {rt::Continue, filled(31, 5)}};
    std::string file = withGlobals(group);
    Book book;
    ASSERT_TRUE(book->loadRaw(file.data(), static_cast<unsigned>(file.size()))) << book->errorMessage();
    auto after = drawingGroup(streamRecords(saved(book.book)));
    ASSERT_EQ(group.size(), after.size());
    for (size_t i = 0; i < group.size(); ++i) {
        EXPECT_EQ(group[i].id, after[i].id) << i;
        EXPECT_EQ(group[i].payload, after[i].payload) << i;
    }
}

TEST(XlsRegression, PicturesDestroyedOnSaveCorpusFiles) {
    int checked = 0;
    for (const char* name : {"javalib-drawings.xls", "javalib-57231_MixedGasReport.xls"}) {
        std::string original = readFile(std::string(ZELVAR_SHARED_DIR) + "/corpus/xls/" + name);
        if (original.empty()) continue;
        Book book;
        ASSERT_TRUE(book->loadRaw(original.data(), static_cast<unsigned>(original.size()))) << name;
        auto before = drawingGroup(streamRecords(original));
        auto after = drawingGroup(streamRecords(saved(book.book)));
        std::string joinedBefore, joinedAfter;
        for (const auto& r : before) joinedBefore += r.payload;
        for (const auto& r : after) joinedAfter += r.payload;
        EXPECT_GT(before.size(), 2u) << name;
        EXPECT_EQ(joinedBefore.size(), joinedAfter.size()) << name;
        EXPECT_TRUE(joinedBefore == joinedAfter) << name;
        ++checked;
    }
    if (checked == 0) GTEST_SKIP() << "shared corpus not present";
}

namespace {

std::string bytes(std::initializer_list<int> values) {
    std::string s;
    for (int v : values) s.push_back(static_cast<char>(v));
    return s;
}

// A saved one-sheet book with these records put right behind the worksheet's Dimensions.
std::string withSheetRecords(const std::vector<Record>& extra) {
    Book book;
    book->addSheet("S")->writeNum(0, 0, 1);
    auto all = streamRecords(saved(book.book));
    size_t at = 0, bofs = 0;
    for (; at < all.size(); ++at) {
        if (all[at].id == rt::Bof) ++bofs;
        if (bofs == 2 && all[at].id == rt::Dimensions) break;
    }
    all.insert(all.begin() + static_cast<long>(at + 1), extra.begin(), extra.end());
    return container(all);
}

// The ids of the records that follow the Formula record of the cell, up to the next cell record.
std::vector<uint16_t> recordsBehindFormula(const std::string& file, int row, int col) {
    auto all = streamRecords(file);
    std::vector<uint16_t> ids;
    for (size_t i = 0; i < all.size(); ++i) {
        const Record& r = all[i];
        if (r.id != rt::Formula || r.payload.size() < 4) continue;
        if (static_cast<uint8_t>(r.payload[0]) != row || static_cast<uint8_t>(r.payload[2]) != col) continue;
        for (size_t j = i + 1; j < all.size() && (all[j].id == rt::ShrFmla || all[j].id == rt::String ||
                                                  all[j].id == rt::Array || all[j].id == rt::Table ||
                                                  all[j].id == rt::Continue);
             ++j)
            ids.push_back(all[j].id);
    }
    return ids;
}

std::string runXlrd(const std::string& path) {
    std::string command = std::string(ZELVAR_PYTHON) + " " + ZELVAR_SOURCE_DIR + "/tests/book/xlrd_dump.py '" + path + "' 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    std::string text;
    char buf[4096];
    size_t n;
    while (pipe && (n = fread(buf, 1, sizeof buf, pipe)) > 0) text.append(buf, n);
    if (pipe) pclose(pipe);
    return text;
}

}  // namespace

// Wrong text in cells: after "first" was replaced in place by "second", writing "first" to another
// cell found the replaced slot and showed "second".
TEST(XlsRegression, WrongTextInCellsAfterInPlaceReplacement) {
    Book book;
    ISheetT<char>* sheet = book->addSheet("S");
    ASSERT_TRUE(sheet->writeStr(0, 0, "first"));
    ASSERT_TRUE(sheet->writeStr(0, 0, "second"));
    ASSERT_TRUE(sheet->writeStr(1, 0, "first"));
    ASSERT_TRUE(sheet->writeStr(2, 0, "second"));
    EXPECT_STREQ("second", sheet->readStr(0, 0));
    EXPECT_STREQ("first", sheet->readStr(1, 0));
    EXPECT_STREQ("second", sheet->readStr(2, 0));
    // And after a round trip through the file.
    std::string file = saved(book.book);
    Book again;
    ASSERT_TRUE(again->loadRaw(file.data(), static_cast<unsigned>(file.size())));
    EXPECT_STREQ("second", again->getSheet(0)->readStr(0, 0));
    EXPECT_STREQ("first", again->getSheet(0)->readStr(1, 0));
    EXPECT_STREQ("second", again->getSheet(0)->readStr(2, 0));
}

// Stale records after rewriting a formula: the shared formula, array and String records of the old
// formula stayed behind the new one.
TEST(XlsRegression, StaleRecordsAfterRewritingAFormula) {
    const std::string number3 = bytes({0, 0, 0, 0, 0, 0, 8, 64});
    const std::string textResult = bytes({0, 0, 0, 0, 0, 0, 0xFF, 0xFF});
    // Row 1: a shared formula 1+2 over B2:C2 (master B2), row 2: ="x" with its String record.
    const std::vector<Record> cells = {
        {rt::Formula, bytes({1, 0, 1, 0, 15, 0}) + number3 + bytes({8, 0, 0, 0, 0, 0, 5, 0, 1, 1, 0, 1, 0})},
        {rt::ShrFmla, bytes({1, 0, 1, 0, 1, 2, 0, 2, 7, 0, 0x1E, 1, 0, 0x1E, 2, 0, 3})},
        {rt::Formula, bytes({1, 0, 2, 0, 15, 0}) + number3 + bytes({8, 0, 0, 0, 0, 0, 5, 0, 1, 1, 0, 1, 0})},
        {rt::Formula, bytes({2, 0, 1, 0, 15, 0}) + textResult + bytes({0, 0, 0, 0, 0, 0, 5, 0, 0x17, 1, 1, 'x', 0})},
        {rt::String, bytes({1, 0, 1, 'x', 0})},
    };
    std::string file = withSheetRecords(cells);
    Book book;
    ASSERT_TRUE(book->loadRaw(file.data(), static_cast<unsigned>(file.size()))) << book->errorMessage();
    ISheetT<char>* sheet = book->getSheet(0);
    ASSERT_STREQ("x", sheet->readStr(2, 1));
    ASSERT_STREQ("1+2", sheet->readFormula(1, 2));
    ASSERT_TRUE(sheet->writeFormula(1, 1, "4*5"));
    ASSERT_TRUE(sheet->writeFormula(2, 1, "6*7"));
    std::string out = saved(book.book);
    EXPECT_EQ(std::vector<uint16_t>{}, recordsBehindFormula(out, 1, 1));
    EXPECT_EQ(std::vector<uint16_t>{}, recordsBehindFormula(out, 2, 1));
    // The group lives on in its other cell, which took the shared formula.
    EXPECT_EQ(std::vector<uint16_t>{1212}, recordsBehindFormula(out, 1, 2));

    Book again;
    ASSERT_TRUE(again->loadRaw(out.data(), static_cast<unsigned>(out.size()))) << again->errorMessage();
    EXPECT_STREQ("4*5", again->getSheet(0)->readFormula(1, 1));
    EXPECT_STREQ("6*7", again->getSheet(0)->readFormula(2, 1));
    EXPECT_STREQ("1+2", again->getSheet(0)->readFormula(1, 2));
    EXPECT_EQ(CellNumber, again->getSheet(0)->cellType(2, 1));

    std::string check = std::string(ZELVAR_PYTHON) + " -c 'import xlrd' 2>/dev/null";
    if (std::system(check.c_str()) != 0) GTEST_SKIP() << "python3-xlrd not installed";
    std::string path = std::string(ZELVAR_TEST_TMP) + "/stale-formula-records.xls";
    {
        std::ofstream f(path, std::ios::binary);
        f << out;
    }
    std::string dump = runXlrd(path);
    EXPECT_NE(std::string::npos, dump.find("C\t1\t1\tnumber\t0.0\n")) << dump;
    EXPECT_NE(std::string::npos, dump.find("C\t1\t2\tnumber\t3.0\n")) << dump;
    EXPECT_NE(std::string::npos, dump.find("C\t2\t1\tnumber\t0.0\n")) << dump;
    std::remove(path.c_str());
}

// A second BOF at a worksheet's start was taken as an embedded chart.
TEST(XlsRegression, SecondBofAtAWorksheetStartIsAnError) {
    Book book;
    book->addSheet("S")->writeNum(0, 0, 1);
    auto all = streamRecords(saved(book.book));
    size_t sheetBof = 0;
    for (size_t i = 1; i < all.size(); ++i)
        if (all[i].id == rt::Bof) sheetBof = i;
    ASSERT_GT(sheetBof, 0u);
    all.insert(all.begin() + static_cast<long>(sheetBof + 1), all[sheetBof]);
    std::string file = container(all);
    EXPECT_FALSE(book->loadRaw(file.data(), static_cast<unsigned>(file.size())));
    EXPECT_STREQ("read error: unexpected BOF record", book->errorMessage());
}

namespace {

uint16_t u16at(const std::string& s, size_t at) {
    return static_cast<uint16_t>(static_cast<uint8_t>(s[at]) | static_cast<uint8_t>(s[at + 1]) << 8);
}

std::string le16(unsigned v) { return bytes({static_cast<int>(v & 0xFF), static_cast<int>((v >> 8) & 0xFF)}); }

}  // namespace

// Crash on bad arguments: removeCol(-1, 0) wrote outside the sheet index, removeCol(-5, -3) read
// outside it. Moved cells that would land before the first column leave the grid, as with rows.
TEST(XlsRegression, CrashOnBadArgumentsOfRemoveCol) {
    Book book;
    ISheetT<char>* sheet = book->addSheet("S");
    ASSERT_TRUE(sheet->writeNum(0, 1, 1));
    ASSERT_TRUE(sheet->writeNum(0, 5, 5));
    ASSERT_TRUE(sheet->removeCol(-1, 0));  // two columns go: column 1 would move to -1
    EXPECT_EQ(CellEmpty, sheet->cellType(0, 1));
    EXPECT_EQ(CellEmpty, sheet->cellType(0, 0));
    EXPECT_EQ(5.0, sheet->readNum(0, 3));
    ASSERT_TRUE(sheet->removeCol(-5, -3));  // three columns go, as the count says
    EXPECT_EQ(5.0, sheet->readNum(0, 0));
    ASSERT_TRUE(sheet->writeNum(3, 0, 7));
    ASSERT_TRUE(sheet->removeRow(-5, -3));
    EXPECT_EQ(7.0, sheet->readNum(0, 0));
    EXPECT_EQ(1, sheet->lastRow());
    std::string file = saved(book.book);
    Book again;
    ASSERT_TRUE(again->loadRaw(file.data(), static_cast<unsigned>(file.size())));
    EXPECT_EQ(7.0, again->getSheet(0)->readNum(0, 0));
}

// Formatting runs lost: a rich text cell (record 214) was saved as a Label without its runs.
TEST(XlsRegression, FormattingRunsLostOfRichTextCells) {
    // "bold" with two runs: characters 0 to 1 in font 5, from 2 on in font 0.
    const std::string rich = bytes({1, 0, 0, 0, 15, 0}) + le16(4) + bytes({1, 'b', 0, 'o', 0, 'l', 0, 'd', 0}) + le16(2) +
                             le16(0) + le16(5) + le16(2) + le16(0);
    std::string file = withSheetRecords({{rt::RString, rich}});
    Book book;
    ASSERT_TRUE(book->loadRaw(file.data(), static_cast<unsigned>(file.size()))) << book->errorMessage();
    EXPECT_STREQ("bold", book->getSheet(0)->readStr(1, 0));
    auto after = streamRecords(saved(book.book));
    int found = 0;
    for (const auto& r : after) found += r.id == rt::RString && r.payload == rich;
    EXPECT_EQ(1, found);

    // The corpus file: every rich text record keeps its runs (the bytes behind the text).
    std::string original = readFile(std::string(ZELVAR_SHARED_DIR) + "/corpus/xls/gen-gtk-merged-rich-biff8.xls");
    if (original.empty()) GTEST_SKIP() << "shared corpus not present";
    Book corpus;
    ASSERT_TRUE(corpus->loadRaw(original.data(), static_cast<unsigned>(original.size())));
    auto runsOf = [](const std::vector<Record>& records) {
        std::vector<std::string> runs;
        for (const auto& r : records) {
            if (r.id != rt::RString) continue;
            size_t count = u16at(r.payload, 6), wide = static_cast<uint8_t>(r.payload[8]) & 1;
            runs.push_back(r.payload.substr(0, 6) + r.payload.substr(9 + count * (wide ? 2 : 1)));
        }
        return runs;
    };
    auto before = runsOf(streamRecords(original));
    EXPECT_FALSE(before.empty());
    EXPECT_EQ(before, runsOf(streamRecords(saved(corpus.book))));
}

// Real files refused: shapes that mainstream writers produce and independent readers accept.
TEST(XlsRegression, RealFilesRefusedForToleratedShapes) {
    struct Case {
        const char* what;
        bool inSheet;
        uint16_t id;
        std::string payload;
        const char* error;  // null: loads
    } cases[] = {
        {"BoolErr of 9 bytes", true, rt::BoolErr, bytes({1, 0, 0, 0, 15, 0, 1, 0, 0}), nullptr},
        {"BoolErr too short", true, rt::BoolErr, bytes({1, 0, 0, 0, 15, 0, 1}), "BoolErr size is incorrect"},
        {"Header as a bare count", true, rt::Header, bytes({0, 0}), nullptr},
        {"Footer as a bare count", true, rt::Footer, bytes({0, 0}), nullptr},
        {"Header of one byte", true, rt::Header, bytes({0}), "Header size is incorrect"},
        {"user Style as a bare count", false, rt::Style, le16(0x10) + le16(0), nullptr},
        {"Format count beyond its bytes", false, rt::Format, le16(200) + le16(9) + bytes({1, '0', 0, '.', 0, '0', 0}), nullptr},
        {"Format count short of its bytes", false, rt::Format, le16(201) + le16(1) + bytes({0, '0', '.', '0'}), nullptr},
        {"Format too short", false, rt::Format, le16(202) + bytes({1}), "Format size is incorrect"},
    };
    for (const auto& c : cases) {
        std::string file;
        if (c.inSheet) {
            file = withSheetRecords({{c.id, c.payload}});
        } else {
            Book base;
            base->addSheet("S")->writeNum(0, 0, 1);
            auto all = streamRecords(saved(base.book));
            std::vector<Record> with = {{c.id, c.payload}};
            // A Style or Format goes beside the others of its kind.
            for (size_t i = 0; i < all.size(); ++i)
                if (all[i].id == c.id || all[i].id == rt::XF) {
                    all.insert(all.begin() + static_cast<long>(i), with.begin(), with.end());
                    break;
                }
            file = container(all);
        }
        Book book;
        bool ok = book->loadRaw(file.data(), static_cast<unsigned>(file.size()));
        if (c.error) {
            EXPECT_FALSE(ok) << c.what;
            EXPECT_STREQ(c.error, book->errorMessage()) << c.what;
            continue;
        }
        ASSERT_TRUE(ok) << c.what << ": " << book->errorMessage();
        // What we save is well formed and loads again.
        std::string out = saved(book.book);
        Book again;
        ASSERT_TRUE(again->loadRaw(out.data(), static_cast<unsigned>(out.size()))) << c.what << ": " << again->errorMessage();
        for (const auto& r : streamRecords(out)) {
            if (r.id == rt::BoolErr) {
                EXPECT_EQ(8u, r.payload.size()) << c.what;
            }
            if (r.id == rt::Style && !(u16at(r.payload, 0) & 0x8000)) {
                EXPECT_GE(r.payload.size(), 5u) << c.what;
            }
        }
    }
    // The contents an independent reader sees.
    Book book;
    std::string file = withSheetRecords({{rt::BoolErr, cases[0].payload}});
    ASSERT_TRUE(book->loadRaw(file.data(), static_cast<unsigned>(file.size())));
    EXPECT_TRUE(book->getSheet(0)->readBool(1, 0));
    for (int k : {6, 7}) {
        Book base;
        base->addSheet("S")->writeNum(0, 0, 1);
        auto all = streamRecords(saved(base.book));
        all.insert(all.begin() + 1, {rt::Format, cases[k].payload});
        std::string withFormat = container(all);
        ASSERT_TRUE(book->loadRaw(withFormat.data(), static_cast<unsigned>(withFormat.size())));
        EXPECT_STREQ(k == 6 ? "0.0" : "0", book->customNumFormat(k == 6 ? 200 : 201));
    }
}

// Formulas to many sheets: an external sheet table continued in CONTINUE records was refused by
// makeXti, read as #REF! past its first record, and not followed by insertSheet and delSheet.
TEST(XlsRegression, FormulasToManySheetsThroughAContinuedTable) {
    Book base;
    for (const char* name : {"A", "B", "C"}) base->addSheet(name);
    ASSERT_TRUE(base->getSheet(0)->writeFormula(0, 0, "C!B2")) << base->errorMessage();
    auto all = streamRecords(saved(base.book));
    // 1400 entries for sheet A, then one for sheet C: the last lies in the continuation.
    std::string table = le16(1401);
    for (int i = 0; i < 1400; ++i) table += le16(0) + le16(0) + le16(0);
    table += le16(0) + le16(2) + le16(2);
    bool patched = false;
    for (size_t i = 0; i < all.size(); ++i) {
        if (all[i].id == rt::ExternSheet) {
            all[i].payload = table.substr(0, 8224);
            all.insert(all.begin() + static_cast<long>(i + 1), Record{rt::Continue, table.substr(8224)});
        }
        if (all[i].id == rt::Formula && (static_cast<uint8_t>(all[i].payload[22]) & 0x1F) == 0x1A) {
            all[i].payload.replace(23, 2, le16(1400));  // the PtgRef3d's table index
            patched = true;
        }
    }
    ASSERT_TRUE(patched);
    std::string file = container(all);
    Book book;
    ASSERT_TRUE(book->loadRaw(file.data(), static_cast<unsigned>(file.size()))) << book->errorMessage();
    EXPECT_STREQ("C!B2", book->getSheet(0)->readFormula(0, 0));
    ASSERT_NE(nullptr, book->insertSheet(0, "New"));
    EXPECT_STREQ("C!B2", book->getSheet(1)->readFormula(0, 0));
    ASSERT_TRUE(book->getSheet(1)->writeFormula(1, 0, "B!A1")) << book->errorMessage();
    ASSERT_TRUE(book->delSheet(0));
    EXPECT_STREQ("C!B2", book->getSheet(0)->readFormula(0, 0));
    EXPECT_STREQ("B!A1", book->getSheet(0)->readFormula(1, 0));

    std::string out = saved(book.book);
    int tables = 0;
    auto records = streamRecords(out);
    for (size_t i = 0; i < records.size(); ++i) {
        if (records[i].id != rt::ExternSheet) continue;
        ++tables;
        EXPECT_EQ(1402u, u16at(records[i].payload, 0));
        std::string joined = records[i].payload;
        for (size_t j = i + 1; j < records.size() && records[j].id == rt::Continue; ++j) joined += records[j].payload;
        EXPECT_EQ(2u + 6u * 1402u, joined.size());
    }
    EXPECT_EQ(1, tables);
    Book again;
    ASSERT_TRUE(again->loadRaw(out.data(), static_cast<unsigned>(out.size()))) << again->errorMessage();
    EXPECT_STREQ("C!B2", again->getSheet(0)->readFormula(0, 0));
    EXPECT_STREQ("B!A1", again->getSheet(0)->readFormula(1, 0));
}

// Duplicate names: setNamedRange on a name the sheet had as a single cell appended a second name
// of the same name and scope.
TEST(XlsRegression, DuplicateNamesFromSetNamedRangeOverASingleCellName) {
    Book base;
    ISheetT<char>* sheet = base->addSheet("S");
    ASSERT_TRUE(sheet->setNamedRange("Total", 4, 4, 2, 2));
    auto all = streamRecords(saved(base.book));
    // Turn the area name into a single-cell name, as other writers store it.
    for (auto& r : all) {
        if (r.id != rt::Lbl) continue;
        size_t tokens = r.payload.size() - 11;
        ASSERT_EQ(0x3B, static_cast<uint8_t>(r.payload[tokens]));
        std::string ref = bytes({0x3A}) + r.payload.substr(tokens + 1, 2) + le16(4) + le16(2);
        r.payload = r.payload.substr(0, tokens) + ref;
        r.payload.replace(4, 2, le16(7));
    }
    std::string file = container(all);
    Book book;
    ASSERT_TRUE(book->loadRaw(file.data(), static_cast<unsigned>(file.size()))) << book->errorMessage();
    sheet = book->getSheet(0);
    ASSERT_EQ(1, sheet->namedRangeSize());
    ASSERT_TRUE(sheet->setNamedRange("Total", 1, 3, 0, 1)) << book->errorMessage();
    EXPECT_EQ(1, sheet->namedRangeSize());
    int rf = -1, rl = -1, cf = -1, cl = -1;
    ASSERT_TRUE(sheet->getNamedRange("Total", &rf, &rl, &cf, &cl));
    EXPECT_EQ(1, rf);
    EXPECT_EQ(3, rl);
    EXPECT_EQ(0, cf);
    EXPECT_EQ(1, cl);
    int names = 0;
    for (const auto& r : streamRecords(saved(book.book))) names += r.id == rt::Lbl;
    EXPECT_EQ(1, names);
}

// Broken formula tokens: a string literal of characters beyond 16 bits got the count of its
// UTF-16 units cut to 8 bits.
TEST(XlsRegression, BrokenFormulaTokensOfLongNonBmpStrings) {
    IBookT<wchar_t>* book = zvCreateBookW();
    ISheetT<wchar_t>* sheet = book->addSheet(L"S");
    std::wstring fits = L"\"" + std::wstring(127, static_cast<wchar_t>(0x1F600)) + L"\"";
    std::wstring tooLong = L"\"" + std::wstring(128, static_cast<wchar_t>(0x1F600)) + L"\"";
    EXPECT_FALSE(sheet->writeFormula(0, 0, tooLong.c_str()));
    EXPECT_STREQ("string is too long", book->errorMessage());
    EXPECT_EQ(CellEmpty, sheet->cellType(0, 0));
    ASSERT_TRUE(sheet->writeFormula(0, 1, fits.c_str())) << book->errorMessage();
    const char* data = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(book->saveRaw(&data, &size));
    for (const auto& r : streamRecords(std::string(data, size))) {
        if (r.id != rt::Formula) continue;
        ASSERT_EQ(0x17, static_cast<uint8_t>(r.payload[22]));
        EXPECT_EQ(254, static_cast<uint8_t>(r.payload[23]));  // the units the text takes
        EXPECT_EQ(2u + 254u * 2u + 1u, u16at(r.payload, 20));
    }
    book->release();
}
