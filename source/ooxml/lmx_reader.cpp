#include "ooxml/lmx_reader.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

namespace zelvar {
namespace lmx {

namespace {

const char* const xsi_uri = "http://www.w3.org/2001/XMLSchema-instance";
const char* const xml_uri = "http://www.w3.org/XML/1998/namespace";

// Character classes of the tokenizer, one table lookup per byte.
enum : unsigned char {
    CC_NAME = 1,        // may stand in a name
    CC_WS = 2,          // white space
    CC_SPECIAL0 = 4,    // ends a run of text in preserve mode: < & \r
    CC_SPECIAL12 = 8,   // ends a run in the other modes: also white space
};

struct s_char_table {
    unsigned char c[256];
    s_char_table() {
        for (int i = 0; i < 256; ++i) {
            unsigned char v = 0;
            if ((i >= 'a' && i <= 'z') || (i >= 'A' && i <= 'Z') || (i >= '0' && i <= '9') || i == '_' || i == ':' ||
                i == '-' || i == '.' || i >= 0x80)
                v |= CC_NAME;
            if (i == ' ' || i == '\t' || i == '\n' || i == '\r') v |= CC_WS | CC_SPECIAL12;
            if (i == '<' || i == '&' || i == '\r') v |= CC_SPECIAL0 | CC_SPECIAL12;
            c[i] = v;
        }
    }
};
const s_char_table char_table;

inline bool is_ws(char c) { return char_table.c[static_cast<unsigned char>(c)] & CC_WS; }
inline bool is_name_char(char c) { return char_table.c[static_cast<unsigned char>(c)] & CC_NAME; }
inline bool is_name_start(char c) {
    return is_name_char(c) && !(c >= '0' && c <= '9') && c != '-' && c != '.';
}

inline bool starts_with(const char* p, const char* end, const char* lit) {
    size_t n = std::strlen(lit);
    return static_cast<size_t>(end - p) >= n && std::memcmp(p, lit, n) == 0;
}

const char* find(const char* p, const char* end, const char* lit) {
    size_t n = std::strlen(lit);
    while (static_cast<size_t>(end - p) >= n) {
        const void* hit = std::memchr(p, lit[0], static_cast<size_t>(end - p) - n + 1);
        if (!hit) return nullptr;
        p = static_cast<const char*>(hit);
        if (std::memcmp(p, lit, n) == 0) return p;
        ++p;
    }
    return nullptr;
}

std::string describe(const char* p, const char* end) {
    if (p >= end) return "end of input";
    return std::string(p, static_cast<size_t>(std::min<std::ptrdiff_t>(end - p, 20)));
}

bool iequals(const std::string& a, const char* b) {
    size_t n = std::strlen(b);
    if (a.size() != n) return false;
    for (size_t i = 0; i < n; ++i) {
        char x = a[i], y = b[i];
        if (x >= 'a' && x <= 'z') x = static_cast<char>(x - 'a' + 'A');
        if (y >= 'a' && y <= 'z') y = static_cast<char>(y - 'a' + 'A');
        if (x != y) return false;
    }
    return true;
}

// Entity expansion may add at most this much beyond twice the size of the input, so that nested
// definitions can't blow a small document up to gigabytes. The allowance is per document and a
// package holds many, so it stays small: a package's expansions then follow its own size.
const size_t entity_budget_base = 64u << 10;
// Each expansion is charged this much beyond its text: looking an entity up is work even when
// its text is empty, and nested empty entities would otherwise expand billions of times for free.
const size_t entity_expansion_cost = 16;
const int max_entity_depth = 32;

}  // namespace

// ---- sources --------------------------------------------------------------------------------

c_read::~c_read() = default;

c_read_file::c_read_file(const char* file_name) : m_name(file_name ? file_name : "") {
    std::ifstream in(m_name, std::ios::binary);
    if (!in) return;
    m_data.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    m_open = !in.bad();
}

// ---- namespaces -----------------------------------------------------------------------------

c_enumerated_namespaces::c_enumerated_namespaces() {
    add(xml_uri, NS_ID_XML);
    add(xsi_uri, NS_ID_XSI);
}

void c_enumerated_namespaces::add(const std::string& uri, int id) {
    if (m_ids.count(uri)) return;
    m_ids.emplace(uri, id);
    m_uris.emplace(id, uri);
}

int c_enumerated_namespaces::reassign(const std::string& uri, int id) {
    auto it = m_ids.find(uri);
    if (it == m_ids.end()) {
        add(uri, id);
        return -1;
    }
    int former = it->second;
    if (former < 0x10000 || m_uris.count(id)) return -1;  // fixed ids stay
    it->second = id;
    m_uris.erase(former);
    m_uris.emplace(id, uri);
    return former;
}

int c_enumerated_namespaces::get_id(const std::string& uri) {
    auto it = m_ids.find(uri);
    if (it != m_ids.end()) return it->second;
    int id = m_next_id++;
    m_ids.emplace(uri, id);
    m_uris.emplace(id, uri);
    return id;
}

const std::string& c_enumerated_namespaces::get_uri(int id) const {
    static const std::string none;
    auto it = m_uris.find(id);
    return it == m_uris.end() ? none : it->second;
}

// ---- input decoding -------------------------------------------------------------------------

c_xml::c_xml(c_read& source) : m_source(source) {}

bool c_xml::fail(elmx_error code, const std::string& text) {
    m_error.set(code, text);
    return false;
}

bool c_xml::decode_utf16(const unsigned char* b, const unsigned char* e, bool big_endian, bool ucs2,
                         std::string& out) {
    if ((e - b) % 2) return fail_eof();
    out.reserve(out.size() + static_cast<size_t>(e - b) / 2);
    for (const unsigned char* p = b; p < e; p += 2) {
        uint32_t u = big_endian ? (p[0] << 8 | p[1]) : (p[1] << 8 | p[0]);
        if (!ucs2 && u >= 0xD800 && u <= 0xDBFF) {
            if (e - p < 4) return fail(ELMX_BAD_CHAR_ENCODING, "Unrecognised character encoding");
            uint32_t low = big_endian ? (p[2] << 8 | p[3]) : (p[3] << 8 | p[2]);
            if (low < 0xDC00 || low > 0xDFFF) return fail(ELMX_BAD_CHAR_ENCODING, "Unrecognised character encoding");
            u = 0x10000 + ((u - 0xD800) << 10) + (low - 0xDC00);
            p += 2;
        } else if (!ucs2 && u >= 0xDC00 && u <= 0xDFFF) {
            return fail(ELMX_BAD_CHAR_ENCODING, "Unrecognised character encoding");
        }
        append_utf8(out, u);
    }
    return true;
}

// Finds the byte form from the first bytes. UTF-8 input in a memory block is read in place;
// other forms are converted: first up to the first '>', which ends any XML declaration, and
// the rest once the declaration has said how.
bool c_xml::start_input() {
    m_started = true;
    if (!m_source.is_open()) return fail(ELMX_UNABLE_TO_OPEN_FILE, "Unable to open " + m_source.get_source_id());
    const char* begin = nullptr;
    const char* end = nullptr;
    if (!m_source.get_block(&begin, &end)) {
        // A source that only gives bytes one by one is read whole first.
        m_source.rewind();
        for (int c; (c = m_source.read()) >= 0;) m_raw_copy += static_cast<char>(c);
        begin = m_raw_copy.data();
        end = begin + m_raw_copy.size();
    }
    const unsigned char* b = reinterpret_cast<const unsigned char*>(begin);
    size_t n = static_cast<size_t>(end - begin);
    if (n == 0) return fail_eof();
    size_t skip = 0;
    unsigned c0 = b[0], c1 = n > 1 ? b[1] : 0x100;
    auto ws_or_lt = [](unsigned c) { return c == '<' || c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
    if (c0 == 0xFF && c1 == 0xFE) {
        if (n < 4 || b[2] < 1 || b[2] > 127 || b[3] != 0)
            return fail(ELMX_BAD_CHAR_ENCODING, "Unrecognised character encoding");
        m_form = FORM_UTF16LE, skip = 2;
    } else if (c0 == 0xFE && c1 == 0xFF) {
        if (n < 4 || b[2] != 0 || b[3] < 1 || b[3] > 127)
            return fail(ELMX_BAD_CHAR_ENCODING, "Unrecognised character encoding");
        m_form = FORM_UTF16BE, skip = 2;
    } else if (c0 == 0xEF) {
        if (c1 != 0xBB || n < 3 || b[2] != 0xBF) return fail(ELMX_BAD_CHAR_ENCODING, "Unrecognised character encoding");
        m_form = FORM_8BIT, skip = 3;
    } else if (c0 == 0) {
        if (c1 > 0xFF || !ws_or_lt(c1)) return fail(ELMX_BAD_CHAR_ENCODING, "Unrecognised character encoding");
        m_form = FORM_UTF16BE;
    } else if (ws_or_lt(c0)) {
        m_form = (n > 1 && c1 == 0) ? FORM_UTF16LE : FORM_8BIT;
    } else {
        return fail(ELMX_BAD_CHAR_ENCODING, "Unrecognised character encoding");
    }
    if (m_form == FORM_8BIT) {
        m_text_begin = begin + skip;
        m_end = end;
    } else {
        m_raw_begin = b + skip;
        m_raw_end = b + n;
        // Convert up to the first '>' unit only.
        const unsigned char* p = m_raw_begin;
        bool be = m_form == FORM_UTF16BE;
        while (m_raw_end - p >= 2) {
            unsigned u = be ? (p[0] << 8 | p[1]) : (p[1] << 8 | p[0]);
            p += 2;
            if (u == '>') break;
        }
        std::string head;
        if (!decode_utf16(m_raw_begin, p, be, false, head)) return false;
        m_raw_begin = p;
        m_converted.swap(head);
        m_text_begin = m_converted.data();
        m_end = m_text_begin + m_converted.size();
    }
    m_p = m_text_begin;
    m_entity_budget = entity_budget_base + n * 2;
    return true;
}

// version, encoding and standalone, in that order; the switch of the input form follows the
// encoding name.
bool c_xml::read_xml_decl() {
    const char* p = m_p + 5;  // past "<?xml"
    std::string names[3], values[3];
    int count = 0;
    for (;;) {
        bool had_ws = false;
        while (p < m_end && is_ws(*p)) ++p, had_ws = true;
        if (p >= m_end) return fail_eof();
        if (*p == '?') {
            if (p + 1 >= m_end) return fail_eof();
            if (p[1] != '>') return fail(ELMX_BAD_XML_DECL, "Bad XML Decl spec");
            p += 2;
            break;
        }
        if (!had_ws || count == 3) return fail(ELMX_BAD_XML_DECL, "Bad XML Decl spec");
        const char* name = p;
        while (p < m_end && is_name_char(*p)) ++p;
        names[count].assign(name, static_cast<size_t>(p - name));
        while (p < m_end && is_ws(*p)) ++p;
        if (p >= m_end) return fail_eof();
        if (*p != '=') return fail(ELMX_BAD_XML_DECL, "Bad XML Decl spec");
        ++p;
        while (p < m_end && is_ws(*p)) ++p;
        if (p >= m_end) return fail_eof();
        char q = *p;
        if (q != '"' && q != '\'') return fail(ELMX_BAD_XML_DECL, "Bad XML Decl spec");
        const char* v = ++p;
        while (p < m_end && *p != q) ++p;
        if (p >= m_end) return fail_eof();
        values[count++].assign(v, static_cast<size_t>(p - v));
        ++p;
    }
    int i = 0;
    if (count == 0 || names[0] != "version") return fail(ELMX_BAD_XML_DECL, "Version not present in XML Decl");
    if (values[0] != "1.0" && values[0] != "1.1")
        return fail(ELMX_BAD_XML_VERSION, "XML version " + values[0] + " not understood");
    ++i;
    std::string encoding;
    if (i < count && names[i] == "encoding") encoding = values[i++];
    if (i < count && names[i] == "standalone") ++i;
    if (i != count) return fail(ELMX_BAD_XML_DECL, "Bad XML Decl spec");
    m_p = p;

    bool utf16_form = m_form != FORM_8BIT;
    bool latin1 = false, ucs2 = false;
    if (!encoding.empty()) {
        bool needs_utf16;
        if (iequals(encoding, "ISO-10646-UCS-2")) {
            needs_utf16 = true, ucs2 = true;
        } else if (iequals(encoding, "ISO-8859-1") || iequals(encoding, "US-ASCII")) {
            needs_utf16 = false, latin1 = true;
        } else if (iequals(encoding, "UTF-8")) {
            needs_utf16 = false;
        } else if (iequals(encoding, "UTF-16")) {
            needs_utf16 = true;
        } else {
            return fail(ELMX_BAD_CHAR_ENCODING, "Unknown character encoding specified");
        }
        if (needs_utf16 != utf16_form)
            return fail(ELMX_ENCODING_MISMATCH, "Mis-match between specfied encoding and byte format");
    }
    if (utf16_form) {
        // m_p is the end of the converted head; convert the rest in the declared way.
        size_t offset = static_cast<size_t>(m_p - m_text_begin);
        if (!decode_utf16(m_raw_begin, m_raw_end, m_form == FORM_UTF16BE, ucs2, m_converted)) return false;
        m_raw_begin = m_raw_end;
        m_text_begin = m_converted.data();
        m_p = m_text_begin + offset;
        m_end = m_text_begin + m_converted.size();
    } else if (latin1) {
        std::string text(m_text_begin, m_p);
        size_t offset = text.size();
        text.reserve(text.size() + static_cast<size_t>(m_end - m_p));
        for (const char* q = m_p; q < m_end; ++q) append_utf8(text, static_cast<unsigned char>(*q));
        m_converted.swap(text);
        m_text_begin = m_converted.data();
        m_p = m_text_begin + offset;
        m_end = m_text_begin + m_converted.size();
    }
    return true;
}

bool c_xml::read_prolog() {
    if (!start_input()) return false;
    bool at_start = true;
    for (;;) {
        if (at_start && starts_with(m_p, m_end, "<?xml") && m_end - m_p > 5 && (is_ws(m_p[5]) || m_p[5] == '?')) {
            if (!read_xml_decl()) return false;
            at_start = false;
            continue;
        }
        if (m_form != FORM_8BIT && m_raw_begin != m_raw_end) {
            // No declaration: the rest is UTF-16 as detected.
            size_t offset = static_cast<size_t>(m_p - m_text_begin);
            if (!decode_utf16(m_raw_begin, m_raw_end, m_form == FORM_UTF16BE, false, m_converted)) return false;
            m_raw_begin = m_raw_end;
            m_text_begin = m_converted.data();
            m_p = m_text_begin + offset;
            m_end = m_text_begin + m_converted.size();
        }
        at_start = false;
        while (m_p < m_end && is_ws(*m_p)) ++m_p;
        if (m_p >= m_end) return fail_eof();
        if (*m_p != '<') return fail(ELMX_BADLY_FORMED, "Text before the root element");
        if (starts_with(m_p, m_end, "<?")) {
            if (!skip_pi(false)) return false;
        } else if (starts_with(m_p, m_end, "<!--")) {
            if (!skip_comment()) return false;
        } else if (starts_with(m_p, m_end, "<!DOCTYPE")) {
            if (m_doctype_read) return fail(ELMX_BAD_DTD, "Document Type Declaration already read");
            if (!read_doctype()) return false;
        } else if (m_end - m_p >= 2 && m_p[1] == '!') {
            return fail(ELMX_BADLY_FORMED, "Unexpected markup before the root element");
        } else {
            return true;
        }
    }
}

// ---- markup that carries no events ------------------------------------------------------------

bool c_xml::skip_comment() {
    const char* p = m_p + 4;
    const char* dashes = find(p, m_end, "--");
    if (!dashes) return fail_eof();
    if (dashes + 2 >= m_end) return fail_eof();
    if (dashes[2] != '>') return fail(ELMX_BAD_COMMENT, "Badly formed comment");
    m_p = dashes + 3;
    return true;
}

bool c_xml::skip_pi(bool) {
    const char* p = m_p + 2;
    const char* target = p;
    while (p < m_end && is_name_char(*p)) ++p;
    std::string name(target, static_cast<size_t>(p - target));
    if (iequals(name, "xml")) return fail(ELMX_BAD_XML_DECL, "XML declaration not at start of document");
    if (name.empty()) return fail(ELMX_NOT_WELL_FORMED, "Processing instruction without a target");
    const char* close = find(p, m_end, "?>");
    if (!close) return fail_eof();
    m_p = close + 2;
    return true;
}

bool c_xml::skip_cdata() {
    const char* close = find(m_p + 9, m_end, "]]>");
    if (!close) return fail_eof();
    m_p = close + 3;
    return true;
}

// Skips one markup declaration of the internal subset, quoted texts included.
bool c_xml::skip_markup_decl() {
    const char* p = m_p + 2;
    while (p < m_end && *p != '>') {
        if (*p == '"' || *p == '\'') {
            const char* q = static_cast<const char*>(std::memchr(p + 1, *p, static_cast<size_t>(m_end - p - 1)));
            if (!q) return fail_eof();
            p = q;
        } else if (*p == '<') {
            return fail(ELMX_BAD_DTD, "Badly formed DTD");
        }
        ++p;
    }
    if (p >= m_end) return fail_eof();
    m_p = p + 1;
    return true;
}

bool c_xml::read_entity_decl() {
    const char* p = m_p + 8;  // past "<!ENTITY"
    if (p >= m_end) return fail_eof();
    if (!is_ws(*p)) return fail(ELMX_BAD_DTD, "Badly formed DTD");
    while (p < m_end && is_ws(*p)) ++p;
    bool parameter = false;
    if (p < m_end && *p == '%') {
        parameter = true;
        ++p;
        while (p < m_end && is_ws(*p)) ++p;
    }
    const char* name = p;
    while (p < m_end && is_name_char(*p)) ++p;
    if (p == name) return p >= m_end ? fail_eof() : fail(ELMX_BAD_DTD, "Badly formed DTD");
    std::string entity_name(name, static_cast<size_t>(p - name));
    while (p < m_end && is_ws(*p)) ++p;
    if (p >= m_end) return fail_eof();
    if (starts_with(p, m_end, "SYSTEM") || starts_with(p, m_end, "PUBLIC"))
        return fail(ELMX_EXTERNAL_ENTITY, "External Entity definitions not supported");
    char q = *p;
    if (q != '"' && q != '\'') return fail(ELMX_BAD_DTD, "Badly formed DTD");
    const char* v = ++p;
    const char* close = static_cast<const char*>(std::memchr(p, q, static_cast<size_t>(m_end - p)));
    if (!close) return fail_eof();
    p = close + 1;
    while (p < m_end && is_ws(*p)) ++p;
    if (p >= m_end) return fail_eof();
    if (*p != '>') return fail(ELMX_BAD_DTD, "Badly formed DTD");
    // Parameter entities only matter inside the subset itself, which is not expanded.
    if (!parameter) m_entities.emplace(entity_name, std::string(v, close));
    m_p = p + 1;
    return true;
}

// Reads <!DOCTYPE name ExternalID? [ internal subset ]? >; only the general entities of the
// internal subset are kept, and no external subset is ever fetched.
bool c_xml::read_doctype() {
    m_doctype_read = true;
    const char* p = m_p + 9;
    while (p < m_end && *p != '[' && *p != '>') {
        if (*p == '"' || *p == '\'') {
            const char* q = static_cast<const char*>(std::memchr(p + 1, *p, static_cast<size_t>(m_end - p - 1)));
            if (!q) return fail_eof();
            p = q;
        } else if (*p == '<') {
            return fail(ELMX_BAD_DTD, "Badly formed DTD");
        }
        ++p;
    }
    if (p >= m_end) return fail_eof();
    if (*p == '>') {
        m_p = p + 1;
        return true;
    }
    m_p = p + 1;
    for (;;) {
        while (m_p < m_end && is_ws(*m_p)) ++m_p;
        if (m_p >= m_end) return fail_eof();
        if (*m_p == ']') {
            ++m_p;
            while (m_p < m_end && is_ws(*m_p)) ++m_p;
            if (m_p >= m_end) return fail_eof();
            if (*m_p != '>') return fail(ELMX_BAD_DTD, "Badly formed DTD");
            ++m_p;
            return true;
        }
        if (starts_with(m_p, m_end, "<!ENTITY")) {
            if (!read_entity_decl()) return false;
        } else if (starts_with(m_p, m_end, "<!--")) {
            if (!skip_comment()) return false;
        } else if (starts_with(m_p, m_end, "<?")) {
            if (!skip_pi(false)) return false;
        } else if (starts_with(m_p, m_end, "<!")) {
            if (!skip_markup_decl()) return false;
        } else if (*m_p == '%') {
            const char* semi = static_cast<const char*>(std::memchr(m_p, ';', static_cast<size_t>(m_end - m_p)));
            if (!semi) return fail_eof();
            m_p = semi + 1;
        } else {
            return fail(ELMX_BAD_DTD, "Badly formed DTD");
        }
    }
}

// ---- tags -----------------------------------------------------------------------------------

void c_xml::pop_element() {
    pop_bindings(m_open.back().binding_mark);
    m_open.pop_back();
    if (m_open.empty()) m_root_done = true;
}

c_xml::e_tag c_xml::next_tag() {
    if (m_error.is_set()) return TAG_ERROR;
    if (!m_started) {
        if (!read_prolog()) return TAG_ERROR;
    }
    if (m_pending_pop) {
        m_pending_pop = false;
        pop_element();
    }
    if (m_pending_end) {
        m_pending_end = false;
        m_tag_empty = false;
        m_attrs.clear();
        m_attr_index = 0;
        m_pending_pop = true;
        return TAG_END;
    }
    m_attrs.clear();
    m_attr_index = 0;
    m_tag_empty = false;
    for (;;) {
        if (m_root_done) return TAG_EOF;
        const char* lt = static_cast<const char*>(std::memchr(m_p, '<', static_cast<size_t>(m_end - m_p)));
        if (!lt || m_end - lt < 2) {
            m_p = m_end;
            fail_eof();
            return TAG_ERROR;
        }
        m_p = lt;
        char c = lt[1];
        if (c == '/') return read_end_tag();
        if (c == '?') {
            if (!skip_pi(false)) return TAG_ERROR;
            continue;
        }
        if (c == '!') {
            bool ok;
            if (starts_with(m_p, m_end, "<!--"))
                ok = skip_comment();
            else if (starts_with(m_p, m_end, "<![CDATA["))
                ok = skip_cdata();
            else if (starts_with(m_p, m_end, "<!DOCTYPE"))
                ok = fail(ELMX_BAD_DTD, m_doctype_read ? "Document Type Declaration already read"
                                                       : "Document Type Declaration not at start of document");
            else if (m_end - m_p < 9)
                ok = fail_eof();
            else
                ok = fail(ELMX_BADLY_FORMED, "Unexpected markup: " + describe(m_p, m_end));
            if (!ok) return TAG_ERROR;
            continue;
        }
        return read_start_tag();
    }
}

c_xml::e_tag c_xml::read_start_tag() {
    m_tag_begin = m_p;
    const char* p = m_p + 1;
    const char* name = p;
    if (!is_name_start(*p)) {
        fail(ELMX_NOT_WELL_FORMED, "Bad element name: " + describe(p, m_end));
        return TAG_ERROR;
    }
    while (p < m_end && is_name_char(*p)) ++p;
    m_tag_name = name;
    m_tag_name_length = static_cast<size_t>(p - name);
    uint32_t mark = static_cast<uint32_t>(m_bindings.size());
    for (;;) {
        bool had_ws = false;
        while (p < m_end && is_ws(*p)) ++p, had_ws = true;
        if (p >= m_end) {
            fail_eof();
            return TAG_ERROR;
        }
        if (*p == '>') {
            ++p;
            break;
        }
        if (*p == '/') {
            if (p + 1 >= m_end) {
                fail_eof();
                return TAG_ERROR;
            }
            if (p[1] != '>') {
                fail(ELMX_BAD_END_TAG, "Illegal character(s) after / at end of tag - " + describe(p + 1, m_end));
                return TAG_ERROR;
            }
            p += 2;
            m_tag_empty = true;
            break;
        }
        if (!had_ws || !is_name_start(*p)) {
            fail(ELMX_BAD_END_TAG, "Bad start tag end - " + describe(p, m_end));
            return TAG_ERROR;
        }
        s_attr a;
        a.name = p;
        const char* colon = nullptr;
        while (p < m_end && is_name_char(*p)) {
            if (*p == ':' && !colon) colon = p;
            ++p;
        }
        a.name_length = static_cast<uint32_t>(p - a.name);
        a.prefix_length = colon ? static_cast<uint32_t>(colon - a.name) : 0;
        while (p < m_end && is_ws(*p)) ++p;
        if (p >= m_end) {
            fail_eof();
            return TAG_ERROR;
        }
        if (*p != '=') {
            fail(ELMX_NOT_WELL_FORMED, std::string("Schema is not Well Formed (expected '=', got '") + *p + "')");
            return TAG_ERROR;
        }
        ++p;
        while (p < m_end && is_ws(*p)) ++p;
        if (p >= m_end) {
            fail_eof();
            return TAG_ERROR;
        }
        char q = *p;
        if (q != '"' && q != '\'') {
            fail(ELMX_NOT_WELL_FORMED, std::string("Schema is not Well Formed (expected '\"' or ''', got ") + q + ")");
            return TAG_ERROR;
        }
        ++p;
        const char* close = static_cast<const char*>(std::memchr(p, q, static_cast<size_t>(m_end - p)));
        if (!close) {
            fail_eof();
            return TAG_ERROR;
        }
        if (std::memchr(p, '<', static_cast<size_t>(close - p))) {
            fail(ELMX_NOT_WELL_FORMED, "'<' in the value of an attribute");
            return TAG_ERROR;
        }
        a.value = p;
        a.value_length = static_cast<uint32_t>(close - p);
        p = close + 1;
        a.is_ns_decl = (a.name_length == 5 && std::memcmp(a.name, "xmlns", 5) == 0) ||
                       (a.prefix_length == 5 && std::memcmp(a.name, "xmlns", 5) == 0);
        m_attrs.push_back(a);
    }
    if (m_open.size() >= max_depth) {
        fail(ELMX_BADLY_FORMED, "Elements nested too deeply");
        return TAG_ERROR;
    }
    // Declarations first, so that the tag's own name and attributes resolve against them.
    for (const s_attr& a : m_attrs) {
        if (!a.is_ns_decl) continue;
        std::string uri;
        if (!decode_text(a.value, a.value + a.value_length, EXWS_PRESERVE, uri)) return TAG_ERROR;
        s_binding b;
        b.prefix = a.prefix_length ? a.name + 6 : a.name;
        b.prefix_length = a.prefix_length ? a.name_length - 6 : 0;
        if (a.prefix_length && b.prefix_length == 0) {
            fail(ELMX_NOT_WELL_FORMED, "Empty namespace prefix");
            return TAG_ERROR;
        }
        b.ns_id = uri.empty() ? NS_ID_NONE : m_namespaces.get_id(uri);
        push_binding(b);
    }
    s_open o;
    o.name = m_tag_name;
    o.name_length = static_cast<uint32_t>(m_tag_name_length);
    o.binding_mark = mark;
    o.tag_begin = m_tag_begin;
    m_open.push_back(o);
    m_root_seen = true;
    m_p = p;
    m_pending_end = m_tag_empty;
    return TAG_START;
}

c_xml::e_tag c_xml::read_end_tag() {
    const char* p = m_p + 2;
    const char* name = p;
    while (p < m_end && is_name_char(*p)) ++p;
    size_t length = static_cast<size_t>(p - name);
    while (p < m_end && is_ws(*p)) ++p;
    if (p >= m_end) {
        fail_eof();
        return TAG_ERROR;
    }
    if (*p != '>' || length == 0) {
        fail(ELMX_BAD_END_TAG_SYNTAX, "Syntax error in end tag - " + describe(name, m_end));
        return TAG_ERROR;
    }
    if (m_open.empty()) {
        fail(ELMX_BADLY_FORMED, "End tag without a start tag");
        return TAG_ERROR;
    }
    const s_open& top = m_open.back();
    if (top.name_length != length || std::memcmp(top.name, name, length) != 0) {
        fail(ELMX_BAD_END_OF_ELEMENT, "Element start tag (" + std::string(top.name, top.name_length) +
                                          ") and end tag (" + std::string(name, length) + ") do not match");
        return TAG_ERROR;
    }
    m_tag_name = name;
    m_tag_name_length = length;
    m_p = p + 1;
    m_pending_pop = true;
    return TAG_END;
}

void c_xml::push_binding(const s_binding& b) {
    m_prefix_index[std::string_view(b.prefix, b.prefix_length)].push_back(static_cast<uint32_t>(m_bindings.size()));
    m_bindings.push_back(b);
    ++m_binding_generation;
}

void c_xml::pop_bindings(size_t mark) {
    while (m_bindings.size() > mark) {
        const s_binding& b = m_bindings.back();
        auto it = m_prefix_index.find(std::string_view(b.prefix, b.prefix_length));
        it->second.pop_back();
        if (it->second.empty()) m_prefix_index.erase(it);
        m_bindings.pop_back();
        ++m_binding_generation;
    }
}

int c_xml::resolve_prefix(const char* prefix, size_t length) const {
    if (length == 3 && std::memcmp(prefix, "xml", 3) == 0) return NS_ID_XML;
    const s_binding* found = nullptr;
    if (m_bindings.size() <= 32) {
        for (size_t i = m_bindings.size(); i-- > 0;) {
            const s_binding& b = m_bindings[i];
            if (b.prefix_length == length && std::memcmp(b.prefix, prefix, length) == 0) {
                found = &b;
                break;
            }
        }
    } else {
        auto it = m_prefix_index.find(std::string_view(prefix, length));
        if (it != m_prefix_index.end()) found = &m_bindings[it->second.back()];
    }
    if (!found) return length == 0 ? NS_ID_NONE : -1;
    if (length && found->ns_id == NS_ID_NONE) return -1;
    return found->ns_id;
}

void c_xml::collect_context(c_namespace_context& ctx, bool include_current) const {
    size_t limit = m_bindings.size();
    if (!include_current && !m_open.empty()) limit = m_open.back().binding_mark;
    const uint64_t key[3] = {m_binding_generation, include_current ? 1u : 0u, m_open.size()};
    if (std::equal(key, key + 3, m_context_key)) {
        ctx = m_context_cache;
        return;
    }
    // A binding is in the context when it is the innermost of its prefix; without the current
    // element's own declarations, a prefix that the element declares again is left out too,
    // since the element's text brings it back.
    c_namespace_context built;
    for (size_t i = 0; i < limit; ++i) {
        const s_binding& b = m_bindings[i];
        auto it = m_prefix_index.find(std::string_view(b.prefix, b.prefix_length));
        if (it->second.back() != i || b.ns_id == NS_ID_NONE) continue;
        built.add(std::string(b.prefix, b.prefix_length), m_namespaces.get_uri(b.ns_id));
    }
    m_context_cache = built;
    std::copy(key, key + 3, m_context_key);
    ctx = m_context_cache;
}

// ---- text values ----------------------------------------------------------------------------

namespace {

inline void put_ws(std::string& out, elmx_whitespace mode, char c, bool& at_start, bool& pending) {
    if (mode == EXWS_PRESERVE) {
        out += c;
    } else if (mode == EXWS_REPLACE) {
        out += ' ';
    } else if (!at_start) {
        pending = true;
    }
}

inline void put_text(std::string& out, const char* b, size_t n, bool& at_start, bool& pending) {
    if (pending) {
        out += ' ';
        pending = false;
    }
    out.append(b, n);
    at_start = false;
}

}  // namespace

bool c_xml::decode_reference(const char*& p, const char* end, elmx_whitespace mode, std::string& out, s_ws_state& ws,
                             int depth) {
    // p is at '&'.
    const char* name = p + 1;
    const char* limit = end - name > 256 ? name + 256 : end;
    const char* semi = static_cast<const char*>(std::memchr(name, ';', static_cast<size_t>(limit - name)));
    if (!semi) {
        if (end - name <= 256) return fail_eof();
        return fail(ELMX_NOT_WELL_FORMED, "Unterminated entity reference");
    }
    size_t length = static_cast<size_t>(semi - name);
    p = semi + 1;
    if (length == 0) return fail(ELMX_ENTITY_NOT_FOUND, "Entity not found: ");
    if (*name == '#') {
        const char* d = name + 1;
        bool hex = d < semi && *d == 'x';
        if (hex) ++d;
        if (d == semi) return fail(ELMX_ENTITY_NOT_FOUND, "Entity not found: " + std::string(name, length));
        uint32_t value = 0;
        for (; d < semi; ++d) {
            int digit;
            if (*d >= '0' && *d <= '9')
                digit = *d - '0';
            else if (hex && *d >= 'a' && *d <= 'f')
                digit = *d - 'a' + 10;
            else if (hex && *d >= 'A' && *d <= 'F')
                digit = *d - 'A' + 10;
            else
                return fail(ELMX_ENTITY_NOT_FOUND, "Entity not found: " + std::string(name, length));
            value = value * (hex ? 16 : 10) + static_cast<uint32_t>(digit);
            if (value > 0x100000) return fail(ELMX_ENTITY_NOT_FOUND, "Entity not found: " + std::string(name, length));
        }
        if (value == 0 || (value >= 0xD800 && value <= 0xDFFF))
            return fail(ELMX_ENTITY_NOT_FOUND, "Entity not found: " + std::string(name, length));
        // Next line and line separator are line ends here.
        if (value == 133 || value == 8232) value = 10;
        // A character given by number is taken as it is, even white space.
        if (ws.pending_space) {
            out += ' ';
            ws.pending_space = false;
        }
        ws.at_start = false;
        append_utf8(out, value);
        return true;
    }
    const char* rep = nullptr;
    switch (length) {
        case 2:
            if (name[0] == 'l' && name[1] == 't') rep = "<";
            if (name[0] == 'g' && name[1] == 't') rep = ">";
            break;
        case 3:
            if (std::memcmp(name, "amp", 3) == 0) rep = "&";
            break;
        case 4:
            if (std::memcmp(name, "apos", 4) == 0) rep = "'";
            if (std::memcmp(name, "quot", 4) == 0) rep = "\"";
            break;
    }
    if (rep) {
        put_text(out, rep, 1, ws.at_start, ws.pending_space);
        return true;
    }
    std::string entity(name, length);
    auto it = m_entities.find(entity);
    if (it == m_entities.end()) return fail(ELMX_ENTITY_NOT_FOUND, "Entity not found: " + entity);
    for (const std::string& open : m_expanding)
        if (open == entity) return fail(ELMX_BAD_DTD, "Recursive entity definition for: " + entity);
    if (depth >= max_entity_depth) return fail(ELMX_UNEXPECTED_ENTITY, "Entities nested too deeply: " + entity);
    const std::string& text = it->second;
    const size_t cost = text.size() + entity_expansion_cost;
    if (cost > m_entity_budget) return fail(ELMX_UNEXPECTED_ENTITY, "Entity expansion too large: " + entity);
    m_entity_budget -= cost;
    m_expanding.push_back(entity);
    bool ok = decode_run(text.data(), text.data() + text.size(), mode, out, ws, depth + 1);
    m_expanding.pop_back();
    return ok;
}

// Text without markup: runs, white space and references.
bool c_xml::decode_run(const char* p, const char* end, elmx_whitespace mode, std::string& out, s_ws_state& ws,
                       int depth) {
    const unsigned char stop = mode == EXWS_PRESERVE ? CC_SPECIAL0 : CC_SPECIAL12;
    while (p < end) {
        const char* run = p;
        while (p < end && !(char_table.c[static_cast<unsigned char>(*p)] & stop)) ++p;
        if (p > run) put_text(out, run, static_cast<size_t>(p - run), ws.at_start, ws.pending_space);
        if (p >= end) break;
        char c = *p;
        if (c == '&') {
            if (!decode_reference(p, end, mode, out, ws, depth)) return false;
        } else if (c == '\r') {
            // A line end is a line feed, whatever the file used.
            ++p;
            if (p < end && *p == '\n') ++p;
            put_ws(out, mode, '\n', ws.at_start, ws.pending_space);
        } else if (c == '<') {
            put_text(out, p, 1, ws.at_start, ws.pending_space);  // only in entity text
            ++p;
        } else {
            put_ws(out, mode, c, ws.at_start, ws.pending_space);
            ++p;
        }
    }
    return true;
}

bool c_xml::decode_text(const char* begin, const char* end, elmx_whitespace mode, std::string& out) {
    out.clear();
    if (mode == EXWS_PRESERVE) {
        // Most values have nothing to decode.
        const char* p = begin;
        while (p < end && !(char_table.c[static_cast<unsigned char>(*p)] & CC_SPECIAL0)) ++p;
        if (p == end) {
            out.assign(begin, end);
            return true;
        }
    }
    s_ws_state ws;
    return decode_run(begin, end, mode, out, ws, 0);
}

// Reads character data, references, CDATA, comments and processing instructions up to the end
// tag of the current element; a child element makes the value unreadable.
bool c_xml::read_element_text(elmx_whitespace mode, std::string& out) {
    out.clear();
    if (m_pending_end) {
        // "<a/>": the empty value; the end event is consumed with it.
        m_pending_end = false;
        m_pending_pop = true;
        return true;
    }
    s_ws_state ws;
    const char* p = m_p;
    for (;;) {
        const char* lt = static_cast<const char*>(std::memchr(p, '<', static_cast<size_t>(m_end - p)));
        if (!lt) {
            m_p = m_end;
            return fail_eof();
        }
        if (!decode_run(p, lt, mode, out, ws, 0)) return false;
        m_p = lt;
        if (m_end - lt < 2) return fail_eof();
        if (lt[1] == '/') {
            if (read_end_tag() != TAG_END) return false;
            return true;
        }
        if (starts_with(lt, m_end, "<![CDATA[")) {
            const char* close = find(lt + 9, m_end, "]]>");
            if (!close) return fail_eof();
            put_text(out, lt + 9, static_cast<size_t>(close - lt - 9), ws.at_start, ws.pending_space);
            p = close + 3;
        } else if (starts_with(lt, m_end, "<!--")) {
            if (!skip_comment()) return false;
            p = m_p;
        } else if (lt[1] == '?') {
            if (!skip_pi(false)) return false;
            p = m_p;
        } else if (lt[1] == '!' && m_end - lt < 9) {
            return fail_eof();
        } else {
            return fail(ELMX_UNABLE_TO_READ_ELEMENT_VALUE, "Element found in a simple value: " + describe(lt, m_end));
        }
    }
}

bool c_xml::skip_current_element() {
    size_t depth = m_open.size();
    for (;;) {
        e_tag t = next_tag();
        if (t == TAG_ERROR) return false;
        if (t == TAG_EOF) return fail_eof();
        if (t == TAG_END && m_open.size() == depth) return true;
    }
}

// ---- the event layer ------------------------------------------------------------------------

c_xml_reader::c_xml_reader(c_read& source) : c_xml(source) {
    m_attrs.reserve(32);
    m_open.reserve(64);
}

c_xml_reader::~c_xml_reader() = default;

void c_xml_reader::set_ns_map(const s_ns_map* map) {
    for (; map && map->p_ns_uri; ++map) {
        // A URI met before the table came (in preset bindings) takes the table's id.
        int former = m_namespaces.reassign(map->p_ns_uri, map->ns_id);
        if (former >= 0)
            for (s_binding& b : m_bindings)
                if (b.ns_id == former) b.ns_id = map->ns_id;
    }
}

bool c_xml_reader::set_name_from_tag(bool resolve) {
    m_name.raw.assign(m_tag_name, m_tag_name_length);
    const void* colon = std::memchr(m_tag_name, ':', m_tag_name_length);
    size_t prefix_length = colon ? static_cast<size_t>(static_cast<const char*>(colon) - m_tag_name) : 0;
    m_name.local_offset = colon ? prefix_length + 1 : 0;
    if (!resolve) return true;
    int id = resolve_prefix(m_tag_name, prefix_length);
    if (id < 0) return fail(ELMX_NOT_WELL_FORMED, "Undeclared namespace prefix in " + m_name.raw);
    m_name.ns_id = id;
    return true;
}

bool c_xml_reader::is_known(const c_cracked_name& name) const {
    const char* local = name.local();
    size_t length = name.local_length();
    for (const s_known_elements* row = m_known_elements; row->p_name; ++row)
        if (row->name_length == length && row->p_name[0] == local[0] && row->ns_id == name.ns_id &&
            std::memcmp(row->p_name, local, length) == 0)
            return true;
    return false;
}

elmx_error c_xml_reader::report_input_error(elmx_error fallback) {
    return m_error.is_set() ? m_error.code() : fallback;
}

int c_xml_reader::get_element_event(const s_event_map* map, elmx_error* p_error, std::string* p_name) {
    bool skipped = false;
    *p_error = ELMX_OK;
    for (;;) {
        e_tag t = next_tag();
        if (t == TAG_ERROR) {
            *p_error = report_input_error(ELMX_UNEXPECTED_EOM);
            return m_event = EXE_ERROR;
        }
        if (t == TAG_EOF) {
            *p_error = ELMX_UNEXPECTED_EOM;
            return m_event = EXE_EOM;
        }
        if (t == TAG_END) {
            set_name_from_tag(false);
            if (p_name) *p_name = m_name.raw;
            return m_event = skipped ? EXE_ELEMENT_END_AFTER_SKIP : EXE_ELEMENT_END;
        }
        if (!set_name_from_tag(true)) {
            *p_error = report_input_error(ELMX_NOT_WELL_FORMED);
            return m_event = EXE_ERROR;
        }
        if (m_known_elements && !is_known(m_name)) {
            if (!skip_current_element()) {
                *p_error = ELMX_BADLY_FORMED;
                return m_event = EXE_ERROR;
            }
            skipped = true;
            continue;
        }
        if (p_name) *p_name = m_name.raw;
        m_event = EXE_ELEMENT_START;
        if (map) tokenise(map, true);
        return m_event;
    }
}

int c_xml_reader::tokenise(const s_event_map* map, bool is_element) {
    // Only a start tag has a name to look up; an end tag or an error stays what it is.
    if (is_element && m_event != EXE_ELEMENT_START && m_event != EXE_UNKNOWN && m_event < EXE_TOKEN) return m_event;
    const char* local = m_name.local();
    size_t length = m_name.local_length();
    int ns = m_name.ns_id;
    if (!is_element && ns == NS_ID_XSI) {
        if (length == 4 && std::memcmp(local, "type", 4) == 0) return m_event = EXE_XSI_TYPE;
        if (length == 3 && std::memcmp(local, "nil", 3) == 0) return m_event = EXE_XSI_NIL;
        if (length == 14 && std::memcmp(local, "schemaLocation", 14) == 0) return m_event = EXE_XSI_SCHEMA_LOCATION;
        if (length == 25 && std::memcmp(local, "noNamespaceSchemaLocation", 25) == 0)
            return m_event = EXE_XSI_NO_NAMESPACE_SCHEMA_LOCATION;
    }
    for (const s_event_map* row = map; row && row->p_name; ++row)
        if (row->name_length == length && row->p_name[0] == local[0] && row->ns_id == ns &&
            std::memcmp(row->p_name, local, length) == 0)
            return m_event = row->event;
    return m_event = EXE_UNKNOWN;
}

bool c_xml_reader::get_attribute_event(const s_event_map* map, elmx_error* p_error, std::string* p_name) {
    *p_error = ELMX_OK;
    while (m_attr_index < m_attrs.size()) {
        const s_attr& a = m_attrs[m_attr_index++];
        if (a.is_ns_decl) continue;
        m_current_attr = &a;
        m_name.raw.assign(a.name, a.name_length);
        m_name.local_offset = a.prefix_length ? a.prefix_length + 1 : 0;
        // An attribute without prefix is in no namespace, whatever the default namespace is.
        int id = a.prefix_length ? resolve_prefix(a.name, a.prefix_length) : NS_ID_NONE;
        if (id < 0) {
            fail(ELMX_NOT_WELL_FORMED, "Undeclared namespace prefix in " + m_name.raw);
            *p_error = ELMX_NOT_WELL_FORMED;
            m_event = EXE_ERROR;
            return false;
        }
        m_name.ns_id = id;
        if (p_name) *p_name = m_name.raw;
        tokenise(map, false);
        return true;
    }
    m_current_attr = nullptr;
    m_event = EXE_START_TAG_END;
    return false;
}

bool c_xml_reader::get_attribute_value(elmx_whitespace mode, std::string* p_value) {
    if (!m_current_attr) return false;
    return decode_text(m_current_attr->value, m_current_attr->value + m_current_attr->value_length, mode, *p_value);
}

bool c_xml_reader::get_element_value(elmx_whitespace mode, std::string* p_value, elmx_error* p_error) {
    *p_error = ELMX_OK;
    if (!read_element_text(mode, *p_value)) {
        *p_error = report_input_error(ELMX_UNABLE_TO_READ_ELEMENT_VALUE);
        m_event = EXE_ERROR;
        return false;
    }
    m_event = EXE_ELEMENT_END;
    return true;
}

bool c_xml_reader::get_element_ur_value(std::string* p_value, elmx_error* p_error) {
    *p_error = ELMX_OK;
    p_value->clear();
    const char* inner = m_p;
    bool empty = m_tag_empty;
    if (!skip_current_element()) {
        *p_error = report_input_error(ELMX_UNABLE_TO_READ_ELEMENT_VALUE);
        m_event = EXE_ERROR;
        return false;
    }
    // m_p is past the end tag; its '<' is the start of the tag name less two.
    if (!empty) p_value->assign(inner, m_tag_name - 2);
    m_event = EXE_ELEMENT_END;
    return true;
}

elmx_error c_xml_reader::get_any_element(c_any_info* p_info) {
    const char* begin = m_tag_begin;
    p_info->set_name(m_name.raw);
    p_info->set_namespace(m_namespaces.get_uri(m_name.ns_id));
    p_info->get_namespace_context().clear();
    collect_context(p_info->get_namespace_context(), false);
    if (!skip_current_element()) {
        m_event = EXE_ERROR;
        return handle_error(report_input_error(ELMX_BADLY_FORMED), m_name.raw);
    }
    p_info->set_value(std::string(begin, m_p));
    m_event = EXE_ELEMENT_END;
    return ELMX_OK;
}

void c_xml_reader::get_any_attribute(c_any_info* p_info) {
    p_info->set_name(m_name.raw);
    p_info->set_namespace(m_namespaces.get_uri(m_name.ns_id));
    std::string value;
    get_attribute_value(EXWS_PRESERVE, &value);
    p_info->set_value(value);
    p_info->get_namespace_context().clear();
    collect_context(p_info->get_namespace_context(), true);
}

void c_xml_reader::preset_namespace_context(const c_namespace_context& context) {
    // Outermost first, so that an inner binding of the same prefix wins.
    const auto& all = context.get();
    for (size_t i = all.size(); i-- > 0;) {
        m_preset_prefixes.push_back(all[i].first);
        const std::string& prefix = m_preset_prefixes.back();
        s_binding b;
        b.prefix = prefix.data();
        b.prefix_length = static_cast<uint32_t>(prefix.size());
        b.ns_id = all[i].second.empty() ? NS_ID_NONE : m_namespaces.get_id(all[i].second);
        push_binding(b);
    }
}

bool c_xml_reader::ignore_element() {
    if (!skip_current_element()) {
        m_event = EXE_ERROR;
        return false;
    }
    m_event = EXE_ELEMENT_END;
    return true;
}

// A simple element takes no attributes but those of the schema-instance namespace.
elmx_error c_xml_reader::read_simple_element_attributes() {
    if (m_attrs.empty()) return ELMX_OK;  // the usual case: nothing to check, the name stays
    std::string element = m_name.raw;
    int element_ns = m_name.ns_id;
    size_t element_local = m_name.local_offset;
    elmx_error e = ELMX_OK;
    while (get_attribute_event(nullptr, &e)) {
        if (m_name.ns_id == NS_ID_XSI || m_ignore_unknown) continue;
        return handle_error(ELMX_UNEXPECTED_ATTRIBUTE, "@" + m_name.raw);
    }
    if (e != ELMX_OK) return handle_error(e, element);
    m_name.raw = element;
    m_name.ns_id = element_ns;
    m_name.local_offset = element_local;
    return ELMX_OK;
}

elmx_error c_xml_reader::unmarshal_empty_element(ct_empty_single& member) {
    elmx_error e = read_simple_element_attributes();
    if (e != ELMX_OK) return e;
    std::string text;
    if (!get_element_value(EXWS_COLLAPSE, &text, &e)) return handle_error(e, m_name.raw);
    if (!text.empty()) return handle_error(ELMX_UNABLE_TO_READ_ELEMENT_VALUE, m_name.raw);
    member.set();
    return ELMX_OK;
}

void c_xml_reader::capture_error(elmx_error code, const std::string& item, const char* file, int line) {
    if (m_debug_error.error != ELMX_OK) return;
    // A premature end reported by a caller stands for whatever the input layer met.
    if (code == ELMX_UNEXPECTED_EOM && m_error.is_set()) code = m_error.code();
    m_debug_error.error = code;
    m_debug_error.item_name = (m_error.is_set() && code == m_error.code()) ? m_error.text() : item;
    m_debug_error.code_file = file ? file : "";
    m_debug_error.code_line = line;
    m_debug_error.source_id = m_source.get_source_id();
}

elmx_error c_xml_reader::handle_error(elmx_error code, const std::string& item, const char* file, int line) {
    if (code == ELMX_UNEXPECTED_EOM && m_error.is_set()) code = m_error.code();
    capture_error(code, item, file, line);
    return user_handle_error(code, item, file, line);
}

// ---- c_unmarshal_helper ---------------------------------------------------------------------

c_unmarshal_helper::c_unmarshal_helper(c_xml_reader& r) : reader(r), m_name(r.get_current_element_name()) {
    m_was_empty = r.is_current_tag_empty();
}

c_unmarshal_helper::~c_unmarshal_helper() = default;

elmx_error c_unmarshal_helper::unmarshal_attributes() {
    elmx_error e = ELMX_OK;
    while (reader.get_attribute_event(nullptr, &e)) {
        elmx_error attribute_error = ELMX_OK;
        if (unmarshal_attribute(&attribute_error)) {
            if (attribute_error != ELMX_OK) return attribute_error;
            continue;
        }
        if (attribute_error != ELMX_OK) return attribute_error;
        if (reader.get_current_ns_id() == NS_ID_XSI) {
            if (reader.tokenise(nullptr, false) == EXE_XSI_NIL) {
                std::string value;
                reader.get_attribute_value(EXWS_COLLAPSE, &value);
                m_nilled = value == "true" || value == "1";
            }
            continue;
        }
        if (m_any_attributes) {
            c_any_info* info = new c_any_info;
            m_any_attributes->push_back(info);
            reader.get_any_attribute(info);
            continue;
        }
        if (!reader.is_ignore_unknown())
            return reader.handle_error(ELMX_UNEXPECTED_ATTRIBUTE, "@" + reader.get_current_element_name(), m_file,
                                       m_line);
    }
    if (e != ELMX_OK) return reader.handle_error(e, m_name, m_file, m_line);
    return unmarshal_attributes_check();
}

elmx_error c_unmarshal_helper::finish_element(int event) {
    if ((event != EXE_ELEMENT_END && event != EXE_ELEMENT_END_AFTER_SKIP) ||
        reader.get_current_element_name() != m_name)
        return reader.handle_error(ELMX_BAD_END_OF_ELEMENT, m_name, m_file, m_line);
    reader.set_current_event(EXE_ELEMENT_END);
    return ELMX_OK;
}

elmx_error c_unmarshal_helper::unmarshal_complex_content(const char* file, int line) {
    c_xml_reader_local local(reader);
    m_file = file;
    m_line = line;
    reader.set_code_file(file);
    reader.set_code_line(line);
    elmx_error e = unmarshal_attributes();
    if (e != ELMX_OK) return e;
    return unmarshal_complex_content_case();
}

elmx_error c_unmarshal_helper::unmarshal_complex_content_case() {
    elmx_error e = ELMX_OK;
    int event = reader.get_element_event(nullptr, &e);
    if (e != ELMX_OK) return reader.handle_error(e, m_name, m_file, m_line);
    if (is_nil()) {
        if (event != EXE_ELEMENT_END) return reader.handle_error(ELMX_NILLED_ELEMENT_NOT_EMPTY, m_name, m_file, m_line);
        return finish_element(event);
    }
    if (!unmarshal_complex_body(&e)) {
        if (m_was_empty && !m_body_optional)
            return reader.handle_error(ELMX_UNEXPECTED_EMPTY_ELEMENT, m_name, m_file, m_line);
        return e != ELMX_OK ? e : reader.handle_error(ELMX_UNDEFINED_ERROR, m_name, m_file, m_line);
    }
    event = reader.get_current_event();
    if (reader.is_ignore_unknown() && event != EXE_ELEMENT_END && event != EXE_ELEMENT_END_AFTER_SKIP &&
        is_not_choice_or_choice_is_not_set()) {
        // Elements out of the schema's order, or unknown, are passed over one by one.
        while (event == EXE_UNKNOWN || event == EXE_ELEMENT_START || event >= EXE_TOKEN) {
            if (!reader.ignore_element())
                return reader.handle_error(reader.report_input_error(ELMX_BADLY_FORMED), m_name, m_file, m_line);
            event = reader.get_element_event(nullptr, &e);
            if (e != ELMX_OK) return reader.handle_error(e, m_name, m_file, m_line);
        }
    }
    if (event == EXE_ERROR || event == EXE_EOM)
        return reader.handle_error(reader.report_input_error(ELMX_UNEXPECTED_EOM), m_name, m_file, m_line);
    return finish_element(event);
}

elmx_error c_unmarshal_helper::unmarshal_simple_content(const char* file, int line) {
    c_xml_reader_local local(reader);
    m_file = file;
    m_line = line;
    reader.set_code_file(file);
    reader.set_code_line(line);
    elmx_error e = unmarshal_attributes();
    if (e != ELMX_OK) return e;
    return unmarshal_simple_content_case();
}

elmx_error c_unmarshal_helper::unmarshal_simple_content_case() {
    // The body reads the value and with it the end tag.
    reader.set_current_element_name(m_name);
    elmx_error e = ELMX_OK;
    if (!unmarshal_simple_body(&e)) return e != ELMX_OK ? e : reader.handle_error(ELMX_UNDEFINED_ERROR, m_name);
    return finish_element(reader.get_current_event());
}

elmx_error c_unmarshal_helper::unmarshal_empty_content(const char* file, int line) {
    c_xml_reader_local local(reader);
    m_file = file;
    m_line = line;
    reader.set_code_file(file);
    reader.set_code_line(line);
    elmx_error e = unmarshal_attributes();
    if (e != ELMX_OK) return e;
    return unmarshal_empty_content_case();
}

elmx_error c_unmarshal_helper::unmarshal_empty_content_case() {
    elmx_error e = ELMX_OK;
    int event = reader.get_element_event(nullptr, &e);
    if (e != ELMX_OK) return reader.handle_error(e, m_name, m_file, m_line);
    if (reader.is_ignore_unknown()) {
        while (event == EXE_UNKNOWN || event == EXE_ELEMENT_START || event >= EXE_TOKEN) {
            if (!reader.ignore_element())
                return reader.handle_error(reader.report_input_error(ELMX_BADLY_FORMED), m_name, m_file, m_line);
            event = reader.get_element_event(nullptr, &e);
            if (e != ELMX_OK) return reader.handle_error(e, m_name, m_file, m_line);
        }
    }
    return finish_element(event);
}

}  // namespace lmx
}  // namespace zelvar
