// Packages that the fuzzer found faults with, kept under tests/data/xlsx as fuzz-<fault>.xlsx:
// each must load or fail with a message, and a book that loads must save and load again.
#include "../biff/fuzz_inputs.h"
#include "xml_test_util.h"

using namespace zelvar;
using namespace xmltest;

TEST(XlsxFuzzRegressions, EveryFindingLoadsOrFailsCleanly) {
    auto inputs = fuzzInputs("xlsx");
    ASSERT_FALSE(inputs.empty());
    for (const auto& [path, bytes] : inputs) {
        BookPtr<char> book = newXmlBook<char>();
        if (!book->loadRaw(bytes.data(), static_cast<unsigned>(bytes.size()))) {
            EXPECT_STRNE("ok", book->errorMessage()) << path;
            continue;
        }
        for (int i = 0; i < book->sheetCount(); ++i) {
            ISheetT<char>* sheet = book->getSheet(i);
            ASSERT_NE(sheet, nullptr) << path;
            for (int r = sheet->firstRow(); r < sheet->lastRow() && r < sheet->firstRow() + 50; ++r)
                for (int c = sheet->firstCol(); c < sheet->lastCol() && c < sheet->firstCol() + 20; ++c) {
                    sheet->readStr(r, c);
                    sheet->readFormula(r, c);
                }
        }
        const char* data = nullptr;
        unsigned size = 0;
        if (!book->saveRaw(&data, &size)) {
            // A tree that breaks its schema fails on writing with the schema's message.
            EXPECT_STRNE("ok", book->errorMessage()) << path;
            continue;
        }
        std::string copy(data, size);
        BookPtr<char> again = newXmlBook<char>();
        EXPECT_TRUE(again->loadRaw(copy.data(), size)) << path << ": " << again->errorMessage();
    }
}
