// Text helpers of the XML workbook: numbers as text, the escapes of cell text, quoting, package
// paths.
#pragma once
#include <string>
#include <vector>

#include "frame/text.h"

namespace zelvar {

struct Converter {
    // "%.17g": the shortest form that gives the same double back.
    static std::wstring doubleToString(double value);
    // Writes the "%.17g" form into buf (at least 32 bytes); returns the length.
    static size_t doubleToChars(double value, char* buf);
    static std::wstring intToString(long long value);
    static std::string intToAnsiString(long long value);
    // Throws zverror when the text holds no number.
    static double stringToDouble(const std::wstring& text);
    static double charsToDouble(const char* text, size_t size);
    // Throws zverror when the text is no integer.
    static long long stringToInt(const std::wstring& text);
    static long long ansiStringToInt(const std::string& text);
};

struct StrUtil {
    // Replaces every occurrence of what by with.
    static void replace(std::wstring& text, const std::wstring& what, const std::wstring& with);
    // Splits at the first separator: false when there is none.
    static bool split(const std::wstring& text, wchar_t separator, std::wstring& left, std::wstring& right);
    // Puts a sheet name holding a blank or a hyphen in single quotes, doubling quotes inside;
    // other names stay bare.
    static std::wstring quote(const std::wstring& text);
    // Takes off surrounding single quotes and undoubles quotes inside; other text stays.
    static std::wstring unquote(const std::wstring& text);
    // Characters outside the XML character set become _xNNNN_ with the decimal code.
    static void xmlEsc(std::wstring& text);
    // _xNNNN_ with four decimal digits becomes that character.
    static void xmlUnEsc(std::wstring& text);
    // Swaps argument separators outside quotes: from becomes to.
    static void swapSeparators(std::wstring& text, wchar_t from, wchar_t to);
};

struct FileUtil {
    // Text after the last dot; empty when there is none or it ends the path.
    static std::wstring getExtension(const std::wstring& path);
    // "\" to "/", and a "/" in front of a path that has none.
    static std::wstring normalize(const std::wstring& path);
    // Splits at the last "/" or "\".
    static void pathSplit(const std::wstring& path, std::wstring& dir, std::wstring& name);
    static std::wstring getDir(const std::wstring& path);
    static bool fileExists(const std::wstring& path);
};

}  // namespace zelvar
