// Inputs that once crashed the loader: each must now load or fail with a message, and a book
// that loads must save.
#include <gtest/gtest.h>

#include "fuzz_inputs.h"
#include "zelvar.h"

TEST(XlsFuzzRegressions, EveryFindingLoadsOrFailsCleanly) {
    auto inputs = fuzzInputs("biff");
    ASSERT_FALSE(inputs.empty());
    for (const auto& [path, bytes] : inputs) {
        zelvar::IBookT<char>* book = zvCreateBookA();
        if (book->loadRaw(bytes.data(), static_cast<unsigned>(bytes.size()))) {
            const char* data = nullptr;
            unsigned size = 0;
            if (book->saveRaw(&data, &size)) {
                // What was saved loads again.
                std::string copy(data, size);
                zelvar::IBookT<char>* again = zvCreateBookA();
                EXPECT_TRUE(again->loadRaw(copy.data(), static_cast<unsigned>(copy.size())))
                    << path << ": " << again->errorMessage();
                again->release();
            } else {
                // Only a workbook stream under the old name "Book" is read and never written.
                EXPECT_STREQ("Xls::reset(): workbook section is not found", book->errorMessage()) << path;
            }
        } else {
            EXPECT_STRNE("ok", book->errorMessage()) << path;
        }
        book->release();
    }
}
