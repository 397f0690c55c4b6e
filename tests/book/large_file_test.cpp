// Books larger than what a save keeps in memory and what a load sees through its window: the file
// streamed to disk must be the very bytes of the in-memory save, however late its back-patches
// land, and a file read through the window must load as the same bytes read in place.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "test_util.h"

using namespace zvtest;

namespace {

std::string readFile(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

std::string tmpPath(const std::string& name) { return std::string(ZELVAR_TEST_TMP) + "/" + name; }

// Text of a pool of 3,000 strings, some beyond 8 bits.
std::string poolText(int i) {
    std::string text = "cell-" + std::to_string(i * 7919 % 3001);
    if (i % 16 == 0) text += "\xC3\xA9";
    if (i % 64 == 0) text += "\xE2\x82\xAC";
    return text;
}

// Three sheets: two dense ones of 25,000 rows (about 1.3 MB of records each, so that the saved
// sheet positions and the string table's piece sizes are patched long after they went out), and a
// sparse one touching the grid's corners.
zelvar::IBookT<char>* buildBook() {
    zelvar::IBookT<char>* book = zvCreateBookA();
    book->setLocale("UTF-8");
    for (int s = 0; s < 2; ++s) {
        zelvar::ISheetT<char>* sheet = book->addSheet(("Dense" + std::to_string(s)).c_str());
        for (int r = 0; r < 25000; ++r) {
            sheet->writeNum(r, 0, r + s);
            sheet->writeNum(r, 1, r * 0.01);
            sheet->writeStr(r, 2, poolText(r + s).c_str());
            sheet->writeBool(r, 3, (r + s) % 3 == 0);
        }
    }
    zelvar::ISheetT<char>* sparse = book->addSheet("Sparse");
    sparse->writeNum(0, 0, 1);
    sparse->writeStr(40000, 17, "middle");
    sparse->writeNum(65535, 255, 2);
    return book;
}

}  // namespace

TEST(LargeFile, StreamedSaveIsTheInMemorySaveAndLoadsBackAlike) {
    zelvar::IBookT<char>* book = buildBook();
    const char* raw = nullptr;
    unsigned rawSize = 0;
    ASSERT_TRUE(book->saveRaw(&raw, &rawSize)) << book->errorMessage();
    std::string inMemory(raw, rawSize);
    ASSERT_GT(inMemory.size(), 2u << 20);
    std::string path = tmpPath("large-streamed.xls");
    ASSERT_TRUE(book->save(path.c_str())) << book->errorMessage();
    std::string onDisk = readFile(path);
    EXPECT_TRUE(onDisk == inMemory) << "file of " << onDisk.size() << " bytes, memory " << inMemory.size();
    book->release();

    // Through the window on the file, and in place from memory: the same book, saved alike.
    zelvar::IBookT<char>* fromFile = zvCreateBookA();
    zelvar::IBookT<char>* fromMemory = zvCreateBookA();
    fromFile->setLocale("UTF-8");
    fromMemory->setLocale("UTF-8");
    ASSERT_TRUE(fromFile->load(path.c_str())) << fromFile->errorMessage();
    ASSERT_TRUE(fromMemory->loadRaw(inMemory.data(), static_cast<unsigned>(inMemory.size())))
        << fromMemory->errorMessage();
    for (zelvar::IBookT<char>* loaded : {fromFile, fromMemory}) {
        ASSERT_EQ(3, loaded->sheetCount());
        zelvar::ISheetT<char>* dense = loaded->getSheet(1);
        EXPECT_EQ(0, dense->firstRow());
        EXPECT_EQ(25000, dense->lastRow());
        EXPECT_EQ(4, dense->lastCol());
        EXPECT_DOUBLE_EQ(24999 + 1, dense->readNum(24999, 0));
        EXPECT_DOUBLE_EQ(12345 * 0.01, dense->readNum(12345, 1));
        EXPECT_EQ(poolText(24999 + 1), dense->readStr(24999, 2));
        EXPECT_TRUE(dense->readBool(24998, 3));
        zelvar::ISheetT<char>* sparse = loaded->getSheet(2);
        EXPECT_EQ(0, sparse->firstRow());
        EXPECT_EQ(65536, sparse->lastRow());
        EXPECT_EQ(256, sparse->lastCol());
        EXPECT_STREQ("middle", sparse->readStr(40000, 17));
        EXPECT_EQ(0, sparse->cellType(40000, 16));
        const char* again = nullptr;
        unsigned againSize = 0;
        ASSERT_TRUE(loaded->saveRaw(&again, &againSize)) << loaded->errorMessage();
        EXPECT_TRUE(std::string(again, againSize) == inMemory);
    }
    fromFile->release();
    fromMemory->release();
    std::remove(path.c_str());
}

// A book of one cell costs what it holds; its used range follows writes and a save.
TYPED_TEST_SUITE_P(SmallBook);
template <class T>
class SmallBook : public ::testing::Test {};
TYPED_TEST_P(SmallBook, UsedRangeFollowsWritesOnlyWhereCellsAre) {
    using T = TypeParam;
    auto book = newBook<T>();
    zelvar::ISheetT<T>* sheet = book->addSheet(S<T>("One").c_str());
    EXPECT_EQ(0, sheet->lastRow());
    sheet->writeNum(7, 3, 1.5);
    EXPECT_EQ(7, sheet->firstRow());
    EXPECT_EQ(8, sheet->lastRow());
    EXPECT_EQ(3, sheet->firstCol());
    EXPECT_EQ(4, sheet->lastCol());
    sheet->writeBlank(2, 200, nullptr);
    EXPECT_EQ(2, sheet->firstRow());
    EXPECT_EQ(201, sheet->lastCol());
    const char* data = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(book->saveRaw(&data, &size));
    EXPECT_EQ(2, sheet->firstRow());
    EXPECT_EQ(201, sheet->lastCol());
    auto copy = newBook<T>();
    ASSERT_TRUE(copy->loadRaw(data, size)) << copy->errorMessage();
    zelvar::ISheetT<T>* loaded = copy->getSheet(0);
    EXPECT_EQ(2, loaded->firstRow());
    EXPECT_EQ(8, loaded->lastRow());
    EXPECT_EQ(3, loaded->firstCol());
    EXPECT_EQ(201, loaded->lastCol());
    EXPECT_DOUBLE_EQ(1.5, loaded->readNum(7, 3));
}
REGISTER_TYPED_TEST_SUITE_P(SmallBook, UsedRangeFollowsWritesOnlyWhereCellsAre);
INSTANTIATE_TYPED_TEST_SUITE_P(Widths, SmallBook, Widths);
