// Pictures and comments we write, read by independent programs: python3-xlrd reads the comments
// (cell_note_map); ssconvert converts the book to .xlsx, where the media files must hold the bytes
// we stored at the anchors we gave, and python3-openpyxl reads the comments with their authors.
// Skips when the tools are not installed.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "officeart_test_util.h"

using namespace zelvar;
using namespace zvtest;

namespace {

bool have(const char* command) { return std::system((std::string("command -v ") + command + " > /dev/null 2>&1").c_str()) == 0; }

std::string run(const std::string& command) {
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return std::string();
    std::string out;
    char buffer[4096];
    size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) out.append(buffer, n);
    pclose(pipe);
    return out;
}

std::vector<std::vector<std::string>> lines(const std::string& text) {
    std::vector<std::vector<std::string>> out;
    std::stringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        std::vector<std::string> fields;
        std::stringstream parts(line);
        std::string field;
        while (std::getline(parts, field, '\t')) fields.push_back(unescapeTabs(field));
        out.push_back(fields);
    }
    return out;
}

std::string hexOf(const std::string& bytes) {
    static const char digits[] = "0123456789abcdef";
    std::string out;
    for (unsigned char c : bytes) {
        out.push_back(digits[c >> 4]);
        out.push_back(digits[c & 15]);
    }
    return out;
}

struct Placed {
    const char* kind;
    std::string bytes;
    int row;
    std::string expected;  // the media bytes another program writes out for it
};

TEST(DrawingInterop, PicturesAndCommentsReadByIndependentPrograms) {
    const std::string python = ZELVAR_PYTHON;
    if (python.empty() || std::system((python + " -c 'import xlrd, openpyxl' 2>/dev/null").c_str()) != 0)
        GTEST_SKIP() << "python3-xlrd or python3-openpyxl not installed";
    if (!have("ssconvert")) GTEST_SKIP() << "ssconvert not installed (tools/install-deps.sh installs gnumeric)";
    const std::string dir = ZELVAR_TEST_TMP;
    std::system(("mkdir -p '" + dir + "'").c_str());
    const std::string xls = dir + "/drawing-interop.xls", xlsx = dir + "/drawing-interop.xlsx";

    std::string wmf = makeWmf(), bmp = makeBmp(8, 6), dib = makeDib(5, 4);
    // A metafile comes out without its placeable header; a bitmap with a file header in front.
    std::string dibFile = makeBmp(5, 4);
    std::vector<Placed> placed = {
        {"png", makePng(30, 20), 1, makePng(30, 20)},
        {"jpeg", makeJpeg(40, 30, false), 5, makeJpeg(40, 30, false)},
        {"jpeg with exif", makeJpeg(50, 20, true), 9, makeJpeg(50, 20, true)},
        {"wmf", wmf, 13, wmf.substr(22)},
        {"emf", makeEmf(60, 40), 30, makeEmf(60, 40)},
        {"bmp", bmp, 40, bmp},
        {"dib", dib, 50, dibFile},
    };
    {
        auto book = newBook<char>();
        ISheetT<char>* sheet = book->addSheet("Pictures");
        sheet->writeStr(0, 0, "pictures and notes");
        for (const auto& p : placed) {
            int id = book->addPicture2(p.bytes.data(), static_cast<unsigned>(p.bytes.size()));
            ASSERT_GE(id, 0) << p.kind << ": " << book->errorMessage();
            sheet->setPicture(p.row, 1, id);
            ASSERT_STREQ("ok", book->errorMessage()) << p.kind;
        }
        sheet->writeComment(2, 3, "first note", "writer", 120, 60);
        sheet->writeComment(5, 4, "second note\nwith two lines");
        ISheetT<char>* notes = book->addSheet("Notes");
        notes->writeComment(0, 0, "a note on a sheet without pictures", "other");
        notes->writeComment(0, 0, "it was overwritten", "other");
        ASSERT_TRUE(book->save(xls.c_str())) << book->errorMessage();
    }

    // python3-xlrd: the notes with their authors.
    auto notes = lines(run(python + " " ZELVAR_SOURCE_DIR "/tests/officeart/xlrd_notes.py '" + xls + "'"));
    std::map<std::string, std::pair<std::string, std::string>> byCell;
    for (const auto& n : notes)
        if (n.size() == 6) byCell[n[1] + "!" + n[2] + "," + n[3]] = {n[4], n[5]};
    ASSERT_EQ(3u, byCell.size());
    EXPECT_EQ(std::make_pair(std::string("writer"), std::string("first note")), byCell["Pictures!2,3"]);
    EXPECT_EQ(std::make_pair(std::string("zelvar"), std::string("second note\nwith two lines")), byCell["Pictures!5,4"]);
    EXPECT_EQ(std::make_pair(std::string("other"), std::string("it was overwritten")), byCell["Notes!0,0"]);

    // ssconvert to .xlsx: each picture at its anchor with its bytes, and the comments.
    std::remove(xlsx.c_str());
    ASSERT_EQ(0, std::system(("ssconvert '" + xls + "' '" + xlsx + "' > /dev/null 2>&1").c_str()));
    auto dump = lines(run(python + " " ZELVAR_SOURCE_DIR "/tests/officeart/xlsx_drawing_dump.py '" + xlsx + "' 2>/dev/null"));
    std::map<int, std::string> mediaByRow;
    std::map<std::string, std::pair<std::string, std::string>> comments;
    for (const auto& d : dump) {
        if (d.size() == 7 && d[0] == "picture" && d[1] == "Pictures" && d[3] == "1") mediaByRow[std::stoi(d[2])] = d[6];
        if (d.size() == 5 && d[0] == "comment") comments[d[1] + "!" + d[2]] = {d[3], d[4]};
    }
    for (const auto& p : placed) {
        ASSERT_TRUE(mediaByRow.count(p.row)) << p.kind << " not found at row " << p.row;
        const std::string& media = mediaByRow[p.row];
        if (p.expected.substr(0, 2) == "BM")  // the converter writes a file header of its own
            EXPECT_EQ(hexOf(p.expected.substr(14)), media.substr(28)) << p.kind;
        else
            EXPECT_EQ(hexOf(p.expected), media) << p.kind;
    }
    EXPECT_EQ(std::make_pair(std::string("writer"), std::string("first note")), comments["Pictures!D3"]);
    EXPECT_EQ(std::make_pair(std::string("zelvar"), std::string("second note\nwith two lines")), comments["Pictures!E6"]);
    EXPECT_EQ(std::make_pair(std::string("other"), std::string("it was overwritten")), comments["Notes!A1"]);
}

}  // namespace
