// XML workbook files: 2,000,000 number cells (100,000 rows by 20 columns) written in ascending
// order and saved to memory, and the same package loaded and read back.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "zelvar.h"

namespace {

constexpr int kRows = 100000, kCols = 20;

std::string savedPackage() {
    zelvar::IBookT<char>* book = zvCreateXMLBookA();
    zelvar::ISheetT<char>* sheet = book->addSheet("Data");
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kCols; ++c) sheet->writeNum(r, c, r * 0.25 + c);
    const char* data = nullptr;
    unsigned size = 0;
    book->saveRaw(&data, &size);
    std::string bytes(data, size);
    book->release();
    return bytes;
}

void BM_WriteAndSave(benchmark::State& state) {
    for (auto _ : state) {
        zelvar::IBookT<char>* book = zvCreateXMLBookA();
        zelvar::ISheetT<char>* sheet = book->addSheet("Data");
        for (int r = 0; r < kRows; ++r)
            for (int c = 0; c < kCols; ++c) sheet->writeNum(r, c, r * 0.25 + c);
        const char* data = nullptr;
        unsigned size = 0;
        book->saveRaw(&data, &size);
        benchmark::DoNotOptimize(size);
        book->release();
    }
    state.SetItemsProcessed(state.iterations() * kRows * kCols);
}
BENCHMARK(BM_WriteAndSave)->Unit(benchmark::kMillisecond);

void BM_LoadAndRead(benchmark::State& state) {
    std::string package = savedPackage();
    for (auto _ : state) {
        zelvar::IBookT<char>* book = zvCreateXMLBookA();
        book->loadRaw(package.data(), static_cast<unsigned>(package.size()));
        zelvar::ISheetT<char>* sheet = book->getSheet(0);
        double sum = 0;
        for (int r = 0; r < kRows; ++r)
            for (int c = 0; c < kCols; ++c) sum += sheet->readNum(r, c);
        benchmark::DoNotOptimize(sum);
        book->release();
    }
    state.SetItemsProcessed(state.iterations() * kRows * kCols);
}
BENCHMARK(BM_LoadAndRead)->Unit(benchmark::kMillisecond);

}  // namespace
