#include "xmlbook/xml_util.h"

#include <sys/stat.h>

#include <cerrno>
#include <charconv>
#include <clocale>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "frame/zverror.h"

namespace zelvar {

size_t Converter::doubleToChars(double value, char* buf) {
    // Whole numbers below 10^17 have at most 17 digits: "%.17g" writes them as integers.
    if (value != 0 && value > -1e17 && value < 1e17 && value == static_cast<double>(static_cast<long long>(value)))
        return static_cast<size_t>(std::to_chars(buf, buf + 31, static_cast<long long>(value)).ptr - buf);
    // "%.17g" is the written form. to_chars gives the same digits several times faster, but
    // always with a '.': under a locale with another decimal point the C library writes it.
    std::to_chars_result done = std::to_chars(buf, buf + 31, value, std::chars_format::general, 17);
    size_t n = static_cast<size_t>(done.ptr - buf);
    if (done.ec == std::errc() && (std::memchr(buf, '.', n) == nullptr || std::strcmp(localeconv()->decimal_point, ".") == 0))
        return n;
    int written = std::snprintf(buf, 32, "%.17g", value);
    return written < 0 ? 0 : static_cast<size_t>(written);
}

std::wstring Converter::doubleToString(double value) {
    char buf[32];
    size_t n = doubleToChars(value, buf);
    return std::wstring(buf, buf + n);
}

std::wstring Converter::intToString(long long value) {
    std::string text = std::to_string(value);
    return std::wstring(text.begin(), text.end());
}

std::string Converter::intToAnsiString(long long value) { return std::to_string(value); }

double Converter::charsToDouble(const char* text, size_t size) {
    char buf[64];
    std::string heap;
    const char* p;
    if (size < sizeof buf) {
        std::memcpy(buf, text, size);
        buf[size] = 0;
        p = buf;
    } else {
        heap.assign(text, size);
        p = heap.c_str();
    }
    char* end = nullptr;
    double value = std::strtod(p, &end);
    if (end == p) throw zverror("can't convert string to double");
    return value;
}

double Converter::stringToDouble(const std::wstring& text) {
    std::string narrow;
    narrow.reserve(text.size());
    for (wchar_t c : text) narrow.push_back(c < 128 ? static_cast<char>(c) : '?');
    return charsToDouble(narrow.data(), narrow.size());
}

long long Converter::ansiStringToInt(const std::string& text) {
    const char* p = text.c_str();
    char* end = nullptr;
    errno = 0;
    long long value = std::strtoll(p, &end, 10);
    if (end == p || errno == ERANGE) throw zverror("can't convert string to integer");
    return value;
}

long long Converter::stringToInt(const std::wstring& text) {
    std::string narrow;
    for (wchar_t c : text) narrow.push_back(c < 128 ? static_cast<char>(c) : '?');
    return ansiStringToInt(narrow);
}

void StrUtil::replace(std::wstring& text, const std::wstring& what, const std::wstring& with) {
    if (what.empty()) return;
    size_t pos = 0;
    while ((pos = text.find(what, pos)) != std::wstring::npos) {
        text.replace(pos, what.size(), with);
        pos += with.size();
    }
}

bool StrUtil::split(const std::wstring& text, wchar_t separator, std::wstring& left, std::wstring& right) {
    size_t pos = text.find(separator);
    if (pos == std::wstring::npos) return false;
    left = text.substr(0, pos);
    right = text.substr(pos + 1);
    return true;
}

std::wstring StrUtil::quote(const std::wstring& text) {
    if (text.find_first_of(L" -") == std::wstring::npos) return text;
    std::wstring out(1, L'\'');
    for (wchar_t c : text) {
        if (c == L'\'') out.push_back(c);
        out.push_back(c);
    }
    out.push_back(L'\'');
    return out;
}

std::wstring StrUtil::unquote(const std::wstring& text) {
    if (text.size() < 2 || text.front() != L'\'' || text.back() != L'\'') return text;
    std::wstring out;
    for (size_t i = 1; i + 1 < text.size(); ++i) {
        out.push_back(text[i]);
        if (text[i] == L'\'' && i + 2 < text.size() && text[i + 1] == L'\'') ++i;
    }
    return out;
}

namespace {
bool plainXmlChar(wchar_t c) {
    unsigned code = static_cast<unsigned>(c);
    return code == 9 || code == 10 || code == 13 || (code >= 32 && code <= 55295) ||
           (code >= 57344 && code <= 65533);
}
bool isDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }
}  // namespace

void StrUtil::xmlEsc(std::wstring& text) {
    size_t i = 0;
    while (i < text.size() && plainXmlChar(text[i])) ++i;
    if (i == text.size()) return;  // the usual case: nothing to escape, no copy
    std::wstring out(text, 0, i);
    for (; i < text.size(); ++i) {
        wchar_t c = text[i];
        if (plainXmlChar(c)) {
            out.push_back(c);
            continue;
        }
        char digits[24];
        std::snprintf(digits, sizeof digits, "_x%04u_", static_cast<unsigned>(c));
        for (const char* p = digits; *p; ++p) out.push_back(static_cast<wchar_t>(*p));
    }
    text.swap(out);
}

void StrUtil::xmlUnEsc(std::wstring& text) {
    size_t pos = text.find(L"_x");
    if (pos == std::wstring::npos) return;
    std::wstring out(text, 0, pos);
    size_t i = pos;
    while (i < text.size()) {
        if (text[i] == L'_' && i + 6 < text.size() && text[i + 1] == L'x' && text[i + 6] == L'_' &&
            isDigit(text[i + 2]) && isDigit(text[i + 3]) && isDigit(text[i + 4]) && isDigit(text[i + 5])) {
            unsigned code = (text[i + 2] - L'0') * 1000 + (text[i + 3] - L'0') * 100 + (text[i + 4] - L'0') * 10 +
                            (text[i + 5] - L'0');
            out.push_back(static_cast<wchar_t>(code));
            i += 7;
        } else {
            out.push_back(text[i]);
            ++i;
        }
    }
    text.swap(out);
}

void StrUtil::swapSeparators(std::wstring& text, wchar_t from, wchar_t to) {
    bool inDouble = false, inSingle = false;
    for (wchar_t& c : text) {
        if (c == L'"') {
            if (!inSingle) inDouble = !inDouble;
        } else if (c == L'\'') {
            if (!inDouble) inSingle = !inSingle;
        } else if (c == from && !inDouble && !inSingle) {
            c = to;
        }
    }
}

std::wstring FileUtil::getExtension(const std::wstring& path) {
    size_t dot = path.rfind(L'.');
    if (dot == std::wstring::npos || dot + 1 == path.size()) return std::wstring();
    return path.substr(dot + 1);
}

std::wstring FileUtil::normalize(const std::wstring& path) {
    std::wstring out(path);
    for (wchar_t& c : out)
        if (c == L'\\') c = L'/';
    if (!out.empty() && out[0] != L'/') out.insert(out.begin(), L'/');
    return out;
}

void FileUtil::pathSplit(const std::wstring& path, std::wstring& dir, std::wstring& name) {
    size_t slash = path.find_last_of(L"/\\");
    if (slash == std::wstring::npos) {
        dir.clear();
        name = path;
    } else {
        dir = path.substr(0, slash);
        name = path.substr(slash + 1);
    }
}

std::wstring FileUtil::getDir(const std::wstring& path) {
    std::wstring dir, name;
    pathSplit(path, dir, name);
    return dir;
}

bool FileUtil::fileExists(const std::wstring& path) {
    std::string narrow;
    wideToNarrow(path.c_str(), path.size(), false, narrow);
    struct stat info;
    return ::stat(narrow.c_str(), &info) == 0;
}

}  // namespace zelvar
