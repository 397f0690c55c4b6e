// The table of record ids: one name for each id and one id for each name, and the stream code
// of the binary family names every record through it rather than by a bare number.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "biff/record_ids.h"

using namespace zelvar;

TEST(RecordIds, TableIsOneToOneAndSorted) {
    size_t count = 0;
    const RecordIdName* table = recordIdTable(&count);
    ASSERT_GT(count, 100u);
    std::set<std::string> names;
    for (size_t i = 0; i < count; ++i) {
        if (i > 0) {
            EXPECT_LT(table[i - 1].id, table[i].id) << table[i].name;
        }
        EXPECT_TRUE(names.insert(table[i].name).second) << "name twice: " << table[i].name;
        EXPECT_STREQ(table[i].name, recordName(table[i].id));
    }
    // Published ids that the stream code depends on, checked against the names.
    EXPECT_STREQ("Continue", recordName(0x003C));
    EXPECT_STREQ("Bof", recordName(0x0809));
    EXPECT_STREQ("Eof", recordName(0x000A));
    EXPECT_STREQ("Mms", recordName(0x00C1));
    EXPECT_STREQ("SupBook", recordName(0x01AE));
    EXPECT_EQ(0x023E, rt::Window2);
    EXPECT_EQ(0x027E, rt::RK);
    EXPECT_EQ(nullptr, recordName(0));
    EXPECT_EQ(nullptr, recordName(0xFFFF));
}

// Where a record id stands in the stream code: a case label, a comparison of an id variable, a
// peek at the next id, a record written or read by id, a raw record made with one.
TEST(RecordIds, StreamCodeNamesEveryRecord) {
    const std::string number = "(0x[0-9A-Fa-f]+|[0-9]+)\\b";
    const std::regex contexts[] = {
        std::regex("\\bcase " + number + "\\s*:"),
        std::regex("\\b(id|type|next|t|before|nextType|previous|arrayType)\\s*[!=]=\\s*" + number),
        std::regex("peekInt16\\(\\)\\s*[!=]=\\s*" + number),
        std::regex("Record\\(xls, " + number),
        std::regex("\\bwrite\\((xls, )?" + number),
        std::regex("\\bwriteRaw\\(xls, " + number),
        std::regex("\\breadRaw\\w*\\(xls, " + number),
        std::regex("\\b(Biff<T>|EmptyBiff<T>) \\w+\\(" + number),
        std::regex("\\bemplace_back\\(" + number),
        std::regex("\\b_\\w+\\{" + number + "\\}"),
    };
    std::string failures;
    size_t filesSeen = 0;
    for (const char* folder : {"source/book", "source/biff", "source/officeart"}) {
        for (const auto& entry : std::filesystem::directory_iterator(std::string(ZELVAR_SOURCE_DIR) + "/" + folder)) {
            std::ifstream in(entry.path());
            ++filesSeen;
            std::string line;
            for (int lineNo = 1; std::getline(in, line); ++lineNo) {
                for (const std::regex& context : contexts) {
                    for (std::sregex_iterator m(line.begin(), line.end(), context), end; m != end; ++m) {
                        const std::string& digits = (*m)[m->size() - 1];
                        unsigned long value = std::stoul(digits, nullptr, 0);
                        if (value <= 0xFFFF && recordName(static_cast<uint16_t>(value)))
                            failures += entry.path().filename().string() + ":" + std::to_string(lineNo) + ": " +
                                        line + "\n";
                    }
                }
            }
        }
    }
    EXPECT_GT(filesSeen, 20u);
    EXPECT_EQ("", failures) << "record ids written as numbers; name them through rt::";
}
