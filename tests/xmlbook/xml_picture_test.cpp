// Pictures of XML books through the public interface: image parts added once, drawing parts made
// on a sheet's first picture, anchors read back in pixels, and what survives a save and load.
#include <cstring>

#include "xml_test_util.h"

using namespace zelvar;
using namespace xmltest;

namespace {

template <class T>
class XmlPicture : public ::testing::Test {};
using Widths = ::testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(XmlPicture, Widths);

// A PNG header with the given size: signature, IHDR length and type, width, height.
std::string png(unsigned width, unsigned height) {
    std::string d("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
    for (unsigned v : {width, height})
        for (int shift = 24; shift >= 0; shift -= 8) d.push_back(static_cast<char>((v >> shift) & 0xFF));
    d.append(13, '\0');
    return d;
}

// A JPEG with one application segment before the frame header of the given marker.
std::string jpeg(unsigned char frameMarker, unsigned width, unsigned height) {
    std::string d("\xFF\xD8\xFF\xE0\x00\x04\x00\x00", 8);
    d += std::string("\xFF", 1) + static_cast<char>(frameMarker) + std::string("\x00\x11\x08", 3);
    d.push_back(static_cast<char>(height >> 8));
    d.push_back(static_cast<char>(height & 0xFF));
    d.push_back(static_cast<char>(width >> 8));
    d.push_back(static_cast<char>(width & 0xFF));
    d.append(12, '\0');
    return d;
}

TYPED_TEST(XmlPicture, KindsAreToldByTheirFirstBytes) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    book->addSheet(S<T>("S").c_str());
    EXPECT_EQ(book->addPicture2("abcdef", 6), -1);
    EXPECT_STREQ(book->errorMessage(), "unknown picture format");
    EXPECT_EQ(book->addPicture2("\x89PNG", 4), -1);  // four bytes can't be told
    std::string p = png(101, 40);
    EXPECT_EQ(book->addPicture2(p.data(), static_cast<unsigned>(p.size())), 0);
    EXPECT_EQ(book->addPicture2(p.data(), static_cast<unsigned>(p.size())), 1);  // a second part
    std::string j = jpeg(0xC2, 30, 20);
    EXPECT_EQ(book->addPicture2(j.data(), static_cast<unsigned>(j.size())), 2);
    EXPECT_EQ(book->addPicture2("BMxyz", 5), 3);
    EXPECT_EQ(book->addPicture2("\xD7\xCD\xC6\x9A\x00\x00", 6), 4);
    EXPECT_EQ(book->addPicture2("\x01\x00\x00\x00\x00\x00", 6), 5);
    EXPECT_EQ(book->pictureSize(), 6);
    const char* data = nullptr;
    unsigned size = 0;
    EXPECT_EQ(book->getPicture(0, &data, &size), PicturePng);
    EXPECT_EQ(size, p.size());
    EXPECT_EQ(book->getPicture(2, &data, &size), PictureJpeg);
    EXPECT_EQ(book->getPicture(4, &data, &size), PictureWmf);
    EXPECT_EQ(book->getPicture(5, &data, &size), PictureEmf);
    EXPECT_EQ(book->addPicture(S<T>("/nonexistent/picture.png").c_str()), -1);
    EXPECT_STREQ(book->errorMessage(), "can't open file");
    auto parts = savedEntries(book.get());
    EXPECT_TRUE(parts.count("xl/media/image1.png"));
    EXPECT_TRUE(parts.count("xl/media/image2.png"));
    EXPECT_TRUE(parts.count("xl/media/image1.jpg"));  // numbered by prefix and extension
    EXPECT_TRUE(contains(parts["[Content_Types].xml"], "<Default Extension=\"png\" ContentType=\"image/png\"/>"));
}

TYPED_TEST(XmlPicture, AnchorsArePlacedAndReadBackInPixels) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
    std::string p = png(101, 40);
    int id = book->addPicture2(p.data(), static_cast<unsigned>(p.size()));
    ASSERT_EQ(id, 0);
    EXPECT_EQ(sheet->pictureSize(), 0);
    sheet->setPicture2(0, 0, 3, 10, 10);
    EXPECT_STREQ(book->errorMessage(), "pictureId is out of range");

    // 150 pixels from column B: two default columns of 64 and 22 into the third.
    sheet->setPicture2(1, 1, id, 150, 30, 0, 0);
    EXPECT_STREQ(book->errorMessage(), "ok");
    sheet->setPicture(4, 0, id, 0.5);  // 50 by 20
    // An offset beyond the cell is cut to its size and reported.
    sheet->setPicture2(8, 0, id, 10, 10, 100, 0);
    EXPECT_STREQ(book->errorMessage(), "warning: offset_x exceed cell's width");
    EXPECT_EQ(sheet->pictureSize(), 3);

    int rowTop, colLeft, rowBottom, colRight, width, height, offX, offY;
    EXPECT_EQ(sheet->getPicture(0, &rowTop, &colLeft, &rowBottom, &colRight, &width, &height, &offX, &offY), id);
    EXPECT_EQ(rowTop, 1);
    EXPECT_EQ(colLeft, 1);
    EXPECT_EQ(colRight, 3);
    EXPECT_EQ(rowBottom, 2);
    EXPECT_EQ(width, 150);
    EXPECT_EQ(height, 30);
    EXPECT_EQ(sheet->getPicture(1, nullptr, nullptr, nullptr, nullptr, &width, &height), id);
    EXPECT_EQ(width, 50);
    EXPECT_EQ(height, 20);
    EXPECT_EQ(sheet->getPicture(2, nullptr, &colLeft, nullptr, nullptr, nullptr, nullptr, &offX), id);
    EXPECT_EQ(offX, 64);
    EXPECT_EQ(sheet->getPicture(-1), -1);
    EXPECT_STREQ(book->errorMessage(), "picture index is out of range");

    auto parts = savedEntries(book.get());
    const std::string& drawing = parts["xl/drawings/drawing1.xml"];
    EXPECT_TRUE(contains(drawing, "<xdr:from><xdr:col>1</xdr:col><xdr:colOff>0</xdr:colOff><xdr:row>1</xdr:row><xdr:rowOff>0</xdr:rowOff></xdr:from>"));
    EXPECT_TRUE(contains(drawing, "<xdr:to><xdr:col>3</xdr:col><xdr:colOff>209550</xdr:colOff>"));
    EXPECT_TRUE(contains(parts["xl/worksheets/sheet1.xml"], "<drawing r:id=\"rId1\"/>"));
    EXPECT_TRUE(contains(parts["xl/worksheets/_rels/sheet1.xml.rels"], "Target=\"../drawings/drawing1.xml\""));
    EXPECT_TRUE(contains(parts["xl/drawings/_rels/drawing1.xml.rels"], "Target=\"../media/image1.png\""));
    EXPECT_TRUE(contains(parts["[Content_Types].xml"], "PartName=\"/xl/drawings/drawing1.xml\""));

    // Load and save: the same pictures in the same places.
    const char* data = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(book->saveRaw(&data, &size));
    std::string bytes(data, size);
    BookPtr<T> again = newXmlBook<T>();
    ASSERT_TRUE(again->loadRaw(bytes.data(), static_cast<unsigned>(bytes.size()))) << again->errorMessage();
    EXPECT_EQ(again->pictureSize(), 1);
    ISheetT<T>* loaded = again->getSheet(0);
    EXPECT_EQ(loaded->pictureSize(), 3);
    EXPECT_EQ(loaded->getPicture(0, &rowTop, &colLeft, &rowBottom, &colRight, &width, &height), 0);
    EXPECT_EQ(colRight, 3);
    EXPECT_EQ(width, 150);
    // A picture added to a loaded sheet goes into its drawing.
    loaded->setPicture2(20, 2, 0, 10, 10);
    EXPECT_EQ(loaded->pictureSize(), 4);
    auto reparts = savedEntries(again.get());
    EXPECT_FALSE(reparts.count("xl/drawings/drawing2.xml"));
}

TYPED_TEST(XmlPicture, ACopiedSheetGetsADrawingOfItsOwn) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
    std::string p = png(10, 10);
    int id = book->addPicture2(p.data(), static_cast<unsigned>(p.size()));
    sheet->setPicture2(0, 0, id, 10, 10);
    ISheetT<T>* copy = book->addSheet(S<T>("Copy").c_str(), sheet);
    ASSERT_NE(copy, nullptr) << book->errorMessage();
    EXPECT_EQ(copy->pictureSize(), 1);
    copy->setPicture2(5, 5, id, 10, 10);
    EXPECT_STREQ(book->errorMessage(), "ok");
    EXPECT_EQ(copy->pictureSize(), 2);
    EXPECT_EQ(sheet->pictureSize(), 1);
    auto parts = savedEntries(book.get());
    EXPECT_TRUE(parts.count("xl/drawings/drawing2.xml"));
    EXPECT_TRUE(parts.count("xl/drawings/_rels/drawing2.xml.rels"));
    EXPECT_EQ(book->pictureSize(), 1);  // the image part stays shared
}

TYPED_TEST(XmlPicture, MergedCellSpansAPictureOfUnsetSize) {
    using T = TypeParam;
    BookPtr<T> book = newXmlBook<T>();
    ISheetT<T>* sheet = book->addSheet(S<T>("S").c_str());
    std::string p = png(10, 10);
    int id = book->addPicture2(p.data(), static_cast<unsigned>(p.size()));
    sheet->setMerge(2, 4, 1, 3);
    sheet->setPicture2(2, 1, id, -1, -1);
    int rowTop, colLeft, rowBottom, colRight;
    EXPECT_EQ(sheet->getPicture(0, &rowTop, &colLeft, &rowBottom, &colRight), id);
    EXPECT_EQ(rowTop, 2);
    EXPECT_EQ(colLeft, 1);
    EXPECT_EQ(rowBottom, 4);
    EXPECT_EQ(colRight, 3);
}

}  // namespace
