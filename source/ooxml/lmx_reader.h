// The pull reader of the schema-bound classes: bytes in, a stream of element and attribute
// events out, matched by generated classes against their static name tables.
#pragma once
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "ooxml/lmx_containers.h"
#include "ooxml/lmx_error.h"
#include "ooxml/lmx_types.h"

namespace zelvar {
namespace lmx {

// Events of the reader. Generated event tables number their names from EXE_TOKEN on.
enum {
    EXE_EOM = 0,                  // end of input
    EXE_UNKNOWN = 1,              // a name that isn't in the given table
    EXE_ERROR = 2,
    EXE_FATAL_ERROR = 3,
    EXE_START_TAG_END = 4,        // no more attributes in the start tag
    EXE_ELEMENT_END = 6,          // an end tag (also the end of a self-closed tag)
    EXE_ELEMENT_START = 7,        // a start tag name, not yet looked up
    EXE_XSI_TYPE = 8,
    EXE_XSI_NIL = 9,
    EXE_XSI_SCHEMA_LOCATION = 10,
    EXE_XSI_NO_NAMESPACE_SCHEMA_LOCATION = 11,
    EXE_ELEMENT_END_AFTER_SKIP = 12,  // an end tag straight behind a skipped element
    EXE_TOKEN = 13
};

// Fixed namespace ids; generated classes number their own from 1000.
enum {
    NS_ID_NONE = 0,
    NS_ID_XML = 1,
    NS_ID_XSI = 5,
    NS_ID_FIRST_GENERATED = 1000
};

// Name tables of generated classes, each closed by a row with a null name (or zeros).
struct s_event_map {
    int ns_id;
    const char* p_name;
    size_t name_length;
    int event;
};
struct s_ns_map {
    int ns_id;
    const char* p_prefix;
    const char* p_ns_uri;
};
struct s_known_elements {
    int ns_id;
    const char* p_name;
    size_t name_length;
};

// ---- byte sources ---------------------------------------------------------------------------

class c_read {
public:
    virtual ~c_read();
    virtual int read() = 0;  // next byte, or -1 at the end
    virtual void rewind() = 0;
    virtual bool is_open() const = 0;
    virtual std::string get_source_id() const = 0;
    // The whole input as one block, when the source has it in memory.
    virtual bool get_block(const char** begin, const char** end) const { return false; }
};

class c_read_memory : public c_read {
public:
    c_read_memory(const char* begin, const char* end) : m_begin(begin), m_end(end), m_p(begin) {}
    int read() override { return m_p < m_end ? static_cast<unsigned char>(*m_p++) : -1; }
    void rewind() override { m_p = m_begin; }
    bool is_open() const override { return m_begin != nullptr || m_begin == m_end; }
    std::string get_source_id() const override { return "memory"; }
    bool get_block(const char** begin, const char** end) const override {
        *begin = m_begin;
        *end = m_end;
        return true;
    }

private:
    const char* m_begin;
    const char* m_end;
    const char* m_p;
};

// Reads the whole file when it is opened.
class c_read_file : public c_read {
public:
    explicit c_read_file(const char* file_name);
    int read() override { return m_pos < m_data.size() ? static_cast<unsigned char>(m_data[m_pos++]) : -1; }
    void rewind() override { m_pos = 0; }
    bool is_open() const override { return m_open; }
    std::string get_source_id() const override { return m_name; }
    bool get_block(const char** begin, const char** end) const override {
        *begin = m_data.data();
        *end = m_data.data() + m_data.size();
        return m_open;
    }

private:
    std::string m_name;
    std::string m_data;
    size_t m_pos = 0;
    bool m_open = false;
};

// ---- namespaces -----------------------------------------------------------------------------

// Numbers every namespace URI that the document or the generated classes name.
class c_enumerated_namespaces {
public:
    c_enumerated_namespaces();
    void add(const std::string& uri, int id);  // a fixed id; the first registration wins
    int get_id(const std::string& uri);        // an unknown URI gets a new id
    // Gives a URI that got a new id the fixed one; returns the former id, or -1 if none changed.
    int reassign(const std::string& uri, int id);
    const std::string& get_uri(int id) const;  // empty for an unknown id

private:
    std::unordered_map<std::string, int> m_ids;
    std::unordered_map<int, std::string> m_uris;
    int m_next_id = 0x10000;  // beyond the ids of generated classes
};

// A start or end tag name: the name as written, its namespace id and where the local part begins.
struct c_cracked_name {
    std::string raw;
    int ns_id = NS_ID_NONE;
    size_t local_offset = 0;
    const char* local() const { return raw.c_str() + local_offset; }
    size_t local_length() const { return raw.size() - local_offset; }
    std::string get_local_name() const { return raw.substr(local_offset); }
};

// ---- the tokenizer --------------------------------------------------------------------------

// Turns the input into UTF-8 text, reads the prolog and the document type declaration, and
// gives tags one by one. Owns the namespace scopes of the open elements.
class c_xml {
public:
    explicit c_xml(c_read& source);
    c_xml(const c_xml&) = delete;
    c_xml& operator=(const c_xml&) = delete;

    enum e_tag { TAG_EOF, TAG_START, TAG_END, TAG_ERROR };

    // Elements nested deeper than this are refused, so that recursive classes can't exhaust the stack.
    static const size_t max_depth = 512;

protected:
    struct s_attr {
        const char* name;
        uint32_t name_length;
        uint32_t prefix_length;  // 0 without prefix
        const char* value;
        uint32_t value_length;
        bool is_ns_decl;
    };
    struct s_open {
        const char* name;
        uint32_t name_length;
        uint32_t binding_mark;  // size of m_bindings before this element's declarations
        const char* tag_begin;
    };
    struct s_binding {
        const char* prefix;
        uint32_t prefix_length;
        int ns_id;
    };
    struct s_ws_state {
        bool at_start = true;
        bool pending_space = false;
    };

    e_tag next_tag();
    bool fail(elmx_error code, const std::string& text);
    bool fail_eof() { return fail(ELMX_UNEXPECTED_EOM, "Premature end of file encountered"); }

    // Namespace id of a prefix in the current scope; -1 if the prefix is not declared.
    int resolve_prefix(const char* prefix, size_t length) const;
    // Decodes entity and character references of raw text under a white-space mode.
    bool decode_text(const char* begin, const char* end, elmx_whitespace mode, std::string& out);
    // Reads the content of the current start tag as a simple value up to its end tag.
    bool read_element_text(elmx_whitespace mode, std::string& out);
    // Skips the rest of the current element, whose start tag has just been read.
    bool skip_current_element();
    // The prefix and URI pairs in force at the parent of the current element, innermost first,
    // without prefixes that the current tag declares itself.
    void collect_context(c_namespace_context& ctx, bool include_current) const;

    c_read& m_source;
    c_error m_error;
    c_enumerated_namespaces m_namespaces;

    // The UTF-8 text: the source's own block, or a converted copy.
    std::string m_converted;
    std::string m_raw_copy;  // the input of a source without a block of its own
    const char* m_text_begin = nullptr;
    const char* m_p = nullptr;
    const char* m_end = nullptr;

    // The last tag read.
    const char* m_tag_name = nullptr;
    size_t m_tag_name_length = 0;
    const char* m_tag_begin = nullptr;
    bool m_tag_empty = false;
    std::vector<s_attr> m_attrs;
    size_t m_attr_index = 0;

    std::vector<s_open> m_open;
    std::vector<s_binding> m_bindings;
    // Indexes into m_bindings by prefix, innermost last: documents may declare thousands.
    std::unordered_map<std::string_view, std::vector<uint32_t>> m_prefix_index;
    uint64_t m_binding_generation = 0;
    void push_binding(const s_binding& b);
    void pop_bindings(size_t mark);
    // The last context built, shared by the items captured under the same declarations.
    mutable c_namespace_context m_context_cache;
    mutable uint64_t m_context_key[3] = {~0ull, 0, 0};

private:
    bool start_input();
    bool decode_utf16(const unsigned char* begin, const unsigned char* end, bool big_endian, bool ucs2,
                      std::string& out);
    bool read_xml_decl();
    bool read_prolog();
    bool read_doctype();
    bool read_entity_decl();
    bool skip_comment();
    bool skip_pi(bool in_prolog_start);
    bool skip_cdata();
    bool skip_markup_decl();
    e_tag read_start_tag();
    e_tag read_end_tag();
    bool decode_reference(const char*& p, const char* end, elmx_whitespace mode, std::string& out, s_ws_state& ws,
                          int depth);
    bool decode_run(const char* begin, const char* end, elmx_whitespace mode, std::string& out, s_ws_state& ws,
                    int depth);
    void pop_element();

    bool m_started = false;
    bool m_root_seen = false;
    bool m_root_done = false;
    bool m_doctype_read = false;
    bool m_pending_end = false;  // a self-closed tag still owes its end event
    bool m_pending_pop = false;  // the last end tag's scope is left on the next tag

    // Raw bytes of an input that needs converting, kept for the rest after the declaration.
    const unsigned char* m_raw_begin = nullptr;
    const unsigned char* m_raw_end = nullptr;
    enum e_form { FORM_8BIT, FORM_UTF16LE, FORM_UTF16BE } m_form = FORM_8BIT;

    std::deque<std::string> m_preset_prefixes;  // prefix texts of preset bindings
    friend class c_xml_reader;

    std::unordered_map<std::string, std::string> m_entities;
    std::vector<std::string> m_expanding;  // entity names being expanded, against recursion
    size_t m_entity_budget = 0;            // bytes that entity expansion may still produce
};

class c_xml_reader;
class c_unmarshal_helper;

// ---- the event layer ------------------------------------------------------------------------

class c_xml_reader : public c_xml {
public:
    explicit c_xml_reader(c_read& source);
    virtual ~c_xml_reader();

    // Registers the namespaces of generated classes with their ids.
    void set_ns_map(const s_ns_map* map);

    // Advances to the next start or end tag. With a table, a start tag's name is tokenised;
    // without, its event is EXE_ELEMENT_START. Unknown children are skipped while a known
    // elements table is installed.
    int get_element_event(const s_event_map* map, elmx_error* p_error, std::string* p_name = nullptr);
    int get_known_element_event(const s_event_map* map, elmx_error* p_error, std::string* p_name = nullptr) {
        return get_element_event(map, p_error, p_name);
    }
    // The next attribute of the current start tag; false at the end of the tag or on an error.
    bool get_attribute_event(const s_event_map* map, elmx_error* p_error, std::string* p_name = nullptr);
    // Looks the current name up in a table and makes the result the current event.
    int tokenise(const s_event_map* map, bool is_element);

    int get_current_event() const { return m_event; }
    void set_current_event(int event) { m_event = event; }
    const c_cracked_name& get_current_name() const { return m_name; }
    const std::string& get_current_element_name() const { return m_name.raw; }
    void set_current_element_name(const std::string& name) {
        if (m_name.raw != name) m_name.raw = name;
    }
    int get_current_ns_id() const { return m_name.ns_id; }
    // True when the start tag just read closed itself ("<a/>").
    bool is_current_tag_empty() const { return m_tag_empty; }
    size_t get_depth() const { return m_open.size(); }

    // The value of the current attribute, decoded under the given white-space mode.
    bool get_attribute_value(elmx_whitespace mode, std::string* p_value);
    // The text of the current element up to its end tag, which it consumes.
    bool get_element_value(elmx_whitespace mode, std::string* p_value, elmx_error* p_error);
    bool get_simple_type_value(elmx_whitespace mode, std::string* p_value, elmx_error* p_error) {
        return get_element_value(mode, p_value, p_error);
    }
    // The current element's inner XML text as written, up to its end tag, which it consumes.
    bool get_element_ur_value(std::string* p_value, elmx_error* p_error);
    // Captures the current element whole, with the namespaces in force, and consumes it.
    elmx_error get_any_element(c_any_info* p_info);
    // Captures the current attribute with its namespace and the namespaces in force.
    void get_any_attribute(c_any_info* p_info);
    void get_namespace_context(c_namespace_context* p_context) { collect_context(*p_context, true); }
    // Puts bindings in force before the document starts: for reading a captured element.
    void preset_namespace_context(const c_namespace_context& context);
    const std::string& get_namespace_uri(int ns_id) const { return m_namespaces.get_uri(ns_id); }

    // Skips the attributes not yet read in the current start tag.
    void skip_start_tag() { m_attr_index = m_attrs.size(); }
    // Skips the current element, start tag just read, with all its content.
    bool ignore_element();

    // ---- typed values through validation specs ----
    // Converts and validates; an error names the current attribute ("@name") or element.
    template <class T>
    elmx_error convert_value(const std::string& text, const ct_typed_validation_spec<T>& spec, T* p_value,
                             bool is_attribute);
    std::string item_name(bool is_attribute) const { return is_attribute ? "@" + m_name.raw : m_name.raw; }
    template <class C>
    elmx_error unmarshal_attribute_value(C& member, const ct_typed_validation_spec<typename C::value_type>& spec);
    template <class C>
    elmx_error unmarshal_element_value(C& member, const ct_typed_validation_spec<typename C::value_type>& spec);
    // The value of a simple-content element whose attributes have been read by its class.
    template <class C>
    elmx_error unmarshal_simple_content_value(C& member, const ct_typed_validation_spec<typename C::value_type>& spec);
    // A child object: created, read by its class's unmarshal, owned by the member.
    template <class T>
    elmx_error unmarshal_child_element(ct_complex_pointer<T>& member);
    template <class T>
    elmx_error unmarshal_child_element(ct_complex_multi<T>& member);
    // An element without content.
    elmx_error unmarshal_empty_element(ct_empty_single& member);

    // ---- errors ----
    elmx_error handle_error(elmx_error code, const std::string& item, const char* file, int line);
    elmx_error handle_error(elmx_error code, const std::string& item) {
        return handle_error(code, item, m_code_file, m_code_line);
    }
    void capture_error(elmx_error code, const std::string& item, const char* file, int line);
    // Decides whether an error stands; every error ends the reading.
    virtual elmx_error user_handle_error(elmx_error code, const std::string& item, const char* file, int line) {
        return code;
    }
    const s_debug_error& get_debug_error() const { return m_debug_error; }
    std::string get_error_message() const { return m_debug_error.to_string(); }
    // The input layer's own error, if any.
    const c_error& get_input_error() const { return m_error; }

    void set_code_file(const char* file) { m_code_file = file; }
    void set_code_line(int line) { m_code_line = line; }
    const char* get_code_file() const { return m_code_file; }
    int get_code_line() const { return m_code_line; }

    bool is_ignore_unknown() const { return m_ignore_unknown; }
    void set_ignore_unknown(bool v) { m_ignore_unknown = v; }

    const s_known_elements* get_known_elements() const { return m_known_elements; }
    void set_known_elements(const s_known_elements* table) { m_known_elements = table; }

private:
    friend class c_unmarshal_helper;
    bool is_known(const c_cracked_name& name) const;
    bool set_name_from_tag(bool resolve);
    elmx_error read_simple_element_attributes();
    elmx_error report_input_error(elmx_error fallback);

    int m_event = EXE_EOM;
    c_cracked_name m_name;
    const s_attr* m_current_attr = nullptr;
    s_debug_error m_debug_error;
    const s_known_elements* m_known_elements = nullptr;
    bool m_ignore_unknown = false;
    const char* m_code_file = "";
    int m_code_line = 0;
    std::string m_scratch;
};

// Names the element being read while a class is inside it.
class c_xml_reader_local {
public:
    explicit c_xml_reader_local(c_xml_reader& reader)
        : m_reader(reader), m_file(reader.get_code_file()), m_line(reader.get_code_line()) {}
    ~c_xml_reader_local() {
        m_reader.set_code_file(m_file);
        m_reader.set_code_line(m_line);
    }

private:
    c_xml_reader& m_reader;
    const char* m_file;
    int m_line;
};

// Installs a class's known elements table for its body and puts the former one back after, so
// a child class with no table of its own still sees its parent's.
class c_known_elements_selector {
public:
    c_known_elements_selector(c_xml_reader& reader, const s_known_elements* table)
        : m_reader(reader), m_former(reader.get_known_elements()) {
        reader.set_known_elements(table);
    }
    ~c_known_elements_selector() { m_reader.set_known_elements(m_former); }

private:
    c_xml_reader& m_reader;
    const s_known_elements* m_former;
};

// The engine of one complex type: a generated class derives a local helper and binds the
// virtuals to its own functions.
class c_unmarshal_helper {
public:
    explicit c_unmarshal_helper(c_xml_reader& reader);
    virtual ~c_unmarshal_helper();

    virtual bool unmarshal_attribute(elmx_error* p_error) { return false; }
    virtual elmx_error unmarshal_attributes_check() { return ELMX_OK; }
    virtual bool unmarshal_complex_body(elmx_error* p_error) { return true; }
    virtual bool unmarshal_simple_body(elmx_error* p_error) { return true; }
    virtual bool is_nil() const { return m_nilled; }
    virtual bool is_not_choice_or_choice_is_not_set() const { return true; }

    elmx_error unmarshal_complex_content(const char* file, int line);
    elmx_error unmarshal_simple_content(const char* file, int line);
    elmx_error unmarshal_empty_content(const char* file, int line);

    void set_any_attribute(ct_any_info_container* p) { m_any_attributes = p; }
    void set_body_optional(bool v) { m_body_optional = v; }
    const std::string& get_name() const { return m_name; }

protected:
    elmx_error unmarshal_attributes();
    elmx_error unmarshal_complex_content_case();
    elmx_error unmarshal_simple_content_case();
    elmx_error unmarshal_empty_content_case();
    elmx_error finish_element(int event);

    c_xml_reader& reader;
    std::string m_name;
    const char* m_file = "";
    int m_line = 0;
    bool m_was_empty = false;
    bool m_nilled = false;
    bool m_body_optional = true;
    ct_any_info_container* m_any_attributes = nullptr;
};

// ---- templates ------------------------------------------------------------------------------

template <class T>
elmx_error c_xml_reader::convert_value(const std::string& text, const ct_typed_validation_spec<T>& spec, T* p_value,
                                       bool is_attribute) {
    elmx_error e = spec.lexical_validator ? spec.lexical_validator(text)
                                          : (default_lexical_check(static_cast<const T*>(nullptr), text)
                                                 ? ELMX_OK
                                                 : ELMX_VALUE_BAD_FORMAT);
    if (e != ELMX_OK) return handle_error(e, item_name(is_attribute));
    bool converted = spec.v_to_o ? spec.v_to_o(*p_value, text) : lmx::v_to_o(*p_value, text);
    if (!converted) return handle_error(ELMX_VALUE_BAD_FORMAT, item_name(is_attribute));
    if (spec.value_validator && (e = spec.value_validator(*p_value)) != ELMX_OK)
        return handle_error(e, item_name(is_attribute));
    return ELMX_OK;
}

template <class C>
elmx_error c_xml_reader::unmarshal_attribute_value(C& member,
                                                   const ct_typed_validation_spec<typename C::value_type>& spec) {
    typedef typename C::value_type T;
    if constexpr (C::kind == ct_kind::single || C::kind == ct_kind::list) {
        if (member.is_value_set()) return handle_error(ELMX_ATTRIBUTE_ALREADY_READ, item_name(true));
    }
    if (!get_attribute_value(C::kind == ct_kind::list ? EXWS_COLLAPSE : spec.whitespace, &m_scratch))
        return handle_error(ELMX_UNABLE_TO_READ_ATTRIBUTE_VALUE, item_name(true));
    if constexpr (C::kind == ct_kind::list) {
        std::vector<T> values;
        size_t pos = 0;
        const std::string text = m_scratch;
        while (pos < text.size()) {
            size_t blank = text.find(' ', pos);
            if (blank == std::string::npos) blank = text.size();
            T value{};
            elmx_error e = convert_value(text.substr(pos, blank - pos), spec, &value, true);
            if (e != ELMX_OK) return e;
            values.push_back(std::move(value));
            pos = blank + 1;
        }
        member.set(values);
    } else {
        T value{};
        elmx_error e = convert_value(m_scratch, spec, &value, true);
        if (e != ELMX_OK) return e;
        if constexpr (C::kind == ct_kind::multi)
            member.append(std::move(value));
        else
            member.set(std::move(value));
    }
    return ELMX_OK;
}

template <class C>
elmx_error c_xml_reader::unmarshal_simple_content_value(C& member,
                                                        const ct_typed_validation_spec<typename C::value_type>& spec) {
    typedef typename C::value_type T;
    elmx_error e = ELMX_OK;
    if (!get_element_value(C::kind == ct_kind::list ? EXWS_COLLAPSE : spec.whitespace, &m_scratch, &e))
        return handle_error(e != ELMX_OK ? e : ELMX_UNABLE_TO_READ_ELEMENT_VALUE, item_name(false));
    if (m_scratch.empty() && spec.has_default()) m_scratch = spec.default_value;
    if constexpr (C::kind == ct_kind::list) {
        std::vector<T> values;
        size_t pos = 0;
        const std::string text = m_scratch;
        while (pos < text.size()) {
            size_t blank = text.find(' ', pos);
            if (blank == std::string::npos) blank = text.size();
            T value{};
            if ((e = convert_value(text.substr(pos, blank - pos), spec, &value, false)) != ELMX_OK) return e;
            values.push_back(std::move(value));
            pos = blank + 1;
        }
        member.set(values);
    } else {
        T value{};
        if ((e = convert_value(m_scratch, spec, &value, false)) != ELMX_OK) return e;
        if constexpr (C::kind == ct_kind::multi)
            member.append(std::move(value));
        else
            member.set(std::move(value));
    }
    return ELMX_OK;
}

template <class C>
elmx_error c_xml_reader::unmarshal_element_value(C& member,
                                                 const ct_typed_validation_spec<typename C::value_type>& spec) {
    elmx_error e = read_simple_element_attributes();
    if (e != ELMX_OK) return e;
    return unmarshal_simple_content_value(member, spec);
}

template <class T>
elmx_error c_xml_reader::unmarshal_child_element(ct_complex_pointer<T>& member) {
    T* p = new T;
    member.assign(p);
    return p->unmarshal(*this, m_name.raw);
}

template <class T>
elmx_error c_xml_reader::unmarshal_child_element(ct_complex_multi<T>& member) {
    T* p = new T;
    member.push_back(p);
    return p->unmarshal(*this, m_name.raw);
}

}  // namespace lmx
}  // namespace zelvar
