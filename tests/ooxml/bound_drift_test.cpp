// The committed schema-bound classes are exactly what the generator makes of the schemas.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

std::string read_file(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream os;
    os << in.rdbuf();
    return os.str();
}

TEST(BoundDrift, GeneratedFilesMatchTheGeneratorOutput) {
    namespace fs = std::filesystem;
    fs::path schemas = fs::path(ZELVAR_SHARED_DIR) / "schemas";
    if (!fs::exists(schemas / "transitional" / "sml.xsd")) GTEST_SKIP() << "no schemas at " << schemas;
    if (std::string(ZELVAR_PYTHON).empty()) GTEST_SKIP() << "no python3";
    fs::path out = fs::path(ZELVAR_TEST_TMP) / "generated";
    fs::remove_all(out);
    fs::create_directories(out);
    std::string cmd = std::string(ZELVAR_PYTHON) + " '" + ZELVAR_SOURCE_DIR + "/tools/gen_schema.py' '" +
                      schemas.string() + "' '" + out.string() + "'";
    ASSERT_EQ(std::system(cmd.c_str()), 0) << cmd;
    size_t files = 0;
    for (const auto& entry : fs::directory_iterator(out)) {
        ++files;
        fs::path committed = fs::path(ZELVAR_SOURCE_DIR) / "source" / "ooxml" / entry.path().filename();
        ASSERT_TRUE(fs::exists(committed)) << committed << " is not committed; run make regenerate";
        EXPECT_TRUE(read_file(entry.path()) == read_file(committed))
            << committed << " differs from the generator's output; run make regenerate";
    }
    EXPECT_GE(files, 9u);  // one unit at least for each of the nine namespaces
}

}  // namespace
