#include "frame/text.h"

#include <utf8.h>

#include <climits>
#include <clocale>
#include <cstdlib>
#include <cwctype>
#include <iterator>
#include <vector>

#include "frame/zverror.h"

namespace zelvar {

namespace {

const char kMbToWide[] = "can't convert multibyte to wide string, perhaps incorrect locale";

// UTF-8 to UTF-16 units kept in wchar_t; invalid input is refused.
bool utf8ToUnits(const char* text, size_t length, std::wstring& out) {
    const char* end = text + length;
    // Plain ASCII, the common case of cell text, needs no check and is copied directly.
    size_t ascii = 0;
    while (ascii < length && static_cast<unsigned char>(text[ascii]) < 0x80) ++ascii;
    if (ascii < length && utf8::find_invalid(text + ascii, end) != end) return false;
    out.resize(ascii);
    for (size_t i = 0; i < ascii; ++i) out[i] = static_cast<wchar_t>(text[i]);
    if (ascii < length) {
        out.reserve(length);
        utf8::unchecked::utf8to16(text + ascii, end, std::back_inserter(out));
    }
    return true;
}

// UTF-16 units (or UTF-32 values) in wchar_t to UTF-8; unpaired surrogates become "?".
bool unitsToUtf8(const wchar_t* text, size_t length, std::string& out) {
    out.clear();
    out.reserve(length);
    bool ok = true;
    size_t ascii = 0;
    while (ascii < length && static_cast<uint32_t>(text[ascii]) < 0x80) ++ascii;
    out.resize(ascii);
    for (size_t i = 0; i < ascii; ++i) out[i] = static_cast<char>(text[i]);
    for (size_t i = ascii; i < length; ++i) {
        uint32_t cp = static_cast<uint32_t>(text[i]);
        if (cp < 0x80) {
            out.push_back(static_cast<char>(cp));
            continue;
        }
        if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < length) {
            uint32_t low = static_cast<uint32_t>(text[i + 1]);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
                ++i;
            }
        }
        if ((cp >= 0xD800 && cp <= 0xDFFF) || cp > 0x10FFFF) {
            out.push_back('?');
            ok = false;
            continue;
        }
        utf8::unchecked::append(cp, std::back_inserter(out));
    }
    return ok;
}

// Character by character through wcrtomb, "?" for characters without a mapping.
bool wideToLocaleByChar(const wchar_t* text, size_t length, std::string& out) {
    out.clear();
    bool ok = true;
    std::mbstate_t state{};
    std::vector<char> scratch(MB_CUR_MAX > 0 ? MB_CUR_MAX : 8);
    for (size_t i = 0; i < length; ++i) {
        size_t n = std::wcrtomb(scratch.data(), text[i], &state);
        if (n == static_cast<size_t>(-1)) {
            out.push_back('?');
            state = std::mbstate_t{};
            ok = false;
        } else {
            out.append(scratch.data(), n);
        }
    }
    return ok;
}

}  // namespace

void narrowToWide(const char* text, size_t length, bool utf8, std::wstring& out) {
    if (utf8) {
        if (!utf8ToUnits(text, length, out)) throw zverror(kMbToWide);
        return;
    }
    out.clear();
    size_t i = 0;
    while (i < length && static_cast<unsigned char>(text[i]) < 0x80 && text[i] != 0) {
        out.push_back(static_cast<wchar_t>(text[i]));
        ++i;
    }
    if (i == length) return;
    std::string rest(text + i, length - i);
    size_t n = std::mbstowcs(nullptr, rest.c_str(), 0);
    if (n == static_cast<size_t>(-1)) throw zverror(kMbToWide);
    size_t at = out.size();
    out.resize(at + n + 1);
    std::mbstowcs(&out[at], rest.c_str(), n + 1);
    out.resize(at + n);
}

bool wideToNarrow(const wchar_t* text, size_t length, bool utf8, std::string& out) {
    if (utf8) return unitsToUtf8(text, length, out);
    out.clear();
    size_t i = 0;
    while (i < length && static_cast<uint32_t>(text[i]) < 0x80 && text[i] != 0) {
        out.push_back(static_cast<char>(text[i]));
        ++i;
    }
    if (i == length) return true;
    std::wstring rest(text + i, length - i);
    size_t n = std::wcstombs(nullptr, rest.c_str(), 0);
    if (n == static_cast<size_t>(-1)) {
        std::string tail;
        bool ok = wideToLocaleByChar(rest.c_str(), rest.size(), tail);
        out += tail;
        return ok;
    }
    size_t at = out.size();
    out.resize(at + n + 1);
    std::wcstombs(&out[at], rest.c_str(), n + 1);
    out.resize(at + n);
    return true;
}

size_t unitCount(const char* text, bool utf8) {
    size_t bytes = std::strlen(text);
    if (!utf8) return bytes;
    size_t count = 0;
    for (size_t i = 0; i < bytes; ++i)
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) ++count;
    return count;
}

void XString::assign(const wchar_t* text) {
    if (!text) {
        clear();
        return;
    }
    _wide.assign(text);
    _wideNewer = true;
    _narrowNewer = false;
    _failed = false;
}

void XString::assign(const char* text) {
    if (!text) {
        clear();
        return;
    }
    _narrow.assign(text);
    _narrowNewer = true;
    _wideNewer = false;
    _failed = false;
}

void XString::clear() {
    _wideNewer = _narrowNewer = _failed = false;
    _narrow.clear();
    _wide.clear();
}

template <>
const wchar_t* XString::c_str<wchar_t>(bool utf8) {
    if (_narrowNewer) {
        try {
            narrowToWide(_narrow.data(), _narrow.size(), utf8, _wide);
        } catch (const zverror&) {
            _wide.clear();
            _failed = true;
        }
        _narrowNewer = false;
    }
    return _wide.c_str();
}

template <>
const char* XString::c_str<char>(bool utf8) {
    if (_wideNewer) {
        if (!wideToNarrow(_wide.data(), _wide.size(), utf8, _narrow)) _failed = true;
        _wideNewer = false;
    }
    return _narrow.c_str();
}

template <>
void StringKeeper<char>::assign(const wchar_t* text, bool utf8) {
    if (!text) {
        this->clean();
        return;
    }
    // Plain ASCII, the common case of cell text, is the same in every 8-bit form: it is copied
    // while the end is searched. Anything else takes the full conversion.
    std::string& out = this->str();
    const wchar_t* end = text;
    while (static_cast<uint32_t>(*end) - 1u < 0x7Fu) ++end;  // 1 to 127
    size_t ascii = static_cast<size_t>(end - text);
    if (*end) {
        wideToNarrow(text, ascii + wcslen(end), utf8, out);
        return;
    }
    out.resize(ascii);
    char* into = &out[0];
    for (size_t i = 0; i < ascii; ++i) into[i] = static_cast<char>(text[i]);
}

template <>
void StringKeeper<wchar_t>::assign(const wchar_t* text, bool) {
    CharBuffer<wchar_t>::assign(text);
}

char* tc(const wchar_t* text, MemPool* pool, bool utf8, char*) {
    if (!text) return nullptr;
    size_t length = wcslen(text);
    if (utf8) {
        std::string out;
        unitsToUtf8(text, length, out);
        char* block = pool->allocA(static_cast<unsigned>(out.size() + 1));
        std::memcpy(block, out.c_str(), out.size() + 1);
        return block;
    }
    size_t n = std::wcstombs(nullptr, text, 0);
    if (n == static_cast<size_t>(-1))
        throw zverror("can't convert wide to multibyte string, perhaps incorrect locale [1]");
    char* block = pool->allocA(static_cast<unsigned>(n + 1));
    std::memset(block, 0, n + 1);
    if (std::wcstombs(block, text, n + 1) == static_cast<size_t>(-1))
        throw zverror("can't convert wide to multibyte string, perhaps incorrect locale [2]");
    return block;
}

bool sicmp(const std::wstring& a, const std::wstring& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::towlower(static_cast<wint_t>(a[i])) != std::towlower(static_cast<wint_t>(b[i]))) return false;
    return true;
}

int sicmp2(const std::wstring& a, const std::wstring& b) {
    size_t n = a.size() < b.size() ? a.size() : b.size();
    for (size_t i = 0; i < n; ++i) {
        wint_t x = std::towlower(static_cast<wint_t>(a[i]));
        wint_t y = std::towlower(static_cast<wint_t>(b[i]));
        if (x != y) return x < y ? -1 : 1;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

}  // namespace zelvar
