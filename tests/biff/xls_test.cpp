// The compound file container: the writer's fixed layout, reading through FAT and mini FAT, kept
// streams, and agreement with an independent reader (python3-olefile).
#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "biff/record_ids.h"
#include "biff/xls.h"
#include "frame/zverror.h"

using namespace zelvar;

namespace {

std::string pattern(size_t n) {
    std::string s(n, '\0');
    for (size_t i = 0; i < n; ++i) s[i] = static_cast<char>((i * 7 + i / 251) & 0xFF);
    return s;
}

// Writes one workbook stream into a new container and returns the file's bytes.
std::string writeContainer(const std::string& workbook) {
    XlsStream xls;
    xls.reset(true);
    std::stringstream out(std::ios::in | std::ios::out | std::ios::binary);
    xls.setStreamPtr(&out);
    xls.writeHeader();
    xls.write(workbook.data(), static_cast<int>(workbook.size()));
    xls.close();
    EXPECT_EQ(out.str().size(), xls.fileSize());
    return out.str();
}

// Opens a container from bytes and reads up to n bytes of its workbook stream.
std::string readWorkbook(XlsStream& xls, std::stringstream& in, size_t n) {
    xls.setStreamPtr(&in);
    xls.calcFileSize();
    unsigned counter = 0;
    xls.readHeader(counter);
    n = std::min<size_t>(n, xls.size() + 65536);
    std::string data(n, '\0');
    int got = xls.read(&data[0], static_cast<int>(n));
    data.resize(static_cast<size_t>(got));
    return data;
}

std::string readFile(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream f(path, std::ios::binary);
    f.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

struct StreamInfo {
    uint64_t size;
    uint32_t crc;
};

// Streams of each file as the independent reader sees them; empty when python3-olefile is missing.
std::map<std::string, std::map<std::string, StreamInfo>> independentStreams(const std::vector<std::string>& files) {
    std::map<std::string, std::map<std::string, StreamInfo>> result;
    std::string command = std::string(ZELVAR_PYTHON) + " " + ZELVAR_SOURCE_DIR + "/tests/biff/cfb_streams.py";
    for (const auto& f : files) command += " '" + f + "'";
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return result;
    char line[4096];
    while (std::fgets(line, sizeof line, pipe)) {
        std::istringstream in(line);
        std::string file, name, size, crc;
        std::getline(in, file, '\t');
        std::getline(in, name, '\t');
        std::getline(in, size, '\t');
        std::getline(in, crc);
        if (name == "!error") continue;
        result[file][name] = StreamInfo{std::stoull(size), static_cast<uint32_t>(std::stoul(crc))};
    }
    pclose(pipe);
    return result;
}

bool haveIndependentReader() {
    std::string command = std::string(ZELVAR_PYTHON) + " -c 'import olefile' 2>/dev/null";
    return std::string(ZELVAR_PYTHON).size() > 0 && std::system(command.c_str()) == 0;
}

uint32_t crcOf(const std::string& s) {
    return static_cast<uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(s.data()), static_cast<uInt>(s.size())));
}

std::string tmpPath(const std::string& name) { return std::string(ZELVAR_TEST_TMP) + "/" + name; }

}  // namespace

TEST(XlsContainer, NewBookHasTheFixedSmallLayout) {
    std::string file = writeContainer(pattern(100));
    ASSERT_EQ(6656u, file.size());
    std::stringstream in(file);
    XlsStream xls;
    std::string data = readWorkbook(xls, in, 8192);
    const XlsHeader& h = xls.header();
    EXPECT_EQ(3u, h.numFatSectors);
    EXPECT_EQ(11u, h.firstDirSector);
    EXPECT_EQ(8u, h.difat[0]);
    EXPECT_EQ(9u, h.difat[1]);
    EXPECT_EQ(10u, h.difat[2]);
    EXPECT_EQ(kFreeSect, h.difat[3]);
    EXPECT_EQ(0u, h.numDifatSectors);
    EXPECT_EQ(kEndOfChain, h.firstDifatSector);
    EXPECT_EQ(4096u, h.miniStreamCutoff);
    // The stream was padded to 4096 bytes, so it lives in regular sectors.
    EXPECT_EQ(4096u, xls.size());
    EXPECT_EQ(4096u, data.size());
    EXPECT_EQ(pattern(100), data.substr(0, 100));
    EXPECT_EQ(std::string(3996, '\0'), data.substr(100));
    EXPECT_TRUE(xls.eof());
    ASSERT_EQ(4u, xls.directory().size());
    EXPECT_EQ(L"Root Entry", xls.directory()[0].nameText());
    EXPECT_EQ(L"Workbook", xls.directory()[1].nameText());
    EXPECT_EQ(L"", xls.directory()[2].nameText());
    EXPECT_EQ(kFatSect, xls.fat()[8]);
    EXPECT_EQ(kEndOfChain, xls.fat()[7]);
    EXPECT_EQ(kEndOfChain, xls.fat()[11]);
}

TEST(XlsContainer, StreamsOfEverySizeReadBack) {
    for (size_t size : {size_t(1), size_t(4095), size_t(4096), size_t(4097), size_t(100000)}) {
        std::string payload = pattern(size);
        std::string file = writeContainer(payload);
        std::stringstream in(file);
        XlsStream xls;
        std::string data = readWorkbook(xls, in, size + 10000);
        size_t expected = size < 4096 ? 4096 : size;
        EXPECT_EQ(expected, xls.size());
        ASSERT_GE(data.size(), expected) << size;
        EXPECT_EQ(payload, data.substr(0, size));
        // The last sector's tail is zero-filled.
        EXPECT_EQ(std::string(data.size() - size, '\0'), data.substr(size)) << size;
    }
    // 4097 bytes take 9 sectors.
    EXPECT_EQ(512u + 9 * 512 + 3 * 512 + 512, writeContainer(pattern(4097)).size());
}

TEST(XlsContainer, LargeStreamsGetDifatSectors) {
    // 7.5 MB of stream need more than 109 FAT sectors: the rest are listed in DIFAT sectors.
    std::string payload = pattern(7500000);
    std::string file = writeContainer(payload);
    std::stringstream in(file);
    XlsStream xls;
    std::string data = readWorkbook(xls, in, payload.size());
    EXPECT_GT(xls.header().numFatSectors, 109u);
    EXPECT_EQ(1u, xls.header().numDifatSectors);
    EXPECT_EQ(payload, data);
    if (!haveIndependentReader()) GTEST_SKIP() << "python3-olefile not installed";
    std::string path = tmpPath("difat.xls");
    writeFile(path, file);
    auto streams = independentStreams({path});
    ASSERT_EQ(1u, streams[path].count("Workbook"));
    EXPECT_EQ(payload.size(), streams[path]["Workbook"].size);
    EXPECT_EQ(crcOf(payload), streams[path]["Workbook"].crc);
}

TEST(XlsContainer, BadInputFailsWithAMessage) {
    struct Case {
        std::string bytes;
        const char* message;
    } cases[] = {
        {std::string(100, 'x'), "readHeader: file is corrupt (size < 512 bytes)"},
        {std::string(600, 'x'), "invalid file format"},
    };
    for (auto& c : cases) {
        std::stringstream in(c.bytes);
        XlsStream xls;
        try {
            readWorkbook(xls, in, 10);
            ADD_FAILURE() << "no error for " << c.message;
        } catch (const zverror& e) {
            EXPECT_STREQ(c.message, e.what());
        }
    }
    // A valid header whose FAT count disagrees with the DIFAT.
    std::string file = writeContainer(pattern(10));
    file[44] = 7;
    std::stringstream in(file);
    XlsStream xls;
    try {
        readWorkbook(xls, in, 10);
        ADD_FAILURE();
    } catch (const zverror& e) {
        EXPECT_STREQ("Xls::loadFat(): extract fat sectors (3) not equal _header.numFatSectors (7)", e.what());
    }
    // Cut after the FAT: the directory is gone.
    std::string cut = writeContainer(pattern(10)).substr(0, 512 + 11 * 512);
    std::stringstream in2(cut);
    XlsStream xls2;
    EXPECT_THROW(readWorkbook(xls2, in2, 10), zverror);
}

TEST(XlsContainer, ContinueBackPatching) {
    XlsStream xls;
    xls.write(rt::MsoDrawingGroup, 8224);  // a record opened with a provisional size
    uint16_t left = 8224;
    for (int i = 0; i < 8224 / 4 + 3; ++i) xls.writeInt32(static_cast<uint32_t>(i), left);
    finishContinue(xls, left);
    // First piece full, second with the remaining 12 bytes.
    std::stringstream out(std::ios::in | std::ios::out | std::ios::binary);
    xls.setStreamPtr(&out);
    xls.close();
    std::stringstream in(out.str());
    XlsStream reader;
    std::string data = readWorkbook(reader, in, 4 + 8224 + 4 + 12);
    auto u16 = [&](size_t at) { return static_cast<uint16_t>(static_cast<uint8_t>(data[at]) | static_cast<uint8_t>(data[at + 1]) << 8); };
    EXPECT_EQ(0x00EB, u16(0));
    EXPECT_EQ(8224, u16(2));
    EXPECT_EQ(0x003C, u16(4 + 8224));
    EXPECT_EQ(12, u16(4 + 8224 + 2));
    EXPECT_EQ(12, left);

    // Reading a value that straddles the two pieces.
    std::stringstream in2(out.str());
    XlsStream r2;
    readWorkbook(r2, in2, 0);
    uint16_t id, size;
    r2.readInt16(&id);
    r2.readInt16(&size);
    std::string skip(8222, '\0');
    r2.read(&skip[0], 8222);
    uint16_t rest = 2;
    uint32_t value = 0;
    r2.readInt32(&value, rest);
    // High half of value 2055 from the first piece, low half of 2056 from the continuation.
    EXPECT_EQ(0x08080000u, value);
    uint16_t none = 0;
    EXPECT_THROW(r2.readInt16(&id, none), zverror);  // the next record is no CONTINUE
}

// Real files: our reading of the workbook stream agrees with the independent reader, and a save
// keeps every other stream byte for byte.
TEST(XlsContainer, CorpusStreamsMatchAndSurviveASave) {
    std::string manifest = readFile(std::string(ZELVAR_SHARED_DIR) + "/corpus/MANIFEST.tsv");
    if (manifest.empty()) GTEST_SKIP() << "shared corpus not present";
    if (!haveIndependentReader()) GTEST_SKIP() << "python3-olefile not installed";
    std::vector<std::string> files;
    std::istringstream lines(manifest);
    std::string line;
    while (std::getline(lines, line)) {
        if (line.rfind("xls/", 0) != 0 || line.find("load-ok") == std::string::npos) continue;
        std::string path = std::string(ZELVAR_SHARED_DIR) + "/corpus/" + line.substr(0, line.find('\t'));
        std::string bytes = readFile(path);
        if (bytes.size() >= 8 && static_cast<uint8_t>(bytes[0]) == 0xD0) files.push_back(path);
    }
    ASSERT_GT(files.size(), 50u);
    auto before = independentStreams(files);

    std::vector<std::string> saved;
    int compared = 0;
    for (const auto& path : files) {
        if (!before.count(path)) continue;
        std::stringstream in(readFile(path));
        XlsStream xls;
        std::string stream;
        try {
            stream = readWorkbook(xls, in, 64u << 20);
        } catch (const zverror& e) {
            ADD_FAILURE() << path << ": " << e.what();
            continue;
        }
        // The stream we read: "Workbook" in any case, else "Book".
        std::string name;
        for (const char* wanted : {"workbook", "book"}) {
            for (const auto& s : before[path]) {
                std::string lower = s.first;
                for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
                if (name.empty() && lower == wanted) name = s.first;
            }
        }
        if (name.empty()) continue;
        const StreamInfo& info = before[path][name];
        // The chain may hold more than the directory's size; compare what the size covers.
        if (stream.size() >= info.size && crcOf(stream.substr(0, info.size)) == info.crc) {
            ++compared;
        } else {
            ADD_FAILURE() << path << ": workbook stream differs (" << stream.size() << " vs " << info.size << ")";
            continue;
        }
        xls.readSections();
        if (name == "Book" || name == "BOOK") continue;  // a "Book" stream is read, never saved
        xls.reset(false);
        std::stringstream out(std::ios::in | std::ios::out | std::ios::binary);
        xls.setStreamPtr(&out);
        xls.write(stream.data(), static_cast<int>(std::min<size_t>(stream.size(), info.size)));
        xls.close();
        std::string target = tmpPath("cfb-" + std::to_string(saved.size()) + ".xls");
        writeFile(target, out.str());
        saved.push_back(target);
        saved.push_back(path);
    }
    EXPECT_GT(compared, 50);

    std::vector<std::string> targets;
    for (size_t i = 0; i < saved.size(); i += 2) targets.push_back(saved[i]);
    auto after = independentStreams(targets);
    for (size_t i = 0; i < saved.size(); i += 2) {
        const auto& original = before[saved[i + 1]];
        const auto& copy = after[saved[i]];
        for (const auto& s : original) {
            if (copy.count(s.first) && s.first != "Book" && copy.at(s.first).size >= 4096 &&
                (s.first == "Workbook" || s.first == "WORKBOOK" || s.first == "WorkBook"))
                continue;  // the stream we wrote ourselves
            auto found = copy.find(s.first);
            ASSERT_NE(found, copy.end()) << saved[i + 1] << ": stream " << s.first << " lost";
            EXPECT_EQ(s.second.size, found->second.size) << saved[i + 1] << ": " << s.first;
            EXPECT_EQ(s.second.crc, found->second.crc) << saved[i + 1] << ": " << s.first;
        }
    }
}
