// The runtime of the schema-bound classes: reader, writer, value types, containers, and the
// whole-document entry points that root classes use.
#pragma once
#include <fstream>
#include <ostream>
#include <sstream>
#include <string>

#include "ooxml/lmx_containers.h"
#include "ooxml/lmx_error.h"
#include "ooxml/lmx_reader.h"
#include "ooxml/lmx_types.h"
#include "ooxml/lmx_writer.h"

namespace zelvar {
namespace lmx {

// Reads a whole document into a root object through its unmarshal(c_xml_reader&).
template <class T>
elmx_error unmarshal(T* p_object, const char* data, size_t size, s_debug_error* p_debug = nullptr) {
    c_read_memory source(data, data + size);
    c_xml_reader reader(source);
    elmx_error e = p_object->unmarshal(reader);
    if (p_debug) *p_debug = reader.get_debug_error();
    return e;
}

// Reads a captured element, with the namespaces that were in force where it was captured.
template <class T>
elmx_error unmarshal(T* p_object, const c_any_info& info, s_debug_error* p_debug = nullptr) {
    const std::string& text = info.get_value();
    c_read_memory source(text.data(), text.data() + text.size());
    c_xml_reader reader(source);
    reader.preset_namespace_context(info.get_namespace_context());
    elmx_error e = p_object->unmarshal(reader);
    if (p_debug) *p_debug = reader.get_debug_error();
    return e;
}

template <class T>
elmx_error unmarshal(T* p_object, const char* file_name, s_debug_error* p_debug = nullptr) {
    c_read_file source(file_name);
    c_xml_reader reader(source);
    elmx_error e = p_object->unmarshal(reader);
    if (p_debug) *p_debug = reader.get_debug_error();
    return e;
}

// Writes a whole document from a root object through its marshal(c_xml_writer&) const.
template <class T>
elmx_error marshal(const T& object, std::string* p_out, s_debug_error* p_debug = nullptr) {
    c_xml_writer writer(*p_out);
    elmx_error e = object.marshal(writer);
    if (p_debug) *p_debug = writer.get_debug_error();
    return e;
}

template <class T>
elmx_error marshal(const T& object, std::ostream& os, s_debug_error* p_debug = nullptr) {
    elmx_error e;
    {
        c_xml_writer writer(os);
        e = object.marshal(writer);
        writer.flush();
        if (p_debug) *p_debug = writer.get_debug_error();
    }
    return e;
}

template <class T>
elmx_error marshal(const T& object, const char* file_name, s_debug_error* p_debug = nullptr) {
    std::ofstream out(file_name, std::ios::binary);
    if (!out) return ELMX_UNABLE_TO_OPEN_FILE;
    elmx_error e = marshal(object, out, p_debug);
    out.flush();
    return out ? e : ELMX_UNABLE_TO_OPEN_FILE;
}

}  // namespace lmx
}  // namespace zelvar
