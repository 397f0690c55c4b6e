// Fuzz target: a binary workbook from memory. Whatever the bytes, loading must fail with a
// message or succeed, and a loaded book must read its pictures and comments, take a new picture
// and comment, save and read back, with no crash, hang or leak.
#include <cstddef>
#include <cstdint>

#include "zelvar.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zelvar::IBookT<char>* book = zvCreateBookA();
    if (!book) return 0;
    if (book->loadRaw(reinterpret_cast<const char*>(data), static_cast<unsigned>(size))) {
        for (int i = 0; i < book->sheetCount(); ++i) {
            zelvar::ISheetT<char>* sheet = book->getSheet(i);
            for (int r = sheet->firstRow(); r < sheet->lastRow() && r < sheet->firstRow() + 50; ++r)
                for (int c = sheet->firstCol(); c < sheet->lastCol() && c < 20; ++c) {
                    sheet->readStr(r, c);
                    sheet->readNum(r, c);
                    sheet->cellFormat(r, c);
                    sheet->isDate(r, c);
                }
        }
        // The drawing layer: the store, pictures and comments as read, then a picture and a
        // comment added into whatever drawing the first sheet has.
        for (int i = 0; i < book->pictureSize() && i < 20; ++i) {
            const char* data = nullptr;
            unsigned length = 0;
            book->getPicture(i, &data, &length);
        }
        for (int i = 0; i < book->sheetCount(); ++i) {
            zelvar::ISheetT<char>* sheet = book->getSheet(i);
            for (int p = 0; p < sheet->pictureSize() && p < 20; ++p) {
                int v[8];
                sheet->getPicture(p, &v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6], &v[7]);
            }
            for (int r = 0; r < 10; ++r)
                for (int c = 0; c < 10; ++c) sheet->readComment(r, c);
        }
        if (book->sheetCount() > 0) {
            static const unsigned char png[] = {0x89, 'P', 'N', 'G', 13, 10, 26, 10, 0, 0, 0, 13, 'I', 'H', 'D', 'R',
                                                0, 0, 0, 2, 0, 0, 0, 2, 8, 2, 0, 0, 0};
            int id = book->addPicture2(reinterpret_cast<const char*>(png), sizeof png);
            zelvar::ISheetT<char>* sheet = book->getSheet(0);
            if (id >= 0) sheet->setPicture(3, 2, id);
            sheet->writeComment(4, 4, "note", "fuzz", 80, 40);
            sheet->pictureSize();
            sheet->readComment(4, 4);
        }
        const char* saved = nullptr;
        unsigned savedSize = 0;
        if (book->saveRaw(&saved, &savedSize)) {
            zelvar::IBookT<char>* again = zvCreateBookA();
            again->loadRaw(saved, savedSize);
            again->release();
        }
    }
    book->release();
    return 0;
}
