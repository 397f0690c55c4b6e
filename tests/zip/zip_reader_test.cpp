// The reader against archives of other programs and against damaged archives.
#include <dirent.h>
#include <zlib.h>

#include <algorithm>
#include <map>

#include "frame/little_endian.h"
#include "zip/zip_text.h"
#include "zip_test_util.h"

using namespace ziptest;
using namespace zelvar::le;

namespace {

const char kDamaged[] = "Damaged or not a zip file.";

unsigned char* at(std::string& s, size_t offset) { return reinterpret_cast<unsigned char*>(&s[0]) + offset; }

size_t endRecord(const std::string& zip) { return zip.rfind(std::string("PK\x05\x06", 4)); }

// Positions of the central records, in directory order.
std::vector<size_t> centralPositions(std::string& zip) {
    size_t end = endRecord(zip);
    size_t p = get32(at(zip, end + 16));
    std::vector<size_t> positions;
    for (unsigned i = 0, n = get16(at(zip, end + 10)); i < n; ++i) {
        positions.push_back(p);
        p += 46 + get16(at(zip, p + 28)) + get16(at(zip, p + 30)) + get16(at(zip, p + 32));
    }
    return positions;
}

std::string describe(const Listing& listing) {
    std::string out;
    for (size_t i = 0; i < listing.names.size(); ++i) {
        const std::string& b = listing.bytes[i];
        out += zelvar::ziptext::wideToUtf8(listing.names[i]) + " " + std::to_string(b.size()) + " " +
               std::to_string(crc32(0, reinterpret_cast<const Bytef*>(b.data()), b.size())) + "\n";
    }
    return out;
}

// Python's view of archives, entries in file order, names as package paths decoded the way
// the archive's system stores them.
const char kPythonListing[] = R"(import sys, zipfile, zlib
def show(path):
    try:
        z = zipfile.ZipFile(path)
        out = []
        for i in sorted(z.infolist(), key=lambda i: i.header_offset):
            name = i.filename if i.orig_filename is None else i.orig_filename
            if not (i.flag_bits & 0x800) and i.create_system in (3, 7, 20):
                name = name.encode('cp437').decode('utf-8', 'replace')
            name = name.replace('\\', '/')
            if not name.startswith('/'):
                name = '/' + name
            d = z.read(i)
            out.append('%s %d %d\n' % (name, len(d), zlib.crc32(d)))
        return 'OK\n' + ''.join(out)
    except Exception as e:
        return 'FAIL %s\n' % type(e).__name__
for path in sys.argv[1:]:
    sys.stdout.write('== %s\n' % path)
    sys.stdout.write(show(path))
)";

// Runs the listing over many files at once; maps each path to Python's text.
std::map<std::string, std::string> pythonListings(const std::vector<std::string>& paths) {
    std::string args;
    for (const std::string& p : paths) args += " " + shellQuote(p);
    CommandResult result = runPython(kPythonListing, args);
    std::map<std::string, std::string> listings;
    std::string current;
    size_t pos = 0;
    while (pos < result.output.size()) {
        size_t eol = result.output.find('\n', pos);
        if (eol == std::string::npos) eol = result.output.size();
        std::string line = result.output.substr(pos, eol - pos);
        pos = eol + 1;
        if (line.compare(0, 3, "== ") == 0)
            current = line.substr(3);
        else
            listings[current] += line + "\n";
    }
    return listings;
}

// Our view in the same form: "OK" and the entries, or the failure text.
std::string ourListing(const std::string& path) {
    try {
        zelvar::ZipReader reader(std::wstring(path.begin(), path.end()));
        return "OK\n" + describe(readAll(reader));
    } catch (const zelvar::zverror& e) {
        return std::string("FAIL ") + e.what() + "\n";
    }
}

std::vector<std::string> filesIn(const std::string& dir, const std::vector<std::string>& suffixes) {
    std::vector<std::string> files;
    if (DIR* d = ::opendir(dir.c_str())) {
        while (dirent* e = ::readdir(d)) {
            std::string name = e->d_name;
            for (const std::string& s : suffixes)
                if (name.size() > s.size() && name.compare(name.size() - s.size(), s.size(), s) == 0)
                    files.push_back(dir + "/" + name);
        }
        ::closedir(d);
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string threeEntries() {
    return writeMemory({{"first.xml", sheetXml(40)}, {"second.xml", "<b>second part</b>"}, {"third.bin", "3rd"}});
}

}  // namespace

TEST(ZipReader, ReadsArchivesOfPythonAndInfoZip) {
    if (!havePython()) GTEST_SKIP() << "no python";
    std::string dir = tmpPath("made");
    run("rm -rf " + shellQuote(dir) + " && mkdir -p " + shellQuote(dir));
    CommandResult made = runPython(R"(import sys, io, zipfile, os
d = sys.argv[1]
xml = ''.join('<row r="%d"><c r="A%d"><v>%d</v></c></row>' % (r, r, r * 7) for r in range(1, 3000))
with zipfile.ZipFile(d + '/stored.zip', 'w', zipfile.ZIP_STORED) as z:
    z.writestr('[Content_Types].xml', '<Types/>')
    z.writestr('xl/sheet.xml', xml)
with zipfile.ZipFile(d + '/deflated.zip', 'w', zipfile.ZIP_DEFLATED) as z:
    z.writestr('xl/sheet.xml', xml)
    z.writestr('xl/b.xml', 'x' * 10)
    z.writestr('e.txt', '')
with zipfile.ZipFile(d + '/comment.zip', 'w', zipfile.ZIP_DEFLATED) as z:
    z.writestr('a.xml', xml)
    z.comment = b'PK archive comment'
with zipfile.ZipFile(d + '/zip64.zip', 'w', zipfile.ZIP_DEFLATED, allowZip64=True) as z:
    with z.open('big.xml', 'w', force_zip64=True) as f:
        f.write(xml.encode())
    with z.open('small.xml', 'w', force_zip64=True) as f:
        f.write(b'<a/>')
# Lowered limits make Python write Zip64 extras in both headers and Zip64 end records.
saved = (zipfile.ZIP64_LIMIT, zipfile.ZIP_FILECOUNT_LIMIT)
zipfile.ZIP64_LIMIT, zipfile.ZIP_FILECOUNT_LIMIT = 100, 2
with zipfile.ZipFile(d + '/zip64small.zip', 'w', zipfile.ZIP_DEFLATED) as z:
    z.writestr('one.xml', xml)
    z.writestr('two.xml', xml[:500])
    z.writestr('three.bin', 'abc', compress_type=zipfile.ZIP_STORED)
zipfile.ZIP64_LIMIT, zipfile.ZIP_FILECOUNT_LIMIT = saved
class Stream(io.RawIOBase):
    def __init__(self): self.data = bytearray()
    def writable(self): return True
    def write(self, b): self.data += b; return len(b)
s = Stream()
with zipfile.ZipFile(s, 'w', zipfile.ZIP_DEFLATED) as z:
    z.writestr('dd1.xml', xml)
    with z.open('dd2.xml', 'w') as f:
        f.write(b'<streamed/>' * 30)
open(d + '/descriptor.zip', 'wb').write(bytes(s.data))
with zipfile.ZipFile(d + '/utf8.zip', 'w', zipfile.ZIP_DEFLATED) as z:
    z.writestr('xl/m\u00e4dia/\u00fc.xml', 'umlaut ' * 5)
os.makedirs(d + '/tree/xl/sub', exist_ok=True)
open(d + '/tree/xl/sub/one.xml', 'w').write(xml)
open(d + '/tree/two.txt', 'w').write('two')
open(d + '/tree/empty.txt', 'w').write('')
)",
                                   shellQuote(dir));
    ASSERT_EQ(made.status, 0) << made.output;
    std::vector<std::string> paths = {dir + "/stored.zip", dir + "/deflated.zip", dir + "/comment.zip",
                                      dir + "/zip64.zip", dir + "/zip64small.zip", dir + "/descriptor.zip",
                                      dir + "/utf8.zip"};
    if (haveTool("zip")) {
        CommandResult zipped = run("cd " + shellQuote(dir + "/tree") + " && zip -q -r ../infozip.zip . 2>&1");
        ASSERT_EQ(zipped.status, 0) << zipped.output;
        paths.push_back(dir + "/infozip.zip");
    }
    // Check that the Python archives have what they should: a descriptor, Zip64 extras.
    std::string descriptor = readFile(dir + "/descriptor.zip");
    EXPECT_EQ(get16(at(descriptor, 6)) & 8, 8);
    std::string zip64 = readFile(dir + "/zip64.zip");
    EXPECT_EQ(get16(at(zip64, 30 + 7)), 1);  // Zip64 extra behind the name "big.xml"
    std::string zip64small = readFile(dir + "/zip64small.zip");
    EXPECT_EQ(get32(at(zip64small, 22)), 0xFFFFFFFFu);
    EXPECT_EQ(get32(at(zip64small, zip64small.size() - 22 - 20)), 0x07064B50u);

    auto expected = pythonListings(paths);
    for (const std::string& path : paths) {
        ASSERT_EQ(expected[path].compare(0, 3, "OK\n"), 0) << path << ": " << expected[path];
        EXPECT_EQ(ourListing(path), expected[path]) << path;
    }
}

TEST(ZipReader, HonoursTheUnicodePathField) {
    if (!havePython()) GTEST_SKIP() << "no python";
    std::string path = tmpPath("unicode-path.zip");
    CommandResult made = runPython(R"(import sys, struct, zipfile, zlib
utf8 = 'xl/\u00fcber.xml'.encode('utf-8')
info = zipfile.ZipInfo('xl/uber.xml')
info.extra = struct.pack('<HHBI', 0x7075, 5 + len(utf8), 1, zlib.crc32(b'xl/uber.xml')) + utf8
stale = zipfile.ZipInfo('stale.xml')  # the field no longer matches the stored name
stale.extra = struct.pack('<HHBI', 0x7075, 5 + 3, 1, 12345) + b'new'
with zipfile.ZipFile(sys.argv[1], 'w') as z:
    z.writestr(info, 'content')
    z.writestr(stale, 'stale')
)",
                                   shellQuote(path));
    ASSERT_EQ(made.status, 0) << made.output;
    zelvar::ZipReader reader(std::wstring(path.begin(), path.end()));
    Listing listing = readAll(reader);
    ASSERT_EQ(listing.names.size(), 2u);
    EXPECT_EQ(listing.names[0], L"/xl/\u00fcber.xml");
    EXPECT_EQ(listing.names[1], L"/stale.xml");
    EXPECT_EQ(listing.bytes[0], "content");
}

TEST(ZipReader, ReadsSmallPackagesOfOtherProgramsLikeUnzip) {
    if (!haveTool("unzip")) GTEST_SKIP() << "no unzip";
    auto packages = filesIn(std::string(ZELVAR_SOURCE_DIR) + "/tests/data/zip", {".xlsx", ".xlsm"});
    ASSERT_GE(packages.size(), 3u);
    for (const std::string& path : packages) {
        zelvar::ZipReader reader(std::wstring(path.begin(), path.end()));
        Listing listing = readAll(reader);
        CommandResult names = run("unzip -Z1 " + shellQuote(path));
        ASSERT_EQ(names.status, 0) << path;
        std::vector<std::string> unzipNames;
        std::istringstream lines(names.output);
        for (std::string line; std::getline(lines, line);) unzipNames.push_back("/" + line);
        ASSERT_EQ(listing.names.size(), unzipNames.size()) << path;
        for (size_t i = 0; i < listing.names.size(); ++i) {
            std::string name = zelvar::ziptext::wideToUtf8(listing.names[i]);
            EXPECT_NE(std::find(unzipNames.begin(), unzipNames.end(), name), unzipNames.end()) << name;
            std::string pattern;  // unzip takes names as wildcard patterns
            for (char c : name.substr(1)) {
                if (c == '[' || c == ']' || c == '*' || c == '?') pattern += '\\';
                pattern += c;
            }
            CommandResult bytes = run("unzip -p " + shellQuote(path) + " " + shellQuote(pattern));
            EXPECT_EQ(bytes.output, listing.bytes[i]) << path << " " << name;
        }
    }
}

TEST(ZipReader, ReadsEveryCorpusPackageThatPythonReads) {
    std::string corpus = std::string(ZELVAR_SHARED_DIR) + "/corpus/xlsx";
    auto packages = filesIn(corpus, {".xlsx", ".xlsm", ".xltx"});
    if (packages.empty()) GTEST_SKIP() << "no shared corpus";
    if (!havePython()) GTEST_SKIP() << "no python";
    auto expected = pythonListings(packages);
    bool unzip = haveTool("unzip");
    int agreed = 0, refusedByBoth = 0, likeUnzip = 0;
    for (const std::string& path : packages) {
        std::string ours = ourListing(path);  // must not crash, whatever the file holds
        const std::string& theirs = expected[path];
        if (theirs.compare(0, 3, "OK\n") == 0) {
            EXPECT_EQ(ours, theirs) << path;
            agreed += ours == theirs;
        } else if (ours.compare(0, 3, "OK\n") != 0) {
            ++refusedByBoth;
        }
        // Every fourth package is also checked with unzip, which keeps the test fast:
        // unzip -p gives all entries at once, in the central directory's order (-Z1).
        if (!unzip || theirs.compare(0, 3, "OK\n") != 0 || (&path - &packages[0]) % 4 != 0) continue;
        CommandResult names = run("unzip -Z1 " + shellQuote(path) + " 2>/dev/null");
        CommandResult all = run("unzip -p " + shellQuote(path) + " 2>/dev/null");
        if (names.status != 0 || all.status != 0) continue;
        zelvar::ZipReader reader(std::wstring(path.begin(), path.end()));
        Listing listing = readAll(reader);
        std::map<std::string, std::string> byName;
        for (size_t i = 0; i < listing.names.size(); ++i)
            byName[zelvar::ziptext::wideToUtf8(listing.names[i]).substr(1)] = listing.bytes[i];
        std::string concatenated;
        std::istringstream lines(names.output);
        for (std::string line; std::getline(lines, line);) {
            std::replace(line.begin(), line.end(), '\\', '/');
            concatenated += byName[line];
        }
        EXPECT_TRUE(concatenated == all.output) << path;
        ++likeUnzip;
    }
    EXPECT_GT(agreed, 200);
    std::printf("corpus: %d packages read alike, %d refused by both, of %zu; %d compared with unzip -p\n",
                agreed, refusedByBoth, packages.size(), likeUnzip);
}

TEST(ZipReader, BytesInFrontAndArchiveComments) {
    std::string zip = threeEntries();
    Listing plain = readMemory(zip);
    ASSERT_EQ(plain.names.size(), 3u);

    std::string prefixed = std::string(1000, '\x7f') + "PK\x03\x04 not a header" + zip;
    Listing shifted = readMemory(prefixed);
    EXPECT_EQ(shifted.names, plain.names);
    EXPECT_EQ(shifted.bytes, plain.bytes);

    // A comment of the largest size still lets the end record be found; one byte more hides it.
    std::string commented = zip;
    put16(at(commented, commented.size() - 2), 0xFFFF);
    commented += std::string(0xFFFF, 'c');
    EXPECT_EQ(readMemory(commented).bytes, plain.bytes);
    std::string hidden = zip;
    hidden += std::string(0x10000, 'c');
    put16(at(hidden, zip.size() - 2), 0xFFFF);
    EXPECT_EQ(errorOf(hidden),
              "The central directory was not found in the archive (or you were trying to open not "
              "the last volume of a segmented archive).");
}

TEST(ZipReader, EntriesComeInFileOrderAndSharedOffsetsAreDamage) {
    std::string zip = threeEntries();
    auto positions = centralPositions(zip);
    ASSERT_EQ(positions.size(), 3u);
    size_t directory = positions[0];
    size_t end = endRecord(zip);
    std::string records[3];
    for (int i = 0; i < 3; ++i)
        records[i] = zip.substr(positions[i], (i < 2 ? positions[i + 1] : end) - positions[i]);

    std::string reversed = zip.substr(0, directory) + records[2] + records[1] + records[0] + zip.substr(end);
    Listing listing = readMemory(reversed);
    ASSERT_EQ(listing.names.size(), 3u);
    EXPECT_EQ(listing.names[0], L"/first.xml");
    EXPECT_EQ(listing.names[1], L"/second.xml");
    EXPECT_EQ(listing.names[2], L"/third.bin");
    EXPECT_EQ(listing.bytes[1], "<b>second part</b>");

    std::string shared = zip;
    put32(at(shared, positions[2] + 42), get32(at(shared, positions[1] + 42)));
    EXPECT_EQ(errorOf(shared), kDamaged);
}

TEST(ZipReader, DamagedEntriesFailWithTheEngineTexts) {
    std::string zip = threeEntries();
    auto positions = centralPositions(zip);
    size_t firstData = 30 + std::string("first.xml").size();
    uint32_t firstSize = get32(at(zip, positions[0] + 20));

    // A corrupted deflated byte: zlib refuses the stream or the CRC differs.
    for (size_t offset : {size_t(5), size_t(firstSize / 2), size_t(firstSize - 3)}) {
        std::string corrupt = zip;
        corrupt[firstData + offset] ^= 0x55;
        std::string error = errorOf(corrupt);
        EXPECT_TRUE(error == "Crc is mismatched." || error == "Zlib library error (data error).") << error;
    }

    // The local header must agree with the central one.
    std::string localCrc = zip;
    at(localCrc, 14)[0] ^= 1;
    EXPECT_EQ(errorOf(localCrc), kDamaged);
    std::string localMethod = zip;
    put16(at(localMethod, 8), 0);
    EXPECT_EQ(errorOf(localMethod), kDamaged);

    // Sizes and offsets past the end of the file.
    std::string farOffset = zip;
    put32(at(farOffset, positions[1] + 42), 0x7FFFFFF0);
    EXPECT_EQ(errorOf(farOffset), kDamaged);
    std::string farSize = zip;
    put32(at(farSize, positions[0] + 20), 0x7FFFFFF0);
    put32(at(farSize, 18), 0x7FFFFFF0);
    EXPECT_EQ(errorOf(farSize), kDamaged);
    std::string bigDirectory = zip;
    put32(at(bigDirectory, endRecord(zip) + 12), 0x10000000);
    EXPECT_EQ(errorOf(bigDirectory), kDamaged);
    std::string countWithoutDirectory = zip;
    put32(at(countWithoutDirectory, endRecord(zip) + 12), 0);
    EXPECT_EQ(errorOf(countWithoutDirectory), kDamaged);
    std::string badSignature = zip;
    badSignature[positions[1]] = 'X';
    EXPECT_EQ(errorOf(badSignature), kDamaged);
    EXPECT_FALSE(errorOf(zip.substr(0, zip.size() / 2)).empty());

    // Encrypted entries need a password, which is never given.
    std::string encrypted = zip;
    at(encrypted, positions[1] + 8)[0] |= 1;
    at(encrypted, get32(at(encrypted, positions[1] + 42)) + 6)[0] |= 1;
    EXPECT_EQ(errorOf(encrypted), "An incorrect password set for the file being decrypted.");

    // A stated size that can't come from the data, and the size kept for "unknown".
    std::string inflated = zip;
    put32(at(inflated, positions[0] + 24), 0x70000000);
    put32(at(inflated, 22), 0x70000000);
    EXPECT_EQ(errorOf(inflated), kDamaged);
    std::string allOnes = zip;
    put32(at(allOnes, positions[2] + 24), 0xFFFFFFFF);
    EXPECT_EQ(errorOf(allOnes), "incorrect file size in archive");
}

// A stored entry whose data are the bytes of the next entry's header and data: the classic
// overlapping ZIP bomb repeats this so that a small archive inflates one kernel many times.
TEST(ZipReader, OverlappingEntriesAreDamage) {
    auto local = [](const std::string& name, const std::string& data) {
        std::string h;
        append32(h, 0x04034B50);
        append16(h, 20);
        append16(h, 0);
        append16(h, 0);  // stored
        append32(h, 0);  // time and date
        append32(h, crc32(0, reinterpret_cast<const Bytef*>(data.data()), data.size()));
        append32(h, static_cast<uint32_t>(data.size()));
        append32(h, static_cast<uint32_t>(data.size()));
        append16(h, static_cast<uint32_t>(name.size()));
        append16(h, 0);
        return h + name + data;
    };
    auto central = [](const std::string& localEntry, uint32_t offset) {
        std::string h;
        append32(h, 0x02014B50);
        append16(h, 20);
        h += localEntry.substr(4, 26);  // version needed to name length, as in the local header
        append16(h, 0);                 // comment length
        append16(h, 0);                 // disk
        append16(h, 0);                 // internal attributes
        append32(h, 0);                 // external attributes
        append32(h, offset);
        return h + localEntry.substr(30, get16(reinterpret_cast<const unsigned char*>(localEntry.data()) + 26));
    };
    auto archive = [](const std::string& entries, const std::string& directory, unsigned count) {
        std::string end;
        append32(end, 0x06054B50);
        append32(end, 0);
        append16(end, count);
        append16(end, count);
        append32(end, static_cast<uint32_t>(directory.size()));
        append32(end, static_cast<uint32_t>(entries.size()));
        append16(end, 0);
        return entries + directory + end;
    };
    std::string inner = local("b.xml", std::string(200, 'b'));
    std::string outer = local("a.xml", inner);  // a's data quote all of b
    // Alone, the outer entry is an ordinary entry whose data happen to look like a header.
    Listing alone = readMemory(archive(outer, central(outer, 0), 1));
    ASSERT_EQ(alone.bytes.size(), 1u);
    EXPECT_EQ(alone.bytes[0], inner);
    // Listing the quoted header as an entry of its own makes the two share bytes.
    std::string both = central(outer, 0) + central(inner, 30 + 5);
    EXPECT_EQ(errorOf(archive(outer, both, 2)), kDamaged);
    // Side by side they don't, and both read.
    std::string apart = local("a.xml", "aaaa") + inner;
    Listing two = readMemory(archive(apart, central(local("a.xml", "aaaa"), 0) + central(inner, 30 + 5 + 4), 2));
    ASSERT_EQ(two.bytes.size(), 2u);
    EXPECT_EQ(two.bytes[1], std::string(200, 'b'));
}

// Sizes stated in the headers bound what an entry may take, whatever its data would inflate to.
TEST(ZipReader, StatedSizesBoundTheInflatedData) {
    // Zeros deflate about a thousand to one, just inside what deflate can do: a real entry of
    // that ratio reads.
    std::string zeros(4 << 20, '\0');
    std::string zip = writeMemory({{"zeros.bin", zeros}});
    ASSERT_LT(zip.size(), zeros.size() / 500);
    EXPECT_EQ(readMemory(zip).bytes[0].size(), zeros.size());
    auto positions = centralPositions(zip);
    // Stating less than the data inflate to: extraction stops at the stated size and fails.
    std::string smaller = zip;
    put32(at(smaller, positions[0] + 24), 4096);
    put32(at(smaller, 22), 4096);
    EXPECT_EQ(errorOf(smaller), "Crc is mismatched.");
    // Stating more than the compressed bytes can hold is refused before any memory is taken.
    std::string larger = zip;
    put32(at(larger, positions[0] + 24), 0xF0000000);
    put32(at(larger, 22), 0xF0000000);
    EXPECT_EQ(errorOf(larger), kDamaged);
}

TEST(ZipReader, EdgesOfTheInterface) {
    std::string zip = threeEntries();
    zelvar::ZipReader reader(zip.data(), static_cast<unsigned>(zip.size()));
    const char* data = reinterpret_cast<const char*>(1);
    unsigned size = 7;
    reader.data(3, &data, &size);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(reader.name(3), L"");

    // A method this engine doesn't know gives nothing rather than a failure.
    std::string unknown = zip;
    auto positions = centralPositions(unknown);
    put16(at(unknown, positions[2] + 10), 99);
    put16(at(unknown, get32(at(unknown, positions[2] + 42)) + 8), 99);
    Listing listing = readMemory(unknown);
    EXPECT_EQ(listing.bytes[2], "");

    std::string empty("PK\x05\x06\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 22);
    EXPECT_EQ(readMemory(empty).names.size(), 0u);
    EXPECT_EQ(errorOf(""), "The central directory was not found in the archive (or you were trying to open "
                           "not the last volume of a segmented archive).");
    try {
        zelvar::ZipReader missing(L"/no/such/package.xlsx");
        FAIL() << "a missing file opened";
    } catch (const zelvar::zverror& e) {
        EXPECT_STREQ(e.what(), "No such file or directory.");
    }
}
