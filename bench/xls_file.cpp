// Binary workbook files: saving and loading a sheet of 65,000 rows by 10 mixed columns (numbers,
// strings from a pool of 10,000, booleans), the shape of the peer benchmarks' write-xls workload.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "zelvar.h"

using namespace zelvar;

namespace {

constexpr int kRows = 65000;
constexpr int kCols = 10;

std::vector<std::string> stringPool() {
    std::vector<std::string> pool;
    for (int i = 0; i < 10000; ++i) {
        std::string s = "word" + std::to_string(i * 7919 % 100003) + "-" + std::to_string(i);
        if (i % 16 == 0) s += " \xC3\xA9";
        if (i % 64 == 0) s += " \xE2\x82\xAC";
        pool.push_back(s);
    }
    return pool;
}

IBookT<char>* buildBook(const std::vector<std::string>& pool) {
    IBookT<char>* book = zvCreateBookA();
    book->setLocale("UTF-8");
    ISheetT<char>* sheet = book->addSheet("Data");
    for (int r = 0; r < kRows; ++r) {
        unsigned h = static_cast<unsigned>(r) * 2654435761u;
        sheet->writeNum(r, 0, h % 1000000);
        sheet->writeNum(r, 1, (h % 100000) / 100.0);
        sheet->writeNum(r, 2, (h % 999983) / 999983.0);
        sheet->writeNum(r, 3, static_cast<int>(h % 2000) - 1000);
        sheet->writeNum(r, 4, r % 2 ? r % 100 : (h % 10000) / 1000.0);
        for (int c = 5; c < 9; ++c) sheet->writeStr(r, c, pool[(h >> c) % pool.size()].c_str());
        sheet->writeBool(r, 9, h & 1);
    }
    return book;
}

void BM_SaveXls(benchmark::State& state) {
    auto pool = stringPool();
    IBookT<char>* book = buildBook(pool);
    unsigned size = 0;
    for (auto _ : state) {
        const char* data = nullptr;
        if (!book->saveRaw(&data, &size)) state.SkipWithError(book->errorMessage());
        benchmark::DoNotOptimize(data);
    }
    state.counters["file_MB"] = size / 1048576.0;
    book->release();
}
BENCHMARK(BM_SaveXls)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_BuildAndSaveXls(benchmark::State& state) {
    auto pool = stringPool();
    for (auto _ : state) {
        IBookT<char>* book = buildBook(pool);
        const char* data = nullptr;
        unsigned size = 0;
        book->saveRaw(&data, &size);
        book->release();
    }
}
BENCHMARK(BM_BuildAndSaveXls)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_LoadXls(benchmark::State& state) {
    auto pool = stringPool();
    IBookT<char>* book = buildBook(pool);
    const char* data = nullptr;
    unsigned size = 0;
    book->saveRaw(&data, &size);
    std::string file(data, size);
    book->release();
    for (auto _ : state) {
        IBookT<char>* loaded = zvCreateBookA();
        if (!loaded->loadRaw(file.data(), static_cast<unsigned>(file.size()))) state.SkipWithError(loaded->errorMessage());
        loaded->release();
    }
}
BENCHMARK(BM_LoadXls)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
