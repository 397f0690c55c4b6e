// In-memory cell throughput of the binary book: 1,000,000 cells as 62,500 rows by 16 columns.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "zelvar.h"

using namespace zelvar;

namespace {

constexpr int kRows = 62500;
constexpr int kCols = 16;
constexpr int kCells = kRows * kCols;

// Resident memory in kB from /proc, as (current, peak).
std::pair<long, long> residentKb() {
    long rss = 0, hwm = 0;
    if (FILE* f = std::fopen("/proc/self/status", "r")) {
        char line[256];
        while (std::fgets(line, sizeof line, f)) {
            if (!std::strncmp(line, "VmRSS:", 6)) rss = std::atol(line + 6);
            if (!std::strncmp(line, "VmHWM:", 6)) hwm = std::atol(line + 6);
        }
        std::fclose(f);
    }
    return {rss, hwm};
}

// A mix of whole numbers, halves and fractions: both record kinds occur.
double valueAt(int row, int col) {
    int i = row * kCols + col;
    switch (i % 4) {
        case 0: return i;
        case 1: return i + 0.5;
        case 2: return i * 0.01;
        default: return -i;
    }
}

void fill(ISheetT<char>* sheet) {
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kCols; ++c) sheet->writeNum(r, c, valueAt(r, c));
}

void BM_WriteNum(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        IBookT<char>* book = zvCreateBookA();
        ISheetT<char>* sheet = book->addSheet("Bench");
        state.ResumeTiming();
        fill(sheet);
        state.PauseTiming();
        book->release();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kCells);
    state.counters["ns_per_cell"] = benchmark::Counter(
        static_cast<double>(state.iterations() * kCells), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_WriteNum)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_WriteStr(benchmark::State& state) {
    std::vector<std::string> pool;
    pool.reserve(10000);
    for (int i = 0; i < 10000; ++i) pool.push_back("item-" + std::to_string(i * 7919 % 100003) + "-x");
    for (auto _ : state) {
        state.PauseTiming();
        IBookT<char>* book = zvCreateBookA();
        ISheetT<char>* sheet = book->addSheet("Bench");
        state.ResumeTiming();
        int i = 0;
        for (int r = 0; r < kRows; ++r)
            for (int c = 0; c < kCols; ++c) sheet->writeStr(r, c, pool[(i++ * 31) % 10000].c_str());
        state.PauseTiming();
        book->release();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kCells);
    state.counters["ns_per_cell"] = benchmark::Counter(
        static_cast<double>(state.iterations() * kCells), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_WriteStr)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ReadNum(benchmark::State& state) {
    IBookT<char>* book = zvCreateBookA();
    ISheetT<char>* sheet = book->addSheet("Bench");
    fill(sheet);
    double sum = 0;
    for (auto _ : state) {
        for (int r = 0; r < kRows; ++r)
            for (int c = 0; c < kCols; ++c) sum += sheet->readNum(r, c);
    }
    benchmark::DoNotOptimize(sum);
    book->release();
    state.SetItemsProcessed(state.iterations() * kCells);
    state.counters["ns_per_cell"] = benchmark::Counter(
        static_cast<double>(state.iterations() * kCells), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_ReadNum)->Unit(benchmark::kMillisecond)->UseRealTime();

// Memory that one sheet of 1,000,000 numbers holds: resident growth while it is alive.
void BM_SheetMemory(benchmark::State& state) {
    double heldMb = 0, peakMb = 0;
    for (auto _ : state) {
        auto before = residentKb();
        IBookT<char>* book = zvCreateBookA();
        ISheetT<char>* sheet = book->addSheet("Bench");
        fill(sheet);
        auto after = residentKb();
        heldMb = (after.first - before.first) / 1024.0;
        peakMb = after.second / 1024.0;
        book->release();
    }
    state.counters["sheet_MB"] = heldMb;
    state.counters["process_peak_MB"] = peakMb;
}
BENCHMARK(BM_SheetMemory)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
