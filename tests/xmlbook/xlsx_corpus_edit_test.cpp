// Structural edits on real XML workbooks: in every load-ok package of the corpus, rows and columns
// inserted and removed at the start and in the middle of each sheet leave its cells where an
// independent reader would expect them, worked out from the corpus oracle by moving its cells, and
// every part other than the edited sheet comes out of the save byte for byte.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <vector>

#include "xlsx_oracle.h"
#include "xml_test_util.h"

using namespace zelvar;
using namespace xmltest;

namespace {

struct Edit {
    bool insert, rows;
    int first, last;
};

// An oracle cell and where it should be now; gone once its row or column was removed.
struct Placed {
    const OracleCell* cell;
    int row, col;
    bool gone;
};

bool apply(ISheetT<char>* sheet, const Edit& e) {
    if (e.insert) return e.rows ? sheet->insertRow(e.first, e.last) : sheet->insertCol(e.first, e.last);
    return e.rows ? sheet->removeRow(e.first, e.last) : sheet->removeCol(e.first, e.last);
}

void move(std::vector<Placed>& cells, const Edit& e) {
    const int n = e.last - e.first + 1;
    for (Placed& p : cells) {
        int& at = e.rows ? p.row : p.col;
        if (p.gone || at < e.first) continue;
        if (e.insert) at += n;
        else if (at <= e.last) p.gone = true;
        else at -= n;
    }
}

struct Tally {
    int checked = 0, mismatched = 0;
    std::vector<std::string> samples;
    void miss(const std::string& what) {
        ++mismatched;
        if (samples.size() < 12) samples.push_back(what);
    }
};

// Every cell that is still there holds the oracle's value (a formula cell a formula: its text is
// the reader's expansion and stays as it was stored), and the inserted band is empty.
void check(IBookT<char>* book, ISheetT<char>* sheet, const std::vector<Placed>& cells, const Edit* last,
           const std::string& where, Tally& tally) {
    std::set<int> lines;
    for (const Placed& p : cells) {
        if (p.gone) continue;
        ++tally.checked;
        lines.insert(last && last->rows ? p.col : p.row);
        std::string at = where + " " + std::to_string(p.row) + "," + std::to_string(p.col) + " (oracle " +
                         std::to_string(p.cell->row) + "," + std::to_string(p.cell->col) + "): ";
        if (p.cell->type == "formula") {
            if (!sheet->isFormula(p.row, p.col)) tally.miss(at + "no formula");
            continue;
        }
        std::string why;
        if (checkValue(book, sheet, p.row, p.col, *p.cell, why) == ValueCheck::Differs) tally.miss(at + why);
    }
    if (!last || !last->insert) return;
    for (int line : lines)
        for (int k = last->first; k <= last->last; ++k) {
            int type = last->rows ? sheet->cellType(k, line) : sheet->cellType(line, k);
            if (type != CellEmpty) tally.miss(where + ": inserted band holds a cell at " + std::to_string(k) + "/" + std::to_string(line));
        }
}

std::string show(const Edit& e) {
    return std::string(e.insert ? "insert" : "remove") + (e.rows ? "Row(" : "Col(") + std::to_string(e.first) + ", " +
           std::to_string(e.last) + ")";
}

TEST(XlsxCorpusEdit, InsertAndRemoveKeepOracleCellsAndOtherParts) {
    std::string corpus = std::string(ZELVAR_SHARED_DIR) + "/corpus";
    std::ifstream manifest(corpus + "/MANIFEST.tsv");
    if (!manifest) GTEST_SKIP() << "no corpus at " << corpus;
    std::vector<std::string> paths;
    for (std::string line; std::getline(manifest, line);)
        if (line.compare(0, 5, "xlsx/") == 0 && line.find("\tload-ok") != std::string::npos)
            paths.push_back(corpus + "/" + line.substr(0, line.find('\t')));
    std::map<std::string, Oracle> oracles = loadOracles(paths, "xlsx-edit-oracles.txt");
    ASSERT_FALSE(oracles.empty()) << "the oracle dump script failed";
    int packages = 0, sheets = 0;
    Tally cells, parts;
    for (const std::string& path : paths) {
        const Oracle& oracle = oracles[path];
        if (!oracle.error.empty()) continue;
        // Loading from the file lets the book try the other dialect, as strict packages need.
        BookPtr<char> book = newXmlBook<char>();
        if (!book->load(path.c_str())) {
            ADD_FAILURE() << path << ": " << book->errorMessage();
            continue;
        }
        book->setLocale("UTF-8");
        const char* data = nullptr;
        unsigned size = 0;
        ASSERT_TRUE(book->saveRaw(&data, &size)) << path << ": " << book->errorMessage();
        const auto baseline = entries(data, size);
        ++packages;
        const std::string file = path.substr(path.rfind('/') + 1);
        // Each sheet is edited in a book of its own, so that the saved package shows what its edits
        // touched.
        for (const OracleSheet& os : oracle.sheets) {
            book = newXmlBook<char>();
            ASSERT_TRUE(book->load(path.c_str())) << path;
            book->setLocale("UTF-8");
            if (os.index >= book->sheetCount() || book->sheetType(os.index) != SheetTypeWorksheet) continue;
            ISheetT<char>* sheet = book->getSheet(os.index);
            ASSERT_NE(sheet, nullptr) << path;
            ++sheets;
            std::vector<Placed> placed;
            for (const OracleCell& c : os.cells) placed.push_back({&c, c.row, c.col, false});
            const std::string where = file + " " + os.name;
            auto run = [&](const Edit& e) {
                bool done = apply(sheet, e);
                EXPECT_TRUE(done) << where << " " << show(e) << ": " << book->errorMessage();
                move(placed, e);
                check(book.get(), sheet, placed, &e, where + " after " + show(e), cells);
                return done;
            };
            // Rows and columns in front, then in the middle of the oracle's cells, then a row and a
            // column that hold cells taken out, then the front ones taken out again.
            bool done = run({true, true, 0, 1}) && run({true, false, 0, 0});
            if (done && !placed.empty()) {
                const size_t mid = placed.size() / 2, third = placed.size() / 3, twoThirds = placed.size() * 2 / 3;
                done = run({true, true, placed[mid].row, placed[mid].row}) &&
                       run({true, false, placed[mid].col, placed[mid].col + 1}) &&
                       (placed[third].gone || run({false, true, placed[third].row, placed[third].row})) &&
                       (placed[twoThirds].gone || run({false, false, placed[twoThirds].col, placed[twoThirds].col}));
            }
            done = done && run({false, true, 0, 1}) && run({false, false, 0, 0});
            if (!done) continue;
            ASSERT_TRUE(book->saveRaw(&data, &size)) << where << ": " << book->errorMessage();
            std::string saved(data, size);
            auto after = entries(saved.data(), static_cast<unsigned>(saved.size()));
            std::vector<std::string> changed;
            for (const auto& part : baseline) {
                ++parts.checked;
                auto it = after.find(part.first);
                if (it == after.end()) parts.miss(where + ": part lost: " + part.first);
                else if (it->second != part.second) changed.push_back(part.first);
            }
            if (after.size() != baseline.size()) parts.miss(where + ": parts added");
            if (changed.size() > 1 || (changed.size() == 1 && changed[0].find("worksheets/") == std::string::npos))
                for (const std::string& name : changed) parts.miss(where + ": part changed: " + name);
            // What was saved reads back the same.
            const std::string savedPath = tmpPath("corpus-edited" + path.substr(path.rfind('.')));
            std::ofstream(savedPath, std::ios::binary) << saved;
            BookPtr<char> again = newXmlBook<char>();
            ASSERT_TRUE(again->load(savedPath.c_str())) << where << ": " << again->errorMessage();
            again->setLocale("UTF-8");
            check(again.get(), again->getSheet(os.index), placed, nullptr, where + " reloaded", cells);
        }
    }
    std::printf("%d packages, %d sheets; cells: %d checked, %d mismatched; parts: %d checked, %d mismatched\n", packages,
                sheets, cells.checked, cells.mismatched, parts.checked, parts.mismatched);
    for (const auto& s : cells.samples) std::printf("    %s\n", s.c_str());
    for (const auto& s : parts.samples) std::printf("    %s\n", s.c_str());
    EXPECT_EQ(cells.mismatched, 0);
    EXPECT_EQ(parts.mismatched, 0);
    EXPECT_GT(packages, 100);
    EXPECT_GT(sheets, packages);
}

// The pixel size of an image as the independent `file` tool reports it from the header of a
// PNG, JPEG or BMP; false when the tool is missing or tells no size.
bool sizeByFileTool(const std::string& bytes, int* width, int* height) {
    std::string path = tmpPath("corpus-picture.bin");
    std::ofstream(path, std::ios::binary) << bytes;
    std::string out = run("file -b '" + path + "' 2>/dev/null");
    std::smatch m;
    // "PNG image data, 130 x 92, ...", "PC bitmap, Windows 3.x format, 32 x -32 x 24, ...",
    // "JPEG image data, ..., precision 8, 192x176, ..."
    static const std::regex png("PNG image data, (\\d+) x (\\d+)"), bmp("PC bitmap, [^,]*, (-?\\d+) x (-?\\d+)"),
        jpeg("JPEG image data.*precision \\d+, (\\d+)x(\\d+)");
    if (!std::regex_search(out, m, png) && !std::regex_search(out, m, bmp) && !std::regex_search(out, m, jpeg)) return false;
    *width = std::abs(std::atoi(m[1].str().c_str()));
    *height = std::abs(std::atoi(m[2].str().c_str()));  // a bitmap stored top row first has a negative height
    return true;
}

int le32At(const std::string& d, size_t i) {
    return static_cast<int>(static_cast<unsigned char>(d[i]) | static_cast<unsigned char>(d[i + 1]) << 8 |
                            static_cast<unsigned char>(d[i + 2]) << 16 | static_cast<unsigned>(static_cast<unsigned char>(d[i + 3])) << 24);
}

// Packages tagged with pictures: every image part comes back from the book with the bytes of its
// media file, every picture anchored on a sheet names one of them, and a picture placed at its own
// size reads back with the size of its media file: the header's for PNG, JPEG and BMP as the `file`
// tool reads it, 200 by 200 for WMF, the right and bottom of the bounds for EMF.
TEST(XlsxCorpusEdit, PicturesReadBackAsTheirMediaFiles) {
    std::string corpus = std::string(ZELVAR_SHARED_DIR) + "/corpus";
    std::ifstream manifest(corpus + "/MANIFEST.tsv");
    if (!manifest) GTEST_SKIP() << "no corpus at " << corpus;
    std::string line;
    int books = 0, anchored = 0, sized = 0, unplaceable = 0;
    std::map<int, int> types;
    while (std::getline(manifest, line)) {
        if (line.compare(0, 5, "xlsx/") != 0 || line.find("\tload-ok") == std::string::npos ||
            line.find("picture") == std::string::npos)
            continue;
        std::string path = line.substr(0, line.find('\t'));
        std::string bytes = readFile(corpus + "/" + path);
        BookPtr<char> book = newXmlBook<char>();
        if (!book->load((corpus + "/" + path).c_str())) {
            ADD_FAILURE() << path << ": " << book->errorMessage();
            continue;
        }
        auto parts = entries(bytes.data(), static_cast<unsigned>(bytes.size()));
        size_t media = 0;
        for (const auto& part : parts)
            if (part.first.compare(0, 9, "xl/media/") == 0 && part.first.back() != '/') ++media;  // not the folder entry
        EXPECT_EQ(static_cast<size_t>(book->pictureSize()), media) << path;
        ++books;
        for (int s = 0; s < book->sheetCount(); ++s) {
            ISheetT<char>* sheet = book->getSheet(s);
            if (!sheet || book->sheetType(s) != SheetTypeWorksheet) continue;
            int count = sheet->pictureSize();
            for (int k = 0; k < count; ++k) {
                int id = sheet->getPicture(k);
                EXPECT_GE(id, 0) << path << " sheet " << s << " picture " << k << ": " << book->errorMessage();
                ++anchored;
            }
        }
        ISheetT<char>* probe = book->addSheet("size probe");
        ASSERT_NE(probe, nullptr) << path << ": " << book->errorMessage();
        for (int i = 0; i < book->pictureSize(); ++i) {
            const char* data = nullptr;
            unsigned size = 0;
            int type = book->getPicture(i, &data, &size);
            std::string picture(data ? data : "", data ? size : 0);
            bool found = false;
            std::string name;
            for (const auto& part : parts)
                if (part.first.compare(0, 9, "xl/media/") == 0 && part.second == picture) found = true, name = part.first;
            EXPECT_TRUE(found) << path << " picture " << i;
            ++types[type];
            int want[2] = {-1, -1};
            if (type == PictureWmf) {
                want[0] = want[1] = 200;
            } else if (type == PictureEmf && picture.size() >= 24) {
                want[0] = le32At(picture, 16);
                want[1] = le32At(picture, 20);
            } else if (!sizeByFileTool(picture, &want[0], &want[1])) {
                ADD_FAILURE() << path << " " << name << ": the file tool tells no size of this "
                              << (type == PicturePng ? "PNG" : type == PictureJpeg ? "JPEG" : "picture");
                continue;
            }
            probe->setPicture(0, 0, i, 1.0);
            int width = -1, height = -1;
            EXPECT_EQ(probe->getPicture(probe->pictureSize() - 1, nullptr, nullptr, nullptr, nullptr, &width, &height), i)
                << path << " " << name << ": " << book->errorMessage();
            // Bounds of a metafile that lie above or left of its origin give no size that a
            // picture can be placed at; it is placed all the same, and must not break anything.
            if (want[0] <= 0 || want[1] <= 0) {
                ++unplaceable;
                continue;
            }
            EXPECT_EQ(width, want[0]) << path << " " << name;
            EXPECT_EQ(height, want[1]) << path << " " << name;
            ++sized;
        }
        const char* saved = nullptr;
        unsigned savedSize = 0;
        EXPECT_TRUE(book->saveRaw(&saved, &savedSize)) << path << ": " << book->errorMessage();
    }
    std::printf("%d books, %d anchored pictures; %d pictures sized, %d metafiles with bounds off the origin (PNG %d, JPEG %d, "
                "BMP %d, WMF %d, EMF %d)\n",
                books, anchored, sized, unplaceable, types[PicturePng], types[PictureJpeg], types[PictureDib], types[PictureWmf],
                types[PictureEmf]);
    EXPECT_GT(books, 0);
    EXPECT_GT(anchored, 0);
    EXPECT_GT(sized, 0);
}

}  // namespace
