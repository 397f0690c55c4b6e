// The OfficeArt units: MD4 against RFC 1320, record headers and their checks, the record tree,
// property tables, blips and the drawing group's store and numbering.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "frame/zverror.h"
#include "officeart/drawing_group.h"
#include "officeart/md4.h"
#include "officeart/officeart_record.h"
#include "officeart/sheet_drawing.h"
#include "officeart_test_util.h"

using namespace zelvar;
using namespace zvtest;

namespace {

std::string hex(const uint8_t* p, size_t n) {
    static const char digits[] = "0123456789abcdef";
    std::string out;
    for (size_t i = 0; i < n; ++i) {
        out.push_back(digits[p[i] >> 4]);
        out.push_back(digits[p[i] & 15]);
    }
    return out;
}

std::string errorOf(const std::function<void()>& f) {
    try {
        f();
    } catch (const zverror& e) {
        return e.what();
    }
    return "no error";
}

std::vector<uint8_t> bytesOf(const std::string& s) { return std::vector<uint8_t>(s.begin(), s.end()); }

TEST(Md4, Rfc1320TestSuite) {
    const struct {
        const char* message;
        const char* digest;
    } suite[] = {
        {"", "31d6cfe0d16ae931b73c59d7e0c089c0"},
        {"a", "bde52cb31de33e46245e05fbdbd6fb24"},
        {"abc", "a448017aaf21d8525fc10ae87aa6729d"},
        {"message digest", "d9130a8164549fe818874806e1c7014b"},
        {"abcdefghijklmnopqrstuvwxyz", "d79e1c308aa5bbcdeea8ed63df412da9"},
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789", "043f8582f241db351ce627e153e7f0e4"},
        {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
         "e33b4ddc9c38f2199c3e7b164fcc0536"},
    };
    for (const auto& v : suite) {
        uint8_t digest[16];
        md4(v.message, std::strlen(v.message), digest);
        EXPECT_EQ(v.digest, hex(digest, 16)) << '"' << v.message << '"';
    }
    // Lengths around the padding boundary go through one or two final blocks.
    for (size_t n : {55u, 56u, 63u, 64u, 65u, 119u, 120u}) {
        std::string a(n, 'x');
        uint8_t d1[16], d2[16];
        md4(a.data(), a.size(), d1);
        a.back() = 'y';
        md4(a.data(), a.size(), d2);
        EXPECT_NE(hex(d1, 16), hex(d2, 16)) << n;
    }
}

TEST(OfficeArtRecord, HeaderPacksVersionAndInstance) {
    OfficeArtRecordHeader h(2, 75, 0xF00A, 8);
    EXPECT_EQ(2u, h.ver());
    EXPECT_EQ(75u, h.instance());
    std::vector<uint8_t> out;
    h.write(out);
    EXPECT_EQ("b2040af008000000", hex(out.data(), out.size()));
    h.setInstance(0xFFF);
    h.setVer(15);
    EXPECT_EQ(0xFFFFu, h.verInstance);
    OfficeArtRecordHeader back;
    back.read(out.data());
    EXPECT_EQ(75u, back.instance());
    EXPECT_EQ(8u, back.len);
}

TEST(OfficeArtRecord, CheckTestsOnlyTheFieldsOfTheMask) {
    const struct {
        bool (*check)(const OfficeArtRecordHeader&);
        OfficeArtRecordHeader header;
        bool present;
    } cases[] = {
        {OfficeArtFDG::check, {0, 5, 0xF008, 8}, true},        // any instance: the drawing id
        {OfficeArtFDG::check, {0, 5, 0xF008, 12}, false},      // wrong length
        {OfficeArtFDG::check, {1, 5, 0xF008, 8}, false},       // wrong version
        {OfficeArtFSP::check, {2, 202, 0xF00A, 8}, true},
        {OfficeArtFSP::check, {3, 202, 0xF00A, 8}, false},
        {OfficeArtFSPGR::check, {1, 1, 0xF009, 16}, false},    // instance is tested
        {OfficeArtFBSE::check, {2, 6, 0xF007, 999}, true},     // any instance, any length
        {OfficeArtDgContainer::check, {15, 0, 0xF002, 100}, true},
        {OfficeArtDgContainer::check, {15, 0, 0xF003, 100}, false},
        {OfficeArtClientAnchorSheet::check, {0, 0, 0xF010, 18}, true},
        {OfficeArtClientAnchorSheet::check, {0, 0, 0xF010, 16}, false},
        {OfficeArtSplitMenuColorContainer::check, {0, 4, 0xF11E, 16}, true},
        {OfficeArtSplitMenuColorContainer::check, {0, 3, 0xF11E, 16}, false},
    };
    for (size_t i = 0; i < sizeof cases / sizeof cases[0]; ++i)
        EXPECT_EQ(cases[i].present, cases[i].check(cases[i].header)) << i;
}

TEST(OfficeArtRecord, TreeReadsAndWritesBackEveryByte) {
    // A drawing: container, FDG, shape group with a group shape and a picture shape.
    std::vector<uint8_t> sp = pictureShape(1025, 1, OfficeArtCoord{1, 2, 3, 4, 5, 6, 7, 8});
    ArtNode group = makeContainer(OfficeArtSpgrContainer::kType);
    size_t used = 0;
    group.children.push_back(parseOfficeArtRecord(sp.data(), sp.size(), &used));
    EXPECT_EQ(sp.size(), used);
    ArtNode dg = makeContainer(OfficeArtDgContainer::kType);
    dg.children.push_back(makeAtom(OfficeArtRecordHeader(0, 1, 0xF008, 0), std::vector<uint8_t>(8, 7)));
    dg.children.push_back(group);
    dg.recalcLen();
    std::vector<uint8_t> bytes;
    dg.write(bytes);
    EXPECT_EQ(dg.size(), bytes.size());
    auto nodes = parseOfficeArt(bytes.data(), bytes.size());
    ASSERT_EQ(1u, nodes.size());
    std::vector<uint8_t> again;
    nodes[0].write(again);
    EXPECT_EQ(bytes, again);
    ASSERT_NE(nullptr, nodes[0].find(0xF003));
    EXPECT_EQ(1u, nodes[0].find(0xF003)->children.size());

    // A child that runs past its container, and bytes too few for a record.
    std::vector<uint8_t> broken = bytes;
    le::put32(broken.data() + 8 + 16 + 8 + 4, 5000);  // the picture shape's length
    EXPECT_EQ("error in record OfficeArtSpContainer", errorOf([&] { parseOfficeArt(broken.data(), broken.size()); }));
    std::vector<uint8_t> tail = bytes;
    tail.insert(tail.end(), 3, 0);
    EXPECT_EQ("error in record OfficeArtDgContainer", errorOf([&] { parseOfficeArt(tail.data(), tail.size()); }));
    // Nesting without end stops.
    std::vector<uint8_t> deep;
    for (int i = 0; i < 200; ++i) OfficeArtRecordHeader(15, 0, 0xF003, static_cast<uint32_t>(8 * (199 - i))).write(deep);
    EXPECT_EQ("error in record OfficeArtSpgrContainer", errorOf([&] { parseOfficeArt(deep.data(), deep.size()); }));
}

TEST(OfficeArtRecord, PropertyTables) {
    OfficeArtRGFOPTE picture(3);
    int32_t pib = 0;
    ASSERT_TRUE(picture.get(260, &pib));
    EXPECT_EQ(3, pib);
    std::vector<uint8_t> body;
    picture.write(body);
    EXPECT_EQ(picture.size(), body.size());
    EXPECT_EQ("04410300000005c104000000" "33000000", hex(body.data(), body.size()));
    ArtNode node = picture.toNode();
    EXPECT_EQ(2u, node.header.instance());
    EXPECT_EQ(3u, node.header.ver());

    // 2,000 entries with complex data read back.
    OfficeArtRGFOPTE big;
    for (int i = 0; i < 2000; ++i)
        big.addProperty({static_cast<uint16_t>(i & 0x3FFF), false, i % 100 == 0, i}, i % 100 == 0 ? std::vector<uint8_t>(5, static_cast<uint8_t>(i)) : std::vector<uint8_t>());
    std::vector<uint8_t> bigBody;
    big.write(bigBody);
    OfficeArtRGFOPTE back;
    back.read(bigBody.data(), bigBody.size(), 2000);
    std::vector<uint8_t> again;
    back.write(again);
    EXPECT_EQ(bigBody, again);
    EXPECT_EQ(2000u, back.entries().size());
    EXPECT_EQ(5, back.entries()[100].op);

    // A table longer than its record, and complex data beyond it.
    EXPECT_EQ("error in record OfficeArtRGFOPTE", errorOf([&] { back.read(bigBody.data(), 11, 2); }));
    EXPECT_EQ("error in record OfficeArtRGFOPTE", errorOf([&] { back.read(body.data(), body.size() - 1, 2); }));
}

TEST(Blip, JpegSizeFromTheFrameHeader) {
    int w = -1, h = -1;
    std::string jfif = makeJpeg(40, 30, false), exif = makeJpeg(640, 480, true);
    jpegSize(reinterpret_cast<const uint8_t*>(jfif.data()), jfif.size(), &w, &h);
    EXPECT_EQ(40, w);
    EXPECT_EQ(30, h);
    jpegSize(reinterpret_cast<const uint8_t*>(exif.data()), exif.size(), &w, &h);
    EXPECT_EQ(640, w);
    EXPECT_EQ(480, h);
    std::string cut = exif.substr(0, 30);  // ends before the frame header: no size, no error
    jpegSize(reinterpret_cast<const uint8_t*>(cut.data()), cut.size(), &w, &h);
    EXPECT_EQ(0, w);
    EXPECT_EQ(0, h);
    std::string png = makePng(2, 2);
    EXPECT_EQ("invalid jpg file", errorOf([&] { jpegSize(reinterpret_cast<const uint8_t*>(png.data()), png.size(), &w, &h); }));
}

TEST(Blip, KindsByFirstBytesAndByName) {
    const struct {
        std::string bytes;
        int kind;  // -1: refused
    } sniffed[] = {
        {makePng(1, 1), 0}, {makeJpeg(8, 8, false), 1}, {makeJpeg(8, 8, true), 1}, {makeWmf(), 2},
        {makeEmf(1, 1), 4}, {makeBmp(1, 1), 3}, {makeDib(1, 1), 3}, {std::string("\x0C\0\0\0\0", 5), 3},
        {std::string("\x6C\0\0\0\0", 5), 3}, {"GIF89a", -1}, {"\x89PNG", -1}, {std::string("\x01\x00\x00", 3), -1},
    };
    for (const auto& s : sniffed) {
        const uint8_t* p = reinterpret_cast<const uint8_t*>(s.bytes.data());
        if (s.kind < 0)
            EXPECT_EQ("unknown picture format", errorOf([&] { sniffPicture(p, s.bytes.size()); })) << s.bytes;
        else
            EXPECT_EQ(s.kind, static_cast<int>(sniffPicture(p, s.bytes.size()))) << s.kind;
    }
    const struct {
        const wchar_t* name;
        int kind;
    } named[] = {{L"a.png", 0}, {L"a.PNG", 0}, {L"photo.jpg", 1}, {L"x.JPG", 1}, {L"x.wmf", 2},  {L"x.bmp", 3},
                 {L"x.DIB", 3}, {L"x.emf", 4},  {L"x.Png", -1},    {L".png", -1}, {L"x.jpeg", -1}, {L"x.gif", -1}};
    for (const auto& n : named) {
        if (n.kind < 0)
            EXPECT_EQ("unknown picture format", errorOf([&] { pictureKindByName(n.name); }));
        else
            EXPECT_EQ(n.kind, static_cast<int>(pictureKindByName(n.name)));
    }
}

TEST(Blip, StoredBytesLoseTheirFileHeadersAndKeyByMd4) {
    const struct {
        BlipKind kind;
        std::string file;
        size_t cut;  // header bytes not stored
        size_t headerBytes;  // uid and tag or metafile header
        int width, height;
    } cases[] = {
        {BlipKind::Png, makePng(30, 20), 0, 17, 30, 20},     {BlipKind::Jpeg, makeJpeg(40, 30, true), 0, 17, 40, 30},
        {BlipKind::Wmf, makeWmf(), 22, 50, 200, 200},         {BlipKind::Emf, makeEmf(60, 40), 0, 50, 60, 40},
        {BlipKind::Dib, makeBmp(8, 6), 14, 17, 8, 6},         {BlipKind::Dib, makeDib(5, 4), 0, 17, 5, 4},
    };
    for (const auto& c : cases) {
        uint8_t uid[16];
        ArtNode blip = makeBlip(c.kind, reinterpret_cast<const uint8_t*>(c.file.data()), c.file.size(), uid);
        std::string stored = c.file.substr(c.cut);
        uint8_t key[16];
        md4(stored.data(), stored.size(), key);
        EXPECT_EQ(hex(key, 16), hex(uid, 16));
        EXPECT_EQ(c.headerBytes + stored.size(), blip.body.size());
        BlipView view = readBlip(blip.header, blip.body.data(), blip.body.size());
        EXPECT_EQ(c.kind, view.kind);
        EXPECT_EQ(stored, std::string(reinterpret_cast<const char*>(view.data), view.size));
        EXPECT_EQ(c.width, view.width);
        EXPECT_EQ(c.height, view.height);
    }
    // An instance that the kind does not have.
    uint8_t uid[16];
    std::string png = makePng(2, 2);
    ArtNode blip = makeBlip(BlipKind::Png, reinterpret_cast<const uint8_t*>(png.data()), png.size(), uid);
    blip.header.setInstance(1234);
    EXPECT_EQ("error in record OfficeArtBlipPNG", errorOf([&] { readBlip(blip.header, blip.body.data(), blip.body.size()); }));
    blip.header.setInstance(1761);  // two uids: the body is read further on
    EXPECT_EQ(png.size() - 16, readBlip(blip.header, blip.body.data(), blip.body.size()).size);
}

TEST(DrawingGroup, DefaultGroupStoreAndNumbering) {
    DrawingGroup group;
    group.initDefault();
    auto n = group.numbers();
    EXPECT_EQ(1027u, n.spidMax);
    EXPECT_EQ(2u, n.cidcl);
    ASSERT_EQ(1u, n.clusters.size());
    EXPECT_EQ(1u, n.clusters[0].dgid);
    EXPECT_EQ(3u, n.clusters[0].cspidCur);
    EXPECT_FALSE(group.fromFile());

    std::string png = makePng(4, 4), wmf = makeWmf();
    EXPECT_EQ(0, group.addPicture(BlipKind::Png, reinterpret_cast<const uint8_t*>(png.data()), png.size()));
    EXPECT_EQ(1, group.addPicture(BlipKind::Wmf, reinterpret_cast<const uint8_t*>(wmf.data()), wmf.size()));
    EXPECT_EQ(2, group.addPicture(BlipKind::Png, reinterpret_cast<const uint8_t*>(png.data()), png.size()));
    EXPECT_EQ(3, group.fbseCount());
    EXPECT_EQ(0u, group.cRef(1));
    group.addPicRef(1);
    group.addPicRef(1);
    EXPECT_EQ(2u, group.cRef(1));
    EXPECT_EQ("pictureId is out of range", errorOf([&] { group.addPicRef(4); }));
    EXPECT_EQ("pictureId is out of range", errorOf([&] { group.addPicRef(0); }));
    EXPECT_EQ("index is out of range", errorOf([&] { group.picture(3); }));

    // The bytes read back as the same group; its shapes then number by the cluster table.
    DrawingGroup loaded;
    loaded.load(group.bytes());
    EXPECT_FALSE(loaded.unreadable());
    EXPECT_TRUE(loaded.fromFile());
    EXPECT_EQ(3, loaded.pictureCount());
    EXPECT_EQ(2u, loaded.cRef(1));
    EXPECT_EQ(group.bytes(), loaded.bytes());
    uint32_t dgid = loaded.newDrawingId();
    EXPECT_EQ(2u, dgid);
    uint32_t first = loaded.allocateShape(dgid, 0);
    EXPECT_EQ(2048u, first);
    EXPECT_EQ(2049u, loaded.allocateShape(dgid, first + 1));
    EXPECT_EQ(3072u, loaded.allocateShape(dgid, 1027));  // 1027 lies in drawing 1's cluster
    n = loaded.numbers();
    EXPECT_EQ(3073u, n.spidMax);
    EXPECT_EQ(4u, n.cidcl);
    EXPECT_EQ(2u, n.cdgSaved);
    EXPECT_EQ(2u, n.clusters[1].dgid);
    EXPECT_EQ(2u, n.clusters[1].cspidCur);

    // A group that does not read keeps its bytes and answers with what is wrong.
    std::vector<uint8_t> bytes = group.bytes();
    bytes.resize(bytes.size() - 3);
    DrawingGroup broken;
    broken.load(bytes);
    EXPECT_TRUE(broken.unreadable());
    EXPECT_EQ("error in record OfficeArtDggContainer", errorOf([&] { broken.pictureCount(); }));
    EXPECT_EQ("error in record OfficeArtDggContainer", errorOf([&] { broken.initDefault(); }));
    DrawingGroup garbage;
    garbage.load(std::vector<uint8_t>(40, 0));
    EXPECT_EQ("error in record MsoDrawingGroup", errorOf([&] { garbage.pictureCount(); }));
}

TEST(SheetDrawing, CommentRecordsAndNotes) {
    auto records = commentText(L"Hi", 5);
    ASSERT_EQ(3u, records.size());
    EXPECT_EQ(18u, records[0].payload.size());
    EXPECT_EQ("120200000000000000000200100000000000", hex(records[0].payload.data(), 18));
    EXPECT_EQ("0148006900", hex(records[1].payload.data(), records[1].payload.size()));
    EXPECT_EQ("00000500000000000200000000000000", hex(records[2].payload.data(), 16));
    EXPECT_EQ(1u, commentText(L"", 5).size());
    // Text longer than a record goes on in further CONTINUE records, and reads back whole.
    std::wstring longText(9000, L'x');
    longText[8999] = L'\x4E2D';
    std::vector<DrawingRecord> objects;
    objects.push_back({rt::Obj, commentObj(7)});
    for (auto& r : commentText(longText, 0)) objects.push_back(r);
    EXPECT_EQ(6u, objects.size());  // Obj, TextObject, three parts of 4,111 characters at most, runs
    std::wstring text;
    ASSERT_TRUE(findCommentText(objects, 7, &text));
    EXPECT_EQ(longText, text);
    EXPECT_FALSE(findCommentText(objects, 8, &text));

    NoteView note;
    note.row = 3;
    note.col = 2;
    note.idObj = 7;
    note.author = L"A\x00E9";
    std::vector<uint8_t> payload = makeNote(note);
    EXPECT_EQ(9u + 3u + 4u, payload.size());
    NoteView back;
    ASSERT_TRUE(readNote(payload, &back));
    EXPECT_EQ(3, back.row);
    EXPECT_EQ(7, back.idObj);
    EXPECT_EQ(L"A\x00E9", back.author);
    payload.resize(12);
    EXPECT_FALSE(readNote(payload, &back));
}

}  // namespace

namespace {

// A loaded drawing whose shape group is followed by a solver container, in the same MsoDrawing
// record or in the next one: the new shape goes inside the group, the rest stays behind it, and
// every length adds up.
TEST(SheetDrawing, NewShapesGoIntoTheGroupOfALoadedDrawing) {
    DrawingGroup fresh;
    fresh.initDefault();
    DrawingGroup group;
    group.load(fresh.bytes());
    for (bool sameRecord : {true, false}) {
        ArtNode dg = makeContainer(OfficeArtDgContainer::kType);
        std::vector<uint8_t> fdg;
        le::append32(fdg, 2);
        le::append32(fdg, 1025);
        dg.children.push_back(makeAtom(OfficeArtRecordHeader(0, 1, 0xF008, 0), fdg));
        ArtNode spgr = makeContainer(OfficeArtSpgrContainer::kType);
        std::vector<uint8_t> sp = pictureShape(1025, 1, OfficeArtCoord{});
        size_t used = 0;
        spgr.children.push_back(parseOfficeArtRecord(sp.data(), sp.size(), &used));
        dg.children.push_back(spgr);
        dg.children.push_back(makeContainer(OfficeArtSolverContainer::kType));
        dg.recalcLen();
        std::vector<uint8_t> bytes;
        dg.write(bytes);
        const size_t solverAt = bytes.size() - 8;
        std::vector<DrawingRecord> objects;
        if (sameRecord) {
            objects.push_back({rt::MsoDrawing, bytes});
            objects.push_back({rt::Obj, pictureObj(1)});
        } else {
            objects.push_back({rt::MsoDrawing, std::vector<uint8_t>(bytes.begin(), bytes.begin() + static_cast<long>(solverAt))});
            objects.push_back({rt::Obj, pictureObj(1)});
            objects.push_back({rt::MsoDrawing, std::vector<uint8_t>(bytes.begin() + static_cast<long>(solverAt), bytes.end())});
        }
        ShapePlan plan = reserveShape(objects, group, ShapeRole::Picture);
        EXPECT_EQ(1026u, plan.spid);
        NewShape shape;
        shape.art = pictureShape(plan.spid, 1, OfficeArtCoord{});
        shape.objects.push_back({rt::Obj, pictureObj(2)});
        insertShape(objects, plan, shape);
        DrawingMap map = mapDrawing(objects);
        auto nodes = parseOfficeArt(map.bytes.data(), map.bytes.size());
        ASSERT_EQ(1u, nodes.size()) << sameRecord;
        ASSERT_EQ(3u, nodes[0].children.size());
        EXPECT_EQ(0xF005, nodes[0].children[2].header.type);
        EXPECT_EQ(2u, nodes[0].children[1].children.size());
        EXPECT_EQ(3u, le::get32(nodes[0].children[0].body.data()));          // csp
        EXPECT_EQ(1026u, le::get32(nodes[0].children[0].body.data() + 4));   // spidCur
        // The new shape's Obj follows its MsoDrawing, and the solver comes after both.
        ASSERT_EQ(5u, objects.size());
        EXPECT_EQ(rt::MsoDrawing, objects[2].id);
        EXPECT_EQ(rt::Obj, objects[3].id);
        EXPECT_EQ(rt::MsoDrawing, objects[4].id);
        EXPECT_EQ(8u, objects[4].payload.size());
        auto shapes = drawingShapes(map);
        ASSERT_EQ(2u, shapes.size());
        EXPECT_EQ(1026u, shapes[1].spid);
    }
}

}  // namespace
