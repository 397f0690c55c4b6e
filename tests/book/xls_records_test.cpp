// The writer's record order and the reader's record forms, checked on the bytes of saved files.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "biff/xls.h"
#include "xls_stream_util.h"
#include "zelvar.h"

using namespace zelvar;
using namespace zvtest;

namespace {

std::string saved(IBookT<char>* book) {
    const char* data = nullptr;
    unsigned size = 0;
    EXPECT_TRUE(book->saveRaw(&data, &size)) << book->errorMessage();
    return std::string(data, size);
}

std::vector<uint16_t> sheetIds(const std::vector<Record>& all) {
    std::vector<uint16_t> ids;
    bool inSheet = false;
    int bofs = 0;
    for (const auto& r : all) {
        if (r.id == rt::Bof && ++bofs == 2) inSheet = true;
        if (inSheet) ids.push_back(r.id);
    }
    return ids;
}

uint16_t u16(const std::string& s, size_t at) {
    return static_cast<uint16_t>(static_cast<uint8_t>(s[at]) | static_cast<uint8_t>(s[at + 1]) << 8);
}

}  // namespace

TEST(XlsRecords, NewSheetWithOneCellWritesTheFixedOrder) {
    IBookT<char>* book = zvCreateBookA();
    book->addSheet("S")->writeNum(2, 3, 0.1);
    auto ids = sheetIds(streamRecords(saved(book)));
    // Selection records are only written when a file had them: Window2 is followed by PhoneticInfo.
    const std::vector<uint16_t> want = {rt::Bof, rt::Index, rt::CalcMode, rt::CalcCount, rt::CalcRefMode,
                                        rt::CalcIter, rt::CalcDelta, rt::CalcSaveRecalc, rt::PrintRowCol,
                                        rt::PrintGrid, rt::GridSet, rt::Guts, rt::DefaultRowHeight, rt::WsBool,
                                        rt::Header, rt::Footer, rt::HCenter, rt::VCenter, rt::Setup,
                                        rt::DefColWidth, rt::Dimensions, rt::Number, rt::Window2,
                                        rt::PhoneticInfo, rt::Eof};
    EXPECT_EQ(want, ids);
    book->release();
}

TEST(XlsRecords, GlobalsStartWithTheFixedRecords) {
    IBookT<char>* book = zvCreateBookA();
    book->addSheet("S");
    auto all = streamRecords(saved(book));
    const uint16_t head[] = {rt::Bof, rt::InterfaceHdr, rt::Mms, rt::InterfaceEnd, rt::WriteAccess, rt::CodePage,
                             rt::DSF, rt::RRTabId, rt::BuiltInFnGroupCount, rt::WinProtect, rt::Protect,
                             rt::Password, rt::Prot4Rev, rt::Prot4RevPass, rt::Window1, rt::Backup, rt::HideObj,
                             rt::Date1904, rt::CalcPrecision, rt::RefreshAll, rt::BookBool, rt::Font};
    for (size_t i = 0; i < sizeof head / sizeof head[0]; ++i) EXPECT_EQ(head[i], all.at(i).id) << i;
    // No ExtSST is written.
    for (const auto& r : all) EXPECT_NE(rt::ExtSST, r.id);
    book->release();
}

TEST(XlsRecords, MulRkAndMulBlankComeBackAsSingleRecords) {
    IBookT<char>* book = zvCreateBookA();
    book->addSheet("S");
    auto all = streamRecords(saved(book));
    // Replace the sheet's cells by a MulRk of three cells and a MulBlank of two.
    std::vector<Record> edited;
    for (const auto& r : all) {
        edited.push_back(r);
        if (r.id == rt::Dimensions) {
            std::string mulrk;
            auto put16 = [](std::string& s, uint16_t v) { s.push_back(static_cast<char>(v)), s.push_back(static_cast<char>(v >> 8)); };
            put16(mulrk, 4), put16(mulrk, 1);
            for (int i = 0; i < 3; ++i) {
                put16(mulrk, 15);
                uint32_t rk = (static_cast<uint32_t>(i + 1) << 2) | 2;  // integer form
                put16(mulrk, static_cast<uint16_t>(rk)), put16(mulrk, static_cast<uint16_t>(rk >> 16));
            }
            put16(mulrk, 3);
            edited.push_back({rt::MulRk, mulrk});
            std::string mulblank;
            put16(mulblank, 5), put16(mulblank, 0), put16(mulblank, 15), put16(mulblank, 15), put16(mulblank, 1);
            edited.push_back({rt::MulBlank, mulblank});
        }
    }
    // Sheet position in BoundSheet8 is unchanged: the edit is after it.
    std::string file = container(edited);
    ASSERT_TRUE(book->loadRaw(file.data(), static_cast<unsigned>(file.size()))) << book->errorMessage();
    ISheetT<char>* sheet = book->getSheet(0);
    EXPECT_EQ(1.0, sheet->readNum(4, 1));
    EXPECT_EQ(2.0, sheet->readNum(4, 2));
    EXPECT_EQ(3.0, sheet->readNum(4, 3));
    EXPECT_EQ(CellBlank, sheet->cellType(5, 0));
    EXPECT_EQ(CellBlank, sheet->cellType(5, 1));
    auto ids = sheetIds(streamRecords(saved(book)));
    int rks = 0, blanks = 0;
    for (uint16_t id : ids) {
        EXPECT_NE(rt::MulRk, id);
        EXPECT_NE(rt::MulBlank, id);
        rks += id == rt::RK;
        blanks += id == rt::Blank;
    }
    EXPECT_EQ(3, rks);
    EXPECT_EQ(2, blanks);
    book->release();
}

TEST(XlsRecords, BadRecordsFailWithTheirMessages) {
    IBookT<char>* book = zvCreateBookA();
    book->addSheet("S");
    auto all = streamRecords(saved(book));
    struct Case {
        uint16_t id;
        std::string payload;
        const char* message;
    } cases[] = {
        {rt::FilePass, std::string(6, '\0'), "workbook is encrypted"},
        {rt::Window1, std::string(10, '\0'), "Window1 size is incorrect"},
        {rt::RecalcId, std::string(4, '\0'), "RecalcId size is incorrect"},
        {rt::Bof, std::string(6, '\0'), "read error: unexpected BOF record"},
    };
    for (const auto& c : cases) {
        std::vector<Record> edited = all;
        edited.insert(edited.begin() + 1, {c.id, c.payload});
        std::string file = container(edited);
        EXPECT_FALSE(book->loadRaw(file.data(), static_cast<unsigned>(file.size())));
        EXPECT_STREQ(c.message, book->errorMessage());
    }
    // A BOF of 10 bytes is no field boundary; a version other than BIFF5 or BIFF8 is refused.
    std::vector<Record> edited = all;
    edited[0].payload.resize(10);
    std::string file = container(edited);
    EXPECT_FALSE(book->loadRaw(file.data(), static_cast<unsigned>(file.size())));
    EXPECT_STREQ("Bof size is incorrect", book->errorMessage());
    edited = all;
    edited[0].payload[1] = 0x03;
    file = container(edited);
    EXPECT_FALSE(book->loadRaw(file.data(), static_cast<unsigned>(file.size())));
    EXPECT_STREQ("This file format isn't supported", book->errorMessage());
    book->release();
}

TEST(XlsRecords, SavedNewBookIsTheSmallFixedFile) {
    IBookT<char>* book = zvCreateBookA();
    book->addSheet("S")->writeNum(0, 0, 1);
    std::string file = saved(book);
    EXPECT_EQ(6656u, file.size());
    // Saving twice gives the same bytes.
    EXPECT_EQ(file, saved(book));
    EXPECT_EQ(3u, u16(file, 44));
    EXPECT_EQ(11u, u16(file, 48));
    book->release();
}
