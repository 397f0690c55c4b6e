// Structural edits of an XML sheet: insertRow at row 0 and removeRow of row 0 on a sheet of
// 200,000 rows by 10 columns. Filling the sheet is outside the timed part.
#include <benchmark/benchmark.h>

#include "zelvar.h"

using namespace zelvar;

namespace {

constexpr int kRows = 200000;
constexpr int kCols = 10;

struct FilledSheet {
    IBookT<char>* book = zvCreateXMLBookA();
    ISheetT<char>* sheet = book->addSheet("Data");
    FilledSheet() {
        for (int r = 0; r < kRows; ++r)
            for (int c = 0; c < kCols; ++c) sheet->writeNum(r, c, r * kCols + c);
    }
    ~FilledSheet() { book->release(); }
};

void BM_XmlInsertRow0(benchmark::State& state) {
    FilledSheet filled;
    for (auto _ : state) {
        if (!filled.sheet->insertRow(0, 0)) state.SkipWithError(filled.book->errorMessage());
        state.PauseTiming();
        filled.sheet->removeRow(0, 0);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_XmlInsertRow0)->Unit(benchmark::kMillisecond)->Iterations(10);

void BM_XmlRemoveRow0(benchmark::State& state) {
    FilledSheet filled;
    for (auto _ : state) {
        if (!filled.sheet->removeRow(0, 0)) state.SkipWithError(filled.book->errorMessage());
        state.PauseTiming();
        filled.sheet->insertRow(0, 0);
        for (int c = 0; c < kCols; ++c) filled.sheet->writeNum(0, c, c);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_XmlRemoveRow0)->Unit(benchmark::kMillisecond)->Iterations(10);

}  // namespace

