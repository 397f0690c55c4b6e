// Inputs that once crashed the loader: each must now load or fail with a message, and a book
// that loads must save.
#include <gtest/gtest.h>

#include <dirent.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "zelvar.h"

namespace {
std::vector<std::string> fuzzFiles() {
    std::vector<std::string> files;
    std::string dir = std::string(ZELVAR_SOURCE_DIR) + "/tests/data/biff";
    if (DIR* d = opendir(dir.c_str())) {
        while (dirent* e = readdir(d)) {
            std::string name = e->d_name;
            if (name.rfind("fuzz-", 0) == 0) files.push_back(dir + "/" + name);
        }
        closedir(d);
    }
    return files;
}
}  // namespace

TEST(XlsFuzzRegressions, EveryFindingLoadsOrFailsCleanly) {
    auto files = fuzzFiles();
    ASSERT_FALSE(files.empty());
    for (const auto& path : files) {
        std::ifstream f(path, std::ios::binary);
        std::stringstream s;
        s << f.rdbuf();
        std::string bytes = s.str();
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
