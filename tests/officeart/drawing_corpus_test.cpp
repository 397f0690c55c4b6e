// Drawings of real binary workbooks: every loadable file with a drawing loads, its pictures and
// comments read back (comments as python3-xlrd reads them), an edit and a save keep the OfficeArt
// bytes and the object records byte for byte, and a picture and a comment added to each file give
// a file that loads again with unique shape ids in each drawing.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "../book/xls_stream_util.h"
#include "officeart/sheet_drawing.h"
#include "officeart_test_util.h"
#include "zelvar.h"

using namespace zelvar;
using namespace zvtest;

namespace {

std::string corpusDir() { return std::string(ZELVAR_SHARED_DIR) + "/corpus"; }

// Load-ok binary workbooks of the corpus, by path.
std::vector<std::string> loadableXls() {
    std::vector<std::string> out;
    std::ifstream manifest(corpusDir() + "/MANIFEST.tsv");
    std::string line;
    while (std::getline(manifest, line)) {
        std::vector<std::string> parts;
        std::stringstream in(line);
        std::string part;
        while (std::getline(in, part, '\t')) parts.push_back(part);
        if (parts.size() >= 7 && parts[0].rfind("xls/", 0) == 0 && parts[6] == "load-ok" &&
            parts[0].size() > 4 && parts[0].substr(parts[0].size() - 4) == ".xls")
            out.push_back(corpusDir() + "/" + parts[0]);
    }
    return out;
}

// The drawing records of a workbook stream: the drawing group joined, and for each substream
// its drawing records in order (MsoDrawing, Obj, TextObject, the CONTINUE records behind them and
// embedded chart substreams), and its NoteSh payloads.
struct DrawingParts {
    std::string group;
    std::map<int, std::string> drawings;  // by substream number
    std::map<int, std::vector<std::string>> notes;
    bool any() const { return !group.empty() || !drawings.empty(); }
};

DrawingParts drawingParts(const std::string& file) {
    DrawingParts parts;
    int substream = -1, depth = 0;
    uint16_t carrier = 0;  // the record a CONTINUE belongs to
    for (const auto& r : streamRecords(file)) {
        std::string entry = std::to_string(r.id) + ":" + std::to_string(r.payload.size()) + ":" + r.payload;
        if (r.id == rt::Bof && depth++ == 0) ++substream;
        if (depth >= 2) {
            parts.drawings[substream] += entry;
            if (r.id == rt::Eof) --depth;
            continue;
        }
        if (r.id == rt::Eof) --depth;
        if (r.id != rt::Continue) carrier = r.id;
        bool inGroup = r.id == rt::MsoDrawingGroup || (r.id == rt::Continue && carrier == rt::MsoDrawingGroup);
        if (substream == 0 && inGroup) parts.group += r.payload;
        if (substream > 0 && (r.id == rt::MsoDrawing || r.id == rt::Obj || r.id == rt::TextObject ||
                              (r.id == rt::Continue &&
                               (carrier == rt::MsoDrawing || carrier == rt::Obj || carrier == rt::TextObject))))
            parts.drawings[substream] += entry;
        if (r.id == rt::NoteSh) parts.notes[substream].push_back(r.payload);
    }
    return parts;
}

// The joined MsoDrawing bytes of each substream, for reading its shapes.
std::map<int, std::vector<DrawingRecord>> sheetDrawingRecords(const std::string& file) {
    std::map<int, std::vector<DrawingRecord>> out;
    int substream = -1, depth = 0;
    for (const auto& r : streamRecords(file)) {
        if (r.id == rt::Bof && depth++ == 0) ++substream;
        if (r.id == rt::Eof) --depth;
        bool drawingRecord = r.id == rt::MsoDrawing || r.id == rt::Obj || r.id == rt::TextObject || r.id == rt::Continue;
        if (substream > 0 && (drawingRecord || depth >= 2 || r.id == rt::Eof)) {
            DrawingRecord d;
            d.id = r.id;
            d.payload.assign(r.payload.begin(), r.payload.end());
            out[substream].push_back(d);
        }
    }
    return out;
}

std::string runCommand(const std::string& command) {
    std::string out;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return out;
    char buffer[4096];
    size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) out.append(buffer, n);
    pclose(pipe);
    return out;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

struct Note {
    std::string author, text;
};
// (file, sheet name, row, col) -> note, as python3-xlrd reads them.
std::map<std::string, Note> xlrdNotes(const std::vector<std::string>& files) {
    std::map<std::string, Note> out;
    std::string command = std::string(ZELVAR_PYTHON) + " " + ZELVAR_SOURCE_DIR "/tests/officeart/xlrd_notes.py";
    for (const auto& f : files) command += " '" + f + "'";
    command += " 2>/dev/null";
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return out;
    std::string all;
    char buffer[4096];
    size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) all.append(buffer, n);
    pclose(pipe);
    std::stringstream lines(all);
    std::string line;
    while (std::getline(lines, line)) {
        std::vector<std::string> f;
        std::stringstream in(line);
        std::string part;
        while (std::getline(in, part, '\t')) f.push_back(part);
        if (f.size() < 5) continue;
        f.resize(6);
        out[f[0] + "\t" + unescapeTabs(f[1]) + "\t" + f[2] + "\t" + f[3]] = {unescapeTabs(f[4]), unescapeTabs(f[5])};
    }
    return out;
}

// Shape ids of each worksheet drawing of a saved file, which must not repeat inside a drawing.
void expectUniqueShapeIds(const std::string& file, const std::string& name) {
    for (const auto& d : sheetDrawingRecords(file)) {
        std::set<uint32_t> seen;
        for (const auto& shape : drawingShapes(mapDrawing(d.second)))
            EXPECT_TRUE(seen.insert(shape.spid).second) << name << ": shape id " << shape.spid << " repeats";
    }
}

TEST(DrawingCorpus, DrawingsLoadKeepTheirBytesAndTakeNewShapes) {
    if (!std::ifstream(corpusDir() + "/MANIFEST.tsv")) GTEST_SKIP() << "corpus not present at " << corpusDir();
    std::vector<std::string> files, withDrawing, notesOnly;
    for (const auto& path : loadableXls()) {
        DrawingParts parts = drawingParts(readFile(path));
        if (parts.any())
            withDrawing.push_back(path);
        else if (!parts.notes.empty())
            notesOnly.push_back(path);  // the notes of older files carry their text themselves
    }
    std::vector<std::string> withNotes = withDrawing;
    withNotes.insert(withNotes.end(), notesOnly.begin(), notesOnly.end());
    auto notes = xlrdNotes(withNotes);
    int olderNotes = 0;
    for (const auto& path : notesOnly) {
        SCOPED_TRACE(path);
        BookPtr<char> book = newBook<char>();
        book->setLocale("UTF-8");
        ASSERT_TRUE(book->load(path.c_str())) << book->errorMessage();
        for (int s = 0; s < book->sheetCount(); ++s) {
            ISheetT<char>* sheet = book->getSheet(s);
            std::string prefix = path + "\t" + sheet->name() + "\t";
            for (const auto& n : notes) {
                if (n.first.compare(0, prefix.size(), prefix) != 0) continue;
                int row = 0, col = 0;
                std::sscanf(n.first.c_str() + prefix.size(), "%d\t%d", &row, &col);
                const char* text = sheet->readComment(row, col);
                ASSERT_NE(nullptr, text) << "comment at " << row << "," << col;
                // xlrd gives characters of the file's code page it cannot map as "?".
                if (n.second.text.find('?') == std::string::npos) {
                    EXPECT_EQ(n.second.text, text);
                }
                ++olderNotes;
            }
        }
    }
    const bool converter = std::system("command -v ssconvert > /dev/null 2>&1") == 0;
    if (converter) std::system(("mkdir -p '" + std::string(ZELVAR_TEST_TMP) + "'").c_str());
    int converted = 0;
    int unsaved = 0, groups = 0, loaded = 0, pictures = 0, comments = 0, commentsChecked = 0, kept = 0, extended = 0;
    for (const auto& path : withDrawing) [&] {
        SCOPED_TRACE(path);
        const std::string input = readFile(path);
        DrawingParts before = drawingParts(input);
        groups += !before.group.empty();
        BookPtr<char> book = newBook<char>();
        book->setLocale("UTF-8");
        ASSERT_TRUE(book->load(path.c_str())) << book->errorMessage();
        ++loaded;
        // Pictures of the store read back with their bytes; each placed picture names one.
        for (int i = 0; i < book->pictureSize(); ++i) {
            const char* data = nullptr;
            unsigned size = 0;
            EXPECT_NE(PictureError, book->getPicture(i, &data, &size)) << book->errorMessage();
            ++pictures;
        }
        for (int s = 0; s < book->sheetCount(); ++s) {
            ISheetT<char>* sheet = book->getSheet(s);
            for (int p = 0; p < sheet->pictureSize(); ++p) {
                int width = -1, height = -1;
                int id = sheet->getPicture(p, nullptr, nullptr, nullptr, nullptr, &width, &height);
                EXPECT_LT(id, book->pictureSize());
                EXPECT_GE(width, 0);
            }
            for (const auto& n : notes) {
                std::string prefix = path + "\t" + sheet->name() + "\t";
                if (n.first.compare(0, prefix.size(), prefix) != 0) continue;
                int row = 0, col = 0;
                std::sscanf(n.first.c_str() + prefix.size(), "%d\t%d", &row, &col);
                const char* text = sheet->readComment(row, col);
                ASSERT_NE(nullptr, text) << "comment at " << row << "," << col;
                EXPECT_EQ(n.second.text, text) << "comment at " << row << "," << col;
                ++commentsChecked;
            }
        }
        // An edit elsewhere and a save keep the drawing records byte for byte.
        int firstWorksheet = -1;
        for (int s = 0; s < book->sheetCount() && firstWorksheet < 0; ++s)
            if (book->sheetType(s) == SheetTypeWorksheet) firstWorksheet = s;
        if (firstWorksheet >= 0) book->getSheet(firstWorksheet)->writeNum(60000, 200, 42);
        const char* raw = nullptr;
        unsigned rawSize = 0;
        if (!book->saveRaw(&raw, &rawSize)) {
            // A workbook stream named in other letter case is not found again on saving; that
            // belongs to the container, not to the drawing.
            EXPECT_STREQ("Xls::reset(): workbook section is not found", book->errorMessage());
            std::printf("not saved: %s: %s\n", path.c_str(), book->errorMessage());
            ++unsaved;
            return;
        }
        DrawingParts after = drawingParts(std::string(raw, rawSize));
        EXPECT_TRUE(before.group == after.group) << "drawing group changed";
        for (const auto& d : before.drawings)
            EXPECT_TRUE(d.second == after.drawings[d.first]) << "drawing records of substream " << d.first << " changed";
        EXPECT_EQ(before.drawings.size(), after.drawings.size());
        EXPECT_TRUE(before.notes == after.notes) << "notes changed";
        kept += before.group == after.group && before.drawings == after.drawings && before.notes == after.notes;
        for (const auto& n : before.notes) comments += static_cast<int>(n.second.size());
        if (firstWorksheet < 0) return;

        // A new picture and a new comment go into the loaded drawing.
        std::string png = makePng(3, 2);
        int id = book->addPicture2(png.data(), static_cast<unsigned>(png.size()));
        ASSERT_GE(id, 0) << book->errorMessage();
        ISheetT<char>* sheet = book->getSheet(firstWorksheet);
        int placed = sheet->pictureSize();
        sheet->setPicture(60001, 3, id);
        EXPECT_STREQ("ok", book->errorMessage());
        sheet->writeComment(60002, 4, "added note", "tester", 100, 50);
        EXPECT_STREQ("ok", book->errorMessage());
        ASSERT_TRUE(book->saveRaw(&raw, &rawSize)) << book->errorMessage();
        std::string saved(raw, rawSize);
        expectUniqueShapeIds(saved, path);
        BookPtr<char> again = newBook<char>();
        ASSERT_TRUE(again->loadRaw(saved.data(), static_cast<unsigned>(saved.size()))) << again->errorMessage();
        ISheetT<char>* back = again->getSheet(firstWorksheet);
        EXPECT_EQ(placed + 1, back->pictureSize());
        int row = -1;
        EXPECT_EQ(id, back->getPicture(placed, &row));
        EXPECT_EQ(60001, row);
        const char* text = back->readComment(60002, 4);
        ASSERT_NE(nullptr, text);
        EXPECT_STREQ("added note", text);
        ++extended;

        // ssconvert reads the new picture and comment wherever it reads the file we started from.
        if (!converter) return;
        const std::string tmp = std::string(ZELVAR_TEST_TMP) + "/drawing-corpus";
        std::ofstream(tmp + ".xls", std::ios::binary) << saved;
        std::remove((tmp + ".xlsx").c_str());
        std::string convert = "timeout 120 ssconvert '" + tmp + ".xls' '" + tmp + ".xlsx' > /dev/null 2>&1";
        if (std::system(convert.c_str()) != 0) {
            std::string original = "timeout 120 ssconvert '" + path + "' '" + tmp + "-original.xlsx' > /dev/null 2>&1";
            EXPECT_NE(0, std::system(original.c_str())) << "ssconvert reads the original but not our save";
            return;
        }
        std::string dump = runCommand(std::string(ZELVAR_PYTHON) + " " ZELVAR_SOURCE_DIR
                                      "/tests/officeart/xlsx_drawing_dump.py '" + tmp + ".xlsx' 2>/dev/null");
        std::string sheetName = sheet->name();
        EXPECT_NE(std::string::npos, dump.find("picture\t" + sheetName + "\t60001\t3\t")) << "new picture";
        EXPECT_NE(std::string::npos, dump.find("comment\t" + sheetName + "\tE60003\ttester\tadded note")) << "new comment";
        ++converted;
    }();
    std::printf("drawing corpus: %zu files with drawings (%d with a drawing group), %d loaded, %d pictures, "
                "%d notes (%d compared with xlrd), %d kept byte for byte, %d took a new picture and comment, %d not saved, %d converted by ssconvert with both; %d notes of %zu files without drawings compared with xlrd\n",
                withDrawing.size(), groups, loaded, pictures, comments, commentsChecked, kept, extended, unsaved, converted, olderNotes,
                notesOnly.size());
    EXPECT_EQ(static_cast<int>(withDrawing.size()), loaded);
}

}  // namespace
