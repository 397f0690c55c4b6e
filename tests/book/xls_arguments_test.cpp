// Every public operation of the binary book and sheet with negative, too large and reversed
// numbers, null pointers and objects of another book: none may crash or touch memory outside its
// tables (the sanitizer build checks that), a failure says why, and the book still saves and loads.
#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>
#include <vector>

#include "zelvar.h"

using namespace zelvar;

namespace {

using Book = IBookT<char>;
using Sheet = ISheetT<char>;

// The outcome of one call: a result that says success or failure, or none (void operations and
// plain getters).
enum Outcome { Failed, Succeeded, NoVerdict };

Outcome verdict(bool ok) { return ok ? Succeeded : Failed; }

struct Op {
    const char* name;
    int arity;  // how many of the numbers it takes
    std::function<Outcome(Book*, Sheet*, const int*)> call;
};

const int kBad[] = {-1, -3, INT_MIN, INT_MAX, 256, 65535, 65536, 1048576};
const int kGood = 2;

// Argument rows of an operation: each number bad in turn with the others good, all bad alike,
// and the pairs reversed.
std::vector<std::vector<int>> argumentRows(int arity) {
    std::vector<std::vector<int>> rows;
    if (arity == 0) return {{}};
    for (int p = 0; p < arity; ++p)
        for (int v : kBad) {
            std::vector<int> row(static_cast<size_t>(arity), kGood);
            row[static_cast<size_t>(p)] = v;
            rows.push_back(row);
        }
    for (int v : kBad) rows.emplace_back(static_cast<size_t>(arity), v);
    std::vector<int> reversed;
    for (int p = 0; p < arity; ++p) reversed.push_back(p % 2 == 0 ? 7 : 1);
    rows.push_back(reversed);
    return rows;
}

// A book with something in every table the operations touch.
void fill(Book* book) {
    Sheet* sheet = book->addSheet("Data");
    book->addSheet("Other");
    IFormatT<char>* format = book->addFormat();
    format->setNumFormat(book->addCustomNumFormat("0.000"));
    for (int r = 0; r < 6; ++r) {
        sheet->writeNum(r, 0, r * 1.5, format);
        sheet->writeStr(r, 1, "text");
        sheet->writeBool(r, 2, r % 2 == 0);
        sheet->writeFormula(r, 3, "A1+Other!B2");
    }
    sheet->writeBlank(7, 7, format);
    sheet->setMerge(8, 9, 1, 2);
    sheet->setNamedRange("Block", 1, 2, 1, 2);
    sheet->setPrintArea(0, 5, 0, 3);
    sheet->setRow(2, 20);
    sheet->setCol(1, 2, 12);
    sheet->setHorPageBreak(3);
}

std::vector<Op> sheetOps() {
    static int a1, a2, a3, a4;
    return {
        {"cellType", 2, [](Book*, Sheet* s, const int* a) { return s->cellType(a[0], a[1]), NoVerdict; }},
        {"isFormula", 2, [](Book*, Sheet* s, const int* a) { return s->isFormula(a[0], a[1]), NoVerdict; }},
        {"cellFormat", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->cellFormat(a[0], a[1]) != nullptr); }},
        {"setCellFormat", 2, [](Book* b, Sheet* s, const int* a) { return s->setCellFormat(a[0], a[1], b->format(0)), NoVerdict; }},
        {"readStr", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->readStr(a[0], a[1]) != nullptr); }},
        {"writeStr", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->writeStr(a[0], a[1], "new")); }},
        {"readNum", 2, [](Book*, Sheet* s, const int* a) { return s->readNum(a[0], a[1]), NoVerdict; }},
        {"writeNum", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->writeNum(a[0], a[1], 4.25)); }},
        {"readBool", 2, [](Book*, Sheet* s, const int* a) { return s->readBool(a[0], a[1]), NoVerdict; }},
        {"writeBool", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->writeBool(a[0], a[1], true)); }},
        {"readBlank", 2, [](Book*, Sheet* s, const int* a) {
             IFormatT<char>* f = nullptr;
             return verdict(s->readBlank(a[0], a[1], &f));
         }},
        {"writeBlank", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->writeBlank(a[0], a[1], nullptr)); }},
        {"readFormula", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->readFormula(a[0], a[1]) != nullptr); }},
        {"writeFormula", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->writeFormula(a[0], a[1], "SUM(A1:B2)")); }},
        {"readComment", 2, [](Book*, Sheet* s, const int* a) { return s->readComment(a[0], a[1]), NoVerdict; }},
        {"writeComment", 4, [](Book*, Sheet* s, const int* a) { return s->writeComment(a[0], a[1], "note", "me", a[2], a[3]), NoVerdict; }},
        {"isDate", 2, [](Book*, Sheet* s, const int* a) { return s->isDate(a[0], a[1]), NoVerdict; }},
        {"readError", 2, [](Book*, Sheet* s, const int* a) { return s->readError(a[0], a[1]), NoVerdict; }},
        {"colWidth", 1, [](Book*, Sheet* s, const int* a) { return s->colWidth(a[0]), NoVerdict; }},
        {"rowHeight", 1, [](Book*, Sheet* s, const int* a) { return s->rowHeight(a[0]), NoVerdict; }},
        {"setCol", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->setCol(a[0], a[1], 9.5)); }},
        {"setCol width", 1, [](Book*, Sheet* s, const int* a) { return verdict(s->setCol(1, 1, a[0])); }},
        {"setRow", 1, [](Book*, Sheet* s, const int* a) { return verdict(s->setRow(a[0], 18)); }},
        {"setRow height", 1, [](Book*, Sheet* s, const int* a) { return verdict(s->setRow(1, a[0])); }},
        {"rowHidden", 1, [](Book*, Sheet* s, const int* a) { return s->rowHidden(a[0]), NoVerdict; }},
        {"setRowHidden", 1, [](Book*, Sheet* s, const int* a) { return verdict(s->setRowHidden(a[0], true)); }},
        {"colHidden", 1, [](Book*, Sheet* s, const int* a) { return s->colHidden(a[0]), NoVerdict; }},
        {"setColHidden", 1, [](Book*, Sheet* s, const int* a) { return verdict(s->setColHidden(a[0], true)); }},
        {"getMerge", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->getMerge(a[0], a[1], &a1, &a2, &a3, &a4)); }},
        {"setMerge", 4, [](Book*, Sheet* s, const int* a) { return verdict(s->setMerge(a[0], a[1], a[2], a[3])); }},
        {"delMerge", 2, [](Book*, Sheet* s, const int* a) { return s->delMerge(a[0], a[1]), NoVerdict; }},
        {"getPicture", 1, [](Book*, Sheet* s, const int* a) { return s->getPicture(a[0], &a1, &a2, &a3, &a4), NoVerdict; }},
        {"setPicture", 3, [](Book*, Sheet* s, const int* a) { return s->setPicture(a[0], a[1], a[2], 1.0, a[0], a[1]), NoVerdict; }},
        {"setPicture2", 4, [](Book*, Sheet* s, const int* a) { return s->setPicture2(a[0], a[1], a[2], a[3], a[3]), NoVerdict; }},
        {"getHorPageBreak", 1, [](Book*, Sheet* s, const int* a) { return s->getHorPageBreak(a[0]), NoVerdict; }},
        {"getVerPageBreak", 1, [](Book*, Sheet* s, const int* a) { return s->getVerPageBreak(a[0]), NoVerdict; }},
        {"setHorPageBreak", 1, [](Book*, Sheet* s, const int* a) { return verdict(s->setHorPageBreak(a[0])); }},
        {"setVerPageBreak", 1, [](Book*, Sheet* s, const int* a) { return verdict(s->setVerPageBreak(a[0])); }},
        {"split", 2, [](Book*, Sheet* s, const int* a) { return s->split(a[0], a[1]), NoVerdict; }},
        {"groupRows", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->groupRows(a[0], a[1])); }},
        {"groupCols", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->groupCols(a[0], a[1])); }},
        {"clear", 4, [](Book*, Sheet* s, const int* a) { return verdict(s->clear(a[0], a[1], a[2], a[3])); }},
        {"insertCol", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->insertCol(a[0], a[1])); }},
        {"insertRow", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->insertRow(a[0], a[1])); }},
        {"removeCol", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->removeCol(a[0], a[1])); }},
        {"removeRow", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->removeRow(a[0], a[1])); }},
        {"copyCell", 4, [](Book*, Sheet* s, const int* a) { return verdict(s->copyCell(a[0], a[1], a[2], a[3])); }},
        {"setZoom", 1, [](Book*, Sheet* s, const int* a) { return s->setZoom(a[0]), NoVerdict; }},
        {"setPrintZoom", 1, [](Book*, Sheet* s, const int* a) { return s->setPrintZoom(a[0]), NoVerdict; }},
        {"setPrintFit", 2, [](Book*, Sheet* s, const int* a) { return s->setPrintFit(a[0], a[1]), NoVerdict; }},
        {"setPaper", 1, [](Book*, Sheet* s, const int* a) { return s->setPaper(static_cast<Paper>(a[0])), NoVerdict; }},
        {"setHeader margin", 1, [](Book*, Sheet* s, const int* a) { return verdict(s->setHeader("h", a[0])); }},
        {"setMarginLeft", 1, [](Book*, Sheet* s, const int* a) { return s->setMarginLeft(a[0]), NoVerdict; }},
        {"setPrintRepeatRows", 2, [](Book*, Sheet* s, const int* a) { return s->setPrintRepeatRows(a[0], a[1]), NoVerdict; }},
        {"setPrintRepeatCols", 2, [](Book*, Sheet* s, const int* a) { return s->setPrintRepeatCols(a[0], a[1]), NoVerdict; }},
        {"setPrintArea", 4, [](Book*, Sheet* s, const int* a) { return s->setPrintArea(a[0], a[1], a[2], a[3]), NoVerdict; }},
        {"setNamedRange", 4, [](Book*, Sheet* s, const int* a) { return verdict(s->setNamedRange("Block", a[0], a[1], a[2], a[3])); }},
        {"namedRange", 1, [](Book*, Sheet* s, const int* a) { return verdict(s->namedRange(a[0], &a1, &a2, &a3, &a4) != nullptr); }},
        {"setTopLeftView", 2, [](Book*, Sheet* s, const int* a) { return s->setTopLeftView(a[0], a[1]), NoVerdict; }},
        {"rowColToAddr", 2, [](Book*, Sheet* s, const int* a) { return verdict(s->rowColToAddr(a[0], a[1]) != nullptr); }},
        {"setHidden", 1, [](Book*, Sheet* s, const int* a) { return verdict(s->setHidden(static_cast<SheetState>(a[0]))); }},
    };
}

std::vector<Op> bookOps() {
    static int a1, a2, a3;
    static const char* data;
    static unsigned size;
    return {
        {"getSheet", 1, [](Book* b, Sheet*, const int* a) { return verdict(b->getSheet(a[0]) != nullptr); }},
        {"sheetType", 1, [](Book* b, Sheet*, const int* a) { return b->sheetType(a[0]), NoVerdict; }},
        {"delSheet", 1, [](Book* b, Sheet*, const int* a) { return verdict(b->delSheet(a[0])); }},
        {"insertSheet", 1, [](Book* b, Sheet*, const int* a) {
             return verdict(b->insertSheet(a[0], ("N" + std::to_string(b->sheetCount())).c_str()) != nullptr);
         }},
        {"insertSheet copy", 1, [](Book* b, Sheet* s, const int* a) {
             return verdict(b->insertSheet(a[0], ("C" + std::to_string(b->sheetCount())).c_str(), s) != nullptr);
         }},
        {"customNumFormat", 1, [](Book* b, Sheet*, const int* a) { return verdict(b->customNumFormat(a[0]) != nullptr); }},
        {"format", 1, [](Book* b, Sheet*, const int* a) { return verdict(b->format(a[0]) != nullptr); }},
        {"font", 1, [](Book* b, Sheet*, const int* a) { return verdict(b->font(a[0]) != nullptr); }},
        {"datePack", 4, [](Book* b, Sheet*, const int* a) { return b->datePack(a[0], a[1], a[2], a[3], a[3], a[3], a[3]), NoVerdict; }},
        // Outside the calendar dateUnpack answers false and leaves the message as it was.
        {"dateUnpack", 1, [](Book* b, Sheet*, const int* a) {
             int y, m, d;
             return b->dateUnpack(a[0] * 1e6, &y, &m, &d), NoVerdict;
         }},
        {"colorPack", 3, [](Book* b, Sheet*, const int* a) { return b->colorPack(a[0], a[1], a[2]), NoVerdict; }},
        {"colorUnpack", 1, [](Book* b, Sheet*, const int* a) { return b->colorUnpack(static_cast<Color>(a[0]), &a1, &a2, &a3), NoVerdict; }},
        {"setActiveSheet", 1, [](Book* b, Sheet*, const int* a) { return b->setActiveSheet(a[0]), NoVerdict; }},
        {"getPicture", 1, [](Book* b, Sheet*, const int* a) { return b->getPicture(a[0], &data, &size), NoVerdict; }},
        {"setDefaultFont", 1, [](Book* b, Sheet*, const int* a) { return b->setDefaultFont("Serif", a[0]), NoVerdict; }},
        {"font setSize", 1, [](Book* b, Sheet*, const int* a) { return b->font(0)->setSize(a[0]), NoVerdict; }},
        {"font setColor", 1, [](Book* b, Sheet*, const int* a) { return b->font(0)->setColor(static_cast<Color>(a[0])), NoVerdict; }},
        {"font setScript", 1, [](Book* b, Sheet*, const int* a) { return b->font(0)->setScript(static_cast<Script>(a[0])), NoVerdict; }},
        {"font setUnderline", 1, [](Book* b, Sheet*, const int* a) { return b->font(0)->setUnderline(static_cast<Underline>(a[0])), NoVerdict; }},
        {"format setNumFormat", 1, [](Book* b, Sheet*, const int* a) { return b->format(0)->setNumFormat(a[0]), NoVerdict; }},
        {"format setAlignH", 1, [](Book* b, Sheet*, const int* a) { return b->format(0)->setAlignH(static_cast<AlignH>(a[0])), NoVerdict; }},
        {"format setAlignV", 1, [](Book* b, Sheet*, const int* a) { return b->format(0)->setAlignV(static_cast<AlignV>(a[0])), NoVerdict; }},
        {"format setRotation", 1, [](Book* b, Sheet*, const int* a) { return verdict(b->format(0)->setRotation(a[0])); }},
        {"format setIndent", 1, [](Book* b, Sheet*, const int* a) { return b->format(0)->setIndent(a[0]), NoVerdict; }},
        {"format setBorder", 1, [](Book* b, Sheet*, const int* a) { return b->format(0)->setBorder(static_cast<BorderStyle>(a[0])), NoVerdict; }},
        {"format setBorderColor", 1, [](Book* b, Sheet*, const int* a) { return b->format(0)->setBorderColor(static_cast<Color>(a[0])), NoVerdict; }},
        {"format setBorderDiagonal", 1, [](Book* b, Sheet*, const int* a) {
             return b->format(0)->setBorderDiagonal(static_cast<BorderDiagonal>(a[0])), NoVerdict;
         }},
        {"format setFillPattern", 1, [](Book* b, Sheet*, const int* a) { return b->format(0)->setFillPattern(static_cast<FillPattern>(a[0])), NoVerdict; }},
        {"format setPatternForegroundColor", 1, [](Book* b, Sheet*, const int* a) {
             return b->format(0)->setPatternForegroundColor(static_cast<Color>(a[0])), NoVerdict;
         }},
        {"loadRaw short", 1, [](Book* b, Sheet*, const int* a) {
             static const char junk[16] = {};
             return verdict(b->loadRaw(junk, static_cast<unsigned>(a[0]) % 17u));
         }},
    };
}

// Null pointers and objects of another book.
std::vector<Op> pointerOps() {
    static int a1;
    static Book* foreign = [] {
        Book* b = zvCreateBookA();
        b->addSheet("F");
        b->addFormat();
        b->addFont();
        return b;
    }();
    return {
        {"writeStr null", 0, [](Book*, Sheet* s, const int*) { return verdict(s->writeStr(0, 0, nullptr)); }},
        {"writeFormula null", 0, [](Book*, Sheet* s, const int*) { return verdict(s->writeFormula(0, 0, nullptr)); }},
        {"writeNum foreign format", 0, [](Book*, Sheet* s, const int*) { return verdict(s->writeNum(0, 0, 1, foreign->format(0))); }},
        {"setCellFormat null", 0, [](Book*, Sheet* s, const int*) { return s->setCellFormat(0, 0, nullptr), NoVerdict; }},
        {"setCellFormat foreign", 0, [](Book*, Sheet* s, const int*) { return s->setCellFormat(0, 0, foreign->format(0)), NoVerdict; }},
        {"setCol foreign format", 0, [](Book*, Sheet* s, const int*) { return verdict(s->setCol(0, 1, 10, foreign->format(0))); }},
        {"setRow foreign format", 0, [](Book*, Sheet* s, const int*) { return verdict(s->setRow(0, 10, foreign->format(0))); }},
        {"readBlank null", 0, [](Book*, Sheet* s, const int*) { return verdict(s->readBlank(7, 7, nullptr)); }},
        {"getMerge null", 0, [](Book*, Sheet* s, const int*) { return verdict(s->getMerge(8, 1, nullptr, nullptr, nullptr, nullptr)); }},
        {"getNamedRange null", 0, [](Book*, Sheet* s, const int*) { return verdict(s->getNamedRange(nullptr, &a1, &a1, &a1, &a1)); }},
        {"getNamedRange null outs", 0, [](Book*, Sheet* s, const int*) { return verdict(s->getNamedRange("Block", nullptr, nullptr, nullptr, nullptr)); }},
        {"setNamedRange null", 0, [](Book*, Sheet* s, const int*) { return verdict(s->setNamedRange(nullptr, 0, 1, 0, 1)); }},
        {"delNamedRange null", 0, [](Book*, Sheet* s, const int*) { return verdict(s->delNamedRange(nullptr)); }},
        {"namedRange null outs", 0, [](Book*, Sheet* s, const int*) { return verdict(s->namedRange(0, nullptr, nullptr, nullptr, nullptr) != nullptr); }},
        {"getPrintFit null", 0, [](Book*, Sheet* s, const int*) { return s->getPrintFit(nullptr, nullptr), NoVerdict; }},
        {"setHeader null", 0, [](Book*, Sheet* s, const int*) { return verdict(s->setHeader(nullptr)); }},
        {"setFooter null", 0, [](Book*, Sheet* s, const int*) { return verdict(s->setFooter(nullptr)); }},
        {"setName null", 0, [](Book*, Sheet* s, const int*) { return s->setName(nullptr), NoVerdict; }},
        {"getTopLeftView null", 0, [](Book*, Sheet* s, const int*) { return s->getTopLeftView(nullptr, nullptr), NoVerdict; }},
        {"addrToRowCol null", 0, [](Book*, Sheet* s, const int*) { return s->addrToRowCol(nullptr, &a1, &a1), NoVerdict; }},
        {"addrToRowCol null outs", 0, [](Book*, Sheet* s, const int*) { return s->addrToRowCol("B7", nullptr, nullptr), NoVerdict; }},
        {"addrToRowCol bad", 0, [](Book*, Sheet* s, const int*) { return s->addrToRowCol("$$ZZZZZZ99999999999", &a1, &a1), NoVerdict; }},
        {"load null", 0, [](Book* b, Sheet*, const int*) { return verdict(b->load(nullptr)); }},
        {"save null", 0, [](Book* b, Sheet*, const int*) { return verdict(b->save(nullptr)); }},
        {"loadRaw null", 0, [](Book* b, Sheet*, const int*) { return verdict(b->loadRaw(nullptr, 100)); }},
        {"saveRaw null", 0, [](Book* b, Sheet*, const int*) { return verdict(b->saveRaw(nullptr, nullptr)); }},
        {"addSheet null", 0, [](Book* b, Sheet*, const int*) { return verdict(b->addSheet(nullptr) != nullptr); }},
        {"addSheet foreign sheet", 0, [](Book* b, Sheet*, const int*) { return verdict(b->addSheet("X", foreign->getSheet(0)) != nullptr); }},
        {"insertSheet null", 0, [](Book* b, Sheet*, const int*) { return verdict(b->insertSheet(0, nullptr) != nullptr); }},
        {"addFormat foreign", 0, [](Book* b, Sheet*, const int*) { return verdict(b->addFormat(foreign->format(0)) != nullptr); }},
        {"addFont foreign", 0, [](Book* b, Sheet*, const int*) { return verdict(b->addFont(foreign->font(0)) != nullptr); }},
        {"addCustomNumFormat null", 0, [](Book* b, Sheet*, const int*) { return b->addCustomNumFormat(nullptr), NoVerdict; }},
        {"addPicture null", 0, [](Book* b, Sheet*, const int*) { return verdict(b->addPicture(nullptr) >= 0); }},
        {"addPicture2 null", 0, [](Book* b, Sheet*, const int*) { return verdict(b->addPicture2(nullptr, 10) >= 0); }},
        {"getPicture null", 0, [](Book* b, Sheet*, const int*) { return b->getPicture(0, nullptr, nullptr), NoVerdict; }},
        {"defaultFont null", 0, [](Book* b, Sheet*, const int*) { return b->defaultFont(nullptr), NoVerdict; }},
        {"setDefaultFont null", 0, [](Book* b, Sheet*, const int*) { return b->setDefaultFont(nullptr, 10), NoVerdict; }},
        {"setLocale null", 0, [](Book* b, Sheet*, const int*) { return verdict(b->setLocale(nullptr)); }},
        {"dateUnpack null", 0, [](Book* b, Sheet*, const int*) { return verdict(b->dateUnpack(40000.5, nullptr, nullptr, nullptr)); }},
        {"colorUnpack null", 0, [](Book* b, Sheet*, const int*) { return b->colorUnpack(ColorRed, nullptr, nullptr, nullptr), NoVerdict; }},
        {"format setFont null", 0, [](Book* b, Sheet*, const int*) { return verdict(b->format(0)->setFont(nullptr)); }},
        {"format setFont foreign", 0, [](Book* b, Sheet*, const int*) { return verdict(b->format(0)->setFont(foreign->font(0))); }},
        {"font setName null", 0, [](Book* b, Sheet*, const int*) { return verdict(b->font(0)->setName(nullptr)); }},
    };
}

void runTable(const std::vector<Op>& ops) {
    for (const Op& op : ops) {
        Book* book = zvCreateBookA();
        fill(book);
        for (const auto& row : argumentRows(op.arity)) {
            Sheet* sheet = book->sheetCount() > 0 ? book->getSheet(0) : book->addSheet("Again");
            ASSERT_NE(nullptr, sheet);
            std::string args;
            for (int v : row) args += " " + std::to_string(v);
            Outcome outcome = op.call(book, sheet, row.data());
            const char* message = book->errorMessage();
            ASSERT_NE(nullptr, message) << op.name << args;
            if (outcome == Failed) {
                EXPECT_STRNE("ok", message) << op.name << args;
                EXPECT_STRNE("", message) << op.name << args;
            }
        }
        // Whatever the calls did, the book saves and what it saved loads.
        const char* data = nullptr;
        unsigned size = 0;
        if (book->sheetCount() == 0) book->addSheet("Again");
        ASSERT_TRUE(book->saveRaw(&data, &size)) << op.name << ": " << book->errorMessage();
        std::string copy(data, size);
        Book* again = zvCreateBookA();
        EXPECT_TRUE(again->loadRaw(copy.data(), static_cast<unsigned>(copy.size()))) << op.name << ": " << again->errorMessage();
        again->release();
        book->release();
    }
}

}  // namespace

TEST(XlsArguments, SheetOperationsWithNumbersOutOfRange) { runTable(sheetOps()); }

TEST(XlsArguments, BookOperationsWithNumbersOutOfRange) { runTable(bookOps()); }

TEST(XlsArguments, OperationsWithNullPointersAndForeignObjects) { runTable(pointerOps()); }
