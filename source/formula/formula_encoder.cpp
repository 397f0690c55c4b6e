#include "formula/formula_encoder.h"

#include <cwctype>
#include <sstream>

#include "biff/biff_record.h"
#include "formula/make_formula.h"
#include "frame/zverror.h"

namespace zelvar {

namespace {

void put16(std::vector<uint8_t>& out, unsigned v) {
    out.push_back(static_cast<uint8_t>(v));
    out.push_back(static_cast<uint8_t>(v >> 8));
}

// Splits at a blank outside quotes; both quote kinds toggle their own flag.
bool nextToken(const std::wstring& rpn, size_t& pos, std::wstring& token) {
    while (pos < rpn.size() && rpn[pos] == L' ') ++pos;
    if (pos >= rpn.size()) return false;
    token.clear();
    bool dq = false, sq = false;
    for (; pos < rpn.size(); ++pos) {
        wchar_t c = rpn[pos];
        if (c == L'"') dq = !dq;
        if (c == L'\'') sq = !sq;
        if (c == L' ' && !dq && !sq) break;
        token.push_back(c);
    }
    return true;
}

bool isInteger(const std::wstring& t, unsigned& value) {
    if (t.empty() || t.size() > 5) return false;
    unsigned v = 0;
    for (wchar_t c : t) {
        if (c < L'0' || c > L'9') return false;
        v = v * 10 + static_cast<unsigned>(c - L'0');
    }
    if (v > 65535) return false;
    value = v;
    return true;
}

bool isDouble(const std::wstring& t, double& value) {
    if (t.empty()) return false;
    for (wchar_t c : t)
        if (!((c >= L'0' && c <= L'9') || c == L'.')) return false;
    std::wistringstream in(t);
    in >> value;
    return !in.fail();
}

void putLoc(std::vector<uint8_t>& out, unsigned row, unsigned col, bool rowRelative, bool colRelative) {
    if (col >= 256) throw zverror("RgceLoc: col must be less than 256");
    put16(out, row);
    put16(out, (col & 0x3FFF) | (colRelative ? 0x4000 : 0) | (rowRelative ? 0x8000 : 0));
}

struct Area {
    unsigned r1, c1, r2, c2;
    bool rr1, cr1, rr2, cr2, mark;
};

bool isAreaReference(const std::wstring& t, Area& a) {
    size_t colon = t.find(L':');
    if (colon == std::wstring::npos) return false;
    bool m1 = false, m2 = false;
    if (!FormulaEncoder::isReference(t.substr(0, colon), a.r1, a.c1, m1, a.rr1, a.cr1)) return false;
    if (!FormulaEncoder::isReference(t.substr(colon + 1), a.r2, a.c2, m2, a.rr2, a.cr2)) return false;
    a.mark = m1 || m2;
    return true;
}

void putArea(std::vector<uint8_t>& out, const Area& a) {
    put16(out, a.r1);
    put16(out, a.r2);
    put16(out, (a.c1 & 0x3FFF) | (a.cr1 ? 0x4000 : 0) | (a.rr1 ? 0x8000 : 0));
    put16(out, (a.c2 & 0x3FFF) | (a.cr2 ? 0x4000 : 0) | (a.rr2 ? 0x8000 : 0));
}

// "Sheet!rest": the part before the first "!" and what follows the last of them.
bool splitSheet(const std::wstring& t, std::wstring& sheet, std::wstring& rest) {
    size_t bang = t.find(L'!');
    if (bang == std::wstring::npos || bang == 0) return false;
    sheet = t.substr(0, bang);
    size_t after = bang;
    while (after < t.size() && t[after] == L'!') ++after;
    rest = t.substr(after);
    return true;
}

bool isFunction(const std::wstring& token, std::wstring& name, unsigned& count, unsigned short& code,
                const FuncMap& funcMap) {
    if (token.empty() || token.back() != L'F') return false;
    size_t digit = token.find_first_of(L"0123456789");
    name = digit == std::wstring::npos ? token : token.substr(0, digit);
    std::wstring rest = digit == std::wstring::npos ? std::wstring() : token.substr(digit);
    if (rest.empty() || rest.back() != L'F') return false;
    for (size_t i = 0; i + 1 < rest.size(); ++i)
        if (rest[i] < L'0' || rest[i] > L'9') return false;
    MakeFormula::fixFuncWithDigits(name, rest);
    code = funcMap.code(name);
    if (code == FuncMap::unknownCode) return false;
    if (rest.size() < 2 || rest.size() > 6) throw zverror("incorrect number of function parameters");
    count = static_cast<unsigned>(std::stoul(rest.substr(0, rest.size() - 1)));
    return true;
}

}  // namespace

bool FormulaEncoder::isReference(const std::wstring& token, unsigned& row, unsigned& col, bool& refMark,
                                 bool& rowRelative, bool& colRelative) {
    refMark = false;
    rowRelative = colRelative = true;
    size_t i = 0;
    std::wstring letters, digits;
    if (i < token.size() && token[i] == L'$') {
        colRelative = false;
        ++i;
    }
    while (i < token.size() && std::iswalpha(static_cast<wint_t>(token[i]))) letters.push_back(token[i++]);
    if (letters.empty()) return false;
    if (i < token.size() && token[i] == L'$') {
        rowRelative = false;
        ++i;
    }
    while (i < token.size() && token[i] >= L'0' && token[i] <= L'9') digits.push_back(token[i++]);
    if (i + 1 == token.size() && token[i] == L'R') {
        refMark = true;
        ++i;
    }
    if (digits.empty() || i != token.size()) return false;
    unsigned long long c = 0;
    for (wchar_t ch : letters) {
        c = c * 26 + static_cast<unsigned long long>(static_cast<long long>(ch) - 64);
        if (c > 100000) break;
    }
    if (c == 0 || c - 1 > 255) throw zverror("Column is out of range");
    col = static_cast<unsigned>(c - 1);
    if (digits.size() > 9) throw zverror("Row is out of range");
    unsigned long long r = std::stoull(digits);
    if (r - 1 > 65535ull || r == 0) throw zverror("Row is out of range");
    row = static_cast<unsigned>(r - 1);
    return true;
}

void FormulaEncoder::makeFormula(std::vector<uint8_t>& out, const std::wstring& rpn, XtiResolver& xti,
                                 const FuncMap& funcMap) {
    static const struct {
        const wchar_t* text;
        uint8_t id;
    } simple[] = {{L"uMinus", 0x13}, {L"uPlus", 0x12}, {L"%", 0x14}, {L"&", 0x08}, {L"<>", 0x0E}, {L"=", 0x0B},
                  {L"<", 0x09},      {L">", 0x0D},     {L">=", 0x0C}, {L"<=", 0x0A}, {L"+", 0x03}, {L"-", 0x04},
                  {L"*", 0x05},      {L"/", 0x06},     {L"^", 0x07}, {L"(", 0x15}};
    std::vector<size_t> areas;
    size_t start = out.size();
    size_t pos = 0;
    std::wstring token, name, sheet, rest;
    while (nextToken(rpn, pos, token)) {
        bool done = false;
        for (const auto& s : simple) {
            if (token == s.text) {
                out.push_back(s.id);
                done = true;
                break;
            }
        }
        if (done) continue;
        if (token == L"SUM1") {
            out.insert(out.end(), {0x19, 0x10, 0x00, 0x00});
            continue;
        }
        unsigned integer = 0;
        double number = 0;
        if (isInteger(token, integer)) {
            out.push_back(0x1E);
            put16(out, integer);
            continue;
        }
        if (isDouble(token, number)) {
            out.push_back(0x1F);
            const uint8_t* b = reinterpret_cast<const uint8_t*>(&number);
            out.insert(out.end(), b, b + 8);
            continue;
        }
        if (token == L"TRUE" || token == L"FALSE") {
            out.push_back(0x1D);
            out.push_back(token == L"TRUE" ? 1 : 0);
            continue;
        }
        unsigned count = 0;
        unsigned short code = 0;
        if (isFunction(token, name, count, code, funcMap)) {
            if (name == L"TODAY") {
                out.insert(out.end(), {0x19, 0x01, 0x00, 0x00, 0x41});
                put16(out, code);
            } else if (name == L"OFFSET") {
                out.push_back(0x22);
                out.push_back(static_cast<uint8_t>(count));
                put16(out, code);
            } else {
                if (name == L"SUMPRODUCT" && out.size() - start > count * 9u)
                    for (auto it = areas.rbegin(); it != areas.rend(); ++it) out[*it] = 0x65;
                out.push_back(0x42);
                out.push_back(static_cast<uint8_t>(count));
                put16(out, code);
            }
            areas.clear();
            continue;
        }
        unsigned row = 0, col = 0;
        bool mark = false, rowRel = true, colRel = true;
        if (isReference(token, row, col, mark, rowRel, colRel)) {
            out.push_back(mark ? 0x24 : 0x44);
            putLoc(out, row, col, rowRel, colRel);
            continue;
        }
        Area area{};
        if (splitSheet(token, sheet, rest)) {
            if (isReference(rest, row, col, mark, rowRel, colRel)) {
                uint16_t index = xti.makeXti(sheet);
                out.push_back(mark ? 0x3A : 0x5A);
                put16(out, index);
                putLoc(out, row, col, rowRel, colRel);
                continue;
            }
            if (isAreaReference(rest, area)) {
                uint16_t index = xti.makeXti(sheet);
                out.push_back(0x3B);
                put16(out, index);
                putArea(out, area);
                continue;
            }
        }
        if (isAreaReference(token, area)) {
            areas.push_back(out.size());
            out.push_back(0x25);
            putArea(out, area);
            continue;
        }
        if (token.size() >= 2 && token.front() == L'"' && token.back() == L'"') {
            std::wstring text = token.substr(1, token.size() - 2);
            // The limit holds for what the file gets: characters beyond 16 bits take two units.
            std::wstring units = RecordWriter::utf16Units(text);
            if (units.size() > 255) throw zverror("string is too long");
            out.push_back(0x17);
            out.push_back(static_cast<uint8_t>(units.size()));
            out.push_back(1);
            for (wchar_t c : units) put16(out, static_cast<unsigned>(c));
            continue;
        }
        throw zverror("incorrect token in formula");
    }
}

}  // namespace zelvar
