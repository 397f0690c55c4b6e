// Builds a well-formed formula text from a byte sequence together with the reverse-polish
// text that it must give. Shared by the parser's tests and its fuzz target.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

namespace zelvar {
namespace formula_test {

// Builds a well-formed formula from the input bytes together with the postfix text it must
// give: numbers, strings, references, binary operators (not >= and <>, which are
// tokenized as two operators), unary signs and calls with at least one argument. It avoids
// the shapes whose sign is deliberately read as unary (after % or a call without arguments).
class FormulaBuilder {
public:
    FormulaBuilder(const uint8_t* data, size_t size) : _data(data), _size(size) {}

    struct Expr {
        std::wstring text;
        std::wstring postfix;
        int priority;  // 10 for an operand, a call or a parenthesised group
    };

    // The whole formula; refMask and param describe the innermost call around it.
    Expr build(int depth, uint32_t refMask, unsigned param, bool inCall) {
        const uint8_t kind = depth >= 6 ? 0 : next() % 8;
        switch (kind) {
        case 0:
        case 1:
            return operand(refMask, param, inCall);
        case 2:
        case 3: {
            static const wchar_t* const ops[] = {L"+", L"-", L"*", L"/", L"^", L"&", L"=", L"<", L">", L"<="};
            const std::wstring op = ops[next() % 10];
            const int p = priority(op);
            Expr left = build(depth + 1, refMask, param, inCall);
            Expr right = build(depth + 1, refMask, param, inCall);
            Expr result;
            result.text = wrap(left, left.priority < p) + blanks() + op + blanks() + wrap(right, right.priority <= p);
            result.postfix = postfixOf(left, left.priority < p) + L" " + postfixOf(right, right.priority <= p) + L" " + op;
            result.priority = p;
            return result;
        }
        case 4: {
            const bool minus = next() & 1;
            Expr child = build(depth + 1, refMask, param, inCall);
            const bool paren = child.priority < 9;
            Expr result;
            result.text = std::wstring(minus ? L"-" : L"+") + blanks() + wrap(child, paren);
            result.postfix = postfixOf(child, paren) + (minus ? L" uMinus" : L" uPlus");
            result.priority = 9;
            return result;
        }
        case 5: {
            Expr child = build(depth + 1, refMask, param, inCall);
            Expr result;
            result.text = L"(" + child.text + L")";
            result.postfix = child.postfix + L" (";
            result.priority = 10;
            return result;
        }
        default:
            return call(depth);
        }
    }

private:
    struct Function {
        const wchar_t* name;
        uint32_t ref;
    };

    Expr call(int depth) {
        static const Function functions[] = {
            {L"SUM", 0x3FFFFFFF}, {L"IF", 0},       {L"ROUND", 0},      {L"ROW", 0x1},
            {L"VLOOKUP", 0x6},    {L"ABS", 0},      {L"MAX", 0x3FFFFFFF}, {L"SUMIF", 0x5},
            {L"CHOOSE", 0x3FFFFFFE}, {L"LOG10", 0}, {L"ATAN2", 0},      {L"DAYS360", 0},
            {L"GET.CELL", 0x2},   {L"T", 0x1},      {L"CONCATENATE", 0}, {L"DSUM", 0x7}};
        const Function& f = functions[next() % (sizeof(functions) / sizeof(functions[0]))];
        const unsigned count = 1 + next() % 4;
        Expr result;
        result.text = f.name + blanks() + L"(";
        for (unsigned i = 0; i < count; ++i) {
            if (i > 0) result.text += (next() & 1) ? L"," : L";";
            Expr arg = build(depth + 1, f.ref, i, true);
            result.text += blanks() + arg.text + blanks();
            result.postfix += arg.postfix + L" ";
        }
        result.text += L")";
        result.postfix += f.name + std::to_wstring(count) + L"F";
        result.priority = 10;
        return result;
    }

    Expr operand(uint32_t refMask, unsigned param, bool inCall) {
        static const wchar_t* const numbers[] = {L"1", L"0", L"65535", L"65536", L"1.5", L"100000"};
        static const wchar_t* const strings[] = {L"\"a b\"", L"\"x,y\"", L"\"(\"", L"\"\"", L"\"say \"\"hi\"\"\""};
        static const wchar_t* const refs[] = {L"B3", L"$C$7", L"Sheet2!A1", L"AB12", L"'My Sheet'!D4", L"x$A1"};
        static const wchar_t* const ranges[] = {L"A1:B2", L"$A$1:$A$9", L"Sheet2!C1:D4"};
        Expr result;
        result.priority = 10;
        switch (next() % 4) {
        case 0:
            result.text = numbers[next() % 6];
            break;
        case 1:
            result.text = strings[next() % 5];
            break;
        case 2:
            result.text = refs[next() % 6];
            result.postfix = result.text;
            if (inCall && ((refMask >> (param % 32)) & 1u)) result.postfix += L'R';
            return result;
        default:
            result.text = ranges[next() % 3];
            break;
        }
        result.postfix = result.text;
        return result;
    }

    static int priority(const std::wstring& op) {
        if (op == L"&") return 2;
        if (op == L"=") return 3;
        if (op == L"<" || op == L">" || op == L"<=") return 4;
        if (op == L"+" || op == L"-") return 5;
        if (op == L"*" || op == L"/") return 6;
        return 7;
    }

    static std::wstring wrap(const Expr& e, bool paren) { return paren ? L"(" + e.text + L")" : e.text; }
    static std::wstring postfixOf(const Expr& e, bool paren) { return paren ? e.postfix + L" (" : e.postfix; }

    std::wstring blanks() { return (next() % 4 == 0) ? L" " : L""; }

    uint8_t next() {
        if (_size == 0) return 0;
        --_size;
        return *_data++;
    }

    const uint8_t* _data;
    size_t _size;
};

}  // namespace formula_test
}  // namespace zelvar
