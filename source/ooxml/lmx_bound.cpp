// The engine of the schema-bound classes: reading, writing, copying and checking any object
// through its type's descriptor.
#include "ooxml/lmx_bound.h"

#include <charconv>
#include <cstdlib>
#include <cstring>

namespace zelvar {
namespace lmx {

namespace {

const unsigned NO_CHOICE_MARK = ~0u;

bool is_text_kind(e_value_kind k) { return k == VK_WSTRING; }
bool is_binary_kind(e_value_kind k) { return k == VK_HEX || k == VK_BASE64; }
bool is_float_kind(e_value_kind k) { return k == VK_DOUBLE || k == VK_FLOAT; }

// Converts the text of an integer kind with the range of its C type.
bool text_to_int(e_value_kind k, const std::string& text, int64_t* out) {
    switch (k) {
        case VK_BOOL: {
            if (!is_valid_bool(text)) return false;
            bool b = false;
            v_to_o(b, text);
            *out = b;
            return true;
        }
        case VK_I8: { int8_t v; if (!v_to_o(v, text)) return false; *out = v; return true; }
        case VK_U8: { uint8_t v; if (!v_to_o(v, text)) return false; *out = v; return true; }
        case VK_I16: { int16_t v; if (!v_to_o(v, text)) return false; *out = v; return true; }
        case VK_U16: { uint16_t v; if (!v_to_o(v, text)) return false; *out = v; return true; }
        case VK_I32: { int32_t v; if (!v_to_o(v, text)) return false; *out = v; return true; }
        case VK_U32: { uint32_t v; if (!v_to_o(v, text)) return false; *out = v; return true; }
        case VK_I64: { long long v; if (!v_to_o(v, text)) return false; *out = v; return true; }
        case VK_U64: { unsigned long long v; if (!v_to_o(v, text)) return false; *out = static_cast<int64_t>(v); return true; }
        default: return false;
    }
}

void int_to_text(e_value_kind k, int64_t v, std::string& out) {
    switch (k) {
        case VK_BOOL: o_to_v(out, v != 0); break;
        case VK_U64: o_to_v(out, static_cast<unsigned long long>(v)); break;
        default: o_to_v(out, static_cast<long long>(v)); break;
    }
}

double facet_number(const char* text) { return std::strtod(text, nullptr); }

// Compares a number against the range facets.
elmx_error check_range(const s_simple& s, double v) {
    if (s.min_inclusive && v < facet_number(s.min_inclusive)) return ELMX_VALUE_EXCEEDS_MIN;
    if (s.min_exclusive && v <= facet_number(s.min_exclusive)) return ELMX_VALUE_EXCEEDS_MIN;
    if (s.max_inclusive && v > facet_number(s.max_inclusive)) return ELMX_VALUE_EXCEEDS_MAX;
    if (s.max_exclusive && v >= facet_number(s.max_exclusive)) return ELMX_VALUE_EXCEEDS_MAX;
    return ELMX_OK;
}

// The text of a captured element without the namespace declarations of its start tag, which
// depend on where it was captured.
std::string without_declarations(const std::string& text) {
    std::string out;
    size_t p = 0;
    while (p < text.size()) {
        char c = text[p];
        if (c == '>') break;
        if (c == '"' || c == '\'') {
            // A quoted value is copied whole: it may hold '>' or " xmlns".
            size_t q = text.find(c, p + 1);
            if (q == std::string::npos) q = text.size() - 1;
            out.append(text, p, q + 1 - p);
            p = q + 1;
            continue;
        }
        if (c == ' ' && text.compare(p + 1, 5, "xmlns") == 0) {
            size_t q1 = text.find_first_of("\"'", p);
            if (q1 == std::string::npos) break;
            size_t q2 = text.find(text[q1], q1 + 1);
            if (q2 == std::string::npos) break;
            p = q2 + 1;
            continue;
        }
        out.push_back(c);
        ++p;
    }
    out.append(text, p, std::string::npos);
    return out;
}

bool same_captured(const c_any_info& a, const c_any_info& b) {
    return a.get_namespace() == b.get_namespace() && a.get_name() == b.get_name() &&
           without_declarations(a.get_value()) == without_declarations(b.get_value());
}

bool has_range(const s_simple& s) {
    return s.min_inclusive || s.max_inclusive || s.min_exclusive || s.max_exclusive;
}

}  // namespace

elmx_error check_simple(const s_simple& s, const std::string& text) {
    if (s.item) {
        size_t pos = 0;
        while (pos < text.size()) {
            size_t blank = text.find(' ', pos);
            if (blank == std::string::npos) blank = text.size();
            elmx_error e = check_simple(*s.item, text.substr(pos, blank - pos));
            if (e != ELMX_OK) return e;
            pos = blank + 1;
        }
        return ELMX_OK;
    }
    if (s.member_count) {
        elmx_error first = ELMX_VALUE_BAD_FORMAT;
        for (unsigned i = 0; i < s.member_count; ++i) {
            elmx_error e = check_simple(*s.members[i], text);
            if (e == ELMX_OK) return ELMX_OK;
            if (i == 0) first = e;
        }
        return first;
    }
    switch (s.kind) {
        case VK_WSTRING:
            if (s.lexical == LX_DECIMAL && !is_valid_decimal(text)) return ELMX_VALUE_BAD_FORMAT;
            if (s.lexical == LX_DATETIME && !is_valid_datetime(text)) return ELMX_VALUE_BAD_FORMAT;
            if (s.lexical == LX_INTEGER && !is_valid_integer(text)) return ELMX_VALUE_BAD_FORMAT;
            if (s.lexical != LX_NONE && has_range(s)) {
                elmx_error e = check_range(s, std::strtod(text.c_str(), nullptr));
                if (e != ELMX_OK) return e;
            }
            if (s.length >= 0 || s.min_length >= 0 || s.max_length >= 0) {
                size_t n = utf8_length(text);
                if (s.length >= 0 && n > static_cast<size_t>(s.length)) return ELMX_LENGTH_TOO_LONG;
                if (s.length >= 0 && n < static_cast<size_t>(s.length)) return ELMX_LENGTH_TOO_SHORT;
                if (s.max_length >= 0 && n > static_cast<size_t>(s.max_length)) return ELMX_LENGTH_TOO_LONG;
                if (s.min_length >= 0 && n < static_cast<size_t>(s.min_length)) return ELMX_LENGTH_TOO_SHORT;
            }
            break;
        case VK_HEX:
        case VK_BASE64: {
            c_binary b;
            if (s.kind == VK_HEX ? !b.from_hex(text) : !b.from_base64(text)) return ELMX_VALUE_BAD_FORMAT;
            size_t n = b.size();
            if (s.length >= 0 && n > static_cast<size_t>(s.length)) return ELMX_LENGTH_TOO_LONG;
            if (s.length >= 0 && n < static_cast<size_t>(s.length)) return ELMX_LENGTH_TOO_SHORT;
            if (s.max_length >= 0 && n > static_cast<size_t>(s.max_length)) return ELMX_LENGTH_TOO_LONG;
            if (s.min_length >= 0 && n < static_cast<size_t>(s.min_length)) return ELMX_LENGTH_TOO_SHORT;
            break;
        }
        case VK_DOUBLE:
        case VK_FLOAT: {
            if (!is_valid_float(text)) return ELMX_VALUE_BAD_FORMAT;
            double d = 0;
            if (!v_to_o(d, text)) return ELMX_VALUE_BAD_FORMAT;
            elmx_error e = check_range(s, d);
            if (e != ELMX_OK) return e;
            break;
        }
        default: {
            int64_t v = 0;
            if (!text_to_int(s.kind, text, &v)) return ELMX_VALUE_BAD_FORMAT;
            if (has_range(s)) {
                double d = s.kind == VK_U64 ? static_cast<double>(static_cast<uint64_t>(v)) : static_cast<double>(v);
                elmx_error e = check_range(s, d);
                if (e != ELMX_OK) return e;
            }
            break;
        }
    }
    if (s.enum_count) {
        bool found = false;
        for (unsigned i = 0; i < s.enum_count && !found; ++i) found = text == s.enum_texts[i];
        if (!found) return ELMX_VALUE_NOT_ENUMERATED;
    }
    if (s.pattern && !s.pattern->is_match(text)) return ELMX_NO_PATTERN_MATCHED;
    return ELMX_OK;
}

// ---- c_node: storage ------------------------------------------------------------------------

c_node::c_node(const s_type* type) : m_type(type) {
    allocate();
}

void c_node::allocate() {
    unsigned n = slot_count();
    m_choice = m_type->step_count;
    if (!n) return;
    // One block: the slots, then a flag byte for each.
    size_t flag_slots = (n + sizeof(u_slot) - 1) / sizeof(u_slot);
    m_slots = new u_slot[n + flag_slots];
    std::memset(static_cast<void*>(m_slots), 0, sizeof(u_slot) * (n + flag_slots));
    m_flags = reinterpret_cast<uint8_t*>(m_slots + n);
}

c_node::c_node(const c_node& o) : m_type(o.m_type) {
    allocate();
    unsigned n = slot_count();
    for (unsigned i = 0; i < n; ++i) copy_slot(i, o);
    if (o.m_any) m_any = new ct_any_info_container(*o.m_any);
    m_choice = o.m_choice;
}

c_node& c_node::operator=(const c_node& o) {
    if (this != &o) {
        c_node copy(o);
        swap(copy);
    }
    return *this;
}

c_node::~c_node() {
    unsigned n = slot_count();
    for (unsigned i = 0; i < n; ++i) free_slot(i);
    delete[] m_slots;
    delete m_any;
}

c_node* c_node::clone_node() const {
    if (m_type->make) {
        c_node* p = m_type->make();
        *p = *this;
        return p;
    }
    return new c_node(*this);
}

void c_node::swap(c_node& o) {
    std::swap(m_type, o.m_type);
    std::swap(m_slots, o.m_slots);
    std::swap(m_flags, o.m_flags);
    std::swap(m_any, o.m_any);
    std::swap(m_choice, o.m_choice);
}

void c_node::init() {
    unsigned n = slot_count();
    for (unsigned i = 0; i < n; ++i) free_slot(i);
    delete m_any;
    m_any = nullptr;
    m_choice = m_type->step_count;
}

unsigned c_node::slot_count() const {
    return m_type->attr_count + (m_type->simple_content ? 1 : 0) + m_type->step_count;
}

const s_simple* c_node::simple_of(unsigned i) const {
    if (i < m_type->attr_count) return m_type->attrs[i].simple;
    if (i == text_slot() && m_type->simple_content) return m_type->simple_content;
    return m_type->steps[i - first_step_slot()].simple;
}

const s_step* c_node::step_of(unsigned i) const {
    unsigned first = first_step_slot();
    return i >= first ? &m_type->steps[i - first] : nullptr;
}

void c_node::free_slot(unsigned i) {
    u_slot& s = m_slots[i];
    const s_step* step = step_of(i);
    if (!step || step->kind == SK_SIMPLE) {
        const s_simple* simple = simple_of(i);
        if (step && step->max_occurs > 1)
            delete s.ws;
        else if (is_text_kind(simple->kind))
            delete s.w;
        else if (is_binary_kind(simple->kind))
            delete s.b;
    } else if (step->kind == SK_ANY || step->kind == SK_ANY_DROP) {
        delete s.any;
    } else if (step->kind == SK_CELLS) {
        if (s.cells)
            for (c_cell_base* c : *s.cells) delete c;
        delete s.cells;
    } else if (step->max_occurs > 1) {
        if (s.v)
            for (c_node* c : *s.v) delete c;
        delete s.v;
    } else {
        delete s.n;
    }
    s.i = 0;
    m_flags[i] = 0;
}

void c_node::copy_slot(unsigned i, const c_node& o) {
    const u_slot& from = o.m_slots[i];
    u_slot& to = m_slots[i];
    m_flags[i] = o.m_flags[i];
    const s_step* step = step_of(i);
    if (!step || step->kind == SK_SIMPLE) {
        const s_simple* simple = simple_of(i);
        if (step && step->max_occurs > 1)
            to.ws = from.ws ? new std::vector<std::wstring>(*from.ws) : nullptr;
        else if (is_text_kind(simple->kind))
            to.w = from.w ? new std::wstring(*from.w) : nullptr;
        else if (is_binary_kind(simple->kind))
            to.b = from.b ? new c_binary(*from.b) : nullptr;
        else
            to.i = from.i;
    } else if (step->kind == SK_ANY || step->kind == SK_ANY_DROP) {
        to.any = from.any ? new ct_any_info_container(*from.any) : nullptr;
    } else if (step->kind == SK_CELLS) {
        if (from.cells) {
            to.cells = new std::vector<c_cell_base*>();
            to.cells->reserve(from.cells->size());
            for (const c_cell_base* c : *from.cells) to.cells->push_back(new c_cell_base(*c));
        }
    } else if (step->max_occurs > 1) {
        if (from.v) {
            to.v = new std::vector<c_node*>();
            to.v->reserve(from.v->size());
            for (const c_node* c : *from.v) to.v->push_back(c->clone_node());
        }
    } else {
        to.n = from.n ? from.n->clone_node() : nullptr;
    }
}

// ---- c_node: values -------------------------------------------------------------------------

void c_node::unset(unsigned i) {
    free_slot(i);
}

int64_t c_node::get_i(unsigned i) const {
    if (isset(i)) return m_slots[i].i;
    if (i < m_type->attr_count && m_type->attrs[i].default_text) {
        int64_t v = 0;
        text_to_int(m_type->attrs[i].simple->kind, m_type->attrs[i].default_text, &v);
        return v;
    }
    return 0;
}

int c_node::set_i(unsigned i, int64_t v) {
    select(i);
    m_slots[i].i = v;
    m_flags[i] |= 1;
    return 0;
}

double c_node::get_d(unsigned i) const {
    if (isset(i)) return m_slots[i].d;
    if (i < m_type->attr_count && m_type->attrs[i].default_text) {
        double v = 0;
        v_to_o(v, m_type->attrs[i].default_text);
        return v;
    }
    return 0;
}

int c_node::set_d(unsigned i, double v) {
    select(i);
    m_slots[i].d = v;
    m_flags[i] |= 1;
    return 0;
}

std::wstring c_node::get_w(unsigned i) const {
    if (isset(i) && m_slots[i].w) return *m_slots[i].w;
    if (i < m_type->attr_count && m_type->attrs[i].default_text) return utf8_to_wide(m_type->attrs[i].default_text);
    return std::wstring();
}

int c_node::set_w(unsigned i, const std::wstring& v) {
    const s_simple* simple = simple_of(i);
    elmx_error e = check_simple(*simple, wide_to_utf8(v));
    if (e != ELMX_OK) return e;
    select(i);
    if (!m_slots[i].w)
        m_slots[i].w = new std::wstring(v);
    else
        *m_slots[i].w = v;
    m_flags[i] |= 1;
    return 0;
}

c_binary c_node::get_b(unsigned i) const {
    if (isset(i) && m_slots[i].b) return *m_slots[i].b;
    c_binary b;
    if (i < m_type->attr_count && m_type->attrs[i].default_text) b.from_hex(m_type->attrs[i].default_text);
    return b;
}

int c_node::set_b(unsigned i, const c_binary& v) {
    select(i);
    if (!m_slots[i].b)
        m_slots[i].b = new c_binary(v);
    else
        *m_slots[i].b = v;
    m_flags[i] |= 1;
    return 0;
}

int c_node::getenum(unsigned i) const {
    const s_simple* simple = simple_of(i);
    std::string text = wide_to_utf8(get_w(i));
    for (unsigned k = 0; k < simple->enum_count; ++k)
        if (text == simple->enum_texts[k]) return simple->enum_ids[k];
    return 0;
}

int c_node::setenum(unsigned i, int e) {
    const s_simple* simple = simple_of(i);
    for (unsigned k = 0; k < simple->enum_count; ++k)
        if (simple->enum_ids[k] == e) return set_w(i, utf8_to_wide(simple->enum_texts[k]));
    return ELMX_VALUE_NOT_ENUMERATED;
}

elmx_error c_node::store_value(unsigned i, const s_simple& simple, const std::string& text) {
    elmx_error e = check_simple(simple, text);
    if (e != ELMX_OK) return e;
    u_slot& s = m_slots[i];
    if (simple.item || simple.member_count || is_text_kind(simple.kind)) {
        if (!s.w) s.w = new std::wstring;
        utf8_to_wide(*s.w, text.data(), text.size());
    } else if (is_binary_kind(simple.kind)) {
        if (!s.b) s.b = new c_binary;
        if (simple.kind == VK_HEX)
            s.b->from_hex(text);
        else
            s.b->from_base64(text);
    } else if (is_float_kind(simple.kind)) {
        v_to_o(s.d, text);
    } else {
        text_to_int(simple.kind, text, &s.i);
    }
    m_flags[i] |= 1;
    return ELMX_OK;
}

void c_node::value_text(unsigned i, const s_simple& simple, std::string& out) const {
    const u_slot& s = m_slots[i];
    if (simple.item || simple.member_count || is_text_kind(simple.kind)) {
        out.clear();
        if (s.w) wide_to_utf8(out, s.w->data(), s.w->size());
    } else if (is_binary_kind(simple.kind)) {
        out = s.b ? (simple.kind == VK_HEX ? s.b->out_hex() : s.b->out_base64()) : std::string();
    } else if (simple.kind == VK_DOUBLE) {
        o_to_v(out, s.d);
    } else if (simple.kind == VK_FLOAT) {
        o_to_v(out, static_cast<float>(s.d));
    } else {
        int_to_text(simple.kind, s.i, out);
    }
}

// ---- c_node: children -----------------------------------------------------------------------

namespace {
c_node* make_of(const s_type* t) { return t->make ? t->make() : new c_node(t); }
}  // namespace

void c_node::select(unsigned i) {
    if (!(m_type->flags & TF_CHOICE)) return;
    unsigned first = first_step_slot();
    if (i < first) return;
    unsigned k = i - first;
    if (m_choice == k) return;
    release_choice();
    m_choice = k;
}

void c_node::release_choice() {
    if (!(m_type->flags & TF_CHOICE) || m_choice >= m_type->step_count) return;
    free_slot(first_step_slot() + m_choice);
    m_choice = m_type->step_count;
}

c_node& c_node::child(unsigned i) {
    select(i);
    if (!m_slots[i].n) m_slots[i].n = make_of(step_of(i)->target);
    return *m_slots[i].n;
}

void c_node::assign_child(unsigned i, c_node* p) {
    select(i);
    if (m_slots[i].n != p) delete m_slots[i].n;
    m_slots[i].n = p;
}

size_t c_node::size_s(unsigned i) const {
    const s_step* step = step_of(i);
    const u_slot& s = m_slots[i];
    switch (step->kind) {
        case SK_SIMPLE: return s.ws ? s.ws->size() : 0;
        case SK_ANY:
        case SK_ANY_DROP: return s.any ? s.any->size() : 0;
        case SK_CELLS: return s.cells ? s.cells->size() : 0;
        default: return s.v ? s.v->size() : 0;
    }
}

c_node& c_node::append_new(unsigned i) {
    select(i);
    if (!m_slots[i].v) m_slots[i].v = new std::vector<c_node*>();
    c_node* p = make_of(step_of(i)->target);
    m_slots[i].v->push_back(p);
    return *p;
}

int c_node::append_item(unsigned i, c_node* p) {
    return insert_item(i, size_s(i), p);
}

int c_node::insert_item(unsigned i, size_t k, c_node* p) {
    const s_step* step = step_of(i);
    if (size_s(i) >= step->max_occurs) {
        delete p;
        return ELMX_OCCURRENCE_ERROR;
    }
    select(i);
    if (!m_slots[i].v) m_slots[i].v = new std::vector<c_node*>();
    std::vector<c_node*>& v = *m_slots[i].v;
    v.insert(v.begin() + static_cast<std::ptrdiff_t>(std::min(k, v.size())), p);
    return 0;
}

void c_node::delete_item(unsigned i, size_t k) {
    std::vector<c_node*>* v = m_slots[i].v;
    if (!v || k >= v->size()) return;
    delete (*v)[k];
    v->erase(v->begin() + static_cast<std::ptrdiff_t>(k));
}

void c_node::clear_s(unsigned i) {
    free_slot(i);
}

std::wstring c_node::get_w_multi(unsigned i, size_t k) const {
    const std::vector<std::wstring>* v = m_slots[i].ws;
    return v && k < v->size() ? (*v)[k] : std::wstring();
}

int c_node::append_w(unsigned i, const std::wstring& value) {
    const s_step* step = step_of(i);
    if (size_s(i) >= step->max_occurs) return ELMX_OCCURRENCE_ERROR;
    elmx_error e = check_simple(*step->simple, wide_to_utf8(value));
    if (e != ELMX_OK) return e;
    select(i);
    if (!m_slots[i].ws) m_slots[i].ws = new std::vector<std::wstring>();
    m_slots[i].ws->push_back(value);
    return 0;
}

void c_node::delete_s(unsigned i, size_t k) {
    std::vector<std::wstring>* v = m_slots[i].ws;
    if (v && k < v->size()) v->erase(v->begin() + static_cast<std::ptrdiff_t>(k));
}

ct_any_info_container& c_node::any_list(unsigned i) {
    select(i);
    if (!m_slots[i].any) m_slots[i].any = new ct_any_info_container();
    return *m_slots[i].any;
}

std::vector<c_cell_base*>& c_node::cells(unsigned i) {
    if (!m_slots[i].cells) m_slots[i].cells = new std::vector<c_cell_base*>();
    return *m_slots[i].cells;
}

ct_any_info_container& c_node::any_attributes() {
    if (!m_any) m_any = new ct_any_info_container();
    return *m_any;
}

bool c_node::getany_attribute(size_t i, std::string* ns, std::string* name, std::string* value) const {
    if (!m_any || i >= m_any->size()) return false;
    const c_any_info& a = (*m_any)[i];
    if (ns) *ns = a.get_namespace();
    if (name) *name = a.get_name();
    if (value) *value = a.get_value();
    return true;
}

// ---- c_node: checks and equality ------------------------------------------------------------

bool c_node::is_occurs_ok() const {
    for (unsigned i = 0; i < m_type->attr_count; ++i)
        if (m_type->attrs[i].required && !isset(i)) return false;
    unsigned first = first_step_slot();
    for (unsigned k = 0; k < m_type->step_count; ++k) {
        if ((m_type->flags & TF_CHOICE) && k != m_choice) continue;
        const s_step& step = m_type->steps[k];
        unsigned i = first + k;
        size_t n;
        if (step.max_occurs > 1 || step.kind == SK_ANY || step.kind == SK_ANY_DROP || step.kind == SK_CELLS)
            n = size_s(i);
        else if (step.kind == SK_SIMPLE)
            n = isset(i) ? 1 : 0;
        else
            n = m_slots[i].n ? 1 : 0;
        if (n < step.min_occurs || n > step.max_occurs) return false;
    }
    return true;
}

bool c_node::equals(const c_node& o) const {
    if (m_type != o.m_type) return false;
    if ((m_type->flags & TF_CHOICE) && m_choice != o.m_choice) return false;
    unsigned n = slot_count();
    std::string a, b;
    for (unsigned i = 0; i < n; ++i) {
        if (m_flags[i] != o.m_flags[i]) return false;
        const s_step* step = step_of(i);
        const u_slot& x = m_slots[i];
        const u_slot& y = o.m_slots[i];
        if (!step || step->kind == SK_SIMPLE) {
            if (step && step->max_occurs > 1) {
                if (size_s(i) != o.size_s(i)) return false;
                if (x.ws && *x.ws != *y.ws) return false;
            } else if (isset(i)) {
                value_text(i, *simple_of(i), a);
                o.value_text(i, *simple_of(i), b);
                if (a != b) return false;
            }
        } else if (step->kind == SK_ANY || step->kind == SK_ANY_DROP) {
            if (size_s(i) != o.size_s(i)) return false;
            for (size_t k = 0; k < size_s(i); ++k)
                if (!same_captured((*x.any)[k], (*y.any)[k])) return false;
        } else if (step->kind == SK_CELLS) {
            if (size_s(i) != o.size_s(i)) return false;
            for (size_t k = 0; k < size_s(i); ++k)
                if (!(*x.cells)[k]->equals(*(*y.cells)[k])) return false;
        } else if (step->max_occurs > 1) {
            if (size_s(i) != o.size_s(i)) return false;
            for (size_t k = 0; k < size_s(i); ++k)
                if (!(*x.v)[k]->equals(*(*y.v)[k])) return false;
        } else {
            if (!x.n != !y.n) return false;
            if (x.n && !x.n->equals(*y.n)) return false;
        }
    }
    size_t na = m_any ? m_any->size() : 0, nb = o.m_any ? o.m_any->size() : 0;
    if (na != nb) return false;
    for (size_t k = 0; k < na; ++k)
        if (!((*m_any)[k] == (*o.m_any)[k])) return false;
    return true;
}

// ---- reading --------------------------------------------------------------------------------

// Binds the reader's callbacks to one object and its descriptor.
class c_node_helper : public c_unmarshal_helper {
public:
    c_node_helper(c_xml_reader& reader, c_node& node) : c_unmarshal_helper(reader), m_node(node) {}

    bool unmarshal_attribute(elmx_error* p_error) override {
        const s_type* t = m_node.m_type;
        const c_cracked_name& name = reader.get_current_name();
        const char* local = name.local();
        size_t length = name.local_length();
        for (unsigned i = 0; i < t->attr_count; ++i) {
            const s_attr& a = t->attrs[i];
            if (a.ns_id != name.ns_id || a.name[0] != local[0] || std::strlen(a.name) != length ||
                std::memcmp(a.name, local, length) != 0)
                continue;
            if (m_node.isset(i)) {
                *p_error = reader.handle_error(ELMX_ATTRIBUTE_ALREADY_READ, "@" + name.raw);
                return true;
            }
            std::string& text = m_text;
            if (!reader.get_attribute_value(a.simple->item || a.simple->member_count ? EXWS_COLLAPSE : a.simple->whitespace,
                                            &text)) {
                *p_error = reader.handle_error(ELMX_UNABLE_TO_READ_ATTRIBUTE_VALUE, "@" + name.raw);
                return true;
            }
            elmx_error e = m_node.store_value(i, *a.simple, text);
            if (e != ELMX_OK) *p_error = reader.handle_error(e, "@" + name.raw);
            return true;
        }
        return false;
    }

    elmx_error unmarshal_attributes_check() override {
        const s_type* t = m_node.m_type;
        for (unsigned i = 0; i < t->attr_count; ++i)
            if (t->attrs[i].required && !m_node.isset(i))
                return reader.handle_error(ELMX_REQUIRED_ATTRIBUTES_MISSING, t->name);
        return ELMX_OK;
    }

    bool unmarshal_complex_body(elmx_error* p_error) override {
        size_t consumed = 0;
        *p_error = m_node.read_steps(reader, &consumed);
        return *p_error == ELMX_OK;
    }

    bool unmarshal_simple_body(elmx_error* p_error) override {
        const s_simple& simple = *m_node.m_type->simple_content;
        elmx_error e = ELMX_OK;
        if (!reader.get_element_value(simple.item || simple.member_count ? EXWS_COLLAPSE : simple.whitespace, &m_text, &e)) {
            *p_error = reader.handle_error(e != ELMX_OK ? e : ELMX_UNABLE_TO_READ_ELEMENT_VALUE, get_name());
            return false;
        }
        reader.set_current_element_name(get_name());
        e = m_node.store_value(m_node.text_slot(), simple, m_text);
        if (e != ELMX_OK) {
            *p_error = reader.handle_error(e, get_name());
            return false;
        }
        return true;
    }

    bool is_not_choice_or_choice_is_not_set() const override {
        return !(m_node.m_type->flags & TF_CHOICE) || m_node.m_choice >= m_node.m_type->step_count;
    }

private:
    c_node& m_node;
    std::string m_text;
};

elmx_error c_node::unmarshal(c_xml_reader& reader, const std::string& name) {
    if (reader.get_current_element_name() != name) reader.set_current_element_name(name);
    const s_known_elements* known = m_type->known ? m_type->known : reader.get_known_elements();
    if (m_type->flags & TF_ACCEPT_ANY) known = nullptr;
    c_known_elements_selector selector(reader, known);
    c_node_helper helper(reader, *this);
    if (m_type->flags & TF_FOREIGN) helper.set_any_attribute(&any_attributes());
    elmx_error e;
    if (m_type->simple_content)
        e = helper.unmarshal_simple_content(m_type->name, 0);
    else if (!m_type->step_count)
        e = helper.unmarshal_empty_content(m_type->name, 0);
    else
        e = helper.unmarshal_complex_content(m_type->name, 0);
    if (m_any && m_any->empty()) {
        delete m_any;
        m_any = nullptr;
    }
    return e;
}

bool c_node::matches(const c_xml_reader& reader, const s_step& step) const {
    const c_cracked_name& name = reader.get_current_name();
    switch (step.kind) {
        case SK_ANY:
        case SK_ANY_DROP:
            return true;
        case SK_GROUP: {
            if (step.target->flags & TF_ANY_FIRST) return true;
            const char* local = name.local();
            size_t length = name.local_length();
            for (const s_known_elements* row = step.target->first; row && row->p_name; ++row)
                if (row->name_length == length && row->ns_id == name.ns_id && std::memcmp(row->p_name, local, length) == 0)
                    return true;
            return false;
        }
        default: {
            size_t length = name.local_length();
            return name.ns_id == step.ns_id && std::strlen(step.name) == length &&
                   std::memcmp(step.name, name.local(), length) == 0;
        }
    }
}

elmx_error c_node::read_item(c_xml_reader& reader, unsigned slot, const s_step& step) {
    u_slot& s = m_slots[slot];
    elmx_error e = ELMX_OK;
    switch (step.kind) {
        case SK_ELEMENT: {
            c_node* p = make_of(step.target);
            if (step.max_occurs > 1) {
                if (!s.v) s.v = new std::vector<c_node*>();
                s.v->push_back(p);
            } else {
                delete s.n;
                s.n = p;
            }
            e = p->unmarshal(reader, reader.get_current_element_name());
            break;
        }
        case SK_CELLS: {
            c_cell_base* c = new c_cell_base;
            if (!s.cells) s.cells = new std::vector<c_cell_base*>();
            s.cells->push_back(c);
            e = c->unmarshal_cell(reader, *step.target);
            break;
        }
        case SK_SIMPLE: {
            // A simple element takes xml:space and the schema-instance attributes only.
            std::string element = reader.get_current_element_name();
            int space = 0;
            std::string value;
            while (reader.get_attribute_event(nullptr, &e)) {
                const c_cracked_name& an = reader.get_current_name();
                if (an.ns_id == NS_ID_XML && an.get_local_name() == "space") {
                    reader.get_attribute_value(EXWS_COLLAPSE, &value);
                    if (value == "preserve")
                        space = 2;
                    else if (value == "default")
                        space = 1;
                    else
                        return reader.handle_error(ELMX_VALUE_NOT_ENUMERATED, "@" + an.raw);
                    continue;
                }
                if (an.ns_id == NS_ID_XSI || reader.is_ignore_unknown()) continue;
                return reader.handle_error(ELMX_UNEXPECTED_ATTRIBUTE, "@" + an.raw);
            }
            if (e != ELMX_OK) return reader.handle_error(e, element);
            const s_simple& simple = *step.simple;
            if (!reader.get_element_value(simple.item || simple.member_count ? EXWS_COLLAPSE : simple.whitespace, &value, &e))
                return reader.handle_error(e != ELMX_OK ? e : ELMX_UNABLE_TO_READ_ELEMENT_VALUE, element);
            if (step.max_occurs > 1) {
                e = check_simple(simple, value);
                if (e != ELMX_OK) return reader.handle_error(e, element);
                if (!s.ws) s.ws = new std::vector<std::wstring>();
                s.ws->push_back(utf8_to_wide(value));
            } else {
                e = store_value(slot, simple, value);
                if (e != ELMX_OK) return reader.handle_error(e, element);
                set_space(slot, space);
            }
            break;
        }
        case SK_ANY: {
            if (!s.any) s.any = new ct_any_info_container();
            c_any_info* info = new c_any_info;
            s.any->push_back(info);
            e = reader.get_any_element(info);
            break;
        }
        case SK_ANY_DROP:
            if (!reader.ignore_element()) return reader.handle_error(ELMX_BADLY_FORMED, reader.get_current_element_name());
            break;
        case SK_GROUP:
            break;
    }
    if (e != ELMX_OK) return e;
    reader.get_element_event(nullptr, &e);
    if (e != ELMX_OK) return reader.handle_error(e, step.name ? step.name : m_type->name);
    return ELMX_OK;
}

elmx_error c_node::read_steps(c_xml_reader& reader, size_t* consumed) {
    const s_type* t = m_type;
    unsigned first = first_step_slot();
    bool choice = (t->flags & TF_CHOICE) != 0;
    for (unsigned k = 0; k < t->step_count; ++k) {
        const s_step& step = t->steps[k];
        unsigned slot = first + k;
        unsigned count = 0;
        while (count < step.max_occurs) {
            int event = reader.get_current_event();
            if (event != EXE_ELEMENT_START && event < EXE_TOKEN) break;
            if (!matches(reader, step)) break;
            if (step.kind == SK_GROUP) {
                c_node* p = make_of(step.target);
                size_t inner = 0;
                elmx_error e = p->read_steps(reader, &inner);
                if (e != ELMX_OK || inner == 0) {
                    delete p;
                    if (e != ELMX_OK) return e;
                    break;
                }
                if (step.max_occurs > 1) {
                    if (!m_slots[slot].v) m_slots[slot].v = new std::vector<c_node*>();
                    m_slots[slot].v->push_back(p);
                } else {
                    m_slots[slot].n = p;
                }
                *consumed += inner;
            } else {
                elmx_error e = read_item(reader, slot, step);
                if (e != ELMX_OK) return e;
                ++*consumed;
            }
            ++count;
        }
        // A row's cells stay as they are read: no room beyond them is kept.
        if (step.kind == SK_CELLS && m_slots[slot].cells) m_slots[slot].cells->shrink_to_fit();
        if (choice && count) {
            m_choice = k;
            return ELMX_OK;
        }
        if (!choice && count < step.min_occurs && *consumed) {
            // A required member is missing where content has begun: the content is out of the
            // schema's order. The caller reports what stands at this place.
            break;
        }
    }
    return ELMX_OK;
}

elmx_error c_node::unmarshal_document(c_xml_reader& reader, const s_root& root) {
    reader.set_code_file(root.name);
    reader.set_ns_map(root.ns_map);
    if (root.ignore_unknown) reader.set_ignore_unknown(true);
    elmx_error e = ELMX_OK;
    int event = reader.get_element_event(nullptr, &e);
    if (e != ELMX_OK) return reader.handle_error(e, root.name);
    const c_cracked_name& name = reader.get_current_name();
    if (event != EXE_ELEMENT_START || name.ns_id != root.ns_id || name.get_local_name() != root.name)
        return reader.handle_error(ELMX_ELEMENT_NOT_FOUND, root.name);
    return unmarshal(reader, name.raw);
}

// ---- writing --------------------------------------------------------------------------------

elmx_error c_node::marshal_document(c_xml_writer& writer, const s_root& root) const {
    writer.conditionally_select_ns_map(root.ns_map_writer);
    std::string qname = root.name;
    for (const s_ns_map* row = root.ns_map; row->p_ns_uri; ++row)
        if (row->ns_id == root.ns_id && row->p_prefix && row->p_prefix[0]) qname = std::string(row->p_prefix) + ":" + root.name;
    return marshal(writer, qname.c_str());
}

elmx_error c_node::marshal(c_xml_writer& writer, const char* name) const {
    writer.start_element(name);
    if (writer.get_depth() == 1) writer.conditionally_write_ns_attrs();
    elmx_error e = marshal_attributes(writer);
    if (e != ELMX_OK) return e;
    if (m_type->simple_content) {
        if (isset(text_slot())) {
            std::string text;
            value_text(text_slot(), *m_type->simple_content, text);
            if (!text.empty()) writer.marshal_element_body(text);
        }
    } else {
        e = marshal_child_elements(writer);
        if (e != ELMX_OK) return e;
    }
    writer.end_element(name);
    return ELMX_OK;
}

elmx_error c_node::marshal_attributes(c_xml_writer& writer) const {
    std::string text;
    for (unsigned i = 0; i < m_type->attr_count; ++i) {
        const s_attr& a = m_type->attrs[i];
        if (isset(i)) {
            value_text(i, *a.simple, text);
            writer.write_attribute(a.qname, text);
        } else if (a.required) {
            if (!a.default_text) return writer.handle_error(ELMX_OCCURS_ERROR_ON_MARSHAL, std::string("@") + a.name);
            writer.write_attribute(a.qname, a.default_text);
        }
    }
    if (m_any) writer.write_any_attributes(*m_any);
    return ELMX_OK;
}

elmx_error c_node::marshal_step(c_xml_writer& writer, unsigned slot, const s_step& step) const {
    const u_slot& s = m_slots[slot];
    elmx_error e = ELMX_OK;
    switch (step.kind) {
        case SK_ELEMENT:
            if (step.max_occurs > 1) {
                if (s.v)
                    for (const c_node* c : *s.v)
                        if ((e = c->marshal(writer, step.qname)) != ELMX_OK) return e;
            } else if (s.n) {
                return s.n->marshal(writer, step.qname);
            } else if (step.min_occurs) {
                return writer.handle_error(ELMX_OCCURS_ERROR_ON_MARSHAL, step.name);
            }
            break;
        case SK_GROUP:
            if (step.max_occurs > 1) {
                if (s.v)
                    for (const c_node* c : *s.v)
                        if ((e = c->marshal_child_elements(writer)) != ELMX_OK) return e;
            } else if (s.n) {
                return s.n->marshal_child_elements(writer);
            }
            break;
        case SK_CELLS:
            if (s.cells)
                for (const c_cell_base* c : *s.cells)
                    if ((e = c->marshal_cell(writer, *step.target, step.qname)) != ELMX_OK) return e;
            break;
        case SK_SIMPLE: {
            std::string text;
            if (step.max_occurs > 1) {
                if (s.ws)
                    for (const std::wstring& w : *s.ws) {
                        writer.start_element(step.qname);
                        if (!w.empty()) writer.marshal_element_body(w);
                        writer.end_element(step.qname);
                    }
            } else if (isset(slot)) {
                writer.start_element(step.qname);
                int space = get_space(slot);
                if (space) writer.write_attribute("xml:space", space == 2 ? "preserve" : "default");
                value_text(slot, *step.simple, text);
                if (!text.empty()) writer.marshal_element_body(text);
                writer.end_element(step.qname);
            } else if (step.min_occurs && !(m_type->flags & TF_CHOICE)) {
                return writer.handle_error(ELMX_OCCURS_ERROR_ON_MARSHAL, step.name);
            }
            break;
        }
        case SK_ANY:
            if (s.any)
                for (const c_any_info* info : *s.any) writer.write_any_info(*info);
            break;
        case SK_ANY_DROP:
            break;
    }
    return ELMX_OK;
}

elmx_error c_node::marshal_child_elements(c_xml_writer& writer) const {
    unsigned first = first_step_slot();
    if (m_type->flags & TF_CHOICE) {
        if (m_choice >= m_type->step_count) return ELMX_OK;
        return marshal_step(writer, first + m_choice, m_type->steps[m_choice]);
    }
    for (unsigned k = 0; k < m_type->step_count; ++k) {
        elmx_error e = marshal_step(writer, first + k, m_type->steps[k]);
        if (e != ELMX_OK) return e;
    }
    return ELMX_OK;
}

// ---- cells ----------------------------------------------------------------------------------

bool split_cell_ref(const char* text, size_t size, unsigned* row, unsigned* col) {
    size_t i = 0;
    unsigned c = 0;
    while (i < size && text[i] >= 'A' && text[i] <= 'Z' && i < 3) c = c * 26 + static_cast<unsigned>(text[i++] - 'A' + 1);
    if (i == 0 || i == size) return false;
    unsigned r = 0;
    size_t digits = 0;
    for (; i < size; ++i, ++digits) {
        if (text[i] < '0' || text[i] > '9' || digits >= 7) return false;
        r = r * 10 + static_cast<unsigned>(text[i] - '0');
    }
    if (r == 0 || r > ROW_LIMIT || c > COL_LIMIT) return false;
    *row = r - 1;
    *col = c - 1;
    return true;
}

namespace {

// Writes an unsigned number as decimal text at, and returns the end.
char* append_unsigned(char* at, unsigned value) { return std::to_chars(at, at + 12, value).ptr; }

// Writes the "A1" text of a zero-based address at, at most 11 characters, and returns the end.
char* append_cell_ref(char* at, unsigned row, unsigned col) {
    char letters[4];
    int n = 0;
    unsigned c = col + 1;
    while (c && n < 4) {
        letters[n++] = static_cast<char>('A' + (c - 1) % 26);
        c = (c - 1) / 26;
    }
    while (n) *at++ = letters[--n];
    return append_unsigned(at, row + 1);
}

}  // namespace

void make_cell_ref(unsigned row, unsigned col, std::string& out) {
    char text[16];
    out.assign(text, append_cell_ref(text, row, col));
}

namespace {
// Type codes of t; "d" (a date as text) takes the code beyond the six of the compact layout.
const char* const cell_types[] = {"", "b", "n", "e", "s", "str", "inlineStr", "d"};
}

c_cell_base::c_cell_base(const c_cell_base& o) : m_word(o.m_word), m_col(o.m_col), m_s(o.m_s) {
    if (o.m_extra) {
        m_extra = new s_extra(*o.m_extra);
        m_extra->f = o.m_extra->f ? o.m_extra->f->clone_node() : nullptr;
        m_extra->is = o.m_extra->is ? o.m_extra->is->clone_node() : nullptr;
    }
    if (o.isset_v()) set_v_utf8(o.v_data(), o.v_size());
}

void c_cell_base::assign_f(c_node* p) {
    if (!p && !m_extra) return;
    s_extra& x = extra();
    if (p != x.f) {
        delete x.f;
        x.f = p;
    }
}

void c_cell_base::assign_is(c_node* p) {
    if (!p && !m_extra) return;
    s_extra& x = extra();
    if (p != x.is) {
        delete x.is;
        x.is = p;
    }
}

c_cell_base& c_cell_base::operator=(const c_cell_base& o) {
    if (this != &o) {
        c_cell_base copy(o);
        swap(copy);
    }
    return *this;
}

c_cell_base::~c_cell_base() {
    if (m_extra) {
        delete m_extra->f;
        delete m_extra->is;
        delete m_extra;
    }
    unset_v();
}

void c_cell_base::swap(c_cell_base& o) {
    std::swap(m_word, o.m_word);
    std::swap(m_col, o.m_col);
    std::swap(m_s, o.m_s);
    std::swap(m_extra, o.m_extra);
    std::swap(m_v, o.m_v);
}

std::wstring c_cell_base::get_r() const {
    std::string text;
    make_cell_ref(get_row(), m_col, text);
    return utf8_to_wide(text);
}

int c_cell_base::set_r(const std::wstring& ref) {
    std::string text = wide_to_utf8(ref);
    unsigned row = 0, col = 0;
    if (!split_cell_ref(text.data(), text.size(), &row, &col)) return ELMX_VALUE_BAD_FORMAT;
    set_row_col(row, col);
    return 0;
}

std::wstring c_cell_base::get_t() const {
    unsigned code = type_code();
    return utf8_to_wide(code == 0 ? "n" : cell_types[code]);
}

int c_cell_base::set_t(const std::wstring& t) {
    std::string text = wide_to_utf8(t);
    for (unsigned code = 1; code <= 7; ++code)
        if (text == cell_types[code]) {
            set_type_code(code);
            return 0;
        }
    set_type_code(0);
    return ELMX_VALUE_NOT_ENUMERATED;
}

void c_cell_base::unset_v() {
    if (m_v.tag == TAG_HEAP) delete[] m_v.heap.p;
    std::memset(&m_v, 0, sizeof m_v);
}

void c_cell_base::set_v_utf8(const char* data, size_t size) {
    unset_v();
    if (size <= INLINE_CAPACITY) {
        std::memcpy(m_v.buf, data, size);
        m_v.tag = static_cast<uint8_t>(TAG_INLINE | size);
    } else {
        m_v.heap.p = new char[size];
        std::memcpy(m_v.heap.p, data, size);
        m_v.heap.size = static_cast<uint32_t>(size);
        m_v.tag = TAG_HEAP;
    }
}

std::wstring c_cell_base::get_v() const {
    std::wstring out;
    utf8_to_wide(out, v_data(), v_size());
    return out;
}

int c_cell_base::set_v(const std::wstring& v) {
    std::string text = wide_to_utf8(v);
    set_v_utf8(text.data(), text.size());
    return 0;
}

c_node& c_cell_base::f_object(const s_type& type) {
    s_extra& x = extra();
    if (!x.f) x.f = make_of(&type);
    return *x.f;
}

c_node& c_cell_base::is_object(const s_type& type) {
    s_extra& x = extra();
    if (!x.is) x.is = make_of(&type);
    return *x.is;
}

bool c_cell_base::equals(const c_cell_base& o) const {
    if (m_word != o.m_word || m_col != o.m_col || m_s != o.m_s || get_cm() != o.get_cm() || get_vm() != o.get_vm())
        return false;
    if (v_size() != o.v_size() || isset_v() != o.isset_v() || std::memcmp(v_data(), o.v_data(), v_size()) != 0) return false;
    const c_node* f = f_ptr();
    const c_node* of = o.f_ptr();
    if (!f != !of || (f && !f->equals(*of))) return false;
    const c_node* is = is_ptr();
    const c_node* ois = o.is_ptr();
    if (!is != !ois || (is && !is->equals(*ois))) return false;
    return true;
}

namespace {

// Reads the attributes of a cell straight into its packed fields.
class c_cell_helper : public c_unmarshal_helper {
public:
    c_cell_helper(c_xml_reader& reader, c_cell_base& cell, uint32_t& word, uint32_t& col, uint32_t& s,
                  const s_type& worker)
        : c_unmarshal_helper(reader), m_cell(cell), m_word(word), m_col(col), m_s(s), m_worker(worker) {}

    bool read_number(uint32_t& field, uint32_t flag, const char* item) {
        if (m_word & flag) {
            m_error = reader.handle_error(ELMX_ATTRIBUTE_ALREADY_READ, item);
            return true;
        }
        reader.get_attribute_value(EXWS_COLLAPSE, &m_text);
        uint32_t v = 0;
        if (!v_to_o(v, m_text)) {
            m_error = reader.handle_error(ELMX_VALUE_BAD_FORMAT, item);
            return true;
        }
        field = v;
        m_word |= flag;
        return true;
    }

    bool unmarshal_attribute(elmx_error* p_error) override {
        const c_cracked_name& name = reader.get_current_name();
        if (name.ns_id != NS_ID_NONE) return false;
        const char* local = name.local();
        size_t length = name.local_length();
        m_error = ELMX_OK;
        bool known = true;
        if (length == 1 && local[0] == 'r') {
            if (m_word & c_cell_base::REF_SET) {
                m_error = reader.handle_error(ELMX_ATTRIBUTE_ALREADY_READ, "@r");
            } else {
                reader.get_attribute_value(EXWS_PRESERVE, &m_text);
                unsigned row = 0, col = 0;
                if (split_cell_ref(m_text.data(), m_text.size(), &row, &col)) {
                    m_word = (m_word & ~static_cast<uint32_t>(c_cell_base::ROW_MASK)) | row | c_cell_base::REF_SET;
                    m_col = col;
                }
            }
        } else if (length == 1 && local[0] == 's') {
            read_number(m_s, c_cell_base::S_SET, "@s");
        } else if (length == 1 && local[0] == 't') {
            if (m_word >> c_cell_base::TYPE_SHIFT) {
                m_error = reader.handle_error(ELMX_ATTRIBUTE_ALREADY_READ, "@t");
            } else {
                reader.get_attribute_value(EXWS_PRESERVE, &m_text);
                unsigned code = 0;
                for (unsigned c = 1; c <= 7 && !code; ++c)
                    if (m_text == cell_types[c]) code = c;
                if (!code)
                    m_error = reader.handle_error(ELMX_VALUE_NOT_ENUMERATED, "@t");
                else
                    m_word |= code << c_cell_base::TYPE_SHIFT;
            }
        } else if (length == 2 && local[0] == 'c' && local[1] == 'm') {
            uint32_t v = 0;
            read_number(v, c_cell_base::CM_SET, "@cm");
            if (m_error == ELMX_OK) m_cell.set_cm(v);
        } else if (length == 2 && local[0] == 'v' && local[1] == 'm') {
            uint32_t v = 0;
            read_number(v, c_cell_base::VM_SET, "@vm");
            if (m_error == ELMX_OK) m_cell.set_vm(v);
        } else if (length == 2 && local[0] == 'p' && local[1] == 'h') {
            reader.get_attribute_value(EXWS_COLLAPSE, &m_text);
            if (!is_valid_bool(m_text)) {
                m_error = reader.handle_error(ELMX_VALUE_BAD_FORMAT, "@ph");
            } else {
                bool v = false;
                v_to_o(v, m_text);
                m_word |= c_cell_base::PH_SET | (v ? c_cell_base::PH_VALUE : 0);
            }
        } else {
            known = false;
        }
        *p_error = m_error;
        return known;
    }

    bool unmarshal_complex_body(elmx_error* p_error) override {
        // f, v, is and extLst in this order, each at most once.
        const s_step* steps = m_worker.steps;
        unsigned next = 0;
        elmx_error e = ELMX_OK;
        for (;;) {
            int event = reader.get_current_event();
            if (event != EXE_ELEMENT_START) break;
            const c_cracked_name& name = reader.get_current_name();
            std::string local = name.get_local_name();
            unsigned k = next;
            while (k < m_worker.step_count && !(steps[k].ns_id == name.ns_id && local == steps[k].name)) ++k;
            if (k >= m_worker.step_count) break;
            next = k + 1;
            if (local == "f") {
                e = m_cell.assign_child_from(reader, *steps[k].target, true);
            } else if (local == "is") {
                e = m_cell.assign_child_from(reader, *steps[k].target, false);
            } else if (local == "v") {
                std::string element = name.raw;
                while (reader.get_attribute_event(nullptr, &e)) {
                    const c_cracked_name& an = reader.get_current_name();
                    if (an.ns_id == NS_ID_XSI || an.ns_id == NS_ID_XML || reader.is_ignore_unknown()) continue;
                    e = reader.handle_error(ELMX_UNEXPECTED_ATTRIBUTE, "@" + an.raw);
                    break;
                }
                if (e == ELMX_OK && !reader.get_element_value(EXWS_PRESERVE, &m_text, &e))
                    e = reader.handle_error(e != ELMX_OK ? e : ELMX_UNABLE_TO_READ_ELEMENT_VALUE, element);
                if (e == ELMX_OK) m_cell.set_v_utf8(m_text.data(), m_text.size());
            } else {
                // The extension list of a cell is read for its form and not kept.
                c_node ext(steps[k].target);
                e = ext.unmarshal(reader, name.raw);
            }
            if (e != ELMX_OK) break;
            reader.get_element_event(nullptr, &e);
            if (e != ELMX_OK) break;
        }
        *p_error = e;
        return e == ELMX_OK;
    }

private:
    c_cell_base& m_cell;
    uint32_t& m_word;
    uint32_t& m_col;
    uint32_t& m_s;
    const s_type& m_worker;
    elmx_error m_error = ELMX_OK;
    std::string m_text;
};

}  // namespace

elmx_error c_cell_base::assign_child_from(c_xml_reader& reader, const s_type& type, bool formula) {
    c_node* p = make_of(&type);
    if (formula)
        assign_f(p);
    else
        assign_is(p);
    return p->unmarshal(reader, reader.get_current_element_name());
}

elmx_error c_cell_base::unmarshal_cell(c_xml_reader& reader, const s_type& worker) {
    c_known_elements_selector selector(reader, worker.known ? worker.known : reader.get_known_elements());
    c_cell_helper helper(reader, *this, m_word, m_col, m_s, worker);
    return helper.unmarshal_complex_content(worker.name, 0);
}

namespace {

char* append_text(char* at, const char* text) {
    while (*text) *at++ = *text++;
    return at;
}

}  // namespace

bool c_cell_base::marshal_plain_cell(c_xml_writer& writer, const s_type& worker, const char* name) const {
    const char* v_name = nullptr;
    for (unsigned k = 0; k < worker.step_count; ++k)
        if (worker.steps[k].name[0] == 'v' && worker.steps[k].name[1] == 0) v_name = worker.steps[k].qname;
    if (!v_name || std::strlen(name) > 16 || std::strlen(v_name) > 16) return false;
    std::string* out = writer.whole_element_output();
    if (!out) return false;
    // The start tag and its attributes, as write_attribute would give them: none of these
    // values holds a character that needs escaping.
    char tag[192];
    char* at = tag;
    *at++ = '<';
    at = append_text(at, name);
    if (isset_r()) at = append_text(append_cell_ref(append_text(at, " r=\""), get_row(), m_col), "\"");
    if (isset_s()) at = append_text(append_unsigned(append_text(at, " s=\""), m_s), "\"");
    if (unsigned code = type_code()) at = append_text(append_text(append_text(at, " t=\""), cell_types[code]), "\"");
    if (isset_cm()) at = append_text(append_unsigned(append_text(at, " cm=\""), get_cm()), "\"");
    if (isset_vm()) at = append_text(append_unsigned(append_text(at, " vm=\""), get_vm()), "\"");
    if (isset_ph()) at = append_text(at, get_ph() ? " ph=\"true\"" : " ph=\"false\"");
    if (!isset_v()) {
        at = append_text(at, "/>");
        out->append(tag, static_cast<size_t>(at - tag));
        return true;
    }
    at = append_text(append_text(at, "><"), v_name);
    if (v_size() == 0) {
        at = append_text(at, "/>");
    } else {
        at = append_text(at, ">");
        out->append(tag, static_cast<size_t>(at - tag));
        output_convert_to_xml(*out, v_data(), v_size());
        at = append_text(append_text(append_text(tag, "</"), v_name), ">");
    }
    at = append_text(append_text(append_text(at, "</"), name), ">");
    out->append(tag, static_cast<size_t>(at - tag));
    return true;
}

elmx_error c_cell_base::marshal_cell(c_xml_writer& writer, const s_type& worker, const char* name) const {
    // Most cells hold no formula and no inline string: they are written in one piece.
    if (!f_ptr() && !is_ptr() && marshal_plain_cell(writer, worker, name)) return ELMX_OK;
    writer.start_element(name);
    std::string text;
    if (isset_r()) {
        make_cell_ref(get_row(), m_col, text);
        writer.write_attribute("r", text);
    }
    if (isset_s()) {
        o_to_v(text, m_s);
        writer.write_attribute("s", text);
    }
    unsigned code = type_code();
    if (code) writer.write_attribute("t", cell_types[code]);
    if (isset_cm()) {
        o_to_v(text, get_cm());
        writer.write_attribute("cm", text);
    }
    if (isset_vm()) {
        o_to_v(text, get_vm());
        writer.write_attribute("vm", text);
    }
    if (isset_ph()) writer.write_attribute("ph", get_ph() ? "true" : "false");
    elmx_error e = ELMX_OK;
    // The worker's steps are f, v, is and extLst, in this order.
    for (unsigned k = 0; k < worker.step_count; ++k) {
        const s_step& step = worker.steps[k];
        const char* n = step.name;
        if (n[0] == 'f' && n[1] == 0) {
            if (f_ptr() && (e = f_ptr()->marshal(writer, step.qname)) != ELMX_OK) return e;
        } else if (n[0] == 'v' && n[1] == 0) {
            if (!isset_v()) continue;
            writer.start_element(step.qname);
            if (v_size()) writer.marshal_element_body(std::string(v_data(), v_size()));
            writer.end_element(step.qname);
        } else if (n[0] == 'i' && n[1] == 's' && n[2] == 0) {
            if (is_ptr() && (e = is_ptr()->marshal(writer, step.qname)) != ELMX_OK) return e;
        }
    }
    writer.end_element(name);
    return ELMX_OK;
}

}  // namespace lmx
}  // namespace zelvar
