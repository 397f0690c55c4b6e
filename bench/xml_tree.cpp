// A worksheet of 2,000,000 cells held as a tree of the schema-bound classes: the shape of the
// peers' W1 workload (200,000 rows of ten cells: five numbers, four shared strings, one
// boolean). Measures reading the part's XML into the tree, writing it back, and the memory
// the tree holds per cell.
#include <benchmark/benchmark.h>

#include <malloc.h>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "ooxml/sml-sheet.h"

using namespace zelvar;

namespace {

const int rows = 200000;
const int cols = 10;

uint32_t mix32(uint32_t x) {
    x = (x ^ (x >> 16)) * 0x045D9F3Bu;
    x = (x ^ (x >> 16)) * 0x045D9F3Bu;
    return x ^ (x >> 16);
}

// The cell values of the peers' generator: numbers of five kinds, indexes into a pool of
// 10,000 strings, booleans.
void append_value(std::string& out, int row, int col) {
    uint32_t h = mix32(static_cast<uint32_t>(row * 16 + col) ^ 0x2545F491u);
    char buf[40];
    switch (col) {
        case 0: std::snprintf(buf, sizeof buf, "%u", h % 1000000); break;
        case 1: std::snprintf(buf, sizeof buf, "%.17g", (h % 100000000) / 100.0); break;
        case 2: std::snprintf(buf, sizeof buf, "%.17g", h / 4294967296.0); break;
        case 3: std::snprintf(buf, sizeof buf, "%d", static_cast<int>(h % 2000001) - 1000000); break;
        case 4:
            if (h & 1)
                std::snprintf(buf, sizeof buf, "%u", (h >> 1) % 1000);
            else
                std::snprintf(buf, sizeof buf, "%.17g", ((h >> 1) % 1000000000) / 1000.0);
            break;
        case 9: std::snprintf(buf, sizeof buf, "%u", (h >> 9) & 1); break;
        default: std::snprintf(buf, sizeof buf, "%u", h % 10000); break;
    }
    out += buf;
}

const std::string& document() {
    static const std::string doc = [] {
        std::string d =
            "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<worksheet "
            "xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" "
            "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\">"
            "<dimension ref=\"A1:J200000\"/><sheetViews><sheetView workbookViewId=\"0\"/></sheetViews>"
            "<sheetFormatPr defaultRowHeight=\"15\"/><sheetData>";
        std::string ref;
        for (int row = 0; row < rows; ++row) {
            d += "<row r=\"" + std::to_string(row + 1) + "\" spans=\"1:10\">";
            for (int col = 0; col < cols; ++col) {
                lmx::make_cell_ref(static_cast<unsigned>(row), static_cast<unsigned>(col), ref);
                d += "<c r=\"" + ref + "\"";
                if (col >= 5 && col < 9) d += " t=\"s\"";
                if (col == 9) d += " t=\"b\"";
                d += "><v>";
                append_value(d, row, col);
                d += "</v></c>";
            }
            d += "</row>";
        }
        d += "</sheetData><pageMargins left=\"0.7\" right=\"0.7\" top=\"0.75\" bottom=\"0.75\" header=\"0.3\" "
             "footer=\"0.3\"/></worksheet>";
        return d;
    }();
    return doc;
}

void BM_UnmarshalW1(benchmark::State& state) {
    const std::string& xml = document();
    for (auto _ : state) {
        auto tree = std::make_unique<sheet::c_worksheet>();
        lmx::elmx_error e = tree->unmarshal(xml.data(), xml.size());
        if (e != lmx::ELMX_OK) state.SkipWithError("the worksheet does not read");
        state.PauseTiming();
        tree.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * xml.size()));
}
BENCHMARK(BM_UnmarshalW1)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_MarshalW1(benchmark::State& state) {
    const std::string& xml = document();
    sheet::c_worksheet tree;
    tree.unmarshal(xml.data(), xml.size());
    size_t bytes = 0;
    for (auto _ : state) {
        std::string out;
        out.reserve(xml.size() + 1024);
        tree.marshal(&out);
        bytes = out.size();
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}
BENCHMARK(BM_MarshalW1)->Unit(benchmark::kMillisecond)->Iterations(3);

// Heap bytes that the tree holds, per cell, from the allocator's own count.
void BM_TreeMemoryW1(benchmark::State& state) {
    const std::string& xml = document();
    for (auto _ : state) {
        malloc_trim(0);
        size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
        auto tree = std::make_unique<sheet::c_worksheet>();
        tree->unmarshal(xml.data(), xml.size());
        size_t after = mallinfo2().uordblks + mallinfo2().hblkhd;
        state.counters["bytes_per_cell"] = static_cast<double>(after - before) / (rows * cols);
        state.counters["xml_MB"] = xml.size() / 1e6;
    }
}
BENCHMARK(BM_TreeMemoryW1)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
