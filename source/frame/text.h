// Conversion between the application's text (8-bit in the C locale or UTF-8, or wide) and the
// wide text that the library keeps inside. UTF-8 mode maps wide text as UTF-16 code units, the
// units that the binary file format stores.
#pragma once
#include <cstring>
#include <cwchar>
#include <string>

#include "frame/mem_pool.h"

namespace zelvar {

// Narrow to wide; throws zverror "can't convert multibyte to wide string, perhaps incorrect locale".
void narrowToWide(const char* text, size_t length, bool utf8, std::wstring& out);
// Wide to narrow; characters without a mapping become "?". Returns false if any did.
bool wideToNarrow(const wchar_t* text, size_t length, bool utf8, std::string& out);

template <class T>
inline size_t tslen(const T* text) {
    return std::char_traits<T>::length(text);
}

// Number of characters an application text stands for: code points in UTF-8 mode, bytes otherwise
// for 8-bit text, units for wide text.
size_t unitCount(const char* text, bool utf8);
inline size_t unitCount(const wchar_t* text, bool) { return wcslen(text); }

// Text with a narrow and a wide face; the older face is rebuilt on demand.
class XString {
public:
    void assign(const wchar_t* text);
    void assign(const char* text);
    void clear();
    template <class T>
    const T* c_str(bool utf8);
    // The last conversion could not map every character.
    bool failed() const { return _failed; }

private:
    bool _wideNewer = false;
    bool _narrowNewer = false;
    std::string _narrow;
    std::wstring _wide;
    bool _failed = false;
};

// A growing, null-terminated buffer.
template <class T>
class CharBuffer {
public:
    explicit CharBuffer(size_t size = 0) { _data.reserve(size); }
    void assign(const T* text) {
        _null = text == nullptr;
        _data.assign(text ? text : empty());
    }
    void assign(const T* text, size_t n) {
        _null = false;
        _data.assign(text, n);
    }
    void append(const T* text) { _data.append(text); }
    void resize(size_t n) { _data.resize(n); }
    void clean() {
        _data.clear();
        _null = true;
    }
    const T* c_str() const { return _null ? nullptr : _data.c_str(); }
    T& operator[](size_t i) { return _data[i]; }
    std::basic_string<T>& str() {
        _null = false;
        return _data;
    }

private:
    static const T* empty() {
        static const T zero = 0;
        return &zero;
    }
    std::basic_string<T> _data;
    bool _null = true;
};

// Keeps the converted text handed out by an object until its next conversion.
template <class T>
class StringKeeper : public CharBuffer<T> {
public:
    StringKeeper() : CharBuffer<T>(64) {}
    // Null gives null; characters without a mapping become "?" and raise no error.
    void assign(const wchar_t* text, bool utf8);
};

// Converts into pool memory. The wide form returns its argument.
char* tc(const wchar_t* text, MemPool* pool, bool utf8, char*);
inline const wchar_t* tc(const wchar_t* text, MemPool*, bool, wchar_t*) { return text; }

// Application text to a wide string (no copy for wide input beyond the string itself).
inline void toWide(const char* text, bool utf8, std::wstring& out) {
    narrowToWide(text, std::strlen(text), utf8, out);
}
inline void toWide(const wchar_t* text, bool, std::wstring& out) { out.assign(text); }

// Names that differ only in case are the same name: true when both have the same length and
// agree code unit by code unit after towlower.
bool sicmp(const std::wstring& a, const std::wstring& b);
// The ordering that goes with sicmp: code unit by code unit after towlower, then by length (a
// prefix first). Negative, zero or positive.
int sicmp2(const std::wstring& a, const std::wstring& b);

// Ordering of package paths and other names in which case makes no difference.
struct CaseInsensitiveLess {
    bool operator()(const std::wstring& a, const std::wstring& b) const { return sicmp2(a, b) < 0; }
};

}  // namespace zelvar
