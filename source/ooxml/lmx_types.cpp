#include "ooxml/lmx_types.h"

#include <libxml/xmlerror.h>
#include <libxml/xmlregexp.h>

#include <cerrno>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace zelvar {
namespace lmx {

// ---- UTF-8 and escaping -------------------------------------------------------------------

void append_utf8(std::string& out, uint32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        char b[2] = {static_cast<char>(0xC0 | (c >> 6)), static_cast<char>(0x80 | (c & 0x3F))};
        out.append(b, 2);
    } else if (c < 0x10000) {
        char b[3] = {static_cast<char>(0xE0 | (c >> 12)), static_cast<char>(0x80 | ((c >> 6) & 0x3F)),
                     static_cast<char>(0x80 | (c & 0x3F))};
        out.append(b, 3);
    } else {
        char b[4] = {static_cast<char>(0xF0 | (c >> 18)), static_cast<char>(0x80 | ((c >> 12) & 0x3F)),
                     static_cast<char>(0x80 | ((c >> 6) & 0x3F)), static_cast<char>(0x80 | (c & 0x3F))};
        out.append(b, 4);
    }
}

void utf8_to_wide(std::wstring& out, const char* text, size_t size) {
    out.clear();
    out.reserve(size);
    const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
    const unsigned char* end = p + size;
    while (p < end) {
        unsigned c = *p;
        if (c < 0x80) {
            out += static_cast<wchar_t>(c);
            ++p;
            continue;
        }
        int extra;
        uint32_t cp, min;
        if ((c & 0xE0) == 0xC0) {
            extra = 1, cp = c & 0x1F, min = 0x80;
        } else if ((c & 0xF0) == 0xE0) {
            extra = 2, cp = c & 0x0F, min = 0x800;
        } else if ((c & 0xF8) == 0xF0) {
            extra = 3, cp = c & 0x07, min = 0x10000;
        } else {
            out += L'\xFFFD';
            ++p;
            continue;
        }
        if (end - p <= extra) {
            out += L'\xFFFD';
            ++p;
            continue;
        }
        bool ok = true;
        for (int i = 1; i <= extra; ++i) {
            if ((p[i] & 0xC0) != 0x80) {
                ok = false;
                break;
            }
            cp = (cp << 6) | (p[i] & 0x3F);
        }
        // Surrogate code points stand in the text only when UCS-2 input carried them.
        if (!ok || cp < min || cp > 0x10FFFF) {
            out += L'\xFFFD';
            ++p;
            continue;
        }
        out += static_cast<wchar_t>(cp);
        p += extra + 1;
    }
}

void wide_to_utf8(std::string& out, const wchar_t* text, size_t size) {
    out.reserve(out.size() + size);
    for (size_t i = 0; i < size; ++i) {
        uint32_t c = static_cast<uint32_t>(text[i]);
        if (c < 0x80) {
            out += static_cast<char>(c);
            continue;
        }
        if (c >= 0xD800 && c <= 0xDBFF) {
            if (i + 1 == size) return;  // a high surrogate at the end ends the text
            uint32_t low = static_cast<uint32_t>(text[i + 1]);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                append_utf8(out, 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00));
                ++i;
                continue;
            }
            c = 0xFFFD;
        } else if ((c >= 0xDC00 && c <= 0xDFFF) || c > 0x10FFFF) {
            c = 0xFFFD;
        }
        append_utf8(out, c);
    }
}

namespace {

// Bytes that may need an entity; '>' only in some places.
struct s_escape_table {
    bool special[256];
    s_escape_table() {
        for (bool& b : special) b = false;
        for (unsigned char c : {'"', '\'', '&', '<', '>'}) special[c] = true;
    }
};
const s_escape_table escape_table;

inline const char* entity_of(const char* text, size_t i) {
    switch (text[i]) {
        case '"': return "&quot;";
        case '\'': return "&apos;";
        case '&': return "&amp;";
        case '<': return "&lt;";
        case '>': return (i >= 2 && text[i - 1] == ']') ? "&gt;" : nullptr;
    }
    return nullptr;
}

}  // namespace

void output_convert_to_xml(std::string& out, const char* text, size_t size) {
    size_t run_start = 0;
    for (size_t i = 0; i < size; ++i) {
        if (!escape_table.special[static_cast<unsigned char>(text[i])]) continue;
        const char* entity = entity_of(text, i);
        if (!entity) continue;
        out.append(text + run_start, i - run_start);
        out.append(entity);
        run_start = i + 1;
    }
    out.append(text + run_start, size - run_start);
}

void output_convert_to_xml(std::string& out, const std::string& text) {
    output_convert_to_xml(out, text.data(), text.size());
}

void output_convert_to_xml(std::string& out, const std::wstring& text) {
    // Plain ASCII text, the usual case, is copied in one pass through a small buffer.
    const size_t at = out.size();
    char buf[256];
    size_t i = 0;
    bool plain = true;
    while (plain && i < text.size()) {
        size_t n = 0;
        for (; n < sizeof buf && i < text.size(); ++i, ++n) {
            wchar_t c = text[i];
            if (c >= 0x80 || escape_table.special[c]) {
                plain = false;
                break;
            }
            buf[n] = static_cast<char>(c);
        }
        out.append(buf, n);
    }
    if (plain) return;
    out.resize(at);
    // Otherwise convert first, then escape: the rule looks only at ASCII characters, which are
    // the same bytes in UTF-8, and "index 2 or later" only excludes a '>' at index 1.
    std::string utf8;
    wide_to_utf8(utf8, text.data(), text.size());
    output_convert_to_xml(out, utf8);
}

// ---- c_binary -----------------------------------------------------------------------------

static int hex_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

bool c_binary::from_hex(const std::string& text) {
    if (text.size() % 2) return false;
    std::vector<unsigned char> bytes(text.size() / 2);
    for (size_t i = 0; i < bytes.size(); ++i) {
        int hi = hex_value(text[2 * i]), lo = hex_value(text[2 * i + 1]);
        if (hi < 0 || lo < 0) return false;
        bytes[i] = static_cast<unsigned char>(hi * 16 + lo);
    }
    m_bytes.swap(bytes);
    return true;
}

std::string c_binary::out_hex() const {
    static const char digits[] = "0123456789ABCDEF";
    std::string out(m_bytes.size() * 2, '0');
    for (size_t i = 0; i < m_bytes.size(); ++i) {
        out[2 * i] = digits[m_bytes[i] >> 4];
        out[2 * i + 1] = digits[m_bytes[i] & 15];
    }
    return out;
}

static int base64_value(char c) {
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a' + 26;
    if (c >= '0' && c <= '9') return c - '0' + 52;
    if (c == '+') return 62;
    if (c == '/') return 63;
    return -1;
}

bool c_binary::from_base64(const std::string& text) {
    std::vector<unsigned char> bytes;
    unsigned acc = 0;
    int bits = 0, pad = 0;
    for (char c : text) {
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r') continue;
        if (c == '=') {
            ++pad;
            continue;
        }
        int v = base64_value(c);
        if (v < 0 || pad) return false;
        acc = (acc << 6) | static_cast<unsigned>(v);
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            bytes.push_back(static_cast<unsigned char>((acc >> bits) & 0xFF));
        }
    }
    if (pad > 2) return false;
    m_bytes.swap(bytes);
    return true;
}

std::string c_binary::out_base64() const {
    static const char table[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    size_t i = 0, n = m_bytes.size();
    for (; i + 2 < n; i += 3) {
        unsigned v = (m_bytes[i] << 16) | (m_bytes[i + 1] << 8) | m_bytes[i + 2];
        out += table[v >> 18];
        out += table[(v >> 12) & 63];
        out += table[(v >> 6) & 63];
        out += table[v & 63];
    }
    if (i < n) {
        unsigned v = m_bytes[i] << 16;
        if (i + 1 < n) v |= m_bytes[i + 1] << 8;
        out += table[v >> 18];
        out += table[(v >> 12) & 63];
        out += i + 1 < n ? table[(v >> 6) & 63] : '=';
        out += '=';
    }
    return out;
}

// ---- numbers ------------------------------------------------------------------------------

bool is_valid_bool(const std::string& t) { return t == "true" || t == "false" || t == "1" || t == "0"; }

bool is_valid_integer(const std::string& t) {
    size_t i = 0;
    if (i < t.size() && (t[i] == '+' || t[i] == '-')) ++i;
    if (i == t.size()) return false;
    for (; i < t.size(); ++i)
        if (t[i] < '0' || t[i] > '9') return false;
    return true;
}

bool is_valid_decimal(const std::string& t) {
    size_t i = 0;
    if (i < t.size() && (t[i] == '+' || t[i] == '-')) ++i;
    bool digits = false, dot = false;
    for (; i < t.size(); ++i) {
        if (t[i] >= '0' && t[i] <= '9') {
            digits = true;
        } else if (t[i] == '.' && !dot) {
            dot = true;
        } else {
            return false;
        }
    }
    return digits;
}

bool is_valid_float(const std::string& t) {
    if (t == "INF" || t == "-INF" || t == "+INF" || t == "NaN") return true;
    size_t e = t.find_first_of("eE");
    if (e == std::string::npos) return is_valid_decimal(t);
    return is_valid_decimal(t.substr(0, e)) && is_valid_integer(t.substr(e + 1));
}

bool is_valid_hexbinary(const std::string& t) {
    if (t.size() % 2) return false;
    for (char c : t)
        if (hex_value(c) < 0) return false;
    return true;
}

bool is_valid_base64binary(const std::string& t) {
    c_binary b;
    return b.from_base64(t);
}

template <class I>
static bool parse_signed(I& o, const std::string& v) {
    if (!is_valid_integer(v)) return false;
    size_t i = 0;
    bool neg = false;
    if (v[0] == '+' || v[0] == '-') neg = v[i++] == '-';
    // Accumulate negatively so that the minimum of the type fits.
    I value = 0;
    const I lowest = std::numeric_limits<I>::min();
    for (; i < v.size(); ++i) {
        int d = v[i] - '0';
        if (value < lowest / 10 || (value == lowest / 10 && -d < lowest % 10)) return false;
        value = static_cast<I>(value * 10 - d);
    }
    if (!neg) {
        if (value < -std::numeric_limits<I>::max()) return false;
        value = static_cast<I>(-value);
    }
    o = value;
    return true;
}

template <class U>
static bool parse_unsigned(U& o, const std::string& v) {
    if (!is_valid_integer(v)) return false;
    size_t i = 0;
    if (v[0] == '-') {
        // "-0" is the only negative text an unsigned type takes.
        for (i = 1; i < v.size(); ++i)
            if (v[i] != '0') return false;
        o = 0;
        return true;
    }
    if (v[0] == '+') ++i;
    U value = 0;
    const U highest = std::numeric_limits<U>::max();
    for (; i < v.size(); ++i) {
        unsigned d = static_cast<unsigned>(v[i] - '0');
        if (value > highest / 10 || (value == highest / 10 && d > highest % 10)) return false;
        value = static_cast<U>(value * 10 + d);
    }
    o = value;
    return true;
}

bool v_to_o(bool& o, const std::string& v) {
    o = v == "true" || v == "1";
    return true;
}
bool v_to_o(int8_t& o, const std::string& v) { return parse_signed(o, v); }
bool v_to_o(uint8_t& o, const std::string& v) { return parse_unsigned(o, v); }
bool v_to_o(int16_t& o, const std::string& v) { return parse_signed(o, v); }
bool v_to_o(uint16_t& o, const std::string& v) { return parse_unsigned(o, v); }
bool v_to_o(int32_t& o, const std::string& v) { return parse_signed(o, v); }
bool v_to_o(uint32_t& o, const std::string& v) { return parse_unsigned(o, v); }
bool v_to_o(long& o, const std::string& v) { return parse_signed(o, v); }
bool v_to_o(unsigned long& o, const std::string& v) { return parse_unsigned(o, v); }
bool v_to_o(long long& o, const std::string& v) { return parse_signed(o, v); }
bool v_to_o(unsigned long long& o, const std::string& v) { return parse_unsigned(o, v); }

// The process locale may use a comma as the decimal sign; the XML form always has a point.
static char locale_decimal_point() {
    const char* dp = std::localeconv()->decimal_point;
    return dp && dp[0] ? dp[0] : '.';
}

bool v_to_o(double& o, const std::string& v) {
    if (v == "INF" || v == "+INF") {
        o = std::numeric_limits<double>::infinity();
        return true;
    }
    if (v == "-INF") {
        o = -std::numeric_limits<double>::infinity();
        return true;
    }
    if (v == "NaN") {
        o = std::numeric_limits<double>::quiet_NaN();
        return true;
    }
    if (!is_valid_float(v)) return false;
    char local[64];
    const char* text = v.c_str();
    char dp = locale_decimal_point();
    std::string copy;
    if (dp != '.' && v.find('.') != std::string::npos) {
        if (v.size() < sizeof local) {
            std::memcpy(local, v.c_str(), v.size() + 1);
            text = local;
            *std::strchr(local, '.') = dp;
        } else {
            copy = v;
            copy[copy.find('.')] = dp;
            text = copy.c_str();
        }
    }
    char* end = nullptr;
    o = std::strtod(text, &end);
    return end && *end == 0;
}

bool v_to_o(float& o, const std::string& v) {
    double d;
    if (!v_to_o(d, v)) return false;
    o = static_cast<float>(d);
    return true;
}

bool v_to_o(std::string& o, const std::string& v) {
    o = v;
    return true;
}
bool v_to_o(std::wstring& o, const std::string& v) {
    utf8_to_wide(o, v.data(), v.size());
    return true;
}
bool v_to_o(c_big_int& o, const std::string& v) { return o.set(v); }
bool v_to_o(c_decimal& o, const std::string& v) { return o.set(v); }
bool v_to_o(c_binary& o, const std::string& v) { return o.from_hex(v); }
bool v_to_o(c_datetime& o, const std::string& v) { return o.set(v); }
bool v_to_o(c_empty&, const std::string&) { return true; }

template <class I>
static void format_integer(std::string& v, I o) {
    v = std::to_string(o);
}

void o_to_v(std::string& v, bool o) { v = o ? "true" : "false"; }
void o_to_v(std::string& v, int8_t o) { format_integer(v, static_cast<int>(o)); }
void o_to_v(std::string& v, uint8_t o) { format_integer(v, static_cast<unsigned>(o)); }
void o_to_v(std::string& v, int16_t o) { format_integer(v, static_cast<int>(o)); }
void o_to_v(std::string& v, uint16_t o) { format_integer(v, static_cast<unsigned>(o)); }
void o_to_v(std::string& v, int32_t o) { format_integer(v, o); }
void o_to_v(std::string& v, uint32_t o) { format_integer(v, o); }
void o_to_v(std::string& v, long o) { format_integer(v, o); }
void o_to_v(std::string& v, unsigned long o) { format_integer(v, o); }
void o_to_v(std::string& v, long long o) { format_integer(v, o); }
void o_to_v(std::string& v, unsigned long long o) { format_integer(v, o); }

void o_to_v(std::string& v, double o) {
    if (std::isnan(o)) {
        v = "NaN";
        return;
    }
    if (std::isinf(o)) {
        v = o < 0 ? "-INF" : "INF";
        return;
    }
    char buf[40];
    int n = std::snprintf(buf, sizeof buf, "%.14g", o);
    if (n < 0) n = 0;
    char dp = locale_decimal_point();
    for (int i = 0; i < n; ++i) {
        if (buf[i] == dp) buf[i] = '.';
        if (buf[i] >= 'A' && buf[i] <= 'Z') buf[i] = static_cast<char>(buf[i] - 'A' + 'a');
    }
    v.assign(buf, static_cast<size_t>(n));
}
void o_to_v(std::string& v, float o) { o_to_v(v, static_cast<double>(o)); }
void o_to_v(std::string& v, const std::string& o) { v = o; }
void o_to_v(std::string& v, const std::wstring& o) {
    v.clear();
    wide_to_utf8(v, o.data(), o.size());
}
void o_to_v(std::string& v, const c_big_int& o) { v = o.get_as_string(); }
void o_to_v(std::string& v, const c_decimal& o) { v = o.get_as_string(); }
void o_to_v(std::string& v, const c_binary& o) { v = o.out_hex(); }
void o_to_v(std::string& v, const c_datetime& o) { v = o.get_as_string(); }
void o_to_v(std::string& v, const c_empty&) { v.clear(); }

// ---- c_big_int, c_decimal ---------------------------------------------------------------

bool c_big_int::set(const std::string& text) {
    if (!is_valid_integer(text)) return false;
    size_t i = 0;
    bool neg = false;
    if (text[0] == '+' || text[0] == '-') neg = text[i++] == '-';
    while (i + 1 < text.size() && text[i] == '0') ++i;
    std::string digits = text.substr(i);
    m_text = (neg && digits != "0") ? "-" + digits : digits;
    return true;
}

int c_big_int::compare(const c_big_int& o) const {
    bool neg = is_negative(), oneg = o.is_negative();
    if (neg != oneg) return neg ? -1 : 1;
    int magnitude;
    if (m_text.size() != o.m_text.size())
        magnitude = m_text.size() < o.m_text.size() ? -1 : 1;
    else
        magnitude = m_text.compare(o.m_text) < 0 ? -1 : (m_text == o.m_text ? 0 : 1);
    return neg ? -magnitude : magnitude;
}

bool c_decimal::set(const std::string& text) {
    if (!is_valid_decimal(text)) return false;
    m_text = text;
    return true;
}

double c_decimal::get_as_double() const {
    double d = 0;
    v_to_o(d, m_text);
    return d;
}

// ---- dates --------------------------------------------------------------------------------

static bool read_digits(const std::string& t, size_t& i, size_t count, int& out) {
    if (i + count > t.size()) return false;
    int v = 0;
    for (size_t k = 0; k < count; ++k) {
        char c = t[i + k];
        if (c < '0' || c > '9') return false;
        v = v * 10 + (c - '0');
    }
    i += count;
    out = v;
    return true;
}

static bool read_char(const std::string& t, size_t& i, char c) {
    if (i < t.size() && t[i] == c) {
        ++i;
        return true;
    }
    return false;
}

// Year: optional '-', four or more digits.
static bool read_year(const std::string& t, size_t& i, int& year) {
    bool neg = read_char(t, i, '-');
    size_t start = i;
    while (i < t.size() && t[i] >= '0' && t[i] <= '9' && i - start < 9) ++i;
    if (i - start < 4) return false;
    year = std::atoi(t.substr(start, i - start).c_str());
    if (neg) year = -year;
    return true;
}

static bool read_tz(const std::string& t, size_t& i, bool& has, int& minutes) {
    has = false;
    if (i == t.size()) return true;
    if (read_char(t, i, 'Z')) {
        has = true;
        minutes = 0;
        return i == t.size();
    }
    if (t[i] != '+' && t[i] != '-') return false;
    int sign = t[i++] == '-' ? -1 : 1, hh, mm;
    if (!read_digits(t, i, 2, hh) || !read_char(t, i, ':') || !read_digits(t, i, 2, mm)) return false;
    if (hh > 14 || mm > 59) return false;
    has = true;
    minutes = sign * (hh * 60 + mm);
    return i == t.size();
}

static bool read_time(const std::string& t, size_t& i, int& h, int& m, double& s) {
    int whole;
    if (!read_digits(t, i, 2, h) || !read_char(t, i, ':') || !read_digits(t, i, 2, m) || !read_char(t, i, ':') ||
        !read_digits(t, i, 2, whole))
        return false;
    s = whole;
    if (read_char(t, i, '.')) {
        size_t start = i;
        double scale = 0.1;
        while (i < t.size() && t[i] >= '0' && t[i] <= '9') {
            s += (t[i] - '0') * scale;
            scale /= 10;
            ++i;
        }
        if (i == start) return false;
    }
    return h <= 24 && m <= 59 && whole <= 60;
}

bool is_valid_datetime(const std::string& text) {
    c_datetime d;
    return d.set(text);
}

bool c_datetime::set(const std::string& t) {
    c_datetime d;
    size_t i = 0;
    if (!read_year(t, i, d.year) || !read_char(t, i, '-') || !read_digits(t, i, 2, d.month) || !read_char(t, i, '-') ||
        !read_digits(t, i, 2, d.day) || !read_char(t, i, 'T') || !read_time(t, i, d.hour, d.minute, d.second) ||
        !read_tz(t, i, d.has_tz, d.tz_minutes))
        return false;
    if (d.month < 1 || d.month > 12 || d.day < 1 || d.day > 31) return false;
    *this = d;
    return true;
}

std::string c_datetime::get_as_string() const {
    char buf[80];
    int whole = static_cast<int>(second);
    double frac = second - whole;
    int n = std::snprintf(buf, sizeof buf, "%s%04d-%02d-%02dT%02d:%02d:%02d", year < 0 ? "-" : "",
                          year < 0 ? -year : year, month, day, hour, minute, whole);
    std::string out(buf, static_cast<size_t>(n > 0 ? n : 0));
    if (frac > 0) {
        char f[32];
        std::snprintf(f, sizeof f, "%.6f", frac);
        std::string digits(f + 1);  // ".xxxxxx", independent of the locale's decimal sign below
        digits[0] = '.';
        while (digits.size() > 2 && digits.back() == '0') digits.pop_back();
        out += digits;
    }
    if (has_tz) {
        if (tz_minutes == 0) {
            out += 'Z';
        } else {
            int m = tz_minutes < 0 ? -tz_minutes : tz_minutes;
            std::snprintf(buf, sizeof buf, "%c%02d:%02d", tz_minutes < 0 ? '-' : '+', m / 60, m % 60);
            out += buf;
        }
    }
    return out;
}

bool c_datetime::operator==(const c_datetime& o) const {
    return year == o.year && month == o.month && day == o.day && hour == o.hour && minute == o.minute &&
           second == o.second && has_tz == o.has_tz && tz_minutes == o.tz_minutes;
}

static bool check_date_text(int kind, const std::string& t) {
    size_t i = 0;
    int a, b, y;
    double s;
    bool tz;
    int tzm;
    switch (kind) {
        case DT_DATE:
            return read_year(t, i, y) && read_char(t, i, '-') && read_digits(t, i, 2, a) && read_char(t, i, '-') &&
                   read_digits(t, i, 2, b) && a >= 1 && a <= 12 && b >= 1 && b <= 31 && read_tz(t, i, tz, tzm);
        case DT_TIME: return read_time(t, i, a, b, s) && read_tz(t, i, tz, tzm);
        case DT_GYEAR: return read_year(t, i, y) && read_tz(t, i, tz, tzm);
        case DT_GYEARMONTH:
            return read_year(t, i, y) && read_char(t, i, '-') && read_digits(t, i, 2, a) && a >= 1 && a <= 12 &&
                   read_tz(t, i, tz, tzm);
        case DT_GMONTH:
            return read_char(t, i, '-') && read_char(t, i, '-') && read_digits(t, i, 2, a) && a >= 1 && a <= 12 &&
                   read_tz(t, i, tz, tzm);
        case DT_GMONTHDAY:
            return read_char(t, i, '-') && read_char(t, i, '-') && read_digits(t, i, 2, a) && read_char(t, i, '-') &&
                   read_digits(t, i, 2, b) && a >= 1 && a <= 12 && b >= 1 && b <= 31 && read_tz(t, i, tz, tzm);
        case DT_GDAY:
            return read_char(t, i, '-') && read_char(t, i, '-') && read_char(t, i, '-') && read_digits(t, i, 2, a) &&
                   a >= 1 && a <= 31 && read_tz(t, i, tz, tzm);
        case DT_DURATION: {
            // -?P(nY)?(nM)?(nD)?(T(nH)?(nM)?(n(.n)?S)?)? with at least one part.
            read_char(t, i, '-');
            if (!read_char(t, i, 'P')) return false;
            bool any = false, in_time = false;
            while (i < t.size()) {
                if (!in_time && read_char(t, i, 'T')) {
                    in_time = true;
                    if (i == t.size()) return false;
                    continue;
                }
                size_t start = i;
                while (i < t.size() && ((t[i] >= '0' && t[i] <= '9') || t[i] == '.')) ++i;
                if (i == start || i == t.size()) return false;
                char unit = t[i++];
                if (std::strchr(in_time ? "HMS" : "YMD", unit) == nullptr) return false;
                any = true;
            }
            return any;
        }
    }
    return false;
}

template <int Kind>
bool c_date_text<Kind>::set(const std::string& text) {
    if (!check_date_text(Kind, text)) return false;
    m_text = text;
    return true;
}
template class c_date_text<DT_DATE>;
template class c_date_text<DT_TIME>;
template class c_date_text<DT_GYEAR>;
template class c_date_text<DT_GYEARMONTH>;
template class c_date_text<DT_GMONTH>;
template class c_date_text<DT_GMONTHDAY>;
template class c_date_text<DT_GDAY>;
template class c_date_text<DT_DURATION>;

// ---- patterns -----------------------------------------------------------------------------

namespace {
void silent_error(void*, const char*, ...) {}
}  // namespace

c_regex::c_regex(const char* pattern) {
    // A pattern that doesn't compile is no news to print: it simply never matches.
    xmlGenericErrorFunc former = xmlGenericError;
    void* former_context = xmlGenericErrorContext;
    xmlSetGenericErrorFunc(nullptr, silent_error);
    m_compiled = xmlRegexpCompile(reinterpret_cast<const xmlChar*>(pattern ? pattern : ""));
    xmlSetGenericErrorFunc(former_context, former);
}

c_regex::~c_regex() {
    if (m_compiled) xmlRegFreeRegexp(static_cast<xmlRegexpPtr>(m_compiled));
}

bool c_regex::is_match(const std::string& text) const {
    if (!m_compiled) return false;
    if (text.find('\0') != std::string::npos) return false;
    return xmlRegexpExec(static_cast<xmlRegexpPtr>(m_compiled), reinterpret_cast<const xmlChar*>(text.c_str())) == 1;
}

size_t utf8_length(const std::string& text) {
    size_t n = 0;
    for (unsigned char c : text)
        if ((c & 0xC0) != 0x80) ++n;
    return n;
}

}  // namespace lmx
}  // namespace zelvar
