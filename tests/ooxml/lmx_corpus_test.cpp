// Worksheets and other parts written by other programs: kept copies and the shared corpus.
#include <gtest/gtest.h>

#include <cstdio>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <cctype>
#include <sstream>

#include "lmx_test_util.h"

using namespace lmxtest;

namespace {

std::string slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream os;
    os << in.rdbuf();
    return os.str();
}

// Walks every event of a document without any tables: all elements, attributes and texts.
struct walk_result {
    elmx_error error = ELMX_OK;
    size_t elements = 0, attributes = 0;
};
walk_result walk(const std::string& xml) {
    walk_result r;
    c_read_memory source(xml.data(), xml.data() + xml.size());
    c_xml_reader reader(source);
    std::string value;
    int depth = 0;
    for (;;) {
        elmx_error e = ELMX_OK;
        int event = reader.get_element_event(nullptr, &e);
        if (event == EXE_EOM && depth == 0 && r.elements) return r;
        if (e != ELMX_OK) {
            r.error = e;
            return r;
        }
        if (event == EXE_ELEMENT_END) {
            --depth;
            continue;
        }
        ++r.elements;
        ++depth;
        while (reader.get_attribute_event(nullptr, &e)) {
            ++r.attributes;
            reader.get_attribute_value(EXWS_PRESERVE, &value);
        }
        if (e != ELMX_OK) {
            r.error = e;
            return r;
        }
    }
}

// Start tags of a local name inside the sheetData element, counted without any XML reader.
size_t count(const std::string& text, const std::string& local) {
    size_t begin = text.find("sheetData");
    size_t end = text.rfind("sheetData");
    size_t n = 0;
    for (size_t p = text.find('<', begin); p != std::string::npos && p < end; p = text.find('<', p + 1)) {
        size_t q = p + 1;
        while (q < text.size() && (std::isalnum(static_cast<unsigned char>(text[q])) || text[q] == ':' || text[q] == '_')) ++q;
        std::string name = text.substr(p + 1, q - p - 1);
        size_t colon = name.find(':');
        if (colon != std::string::npos) name = name.substr(colon + 1);
        if (name == local) ++n;
    }
    return n;
}

void check_worksheet(const std::string& xml, const std::string& what) {
    c_sml_worksheet w;
    s_debug_error debug;
    ASSERT_EQ(unmarshal(&w, xml.data(), xml.size(), &debug), ELMX_OK) << what << ": " << debug.to_string();
    size_t rows = 0, cells = 0, values = 0;
    for (const c_CT_Row* row : w.m_sheetData.get().m_row) {
        ++rows;
        for (const c_CT_Cell* c : row->m_c) {
            ++cells;
            if (c->m_v.is_value_set()) ++values;
        }
    }
    EXPECT_EQ(rows, count(xml, "row")) << what;
    EXPECT_EQ(cells, count(xml, "c")) << what;
    EXPECT_EQ(values, count(xml, "v")) << what;
    // Written and read again, the same data; written again, the same bytes.
    std::string out;
    ASSERT_EQ(marshal(w, &out), ELMX_OK);
    c_sml_worksheet again;
    ASSERT_EQ(unmarshal(&again, out.data(), out.size()), ELMX_OK) << what;
    std::string out2;
    marshal(again, &out2);
    EXPECT_EQ(out, out2) << what;
    EXPECT_EQ(count(out, "c"), cells);
}

}  // namespace

TEST(LmxCorpus, KeptWorksheetsReadAndRoundTrip) {
    const std::string dir = std::string(ZELVAR_SOURCE_DIR) + "/tests/data/ooxml/";
    for (const char* name : {"types-sheet1.xml", "data03-sheet1.xml", "indexed-sheet1.xml"})
        check_worksheet(slurp(dir + name), name);
    // Foreign attributes of the row come back with their prefix.
    c_sml_worksheet w;
    std::string xml = slurp(dir + "indexed-sheet1.xml");
    ASSERT_EQ(unmarshal(&w, xml.data(), xml.size()), ELMX_OK);
    std::string out;
    marshal(w, &out);
    EXPECT_NE(out.find("<row r=\"1\" spans=\"1:2\" x14ac:dyDescent=\"0.2\">"), std::string::npos) << out;
    EXPECT_NE(out.find("mc:Ignorable=\"x14ac\""), std::string::npos);
    for (const char* name : {"types-styles.xml", "unicode-workbook.xml"}) {
        walk_result r = walk(slurp(dir + name));
        EXPECT_EQ(r.error, ELMX_OK) << name;
        EXPECT_GT(r.elements, 5u) << name;
    }
}

TEST(LmxCorpus, EveryXmlPartOfTheSharedCorpusReads) {
    namespace fs = std::filesystem;
    const fs::path corpus = fs::path(ZELVAR_SHARED_DIR) / "corpus" / "xlsx";
    if (!fs::is_directory(corpus)) GTEST_SKIP() << "no shared corpus";
    const fs::path scratch = fs::path(ZELVAR_TEST_TMP) / "lmx-corpus";
    std::vector<fs::path> files;
    for (const auto& e : fs::directory_iterator(corpus)) {
        std::string ext = e.path().extension().string();
        if (ext == ".xlsx" || ext == ".xlsm" || ext == ".xltx") files.push_back(e.path());
    }
    std::sort(files.begin(), files.end());
    size_t parts = 0, sheets = 0, refused = 0;
    for (const fs::path& file : files) {
        fs::remove_all(scratch);
        fs::create_directories(scratch);
        std::string cmd = "unzip -qq -o '" + file.string() + "' '*.xml' '*.rels' -d '" + scratch.string() + "' >/dev/null 2>&1";
        if (std::system(cmd.c_str()) < 0) continue;
        for (const auto& e : fs::recursive_directory_iterator(scratch)) {
            if (!e.is_regular_file()) continue;
            std::string xml = slurp(e.path().string());
            if (xml.empty()) continue;
            ++parts;
            const std::string what = file.filename().string() + " " + e.path().lexically_relative(scratch).string();
            walk_result r = walk(xml);
            if (r.error != ELMX_OK) {
                // Damaged entries: an independent parser must refuse them as well.
                std::string check = "xmllint --noout '" + e.path().string() + "' >/dev/null 2>&1";
                EXPECT_NE(std::system(check.c_str()), 0) << what << " error " << r.error;
                continue;
            }
            std::string rel = e.path().lexically_relative(scratch).string();
            if (rel.rfind("xl/worksheets/", 0) == 0 && xml.find(sml_uri) != std::string::npos) {
                c_sml_worksheet w;
                elmx_error code = unmarshal(&w, xml.data(), xml.size());
                // Values outside the schema end a load; other namespaces are another dialect.
                if (code == ELMX_VALUE_BAD_FORMAT || code == ELMX_VALUE_NOT_ENUMERATED || code == ELMX_ELEMENT_NOT_FOUND) {
                    ++refused;
                    continue;
                }
                ++sheets;
                check_worksheet(xml, what);
            }
        }
    }
    fs::remove_all(scratch);
    EXPECT_GT(parts, 500u);
    EXPECT_GT(sheets, 100u);
    EXPECT_LT(refused, sheets / 10);
}
