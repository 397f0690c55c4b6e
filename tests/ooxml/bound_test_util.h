// Helpers of the tests of the schema-bound classes: which class reads which part, a round trip
// of one part, and a comparison of two documents that counts each kind of difference.
#pragma once
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "ooxml/dml-spreadsheetDrawing.h"
#include "ooxml/opc-contentTypes.h"
#include "ooxml/opc-relationships.h"
#include "ooxml/sml-sharedStringTable.h"
#include "ooxml/sml-sheet.h"
#include "ooxml/sml-styles.h"
#include "ooxml/sml-workbook.h"
#include "ooxml/sml.h"
#include "ooxml/strictDrawing.h"

namespace boundtest {

using zelvar::lmx::elmx_error;
using zelvar::lmx::s_debug_error;

// The local name of a document's root element.
inline std::string root_name(const std::string& xml) {
    size_t p = 0;
    for (;;) {
        p = xml.find('<', p);
        if (p == std::string::npos || p + 1 >= xml.size()) return std::string();
        char c = xml[p + 1];
        if (c != '?' && c != '!') break;
        ++p;
    }
    size_t end = p + 1;
    while (end < xml.size() && !std::isspace(static_cast<unsigned char>(xml[end])) && xml[end] != '>' && xml[end] != '/') ++end;
    std::string name = xml.substr(p + 1, end - p - 1);
    size_t colon = name.find(':');
    return colon == std::string::npos ? name : name.substr(colon + 1);
}

// One element of a document as the comparison sees it.
struct s_record {
    int depth;
    std::string uri, local;
    std::vector<std::pair<std::string, std::string>> attrs;  // {uri}local, value; sorted
};

inline std::vector<s_record> records(const std::string& xml) {
    using namespace zelvar::lmx;
    std::vector<s_record> out;
    c_read_memory source(xml.data(), xml.data() + xml.size());
    c_xml_reader reader(source);
    int depth = 0;
    for (;;) {
        elmx_error e = ELMX_OK;
        int event = reader.get_element_event(nullptr, &e);
        if (e != ELMX_OK || event == EXE_EOM) break;
        if (event == EXE_ELEMENT_END) {
            if (--depth == 0) break;
            continue;
        }
        s_record r;
        r.depth = depth++;
        r.uri = reader.get_namespace_uri(reader.get_current_ns_id());
        r.local = reader.get_current_name().get_local_name();
        std::string value;
        while (reader.get_attribute_event(nullptr, &e)) {
            reader.get_attribute_value(EXWS_PRESERVE, &value);
            std::string uri = reader.get_current_ns_id() ? reader.get_namespace_uri(reader.get_current_ns_id()) : "";
            r.attrs.emplace_back("{" + uri + "}" + reader.get_current_name().get_local_name(), value);
        }
        std::sort(r.attrs.begin(), r.attrs.end());
        out.push_back(std::move(r));
    }
    return out;
}

// Counts of the kinds of difference between input parts and their written form.
struct s_diff_counts {
    size_t identical_parts = 0;
    size_t differing_parts = 0;
    std::map<std::string, size_t> kinds;

    void print() const {
        std::printf("  parts with the same elements and attributes: %zu, with differences: %zu\n", identical_parts,
                    differing_parts);
        for (const auto& k : kinds) std::printf("    %-60s %zu\n", k.first.c_str(), k.second);
    }
};

inline bool same_number(const std::string& a, const std::string& b) {
    char* ea = nullptr;
    char* eb = nullptr;
    double x = std::strtod(a.c_str(), &ea);
    double y = std::strtod(b.c_str(), &eb);
    return !a.empty() && !b.empty() && *ea == 0 && *eb == 0 && x == y;
}

inline bool near_number(const std::string& a, const std::string& b) {
    char* ea = nullptr;
    char* eb = nullptr;
    double x = std::strtod(a.c_str(), &ea);
    double y = std::strtod(b.c_str(), &eb);
    return !a.empty() && !b.empty() && *ea == 0 && *eb == 0 && std::fabs(x - y) <= 1e-13 * std::fabs(x);
}

inline bool same_hex(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::toupper(static_cast<unsigned char>(a[i])) != b[i]) return false;
    return true;
}

inline bool same_bool(const std::string& a, const std::string& b) {
    auto norm = [](const std::string& s) { return s == "1" || s == "true" ? 1 : s == "0" || s == "false" ? 0 : -1; };
    return norm(a) >= 0 && norm(a) == norm(b);
}

// Compares the elements and attributes of an input and its written form.
inline void compare(const std::string& input, const std::string& output, s_diff_counts* counts) {
    std::vector<s_record> a = records(input), b = records(output);
    std::map<std::string, size_t> kinds;
    size_t i = 0, j = 0;
    while (i < a.size() || j < b.size()) {
        if (i < a.size() && j < b.size() && a[i].uri == b[j].uri && a[i].local == b[j].local && a[i].depth == b[j].depth) {
            size_t x = 0, y = 0;
            const auto& p = a[i].attrs;
            const auto& q = b[j].attrs;
            while (x < p.size() || y < q.size()) {
                if (x < p.size() && y < q.size() && p[x].first == q[y].first) {
                    if (p[x].second != q[y].second) {
                        if (same_number(p[x].second, q[y].second))
                            ++kinds["attribute value: number in another form"];
                        else if (near_number(p[x].second, q[y].second))
                            ++kinds["attribute value: number rounded to 14 digits"];
                        else if (same_hex(p[x].second, q[y].second))
                            ++kinds["attribute value: hexadecimal digits in upper case"];
                        else if (same_bool(p[x].second, q[y].second))
                            ++kinds["attribute value: boolean in another form"];
                        else
                            ++kinds["attribute value changed: " + a[i].local + "/" + p[x].first];
                    }
                    ++x, ++y;
                } else if (y >= q.size() || (x < p.size() && p[x].first < q[y].first)) {
                    ++kinds["attribute dropped: " + a[i].local + "/" + p[x].first];
                    ++x;
                } else {
                    ++kinds["attribute added: " + b[j].local + "/" + q[y].first];
                    ++y;
                }
            }
            ++i, ++j;
        } else if (i < a.size() && (j >= b.size() || a[i].depth >= b[j].depth)) {
            // An input element that is not in the output, with its content.
            int depth = a[i].depth;
            ++kinds["element dropped: {" + a[i].uri + "}" + a[i].local];
            ++i;
            while (i < a.size() && a[i].depth > depth) ++i;
        } else {
            ++kinds["element added: " + b[j].local];
            ++j;
        }
    }
    if (kinds.empty())
        ++counts->identical_parts;
    else
        ++counts->differing_parts;
    for (const auto& k : kinds) counts->kinds[k.first] += 1;  // parts that show this kind
}

// Reads, writes, reads again and writes again; an empty result means the round trip held.
template <class Root>
std::string round_trip_as(const std::string& xml, s_diff_counts* counts) {
    Root first;
    s_debug_error debug;
    elmx_error e = first.unmarshal(xml.data(), xml.size(), &debug);
    if (e != zelvar::lmx::ELMX_OK) return "read: " + debug.to_string();
    std::string out;
    e = first.marshal(&out, &debug);
    if (e != zelvar::lmx::ELMX_OK) return "write: " + debug.to_string();
    Root second;
    e = second.unmarshal(out.data(), out.size(), &debug);
    if (e != zelvar::lmx::ELMX_OK) return "read of the written text: " + debug.to_string();
    if (!first.equals(second)) return "the tree read back differs";
    std::string again;
    second.marshal(&again, &debug);
    if (again != out) return "the second writing differs from the first";
    if (counts) compare(xml, out, counts);
    return std::string();
}

struct s_part_kind {
    const char* name;
    std::string (*round_trip)(const std::string&, s_diff_counts*);
};

inline const s_part_kind part_kinds[] = {
    {"content types", &round_trip_as<zelvar::contentypes::c_Types>},
    {"relationships", &round_trip_as<zelvar::relationships::c_Relationships>},
    {"workbook", &round_trip_as<zelvar::workbook::c_workbook>},
    {"worksheet", &round_trip_as<zelvar::sheet::c_worksheet>},
    {"styles", &round_trip_as<zelvar::styles::c_styleSheet>},
    {"shared strings", &round_trip_as<zelvar::sharedStringTable::c_sst>},
    {"drawing", &round_trip_as<zelvar::drawing::c_wsDr>},
    {"strict workbook", &round_trip_as<zelvar::strict::c_workbook>},
    {"strict worksheet", &round_trip_as<zelvar::strict::c_worksheet>},
    {"strict styles", &round_trip_as<zelvar::strict::c_styleSheet>},
    {"strict shared strings", &round_trip_as<zelvar::strict::c_sst>},
    {"strict drawing", &round_trip_as<zelvar::strictdrawing::c_wsDr>},
};

// The class that reads a part, by its root element; null for parts of other kinds.
inline const s_part_kind* kind_of(const std::string& path, const std::string& xml, bool strict) {
    std::string root = root_name(xml);
    int base = strict ? 7 : 2;
    if (root == "Types") return &part_kinds[0];
    if (root == "Relationships") return &part_kinds[1];
    if (root == "workbook") return &part_kinds[base];
    if (root == "worksheet") return &part_kinds[base + 1];
    if (root == "styleSheet") return &part_kinds[base + 2];
    if (root == "sst") return &part_kinds[base + 3];
    if (root == "wsDr" && path.find("/drawings/") != std::string::npos) return &part_kinds[base + 4];
    return nullptr;
}

}  // namespace boundtest
