// Small classes written the way the generated schema classes are, to drive the reader and
// writer in tests, the fuzz target and the benchmark. Namespace 1000 is the main one of this
// little schema, 1001 a relationship-like second one.
#pragma once
#include <cstdint>
#include <string>

#include "ooxml/lmx.h"

namespace lmxtest {
using namespace zelvar::lmx;

inline const char* const main_uri = "urn:zelvar:test:main";
inline const char* const rel_uri = "urn:zelvar:test:rel";

enum { NS_MAIN = 1000, NS_REL = 1001 };

inline const s_ns_map ns_map_reader[] = {{NS_MAIN, "", main_uri}, {NS_REL, "r", rel_uri}, {0, nullptr, nullptr}};
inline const s_ns_map ns_map_writer[] = {{NS_MAIN, nullptr, main_uri}, {NS_REL, "r", rel_uri}, {0, nullptr, nullptr}};

enum {
    e_flag = EXE_TOKEN, e_i8, e_u16, e_i32, e_u64, e_d, e_color, e_when, e_code, e_kind, e_words, e_list, e_req,
    e_r, e_s, e_t, e_f, e_v, e_spans, e_ht, e_hidden, e_c, e_extLst, e_row, e_props, e_sheetData, e_one, e_two,
    e_seq, e_x, e_y, e_opt, e_item, e_need, e_ext, e_uri, e_fonts, e_font, e_name, e_count, e_id
};

// ---- simple types ---------------------------------------------------------------------------

inline elmx_error value_validator_i32(const int32_t& v) {
    if (v < -5) return ELMX_VALUE_EXCEEDS_MIN;
    if (v > 100) return ELMX_VALUE_EXCEEDS_MAX;
    return ELMX_OK;
}
inline elmx_error value_validator_color(const c_binary& v) {
    if (v.size() < 4) return ELMX_LENGTH_TOO_SHORT;
    if (v.size() > 4) return ELMX_LENGTH_TOO_LONG;
    return ELMX_OK;
}
inline elmx_error lexical_validator_hex(const std::string& v) {
    return is_valid_hexbinary(v) ? ELMX_OK : ELMX_VALUE_BAD_FORMAT;
}
inline const c_regex& code_pattern() {
    static const c_regex pattern("[A-Z]{2}[0-9]+");
    return pattern;
}
inline elmx_error lexical_validator_code(const std::string& v) {
    return code_pattern().is_match(v) ? ELMX_OK : ELMX_NO_PATTERN_MATCHED;
}
inline elmx_error lexical_validator_kind(const std::string& v) {
    return (v == "alpha" || v == "beta") ? ELMX_OK : ELMX_VALUE_NOT_ENUMERATED;
}
inline elmx_error lexical_validator_t(const std::string& v) {
    return (v == "b" || v == "n" || v == "d" || v == "e" || v == "s" || v == "str" || v == "inlineStr") ? ELMX_OK
                                                                                           : ELMX_VALUE_NOT_ENUMERATED;
}
inline elmx_error lexical_validator_datetime(const std::string& v) {
    return is_valid_datetime(v) ? ELMX_OK : ELMX_VALUE_BAD_FORMAT;
}

inline const ct_typed_validation_spec<bool> validation_spec_bool(EXWS_COLLAPSE);
inline const ct_typed_validation_spec<int8_t> validation_spec_i8(EXWS_COLLAPSE);
inline const ct_typed_validation_spec<uint16_t> validation_spec_u16(EXWS_COLLAPSE);
inline const ct_typed_validation_spec<int32_t> validation_spec_i32(EXWS_COLLAPSE, nullptr, nullptr, value_validator_i32);
inline const ct_typed_validation_spec<uint32_t> validation_spec_u32(EXWS_COLLAPSE);
inline const ct_typed_validation_spec<uint32_t> validation_spec_u32_default0(EXWS_COLLAPSE, "0");
inline const ct_typed_validation_spec<unsigned long long> validation_spec_u64(EXWS_COLLAPSE);
inline const ct_typed_validation_spec<double> validation_spec_double(EXWS_COLLAPSE);
inline const ct_typed_validation_spec<c_binary> validation_spec_color(EXWS_COLLAPSE, nullptr, lexical_validator_hex,
                                                                      value_validator_color);
inline const ct_typed_validation_spec<c_datetime> validation_spec_datetime(EXWS_COLLAPSE, nullptr,
                                                                           lexical_validator_datetime);
inline const ct_typed_validation_spec<std::string> validation_spec_code(EXWS_COLLAPSE, nullptr, lexical_validator_code);
inline const ct_typed_validation_spec<std::wstring> validation_spec_kind(EXWS_COLLAPSE, nullptr, lexical_validator_kind);
inline const ct_typed_validation_spec<std::wstring> validation_spec_t(EXWS_COLLAPSE, "n", lexical_validator_t);
inline const ct_typed_validation_spec<std::wstring> validation_spec_wstring(EXWS_PRESERVE);
inline const ct_typed_validation_spec<std::string> validation_spec_string(EXWS_PRESERVE);
inline const ct_typed_validation_spec<std::string> validation_spec_collapsed(EXWS_COLLAPSE);
inline const ct_typed_validation_spec<std::wstring> validation_spec_replaced(EXWS_REPLACE);

// Reads the next child event with the table from a step on; false with the error handled.
inline bool next_child(c_xml_reader& reader, const s_event_map* map, elmx_error* p_error, const std::string& owner) {
    reader.get_element_event(map, p_error);
    if (*p_error != ELMX_OK) {
        *p_error = reader.handle_error(*p_error, owner);
        return false;
    }
    return true;
}

// A generated class's unmarshal: known elements, a local helper bound to the class, the engine.
#define LMXTEST_UNMARSHAL(Class, Known, AnyVector, Content)                                        \
    elmx_error unmarshal(c_xml_reader& reader, const std::string& name) {                          \
        reader.set_current_element_name(name);                                                     \
        c_known_elements_selector selector(reader, Known);                                         \
        struct helper : c_unmarshal_helper {                                                       \
            Class* o;                                                                              \
            helper(Class* object, c_xml_reader& r) : c_unmarshal_helper(r), o(object) {}           \
            bool unmarshal_attribute(elmx_error* e) override { return o->unmarshal_attributes(reader, e); } \
            elmx_error unmarshal_attributes_check() override { return o->unmarshal_attributes_check(reader); } \
            bool unmarshal_complex_body(elmx_error* e) override { return o->unmarshal_body(reader, e); } \
            bool is_not_choice_or_choice_is_not_set() const override { return o->choice_not_set(); } \
        } h(this, reader);                                                                         \
        h.set_any_attribute(AnyVector);                                                            \
        return h.Content(__FILE__, __LINE__);                                                      \
    }                                                                                              \
    elmx_error unmarshal_attributes_check(c_xml_reader&) { return ELMX_OK; }                       \
    bool choice_not_set() const { return true; }

// ---- a type with attributes of many simple types and no content -----------------------------

class c_CT_Props {
public:
    ct_simple_pod_optional<bool> m_flag;
    ct_simple_pod_optional<int8_t> m_i8;
    ct_simple_pod_optional<uint16_t> m_u16;
    ct_simple_pod_optional<int32_t> m_i32;
    ct_simple_pod_optional<unsigned long long> m_u64;
    ct_simple_pod_optional<double> m_d;
    ct_simple_non_pod_optional<c_binary> m_color;
    ct_simple_non_pod_optional<c_datetime> m_when;
    ct_simple_non_pod_optional<std::string> m_code;
    ct_simple_non_pod_optional<std::wstring> m_kind;
    ct_simple_non_pod_optional<std::wstring> m_words;  // white space replaced
    ct_simple_pod_list_optional<int32_t> m_list;
    ct_simple_pod_single<uint32_t> m_req;

    static inline const s_event_map attr_event_map[] = {
        {0, "flag", 4, e_flag}, {0, "i8", 2, e_i8},       {0, "u16", 3, e_u16},   {0, "i32", 3, e_i32},
        {0, "u64", 3, e_u64},   {0, "d", 1, e_d},         {0, "color", 5, e_color}, {0, "when", 4, e_when},
        {0, "code", 4, e_code}, {0, "kind", 4, e_kind},   {0, "words", 5, e_words}, {0, "list", 4, e_list},
        {0, "req", 3, e_req},   {0, nullptr, 0, 0}};

    c_CT_Props* clone() const { return new c_CT_Props(*this); }

    elmx_error unmarshal(c_xml_reader& reader, const std::string& name) {
        reader.set_current_element_name(name);
        struct helper : c_unmarshal_helper {
            c_CT_Props* o;
            helper(c_CT_Props* object, c_xml_reader& r) : c_unmarshal_helper(r), o(object) {}
            bool unmarshal_attribute(elmx_error* e) override { return o->unmarshal_attributes(reader, e); }
            elmx_error unmarshal_attributes_check() override {
                if (!o->m_req.is_value_set()) return reader.handle_error(ELMX_REQUIRED_ATTRIBUTES_MISSING, "CT_Props");
                return ELMX_OK;
            }
        } h(this, reader);
        return h.unmarshal_empty_content(__FILE__, __LINE__);
    }
    bool unmarshal_attributes(c_xml_reader& reader, elmx_error* e) {
        switch (reader.tokenise(attr_event_map, false)) {
            case e_flag: *e = reader.unmarshal_attribute_value(m_flag, validation_spec_bool); return true;
            case e_i8: *e = reader.unmarshal_attribute_value(m_i8, validation_spec_i8); return true;
            case e_u16: *e = reader.unmarshal_attribute_value(m_u16, validation_spec_u16); return true;
            case e_i32: *e = reader.unmarshal_attribute_value(m_i32, validation_spec_i32); return true;
            case e_u64: *e = reader.unmarshal_attribute_value(m_u64, validation_spec_u64); return true;
            case e_d: *e = reader.unmarshal_attribute_value(m_d, validation_spec_double); return true;
            case e_color: *e = reader.unmarshal_attribute_value(m_color, validation_spec_color); return true;
            case e_when: *e = reader.unmarshal_attribute_value(m_when, validation_spec_datetime); return true;
            case e_code: *e = reader.unmarshal_attribute_value(m_code, validation_spec_code); return true;
            case e_kind: *e = reader.unmarshal_attribute_value(m_kind, validation_spec_kind); return true;
            case e_words: *e = reader.unmarshal_attribute_value(m_words, validation_spec_replaced); return true;
            case e_list: *e = reader.unmarshal_attribute_value(m_list, validation_spec_i32); return true;
            case e_req: *e = reader.unmarshal_attribute_value(m_req, validation_spec_u32); return true;
        }
        return false;
    }
    elmx_error marshal(c_xml_writer& w, const char* name) const {
        w.start_element(name);
        elmx_error e;
        if ((e = w.marshal_attribute("flag", m_flag, validation_spec_bool)) ||
            (e = w.marshal_attribute("i8", m_i8, validation_spec_i8)) ||
            (e = w.marshal_attribute("u16", m_u16, validation_spec_u16)) ||
            (e = w.marshal_attribute("i32", m_i32, validation_spec_i32)) ||
            (e = w.marshal_attribute("u64", m_u64, validation_spec_u64)) ||
            (e = w.marshal_attribute("d", m_d, validation_spec_double)) ||
            (e = w.marshal_attribute("color", m_color, validation_spec_color)) ||
            (e = w.marshal_attribute("when", m_when, validation_spec_datetime)) ||
            (e = w.marshal_attribute("code", m_code, validation_spec_code)) ||
            (e = w.marshal_attribute("kind", m_kind, validation_spec_kind)) ||
            (e = w.marshal_attribute("words", m_words, validation_spec_replaced)) ||
            (e = w.marshal_attribute("list", m_list, validation_spec_i32)) ||
            (e = w.marshal_attribute_or_default("req", m_req, validation_spec_u32)))
            return e;
        w.end_element(name);
        return ELMX_OK;
    }
};

// ---- cell and row: the shape of worksheet data ----------------------------------------------

class c_CT_Cell {
public:
    ct_simple_non_pod_optional<std::string> m_r;
    ct_simple_pod_optional<uint32_t> m_s{0};
    ct_simple_non_pod_optional<std::wstring> m_t{L"n"};
    ct_simple_non_pod_optional<std::wstring> m_f;
    ct_simple_non_pod_optional<std::wstring> m_v;

    static inline const s_event_map attr_event_map[] = {
        {0, "r", 1, e_r}, {0, "s", 1, e_s}, {0, "t", 1, e_t}, {0, nullptr, 0, 0}};
    static inline const s_event_map elem_event_map[] = {
        {NS_MAIN, "f", 1, e_f}, {NS_MAIN, "v", 1, e_v}, {0, nullptr, 0, 0}};
    static inline const s_known_elements known_elements[] = {
        {NS_MAIN, "f", 1}, {NS_MAIN, "v", 1}, {0, nullptr, 0}};

    c_CT_Cell* clone() const { return new c_CT_Cell(*this); }
    LMXTEST_UNMARSHAL(c_CT_Cell, known_elements, nullptr, unmarshal_complex_content)

    bool unmarshal_attributes(c_xml_reader& reader, elmx_error* e) {
        switch (reader.tokenise(attr_event_map, false)) {
            case e_r: *e = reader.unmarshal_attribute_value(m_r, validation_spec_collapsed); return true;
            case e_s: *e = reader.unmarshal_attribute_value(m_s, validation_spec_u32_default0); return true;
            case e_t: *e = reader.unmarshal_attribute_value(m_t, validation_spec_t); return true;
        }
        return false;
    }
    bool unmarshal_body(c_xml_reader& reader, elmx_error* e) {
        reader.tokenise(elem_event_map, true);
        if (reader.get_current_event() == e_f) {
            if ((*e = reader.unmarshal_element_value(m_f, validation_spec_wstring)) != ELMX_OK) return false;
            if (!next_child(reader, elem_event_map + 1, e, "c")) return false;
        }
        if (reader.get_current_event() == e_v) {
            if ((*e = reader.unmarshal_element_value(m_v, validation_spec_wstring)) != ELMX_OK) return false;
            if (!next_child(reader, nullptr, e, "c")) return false;
        }
        return true;
    }
    elmx_error marshal(c_xml_writer& w, const char* name) const {
        w.start_element(name);
        w.marshal_attribute("r", m_r, validation_spec_collapsed);
        w.marshal_attribute("s", m_s, validation_spec_u32_default0);
        w.marshal_attribute("t", m_t, validation_spec_t);
        w.marshal_element("f", m_f, validation_spec_wstring);
        w.marshal_element("v", m_v, validation_spec_wstring);
        w.end_element(name);
        return ELMX_OK;
    }
};

class c_CT_Row {
public:
    ct_simple_pod_optional<uint32_t> m_r;
    ct_simple_pod_list_optional<std::string> m_spans;
    ct_simple_pod_optional<double> m_ht;
    ct_simple_pod_optional<bool> m_hidden{false};
    ct_any_info_container m_any_attribute;
    ct_complex_multi<c_CT_Cell> m_c;

    static inline const s_event_map attr_event_map[] = {{0, "r", 1, e_r},
                                                        {0, "spans", 5, e_spans},
                                                        {0, "ht", 2, e_ht},
                                                        {0, "hidden", 6, e_hidden},
                                                        {0, nullptr, 0, 0}};
    static inline const s_event_map elem_event_map[] = {{NS_MAIN, "c", 1, e_c}, {0, nullptr, 0, 0}};
    static inline const s_known_elements known_elements[] = {{NS_MAIN, "c", 1}, {NS_MAIN, "extLst", 6}, {0, nullptr, 0}};

    c_CT_Row* clone() const { return new c_CT_Row(*this); }
    LMXTEST_UNMARSHAL(c_CT_Row, known_elements, &m_any_attribute, unmarshal_complex_content)

    bool unmarshal_attributes(c_xml_reader& reader, elmx_error* e) {
        switch (reader.tokenise(attr_event_map, false)) {
            case e_r: *e = reader.unmarshal_attribute_value(m_r, validation_spec_u32); return true;
            case e_spans: *e = reader.unmarshal_attribute_value(m_spans, validation_spec_collapsed); return true;
            case e_ht: *e = reader.unmarshal_attribute_value(m_ht, validation_spec_double); return true;
            case e_hidden: *e = reader.unmarshal_attribute_value(m_hidden, validation_spec_bool); return true;
        }
        return false;
    }
    bool unmarshal_body(c_xml_reader& reader, elmx_error* e) {
        reader.tokenise(elem_event_map, true);
        while (reader.get_current_event() == e_c) {
            if ((*e = reader.unmarshal_child_element(m_c)) != ELMX_OK) return false;
            if (!next_child(reader, elem_event_map, e, "row")) return false;
        }
        return true;
    }
    elmx_error marshal(c_xml_writer& w, const char* name) const {
        w.start_element(name);
        w.marshal_attribute("r", m_r, validation_spec_u32);
        w.marshal_attribute("spans", m_spans, validation_spec_collapsed);
        w.marshal_attribute("ht", m_ht, validation_spec_double);
        w.marshal_attribute("hidden", m_hidden, validation_spec_bool);
        w.write_any_attributes(m_any_attribute);
        elmx_error e = w.marshal_child_element("c", m_c);
        if (e) return e;
        w.end_element(name);
        return ELMX_OK;
    }
};

class c_CT_SheetData {
public:
    ct_complex_multi<c_CT_Row> m_row;
    static inline const s_event_map elem_event_map[] = {{NS_MAIN, "row", 3, e_row}, {0, nullptr, 0, 0}};
    static inline const s_known_elements known_elements[] = {{NS_MAIN, "row", 3}, {0, nullptr, 0}};

    c_CT_SheetData* clone() const { return new c_CT_SheetData(*this); }
    LMXTEST_UNMARSHAL(c_CT_SheetData, known_elements, nullptr, unmarshal_complex_content)
    bool unmarshal_attributes(c_xml_reader&, elmx_error*) { return false; }
    bool unmarshal_body(c_xml_reader& reader, elmx_error* e) {
        reader.tokenise(elem_event_map, true);
        while (reader.get_current_event() == e_row) {
            if ((*e = reader.unmarshal_child_element(m_row)) != ELMX_OK) return false;
            if (!next_child(reader, elem_event_map, e, "sheetData")) return false;
        }
        return true;
    }
    elmx_error marshal(c_xml_writer& w, const char* name) const {
        w.start_element(name);
        elmx_error e = w.marshal_child_element("row", m_row);
        if (e) return e;
        w.end_element(name);
        return ELMX_OK;
    }
};

// ---- a choice -------------------------------------------------------------------------------

class c_CT_One {
public:
    ct_simple_pod_optional<int32_t> m_x;
    static inline const s_event_map attr_event_map[] = {{0, "x", 1, e_x}, {0, nullptr, 0, 0}};
    c_CT_One* clone() const { return new c_CT_One(*this); }
    LMXTEST_UNMARSHAL(c_CT_One, nullptr, nullptr, unmarshal_empty_content)
    bool unmarshal_attributes(c_xml_reader& reader, elmx_error* e) {
        if (reader.tokenise(attr_event_map, false) != e_x) return false;
        *e = reader.unmarshal_attribute_value(m_x, validation_spec_i32);
        return true;
    }
    bool unmarshal_body(c_xml_reader&, elmx_error*) { return true; }
    elmx_error marshal(c_xml_writer& w, const char* name) const {
        w.start_element(name);
        w.marshal_attribute("x", m_x, validation_spec_i32);
        w.end_element(name);
        return ELMX_OK;
    }
};

class c_CT_Two {
public:
    ct_simple_non_pod_optional<std::wstring> m_y;
    static inline const s_event_map attr_event_map[] = {{0, "y", 1, e_y}, {0, nullptr, 0, 0}};
    c_CT_Two* clone() const { return new c_CT_Two(*this); }
    LMXTEST_UNMARSHAL(c_CT_Two, nullptr, nullptr, unmarshal_empty_content)
    bool unmarshal_attributes(c_xml_reader& reader, elmx_error* e) {
        if (reader.tokenise(attr_event_map, false) != e_y) return false;
        *e = reader.unmarshal_attribute_value(m_y, validation_spec_wstring);
        return true;
    }
    bool unmarshal_body(c_xml_reader&, elmx_error*) { return true; }
    elmx_error marshal(c_xml_writer& w, const char* name) const {
        w.start_element(name);
        w.marshal_attribute("y", m_y, validation_spec_wstring);
        w.end_element(name);
        return ELMX_OK;
    }
};

// A choice group: one of "one" and "two"; selecting the other frees the first.
class c_EG_Choice {
public:
    enum { choice_none, choice_one, choice_two };
    static inline const s_event_map elem_event_map[] = {{NS_MAIN, "one", 3, e_one}, {NS_MAIN, "two", 3, e_two}, {0, nullptr, 0, 0}};

    c_EG_Choice() = default;
    c_EG_Choice(const c_EG_Choice& o) : m_choice(o.m_choice) {
        if (o.m_one) m_one = o.m_one->clone();
        if (o.m_two) m_two = o.m_two->clone();
    }
    c_EG_Choice& operator=(const c_EG_Choice&) = delete;
    ~c_EG_Choice() { release_choice(); }
    c_EG_Choice* clone() const { return new c_EG_Choice(*this); }

    int get_choice() const { return m_choice; }
    void release_choice() {
        delete m_one;
        delete m_two;
        m_one = nullptr;
        m_two = nullptr;
        m_choice = choice_none;
    }
    c_CT_One& select_one() {
        if (m_choice != choice_one) {
            release_choice();
            m_one = new c_CT_One;
            m_choice = choice_one;
        }
        return *m_one;
    }
    c_CT_Two& select_two() {
        if (m_choice != choice_two) {
            release_choice();
            m_two = new c_CT_Two;
            m_choice = choice_two;
        }
        return *m_two;
    }
    bool is_member(c_xml_reader& reader) {
        int event = reader.tokenise(elem_event_map, true);
        return event == e_one || event == e_two;
    }
    elmx_error unmarshal(c_xml_reader& reader) {
        int event = reader.tokenise(elem_event_map, true);
        if (event == e_one) return select_one().unmarshal(reader, reader.get_current_element_name());
        return select_two().unmarshal(reader, reader.get_current_element_name());
    }
    elmx_error marshal(c_xml_writer& w) const {
        if (m_choice == choice_one) return m_one->marshal(w, "one");
        if (m_choice == choice_two) return m_two->marshal(w, "two");
        return ELMX_OK;
    }

private:
    int m_choice = choice_none;
    c_CT_One* m_one = nullptr;
    c_CT_Two* m_two = nullptr;
};

// ---- a sequence with optional, repeated and required children -------------------------------

class c_CT_Seq {
public:
    static const size_t max_items = 3;
    ct_simple_non_pod_optional<std::wstring> m_opt;
    ct_simple_non_pod_multi<std::wstring> m_item;
    ct_empty_single m_need;

    static inline const s_event_map elem_event_map[] = {
        {NS_MAIN, "opt", 3, e_opt}, {NS_MAIN, "item", 4, e_item}, {NS_MAIN, "need", 4, e_need}, {0, nullptr, 0, 0}};

    c_CT_Seq* clone() const { return new c_CT_Seq(*this); }
    LMXTEST_UNMARSHAL(c_CT_Seq, nullptr, nullptr, unmarshal_complex_content)
    bool unmarshal_attributes(c_xml_reader&, elmx_error*) { return false; }
    elmx_error append_item(const std::wstring& v) {
        if (m_item.size() >= max_items) return ELMX_OCCURRENCE_ERROR;
        m_item.append(v);
        return ELMX_OK;
    }
    bool unmarshal_body(c_xml_reader& reader, elmx_error* e) {
        reader.tokenise(elem_event_map, true);
        if (reader.get_current_event() == e_opt) {
            if ((*e = reader.unmarshal_element_value(m_opt, validation_spec_collapsed_w())) != ELMX_OK) return false;
            if (!next_child(reader, elem_event_map + 1, e, "seq")) return false;
        }
        while (reader.get_current_event() == e_item) {
            if (m_item.size() >= max_items) {
                *e = reader.handle_error(ELMX_OCCURRENCE_ERROR, "item");
                return false;
            }
            if ((*e = reader.unmarshal_element_value(m_item, validation_spec_wstring)) != ELMX_OK) return false;
            if (!next_child(reader, elem_event_map + 1, e, "seq")) return false;
        }
        if (reader.get_current_event() != e_need) {
            *e = reader.handle_error(ELMX_MANDATORY_ELEMENT_MISSING, "need");
            return false;
        }
        if ((*e = reader.unmarshal_empty_element(m_need)) != ELMX_OK) return false;
        return next_child(reader, nullptr, e, "seq");
    }
    static const ct_typed_validation_spec<std::wstring>& validation_spec_collapsed_w() {
        static const ct_typed_validation_spec<std::wstring> spec(EXWS_COLLAPSE);
        return spec;
    }
    elmx_error marshal(c_xml_writer& w, const char* name) const {
        w.start_element(name);
        w.marshal_element("opt", m_opt, validation_spec_collapsed_w());
        w.marshal_element("item", m_item, validation_spec_wstring);
        if (!m_need.is_value_set()) return w.handle_error(ELMX_OCCURS_ERROR_ON_MARSHAL, "need");
        w.marshal_empty_element("need", m_need);
        w.end_element(name);
        return ELMX_OK;
    }
};

// ---- extension blocks kept as captured XML --------------------------------------------------

class c_CT_Extension {
public:
    ct_simple_non_pod_optional<std::string> m_uri;
    ct_non_pod_container<c_any_info> m_any;
    static inline const s_event_map attr_event_map[] = {{0, "uri", 3, e_uri}, {0, nullptr, 0, 0}};

    c_CT_Extension* clone() const { return new c_CT_Extension(*this); }
    LMXTEST_UNMARSHAL(c_CT_Extension, nullptr, nullptr, unmarshal_complex_content)
    bool unmarshal_attributes(c_xml_reader& reader, elmx_error* e) {
        if (reader.tokenise(attr_event_map, false) != e_uri) return false;
        *e = reader.unmarshal_attribute_value(m_uri, validation_spec_string);
        return true;
    }
    bool unmarshal_body(c_xml_reader& reader, elmx_error* e) {
        while (reader.get_current_event() == EXE_ELEMENT_START) {
            c_any_info* info = new c_any_info;
            m_any.push_back(info);
            if ((*e = reader.get_any_element(info)) != ELMX_OK) return false;
            if (!next_child(reader, nullptr, e, "ext")) return false;
        }
        return true;
    }
    elmx_error marshal(c_xml_writer& w, const char* name) const {
        w.start_element(name);
        w.marshal_attribute("uri", m_uri, validation_spec_string);
        for (const c_any_info* info : m_any) w.write_any_info(*info);
        w.end_element(name);
        return ELMX_OK;
    }
};

class c_CT_ExtensionList {
public:
    ct_complex_multi<c_CT_Extension> m_ext;
    static inline const s_event_map elem_event_map[] = {{NS_MAIN, "ext", 3, e_ext}, {0, nullptr, 0, 0}};
    c_CT_ExtensionList* clone() const { return new c_CT_ExtensionList(*this); }
    LMXTEST_UNMARSHAL(c_CT_ExtensionList, nullptr, nullptr, unmarshal_complex_content)
    bool unmarshal_attributes(c_xml_reader&, elmx_error*) { return false; }
    bool unmarshal_body(c_xml_reader& reader, elmx_error* e) {
        reader.tokenise(elem_event_map, true);
        while (reader.get_current_event() == e_ext) {
            // Extension content has no table of its own to obey.
            c_known_elements_selector none(reader, nullptr);
            if ((*e = reader.unmarshal_child_element(m_ext)) != ELMX_OK) return false;
            if (!next_child(reader, elem_event_map, e, "extLst")) return false;
        }
        return true;
    }
    elmx_error marshal(c_xml_writer& w, const char* name) const {
        w.start_element(name);
        w.marshal_child_element("ext", m_ext);
        w.end_element(name);
        return ELMX_OK;
    }
};

// ---- the worksheet-like root: known elements, ignore_unknown, foreign attributes ------------

class c_CT_Worksheet {
public:
    ct_any_info_container m_any_attribute;
    ct_complex_optional<c_CT_Props> m_props;
    ct_complex_single<c_CT_SheetData> m_sheetData;
    c_EG_Choice m_choice;
    ct_complex_optional<c_CT_Seq> m_seq;
    ct_complex_optional<c_CT_ExtensionList> m_extLst;

    static inline const s_event_map elem_event_map[] = {{NS_MAIN, "props", 5, e_props},
                                                        {NS_MAIN, "sheetData", 9, e_sheetData},
                                                        {NS_MAIN, "one", 3, e_one},
                                                        {NS_MAIN, "two", 3, e_two},
                                                        {NS_MAIN, "seq", 3, e_seq},
                                                        {NS_MAIN, "extLst", 6, e_extLst},
                                                        {0, nullptr, 0, 0}};
    static inline const s_known_elements known_elements[] = {
        {NS_MAIN, "props", 5}, {NS_MAIN, "sheetData", 9}, {NS_MAIN, "one", 3}, {NS_MAIN, "two", 3},
        {NS_MAIN, "seq", 3},   {NS_MAIN, "extLst", 6},    {0, nullptr, 0}};

    LMXTEST_UNMARSHAL(c_CT_Worksheet, known_elements, &m_any_attribute, unmarshal_complex_content)
    bool unmarshal_attributes(c_xml_reader&, elmx_error*) { return false; }
    bool unmarshal_body(c_xml_reader& reader, elmx_error* e) {
        reader.tokenise(elem_event_map, true);
        if (reader.get_current_event() == e_props) {
            if ((*e = reader.unmarshal_child_element(m_props)) != ELMX_OK) return false;
            if (!next_child(reader, elem_event_map + 1, e, "worksheet")) return false;
        }
        if (reader.get_current_event() != e_sheetData) {
            *e = reader.handle_error(ELMX_MANDATORY_ELEMENT_MISSING, "sheetData");
            return false;
        }
        if ((*e = reader.unmarshal_child_element(m_sheetData)) != ELMX_OK) return false;
        if (!next_child(reader, elem_event_map + 2, e, "worksheet")) return false;
        if (m_choice.is_member(reader)) {
            if ((*e = m_choice.unmarshal(reader)) != ELMX_OK) return false;
            if (!next_child(reader, elem_event_map + 4, e, "worksheet")) return false;
        }
        reader.tokenise(elem_event_map + 4, true);
        if (reader.get_current_event() == e_seq) {
            if ((*e = reader.unmarshal_child_element(m_seq)) != ELMX_OK) return false;
            if (!next_child(reader, elem_event_map + 5, e, "worksheet")) return false;
        }
        if (reader.get_current_event() == e_extLst) {
            if ((*e = reader.unmarshal_child_element(m_extLst)) != ELMX_OK) return false;
            if (!next_child(reader, nullptr, e, "worksheet")) return false;
        }
        return true;
    }
    elmx_error marshal(c_xml_writer& w, const char* name) const {
        w.start_element(name);
        w.conditionally_select_ns_map(ns_map_writer);
        w.conditionally_write_ns_attrs();
        w.write_any_attributes(m_any_attribute);
        elmx_error e;
        if ((e = w.marshal_child_element("props", m_props)) || (e = w.marshal_child_element("sheetData", m_sheetData)) ||
            (e = m_choice.marshal(w)) || (e = w.marshal_child_element("seq", m_seq)) ||
            (e = w.marshal_child_element("extLst", m_extLst)))
            return e;
        w.end_element(name);
        return ELMX_OK;
    }
};

class c_worksheet : public c_CT_Worksheet {
public:
    elmx_error unmarshal(c_xml_reader& reader) {
        reader.set_code_file(__FILE__);
        reader.set_ns_map(ns_map_reader);
        reader.set_ignore_unknown(true);
        elmx_error e = ELMX_OK;
        reader.get_element_event(nullptr, &e);
        if (e != ELMX_OK) return reader.handle_error(e, "worksheet");
        if (reader.get_current_ns_id() != NS_MAIN || reader.get_current_name().get_local_name() != "worksheet")
            return reader.handle_error(ELMX_ELEMENT_NOT_FOUND, "worksheet");
        return c_CT_Worksheet::unmarshal(reader, reader.get_current_element_name());
    }
    using c_CT_Worksheet::unmarshal;
    elmx_error marshal(c_xml_writer& w) const { return c_CT_Worksheet::marshal(w, "worksheet"); }
    using c_CT_Worksheet::marshal;
};

// The same classes bound to the real SpreadsheetML namespace, for worksheets of other programs.
inline const char* const sml_uri = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
inline const s_ns_map sml_ns_map_reader[] = {{NS_MAIN, "", sml_uri}, {0, nullptr, nullptr}};
inline const s_ns_map sml_ns_map_writer[] = {{NS_MAIN, nullptr, sml_uri}, {0, nullptr, nullptr}};

class c_sml_worksheet : public c_CT_Worksheet {
public:
    elmx_error unmarshal(c_xml_reader& reader) {
        reader.set_ns_map(sml_ns_map_reader);
        reader.set_ignore_unknown(true);
        elmx_error e = ELMX_OK;
        reader.get_element_event(nullptr, &e);
        if (e != ELMX_OK) return reader.handle_error(e, "worksheet");
        if (reader.get_current_ns_id() != NS_MAIN || reader.get_current_name().get_local_name() != "worksheet")
            return reader.handle_error(ELMX_ELEMENT_NOT_FOUND, "worksheet");
        return c_CT_Worksheet::unmarshal(reader, reader.get_current_element_name());
    }
    elmx_error marshal(c_xml_writer& w) const {
        w.conditionally_select_ns_map(sml_ns_map_writer);
        return c_CT_Worksheet::marshal(w, "worksheet");
    }
};

// ---- a strict root: no tables, unknown items are errors --------------------------------------

class c_CT_Font {
public:
    ct_simple_non_pod_optional<std::wstring> m_name;
    static inline const s_event_map attr_event_map[] = {{0, "name", 4, e_name}, {0, nullptr, 0, 0}};
    c_CT_Font* clone() const { return new c_CT_Font(*this); }
    LMXTEST_UNMARSHAL(c_CT_Font, nullptr, nullptr, unmarshal_empty_content)
    bool unmarshal_attributes(c_xml_reader& reader, elmx_error* e) {
        if (reader.tokenise(attr_event_map, false) != e_name) return false;
        *e = reader.unmarshal_attribute_value(m_name, validation_spec_wstring);
        return true;
    }
    bool unmarshal_body(c_xml_reader&, elmx_error*) { return true; }
    elmx_error marshal(c_xml_writer& w, const char* name) const {
        w.start_element(name);
        w.marshal_attribute("name", m_name, validation_spec_wstring);
        w.end_element(name);
        return ELMX_OK;
    }
};

class c_CT_Fonts {
public:
    ct_simple_pod_optional<uint32_t> m_count;
    ct_simple_non_pod_optional<std::string> m_id;  // r:id
    ct_any_info_container m_any_attribute;
    ct_complex_multi<c_CT_Font> m_font;
    static inline const s_event_map attr_event_map[] = {{0, "count", 5, e_count}, {NS_REL, "id", 2, e_id}, {0, nullptr, 0, 0}};
    static inline const s_event_map elem_event_map[] = {{NS_MAIN, "font", 4, e_font}, {0, nullptr, 0, 0}};
    c_CT_Fonts* clone() const { return new c_CT_Fonts(*this); }
    LMXTEST_UNMARSHAL(c_CT_Fonts, nullptr, &m_any_attribute, unmarshal_complex_content)
    bool unmarshal_attributes(c_xml_reader& reader, elmx_error* e) {
        switch (reader.tokenise(attr_event_map, false)) {
            case e_count: *e = reader.unmarshal_attribute_value(m_count, validation_spec_u32); return true;
            case e_id: *e = reader.unmarshal_attribute_value(m_id, validation_spec_string); return true;
        }
        return false;
    }
    bool unmarshal_body(c_xml_reader& reader, elmx_error* e) {
        reader.tokenise(elem_event_map, true);
        while (reader.get_current_event() == e_font) {
            if ((*e = reader.unmarshal_child_element(m_font)) != ELMX_OK) return false;
            if (!next_child(reader, elem_event_map, e, "fonts")) return false;
        }
        return true;
    }
    elmx_error marshal(c_xml_writer& w, const char* name) const {
        w.start_element(name);
        w.marshal_attribute("count", m_count, validation_spec_u32);
        w.marshal_attribute("r:id", m_id, validation_spec_string);
        w.write_any_attributes(m_any_attribute);
        w.marshal_child_element("font", m_font);
        w.end_element(name);
        return ELMX_OK;
    }
};

class c_CT_Doc {
public:
    ct_complex_optional<c_CT_Fonts> m_fonts;
    ct_complex_optional<c_CT_ExtensionList> m_extLst;
    static inline const s_event_map elem_event_map[] = {
        {NS_MAIN, "fonts", 5, e_fonts}, {NS_MAIN, "extLst", 6, e_extLst}, {0, nullptr, 0, 0}};
    LMXTEST_UNMARSHAL(c_CT_Doc, nullptr, nullptr, unmarshal_complex_content)
    bool unmarshal_attributes(c_xml_reader&, elmx_error*) { return false; }
    bool unmarshal_body(c_xml_reader& reader, elmx_error* e) {
        reader.tokenise(elem_event_map, true);
        if (reader.get_current_event() == e_fonts) {
            if ((*e = reader.unmarshal_child_element(m_fonts)) != ELMX_OK) return false;
            if (!next_child(reader, elem_event_map + 1, e, "doc")) return false;
        }
        if (reader.get_current_event() == e_extLst) {
            if ((*e = reader.unmarshal_child_element(m_extLst)) != ELMX_OK) return false;
            if (!next_child(reader, nullptr, e, "doc")) return false;
        }
        return true;
    }
    elmx_error marshal(c_xml_writer& w, const char* name) const {
        w.start_element(name);
        w.conditionally_select_ns_map(ns_map_writer);
        w.conditionally_write_ns_attrs();
        w.marshal_child_element("fonts", m_fonts);
        w.marshal_child_element("extLst", m_extLst);
        w.end_element(name);
        return ELMX_OK;
    }
};

class c_doc : public c_CT_Doc {
public:
    elmx_error unmarshal(c_xml_reader& reader) {
        reader.set_code_file(__FILE__);
        reader.set_ns_map(ns_map_reader);
        elmx_error e = ELMX_OK;
        reader.get_element_event(nullptr, &e);
        if (e != ELMX_OK) return reader.handle_error(e, "doc");
        if (reader.get_current_ns_id() != NS_MAIN || reader.get_current_name().get_local_name() != "doc")
            return reader.handle_error(ELMX_ELEMENT_NOT_FOUND, "doc");
        return c_CT_Doc::unmarshal(reader, reader.get_current_element_name());
    }
    using c_CT_Doc::unmarshal;
    elmx_error marshal(c_xml_writer& w) const { return c_CT_Doc::marshal(w, "doc"); }
    using c_CT_Doc::marshal;
};

}  // namespace lmxtest
