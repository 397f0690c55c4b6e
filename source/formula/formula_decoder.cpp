#include "formula/formula_decoder.h"

#include <cstring>
#include <sstream>
#include <vector>

#include "formula/make_formula.h"
#include "frame/little_endian.h"
#include "frame/zverror.h"

namespace zelvar {

namespace {

class Stream {
public:
    Stream(const uint8_t* data, size_t size) : _data(data), _size(size) {}
    bool empty() const { return _pos >= _size; }
    size_t left() const { return _size - _pos; }
    const uint8_t* take(size_t n) {
        if (left() < n) throw zverror("GetFormula move1 error");
        const uint8_t* at = _data + _pos;
        _pos += n;
        return at;
    }
    uint8_t u8() { return *take(1); }
    uint16_t u16() {
        const uint8_t* p = take(2);
        return le::get16(p);
    }
    uint32_t u32() {
        return le::get32(take(4));
    }

private:
    const uint8_t* _data;
    size_t _size;
    size_t _pos = 0;
};

// Bytes after the id of a token, for tokens of fixed length; -1 for the ones handled apart.
int fixedLength(uint8_t id) {
    if (id == 1 || id == 2) return 4;
    if (id >= 3 && id <= 22) return 0;
    switch (id) {
        case 28: case 29: return 1;
        case 30: return 2;
        case 31: return 8;
        case 32: case 64: case 96: return 7;
        case 33: case 65: case 97: return 2;
        case 34: case 66: case 98: return 3;
        case 35: case 36: case 67: case 68: case 99: case 100: return 4;
        case 37: case 69: case 101: return 8;
        case 38: case 39: case 40: case 70: case 71: case 72: case 102: case 103: case 104: return 6;
        case 41: case 73: case 105: return 2;
        case 42: case 74: case 106: return 4;
        case 43: case 75: case 107: return 8;
        case 44: case 76: case 108: return 4;
        case 45: case 77: case 109: return 8;
        case 57: case 58: case 60: case 89: case 90: case 92: case 121: case 122: case 124: return 6;
        case 59: case 61: case 91: case 93: case 123: case 125: return 10;
        default: return -2;
    }
}

struct Loc {
    uint16_t row, col;
    bool rowRelative, colRelative;
};

Loc readLoc(Stream& s) {
    Loc l;
    l.row = s.u16();
    uint16_t word = s.u16();
    l.col = word & 0x3FFF;
    l.colRelative = (word >> 14) & 1;
    l.rowRelative = (word >> 15) & 1;
    return l;
}

std::wstring ref(Loc l, uint16_t baseRow, uint16_t baseCol) {
    unsigned row = l.row, col = l.col;
    if (l.rowRelative) row = static_cast<uint16_t>(row + baseRow);
    if (l.colRelative) col = static_cast<uint8_t>(col + baseCol);
    return GetFormula::toExcelAddr(row, col, l.rowRelative, l.colRelative, false);
}

std::wstring area(Stream& s, bool shared, uint16_t baseRow, uint16_t baseCol, bool columnOnly) {
    uint16_t rowFirst = s.u16(), rowLast = s.u16(), colFirst = s.u16(), colLast = s.u16();
    bool rf = colFirst >> 15 & 1, cf = colFirst >> 14 & 1, rl = colLast >> 15 & 1, cl = colLast >> 14 & 1;
    unsigned r1 = rowFirst, r2 = rowLast, c1 = colFirst & 0x3FFF, c2 = colLast & 0x3FFF;
    if (shared) {
        r1 = static_cast<uint16_t>(r1 + baseRow);
        r2 = static_cast<uint16_t>(r2 + baseRow);
        c1 = static_cast<uint8_t>(c1 + baseCol);
        c2 = static_cast<uint8_t>(c2 + baseCol);
    }
    return GetFormula::toExcelAddr(r1, c1, rf, cf, columnOnly) + L":" + GetFormula::toExcelAddr(r2, c2, rl, cl, columnOnly);
}

std::wstring number(double v) {
    std::wostringstream out;
    out << v;
    return out.str();
}

// One token: its word, consuming its bytes from the stream.
std::wstring word(Stream& s, bool biff5, const FormulaNames& names, bool shared, uint16_t row, uint16_t col) {
    uint8_t id = s.u8();
    if (id > 125) throw zverror("can't recognize formula block: unknown ptg");
    if (id == 23) {
        size_t count = s.u8();
        uint8_t flags = biff5 ? 0 : s.u8();
        std::wstring text = L"\"";
        const uint8_t* p = s.take(count * ((flags & 1) ? 2 : 1));
        for (size_t i = 0; i < count; ++i)
            text.push_back(static_cast<wchar_t>((flags & 1) ? (p[2 * i] | p[2 * i + 1] << 8) : p[i]));
        return text + L"\"";
    }
    if (id == 24) {
        uint8_t sub = s.u8();
        static const uint8_t known[] = {1, 2, 3, 6, 7, 10, 11, 13, 15, 16, 29};
        if (!std::memchr(known, sub, sizeof known)) throw zverror("unknown Ptg 0x18");
        s.take(5);
        return L"?";
    }
    if (id == 25) {
        uint8_t sub = s.u8();
        if (sub == 1 || sub == 2 || sub == 8 || sub == 16 || sub == 64) {
            s.take(2);
        } else if (sub == 32 || sub == 33 || sub == 65) {
            s.take(3);
        } else if (sub == 4) {
            s.take(1);
            uint16_t n = s.u16();
            s.take(n + 1u);
        } else {
            throw zverror("unknown Ptg 0x19");
        }
        if (sub == 16) return L"SUM1F";
        if (sub == 1 || sub == 2 || sub == 4 || sub == 8 || sub == 32 || sub == 33 || sub == 64 || sub == 65) return L"";
        return L"?";
    }
    int extra = fixedLength(id);
    if (extra < 0) throw zverror("can't recognize formula block: unknown ptg");
    if (s.left() < static_cast<size_t>(extra)) throw zverror("GetFormula move1 error");
    const FuncMap& funcs = sharedFuncMap();
    switch (id) {
        case 3: return L"+";
        case 4: return L"-";
        case 5: return L"*";
        case 6: return L"/";
        case 7: return L"^";
        case 8: return L"&";
        case 9: return L"<";
        case 10: return L"<=";
        case 11: return L"=";
        case 12: return L">=";
        case 13: return L">";
        case 14: return L"<>";
        case 18: return L"uPlus";
        case 19: return L"uMinus";
        case 20: return L"uPercent";
        case 21: return L"(";
        case 22: return L"MISS";
        case 28: s.take(1); return L"ERR";
        case 29: return s.u8() ? L"TRUE" : L"FALSE";
        case 30: return std::to_wstring(s.u16());
        case 31: {
            double v;
            std::memcpy(&v, s.take(8), 8);
            return number(v);
        }
        case 33: case 65: case 97: {
            int params = 0;
            const std::wstring& name = funcs.name(s.u16(), &params);
            return name + std::to_wstring(params) + L"F";
        }
        case 34: case 66: case 98: {
            uint8_t count = s.u8();
            uint16_t code = s.u16();
            if (code & 0x8000) return L"?";
            // A call of a function outside the table: its name is the first argument.
            if (code == 255 && count > 0) return L"?UDF" + std::to_wstring(count) + L"F";
            return funcs.name(code, nullptr) + std::to_wstring(count) + L"F";
        }
        case 35: case 67: case 99: {
            uint32_t index = s.u32();
            return names.definedName(index);
        }
        case 36: case 44: case 68: case 76: case 100: case 108: {
            Loc l = readLoc(s);
            return shared ? ref(l, row, col) : ref(l, 0, 0);
        }
        case 37: case 45: case 69: case 77: case 101: case 109: return area(s, shared, row, col, false);
        // A reference computed by the sub-expression that follows: the sub-expression's own tokens
        // give the text, so the marker prints nothing.
        case 38: case 70: case 102:
        case 41: case 73: case 105:
            s.take(static_cast<size_t>(extra));
            return L"";
        case 39: case 71: case 103: s.take(6); return L"ERR";
        case 40: case 72: case 104: s.take(6); return L"NOMEM";
        case 42: s.take(4); return L"#REF!";
        case 58: case 90: case 122: {
            std::wstring prefix = names.referenceName(s.u16());
            return prefix + ref(readLoc(s), 0, 0);
        }
        case 59: case 91: case 123: {
            std::wstring prefix = names.referenceName(s.u16());
            return prefix + area(s, false, 0, 0, prefix == L"#REF!");
        }
        case 43: case 74: case 75: case 106: case 107:
        case 60: case 61: case 92: case 93: case 124: case 125:
            s.take(static_cast<size_t>(extra));
            return L"ERR";
        default:
            s.take(static_cast<size_t>(extra));
            return L"?";
    }
}

bool isOperator(const std::wstring& w) {
    static const wchar_t* ops[] = {L"+", L"-", L"*", L"/", L"^", L"<", L">", L">=", L"<=", L"=", L"<>", L"&"};
    for (const wchar_t* op : ops)
        if (w == op) return true;
    return false;
}

// The next word: blanks split outside quotes; both quote kinds toggle one flag.
bool nextWord(const std::wstring& text, size_t& pos, std::wstring& out) {
    while (pos < text.size() && text[pos] == L' ') ++pos;
    if (pos >= text.size()) return false;
    out.clear();
    bool quoted = false;
    for (; pos < text.size(); ++pos) {
        wchar_t c = text[pos];
        if (c == L'"' || c == L'\'') quoted = !quoted;
        if (c == L' ' && !quoted) break;
        out.push_back(c);
    }
    return true;
}

}  // namespace

const FuncMap& sharedFuncMap() {
    static const FuncMap map;
    return map;
}

std::wstring GetFormula::toExcelAddr(unsigned row, unsigned col, bool rowRelative, bool colRelative, bool columnOnly) {
    std::wstring out;
    if (!colRelative) out.push_back(L'$');
    col &= 0xFF;
    if (col >= 26) out.push_back(static_cast<wchar_t>(col / 26 + 64));
    out.push_back(static_cast<wchar_t>(col % 26 + 65));
    if (columnOnly) return out;
    if (!rowRelative) out.push_back(L'$');
    return out + std::to_wstring(row + 1);
}

std::wstring GetFormula::quote(const std::wstring& name) {
    if (name.find_first_of(L" -") == std::wstring::npos) return name;
    std::wstring out = L"'";
    for (wchar_t c : name) {
        if (c == L'\'') out.push_back(L'\'');
        out.push_back(c);
    }
    return out + L"'";
}

bool GetFormula::isFunc(const std::wstring& w, std::wstring& name, int& count, const FuncMap& funcMap) {
    if (w.size() < 3 || w.back() != L'F') return false;
    size_t digit = w.find_first_of(L"0123456789");
    if (digit == std::wstring::npos || digit == 0) return false;
    name = w.substr(0, digit);
    std::wstring rest = w.substr(digit);
    MakeFormula::fixFuncWithDigits(name, rest);
    if (rest.size() < 2) return false;
    for (size_t i = 0; i + 1 < rest.size(); ++i)
        if (rest[i] < L'0' || rest[i] > L'9') return false;
    if (rest.size() > 6) return false;
    count = std::stoi(rest.substr(0, rest.size() - 1));
    return funcMap.code(name) != FuncMap::unknownCode;
}

std::wstring GetFormula::toInfix(const std::wstring& rpn, const FuncMap& funcMap) {
    std::vector<std::wstring> stack;
    std::wstring w, name;
    size_t pos = 0;
    while (nextWord(rpn, pos, w)) {
        if (w == L"uMinus" || w == L"uPlus" || w == L"uPercent") {
            if (stack.empty())
                throw zverror(w == L"uMinus"  ? "toInfix error: incorrect unary minus expression"
                              : w == L"uPlus" ? "toInfix error: incorrect unary plus expression"
                                              : "toInfix error: incorrect percent expression");
            if (w == L"uPercent")
                stack.back() += L"%";
            else
                stack.back().insert(0, w == L"uMinus" ? L"-" : L"+");
        } else if (w == L"TRUE" || w == L"FALSE") {
            stack.push_back(w);
        } else if (isOperator(w)) {
            if (stack.size() < 2) throw zverror("toInfix error: expected two operands for binary operator");
            std::wstring b = std::move(stack.back());
            stack.pop_back();
            stack.back() += w + b;
        } else if (w == L"(") {
            if (stack.empty()) throw zverror("toInfix error: incorrect brackets");
            stack.back() = L"(" + stack.back() + L")";
        } else {
            int count = 0;
            if (w.rfind(L"?UDF", 0) == 0 && w.size() > 5 && w.back() == L'F') {
                count = std::stoi(w.substr(4, w.size() - 5));
                if (count < 1 || static_cast<size_t>(count) > stack.size())
                    throw zverror("toInfix error: incorrect function expression");
                size_t base = stack.size() - static_cast<size_t>(count);
                std::wstring call = stack[base] + L"(";
                for (size_t i = base + 1; i < stack.size(); ++i) call += (i > base + 1 ? L";" : L"") + stack[i];
                stack.resize(base);
                stack.push_back(call + L")");
            } else if (isFunc(w, name, count, funcMap)) {
                if (count < 0 || static_cast<size_t>(count) > stack.size())
                    throw zverror("toInfix error: incorrect function expression");
                std::wstring args;
                for (size_t i = stack.size() - static_cast<size_t>(count); i < stack.size(); ++i) {
                    if (!args.empty() || i > stack.size() - static_cast<size_t>(count)) args += L";";
                    args += stack[i];
                }
                stack.resize(stack.size() - static_cast<size_t>(count));
                stack.push_back(name + L"(" + args + L")");
            } else {
                stack.push_back(w);
            }
        }
    }
    if (stack.size() != 1) throw zverror("can't build infix formula string");
    return stack.back();
}

std::wstring GetFormula::getFormula(const uint8_t* rgce, size_t length, bool biff5, const FormulaNames& names,
                                    bool shared, uint16_t row, uint16_t col) {
    Stream s(rgce, length);
    std::wstring rpn;
    while (!s.empty()) {
        std::wstring w = word(s, biff5, names, shared, row, col);
        if (w.empty()) continue;
        if (!rpn.empty()) rpn.push_back(L' ');
        rpn += w;
    }
    return toInfix(rpn, sharedFuncMap());
}

}  // namespace zelvar
