#include "ooxml/lmx_writer.h"

#include <ostream>

namespace zelvar {
namespace lmx {

namespace {
const char* const xsi_uri = "http://www.w3.org/2001/XMLSchema-instance";
}

const char* const c_xml_writer::default_tab = "";
const char* const c_xml_writer::default_nl = "";
const char* const c_xml_writer::default_attribute_tab = "";
const char* const c_xml_writer::default_attribute_nl = "";

c_xml_writer::c_xml_writer(std::ostream& os, int include_xml_decl, const char* tab, const char* nl,
                           const char* attribute_tab, const char* attribute_nl)
    : m_os(&os), m_out(&m_own), m_tab(tab), m_nl(nl), m_attribute_tab(attribute_tab), m_attribute_nl(attribute_nl) {
    init(include_xml_decl);
}

c_xml_writer::c_xml_writer(std::string& out, int include_xml_decl, const char* tab, const char* nl,
                           const char* attribute_tab, const char* attribute_nl)
    : m_out(&out), m_tab(tab), m_nl(nl), m_attribute_tab(attribute_tab), m_attribute_nl(attribute_nl) {
    init(include_xml_decl);
}

c_xml_writer::~c_xml_writer() {
    // A stream that fails has said so already, or will on the explicit flush; a destructor
    // must not throw.
    try {
        flush();
    } catch (...) {
    }
}

void c_xml_writer::init(int include_xml_decl) {
    m_scratch.reserve(64);
    if (include_xml_decl == XML_DECL_NONE) return;
    m_out->append("<?xml version=\"1.0\" encoding=\"UTF-8\"");
    if (include_xml_decl == XML_DECL_STANDALONE) m_out->append(" standalone=\"yes\"");
    m_out->append("?>");
    m_out->append(m_nl);
}

void c_xml_writer::flush() {
    if (m_os && !m_own.empty()) {
        m_os->write(m_own.data(), static_cast<std::streamsize>(m_own.size()));
        m_own.clear();
    }
}

void c_xml_writer::start_element(const char* name) {
    close_start_tag();
    maybe_flush();
    indent();
    m_out->push_back('<');
    m_out->append(name);
    ++m_depth;
    m_start_open = true;
    m_has_text = false;
}

void c_xml_writer::end_element(const char* name) {
    --m_depth;
    while (!m_bindings.empty() && m_bindings.back().depth > m_depth) {
        auto it = m_prefix_index.find(m_bindings.back().prefix);
        it->second.pop_back();
        if (it->second.empty()) m_prefix_index.erase(it);
        m_bindings.pop_back();
    }
    if (m_start_open) {
        m_out->append("/>");
    } else {
        if (!m_has_text) indent();
        m_out->append("</");
        m_out->append(name);
        m_out->push_back('>');
    }
    m_out->append(m_nl);
    m_start_open = false;
    m_has_text = false;
}

void c_xml_writer::position_attribute() {
    if (m_attribute_nl.empty()) {
        m_out->push_back(' ');
        return;
    }
    m_out->append(m_attribute_nl);
    for (int i = 0; i < m_depth; ++i) m_out->append(m_attribute_tab);
}

void c_xml_writer::write_attribute(const char* name, const std::string& value) {
    position_attribute();
    m_out->append(name);
    m_out->append("=\"");
    output_convert_to_xml(*m_out, value);
    m_out->push_back('"');
}

void c_xml_writer::marshal_element_body(const std::string& text) {
    close_start_tag_for_text();
    output_convert_to_xml(*m_out, text);
    m_has_text = true;
}

void c_xml_writer::marshal_element_body(const std::wstring& text) {
    close_start_tag_for_text();
    output_convert_to_xml(*m_out, text);
    m_has_text = true;
}

elmx_error c_xml_writer::marshal_empty_element(const char* name, const ct_empty_single& member) {
    if (member.is_value_set()) {
        start_element(name);
        end_element(name);
    }
    return ELMX_OK;
}

// ---- namespaces -----------------------------------------------------------------------------

void c_xml_writer::conditionally_select_ns_map(const s_ns_map* map) {
    if (!m_ns_map) m_ns_map = map;
}

void c_xml_writer::add_namespace(const std::string& prefix, const std::string& uri) {
    for (const auto& ns : m_added_namespaces)
        if (ns.first == prefix) return;
    m_added_namespaces.emplace_back(prefix, uri);
}

const c_xml_writer::s_binding* c_xml_writer::find_binding(const std::string& prefix) const {
    auto it = m_prefix_index.find(prefix);
    return it == m_prefix_index.end() ? nullptr : &m_bindings[it->second.back()];
}

bool c_xml_writer::is_in_scope(const std::string& prefix, const std::string& uri) const {
    if (prefix == "xml") return true;
    const s_binding* b = find_binding(prefix);
    return b ? b->uri == uri : (prefix.empty() && uri.empty());
}

void c_xml_writer::declare(const std::string& prefix, const std::string& uri) {
    write_attribute(prefix.empty() ? std::string("xmlns") : "xmlns:" + prefix, uri);
    m_prefix_index[prefix].push_back(m_bindings.size());
    m_bindings.push_back(s_binding{prefix, uri, m_depth});
}

void c_xml_writer::conditionally_write_ns_attrs(bool force_xsi) {
    if (m_ns_written) return;
    m_ns_written = true;
    for (const s_ns_map* row = m_ns_map; row && row->p_ns_uri; ++row) {
        std::string prefix = row->p_prefix ? row->p_prefix : "";
        if (find_binding(prefix)) continue;
        declare(prefix, row->p_ns_uri);
    }
    for (const auto& ns : m_added_namespaces)
        if (!find_binding(ns.first)) declare(ns.first, ns.second);
    bool locations = !m_schema_location.empty() || !m_no_ns_schema_location.empty();
    if ((locations || force_xsi) && !is_in_scope("xsi", xsi_uri)) declare("xsi", xsi_uri);
    if (!m_schema_location.empty()) write_attribute("xsi:schemaLocation", m_schema_location);
    if (!m_no_ns_schema_location.empty()) write_attribute("xsi:noNamespaceSchemaLocation", m_no_ns_schema_location);
}

// ---- foreign items --------------------------------------------------------------------------

void c_xml_writer::write_any_attribute(const c_any_info& info) {
    const std::string& name = info.get_name();
    size_t colon = name.find(':');
    std::string prefix = colon == std::string::npos ? std::string() : name.substr(0, colon);
    if (!prefix.empty() && prefix != "xml" && prefix != "xmlns" && !is_in_scope(prefix, info.get_namespace())) {
        // A prefix bound to another namespace here can't be rebound without moving this
        // element's own name; such an attribute is left out.
        if (find_binding(prefix)) return;
        declare(prefix, info.get_namespace());
    }
    const void* context = info.get_namespace_context().identity();
    if (m_depth == 1 && context && context != m_root_context_declared) {
        m_root_context_declared = context;
        // On the root, the namespaces that stood there come back too: attributes such as
        // markers of ignorable namespaces name prefixes only in their values.
        for (const auto& b : info.get_namespace_context().get())
            if (!b.first.empty() && !find_binding(b.first)) declare(b.first, b.second);
    }
    write_attribute(name, info.get_value());
}

void c_xml_writer::write_any_attributes(const ct_any_info_container& attributes) {
    for (const c_any_info* info : attributes) write_any_attribute(*info);
}

void c_xml_writer::write_any_info(const c_any_info& info) {
    close_start_tag();
    const std::string& text = info.get_value();
    const std::string& name = info.get_name();
    std::string declarations;
    bool has_default = false;
    for (const auto& b : info.get_namespace_context().get()) {
        if (b.first.empty()) has_default = true;
        if (is_in_scope(b.first, b.second)) continue;
        declarations += b.first.empty() ? " xmlns=\"" : " xmlns:" + b.first + "=\"";
        output_convert_to_xml(declarations, b.second);
        declarations += '"';
    }
    if (!has_default && find_binding("") && !find_binding("")->uri.empty()) declarations += " xmlns=\"\"";
    size_t head = 1 + name.size();
    if (!declarations.empty() && text.size() > head && text[0] == '<' && text.compare(1, name.size(), name) == 0) {
        m_out->append(text, 0, head);
        m_out->append(declarations);
        m_out->append(text, head, std::string::npos);
    } else {
        m_out->append(text);
    }
    m_has_text = true;
}

elmx_error c_xml_writer::handle_error(elmx_error code, const std::string& item) {
    if (m_debug_error.error == ELMX_OK) {
        m_debug_error.error = code;
        m_debug_error.item_name = item;
    }
    return code;
}

}  // namespace lmx
}  // namespace zelvar
