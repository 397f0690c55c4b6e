// Fuzz target: a binary workbook from memory. Whatever the bytes, loading must fail with a
// message or succeed, and a loaded book must save and read back, with no crash, hang or leak.
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
