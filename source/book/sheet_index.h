// Row and column to the packed entry of the record that holds the cell: two array accesses per
// lookup, a block of 256 entries for each touched row and nothing for untouched ones. The row
// table grows with the highest touched row, a bitmap says which rows have a block, and each
// block remembers the columns it was written in, so walks over the cells cost what the sheet
// holds, not the size of the grid.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace zelvar {

class SheetIndex {
public:
    static constexpr unsigned kRows = 65536;
    static constexpr unsigned kCols = 256;

    SheetIndex() { std::memset(_present, 0, sizeof _present); }
    SheetIndex(const SheetIndex& other) : SheetIndex() { copyFrom(other); }
    SheetIndex& operator=(const SheetIndex& other) {
        if (this != &other) {
            clear();
            copyFrom(other);
        }
        return *this;
    }
    ~SheetIndex() { clear(); }

    // The entry of a cell; the row's block is made on first use.
    uint32_t& operator()(unsigned row, unsigned col) {
        uint32_t* block = row < _capacity ? _rows[row] : nullptr;
        if (!block) block = addRow(row);
        Span& span = _cols[row];
        if (col < span.begin) span.begin = static_cast<uint16_t>(col);
        if (col >= span.end) span.end = static_cast<uint16_t>(col + 1);
        return block[col];
    }
    // Reading needs the row's block to exist: test with operator()(row) first.
    uint32_t operator()(unsigned row, unsigned col) const { return _rows[row][col]; }
    bool operator()(unsigned row) const { return row < _capacity && _rows[row] != nullptr; }
    // The entry, or 0 when the row has no block. Cells are mostly visited row after row, so the
    // next row's block is fetched ahead while this one is read.
    uint32_t get(unsigned row, unsigned col) const {
        if (row >= _capacity) return 0;
        const uint32_t* block = _rows[row];
        if (row + 1 < _capacity) __builtin_prefetch(_rows[row + 1]);
        return block ? block[col] : 0;
    }
    // The first row at or after `row` that has a block, or kRows when there is none.
    unsigned nextRow(unsigned row) const {
        for (unsigned word = row >> 6; word < kRows / 64; ++word) {
            uint64_t bits = _present[word];
            if (word == row >> 6) bits &= ~0ull << (row & 63);
            if (bits) return word * 64 + static_cast<unsigned>(__builtin_ctzll(bits));
        }
        return kRows;
    }
    // The columns of a row's block that may hold entries: [begin, end); empty when begin >= end.
    unsigned colBegin(unsigned row) const { return _cols[row].begin; }
    unsigned colEnd(unsigned row) const { return _cols[row].end; }
    // How many rows a loaded sheet says it uses: the last blocks are then taken in ordinary pages
    // rather than in a huge page that would stay mostly empty. More rows are still welcome.
    void expectRows(size_t rows) { _expectedRows = rows; }
    // Gives a row's block back (all its entries must be 0 or no longer wanted).
    void dropRow(unsigned row);
    void clear();

    static uint32_t entry(unsigned kind, unsigned position) { return position << 4 | kind << 1 | 1; }
    static unsigned kind(uint32_t entry) { return (entry >> 1) & 7; }
    static unsigned position(uint32_t entry) { return entry >> 4; }

private:
    // Every entry written since the row's block was made lies within [begin, end).
    struct Span {
        uint16_t begin, end;
    };
    enum ChunkKind { kHeap, kPages, kHuge };
    struct Chunk {
        void* memory;
        size_t bytes;
        ChunkKind kind;
    };

    uint32_t* addRow(unsigned row);
    void growTable(unsigned row);
    // Blocks come from chunks that start small and double up to one huge page; dropped blocks
    // are reused before new ones.
    uint32_t* newBlock();
    void copyFrom(const SheetIndex& other);

    // Both tables have _capacity slots, grown to cover the highest touched row.
    uint32_t** _rows = nullptr;
    Span* _cols = nullptr;
    unsigned _capacity = 0;
    uint64_t _present[kRows / 64];
    std::vector<Chunk> _chunks;
    std::vector<uint32_t*> _freeBlocks;
    uint32_t* _chunkNext = nullptr;
    size_t _chunkLeft = 0;
    size_t _blocksMade = 0;
    size_t _expectedRows = 0;
};

}  // namespace zelvar
