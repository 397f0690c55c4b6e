// The writer's output: its bytes as laid down for packages, and independent tools reading it.
#include <cstring>
#include <ctime>
#include <zlib.h>

#include "frame/little_endian.h"
#include "zip_test_util.h"

using namespace ziptest;
using namespace zelvar::le;

namespace {

const unsigned char* at(const std::string& s, size_t offset) {
    return reinterpret_cast<const unsigned char*>(s.data()) + offset;
}

struct CentralRecord {
    size_t position;
    uint16_t versionNeeded, flags, method, time, date, nameLength;
    uint32_t crc, compressed, uncompressed, external, localOffset;
    std::string name;
};

// Walks the end record and the central directory of an archive without the reader.
std::vector<CentralRecord> centralRecords(const std::string& zip) {
    size_t end = zip.size() - 22;
    EXPECT_EQ(get32(at(zip, end)), 0x06054B50u);
    uint32_t count = get16(at(zip, end + 10));
    size_t p = get32(at(zip, end + 16));
    std::vector<CentralRecord> records;
    for (uint32_t i = 0; i < count; ++i) {
        CentralRecord r;
        r.position = p;
        EXPECT_EQ(get32(at(zip, p)), 0x02014B50u);
        EXPECT_EQ(zip[p + 4], 46);
        EXPECT_EQ(zip[p + 5], 3);
        r.versionNeeded = get16(at(zip, p + 6));
        r.flags = get16(at(zip, p + 8));
        r.method = get16(at(zip, p + 10));
        r.time = get16(at(zip, p + 12));
        r.date = get16(at(zip, p + 14));
        r.crc = get32(at(zip, p + 16));
        r.compressed = get32(at(zip, p + 20));
        r.uncompressed = get32(at(zip, p + 24));
        r.nameLength = get16(at(zip, p + 28));
        EXPECT_EQ(get16(at(zip, p + 30)), 0);  // extra
        EXPECT_EQ(get16(at(zip, p + 32)), 0);  // comment
        r.external = get32(at(zip, p + 38));
        r.localOffset = get32(at(zip, p + 42));
        r.name = zip.substr(p + 46, r.nameLength);
        records.push_back(r);
        p += 46 + r.nameLength;
    }
    return records;
}

}  // namespace

TEST(ZipWriter, LaysDownHeadersAsPackagesExpect) {
    std::string big = sheetXml(50);
    time_t before = time(nullptr);
    std::string zip = writeMemory({{"xl/workbook.xml", big}, {"a.bin", "abcd"}, {"b.bin", "abcde"}});
    auto records = centralRecords(zip);
    ASSERT_EQ(records.size(), 3u);

    // Central order is the order of add; names lose only their leading "/".
    EXPECT_EQ(records[0].name, "xl/workbook.xml");
    EXPECT_EQ(records[1].name, "a.bin");
    EXPECT_EQ(records[2].name, "b.bin");
    // 4 bytes are stored, 5 bytes and more deflated at the default level (no level bits).
    EXPECT_EQ(records[0].method, 8);
    EXPECT_EQ(records[1].method, 0);
    EXPECT_EQ(records[2].method, 8);
    EXPECT_EQ(records[1].compressed, 4u);

    struct tm now;
    localtime_r(&before, &now);
    for (const CentralRecord& r : records) {
        EXPECT_EQ(r.flags, 0x0800);
        EXPECT_EQ(r.versionNeeded, 20);
        EXPECT_EQ(r.external, 0x81A40000u);
        // The DOS date is today's local date (allowing for a test run across midnight).
        int day = r.date & 31, month = (r.date >> 5) & 15, year = (r.date >> 9) + 1980;
        EXPECT_EQ(year, now.tm_year + 1900);
        EXPECT_EQ(month, now.tm_mon + 1);
        EXPECT_NEAR(day, now.tm_mday, 1);
        EXPECT_LT(r.time >> 11, 24);

        // The local header repeats the central fields, CRC and sizes patched in.
        size_t l = r.localOffset;
        ASSERT_EQ(get32(at(zip, l)), 0x04034B50u);
        EXPECT_EQ(get16(at(zip, l + 4)), r.versionNeeded);
        EXPECT_EQ(get16(at(zip, l + 6)), r.flags);
        EXPECT_EQ(get16(at(zip, l + 8)), r.method);
        EXPECT_EQ(get16(at(zip, l + 10)), r.time);
        EXPECT_EQ(get16(at(zip, l + 12)), r.date);
        EXPECT_EQ(get32(at(zip, l + 14)), r.crc);
        EXPECT_EQ(get32(at(zip, l + 18)), r.compressed);
        EXPECT_EQ(get32(at(zip, l + 22)), r.uncompressed);
        EXPECT_EQ(get16(at(zip, l + 26)), r.nameLength);
        EXPECT_EQ(get16(at(zip, l + 28)), 0);
        EXPECT_EQ(zip.substr(l + 30, r.nameLength), r.name);
    }
    EXPECT_EQ(records[0].crc, crc32(0, reinterpret_cast<const Bytef*>(big.data()), big.size()));
    EXPECT_EQ(records[0].uncompressed, big.size());
    // Entries follow each other without gaps, and the directory follows the last one.
    EXPECT_EQ(records[0].localOffset, 0u);
    EXPECT_EQ(records[1].localOffset, 30 + records[0].nameLength + records[0].compressed);
    EXPECT_EQ(zip.substr(records[1].localOffset + 30 + 5, 4), "abcd");
    // The end record: no comment, the directory's size and offset.
    size_t end = zip.size() - 22;
    EXPECT_EQ(get16(at(zip, end + 8)), 3);
    EXPECT_EQ(get32(at(zip, end + 16)), records[0].position);
    EXPECT_EQ(get32(at(zip, end + 12)), end - records[0].position);
    EXPECT_EQ(get16(at(zip, end + 20)), 0);
}

TEST(ZipWriter, EmptyPartsMakeNoEntryAndTheFirstCharacterIsDropped) {
    std::string zip = writeMemory({{"empty.xml", ""}, {"x.xml", "12345"}});
    auto records = centralRecords(zip);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].name, "x.xml");

    zelvar::ZipWriter writer;
    writer.add(L"Xdir/name.xml", "hello", 5);  // whatever the first character is
    writer.add(L"", "", 0);
    writer.close();
    const char* data;
    unsigned size;
    writer.getRaw(&data, &size);
    std::string out(data, size);
    std::free(const_cast<char*>(data));
    records = centralRecords(out);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].name, "dir/name.xml");
}

TEST(ZipWriter, NonAsciiNamesAreStoredAsUtf8) {
    zelvar::ZipWriter writer;
    writer.add(L"/xl/media/bild\u00e4\u4e2d.png", "12345678", 8);
    writer.close();
    const char* data;
    unsigned size;
    writer.getRaw(&data, &size);
    std::string zip(data, size);
    std::free(const_cast<char*>(data));
    auto records = centralRecords(zip);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].flags & 0x0800, 0x0800);
    EXPECT_EQ(records[0].name, "xl/media/bild\xc3\xa4\xe4\xb8\xad.png");
    EXPECT_EQ(readMemory(zip).names[0], L"/xl/media/bild\u00e4\u4e2d.png");
}

TEST(ZipWriter, RawBlockOutlivesTheWriter) {
    const char* data = nullptr;
    unsigned size = 0;
    {
        zelvar::ZipWriter writer;
        writer.add(L"/a.xml", "<a>some text</a>", 16);
        writer.close();
        writer.getRaw(&data, &size);
    }
    std::string zip(data, size);
    std::free(const_cast<char*>(data));
    Listing listing = readMemory(zip);
    ASSERT_EQ(listing.names.size(), 1u);
    EXPECT_EQ(listing.bytes[0], "<a>some text</a>");
}

TEST(ZipWriter, FileTargetAndFailures) {
    std::string path = tmpPath("writer-file.zip");
    std::string xml = sheetXml(200);
    {
        zelvar::ZipWriter writer(std::wstring(path.begin(), path.end()));
        writer.add(L"/xl/worksheets/sheet1.xml", xml.data(), static_cast<unsigned>(xml.size()));
        writer.add(L"/docProps/app.xml", "<Properties/>", 13);
        writer.close();
    }
    if (haveTool("unzip")) {
        CommandResult test = run("unzip -t " + shellQuote(path) + " 2>&1");
        EXPECT_EQ(test.status, 0) << test.output;
    }
    zelvar::ZipReader reader(std::wstring(path.begin(), path.end()));
    Listing listing = readAll(reader);
    ASSERT_EQ(listing.names.size(), 2u);
    EXPECT_EQ(listing.names[0], L"/xl/worksheets/sheet1.xml");
    EXPECT_EQ(listing.bytes[0], xml);
    EXPECT_EQ(listing.bytes[1], "<Properties/>");

    // A writer dropped without close leaves no central directory behind.
    std::string unfinished = tmpPath("writer-unfinished.zip");
    {
        zelvar::ZipWriter writer(std::wstring(unfinished.begin(), unfinished.end()));
        writer.add(L"/a.xml", "<a>text</a>", 11);
    }
    try {
        zelvar::ZipReader broken(std::wstring(unfinished.begin(), unfinished.end()));
        FAIL() << "an archive without central directory opened";
    } catch (const zelvar::zverror& e) {
        EXPECT_STREQ(e.what(),
                     "The central directory was not found in the archive (or you were trying to open "
                     "not the last volume of a segmented archive).");
    }

    try {
        zelvar::ZipWriter writer;
        writer.add(L"/" + std::wstring(70000, L'n'), "12345", 5);
        FAIL() << "a name longer than its length field was written";
    } catch (const zelvar::zverror& e) {
        EXPECT_STREQ(e.what(),
                     "The filename, the comment or local or central extra field of the file added to "
                     "the archive is too long.");
    }
    try {
        zelvar::ZipWriter writer(L"/nonexistent-folder-for-zip-test/out.xlsx");
        FAIL() << "created a file in a missing folder";
    } catch (const zelvar::zverror& e) {
        EXPECT_STREQ(e.what(), "No such file or directory.");
    }
}

TEST(ZipWriter, IndependentToolsReadWhatWeWrite) {
    if (!havePython()) GTEST_SKIP() << "no python";
    std::vector<Entry> entries = {{"[Content_Types].xml", "<Types/>"},
                                  {"xl/worksheets/sheet1.xml", sheetXml(3000)},
                                  {"xl/media/image1.png", std::string("\x89PNG\r\n\x1a\n\0\0\0", 11)},
                                  {"t.bin", "tiny"},
                                  {"u.bin", "1"}};
    std::string random;
    uint32_t seed = 12345;
    for (int i = 0; i < 100000; ++i) {
        seed = seed * 1103515245u + 12345u;
        random.push_back(static_cast<char>(seed >> 24));
    }
    entries.push_back({"xl/embeddings/noise.bin", random});
    std::string path = tmpPath("independent.zip");
    writeFile(path, writeMemory(entries));

    if (haveTool("unzip")) {
        CommandResult test = run("unzip -t " + shellQuote(path) + " 2>&1");
        EXPECT_EQ(test.status, 0) << test.output;
        EXPECT_NE(test.output.find("No errors detected"), std::string::npos) << test.output;
    }
    // Python's zipfile gives back every name and every byte, in the order written.
    CommandResult listing = runPython(
        "import sys, zipfile, zlib\n"
        "z = zipfile.ZipFile(sys.argv[1])\n"
        "assert z.testzip() is None\n"
        "for i in z.infolist():\n"
        "    d = z.read(i)\n"
        "    print(i.filename, len(d), zlib.crc32(d))\n",
        shellQuote(path));
    ASSERT_EQ(listing.status, 0) << listing.output;
    std::string expected;
    for (const Entry& e : entries)
        expected += e.name + " " + std::to_string(e.bytes.size()) + " " +
                    std::to_string(crc32(0, reinterpret_cast<const Bytef*>(e.bytes.data()), e.bytes.size())) + "\n";
    EXPECT_EQ(listing.output, expected);
}

TEST(ZipWriter, ManyEntriesGetZip64EndRecords) {
    // 65,535 entries no longer fit the end record's counts.
    const unsigned count = 65535;
    zelvar::ZipWriter writer;
    char name[32];
    for (unsigned i = 0; i < count; ++i) {
        std::snprintf(name, sizeof name, "/e%u", i);
        std::string bytes = std::to_string(i % 1000);
        writer.add(std::wstring(name, name + std::strlen(name)), bytes.data(), static_cast<unsigned>(bytes.size()));
    }
    writer.close();
    const char* data;
    unsigned size;
    writer.getRaw(&data, &size);
    std::string zip(data, size);
    std::free(const_cast<char*>(data));

    size_t end = zip.size() - 22;
    EXPECT_EQ(get16(at(zip, end + 8)), 0xFFFF);
    EXPECT_EQ(get32(at(zip, end - 20)), 0x07064B50u);
    EXPECT_EQ(get32(at(zip, end - 76)), 0x06064B50u);
    EXPECT_EQ(get64(at(zip, end - 76 + 32)), count);

    zelvar::ZipReader reader(zip.data(), static_cast<unsigned>(zip.size()));
    ASSERT_EQ(reader.size(), count);
    EXPECT_EQ(reader.name(count - 1), L"/e65534");
    const char* bytes;
    unsigned length;
    reader.data(count - 1, &bytes, &length);
    EXPECT_EQ(std::string(bytes, length), "534");
    std::free(const_cast<char*>(bytes));

    if (havePython()) {
        std::string path = tmpPath("zip64-count.zip");
        writeFile(path, zip);
        CommandResult py = runPython(
            "import sys, zipfile\nz = zipfile.ZipFile(sys.argv[1])\n"
            "print(len(z.infolist()), z.read('e65534').decode())\n",
            shellQuote(path));
        EXPECT_EQ(py.output, "65535 534\n");
    }
}

// An entry written in pieces through its stream buffer is the same entry as one added whole:
// same method, flags, CRC, sizes and compressed bytes, whatever the pieces; empty and tiny
// parts keep the rules of add (no entry, stored).
TEST(ZipWriter, EntriesWrittenInPiecesEqualWholeOnes) {
    const std::vector<Entry> parts = {
        {"xl/worksheets/sheet1.xml", sheetXml(20000)}, {"tiny.xml", "abcd"}, {"empty.xml", ""},
        {"five.xml", "abcde"}, {"xl/styles.xml", sheetXml(30)}};
    std::string whole = writeMemory(parts);
    // The compressor's state passes from entry to entry: an entry after others deflates as
    // it does alone in an archive.
    {
        std::string alone = writeMemory({parts[4]});
        CentralRecord first = centralRecords(alone)[0], later = centralRecords(whole)[3];
        ASSERT_EQ(later.name, first.name);
        EXPECT_EQ(whole.substr(later.localOffset + 30 + later.nameLength, later.compressed),
                  alone.substr(first.localOffset + 30 + first.nameLength, first.compressed));
    }
    for (size_t piece : {size_t(1), size_t(7), size_t(65536), size_t(100000), size_t(1) << 24}) {
        zelvar::ZipWriter writer;
        for (const Entry& e : parts) {
            zelvar::ZipEntryBuf entry(writer, L"/" + std::wstring(e.name.begin(), e.name.end()));
            for (size_t at = 0; at < e.bytes.size(); at += piece)
                entry.sputn(e.bytes.data() + at, static_cast<std::streamsize>(std::min(piece, e.bytes.size() - at)));
            entry.finish();
        }
        std::string pieces = closeToString(writer);
        std::vector<CentralRecord> a = centralRecords(whole), b = centralRecords(pieces);
        ASSERT_EQ(a.size(), 4u);
        ASSERT_EQ(b.size(), a.size()) << "piece " << piece;
        for (size_t i = 0; i < a.size(); ++i) {
            EXPECT_EQ(b[i].name, a[i].name);
            EXPECT_EQ(b[i].method, a[i].method) << a[i].name;
            EXPECT_EQ(b[i].flags, a[i].flags) << a[i].name;
            EXPECT_EQ(b[i].crc, a[i].crc) << a[i].name;
            EXPECT_EQ(b[i].compressed, a[i].compressed) << a[i].name;
            EXPECT_EQ(b[i].uncompressed, a[i].uncompressed) << a[i].name;
            EXPECT_EQ(b[i].localOffset, a[i].localOffset) << a[i].name;
            size_t data0 = 30 + a[i].nameLength;
            EXPECT_EQ(pieces.substr(b[i].localOffset + data0, b[i].compressed),
                      whole.substr(a[i].localOffset + data0, a[i].compressed))
                << a[i].name << ", piece " << piece;
        }
        EXPECT_EQ(a[1].method, 0);  // four bytes are stored
        EXPECT_EQ(a[2].method, 8);
        EXPECT_EQ(readMemory(pieces).bytes, readMemory(whole).bytes);
    }
}
