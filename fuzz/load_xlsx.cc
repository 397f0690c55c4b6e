// Fuzz target: an XML workbook from memory. Whatever the bytes, loading must fail with a message
// or succeed, and a loaded book must answer its cells, save and read back, with no crash, hang or
// leak.
#include <cstddef>
#include <cstdint>

#include "zelvar.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zelvar::IBookT<char>* book = zvCreateXMLBookA();
    if (!book) return 0;
    if (book->loadRaw(reinterpret_cast<const char*>(data), static_cast<unsigned>(size))) {
        for (int i = 0; i < book->sheetCount(); ++i) {
            zelvar::ISheetT<char>* sheet = book->getSheet(i);
            if (!sheet) continue;
            sheet->name();
            for (int r = sheet->firstRow(); r < sheet->lastRow() && r < sheet->firstRow() + 50; ++r)
                for (int c = sheet->firstCol(); c < sheet->lastCol() && c < sheet->firstCol() + 20; ++c) {
                    sheet->readStr(r, c);
                    sheet->readNum(r, c);
                    sheet->readFormula(r, c);
                    sheet->readError(r, c);
                    sheet->cellFormat(r, c);
                    sheet->isDate(r, c);
                }
            sheet->writeStr(0, 0, "fuzz");
            sheet->writeNum(1, 1, 1.5, book->format(0));
        }
        const char* saved = nullptr;
        unsigned savedSize = 0;
        if (book->saveRaw(&saved, &savedSize)) {
            zelvar::IBookT<char>* again = zvCreateXMLBookA();
            again->loadRaw(saved, savedSize);
            again->release();
        }
    }
    book->release();
    return 0;
}
