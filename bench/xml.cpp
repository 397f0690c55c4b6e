// Speed of the XML reader and writer on a worksheet-like document of about 50 MB: rows of
// cells with attributes and v children. xmllint --stream on the same file is the anchor.
#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "../tests/ooxml/lmx_test_classes.h"

using namespace zelvar::lmx;

namespace {

const size_t target_size = 50u << 20;

void append_column(std::string& out, int col) {
    char letters[4];
    int n = 0;
    for (++col; col > 0; col = (col - 1) / 26) letters[n++] = static_cast<char>('A' + (col - 1) % 26);
    while (n) out += letters[--n];
}

const std::string& document() {
    static const std::string doc = [] {
        std::string d = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<worksheet xmlns=\"";
        d += lmxtest::sml_uri;
        d += "\"><sheetData>";
        char buf[64];
        for (int row = 1; d.size() < target_size; ++row) {
            std::snprintf(buf, sizeof buf, "<row r=\"%d\" spans=\"1:12\">", row);
            d += buf;
            for (int col = 0; col < 12; ++col) {
                d += "<c r=\"";
                append_column(d, col);
                d += std::to_string(row);
                if (col % 3 == 0) {
                    std::snprintf(buf, sizeof buf, "\" s=\"2\" t=\"s\"><v>%d</v></c>", (row * 7 + col) % 5000);
                } else {
                    std::snprintf(buf, sizeof buf, "\"><v>%.6g</v></c>", row * 1.25 + col / 3.0);
                }
                d += buf;
            }
            d += "</row>";
        }
        d += "</sheetData></worksheet>";
        return d;
    }();
    return doc;
}

const s_event_map cell_events[] = {{lmxtest::NS_MAIN, "row", 3, 20}, {lmxtest::NS_MAIN, "c", 1, 21},
                                   {lmxtest::NS_MAIN, "v", 1, 22},   {0, nullptr, 0, 0}};
const s_event_map attribute_events[] = {{0, "r", 1, 30}, {0, "s", 1, 31}, {0, "t", 1, 32}, {0, "spans", 5, 33},
                                        {0, nullptr, 0, 0}};

// CPU time of xmllint --stream --noout over the same file, in seconds; negative if it didn't run.
double xmllint_seconds() {
    static const double seconds = [] {
        std::filesystem::path file = std::filesystem::temp_directory_path() / "zelvar_bench_xml.xml";
        {
            std::ofstream out(file, std::ios::binary);
            out << document();
        }
        std::string cmd = "xmllint --stream --noout '" + file.string() + "' >/dev/null 2>&1";
        // CPU time of the child, comparable with the CPU time of the benchmarks on a shared machine.
        rusage before{}, after{};
        getrusage(RUSAGE_CHILDREN, &before);
        int rc = std::system(cmd.c_str());
        getrusage(RUSAGE_CHILDREN, &after);
        auto seconds = [](const rusage& u) {
            return u.ru_utime.tv_sec + u.ru_stime.tv_sec + (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
        };
        double s = seconds(after) - seconds(before);
        std::filesystem::remove(file);
        return rc == 0 ? s : -1.0;
    }();
    return seconds;
}

void set_anchor(benchmark::State& state) {
    double s = xmllint_seconds();
    if (s > 0) state.counters["xmllint_MBps"] = static_cast<double>(document().size()) / s / 1e6;
}

}  // namespace

// Every event of the document: tags tokenised, attributes tokenised and decoded, values read.
static void BM_Tokenise(benchmark::State& state) {
    const std::string& doc = document();
    size_t cells = 0;
    for (auto _ : state) {
        c_read_memory source(doc.data(), doc.data() + doc.size());
        c_xml_reader reader(source);
        reader.set_ns_map(lmxtest::sml_ns_map_reader);
        std::string value;
        cells = 0;
        for (;;) {
            elmx_error e = ELMX_OK;
            int event = reader.get_element_event(cell_events, &e);
            if (e != ELMX_OK || event == EXE_EOM) break;
            if (event == EXE_ELEMENT_END) continue;
            while (reader.get_attribute_event(attribute_events, &e)) reader.get_attribute_value(EXWS_COLLAPSE, &value);
            if (event == 22) {
                reader.get_element_value(EXWS_PRESERVE, &value, &e);
                ++cells;
            }
        }
        benchmark::DoNotOptimize(cells);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * doc.size()));
    state.counters["cells"] = static_cast<double>(cells);
    set_anchor(state);
}
BENCHMARK(BM_Tokenise)->Unit(benchmark::kMillisecond)->MinTime(2.0);

// The same document into row and cell objects of the generated style.
static void BM_UnmarshalObjects(benchmark::State& state) {
    const std::string& doc = document();
    for (auto _ : state) {
        lmxtest::c_sml_worksheet sheet;
        elmx_error e = unmarshal(&sheet, doc.data(), doc.size());
        if (e != ELMX_OK) state.SkipWithError("unmarshal failed");
        benchmark::DoNotOptimize(sheet.m_sheetData.get().m_row.size());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * doc.size()));
}
BENCHMARK(BM_UnmarshalObjects)->Unit(benchmark::kMillisecond)->MinTime(2.0);

// Writing the same events: start tags, attributes, values as text, end tags.
static void BM_WriteEvents(benchmark::State& state) {
    size_t size = 0;
    const size_t rows = document().size() / 400;  // about the row count of the read document
    // Values as the cell store keeps them: wide text.
    std::vector<std::wstring> values(4096);
    for (size_t i = 0; i < values.size(); ++i) {
        std::string v;
        o_to_v(v, i * 1.25 + i / 3.0);
        values[i] = utf8_to_wide(i % 3 ? v : std::to_string(i));
    }
    std::string r, number;
    // One output buffer for all rounds, so that the figure is the writer's and not the kernel's
    // first touch of fresh pages.
    std::string out;
    out.reserve(document().size() + 1024);
    for (auto _ : state) {
        out.clear();
        {
            c_xml_writer w(out);
            w.start_element("worksheet");
            w.conditionally_select_ns_map(lmxtest::sml_ns_map_writer);
            w.conditionally_write_ns_attrs();
            w.start_element("sheetData");
            const std::string spans = "1:12", style = "2", type = "s";
            for (size_t row = 1; row <= rows; ++row) {
                w.start_element("row");
                number = std::to_string(row);
                w.write_attribute("r", number);
                w.write_attribute("spans", spans);
                for (int col = 0; col < 12; ++col) {
                    w.start_element("c");
                    r.clear();
                    append_column(r, col);
                    r += number;
                    w.write_attribute("r", r);
                    if (col % 3 == 0) {
                        w.write_attribute("s", style);
                        w.write_attribute("t", type);
                    }
                    w.start_element("v");
                    w.marshal_element_body(values[(row * 12 + static_cast<size_t>(col)) & 4095]);
                    w.end_element("v");
                    w.end_element("c");
                }
                w.end_element("row");
            }
            w.end_element("sheetData");
            w.end_element("worksheet");
        }
        size = out.size();
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * size));
    state.counters["output_MB"] = static_cast<double>(size) / 1e6;
    set_anchor(state);
}
BENCHMARK(BM_WriteEvents)->Unit(benchmark::kMillisecond)->MinTime(2.0);

// Writing row and cell objects through their marshal functions.
static void BM_MarshalObjects(benchmark::State& state) {
    const std::string& doc = document();
    lmxtest::c_sml_worksheet sheet;
    unmarshal(&sheet, doc.data(), doc.size());
    size_t size = 0;
    std::string out;
    out.reserve(doc.size() + 1024);
    for (auto _ : state) {
        out.clear();
        marshal(sheet, &out);
        size = out.size();
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * size));
}
BENCHMARK(BM_MarshalObjects)->Unit(benchmark::kMillisecond)->MinTime(2.0);
