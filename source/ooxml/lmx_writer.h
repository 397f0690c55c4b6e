// The stream writer of the schema-bound classes: start tags, attributes, values and end tags in
// the order that a generated class dictates, compact by default.
#pragma once
#include <iosfwd>
#include <string>
#include <unordered_map>
#include <vector>

#include "ooxml/lmx_containers.h"
#include "ooxml/lmx_error.h"
#include "ooxml/lmx_reader.h"
#include "ooxml/lmx_types.h"

namespace zelvar {
namespace lmx {

// Values of include_xml_decl.
enum { XML_DECL_NONE = 0, XML_DECL_INCLUDE = 1, XML_DECL_STANDALONE = 2 };

class c_xml_writer {
public:
    // Indentation and line ends; all empty, so output is one line with one blank between
    // attributes.
    static const char* const default_tab;
    static const char* const default_nl;
    static const char* const default_attribute_tab;
    static const char* const default_attribute_nl;

    c_xml_writer(std::ostream& os, int include_xml_decl = XML_DECL_INCLUDE, const char* tab = default_tab,
                 const char* nl = default_nl, const char* attribute_tab = default_attribute_tab,
                 const char* attribute_nl = default_attribute_nl);
    // Appends to a string, the fast way for parts that go into a package.
    c_xml_writer(std::string& out, int include_xml_decl = XML_DECL_INCLUDE, const char* tab = default_tab,
                 const char* nl = default_nl, const char* attribute_tab = default_attribute_tab,
                 const char* attribute_nl = default_attribute_nl);
    ~c_xml_writer();
    c_xml_writer(const c_xml_writer&) = delete;
    c_xml_writer& operator=(const c_xml_writer&) = delete;

    void start_element(const char* name);
    void end_element(const char* name);

    // ---- namespaces ----
    // Selects the namespace table of the root, unless one was selected already.
    void conditionally_select_ns_map(const s_ns_map* map);
    // Writes the namespace declarations once, on the first element.
    void conditionally_write_ns_attrs(bool force_xsi = false);
    void add_namespace(const std::string& prefix, const std::string& uri);
    void add_schema_location(const std::string& text) { m_schema_location = text; }
    void add_no_namespace_schema_location(const std::string& text) { m_no_ns_schema_location = text; }
    // True when the prefix is bound to this URI where the writer is.
    bool is_in_scope(const std::string& prefix, const std::string& uri) const;

    // ---- attributes and values ----
    // The separator before an attribute: one blank, or the attribute line end and indent.
    void position_attribute();
    void write_attribute(const char* name, const std::string& utf8_value);
    void write_attribute(const std::string& name, const std::string& utf8_value) {
        write_attribute(name.c_str(), utf8_value);
    }
    // Escaped text content of the current element.
    void marshal_element_body(const std::string& utf8_text);
    void marshal_element_body(const std::wstring& text);
    template <class T>
    void marshal_element_body(const T& value, const ct_typed_validation_spec<T>& spec) {
        spec_to_text(spec, m_scratch, value);
        marshal_element_body(m_scratch);
    }

    // Optional members: written when set.
    template <class C>
    elmx_error marshal_attribute(const char* name, const C& member,
                                 const ct_typed_validation_spec<typename C::value_type>& spec);
    // Required members: the value, or the validation spec's default, or error 46.
    template <class C>
    elmx_error marshal_attribute_or_default(const char* name, const C& member,
                                            const ct_typed_validation_spec<typename C::value_type>& spec);
    template <class C>
    elmx_error marshal_attribute_list(const char* name, const C& member,
                                      const ct_typed_validation_spec<typename C::value_type>& spec);
    template <class C>
    elmx_error marshal_element(const char* name, const C& member,
                               const ct_typed_validation_spec<typename C::value_type>& spec);
    template <class C>
    elmx_error marshal_element_or_default(const char* name, const C& member,
                                          const ct_typed_validation_spec<typename C::value_type>& spec);
    template <class C>
    elmx_error marshal_element_list(const char* name, const C& member,
                                    const ct_typed_validation_spec<typename C::value_type>& spec);
    elmx_error marshal_empty_element(const char* name, const ct_empty_single& member);
    // Child objects through their class's marshal.
    template <class T>
    elmx_error marshal_child_element(const char* name, const ct_complex_optional<T>& member);
    template <class T>
    elmx_error marshal_child_element(const char* name, const ct_complex_single<T>& member);
    template <class T>
    elmx_error marshal_child_element(const char* name, const ct_complex_multi<T>& member);

    // ---- foreign items ----
    // A captured element, with the declarations that its text needs where it now stands.
    void write_any_info(const c_any_info& info);
    // A captured attribute, with its prefix declared if the writer doesn't have it.
    void write_any_attribute(const c_any_info& info);
    void write_any_attributes(const ct_any_info_container& attributes);

    // ---- errors and output ----
    elmx_error handle_error(elmx_error code, const std::string& item);
    const s_debug_error& get_debug_error() const { return m_debug_error; }
    void flush();
    int get_depth() const { return m_depth; }
    // The output, for a caller that writes a whole element, start to end, by itself: the
    // pending start tag is closed first. Null when the writer indents, where only the
    // element functions know the layout.
    std::string* whole_element_output() {
        if (!m_tab.empty() || !m_nl.empty()) return nullptr;
        close_start_tag();
        maybe_flush();
        m_has_text = false;
        return m_out;
    }

private:
    struct s_binding {
        std::string prefix;
        std::string uri;
        int depth;
    };
    void init(int include_xml_decl);
    void close_start_tag() {
        if (m_start_open) {
            m_out->push_back('>');
            m_out->append(m_nl);
            m_start_open = false;
        }
    }
    // Text follows the start tag on the same line.
    void close_start_tag_for_text() {
        if (m_start_open) {
            m_out->push_back('>');
            m_start_open = false;
        }
    }
    void indent() {
        if (!m_tab.empty())
            for (int i = 0; i < m_depth; ++i) m_out->append(m_tab);
    }
    void declare(const std::string& prefix, const std::string& uri);
    const s_binding* find_binding(const std::string& prefix) const;
    void maybe_flush() {
        if (m_os && m_own.size() >= (1u << 16)) flush();
    }
    template <class T>
    void write_value_element(const char* name, const T& value, const ct_typed_validation_spec<T>& spec);

    std::ostream* m_os = nullptr;
    std::string m_own;
    std::string* m_out;
    std::string m_tab, m_nl, m_attribute_tab, m_attribute_nl;
    int m_depth = 0;
    bool m_start_open = false;
    bool m_has_text = false;
    bool m_ns_written = false;
    const s_ns_map* m_ns_map = nullptr;
    std::vector<std::pair<std::string, std::string>> m_added_namespaces;
    std::string m_schema_location, m_no_ns_schema_location;
    std::vector<s_binding> m_bindings;
    std::unordered_map<std::string, std::vector<size_t>> m_prefix_index;  // into m_bindings
    const void* m_root_context_declared = nullptr;
    s_debug_error m_debug_error;
    std::string m_scratch;
};

// Marks the scope of one element being written.
class c_xml_writer_local {
public:
    explicit c_xml_writer_local(c_xml_writer& writer) : m_writer(writer), m_depth(writer.get_depth()) {}
    int get_depth() const { return m_depth; }
    c_xml_writer& get_writer() const { return m_writer; }

private:
    c_xml_writer& m_writer;
    int m_depth;
};

// ---- templates ------------------------------------------------------------------------------

template <class C>
elmx_error c_xml_writer::marshal_attribute(const char* name, const C& member,
                                           const ct_typed_validation_spec<typename C::value_type>& spec) {
    if constexpr (C::kind == ct_kind::list) {
        return marshal_attribute_list(name, member, spec);
    } else {
        if (!member.is_value_set()) return ELMX_OK;
        spec_to_text(spec, m_scratch, member.get());
        write_attribute(name, m_scratch);
        return ELMX_OK;
    }
}

template <class C>
elmx_error c_xml_writer::marshal_attribute_or_default(const char* name, const C& member,
                                                      const ct_typed_validation_spec<typename C::value_type>& spec) {
    if (member.is_value_set()) return marshal_attribute(name, member, spec);
    if (!spec.has_default()) return handle_error(ELMX_OCCURS_ERROR_ON_MARSHAL, std::string("@") + name);
    write_attribute(name, spec.default_value);
    return ELMX_OK;
}

template <class C>
elmx_error c_xml_writer::marshal_attribute_list(const char* name, const C& member,
                                                const ct_typed_validation_spec<typename C::value_type>& spec) {
    if (!member.is_value_set()) return ELMX_OK;
    std::string text, item;
    for (const auto& v : member.get()) {
        spec_to_text(spec, item, v);
        if (!text.empty()) text += ' ';
        text += item;
    }
    write_attribute(name, text);
    return ELMX_OK;
}

template <class T>
void c_xml_writer::write_value_element(const char* name, const T& value, const ct_typed_validation_spec<T>& spec) {
    start_element(name);
    spec_to_text(spec, m_scratch, value);
    if (!m_scratch.empty()) marshal_element_body(m_scratch);
    end_element(name);
}

template <class C>
elmx_error c_xml_writer::marshal_element(const char* name, const C& member,
                                         const ct_typed_validation_spec<typename C::value_type>& spec) {
    if constexpr (C::kind == ct_kind::multi) {
        for (size_t i = 0; i < member.size(); ++i) write_value_element(name, member.get(i), spec);
    } else if constexpr (C::kind == ct_kind::list) {
        return marshal_element_list(name, member, spec);
    } else {
        if (member.is_value_set()) write_value_element(name, member.get(), spec);
    }
    return ELMX_OK;
}

template <class C>
elmx_error c_xml_writer::marshal_element_or_default(const char* name, const C& member,
                                                    const ct_typed_validation_spec<typename C::value_type>& spec) {
    if (member.is_value_set()) return marshal_element(name, member, spec);
    if (!spec.has_default()) return handle_error(ELMX_OCCURS_ERROR_ON_MARSHAL, name);
    start_element(name);
    marshal_element_body(std::string(spec.default_value));
    end_element(name);
    return ELMX_OK;
}

template <class C>
elmx_error c_xml_writer::marshal_element_list(const char* name, const C& member,
                                              const ct_typed_validation_spec<typename C::value_type>& spec) {
    if (!member.is_value_set()) return ELMX_OK;
    std::string text, item;
    for (const auto& v : member.get()) {
        spec_to_text(spec, item, v);
        if (!text.empty()) text += ' ';
        text += item;
    }
    start_element(name);
    if (!text.empty()) marshal_element_body(text);
    end_element(name);
    return ELMX_OK;
}

template <class T>
elmx_error c_xml_writer::marshal_child_element(const char* name, const ct_complex_optional<T>& member) {
    if (!member.is_value_set()) return ELMX_OK;
    return member.get().marshal(*this, name);
}

template <class T>
elmx_error c_xml_writer::marshal_child_element(const char* name, const ct_complex_single<T>& member) {
    if (!member.is_value_set()) return handle_error(ELMX_OCCURS_ERROR_ON_MARSHAL, name);
    return member.get().marshal(*this, name);
}

template <class T>
elmx_error c_xml_writer::marshal_child_element(const char* name, const ct_complex_multi<T>& member) {
    for (size_t i = 0; i < member.size(); ++i) {
        elmx_error e = member[i].marshal(*this, name);
        if (e != ELMX_OK) return e;
    }
    return ELMX_OK;
}

}  // namespace lmx
}  // namespace zelvar
