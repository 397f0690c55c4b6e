// Simple value types of the schema-bound classes, their text conversions and the validators
// that generated classes combine into validation specs.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "ooxml/lmx_error.h"

namespace zelvar {
namespace lmx {

// How white space in a value is treated before conversion.
enum elmx_whitespace { EXWS_PRESERVE = 0, EXWS_REPLACE = 1, EXWS_COLLAPSE = 2 };

// ---- UTF-8 and escaping -------------------------------------------------------------------

// Appends the UTF-8 form of a code point (no checks: callers pass valid scalar values).
void append_utf8(std::string& out, uint32_t code_point);
// Decodes UTF-8 to one wchar_t per code point; a malformed byte becomes U+FFFD.
void utf8_to_wide(std::wstring& out, const char* text, size_t size);
inline std::wstring utf8_to_wide(const std::string& text) {
    std::wstring out;
    utf8_to_wide(out, text.data(), text.size());
    return out;
}
// Encodes wide text as UTF-8: a surrogate pair is joined, a high surrogate at the very end ends
// the text, any other lone surrogate or value beyond U+10FFFF becomes U+FFFD.
void wide_to_utf8(std::string& out, const wchar_t* text, size_t size);
inline std::string wide_to_utf8(const std::wstring& text) {
    std::string out;
    wide_to_utf8(out, text.data(), text.size());
    return out;
}

// Appends text escaped for attribute values and element content alike: " ' & < always, and
// > only behind a ] at index 2 or later (the one place where "]]>" could form).
void output_convert_to_xml(std::string& out, const char* text, size_t size);
void output_convert_to_xml(std::string& out, const std::string& text);
// The same for wide text, converted to UTF-8 on the way.
void output_convert_to_xml(std::string& out, const std::wstring& text);

// ---- value types --------------------------------------------------------------------------

// hexBinary and base64Binary content.
class c_binary {
public:
    c_binary() = default;
    c_binary(const unsigned char* data, size_t size) : m_bytes(data, data + size) {}
    bool from_hex(const std::string& text);
    bool from_base64(const std::string& text);
    std::string out_hex() const;  // upper-case digits
    std::string out_base64() const;
    const std::vector<unsigned char>& get() const { return m_bytes; }
    std::vector<unsigned char>& get() { return m_bytes; }
    size_t size() const { return m_bytes.size(); }
    bool operator==(const c_binary& o) const { return m_bytes == o.m_bytes; }
    bool operator!=(const c_binary& o) const { return m_bytes != o.m_bytes; }

private:
    std::vector<unsigned char> m_bytes;
};

// xs:integer of any size, kept as its canonical text: optional '-' and digits without leading
// zeros. Compared by value.
class c_big_int {
public:
    c_big_int() : m_text("0") {}
    c_big_int(long long value) : m_text(std::to_string(value)) {}
    bool set(const std::string& text);  // false if the text is no integer
    const std::string& get_as_string() const { return m_text; }
    bool is_negative() const { return m_text[0] == '-'; }
    int compare(const c_big_int& o) const;
    bool operator==(const c_big_int& o) const { return compare(o) == 0; }
    bool operator!=(const c_big_int& o) const { return compare(o) != 0; }
    bool operator<(const c_big_int& o) const { return compare(o) < 0; }
    bool operator>(const c_big_int& o) const { return compare(o) > 0; }
    bool operator<=(const c_big_int& o) const { return compare(o) <= 0; }
    bool operator>=(const c_big_int& o) const { return compare(o) >= 0; }

private:
    std::string m_text;
};

// xs:decimal, kept as its validated text.
class c_decimal {
public:
    c_decimal() : m_text("0") {}
    bool set(const std::string& text);
    const std::string& get_as_string() const { return m_text; }
    double get_as_double() const;
    bool operator==(const c_decimal& o) const { return m_text == o.m_text; }
    bool operator!=(const c_decimal& o) const { return m_text != o.m_text; }

private:
    std::string m_text;
};

// xs:dateTime: fields plus an optional time zone (minutes east of UTC).
class c_datetime {
public:
    int year = 1, month = 1, day = 1, hour = 0, minute = 0;
    double second = 0;
    bool has_tz = false;
    int tz_minutes = 0;

    bool set(const std::string& text);  // false if the text is no dateTime
    std::string get_as_string() const;
    bool operator==(const c_datetime& o) const;
    bool operator!=(const c_datetime& o) const { return !(*this == o); }
};

// The other date and time types are kept as the text that passed their lexical check.
template <int Kind>
class c_date_text {
public:
    bool set(const std::string& text);
    const std::string& get_as_string() const { return m_text; }
    bool operator==(const c_date_text& o) const { return m_text == o.m_text; }
    bool operator!=(const c_date_text& o) const { return m_text != o.m_text; }

private:
    std::string m_text;
};
enum { DT_DATE, DT_TIME, DT_GYEAR, DT_GYEARMONTH, DT_GMONTH, DT_GMONTHDAY, DT_GDAY, DT_DURATION };
typedef c_date_text<DT_DATE> c_date;
typedef c_date_text<DT_TIME> c_time;
typedef c_date_text<DT_GYEAR> c_gyear;
typedef c_date_text<DT_GYEARMONTH> c_gyearmonth;
typedef c_date_text<DT_GMONTH> c_gmonth;
typedef c_date_text<DT_GMONTHDAY> c_gmonthday;
typedef c_date_text<DT_GDAY> c_gday;
typedef c_date_text<DT_DURATION> c_duration;

// An element without content.
struct c_empty {
    bool operator==(const c_empty&) const { return true; }
    bool operator!=(const c_empty&) const { return false; }
};

// ---- lexical checks -----------------------------------------------------------------------
bool is_valid_bool(const std::string& text);
bool is_valid_integer(const std::string& text);  // optional sign, at least one digit
bool is_valid_float(const std::string& text);    // xs:double / xs:float, with INF, -INF, NaN
bool is_valid_decimal(const std::string& text);
bool is_valid_hexbinary(const std::string& text);
bool is_valid_base64binary(const std::string& text);
bool is_valid_datetime(const std::string& text);

// ---- text to value (false: the text has no value of the type) -----------------------------
bool v_to_o(bool& o, const std::string& v);
bool v_to_o(int8_t& o, const std::string& v);
bool v_to_o(uint8_t& o, const std::string& v);
bool v_to_o(int16_t& o, const std::string& v);
bool v_to_o(uint16_t& o, const std::string& v);
bool v_to_o(int32_t& o, const std::string& v);
bool v_to_o(uint32_t& o, const std::string& v);
bool v_to_o(long& o, const std::string& v);
bool v_to_o(unsigned long& o, const std::string& v);
bool v_to_o(long long& o, const std::string& v);
bool v_to_o(unsigned long long& o, const std::string& v);
bool v_to_o(double& o, const std::string& v);
bool v_to_o(float& o, const std::string& v);
bool v_to_o(std::string& o, const std::string& v);
bool v_to_o(std::wstring& o, const std::string& v);
bool v_to_o(c_big_int& o, const std::string& v);
bool v_to_o(c_decimal& o, const std::string& v);
bool v_to_o(c_binary& o, const std::string& v);  // hexBinary
bool v_to_o(c_datetime& o, const std::string& v);
template <int K>
bool v_to_o(c_date_text<K>& o, const std::string& v) {
    return o.set(v);
}
bool v_to_o(c_empty& o, const std::string& v);

// ---- value to text (UTF-8, not yet escaped) ------------------------------------------------
void o_to_v(std::string& v, bool o);
void o_to_v(std::string& v, int8_t o);
void o_to_v(std::string& v, uint8_t o);
void o_to_v(std::string& v, int16_t o);
void o_to_v(std::string& v, uint16_t o);
void o_to_v(std::string& v, int32_t o);
void o_to_v(std::string& v, uint32_t o);
void o_to_v(std::string& v, long o);
void o_to_v(std::string& v, unsigned long o);
void o_to_v(std::string& v, long long o);
void o_to_v(std::string& v, unsigned long long o);
void o_to_v(std::string& v, double o);  // "%.14g" lower-cased, NaN, INF, -INF
void o_to_v(std::string& v, float o);
void o_to_v(std::string& v, const std::string& o);
void o_to_v(std::string& v, const std::wstring& o);
void o_to_v(std::string& v, const c_big_int& o);
void o_to_v(std::string& v, const c_decimal& o);
void o_to_v(std::string& v, const c_binary& o);  // hexBinary
void o_to_v(std::string& v, const c_datetime& o);
template <int K>
void o_to_v(std::string& v, const c_date_text<K>& o) {
    v = o.get_as_string();
}
void o_to_v(std::string& v, const c_empty& o);

// ---- patterns -----------------------------------------------------------------------------

// An xs:pattern, compiled by libxml2's regular expressions when the static is made, so that
// readers in several threads only read it. A pattern that does not compile matches nothing.
class c_regex {
public:
    explicit c_regex(const char* pattern);
    ~c_regex();
    c_regex(const c_regex&) = delete;
    c_regex& operator=(const c_regex&) = delete;
    bool is_match(const std::string& utf8_text) const;

private:
    void* m_compiled = nullptr;
};

// Length of UTF-8 text in characters, for length facets.
size_t utf8_length(const std::string& text);

}  // namespace lmx
}  // namespace zelvar
