// Every XML part of the load-ok packages of the shared corpus goes through the schema-bound
// classes: read, written, read again to an equal tree, and written again to the same text.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <sstream>

#include "bound_test_util.h"
#include "zip/zip_reader.h"

namespace {

using namespace boundtest;

struct s_manifest_row {
    std::string path;
    std::string expected;
};

std::vector<s_manifest_row> load_ok_packages() {
    std::vector<s_manifest_row> rows;
    std::ifstream in(std::string(ZELVAR_SHARED_DIR) + "/corpus/MANIFEST.tsv");
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line)) {
        std::vector<std::string> cols;
        std::stringstream ss(line);
        std::string col;
        while (std::getline(ss, col, '\t')) cols.push_back(col);
        if (cols.size() < 7 || cols[6] != "load-ok") continue;
        const std::string& p = cols[0];
        auto ends = [&](const char* ext) {
            std::string e(ext);
            return p.size() > e.size() && p.compare(p.size() - e.size(), e.size(), e) == 0;
        };
        if (ends(".xlsx") || ends(".xlsm") || ends(".xltx")) rows.push_back({p, cols[6]});
    }
    return rows;
}

std::string read_file(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream os;
    os << in.rdbuf();
    return os.str();
}

TEST(BoundCorpus, EveryXmlPartOfEveryLoadOkPackageRoundTrips) {
    std::string corpus = std::string(ZELVAR_SHARED_DIR) + "/corpus";
    if (!std::filesystem::exists(corpus + "/MANIFEST.tsv")) GTEST_SKIP() << "no shared corpus at " << corpus;
    std::vector<s_manifest_row> packages = load_ok_packages();
    ASSERT_GT(packages.size(), 100u);
    std::map<std::string, size_t> parts_by_kind;
    s_diff_counts diffs;
    size_t failures = 0;
    for (const s_manifest_row& row : packages) {
        std::string bytes = read_file(corpus + "/" + row.path);
        std::unique_ptr<zelvar::ZipReader> zip;
        try {
            zip.reset(new zelvar::ZipReader(bytes.data(), static_cast<unsigned>(bytes.size())));
        } catch (...) {
            ADD_FAILURE() << row.path << ": the package does not open";
            continue;
        }
        // The dialect is the workbook's: strict packages name the strict main namespace.
        std::vector<std::pair<std::string, std::string>> parts;
        bool strict = false;
        for (unsigned i = 0; i < zip->size(); ++i) {
            std::wstring wname = zip->name(i);
            std::string name(wname.begin(), wname.end());
            bool xml = name.size() > 4 && name.compare(name.size() - 4, 4, ".xml") == 0;
            bool rels = name.size() > 5 && name.compare(name.size() - 5, 5, ".rels") == 0;
            if (!xml && !rels) continue;
            const char* data = nullptr;
            unsigned size = 0;
            zip->data(i, &data, &size);
            std::string text(data ? data : "", size);
            std::free(const_cast<char*>(data));
            if (root_name(text) == "workbook" && text.find("http://purl.oclc.org/ooxml/spreadsheetml/main") != std::string::npos)
                strict = true;
            parts.emplace_back(name, text);
        }
        for (const auto& part : parts) {
            const s_part_kind* kind = kind_of(part.first, part.second, strict);
            if (!kind) continue;
            ++parts_by_kind[kind->name];
            std::string failure = kind->round_trip(part.second, &diffs);
            if (!failure.empty()) {
                ++failures;
                ADD_FAILURE() << row.path << " " << part.first << " (" << kind->name << "): " << failure;
            }
        }
    }
    size_t total = 0;
    for (const auto& k : parts_by_kind) {
        total += k.second;
        std::printf("  parts %-22s %zu\n", k.first.c_str(), k.second);
    }
    std::printf("  parts in all %zu of %zu packages, %zu failed\n", total, packages.size(), failures);
    diffs.print();
    EXPECT_EQ(failures, 0u);
}

}  // namespace
