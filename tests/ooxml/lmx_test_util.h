#pragma once
#include <gtest/gtest.h>

#include <string>

#include "lmx_test_classes.h"

namespace lmxtest {

inline const std::string main_decl = std::string(" xmlns=\"") + main_uri + "\"";

// A worksheet document around the given content.
inline std::string sheet(const std::string& body, const std::string& root_attributes = "") {
    return "<worksheet" + main_decl + root_attributes + ">" + body + "</worksheet>";
}
inline std::string sheet_with_data(const std::string& before, const std::string& after = "") {
    return sheet(before + "<sheetData/>" + after);
}

template <class T>
elmx_error read_into(T& object, const std::string& xml, s_debug_error* debug = nullptr) {
    return unmarshal(&object, xml.data(), xml.size(), debug);
}

template <class T>
std::string write_out(const T& object, elmx_error* p_error = nullptr) {
    std::string out;
    elmx_error e = marshal(object, &out);
    if (p_error) *p_error = e;
    return out;
}

// The error code of reading a worksheet document and the detail recorded for it.
struct read_result {
    elmx_error code;
    s_debug_error debug;
};
inline read_result read_sheet(const std::string& xml) {
    c_worksheet w;
    read_result r;
    r.code = read_into(w, xml, &r.debug);
    return r;
}
inline read_result read_doc(const std::string& xml) {
    c_doc d;
    read_result r;
    r.code = read_into(d, xml, &r.debug);
    return r;
}

}  // namespace lmxtest
