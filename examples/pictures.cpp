// Pictures: a logo added from a file and anchored at a cell at half its size, the same picture
// from memory stretched over a block of cells, then the sheet's pictures listed with their
// anchors. A path ending in .xlsx gives an XML workbook, any other a binary one; both families
// hold pictures the same way.
//
// A book keeps each picture once, in its store (addPicture, addPicture2 give the id); a sheet
// anchors pictures of the store at cells (setPicture, setPicture2), as often as it likes.
#include <cstdio>
#include <cstring>
#include <string>

#include "zelvar.h"

using namespace zelvar;

// A 32x16 PNG, three stripes of blue, white and amber: small enough to sit in the source, so the
// example needs no file beside it. A real program would read logo.png from its own folder.
static const unsigned char kLogoPng[] = {
    0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48, 0x44, 0x52,
    0x00, 0x00, 0x00, 0x20, 0x00, 0x00, 0x00, 0x10, 0x08, 0x02, 0x00, 0x00, 0x00, 0xf8, 0x62, 0xea,
    0x0e, 0x00, 0x00, 0x00, 0x29, 0x49, 0x44, 0x41, 0x54, 0x78, 0xda, 0x63, 0x60, 0x48, 0x5c, 0x41,
    0x5b, 0x34, 0x6a, 0x01, 0x41, 0xf4, 0x1f, 0x09, 0x7c, 0x5a, 0xc9, 0x00, 0x47, 0xd4, 0x12, 0x1f,
    0xb5, 0x60, 0xd4, 0x82, 0xa1, 0x60, 0xc1, 0x68, 0x51, 0x31, 0xe0, 0x16, 0x00, 0x00, 0x3c, 0xd2,
    0x55, 0x2e, 0xa2, 0x73, 0x95, 0x07, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42,
    0x60, 0x82,
};

static bool endsWith(const std::string& text, const char* tail) {
    size_t n = std::strlen(tail);
    return text.size() >= n && text.compare(text.size() - n, n, tail) == 0;
}

int main(int argc, char** argv) {
    std::string path = argc > 1 ? argv[1] : "pictures.xls";
    IBookT<char>* book = endsWith(path, ".xlsx") ? zvCreateXMLBookA() : zvCreateBookA();
    if (!book) return 1;

    // The picture as a file, the common case: addPicture takes the type from the name's ending
    // (.png, .jpg, .wmf, .emf, .bmp, .dib). We write the logo beside the workbook first.
    std::string logoPath = path + ".logo.png";
    if (FILE* f = std::fopen(logoPath.c_str(), "wb")) {
        std::fwrite(kLogoPng, 1, sizeof kLogoPng, f);
        std::fclose(f);
    }
    int logo = book->addPicture(logoPath.c_str());
    std::remove(logoPath.c_str());
    if (logo < 0) {
        std::printf("addPicture: %s\n", book->errorMessage());
        return 1;
    }
    // The same bytes from memory: addPicture2 copies the block and reads the type from its first
    // bytes. A second copy of a picture costs a second entry in the store, so real programs keep
    // the id of the first and anchor it again; here it shows the other way in.
    int banner = book->addPicture2(reinterpret_cast<const char*>(kLogoPng), sizeof kLogoPng);
    if (banner < 0) {
        std::printf("addPicture2: %s\n", book->errorMessage());
        return 1;
    }

    ISheetT<char>* sheet = book->addSheet("Catalogue", nullptr);
    sheet->writeStr(0, 1, "Company catalogue", nullptr);
    sheet->setCol(0, 0, 12);
    sheet->setRow(0, 24);

    // At A1 (row 0, column 0), half its natural size, moved 4 pixels right and down inside the cell.
    sheet->setPicture(0, 0, logo, 0.5, 4, 4);
    // At B3, 256 by 64 pixels: the picture stretched over the cells it covers.
    sheet->setPicture2(2, 1, banner, 256, 64);
    // Offsets beyond the cell are cut back to the cell's size, and the message says so.
    sheet->setPicture(8, 1, logo, 1.0, 500, 0);
    std::printf("offset beyond the cell: %s\n", book->errorMessage());

    if (!book->save(path.c_str())) {
        std::printf("save failed: %s\n", book->errorMessage());
        return 1;
    }
    book->release();

    // Read the file back: the store, then each anchored picture with the cells it spans.
    book = endsWith(path, ".xlsx") ? zvCreateXMLBookA() : zvCreateBookA();
    if (!book->load(path.c_str())) {
        std::printf("load failed: %s\n", book->errorMessage());
        return 1;
    }
    for (int i = 0; i < book->pictureSize(); ++i) {
        const char* data = nullptr;
        unsigned size = 0;
        int type = book->getPicture(i, &data, &size);
        std::printf("picture %d: %s, %u bytes\n", i, type == PicturePng ? "PNG" : "other", size);
    }
    sheet = book->getSheet(0);
    for (int i = 0; i < sheet->pictureSize(); ++i) {
        int rowTop, colLeft, rowBottom, colRight, width, height;
        int id = sheet->getPicture(i, &rowTop, &colLeft, &rowBottom, &colRight, &width, &height);
        std::printf("anchor %d: picture %d over rows %d-%d, columns %d-%d, %dx%d pixels\n", i, id, rowTop,
                    rowBottom, colLeft, colRight, width, height);
    }
    std::printf("%s: %d pictures anchored, last message: %s\n", path.c_str(), sheet->pictureSize(),
                book->errorMessage());
    book->release();
    return 0;
}
