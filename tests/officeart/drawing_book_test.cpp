// Pictures and comments through the public interface: the book's picture store, pictures placed
// on sheets by their anchors, comments, and what a saved file holds of them.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "../book/xls_stream_util.h"
#include "officeart/drawing_group.h"
#include "officeart/sheet_drawing.h"
#include "officeart_test_util.h"

using namespace zelvar;
using namespace zvtest;

namespace {

template <class T>
class DrawingBook : public ::testing::Test {};
TYPED_TEST_SUITE(DrawingBook, Widths);

template <class T>
std::string savedBytes(IBookT<T>* book) {
    const char* data = nullptr;
    unsigned size = 0;
    EXPECT_TRUE(book->saveRaw(&data, &size)) << book->errorMessage();
    return data ? std::string(data, size) : std::string();
}

template <class T>
BookPtr<T> reloaded(IBookT<T>* book) {
    std::string bytes = savedBytes(book);
    BookPtr<T> again = newBook<T>();
    EXPECT_TRUE(again->loadRaw(bytes.data(), static_cast<unsigned>(bytes.size()))) << again->errorMessage();
    return again;
}

// What a saved file holds: the drawing group, and each worksheet's drawing records.
struct SavedDrawings {
    DrawingGroup group;
    std::vector<std::vector<DrawingRecord>> sheets;
    std::vector<std::vector<std::vector<uint8_t>>> notes;
};

SavedDrawings savedDrawings(const std::string& file) {
    SavedDrawings out;
    std::vector<uint8_t> group;
    int substream = -1, depth = 0;
    uint16_t carrier = 0;
    for (const auto& r : streamRecords(file)) {
        if (r.id == rt::Bof && depth++ == 0) {
            ++substream;
            if (substream > 0) out.sheets.emplace_back(), out.notes.emplace_back();
            continue;
        }
        if (r.id == rt::Eof && --depth == 0) continue;
        if (r.id != rt::Continue) carrier = r.id;
        std::vector<uint8_t> payload(r.payload.begin(), r.payload.end());
        bool inGroup = r.id == rt::MsoDrawingGroup || (r.id == rt::Continue && carrier == rt::MsoDrawingGroup);
        if (substream == 0 && inGroup)
            group.insert(group.end(), payload.begin(), payload.end());
        if (substream > 0 &&
            (r.id == rt::MsoDrawing || r.id == rt::Obj || r.id == rt::TextObject || r.id == rt::Continue))
            out.sheets.back().push_back({r.id, payload});
        if (substream > 0 && r.id == rt::NoteSh) out.notes.back().push_back(payload);
    }
    if (!group.empty()) out.group.load(group);
    return out;
}

struct Fdg {
    unsigned dgid = 0, csp = 0, spidCur = 0;
};
Fdg fdgOf(const std::vector<DrawingRecord>& records) {
    Fdg fdg;
    DrawingMap map = mapDrawing(records);
    auto nodes = parseOfficeArt(map.bytes.data(), map.bytes.size());
    if (nodes.empty()) return fdg;
    if (const ArtNode* f = nodes[0].find(0xF008)) {
        fdg.dgid = f->header.instance();
        fdg.csp = le::get32(f->body.data());
        fdg.spidCur = le::get32(f->body.data() + 4);
    }
    return fdg;
}

std::vector<uint32_t> shapeIds(const std::vector<DrawingRecord>& records) {
    std::vector<uint32_t> ids;
    for (const auto& s : drawingShapes(mapDrawing(records))) ids.push_back(s.spid);
    return ids;
}

struct PictureFile {
    const char* name;
    std::string bytes;
    int type;
    std::string stored;  // what getPicture gives back
    int width, height;
};

std::vector<PictureFile> pictureFiles() {
    std::string wmf = makeWmf(), bmp = makeBmp(8, 6);
    return {
        {"png", makePng(30, 20), PicturePng, makePng(30, 20), 30, 20},
        {"jpeg", makeJpeg(40, 30, false), PictureJpeg, makeJpeg(40, 30, false), 40, 30},
        {"jpeg exif", makeJpeg(50, 20, true), PictureJpeg, makeJpeg(50, 20, true), 50, 20},
        {"wmf", wmf, PictureWmf, wmf.substr(22), 200, 200},
        {"emf", makeEmf(60, 40), PictureEmf, makeEmf(60, 40), 60, 40},
        {"bmp", bmp, PictureDib, bmp.substr(14), 8, 6},
        {"dib", makeDib(5, 4), PictureDib, makeDib(5, 4), 5, 4},
    };
}

TYPED_TEST(DrawingBook, PicturesOfEachKindComeBackFromTheStore) {
    auto book = newBook<TypeParam>();
    book->addSheet(S<TypeParam>("S").c_str());
    EXPECT_EQ(0, book->pictureSize());
    auto files = pictureFiles();
    for (size_t i = 0; i < files.size(); ++i)
        EXPECT_EQ(static_cast<int>(i), book->addPicture2(files[i].bytes.data(), static_cast<unsigned>(files[i].bytes.size())))
            << files[i].name << ": " << book->errorMessage();
    for (IBookT<TypeParam>* b : {book.get(), reloaded(book.get()).release()}) {
        EXPECT_EQ(static_cast<int>(files.size()), b->pictureSize());
        for (size_t i = 0; i < files.size(); ++i) {
            const char* data = nullptr;
            unsigned size = 0;
            EXPECT_EQ(files[i].type, b->getPicture(static_cast<int>(i), &data, &size)) << files[i].name;
            EXPECT_EQ(files[i].stored, std::string(data, size)) << files[i].name;
        }
        EXPECT_EQ(PictureError, b->getPicture(static_cast<int>(files.size()), nullptr, nullptr));
        EXPECT_STREQ("index is out of range", b->errorMessage());
        if (b != book.get()) b->release();
    }
    // Two additions of the same bytes are two pictures.
    EXPECT_EQ(7, book->addPicture2(files[0].bytes.data(), static_cast<unsigned>(files[0].bytes.size())));
    EXPECT_EQ(8, book->pictureSize());
    // A picture far larger than a record rides in many CONTINUE records and comes back whole.
    std::string big = makePng(2, 2);
    for (uint32_t i = 0; big.size() < 100000; ++i) big.push_back(static_cast<char>((i * 2654435761u) >> 24));
    EXPECT_EQ(8, book->addPicture2(big.data(), static_cast<unsigned>(big.size())));
    auto again = reloaded(book.get());
    const char* data = nullptr;
    unsigned size = 0;
    EXPECT_EQ(PicturePng, again->getPicture(8, &data, &size));
    EXPECT_EQ(big, std::string(data, size));
    EXPECT_EQ(files[6].stored, (again->getPicture(6, &data, &size), std::string(data, size)));
}

TYPED_TEST(DrawingBook, AddPictureRefusals) {
    auto book = newBook<TypeParam>();
    EXPECT_EQ(-1, book->addPicture2("x", 1));
    EXPECT_STREQ("unknown picture format", book->errorMessage());
    EXPECT_EQ(-1, book->addPicture2("\x89PNG", 4));
    EXPECT_STREQ("unknown picture format", book->errorMessage());
    EXPECT_EQ(-1, book->addPicture2("GIF89a....", 10));
    EXPECT_STREQ("unknown picture format", book->errorMessage());
    EXPECT_EQ(-1, book->addPicture2(nullptr, 100));
    EXPECT_EQ(0, book->pictureSize());
}

TYPED_TEST(DrawingBook, AddPictureTakesTheTypeFromTheName) {
    // A folder per width: the two instantiations run as parallel processes.
    const std::string dir = std::string(ZELVAR_TEST_TMP) + "/pictures-by-name-" + std::to_string(sizeof(TypeParam));
    std::system(("mkdir -p '" + dir + "'").c_str());
    auto write = [&](const std::string& name, const std::string& bytes) {
        std::ofstream(dir + "/" + name, std::ios::binary) << bytes;
        return S<TypeParam>((dir + "/" + name).c_str());
    };
    auto book = newBook<TypeParam>();
    std::string jpeg = makeJpeg(16, 8, true);
    EXPECT_EQ(0, book->addPicture(write("upper.PNG", makePng(3, 3)).c_str())) << book->errorMessage();
    EXPECT_EQ(1, book->addPicture(write("camera.jpg", jpeg).c_str())) << book->errorMessage();
    EXPECT_EQ(2, book->addPicture(write("really-a-jpeg.png", jpeg).c_str())) << book->errorMessage();
    const char* data = nullptr;
    unsigned size = 0;
    EXPECT_EQ(PicturePng, book->getPicture(0, &data, &size));
    EXPECT_EQ(PictureJpeg, book->getPicture(1, &data, &size));
    EXPECT_EQ(PicturePng, book->getPicture(2, &data, &size));  // unchecked: the name decides
    EXPECT_EQ(jpeg, std::string(data, size));
    const struct {
        const char* name;
        std::string bytes;
        const char* message;
    } refused[] = {{"not-a.jpg", makePng(1, 1), "invalid jpg file"},
                   {"picture.gif", "GIF89a", "unknown picture format"},
                   {"missing-picture.png", "", "can't open file"}};
    for (const auto& r : refused) {
        auto name = r.bytes.empty() ? S<TypeParam>((dir + "/" + r.name).c_str()) : write(r.name, r.bytes);
        EXPECT_EQ(-1, book->addPicture(name.c_str())) << r.name;
        EXPECT_STREQ(r.message, book->errorMessage()) << r.name;
    }
    EXPECT_EQ(-1, book->addPicture(S<TypeParam>(".png").c_str()));
    EXPECT_STREQ("unknown picture format", book->errorMessage());
    EXPECT_EQ(3, book->pictureSize());
}

TYPED_TEST(DrawingBook, PicturesOnSheetsByTheirAnchors) {
    auto book = newBook<TypeParam>();
    ISheetT<TypeParam>* sheet = book->addSheet(S<TypeParam>("S").c_str());
    std::string png = makePng(30, 20);
    int id = book->addPicture2(png.data(), static_cast<unsigned>(png.size()));
    ASSERT_EQ(0, id);
    EXPECT_EQ(0, sheet->pictureSize());
    // Default columns are 64 pixels wide and rows 17 high: 100 x 40 pixels from B3 end in C5.
    sheet->setPicture2(2, 1, id, 100, 40, 0, 0);
    EXPECT_STREQ("ok", book->errorMessage());
    sheet->setPicture(10, 0, id, 2.0, 3, 4);  // the picture's own size, doubled
    EXPECT_STREQ("ok", book->errorMessage());
    sheet->setPicture2(20, 0, id, 10, 10, 100, 0);
    EXPECT_STREQ("warning: offset_x exceed cell's width", book->errorMessage());
    sheet->setPicture2(21, 0, id, 10, 10, 0, 30);
    EXPECT_STREQ("warning: offset_y exceed cell's height", book->errorMessage());
    sheet->setPicture2(22, 0, id, 10, 10, 80, 30);
    EXPECT_STREQ("warning: offset_x and offset_y exceed cell's size", book->errorMessage());
    ASSERT_TRUE(sheet->setMerge(30, 31, 1, 3));
    sheet->setPicture2(30, 1, id, -1, -1, 0, 0);  // the merged range
    sheet->setPicture2(40, 0, 1, 10, 10, 0, 0);
    EXPECT_STREQ("pictureId is out of range", book->errorMessage());
    sheet->setPicture2(70000, 0, id, 10, 10, 0, 0);
    EXPECT_STRNE("ok", book->errorMessage());

    auto again = reloaded(book.get());
    for (ISheetT<TypeParam>* s : {sheet, again->getSheet(0)}) {
        ASSERT_EQ(6, s->pictureSize());
        const struct {
            int rowTop, colLeft, rowBottom, colRight, width, height, offsetX, offsetY;
        } expected[] = {{2, 1, 4, 2, 100, 40, 0, 0},      {10, 0, 12, 0, 60, 40, 3, 4},
                        {20, 0, 20, 1, 10, 10, 64, 0},   {21, 0, 22, 0, 10, 10, 0, 17},
                        {22, 0, 23, 1, 10, 10, 64, 17}};
        for (int i = 0; i < 5; ++i) {
            int v[8];
            EXPECT_EQ(id, s->getPicture(i, &v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6], &v[7]));
            const auto& e = expected[i];
            const int want[8] = {e.rowTop, e.colLeft, e.rowBottom, e.colRight, e.width, e.height, e.offsetX, e.offsetY};
            for (int k = 0; k < 8; ++k) EXPECT_EQ(want[k], v[k]) << "picture " << i << " value " << k;
        }
        EXPECT_EQ(id, s->getPicture(5));  // null pointers are fine
        EXPECT_EQ(-1, s->getPicture(6));
        EXPECT_STREQ("picture not found", book->errorMessage());
    }
    // The merged range's anchor: the whole range, with the end offsets at 32767.
    auto saved = savedDrawings(savedBytes(book.get()));
    auto pictures = drawingPictures(saved.sheets[0]);
    ASSERT_EQ(6u, pictures.size());
    const OfficeArtCoord& a = pictures[5].anchor;
    EXPECT_EQ(1, a.colL);
    EXPECT_EQ(3, a.colR);
    EXPECT_EQ(30, a.rwT);
    EXPECT_EQ(31, a.rwB);
    EXPECT_EQ(32767, a.dxR);
    EXPECT_EQ(32767, a.dyB);
    EXPECT_EQ(576, pictures[0].anchor.dxR);  // 36 of 64 pixels
    EXPECT_EQ(90, pictures[0].anchor.dyB);   // 6 of 17 pixels
    EXPECT_EQ(6u, saved.group.cRef(1));      // each placement is a use
}

TEST(DrawingNumbers, ANewBookNumbersItsShapesByFixedRules) {
    auto book = newBook<char>();
    ISheetT<char>* pictures = book->addSheet("Pictures");
    ISheetT<char>* notes = book->addSheet("Notes");
    std::string png = makePng(4, 4);
    int id = book->addPicture2(png.data(), static_cast<unsigned>(png.size()));
    pictures->setPicture(0, 0, id);
    pictures->setPicture(5, 0, id);
    pictures->writeComment(1, 1, "on a sheet with pictures");
    notes->writeComment(0, 0, "a note alone");
    notes->writeComment(3, 3, "a second one");
    auto saved = savedDrawings(savedBytes(book.get()));
    ASSERT_EQ(2u, saved.sheets.size());
    EXPECT_EQ((std::vector<uint32_t>{1024, 1025, 1026, 1027}), shapeIds(saved.sheets[0]));
    Fdg f = fdgOf(saved.sheets[0]);
    EXPECT_EQ(0u, f.dgid);
    EXPECT_EQ(4u, f.csp);
    EXPECT_EQ(1027u, f.spidCur);
    EXPECT_EQ((std::vector<uint32_t>{1024, 1024, 1025}), shapeIds(saved.sheets[1]));
    f = fdgOf(saved.sheets[1]);
    EXPECT_EQ(1u, f.dgid);
    EXPECT_EQ(2u, f.csp);
    EXPECT_EQ(1025u, f.spidCur);
    auto n = saved.group.numbers();
    EXPECT_EQ(1027u, n.spidMax);
    EXPECT_EQ(2u, n.cidcl);
    // The copy of a sheet uses its pictures once more.
    EXPECT_EQ(2u, saved.group.cRef(1));
    ASSERT_NE(nullptr, book->addSheet("Copy", pictures));
    EXPECT_EQ(4u, savedDrawings(savedBytes(book.get())).group.cRef(1));
}

TEST(DrawingNumbers, ALoadedBookNumbersNewShapesByItsClusterTable) {
    auto book = newBook<char>();
    ISheetT<char>* first = book->addSheet("First");
    std::string png = makePng(4, 4);
    int id = book->addPicture2(png.data(), static_cast<unsigned>(png.size()));
    first->setPicture(0, 0, id);
    book->addSheet("Second");
    std::string bytes = savedBytes(book.get());
    auto loaded = newBook<char>();
    ASSERT_TRUE(loaded->loadRaw(bytes.data(), static_cast<unsigned>(bytes.size())));
    loaded->getSheet(0)->setPicture(3, 3, id);
    loaded->getSheet(0)->writeComment(4, 4, "note");
    loaded->getSheet(1)->setPicture(1, 1, id);
    loaded->getSheet(1)->writeComment(2, 2, "note");
    auto saved = savedDrawings(savedBytes(loaded.get()));
    // The first drawing goes on in its own cluster behind its last id (1026, which the fixed
    // numbering counts as used); the second sheet's drawing gets a new id and a cluster.
    EXPECT_EQ((std::vector<uint32_t>{1024, 1025, 1027, 1028}), shapeIds(saved.sheets[0]));
    EXPECT_EQ((std::vector<uint32_t>{2048, 2049, 2050}), shapeIds(saved.sheets[1]));
    Fdg f = fdgOf(saved.sheets[1]);
    EXPECT_EQ(2u, f.dgid);
    EXPECT_EQ(3u, f.csp);
    EXPECT_EQ(2050u, f.spidCur);
    auto n = saved.group.numbers();
    EXPECT_EQ(2051u, n.spidMax);
    ASSERT_EQ(2u, n.clusters.size());
    EXPECT_EQ(1u, n.clusters[0].dgid);
    EXPECT_EQ(2u, n.clusters[1].dgid);
    EXPECT_EQ(3u, n.clusters[1].cspidCur);
    auto again = reloaded(loaded.get());
    EXPECT_EQ(2, again->getSheet(0)->pictureSize());
    EXPECT_EQ(1, again->getSheet(1)->pictureSize());
    EXPECT_STREQ("note", again->getSheet(1)->readComment(2, 2));
}

TYPED_TEST(DrawingBook, CommentsWriteReadAndOverwrite) {
    auto book = newBook<TypeParam>();
    ISheetT<TypeParam>* sheet = book->addSheet(S<TypeParam>("S").c_str());
    EXPECT_EQ(nullptr, sheet->readComment(0, 0));
    EXPECT_STREQ("ok", book->errorMessage());
    sheet->writeComment(3, 2, S<TypeParam>("first text").c_str(), S<TypeParam>("someone").c_str(), 200, 100);
    EXPECT_STREQ("ok", book->errorMessage());
    EXPECT_EQ(3, sheet->firstRow());
    EXPECT_EQ(4, sheet->lastRow());
    EXPECT_EQ(2, sheet->firstCol());
    EXPECT_EQ(3, sheet->lastCol());
    sheet->writeComment(7, 0, S<TypeParam>("").c_str());
    sheet->writeComment(3, 2, S<TypeParam>("second text").c_str());
    sheet->writeComment(70000, 0, S<TypeParam>("x").c_str());
    EXPECT_STRNE("ok", book->errorMessage());
    std::wstring wide = L"Gr\x00FC\x00DF" L"e \x4E2D\x6587";
    for (int i = 0; i < 300; ++i) wide += L" line";
    wide += L'\x1F600';
    sheet->writeComment(9, 9, zvtest::S<TypeParam>("placeholder").c_str());
    auto again = reloaded(book.get());
    for (ISheetT<TypeParam>* s : {sheet, again->getSheet(0)}) {
        EXPECT_EQ(S<TypeParam>("second text"), s->readComment(3, 2));
        EXPECT_EQ(S<TypeParam>(""), s->readComment(7, 0));
        EXPECT_EQ(S<TypeParam>("placeholder"), s->readComment(9, 9));
        EXPECT_EQ(nullptr, s->readComment(3, 3));
    }
    EXPECT_EQ(nullptr, sheet->readComment(-1, 0));
    EXPECT_STRNE("ok", book->errorMessage());
    // The overwritten comment's shape stays; the note points at the new one.
    auto saved = savedDrawings(savedBytes(book.get()));
    EXPECT_EQ(4u, shapeIds(saved.sheets[0]).size() - 1);
    EXPECT_EQ(3u, saved.notes[0].size());
    NoteView note;
    ASSERT_TRUE(readNote(saved.notes[0][0], &note));
    EXPECT_EQ(L"zelvar", note.author);
    EXPECT_EQ(3, note.row);
}

TEST(DrawingComments, WideTextAndAFontTheBookHas) {
    auto book = newBook<wchar_t>();
    ISheetT<wchar_t>* sheet = book->addSheet(L"S");
    std::wstring text = L"Gr\x00FC\x00DF" L"e \x4E2D\x6587";
    for (int i = 0; i < 3000; ++i) text += L" line";
    text += L'\x1F600';
    sheet->writeComment(0, 0, text.c_str(), L"\x00C5sa");
    auto again = reloaded(book.get());
    EXPECT_EQ(text, again->getSheet(0)->readComment(0, 0));
    // The text run names font 5 when the book has it.
    auto saved = savedDrawings(savedBytes(book.get()));
    const auto& records = saved.sheets[0];
    ASSERT_GE(records.size(), 2u);
    const auto& runs = records.back().payload;
    ASSERT_EQ(16u, runs.size());
    EXPECT_EQ(5, le::get16(runs.data() + 2));
}

TEST(DrawingComments, NotesMoveWithInsertedAndRemovedRows) {
    auto book = newBook<char>();
    ISheetT<char>* sheet = book->addSheet("S");
    std::string png = makePng(4, 4);
    int id = book->addPicture2(png.data(), static_cast<unsigned>(png.size()));
    sheet->setPicture(10, 0, id);
    sheet->writeComment(5, 1, "five");
    sheet->writeComment(10, 1, "ten");
    ASSERT_TRUE(sheet->insertRow(6, 7));
    EXPECT_STREQ("five", sheet->readComment(5, 1));
    EXPECT_STREQ("ten", sheet->readComment(12, 1));
    EXPECT_EQ(nullptr, sheet->readComment(10, 1));
    ASSERT_TRUE(sheet->removeRow(0, 1));
    EXPECT_STREQ("five", sheet->readComment(3, 1));
    EXPECT_STREQ("ten", sheet->readComment(10, 1));
    // Pictures stay where they were: only notes move.
    int row = -1;
    EXPECT_EQ(id, sheet->getPicture(0, &row));
    EXPECT_EQ(10, row);
    auto again = reloaded(book.get());
    EXPECT_STREQ("ten", again->getSheet(0)->readComment(10, 1));
}

}  // namespace

namespace {

// An embedded chart's substream inside a sheet's drawing, and the drawing going on in a CONTINUE
// record behind it: all of it comes back in its place; a record id of 0 inside the chart stops
// the load.
TEST(DrawingCharts, EmbeddedChartSubstreamKeepsItsPlace) {
    auto book = newBook<char>();
    ISheetT<char>* sheet = book->addSheet("S");
    std::string png = makePng(2, 2);
    sheet->setPicture(0, 0, book->addPicture2(png.data(), static_cast<unsigned>(png.size())));
    auto records = streamRecords(savedBytes(book.get()));
    // Behind the picture's Obj: a chart substream, then a CONTINUE that carries no text.
    size_t obj = 0;
    for (size_t i = 0; i < records.size(); ++i)
        if (records[i].id == rt::Obj) obj = i;
    ASSERT_NE(0u, obj);
    std::string chartBof("\x00\x06\x20\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00", 16);
    std::vector<Record> chart = {{2057, chartBof}, {4097, std::string("\x01\x00", 2)}, {10, ""}, {60, ""}};
    records.insert(records.begin() + static_cast<long>(obj) + 1, chart.begin(), chart.end());
    std::string file = container(records);
    auto loaded = newBook<char>();
    ASSERT_TRUE(loaded->loadRaw(file.data(), static_cast<unsigned>(file.size()))) << loaded->errorMessage();
    EXPECT_EQ(1, loaded->getSheet(0)->pictureSize());
    auto back = streamRecords(savedBytes(loaded.get()));
    size_t at = 0;
    while (at < back.size() && back[at].id != rt::Obj) ++at;
    ASSERT_LT(at + 4, back.size());
    for (size_t k = 0; k < chart.size(); ++k) {
        EXPECT_EQ(chart[k].id, back[at + 1 + k].id) << k;
        EXPECT_EQ(chart[k].payload, back[at + 1 + k].payload) << k;
    }
    records[obj + 2].id = 0;
    file = container(records);
    EXPECT_FALSE(loaded->loadRaw(file.data(), static_cast<unsigned>(file.size())));
    EXPECT_STREQ("read error: record id can't be 0", loaded->errorMessage());
}

}  // namespace
