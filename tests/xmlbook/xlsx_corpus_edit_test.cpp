// Structural edits on real XML workbooks: in every load-ok package of the corpus, rows and columns
// inserted at the top and left move every cell by the inserted count and removing them brings the
// sheet back; every part that is not a worksheet comes out of the save byte for byte as it did
// without the edits.
#include <algorithm>
#include <cstring>
#include <fstream>
#include <sstream>
#include <vector>

#include "xml_test_util.h"

using namespace zelvar;
using namespace xmltest;

namespace {

std::string readFile(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

struct Seen {
    int row, col, type;
    std::string text;
};

// Cells of the top left corner of the sheet's used area (200 rows by 40 columns), at most limit
// of them, as type and text.
std::vector<Seen> snapshot(ISheetT<char>* sheet, int dRow, int dCol, size_t limit) {
    std::vector<Seen> out;
    const int rowEnd = std::min(sheet->lastRow(), sheet->firstRow() + 200);
    const int colEnd = std::min(sheet->lastCol(), sheet->firstCol() + 40);
    for (int r = sheet->firstRow(); r < rowEnd && out.size() < limit; ++r)
        for (int c = sheet->firstCol(); c < colEnd && out.size() < limit; ++c) {
            int type = sheet->cellType(r + dRow, c + dCol);
            if (type == CellEmpty) continue;
            std::string text;
            if (type == CellNumber) text = std::to_string(sheet->readNum(r + dRow, c + dCol));
            if (type == CellString) {
                const char* s = sheet->readStr(r + dRow, c + dCol);
                text = s ? s : "";
            }
            out.push_back({r, c, type, text});
        }
    return out;
}

bool same(const std::vector<Seen>& a, const std::vector<Seen>& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i].type != b[i].type || a[i].text != b[i].text) return false;
    return true;
}

TEST(XlsxCorpusEdit, InsertAndRemoveKeepValuesAndOtherParts) {
    std::string corpus = std::string(ZELVAR_SHARED_DIR) + "/corpus";
    std::ifstream manifest(corpus + "/MANIFEST.tsv");
    if (!manifest) GTEST_SKIP() << "no corpus at " << corpus;
    std::string line;
    int packages = 0, sheets = 0;
    while (std::getline(manifest, line)) {
        if (line.compare(0, 5, "xlsx/") != 0 || line.find("\tload-ok") == std::string::npos) continue;
        std::string path = line.substr(0, line.find('\t'));
        std::string bytes = readFile(corpus + "/" + path);
        BookPtr<char> book = newXmlBook<char>();
        if (!book->loadRaw(bytes.data(), static_cast<unsigned>(bytes.size()))) continue;
        const char* data = nullptr;
        unsigned size = 0;
        if (!book->saveRaw(&data, &size)) continue;
        auto before = entries(data, size);
        ++packages;
        for (int i = 0; i < book->sheetCount(); ++i) {
            ISheetT<char>* sheet = book->getSheet(i);
            if (!sheet || book->sheetType(i) != SheetTypeWorksheet) continue;
            ++sheets;
            std::vector<Seen> original = snapshot(sheet, 0, 0, 2000);
            ASSERT_TRUE(sheet->insertRow(0, 1)) << path << ": " << book->errorMessage();
            ASSERT_TRUE(sheet->insertCol(0, 0)) << path << ": " << book->errorMessage();
            std::vector<Seen> shifted;
            for (const Seen& s : original) {
                int type = sheet->cellType(s.row + 2, s.col + 1);
                std::string text;
                if (type == CellNumber) text = std::to_string(sheet->readNum(s.row + 2, s.col + 1));
                if (type == CellString) {
                    const char* t = sheet->readStr(s.row + 2, s.col + 1);
                    text = t ? t : "";
                }
                shifted.push_back({s.row, s.col, type, text});
            }
            EXPECT_TRUE(same(original, shifted)) << path << " sheet " << i << " after insertion";
            ASSERT_TRUE(sheet->removeCol(0, 0)) << path;
            ASSERT_TRUE(sheet->removeRow(0, 1)) << path;
            EXPECT_TRUE(same(original, snapshot(sheet, 0, 0, 2000))) << path << " sheet " << i << " after removal";
        }
        ASSERT_TRUE(book->saveRaw(&data, &size)) << path << ": " << book->errorMessage();
        auto after = entries(data, size);
        for (const auto& part : before) {
            if (part.first.find("worksheets/sheet") != std::string::npos && part.first.find("_rels") == std::string::npos) continue;
            EXPECT_EQ(after[part.first], part.second) << path << ": " << part.first;
        }
    }
    EXPECT_GT(packages, 100);
    EXPECT_GT(sheets, packages);
}

// Packages tagged with pictures: every image part comes back from the book with the bytes of its
// media file, and every picture anchored on a sheet names one of them.
TEST(XlsxCorpusEdit, PicturesReadBackAsTheirMediaFiles) {
    std::string corpus = std::string(ZELVAR_SHARED_DIR) + "/corpus";
    std::ifstream manifest(corpus + "/MANIFEST.tsv");
    if (!manifest) GTEST_SKIP() << "no corpus at " << corpus;
    std::string line;
    int books = 0, anchored = 0;
    while (std::getline(manifest, line)) {
        if (line.compare(0, 5, "xlsx/") != 0 || line.find("\tload-ok") == std::string::npos ||
            line.find("picture") == std::string::npos)
            continue;
        std::string path = line.substr(0, line.find('\t'));
        std::string bytes = readFile(corpus + "/" + path);
        BookPtr<char> book = newXmlBook<char>();
        if (!book->loadRaw(bytes.data(), static_cast<unsigned>(bytes.size()))) continue;
        auto parts = entries(bytes.data(), static_cast<unsigned>(bytes.size()));
        size_t media = 0;
        for (const auto& part : parts)
            if (part.first.compare(0, 9, "xl/media/") == 0 && part.first.back() != '/') ++media;  // not the folder entry
        EXPECT_EQ(static_cast<size_t>(book->pictureSize()), media) << path;
        for (int i = 0; i < book->pictureSize(); ++i) {
            const char* data = nullptr;
            unsigned size = 0;
            book->getPicture(i, &data, &size);
            bool found = false;
            for (const auto& part : parts)
                if (part.first.compare(0, 9, "xl/media/") == 0 && part.second.size() == size && std::memcmp(part.second.data(), data, size) == 0)
                    found = true;
            EXPECT_TRUE(found) << path << " picture " << i;
        }
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
    }
    EXPECT_GT(books, 0);
    EXPECT_GT(anchored, 0);
}

}  // namespace
