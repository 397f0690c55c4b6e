// Writing and reading a package of 50 entries with 60 MB of worksheet XML, beside raw zlib
// deflate and inflate of the same bytes: the archive's own cost is what lies between.
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "zip/zip_reader.h"
#include "zip/zip_writer.h"

namespace {

constexpr int kEntries = 50;
constexpr size_t kTotalBytes = 60u << 20;

// Deterministic worksheet text: rows of numbers, shared-string cells and some formulas.
std::string worksheet(uint32_t seed, size_t bytes) {
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<worksheet "
                      "xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"><sheetData>";
    xml.reserve(bytes + 4096);
    auto next = [&seed] { return seed = seed * 1664525u + 1013904223u; };
    for (int row = 1; xml.size() < bytes; ++row) {
        std::string r = std::to_string(row);
        xml += "<row r=\"" + r + "\" spans=\"1:8\">";
        for (int col = 0; col < 8; ++col) {
            std::string ref = std::string(1, char('A' + col)) + r;
            uint32_t v = next();
            switch ((v >> 8) % 5) {
                case 0:
                    xml += "<c r=\"" + ref + "\" t=\"s\"><v>" + std::to_string((v >> 12) % 500) + "</v></c>";
                    break;
                case 1:
                    xml += "<c r=\"" + ref + "\" s=\"2\"><f>SUM(A" + r + ":" + std::string(1, char('A' + col)) + r +
                           ")</f><v>" + std::to_string((v >> 10) % 100000) + "</v></c>";
                    break;
                case 2:
                    xml += "<c r=\"" + ref + "\" s=\"1\"><v>" + std::to_string((v >> 9) % 1000) + "." +
                           std::to_string((v >> 3) % 100) + "</v></c>";
                    break;
                default:
                    xml += "<c r=\"" + ref + "\" s=\"" + std::to_string(v % 4) + "\"><v>" +
                           std::to_string((v >> 11) % 100000) + "</v></c>";
                    break;
            }
        }
        xml += "</row>";
    }
    return xml + "</sheetData></worksheet>";
}

struct Parts {
    std::vector<std::string> texts;
    std::vector<std::wstring> names;
    std::vector<std::string> deflated;  // raw streams of the same texts, for the inflate baseline
    std::string package;
    size_t bytes = 0;
};

const Parts& parts() {
    static Parts p = [] {
        Parts made;
        for (int i = 0; i < kEntries; ++i) {
            made.texts.push_back(worksheet(1234u + i, kTotalBytes / kEntries));
            made.names.push_back(L"/xl/worksheets/sheet" + std::to_wstring(i + 1) + L".xml");
            made.bytes += made.texts.back().size();
        }
        for (const std::string& text : made.texts) {
            z_stream s{};
            deflateInit2(&s, Z_DEFAULT_COMPRESSION, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY);
            std::string out(deflateBound(&s, text.size()), '\0');
            s.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
            s.avail_in = static_cast<uInt>(text.size());
            s.next_out = reinterpret_cast<Bytef*>(&out[0]);
            s.avail_out = static_cast<uInt>(out.size());
            deflate(&s, Z_FINISH);
            out.resize(s.total_out);
            deflateEnd(&s);
            made.deflated.push_back(out);
        }
        zelvar::ZipWriter writer;
        for (int i = 0; i < kEntries; ++i)
            writer.add(made.names[i], made.texts[i].data(), static_cast<unsigned>(made.texts[i].size()));
        writer.close();
        const char* data;
        unsigned size;
        writer.getRaw(&data, &size);
        made.package.assign(data, size);
        std::free(const_cast<char*>(data));
        return made;
    }();
    return p;
}

void BM_RawDeflate(benchmark::State& state) {
    const Parts& p = parts();
    std::vector<char> out;
    for (auto _ : state) {
        size_t total = 0;
        for (const std::string& text : p.texts) {
            z_stream s{};
            deflateInit2(&s, Z_DEFAULT_COMPRESSION, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY);
            out.resize(deflateBound(&s, text.size()));
            s.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
            s.avail_in = static_cast<uInt>(text.size());
            s.next_out = reinterpret_cast<Bytef*>(out.data());
            s.avail_out = static_cast<uInt>(out.size());
            deflate(&s, Z_FINISH);
            total += s.total_out;
            deflateEnd(&s);
        }
        benchmark::DoNotOptimize(total);
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(p.bytes));
}

void BM_ZipWriter(benchmark::State& state) {
    const Parts& p = parts();
    for (auto _ : state) {
        zelvar::ZipWriter writer;
        for (int i = 0; i < kEntries; ++i)
            writer.add(p.names[i], p.texts[i].data(), static_cast<unsigned>(p.texts[i].size()));
        writer.close();
        const char* data;
        unsigned size;
        writer.getRaw(&data, &size);
        benchmark::DoNotOptimize(data);
        std::free(const_cast<char*>(data));
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(p.bytes));
    state.counters["package_MB"] = double(p.package.size()) / (1 << 20);
}

void BM_RawInflate(benchmark::State& state) {
    const Parts& p = parts();
    for (auto _ : state) {
        for (int i = 0; i < kEntries; ++i) {
            char* out = static_cast<char*>(std::malloc(p.texts[i].size()));
            z_stream s{};
            inflateInit2(&s, -15);
            s.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(p.deflated[i].data()));
            s.avail_in = static_cast<uInt>(p.deflated[i].size());
            s.next_out = reinterpret_cast<Bytef*>(out);
            s.avail_out = static_cast<uInt>(p.texts[i].size());
            inflate(&s, Z_FINISH);
            inflateEnd(&s);
            benchmark::DoNotOptimize(out);
            std::free(out);
        }
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(p.bytes));
}

void BM_ZipReader(benchmark::State& state) {
    const Parts& p = parts();
    for (auto _ : state) {
        zelvar::ZipReader reader(p.package.data(), static_cast<unsigned>(p.package.size()));
        for (unsigned i = 0; i < reader.size(); ++i) {
            const char* data;
            unsigned size;
            reader.data(i, &data, &size);
            benchmark::DoNotOptimize(data);
            std::free(const_cast<char*>(data));
        }
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(p.bytes));
}

}  // namespace

// The machine may be shared: the least time of several repetitions is the figure to compare.
double least(const std::vector<double>& v) { return *std::min_element(v.begin(), v.end()); }

BENCHMARK(BM_RawDeflate)->Unit(benchmark::kMillisecond)->Repetitions(5)->ComputeStatistics("min", least);
BENCHMARK(BM_ZipWriter)->Unit(benchmark::kMillisecond)->Repetitions(5)->ComputeStatistics("min", least);
BENCHMARK(BM_RawInflate)->Unit(benchmark::kMillisecond)->Repetitions(5)->ComputeStatistics("min", least);
BENCHMARK(BM_ZipReader)->Unit(benchmark::kMillisecond)->Repetitions(5)->ComputeStatistics("min", least);
