#include "formula/reverse_polish.h"

#include "formula/func_map.h"
#include "formula/make_formula.h"
#include "frame/zverror.h"

#include <cwctype>
#include <vector>

namespace zelvar {

namespace {

bool isDigit(wchar_t ch) { return ch >= L'0' && ch <= L'9'; }

bool isDelimiter(wchar_t ch) {
    switch (ch) {
    case L'+': case L'-': case L'*': case L'/': case L'(': case L')': case L'^':
    case L'<': case L'>': case L'=': case L';': case L'&': case L'%': case L',':
        return true;
    default:
        return false;
    }
}

bool isSeparator(const std::wstring& token) { return token == L";" || token == L","; }

void writeToken(std::wstring& out, const std::wstring& token) {
    out += token;
    out += L' ';
}

}  // namespace

void ReversePolish::removeSpaces(std::wstring& text) {
    bool inDouble = false, inSingle = false;
    size_t kept = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        wchar_t ch = text[i];
        if (ch == L'"' && !inSingle) inDouble = !inDouble;
        else if (ch == L'\'' && !inDouble) inSingle = !inSingle;
        if (ch == L' ' && !inDouble && !inSingle) continue;
        text[kept++] = ch;
    }
    text.resize(kept);
}

bool ReversePolish::isString(const std::wstring& token) {
    return token.size() >= 2 && token.front() == L'"' && token.back() == L'"';
}

int ReversePolish::pri(const std::wstring& op) {
    if (op.size() == 1) {
        switch (op[0]) {
        case L';': case L',': return 1;
        case L'&': return 2;
        case L'=': return 3;
        case L'<': case L'>': return 4;
        case L'+': case L'-': return 5;
        case L'*': case L'/': return 6;
        case L'^': return 7;
        case L'%': return 8;
        case L'(': return 0;
        default: return -1;
        }
    }
    if (op == L"<>") return 3;
    if (op == L"<=" || op == L">=") return 4;
    if (op == L"uMinus" || op == L"uPlus") return 9;
    return -1;
}

bool ReversePolish::isOperator(const std::wstring& token) {
    if (token.size() == 1) return token[0] != L'(' && token[0] != L')' && isDelimiter(token[0]);
    return token == L">=" || token == L"<=" || token == L"<>";
}

bool ReversePolish::isAlphaNumber(const std::wstring& token) {
    for (wchar_t ch : token) {
        if (std::iswalnum(static_cast<wint_t>(ch))) continue;
        if (ch == L':' || ch == L'$' || ch == L'.' || ch == L'!') continue;
        return false;
    }
    return true;
}

bool ReversePolish::isNumber(const std::wstring& token) {
    for (wchar_t ch : token)
        if (!isDigit(ch)) return false;
    return true;
}

bool ReversePolish::isRef(const std::wstring& token) {
    size_t start = token.find(L'!');
    start = start == std::wstring::npos ? 0 : start + 1;
    if (start >= token.size()) return false;
    bool letter = false, digit = false;
    for (size_t i = start; i < token.size(); ++i) {
        wchar_t ch = token[i];
        if (std::iswalpha(static_cast<wint_t>(ch))) {
            if (digit) return false;
            letter = true;
        } else if (isDigit(ch)) {
            digit = true;
        }
    }
    return letter && digit;
}

void ReversePolish::getToken(const std::wstring& text, size_t& pos, std::wstring& token) {
    token.clear();
    // Each quote kind toggles its own flag whatever the other says; a quote of the other
    // kind inside a string therefore changes the tokenizing of the rest.
    bool inDouble = false, inSingle = false;
    const size_t size = text.size();
    for (size_t i = pos; i < size; ++i) {
        wchar_t ch = text[i];
        if (ch == L'"' || ch == L'\'') {
            if (ch == L'"') inDouble = !inDouble;
            else inSingle = !inSingle;
            token += ch;
            continue;
        }
        if (inDouble || inSingle) {
            token += ch;
            continue;
        }
        if (isDelimiter(ch)) {
            if (!token.empty()) {
                pos = i;
                return;
            }
            token += ch;
            pos = i + 1;
            // "<=" is the only two-character operator formed here: ">=" comes out as ">" and
            // "=", "<>" as "<" and ">", and the encoder receives the pair.
            if (ch == L'<' && pos < size && text[pos] == L'=') {
                token += L'=';
                ++pos;
            }
            return;
        }
        if (ch == L' ') continue;  // "A 1" is the one token "A1"
        token += ch;
    }
    pos = size;
}

std::wstring ReversePolish::getToken(std::wstring& text) {
    size_t pos = 0;
    std::wstring token;
    getToken(text, pos, token);
    text.erase(0, pos);
    return token;
}

void ReversePolish::prepare(std::wstring& text) {
    if (!text.empty() && text[0] == L'=') text.erase(0, 1);
}

bool ReversePolish::isFunc(const std::wstring& token, uint32_t& ref, const FuncMap& funcMap) {
    const size_t size = token.size();
    std::pair<unsigned short, uint32_t> found;
    if (size > 2 && token[size - 1] == L'F' && isDigit(token[size - 2])) {
        // A postfix word such as SUM2F or LOG101F: the name ends at the first digit,
        // less the digits that belong to it.
        size_t firstDigit = 0;
        while (!isDigit(token[firstDigit])) ++firstDigit;
        std::wstring name = token.substr(0, firstDigit);
        std::wstring rest = token.substr(firstDigit);
        MakeFormula::fixFuncWithDigits(name, rest);
        found = funcMap.codeRef(name);
    } else {
        found = funcMap.codeRef(token);
    }
    ref = found.second;
    return found.first != FuncMap::unknownCode;
}

void ReversePolish::addRefs(std::wstring& text, const FuncMap& funcMap) {
    std::wstring out;
    out.reserve(text.size() + 16);
    std::vector<FuncState> calls;
    std::wstring token;
    size_t pos = 0;
    for (;;) {
        getToken(text, pos, token);
        if (token.empty()) break;
        uint32_t ref = 0;
        if (isFunc(token, ref, funcMap)) {
            FuncState call;
            call.ref = ref;
            calls.push_back(call);
        } else if (!calls.empty()) {
            FuncState& call = calls.back();
            if (token == L"(") {
                if (call.waitOpen) {
                    call.waitOpen = false;
                    call.inside = true;
                } else {
                    ++call.innerOpen;
                }
            } else if (token == L")") {
                if (call.innerOpen == 0) calls.pop_back();
                else --call.innerOpen;
            } else if (isSeparator(token)) {
                // Also inside inner parentheses: f(A1,(1,2),B1) moves the parameter twice.
                ++call.param;
            } else if (isRef(token) && ((call.ref >> (call.param % 32)) & 1u)) {
                token += L'R';
            }
        }
        out += token;
    }
    text.swap(out);
}

std::wstring toReversePolish(std::wstring text, const FuncMap& funcMap) {
    ReversePolish::prepare(text);
    ReversePolish::addRefs(text, funcMap);

    std::wstring out;
    out.reserve(text.size() * 2 + 8);
    std::vector<std::wstring> operators;
    std::vector<char> parenIsPlain;  // one per open parenthesis: 1 plain, 0 a function's
    long long operands = 0;          // operands since the last operator: 0 makes a sign unary
    bool funcOpen = false;
    std::wstring token;
    size_t pos = 0;
    uint32_t ref = 0;

    for (;;) {
        ReversePolish::getToken(text, pos, token);
        if (token.empty()) {
            while (!operators.empty()) {
                writeToken(out, operators.back());
                operators.pop_back();
            }
            if (!out.empty() && out.back() == L' ') out.pop_back();
            return out;
        }
        if (token == L"TRUE" || token == L"FALSE") {
            // Without a following "(" it is the constant; at the very end of the text it is
            // taken for the function and fails for want of parentheses.
            if (pos < text.size() && text[pos] != L'(') {
                writeToken(out, token);
                ++operands;
                continue;
            }
        }
        if (ReversePolish::isFunc(token, ref, funcMap)) {
            int count = FuncMap::getFuncParamCount(text, pos);
            token += std::to_wstring(count);
            token += L'F';
            operators.push_back(token);
            parenIsPlain.push_back(0);
            funcOpen = true;
            operands = 0;
            continue;
        }
        if (ReversePolish::isAlphaNumber(token) || ReversePolish::isString(token)) {
            writeToken(out, token);
            ++operands;
            continue;
        }
        if (token == L"(") {
            operators.push_back(token);
            if (funcOpen) funcOpen = false;
            else parenIsPlain.push_back(1);
            continue;
        }
        if (token == L")") {
            bool matched = false;
            while (!operators.empty()) {
                if (operators.back() != L"(") {
                    writeToken(out, operators.back());
                    operators.pop_back();
                    continue;
                }
                if (parenIsPlain.empty()) throw zverror("error in formula");
                // A plain pair stays visible in the output; a call's own pair is implied
                // by the function word that follows.
                if (parenIsPlain.back() == 1) out += L"( ";
                parenIsPlain.pop_back();
                operators.pop_back();
                if (!operators.empty() && ReversePolish::isFunc(operators.back(), ref, funcMap)) {
                    writeToken(out, operators.back());
                    operators.pop_back();
                }
                matched = true;
                break;
            }
            if (!matched) throw zverror("error in formula");
            continue;
        }
        if (ReversePolish::isOperator(token)) {
            const bool separator = isSeparator(token);
            if (operands >= 1 || separator) {
                const int priority = ReversePolish::pri(token);
                while (!operators.empty() && priority <= ReversePolish::pri(operators.back())) {
                    writeToken(out, operators.back());
                    operators.pop_back();
                }
            }
            if (operands == 0) {
                // Only operands raise the count, so a sign after NOW() or after % is unary.
                if (token == L"-") token = L"uMinus";
                else if (token == L"+") token = L"uPlus";
            }
            if (!separator) operators.push_back(token);
            operands = 0;
            continue;
        }
        // Quoted sheet names and other words the tests above don't know are operands.
        writeToken(out, token);
        ++operands;
    }
}

}  // namespace zelvar
