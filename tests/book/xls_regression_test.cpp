// Faults found outside the tests, each kept as a regression test named after what the user saw.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "biff/xls.h"
#include "xls_stream_util.h"
#include "zelvar.h"

using namespace zelvar;
using namespace zvtest;

namespace {

std::string readFile(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

std::string saved(IBookT<char>* book) {
    const char* data = nullptr;
    unsigned size = 0;
    EXPECT_TRUE(book->saveRaw(&data, &size)) << book->errorMessage();
    return data ? std::string(data, size) : std::string();
}

struct Book {
    IBookT<char>* book = zvCreateBookA();
    ~Book() { book->release(); }
    IBookT<char>* operator->() const { return book; }
};

// The records of the globals substream, up to and without its EOF.
std::vector<Record> globals(const std::vector<Record>& all) {
    std::vector<Record> out;
    for (const auto& r : all) {
        if (r.id == 10) break;
        out.push_back(r);
    }
    return out;
}

// The MsoDrawingGroup records of the globals, each followed by its CONTINUEs.
std::vector<Record> drawingGroup(const std::vector<Record>& all) {
    std::vector<Record> out;
    bool inGroup = false;
    for (const auto& r : globals(all)) {
        if (r.id == 235) inGroup = true;
        else if (r.id != 60) inGroup = false;
        if (inGroup) out.push_back(r);
    }
    return out;
}

std::string filled(size_t size, char seed) {
    std::string s(size, '\0');
    for (size_t i = 0; i < size; ++i) s[i] = static_cast<char>(seed + i * 7);
    return s;
}

// A saved book with these records put in front of the globals' EOF.
std::string withGlobals(const std::vector<Record>& extra) {
    Book book;
    book->addSheet("S")->writeNum(0, 0, 1);
    auto all = streamRecords(saved(book.book));
    size_t eof = 0;
    while (eof < all.size() && all[eof].id != 10) ++eof;
    all.insert(all.begin() + static_cast<long>(eof), extra.begin(), extra.end());
    return container(all);
}

}  // namespace

// Pictures destroyed on save: a drawing group stored as two MsoDrawingGroup records, each with
// CONTINUEs, lost its first record on load.
TEST(XlsRegression, PicturesDestroyedOnSaveDrawingGroupOfTwoRecords) {
    const std::vector<Record> group = {{235, filled(8224, 1)}, {60, filled(8224, 2)}, {60, filled(100, 3)},
                                       {235, filled(8224, 4)}, {60, filled(31, 5)}};
    std::string file = withGlobals(group);
    Book book;
    ASSERT_TRUE(book->loadRaw(file.data(), static_cast<unsigned>(file.size()))) << book->errorMessage();
    auto after = drawingGroup(streamRecords(saved(book.book)));
    ASSERT_EQ(group.size(), after.size());
    for (size_t i = 0; i < group.size(); ++i) {
        EXPECT_EQ(group[i].id, after[i].id) << i;
        EXPECT_EQ(group[i].payload, after[i].payload) << i;
    }
}

TEST(XlsRegression, PicturesDestroyedOnSaveCorpusFiles) {
    int checked = 0;
    for (const char* name : {"javalib-drawings.xls", "javalib-57231_MixedGasReport.xls"}) {
        std::string original = readFile(std::string(ZELVAR_SHARED_DIR) + "/corpus/xls/" + name);
        if (original.empty()) continue;
        Book book;
        ASSERT_TRUE(book->loadRaw(original.data(), static_cast<unsigned>(original.size()))) << name;
        auto before = drawingGroup(streamRecords(original));
        auto after = drawingGroup(streamRecords(saved(book.book)));
        std::string joinedBefore, joinedAfter;
        for (const auto& r : before) joinedBefore += r.payload;
        for (const auto& r : after) joinedAfter += r.payload;
        EXPECT_GT(before.size(), 2u) << name;
        EXPECT_EQ(joinedBefore.size(), joinedAfter.size()) << name;
        EXPECT_TRUE(joinedBefore == joinedAfter) << name;
        ++checked;
    }
    if (checked == 0) GTEST_SKIP() << "shared corpus not present";
}
