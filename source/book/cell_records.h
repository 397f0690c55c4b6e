// Cell records of a binary sheet as plain values in the file's field order. Each kind lives in
// a vector of its own; the sheet index says which record holds which cell.
#pragma once
#include <cstdint>
#include <cstring>
#include <vector>

#include "frame/little_endian.h"

namespace zelvar {

// Kind numbers stored in the sheet index entries.
enum CellKind : unsigned {
    KindNone = 0,
    KindRK = 1,
    KindNumber = 2,
    KindLabelSst = 3,
    KindBlank = 4,
    KindBoolErr = 5,
    KindFormula = 6,
    KindLabel = 7
};

struct RK {
    static constexpr CellKind kind = KindRK;
    uint16_t row = 0, col = 0, xf = 15;
    uint32_t rk = 0;

    // Only the unscaled floating form is produced: the high word of a double with zero low word.
    void setValue(double value) {
        uint64_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        rk = static_cast<uint32_t>(bits >> 32);
    }
    double value() const {
        double v;
        if (rk & 2) {
            v = static_cast<double>(static_cast<int32_t>(rk) >> 2);
        } else {
            uint64_t bits = static_cast<uint64_t>(rk & 0xFFFFFFFCu) << 32;
            std::memcpy(&v, &bits, sizeof v);
        }
        return (rk & 1) ? v / 100 : v;
    }
};

struct Number {
    static constexpr CellKind kind = KindNumber;
    uint16_t row = 0, col = 0, xf = 15;
    double num = 0;

    void setValue(double value) { num = value; }
    double value() const { return num; }
};

struct LabelSst {
    static constexpr CellKind kind = KindLabelSst;
    uint16_t row = 0, col = 0, xf = 15;
    uint32_t isst = 0;
};

struct Blank {
    static constexpr CellKind kind = KindBlank;
    uint16_t row = 0, col = 0, xf = 15;
};

struct BoolErr {
    static constexpr CellKind kind = KindBoolErr;
    uint16_t row = 0, col = 0, xf = 15;
    uint8_t bBoolErr = 0;
    uint8_t fError = 0;

    void setValue(bool value) {
        fError = 0;
        bBoolErr = value ? 1 : 0;
    }
};

// Old-style text cell of files read: the text stays where the file put it.
struct Label {
    static constexpr CellKind kind = KindLabel;
    uint16_t row = 0, col = 0, xf = 15;
    const wchar_t* text = nullptr;
    bool biff5 = false;
    // Formatting runs of a rich text cell (record 214), count included, as read; empty for a Label.
    std::vector<uint8_t> runs;
};

// A formula cell with what stands around it in the file.
struct Formula {
    uint16_t row = 0, col = 0, xf = 15;
    // Cached result: bytes 6 and 7 both 0xFF mark a non-number whose kind is byte 0.
    uint8_t result[8] = {0, 0, 0, 0, 0, 0, 0, 0};
    uint16_t grbit = 0;
    uint32_t chn = 0;
    std::vector<uint8_t> tokens;
    const wchar_t* stringValue = nullptr;

    uint16_t resultWord() const { return le::get16(result + 6); }
    bool isNumber() const { return resultWord() < 65535; }
    double number() const {
        double v;
        std::memcpy(&v, result, sizeof v);
        return v;
    }
    int cellType() const {
        if (isNumber()) return 1;
        switch (result[0]) {
            case 0: return 2;
            case 1: return 3;
            case 2: return 5;
            case 3: return 4;
            default: return 0;
        }
    }
    bool boolValue() const { return result[2] != 0; }
    int errorValue() const { return result[2]; }
};

// A formula record with the records that belong to it: the array or table record, the shared
// formula, and the String record of a text result with its continuations, all kept as read.
struct FormulaBlock {
    static constexpr CellKind kind = KindFormula;
    Formula formula;
    std::vector<uint8_t> arrayRecord;
    uint16_t arrayType = 0;
    bool shared = false;
    std::vector<uint8_t> shrFmla;
    bool hasString = false;
    std::vector<uint8_t> stringRecord;
    std::vector<std::vector<uint8_t>> stringContinues;
};

// The row, column and format fields of a cell record of any kind: a formula keeps them in its
// Formula record.
template <class R>
auto& cellHead(R& record) {
    if constexpr (R::kind == KindFormula)
        return record.formula;
    else
        return record;
}

// A Row record in memory. grbit: bits 0-2 outline level, 4 collapsed, 5 hidden, 7 formatted.
struct Row {
    uint16_t row = 0, colMic = 0, colMac = 1, miyRw = 255, reserved1 = 0, reserved2 = 0,
             grbit = 256, ixfe = 15;
};

// A ColInfo record in memory. grbit: bit 0 hidden, 8-10 outline level, 12 collapsed.
struct ColInfo {
    uint16_t colFirst = 0, colLast = 0, coldx = 0, ixfe = 0, grbit = 0, reserved = 0;
};

// Used range of a sheet; rwMac and colMac are one past the last.
struct Dimensions {
    uint32_t rwMic = 0, rwMac = 0;
    uint16_t colMic = 0, colMac = 0, reserved = 0;
    bool biff5 = false;

    void update(unsigned row, unsigned col) {
        if (rwMic == rwMac) {
            rwMic = row;
            rwMac = row + 1;
        } else {
            if (row < rwMic) rwMic = row;
            if (row + 1 > rwMac) rwMac = row + 1;
        }
        if (colMic == colMac) {
            colMic = static_cast<uint16_t>(col);
            colMac = static_cast<uint16_t>(col + 1);
        } else {
            if (col < colMic) colMic = static_cast<uint16_t>(col);
            if (col + 1 > colMac) colMac = static_cast<uint16_t>(col + 1);
        }
    }
    void reset() { rwMic = rwMac = colMic = colMac = 0; }
};

}  // namespace zelvar
