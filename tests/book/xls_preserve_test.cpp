// What the library does not model comes back byte for byte: chart and macro substreams of real
// files, and records of unknown types in the globals.
#include <gtest/gtest.h>

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

// Substreams whose BOF document type is neither globals (5) nor worksheet (16), as record lists.
std::vector<std::vector<Record>> foreignSubstreams(const std::vector<Record>& all) {
    std::vector<std::vector<Record>> result;
    for (size_t i = 0; i < all.size(); ++i) {
        if (all[i].id != rt::Bof || all[i].payload.size() < 4) continue;
        uint16_t dt = static_cast<uint16_t>(static_cast<uint8_t>(all[i].payload[2]) | static_cast<uint8_t>(all[i].payload[3]) << 8);
        if (dt == 5 || dt == 16) continue;
        std::vector<Record> sub;
        size_t j = i;
        for (; j < all.size(); ++j) {
            sub.push_back(all[j]);
            if (all[j].id == rt::Eof) break;
        }
        result.push_back(sub);
        i = j;
    }
    return result;
}

}  // namespace

TEST(XlsPreserve, ChartAndMacroSubstreamsComeBackByteForByte) {
    std::string manifest = readFile(std::string(ZELVAR_SHARED_DIR) + "/corpus/MANIFEST.tsv");
    if (manifest.empty()) GTEST_SKIP() << "shared corpus not present";
    std::istringstream lines(manifest);
    std::string line;
    int checked = 0;
    while (std::getline(lines, line)) {
        if (line.rfind("xls/", 0) != 0 || line.find("load-ok") == std::string::npos) continue;
        if (line.find("chart") == std::string::npos && line.find("macro-sheet") == std::string::npos) continue;
        std::string path = std::string(ZELVAR_SHARED_DIR) + "/corpus/" + line.substr(0, line.find('\t'));
        std::string original = readFile(path);
        IBookT<char>* book = zvCreateBookA();
        if (!book->loadRaw(original.data(), static_cast<unsigned>(original.size()))) {
            book->release();
            continue;
        }
        const char* data = nullptr;
        unsigned size = 0;
        bool saved = book->saveRaw(&data, &size);
        std::string copy = saved ? std::string(data, size) : std::string();
        book->release();
        if (!saved) continue;  // a "Book" stream is read, never written
        auto before = foreignSubstreams(streamRecords(original));
        auto after = foreignSubstreams(streamRecords(copy));
        ASSERT_EQ(before.size(), after.size()) << path;
        for (size_t s = 0; s < before.size(); ++s) {
            ASSERT_EQ(before[s].size(), after[s].size()) << path << " substream " << s;
            for (size_t r = 0; r < before[s].size(); ++r) {
                EXPECT_EQ(before[s][r].id, after[s][r].id) << path;
                EXPECT_EQ(before[s][r].payload, after[s][r].payload) << path << " record " << r;
            }
        }
        ++checked;
    }
    EXPECT_GT(checked, 3);
}

TEST(XlsPreserve, UnknownGlobalsRecordReturnsBeforeTheGlobalsEof) {
    IBookT<char>* book = zvCreateBookA();
    book->addSheet("Only")->writeNum(0, 0, 1);
    const char* data = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(book->saveRaw(&data, &size));
    std::string file(data, size);
    // Put a record of an unknown type (0x0AAA) right after the globals' BOF by rebuilding the
    // stream: take all records, insert, write a new container.
    auto all = streamRecords(file);
    ASSERT_GT(all.size(), 3u);
    Record strange{0x0AAA, std::string("\x01\x02\x03\x04\x05", 5)};
    all.insert(all.begin() + 1, strange);
    // Sheet positions move by the inserted record's length.
    for (auto& r : all) {
        if (r.id == rt::BoundSheet8) {
            uint32_t pos = static_cast<uint8_t>(r.payload[0]) | static_cast<uint8_t>(r.payload[1]) << 8 |
                           static_cast<uint8_t>(r.payload[2]) << 16 | static_cast<uint32_t>(static_cast<uint8_t>(r.payload[3])) << 24;
            pos += 9;
            for (int k = 0; k < 4; ++k) r.payload[k] = static_cast<char>(pos >> (8 * k));
        }
    }
    std::string modified = container(all);
    ASSERT_TRUE(book->loadRaw(modified.data(), static_cast<unsigned>(modified.size()))) << book->errorMessage();
    EXPECT_EQ(1.0, book->getSheet(0)->readNum(0, 0));
    ASSERT_TRUE(book->saveRaw(&data, &size));
    auto again = streamRecords(std::string(data, size));
    size_t eof = 0;
    while (eof < again.size() && again[eof].id != rt::Eof) ++eof;
    ASSERT_LT(eof, again.size());
    ASSERT_GE(eof, 1u);
    EXPECT_EQ(0x0AAA, again[eof - 1].id);
    EXPECT_EQ(strange.payload, again[eof - 1].payload);
    book->release();
}
